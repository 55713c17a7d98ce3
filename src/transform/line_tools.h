// SPDX-License-Identifier: MIT
// Small changes of a few lines: swapping both sides of assignments, aligning trailing comments or
// `As` clauses. Each looks at a physical line by itself, with literals masked; comment lines and the
// lines of a continued comment are left alone. Running one twice changes nothing more (aligning) or
// gives the old lines back (swapping).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/code_change.h"
#include "transform/transform_ctx.h"

namespace oru::transform {

enum class Line_Tool : std::uint8_t { Align_Comments = 1, Align_As = 2, Swap_Sides = 3 };

/// What stands in front of the lines that a tool is given.
struct Lines_Above {
  bool Continued = false;  ///< the line above goes on in the first one
  bool Comment = false;    ///< and it is a comment
};

/// The lines as the tool leaves them, one for each line given.
[[nodiscard]] std::vector<std::string> Apply_Tool(Line_Tool tool,
                                                  std::span<const std::string> lines,
                                                  Lines_Above above = {});

/// Applies a tool to lines `first` to `last` of a module, 1-based, as one change.
[[nodiscard]] host::Change_Result Change_Lines(const Transform_Ctx& ctx, host::CodeModule& code,
                                               std::string_view module, int first, int last,
                                               Line_Tool tool);

/// The same for the selected lines of the active pane. Nothing happens without a selection and while
/// no code is being edited; a selection that ends in front of a line's first character leaves that
/// line out. `mode` 1 aligns comments, 2 `As` clauses.
[[nodiscard]] host::Change_Result Rev_Let_Sta(const Transform_Ctx& ctx);
[[nodiscard]] host::Change_Result Alg_CmA_Pos(const Transform_Ctx& ctx, int mode);

}  // namespace oru::transform
