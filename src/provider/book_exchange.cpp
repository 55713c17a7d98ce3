// SPDX-License-Identifier: MIT
#include "provider/book_exchange.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "provider/book_file.h"
#include "provider/exported_folder.h"
#include "provider/frx_form.h"
#include "provider/module_text.h"
#include "service/collection.h"
#include "service/files.h"
#include "service/text.h"
#include "workbook/book.h"

namespace oru::provider {

namespace fs = std::filesystem;
using service::Path_Text;

namespace {

// A workbook that was read for its modules.
struct Opened {
  std::string error;
  std::string bytes;
  workbook::Book book;
  workbook::Vba_Project vba;
};

Opened Open(const fs::path& path) {
  Opened opened;
  const std::string shown = Path_Text(path);
  service::Read_Result read = service::Read_File(path);
  if (!read.Ok()) {
    opened.error = std::move(read.error);
    return opened;
  }
  opened.bytes = std::move(read.bytes);
  if (const std::string error = opened.book.Open(opened.bytes); !error.empty()) {
    opened.error = fmt::format("「{}」を読めません。{}", shown, error);
    return opened;
  }
  opened.vba = workbook::Read_Vba(opened.book.Project());
  if (!opened.vba.Ok())
    opened.error = fmt::format("「{}」の{}", shown, opened.vba.error);
  else if (opened.vba.locked)
    opened.error = Locked_Message(shown);
  return opened;
}

// A module's name as that of a file: without what no file system, or only some, would take.
std::string File_Stem(std::string_view module) {
  std::string stem = Module_Name(module);
  for (char& c : stem)
    if (std::string_view("/\\:*?\"<>").find(c) != std::string_view::npos) c = '_';
  return stem;
}

// True if a file of that kind can be the export of a module of that type.
bool Fits(File_Kind kind, int type) {
  switch (kind) {
    case File_Kind::Bas:
      return type == host::kType_Module;
    case File_Kind::Frm:
      return type == host::kType_Form;
    case File_Kind::Doccls:
      return type == host::kType_Document;
    case File_Kind::Cls:
      return type == host::kType_Class || type == host::kType_Document;
    case File_Kind::Stored:
      break;
  }
  return false;
}

struct New_File {
  fs::path path;
  std::string bytes;
};

std::vector<New_File> Files_Of(const Opened& opened, const fs::path& folder, Exchange& exchange) {
  std::vector<New_File> files;
  service::Text_Map<bool> modules, stems;
  for (const workbook::Vba_Module& module : opened.vba.modules) {
    if (!module.error.empty()) {
      exchange.problems.push_back({module.name, module.error + "このモジュールは書き出しません。"});
      continue;
    }
    if (!modules.emplace(service::To_Lower(Module_Name(module.name)), true).second) {
      exchange.problems.push_back(
          {module.name,
           fmt::format("モジュール「{}」は名前が重複しているため書き出しません。", module.name)});
      continue;
    }
    // Names of modules may differ in what no file system, or only some, tells apart.
    const std::string own = File_Stem(module.name);
    std::string stem = own;
    for (int i = 2; !stems.emplace(service::To_Lower(stem), true).second; ++i)
      stem = fmt::format("{}_{}", own, i);
    const container::Storage* design =
        module.type == host::kType_Form ? opened.book.Project().Find_Storage(module.name) : nullptr;
    const auto* layout = design == nullptr ? nullptr : design->Find_Stream("\x03VBFrame");
    const std::string frx = design == nullptr ? std::string() : Write_Frx(*design);
    Exported_Form form =
        To_File(module.source, module.type, layout == nullptr ? std::string_view() : layout->bytes,
                frx.empty() ? std::string() : stem + ".frx");
    const fs::path path = folder / fs::path(stem + form.extension);
    files.push_back({path, std::move(form.bytes)});
    if (!frx.empty()) files.push_back({folder / fs::path(stem + ".frx"), frx});
  }
  return files;
}

}  // namespace

Exchange Extract_Book(const fs::path& book, const fs::path& folder, Existing existing) {
  Exchange exchange;
  const Opened opened = Open(book);
  if (!opened.error.empty()) {
    exchange.error = opened.error;
    exchange.unread = true;
    return exchange;
  }
  std::error_code failed;
  fs::create_directories(folder, failed);
  if (failed || !fs::is_directory(folder, failed)) {
    exchange.error = fmt::format(
        "フォルダ「{}」を作れません。同じ名前のファイルがないか、アクセス権があるか確かめてください。",
        Path_Text(folder));
    return exchange;
  }
  // First everything is looked at, so that nothing is written where something is in the way.
  std::vector<New_File> files = Files_Of(opened, folder, exchange);
  std::vector<std::optional<std::string>> old(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    const fs::file_type type = fs::symlink_status(files[i].path, failed).type();
    if (type == fs::file_type::not_found) continue;
    if (type != fs::file_type::regular) {
      exchange.error = fmt::format(
          "「{}」はふつうのファイルではない（リンクなど）ため、何も書き出しません。取り除くか、別のフォルダを指定してください。",
          Path_Text(files[i].path));
      return exchange;
    }
    service::Read_Result read = service::Read_File(files[i].path);
    if (!read.Ok()) {
      exchange.error = std::move(read.error);
      return exchange;
    }
    if (read.bytes != files[i].bytes && existing == Existing::Refuse) {
      exchange.error = fmt::format(
          "「{}」が別の内容ですでにあるため、何も書き出しません。置き換えるときは --overwrite を指定してください。",
          Path_Text(files[i].path));
      return exchange;
    }
    old[i] = std::move(read.bytes);
  }
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string name = Path_Text(files[i].path.filename());
    if (old[i] == files[i].bytes) {
      exchange.unchanged.push_back(name);
      continue;
    }
    const service::File_Result put = service::Write_File(files[i].path, files[i].bytes, old[i]);
    if (!put.Ok()) {
      exchange.error =
          put.error + fmt::format("（{} 個のファイルは書き出しました）", exchange.written.size());
      return exchange;
    }
    exchange.written.push_back(name);
  }
  return exchange;
}

