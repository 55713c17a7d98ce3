// SPDX-License-Identifier: MIT
#include "views/frm_move.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <vector>

#include "analyser/kinds.h"
#include "service/text.h"
#include "views/list_cells.h"
#include "views/place_messages.h"

namespace oru::views {

using analyser::Tbl_Cur;
using service::Err_Frame;

namespace {

constexpr std::string_view kForm = "Frm_Move";

constexpr std::array kMove_Columns{
    Column_Def{"プロシージャ名", "procedure"}, Column_Def{"Ｓ", "mark"},
    Column_Def{"参照", "references"},          Column_Def{"モジュール名", "module"},
    Column_Def{"更新日時", "updated"},
};
constexpr std::string_view kTitle_Project = "対象プロシージャ名";
constexpr std::string_view kTitle_Recorded = "プロシージャ名 (登録順)";
constexpr std::string_view kUp = " ▲";

// The four ways of arranging: the beginning of the question.
constexpr std::array<std::string_view, 4> kQuestions{
    "チェックした行の履歴 ", "チェックした行から下の履歴 ", "チェックした行から上の履歴 ",
    "未チェックの行の履歴 "};

// "20YY/MM/DD HH:MM:SS" of an update string.
std::string Moment_Text(std::string_view update) {
  constexpr std::string_view kPattern = "20@@/@@/@@ @@:@@:@@";
  constexpr auto kDigits = static_cast<std::size_t>(std::ranges::count(kPattern, '@'));
  if (update.size() < kDigits) return {};
  std::string text;
  std::size_t at = 0;
  for (const char c : kPattern) text += c == '@' ? update[at++] : c;
  return text;
}

std::string Full_Width(std::size_t number) {
  constexpr std::array<std::string_view, 10> kDigits{"０", "１", "２", "３", "４",
                                                     "５", "６", "７", "８", "９"};
  std::string text;
  for (const char digit : fmt::to_string(number))
    text += kDigits.at(static_cast<std::size_t>(digit - '0'));
  return text;
}

// Matches a name, both in lower case, against a pattern in which "*" stands for any text.
bool Match_Stars(std::string_view pattern, std::string_view name) {
  const auto parts = service::Split(pattern, "*");
  if (!name.starts_with(parts.front())) return false;
  std::size_t at = parts.front().size();
  for (std::size_t i = 1; i + 1 < parts.size(); ++i) {
    at = name.find(parts[i], at);
    if (at == std::string_view::npos) return false;
    at += parts[i].size();
  }
  return name.size() - at >= parts.back().size() && name.ends_with(parts.back());
}

bool Fits(std::string_view part, std::string_view name) {
  if (part.empty()) return true;
  const std::string low = service::To_Lower(name);
  return part.find('*') == std::string_view::npos ? low.find(part) != std::string::npos
                                                  : Match_Stars(part, low);
}

// A row's key "Procedure.Module" as the history knows it.
std::string History_Key(std::string_view key) {
  const std::size_t dot = key.rfind('.');
  return analyser::Full_Name(key.substr(dot + 1), key.substr(0, dot));
}

std::string Row_Key(std::string_view module, std::string_view member) {
  return analyser::Full_Name(member, module);
}

}  // namespace

bool Chk_Nam_Flt(std::string_view filter, std::string_view module, std::string_view member) {
  const std::string words = service::To_Lower(service::Replace_All(filter, ":", " "));
  for (const std::string_view word : service::Split(words, " ")) {
    const std::size_t slash = word.find('/');
    const std::size_t dot = word.find('.');
    const bool by_slash = slash != std::string_view::npos;
    const std::size_t cut = by_slash ? slash : dot;
    const std::string_view head = word.substr(0, cut);
    const std::string_view tail =
        cut == std::string_view::npos ? std::string_view() : word.substr(cut + 1);
    if (!Fits(by_slash ? tail : head, member) || !Fits(by_slash ? head : tail, module))
      return false;
  }
  return true;
}

void Frm_Move::Set_MovLs(const Move_Ctx& ctx) {
  const Err_Frame frame(ctx.View.Srv.Errors, kForm.data(), "Set_MovLs");
  const std::string selected = FLv_Move.Sel;
  FLv_Move = {};
  FLv_Move.Columns = Make_Columns(kMove_Columns);
  if (Kind == Move_Kind::History) {
    for (const auto& item : ctx.Lst.His) Set_Mov_Lin(ctx, item.value.Mdl, item.value.Mem);
  } else {
    for (const auto& module : ctx.View.Tbl.Mdl_Tbl)
      for (const auto& item : module.value->Mem) Set_Mov_Lin(ctx, module.key, item.key);
  }
  std::erase_if(Chk, [&](const std::string& key) { return FLv_Move.Find(key) == nullptr; });
  FLv_Move.Select(selected);
  Set_Mov_Seq();
}

// One row, unless the filters leave it out.
void Frm_Move::Set_Mov_Lin(const Move_Ctx& ctx, std::string_view module, std::string_view member) {
  if (!Chk_Nam_Flt(FTx_SelCh, module, member)) return;
  Tbl_Cur cur;
  // A member that is gone keeps its row in the history, so that it can be removed.
  const bool known = analyser::Set_Mdl_Fld(ctx.View.Tbl, cur, module) &&
                     analyser::Set_Mem_Fld(ctx.View.Tbl, cur, module, member);
  if (known && !FCk_ScApi && cur.Mem.Mem_Knd == std::string_view(&analyser::kMem_Api, 1)) return;

  List_Row row;
  row.Key = Row_Key(module, member);
  row.Nam_Key = member;
  row.Seq = FLv_Move.Rows.size();
  row.Chg_Key = fmt::format("{:05}", row.Seq + 1);
  row.Img = known ? analyser::Set_Mem_Img(cur.Mem) : kNo_Icon;
  const UDt_Inf update = Set_UDt_Inf(ctx.View, row.Key);
  const std::string_view mark = update.Mrk == "★" ? update.Mrk : std::string_view();
  const std::string moment = ctx.View.Prc_Upd_Inf ? ctx.View.Prc_Upd_Inf(row.Key) : std::string();
  const std::string_view reference = analyser::Set_Ref_Mrk(ctx.View.Tbl, module, member);
  row.Cells = {fmt::format("{} ", member == analyser::kDeclare ? kDeclare_Text : member),
               std::string(mark), std::string(reference), std::string(module), Moment_Text(moment)};
  const std::string_view icon =
      known ? analyser::Set_Mdl_Img(cur.Mdl.Mdl_Typ) : std::string_view(kNo_Icon);
  row.Mdl_Tag = module;
  row.Mdl_Img = icon;
  row.Cel_Key = Cell_Key(row.Seq + 1, kCol_Mdl, icon);
  FLv_Move.Rows.push_back(std::move(row));
}

void Frm_Move::Set_Mov_Seq() {
  std::vector<List_Row>& rows = FLv_Move.Rows;
  const bool by_module = Order == Move_Order::Module;
  if (Order == Move_Order::Recorded) {
    std::ranges::sort(rows, {}, &List_Row::Chg_Key);
  } else {
    Sort_Rows(rows, List_Order::Name_Up, by_module);
  }
  Thin_Modules(rows, by_module);
  if (FLv_Move.Columns.empty()) FLv_Move.Columns = Make_Columns(kMove_Columns);
  List_Column& name = FLv_Move.Columns.front();
  List_Column& module = FLv_Move.Columns[kCol_Mdl];
  const std::string_view recorded = Kind == Move_Kind::History ? kTitle_Recorded : kTitle_Project;
  name.Ttl = Order == Move_Order::Recorded ? std::string(recorded)
             : by_module                   ? std::string(name.Bas)
                                           : fmt::format("{}{}", name.Bas, kUp);
  module.Ttl = fmt::format("{}{}", module.Bas, by_module ? kUp : std::string_view());
  Rev_Control();
}

void Frm_Move::FLv_Move_ColumnClick(std::size_t column) {
  if (column == 0) {
    Order = Order == Move_Order::Name ? Move_Order::Recorded : Move_Order::Name;
  } else if (column == kCol_Mdl) {
    Order = Order == Move_Order::Module ? Move_Order::Recorded : Move_Order::Module;
  } else {
    return;
  }
  Set_Mov_Seq();
}

void Frm_Move::FLv_Move_ItemCheck(std::string_view key, bool checked) {
  const List_Row* row = FLv_Move.Find(key);
  if (row == nullptr) return;
  if (checked) {
    Chk.insert(row->Key);
  } else {
    Chk.erase(row->Key);
  }
  Rev_Control();
}

void Frm_Move::FLv_Move_ItemClick(std::string_view key) {
  FLv_Move.Select(key);
  Rev_Control();
}

bool Frm_Move::FMn_MovHs_Click(const Move_Ctx& ctx) {
  const Err_Frame frame(ctx.View.Srv.Errors, kForm.data(), "FMn_MovHs_Click");
  if (FLv_Move.Sel.empty()) return false;
  const std::string& key = FLv_Move.Sel;
  const std::size_t dot = key.rfind('.');
  const std::string module = key.substr(dot + 1), member = key.substr(0, dot);
  Tbl_Cur cur;
  // A declaration of an API is no procedure of the host; its line is known from the tables.
  if (analyser::Set_Mem_Fld(ctx.View.Tbl, cur, module, member) &&
      cur.Mem.Mem_Knd == std::string_view(&analyser::kMem_Api, 1))
    return host::Set_Mdl_Lin(ctx.View.VBInst, module, static_cast<int>(To_Number(cur.Mem.Mem_Lin)));
  if (!Chk_Prc_Exs(ctx.View.VBInst, ctx.View.Srv, module, member, Gone_Hint::Update_View))
    return false;
  if (const analyser::His_Entry* entry = ctx.Lst.His.Get(History_Key(key)))
    return host::Set_Prc_Pos(ctx.View.VBInst, module, member, entry->Lin);
  const auto place = host::Get_CMm_Inf(ctx.View.VBInst, module, member);
  return place && host::Set_Mdl_Lin(ctx.View.VBInst, module, place->Bdy);
}

bool Frm_Move::FMn_AlgHs_Click(const Move_Ctx& ctx, int index) {
  const Err_Frame frame(ctx.View.Srv.Errors, kForm.data(), "FMn_AlgHs_Click");
  if (Kind != Move_Kind::History || Chk.empty() || index < 1 ||
      index > static_cast<int>(kQuestions.size()))
    return false;
  const std::vector<List_Row>& rows = FLv_Move.Rows;
  std::size_t first = rows.size(), last = 0;  // of the checked ones, from 0
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!Chk.contains(rows[i].Key)) continue;
    first = std::min(first, i);
    last = i;
  }
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bool checked = Chk.contains(rows[i].Key);
    if (index == 1 ? checked : index == 2 ? i >= first : index == 3 ? i <= last : !checked)
      keys.push_back(rows[i].Key);
  }
  if (keys.empty()) return false;
  const std::string question =
      fmt::format("{}{} 件を削除します。    |実行しますか。",
                  kQuestions.at(static_cast<std::size_t>(index) - 1), Full_Width(keys.size()));
  if (service::Srv_Dsp_Msg(ctx.View.Srv, question, service::Buttons::Yes_No, 1,
                           service::Icon::Question) != service::Answer::Yes)
    return false;
  for (const std::string& key : keys) Del_Entry(ctx, key);
  Lst_Pos = 0;
  Set_Mov_Seq();
  return true;
}

