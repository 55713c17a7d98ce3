// SPDX-License-Identifier: MIT
// `oru list`: the project structure lists, driven as their view is: filter chosen, title clicked.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "analyser/kinds.h"
#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "service/text.h"
#include "views/frm_list.h"
#include "views/list_cells.h"

namespace oru::app {

namespace {

constexpr std::array<std::string_view, 3> kSorts{"name", "name-desc", "changed"};

int Sort_Mode(const std::string& sort) {
  const auto* at = std::find(kSorts.begin(), kSorts.end(), sort);
  return at == kSorts.end() ? 0 : static_cast<int>(at - kSorts.begin());
}

// The text of the filter that the user named by its English key or by its text.
template <class Filters>
std::string Filter_Text(const Filters& filters, const std::string& wanted) {
  for (const auto& filter : filters)
    if (wanted == filter.Key || wanted == filter.Txt) return std::string(filter.Txt);
  return wanted;
}

template <class Filters>
std::string Filter_Keys(const Filters& filters) {
  std::string keys;
  for (const auto& filter : filters) keys += (keys.empty() ? "" : ", ") + std::string(filter.Key);
  return keys;
}

// The rows of the box, each with the key that names it on the command line.
template <class Filters>
std::string No_Such_Filter(const Filters& filters, const std::string& wanted,
                           const views::Filter_Box& box) {
  std::string rows;
  for (const std::string& row : box.Rows) {
    if (!rows.empty()) rows += ", ";
    for (const auto& filter : filters)
      if (row == filter.Txt) rows += std::string(filter.Key) + " ";
    rows += service::Trim(row);
  }
  return fmt::format("oru: 「{}」という絞り込みはこの一覧にありません。選べるもの: {}\n", wanted,
                     rows);
}

// The view's table with columns put in front of it and its comment moved to the end, where a
// terminal can cut it. Columns that nothing has been filled into are left out on a terminal.
class Table_Builder {
 public:
  explicit Table_Builder(const views::List_Table& list) : list_(list) {
    table_.rows.resize(list.Rows.size());
  }
  template <class Cell>
  void Add(std::string title, std::string key, Cell_Type type, Cell cell, bool shrinks = false) {
    table_.columns.push_back({std::move(title), std::move(key), type, shrinks});
    for (std::size_t i = 0; i < list_.Rows.size(); ++i)
      table_.rows[i].push_back(cell(list_.Rows[i]));
  }
  void Add_Column(std::size_t column, bool only_if_filled, bool shrinks = false) {
    const views::List_Column& from = list_.Columns[column];
    const auto cell = [column](const views::List_Row& row) {
      return std::string(service::Trim(row.Cells[column]));
    };
    const bool filled = std::any_of(list_.Rows.begin(), list_.Rows.end(),
                                    [&](const views::List_Row& row) { return !cell(row).empty(); });
    if (only_if_filled && !filled) return;
    Add(from.Ttl, std::string(from.Key), from.Right ? Cell_Type::Number : Cell_Type::Text, cell,
        shrinks);
  }
  [[nodiscard]] Out_Table Take() { return std::move(table_); }

