// SPDX-License-Identifier: MIT
#include "query/keyword_colours.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "analyser/reader.h"
#include "service/keywords.h"
#include "service/settings.h"

namespace oru::query {

namespace {

constexpr std::size_t npos = std::string_view::npos;
constexpr std::string_view kWord_Ends = " ()[]!.:,'\"";

// A longer tag stands before one that it begins with.
constexpr std::array<std::string_view, 11> kTags{"%MN",  "%PN",  "%PT", "%Date", "%Time", "%Exit",
                                                 "%ANT", "%ANS", "%RV", "%UN",   "%CN"};
constexpr std::array<std::string_view, 3> kIndent_Marks{"│", "└", "|"};
constexpr std::string_view kComment_Arrow = "'→";

bool Is_One_Of(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::ranges::find(words, word) != words.end();
}

/// The first of the marks that `text` begins with, or nothing.
std::string_view Head_Of(std::string_view text, std::span<const std::string_view> marks) {
  for (const std::string_view mark : marks)
    if (text.starts_with(mark)) return mark;
  return {};
}

bool Is_Digit(char c) {
  return c >= '0' && c <= '9';
}
// Characters beyond ASCII are parts of names: Japanese ones are common.
bool Is_Name_Character(char c) {
  return Is_Digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}
std::size_t Name_End(std::string_view text, std::size_t at) {
  while (at < text.size() && Is_Name_Character(text[at])) ++at;
  return at;
}

// ---- marked stretches of a line ------------------------------------------------------------------

/// A stretch with a style of its own: in place of its tokens' styles, or laid over them.
struct Mark {
  std::size_t begin = 0, end = 0;
  Run_Style style;
  bool over_tokens = false;
};

/// Appends a line from left to right, cut at the marks.
class Line_Writer {
 public:
  Line_Writer(Rich_Text& text, std::string_view line, std::span<const Mark> marks)
      : text_(text), line_(line), marks_(marks) {}

  void Put_To(std::size_t end, const Run_Style& style) {
    while (at_ < end) {
      while (!marks_.empty() && marks_.front().end <= at_) marks_ = marks_.subspan(1);
      const bool marked = !marks_.empty() && marks_.front().begin <= at_;
      std::size_t stop = end;
      if (marked) stop = std::min(end, marks_.front().end);
      if (!marked && !marks_.empty()) stop = std::min(end, marks_.front().begin);
      text_.Add(line_.substr(at_, stop - at_), marked ? Marked(style) : style);
      at_ = stop;
    }
  }

 private:
  [[nodiscard]] Run_Style Marked(Run_Style token) const {
    const Mark& mark = marks_.front();
    if (!mark.over_tokens) return mark.style;
    if (mark.style.colour != kBase_Colour) token.colour = mark.style.colour;
    token.und |= mark.style.und;
    token.bld |= mark.style.bld;
    token.itl |= mark.style.itl;
    token.stk |= mark.style.stk;
    return token;
  }

  Rich_Text& text_;
  std::string_view line_;
  std::span<const Mark> marks_;
  std::size_t at_ = 0;
};

// ---- tokens --------------------------------------------------------------------------------------

class Statement_Writer {
 public:
  Statement_Writer(Rich_Text& text, const Text_Styles& styles, const service::Keywords& keywords,
                   std::string_view line, std::span<const Mark> marks)
      : text_(text), styles_(styles), keywords_(keywords), line_(line), out_(text, line, marks) {}

  /// Writes the line from `begin` on; what stands before it is plain.
  void Write(std::size_t begin) {
    const Run_Style plain = Run_Style_Of(text_, styles_.Txt);
    out_.Put_To(begin, plain);
    for (std::size_t at = begin; at < line_.size();) {
      const char c = line_[at];
      std::size_t end = at + 1;
      if (c == ' ' || c == '\t' || (c == '#' && first_.empty())) {
        out_.Put_To(end, plain);  // a directive begins with its first word
      } else if (c == '\'') {
        end = Comment();
      } else if (c == '"') {
        end = String_End(at);
        Put_Other(at, end, plain);
      } else if (const std::size_t number = Number_End(at); number > at) {
        end = number;
        if (first_.empty()) {  // a line number is no part of the statement
          out_.Put_To(end, plain);
        } else {
          Put_Other(at, end, plain);
        }
      } else if (Is_Name_Character(c)) {
        end = Word(at);
      } else if (c == ':' && !line_.substr(end).starts_with('=')) {
        out_.Put_To(end, plain);
        Begin_Statement();
      } else {
        Put_Other(at, end, plain);
      }
      at = end;
    }
  }

 private:
  // Behind a colon. In an If of one line, what follows is still a part of it.
  void Begin_Statement() {
    const bool in_if = first_ == "If";
    first_ = in_if ? first_ : std::string_view();
    before_ = in_if ? "Then" : std::string_view();
  }

  std::size_t Comment() {
    out_.Put_To(line_.size(), Run_Style_Of(text_, styles_.Cmt));
    return line_.size();
  }

