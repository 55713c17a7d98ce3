// SPDX-License-Identifier: MIT
#include "lifecycle/window_commands.h"

#include <string>
#include <string_view>
#include <vector>

#include "host/derived.h"
#include "host/host_commands.h"

namespace oru::lifecycle {
namespace {

// The editor's window types.
constexpr int kCode = 0, kDesigner = 1, kImmediate = 5, kProject = 6, kProperties = 7;

// The windows of some types, noted before any is closed: closing renumbers the others.
template <class Wanted>
std::vector<host::Window*> Windows_Of(host::VBE& vbe, Wanted wanted) {
  std::vector<host::Window*> found;
  host::Windows& windows = vbe.Windows();
  const int count = windows.Count();
  for (int i = 1; i <= count; ++i) {
    host::Window* window = windows.Item(i);
    if (window != nullptr && wanted(*window)) found.push_back(window);
  }
  return found;
}

bool Has_Object(host::VBE& vbe) {
  const std::string name = host::Set_Mdl_Nam(vbe);
  if (name.empty()) return false;
  host::VBComponent* component = vbe.ActiveVBProject()->VBComponents().Item(name);
  return component != nullptr && component->Type() != host::kType_Module &&
         component->Type() != host::kType_Class;
}

}  // namespace

bool Chg_Opt_Win(host::VBE& vbe, service::Services& services) {
  host::Window* front = vbe.ActiveWindow();
  if (front == nullptr) return true;
  const int type = front->Type();
  if (type == kDesigner) return host::Exc_Hst_Cmd(vbe, services, "Code");
  // Pressed without an object, the entry refuses, and that would end the add-in.
  if (type == kCode && Has_Object(vbe)) return host::Exc_Hst_Cmd(vbe, services, "Obj");
  return true;
}

bool Spl_Cod_Win(host::VBE& vbe, service::Services& services) {
  host::CodePane* pane = vbe.ActiveCodePane();
  if (pane == nullptr) return true;
  const host::CodeModule* module = &pane->CodeModule();
  const host::Selection place = pane->GetSelection();
  const int top = pane->TopLine();
  if (!host::Exc_Hst_Cmd(vbe, services, "WSpl")) return false;

  // Which of the panes the editor makes the active one is its own affair.
  host::CodePanes& panes = vbe.CodePanes();
  const int count = panes.Count();
  for (int i = 1; i <= count; ++i) {
    host::CodePane* each = panes.Item(i);
    if (each == nullptr || &each->CodeModule() != module) continue;
    each->SetSelection(place);
    each->Set_TopLine(top);
  }
  return host::Exc_Hst_Cmd(vbe, services, "Book");
}

bool Chg_Window(host::VBE& vbe, service::Services& services) {
  const auto shown = Windows_Of(vbe, [](const host::Window& window) {
    const int type = window.Type();
    return (type == kImmediate || type == kProject || type == kProperties) && window.Visible();
  });
  for (host::Window* window : shown) window->Set_Visible(false);
  if (!shown.empty()) return true;
  for (const std::string_view key : {"Proj", "Prop", "Imd"})
    if (!host::Exc_Hst_Cmd(vbe, services, key)) return false;
  return true;
}

void Cls_All_Win(host::VBE& vbe) {
  if (!host::Chk_Des_Mod(vbe)) return;
  const auto open = Windows_Of(vbe, [](const host::Window& window) {
    return window.Type() == kCode || window.Type() == kDesigner;
  });
  for (host::Window* window : open) window->Close();
}

}  // namespace oru::lifecycle