 private:
  const views::List_Table& list_;
  Out_Table table_;
};

constexpr std::string_view kComment_Key = "comment";

void Add_Rest(Table_Builder& builder, const views::List_Table& list, std::size_t from,
              bool on_screen) {
  std::size_t comment = list.Columns.size();
  for (std::size_t c = from; c < list.Columns.size(); ++c) {
    if (list.Columns[c].Key == kComment_Key) {
      comment = c;
    } else if (on_screen || list.Columns[c].Key != views::kMdl_Column.Key) {
      const bool may_go = list.Columns[c].Key == "updated" || list.Columns[c].Key == "mark";
      builder.Add_Column(c, on_screen && may_go);
    }
  }
  if (comment < list.Columns.size()) builder.Add_Column(comment, false, true);
}

int Component_Type(host::VBE& vbe, const std::string& name) {
  host::VBComponent* component = vbe.ActiveVBProject()->VBComponents().Item(name);
  return component == nullptr ? 0 : component->Type();
}

std::string Module_Lines(host::VBE& vbe, const std::string& name) {
  host::VBComponent* component = vbe.ActiveVBProject()->VBComponents().Item(name);
  const host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
  return fmt::to_string(code == nullptr ? 0 : code->CountOfLines());
}

void Add_Order_Options(CLI::App& command, List_Options& options) {
  command
      .add_option("--sort", options.Sort,
                  "並べ替え: name 名前昇順, name-desc 名前降順, changed 変更順")
      ->check(CLI::IsMember(std::vector<std::string>(kSorts.begin(), kSorts.end())))
      ->type_name("ORDER")
      ->capture_default_str();
  command.add_flag("--copy", options.Copy, "クリップボード用のテキスト (見出し付き) で出力する");
}

}  // namespace

void Add_Module_List_Options(CLI::App& command, List_Options& options) {
  command
      .add_option("--filter", options.Filter,
                  "種類で絞り込む: " + Filter_Keys(views::kMdl_Filters) + " (または一覧の日本語名)")
      ->type_name("KIND");
  Add_Order_Options(command, options);
}

void Add_Procedure_List_Options(CLI::App& command, List_Options& options) {
  command.add_option("--module", options.Module, "このモジュールのプロシージャだけ")
      ->type_name("NAME");
  command
      .add_option(
          "--filter", options.Filter,
          "絞り込む: " + Filter_Keys(views::kMAl_Filters) +
              " (プロジェクト全体では Public のもの)。--module があるときは unconfirmed の代わりに、イベントの対象 (コントロール名など)")
      ->type_name("KIND");
  command.add_flag("--group", options.Grouped, "モジュールごとにまとめて並べる");
  Add_Order_Options(command, options);
}

int Cmd_List_Modules(const Work& work, const Output& output, const List_Options& options) {
  Session& session = work.session;
  const views::View_Ctx ctx = session.View();
  views::Frm_List view;
  view.ModulSortMode = Sort_Mode(options.Sort);
  view.Int_List();
  view.Get_Inform(ctx);
  if (!options.Filter.empty() &&
      !view.FCx_Modul_Click(ctx, Filter_Text(views::kMdl_Filters, options.Filter))) {
    output.err << No_Such_Filter(views::kMdl_Filters, options.Filter, view.FCx_Modul);
    return kExit_Not_Found;
  }
  if (options.Copy) {
    output.out << view.FMn_CCopy_Modul(ctx);
    return kExit_Ok;
  }
  const bool on_screen = output.format == Format::Columns;
  Table_Builder builder(view.FLv_Modul);
  analyser::Tbl_Cur cur;
  builder.Add(view.FLv_Modul.Columns[0].Ttl, "name", Cell_Type::Text,
              [](const views::List_Row& row) { return row.Key; });
  if (!on_screen)
    builder.Add("型", "type", Cell_Type::Number, [&](const views::List_Row& row) {
      return fmt::to_string(Component_Type(*session.VBInst, row.Key));
    });
  builder.Add("種別", "kind", Cell_Type::Text, [&](const views::List_Row& row) {
    return analyser::Set_Mdl_Fld(session.Tbl, cur, row.Key)
               ? std::string(analyser::Set_Mdl_Typ(cur.Mdl.Mdl_Typ))
               : std::string();
  });
  builder.Add("行数", "lines", Cell_Type::Number,
              [&](const views::List_Row& row) { return Module_Lines(*session.VBInst, row.Key); });
  Add_Rest(builder, view.FLv_Modul, 1, on_screen);
  Print_Table(output.out, builder.Take(), output.format, output.width);
  return kExit_Ok;
}

int Cmd_List_Procedures(const Work& work, const Output& output, const List_Options& options) {
  Session& session = work.session;
  const views::View_Ctx ctx = session.View();
  const bool by_module = !options.Module.empty();
  views::Frm_List view;
  view.ListMode = by_module ? views::kBy_Module : views::kBy_Project;
  view.MembrSortMode = Sort_Mode(options.Sort);
  view.MemAlSortMode = Sort_Mode(options.Sort) + (options.Grouped ? views::kGrouped : 0);
  view.Int_List();
  if (by_module) {
    analyser::Tbl_Cur cur;
    if (!analyser::Set_Mdl_Fld(session.Tbl, cur, options.Module)) {
      output.err << fmt::format(
          "oru: 「{}」というモジュールはプロジェクトにありません。「oru list modules」で名前を確認してください。\n",
          options.Module);
      return kExit_Not_Found;
    }
    view.Cur_Mdl = cur.Mdl.Mdl_Nam;
  }
  view.Get_Inform(ctx);
  const std::string filter = by_module ? Filter_Text(views::kMem_Filters, options.Filter)
                                       : Filter_Text(views::kMAl_Filters, options.Filter);
  if (!options.Filter.empty() && !view.FCx_Membr_Click(ctx, filter)) {
    output.err << (by_module ? No_Such_Filter(views::kMem_Filters, options.Filter, view.FCx_Membr)
                             : No_Such_Filter(views::kMAl_Filters, options.Filter, view.FCx_Membr));
    return kExit_Not_Found;
  }
  if (options.Copy) {
    output.out << view.FMn_CCopy_Membr(ctx);
    return kExit_Ok;
  }
  const bool on_screen = output.format == Format::Columns;
  const auto row_of = [&](const views::List_Row& row) {
    const std::size_t dot = row.Key.rfind('.');
    return std::pair{row.Key.substr(dot + 1), row.Key.substr(0, dot)};
  };
  Table_Builder builder(view.FLv_Membr);
  analyser::Tbl_Cur cur;
  if (on_screen) {
    builder.Add_Column(0, false);
  } else {
    // Programs get the names as the tables hold them.
    builder.Add("", "name", Cell_Type::Text,
                [&](const views::List_Row& row) { return row_of(row).second; });
    builder.Add("", "module", Cell_Type::Text,
                [&](const views::List_Row& row) { return row_of(row).first; });
  }
  builder.Add("種別", "kind", Cell_Type::Text, [&](const views::List_Row& row) {
    const auto [module, member] = row_of(row);
    return analyser::Set_Mem_Fld(session.Tbl, cur, module, member)
               ? std::string(analyser::Set_Mem_Typ(cur.Mem))
               : std::string();
  });
  if (!on_screen) {
    builder.Add("", "scope", Cell_Type::Text, [&](const views::List_Row& row) {
      const auto [module, member] = row_of(row);
      if (!analyser::Set_Mem_Fld(session.Tbl, cur, module, member) || cur.Mem.Mem_Scp.empty())
        return std::string();
      const char scope = cur.Mem.Mem_Scp.front();
      return std::string(scope == analyser::kScp_Public    ? "Public"
                         : scope == analyser::kScp_Private ? "Private"
                                                           : "Friend");
    });
    builder.Add("", "line", Cell_Type::Number, [&](const views::List_Row& row) {
      const auto [module, member] = row_of(row);
      (void)analyser::Set_Mem_Fld(session.Tbl, cur, module, member);
      return cur.Mem.Mem_Lin;
    });
  }
  Add_Rest(builder, view.FLv_Membr, 1, on_screen);
  Print_Table(output.out, builder.Take(), output.format, output.width);
  return kExit_Ok;
}

}  // namespace oru::app
