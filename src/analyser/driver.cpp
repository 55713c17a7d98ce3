// SPDX-License-Identifier: MIT
#include "analyser/driver.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "analyser/change_check.h"
#include "analyser/change_history.h"
#include "analyser/module_pass.h"
#include "analyser/progress.h"
#include "analyser/references.h"
#include "host/derived.h"

namespace oru::analyser {

namespace {

// Stops what must not run during an analysis and starts it again, whatever happens between. A
// fault leaves no half-made tables behind.
class Run_Guard {
 public:
  Run_Guard(Anl_Ctx& ctx, bool stop_hook)
      : ctx_(ctx), stop_hook_(stop_hook), faults_(std::uncaught_exceptions()) {
    ctx.Srv.Anl_Bsy = true;
    if (stop_hook_) ctx.Srv.Ui.Set_Mouse_Hook(false);
    ctx.Srv.Ui.Set_Timer(false);
    ctx.Srv.Ui.Set_Wait_Cursor(true);
  }
  ~Run_Guard() {
    try {
      // The central handler still asks `Anl_Bsy` for its wording, and clears it.
      if (std::uncaught_exceptions() > faults_) {
        Int_Anl_Res(ctx_, true);
      } else {
        ctx_.Srv.Anl_Bsy = false;
      }
      ctx_.Srv.Ui.Set_Wait_Cursor(false);
      if (stop_hook_) ctx_.Srv.Ui.Set_Mouse_Hook(true);
      ctx_.Srv.Ui.Set_Timer(true);
    } catch (...) {  // the fault that is on its way counts, not one of the clearing up
    }
  }
  Run_Guard(const Run_Guard&) = delete;
  Run_Guard& operator=(const Run_Guard&) = delete;

