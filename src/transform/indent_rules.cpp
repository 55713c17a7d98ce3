// SPDX-License-Identifier: MIT
#include "transform/indent_rules.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "analyser/reader.h"
#include "service/text.h"

namespace oru::transform {

namespace {

using service::Trim;
using service::Trim_Left;
using service::Trim_Right;

constexpr auto npos = std::string_view::npos;

constexpr std::array<std::string_view, 6> kOpeners{"If", "Select", "For", "Do", "While", "With"};
constexpr std::array<std::string_view, 3> kEnds{"If", "Select", "With"};
constexpr std::array<std::string_view, 3> kClosers{"Next", "Loop", "Wend"};
// `Else:` and `Case:` are in no set. Kept: such a line holds a statement of its own.
constexpr std::array<std::string_view, 3> kElse_Likes{"Else", "ElseIf", "Case"};
constexpr std::string_view kDeclarations = " Dim Static Const ";

template <std::size_t N>
bool Is_One_Of(const std::array<std::string_view, N>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

std::size_t Leading_Blanks(std::string_view line) {
  return std::min(line.find_first_not_of(' '), line.size());
}

// Purely textual, and kept so: `y=1:z=2` is a label line, and what stands behind a label is not
// looked at. Where a blank or an apostrophe comes first there is no label.
bool Is_Label_Line(std::string_view text) {
  const std::size_t colon = text.find(':');
  return colon != npos && text.substr(0, colon).find_first_of("' ") == npos;
}

// A statement without the line number in front of it that no colon follows.
std::string_view Without_Number(std::string_view code) {
  const std::size_t end = code.find_first_not_of("0123456789");
  if (end == 0 || end == npos || code[end] != ' ') return code;
  return Trim_Left(code.substr(end));
}

enum class Class { Plain, Opener, Closer, Else_Like };

Class Class_Of(std::string_view code, std::string_view word) {
  if (Is_One_Of(kOpeners, word)) {
    if (word != "If") return Class::Opener;
    // A continued line may begin with the word: it must count before it is indented as well.
    const std::size_t blank = code.find_last_of(" \n");
    return blank != npos && code.substr(blank + 1) == "Then" ? Class::Opener : Class::Plain;
  }
  if (word == "End") {
    code.remove_prefix(std::min(word.size() + 1, code.size()));
    return Is_One_Of(kEnds, service::Take_Word(code)) ? Class::Closer : Class::Plain;
  }
  if (Is_One_Of(kClosers, word)) return Class::Closer;
  return Is_One_Of(kElse_Likes, word) ? Class::Else_Like : Class::Plain;
}

// The lines of one statement.
struct Statement {
  std::size_t First = 0, Count = 0;
};

class Indenter {
 public:
  Indenter(std::span<const std::string> lines, std::size_t base, const Indent_Options& options)
      : lines_(lines), base_(base), options_(options) {
    out_.Lines.reserve(lines.size());
  }

  Indented Run() {
    Statement statement;
    for (const std::string& line : lines_) {
      ++statement.Count;
      if (Trim_Right(line).ends_with(" _")) continue;
      if (!Rev_Idt_Lop(statement)) {
        out_.Too_Deep = statement.First;
        out_.Lines.clear();
        return std::move(out_);
      }
      statement = {statement.First + statement.Count, 0};
    }
    Put_Pending(false);
    // Nobody knows how a statement that is still open goes on.
    for (const std::string& line : lines_.subspan(statement.First)) out_.Lines.push_back(line);
    return std::move(out_);
  }

 private:
  // Takes one statement; false if it opens one block too many.
  bool Rev_Idt_Lop(const Statement& statement) {
    const std::string_view text = Trim(Text_Of(statement));
    if (text.empty() || Is_Label_Line(text)) {
      Put_Pending(false);
      Set_Idt_Spc(statement, false);
      return true;
    }
    if (text.front() == '\'') {
      pending_.push_back(statement);
      return true;
    }
    const std::string_view code = Without_Number(Code_Of(text));
    const std::string_view word = code.substr(0, code.find(' '));
    const Class kind = Class_Of(code, word);
    // Any part of the literal counts as a declaration, a variable `i` too. Kept: code that was laid
    // out this way would move otherwise.
    if (!started_) started_ = options_.Rev_Dec || kDeclarations.find(word) == npos;
    if (kind == Class::Opener) {
      if (depth_ == kMost_Depth) return false;
      levels_[depth_ + 1] = levels_[depth_] + (word == "Select" ? 2 : 1);
      ++depth_;
    }
    const bool keyword = kind != Class::Plain;
    if (keyword) behind_case_ = word == "Case";
    Put_Pending(keyword);
    Set_Idt_Spc(statement, keyword);
    // One closer too many does no harm.
    if (kind == Class::Closer && depth_ > 0) --depth_;
    return true;
  }

  // Puts a statement out. A keyword stands at the level of its block, all else one level in.
  void Set_Idt_Spc(const Statement& statement, bool keyword) {
    const auto lines = lines_.subspan(statement.First, statement.Count);
    const std::string& first = lines.front();
    if (lines.size() == 1 && Trim(first).empty()) {
      // The body's first line must not look like nothing to what takes the text.
      out_.Lines.emplace_back(out_.Lines.empty() ? "\t" : "");
      return;
    }
    const bool stays = options_.Labels == Label_Lines::Stay && !first.starts_with(' ') &&
                       Is_Label_Line(Trim(first));
    if ((depth_ == 0 && !started_) || stays || Trim_Left(first).starts_with("'''")) {
      out_.Lines.insert(out_.Lines.end(), lines.begin(), lines.end());
      return;
    }
    const std::size_t depth = keyword && depth_ > 0 ? depth_ - 1 : depth_;
    const std::size_t level = levels_[depth] + (keyword && behind_case_ ? 1 : 0);
    const std::size_t column = (level + 1) * static_cast<std::size_t>(options_.Idt_Cnt) + base_;
    const std::size_t first_blanks = Leading_Blanks(Without_Base(first));
    for (const std::string& line : lines) {
      const std::string_view left = Without_Base(line);
      const std::string_view text = Trim(left);
      std::string& put = out_.Lines.emplace_back();
      if (text.empty()) continue;
      // What a continued line had beyond the statement's first line stays.
      const std::size_t blanks = Leading_Blanks(left);
      const std::size_t more = blanks > first_blanks ? blanks - first_blanks : 0;
      put.reserve(column + more + text.size());
      put.append(column + more, ' ').append(text);
    }
  }

  // A line that has any blank in front of it loses the whole base indent, even where that takes
  // characters of its text. Kept: it is the guard of changes that refuses such a line.
  [[nodiscard]] std::string_view Without_Base(std::string_view line) const {
    const std::size_t blanks = Leading_Blanks(line);
    if (base_ == 0 || blanks == 0) return line;
    if (blanks >= base_) return line.substr(base_);
    return line.substr(
        service::Byte_Of_Chr(line, service::Chr_Count{static_cast<std::int64_t>(base_) + 1}));
  }

  // Comments wait for the next statement and are put where it goes.
  void Put_Pending(bool keyword) {
    for (const Statement& comment : pending_) Set_Idt_Spc(comment, keyword);
    pending_.clear();
  }

  // Good until the next call.
  std::string_view Text_Of(const Statement& statement) {
    if (statement.Count == 1) return lines_[statement.First];
    joined_.clear();
    for (const std::string& line : lines_.subspan(statement.First, statement.Count))
      joined_.append(joined_.empty() ? "" : "\r\n").append(line);
    return joined_;
  }
  std::string_view Code_Of(std::string_view text) {
    if (text.find('\'') == npos) return text;
    code_.assign(text);
    (void)analyser::Sep_Comment(code_);
    return code_;
  }

  std::span<const std::string> lines_;
  std::size_t base_;
  Indent_Options options_;
  Indented out_;
  std::vector<Statement> pending_;
  // Levels of all blocks up to a depth. A `Select` has two, so that its `Case` stand one in.
  std::array<std::size_t, kMost_Depth + 1> levels_{};
  std::size_t depth_ = 0;
  bool behind_case_ = false;  // the last keyword was a `Case`
  bool started_ = false;      // the declarations at the beginning are over, or count too
  std::string joined_, code_;
};

}  // namespace

Indented Indent_Body(std::span<const std::string> body, std::size_t base,
                     const Indent_Options& options) {
  return Indenter(body, base, options).Run();
}

}  // namespace oru::transform
