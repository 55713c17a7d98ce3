// SPDX-License-Identifier: MIT
#include "host/code_change.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <ranges>

#include "host/line_class.h"
#include "service/text.h"

namespace oru::host {

namespace {

constexpr std::string_view kBlanks = " \t";

int Count_Of(const std::vector<std::string>& lines) {
  return static_cast<int>(lines.size());
}

// The line of the module that a user sees when the n-th new line is meant.
int Seen_Line(const Line_Change& change, std::size_t n) {
  const std::size_t last = change.Old.empty() ? 0 : change.Old.size() - 1;
  return change.Line + static_cast<int>(std::min(n, last));
}

std::string Joined_Lines(const std::vector<std::string>& lines) {
  return fmt::format("{}", fmt::join(lines, "\r\n"));
}

// The editor holds a line of nothing but blanks as an empty one.
std::string_view Held(std::string_view line) {
  return line.find_first_not_of(kBlanks) == std::string_view::npos ? std::string_view() : line;
}

std::string_view Between_Blanks(std::string_view line) {
  const std::size_t first = line.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

bool Changes_Nothing(const Line_Change& change) {
  return std::ranges::equal(change.Old, change.New, {}, Held, Held);
}

// Walks over the characters of lines that are no blanks.
class Visible {
 public:
  explicit Visible(const std::vector<std::string>& lines) : lines_(lines) { Pass_Blanks(); }
  [[nodiscard]] bool At_End() const { return line_ == lines_.size(); }
  [[nodiscard]] char Char() const { return lines_[line_][at_]; }
  [[nodiscard]] std::size_t Line() const { return line_; }
  void Next() {
    ++at_;
    Pass_Blanks();
  }

 private:
  void Pass_Blanks() {
    for (; line_ < lines_.size(); ++line_, at_ = 0) {
      at_ = lines_[line_].find_first_not_of(kBlanks, at_);
      if (at_ != std::string::npos) return;
    }
  }
  const std::vector<std::string>& lines_;
  std::size_t line_ = 0, at_ = 0;
};

// The first line of a change that is no longer what was read; 0 if there is none.
int Other_Line(const CodeModule& code, const Line_Change& change) {
  if (change.Old.empty()) return 0;
  const int there = code.CountOfLines() - change.Line + 1;
  if (change.Line < 1 || there < 1) return change.Line;
  const std::string text = code.Lines(change.Line, std::min(there, Count_Of(change.Old)));
  std::string_view rest = text;
  for (int i = 0; i < Count_Of(change.Old); ++i) {
    const std::string& old = change.Old[static_cast<std::size_t>(i)];
    const bool same = i < there && rest.starts_with(old);
    if (same) rest.remove_prefix(old.size());
    if (!same || (!rest.empty() && !rest.starts_with("\r\n"))) return change.Line + i;
    rest.remove_prefix(std::min<std::size_t>(rest.size(), 2));
  }
  return 0;
}

std::string Chk_Read(const CodeModule& code, std::string_view module, const Line_Change& change) {
  if (const int line = Other_Line(code, change); line != 0)
    return fmt::format(
        "「{}」の {} 行目は、読み込んだあとに変更されているため書き換えません。もう一度実行してください。",
        module, line);
  if (change.Line >= 1 && change.Line <= code.CountOfLines() + 1) return {};
  return fmt::format("「{}」に {} 行目がないため書き込めません。", module, change.Line);
}

std::string Chk_Length(std::string_view module, const Line_Change& change) {
  for (std::size_t i = 0; i < change.New.size(); ++i) {
    const std::string& line = change.New[i];
    if (line.size() <= kMost_Characters) continue;
    const auto length = To_Int(service::Len_Chr(line));
    if (length > kMost_Characters)
      return fmt::format(
          "「{}」の {} 行目が {} 文字になり、1 行の上限（1023 文字）を超えるため書き換えません。行を分けてから実行してください。",
          module, Seen_Line(change, i), length);
  }
  return {};
}

// A module beyond the editor's limit takes its lines out, but not back in again.
std::string Chk_Count(const CodeModule& code, std::string_view module,
                      std::span<const Line_Change> changes) {
  std::ptrdiff_t count = code.CountOfLines();
  bool inserts = false;
  for (const Line_Change& change : changes) {
    count += std::ssize(change.New) - std::ssize(change.Old);
    inserts =
        inserts || (!change.New.empty() && (change.Old.size() != 1 || change.New.size() != 1));
  }
  if (!inserts || count <= kMost_Lines) return {};
  return fmt::format(
      "「{}」の {} 行目からは書き換えません。モジュールが {} 行になり、上限（65534 行）を超えます。モジュールを分けてから実行してください。",
      module, changes.front().Line, count);
}

// Counts continuation marks through the lines as they will be.
class Continuations {
 public:
  Continuations(const CodeModule& code, std::string_view module) : code_(code), module_(module) {}

  [[nodiscard]] bool Take(const Line_Change& change) {
    if (!Go_On_To(change.Line)) return false;
    // What stands above and is not part of an earlier change.
    if (run_ == 0)
      for (int line = change.Line - 1; line >= next_ && Is_Continued(code_.Lines(line, 1)); --line)
        ++run_;
    for (std::size_t i = 0; i < change.New.size(); ++i)
      if (!Count(change.New[i], Seen_Line(change, i))) return false;
    next_ = change.Line + Count_Of(change.Old);
    return true;
  }
  [[nodiscard]] bool End() { return Go_On_To(code_.CountOfLines() + 1); }
  [[nodiscard]] std::string Message() const {
    return fmt::format(
        "「{}」の {} 行目で、1 つの文の継続行が上限（{} 行）を超えるため書き換えません。文を分けてから実行してください。",
        module_, refused_, kMost_Continuations);
  }

 private:
  // Old lines, as long as a statement goes on in them.
  bool Go_On_To(int line) {
    for (; run_ > 0 && next_ < line; ++next_)
      if (!Count(code_.Lines(next_, 1), next_)) return false;
    return true;
  }
  bool Count(std::string_view line, int seen) {
    run_ = Is_Continued(line) ? run_ + 1 : 0;
    refused_ = seen;
    return run_ <= kMost_Continuations;
  }

  const CodeModule& code_;
  std::string_view module_;
  int run_ = 0;
  int next_ = 1;  // the first old line behind the changes looked at
  int refused_ = 0;
};

void Put_Lines(CodeModule& code, int line, int removed, const std::vector<std::string>& lines) {
  if (removed == 1 && lines.size() == 1) return code.ReplaceLine(line, lines.front());
  if (removed > 0) code.DeleteLines(line, removed);
  if (!lines.empty()) code.InsertLines(line, Joined_Lines(lines));
}

}  // namespace

std::vector<std::string> Lines_Of(const CodeModule& code, int start, int count) {
  if (count <= 0) return {};
  const std::string text = code.Lines(start, count);
  std::vector<std::string> lines;
  lines.reserve(static_cast<std::size_t>(count));
  for (const std::string_view line : service::Split(text, "\r\n")) lines.emplace_back(line);
  return lines;
}

std::string Chk_Visible(std::string_view module, const Line_Change& change) {
  // Mostly nothing but the blanks around each line has changed.
  if (std::ranges::equal(change.Old, change.New, {}, Between_Blanks, Between_Blanks)) return {};
  Visible was(change.Old), now(change.New);
  while (!was.At_End() && !now.At_End() && was.Char() == now.Char()) {
    was.Next();
    now.Next();
  }
  if (was.At_End() && now.At_End()) return {};
  const std::size_t line = was.At_End() ? change.Old.size() : was.Line();
  return fmt::format(
      "「{}」の {} 行目の文字が失われるか変わるため、書き換えません。この行の字下げを直してから実行してください。",
      module, Seen_Line(change, line));
}

std::string Chk_Change(const CodeModule& code, std::string_view module,
                       std::span<const Line_Change> changes, Keeps keeps) {
  Continuations continuations(code, module);
  if (std::string error = Chk_Count(code, module, changes); !error.empty()) return error;
  for (const Line_Change& change : changes) {
    std::string error = Chk_Read(code, module, change);
    if (error.empty()) error = Chk_Length(module, change);
    if (error.empty() && keeps == Keeps::All_But_Blanks) error = Chk_Visible(module, change);
    if (error.empty() && !continuations.Take(change)) error = continuations.Message();
    if (!error.empty()) return error;
  }
  return continuations.End() ? std::string() : continuations.Message();
}

Change_Result Do_Change(CodeModule& code, std::string_view module,
                        std::span<const Line_Change> changes, Keeps keeps) {
  Change_Result result;
  result.Error = Chk_Change(code, module, changes, keeps);
  if (!result.Ok()) return result;
  int count = code.CountOfLines();
  // From the last one up, so that the numbers of those above stay right.
  for (std::size_t i = changes.size(); i-- > 0;) {
    const Line_Change& change = changes[i];
    if (Changes_Nothing(change)) continue;
    try {
      Put_Lines(code, change.Line, Count_Of(change.Old), change.New);
      result.Changed = true;
      count += Count_Of(change.New) - Count_Of(change.Old);
      continue;
    } catch (const Host_Error& error) {
      result.Error =
          fmt::format("「{}」の {} 行目に書き込めません。{}", module, change.Line, error.what());
    }
    result.Changed = false;
    try {
      // The old lines may be gone already.
      if (code.CountOfLines() < count) Put_Lines(code, change.Line, 0, change.Old);
      for (const Line_Change& done : changes.subspan(i + 1))
        if (!Changes_Nothing(done)) Put_Lines(code, done.Line, Count_Of(done.New), done.Old);
    } catch (const Host_Error&) {
      result.Changed = true;
      result.Error += "元に戻すこともできませんでした。エディタの「元に戻す」を使ってください。";
    }
    return result;
  }
  return result;
}

}  // namespace oru::host
