// SPDX-License-Identifier: MIT
// A folder of exported files as a project: finds the files, reads them in byte order of their
// paths, and puts the modules into the in-memory editor. What is wrong with one file is told in a
// list and does not keep the others from being loaded.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/memory_project.h"
#include "provider/exported_file.h"

namespace oru::host {
class Memory_Editor;
}

namespace oru::provider {

struct Read_Options {
  int code_page = 932;                                  ///< Windows number
  std::uintmax_t size_limit = std::uintmax_t{1} << 30;  ///< of one file, in bytes
};

/// Something wrong with one file or folder.
struct Problem {
  std::string path;     ///< relative to the project's folder, "/" between folders
  std::string message;  ///< Japanese: what is wrong with which file, and what to do
};

/// Where a module came from; what `Writer` needs to write it back.
struct Module_File {
  std::string name;            ///< of the module
  std::filesystem::path path;  ///< absolute
  std::string relative;        ///< as in `Problem::path`
  File_Kind kind = File_Kind::Bas;
  std::uintmax_t size = 0;      ///< of the file's bytes when it was read
  std::uint64_t file_hash = 0;  ///< of the file's bytes (`Hash_Bytes`)
  std::uint64_t code_hash = 0;  ///< of its code lines (`Hash_Line`)
};

struct Exported_Project {
  std::string error;      ///< empty, or why nothing could be loaded, in Japanese
  std::string name;       ///< the folder's name; of a single file, its name without the extension
  std::string host_file;  ///< path of the folder or the file
  std::vector<host::Component_Data> components;
  std::vector<Module_File> files;  ///< one for each component, in the same order
  std::vector<Problem> problems;
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// Reads all exported files below a folder, or a single one. Links to folders are followed, each
/// folder once. Fails as a whole for a path that is missing, neither folder nor exported file, or
/// without any module, and for an unknown code page.
[[nodiscard]] Exported_Project Read_Project(const std::filesystem::path& path,
                                            const Read_Options& options = {});

/// Makes a project of the editor out of what was read, and the active one. The components are moved
/// there; `files` stays for a `Writer`.
host::Memory_Project& Add_To_Editor(host::Memory_Editor& editor, Exported_Project& project);

}  // namespace oru::provider
