// SPDX-License-Identifier: MIT
// Runs the commands of the table by handler name: a click, a hot key, an order from a terminal.
// Each is one event: it tests what it needs, tells the user in one message why it does not act, or
// acts; no fault leaves it. What lies above this folder comes in as functions; an empty one, or
// one that is missing, is not part of this build, which the command then says.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/host_app.h"
#include "host/model.h"
#include "lifecycle/command_table.h"
#include "service/services.h"

namespace oru::lifecycle {

/// How a view is asked for.
struct View_Request {
  std::string_view Frm;  ///< form name
  std::string_view Mod;  ///< use of a form with several: "S" of Frm_Snippet, "参照文" of Frm_Search
  bool Sel_Wrd = false;  ///< it begins from the word at the caret, not from the member
};

/// What the commands work with.
struct Command_Ctx {
  service::Services& Srv;
  host::VBE& VBInst;
  host::HostApp* App = nullptr;  ///< null without a spreadsheet host

  /// Openers by form name, and transforms by routine name.
  std::map<std::string, std::function<void(const View_Request&)>, std::less<>> Frm = {};
  std::map<std::string, std::function<void(int mode)>, std::less<>> Trf = {};
  std::function<void(Help_Topic)> Disp_Help = {};
  std::function<void()> Set_Sif_Inf = {};  ///< puts the caret's place into the history
  std::function<void()> Set_MovLs = {};    ///< renews the history's view; may be empty
  std::function<bool(int kind)> Mov_Prc_His =
      {};                                  ///< 1 definition line, 2 last change, 3 last line
  std::function<void()> Clr_Upd_Inf = {};  ///< clears update strings and history
  std::function<void(bool from_empty)> Get_Pgm_Inf = {};  ///< brings the tables up to date
  std::function<void(int function)> Ctl_Fnc_Frm =
      {};  ///< 1 minimise, 2 restore, 3 close the windows
  /// Shows the entries as a pop-up; the handler of the chosen one, empty if none was.
  std::function<std::string(std::span<const Menu_Entry>)> Dsp_Pop_Mnu = {};
};

/// One entry of the menus, for a listing.
struct Command_Info {
  Place Where;
  std::string_view Caption;  ///< as it stands in the menu
  std::string_view Handler;
  bool Here;  ///< part of this build
};

/// Name of a place for a listing.
[[nodiscard]] std::string_view Place_Name(Place where);
/// All entries of the menus, by place, in the order in which they are shown.
[[nodiscard]] std::vector<Command_Info> List_Commands(const Command_Ctx& ctx);

class Commands {
 public:
  explicit Commands(Command_Ctx ctx) : ctx_(std::move(ctx)) {}
  Commands(const Commands&) = delete;
  Commands& operator=(const Commands&) = delete;

  /// Runs a command. True if it acted; false if it was stopped or declined, is not part of this
  /// build, failed, or if there is no such handler. Whatever the reason, the user has been told,
  /// but for a view that is just being opened and for an unknown handler.
  // NOLINTNEXTLINE(modernize-use-nodiscard): a click has no use for it
  bool Exc_CBt_Evt(std::string_view handler) noexcept;

  /// Opens a view by its form name. Stops, and tells why, without a project, in a locked one, in a
  /// workbook never saved, without any module that can be analysed, and for a view that is not part
  /// of this build. For callers inside an event.
  [[nodiscard]] bool Set_Dva_Frm(std::string_view form);

  /// False while the view of that form is being opened.
  [[nodiscard]] bool Chk_Lod_Frm(std::string_view form) const;

  [[nodiscard]] const Command_Ctx& Ctx() const { return ctx_; }

 private:
  [[nodiscard]] bool Run(const Command& command);
  [[nodiscard]] bool Chk_Grd(const Command& command);
  [[nodiscard]] bool Chk_Prj(const Command& command);
  [[nodiscard]] bool Act(const Command& command);
  void Opn_Frm(const Command& command);
  [[nodiscard]] bool Sel_Pop_Mnu();
  void Tell(std::string_view text, service::Icon icon = service::Icon::Warning);
  [[nodiscard]] bool Ask(std::string_view text, int default_button);

  Command_Ctx ctx_;
  std::set<std::string, std::less<>> loading_;
};

}  // namespace oru::lifecycle
