// SPDX-License-Identifier: MIT
#include "query/control_rows.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "analyser/reader.h"
#include "query/statement_text.h"
#include "service/text.h"

namespace oru::query {

using service::Trim;

namespace {

constexpr auto npos = std::string_view::npos;

bool Is_In(std::string_view word, std::string_view words) {
  return !word.empty() && words.find(Padded(word)) != npos;
}

// The words that decide what a part of a statement is.
struct Words {
  explicit Words(std::string_view part) {
    const std::vector<std::string_view> all = service::Split(part, " ");
    first = all.front();
    if (all.size() > 1) second = all[1];
    last = all.back();
  }
  std::string_view first, second, last;
};

// Depth of nesting, moved by the parts of statements.
class Depth {
 public:
  // Moves the depth for one part; the depth at which a row that begins with it stands.
  int Pass(const Words& words) {
    if (words.first == "End" && words.second == "Select") {
      Fall(1 + (raised_.empty() ? 0 : raised_.back()));
      if (!raised_.empty()) raised_.pop_back();
      return depth_;
    }
    if (Is_In(words.first, " Next Loop Wend ") ||
        (words.first == "End" && Is_In(words.second, " If With "))) {
      Fall(1);
      return depth_;
    }
    if (words.first == "Case") {
      // The first one goes in from its Select, and what stands below it goes in from the Case.
      if (!raised_.empty() && raised_.back() == 0) {
        raised_.back() = 1;
        return depth_++;
      }
      return std::max(depth_ - 1, 0);
    }
    if (words.first == "Else" || words.first == "ElseIf") return std::max(depth_ - 1, 0);
    if (words.first == "If") return words.last == "Then" ? depth_++ : depth_;
    if (words.first == "Select") {
      raised_.push_back(0);
      return depth_++;
    }
    if (Is_In(words.first, " For Do While With ")) return depth_++;
    return depth_;
  }
  [[nodiscard]] int Now() const { return depth_; }

 private:
  void Fall(int levels) { depth_ = std::max(depth_ - levels, 0); }

  int depth_ = 0;
  std::vector<int> raised_;  // of each open Select: 1 once a Case has raised the depth
};

class Outline {
 public:
  Outline(int member_line, const Control_Cond& cond, const Calls_Of& calls)
      : member_line_(member_line), cond_(cond), calls_(calls), element_(cond.Ele) {}

  void Take(int line, const std::vector<std::string_view>& lines) {
    std::string statement;
    for (const std::string_view one : lines)
      statement.append(statement.empty() ? "" : "\r\n").append(one);
    const bool skipped = cond_.Rng == 1 && line + static_cast<int>(lines.size()) - 1 < cond_.Lin;
    if (Trim(statement).empty()) return Blank(line, skipped);
    blanks_ = 0;
    Control_Row row;
    row.Lno = line;
    row.Lines = Without_Indent(lines);
    if (Is_Comment(statement)) return Comment(std::move(row), statement, skipped);
    Code(std::move(row), statement, skipped);
  }
  [[nodiscard]] std::vector<Control_Row> Rows() { return std::move(rows_); }

 private:
  static std::vector<std::string> Without_Indent(const std::vector<std::string_view>& lines) {
    std::size_t indent = npos;
    for (const std::string_view line : lines)
      if (const std::size_t at = line.find_first_not_of(" \t"); at != npos)
        indent = std::min(indent, at);
    std::vector<std::string> cut;
    cut.reserve(lines.size());
    for (const std::string_view line : lines)
      cut.emplace_back(line.substr(std::min(indent == npos ? 0 : indent, line.size())));
    return cut;
  }

  void Add(Control_Row row, int depth) {
    if (cond_.Lev > 0 && depth >= cond_.Lev) return;
    if (!cond_.Sel && !cond_.Ele.empty() &&
        std::none_of(row.Lines.begin(), row.Lines.end(),
                     [&](const std::string& line) { return !element_.Spans(line).empty(); }))
      return;
    row.Depth = depth;
    rows_.push_back(std::move(row));
  }

  void Blank(int line, bool skipped) {
    pending_.clear();
    // A run of blank lines is one row, unless everything is shown.
    if (!skipped && cond_.Blk && (cond_.Sta == kEverything || blanks_ == 0)) {
      Control_Row row;
      row.kind = Control_Row::Kind::Blank;
      row.Lno = line;
      row.Lines = {""};
      Add(std::move(row), depth_.Now());
    }
    ++blanks_;
  }

  void Comment(Control_Row row, std::string_view statement, bool skipped) {
    row.kind = Control_Row::Kind::Comment;
    if (Is_Commented_Out(statement)) {
      if (!skipped && cond_.COt && cond_.Sta == kEverything) Add(std::move(row), depth_.Now());
      return;
    }
    if (skipped || cond_.Sta == kCalls) return;
    const std::string_view text = service::Trim_Right(statement);
    row.Mark = text.ends_with("①") ? 1 : text.ends_with("②") ? 2 : 0;
    const std::size_t own =
        row.Mark == 0 ? static_cast<std::size_t>(kOther) : static_cast<std::size_t>(row.Mark) + 1;
    if (cond_.Cmt[own])
      Add(std::move(row), depth_.Now());
    else if (row.Mark == 0 && cond_.Cmt[kAbove_Control])
      pending_.push_back(std::move(row));
  }

