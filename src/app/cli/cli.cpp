// SPDX-License-Identifier: MIT
#include "app/cli/cli.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>

#include "app/cli/commands.h"
#include "app/cli/terminal.h"
#include "app/file_project.h"
#include "app/session.h"
#include "provider/book_file.h"
#include "service/data_folder.h"

namespace oru::app {

namespace fs = std::filesystem;

namespace {

struct Common_Options {
  std::string project;
  std::string data;
  int code_page = 932;
  bool tsv = false;
  bool json = false;
  bool wide = false;
  bool quiet = false;
  bool no_cache = false;
  bool stats = false;
};

constexpr std::string_view kProduct = "OruExl";

fs::path Program_Folder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? fs::path() : program.parent_path();
}

// Where a command keeps its data, and how much it says.
void Add_Data(CLI::App& command, Common_Options& common) {
  command
      .add_option(
          "--data", common.data,
          "データフォルダ: 設定 DA-Sys.VMO、予約語 DA-KWd.txt、レポート (省略時 $XDG_DATA_HOME/Velmo/OruExl)。無いファイルは作られる")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  command.add_flag("-q,--quiet", common.quiet, "進捗と注意を表示しない");
}

void Add_Formats(CLI::App& command, Common_Options& common) {
  auto* tsv = command.add_flag("--tsv", common.tsv, "タブ区切りで出力する (１行目は列名)");
  command.add_flag("--json", common.json, "JSON (オブジェクトの配列) で出力する")->excludes(tsv);
  command.add_flag("--wide", common.wide, "端末の幅に合わせて列を切り詰めない");
}

void Add_Project(CLI::App& command, Common_Options& common) {
  command
      .add_option(
          "PROJECT", common.project,
          "プロジェクト: ブック (.xlsm .xlam .xlsb .xls など)、エクスポートしたファイル (.bas .cls .frm .doccls) のフォルダ、またはその１ファイル")
      ->required();
  command
      .add_option(
          "--codepage", common.code_page,
          "BOM が無く UTF-8 でもないファイルのコードページ (932, 1252, 1251, 936, 949, 950 など)")
      ->capture_default_str()
      ->type_name("N");
  command.add_flag("--stats", common.stats,
                   "読んだモジュールの数と、解析ファイルの読込・保存を標準エラーに表示する");
}

// What a command that asks a project for something understands.
void Add_Common(CLI::App& command, Common_Options& common) {
  Add_Project(command, common);
  command.add_flag("--no-cache", common.no_cache,
                   "解析ファイル (プロジェクト名.VMH) を読まず、保存もしない");
  Add_Data(command, common);
  Add_Formats(command, common);
}

// What could not be read: told, and not in the way of the rest.
void Tell_Problems(const Session& session, const File_Project& project, std::ostream& err) {
  for (const provider::Problem& problem : project.Problems) Tell(err, problem.message);
  for (const analyser::Anl_Problem& problem : session.Sta.Problems)
    Tell(err, fmt::format("「{}」 {}", project.File_Of(problem.Module), problem.Text));
}

// What was read and what was taken from the analysis file.
void Tell_Statistics(const Session& session, std::size_t modules, double seconds,
                     std::ostream& err) {
  const analyser::Anl_State& sta = session.Sta;
  const auto taken = [](std::int64_t milliseconds, std::string_view none) {
    return milliseconds < 0 ? std::string(none) : fmt::format("{} ミリ秒", milliseconds);
  };
  const std::string no_load = sta.Fil_Why.empty()
                                  ? "なし"
                                  : fmt::format("使えないため全モジュールを解析 ({})", sta.Fil_Why);
  err << fmt::format("読んだモジュール    {} / {}\n", sta.Mdl_Cnt, modules)
      << fmt::format("読んだ行            {} (コード・注釈 {})\n", sta.Tot_Lin, sta.Cod_Lin)
      << fmt::format("読込・解析          {:.0f} ミリ秒 (解析 {} ミリ秒)\n", seconds * 1000,
                     sta.Anl_Tim)
      << fmt::format("解析ファイルの読込  {}\n", taken(sta.Lod_Tim, no_load))
      << fmt::format("解析ファイルの保存  {}\n", taken(sta.Sav_Tim, "なし"));
}

// What a command needs before it can run.
enum class Needs { Nothing, Code, Analysis, Fresh_Analysis };

struct Command {
  Needs needs = Needs::Analysis;
  std::function<int(const Work&, const Output&)> run;
  std::function<int(const Output&)> run_alone = {};  ///< in the place of `run`: without a session
};

// Where and how the result is printed.
Output Output_For(const Common_Options& common, std::ostream& out, std::ostream& err) {
  const Format format = common.json ? Format::Json : common.tsv ? Format::Tsv : Format::Columns;
  const bool to_terminal = &out == &std::cout && !common.wide;
  // NO_COLOR: see no-color.org.
  const char* no_colour = std::getenv("NO_COLOR");
  const bool colours = &out == &std::cout && isatty(STDOUT_FILENO) != 0 &&
                       (no_colour == nullptr || *no_colour == '\0');
  return {out, err, format, to_terminal ? Terminal_Columns(STDOUT_FILENO) : 0, colours};
}

int Printed(std::ostream& out, std::ostream& err, int code) {
  out.flush();
  if (out) return code;
  err << "oru: 結果を出力できませんでした。出力先の空き容量を確認してください。\n";
  return kExit_Output;
}

int Run_Command(const Common_Options& common, const Command& command, std::ostream& out,
                std::ostream& err, After after) {
  const bool errors_on_terminal = &err == &std::cerr && isatty(STDERR_FILENO) != 0;
  const bool interactive = errors_on_terminal && isatty(STDIN_FILENO) != 0;
  Terminal terminal(err, interactive, errors_on_terminal && !common.quiet);
  const service::System_Clock clock;
  const std::int64_t start = clock.Milliseconds();

  auto project = std::make_unique<File_Project>();
  if (command.needs != Needs::Nothing) {
    if (const std::string error = project->Open(common.project, common.code_page); !error.empty()) {
      Tell(err, error);
      return kExit_Project;
    }
    if (project->Editor.ActiveVBProject()->Protection() == host::Protection::Locked) {
      Tell(err, provider::Locked_Message(common.project));
      return kExit_Project;
    }
  }
  auto owned = std::make_unique<Session>(
      terminal, clock,
      Session_Options{.Data_Folder = common.data.empty() ? service::Default_Data_Folder(kProduct)
                                                         : fs::path(common.data),
                      .Program_Folder = Program_Folder(),
                      .Use_Analysis_File = !common.no_cache && command.needs == Needs::Analysis,
                      .Process_Ends = after == After::Process_Ends});
  Session& session = *owned;
  if (!session.AddinInstance_OnConnection(project->Editor, &project->App)) {
    err << "oru: 開始できませんでした。書き込めるデータフォルダを --data で指定してください。\n";
    return kExit_Stopped;
  }
  session.Out_Edt = [&](std::string_view module) { return project->Edited_At(module); };
  terminal.On_Interrupt = [&] {
    analyser::Anl_Ctx ctx = session.Anl();
    if (terminal.Interactive()) {
      analyser::Req_Anl_Cnl(ctx);
    } else {
      session.Sta.Anl_Cnl = true;
    }
  };

  if (command.needs == Needs::Code && !common.quiet) Tell_Problems(session, *project, err);
  if (command.needs == Needs::Analysis || command.needs == Needs::Fresh_Analysis) {
    Terminal::Watch_Interrupt(true);
    const bool analysed = session.Analyse();
    Terminal::Watch_Interrupt(false);
    if (!common.quiet) Tell_Problems(session, *project, err);
    if (!analysed) {
      err << "oru: 解析を中止しました。取得した情報は破棄しました。\n";
      return kExit_Stopped;
    }
  }
  const double seconds = static_cast<double>(clock.Milliseconds() - start) / 1000;
  const int code =
      Printed(out, err, command.run({session, *project, seconds}, Output_For(common, out, err)));
  const std::size_t modules = session.Tbl.Mdl_Tbl.Count();
  session.AddinInstance_OnDisconnection();
  if (common.stats) Tell_Statistics(session, modules, seconds, err);
  if (after == After::Process_Ends) {
    (void)owned.release();
    (void)project.release();
  }
  return code;
}

constexpr const char* kFooter =
    "例:\n"
    "  oru analyse 受注管理/                        概要 (規模・最長・最深・未参照)\n"
    "  oru list modules 受注管理/                   モジュールの一覧\n"
    "  oru list procedures 受注管理/ --filter unreferenced --json\n"
    "                                               参照を確認できない Sub・Function\n"
    "  oru refs 受注管理/ modZaiko.Get_Zaiko        呼出元と呼出先\n"
    "  oru unused 受注管理/                         どこからも参照されていないもの\n"
    "  oru history 受注管理/                        前回の解析からの変更 (★) とそれ以前の変更 (☆)\n"
    "  oru list modules 受注管理.xlsm               ブックのマクロをそのまま読む\n"
    "  oru search 受注管理/ --kind unused-variable  どこでも使われていない変数\n"
    "  oru search 受注管理/ 単価 数量 --html 結果.html\n"
    "                                               文字列を検索し、ページとして保存する\n"
    "  oru outline 受注管理/ modJuchu.Touroku       プロシージャの制御構造\n"
    "  oru chart 受注管理/ modZaiko.Get_Zaiko --callers --svg 図.svg\n"
    "                                               参照しているプロシージャの図\n"
    "  oru replace 受注管理/ Tanka Unit_Price --exact --write\n"
    "                                               置換する (oru undo 受注管理/ で取り消す)\n"
    "  oru format 受注管理/ modJuchu                コード整形の差分 (--write で書き込む)\n"
    "  oru align comments 受注管理/ modJuchu:12-20  行内コメントをそろえる\n"
    "  oru number set 受注管理/ modJuchu.Touroku    Erl のための行ラベル (remove で解除)\n"
    "  oru trace set 受注管理/ --statement 'Debug.Print \"%MN.%PN\"'\n"
    "  oru extract 受注管理.xlsm src/               モジュールをファイルに書き出す\n"
    "  oru import src/ 受注管理.xlsm                ファイルのコードをブックに取り込む\n"
    "\n"
    "終了コード: 0 正常  1 指定した名前・合う文が無い、--check で変わるところがある  2 使い方の誤り  3 プロジェクトを読めない\n"
    "            4 解析の中止・失敗  5 結果を出力できない・書き込めない\n"
    "import、--write、undo のほかは、ブックとモジュールのファイルを読むだけで、変更しません。解析結果はプロジェクトのフォルダの\n"
    "「プロジェクト名.VMH」に保存し、次回は変更されたモジュールだけを解析します (--no-cache で無効)。";

// What rewrites code. Only the trace asks the tables for scope and kind of a procedure.
template <class Choose>
void Add_Edit_Commands(CLI::App& app, Common_Options& common, Edit_Options& edit, Choose choose) {
  const auto add = [&](CLI::App& parent, const char* name, const char* about, Needs needs,
                       auto add_options, auto run) {
    CLI::App* command = parent.add_subcommand(name, about);
    if (needs == Needs::Analysis) {
      Add_Common(*command, common);
    } else {
      Add_Project(*command, common);
      Add_Data(*command, common);
      Add_Formats(*command, common);
    }
    add_options(*command, edit);
    command->callback(
        choose(needs, [&edit, run](const Work& w, const Output& o) { return run(w, o, edit); }));
  };
  const auto group = [&app](const char* name, const char* about) -> CLI::App& {
    CLI::App* parent = app.add_subcommand(name, about);
    parent->require_subcommand(1);
    return *parent;
  };
  using transform::Label_Mode, transform::Line_Tool, transform::Trace_Mode;
  const auto lines = [](Line_Tool tool) {
    return [tool](const Work& w, const Output& o, const Edit_Options& e) {
      return Cmd_Lines(w, o, e, tool);
    };
  };
  const auto number = [](Label_Mode mode) {
    return [mode](const Work& w, const Output& o, const Edit_Options& e) {
      return Cmd_Number(w, o, e, mode);
    };
  };
  const auto trace = [](Trace_Mode mode) {
    return [mode](const Work& w, const Output& o, const Edit_Options& e) {
      return Cmd_Trace(w, o, e, mode);
    };
  };
  add(app, "format", "コード整形: 制御構造に合わせて字下げをそろえる", Needs::Code,
      Add_Format_Options, Cmd_Format);
  CLI::App& align = group("align", "整列: 選んだ行の As 句または行内コメントの位置をそろえる");
  add(align, "as", "As 句を、最初に現れた行の位置にそろえる", Needs::Code, Add_Lines_Options,
      lines(Line_Tool::Align_As));
  add(align, "comments", "行内コメントを、最初に現れた行の位置にそろえる", Needs::Code,
      Add_Lines_Options, lines(Line_Tool::Align_Comments));
  add(app, "swap", "代入文の反転: 選んだ行の「a = b」を「b = a」にする", Needs::Code,
      Add_Lines_Options, lines(Line_Tool::Swap_Sides));
  CLI::App& numbers = group("number", "エラー処理用行ラベル (行番号) の設定・解除");
  add(numbers, "set", "行ラベルを設定する", Needs::Code, Add_Number_Options,
      number(Label_Mode::Set));
  add(numbers, "remove", "行ラベルを解除する (GoTo などが使うものは残す)", Needs::Code,
      Add_Number_Options, number(Label_Mode::Remove));
  CLI::App& traces = group("trace", "トレース用命令文の設定・解除、実行統計");
  add(traces, "set", "トレース文を各プロシージャの先頭に設定する", Needs::Analysis,
      Add_Trace_Options, trace(Trace_Mode::Set));
  add(traces, "remove", "トレース文を解除する", Needs::Analysis, Add_Trace_Options,
      trace(Trace_Mode::Remove));
  add(traces, "table", "実行統計ファイルを、プロシージャのコメントを添えた表にする",
      Needs::Analysis, Add_Trace_Table_Options, Cmd_Trace_Table);
}

}  // namespace

