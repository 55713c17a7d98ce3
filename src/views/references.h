// SPDX-License-Identifier: MIT
// Who calls a member and whom it calls, with the lines; and the members that nothing refers to.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analyser/tables.h"
#include "host/model.h"

namespace oru::views {

/// One referring line.
struct Ref_Line {
  bool Outgoing = false;       ///< the asked member calls `Member`; otherwise it is called by it
  std::string Member;          ///< the other one, `Module.Member`
  int Line = 0;                ///< line in the module of the referring member, 1-based
  int Offset = 0;              ///< line in the referring member, 1-based
  bool Error_Section = false;  ///< behind the label of the last `On Error GoTo`
  std::string Text;            ///< the line as it stands, trimmed
};

/// All references of a member: first its callers in table order, then what it calls.
[[nodiscard]] std::vector<Ref_Line> Get_References(const analyser::Tables& tables, host::VBE& vbe,
                                                   std::string_view module,
                                                   std::string_view member);

/// The members that a user may mean by "Module.Member" or by a member's name alone, letter case
/// aside; a property's legs all answer to its name. Names as the tables hold them.
struct Member_Name {
  std::string Module, Member;
};
[[nodiscard]] std::vector<Member_Name> Find_Members(const analyser::Tables& tables,
                                                    std::string_view name);

/// A member that nothing refers to.
struct Unused_Row {
  std::string Module, Member;
  std::string Kind;  ///< `Set_Mem_Typ` word
  bool Public = false;
  bool Calls = false;  ///< it refers to others itself
  int Line = 0;        ///< first line in the module
  int Lines = 0;       ///< physical lines; 0 for a `Declare`
};

/// Subs and Functions that nothing refers to and that nothing outside starts either, and `Declare`s
/// that nobody calls, in table order.
[[nodiscard]] std::vector<Unused_Row> Get_Unused(const analyser::Tables& tables);

}  // namespace oru::views
