// SPDX-License-Identifier: MIT
#include "lifecycle/menus.h"

#include <fmt/format.h>

#include <utility>

namespace oru::lifecycle {
namespace {

using host::CommandBar;
using host::CommandBarControl;
using host::ControlType;

// One of the editor's bars, or one of the menus of its menu bar; null if it is not there.
CommandBar* Find_Own_Bar(host::VBE& vbe, std::string_view menu) {
  CommandBar* bar = vbe.CommandBars().Item(menu.empty() ? kContext_Bar : kMenu_Bar);
  if (bar == nullptr || menu.empty()) return bar;
  CommandBarControl* control = bar->Controls().Item(menu);
  return control == nullptr ? nullptr : control->CommandBar();
}

CommandBarControl& Add_Control(CommandBar& bar, ControlType type, std::string_view caption) {
  CommandBarControl& control = bar.Controls().Add(type);
  control.Set_Caption(caption);
  return control;
}

// The bar of a popup, which the editor may fail to give it.
CommandBar& Bar_Of(CommandBarControl& popup) {
  CommandBar* bar = popup.CommandBar();
  if (bar == nullptr) throw host::Host_Error(host::kErr_Bad_Call, "popup without bar");
  return *bar;
}

}  // namespace

Menus::Menus(host::VBE& vbe, service::Services& services, Run_Command run)
    : vbe_(vbe), services_(services), run_(std::move(run)) {}

Menus::~Menus() {
  Del_Menu();
}

bool Menus::Add_Menu() {
  const service::Err_Frame frame(services_.Errors, "Mod_Entry", "Add_Menu");
  Del_Menu();
  int number = 0;
  try {
    Add_All();
    return true;
  } catch (const host::Host_Error& error) {
    number = error.number;
  } catch (...) {
    Del_Menu();
    throw;
  }
  Del_Menu();
  services_.Unl_Req = true;
  (void)service::Srv_Dsp_Msg(
      services_,
      fmt::format("{} のツールバーを設定できません。 ({})    |", services_.Product.Title, number) +
          "ＩＤＥの標準メニューまたはツールバーが変更されている可能性があります。    |" +
          "このアドインをアンロードします。|",
      service::Buttons::Ok, 1, service::Icon::Stop);
  return false;
}

void Menus::Add_All() {
  Add_Popup();
  Add_Context();
  Add_Tool_Bar();
}

void Menus::Add_Popup() {
  CommandBar& popup = Bar_Of(Add_Noted(kTool_Menu, ControlType::Popup, kPopup));
  Add_Entries(popup, Place::Popup);
  Add_Entries(Bar_Of(Add_Control(popup, ControlType::Popup, kFunctions)), Place::Functions);
  Add_Entries(Bar_Of(Add_Control(popup, ControlType::Popup, kSupport)), Place::Support);
}

void Menus::Add_Context() {
  bool begins = true;
  for (const Menu_Entry& entry : Menu_Entries(Place::Context)) {
    CommandBarControl& button = Add_Noted({}, ControlType::Button, entry.Caption);
    if (std::exchange(begins, false)) button.Set_BeginGroup(true);
    Connect(button, entry.Handler);
  }
}

void Menus::Add_Tool_Bar() {
  tool_bar_name_ = services_.Product.Title;
  CommandBar& bar = vbe_.CommandBars().Add(tool_bar_name_);
  tool_bar_ = &bar;
  Add_Entries(bar, Place::Tool_Bar);
  bar.Set_Visible(true);
}

CommandBarControl& Menus::Add_Noted(std::string_view menu, ControlType type,
                                    std::string_view caption) {
  CommandBar* bar = Find_Own_Bar(vbe_, menu);
  if (bar == nullptr) throw host::Host_Error(host::kErr_Bad_Call, "no such bar");
  added_.reserve(added_.size() + 1);
  CommandBarControl& control = bar->Controls().Add(type);
  added_.push_back({menu, &control, caption});  // before the caption, which may be refused
  control.Set_Caption(caption);
  return control;
}

void Menus::Add_Entries(CommandBar& bar, Place where) {
  for (const Menu_Entry& entry : Menu_Entries(where))
    Connect(Add_Control(bar, ControlType::Button, entry.Caption), entry.Handler);
}

void Menus::Connect(CommandBarControl& button, std::string_view handler) {
  auto events = vbe_.Events().CommandBarEvents(button);
  // Its own copy of what it runs: a command may take the menus, and this object, away.
  events->Set_Click([run = run_, handler] { run(handler); });
  events_.push_back(std::move(events));
}

void Menus::Del_Menu() noexcept {
  events_.clear();
  for (auto added = added_.rbegin(); added != added_.rend(); ++added) {
    try {
      Remove(*added);
    } catch (...) {  // what cannot be taken away stays, without an ear
    }
  }
  added_.clear();
  try {
    if (tool_bar_ != nullptr)
      if (CommandBar* bar = vbe_.CommandBars().Item(tool_bar_name_); bar == tool_bar_)
        bar->Delete();
  } catch (...) {  // as above
  }
  tool_bar_ = nullptr;
}

// The user may have reset the menu meanwhile, and the control be gone: only what the bar still
// holds is touched.
void Menus::Remove(const Added& added) {
  CommandBar* bar = Find_Own_Bar(vbe_, added.menu);
  if (bar == nullptr) return;
  for (int i = bar->Controls().Count(); i >= 1; --i) {
    CommandBarControl* control = bar->Controls().Item(i);
    if (control != added.control) continue;
    const std::string caption = control->Caption();
    if (caption.empty() || caption == added.caption) control->Delete();
    return;
  }
}

}  // namespace oru::lifecycle