int Run_Cli(int argc, const char* const* argv, std::ostream& out, std::ostream& err, After after) {
  CLI::App app("oru - Excel マクロ (VBA) プロジェクトの解析ツール", "oru");
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", ORU_VERSION, "版を表示する");
  app.set_help_flag("-h,--help", "この説明を表示する");

  Common_Options common;
  List_Options list;
  History_Options history;
  Exchange_Options exchange;
  Search_Options search;
  Outline_Options outline;
  Chart_Options chart;
  Edit_Options edit;
  std::string member;
  Command chosen;
  const auto choose = [&chosen](Needs needs, auto run) {
    return [&chosen, needs, run] { chosen = {needs, run}; };
  };

  CLI::App* analyse = app.add_subcommand(
      "analyse",
      "プロジェクトの概要: モジュール、プロシージャ、行数、最長・最深・最多条件、未参照、解析時間");
  Add_Common(*analyse, common);
  analyse->callback(choose(Needs::Analysis, Cmd_Analyse));

  CLI::App* lists =
      app.add_subcommand("list", "モジュールまたはプロシージャの一覧 (規模、条件数、ネスト、参照)");
  lists->require_subcommand(1);
  CLI::App* modules = lists->add_subcommand("modules", "モジュールの一覧");
  Add_Common(*modules, common);
  Add_Module_List_Options(*modules, list);
  modules->callback(choose(Needs::Analysis, [&list](const Work& w, const Output& o) {
    return Cmd_List_Modules(w, o, list);
  }));
  CLI::App* procedures = lists->add_subcommand("procedures", "プロシージャの一覧");
  Add_Common(*procedures, common);
  Add_Procedure_List_Options(*procedures, list);
  procedures->callback(choose(Needs::Analysis, [&list](const Work& w, const Output& o) {
    return Cmd_List_Procedures(w, o, list);
  }));

  CLI::App* refs = app.add_subcommand("refs", "プロシージャの呼出元と呼出先を行とともに表示する");
  Add_Common(*refs, common);
  refs->add_option("MEMBER", member, "Module.Member (Member だけでもよい)")->required();
  refs->callback(choose(Needs::Analysis, [&member](const Work& w, const Output& o) {
    return Cmd_Refs(w, o, member);
  }));

  CLI::App* unused =
      app.add_subcommand("unused", "どこからも参照されていない Sub・Function・API 宣言");
  Add_Common(*unused, common);
  unused->callback(choose(Needs::Analysis, Cmd_Unused));

  CLI::App* changes = app.add_subcommand(
      "history", "変更履歴: いつ、どのプロシージャの何行目が変更されたか (新しい順)");
  Add_Common(*changes, common);
  Add_History_Options(*changes, history);
  changes->callback(choose(Needs::Analysis, [&history](const Work& w, const Output& o) {
    return Cmd_History(w, o, history);
  }));

  CLI::App* tables = app.add_subcommand(
      "tables", "解析テーブルを解析ファイルの行の形で出力する (検証用、UTF-8、常に全て解析する)");
  Add_Project(*tables, common);
  Add_Data(*tables, common);
  tables->callback(choose(Needs::Fresh_Analysis, Cmd_Tables));

  const auto choose_alone = [&chosen](auto run) {
    return [&chosen, run] { chosen.run_alone = run; };
  };
  CLI::App* extract =
      app.add_subcommand("extract", "ブックのモジュールをエクスポートしたファイルとして書き出す");
  Add_Extract_Options(*extract, exchange);
  Add_Formats(*extract, common);
  extract->callback(
      choose_alone([&exchange](const Output& output) { return Cmd_Extract(output, exchange); }));
  CLI::App* imports = app.add_subcommand(
      "import", "エクスポートしたファイルのコードをブックのモジュールに取り込む");
  Add_Import_Options(*imports, exchange);
  Add_Formats(*imports, common);
  imports->callback(
      choose_alone([&exchange](const Output& output) { return Cmd_Import(output, exchange); }));

  CLI::App* searching = app.add_subcommand(
      "search", "情報検索: 文字列、変数定義文、未使用の変数など、種類と条件に合う文を表示する");
  Add_Common(*searching, common);
  Add_Search_Options(*searching, search);
  searching->callback(choose(Needs::Analysis, [&search](const Work& w, const Output& o) {
    return Cmd_Search(w, o, search);
  }));
  CLI::App* outlining = app.add_subcommand(
      "outline", "制御構造: 条件・繰返し・飛び先と呼出を、ネストの罫線とともに表示する");
  Add_Common(*outlining, common);
  Add_Outline_Options(*outlining, outline);
  outlining->callback(choose(Needs::Analysis, [&outline](const Work& w, const Output& o) {
    return Cmd_Outline(w, o, outline);
  }));
  CLI::App* charting = app.add_subcommand(
      "chart", "参照関係: プロシージャが呼び出すもの、参照しているものを木や図で表示する");
  Add_Common(*charting, common);
  Add_Chart_Options(*charting, chart);
  charting->callback(choose(Needs::Analysis, [&chart](const Work& w, const Output& o) {
    return Cmd_Chart(w, o, chart);
  }));
  CLI::App* replacing = app.add_subcommand(
      "replace", "文字列の置換: 変更される行を表示し、--write でファイルに書き込む");
  Add_Common(*replacing, common);
  Add_Replace_Options(*replacing, search);
  replacing->callback(choose(Needs::Analysis, [&search](const Work& w, const Output& o) {
    return Cmd_Replace(w, o, search);
  }));
  Add_Edit_Commands(app, common, edit, choose);
  CLI::App* undo =
      app.add_subcommand("undo", "コードを書き換えたコマンド (--write) の最後の１回を取り消す");
  Add_Project(*undo, common);
  Add_Formats(*undo, common);
  undo->callback(choose_alone([&common](const Output& output) {
    return Cmd_Undo(output, common.project, common.code_page);
  }));

  CLI::App* commands =
      app.add_subcommand("commands", "エディターのメニューとツールバーに加わるコマンドの一覧");
  Add_Data(*commands, common);
  Add_Formats(*commands, common);
  commands->callback(choose(Needs::Nothing, Cmd_Commands));

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help, out, err);
  } catch (const CLI::ParseError& error) {
    err << "oru: " << error.what() << "\n使い方は「oru --help」で表示します。\n";
    return kExit_Usage;
  }
  if (chosen.run_alone) return Printed(out, err, chosen.run_alone(Output_For(common, out, err)));
  return Run_Command(common, chosen, out, err, after);
}

}  // namespace oru::app
