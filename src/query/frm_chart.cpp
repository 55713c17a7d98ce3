// SPDX-License-Identifier: MIT
#include "query/frm_chart.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "analyser/definitions.h"
#include "analyser/kinds.h"
#include "host/places.h"
#include "query/chart_pane.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::query {

namespace {

constexpr std::string_view kNothing_Key = "%Nothing";
constexpr std::string_view kTick = "C_Check";
constexpr std::string_view kOpe_Msg =
    "●キャレット（カーソル）を対象のプロシージャに移動してください。\\n\\n";
constexpr std::string_view kCaveat =
    "●次のプロシージャは未参照と判定されることがあります。\\n\\n"
    "　　(1) オブジェクト変数から参照されているプロシージャ\\n"
    "　　(2) ワークシート用のユーザ関数プロシージャ\\n"
    "　　(3) マクロ記録で作成されたプロシージャ\\n"
    "　　(4) OnAction、Onkeyプロパティに設定したプロシージャ\\n";
constexpr std::string_view kProperty_Note =
    "●プロパティへの参照は記録されないため、プロパティを参照しているプロシージャは表示されません。\\n";
constexpr std::size_t kKept_Roots = 30;

// No timer fires while a tree is built.
class Timer_Pause {
 public:
  explicit Timer_Pause(service::User_Interface& ui) : ui_(ui) { ui_.Set_Timer(false); }
  ~Timer_Pause() {
    ui_.Set_Timer(true);
    ui_.Close_Progress();
  }
  Timer_Pause(const Timer_Pause&) = delete;
  Timer_Pause& operator=(const Timer_Pause&) = delete;

 private:
  service::User_Interface& ui_;
};

// True if a `Declare` is still in the module's declarations.
bool Has_Declare(const host::CodeModule& code, const analyser::Mem_Row& row) {
  const int last = code.CountOfDeclarationLines();
  const int known = static_cast<int>(service::Val(row.Mem_Lin));
  if (known >= 1 && known <= last && analyser::Chk_Api_Def(code, known) == row.Mem_Nam) return true;
  for (int line = 1; line <= last; ++line) {
    host::Selection range{line, 1, last, -1};
    if (!code.Find(row.Mem_Nam, range, true, true, false)) return false;
    line = range.start_line;
    if (analyser::Chk_Api_Def(code, line) == row.Mem_Nam) return true;
  }
  return false;
}

bool Still_There(const Query_Ctx& ctx, std::string_view module, std::string_view member) {
  analyser::Tbl_Cur cur;
  if (!analyser::Set_Mem_Fld(ctx.Tbl, cur, module, member) ||
      !analyser::Is_Code(cur.Mem.Mem_Knd, analyser::kMem_Api))
    return host::Chk_Prc_Exs(ctx.VBInst, module, member);
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  host::VBComponent* component =
      project == nullptr ? nullptr : project->VBComponents().Item(module);
  const host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
  return code != nullptr && Has_Declare(*code, cur.Mem);
}

}  // namespace

