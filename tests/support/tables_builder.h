// SPDX-License-Identifier: MIT
// Analysis tables made by hand from rows, for tests of what reads them. Fields are written with "|"
// for the tab between them.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "analyser/tables.h"

namespace oru::test {

class Tables_Builder {
 public:
  /// A module row: "Module1|1|comment|caption". Members that follow belong to it.
  Tables_Builder& Mdl(std::string row) {
    auto entry = std::make_unique<analyser::Mdl_Entry>();
    entry->Mdl = Tabs(std::move(row));
    name_ = service::Row_Field(entry->Mdl, 0);
    current_ = entry.get();
    tables.Mdl_Tbl.Add(name_, std::move(entry));
    tables.Prj_Mdl.Add(name_, "*");
    return *this;
  }
  /// A member row, its fields without the module's name: "Load|1|1||comment|1|5|2|1|0|0".
  Tables_Builder& Mem(std::string_view row) {
    const std::size_t bar = row.find('|');
    const std::string name(row.substr(0, bar));
    current_->Mem.Add(name, Tabs(name + "|" + name_ + std::string(row.substr(bar))));
    return *this;
  }
  /// A control of the current module: "Command1|CommandButton|||".
  Tables_Builder& Ctl(std::string row) {
    std::string fields = Tabs(std::move(row));
    const std::string name(service::Row_Field(fields, 0));
    current_->Ctl.Add(name, std::move(fields));
    return *this;
  }
  /// Reference flags of "Module.Member": "1-", "-1" or "11".
  Tables_Builder& Ref(std::string_view member, std::string_view flags) {
    if (flags[0] == '1') tables.RIf_Dic.Set(member, analyser::Ref_Marks::kRefers);
    if (flags[1] == '1') tables.RIf_Dic.Set(member, analyser::Ref_Marks::kReferred);
    return *this;
  }

  analyser::Tables tables;

 private:
  static std::string Tabs(std::string row) {
    std::replace(row.begin(), row.end(), '|', '\t');
    return row;
  }
  std::string name_;
  analyser::Mdl_Entry* current_ = nullptr;
};

}  // namespace oru::test
