// SPDX-License-Identifier: MIT
#include "app/cli/cli.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <memory>

#include "app/cli/commands.h"
#include "app/cli/terminal.h"
#include "app/session.h"
#include "service/files.h"

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
};

fs::path Program_Folder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? fs::path() : program.parent_path();
}

// Every command reads a project and chooses a form of output.
void Add_Common(CLI::App& command, Common_Options& common, bool has_formats) {
  command
      .add_option(
          "PROJECT", common.project,
          "プロジェクト: エクスポートしたファイル (.bas .cls .frm .doccls) のフォルダ、またはその１ファイル")
      ->required();
  command
      .add_option(
          "--codepage", common.code_page,
          "BOM が無く UTF-8 でもないファイルのコードページ (932, 1252, 1251, 936, 949, 950 など)")
      ->capture_default_str()
      ->type_name("N");
  command
      .add_option(
          "--data", common.data,
          "データフォルダ: 設定 DA-Sys.VMO、予約語 DA-KWd.txt、レポート (省略時 $XDG_DATA_HOME/oru)")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  command.add_flag("-q,--quiet", common.quiet, "進捗と注意を表示しない");
  if (!has_formats) return;
  auto* tsv = command.add_flag("--tsv", common.tsv, "タブ区切りで出力する (１行目は列名)");
  command.add_flag("--json", common.json, "JSON (オブジェクトの配列) で出力する")->excludes(tsv);
  command.add_flag("--wide", common.wide, "端末の幅に合わせて列を切り詰めない");
}

// What could not be read: told, and not in the way of the rest.
void Tell_Problems(const Session& session, std::ostream& err) {
  for (const provider::Problem& problem : session.Problems)
    err << "oru: " << problem.message << '\n';
  for (const analyser::Anl_Problem& problem : session.Sta.Problems)
    err << fmt::format("oru: 「{}」 {}\n", session.File_Of(problem.Module), problem.Text);
}

using Command = std::function<int(Session&, const Output&, double seconds)>;

int Run_Command(const Common_Options& common, const Command& command, std::ostream& out,
                std::ostream& err, After after) {
  const bool errors_on_terminal = &err == &std::cerr && isatty(STDERR_FILENO) != 0;
  const bool interactive = errors_on_terminal && isatty(STDIN_FILENO) != 0;
  Terminal terminal(err, interactive, errors_on_terminal && !common.quiet);
  const service::System_Clock clock;
  auto owned = std::make_unique<Session>(
      terminal, clock,
      Session_Options{
          .Data_Folder = common.data.empty() ? Default_Data_Folder() : fs::path(common.data),
          .Program_Folder = Program_Folder(),
          .Code_Page = common.code_page});
  Session& session = *owned;
  terminal.On_Interrupt = [&] {
    analyser::Anl_Ctx ctx{session.Srv, session.VBInst, nullptr, session.Tbl, session.Sta, session.Lst};
    if (terminal.Interactive()) {
      analyser::Req_Anl_Cnl(ctx);
    } else {
      session.Sta.Anl_Cnl = true;
    }
  };

  const std::int64_t start = clock.Milliseconds();
  if (const std::string error = session.Open(common.project); !error.empty()) {
    err << "oru: " << error << '\n';
    return kExit_Project;
  }
  Terminal::Watch_Interrupt(true);
  const bool analysed = session.Analyse();
  Terminal::Watch_Interrupt(false);
  if (!common.quiet) Tell_Problems(session, err);
  if (!analysed) {
    err << "oru: 解析を中止しました。取得した情報は破棄しました。\n";
    return kExit_Stopped;
  }
  const double seconds = static_cast<double>(clock.Milliseconds() - start) / 1000;
  const Format format = common.json ? Format::Json : common.tsv ? Format::Tsv : Format::Columns;
  const bool to_terminal = &out == &std::cout && !common.wide;
  const int code = command(
      session, {out, err, format, to_terminal ? Terminal_Columns(STDOUT_FILENO) : 0}, seconds);
  out.flush();
  if (!out) {
    err << "oru: 結果を出力できませんでした。出力先の空き容量を確認してください。\n";
    return kExit_Output;
  }
  if (after == After::Process_Ends) (void)owned.release();
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
    "\n"
    "終了コード: 0 正常  1 指定した名前が無い  2 使い方の誤り  3 プロジェクトを読めない\n"
    "            4 解析の中止・失敗  5 結果を出力できない\n"
    "ファイルは読むだけで、変更しません。";

}  // namespace

int Run_Cli(int argc, const char* const* argv, std::ostream& out, std::ostream& err, After after) {
  CLI::App app("oru - Excel マクロ (VBA) プロジェクトの解析ツール", "oru");
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", ORU_VERSION, "版を表示する");
  app.set_help_flag("-h,--help", "この説明を表示する");

  Common_Options common;
  List_Options list;
  std::string member;
  Command chosen;

  CLI::App* analyse = app.add_subcommand(
      "analyse",
      "プロジェクトの概要: モジュール、プロシージャ、行数、最長・最深・最多条件、未参照、解析時間");
  Add_Common(*analyse, common, true);
  analyse->callback([&] {
    chosen = [](Session& s, const Output& o, double seconds) { return Cmd_Analyse(s, o, seconds); };
  });

  CLI::App* lists =
      app.add_subcommand("list", "モジュールまたはプロシージャの一覧 (規模、条件数、ネスト、参照)");
  lists->require_subcommand(1);
  CLI::App* modules = lists->add_subcommand("modules", "モジュールの一覧");
  Add_Common(*modules, common, true);
  Add_Module_List_Options(*modules, list);
  modules->callback([&] {
    chosen = [&list](Session& s, const Output& o, double) { return Cmd_List_Modules(s, o, list); };
  });
  CLI::App* procedures = lists->add_subcommand("procedures", "プロシージャの一覧");
  Add_Common(*procedures, common, true);
  Add_Procedure_List_Options(*procedures, list);
  procedures->callback([&] {
    chosen = [&list](Session& s, const Output& o, double) {
      return Cmd_List_Procedures(s, o, list);
    };
  });

  CLI::App* refs = app.add_subcommand("refs", "プロシージャの呼出元と呼出先を行とともに表示する");
  Add_Common(*refs, common, true);
  refs->add_option("MEMBER", member, "Module.Member (Member だけでもよい)")->required();
  refs->callback([&] {
    chosen = [&member](Session& s, const Output& o, double) { return Cmd_Refs(s, o, member); };
  });

  CLI::App* unused =
      app.add_subcommand("unused", "どこからも参照されていない Sub・Function・API 宣言");
  Add_Common(*unused, common, true);
  unused->callback(
      [&] { chosen = [](Session& s, const Output& o, double) { return Cmd_Unused(s, o); }; });

  CLI::App* tables =
      app.add_subcommand("tables", "解析テーブルを解析ファイルの行の形で出力する (検証用、UTF-8)");
  Add_Common(*tables, common, false);
  tables->callback(
      [&] { chosen = [](Session& s, const Output& o, double) { return Cmd_Tables(s, o); }; });

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help, out, err);
  } catch (const CLI::ParseError& error) {
    err << "oru: " << error.what() << "\n使い方は「oru --help」で表示します。\n";
    return kExit_Usage;
  }
  return Run_Command(common, chosen, out, err, after);
}

}  // namespace oru::app
