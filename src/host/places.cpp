// SPDX-License-Identifier: MIT
#include "host/places.h"

#include <algorithm>
#include <array>

namespace oru::host {
namespace {

struct Kind_Suffix {
  std::string_view text;
  ProcKind kind;
};
constexpr std::array kSuffixes{Kind_Suffix{"(Get)", ProcKind::Get},
                               Kind_Suffix{"(Let)", ProcKind::Let},
                               Kind_Suffix{"(Set)", ProcKind::Set}};

CodeModule* Find_Code(VBE& vbe, std::string_view module) {
  VBProject* project = vbe.ActiveVBProject();
  if (project == nullptr || project->Protection() == Protection::Locked) return nullptr;
  VBComponent* component = project->VBComponents().Item(module);
  return component == nullptr ? nullptr : component->CodeModule();
}

}  // namespace

Host_Name Split_Member(std::string_view member) {
  for (const Kind_Suffix& suffix : kSuffixes)
    if (member.ends_with(suffix.text))
      return {member.substr(0, member.size() - suffix.text.size()), suffix.kind};
  return {member, ProcKind::Proc};
}

std::optional<Member_Place> Get_CMm_Inf(VBE& vbe, std::string_view module,
                                        std::string_view member) {
  const CodeModule* code = Find_Code(vbe, module);
  if (code == nullptr) return std::nullopt;
  Member_Place place;
  place.Nam = member;
  if (member == "%Declare") {
    place.Cnt = code->CountOfDeclarationLines();
    return place;
  }
  const auto [name, kind] = Split_Member(member);
  place.Prc_Knd = kind;
  try {
    place.Bdy = code->ProcBodyLine(name, place.Prc_Knd);
    place.Top = code->ProcStartLine(name, place.Prc_Knd);
    place.Cnt = code->ProcCountLines(name, place.Prc_Knd);
  } catch (const Host_Error& error) {
    if (error.number != kErr_No_Procedure) throw;
    return std::nullopt;
  }
  constexpr std::array kSubs{char{0}, '2', '3', '1'};  // by kind: Let, Set and Get in this order
  place.Prc_Nam = name;
  place.Knd = place.Prc_Knd == ProcKind::Proc ? '1' : '3';
  place.Sub = kSubs[static_cast<std::size_t>(place.Prc_Knd)];
  return place;
}

bool Chk_Prc_Exs(VBE& vbe, std::string_view module, std::string_view member) {
  return Get_CMm_Inf(vbe, module, member).has_value();
}

bool Set_Mdl_Lin(VBE& vbe, std::string_view module, int line) {
  CodeModule* code = Find_Code(vbe, module);
  if (code == nullptr) return false;
  CodePane& pane = code->CodePane();
  constexpr int kMinimised = 1;
  if (pane.Window().WindowState() == kMinimised) pane.Window().Set_WindowState(0);
  pane.Show();
  const int target = std::clamp(line, 1, std::max(code->CountOfLines(), 1));
  pane.SetSelection({target, 1, target, 1});
  const int visible = std::max(pane.CountOfVisibleLines(), 1);
  const int top = pane.TopLine();
  // A third of the pane above the line lets the reader see where he is.
  if (target < top || target >= top + visible) pane.Set_TopLine(std::max(target - visible / 3, 1));
  return true;
}

bool Set_Prc_Pos(VBE& vbe, std::string_view module, std::string_view member, int line) {
  const std::optional<Member_Place> place = Get_CMm_Inf(vbe, module, member);
  return place && Set_Mdl_Lin(vbe, module, place->Top + std::max(line, 1) - 1);
}

}  // namespace oru::host
