// SPDX-License-Identifier: MIT
#include "views/frm_list.h"

#include <fmt/format.h>

#include <array>

#include "analyser/kinds.h"
#include "host/derived.h"
#include "views/list_cells.h"

namespace oru::views {

using analyser::Mdl_Entry;
using analyser::Mem_Row;
using analyser::Tbl_Cur;
using service::Err_Frame;

namespace {

constexpr std::string_view kForm = "Frm_List";
constexpr int kOrders = 3;

// The status line of a fill, taken away however the fill ends.
class Status_Line {
 public:
  explicit Status_Line(const View_Ctx& ctx) : ctx_(ctx) {}
  ~Status_Line() {
    if (shown_) ctx_.Srv.Ui.Close_Progress();
  }
  Status_Line(const Status_Line&) = delete;
  Status_Line& operator=(const Status_Line&) = delete;

  void Show(std::string_view module, std::int64_t count, std::int64_t total) {
    constexpr std::string_view kText = "リストを設定しています";
    shown_ = true;
    ctx_.Srv.Ui.Show_Progress(
        {kText, module, count, total, fmt::format("{} ( {} / {} )", kText, count, total), {}});
  }

 private:
  const View_Ctx& ctx_;
  bool shown_ = false;
};

// Name as shown in a first column: a blank keeps it off the next one.
std::string Name_Cell(std::string_view name) {
  return fmt::format("{} ", name);
}

// What a module's "Mem" rows sum up to.
struct Mdl_Sums {
  std::array<std::int64_t, 5> Knd{};  // by kind: event, Sub, Function, Property, API
  std::int64_t Stm = 0, Cmt = 0, Blk = 0;
  bool Has_Members = false;
};

Mdl_Sums Sum_Members(const Mdl_Entry& entry) {
  Mdl_Sums sums;
  for (const auto& item : entry.Mem) {
    Tbl_Cur cur;
    analyser::Set_Mem_Inf(cur, item.value);
    const Mem_Row& mem = cur.Mem;
    sums.Stm += To_Number(mem.Mem_Stm);
    sums.Cmt += To_Number(mem.Mem_Cmt);
    sums.Blk += To_Number(mem.Mem_Blk);
    if (mem.Mem_Nam == analyser::kDeclare) continue;
    const std::int64_t kind = mem.Mem_Knd.empty() ? -1 : To_Number(mem.Mem_Knd);
    if (kind < 0 || kind >= static_cast<std::int64_t>(sums.Knd.size()))
      throw service::Sys_Error(service::kOut_Of_Range,
                               fmt::format("インデックスが有効範囲にありません。({})", item.key));
    ++sums.Knd[static_cast<std::size_t>(kind)];
    sums.Has_Members = true;
  }
  return sums;
}

void Set_Change_Keys(List_Row& row, UDt_Inf& update) {
  row.Chg = update.Chg;
  row.Chg_Key = std::move(update.Key);
}

List_Row Make_Modul_Row(const View_Ctx& ctx, const analyser::Mdl_Row& mdl, const Mdl_Entry& entry) {
  const Mdl_Sums sums = Sum_Members(entry);
  UDt_Inf update = Set_UDt_Inf(ctx, mdl.Mdl_Nam);
  const bool nothing = !sums.Has_Members && !Chk_Def_Stm(ctx.VBInst, mdl.Mdl_Nam);

  List_Row row;
  row.Key = row.Nam_Key = mdl.Mdl_Nam;
  row.Img = analyser::Set_Mdl_Img(mdl.Mdl_Typ);
  row.Cells = {Name_Cell(mdl.Mdl_Nam), std::string(nothing ? kMrk_None : update.Mrk), mdl.Mdl_CTx};
  row.Cells.reserve(kModul_Columns.size());
  for (const std::int64_t count : sums.Knd) row.Cells.push_back(Edt_Count(count));
  for (const std::int64_t count : {sums.Stm, sums.Cmt, sums.Blk})
    row.Cells.push_back(Edt_Metric(count));
  row.Cells.push_back(update.Dat);
  Set_Change_Keys(row, update);
  return row;
}

List_Row Make_Membr_Row(const View_Ctx& ctx, const Mem_Row& mem) {
  List_Row row;
  row.Key = fmt::format("{}.{}", mem.Mem_Nam, mem.Mem_Mdl);
  row.Nam_Key = mem.Mem_Nam;
  row.Img = analyser::Set_Mem_Img(mem);
  UDt_Inf update = Set_UDt_Inf(ctx, row.Key);
  const Ref_Cell reference = Get_Ref_Cell(ctx.Tbl, mem);
  row.Ref_Red = reference.Red;
  row.Cells = {Name_Cell(mem.Mem_Nam == analyser::kDeclare ? kDeclare_Text : mem.Mem_Nam),
               std::string(update.Mrk), std::string(reference.Mrk), mem.Mem_CTx};
  row.Cells.reserve(kMembr_Columns.size() + 1);
  for (const std::string* count :
       {&mem.Mem_Stm, &mem.Mem_Cmt, &mem.Mem_Blk, &mem.Mem_Cpx, &mem.Mem_Nst})
    row.Cells.push_back(Edt_Metric(To_Number(*count)));
  row.Cells.push_back(update.Dat);
  Set_Change_Keys(row, update);
  return row;
}

void Add_Module_Cell(List_Row& row, std::string_view module, std::string_view tag) {
  row.Mdl_Tag = module;
  row.Mdl_Img = tag;
  row.Cel_Key = Cell_Key(row.Seq + 1, kCol_Mdl, tag);
  row.Cells.insert(row.Cells.begin() + kCol_Mdl, std::string(module));
}

void Add_Row(List_Table& table, List_Row row) {
  row.Seq = table.Rows.size();
  table.Rows.push_back(std::move(row));
}

void Clear_Rows(List_Table& table) {
  table.Rows.clear();
  table.Sel.clear();
}

void Set_Title(List_Table& table, std::size_t column, std::string_view mark) {
  List_Column& title = table.Columns.at(column);
  title.Ttl = fmt::format("{}{}", title.Bas, mark);
}

// A table of one name column: rows and title by a mode of 0 to 2.
void Apply_Order(List_Table& table, int mode) {
  if (table.Rows.empty()) return;
  Sort_Rows(table.Rows, static_cast<List_Order>(mode), false);
  Set_Title(table, 0, kOrder_Marks.at(static_cast<std::size_t>(mode)));
}

int Next_Order(int mode) {
  return (mode + 1) % kOrders;
}

// A mode as it stands in the options; what is none of the modes becomes the first.
int Known_Mode(std::int32_t mode, bool may_group) {
  const bool plain = mode >= 0 && mode < kOrders;
  const bool grouped = may_group && mode >= kGrouped && mode < kGrouped + kOrders;
  return plain || grouped ? mode : 0;
}

char Separator(const View_Ctx& ctx) {
  return ctx.Srv.Opt.Flag("LstSep") ? ',' : '\t';
}

}  // namespace

void Frm_List::Lod_State(const service::Settings& settings) {
  ListMode = settings.Number("ListMode") == kBy_Project ? kBy_Project : kBy_Module;
  ModulSortMode = Known_Mode(settings.Number("ModulSortMode"), false);
  MembrSortMode = Known_Mode(settings.Number("MembrSortMode"), false);
  MemAlSortMode = Known_Mode(settings.Number("MemAlSortMode"), true);
}

void Frm_List::Sav_State(service::Settings& settings) const {
  settings.Set_Number("ListMode", ListMode);
  settings.Set_Number("ModulSortMode", ModulSortMode);
  settings.Set_Number("MembrSortMode", MembrSortMode);
  settings.Set_Number("MemAlSortMode", MemAlSortMode);
}

void Frm_List::Int_List() {
  FLv_Modul = {};
  FLv_Membr = {};
  FLv_Modul.Columns = Make_Columns(kModul_Columns);
  FLv_Membr.Columns = Make_Columns(kMembr_Columns);
  if (ListMode == kBy_Project) {
    const auto column = Make_Columns(std::span(&kMdl_Column, 1));
    FLv_Membr.Columns.insert(FLv_Membr.Columns.begin() + kCol_Mdl, column.front());
  }
}

void Frm_List::Get_Inform(const View_Ctx& ctx) {
  const Err_Frame frame(ctx.Srv.Errors, kForm.data(), "Get_Inform");
  const std::optional<host::Pane_Place> place = host::Get_ACp_Inf(ctx.VBInst);
  if (place) Cur_Mdl = place->Mdl_Nam;
  if (!ctx.Tbl.Mdl_Tbl.Has(Cur_Mdl)) {
    const auto* first = ctx.Tbl.Mdl_Tbl.At(1);
    Cur_Mdl = first == nullptr ? std::string() : first->key;
  }
  if (FLv_Membr.Columns.empty()) Int_List();
  if (ListMode == kBy_Project) {
    Set_MAl_Lst();
    Set_MemAl(ctx);
  } else {
    Set_Mdl_Lst(ctx);
    Set_Modul(ctx);
    Set_Mem_Lst(ctx);
    Set_Membr(ctx);
  }
  if (!place || FLv_Membr.Select(fmt::format("{}.{}", place->Mem.Nam, place->Mdl_Nam))) return;
  // By module, the module's own row is selected already.
  if (ListMode == kBy_Project)
    FLv_Membr.Select(fmt::format("{}.{}", analyser::kDeclare, place->Mdl_Nam));
}

std::string_view Frm_List::FBt_List_Text() const {
  return ListMode == kBy_Module ? "すべてのプロシージャ(&L)" : "モジュール単位(&L)";
}

void Frm_List::FBt_List_Click(const View_Ctx& ctx) {
  ListMode = ListMode == kBy_Module ? kBy_Project : kBy_Module;
  Int_List();
  Get_Inform(ctx);
}

bool Frm_List::FCx_Modul_Click(const View_Ctx& ctx, std::string_view text) {
  if (!FCx_Modul.Choose(text)) return false;
  Set_Modul(ctx);
  return true;
}

bool Frm_List::FCx_Membr_Click(const View_Ctx& ctx, std::string_view text) {
  if (!FCx_Membr.Choose(text)) return false;
  if (ListMode == kBy_Project) {
    Set_MemAl(ctx);
  } else {
    Set_Membr(ctx);
  }
  return true;
}

void Frm_List::FLv_Modul_ItemClick(const View_Ctx& ctx, std::string_view mdl_nam) {
  if (!FLv_Modul.Select(mdl_nam)) return;
  Cur_Mdl = FLv_Modul.Sel;
  Set_Mem_Lst(ctx);
  Set_Membr(ctx);
}

void Frm_List::FLv_Modul_ColumnClick(std::size_t column) {
  if (column != 0) return;
  ModulSortMode = Next_Order(ModulSortMode);
  Set_Modul_Seq();
}

void Frm_List::FLv_Membr_ColumnClick(std::size_t column) {
  if (ListMode == kBy_Module) {
    if (column != 0) return;
    MembrSortMode = Next_Order(MembrSortMode);
    return Set_Membr_Seq();
  }
  const int group = MemAlSortMode >= kGrouped ? kGrouped : 0;
  if (column == 0) {
    MemAlSortMode = group + Next_Order(MemAlSortMode - group);
  } else if (column == kCol_Mdl) {
    MemAlSortMode += group == 0 ? kGrouped : -kGrouped;
  } else {
    return;
  }
  Set_MemAl_Seq();
}

void Frm_List::Set_Modul(const View_Ctx& ctx) {
  const Err_Frame frame(ctx.Srv.Errors, kForm.data(), "Set_Modul");
  Clear_Rows(FLv_Modul);
  for (const auto& item : ctx.Tbl.Mdl_Tbl) {
    Tbl_Cur cur;
    analyser::Set_Mdl_Inf(cur, item.value->Mdl);
    if (Chk_Mdl_DOb(cur.Mdl.Mdl_Typ)) Add_Row(FLv_Modul, Make_Modul_Row(ctx, cur.Mdl, *item.value));
  }
  Set_Modul_Seq();
}

void Frm_List::Set_Modul_Seq() {
  Apply_Order(FLv_Modul, ModulSortMode);
  FLv_Modul.Select(Cur_Mdl);
}

void Frm_List::Set_Membr(const View_Ctx& ctx) {
  const Err_Frame frame(ctx.Srv.Errors, kForm.data(), "Set_Membr");
  Clear_Rows(FLv_Membr);
  Tbl_Cur cur;
  if (!analyser::Set_Mdl_Fld(ctx.Tbl, cur, Cur_Mdl)) return;
  for (const auto& item : cur.Entry->Mem) {
    analyser::Set_Mem_Inf(cur, item.value);
    if (Chk_Mem_DOb(ctx, cur.Mem)) Add_Row(FLv_Membr, Make_Membr_Row(ctx, cur.Mem));
  }
  Set_Membr_Seq();
}

void Frm_List::Set_Membr_Seq() {
  Apply_Order(FLv_Membr, MembrSortMode);
}

void Frm_List::Set_MemAl(const View_Ctx& ctx) {
  const Err_Frame frame(ctx.Srv.Errors, kForm.data(), "Set_MemAl");
  Status_Line status(ctx);
  Clear_Rows(FLv_Membr);
  std::int64_t count = 0;
  const auto total = static_cast<std::int64_t>(ctx.Tbl.Mdl_Tbl.Count());
  for (const auto& module : ctx.Tbl.Mdl_Tbl) {
    status.Show(module.key, ++count, total);
    Tbl_Cur cur;
    analyser::Set_Mdl_Inf(cur, module.value->Mdl);
    for (const auto& item : module.value->Mem) {
      analyser::Set_Mem_Inf(cur, item.value);
      if (!Chk_Mem_DOb(ctx, cur.Mem)) continue;
      List_Row row = Make_Membr_Row(ctx, cur.Mem);
      row.Seq = FLv_Membr.Rows.size();
      Add_Module_Cell(row, cur.Mdl.Mdl_Nam, analyser::Set_Mdl_Img(cur.Mdl.Mdl_Typ));
      FLv_Membr.Rows.push_back(std::move(row));
    }
  }
  Set_MemAl_Seq();
}

void Frm_List::Set_MemAl_Seq() {
  if (FLv_Membr.Rows.empty()) return;
  const bool grouped = MemAlSortMode >= kGrouped;
  const int order = MemAlSortMode - (grouped ? kGrouped : 0);
  Sort_Rows(FLv_Membr.Rows, static_cast<List_Order>(order), grouped);
  Thin_Modules(FLv_Membr.Rows, grouped);
  Set_Title(FLv_Membr, 0, kOrder_Marks.at(static_cast<std::size_t>(order)));
  Set_Title(FLv_Membr, kCol_Mdl, grouped ? kOrder_Marks.front() : std::string_view());
}

std::string Frm_List::FMn_CCopy_Modul(const View_Ctx& ctx) const {
  return Cpy_Lst_Inf(fmt::format("（{}）内のモジュール情報", ctx.Srv.Prj_Nam), FLv_Modul,
                     Separator(ctx));
}

std::string Frm_List::FMn_CCopy_Membr(const View_Ctx& ctx) const {
  const std::string heading = ListMode == kBy_Project
                                  ? fmt::format("（{}）プロシージャ情報", ctx.Srv.Prj_Nam)
                                  : fmt::format("（{}）内のプロシージャ情報", Cur_Mdl);
  return Cpy_Lst_Inf(heading, FLv_Membr, Separator(ctx));
}

}  // namespace oru::views
