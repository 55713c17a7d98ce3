// SPDX-License-Identifier: MIT
#include "analyser/instances.h"

#include <algorithm>
#include <array>

#include "service/text.h"

namespace oru::analyser {

namespace {

// Words of a statement that name no instance.
constexpr std::array<std::string_view, 19> kNo_Names{
    "Public",  "Private", "Friend", "Static",   "Function", "Dim", "WithEvents",
    "As",      "New",     "Event",  "Property", "Get",      "Let", "Set",
    "Nothing", "For",     "Each",   "In",       "="};

char First(std::string_view text) {
  return text.empty() ? '\0' : text.front();
}

}  // namespace

Instances::Instances(const Tables& tables) {
  InV_Row inv;
  for (const auto& item : tables.Mdl_Tbl) {
    for (const std::string& row : item.value->InV) {
      service::Srv_Sep_Txt(row, inv);
      CsI_Row instance{
          inv.InV_Nam, inv.InV_Mdl, First(inv.InV_Scp), First(inv.InV_Cls), First(inv.InV_Knd),
          {},          false};
      if (instance.CsI_Cls == '1') instance.CsI_Typ.push_back(inv.InV_Typ);
      Add(std::move(instance));
    }
  }
  base_ = rows_.size();
}

void Instances::Add(CsI_Row row) {
  names_.insert(service::To_Lower(row.CsI_Nam));
  index_[row.CsI_Nam].push_back(rows_.size());
  rows_.push_back(std::move(row));
}

void Instances::Begin_Member() {
  while (rows_.size() > base_) {
    index_.find(rows_.back().CsI_Nam)->second.pop_back();
    rows_.pop_back();
  }
  for (const std::size_t i : touched_) {
    rows_[i].CsI_Typ.clear();
    rows_[i].CsI_Rst = false;
  }
  touched_.clear();
}

Instances::Binding Instances::Parse(const Tables& tables, std::string_view text) {
  text = service::Trim(text);
  const std::size_t blank = text.rfind(' ');
  const std::string_view class_word =
      blank == std::string_view::npos ? text : text.substr(blank + 1);
  const char flag = Chk_InV_Typ(tables, class_word);
  if (flag == 0) return {};
  while (!text.empty()) {
    const std::string_view word = service::Take_Word(text);
    if (word.size() < 2 || service::Len_Chr(word) < service::Chr_Count{2}) continue;
    if (std::find(kNo_Names.begin(), kNo_Names.end(), word) != kNo_Names.end()) continue;
    std::string_view name = word;
    if (const std::size_t open = name.find('(', 1); open != std::string_view::npos)
      name = name.substr(0, open);
    return {name, class_word, flag};
  }
  return {};
}

void Instances::Declare(const Tables& tables, std::string_view text, std::string_view module) {
  const Binding binding = Parse(tables, text);
  if (binding.Nam.empty()) return;
  CsI_Row row{
      std::string(binding.Nam), std::string(module), kScp_Local, binding.Flag, 'V', {}, false};
  if (binding.Flag == '1') row.CsI_Typ.emplace_back(binding.Cls);
  Add(std::move(row));
}

void Instances::Bind(const Tables& tables, std::string_view text, std::string_view module) {
  const Binding binding = Parse(tables, text);
  if (binding.Nam.empty()) return;
  const auto at = index_.find(binding.Nam);
  if (at == index_.end() || at->second.empty()) return;
  const std::size_t i = at->second.back();
  CsI_Row& row = rows_[i];
  // The search ends at the last row of the name, even if that is private to another module.
  if (row.CsI_Scp == kScp_Private && row.CsI_Mdl != module) return;
  if (row.CsI_Cls != '2') return;
  if (row.CsI_Rst) row.CsI_Typ.clear();
  row.CsI_Rst = false;
  if (std::find(row.CsI_Typ.begin(), row.CsI_Typ.end(), binding.Cls) == row.CsI_Typ.end())
    row.CsI_Typ.emplace_back(binding.Cls);
  if (i < base_) touched_.push_back(i);
}

bool Instances::Knows(std::string_view name) const {
  return names_.find(service::To_Lower(name)) != names_.end();
}

const CsI_Row* Instances::Find(std::string_view name, std::string_view module) {
  const auto at = index_.find(name);
  if (at == index_.end()) return nullptr;
  for (auto i = at->second.rbegin(); i != at->second.rend(); ++i) {
    CsI_Row& row = rows_[*i];
    if (row.CsI_Scp == kScp_Private && row.CsI_Mdl != module) continue;
    if (row.CsI_Cls == '2' && !row.CsI_Rst) {
      row.CsI_Rst = true;
      if (*i < base_) touched_.push_back(*i);
    }
    return &row;
  }
  return nullptr;
}

}  // namespace oru::analyser
