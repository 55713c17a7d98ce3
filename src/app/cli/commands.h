// SPDX-License-Identifier: MIT
// The commands of the program: each takes a session, analysed where it needs the tables, and its
// options, asks the views, and prints. The options are plain values, filled by the command line.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "app/cli/output.h"
#include "app/file_project.h"
#include "app/session.h"

namespace CLI {
class App;
}

namespace oru::app {

/// Where and how a command prints.
struct Output {
  std::ostream& out;
  std::ostream& err;
  Format format = Format::Columns;
  std::size_t width = 0;  ///< of the terminal, 0 for none
};

/// What a command works on.
struct Work {
  Session& session;
  File_Project& project;
  double seconds = 0;  ///< reading and analysing
};

/// What `oru list` was asked for.
struct List_Options {
  std::string Filter;         ///< a filter row's text, or its English word; empty for all
  std::string Sort = "name";  ///< see the help
  std::string Module;         ///< only this module's procedures
  bool Grouped = false;       ///< by module first
  bool Copy = false;          ///< the text for the clipboard
};

/// What `oru history` was asked for.
struct History_Options {
  std::string Filter;  ///< names, in the shorthand of the view
};
void Add_History_Options(CLI::App& command, History_Options& options);

/// What `oru extract` and `oru import` were asked for.
struct Exchange_Options {
  std::string Book, Folder;
  bool Overwrite = false;  ///< extract: replace files that have other content
  bool Signed = false;     ///< import: write although a signature becomes invalid
};
void Add_Extract_Options(CLI::App& command, Exchange_Options& options);
void Add_Import_Options(CLI::App& command, Exchange_Options& options);

/// Adds the options of the two lists to their commands.
void Add_Module_List_Options(CLI::App& command, List_Options& options);
void Add_Procedure_List_Options(CLI::App& command, List_Options& options);

[[nodiscard]] int Cmd_Analyse(const Work& work, const Output& output);
[[nodiscard]] int Cmd_List_Modules(const Work& work, const Output& output,
                                   const List_Options& options);
[[nodiscard]] int Cmd_List_Procedures(const Work& work, const Output& output,
                                      const List_Options& options);
[[nodiscard]] int Cmd_Refs(const Work& work, const Output& output, const std::string& member);
[[nodiscard]] int Cmd_Unused(const Work& work, const Output& output);
[[nodiscard]] int Cmd_Tables(const Work& work, const Output& output);
/// The members edited, newest first.
[[nodiscard]] int Cmd_History(const Work& work, const Output& output,
                              const History_Options& options);
/// The commands of the menus, as they stand there.
[[nodiscard]] int Cmd_Commands(const Work& work, const Output& output);

/// The modules of a workbook into files, and back. They need no session.
[[nodiscard]] int Cmd_Extract(const Output& output, const Exchange_Options& options);
[[nodiscard]] int Cmd_Import(const Output& output, const Exchange_Options& options);

}  // namespace oru::app
