// SPDX-License-Identifier: MIT
#include "host/memory_module.h"

#include <algorithm>
#include <utility>

#include "host/line_find.h"
#include "service/text.h"

namespace oru::host {
namespace {

using service::Chr_Count;

[[noreturn]] void Refuse(int number, const char* why) {
  throw Host_Error(number, why);
}

/// Characters of the editor; a line of 50 MB has fewer than an int holds.
int Characters(std::string_view line) {
  return static_cast<int>(To_Int(service::Len_Chr(line)));
}

/// The number of lines a written text makes; refuses a line that is too long.
int Check_Written(std::string_view text) {
  int lines = 0;
  while (true) {
    ++lines;
    // The library's search for one of two characters takes several times as long.
    const auto at =
        std::find_if(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; });
    const std::size_t end =
        at == text.end() ? std::string_view::npos : static_cast<std::size_t>(at - text.begin());
    const std::string_view line = text.substr(0, end);
    if (line.size() > kMost_Characters && Characters(line) > kMost_Characters)
      Refuse(kErr_Bad_Call, "1 行の文字数が上限（1023 文字）を超えるため書き込めません。");
    if (end == std::string_view::npos) return lines;
    std::size_t size = 1;
    if (text.substr(end).starts_with("\r\n")) size = 2;
    if (text.substr(end).starts_with("\r\r\n")) size = 3;
    text.remove_prefix(end + size);
  }
}

}  // namespace

Memory_Module::Memory_Module(Window_Desk& desk, std::string text,
                             std::function<std::string()> caption)
    : pane_(*this, desk, std::move(caption)) {
  lines_.Load(std::move(text));
}

void Memory_Module::Load(std::string text) {
  lines_.Load(std::move(text));
}

std::string Memory_Module::Lines(int start, int count) const {
  if (count == 0) return {};
  if (start < 1 || count < 0 || start > CountOfLines() || count > CountOfLines() - start + 1)
    Refuse(kErr_Subscript, "行番号がモジュールの範囲にありません。");
  return lines_.Join(start, count);
}

ProcAtLine Memory_Module::ProcOfLine(int line) const {
  if (line < 1 || line > CountOfLines())
    Refuse(kErr_Subscript, "行番号がモジュールの範囲にありません。");
  const Line_Header header = map_.At(line);
  return {std::string(header.name), header.kind};
}

Procedure_Extent Memory_Module::Extent(std::string_view name, ProcKind kind) const {
  const auto extent = map_.Find(name, kind);
  if (!extent) Refuse(kErr_No_Procedure, "Sub または Function が定義されていません。");
  return *extent;
}

int Memory_Module::ProcStartLine(std::string_view name, ProcKind kind) const {
  return Extent(name, kind).start;
}

int Memory_Module::ProcBodyLine(std::string_view name, ProcKind kind) const {
  return Extent(name, kind).body;
}

int Memory_Module::ProcCountLines(std::string_view name, ProcKind kind) const {
  return Extent(name, kind).Count();
}

bool Memory_Module::Find(std::string_view target, Selection& range, bool whole_word,
                         bool match_case, bool pattern) const {
  const Line_Finder finder(target, whole_word, match_case, pattern);
  const int count = CountOfLines();
  const int last = range.end_line == -1 ? count : std::min(range.end_line, count);
  if (range.start_line < 1 || range.start_column < 1 || range.end_line < -1 ||
      range.end_column < -1)
    Refuse(kErr_Subscript, "検索範囲が正しくありません。");
  int looked_through = range.start_line;  // lines before this one stand in a run that may hold it
  for (int line = range.start_line; line <= last; ++line) {
    while (line == looked_through) {
      const Code_Lines::Run run = lines_.Run_From(line);
      looked_through = line + run.count;
      if (finder.May_Stand_In(run.text)) break;
      line = looked_through;
      if (line > last) return false;
    }
    const std::string_view text = lines_.Line(line);
    std::size_t from = 0;
    std::size_t to = text.size();
    if (line == range.start_line && range.start_column > 1) {
      if (range.start_column > Characters(text) + 1) continue;
      from = service::Byte_Of_Chr(text, Chr_Count{range.start_column});
    }
    if (line == range.end_line && range.end_column != -1)
      to = service::Byte_Of_Chr(text, Chr_Count{std::int64_t{range.end_column} + 1});
    const auto hit = finder.Find(text, from, to);
    if (!hit) continue;
    range = {line, 1 + Characters(text.substr(0, hit->begin)), line,
             1 + Characters(text.substr(0, hit->end))};
    return true;
  }
  return false;
}

