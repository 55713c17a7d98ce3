// SPDX-License-Identifier: MIT
// The commands of the program: each takes an analysed session and its options, asks the views, and
// prints. The options are plain values, filled by the command line.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "app/cli/output.h"
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

/// What `oru list` was asked for.
struct List_Options {
  std::string Filter;         ///< a filter row's text, or its English word; empty for all
  std::string Sort = "name";  ///< see the help
  std::string Module;         ///< only this module's procedures
  bool Grouped = false;       ///< by module first
  bool Copy = false;          ///< the text for the clipboard
};

/// Adds the options of the two lists to their commands.
void Add_Module_List_Options(CLI::App& command, List_Options& options);
void Add_Procedure_List_Options(CLI::App& command, List_Options& options);

[[nodiscard]] int Cmd_Analyse(Session& session, const Output& output, double seconds);
[[nodiscard]] int Cmd_List_Modules(Session& session, const Output& output,
                                   const List_Options& options);
[[nodiscard]] int Cmd_List_Procedures(Session& session, const Output& output,
                                      const List_Options& options);
[[nodiscard]] int Cmd_Refs(Session& session, const Output& output, const std::string& member);
[[nodiscard]] int Cmd_Unused(Session& session, const Output& output);
[[nodiscard]] int Cmd_Tables(Session& session, const Output& output);

}  // namespace oru::app
