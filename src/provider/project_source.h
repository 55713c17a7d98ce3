// SPDX-License-Identifier: MIT
// Where a project comes from when no editor runs: a folder of exported files, one such file, or a
// workbook. What was read is put into the in-memory editor, and the way back is `Writer`. What is
// wrong with one file or module is told in a list and does not keep the others from being loaded.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/memory_host_app.h"
#include "host/memory_project.h"
#include "provider/exported_file.h"

namespace oru::host {
class Memory_Editor;
}

namespace oru::provider {

struct Read_Options {
  int code_page = 932;                                  ///< Windows number, for exported files
  std::uintmax_t size_limit = std::uintmax_t{1} << 30;  ///< of one file, in bytes
};

/// Something wrong with one file, folder, or part of a workbook.
struct Problem {
  enum class Kind : std::uint8_t {
    Note,      ///< it was read all the same
    Left_Out,  ///< it is not part of the project
    Twice      ///< left out because another file gives a module of that name
  };
  std::string path;     ///< relative to the project's folder, "/" between folders
  std::string message;  ///< Japanese: what is wrong with which file, and what to do
  Kind kind = Kind::Note;
};

/// Where a module came from; what `Writer` needs to write it back.
struct Module_File {
  std::string name;            ///< of the module
  std::filesystem::path path;  ///< absolute; of a workbook's module, the workbook
  std::string relative;        ///< as in `Problem::path`
  File_Kind kind = File_Kind::Bas;
  std::uintmax_t size = 0;      ///< of the file's bytes when it was read
  std::uint64_t file_hash = 0;  ///< of the file's bytes (`Hash_Bytes`)
  std::uint64_t code_hash = 0;  ///< of its code lines (`Hash_Line`)
};

struct Project_Source {
  std::string error;        ///< empty, or why nothing could be loaded, in Japanese
  std::string name;         ///< of the project; of exported files, the folder's or the file's name
  std::string description;  ///< of a workbook's project
  std::string host_file;    ///< path of the folder or the file
  enum host::Protection protection = host::Protection::None;
  std::vector<host::Reference_Data> references;
  std::vector<host::Component_Data> components;
  std::vector<Module_File> files;  ///< one for each component, in the same order
  std::vector<Problem> problems;
  std::optional<host::Workbook_Data> workbook;  ///< what the spreadsheet host tells of a workbook
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// Reads a project, telling its kind by what lies at the path. Fails as a whole for a path that is
/// missing or no project, for one without any module, and for an unknown code page.
[[nodiscard]] Project_Source Read_Project(const std::filesystem::path& path,
                                          const Read_Options& options = {});

/// Makes a project of the editor out of what was read, and the active one. The components are moved
/// there; `files` stays for a `Writer`.
host::Memory_Project& Add_To_Editor(host::Memory_Editor& editor, Project_Source& project);

}  // namespace oru::provider