void Memory_Module::Write(int line, int removed, std::string_view text) {
  const int added = Check_Written(text);
  if (added > removed && added - removed > kMost_Lines - CountOfLines())
    Refuse(kErr_Memory, "モジュールの行数が上限（65534 行）を超えるため書き込めません。");
  lines_.Replace(line, removed, text);
  ++writes_;
  pane_.Follow_Edit(line, removed, added);
}

void Memory_Module::InsertLines(int line, std::string_view text) {
  if (line < 1 || line > CountOfLines() + 1)
    Refuse(kErr_Subscript, "行番号がモジュールの範囲にありません。");
  Write(line, 0, text);
}

void Memory_Module::ReplaceLine(int line, std::string_view text) {
  if (line < 1 || line > CountOfLines())
    Refuse(kErr_Subscript, "行番号がモジュールの範囲にありません。");
  Write(line, 1, text);
}

void Memory_Module::DeleteLines(int line, int count) {
  if (line < 1 || count < 0 || line > CountOfLines() || count > CountOfLines() - line + 1)
    Refuse(kErr_Subscript, "行番号がモジュールの範囲にありません。");
  if (count == 0) return;
  lines_.Delete(line, count);
  ++writes_;
  pane_.Follow_Edit(line, count, 0);
}

void Memory_Module::AddFromString(std::string_view text) {
  InsertLines(CountOfDeclarationLines() + 1, text);
}

CodePane& Memory_Module::CodePane() {
  pane_.Window().Set_Visible(true);
  return pane_;
}

Memory_Pane::Memory_Pane(Memory_Module& module, Window_Desk& desk,
                         std::function<std::string()> caption)
    : module_(module), window_(desk, kWindow_Code, this, std::move(caption)) {}

CodeModule& Memory_Pane::CodeModule() {
  return module_;
}

int Memory_Pane::Clamp_Line(int line) const {
  return std::clamp(line, 1, std::max(1, module_.CountOfLines()));
}

int Memory_Pane::Clamp_Column(int line, int column) const {
  const bool exists = line <= module_.CountOfLines();
  return std::clamp(column, 1, exists ? Characters(module_.Line(line)) + 1 : 1);
}

Selection Memory_Pane::GetSelection() const {
  Selection selection = selection_;
  selection.start_line = Clamp_Line(selection.start_line);
  selection.end_line = Clamp_Line(selection.end_line);
  selection.start_column = Clamp_Column(selection.start_line, selection.start_column);
  selection.end_column = Clamp_Column(selection.end_line, selection.end_column);
  if (std::pair(selection.end_line, selection.end_column) <
      std::pair(selection.start_line, selection.start_column)) {
    std::swap(selection.start_line, selection.end_line);
    std::swap(selection.start_column, selection.end_column);
  }
  return selection;
}

void Memory_Pane::SetSelection(const Selection& selection) {
  selection_ = selection;
  selection_ = GetSelection();
}

int Memory_Pane::TopLine() const {
  return Clamp_Line(top_line_);
}

void Memory_Pane::Set_TopLine(int line) {
  top_line_ = Clamp_Line(line);
}

void Memory_Pane::Follow_Edit(int line, int removed, int added) {
  const auto follow = [&](int& at, int* column) {
    if (at >= line + removed) {
      at += added - removed;
    } else if (at >= line + added) {  // its line is gone
      at = line + added;
      if (column != nullptr) *column = 1;
    }
  };
  follow(selection_.start_line, &selection_.start_column);
  follow(selection_.end_line, &selection_.end_column);
  follow(top_line_, nullptr);
}

}  // namespace oru::host
