// SPDX-License-Identifier: MIT
#include "app/session.h"

#include <system_error>
#include <utility>

#include "analyser/analysis_file.h"
#include "analyser/change_history.h"
#include "host/derived.h"
#include "lifecycle/window_commands.h"
#include "service/data_folder.h"
#include "transform/line_tools.h"
#include "transform/rev_indent.h"

namespace oru::app {

namespace fs = std::filesystem;

namespace {

constexpr int kOldest_Ide = 5, kNewest_Ide = 7;

fs::path Find_Help(const fs::path& program_folder) {
  std::error_code error;
  const fs::path beside = program_folder / "Oru-Help.chm";
  const fs::path build = program_folder.parent_path() / "Build" / "Oru-Help.chm";
  return !fs::exists(beside, error) && fs::exists(build, error) ? build : beside;
}

}  // namespace

Session::Session(service::User_Interface& ui, const service::Clock& clock, Session_Options options)
    : Ui(*this, ui), Srv(Ui, clock, options.Data_Folder), options_(std::move(options)) {}

void Session::Front::All_Unl_Prc() {
  if (session_.List) session_.List->Sav_State(session_.Srv.Opt);
  session_.List.reset();
  session_.Move.reset();
  session_.Search.reset();
  session_.Control.reset();
  session_.Chart.reset();
  if (session_.Trace) session_.Trace->Sav_State(session_.Srv.Opt);
  session_.Trace.reset();
  ui_.All_Unl_Prc();
}

Session::~Session() {
  AddinInstance_OnDisconnection();
}

bool Session::AddinInstance_OnConnection(host::VBE& vbe, host::HostApp* app) {
  HostApp = app;
  bool started = false;
  (void)service::Run_Evt(Srv, "Connect", "AddinInstance_OnConnection",
                         [&] { started = Start(vbe); });
  if (started) return true;
  menus_.reset();
  commands_.reset();
  VBInst = nullptr;
  HostApp = nullptr;
  return false;
}

bool Session::Start(host::VBE& vbe) {
  VBInst = &vbe;
  Srv.Sw = service::Chk_Switches(options_.Program_Folder);
  Srv.Product.Os_Version = service::Os_Version();
  Srv.Product.Ide_Version = options_.Ide_Version;
  if (options_.Ide_Version < kOldest_Ide || options_.Ide_Version > kNewest_Ide) {
    (void)service::Srv_Dsp_Msg(Srv, "ＩＤＥのバージョンが対象外です。    ", service::Buttons::Ok, 1,
                               service::Icon::Warning);
    return false;
  }
  if (!service::Chk_Ctl_Fdr(Srv, service::Template_Folder(options_.Program_Folder))) return false;
  const bool has_settings = service::Lod_SysInf(Srv.Opt, Srv.Data_Folder);
  service::Lod_State(Srv, Scr);
  if (has_settings && !service::Chk_SysVer(Srv.Opt)) {
    (void)service::Keep_Aside(Srv.Data_Folder / "DA-Sys.VMO");
    Srv.Opt.Int_SysInf();
    (void)service::Srv_Dsp_Msg(
        Srv,
        "プログラムのバージョンにあわせシステム情報を初期化しました。    |（すべてのオプション項目が規定値となっています）",
        service::Buttons::Ok, 1, service::Icon::Information);
  }
  // Without the file the words that are compiled in stay.
  (void)service::Lod_KWd(Srv.KWd, Srv.Data_Folder);
  LstSep = Srv.Opt.Number("LstSep") == 1 ? ',' : '\t';
  Help_File = Find_Help(options_.Program_Folder);
  Lst = {};
  Sta = {};
  Srv.Prj_Nam.clear();
  commands_ = std::make_unique<lifecycle::Commands>(Command_Context());
  menus_ = std::make_unique<lifecycle::Menus>(
      vbe, Srv, [this](std::string_view handler) { (void)commands_->Exc_CBt_Evt(handler); });
  if (!menus_->Add_Menu()) return false;
  analyser::Anl_Ctx ctx = Anl();
  analyser::Int_Anl_Res(ctx, true);
  return true;
}

void Session::AddinInstance_OnBeginShutdown() {
  if (!Connected()) return;
  (void)service::Run_Evt(Srv, "Connect", "AddinInstance_OnBeginShutdown", [&] {
    if (host::Chk_Des_Mod(*VBInst)) lifecycle::Cls_All_Win(*VBInst);
    Srv.Ui.Ctl_Hlp_Prc();
  });
}

void Session::AddinInstance_OnDisconnection() {
  if (!Connected()) return;
  // Each step by itself: what fails is told and does not take the others with it.
  const auto step = [&](const std::function<void()>& run) {
    (void)service::Run_Evt(Srv, "Connect", "AddinInstance_OnDisconnection", run);
  };
  step([&] { Srv.Ui.Set_Mouse_Hook(false); });
  step([&] { Srv.Ui.All_Unl_Prc(); });
  step([&] { Srv.Ui.Ctl_Hlp_Prc(); });
  step([&] {
    const std::string error = service::Upd_SysInf(Srv.Opt, Srv.Data_Folder, Srv.Prj_Nam);
    if (!error.empty())
      (void)service::Srv_Dsp_Msg(Srv, error, service::Buttons::Ok, 1, service::Icon::Warning);
  });
  step([&] { service::Upd_State(Srv, Scr); });
  step([&] {
    analyser::Anl_Ctx ctx = Anl();
    (void)analyser::Sav_UpdInf(ctx);
  });
  step([&] {
    if (options_.Process_Ends) return;
    analyser::Anl_Ctx ctx = Anl();
    analyser::Int_Anl_Res(ctx, false);
    Lst = {};
  });
  menus_.reset();
  commands_.reset();
  VBInst = nullptr;
  HostApp = nullptr;
}

bool Session::Analyse() {
  if (!Connected() || host::Chk_Protect(*VBInst, Srv, true)) return false;
  const bool ran = service::Run_Evt(Srv, "Mod_Anl", "Get_Pgm_Inf", [&] {
    analyser::Anl_Ctx ctx = Anl();
    (void)analyser::Get_Pgm_Inf(ctx, true);
  });
  return ran && !Tbl.Mdl_Tbl.Empty();
}

bool Session::Run(std::string_view handler) {
  return commands_ != nullptr && commands_->Exc_CBt_Evt(handler);
}

std::vector<lifecycle::Command_Info> Session::List_Commands() const {
  return commands_ == nullptr ? std::vector<lifecycle::Command_Info>()
                              : lifecycle::List_Commands(commands_->Ctx());
}

analyser::Anl_Ctx Session::Anl() {
  return {Srv,    *VBInst, HostApp, Tbl, Sta, Lst, options_.Use_Analysis_File ? &Disk : nullptr,
          Out_Edt};
}

views::View_Ctx Session::View() {
  return {Srv, *VBInst, Tbl,
          [this](std::string_view key) { return analyser::Prc_Upd_Inf(Lst, key); }, Sta.Lod_Dat};
}

void Session::Set_MovLs() {
  if (Move) Move->Set_MovLs(Move_View());
}

query::Query_Ctx Session::Query() {
  return {Srv, *VBInst, Tbl,
          [this] {
            analyser::Anl_Ctx anl = Anl();
            (void)analyser::Get_Pgm_Inf(anl, true);
          },
          [this](std::string_view /*module*/) { Sta.Edt_Chg = true; }};
}

void Session::Add_Query_Forms(lifecycle::Command_Ctx& ctx) {
  ctx.Frm["Frm_Search"] = [this](const lifecycle::View_Request& request) {
    const query::Query_Ctx query = Query();
    query.Get_Pgm_Inf();
    if (!Search) Search.emplace();
    if (request.Mod == "参照文") {
      Search->FCx_Object_Click(query, query::kSearch_Reference);
      (void)Search->Src_Start_Proc(query, 1);
    } else if (request.Sel_Wrd) {
      (void)Search->Get_Inform(query);
    }
    Srv.Ui.Show_Frm("Frm_Search");
  };
  ctx.Frm["Frm_Control"] = [this](const lifecycle::View_Request& /*request*/) {
    if (!Control) {
      Control.emplace();
      Control->Lod_State(Srv.Opt);
    }
    (void)Control->Dsp_Start_Proc(Query());
    Srv.Ui.Show_Frm("Frm_Control");
  };
  ctx.Frm["Frm_Chart"] = [this](const lifecycle::View_Request& /*request*/) {
    const query::Query_Ctx query = Query();
    query.Get_Pgm_Inf();
    if (!Chart) {
      Chart.emplace();
      Chart->Lod_State(Srv.Opt);
    }
    int keep = 1;
    (void)(Chart->Crt_Mod == query::kCallees   ? Chart->Set_Ref_Tree(query, keep)
           : Chart->Crt_Mod == query::kCallers ? Chart->Set_Rev_Tree(query, keep)
                                               : Chart->Set_NRf_Tree(query, keep));
    Srv.Ui.Show_Frm("Frm_Chart");
  };
}

transform::Transform_Ctx Session::Transform() {
  return {Srv,
          *VBInst,
          Tbl,
          [this](std::string_view /*module*/) { Sta.Edt_Chg = true; },
          [this] {
            analyser::Anl_Ctx anl = Anl();
            analyser::Set_Sif_Inf(anl);
          },
          [this](std::string_view module, std::string_view member) {
            if (Control && Control->Cur().Mdl == module && Control->Cur().Mem == member)
              (void)Control->Dsp_Start_Proc(Query());
          }};
}

void Session::Add_Transforms(lifecycle::Command_Ctx& ctx) {
  const auto tell = [this](const host::Change_Result& result) {
    if (!result.Ok())
      (void)service::Srv_Dsp_Msg(Srv, result.Error, service::Buttons::Ok, 1,
                                 service::Icon::Warning);
  };
  ctx.Trf["Rev_Indent"] = [this, tell](int /*mode*/) { tell(transform::Rev_Indent(Transform())); };
  ctx.Trf["Alg_CmA_Pos"] = [this, tell](int mode) {
    tell(transform::Alg_CmA_Pos(Transform(), mode));
  };
  ctx.Trf["Rev_Let_Sta"] = [this, tell](int /*mode*/) {
    tell(transform::Rev_Let_Sta(Transform()));
  };
  ctx.Trf["Set_LNo_Key"] = [this, tell](int mode) {
    tell(transform::Set_LNo_Key(Transform(), static_cast<transform::Label_Mode>(mode)));
  };
  ctx.Frm["Frm_Trace"] = [this](const lifecycle::View_Request& /*request*/) {
    if (!Trace) {
      Trace.emplace();
      Trace->Lod_State(Srv.Opt);
    }
    Srv.Ui.Show_Frm("Frm_Trace");
  };
}

lifecycle::Command_Ctx Session::Command_Context() {
  lifecycle::Command_Ctx ctx{Srv, *VBInst, HostApp};
  const auto current = [this] {
    analyser::Anl_Ctx anl = Anl();
    (void)analyser::Get_Pgm_Inf(anl, true);
  };
  ctx.Frm["Frm_List"] = [this, current](const lifecycle::View_Request& /*request*/) {
    current();
    if (!List) {
      List.emplace();
      List->Lod_State(Srv.Opt);
    }
    List->Get_Inform(View());
    Srv.Ui.Show_Frm("Frm_List");
  };
  ctx.Frm["Frm_Move"] = [this, current](const lifecycle::View_Request& /*request*/) {
    current();
    if (!Move) Move.emplace();
    Set_MovLs();
    Srv.Ui.Show_Frm("Frm_Move");
  };
  Add_Query_Forms(ctx);
  Add_Transforms(ctx);
  ctx.Set_MovLs = [this] { Set_MovLs(); };
  ctx.Set_Sif_Inf = [this] {
    analyser::Anl_Ctx anl = Anl();
    analyser::Set_Sif_Inf(anl);
  };
  ctx.Mov_Prc_His = [this](int kind) {
    analyser::Anl_Ctx anl = Anl();
    return analyser::Mov_Prc_His(anl, kind);
  };
  ctx.Clr_Upd_Inf = [this] {
    Lst.Mdl_Upd.Clear();
    Lst.Mem_Upd.Clear();
    Lst.His.Clear();
    Sta.Anl_Chg = true;
    Set_MovLs();
  };
  ctx.Get_Pgm_Inf = [this](bool from_empty) {
    analyser::Anl_Ctx anl = Anl();
    if (from_empty) analyser::Int_Anl_Res(anl, true);
    (void)analyser::Get_Pgm_Inf(anl, true);
  };
  return ctx;
}

}  // namespace oru::app
