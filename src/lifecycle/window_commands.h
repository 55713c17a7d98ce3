// SPDX-License-Identifier: MIT
// Commands on the editor's windows. Where the windows themselves cannot do it, they press the
// editor's own entries; false means that this failed (`host::Exc_Hst_Cmd` has told the user).
#pragma once

#include "host/model.h"
#include "service/services.h"

namespace oru::lifecycle {

/// Code or object view of the module in hand, whichever is not in front. Nothing happens for a
/// module that has no object view (standard and class modules), or with neither view in front.
[[nodiscard]] bool Chg_Opt_Win(host::VBE& vbe, service::Services& services);

/// Splits the code window in front, or makes it one again. All its panes show the place that the
/// active one had before, and the bookmark is set there.
[[nodiscard]] bool Spl_Cod_Win(host::VBE& vbe, service::Services& services);

/// Hides the project explorer, the properties and the immediate window if any of them is shown;
/// shows the three of them otherwise.
[[nodiscard]] bool Chg_Window(host::VBE& vbe, service::Services& services);

/// Closes all windows of code and designers, in design mode only.
void Cls_All_Win(host::VBE& vbe);

}  // namespace oru::lifecycle
