// SPDX-License-Identifier: MIT
// Intake of what can raise events in a module: a designer's controls, a sheet's controls, and the
// words that mark forms, books and sheets themselves.
#pragma once

#include "analyser/module_pass.h"

namespace oru::analyser {

/// Fills the module's "Ctl" by its type. A control list that cannot be read is reported; a sheet
/// whose controls cannot be read goes to `Rty_Mdl`. Throws `Sys_Error` 9999 if a designer that is
/// closed cannot be opened.
void Get_Controls(Mdl_Ctx& ctx, host::VBComponent& component, const Mdl_Row& row, Mdl_Entry& entry);

}  // namespace oru::analyser