bool Chk_NRf_Mem(std::string_view name) {
  constexpr std::array<std::string_view, 4> kNames{"Main", "Class_Initialize", "Class_Terminate",
                                                   "Auto_Open"};
  return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

void Frm_Chart::Lod_State(const service::Settings& settings) {
  Cond.Crt_ErH = settings.Flag("Crt_ErH");
}

bool Frm_Chart::Chk_Dsp_Mem(const Query_Ctx& ctx, int mode) {
  if (Crt_RMm != analyser::kDeclare || mode == kUnreferenced) return true;
  (void)service::Srv_Dsp_Msg(
      ctx.Srv,
      mode == kCallees
          ? "モジュール宣言部にキャレット(カーソル)が設定されているため表示できません。|キャレットの位置を、表示対象プロシージャに移動してから実行してください。   |"
          : "モジュール宣言部にキャレット(カーソル)がが設定されているため表示できません。|キャレットの位置を、表示対象プロシージャまたはＡＰＩ宣言文に移動してから実行してください。   |",
      service::Buttons::Ok, 1, service::Icon::Warning);
  return false;
}

void Frm_Chart::Set_Ope_Msg(const Query_Ctx& ctx) {
  Start_Tree(ctx);
  Pane = Message_Text(kOpe_Msg, {ctx.Srv.Opt, ctx.Srv.KWd});
}

// Takes the root from the caret, if it is asked for. False: there is none to show.
bool Frm_Chart::Take_Root(const Query_Ctx& ctx, int mode, int& ag_Keep) {
  if (ag_Keep != 1) {
    if (!Crt_RMd.empty()) return true;
    Set_Ope_Msg(ctx);
    return false;
  }
  const std::string module = Crt_RMd, member = Crt_RMm;
  const auto caret = host::Get_ACp_Inf(ctx.VBInst);
  if (!caret) {
    Crt_RMd = host::Set_Mdl_Nam(ctx.VBInst);
    Crt_RMm.clear();
    Set_Ope_Msg(ctx);
    return false;
  }
  Crt_RMd = caret->Mdl_Nam;
  Crt_RMm = caret->Mem.Nam;
  host::CodePane* pane = ctx.VBInst.ActiveCodePane();
  if (Crt_RMm == analyser::kDeclare && mode == kCallers && pane != nullptr)
    if (std::string api = analyser::Chk_Api_Def(pane->CodeModule(), caret->Sel.start_line);
        !api.empty())
      Crt_RMm = std::move(api);
  if (Chk_Dsp_Mem(ctx, mode)) {
    ag_Keep = 0;
    return true;
  }
  Crt_RMd = module;
  Crt_RMm = member;
  return false;
}

// An empty tree with the row of the root's module.
void Frm_Chart::Start_Tree(const Query_Ctx& ctx) {
  constexpr std::size_t kModule_Width = 600;
  Sav_Nod_Exp();
  Nodes.clear();
  Cur = -1;
  Pane = {};
  Pane_Lines.clear();
  if (Crt_RMd.empty()) return;
  Chart_Node module;
  analyser::Tbl_Cur cur;
  if (analyser::Set_Mdl_Fld(ctx.Tbl, cur, Crt_RMd))
    module.Img = analyser::Set_Mdl_Img(cur.Mdl.Mdl_Typ);
  module.Key = module.Mdl = Crt_RMd;
  module.Text = " " + Crt_RMd + " " + std::string(kModule_Width, ' ');
  module.Tag = "M";
  module.Bold = ctx.Srv.Opt.Flag("CMdBld");
  module.Open = true;
  Nodes.push_back(std::move(module));
}

void Frm_Chart::Set_Nothing(std::string_view text) {
  Chart_Node node;
  node.Parent = static_cast<int>(Nodes.size()) - 1;
  node.Depth = static_cast<int>(Nodes.size());
  node.Key = kNothing_Key;
  node.Text = text;
  node.Img = kTick;
  Nodes.push_back(std::move(node));
  Cur = static_cast<int>(Nodes.size()) - 1;
}

// The root's row and what is below it.
void Frm_Chart::Fill_In(const Query_Ctx& ctx) {
  analyser::Tbl_Cur cur;
  if (Crt_RMm == analyser::kDeclare) return;
  const bool known = analyser::Set_Mem_Fld(ctx.Tbl, cur, Crt_RMd, Crt_RMm);
  Chart_Node root = Call_Node(ctx.Tbl, 0, 1, 1, Crt_RMd, Crt_RMm);
  root.Key = analyser::Full_Name(Crt_RMd, Crt_RMm);
  root.Tag = Crt_RMd + "P";
  root.Bold = ctx.Srv.Opt.Flag("CMmBld");
  root.Open = true;
  Nodes.push_back(std::move(root));
  Cur = 1;
  // An API calls nothing, but can be called.
  if (known && Crt_Mod == kCallees && analyser::Is_Code(cur.Mem.Mem_Knd, analyser::kMem_Api))
    return;

  const Timer_Pause pause(ctx.Srv.Ui);
  const std::string_view doing =
      Crt_Mod == kCallees ? "呼出ツリーの設定中です" : "参照ツリーの設定中です";
  const Walk_Needs needs{ctx.Tbl,
                         [&](std::string_view module, std::string_view member) {
                           return Still_There(ctx, module, member);
                         },
                         [&](std::size_t count) {
                           service::Progress progress;
                           progress.text = doing;
                           progress.count = static_cast<std::int64_t>(count);
                           progress.label = fmt::format("{} ( {} )", doing, count);
                           ctx.Srv.Ui.Show_Progress(progress);
                         },
                         ctx.Srv.Opt.Flag("CRfBld")};
  const Walk_End end = Walk_Calls(needs, static_cast<Chart_Mode>(Crt_Mod), Cond, Nodes);
  if (end.Too_Deep)
    (void)service::Srv_Dsp_Msg(ctx.Srv,
                               "参照ツリーの階層が上限を超えました。処理を中断します。    ",
                               service::Buttons::Ok, 1, service::Icon::Warning);
  if (end.Too_Many)
    (void)service::Srv_Dsp_Msg(
        ctx.Srv,
        "参照プロシージャツリー設定件数が上限（20,000件）を超えました。    |以降の処理を中断しここまでの結果を表示します。    |「簡略表示」、「表示階層」で設定方法の変更が可能です。    ",
        service::Buttons::Ok, 1, service::Icon::Warning);
}

bool Frm_Chart::Set_Tree(const Query_Ctx& ctx, int mode, int& ag_Keep, std::string_view nothing) {
  if (!Take_Root(ctx, mode, ag_Keep)) return false;
  Crt_Mod = mode;
  Start_Tree(ctx);
  Fill_In(ctx);
  constexpr std::size_t kBeside_Root = 3;
  if (Nodes.size() < kBeside_Root) Set_Nothing(nothing);
  Set_Nod_Exp();
  Set_Crt_His();
  FTv_Chart_NodeClick(ctx, Cur);
  return true;
}

bool Frm_Chart::Set_Ref_Tree(const Query_Ctx& ctx, int& ag_Keep) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_Chart", "Set_Ref_Tree");
  return Set_Tree(ctx, kCallees, ag_Keep,
                  Cond.Crt_ErH
                      ? "呼出しているプロシージャはありません。（エラー処理部のプロシージャは除く）"
                      : "呼出しているプロシージャはありません。");
}