Exchange Import_Files(const fs::path& folder, const fs::path& book,
                      const Book_Write_Options& options) {
  Exchange exchange;
  const auto fail = [&](std::string error) {
    exchange.error = std::move(error);
    return std::move(exchange);
  };
  const Opened opened = Open(book);
  exchange.unread = true;
  if (!opened.error.empty()) return fail(opened.error);
  const Project_Source files = Read_Project(folder, {.code_page = opened.vba.code_page});
  if (!files.Ok()) return fail(files.error);
  for (const Problem& problem : files.problems)
    if (problem.kind == Problem::Kind::Twice)
      return fail(fmt::format("{}何も書き込みません。", problem.message));
  if (files.files.front().kind == File_Kind::Stored)
    return fail(fmt::format("「{}」はエクスポートしたファイルのフォルダではありません。",
                            Path_Text(folder)));
  exchange.unread = false;

  std::vector<workbook::Changed_Module> changed;
  for (const Module_File& file : files.files) {
    const auto module =
        std::find_if(opened.vba.modules.begin(), opened.vba.modules.end(),
                     [&](const workbook::Vba_Module& candidate) {
                       return service::Equal_No_Case(Module_Name(candidate.name), file.name);
                     });
    if (module == opened.vba.modules.end()) {
      exchange.problems.push_back(
          {file.relative,
           fmt::format(
               "「{}」のモジュール「{}」はブックにないため、取り込みません。追加はエディターで行ってください。",
               file.relative, file.name)});
      continue;
    }
    if (!Fits(file.kind, module->type)) {
      exchange.problems.push_back(
          {file.relative,
           fmt::format(
               "「{}」はモジュール「{}」と種類が違うため、取り込みません。種類の変更はエディターで行ってください。",
               file.relative, module->name)});
      continue;
    }
    const service::Read_Result read = service::Read_File(file.path);
    if (!read.Ok()) return fail(read.error);
    Imported_Source source = To_Source(read.bytes, module->source, *opened.vba.page);
    if (!source.error.empty())
      return fail(fmt::format("「{}」の {}何も書き込みません。", file.relative, source.error));
    if (source.bytes == module->source) {
      exchange.unchanged.push_back(module->name);
      continue;
    }
    exchange.written.push_back(module->name);
    changed.push_back({module->name, std::move(source.bytes)});
  }
  // What else was found in the files does not matter here: their bytes are taken as they are.
  std::copy_if(files.problems.begin(), files.problems.end(), std::back_inserter(exchange.problems),
               [](const Problem& problem) { return problem.kind == Problem::Kind::Left_Out; });
  if (changed.empty()) return exchange;
  const Written_Book written = Write_Book(book, opened.bytes, changed, Path_Text(book), options);
  if (!written.error.empty()) {
    exchange.written.clear();
    return fail(written.error);
  }
  return exchange;
}

}  // namespace oru::provider
