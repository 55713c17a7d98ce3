// SPDX-License-Identifier: MIT
#include "query/frm_control.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "analyser/definitions.h"
#include "analyser/kinds.h"
#include "analyser/references.h"
#include "host/derived.h"
#include "host/places.h"
#include "query/keyword_colours.h"
#include "service/clock.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::query {

namespace {

constexpr std::string_view kHint =
    "●キャレットを表示対象プロシージャに移動し\\n　「制御文表示(&D)」ボタンをクリックすると\\n"
    "　プロシージャの制御文を表示します。\\n";
constexpr std::string_view kRule = "│", kArrow = "'→";
constexpr int kNumber_Width = 5;

// The comments of what a member calls, line by line.
class Calls {
 public:
  Calls(const Query_Ctx& ctx, std::string_view module, std::string_view member) {
    const std::string* text = ctx.Tbl.Ref_Tbl.Get(module);
    if (text == nullptr) return;
    const std::string caller = analyser::Full_Name(module, member);
    for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(*text, {caller, {}, {}}, cursor);) {
      analyser::Tbl_Cur target;
      const bool known =
          analyser::Set_Mem_Fld(ctx.Tbl, target, cursor.Record.Tgt_Mdl, cursor.Record.Tgt_Mem);
      for (const std::string_view offset : service::Split(cursor.Record.Ref_Lns, " "))
        by_line_.emplace(static_cast<int>(service::Val(offset)), known ? target.Mem.Mem_CTx : "");
    }
  }
  [[nodiscard]] std::vector<std::string> At(int relative) const {
    std::vector<std::string> comments;
    const auto [begin, end] = by_line_.equal_range(relative);
    for (auto at = begin; at != end; ++at) comments.push_back(at->second);
    return comments;
  }

 private:
  std::multimap<int, std::string> by_line_;
};

// Makes the rows of a member one text.
class Control_Writer {
 public:
  Control_Writer(const Query_Ctx& ctx, Control_Slot& slot, bool absolute_lines)
      : ctx_(ctx),
        slot_(slot),
        absolute_(absolute_lines),
        styles_(ctx.Srv.Opt),
        element_(slot.Cond.Ele) {
    text_.Int_RTx_Inf(styles_.Txt.colour, ctx.Srv.Opt.Text("FntNam3"), ctx.Srv.Opt.Real("FntSiz3"),
                      ctx.Srv.Opt.Number("Spc_Lin"));
    rules_ = {Run_Style_Of(text_, styles_.Idt), Run_Style_Of(text_, styles_.Id2)};
    number_ = Run_Style_Of(text_, styles_.Lin);
    comment_ = Run_Style_Of(text_, styles_.Cmt);
    columns_ = std::max(ctx.Srv.Opt.Number("FTx_IdtCn"), 1);
  }

  void Write(int member_line) {
    Head();
    for (const Control_Row& row : slot_.Rows) {
      slot_.Text.Begins.push_back(text_.RTx_Len());
      int line = row.Lno;
      for (const std::string& one : row.Lines) {
        const int shown = absolute_ ? line : line - member_line + 1;
        text_.Add(fmt::format(" {:>{}}|", shown, kNumber_Width), number_);
        ++line;
        Rules(row.Depth);
        std::string marked = one;
        if (row.Mark > 0) marked.append(kCmt_Mark).append(std::to_string(row.Mark));
        Set_KWd_Lin(text_, styles_, ctx_.Srv.KWd, marked, element_.Spans(one));
        text_.Add("\r\n");
      }
      for (const std::string& comment : row.Calls) {
        text_.Add(std::string(kNumber_Width + 2, ' '));
        Rules(row.Depth);
        const auto width = service::To_Int(service::Len_Wid(row.Lines.back()));
        text_.Add(std::string(static_cast<std::size_t>(width), ' '));
        text_.Add(kArrow, rules_.front());
        text_.Add(" ");
        text_.Add(comment, comment_);
        text_.Add("\r\n");
      }
    }
    slot_.Text.Text = std::move(text_);
  }

 private:
  void Head() {
    analyser::Tbl_Cur cur;
    const bool known = analyser::Set_Mem_Fld(ctx_.Tbl, cur, slot_.Mdl, slot_.Mem);
    text_.Add(" ");
    if (known) text_.Set_RTx_Img(analyser::Set_Mem_Img(cur.Mem));
    text_.Add(" ");
    text_.Add(slot_.Mem == analyser::kDeclare ? std::string_view("【宣言部】") : slot_.Mem,
              Run_Style_Of(text_, styles_.Mem));
    text_.Add(fmt::format("  ({})", slot_.Mdl), Run_Style_Of(text_, styles_.Mdl));
    if (known && !cur.Mem.Mem_CTx.empty() && ctx_.Srv.Opt.Flag("FCk_DspCm")) {
      text_.Add("  ");
      text_.Add(cur.Mem.Mem_CTx, comment_);
    }
    text_.Add("\r\n");
  }
  // One rule for each open level, in two colours.
  void Rules(int depth) {
    for (int i = 0; i < depth; ++i) {
      text_.Add(kRule, rules_[static_cast<std::size_t>(i) % rules_.size()]);
      text_.Add(std::string(static_cast<std::size_t>(std::max(columns_ - 2, 0)), ' '));
    }
  }

  const Query_Ctx& ctx_;
  Control_Slot& slot_;
  bool absolute_;
  Text_Styles styles_;
  Rich_Text text_;
  Element element_;
  std::array<Run_Style, 2> rules_;  // of the levels by turns
  Run_Style number_, comment_;
  int columns_ = 4;
};

}  // namespace