bool Frm_Chart::Set_Rev_Tree(const Query_Ctx& ctx, int& ag_Keep) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_Chart", "Set_Rev_Tree");
  return Set_Tree(ctx, kCallers, ag_Keep, "このプロシージャは参照されていません。");
}

bool Frm_Chart::Set_NRf_Tree(const Query_Ctx& ctx, int& ag_Keep) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_Chart", "Set_NRf_Tree");
  if (!Take_Root(ctx, kUnreferenced, ag_Keep)) return false;
  Crt_Mod = kUnreferenced;
  Start_Tree(ctx);
  analyser::Tbl_Cur cur;
  if (analyser::Set_Mdl_Fld(ctx.Tbl, cur, Crt_RMd))
    for (const auto& item : cur.Entry->Mem) {
      analyser::Set_Mem_Inf(cur, item.value);
      const bool listed = analyser::Is_Code(cur.Mem.Mem_Knd, analyser::kMem_Sub) ||
                          analyser::Is_Code(cur.Mem.Mem_Knd, analyser::kMem_Function);
      if (!listed || Chk_NRf_Mem(item.key) ||
          (ctx.Tbl.RIf_Dic.Get(analyser::Full_Name(Crt_RMd, item.key)) &
           analyser::Ref_Marks::kReferred) != 0)
        continue;
      Nodes.push_back(Call_Node(ctx.Tbl, 0, 1, Nodes.size(), Crt_RMd, item.key));
      Nodes.back().Bold = ctx.Srv.Opt.Flag("CRfBld");
    }
  if (Nodes.size() == 1) {
    Set_Nothing("対象モジュール内の未参照プロシージャはありません。");
  } else {
    Pane = Message_Text(kCaveat, {ctx.Srv.Opt, ctx.Srv.KWd});
  }
  Set_Nod_Exp();
  return true;
}

bool Frm_Chart::Show(const Query_Ctx& ctx, int mode, std::string_view module,
                     std::string_view member) {
  analyser::Tbl_Cur cur;
  if (!(mode == kUnreferenced ? analyser::Set_Mdl_Fld(ctx.Tbl, cur, module)
                              : analyser::Set_Mem_Fld(ctx.Tbl, cur, module, member)))
    return false;
  Crt_RMd = module;
  Crt_RMm = member;
  int keep = 0;
  return mode == kCallees   ? Set_Ref_Tree(ctx, keep)
         : mode == kCallers ? Set_Rev_Tree(ctx, keep)
                            : Set_NRf_Tree(ctx, keep);
}

void Frm_Chart::FTv_Chart_NodeClick(const Query_Ctx& ctx, int row) {
  if (row < 0 || row >= static_cast<int>(Nodes.size())) return;
  Cur = row;
  Set_Des_Inf(ctx, Nodes[static_cast<std::size_t>(row)]);
}

