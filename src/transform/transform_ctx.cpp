// SPDX-License-Identifier: MIT
#include "transform/transform_ctx.h"

#include <algorithm>

#include "analyser/tables.h"
#include "host/places.h"
#include "service/text.h"

namespace oru::transform {

std::optional<Procedure> Get_Cur_Prc(const Transform_Ctx& ctx) {
  host::CodePane* pane = ctx.VBInst.ActiveCodePane();
  const auto place = host::Get_ACp_Inf(ctx.VBInst);
  if (pane == nullptr || !place || place->Mem.Nam == analyser::kDeclare) return std::nullopt;
  return Procedure{pane->CodeModule(), place->Mdl_Nam, place->Mem};
}

std::optional<Procedure> Get_Prc(const Transform_Ctx& ctx, std::string_view module,
                                 std::string_view member) {
  const auto place = host::Get_CMm_Inf(ctx.VBInst, module, member);
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  host::VBComponent* component =
      project == nullptr ? nullptr : project->VBComponents().Item(module);
  host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
  if (!place || code == nullptr) return std::nullopt;
  return Procedure{*code, std::string(module), *place};
}

int Header_End(const host::CodeModule& code, const host::Member_Place& place) {
  const int last = place.Top + place.Cnt - 1;
  int line = place.Bdy;
  while (line < last && service::Trim_Right(code.Lines(line, 1)).ends_with('_')) ++line;
  return std::min(line, last);
}

host::Change_Result Write(const Transform_Ctx& ctx, host::CodeModule& code, std::string_view module,
                          std::span<const host::Line_Change> changes, host::Keeps keeps) {
  host::Change_Result result = host::Do_Change(code, module, changes, keeps);
  if (result.Changed && ctx.Note_Edit) ctx.Note_Edit(module);
  return result;
}

}  // namespace oru::transform