  // Two quotation marks within a literal end one and begin the next: the same for colours.
  [[nodiscard]] std::size_t String_End(std::size_t at) const {
    const std::size_t quote = line_.find('"', at + 1);
    return quote == npos ? line_.size() : quote + 1;
  }

  /// End of the number that begins here, or `at` if none does.
  [[nodiscard]] std::size_t Number_End(std::size_t at) const {
    const char next = at + 1 < line_.size() ? line_[at + 1] : '\0';
    if (line_[at] == '&' && (next == 'H' || next == 'O')) return Name_End(line_, at + 1);
    if (!Is_Digit(line_[at]) && !(line_[at] == '.' && Is_Digit(next))) return at;
    while (at < line_.size() && (Is_Name_Character(line_[at]) || line_[at] == '.')) ++at;
    return at;
  }

  void Put_Other(std::size_t at, std::size_t end, const Run_Style& style) {
    before_ = line_.substr(at, end - at);
    if (first_.empty()) first_ = before_;
    out_.Put_To(end, style);
  }

  std::size_t Word(std::size_t at) {
    const std::size_t end = Name_End(line_, at);
    const std::string_view word = line_.substr(at, end - at);
    const bool blank_behind = end == line_.size() || line_[end] == ' ';
    if (first_.empty() && word == "Rem" && blank_behind) return Comment();

    // A word behind a dot is a member of an object, also where it looks like a control word.
    const bool member = at > 0 && (line_[at - 1] == '.' || line_[at - 1] == '!');
    const std::string_view first = first_.empty() ? word : first_;
    const Text_Style* style = &styles_.Nam;
    if (!member && Set_Eff_Cwd(first, before_, word, Next_Word(end))) {
      style = &styles_.Cwd;
    } else if (keywords_.Has(word)) {
      style = &styles_.Oth;
    }
    first_ = first;
    before_ = word;
    out_.Put_To(end, Run_Style_Of(text_, *style));
    return end;
  }

  [[nodiscard]] std::string_view Next_Word(std::size_t at) const {
    const std::size_t begin = std::min(line_.find_first_not_of(' ', at), line_.size());
    return line_.substr(begin, Name_End(line_, begin) - begin);
  }

