// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
namespace oru::app {
void Add_History_Options(CLI::App& command, History_Options& options) {
  command.add_option("--filter", options.Filter, "名前で絞り込む");
}
int Cmd_History(const Work&, const Output&, const History_Options&) {
  return kExit_Ok;
}
}  // namespace oru::app
