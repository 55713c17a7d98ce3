// SPDX-License-Identifier: MIT
// `oru chart`: who calls whom, as a tree, rows, or a picture.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string_view>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "app/cli/picture.h"
#include "host/places.h"
#include "query/chart_dot.h"
#include "query/frm_chart.h"
#include "service/errors.h"
#include "service/files.h"
#include "service/text.h"

namespace oru::app {

namespace {

/// A picture of more procedures takes `dot` minutes, and nobody can read it.
constexpr std::size_t kMost_Drawn = 1'000;

int Find_Root(const Work& work, const Output& output, const Chart_Options& options,
              views::Member_Name& root) {
  if (!options.Unreferenced) return Find_One(work, output, options.Name, root);
  analyser::Tbl_Cur cur;
  const std::string module = options.Name.substr(0, options.Name.find('.'));
  if (analyser::Set_Mdl_Fld(work.session.Tbl, cur, module)) {
    root = {cur.Mdl.Mdl_Nam, std::string(analyser::kDeclare)};
    return kExit_Ok;
  }
  Tell(
      output.err,
      fmt::format(
          "「{}」というモジュールはプロジェクトにありません。「oru list modules」で名前を確認してください。",
          module));
  return kExit_Not_Found;
}

std::string_view Mark_Word(query::Chart_Mark mark) {
  switch (mark) {
    case query::Chart_Mark::Cycle:
      return "cycle";
    case query::Chart_Mark::Expanded:
      return "expanded";
    case query::Chart_Mark::More:
      return "more";
    case query::Chart_Mark::None:
      break;
  }
  return {};
}

Out_Table Rows_Of(const Work& work, const query::Query_Ctx& ctx, const query::Frm_Chart& chart) {
  Out_Table table;
  table.columns = {{"番号", "id", Cell_Type::Number},
                   {"親", "parent", Cell_Type::Number},
                   {"階層", "level", Cell_Type::Number},
                   {"モジュール", "module"},
                   {"プロシージャ", "procedure"},
                   {"印", "mark"},
                   {"エラー処理部", "error_section", Cell_Type::Flag},
                   {"呼出行", "call_lines"},
                   {"ファイル", "file"}};
  for (std::size_t i = 1; i < chart.Nodes.size(); ++i) {
    const query::Chart_Node& node = chart.Nodes[i];
    if (node.Mem.empty()) continue;
    std::string lines;
    for (const int line : chart.Call_Lines(ctx, static_cast<int>(i)))
      lines.append(lines.empty() ? "" : " ").append(std::to_string(line));
    table.rows.push_back({std::to_string(i), std::to_string(node.Parent),
                          std::to_string(node.Depth - 1), node.Mdl, node.Mem,
                          std::string(Mark_Word(node.Mark)), node.Error_Section ? "1" : "", lines,
                          work.project.File_Of(node.Mdl)});
  }
  return table;
}

// A graph is text, though its usual extension is that of a document's template as well.
bool Is_Graph_Or_New(const std::string& path) {
  if (!service::Equal_No_Case(std::filesystem::path(path).extension().string(), ".dot"))
    return false;
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return true;
  return service::Read_File(path).bytes.starts_with(query::kDot_Begin);
}

bool Save_Dot(const Output& output, const std::string& path, std::string_view text) {
  if (!Is_Graph_Or_New(path)) return Save_Bytes(output, path, text);
  const service::File_Result put = service::Write_File(path, text);
  if (!put.Ok()) Tell(output.err, put.error);
  return put.Ok();
}

// The graph, and its picture, into the files that were asked for.
int Save_Graph(const Output& output, const query::Frm_Chart& chart, const Chart_Options& options) {
  const query::Dot_Graph graph = query::Get_Dot(chart);
  if (options.Dot == "-") {
    output.out << graph.Text;
  } else if (!options.Dot.empty() && !Save_Dot(output, options.Dot, graph.Text)) {
    return kExit_Output;
  }
  if (options.Svg.empty()) return kExit_Ok;
  if (graph.Procedures > kMost_Drawn) {
    Tell(
        output.err,
        fmt::format(
            "{} 個のプロシージャは１枚の図に描けません (上限 {})。--levels で階層を減らすか、--dot で書き出してください。",
            graph.Procedures, kMost_Drawn));
    return kExit_Usage;
  }
  const Picture picture = Draw_Graph(graph.Text);
  if (!picture.error.empty()) {
    Tell(output.err, picture.error);
    return kExit_Output;
  }
  return Save_Bytes(output, options.Svg, picture.svg) ? kExit_Ok : kExit_Output;
}

}  // namespace

void Add_Chart_Options(CLI::App& command, Chart_Options& options) {
  command
      .add_option("NAME", options.Name,
                  "Module.Member (Member だけでもよい)。--unreferenced ではモジュール")
      ->required();
  auto* callees = command.add_flag("--callees", options.Callees, "呼び出すプロシージャ (省略時)");
  auto* callers = command.add_flag("--callers", options.Callers, "参照しているプロシージャ");
  auto* unreferenced =
      command.add_flag("--unreferenced", options.Unreferenced,
                       "モジュールの中の、どこからも参照されていない Sub・Function");
  callees->excludes(callers)->excludes(unreferenced);
  callers->excludes(unreferenced);
  command.add_option("--levels", options.Levels, "表示する階層の数 (0 は 40 階層まで)")
      ->check(CLI::Range(0, 1000));
  auto* compact =
      command.add_flag("--compact", options.Compact,
                       "簡略表示: 一度展開したプロシージャは ▲ を付け、再び展開しない (省略時)");
  command
      .add_flag("--full", options.Full,
                "現れるたびに展開する。大きなプロジェクトでは行数が急に増え、20,000 行で打ち切る")
      ->excludes(compact);
  command.add_flag("--no-error-handlers", options.No_Error_Handlers,
                   "エラー処理部からの呼出しを除く");
  command.add_option("--dot", options.Dot, "Graphviz のグラフとして書く (FILE を省くと標準出力)")
      ->type_name("[FILE]")
      ->expected(0, 1)
      ->default_str("-");
  command.add_option("--svg", options.Svg, "図を描く (Graphviz の dot が必要)")->type_name("FILE");
  command.add_flag("--copy", options.Copy, "貼付け用のテキスト (全角の罫線) で出力する");
  Add_Text_Files(command, options.Files);
  command.footer(
      "印: ▼ 上位に同じプロシージャがある (循環)  ▲ 別の場所に展開済み  ＋ 階層の指定で隠れている\n"
      "( ) の中は、１つ上の段とモジュールが異なるときのモジュール名\n"
      "--copy では、▲ を *1、▼ を *2 と書く。--json・--tsv の mark は cycle、expanded、more");
}

int Cmd_Chart(const Work& work, const Output& output, const Chart_Options& options) {
  views::Member_Name root;
  if (const int exit = Find_Root(work, output, options, root); exit != kExit_Ok) return exit;
  query::Frm_Chart chart;
  chart.Lod_State(work.session.Srv.Opt);
  chart.Absolute_Lines = true;
  chart.Cond.Crt_Cmp = !options.Full;
  chart.Cond.Crt_Lvl = options.Levels;
  chart.Cond.Crt_ErH = chart.Cond.Crt_ErH || options.No_Error_Handlers;
  const int mode = options.Unreferenced ? query::kUnreferenced
                   : options.Callers    ? query::kCallers
                                        : query::kCallees;
  const query::Query_Ctx ctx{work.session.Srv, *work.session.VBInst, work.session.Tbl, {}, {}};
  bool shown = false;
  if (!service::Run_Evt(work.session.Srv, "oru", "Cmd_Chart",
                        [&] { shown = chart.Show(ctx, mode, root.Module, root.Member); }))
    return kExit_Stopped;
  if (!shown) return kExit_Not_Found;

  const bool to_files = !options.Files.Empty() || !options.Dot.empty() || !options.Svg.empty();
  if (!options.Dot.empty() || !options.Svg.empty())
    if (const int exit = Save_Graph(output, chart, options); exit != kExit_Ok) return exit;
  if (output.format != Format::Columns) {
    if (options.Dot != "-")
      Print_Table(output.out, Rows_Of(work, ctx, chart), output.format, output.width);
    return kExit_Ok;
  }
  const query::Rich_Text text = chart.Tree_Text(
      ctx, query::Chart_Copy::All, options.Copy ? query::kCopy_Style : query::kScreen_Style);
  if (!Save_Text(output, text, options.Files, root.Module + "." + root.Member)) return kExit_Output;
  if (to_files) return kExit_Ok;
  Print_Text(output, text);
  output.out.flush();
  // What stands in the pane beside a list, or beside a tree with nothing in it.
  if (!options.Copy && !chart.Pane.Text.Text().empty() &&
      (mode == query::kUnreferenced || chart.Nodes.back().Mem.empty()))
    Print_Text(Output{output.err, output.err}, chart.Pane.Text);
  return kExit_Ok;
}

}  // namespace oru::app