void Frm_Chart::Set_Des_Inf(const Query_Ctx& ctx, const Chart_Node& node) {
  Pane_Lines.clear();
  if (node.Key == kNothing_Key) {
    Pane = {};
    if (Crt_Mod == kCallers && Nodes.size() > 2 &&
        host::Split_Member(Crt_RMm).Prc_Knd != host::ProcKind::Proc)
      Pane = Message_Text(kProperty_Note, {ctx.Srv.Opt, ctx.Srv.KWd});
    return;
  }
  Chart_Pane pane(ctx, Absolute_Lines);
  if (node.Tag == "M") {
    pane.Star("モジュールが選択されています。");
  } else if (node.Depth == 1 && Crt_Mod != kUnreferenced) {
    pane.Star("表示対象プロシージャが選択されています。");
    pane.Set_DIf_Prc(node.Mdl, node.Mem, "");
    pane.Header(node.Mdl, node.Mem);
  } else if (node.Depth == 1) {
    pane.Set_DIf_Prc(node.Mdl, node.Mem, "");
    pane.Header(node.Mdl, node.Mem);
  } else {
    const Chart_Node& above = Nodes[static_cast<std::size_t>(node.Parent)];
    const Chart_Node& caller = Crt_Mod == kCallers ? node : above;
    const Chart_Node& callee = Crt_Mod == kCallers ? above : node;
    pane.Set_DIf_Prc(caller.Mdl, caller.Mem, " ↓");
    pane.Arrow();
    pane.Set_DIf_Prc(callee.Mdl, callee.Mem, " ↑");
    pane.Header(node.Mdl, node.Mem);
    pane.Set_DIf_Ref(caller.Mdl, caller.Mem, node.Ref_Lns, node.Error_Section);
  }
  pane.Take(Pane, Pane_Lines);
}

bool Frm_Chart::FRt_Info_Click(const Query_Ctx& ctx, service::Chr_Count place) const {
  const auto behind = std::upper_bound(Pane.Begins.begin(), Pane.Begins.end(), place);
  if (behind == Pane.Begins.begin() || Cur < 0) return false;
  const int line = Pane_Lines[static_cast<std::size_t>(behind - Pane.Begins.begin()) - 1];
  const Chart_Node& node = Nodes[static_cast<std::size_t>(Cur)];
  const bool above = Crt_Mod == kCallees && node.Parent > 0;
  const Chart_Node& caller = above ? Nodes[static_cast<std::size_t>(node.Parent)] : node;
  return line > 0 && host::Set_Mdl_Lin(ctx.VBInst, caller.Mdl, line);
}

std::vector<int> Frm_Chart::Call_Lines(const Query_Ctx& ctx, int row) const {
  const Chart_Node& node = Nodes[static_cast<std::size_t>(row)];
  if (node.Parent < 0 || node.Ref_Lns.empty()) return {};
  const Chart_Node& caller =
      Crt_Mod == kCallers ? node : Nodes[static_cast<std::size_t>(node.Parent)];
  return Lines_Of_Record(ctx, caller.Mdl, caller.Mem, node.Ref_Lns);
}

void Frm_Chart::Rev_Nod_Opn(int row) {
  for (; row >= 0 && row < static_cast<int>(Nodes.size());
       row = Nodes[static_cast<std::size_t>(row)].Parent)
    Nodes[static_cast<std::size_t>(row)].Open = true;
}

void Frm_Chart::Sav_Nod_Exp() {
  if (Nodes.empty()) return;
  expanded_.clear();
  for (const Chart_Node& node : Nodes)
    if (node.Open) expanded_.insert(node.Key);
}

void Frm_Chart::Set_Nod_Exp() {
  for (Chart_Node& node : Nodes) node.Open = node.Open || expanded_.contains(node.Key);
}

Chart_Commands Frm_Chart::Ctl_Cmd_Btn() const {
  Chart_Commands commands;
  if (Cond.Crt_ErH) commands.Note = "エラー処理部のプロシージャは非表示に設定されています。";
  if (Cur < 0) return commands;
  const Chart_Node& node = Nodes[static_cast<std::size_t>(Cur)];
  commands.Normal = commands.Reverce = node.Tag != "M" && node.Key != kNothing_Key;
  const std::string& name = node.Mem == analyser::kDeclare ? std::string("【宣言部】") : node.Mem;
  commands.Caption = node.Depth == 1 && Crt_Mod != kUnreferenced ? "（" + name + "）" : name;
  return commands;
}

void Frm_Chart::Set_Crt_His() {
  if (Crt_RMm.empty() || Crt_RMm == analyser::kDeclare) return;
  std::erase_if(His, [&](const Chart_History& row) {
    return row.Mod == Crt_Mod && row.Mdl == Crt_RMd && row.Mem == Crt_RMm;
  });
  His.insert(His.begin(), {Crt_RMd, Crt_RMm, Crt_Mod,
                           Crt_RMm + (Crt_Mod == kCallees ? " ▼(呼出)" : " ▲(参照)")});
  if (His.size() > kKept_Roots) His.pop_back();
}

}  // namespace oru::query
