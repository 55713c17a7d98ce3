// SPDX-License-Identifier: MIT
#include "provider/book_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

#include "container/archive.h"
#include "container/compound_file.h"
#include "provider/lines.h"
#include "service/collection.h"
#include "service/files.h"
#include "service/text.h"
#include "workbook/book.h"
#include "workbook/form_storage.h"

namespace oru::provider {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 19> kExtensions = {
    ".xlsm", ".xlam", ".xltm", ".xlsb", ".xls",  ".xla",  ".xlt",  ".xlsx", ".bin", ".docm",
    ".dotm", ".doc",  ".dot",  ".pptm", ".ppam", ".potm", ".ppsm", ".xltx", ".ppt"};

// The last part of a library reference's text is what the editor shows of it.
std::string Description_Of(std::string_view library) {
  return std::string(library.substr(library.rfind('#') + 1));
}

class Book_Reader {
 public:
  Book_Reader(const workbook::Book& book, const fs::path& path, std::string_view shown)
      : book_(book), path_(path), shown_(shown) {}

  Project_Source Read() {
    const workbook::Vba_Project vba = workbook::Read_Vba(book_.Project());
    if (!vba.Ok()) {
      project_.error = fmt::format("「{}」の{}", shown_, vba.error);
      return std::move(project_);
    }
    project_.name = service::Without_Controls(vba.name);
    project_.description = service::Without_Controls(vba.description);
    if (vba.locked) project_.protection = host::Protection::Locked;
    for (const auto& reference : vba.references)
      project_.references.push_back({service::Without_Controls(reference.name),
                                     service::Without_Controls(Description_Of(reference.library))});
    Add_Modules(vba);
    Add_Workbook(vba);
    if (project_.files.empty() && project_.error.empty())
      project_.error =
          fmt::format("「{}」に読み込めるモジュールがありません。{}", shown_,
                      project_.problems.empty() ? "" : project_.problems.front().message);
    return std::move(project_);
  }

 private:
  void Report(std::string_view message) {
    project_.problems.push_back({name_, fmt::format("「{}」の{}", shown_, message)});
  }

  void Add_Modules(const workbook::Vba_Project& vba) {
    service::Text_Map<bool> names;
    for (const workbook::Vba_Module& module : vba.modules) {
      if (!module.error.empty()) {
        Report(module.error + "このモジュールを除いて読み込みました。");
        continue;
      }
      Exported_File read = Read_Exported(module.source, File_Kind::Stored, module.name, *vba.page);
      // The directory's name is the one that counts; a source may still carry an older one.
      read.component.name = Module_Name(module.name);
      if (!read.is_text || read.component.name.empty() ||
          !names.emplace(service::To_Lower(read.component.name), true).second) {
        Report(fmt::format(
            "モジュール「{}」は、名前が重複しているかテキストではないため、除いて読み込みました。",
            service::Without_Controls(module.name)));
        continue;
      }
      if (read.bad_bytes > 0)
        Report(fmt::format(
            "モジュール「{}」にコードページ {} として読めないバイトが {} 個あり、「\uFFFD」に置き換えました（最初は {} 行目）。",
            module.name, vba.code_page, read.bad_bytes, read.first_bad_line));
      read.component.type = module.type;
      if (module.type == host::kType_Form) Add_Designer(module.name, read.component);
      Module_File file;
      file.name = read.component.name;
      file.path = path_;
      file.relative = name_;
      file.kind = File_Kind::Stored;
      file.code_hash = read.code_hash;
      project_.files.push_back(std::move(file));
      project_.components.push_back(std::move(read.component));
    }
  }

  void Add_Designer(std::string_view name, host::Component_Data& component) {
    component.has_designer = true;
    const container::Storage* storage = book_.Project().Find_Storage(name);
    if (storage == nullptr) return Report(fmt::format("フォーム「{}」の画面がありません。", name));
    workbook::Form_Storage form = workbook::Read_Form(*storage);
    component.controls = std::move(form.controls);
    for (const std::string& problem : form.problems)
      Report(fmt::format("フォーム「{}」の{}", name, problem));
  }

  void Add_Workbook(const workbook::Vba_Project& vba) {
    auto parts = book_.Parts();
    if (!parts) return;
    for (const std::string& problem : parts->problems) Report(problem);
    host::Workbook_Data& data = parts->workbook;
    data.name = service::Path_Text(path_.filename());
    data.code_name = service::Without_Controls(data.code_name);
    for (host::Sheet_Data& sheet : data.sheets) {
      sheet.name = service::Without_Controls(sheet.name);
      sheet.code_name = service::Without_Controls(sheet.code_name);
      for (host::OLEObject_Data& object : sheet.ole_objects)
        object.name = service::Without_Controls(object.name);
      for (host::Shape_Data& shape : sheet.shapes)
        shape.on_action = service::Without_Controls(shape.on_action);
    }
    if (data.code_name.empty()) {
      // Many files do not name the workbook's own module; there is only one that can be it.
      const auto bound = [](const workbook::Vba_Module& module) {
        return module.document == workbook::Document_Kind::Workbook;
      };
      const auto module = std::find_if(vba.modules.begin(), vba.modules.end(), bound);
      if (module != vba.modules.end() &&
          std::find_if(module + 1, vba.modules.end(), bound) == vba.modules.end())
        data.code_name = Module_Name(module->name);
    }
    project_.workbook = std::move(data);
  }

  const workbook::Book& book_;
  const fs::path& path_;
  std::string_view shown_;
  std::string name_ = service::Path_Text(path_.filename());
  Project_Source project_;
};

}  // namespace

std::string Locked_Message(std::string_view shown) {
  return fmt::format(
      "「{}」のプロジェクトは保護されています。エディターで保護を解除してから実行してください。",
      shown);
}

bool Is_Book(const fs::path& path) {
  const std::string extension = service::To_Lower(path.extension().string());
  if (std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end())
    return true;
  std::array<char, 8> head{};
  std::ifstream(path, std::ios::binary).read(head.data(), head.size());
  const std::string_view bytes(head.data(), head.size());
  return container::Is_Archive(bytes) || container::Is_Compound(bytes);
}

Project_Source Read_Book(const fs::path& path, std::string_view shown,
                         const Read_Options& options) {
  Project_Source failed;
  if (path.filename().string().starts_with("~$")) {
    failed.error = fmt::format(
        "「{}」は、ブックが開かれているあいだだけ置かれるロックファイルです。ブックそのもの（名前の先頭に「~$」が付かないファイル）を指定してください。",
        shown);
    return failed;
  }
  service::Read_Result read = service::Read_File(path, options.size_limit);
  if (!read.Ok()) {
    failed.error = std::move(read.error);
    return failed;
  }
  return Read_Book_Bytes(std::move(read.bytes), path, shown);
}

Project_Source Read_Book_Bytes(std::string bytes, const fs::path& path, std::string_view shown) {
  const std::uintmax_t size = bytes.size();
  const std::uint64_t hash = Hash_Bytes(bytes);
  workbook::Book book;
  if (const std::string error = book.Open(std::move(bytes)); !error.empty()) {
    Project_Source failed;
    failed.error = fmt::format("「{}」を読めません。{}", shown, error);
    return failed;
  }
  Project_Source project = Book_Reader(book, path, shown).Read();
  project.host_file = service::Path_Text(path);
  for (Module_File& file : project.files) {
    file.size = size;
    file.file_hash = hash;
  }
  return project;
}

}  // namespace oru::provider
