// SPDX-License-Identifier: MIT
// The commands of the program: each takes a session, analysed where it needs the tables, and its
// options, asks the views, and prints. The options are plain values, filled by the command line.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

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
  bool colours = false;   ///< the terminal shows colours, and the user wants them
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

/// What `oru search` and `oru replace` were asked for.
struct Search_Options {
  std::string Kind = "text";
  std::vector<std::string> Words;  ///< of a replacement: old and new by turns
  bool Exact = false, Assigned = false, Any = false, Binary = false;
  bool No_Comments = false, No_Commented_Out = false, No_Literals = false;
  std::string Module, Procedure;  ///< the scope; both empty: the project
  bool By_Name = false;           ///< procedures sorted by name
  bool Relative = false;          ///< line numbers count from the procedure
  std::string Rtf, Html;          ///< files to write
  bool Write = false;             ///< replace: change the files
  bool Signed = false;            ///< replace: write although a signature becomes invalid
};
void Add_Search_Options(CLI::App& command, Search_Options& options);
void Add_Replace_Options(CLI::App& command, Search_Options& options);

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

/// The statements of a kind that match, as coloured lines, rows, or files.
[[nodiscard]] int Cmd_Search(const Work& work, const Output& output, const Search_Options& options);
/// Shows what a replacement changes, and does it if asked to.
[[nodiscard]] int Cmd_Replace(const Work& work, const Output& output,
                              const Search_Options& options);
/// Takes the last replacement of a project back. Needs no session.
[[nodiscard]] int Cmd_Undo(const Output& output, const std::string& project, int code_page);

/// The modules of a workbook into files, and back. They need no session.
[[nodiscard]] int Cmd_Extract(const Output& output, const Exchange_Options& options);
[[nodiscard]] int Cmd_Import(const Output& output, const Exchange_Options& options);

}  // namespace oru::app
