// SPDX-License-Identifier: MIT
#include "lifecycle/commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "analyser/kinds.h"
#include "host/derived.h"
#include "lifecycle/window_commands.h"

namespace oru::lifecycle {
namespace {

using service::Icon;

// Types of modules with a designer: forms, and what other hosts have in their place.
constexpr std::array<std::string_view, 4> kDesigner_Types = {"3", "5", "8", "9"};

bool Is_View(const Command& command) {
  return command.Act == Action::Open_View || command.Act == Action::Open_Control ||
         command.Act == Action::Open_Option;
}

template <class Map>
bool Has(const Map& map, std::string_view name) {
  const auto found = map.find(name);
  return found != map.end() && found->second != nullptr;
}

// Whether this build has all that the command needs from above.
bool Is_Here(const Command_Ctx& ctx, const Command& command) {
  if (command.Anl && !ctx.Get_Pgm_Inf) return false;
  switch (command.Act) {
    case Action::Open_View:
    case Action::Open_Option:
    case Action::Open_Control:
      return Has(ctx.Frm, command.Nam);
    case Action::Transform:
      return Has(ctx.Trf, command.Nam);
    case Action::Move:
      return ctx.Mov_Prc_His != nullptr;
    case Action::Add_History:
    case Action::Set_History:
      return ctx.Set_Sif_Inf != nullptr;
    case Action::Clear_History:
      return ctx.Clr_Upd_Inf != nullptr;
    case Action::Analyse_All:
      return ctx.Get_Pgm_Inf != nullptr;
    case Action::Pop_Menu:
      return ctx.Dsp_Pop_Mnu != nullptr;
    case Action::Help:
      return ctx.Disp_Help != nullptr;
    case Action::Frame:
      return ctx.Ctl_Fnc_Frm != nullptr;
    case Action::Open_Report:
    case Action::Version:
    case Action::Windows:
    case Action::Other_View:
    case Action::Split:
    case Action::Close_Windows:
      return true;
  }
  return false;
}

std::string Missing_Text(const Command& command) {
  return fmt::format("「{}」{}は、この版には含まれていないため実行できません。    ", command.Ttl,
                     command.Nam.empty() ? "" : fmt::format("({})", command.Nam));
}

bool Has_Module(host::VBProject& project) {
  host::VBComponents& components = project.VBComponents();
  const int count = components.Count();
  for (int i = 1; i <= count; ++i)
    if (host::Chk_Mdl_Typ(components.Item(i)->Type())) return true;
  return false;
}

}  // namespace

std::string_view Place_Name(Place where) {
  switch (where) {
    case Place::Popup:
      return "サポートメニュー";
    case Place::Functions:
      return kFunctions;
    case Place::Support:
      return kSupport;
    case Place::Context:
      return "コンテキストメニュー";
    case Place::Tool_Bar:
      return "ツールバー";
    case Place::Frame:
      return "ウィンドウメニュー";
  }
  return {};
}

std::vector<Command_Info> List_Commands(const Command_Ctx& ctx) {
  std::vector<Command_Info> list;
  for (const Menu_Entry& entry : Menu_Entries())
    list.push_back(
        {entry.Where, entry.Caption, entry.Handler, Is_Here(ctx, *Find_Command(entry.Handler))});
  return list;
}

bool Commands::Exc_CBt_Evt(std::string_view handler) noexcept {
  struct {
    const Command* command;
    bool acted;
  } job{Find_Command(handler), false};
  if (job.command == nullptr) return false;
  const bool done = service::Run_Evt(ctx_.Srv, "Mod_Entry", job.command->Handler.data(),
                                     [this, &job] { job.acted = Run(*job.command); });
  return done && job.acted;
}

bool Commands::Run(const Command& command) {
  return Chk_Grd(command) && Act(command);
}

// What is tested before anything else, in this order.
bool Commands::Chk_Grd(const Command& command) {
  if (host::Chk_Protect(ctx_.VBInst, ctx_.Srv, true)) return false;
  switch (command.Grd) {
    case Guard::None:
      return true;
    case Guard::Loading:
      return Chk_Lod_Frm(command.Nam);
    case Guard::Editing:
      return host::Chk_Run_Fnc(ctx_.VBInst, ctx_.Srv);
  }
  return true;
}

// What a view asks of the project, in this order.
bool Commands::Chk_Prj(const Command& command) {
  if (command.Act == Action::Open_Control) {
    const std::string module = host::Set_Mdl_Nam(ctx_.VBInst);
    const auto kind =
        analyser::Rev_Mdl_Typ(ctx_.VBInst, ctx_.App, host::Get_HFl_Nam(ctx_.VBInst), module);
    if (std::ranges::find(kDesigner_Types, kind.Mdl_Typ) == kDesigner_Types.end()) {
      Tell("フォームモジュール以外では利用できません。    ");
      return false;
    }
  }
  if (host::Chk_Protect(ctx_.VBInst, ctx_.Srv, true)) return false;
  if (command.Act == Action::Open_Option) return true;
  host::VBProject& project = *ctx_.VBInst.ActiveVBProject();
  if (project.FileName().empty()) {
    Tell(
        "ワークブック（プロジェクト）が未保存の場合、正しく解析できないことがあります。|ワークブックを一度保存してから実行してください。    ");
    return false;
  }
  if (!Has_Module(project)) {
    Tell("有効なモジュールがありません。    ");
    return false;
  }
  return true;
}

bool Commands::Act(const Command& command) {
  if (Is_View(command) && !Chk_Prj(command)) return false;
  if (!Is_Here(ctx_, command)) {
    Tell(Missing_Text(command));
    return false;
  }
  switch (command.Act) {
    case Action::Open_View:
    case Action::Open_Option:
    case Action::Open_Control:
      Opn_Frm(command);
      return true;
    case Action::Transform:
      ctx_.Trf.find(command.Nam)->second(command.Num);
      return true;
    case Action::Move:
      return ctx_.Mov_Prc_His(command.Num);
    case Action::Add_History:
      ctx_.Set_Sif_Inf();
      if (ctx_.Set_MovLs) ctx_.Set_MovLs();
      return true;
    case Action::Set_History:
      ctx_.Set_Sif_Inf();
      return true;
    case Action::Clear_History:
      if (!Ask("現在までの更新履歴をクリアします。    |実行しますか。", 2)) return false;
      ctx_.Clr_Upd_Inf();
      return true;
    case Action::Analyse_All:
      if (!Ask("プロジェクトの全情報を再取得します。    |実行しますか。", 1)) return false;
      ctx_.Srv.Ui.All_Unl_Prc();
      ctx_.Get_Pgm_Inf(true);
      return true;
    case Action::Pop_Menu:
      return Sel_Pop_Mnu();
    case Action::Help:
      ctx_.Disp_Help(static_cast<Help_Topic>(command.Num));
      return true;
    case Action::Open_Report:  // without a data folder there is no report
      service::Opn_Rel_Fil(ctx_.Srv, ctx_.Srv.Data_Folder.empty()
                                         ? std::filesystem::path()
                                         : ctx_.Srv.Data_Folder / "Logfile.txt");
      return true;
    case Action::Version: {
      const service::Product_Info& product = ctx_.Srv.Product;
      Tell(fmt::format("{}    |バージョン {}.{}.{}    ", product.Title, product.Major,
                       product.Minor, product.Revision),
           Icon::Information);
      return true;
    }
    case Action::Frame:
      ctx_.Ctl_Fnc_Frm(command.Num);
      return true;
    case Action::Windows:
      return Chg_Window(ctx_.VBInst, ctx_.Srv);
    case Action::Other_View:
      return Chg_Opt_Win(ctx_.VBInst, ctx_.Srv);
    case Action::Split:
      return Spl_Cod_Win(ctx_.VBInst, ctx_.Srv);
    case Action::Close_Windows:
      Cls_All_Win(ctx_.VBInst);
      return true;
  }
  return false;
}

bool Commands::Set_Dva_Frm(std::string_view form) {
  const service::Err_Frame frame(ctx_.Srv.Errors, "Mod_Entry", "Set_Dva_Frm");
  Command command{.Handler = "", .Ttl = form, .Act = Action::Open_View, .Nam = form};
  for (const Command& each : Commands_Table())
    if (Is_View(each) && each.Nam == form) {
      command.Ttl = each.Ttl;
      break;
    }
  return Act(command);
}

bool Commands::Chk_Lod_Frm(std::string_view form) const {
  return loading_.find(form) == loading_.end();
}

void Commands::Opn_Frm(const Command& command) {
  // Opening may let events run, and with them another click on the same button.
  struct Mark {
    std::set<std::string, std::less<>>& set;
    std::pair<std::set<std::string, std::less<>>::iterator, bool> in;
    ~Mark() {
      if (in.second) set.erase(in.first);
    }
  };
  const Mark mark{loading_, loading_.emplace(command.Nam)};
  if (command.Anl) ctx_.Get_Pgm_Inf(false);
  ctx_.Frm.find(command.Nam)->second({command.Nam, command.Mod, command.Sel_Wrd});
}

bool Commands::Sel_Pop_Mnu() {
  const std::string chosen = ctx_.Dsp_Pop_Mnu(Menu_Entries(Place::Functions));
  const Command* command = Find_Command(chosen);
  return command != nullptr && Run(*command);
}

void Commands::Tell(std::string_view text, Icon icon) {
  (void)service::Srv_Dsp_Msg(ctx_.Srv, text, service::Buttons::Ok, 1, icon);
}

bool Commands::Ask(std::string_view text, int default_button) {
  return service::Srv_Dsp_Msg(ctx_.Srv, text, service::Buttons::Yes_No, default_button,
                              Icon::Question) == service::Answer::Yes;
}

}  // namespace oru::lifecycle
