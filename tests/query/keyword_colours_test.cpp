// SPDX-License-Identifier: MIT
#include "query/keyword_colours.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "service/keywords.h"
#include "service/settings.h"

namespace oru::query {
namespace {

class Colours : public testing::Test {
 protected:
  Colours() {
    // A colour for each class, so that a run tells its class: the letter is the colour.
    const auto set = [](Text_Style& style, char letter) { style = {letter}; };
    set(styles_.Cmt, 'c');
    set(styles_.Em1, '1');
    set(styles_.Em2, '2');
    set(styles_.Nam, 'n');
    set(styles_.Oth, 'o');
    set(styles_.Cwd, 'w');
    set(styles_.Hit, 'h');
    set(styles_.Tag, 't');
    set(styles_.Idt, 'i');
    set(styles_.Add, 'a');
    set(styles_.Del, 'd');
    set(styles_.Upd, 'u');
    text_.Int_RTx_Inf(0, "F", 10, 0);
  }

  /// The text with "letter<" and ">" around each run that is not plain; "_" and "~" stand before
  /// what is underlined and struck through.
  std::string Take() {
    std::string out;
    for (const Rich_Run& run : text_.Runs()) {
      const Run_Style& style = run.style;
      if (style.und) out += '_';
      if (style.stk) out += '~';
      const bool plain = style.colour == kBase_Colour;
      if (!plain) out.append(1, static_cast<char>(text_.Colours()[style.colour - 1U])).append("<");
      out += text_.Text(run);
      if (!plain) out += '>';
    }
    text_.Int_RTx_Inf(0, "F", 10, 0);
    return out;
  }
  std::string Line(std::string_view line, std::span<const service::Text_Span> hits = {}) {
    Set_KWd_Lin(text_, styles_, keywords_, line, hits);
    return Take();
  }

