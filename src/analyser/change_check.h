// SPDX-License-Identifier: MIT
// Change detection: which modules have to be read. Names and sheet captions are looked at every
// time; texts only after an edit or a change of project, which is what makes a refresh free.
#pragma once

#include "analyser/driver.h"
#include "analyser/progress.h"

namespace oru::analyser {

/// Fills `Anl_Mdl` and sets `Prj_Chg` and `Del_Chg`; true if there is a module to read.
[[nodiscard]] bool Chk_Pgm_Inf(Anl_Ctx& ctx, Anl_Progress& progress);

/// True if the module's present code differs from what its entry was made from: in the compared text
/// or, for blank lines, which that text cannot show, in the lengths of the lines. Blank lines at the
/// module's end do not count.
[[nodiscard]] bool Chk_Mdl_Chg(const Mdl_Entry& entry, const host::CodeModule& module);

}  // namespace oru::analyser