 private:
  Anl_Ctx& ctx_;
  bool stop_hook_;
  int faults_;
};

void Log_Step(Anl_Ctx& ctx, std::string_view step, std::string_view module, std::int64_t since) {
  service::Srv_Put_Log(ctx.Srv,
                       fmt::format("{}\t{}\t{}", step, module, ctx.Srv.Clk.Milliseconds() - since));
}

void Put_Problem(Anl_Ctx& ctx, std::string_view module, std::string text) {
  service::Srv_Put_Log(ctx.Srv, text, service::Channel::Errors);
  ctx.Sta.Problems.push_back({std::string(module), std::move(text)});
}

// `Chk_Ref_Err`: false if the user does not want to go on with broken references.
bool Chk_Ref_Err(Anl_Ctx& ctx) {
  ctx.Sta.Err_Ref = false;
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  if (project == nullptr) return true;
  host::References& references = project->References();
  for (int i = 1; i <= references.Count() && !ctx.Sta.Err_Ref; ++i) {
    const host::Reference* reference = references.Item(i);
    ctx.Sta.Err_Ref = reference != nullptr && reference->IsBroken();
  }
  if (!ctx.Sta.Err_Ref) return true;
  service::Srv_Put_Log(ctx.Srv, "\r\n参照不可のコンポーネントがあります。",
                       service::Channel::Errors);
  const service::Answer answer = service::Srv_Dsp_Msg(
      ctx.Srv,
      "参照不可のコンポーネントがあるため機能が正常に動作しないことがあります。    |処理を続行しますか。",
      service::Buttons::Yes_No, 2, service::Icon::Question);
  return answer == service::Answer::Yes;
}

// `Mac_Lst`: the macros bound to shapes. Without the workbook (an add-in's project) there are none.
std::string Get_Mac_Lst(Anl_Ctx& ctx) {
  std::string list = " ";
  if (ctx.App == nullptr) return list;
  try {
    host::Workbook& book = ctx.App->Workbooks(ctx.Sta.HFl_Nam);
    (void)book.Name();
    host::Sheets& sheets = book.Sheets();
    for (int i = 1; i <= sheets.Count(); ++i) {
      try {
        host::Shapes& shapes = sheets.Item(i).Shapes();
        for (int j = 1; j <= shapes.Count(); ++j) {
          try {
            const std::string action = shapes.Item(j).OnAction();
            const std::size_t cut = action.find_last_of(".!");
            const std::string_view macro =
                std::string_view(action).substr(cut == std::string::npos ? 0 : cut + 1);
            if (!action.empty()) list.append(macro).append(1, ' ');
          } catch (const host::Host_Error&) {  // a shape that can have no macro
          }
        }
      } catch (const host::Host_Error&) {  // a sheet without shapes
      }
    }
  } catch (const host::Host_Error&) {
  }
  return list;
}

// A statement that the user is still typing is committed by the editor only when the caret leaves
// it: the selection is moved beyond the last continued line and back.
void Commit_Edited_Line(Anl_Ctx& ctx) {
  host::CodePane* pane = ctx.VBInst.ActiveCodePane();
  const std::optional<host::Pane_Place> place = host::Get_ACp_Inf(ctx.VBInst);
  if (pane == nullptr || !place) return;
  const host::CodeModule& code = pane->CodeModule();
  const int last = code.CountOfLines();
  const int active = place->Sel.start_line;
  const auto continued = [&](int line) {
    return line >= 1 && line <= last && service::Trim(code.Lines(line, 1)).ends_with(" _");
  };
  if (active < place->Mem.Bdy || (!continued(active) && !continued(active - 1))) return;
  int line = active;
  while (continued(line)) ++line;
  const int beyond = std::min(line + 1, last);
  const int top = pane->TopLine();
  pane->SetSelection({beyond, 1, beyond, 1});
  pane->SetSelection(place->Sel);
  pane->Set_TopLine(top);
}

// Lets events run; false once a cancel has come in.
bool Go_On(Anl_Ctx& ctx) {
  ctx.Srv.Ui.Do_Events();
  return !ctx.Sta.Anl_Cnl;
}

void Get_Mdl_Man(Anl_Ctx& ctx, Mdl_Ctx& pass, Anl_Progress& progress) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Anl", "Get_Mdl_Man");
  if (ctx.Tbl.Anl_Mdl.Empty() || ctx.Sta.Anl_Cnl) return;
  Commit_Edited_Line(ctx);
  const auto total = static_cast<std::int64_t>(ctx.Tbl.Anl_Mdl.Count());
  progress.Dsp_Anl_Res("Mdl", {}, total, pass.Tot_Lin, ctx.Sta.Lin_Sec);
  for (const auto& item : ctx.Tbl.Anl_Mdl) {
    if (!Go_On(ctx)) return;
    host::VBProject* project = ctx.VBInst.ActiveVBProject();
    host::VBComponent* component =
        project == nullptr ? nullptr : project->VBComponents().Item(item.key);
    if (component == nullptr) continue;  // gone meanwhile
    const std::int64_t start = ctx.Srv.Clk.Milliseconds();
    Get_Mdl_Lop(pass, *component);
    ++ctx.Sta.Mdl_Cnt;
    ctx.Sta.Anl_Tim += ctx.Srv.Clk.Milliseconds() - start;
    progress.Dsp_Anl_Res({}, item.key, 0, pass.Tot_Lin, ctx.Sta.Lin_Sec);
    Log_Step(ctx, "モジュール別定義情報取得", item.key, start);
  }
}

void Run_References(Anl_Ctx& ctx, const Mdl_Ctx& pass, Anl_Progress& progress) {
  const auto total = static_cast<std::int64_t>(ctx.Tbl.Anl_Mdl.Count());
  const std::int64_t begin = ctx.Srv.Clk.Milliseconds();
  std::int64_t start = begin;
  std::string_view current;
  bool announced = false;
  const auto finish_module = [&] {
    if (current.empty()) return;
    ctx.Sta.Anl_Tim += ctx.Srv.Clk.Milliseconds() - start;
    progress.Dsp_Anl_Res({}, current, 0, pass.Tot_Lin, ctx.Sta.Lin_Sec);
    Log_Step(ctx, "モジュール別参照情報取得", current, start);
  };
  const Ref_Ctx ref{ctx.Srv, ctx.Tbl, [&ctx](std::string_view module, std::string text) {
                      Put_Problem(ctx, module, std::move(text));
                    }};
  ctx.Sta.Ref_Chg = Get_Ref_Man(
      ref, [&] { return Go_On(ctx); },
      [&](std::string_view module) {
        if (!announced) {
          Log_Step(ctx, "参照関係取得時の初期処理", {}, begin);
          progress.Dsp_Anl_Res("Ref", {}, total, pass.Tot_Lin, ctx.Sta.Lin_Sec);
          announced = true;
        }
        finish_module();
        if (!Go_On(ctx)) return false;
        current = module;
        start = ctx.Srv.Clk.Milliseconds();
        return true;
      });
  finish_module();
}

void Put_Analyze_Report(Anl_Ctx& ctx, std::int64_t elapsed) {
  const Anl_State& sta = ctx.Sta;
  const std::string rule(78, '-');
  for (const std::string& line :
       {rule, fmt::format("Analyze Report ({})", ctx.Srv.Prj_Nam),
        fmt::format("        ModuleCount = {}", sta.Mdl_Cnt),
        fmt::format("        TotalTime   = {}Ms", elapsed),
        fmt::format("        AnalizeTime = {}Ms", sta.Anl_Tim),
        fmt::format("        TotalLine   = {} ({})", sta.Tot_Lin, sta.Cod_Lin),
        fmt::format("        Line／Sec   = {} ({})", sta.Lin_Sec, sta.Cod_Sec), rule})
    service::Srv_Trc_Log(ctx.Srv, line);
}

// Lines in milliseconds as lines per second, rounded.
std::int64_t Per_Second(std::int64_t lines, std::int64_t milliseconds) {
  return (lines * 1000 + milliseconds / 2) / milliseconds;
}

// What other modules can refer to in a module: its members and the names that hold objects.
std::string Names_Of(const Mdl_Entry& entry) {
  std::string names(service::Row_Field(entry.Mdl, 1));
  for (const auto& item : entry.Mem) {
    names.append(1, '\n').append(item.key);
    for (const std::size_t field : {2U, 3U, 4U})  // kind, scope, sub-kind
      names.append(1, '\t').append(service::Row_Field(item.value, field));
  }
  for (const std::string& row : entry.InV) names.append(1, '\n').append(row);
  return names;
}

// The names of the modules to read, before and after they are read.
class Names_Check {
 public:
  explicit Names_Check(const Tables& tables) : tables_(tables) {
    for (const auto& item : tables.Anl_Mdl) before_.emplace(item.key, Names_Now(item.key));
  }
  [[nodiscard]] bool Changed() const {
    return std::any_of(before_.begin(), before_.end(), [&](const auto& module) {
      return module.second != Names_Now(module.first);
    });
  }

