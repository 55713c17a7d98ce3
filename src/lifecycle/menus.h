// SPDX-License-Identifier: MIT
// The system's commands on the bars of the editor. What is added here, and what listens to it, ends
// with the object: the editor's own bars are then as they were.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/model.h"
#include "lifecycle/command_table.h"
#include "service/services.h"

namespace oru::lifecycle {

/// Runs the command of a handler; no fault may leave it.
using Run_Command = std::function<void(std::string_view handler)>;

class Menus {
 public:
  /// Adds nothing yet. `run` is called for each click.
  Menus(host::VBE& vbe, service::Services& services, Run_Command run);
  ~Menus();
  Menus(const Menus&) = delete;
  Menus& operator=(const Menus&) = delete;

  /// Puts the popup into the tool menu, the entries into the context menu, and the tool bar, named
  /// for the product, beside the editor's; whatever stood there from an earlier call goes first.
  /// False if a bar is missing or refuses: nothing is left of it then, the user has been told, and
  /// `Services::Unl_Req` is set.
  [[nodiscard]] bool Add_Menu();
  /// Takes everything away again. What somebody else has removed already is passed over.
  void Del_Menu() noexcept;

 private:
  /// A control that stands on one of the editor's own bars.
  struct Added {
    std::string_view menu;  ///< in the menu bar; "" for the context menu
    const host::CommandBarControl* control;
    std::string_view caption;
  };
  void Add_All();
  void Add_Popup();
  void Add_Context();
  void Add_Tool_Bar();
  /// Adds a control at the end of an editor's bar and notes it.
  [[nodiscard]] host::CommandBarControl& Add_Noted(std::string_view menu, host::ControlType type,
                                                   std::string_view caption);
  void Add_Entries(host::CommandBar& bar, Place where);
  void Connect(host::CommandBarControl& button, std::string_view handler);
  void Remove(const Added& added);

  host::VBE& vbe_;
  service::Services& services_;
  Run_Command run_;
  std::vector<std::unique_ptr<host::CommandBarEvents>> events_;
  std::vector<Added> added_;
  const host::CommandBar* tool_bar_ = nullptr;
  std::string tool_bar_name_;
};

}  // namespace oru::lifecycle
