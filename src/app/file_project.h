// SPDX-License-Identifier: MIT
// A project of exported files or of a workbook in an in-memory editor of its own, for front ends that
// have no real editor: what a session connects to, and where each module came from.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/memory_editor.h"
#include "host/memory_host_app.h"
#include "provider/project_source.h"

namespace oru::app {

class File_Project {
 public:
  /// Reads the project and makes it the editor's active one. An empty text, or why it could not be
  /// read; `Problems` then tells what could not be read of it.
  [[nodiscard]] std::string Open(const std::filesystem::path& project, int code_page);
  /// The file of a module, relative to the project's folder (of a workbook, its name); empty if there is none of that name.
  [[nodiscard]] std::string File_Of(std::string_view module) const;
  /// When a module's file was changed last, "YYMMDDHHMMSS"; empty if there is no such file.
  [[nodiscard]] std::string Edited_At(std::string_view module) const;

  host::Memory_Editor Editor;
  host::Memory_Host_App App;  ///< with the workbook open in it, if the project is one
  std::vector<provider::Problem> Problems;
  std::vector<provider::Module_File> Files;  ///< one for each module
  std::string Path;                          ///< as the user gave it
  std::string Host_File;                     ///< of the folder or file, absolute
  int Code_Page = 932;                       ///< of files that do not tell theirs

 private:
  [[nodiscard]] const provider::Module_File* Find(std::string_view module) const;
};

}  // namespace oru::app
