// SPDX-License-Identifier: MIT
// Totals of a project, a maintenance command of the list: lines and statements as the editor has
// them now, modules and procedures by kind, the size of each module.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "views/context.h"

namespace oru::views {

struct Prj_Totals {
  std::int64_t Total = 0;                                           ///< all lines
  std::int64_t Step = 0;                                            ///< lines of code
  std::int64_t Comment = 0;                                         ///< lines of comment
  std::int64_t Modul = 0, Class = 0, Form = 0, Etc = 0;             ///< components by type 1, 2, 5
  std::int64_t Event = 0, Sub = 0, Function = 0, Api = 0, EPr = 0;  ///< "Mem" rows by kind
  std::vector<std::pair<std::string, int>> Lines;                   ///< components with their lines
};

/// Counts the active project. A line label is taken off before a line is judged.
[[nodiscard]] Prj_Totals Get_Prj_Totals(const View_Ctx& ctx);

/// The totals as log lines: a tab, a counter's name, a tab, the number; then each component, padded
/// to 77 columns, a tab, its lines.
[[nodiscard]] std::vector<std::string> Totals_Text(const Prj_Totals& totals);

/// `FMn_PackF_Click`: with 2, counts, writes the lines to the trace log and tells the user. Gives
/// the lines, which a front end without a trace log shows; nothing for another index.
std::vector<std::string> FMn_PackF_Click(const View_Ctx& ctx, int index);

}  // namespace oru::views