 private:
  [[nodiscard]] std::string Names_Now(std::string_view module) const {
    const auto* entry = tables_.Mdl_Tbl.Get(module);
    return entry == nullptr ? std::string() : Names_Of(**entry);
  }
  const Tables& tables_;
  service::Text_Map<std::string> before_;
};

// Everything is read again, as if nothing had been stored.
void Read_All(Anl_Ctx& ctx, Mdl_Ctx& pass, Anl_Progress& progress) {
  service::Collection<std::string> modules = std::move(ctx.Tbl.Prj_Mdl);
  ctx.Tbl = Tables();
  for (const auto& item : modules) service::Add_Col_Itm(ctx.Tbl.Anl_Mdl, item.key, std::string());
  ctx.Tbl.Prj_Mdl = std::move(modules);
  pass.Tot_Lin = pass.Cod_Lin = 0;
  ctx.Sta.Mdl_Cnt = 0;
  ctx.Sta.Problems.clear();
  Get_Mdl_Man(ctx, pass, progress);
}

// Modules in the project's order, as a run that reads all of them has them: of two public members of
// one name, the first module's counts.
void Put_In_Project_Order(Tables& tables) {
  service::Collection<std::unique_ptr<Mdl_Entry>> ordered;
  for (const auto& item : tables.Prj_Mdl)
    if (auto* entry = tables.Mdl_Tbl.Get(item.key)) ordered.Add(item.key, std::move(*entry));
  tables.Mdl_Tbl = std::move(ordered);
}

// The definition pass. While the project was edited elsewhere, nobody saw which modules have to be
// resolved anew because a name that they use has come, gone, or moved: then all of them are.
void Read_Definitions(Anl_Ctx& ctx, Mdl_Ctx& pass, Anl_Progress& progress) {
  const bool outside = ctx.Out_Edt && ctx.Sta.Prj_Chg && !ctx.Tbl.Mdl_Tbl.Empty();
  if (!outside) return Get_Mdl_Man(ctx, pass, progress);
  const Names_Check names(ctx.Tbl);
  Get_Mdl_Man(ctx, pass, progress);
  if (ctx.Sta.Anl_Cnl) return;
  if (ctx.Sta.Del_Chg || names.Changed()) Read_All(ctx, pass, progress);
  Put_In_Project_Order(ctx.Tbl);
}

// Reads what has to be read: both passes, and the clean-up after them.
void Run_Passes(Anl_Ctx& ctx, Anl_Progress& progress, std::int64_t start) {
  Anl_State& sta = ctx.Sta;
  std::int64_t since = ctx.Srv.Clk.Milliseconds();
  sta.Err_Ctl = sta.Err_Ref = sta.Err_Oth = false;
  sta.Tbl_Chg = true;
  ctx.Tbl.Rty_Mdl.Clear();
  sta.Mac_Lst = Get_Mac_Lst(ctx);
  Mdl_Ctx pass{ctx.Srv,
               ctx.VBInst,
               ctx.App,
               ctx.Tbl,
               sta.HFl_Nam,
               sta.Mac_Lst,
               Anl_Options(ctx.Srv.Opt),
               [&ctx](std::string_view module, std::string text) {
                 if (!ctx.Sta.Fst_Anl) return;
                 ctx.Sta.Err_Ctl = true;
                 Put_Problem(ctx, module, std::move(text));
               },
               [&ctx](std::string_view module, std::string text) {
                 Put_Problem(ctx, module, std::move(text));
               }};
  Log_Step(ctx, "オートシェープ､フォームコントロールのマクロ定義取得", {}, since);

  const bool whole_project = ctx.Tbl.Mdl_Tbl.Empty();
  if (!sta.Anl_Cnl) Read_Definitions(ctx, pass, progress);
  if (!ctx.Tbl.Anl_Mdl.Empty() && !sta.Anl_Cnl) {
    Run_References(ctx, pass, progress);
    if (!sta.Anl_Cnl && whole_project) Del_Old_Upd(ctx.Lst, ctx.Tbl);
  }
  sta.Tot_Lin = pass.Tot_Lin;
  sta.Cod_Lin = pass.Cod_Lin;
  ctx.Tbl.Anl_Mdl.Clear();
  if (!sta.Anl_Cnl) {
    for (const auto& item : ctx.Tbl.Rty_Mdl)
      service::Add_Col_Itm(ctx.Tbl.Anl_Mdl, item.key, std::string());
  }
  if (sta.Anl_Tim > 0) {
    sta.Lin_Sec = Per_Second(sta.Tot_Lin, sta.Anl_Tim);
    sta.Cod_Sec = Per_Second(sta.Cod_Lin, sta.Anl_Tim);
    ctx.Srv.Opt.Set_Number(
        "LSPeed", static_cast<std::int32_t>(std::min<std::int64_t>(sta.Lin_Sec, INT32_MAX)));
  }
  ctx.Tbl.Rty_Mdl.Clear();
  if (sta.Anl_Cnl) {
    ctx.Srv.Ui.All_Unl_Prc();
    Int_Anl_Res(ctx, true);
  }
  progress.Close();
  Log_Step(ctx, "総合実行時間", {}, start);
}

}  // namespace

