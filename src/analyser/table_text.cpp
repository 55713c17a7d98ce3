// SPDX-License-Identifier: MIT
#include "analyser/table_text.h"

#include <fmt/format.h>

namespace oru::analyser {

void Put_Module_Block(const Tables& tables, const Mdl_Entry& entry, const Line_Sink& put) {
  put("#Mdl", entry.Mdl);
  for (const auto& item : entry.Mem) put("#Mem", item.value);
  put("#MLL", fmt::to_string(tables.MLL));
  put("#MHL", fmt::to_string(tables.MHL));
  for (const std::string& row : entry.InV) put("#InV", row);
  for (const std::string& row : entry.Def) put("#Def", row);
  // A row that only marks an event source has an empty value and is its key alone.
  for (const auto& item : entry.Ctl) put("#Ctl", item.value.empty() ? item.key : item.value);
  put("#CCd", entry.CCd);
  if (const std::string* references = tables.Ref_Tbl.Get(service::Row_Field(entry.Mdl, 0)))
    put("#Ref", *references);
  put("#End", {});
}

void Put_Ref_Marks(const Tables& tables, const Line_Sink& put) {
  for (std::size_t i = 0; i < tables.RIf_Dic.Count(); ++i) put("#RIf", tables.RIf_Dic.Text(i));
}

}  // namespace oru::analyser
