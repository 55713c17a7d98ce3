// SPDX-License-Identifier: MIT
// The code of one component in the in-memory editor, with its pane. Reads cost no more than the
// text they return; `ProcOfLine` and its kin cost about the same before and behind an edit. Writes
// keep to the editor's limits and refuse, with nothing done, what goes beyond them; a text that is
// loaded may be of any size.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/code_lines.h"
#include "host/memory_window.h"
#include "host/model.h"
#include "host/procedure_map.h"

namespace oru::host {

constexpr int kVisible_Lines = 40;  ///< lines a pane shows

class Memory_Module;

class Memory_Pane final : public CodePane {
 public:
  Memory_Pane(Memory_Module& module, Window_Desk& desk, std::function<std::string()> caption);

  [[nodiscard]] class CodeModule& CodeModule() override;
  [[nodiscard]] class Window& Window() override { return window_; }
  [[nodiscard]] Selection GetSelection() const override;
  /// A selection whose end comes before its start is turned round.
  void SetSelection(const Selection& selection) override;
  [[nodiscard]] int TopLine() const override;
  void Set_TopLine(int line) override;
  [[nodiscard]] int CountOfVisibleLines() const override { return kVisible_Lines; }
  void Show() override { window_.SetFocus(); }

  /// `added` lines took the place of `removed` ones from `line` on: what lies behind moves along.
  void Follow_Edit(int line, int removed, int added);

 private:
  [[nodiscard]] int Clamp_Line(int line) const;
  [[nodiscard]] int Clamp_Column(int line, int column) const;

  Memory_Module& module_;
  Memory_Window window_;
  Selection selection_;
  int top_line_ = 1;
};

class Memory_Module final : public CodeModule {
 public:
  Memory_Module(Window_Desk& desk, std::string text, std::function<std::string()> caption);

  [[nodiscard]] int CountOfLines() const override { return lines_.Count(); }
  [[nodiscard]] int CountOfDeclarationLines() const override { return map_.Declaration_End(); }
  [[nodiscard]] std::string Lines(int start, int count) const override;
  [[nodiscard]] ProcAtLine ProcOfLine(int line) const override;
  [[nodiscard]] int ProcStartLine(std::string_view name, ProcKind kind) const override;
  [[nodiscard]] int ProcBodyLine(std::string_view name, ProcKind kind) const override;
  [[nodiscard]] int ProcCountLines(std::string_view name, ProcKind kind) const override;
  [[nodiscard]] bool Find(std::string_view target, Selection& range, bool whole_word,
                          bool match_case, bool pattern) const override;
  void InsertLines(int line, std::string_view text) override;
  void DeleteLines(int line, int count = 1) override;
  void ReplaceLine(int line, std::string_view text) override;
  void AddFromString(std::string_view text) override;
  [[nodiscard]] class CodePane& CodePane() override;

  /// Takes a whole text instead of the one held, of any size; counts as no write.
  void Load(std::string text);
  /// Number of writes so far.
  [[nodiscard]] std::uint64_t Edit_Count() const { return writes_; }
  /// One line without its line end; good until the next write. The line must exist.
  [[nodiscard]] std::string_view Line(int line) const { return lines_.Line(line); }

 private:
  [[nodiscard]] Procedure_Extent Extent(std::string_view name, ProcKind kind) const;
  void Write(int line, int removed, std::string_view text);

  Code_Lines lines_;
  Procedure_Map map_{lines_};
  Memory_Pane pane_;
  std::uint64_t writes_ = 0;
};

}  // namespace oru::host
