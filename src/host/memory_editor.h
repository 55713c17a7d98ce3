// SPDX-License-Identifier: MIT
// The in-memory editor: stands behind the object model over module texts held in memory, and
// behaves as the real editor does, with panes, windows, bars and events. It owns everything it
// hands out; pointers stay good until the component is removed, the project is closed, or the
// editor ends.
#pragma once

#include <memory>
#include <string>

#include "host/memory_bars.h"
#include "host/memory_project.h"
#include "host/model.h"

namespace oru::host {

class Memory_Editor final : public VBE {
 public:
  Memory_Editor();
  ~Memory_Editor() override;

  /// Adds a project and makes it the active one. `host_file` is the path of the file that holds it
  /// and gives the captions of the main window and of the project's windows.
  Memory_Project& Add_Project(std::string name, std::string host_file);
  /// Ends a project with all it owns; if it was the active one, the last of the others becomes it.
  void Close_Project(const Memory_Project& project);
  /// Null: projects may be there, but none is in work.
  void Set_Active(Memory_Project* project);
  /// Text shown in brackets behind the main caption: "", "実行中" or "中断".
  void Set_Mode(std::string mode);
  /// The bars with what they recorded.
  [[nodiscard]] Memory_Command_Bars& Bars();

  // VBE. The active window is the visible one in front, the active pane the one inside it.
  [[nodiscard]] VBProject* ActiveVBProject() override;
  [[nodiscard]] class VBProjects& VBProjects() override;
  [[nodiscard]] CodePane* ActiveCodePane() override;
  [[nodiscard]] class CodePanes& CodePanes() override;
  [[nodiscard]] class Windows& Windows() override;
  [[nodiscard]] Window* ActiveWindow() override;
  /// "Visual Basic - Book1.xlsm [実行中] - [Module1 (コード)]": the file of the active project, the
  /// mode if there is one, and the window in front if it is maximised.
  [[nodiscard]] Window& MainWindow() override;
  [[nodiscard]] class CommandBars& CommandBars() override;
  [[nodiscard]] class Events& Events() override;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace oru::host
