// SPDX-License-Identifier: MIT
// `oru history`: the change history, as its view lists it.
#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "host/places.h"
#include "service/text.h"
#include "views/frm_move.h"
#include "views/list_cells.h"

namespace oru::app {

namespace {

// What programs read is the name in the tables; people read what the view shows.
std::string Member_Text(const views::List_Row& row, std::size_t dot, bool on_screen) {
  return on_screen ? std::string(service::Trim(row.Cells[0])) : row.Key.substr(0, dot);
}

}  // namespace

void Add_History_Options(CLI::App& command, History_Options& options) {
  command
      .add_option(
          "--filter", options.Filter,
          "名前で絞り込む: 「プロシージャ」「モジュール/プロシージャ」「プロシージャ.モジュール」を"
          "空白か「:」で区切る (全てに一致、* は任意の文字列、* が無ければ部分一致)")
      ->type_name("NAMES");
}

int Cmd_History(const Work& work, const Output& output, const History_Options& options) {
  Session& session = work.session;
  const views::Move_Ctx ctx{session.View(), session.Lst, session.Sta.Anl_Chg};
  views::Frm_Move view;
  view.FTx_SelCh = options.Filter;
  view.Set_MovLs(ctx);
  const bool on_screen = output.format == Format::Columns;
  if (view.FLv_Move.Rows.empty() && on_screen) {
    output.err
        << (session.Lst.His.Empty()
                ? "oru: 変更履歴はまだありません。次回からの解析で、変更されたプロシージャを記録します。\n"
                : "oru: 絞り込みに合う変更履歴はありません。\n");
    return kExit_Ok;
  }
  Out_Table table{{{"更新日時", "updated"},
                   {"Ｓ", "mark"},
                   {"モジュール", "module"},
                   {"プロシージャ", "procedure"},
                   {"変更行", "line", Cell_Type::Number},
                   {"モジュール行", "moduleLine", Cell_Type::Number},
                   {"参照", "references"}},
                  {}};
  for (const views::List_Row& row : view.FLv_Move.Rows) {
    const std::size_t dot = row.Key.rfind('.');
    const std::string module = row.Key.substr(dot + 1), member = row.Key.substr(0, dot);
    const analyser::His_Entry* entry = session.Lst.His.Get(analyser::Full_Name(module, member));
    const auto place = host::Get_CMm_Inf(*session.VBInst, module, member);
    table.rows.push_back({row.Cells[4], std::string(views::Set_UDt_Inf(ctx.View, row.Key).Mrk),
                          module, Member_Text(row, dot, on_screen), fmt::to_string(entry->Lin),
                          place ? fmt::to_string(place->Top + entry->Lin - 1) : std::string(),
                          row.Cells[2]});
  }
  Print_Table(output.out, table, output.format, output.width);
  return kExit_Ok;
}

}  // namespace oru::app