bool Get_Pgm_Inf(Anl_Ctx& ctx, bool keep_hook) {
  if (ctx.Srv.Anl_Bsy) return false;
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Anl", "Get_Pgm_Inf");
  Anl_State& sta = ctx.Sta;
  const std::int64_t start = ctx.Srv.Clk.Milliseconds();
  const Run_Guard guard(ctx, !keep_hook);
  sta.Anl_Tim = sta.Tot_Lin = sta.Cod_Lin = 0;
  sta.Mdl_Cnt = 0;
  sta.Problems.clear();
  if (sta.Lin_Sec == 0) sta.Lin_Sec = ctx.Srv.Opt.Number("LSPeed");

  Anl_Progress progress(ctx.Srv);
  const bool to_read = Chk_Pgm_Inf(ctx, progress);
  Log_Step(ctx, "初期処理・実行判定", {}, start);
  if (!to_read && !sta.Del_Chg) {
    sta.Tbl_Chg = false;
  } else {
    sta.Anl_Dat = service::Stamp(ctx.Srv.Clk.Now());
    sta.Anl_Chg = true;
    sta.Anl_Cnl = false;
    if (Chk_Ref_Err(ctx)) {
      Run_Passes(ctx, progress, start);
    } else {
      sta.Anl_Cnl = true;
    }
  }
  if (sta.Prj_Chg || sta.Mdl_Cnt > 0) Put_Analyze_Report(ctx, ctx.Srv.Clk.Milliseconds() - start);
  service::Srv_End_Log(ctx.Srv);
  if (sta.Anl_Cnl) {
    ctx.Srv.Ui.All_Unl_Prc();
    Int_Anl_Res(ctx, true);
    sta.Anl_Cnl = false;
  } else if (sta.Fst_Anl) {
    if (sta.Err_Ctl || sta.Err_Ref || sta.Err_Oth) {
      if (service::Srv_Dsp_Msg(ctx.Srv, "解析エラーレポートを表示しますか。    ",
                               service::Buttons::Yes_No, 1,
                               service::Icon::Question) == service::Answer::Yes)
        service::Opn_Rel_Fil(ctx.Srv, service::Report_Path(ctx.Srv, service::Channel::Errors));
    }
    sta.Fst_Anl = false;
  }
  progress.Close();
  return to_read;
}

void Int_Anl_Res(Anl_Ctx& ctx, bool make_new) {
  // What describes the tables goes with them; the collections that a walk is in the middle of are
  // emptied by their owner.
  ctx.Tbl = Tables();
  if (!make_new) return;
  // What was edited outside is found again: the old file is worth more than an empty one.
  if (ctx.Out_Edt) ctx.Sta.Anl_Chg = false;
  ctx.Sta.Edt_Chg = false;
  ctx.Sta.Fst_Anl = true;
  ctx.Sta.Anl_Dat = service::Stamp(ctx.Srv.Clk.Now());
}

void Req_Anl_Cnl(Anl_Ctx& ctx) {
  if (!ctx.Srv.Anl_Bsy) return;
  const service::Answer answer = service::Srv_Dsp_Msg(
      ctx.Srv, "解析処理を中止するとこれまでの取得情報はすべて破棄します。    |中止しますか。",
      service::Buttons::Yes_No, 2, service::Icon::Question);
  if (answer != service::Answer::Yes) return;
  ctx.Sta.Anl_Cnl = true;
  ctx.Srv.Ui.Close_Progress();
}

}  // namespace oru::analyser
