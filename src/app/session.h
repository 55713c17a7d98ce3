// SPDX-License-Identifier: MIT
// One session owns everything between connection and disconnection: the editor handle, the services
// with their settings and logs, the tables and the lists that travel with them, the state of the
// driver, and the menus. A terminal, a test, a local server and an add-in all start and stop it in
// the same way. Front ends hold a session and hand its parts down; nothing below this folder knows
// it.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analyser/driver.h"
#include "lifecycle/commands.h"
#include "lifecycle/menus.h"
#include "query/frm_chart.h"
#include "query/frm_control.h"
#include "query/frm_search.h"
#include "service/services.h"
#include "service/state.h"
#include "transform/line_numbers.h"
#include "transform/trace.h"
#include "views/context.h"
#include "views/frm_list.h"
#include "views/frm_move.h"

namespace oru::app {

struct Session_Options {
  std::filesystem::path Data_Folder;     ///< settings, state, word lists, reports
  std::filesystem::path Program_Folder;  ///< marker files of the switches; templates
  int Ide_Version = 6;                   ///< of the editor; 5 to 7 are supported
  bool Use_Analysis_File = true;         ///< false: none is read or written
  bool Process_Ends =
      false;  ///< behind the disconnection: then the tables stay as they are, for the
              ///< system to take back with the process
};

class Session {
 public:
  Session(service::User_Interface& ui, const service::Clock& clock, Session_Options options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Starts: switches, data folder, settings, reserved words, menus, empty tables; analyses nothing.
  /// False, with nothing left behind, if something that is needed is not there; the user was told.
  [[nodiscard]] bool AddinInstance_OnConnection(host::VBE& vbe, host::HostApp* app);
  /// The editor is about to close: closes the windows of code.
  void AddinInstance_OnBeginShutdown();
  /// Stops: hooks, windows, settings, state, analysis file, tables, menus, in this order. What
  /// fails does not keep the rest from being done. Called by the destructor if need be.
  void AddinInstance_OnDisconnection();
  [[nodiscard]] bool Connected() const { return VBInst != nullptr; }

  /// Brings the tables up to date. False if the analysis was stopped or failed.
  [[nodiscard]] bool Analyse();
  /// Runs a command of the menus by its handler's name.
  [[nodiscard]] bool Run(std::string_view handler);

  [[nodiscard]] analyser::Anl_Ctx Anl();
  /// What a view works with, as of now.
  [[nodiscard]] views::View_Ctx View();
  /// What a query works with: it brings the tables up to date where it needs the code of this moment.
  [[nodiscard]] query::Query_Ctx Query();
  /// What a transform works with.
  [[nodiscard]] transform::Transform_Ctx Transform();
  /// The commands of the menus; none while not connected.
  [[nodiscard]] std::vector<lifecycle::Command_Info> List_Commands() const;

  /// The front end's user interface; closing the windows closes the session's views as well.
  class Front final : public service::User_Interface {
   public:
    Front(Session& session, service::User_Interface& ui) : session_(session), ui_(ui) {}
    [[nodiscard]] service::Answer Show_Message(const service::Message& message) override {
      return ui_.Show_Message(message);
    }
    void Show_Progress(const service::Progress& p) override { ui_.Show_Progress(p); }
    void Close_Progress() override { ui_.Close_Progress(); }
    void Do_Events() override { ui_.Do_Events(); }
    void All_Unl_Prc() override;
    void Show_Frm(std::string_view form) override { ui_.Show_Frm(form); }
    void Ctl_Hlp_Prc() override { ui_.Ctl_Hlp_Prc(); }
    void Set_Mouse_Hook(bool on) override { ui_.Set_Mouse_Hook(on); }
    void Set_Timer(bool on) override { ui_.Set_Timer(on); }
    void Set_Wait_Cursor(bool on) override { ui_.Set_Wait_Cursor(on); }
    void Open_File(const std::string& path) override { ui_.Open_File(path); }

   private:
    Session& session_;
    service::User_Interface& ui_;
  };
  Front Ui;
  service::Services Srv;
  service::Disk_Store Disk;
  host::VBE* VBInst = nullptr;  ///< null while not connected
  host::HostApp* HostApp = nullptr;
  analyser::Tables Tbl;
  analyser::Anl_State Sta;
  analyser::Kept_Lists Lst;
  service::State Scr;
  // Open views.
  std::optional<views::Frm_List> List;
  std::optional<views::Frm_Move> Move;
  std::optional<query::Frm_Search> Search;
  std::optional<query::Frm_Control> Control;
  std::optional<query::Frm_Chart> Chart;
  std::optional<transform::Frm_Trace> Trace;
  analyser::Edit_Moment Out_Edt;  ///< for a project that is edited outside the editor
  /// Help of the program: the file beside it, or in the neighbouring "Build" folder.
  std::filesystem::path Help_File;
  char LstSep = '\t';  ///< list separator

 private:
  [[nodiscard]] bool Start(host::VBE& vbe);
  [[nodiscard]] lifecycle::Command_Ctx Command_Context();
  [[nodiscard]] views::Move_Ctx Move_View() { return {View(), Lst, Sta.Anl_Chg}; }
  void Set_MovLs();
  void Add_Query_Forms(lifecycle::Command_Ctx& ctx);
  void Add_Transforms(lifecycle::Command_Ctx& ctx);

  Session_Options options_;
  std::unique_ptr<lifecycle::Commands> commands_;
  std::unique_ptr<lifecycle::Menus> menus_;
};

}  // namespace oru::app