  void Code(Control_Row row, std::string_view statement, bool skipped) {
    std::string code = Joined(statement);
    (void)analyser::Sep_Comment(code);
    analyser::Rev_Cst_Val(code);
    const bool label = code.ends_with(':') && code.find(' ') == npos;
    const bool directive = code.starts_with('#');
    std::string tested = code;
    if (!label) Take_Off_Label(tested);

    bool control = code.ends_with(':') || (directive && cond_.Directives);
    int depth = depth_.Now();
    bool first = true;
    for (const std::string_view part : service::Split(tested, ": ")) {
      const Words words{Trim(part)};
      const int stands = depth_.Pass(words);
      if (first) depth = stands;
      first = false;
      control = control || Is_Control(words);
    }
    if (Is_Border(tested)) depth = 0;
    if (skipped) {
      pending_.clear();
      return;
    }
    const std::vector<std::string> targets = calls_(row.Lno - member_line_ + 1);
    const bool call = !targets.empty() && !Is_Border(tested);
    if (control && cond_.Sta != kCalls)
      for (Control_Row& comment : pending_) Add(std::move(comment), depth);
    pending_.clear();
    const bool shown = cond_.Sta == kEverything || (cond_.Sta == kControls && control) ||
                       (call && (cond_.Sta == kCalls || (cond_.Sta == kControls && cond_.Ref)));
    if (!shown) return;
    if (cond_.RCm && call)
      std::copy_if(targets.begin(), targets.end(), std::back_inserter(row.Calls),
                   [](const std::string& comment) { return !comment.empty(); });
    Add(std::move(row), depth);
  }

  // A number or a name with ":" in front of a statement.
  static void Take_Off_Label(std::string& code) {
    const std::size_t end = code.find_first_of(" :");
    if (end == std::string::npos) return;
    const std::string_view word = std::string_view(code).substr(0, end);
    const bool number = word.find_first_not_of("0123456789") == npos && !word.empty();
    const bool named = code[end] == ':' && end + 1 < code.size() && code[end + 1] == ' ' &&
                       word != "Else" && word != "Case";
    if (number || named) code = std::string(Trim(std::string_view(code).substr(end + 1)));
  }

  // The header and the end of a procedure.
  static bool Is_Border(std::string_view code) {
    const std::vector<std::string_view> words = service::Split(code, " ");
    if (words.size() > 1 && words[0] == "End") return Is_In(words[1], " Sub Function Property ");
    for (const std::string_view word : words) {
      if (Is_In(word, " Sub Function Property ")) return true;
      if (!Is_In(word, " Public Private Friend Static ")) return false;
    }
    return false;
  }

  [[nodiscard]] bool Is_Control(const Words& words) const {
    if (Is_In(words.first, " If Select For Do While With Next Loop Wend Else ElseIf Case "))
      return true;
    if (words.first == "End") return Is_In(words.second, " If Select With Sub Function Property ");
    if (words.first == "Exit") return Is_In(words.second, " Sub Function Property ");
    if (words.first == "On" || words.first == "GoTo") return cond_.Jumps;
    return Is_In(words.first, " Sub Function Property ") ||
           (Is_In(words.first, " Public Private Friend Static ") &&
            Is_In(words.second, " Sub Function Property Static "));
  }

  int member_line_;
  const Control_Cond& cond_;
  const Calls_Of& calls_;
  Element element_;
  Depth depth_;
  std::vector<Control_Row> rows_, pending_;
  int blanks_ = 0;
};

}  // namespace

Element::Element(std::string_view word) {
  if (!word.empty()) word_.emplace(word, service::Compare::Text);
}

std::vector<service::Text_Span> Element::Spans(std::string_view line) const {
  std::vector<service::Text_Span> spans;
  if (!word_) return spans;
  const std::string padded = Padded(line);
  for (std::size_t at = 0; const auto span = word_->Find(padded, at);) {
    if (Is_Word_At(padded, *span, kDelimiters)) spans.push_back({span->at - 1, span->size});
    at = span->End();
  }
  return spans;
}

std::vector<Control_Row> Get_Control_Rows(const std::vector<std::string_view>& lines,
                                          int first_line, int member_line, const Control_Cond& cond,
                                          const Calls_Of& calls) {
  Outline outline(member_line, cond, calls);
  std::vector<std::string_view> statement;
  int begin = first_line;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (statement.empty()) begin = first_line + static_cast<int>(i);
    statement.push_back(lines[i]);
    if (service::Trim_Right(lines[i]).ends_with(" _") && i + 1 < lines.size()) continue;
    outline.Take(begin, statement);
    statement.clear();
  }
  return outline.Rows();
}

}  // namespace oru::query
