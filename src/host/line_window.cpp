// SPDX-License-Identifier: MIT
#include "host/line_window.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace oru::host {
namespace {

constexpr int kMost = 4096;  // lines read at once

/// The verdicts on some lines, joined by CR LF, that follow `state`.
std::vector<std::uint8_t> Judge_All(std::string_view text, Line_State state) {
  std::vector<std::uint8_t> verdicts;
  while (true) {
    const std::size_t end = text.find("\r\n");
    verdicts.push_back(Judge_Line(text.substr(0, end), state));
    if (end == std::string_view::npos) return verdicts;
    state = State_Of(verdicts.back());
    text.remove_prefix(end + 2);
  }
}

}  // namespace

Line_Window::Line_Window(const CodeModule& module, int line)
    : module_(module), count_(module.CountOfLines()), first_(line + 1) {
  Read_Before();
}

void Line_Window::Read_Before() {
  // A piece begins where a statement does, so that its lines can be judged.
  int start = std::max(1, first_ - piece_);
  while (start > 1 && Is_Continued(module_.Lines(start - 1, 1))) --start;
  const auto verdicts = Judge_All(module_.Lines(start, first_ - start), Line_State::Fresh);
  verdicts_.insert(verdicts_.begin(), verdicts.begin(), verdicts.end());
  first_ = start;
  piece_ = std::min(piece_ * 2, kMost);
}

void Line_Window::Read_Behind() {
  const int start = first_ + static_cast<int>(verdicts_.size());
  const auto verdicts = Judge_All(module_.Lines(start, std::min(piece_, count_ - start + 1)),
                                  State_Of(verdicts_.back()));
  verdicts_.insert(verdicts_.end(), verdicts.begin(), verdicts.end());
  piece_ = std::min(piece_ * 2, kMost);
}

std::uint8_t Line_Window::Verdict(int line) {
  while (line < first_) Read_Before();
  while (line >= first_ + static_cast<int>(verdicts_.size())) Read_Behind();
  return verdicts_[static_cast<std::size_t>(line - first_)];
}

Line_State Line_Window::Before(int line) {
  return line <= 1 ? Line_State::Fresh : State_Of(Verdict(line - 1));
}

int Line_Window::Next_With(int line, std::uint8_t flags) {
  for (line = std::max(line, 1); line <= count_; ++line)
    if ((Verdict(line) & flags) != 0) return line;
  return 0;
}

int Line_Window::Prev_With(int line, std::uint8_t flags) {
  for (line = std::min(line, count_); line >= 1; --line)
    if ((Verdict(line) & flags) != 0) return line;
  return 0;
}

}  // namespace oru::host
