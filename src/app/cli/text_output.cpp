// SPDX-License-Identifier: MIT
// Coloured texts: on the terminal, and in files that the user names.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "provider/book_file.h"
#include "provider/exported_file.h"
#include "query/html_writer.h"
#include "query/rtf_writer.h"
#include "query/terminal_writer.h"
#include "service/files.h"

namespace oru::app {

namespace fs = std::filesystem;

bool Save_Bytes(const Output& output, const std::string& path, std::string_view bytes) {
  const fs::path file(path);
  if (provider::Kind_Of_Extension(file.extension().string()) || provider::Is_Book(file)) {
    Tell(output.err, fmt::format("「{}」はモジュールかブックの名前のため、書き込みません。", path));
    return false;
  }
  const service::File_Result put = service::Write_File(file, bytes);
  if (!put.Ok()) Tell(output.err, put.error);
  return put.Ok();
}

void Add_Text_Files(CLI::App& command, Text_Files& files) {
  command.add_option("--rtf", files.Rtf, "結果をリッチテキストのファイルに書く")->type_name("FILE");
  command.add_option("--html", files.Html, "結果を HTML のファイルに書く")->type_name("FILE");
}

bool Save_Text(const Output& output, const query::Rich_Text& text, const Text_Files& files,
               std::string_view title) {
  if (!files.Rtf.empty() && !Save_Bytes(output, files.Rtf, query::Rtf_Writer().Add_RTx_Hed(text)))
    return false;
  return files.Html.empty() ||
         Save_Bytes(output, files.Html, query::Get_RTx_Html(text, {.title = title}));
}

void Print_Text(const Output& output, const query::Rich_Text& text) {
  output.out << query::Get_RTx_Term(
      text, {.colours = output.colours ? query::Term_Colours::True : query::Term_Colours::None});
}

int Find_One(const Work& work, const Output& output, const std::string& name,
             views::Member_Name& found) {
  std::vector<views::Member_Name> members = views::Find_Members(work.session.Tbl, name);
  if (members.empty()) {
    Tell(output.err, fmt::format("「{}」というプロシージャはプロジェクトにありません。「oru list "
                                 "procedures」で名前を確認してください。",
                                 name));
    return kExit_Not_Found;
  }
  if (members.size() > 1) {
    std::string all;
    for (const views::Member_Name& member : members)
      all += fmt::format(" {}.{}", member.Module, member.Member);
    Tell(output.err, fmt::format("「{}」は１つに決まりません:{}", name, all));
    return kExit_Usage;
  }
  found = std::move(members.front());
  return kExit_Ok;
}

}  // namespace oru::app
