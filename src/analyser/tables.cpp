// SPDX-License-Identifier: MIT
#include "analyser/tables.h"

#include <fmt/format.h>

namespace oru::analyser {

using service::Srv_Sep_Txt;

namespace {

const Mdl_Entry* Find_Module(const Tables& tables, const Tbl_Ix& index) {
  if (index.Position == 0) {
    const auto* entry = tables.Mdl_Tbl.Get(index.Name);
    return entry == nullptr ? nullptr : entry->get();
  }
  const auto* item = tables.Mdl_Tbl.At(index.Position);
  return item == nullptr ? nullptr : item->value.get();
}

const std::string* Find_Member(const Mdl_Entry* entry, const Tbl_Ix& index) {
  if (entry == nullptr) return nullptr;
  if (index.Position == 0) return entry->Mem.Get(index.Name);
  const auto* item = entry->Mem.At(index.Position);
  return item == nullptr ? nullptr : &item->value;
}

std::string As_Text(const Tbl_Ix& index) {
  return index.Position == 0 ? std::string(index.Name) : fmt::to_string(index.Position);
}

}  // namespace

bool Set_Mdl_Fld(const Tables& tables, Tbl_Cur& cur, const Tbl_Ix& ag_MdlIx) {
  const Mdl_Entry* entry = Find_Module(tables, ag_MdlIx);
  if (entry == nullptr) return false;
  cur.Entry = entry;
  Set_Mdl_Inf(cur, entry->Mdl);
  return true;
}

bool Set_Mem_Fld(const Tables& tables, Tbl_Cur& cur, const Tbl_Ix& ag_MdlIx,
                 const Tbl_Ix& ag_MemIx) {
  if (const std::string* row = Find_Member(Find_Module(tables, ag_MdlIx), ag_MemIx);
      row != nullptr) {
    Set_Mem_Inf(cur, *row);
    return true;
  }
  cur.Mem.Mem_Mdl = As_Text(ag_MdlIx);
  cur.Mem.Mem_Nam = As_Text(ag_MemIx);
  for (std::string* field :
       {&cur.Mem.Mem_Knd, &cur.Mem.Mem_Scp, &cur.Mem.Mem_Sub, &cur.Mem.Mem_CTx})
    field->clear();
  cur.Mem.Mem_Lin = "1";
  return false;
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

void Ref_Marks::Clear(std::size_t expected) {
  order_.clear();
  order_.reserve(expected);
  // After a change of one module nearly all keys come again: their entries stay, as none.
  if (flags_.size() > 2 * expected) {
    flags_.clear();
  } else {
    for (auto& entry : flags_) entry.second = 0;
  }
  flags_.reserve(expected);
}

void Ref_Marks::Set(std::string_view key, unsigned flag) {
  const auto at = flags_.find(key);
  auto& entry = at != flags_.end() ? *at : *flags_.emplace(std::string(key), 0).first;
  if (entry.second == 0) order_.push_back(&entry);
  entry.second |= flag;
}

unsigned Ref_Marks::Get(std::string_view key) const {
  const auto at = flags_.find(key);
  return at == flags_.end() ? 0 : at->second;
}

std::string Ref_Marks::Text(std::size_t position) const {
  const auto& [key, flags] = *order_[position];
  return key + Flag_Text(flags);
}

std::string Ref_Marks::Flag_Text(unsigned flags) {
  return {(flags & kRefers) != 0 ? '1' : '-', (flags & kReferred) != 0 ? '1' : '-'};
}

std::string_view Set_Ref_Mrk(const Tables& tables, std::string_view module,
                             std::string_view member) {
  switch (tables.RIf_Dic.Get(member.empty() ? std::string(module) : Full_Name(module, member))) {
    case Ref_Marks::kRefers:
      return "↓";
    case Ref_Marks::kReferred:
      return "↑";
    case Ref_Marks::kRefers | Ref_Marks::kReferred:
      return "↓↑";
    default:
      return {};
  }
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
