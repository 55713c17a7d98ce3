// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "provider/book_exchange.h"

namespace oru::app {

namespace {

// What became of each file or module, and what was left out.
int Print_Exchange(const provider::Exchange& exchange, const Output& output, std::string_view title,
                   std::string_view key, std::string_view written) {
  for (const provider::Problem& problem : exchange.problems) Tell(output.err, problem.message);
  if (!exchange.Ok()) {
    Tell(output.err, exchange.error);
    return exchange.unread ? kExit_Project : kExit_Output;
  }
  Out_Table table;
  table.columns = {{.title = std::string(title), .key = std::string(key), .shrinks = true},
                   {.title = "結果", .key = "result"}};
  for (const std::string& name : exchange.written)
    table.rows.push_back({name, std::string(written)});
  for (const std::string& name : exchange.unchanged) table.rows.push_back({name, "変更なし"});
  Print_Table(output.out, table, output.format, output.width);
  return kExit_Ok;
}

}  // namespace

void Add_Extract_Options(CLI::App& command, Exchange_Options& options) {
  command.add_option("BOOK", options.Book, "ブック (.xlsm .xlam .xlsb .xls など)")->required();
  command.add_option("DIR", options.Folder, "書き出すフォルダ (無ければ作る)")->required();
  command.add_flag("--overwrite", options.Overwrite, "内容の異なる既存のファイルを置き換える");
}

void Add_Import_Options(CLI::App& command, Exchange_Options& options) {
  command.add_option("DIR", options.Folder, "エクスポートしたファイルのフォルダ")->required();
  command.add_option("BOOK", options.Book, "取り込む先のブック")->required();
  command.add_flag("--signed", options.Signed, "マクロの署名が無効になっても書き込む");
}

int Cmd_Extract(const Output& output, const Exchange_Options& options) {
  return Print_Exchange(provider::Extract_Book(options.Book, options.Folder,
                                               options.Overwrite ? provider::Existing::Replace
                                                                 : provider::Existing::Refuse),
                        output, "ファイル", "file", "書き出し");
}

int Cmd_Import(const Output& output, const Exchange_Options& options) {
  return Print_Exchange(
      provider::Import_Files(options.Folder, options.Book, {.signed_too = options.Signed}), output,
      "モジュール", "module", "取り込み");
}

}  // namespace oru::app
