// SPDX-License-Identifier: MIT
#include "provider/project_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "host/memory_editor.h"
#include "provider/book_file.h"
#include "provider/exported_folder.h"
#include "service/files.h"

namespace oru::provider {

namespace fs = std::filesystem;

namespace {

/// The absolute path without "." and without a slash at its end.
fs::path Real_Path(const fs::path& path) {
  std::error_code error;
  fs::path real = fs::absolute(path, error);
  if (error) real = path;
  // ".." behind a link leads elsewhere than the text says; only the system can tell.
  const bool plain = std::find(real.begin(), real.end(), "..") == real.end();
  if (fs::path resolved = plain ? fs::path() : fs::canonical(real, error); !plain && !error)
    real = std::move(resolved);
  real = real.lexically_normal();
  return real.has_filename() || !real.has_relative_path() ? real : real.parent_path();
}

}  // namespace

Project_Source Read_Project(const fs::path& path, const Read_Options& options) {
  const fs::path real = Real_Path(path);
  const std::string shown = service::Path_Text(path);
  std::error_code error;
  const fs::file_status status = fs::status(real, error);
  const auto fail = [](std::string message) {
    Project_Source project;
    project.error = std::move(message);
    return project;
  };
  if (path.empty() || status.type() == fs::file_type::not_found)
    return fail(
        fmt::format("「{}」がありません。プロジェクトのフォルダのパスを確かめてください。", shown));
  const bool folder = fs::is_directory(status);
  if (folder || (fs::is_regular_file(status) && Kind_Of_Extension(real.extension().string())))
    return Read_Exported_Files(real, shown, options);
  if (fs::is_regular_file(status) && Is_Book(real)) return Read_Book(real, shown, options);
  return fail(fmt::format(
      "「{}」はフォルダでも、ブックでも、エクスポートしたモジュールのファイルでもありません。",
      shown));
}

host::Memory_Project& Add_To_Editor(host::Memory_Editor& editor, Project_Source& project) {
  host::Memory_Project& added = editor.Add_Project(project.name, project.host_file);
  added.Set_Description(project.description);
  for (host::Reference_Data& reference : project.references)
    added.Add_Reference(std::exchange(reference, {}));
  for (host::Component_Data& component : project.components)
    added.Add_Component(std::exchange(component, {}));
  project.references.clear();
  project.components.clear();
  added.Set_Protection(project.protection);
  return added;
}

}  // namespace oru::provider
