// SPDX-License-Identifier: MIT
// One session owns everything between opening a project and closing it: the editor, the services
// with their settings and logs, the tables, and the state of the analysis driver. Front ends hold a
// session and hand its parts down; nothing below this folder knows it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "analyser/driver.h"
#include "host/memory_editor.h"
#include "provider/exported_folder.h"
#include "service/services.h"

namespace oru::app {

struct Session_Options {
  std::filesystem::path Data_Folder;     ///< settings, reserved words and reports; may be empty
  std::filesystem::path Program_Folder;  ///< where the marker files of the switches are looked for
  int Code_Page = 932;                   ///< of files that do not tell their encoding
};

class Session {
 public:
  /// Sets the switches by their marker files, and reads settings and reserved words from the data
  /// folder where they are there.
  Session(service::User_Interface& ui, const service::Clock& clock, const Session_Options& options);

  /// Reads a project of exported files and makes it the active one. An empty text, or why it could
  /// not be read; `Problems` then tells what could not be read of it.
  [[nodiscard]] std::string Open(const std::filesystem::path& project);
  /// The file of a module, relative to the project's folder; empty if there is none of that name.
  [[nodiscard]] std::string File_Of(std::string_view module) const;
  /// Brings the tables up to date. False if the analysis was stopped or failed.
  [[nodiscard]] bool Analyse();

  service::Services Srv;
  host::Memory_Editor VBInst;
  analyser::Tables Tbl;
  analyser::Anl_State Sta;
  analyser::Kept_Lists Lst;
  std::vector<provider::Problem> Problems;
  std::vector<provider::Module_File> Files;  ///< where each module came from
  std::string Project_Path;                  ///< as the user gave it

 private:
  Session_Options options_;
};

/// The data folder where the user names none: the platform's place for application data.
[[nodiscard]] std::filesystem::path Default_Data_Folder();

}  // namespace oru::app
