// SPDX-License-Identifier: MIT
// Operations derived from the object model and used everywhere: which project, which mode, which
// member stands at a line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/model.h"
#include "service/services.h"

namespace oru::host {

/// File name (without folder) of the active project's host file, from the main window's caption;
/// empty when no project is open.
[[nodiscard]] std::string Get_HFl_Nam(VBE& vbe);
/// That name without its last "." and what follows.
[[nodiscard]] std::string Get_Prj_Nam(VBE& vbe);
/// True in design mode (neither in a break nor running).
[[nodiscard]] bool Chk_Des_Mod(VBE& vbe);
/// True when the front window is a code window, in design mode.
[[nodiscard]] bool Chk_Edt_Mod(VBE& vbe);
/// The same for a command that needs it: the user is told when it is not so.
[[nodiscard]] bool Chk_Run_Fnc(VBE& vbe, service::Services& services);
/// True for the name of a component of the active project of type 1, 2, 3, 11 or 100.
[[nodiscard]] bool Chk_Mdl_Typ(VBE& vbe, std::string_view name);
[[nodiscard]] bool Chk_Mdl_Typ(int component_type);
/// Guards each command: true, with all windows closed, when there is no project or a locked one;
/// `show` has the reason told.
[[nodiscard]] bool Chk_Protect(VBE& vbe, service::Services& services, bool show);

/// The member that holds a line.
struct Member_Place {
  std::string Nam;      ///< with "(Get)", "(Let)" or "(Set)" for a property; "%Declare"
  std::string Prc_Nam;  ///< the name alone, as the host knows it
  ProcKind Prc_Knd = ProcKind::Proc;
  char Knd = 0;  ///< '1' procedure, '3' property, 0 for the declaration section
  char Sub = 0;  ///< '1' Get, '2' Let, '3' Set, else 0
  int Top = 1;   ///< `ProcStartLine`
  int Bdy = 1;   ///< `ProcBodyLine`
  int Cnt = 0;   ///< `ProcCountLines`
};

/// Name with the suffix of a property's kind.
[[nodiscard]] std::string Member_Name(std::string_view name, ProcKind kind);

/// The member at a line, with its three line numbers. For a name that comes twice in the module
/// (branches of an `#If`) the numbers are those of the procedure that really holds the line.
[[nodiscard]] Member_Place Get_CML_Inf(const CodeModule& module, int line);

/// All procedures of a module in order, each where it really stands.
[[nodiscard]] std::vector<Member_Place> Get_Procedures(const CodeModule& module);

/// What the active pane shows.
struct Pane_Place {
  std::string Mdl_Nam;
  Selection Sel;
  int TopLine = 1;
  Member_Place Mem;  ///< the member at the first selected line
};
/// Nothing if no module window is in front.
[[nodiscard]] std::optional<Pane_Place> Get_ACp_Inf(VBE& vbe);
/// What is selected in one line, without blanks around it; empty for a caret, and for a selection
/// over several lines.
[[nodiscard]] std::string Get_Sel_Wrd(const CodeModule& module, const Selection& selection);
/// The module of the active pane, or of the window in front by its caption; empty if there is none.
[[nodiscard]] std::string Set_Mdl_Nam(VBE& vbe);

}  // namespace oru::host