  service::Settings settings_;
  service::Keywords keywords_;
  Text_Styles styles_{settings_};
  Rich_Text text_;
};

TEST_F(Colours, ClassesOfTokens) {
  struct {
    std::string_view what, in, out;
  } const cases[] = {
      {"nothing", "", ""},
      {"words, names, numbers, operators", "    Dim 在庫_1 As Long, b%",
       "    o<Dim> n<在庫_1> o<As> o<Long>, n<b>%"},
      {"keywords are told by exact spelling", "dim Dim", "n<dim> o<Dim>"},
      {"keyword with a type character", "x = Left$(y, 1.5E+3)", "n<x> = o<Left>$(n<y>, 1.5E+3)"},
      {"hexadecimal number is no name", "n = &HFF00& + .5", "n<n> = &HFF00& + .5"},
      {"literal with words, quotes and an apostrophe", "a = \"If \"\"x\"\" 'n\" ' Then",
       "n<a> = \"If \"\"x\"\" 'n\" c<' Then>"},
      {"literal that does not end", "a = \"If", "n<a> = \"If"},
      {"comment line", "  ' If x Then", "c<  ' If x Then>"},
      {"old comment", "Rem If x", "c<Rem If x>"},
      {"old comment behind a colon", "a: Rem b", "n<a>: c<Rem b>"},
      {"name that begins like one", "Remote = 1", "n<Remote> = 1"},
      {"block", "If a Then ' b", "w<If> n<a> w<Then> c<' b>"},
      {"If of one line", "If a Then b: Exit Sub Else For i = 1 To 2: Next",
       "w<If> n<a> w<Then> n<b>: w<Exit> w<Sub> w<Else> w<For> n<i> = 1 o<To> 2: w<Next>"},
      {"statement behind a label and a line number", "10 For i = 1 To 2: Case Else",
       "10 w<For> n<i> = 1 w<To> 2: w<Case> w<Else>"},
      {"directive", "#If Win64 Then", "#w<If> o<Win64> w<Then>"},
      {"member that looks like a control word", "With a: .Next .Select, x!Loop",
       "w<With> n<a>: .o<Next> .o<Select>, n<x>!o<Loop>"},
      {"member with the name of a control word of its statement", "For i = a.To To b!In",
       "w<For> n<i> = n<a>.o<To> w<To> n<b>!o<In>"},
      {"named argument is no new statement", "a x:=For", "n<a> n<x>:=o<For>"},
      {"loop within bounds", "Dim a(1 To 5)", "o<Dim> n<a>(1 o<To> 5)"},
      {"file", "Open f For Input As #1", "o<Open> n<f> o<For> o<Input> o<As> #1"},
      {"declaration", "Private Function f()", "o<Private> o<Function> n<f>()"},
      {"end of a type", "End Type", "o<End> o<Type>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Line(c.in), c.out);
  }
}

TEST_F(Colours, MarkOfACommentIsNotWritten) {
  struct {
    std::string_view in, out;
  } const cases[] = {
      {"' a①'~~~1", "1<' a①>"}, {"' a②'~~~2", "2<' a②>"},    {"' a'~~~0", "c<' a>"},
      {"' a①", "c<' a①>"},      {"' a'~~~3", "c<' a'~~~3>"}, {"'~~~", "c<'~~~>"},
  };
  for (const auto& c : cases) EXPECT_EQ(Line(c.in), c.out);
}

TEST_F(Colours, HitsAreSetApart) {
  struct {
    std::string_view what, in;
    std::vector<service::Text_Span> hits;
    std::string_view out;
  } const cases[] = {
      {"word", "x = ab", {{4, 2}}, "n<x> = h<ab>"},
      {"within a word", "abcd", {{1, 2}}, "n<a>h<bc>n<d>"},
      {"over several tokens", "a.b + c", {{2, 4}}, "n<a>.h<b + >n<c>"},
      {"in a literal and a trailing comment",
       "a(\"x\") ' x",
       {{3, 1}, {9, 1}},
       "n<a>(\"h<x>\") c<' >h<x>"},
      {"one within the other", "abc", {{0, 3}, {1, 1}}, "h<abc>"},
      {"reaching over the end", "ab", {{1, 9}}, "n<a>h<b>"},
      {"comment line is written whole", "' x", {{2, 1}}, "c<' x>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Line(c.in, c.hits), c.out);
  }
}

TEST_F(Colours, FlagsComeFromTheOptionsAndNoColourIsTheBase) {
  settings_.Set_Number("HitClr", kNo_Colour);
  settings_.Set_Number("HitBld", 1);
  settings_.Set_Number("HitItl", 1);
  settings_.Set_Number("HitUnd", 0);
  settings_.Set_Number("NamClr", 0x123456);
  styles_ = Text_Styles(settings_);
  Set_KWd_Lin(text_, styles_, keywords_, "a b", std::vector<service::Text_Span>{{0, 1}});
  ASSERT_EQ(text_.Runs().size(), 4U);
  EXPECT_EQ(text_.Runs()[1].style, (Run_Style{kBase_Colour, false, true, true, false}));
  EXPECT_EQ(text_.Colours()[text_.Runs()[3].style.colour - 1U], 0x123456);
  EXPECT_EQ(Run_Style_Of(text_, {static_cast<Host_Colour>(0x80000008U)}).colour, kBase_Colour);
}

TEST_F(Colours, Block) {
  struct {
    std::string_view what, in, out;
  } const cases[] = {
      {"lines", "a\r\n\r\nIf b Then", "n<a>\r\n\r\nw<If> n<b> w<Then>"},
      {"tags in comments, literals and code", "'%MN.%PNx %Date\r\nf \"%ANT\", %RV",
       "c<'>t<%MN>c<.>t<%PN>c<x >t<%Date>\r\nn<f> \"t<%ANT>\", t<%RV>"},
      {"indent before a statement", "│ |If a Then", "i<│> i<|>w<If> n<a> w<Then>"},
      {"indent before a comment", "└  ' a|b", "i<└>  c<' a|b>"},
      {"bar in a literal", "a = \"|\"", "n<a> = \"|\""},
      {"comment of what is called", "  '→ a '→ b", "  i<'→>c< a '→ b>"},
      {"mark of a comment", "|' a'~~~1\r\nb", "i<|>1<' a>\r\nn<b>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Set_KWd_Txt(text_, styles_, keywords_, c.in);
    EXPECT_EQ(Take(), c.out);
  }
}

TEST_F(Colours, Comparison) {
  styles_.Del.colour = kNo_Colour;
  struct {
    std::string_view what, in;
    std::vector<Dif_Run> runs;
    std::string_view out;
  } const cases[] = {
      {"unchanged", "If a", {}, "w<If> n<a>"},
      {"added run is underlined", "If ab", {{3, 1, Dif_Kind::Added}}, "w<If> _a<a>n<b>"},
      {"deleted run is struck through; no colour keeps the token's",
       "If a",
       {{0, 4, Dif_Kind::Deleted}},
       "~w<If>~ ~n<a>"},
      {"changed run", "' abc", {{2, 2, Dif_Kind::Changed}}, "c<' >u<ab>c<c>"},
      {"what was left out", "↓以下表示省略", {}, "c<↓以下表示省略>"},
      {"what was left out, behind text", "If ↓以下表示省略", {}, "w<If> c<↓以下表示省略>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Set_KWd_Dif(text_, styles_, keywords_, c.in, c.runs);
    EXPECT_EQ(Take(), c.out);
  }
}

TEST_F(Colours, EveryCharacterIsWrittenOnce) {
  constexpr std::string_view pieces[] = {"If", "Then", " ",  ":",   ".",  "\"",   "'", "&H",  "10",
                                         "|",  "│",    "'→", "%MN", "在", "\xE5", "#", "Rem", "!"};
  unsigned seed = 1;
  const auto next = [&](std::size_t n) {
    seed = seed * 1664525U + 1013904223U;
    return (seed >> 8U) % n;
  };
  for (int round = 0; round < 2000; ++round) {
    std::string line;
    for (std::size_t i = next(12); i > 0; --i) line += pieces[next(std::size(pieces))];
    const std::size_t begin = next(line.size() + 2);
    const service::Text_Span hit{begin, next(5)};
    const Dif_Run run{begin, next(5)};
    SCOPED_TRACE(line);
    Set_KWd_Lin(text_, styles_, keywords_, line, std::span(&hit, 1));
    Set_KWd_Txt(text_, styles_, keywords_, line);
    Set_KWd_Dif(text_, styles_, keywords_, line, std::span(&run, 1));
    EXPECT_EQ(text_.Text(), fmt::format("{0}{0}{0}", line));
    (void)Take();
  }
}

TEST(ControlWords, CountOnlyWithinTheirStatements) {
  struct {
    std::string_view first, before, word, next;
    bool control;
  } const cases[] = {
      {"If", "", "If", "a", true},
      {"End", "End", "If", "", true},
      {"If", "Then", "If", "a", true},
      {"x", "x", "If", "", false},
      {"If", "a", "Then", "", true},
      {"ElseIf", "a", "Then", "", true},
      {"x", "x", "Then", "", false},
      {"Else", "", "Else", "", true},
      {"If", "b", "Else", "c", true},
      {"Case", "Case", "Else", "", true},
      {"ElseIf", "", "ElseIf", "a", true},
      {"Select", "", "Select", "Case", true},
      {"Select", "Select", "Case", "x", true},
      {"Case", "", "Case", "1", true},
      {"x", "x", "Case", "", false},
      {"For", "", "For", "Each", true},
      {"For", "For", "Each", "x", true},
      {"x", "x", "Each", "", false},
      {"For", "x", "In", "y", true},
      {"x", "x", "In", "y", false},
      {"For", "1", "To", "2", true},
      {"Case", "1", "To", "2", false},
      {"Open", "f", "For", "Input", false},
      {"Next", "", "Next", "i", true},
      {"Resume", "Resume", "Next", "", true},
      {"On", "Resume", "Next", "", true},
      {"Do", "", "Do", "While", true},
      {"Do", "Do", "While", "x", true},
      {"Loop", "Loop", "While", "x", true},
      {"Loop", "", "Loop", "", true},
      {"While", "", "While", "x", true},
      {"Wend", "", "Wend", "", true},
      {"With", "", "With", "x", true},
      {"End", "End", "With", "", true},
      {"On", "", "On", "Error", true},
      {"On", "On", "Error", "GoTo", true},
      {"On", "Error", "Resume", "Next", true},
      {"On", "Error", "GoTo", "0", true},
      {"x", "=", "Error", "", false},
      {"GoTo", "", "GoTo", "a", true},
      {"If", "Then", "GoTo", "a", true},
      {"Resume", "", "Resume", "", true},
      {"Exit", "", "Exit", "Sub", true},
      {"Exit", "Exit", "Sub", "", true},
      {"Exit", "Exit", "Function", "", true},
      {"Exit", "Exit", "Property", "", true},
      {"Exit", "Exit", "Do", "", true},
      {"Exit", "Exit", "For", "", true},
      {"If", "Then", "Exit", "For", true},
      {"Exit", "", "Exit", "x", false},
      {"End", "", "End", "If", true},
      {"End", "", "End", "Property", true},
      {"End", "", "End", "Type", false},
      {"End", "", "End", "", false},
      {"End", "End", "Select", "", true},
      {"End", "End", "Type", "", false},
      {"Public", "Public", "Sub", "a", false},
      {"Sub", "", "Sub", "a", false},
      {"x", "", "x", "", false},
      {"Do", "Do", "Until", "x", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.first << "/" << c.before << "/" << c.word);
    EXPECT_EQ(Set_Eff_Cwd(c.first, c.before, c.word, c.next), c.control);
  }
}

}  // namespace
}  // namespace oru::query
