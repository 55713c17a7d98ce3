// SPDX-License-Identifier: MIT
// The contents of list cells: numbers, change marks and dates, reference marks. Plain functions of
// the tables; nothing here knows a list.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "views/context.h"

namespace oru::views {

/// The number of a row's digits field; 0 for an empty one.
[[nodiscard]] std::int64_t To_Number(std::string_view digits);
/// A count of procedures, right-aligned to four characters; blanks for 0.
[[nodiscard]] std::string Edt_Count(std::int64_t n);
/// A count of lines or a metric: the rightmost six characters of five blanks and the number, which
/// is nothing for 0.
[[nodiscard]] std::string Edt_Metric(std::int64_t n);

/// What the lists show of a key's last change.
struct UDt_Inf {
  bool Chg = false;      ///< there is an update string
  std::string_view Mrk;  ///< "★" changed since the analysis was loaded, "☆" before, else empty
  std::string Dat;       ///< "20YY/MM/DD HH:MM", empty without a change
  std::string Key;       ///< moment and line (17 digits); without a change the key and one blank
};
/// The update information of a row key. A string that does not begin with 17 digits is none.
[[nodiscard]] UDt_Inf Set_UDt_Inf(const View_Ctx& ctx, std::string_view key);

/// True if the name is exempt from the search for callers: an entry procedure, by its exact name.
[[nodiscard]] bool Chk_NRf_Mem(std::string_view name);

struct Ref_Cell {
  std::string_view Mrk;  ///< "↓" calls others, "↑" is called, "－" unconfirmed and neither
  bool Red = false;      ///< unconfirmed: a Sub or Function that nothing is seen to call
};
[[nodiscard]] Ref_Cell Get_Ref_Cell(const analyser::Tables& tables, const analyser::Mem_Row& row);

/// The object that an event procedure serves: its name before the last "_"; empty without one.
[[nodiscard]] std::string_view Event_Object(std::string_view mem_nam);
/// The type of a module's control: from its designer or, while that is closed or refuses, as it was when the
/// module was read. Empty if there is no such control.
[[nodiscard]] std::string Get_Ctl_Typ(const View_Ctx& ctx, std::string_view mdl_nam,
                                      std::string_view ctl_nam);

/// True if the module's declaration section has a line that is neither blank nor an `Option`
/// statement. False for a module that the project does not have.
[[nodiscard]] bool Chk_Def_Stm(host::VBE& vbe, std::string_view mdl_nam);

}  // namespace oru::views
