// SPDX-License-Identifier: MIT
// The filter boxes of the list: which rows they have, and what passes them.
#include <fmt/format.h>

#include <algorithm>

#include "service/rows.h"
#include "service/text.h"
#include "views/frm_list.h"
#include "views/list_cells.h"

namespace oru::views {

using analyser::Mem_Row;

namespace {

bool Takes(const Mdl_Filter& filter, std::string_view mdl_typ) {
  return !mdl_typ.empty() && std::ranges::find(filter.Typ, mdl_typ) != filter.Typ.end();
}

bool Is_Kind(const Mem_Row& row, char kind) {
  return row.Mem_Knd == std::string_view(&kind, 1);
}

}  // namespace

void Frm_List::Set_Mdl_Lst(const View_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_List", "Set_Mdl_Lst");
  Filter_Rows rows;
  rows.Add(kMdl_Filters.front().Ord, kMdl_Filters.front().Txt);
  for (const auto& item : ctx.Tbl.Mdl_Tbl) {
    const std::string_view type = service::Row_Field(item.value->Mdl, 1);
    for (const Mdl_Filter& filter : kMdl_Filters)
      if (Takes(filter, type)) rows.Add(filter.Ord, filter.Txt);
  }
  rows.Fill(FCx_Modul);
}

void Frm_List::Set_Mem_Lst(const View_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_List", "Set_Mem_Lst");
  Filter_Rows rows;
  rows.Add(kMem_Filters.front().Ord, kMem_Filters.front().Txt);
  analyser::Tbl_Cur cur;
  if (analyser::Set_Mdl_Fld(ctx.Tbl, cur, Cur_Mdl)) {
    for (const auto& item : cur.Entry->Mem) {
      analyser::Set_Mem_Inf(cur, item.value);
      for (const Mem_Filter& filter : kMem_Filters)
        if (filter.Knd != 0 && Is_Kind(cur.Mem, filter.Knd)) rows.Add(filter.Ord, filter.Txt);
      if (!Is_Kind(cur.Mem, analyser::kMem_Event)) continue;
      const std::string_view object = Event_Object(cur.Mem.Mem_Nam);
      if (object.empty()) continue;
      const std::string type = Get_Ctl_Typ(ctx, cur.Mdl.Mdl_Nam, object);
      rows.Add(object == kForm_Object ? kOrd_Form : kOrd_Object,
               type.empty() ? std::string(object) : fmt::format("{}  ({}) ", object, type));
    }
  }
  rows.Fill(FCx_Membr);
}

void Frm_List::Set_MAl_Lst() {
  Filter_Rows rows;
  for (const Mem_Filter& filter : kMAl_Filters) rows.Add(filter.Ord, filter.Txt);
  rows.Fill(FCx_Membr);
}

bool Frm_List::Chk_Mdl_DOb(std::string_view mdl_typ) const {
  if (FCx_Modul.Text.empty() || FCx_Modul.Text == kMdl_Filters.front().Txt) return true;
  return std::ranges::any_of(kMdl_Filters, [&](const Mdl_Filter& filter) {
    return filter.Txt == FCx_Modul.Text && Takes(filter, mdl_typ);
  });
}

bool Frm_List::Chk_Mem_DOb(const View_Ctx& ctx, const Mem_Row& row) const {
  const std::string_view text = FCx_Membr.Text;
  if (text.empty() || text == kMem_Filters.front().Txt) return true;
  if (ListMode == kBy_Project) {
    if (text == kUnconfirmed_Text) return Get_Ref_Cell(ctx.Tbl, row).Red;
    if (row.Mem_Scp != std::string_view(&analyser::kScp_Public, 1)) return false;
    return std::ranges::any_of(kMAl_Filters, [&](const Mem_Filter& filter) {
      return filter.Knd != 0 && filter.Txt == text && Is_Kind(row, filter.Knd);
    });
  }
  if (std::ranges::any_of(kMem_Filters, [&](const Mem_Filter& filter) {
        return filter.Knd != 0 && filter.Txt == text && Is_Kind(row, filter.Knd);
      }))
    return true;
  // An object passes where its name stands in the row: its own row, and that of a longer name.
  const std::string_view object = Event_Object(row.Mem_Nam);
  return Is_Kind(row, analyser::kMem_Event) && !object.empty() &&
         text.find(object) != std::string_view::npos;
}

}  // namespace oru::views
