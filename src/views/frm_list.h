// SPDX-License-Identifier: MIT
// The view of the project's structure: tables of modules and procedures with sizes, complexity,
// comments, reference marks and last changes. A plain struct of control values with their routines
// and no window: a front end sets the values, calls a routine, and shows `FLv_Modul`/`FLv_Membr`.
// Two presentations: by module (both tables, the procedures of `Cur_Mdl`), and by project
// (`FLv_Membr` alone, all procedures). The caller brings the tables up to date before `Get_Inform`.
#pragma once

#include <string>
#include <string_view>

#include "service/settings.h"
#include "views/context.h"
#include "views/list_table.h"

namespace oru::views {

constexpr int kBy_Module = 1;
constexpr int kBy_Project = 2;
/// Added to a sort mode (0 to 2): the rows of a module stand together.
constexpr int kGrouped = 7;

struct Frm_List {
  // State that is kept with the options.
  int ListMode = kBy_Module;
  int ModulSortMode = 0;  ///< 0 name ascending, 1 name descending, 2 order of changes
  int MembrSortMode = 0;  ///< the same, procedures of one module
  int MemAlSortMode = 0;  ///< the same, all procedures; 7 to 9 grouped by module

  Filter_Box FCx_Modul;  ///< filter of modules
  Filter_Box FCx_Membr;  ///< filter of procedures
  List_Table FLv_Modul;  ///< empty by project
  List_Table FLv_Membr;
  std::string Cur_Mdl;  ///< module whose procedures are listed, by module

  /// Takes the state from the options; a value that is none becomes the first one.
  void Lod_State(const service::Settings& settings);
  void Sav_State(service::Settings& settings) const;

  /// Defines the columns of both tables for the presentation; rows go.
  void Int_List();
  /// Fills filters and tables anew and selects the row of the code window's position: its
  /// procedure, else (by project) its module's declaration row; nothing if that is filtered away.
  /// Without a code window the current module stays, or becomes the project's first one.
  void Get_Inform(const View_Ctx& ctx);

  /// Text of the switching command: the presentation that it leads to.
  [[nodiscard]] std::string_view FBt_List_Text() const;
  /// Switches the presentation.
  void FBt_List_Click(const View_Ctx& ctx);
  /// A filter was chosen; false, and nothing done, for a text that is no row of the box.
  [[nodiscard]] bool FCx_Modul_Click(const View_Ctx& ctx, std::string_view text);
  [[nodiscard]] bool FCx_Membr_Click(const View_Ctx& ctx, std::string_view text);
  /// A module's row was selected: its procedures are listed, by module.
  void FLv_Modul_ItemClick(const View_Ctx& ctx, std::string_view mdl_nam);
  /// A title was clicked: the first column steps the order, the module column groups or ungroups.
  void FLv_Modul_ColumnClick(std::size_t column);
  void FLv_Membr_ColumnClick(std::size_t column);

  /// Rebuild the filter boxes: of modules, of the current module's procedures, of all procedures.
  void Set_Mdl_Lst(const View_Ctx& ctx);
  void Set_Mem_Lst(const View_Ctx& ctx);
  void Set_MAl_Lst();
  /// True if a module of that type code, or a procedure, passes the chosen filter.
  [[nodiscard]] bool Chk_Mdl_DOb(std::string_view mdl_typ) const;
  [[nodiscard]] bool Chk_Mem_DOb(const View_Ctx& ctx, const analyser::Mem_Row& row) const;

  /// Fill a table and sort it: modules, procedures of the current module, all procedures. A member
  /// kind outside the known ones throws `Sys_Error` 9.
  void Set_Modul(const View_Ctx& ctx);
  void Set_Membr(const View_Ctx& ctx);
  void Set_MemAl(const View_Ctx& ctx);
  /// Apply the sort mode and show it in the titles; nothing for a table without rows.
  void Set_Modul_Seq();
  void Set_Membr_Seq();
  void Set_MemAl_Seq();

  /// The text of a list for the clipboard, the separator by the option.
  [[nodiscard]] std::string FMn_CCopy_Modul(const View_Ctx& ctx) const;
  [[nodiscard]] std::string FMn_CCopy_Membr(const View_Ctx& ctx) const;
};

}  // namespace oru::views
