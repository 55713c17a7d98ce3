// SPDX-License-Identifier: MIT
// The code formatter over the editor: re-indents the body of one procedure, from the line behind
// its header to the line before its end. It takes line-number labels out on the way, but for those
// that the procedure uses, and makes one change of all of it: done whole or refused whole.
#pragma once

#include "host/code_change.h"
#include "transform/indent_rules.h"
#include "transform/transform_ctx.h"

namespace oru::transform {

/// Formats a procedure by the options `FTx_IdtCn` and `FCk_RevDS`. Refused are more than
/// `kMost_Depth` blocks in each other, and what the guard of changes refuses.
[[nodiscard]] host::Change_Result Format_Procedure(const Transform_Ctx& ctx,
                                                   const Procedure& procedure,
                                                   Label_Lines labels = Label_Lines::Indented);

/// Formats the procedure of the caret and puts pane, caret line and bookmark back. Nothing happens
/// in the declaration section, and while no code is being edited, which the user is told.
[[nodiscard]] host::Change_Result Rev_Indent(const Transform_Ctx& ctx);

}  // namespace oru::transform