void Frm_Move::Del_Entry(const Move_Ctx& ctx, std::string_view key) {
  ctx.Lst.His.Remove(History_Key(key));
  ctx.Anl_Chg = true;
  Chk.erase(std::string(key));
  std::erase_if(FLv_Move.Rows, [&](const List_Row& row) { return row.Key == key; });
  if (FLv_Move.Sel == key) FLv_Move.Sel.clear();
}

void Frm_Move::FMn_LstDl_Click(const Move_Ctx& ctx) {
  if (Kind != Move_Kind::History || FLv_Move.Sel.empty()) return;
  Del_Entry(ctx, std::string(FLv_Move.Sel));
  Set_Mov_Seq();
}

void Frm_Move::FMn_ClrCh_Click() {
  Chk.clear();
  Rev_Control();
}

void Frm_Move::FBt_ClrCh_Click(const Move_Ctx& ctx) {
  FTx_SelCh.clear();
  Set_MovLs(ctx);
}

void Frm_Move::Rev_Control() {
  FMn_MovHs_Enabled = !FLv_Move.Sel.empty();
  FMn_AlgHs_Enabled = Kind == Move_Kind::History && !Chk.empty();
  FBt_ClrCh_Enabled = !FTx_SelCh.empty();
}

}  // namespace oru::views
