// SPDX-License-Identifier: MIT
// Places in the project's code, named as the system names them: a module, a member with "(Get)",
// "(Let)" or "(Set)" for a property or "%Declare" for the declaration section, and a line counted
// from the member's first line. Whether such a place is still there, and moving the editor to it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/derived.h"

namespace oru::host {

/// A member's name as the host knows it: without the suffix of a property's kind.
struct Host_Name {
  std::string_view Prc_Nam;
  ProcKind Prc_Knd = ProcKind::Proc;
};
[[nodiscard]] Host_Name Split_Member(std::string_view member);

/// The three line numbers of a member found by its name (`Get_CMm_Inf`); nothing if the active
/// project has no such module, or the module no such procedure. `Declare` statements are no
/// procedures.
[[nodiscard]] std::optional<Member_Place> Get_CMm_Inf(VBE& vbe, std::string_view module,
                                                      std::string_view member);
/// True if the member is still there (`Chk_Prc_Exs`, without its message).
[[nodiscard]] bool Chk_Prc_Exs(VBE& vbe, std::string_view module, std::string_view member);

/// Moves the caret to a line of a module (1-based; one outside the text is moved to its nearest
/// line): shows the pane, restores its window if it was minimised, and scrolls if the line is not
/// visible. False if there is no such module.
[[nodiscard]] bool Set_Mdl_Lin(VBE& vbe, std::string_view module, int line);
/// The same for a line counted from the member's first line, 1-based (`Set_Prc_Pos`). False, and
/// nothing moved, if the member is gone.
[[nodiscard]] bool Set_Prc_Pos(VBE& vbe, std::string_view module, std::string_view member,
                               int line);

}  // namespace oru::host
