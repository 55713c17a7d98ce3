// SPDX-License-Identifier: MIT
// The program `oru`: reads the command line, opens a session, and shows what a view gives as
// aligned columns, tab-separated values or JSON. It knows options and forms of output; what is
// shown is the views' own.
#pragma once

#include <ostream>

namespace oru::app {

/// Exit codes of the program.
enum Exit_Code {
  kExit_Ok = 0,
  kExit_Not_Found = 1,     ///< the asked member is not there
  kExit_Would_Change = 1,  ///< a check found something to change
  kExit_Usage = 2,         ///< the command line is wrong
  kExit_Project = 3,       ///< the project cannot be read
  kExit_Stopped = 4,       ///< the analysis was stopped or failed
  kExit_Output = 5         ///< the output could not be written
};

/// Whether the process ends behind the command: then the tables are not given back row by row, which
/// would take a noticeable part of a short run.
enum class After { Go_On, Process_Ends };

/// Runs one command; results go to `out`, errors and notes to `err`.
[[nodiscard]] int Run_Cli(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                          After after = After::Go_On);

}  // namespace oru::app
