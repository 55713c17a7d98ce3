// SPDX-License-Identifier: MIT
#include "app/file_project.h"

#include <algorithm>
#include <utility>

#include "service/file_store.h"

namespace oru::app {

namespace fs = std::filesystem;

std::string File_Project::Open(const fs::path& project, int code_page) {
  provider::Project_Source read = provider::Read_Project(project, {.code_page = code_page});
  if (!read.Ok()) return read.error;
  Path = service::Path_Text(project);
  Host_File = read.host_file;
  Code_Page = code_page;
  Problems = std::move(read.problems);
  Files = std::move(read.files);
  if (read.workbook) App.Add_Workbook(*read.workbook);
  // The folder is where the project's own file would lie, so the analysis file goes there.
  std::error_code error;
  const bool folder = fs::is_directory(read.host_file, error);
  const std::string inside = read.host_file + "/" + read.name;
  host::Memory_Project& opened = provider::Add_To_Editor(Editor, read);
  if (folder) opened.Set_FileName(inside);
  return {};
}

const provider::Module_File* File_Project::Find(std::string_view module) const {
  const auto at = std::find_if(Files.begin(), Files.end(),
                               [&](const auto& file) { return file.name == module; });
  return at == Files.end() ? nullptr : &*at;
}

std::string File_Project::File_Of(std::string_view module) const {
  const provider::Module_File* file = Find(module);
  return file == nullptr ? std::string() : file->relative;
}

std::string File_Project::Edited_At(std::string_view module) const {
  const provider::Module_File* file = Find(module);
  if (file == nullptr) return {};
  const auto seen = service::Disk_Store().Look(service::Path_Text(file->path));
  return seen ? service::Stamp(seen->date) : std::string();
}

}  // namespace oru::app
