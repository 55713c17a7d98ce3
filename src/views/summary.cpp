// SPDX-License-Identifier: MIT
#include "views/summary.h"

#include "views/list_cells.h"
#include "views/references.h"

namespace oru::views {

namespace {

int Count(std::string_view digits) {
  return static_cast<int>(To_Number(digits));
}

void Raise(Peak& peak, const analyser::Mem_Row& row, int value) {
  if (value > peak.Value) peak = {analyser::Full_Name(row.Mem_Mdl, row.Mem_Nam), value};
}

}  // namespace

Project_Summary Get_Summary(const analyser::Tables& tables) {
  Project_Summary summary;
  analyser::Tbl_Cur cur;
  for (std::size_t i = 1; analyser::Set_Mdl_Fld(tables, cur, i); ++i) {
    ++summary.Module_Count;
    ++summary.Modules[Count(cur.Mdl.Mdl_Typ)];
    for (const auto& item : cur.Entry->Mem) {
      analyser::Set_Mem_Inf(cur, item.value);
      const analyser::Mem_Row& row = cur.Mem;
      const int code = Count(row.Mem_Stm);
      const int comment = Count(row.Mem_Cmt);
      const int blank = Count(row.Mem_Blk);
      summary.Code += code;
      summary.Comment += comment;
      summary.Blank += blank;
      if (row.Mem_Knd.empty()) continue;
      const auto kind = static_cast<std::size_t>(row.Mem_Knd.front() - '0');
      if (kind < summary.Members.size()) ++summary.Members[kind];
      if (row.Mem_Knd.front() == analyser::kMem_Api) continue;
      Raise(summary.Longest, row, code + comment + blank);
      Raise(summary.Deepest, row, Count(row.Mem_Nst));
      Raise(summary.Most_Complex, row, Count(row.Mem_Cpx));
    }
  }
  for (const Unused_Row& row : Get_Unused(tables)) summary.Unreferenced += row.Lines > 0 ? 1 : 0;
  return summary;
}

}  // namespace oru::views
