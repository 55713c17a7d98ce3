// SPDX-License-Identifier: MIT
#include "support/project.h"

#include <algorithm>

#include "analyser/references.h"
#include "service/text.h"

namespace oru::test {

namespace {

std::string Shown(std::string row) {
  std::replace(row.begin(), row.end(), '\t', '|');
  return row;
}

const analyser::Mdl_Entry* Entry(const analyser::Tables& tables, std::string_view module) {
  const auto* entry = tables.Mdl_Tbl.Get(module);
  return entry == nullptr ? nullptr : entry->get();
}

}  // namespace

Project::Project(const std::string& host_file)
    : Srv(Ui, Clk, {}), project_(&Editor.Add_Project("VBAProject", host_file)) {}

Project& Project::Add(const std::string& name, std::string_view text, int type) {
  if (text.starts_with('\n')) text.remove_prefix(1);
  if (text.ends_with('\n')) text.remove_suffix(1);
  host::Component_Data data;
  data.name = name;
  data.type = type;
  data.text = text;
  project_->Add_Component(std::move(data));
  return *this;
}

Project& Project::Add_Form(const std::string& name, std::string_view text,
                           const std::vector<std::string>& controls) {
  if (text.starts_with('\n')) text.remove_prefix(1);
  if (text.ends_with('\n')) text.remove_suffix(1);
  host::Component_Data data;
  data.name = name;
  data.type = host::kType_Form;
  data.text = text;
  data.has_designer = true;
  for (const std::string& control : controls) {
    const std::size_t colon = control.find(':');
    host::Control_Data made;
    made.name = control.substr(0, colon);
    made.type_name = control.substr(colon + 1);
    data.controls.push_back(std::move(made));
  }
  return Add_Component(std::move(data));
}

Project& Project::Add_Component(host::Component_Data data) {
  project_->Add_Component(std::move(data));
  return *this;
}

void Project::Remove(std::string_view name) {
  project_->Remove_Component(*project_->Find_Component(name));
}

void Project::Add_Reference(const std::string& name, bool is_broken) {
  project_->Add_Reference({name, {}, is_broken});
}

analyser::Anl_Ctx Project::Ctx() {
  return {Srv, Editor, App, Tbl, Sta, Lst};
}

bool Project::Analyse() {
  analyser::Anl_Ctx ctx = Ctx();
  return analyser::Get_Pgm_Inf(ctx, true);
}

bool Project::Analyse_After_Edit() {
  Sta.Edt_Chg = true;
  return Analyse();
}

host::CodeModule& Project::Code(std::string_view module) {
  return *Editor.ActiveVBProject()->VBComponents().Item(module)->CodeModule();
}

std::vector<std::string> Project::Mem(std::string_view module) const {
  std::vector<std::string> rows;
  if (const auto* entry = Entry(Tbl, module); entry != nullptr)
    for (const auto& item : entry->Mem) rows.push_back(Shown(item.value));
  return rows;
}

std::vector<std::string> Project::Def(std::string_view module) const {
  std::vector<std::string> rows;
  if (const auto* entry = Entry(Tbl, module); entry != nullptr)
    for (const std::string& row : entry->Def) rows.push_back(Shown(row));
  return rows;
}

std::vector<std::string> Project::InV(std::string_view module) const {
  std::vector<std::string> rows;
  if (const auto* entry = Entry(Tbl, module); entry != nullptr)
    for (const std::string& row : entry->InV) rows.push_back(Shown(row));
  return rows;
}

std::vector<std::string> Project::Ctl(std::string_view module) const {
  std::vector<std::string> keys;
  if (const auto* entry = Entry(Tbl, module); entry != nullptr)
    for (const auto& item : entry->Ctl) keys.push_back(item.key);
  return keys;
}

std::string Project::Field(std::string_view module, std::string_view member,
                           std::size_t index) const {
  const auto* entry = Entry(Tbl, module);
  const std::string* row = entry == nullptr ? nullptr : entry->Mem.Get(member);
  return row == nullptr ? "(none)" : std::string(service::Row_Field(*row, index));
}

std::vector<std::string> Project::Refs(std::string_view module) const {
  std::vector<std::string> records;
  const std::string* text = Tbl.Ref_Tbl.Get(module);
  if (text == nullptr) return records;
  for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(*text, {}, cursor);) {
    const analyser::Ref_Record& record = cursor.Record;
    std::string shown(record.Caller.substr(record.Caller.find('.') + 1));
    shown.append(">").append(record.Tgt_Mdl).append(".").append(record.Tgt_Mem).append(" ");
    shown.append(record.Ref_Lns).append(" ").append(1, record.Ref_Flg);
    records.push_back(std::move(shown));
  }
  return records;
}

bool Project::Refers(std::string_view caller, std::string_view target) const {
  for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(Tbl.Ref_All, {caller, {}, {}}, cursor);)
    if (analyser::Full_Name(cursor.Record.Tgt_Mdl, cursor.Record.Tgt_Mem) == target) return true;
  return false;
}

}  // namespace oru::test