void Frm_Control::Lod_State(const service::Settings& settings) {
  FCo.Sta = std::clamp(settings.Number("FOp_DspSt"), 0, 3);
  FCo.Blk = settings.Flag("FCk_StOpt0");
  FCo.Directives = settings.Flag("FCk_StOpt1");
  FCo.Jumps = settings.Flag("FCk_StOpt2");
}

bool Frm_Control::Dsp_Start_Proc(const Query_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_Control", "Dsp_Start_Proc");
  const auto caret = host::Get_ACp_Inf(ctx.VBInst);
  if (!caret || caret->Mem.Nam == analyser::kDeclare) {
    Cur().Text = Message_Text(kHint, {ctx.Srv.Opt, ctx.Srv.KWd});
    Cur().Rows.clear();
    return false;
  }
  FCo.Lin = caret->Sel.start_line;
  if (host::CodePane* pane = ctx.VBInst.ActiveCodePane(); pane != nullptr)
    FCo.Ele = host::Get_Sel_Wrd(pane->CodeModule(), caret->Sel);
  return Dsp_Member(ctx, caret->Mdl_Nam, caret->Mem.Nam);
}

void Frm_Control::Cond_Changed(const Query_Ctx& ctx) {
  const Control_Slot& slot = Cur();
  if (slot.Mem.empty() || !ctx.Srv.Opt.Flag("FCk_CDOpt")) return;
  const std::string module = slot.Mdl, member = slot.Mem;
  (void)Dsp_Member(ctx, module, member);
}

bool Frm_Control::Dsp_Member(const Query_Ctx& ctx, std::string_view module,
                             std::string_view member) {
  if (ctx.Get_Pgm_Inf) ctx.Get_Pgm_Inf();
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  host::VBComponent* component =
      project == nullptr ? nullptr : project->VBComponents().Item(module);
  const host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
  if (code == nullptr) return false;
  int first = 1, count = code->CountOfDeclarationLines();
  if (member != analyser::kDeclare) {
    const auto place = host::Get_CMm_Inf(ctx.VBInst, module, member);
    if (!place) return false;
    first = place->Top;
    count = place->Cnt;
  }
  Control_Slot& slot = Cur();
  slot = {};
  slot.Mdl = module;
  slot.Mem = member;
  slot.Tim = service::Stamp(ctx.Srv.Clk.Now());
  slot.Cond = FCo;
  const std::string text = count == 0 ? std::string() : code->Lines(first, count);
  const Calls calls(ctx, module, member);
  if (count > 0)
    slot.Rows = Get_Control_Rows(service::Split(text, "\r\n"), first, first, FCo,
                                 [&](int relative) { return calls.At(relative); });
  Control_Writer(ctx, slot, Absolute_Lines).Write(first);
  return true;
}

std::optional<service::Chr_Count> Frm_Control::Syn_Dsp_Pos(int line) {
  const Control_Slot& slot = Cur();
  const auto behind =
      std::upper_bound(slot.Rows.begin(), slot.Rows.end(), line,
                       [](int wanted, const Control_Row& row) { return wanted < row.Lno; });
  if (behind == slot.Rows.begin()) return std::nullopt;
  return slot.Text.Begins[static_cast<std::size_t>(behind - slot.Rows.begin()) - 1];
}

bool Frm_Control::FRt_Result_Click(const Query_Ctx& ctx, service::Chr_Count place) {
  const Control_Slot& slot = Cur();
  const auto behind = std::upper_bound(slot.Text.Begins.begin(), slot.Text.Begins.end(), place);
  if (behind == slot.Text.Begins.begin()) return false;
  const auto at = static_cast<std::size_t>(behind - slot.Text.Begins.begin()) - 1;
  return host::Set_Mdl_Lin(ctx.VBInst, slot.Mdl, slot.Rows[at].Lno);
}

std::vector<Control_History> Frm_Control::Dsp_Hst_Viw() const {
  std::vector<Control_History> rows;
  for (int i = 0; i < kControl_Views; ++i) {
    const Control_Slot& slot = Slots[static_cast<std::size_t>(i)];
    if (!slot.Mem.empty()) rows.push_back({i, slot.Mdl, slot.Mem, slot.Tim});
  }
  std::stable_sort(
      rows.begin(), rows.end(),
      [](const Control_History& a, const Control_History& b) { return a.Time > b.Time; });
  return rows;
}

bool Frm_Control::Chg_Res_Viw(int slot) {
  if (slot < 0 || slot >= kControl_Views) return false;
  Ctl_Cur = slot;
  if (!Cur().Mem.empty()) FCo = Cur().Cond;
  return true;
}

void Frm_Control::Clr_Res_Viw(int slot) {
  if (slot >= 0 && slot < kControl_Views) Slots[static_cast<std::size_t>(slot)] = {};
}

void Frm_Control::Set_Res_Viw(const Query_Ctx& ctx) {
  const int kept = std::clamp(ctx.Srv.Opt.Number("FTx_ViwCn1"), 1, kControl_Views);
  const auto oldest =
      std::min_element(Slots.begin(), Slots.begin() + kept,
                       [](const Control_Slot& a, const Control_Slot& b) { return a.Tim < b.Tim; });
  Ctl_Cur = static_cast<int>(oldest - Slots.begin());
  *oldest = {};
}

}  // namespace oru::query
