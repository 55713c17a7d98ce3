// SPDX-License-Identifier: MIT
#include "app/cli/line_diff.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "provider/line_match.h"
#include "query/safe_text.h"
#include "service/text.h"

namespace oru::app {

namespace {

constexpr std::size_t kContext = 3;
constexpr std::string_view kBold = "\x1B[1m", kRed = "\x1B[31m", kGreen = "\x1B[32m",
                           kCyan = "\x1B[36m", kPlain = "\x1B[0m";

struct Row {
  char mark;
  std::string_view line;
};

std::string Safe(std::string_view text) {
  std::string safe;
  query::For_Each_Safe(
      text, [&](std::string_view stretch) { safe += stretch; },
      [&] { safe += query::kReplacement; });
  return safe;
}

// What reads a patch takes the name of a file up to its first blank, unless a tab ends it.
std::string Name_Line(std::string_view mark, std::string_view name) {
  const std::string shown = service::Without_Controls(name);
  return fmt::format("{} {}{}", mark, shown, shown.find(' ') == std::string::npos ? "" : "\t");
}

// Both texts as one list of rows; in a change the old lines come first.
std::vector<Row> Rows_Of(std::span<const std::string_view> old,
                         std::span<const std::string_view> now) {
  const std::vector<std::size_t> pairs = provider::Match_Lines(old, now);
  std::vector<Row> rows;
  std::size_t from_old = 0, from_now = 0;
  const auto change_up_to = [&](std::size_t old_end, std::size_t now_end) {
    for (; from_old < old_end; ++from_old) rows.push_back({'-', old[from_old]});
    for (; from_now < now_end; ++from_now) rows.push_back({'+', now[from_now]});
  };
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (pairs[i] == provider::kNo_Line) continue;
    change_up_to(pairs[i], i);
    rows.push_back({' ', now[i]});
    ++from_old;
    ++from_now;
  }
  change_up_to(old.size(), now.size());
  return rows;
}

class Diff_Writer {
 public:
  Diff_Writer(const std::vector<Row>& rows, Diff_For reader) : rows_(rows), reader_(reader) {}

  std::string Write(std::string_view name) {
    for (std::size_t at = Next_Change(0); at < rows_.size();) {
      if (out_.empty()) {
        Put(kBold, Name_Line("---", name));
        Put(kBold, Name_Line("+++", name));
      }
      const std::size_t begin = at - std::min(at, kContext);
      std::size_t end = at + 1;  // behind the last change of the hunk
      for (at = Next_Change(end); at < rows_.size() && at - end <= 2 * kContext;
           at = Next_Change(end))
        end = at + 1;
      Hunk(begin, std::min(end + kContext, rows_.size()));
    }
    return std::move(out_);
  }

 private:
  [[nodiscard]] std::size_t Next_Change(std::size_t from) const {
    while (from < rows_.size() && rows_[from].mark == ' ') ++from;
    return from;
  }

  void Hunk(std::size_t begin, std::size_t end) {
    for (; counted_ < begin; ++counted_) Count(rows_[counted_].mark);
    const std::size_t old_before = old_, now_before = now_;
    for (; counted_ < end; ++counted_) Count(rows_[counted_].mark);
    // A side without lines is named by the line before it.
    const auto range = [](std::size_t before, std::size_t count) {
      return fmt::format("{},{}", count == 0 ? before : before + 1, count);
    };
    Put(kCyan, fmt::format("@@ -{} +{} @@", range(old_before, old_ - old_before),
                           range(now_before, now_ - now_before)));
    for (std::size_t i = begin; i < end; ++i) {
      const Row& row = rows_[i];
      Put(row.mark == '-'   ? kRed
          : row.mark == '+' ? kGreen
                            : std::string_view(),
          std::string(1, row.mark).append(row.line));
    }
  }
  void Count(char mark) {
    old_ += mark != '+' ? 1 : 0;
    now_ += mark != '-' ? 1 : 0;
  }
  void Put(std::string_view colour, const std::string& line) {
    const bool coloured = reader_ == Diff_For::Coloured_Terminal && !colour.empty();
    if (coloured) out_.append(colour);
    out_.append(reader_ == Diff_For::Patch ? line : Safe(line));
    if (coloured) out_.append(kPlain);
    out_.append("\n");
  }

  const std::vector<Row>& rows_;
  Diff_For reader_;
  std::string out_;
  std::size_t counted_ = 0, old_ = 0, now_ = 0;  // rows counted, and lines of both sides in them
};

}  // namespace

std::string Unified_Diff(std::span<const std::string_view> old,
                         std::span<const std::string_view> now, std::string_view name,
                         Diff_For reader) {
  return Diff_Writer(Rows_Of(old, now), reader).Write(name);
}

}  // namespace oru::app
