// SPDX-License-Identifier: MIT
// The view of the change history: the members that were edited, newest first, or all procedures of
// the project; each row leads to its place in the code. The user may arrange the history here,
// which changes what is kept with the project. A plain struct of control values without a window;
// the caller brings the tables up to date before `Set_MovLs`.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include "analyser/kept_lists.h"
#include "views/context.h"
#include "views/list_table.h"

namespace oru::views {

/// What the view works with: it reads the tables, and changes the history.
struct Move_Ctx {
  View_Ctx View;
  analyser::Kept_Lists& Lst;
  bool& Anl_Chg;  ///< set when the history has to be saved
};

enum class Move_Kind { History, Project };
/// Order of the rows: as recorded (the project's: as in the tables), by name, by module.
enum class Move_Order { Recorded = 0, Name = 1, Module = 2 };

/// True if a member passes the name filter: the words of `filter`, divided by blanks or ":", must all
/// fit. A word is "procedure", "module/procedure" or "procedure.module", without regard to letter
/// case; a part with "*" must match as a whole, one without must be contained, an empty one always
/// fits.
[[nodiscard]] bool Chk_Nam_Flt(std::string_view filter, std::string_view module,
                               std::string_view member);

struct Frm_Move {
  Move_Kind Kind = Move_Kind::History;
  Move_Order Order = Move_Order::Recorded;
  std::string FTx_SelCh;      ///< name filter
  bool FCk_ScApi = false;     ///< API declarations too
  List_Table FLv_Move;        ///< row keys are procedure name, ".", module name
  std::set<std::string> Chk;  ///< keys of the rows with a check mark
  std::size_t Lst_Pos = 0;    ///< row at the top of the list, from 0

  // What can be done now (`Rev_Control`).
  bool FMn_MovHs_Enabled = false;  ///< a row is selected
  bool FMn_AlgHs_Enabled = false;  ///< the history is listed and a row is checked
  bool FBt_ClrCh_Enabled = false;  ///< there is a filter to clear

  /// Fills the list anew.
  void Set_MovLs(const Move_Ctx& ctx);
  /// Puts the rows into their order and tells it in the titles.
  void Set_Mov_Seq();
  /// A title was clicked: the first one steps between recorded order and names, the module's groups
  /// the rows by module and back.
  void FLv_Move_ColumnClick(std::size_t column);
  /// Sets or takes away the check mark of a row; nothing for a key that is not listed.
  void FLv_Move_ItemCheck(std::string_view key, bool checked);
  void FLv_Move_ItemClick(std::string_view key);

  /// Moves to the place of the selected row: the recorded line, or the header of a procedure that
  /// has none. False if nothing is selected or the member is gone, which is told.
  bool FMn_MovHs_Click(const Move_Ctx& ctx);
  /// Arranges the history: 1 removes the checked rows, 2 those from the first checked one down, 3
  /// those down to the last checked one, 4 the unchecked ones; asks first. False if nothing was
  /// removed.
  bool FMn_AlgHs_Click(const Move_Ctx& ctx, int index);
  /// Removes the selected row's entry.
  void FMn_LstDl_Click(const Move_Ctx& ctx);
  /// Clears the check marks; clears the filter.
  void FMn_ClrCh_Click();
  void FBt_ClrCh_Click(const Move_Ctx& ctx);

 private:
  void Set_Mov_Lin(const Move_Ctx& ctx, std::string_view module, std::string_view member);
  void Del_Entry(const Move_Ctx& ctx, std::string_view key);
  void Rev_Control();
};

}  // namespace oru::views
