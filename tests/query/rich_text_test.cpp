// SPDX-License-Identifier: MIT
#include "query/rich_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "query/html_writer.h"
#include "query/icons.h"
#include "query/rtf_writer.h"
#include "query/terminal_writer.h"

namespace oru::query {
namespace {

constexpr Host_Colour kRed = 255, kBlue = 255 << 16;
constexpr Run_Style kBold{kBase_Colour, false, true, false, false};

Rich_Text Made() {
  Rich_Text text;
  text.Int_RTx_Inf(0, "Font ", 9.75F, 260);
  return text;
}

std::string Rtf(const Rich_Text& text) {
  static Rtf_Writer writer;
  return writer.Add_RTx_Hed(text);
}
/// What stands between the header and the closing brace.
std::string Body(const Rich_Text& text) {
  const std::string rtf = Rtf(text);
  const std::size_t begin = rtf.find("\\fs20 ") + 6;
  return rtf.substr(begin, rtf.size() - begin - 1);
}

TEST(Rtf, WholeText) {
  Rich_Text text = Made();
  text.Set_RTx_Txt("a\r\n", 0, text.Set_RTx_CIx(0x030201), false, true, false, false);
  EXPECT_EQ(Rtf(text),
            "{\\rtf1\\ansi\\deff0\r\n{\\fonttbl{\\f0\\fnil\\fcharset128 Font;}}"
            "{\\colortbl ;\\red0\\green0\\blue0;\\red1\\green2\\blue3;}"
            "\\viewkind4\\uc1\\pard\\cf1\\lang1041\\f0\\fs20 "
            "\\pard\\sl-260\\slmult0\\cf1 \\cf2\\b a\\par \r\n}");
}

TEST(Rtf, FontNameIsEscapedAndCannotNameAnotherTag) {
  Rich_Text text;
  text.Int_RTx_Inf(0, "ＭＳ {%FontSize}", 10.5F, 0);
  EXPECT_NE(Rtf(text).find("\\fcharset128 \\'82\\'6c\\'82\\'72 \\{%FontSize\\};}}"),
            std::string::npos);
  EXPECT_NE(Rtf(text).find("\\fs21 "), std::string::npos);
}

TEST(Rtf, EscapedText) {
  struct {
    std::string_view what, in, out;
  } const cases[] = {
      {"nothing", "", ""},
      {"ASCII", "If a% = 1 Then ~", "If a% = 1 Then ~"},
      {"what means something to RTF", "{\\}", "\\{\\\\\\}"},
      {"two bytes", "あ亜", "\\'82\\'a0\\'88\\'9f"},
      {"second byte is a backslash, a brace, a letter", "ソボマ", "\\'83\\'5c\\'83\\'7b\\'83\\'7d"},
      {"half-width katakana", "ｱﾟ", "\\'b1\\'df"},
      {"extension of the code page", "①", "\\'87\\'40"},
      {"outside of the code page", "é가", "\\u233?\\u-21504?"},
      {"surrogate pair", "😀", "\\u-10179?\\u-8704?"},
      {"digits behind a character", "é1", "\\u233?1"},
      {"bytes that are no UTF-8", "a\xE3\x81", "a\\u-3?\\u-3?"},
      {"line ends", "a\r\nb\nc\rd\r\n", "a\\par \r\nb\\par \r\nc\\par \r\nd\\par \r\n"},
      {"LF before CR is two", "\n\r", "\\par \r\n\\par \r\n"},
      {"tab", "\t", "\t"},
      {"control characters", "\x1b[\x7f", "\\'1b[\\'7f"},
  };
  Rtf_Writer writer;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(writer.Cnv_RTx_Txt(c.in), c.out);
    EXPECT_EQ(writer.Cnv_RTx_Txt(c.in), c.out);  // from the table of codes
  }
}

TEST(Rtf, AttributesAreWrittenInOrderAndOnlyWhenTheyChange) {
  Rich_Text text = Made();
  const Colour_Index red = text.Set_RTx_CIx(kRed);
  text.Set_RTx_Txt("a", 0, red, true, true, true, true);
  text.Set_RTx_Txt("b", 0, red, true, true, true, true);
  text.Set_RTx_Txt("c", 120, red, true, true, true, true);
  text.Set_RTx_Txt("d", 120, red, true, false, true, true);
  text.Set_RTx_Txt("e", 0, kBase_Colour, false, false, false, false);
  EXPECT_EQ(Body(text),
            "\\pard\\sl-260\\slmult0\\cf1 \\cf2\\ul\\b\\i\\strike ab\\pard\\sl-120\\slmult0 c"
            "\\pard\\sl-120\\slmult0\\b0 d\\cf1\\ulnone\\i0\\strike0 e");
}

TEST(Rtf, PictureIsAWholeMetafileAndLeavesAttributesAlone) {
  Rich_Text text = Made();
  text.Add("a", kBold);
  text.Set_RTx_Img("C_Sub");
  text.Add("b", kBold);
  const std::string body = Body(text);
  const std::string_view head =
      "\\b a{\\pict\\wmetafile8\\picw423\\pich423\\picwgoal240\\pichgoal240\r\n";
  const std::size_t begin = body.find(head) + head.size();
  const std::size_t end = body.find("}\r\nb", begin);
  ASSERT_NE(end, std::string::npos);

  std::vector<unsigned> words;
  for (std::size_t i = begin; i + 4 <= end; i += 4) {
    const auto byte = [&](std::size_t at) {
      return static_cast<unsigned>(std::stoul(body.substr(at, 2), nullptr, 16));
    };
    words.push_back(byte(i) | byte(i + 2) << 8U);
  }
  ASSERT_EQ(words.size() * 4, end - begin);
  EXPECT_EQ(words[3], words.size());  // the header tells the size in words
  std::vector<unsigned> functions;
  unsigned largest = 0;
  for (std::size_t at = words[1]; at < words.size(); at += words[at]) {
    ASSERT_NE(words[at], 0U);
    functions.push_back(words[at + 2]);
    largest = std::max(largest, words[at]);
  }
  EXPECT_EQ(functions, (std::vector<unsigned>{0x0103, 0x020B, 0x020C, 0x0F43, 0}));
  EXPECT_EQ(words[6], largest);
}

TEST(RichText, LengthCountsCharactersOfTheEditor) {
  Rich_Text text = Made();
  text.Add("a{あ\r\n");
  text.Add("😀", kBold);
  text.Set_RTx_Img("C_Sub");
  EXPECT_EQ(service::To_Int(text.RTx_Len()), 7);
  EXPECT_EQ(text.Text(), "a{あ\r\n😀");
}

TEST(RichText, MessageHasItsOwnLineEnd) {
  Rich_Text text = Made();
  text.Edt_RTx_Msg("●a\\nb\\");
  EXPECT_EQ(text.Text(), "●a\r\nb\\");
}

TEST(RichText, ColourHasOneSlotAndTheSeventeenthNone) {
  Rich_Text text = Made();
  EXPECT_EQ(text.Set_RTx_CIx(0), kBase_Colour);
  for (int colour = 1; colour < 16; ++colour) {
    EXPECT_EQ(text.Set_RTx_CIx(colour), colour + 1);
    EXPECT_EQ(text.Set_RTx_CIx(colour), colour + 1);
  }
  EXPECT_EQ(text.Set_RTx_CIx(16), kBase_Colour);
  EXPECT_EQ(text.Colours().size(), kColour_Slots);
  text.Set_RTx_Txt("a", 0, 17, false, false, false, false);
  EXPECT_EQ(text.Runs().back().style.colour, kBase_Colour);
}

TEST(RichText, StartedAnewNothingIsLeft) {
  Rich_Text text = Made();
  text.Add("a", {text.Set_RTx_CIx(kRed), true, true, true, true});
  text.Set_RTx_Img("C_Sub");
  text.Int_RTx_Inf(kBlue, "F", 8, 200);
  EXPECT_EQ(Rtf(text),
            "{\\rtf1\\ansi\\deff0\r\n{\\fonttbl{\\f0\\fnil\\fcharset128 F;}}"
            "{\\colortbl ;\\red0\\green0\\blue255;}\\viewkind4\\uc1\\pard\\cf1\\lang1041\\f0\\fs16 "
            "\\pard\\sl-200\\slmult0\\cf1 }");
  EXPECT_TRUE(text.Images().empty());
  EXPECT_EQ(service::To_Int(text.RTx_Len()), 0);
}

TEST(Terminal, AttributesEndWithTheLine) {
  Rich_Text text = Made();
  text.Set_RTx_Img("C_SubP");
  text.Add("x ");
  text.Add("a\r\n\nb", {text.Set_RTx_CIx(0x0000FF), true, true, true, true});
  text.Add("c\r\n", {text.Set_RTx_CIx(0x808080)});
  struct {
    Term_Options options;
    std::string_view out;
  } const cases[] = {
      {{Term_Colours::None, false}, "x a\n\nbc\n"},
      {{Term_Colours::None, true}, "[Sub]x a\n\nbc\n"},
      {{Term_Colours::Ansi16, false},
       "x \x1b[0;1;3;4;9;91ma\x1b[0m\n\n\x1b[0;1;3;4;9;91mb\x1b[0;90mc\x1b[0m\n"},
      {{Term_Colours::Ansi256, false},
       "x \x1b[0;1;3;4;9;38;5;196ma\x1b[0m\n\n\x1b[0;1;3;4;9;38;5;196mb\x1b[0;38;5;244mc\x1b[0m\n"},
      {{Term_Colours::True, false},
       "x \x1b[0;1;3;4;9;38;2;255;0;0ma\x1b[0m\n\n\x1b[0;1;3;4;9;38;2;255;0;0mb"
       "\x1b[0;38;2;128;128;128mc\x1b[0m\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.options.colours));
    EXPECT_EQ(Get_RTx_Term(text, c.options), c.out);
  }
}

TEST(Terminal, LastLineWithoutEndIsResetToo) {
  Rich_Text text = Made();
  text.Add("a", kBold);
  EXPECT_EQ(Get_RTx_Term(text, {}), "\x1b[0;1ma\x1b[0m");
}

TEST(Screen, TextCannotCommandTerminalOrPage) {
  struct {
    std::string_view what, in, terminal, page;
  } const cases[] = {
      {"escape", "\x1b[31m", "�[31m", "�[31m"},
      {"bell, backspace, delete", "\a\b\x7f", "���", "���"},
      {"second set of control characters", "a\u009b1m", "a�1m", "a�1m"},
      {"the same as a bare byte",
       "a\x9b"
       "1m",
       "a�1m", "a�1m"},
      {"marks that turn the direction", "a\u202eb\u2066", "a�b�", "a�b�"},
      {"tab and line ends stay", "a\tb\rc", "a\tb\nc", "a\tb\nc"},
      {"replacement character stays", "�", "�", "�"},
      {"markup", "<script>\"&amp;'</script>", "<script>\"&amp;'</script>",
       "&lt;script&gt;&quot;&amp;amp;&#39;&lt;/script&gt;"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Rich_Text text = Made();
    text.Add(c.in);
    EXPECT_EQ(Get_RTx_Term(text, {}), c.terminal);
    EXPECT_EQ(Esc_Html(c.in), c.page);
    EXPECT_NE(Get_RTx_Html(text, {}).find(">\n" + std::string(c.page) + "</pre>"),
              std::string::npos);
  }
}

TEST(Html, PageStandsAlone) {
  Rich_Text text;
  text.Int_RTx_Inf(kBlue, "A\"</style>", 10, 260);
  text.Add("\r\na");
  text.Add("b\r\n", {text.Set_RTx_CIx(kRed), true, true, true, true});
  text.Set_RTx_Txt(" \r\n", 120, kBase_Colour, false, false, false, false);
  text.Set_RTx_Img("C_Sub");
  const std::string page = Get_RTx_Html(text, {"<t>"});
  EXPECT_TRUE(
      page.starts_with("<!DOCTYPE html>\n<html lang=\"ja\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<title>&lt;t&gt;</title>\n"));
  EXPECT_NE(page.find("color:#0000ff}"), std::string::npos);
  EXPECT_NE(page.find("font-family:\"A\\22 \\3c \\2f style\\3e \","), std::string::npos);
  EXPECT_NE(page.find(".c2{color:#ff0000}"), std::string::npos);
  EXPECT_NE(
      page.find("<pre style=\"line-height:13pt\">\n\na<span class=\"c2\"><u><b><i><s>b\n"
                "</s></i></b></u></span></pre><pre style=\"line-height:6pt\">\n \n"
                "<img width=\"16\" height=\"16\" alt=\"Sub\" src=\"data:image/bmp;base64,Qk2+AAAA"),
      std::string::npos);
  EXPECT_TRUE(page.ends_with("</pre>\n</body>\n</html>\n"));
}

TEST(Html, LineSpacingWaitsForTheNextLine) {
  Rich_Text text = Made();
  text.Set_RTx_Img("C_Sub");
  text.Set_RTx_Txt("b\r\n", 120, kBase_Colour, false, false, false, false);
  text.Add("c", kBold);
  EXPECT_NE(
      Get_RTx_Html(text, {}).find("\">b\n</pre><pre style=\"line-height:6pt\">\n<b>c</b></pre>"),
      std::string::npos);
}

TEST(Icons, EachTagHasAPictureOfItsOwn) {
  std::set<std::vector<int>> seen;
  const std::string_view tags[] = {
      "?",         "C_Module",  "C_Class",  "C_Form",   "C_UserCtl",  "C_UserDoc", "C_Dsr",
      "C_Book",    "C_Sheet",   "C_Report", "C_Word",   "C_Document", "C_Event",   "C_EventP",
      "C_Sub",     "C_SubP",    "C_Func",   "C_FuncP",  "C_PGet",     "C_PGetP",   "C_PLet",
      "C_PLetP",   "C_PSet",    "C_PSetP",  "C_ApiS",   "C_ApiSP",    "C_ApiF",    "C_ApiFP",
      "C_Def",     "V_ArgVl",   "V_Local",  "V_LocalC", "V_LocalU",   "V_Modul",   "V_ModulC",
      "V_ModulE",  "V_ModulN",  "V_ModulT", "V_ModulU", "V_Public",   "V_PublicC", "V_PublicE",
      "V_PublicN", "V_PublicT", "V_PublicU"};
  for (const std::string_view tag : tags) {
    SCOPED_TRACE(tag);
    std::vector<int> pixels;
    for (const Rgb& pixel : Get_Icon(tag))
      pixels.push_back(pixel.red << 16 | pixel.green << 8 | pixel.blue);
    EXPECT_TRUE(seen.insert(pixels).second);
    EXPECT_EQ(Icon_Word(tag).empty(), tag == "?");
  }
  EXPECT_EQ(Get_Icon("V_LocalP"), Get_Icon("?"));
}

}  // namespace
}  // namespace oru::query
