// SPDX-License-Identifier: MIT
#include "host/derived.h"

#include <algorithm>

#include "host/line_window.h"
#include "host/procedure_rule.h"
#include "service/text.h"

namespace oru::host {
namespace {

constexpr std::string_view kDash = " - ";

}  // namespace

std::string Get_HFl_Nam(VBE& vbe) {
  if (vbe.VBProjects().Count() == 0) return {};
  std::string name = vbe.MainWindow().Caption();
  const std::size_t dash = name.find(kDash);
  if (dash == std::string::npos) return {};
  name.erase(0, dash + kDash.size());
  name.resize(std::min(name.find(kDash), name.size()));
  name.resize(std::min(name.rfind(" ["), name.size()));
  return name;
}

std::string Get_Prj_Nam(VBE& vbe) {
  std::string name = Get_HFl_Nam(vbe);
  name.resize(std::min(name.rfind('.'), name.size()));
  return name;
}

bool Chk_Des_Mod(VBE& vbe) {
  const std::string caption = vbe.MainWindow().Caption();
  return caption.find("[中断]") == std::string::npos &&
         caption.find("[実行中]") == std::string::npos;
}

bool Chk_Edt_Mod(VBE& vbe) {
  if (!Chk_Des_Mod(vbe)) return false;
  CodePane* pane = vbe.ActiveCodePane();
  Window* window = pane != nullptr ? &pane->Window() : vbe.ActiveWindow();
  return window != nullptr && window->Caption().find("(コード)") != std::string::npos;
}

bool Chk_Run_Fnc(VBE& vbe, service::Services& services) {
  if (Chk_Edt_Mod(vbe)) return true;
  (void)service::Srv_Dsp_Msg(services, "この機能はコード編集時のみ利用可能です。   ",
                             service::Buttons::Ok, 1, service::Icon::Warning);
  return false;
}

bool Chk_Mdl_Typ(int component_type) {
  switch (component_type) {
    case kType_Module:
    case kType_Class:
    case kType_Form:
    case kType_Designer:
    case kType_Document:
      return true;
    default:
      return false;
  }
}

bool Chk_Mdl_Typ(VBE& vbe, std::string_view name) {
  VBProject* project = vbe.ActiveVBProject();
  if (project == nullptr || project->Protection() == Protection::Locked) return false;
  VBComponent* component = project->VBComponents().Item(name);
  return component != nullptr && Chk_Mdl_Typ(component->Type());
}

bool Chk_Protect(VBE& vbe, service::Services& services, bool show) {
  VBProject* project = vbe.ActiveVBProject();
  if (project != nullptr && project->Protection() != Protection::Locked) return false;
  if (show)
    (void)service::Srv_Dsp_Msg(services,
                               project == nullptr
                                   ? "有効なプロジェクトがありません。    "
                                   : "保護されたプロジェクトでは実行できません。    ",
                               service::Buttons::Ok, 1, service::Icon::Warning);
  services.Ui.All_Unl_Prc();
  return true;
}

std::string Member_Name(std::string_view name, ProcKind kind) {
  std::string result(name);
  switch (kind) {
    case ProcKind::Proc:
      break;
    case ProcKind::Let:
      result += "(Let)";
      break;
    case ProcKind::Set:
      result += "(Set)";
      break;
    case ProcKind::Get:
      result += "(Get)";
      break;
  }
  return result;
}

Member_Place Get_CML_Inf(const CodeModule& module, int line) {
  Member_Place place;
  const int lines = module.CountOfLines();
  const ProcAtLine at = lines == 0 ? ProcAtLine{} : module.ProcOfLine(line);
  if (at.name.empty()) {
    place.Nam = "%Declare";
    place.Cnt = module.CountOfDeclarationLines();
    return place;
  }
  constexpr char kSubs[] = {0, '2', '3', '1'};  // by kind: Let, Set and Get in this order
  place.Nam = Member_Name(at.name, at.kind);
  place.Prc_Nam = at.name;
  place.Prc_Knd = at.kind;
  place.Knd = at.kind == ProcKind::Proc ? '1' : '3';
  place.Sub = kSubs[static_cast<std::size_t>(at.kind)];
  place.Top = module.ProcStartLine(at.name, at.kind);
  place.Bdy = module.ProcBodyLine(at.name, at.kind);
  place.Cnt = module.ProcCountLines(at.name, at.kind);
  if (line < place.Top + place.Cnt) return place;

  // The host's three numbers are those of the first procedure of that name; this is a later one.
  Line_Window window(module, line);
  const Procedure_Extent extent =
      Extent_Of(window, Named_At(window, line), module.CountOfDeclarationLines());
  place.Top = extent.start;
  place.Bdy = extent.body;
  place.Cnt = extent.Count();
  return place;
}

std::vector<Member_Place> Get_Procedures(const CodeModule& module) {
  std::vector<Member_Place> places;
  const int count = module.CountOfLines();
  for (int line = module.CountOfDeclarationLines() + 1; line <= count;) {
    Member_Place place = Get_CML_Inf(module, line);
    line = std::max(line + 1, place.Top + place.Cnt);
    if (!place.Prc_Nam.empty()) places.push_back(std::move(place));
  }
  return places;
}

std::string Get_Sel_Wrd(const CodeModule& module, const Selection& selection) {
  if (selection.start_line != selection.end_line ||
      selection.end_column <= selection.start_column ||
      selection.start_line > module.CountOfLines())
    return {};
  const std::string line = module.Lines(selection.start_line, 1);
  const std::size_t begin = service::Byte_Of_Chr(line, service::Chr_Count{selection.start_column});
  const std::size_t end = service::Byte_Of_Chr(line, service::Chr_Count{selection.end_column});
  return std::string(service::Trim(std::string_view(line).substr(begin, end - begin)));
}

std::string Set_Mdl_Nam(VBE& vbe) {
  VBProject* project = vbe.ActiveVBProject();
  if (project == nullptr || project->Protection() == Protection::Locked) return {};
  VBComponents& components = project->VBComponents();
  if (CodePane* pane = vbe.ActiveCodePane()) {
    const int count = components.Count();
    for (int i = 1; i <= count; ++i) {
      VBComponent* component = components.Item(i);
      if (component->CodeModule() == &pane->CodeModule()) return component->Name();
    }
  }
  Window* window = vbe.ActiveWindow();
  if (window == nullptr) return {};
  std::string name = window->Caption();
  const std::size_t dash = name.rfind(kDash);
  if (dash != std::string::npos) name.erase(0, dash + kDash.size());
  name.resize(std::min(name.rfind(" ("), name.size()));
  VBComponent* component = components.Item(name);
  return component == nullptr ? std::string() : component->Name();
}

std::optional<Pane_Place> Get_ACp_Inf(VBE& vbe) {
  Pane_Place place;
  place.Mdl_Nam = Set_Mdl_Nam(vbe);
  CodePane* pane = vbe.ActiveCodePane();
  if (place.Mdl_Nam.empty() || pane == nullptr) return std::nullopt;
  place.Sel = pane->GetSelection();
  place.TopLine = pane->TopLine();
  place.Mem = Get_CML_Inf(pane->CodeModule(), place.Sel.start_line);
  return place;
}

}  // namespace oru::host