  Rich_Text& text_;
  const Text_Styles& styles_;
  const service::Keywords& keywords_;
  std::string_view line_;
  Line_Writer out_;
  std::string_view first_, before_;  ///< first token of the statement, and the last one so far
};

/// The style of a line that is a comment as a whole; its mark is taken off.
const Text_Style* Comment_Style(const Text_Styles& styles, std::string_view& line) {
  if (line.size() > kCmt_Mark.size()) {
    const std::string_view mark = line.substr(line.size() - kCmt_Mark.size() - 1);
    const char digit = mark.back();
    if (mark.starts_with(kCmt_Mark) && digit >= '0' && digit <= '2') {
      line.remove_suffix(mark.size());
      return digit == '1' ? &styles.Em1 : digit == '2' ? &styles.Em2 : &styles.Cmt;
    }
  }
  return service::Trim_Left(line).starts_with('\'') ? &styles.Cmt : nullptr;
}

/// Tags and indent marks of a line of a block.
std::vector<Mark> Block_Marks(std::string_view line, const Run_Style& tag,
                              const Run_Style& indent) {
  std::vector<Mark> marks;
  bool quoted = false, comment = false;
  for (std::size_t at = 0; at < line.size();) {
    const std::string_view rest = line.substr(at);
    const bool code = !quoted && !comment;
    std::size_t size = Head_Of(rest, kTags).size();
    if (size > 0) {
      marks.push_back({at, at + size, tag});
    } else if (code && rest.starts_with(kComment_Arrow)) {
      size = kComment_Arrow.size();
      marks.push_back({at, at + size, indent});
      comment = true;
    } else if (size = code ? Head_Of(rest, kIndent_Marks).size() : 0; size > 0) {
      marks.push_back({at, at + size, indent});
    } else {
      quoted ^= rest.front() == '"' && !comment;
      comment |= rest.front() == '\'' && !quoted;
      size = 1;
    }
    at += size;
  }
  return marks;
}

}  // namespace

Text_Styles::Text_Styles(const service::Settings& settings) {
  const auto read = [&](std::string_view name) {
    const auto field = [&](std::string_view what) { return fmt::format("{}{}", name, what); };
    return Text_Style{settings.Number(field("Clr")), settings.Flag(field("Bld")),
                      settings.Flag(field("Itl")), settings.Flag(field("Und"))};
  };
  Txt = read("Txt");
  Mdl = read("Mdl");
  Mem = read("Mem");
  Lin = read("Lin");
  Cmt = read("Cmt");
  Em1 = read("Em1");
  Em2 = read("Em2");
  Nam = read("Nam");
  Oth = read("Oth");
  Cwd = read("Cwd");
  Hit = read("Hit");
  Tag = read("Tag");
  Idt = read("Idt");
  Id2 = {.colour = settings.Number("IdtClr2")};
  Add = read("Add");
  Del = read("Del");
  Upd = read("Upd");
}

Run_Style Run_Style_Of(Rich_Text& text, const Text_Style& style) {
  // Numbers of system colours have the highest bit set; there is no such colour here either.
  const bool coloured = style.colour >= 0 && style.colour < kNo_Colour;
  return {coloured ? text.Set_RTx_CIx(style.colour) : kBase_Colour, style.und, style.bld, style.itl,
          false};
}

void Set_KWd_Lin(Rich_Text& text, const Text_Styles& styles, const service::Keywords& keywords,
                 std::string_view line, std::span<const service::Text_Span> hits) {
  if (const Text_Style* comment = Comment_Style(styles, line); comment != nullptr) {
    text.Add(line, Run_Style_Of(text, *comment));
    return;
  }
  std::vector<Mark> marks;
  for (const service::Text_Span& hit : hits)
    marks.push_back({hit.at, hit.End(), Run_Style_Of(text, styles.Hit)});
  Statement_Writer(text, styles, keywords, line, marks).Write(0);
}

void Set_KWd_Txt(Rich_Text& text, const Text_Styles& styles, const service::Keywords& keywords,
                 std::string_view block) {
  const Run_Style tag = Run_Style_Of(text, styles.Tag), indent = Run_Style_Of(text, styles.Idt);
  For_Each_Line(
      block,
      [&](std::string_view line) {
        std::size_t begin = 0;  // behind the indent
        while (begin < line.size()) {
          const std::string_view rest = line.substr(begin);
          const std::size_t size = rest.front() == ' ' ? 1 : Head_Of(rest, kIndent_Marks).size();
          if (size == 0) break;
          begin += size;
        }
        std::string_view statement = line.substr(begin);
        const Text_Style* comment = Comment_Style(styles, statement);
        line = line.substr(0, begin + statement.size());
        const std::vector<Mark> marks = Block_Marks(line, tag, indent);
        if (comment == nullptr) {
          Statement_Writer(text, styles, keywords, line, marks).Write(begin);
          return;
        }
        Line_Writer out(text, line, marks);
        out.Put_To(begin, Run_Style_Of(text, styles.Txt));
        out.Put_To(line.size(), Run_Style_Of(text, *comment));
      },
      [&] { text.Add("\r\n"); });
}

void Set_KWd_Dif(Rich_Text& text, const Text_Styles& styles, const service::Keywords& keywords,
                 std::string_view line, std::span<const Dif_Run> runs) {
  const bool is_cut = line.ends_with(kDif_Cut);
  if (is_cut) line.remove_suffix(kDif_Cut.size());
  std::vector<Mark> marks;
  for (const Dif_Run& run : runs) {
    const Text_Style& style = run.kind == Dif_Kind::Added     ? styles.Add
                              : run.kind == Dif_Kind::Deleted ? styles.Del
                                                              : styles.Upd;
    Run_Style over = Run_Style_Of(text, style);
    over.und |= run.kind == Dif_Kind::Added;
    over.stk = run.kind == Dif_Kind::Deleted;
    marks.push_back({run.begin, run.begin + run.size, over, true});
  }
  Statement_Writer(text, styles, keywords, line, marks).Write(0);
  if (is_cut) text.Add(kDif_Cut, Run_Style_Of(text, styles.Cmt));
}

bool Set_Eff_Cwd(std::string_view first, std::string_view before, std::string_view word,
                 std::string_view next) {
  // At the beginning of a statement, be it one within an If of one line.
  const bool in_if = Is_One_Of(first, {"If", "ElseIf", "Else"});
  const bool starts = before.empty() || (in_if && Is_One_Of(before, {"Then", "Else"}));
  const bool pair = Is_One_Of(before, {"End", "Exit"});

  if (word == "End")
    return starts && Is_One_Of(next, {"If", "Select", "With", "Function", "Sub", "Property"});
  if (word == "Exit")
    return starts && Is_One_Of(next, {"Sub", "Function", "Property", "Do", "For"});
  if (Is_One_Of(word, {"Sub", "Function", "Property"})) return pair;
  if (Is_One_Of(word, {"If", "Select", "With"})) return starts || before == "End";
  if (Is_One_Of(word, {"Do", "For"})) return starts || before == "Exit";
  if (Is_One_Of(word, {"ElseIf", "Loop", "Wend", "On"})) return starts;
  if (word == "Then") return Is_One_Of(first, {"If", "ElseIf"});
  if (word == "Else") return starts || in_if || before == "Case";
  if (word == "Case") return starts || before == "Select";
  if (word == "Each") return before == "For";
  if (Is_One_Of(word, {"To", "In"})) return first == "For";
  if (word == "While") return starts || Is_One_Of(before, {"Do", "Loop"});
  if (word == "Next") return starts || before == "Resume";
  if (Is_One_Of(word, {"Error", "Resume", "GoTo"})) return starts || first == "On";
  return false;
}

}  // namespace oru::query
