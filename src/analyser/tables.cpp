// SPDX-License-Identifier: MIT
#include "analyser/tables.h"

#include <fmt/format.h>

namespace oru::analyser {

using service::Srv_Sep_Txt;

namespace {

bool Set_Mdl(Tbl_Cur& cur, const std::unique_ptr<Mdl_Entry>* entry) {
  if (entry == nullptr) return false;
  cur.Entry = entry->get();
  Set_Mdl_Inf(cur, cur.Entry->Mdl);
  return true;
}

bool Set_No_Mem(Tbl_Cur& cur, std::string_view module, std::string_view member) {
  cur.Mem.Mem_Mdl = module;
  cur.Mem.Mem_Nam = member;
  cur.Mem.Mem_Knd.clear();
  cur.Mem.Mem_Scp.clear();
  cur.Mem.Mem_Sub.clear();
  cur.Mem.Mem_CTx.clear();
  cur.Mem.Mem_Lin = "1";
  return false;
}

}  // namespace

bool Set_Mdl_Fld(const Tables& tables, Tbl_Cur& cur, std::string_view ag_MdlIx) {
  return Set_Mdl(cur, tables.Mdl_Tbl.Get(ag_MdlIx));
}

bool Set_Mdl_Fld(const Tables& tables, Tbl_Cur& cur, std::size_t ag_MdlIx) {
  const auto* item = tables.Mdl_Tbl.At(ag_MdlIx);
  return Set_Mdl(cur, item == nullptr ? nullptr : &item->value);
}

bool Set_Mem_Fld(const Tables& tables, Tbl_Cur& cur, std::string_view ag_MdlIx,
                 std::string_view ag_MemIx) {
  const auto* entry = tables.Mdl_Tbl.Get(ag_MdlIx);
  const std::string* row = entry == nullptr ? nullptr : (*entry)->Mem.Get(ag_MemIx);
  if (row == nullptr) return Set_No_Mem(cur, ag_MdlIx, ag_MemIx);
  Set_Mem_Inf(cur, *row);
  return true;
}

bool Set_Mem_Fld(const Tables& tables, Tbl_Cur& cur, std::string_view ag_MdlIx,
                 std::size_t ag_MemIx) {
  const auto* entry = tables.Mdl_Tbl.Get(ag_MdlIx);
  const auto* item = entry == nullptr ? nullptr : (*entry)->Mem.At(ag_MemIx);
  if (item == nullptr) return Set_No_Mem(cur, ag_MdlIx, fmt::to_string(ag_MemIx));
  Set_Mem_Inf(cur, item->value);
  return true;
}

void Set_Mdl_Inf(Tbl_Cur& cur, std::string_view row) {
  Srv_Sep_Txt(row, cur.Mdl);
}

void Set_Mem_Inf(Tbl_Cur& cur, std::string_view row) {
  // A `Declare` row is shorter; the counts of the row before it must not shine through.
  cur.Mem.Mem_Cpx.clear();
  cur.Mem.Mem_Nst.clear();
  Srv_Sep_Txt(row, cur.Mem);
}

void Set_VCs_Inf(Tbl_Cur& cur, std::string_view row) {
  Srv_Sep_Txt(row, cur.Def);
}

std::string_view Set_Ref_Mrk(const Tables& tables, std::string_view module,
                             std::string_view member) {
  const std::string* value =
      tables.RIf_Dic.Get(member.empty() ? std::string(module) : Full_Name(module, member));
  if (value == nullptr || value->size() < 2) return {};
  const std::string_view flags = std::string_view(*value).substr(value->size() - 2);
  if (flags == "1-") return "↓";
  if (flags == "-1") return "↑";
  if (flags == "11") return "↓↑";
  return {};
}

char Chk_InV_Typ(const Tables& tables, std::string_view type_word) {
  if (tables.Prj_Mdl.Has(type_word)) return '1';
  if (type_word == "UserForm" || type_word == "Form" || type_word == "Object") return '2';
  return 0;
}

std::string Full_Name(std::string_view module, std::string_view member) {
  std::string name;
  name.reserve(module.size() + 1 + member.size());
  return name.append(module).append(1, '.').append(member);
}

}  // namespace oru::analyser
