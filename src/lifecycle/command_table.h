// SPDX-License-Identifier: MIT
// All commands of the system, and where each of them stands in the editor: one table of handlers
// with what they run, one of menu entries with the handler of each. Menus, the runner, listings and
// the system's own frame window derive from these two.
#pragma once

#include <span>
#include <string_view>

namespace oru::lifecycle {

/// What a command does; see `Command`.
enum class Action {
  Open_View,     ///< `Set_Dva_Frm` for the form `Nam`, asked for `Mod`
  Open_Option,   ///< the same for a form that needs neither a saved workbook nor modules
  Open_Control,  ///< the form `Nam`, in a module with a designer only
  Transform,     ///< the transform `Nam` in mode `Num`
  Move,          ///< `Mov_Prc_His` of kind `Num`
  Add_History,   ///< `Add_SIf_His`
  Set_History,   ///< `Set_Sif_Inf`
  Clear_History,
  Analyse_All,
  Pop_Menu,     ///< `Dsp_Pop_Mnu`
  Help,         ///< `Disp_Help` with the topic `Num`
  Open_Report,  ///< `Opn_Rel_Fil` on the fatal report
  Version,
  Frame,         ///< `Ctl_Fnc_Frm` with `Num`
  Windows,       ///< `Chg_Window`
  Other_View,    ///< `Chg_Opt_Win`
  Split,         ///< `Spl_Cod_Win`
  Close_Windows  ///< `Cls_All_Win`
};

/// What is tested before a command acts, behind the protection of the project.
enum class Guard {
  None,
  Loading,  ///< `Chk_Lod_Frm`: dropped while its form is being opened
  Editing   ///< `Chk_Run_Fnc`: a code window must be in front
};

/// Topics of the help.
enum class Help_Topic { Contents = 0, Window = 1, Keywords = 2 };

// Fields stand in the order in which the table fills them.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct Command {
  std::string_view Handler;  ///< a literal, so that its text ends with a zero
  std::string_view Ttl;      ///< what it is called in messages
  Action Act;
  std::string_view Nam = {};  ///< of a form ("Frm_List") or a transform ("Rev_Indent")
  int Num = 0;
  Guard Grd = Guard::None;
  bool Anl = false;           ///< the tables are brought up to date first
  bool Sel_Wrd = false;       ///< `Cal_Sel_Wrd`: begins from the word at the caret
  std::string_view Mod = {};  ///< what a form of several uses is opened for
};

/// Where an entry stands.
enum class Place {
  Popup,      ///< the popup in the tool menu; its two submenus stand behind these entries
  Functions,  ///< its submenu "機能"
  Support,    ///< its submenu "サポート"
  Context,    ///< the context menu of code windows
  Tool_Bar,
  Frame  ///< the system's own frame window
};

struct Menu_Entry {
  Place Where;
  std::string_view Caption;
  std::string_view Handler;
};

/// The editor's bars and menus that receive entries, and the captions of the system's own menus.
constexpr std::string_view kMenu_Bar = "ﾒﾆｭｰ ﾊﾞｰ";
constexpr std::string_view kTool_Menu = "ﾂｰﾙ(&T)";
constexpr std::string_view kContext_Bar = "Code Window";
constexpr std::string_view kPopup = " サポートメニュー(&F)";
constexpr std::string_view kFunctions = "機能";
constexpr std::string_view kSupport = "サポート";

/// All commands, in no particular order.
[[nodiscard]] std::span<const Command> Commands_Table();
/// The command of that handler, or null.
[[nodiscard]] const Command* Find_Command(std::string_view handler);
/// All entries, by place, in the order in which they are shown.
[[nodiscard]] std::span<const Menu_Entry> Menu_Entries();
/// Those of one place.
[[nodiscard]] std::span<const Menu_Entry> Menu_Entries(Place where);

}  // namespace oru::lifecycle
