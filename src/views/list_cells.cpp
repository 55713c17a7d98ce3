// SPDX-License-Identifier: MIT
#include "views/list_cells.h"

#include <algorithm>
#include <charconv>

#include "service/text.h"
#include "views/list_columns.h"

namespace oru::views {

namespace {

constexpr std::size_t kMoment_Size = 12;  // "YYMMDDHHMMSS"
constexpr std::size_t kChange_Size = 17;  // and the five-digit line

host::VBComponent* Find_Component(host::VBE& vbe, std::string_view name) {
  host::VBProject* project = vbe.ActiveVBProject();
  return project == nullptr ? nullptr : project->VBComponents().Item(name);
}

}  // namespace

std::int64_t To_Number(std::string_view digits) {
  std::int64_t n = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), n);
  return n;
}

std::string Edt_Count(std::int64_t n) {
  constexpr service::Wid_Count kWidth{4};
  return service::Pad_Left(service::Format_Hash(n), kWidth);
}

std::string Edt_Metric(std::int64_t n) {
  constexpr std::size_t kWidth = 6;
  std::string text = "     " + service::Format_Hash(n);
  if (text.size() > kWidth) text.erase(0, text.size() - kWidth);
  return text;
}

UDt_Inf Set_UDt_Inf(const View_Ctx& ctx, std::string_view key) {
  const std::string update = ctx.Prc_Upd_Inf ? ctx.Prc_Upd_Inf(key) : std::string();
  const std::string_view change = std::string_view(update).substr(0, kChange_Size);
  UDt_Inf inf;
  if (change.size() < kChange_Size ||
      change.find_first_not_of("0123456789") != std::string_view::npos) {
    inf.Key.append(key).append(1, ' ');
    return inf;
  }
  inf.Chg = true;
  inf.Mrk = change.substr(0, kMoment_Size) >= ctx.Lod_Dat ? "★" : "☆";
  constexpr std::string_view kPattern = "20&&/&&/&& &&:&&";
  std::size_t at = 0;
  for (const char c : kPattern) inf.Dat += c == '&' ? change[at++] : c;
  inf.Key = change;
  return inf;
}

bool Chk_NRf_Mem(std::string_view name) {
  return std::ranges::find(kNot_Called, name) != kNot_Called.end();
}

Ref_Cell Get_Ref_Cell(const analyser::Tables& tables, const analyser::Mem_Row& row) {
  Ref_Cell cell{analyser::Set_Ref_Mrk(tables, row.Mem_Mdl, row.Mem_Nam)};
  const bool callable = row.Mem_Knd.size() == 1 && (row.Mem_Knd.front() == analyser::kMem_Sub ||
                                                    row.Mem_Knd.front() == analyser::kMem_Function);
  cell.Red = callable && !cell.Mrk.ends_with("↑") && !Chk_NRf_Mem(row.Mem_Nam);
  if (cell.Red && cell.Mrk.empty()) cell.Mrk = kMrk_None;
  return cell;
}

std::string_view Event_Object(std::string_view mem_nam) {
  const std::size_t bar = mem_nam.rfind('_');
  return bar == std::string_view::npos ? std::string_view() : mem_nam.substr(0, bar);
}

std::string Get_Ctl_Typ(const View_Ctx& ctx, std::string_view mdl_nam, std::string_view ctl_nam) {
  host::VBComponent* component = Find_Component(ctx.VBInst, mdl_nam);
  try {
    host::Designer* designer = component == nullptr ? nullptr : component->Designer();
    if (designer != nullptr) {
      const host::Control* control = designer->Controls().Item(ctl_nam);
      return control == nullptr ? std::string() : control->TypeName();
    }
  } catch (const host::Host_Error&) {  // a designer that refuses counts as a closed one
  }
  const auto* entry = ctx.Tbl.Mdl_Tbl.Get(mdl_nam);
  const std::string* row = entry == nullptr ? nullptr : (*entry)->Ctl.Get(ctl_nam);
  return row == nullptr ? std::string() : std::string(service::Row_Field(*row, 1));
}

bool Chk_Def_Stm(host::VBE& vbe, std::string_view mdl_nam) {
  host::VBComponent* component = Find_Component(vbe, mdl_nam);
  const host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
  if (code == nullptr) return false;
  const std::string section = code->Lines(1, code->CountOfDeclarationLines());
  return std::ranges::any_of(service::Split(section, "\r\n"), [](std::string_view line) {
    line = service::Trim(line);
    return !line.empty() && !line.starts_with("Option ");
  });
}

}  // namespace oru::views
