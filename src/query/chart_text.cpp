// SPDX-License-Identifier: MIT
// The chart's tree as text: for the clipboard, and for a screen.
#include <algorithm>

#include "query/frm_chart.h"
#include "query/keyword_colours.h"

namespace oru::query {

namespace {

constexpr std::string_view kComment = "｜   ";

// The rows that a text shows, and how each stands among them.
struct Shown_Rows {
  std::vector<bool> shown, later,
      hides;  // by row: it is shown; has a later sibling; hides children

  Shown_Rows(const std::vector<Chart_Node>& nodes, Chart_Copy what, int current)
      : shown(nodes.size()), later(nodes.size()), hides(nodes.size()) {
    for (std::size_t i = 0; i < nodes.size(); ++i) shown[i] = Is_Shown(nodes, i, what, current);
    if (what == Chart_Copy::Sub_Tree)
      for (int row = current; row >= 0; row = nodes[At(row)].Parent) shown[At(row)] = true;
    std::vector<bool> has_last(nodes.size());
    for (std::size_t i = nodes.size(); i-- > 1;) {
      const std::size_t parent = At(nodes[i].Parent);
      if (!shown[i]) {
        hides[parent] = true;
        continue;
      }
      later[i] = has_last[parent];
      has_last[parent] = true;
    }
  }

 private:
  static std::size_t At(int row) { return static_cast<std::size_t>(row); }
  [[nodiscard]] bool Is_Shown(const std::vector<Chart_Node>& nodes, std::size_t row,
                              Chart_Copy what, int current) const {
    if (what == Chart_Copy::All || row == 0) return true;
    const std::size_t parent = At(nodes[row].Parent);
    if (what == Chart_Copy::Shown) return shown[parent] && nodes[parent].Open;
    return static_cast<int>(row) == current ||
           (shown[parent] && static_cast<int>(parent) >= current);
  }
};

class Tree_Writer {
 public:
  Tree_Writer(const Query_Ctx& ctx, const Frm_Chart& chart, const Tree_Style& style)
      : ctx_(ctx), chart_(chart), style_(style), styles_(ctx.Srv.Opt) {
    text_.Int_RTx_Inf(styles_.Txt.colour, ctx.Srv.Opt.Text("FntNam3"), ctx.Srv.Opt.Real("FntSiz3"),
                      ctx.Srv.Opt.Number("Spc_Lin"));
    module_ = Run_Style_Of(text_, styles_.Mdl);
    member_ = Run_Style_Of(text_, styles_.Mem);
    comment_ = Run_Style_Of(text_, styles_.Cmt);
    branch_ = Run_Style_Of(text_, styles_.Idt);
  }

  Rich_Text Write(Chart_Copy what) {
    const std::vector<Chart_Node>& nodes = chart_.Nodes;
    const Shown_Rows rows(nodes, what, chart_.Cur);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      if (!rows.shown[i]) continue;
      const Chart_Node& node = nodes[i];
      if (i == 0) {
        Header(node);
        continue;
      }
      const auto depth = static_cast<std::size_t>(node.Depth);
      later_.resize(depth + 1);
      later_[depth] = rows.later[i];
      for (std::size_t above = 1; above < depth; ++above)
        text_.Add(later_[above] ? style_.Through : style_.Blank, branch_);
      text_.Add(rows.later[i] ? style_.Middle : style_.Last, branch_);
      text_.Add(rows.hides[i] ? "+" : " ");
      if (depth == 1 && chart_.Crt_Mod != kUnreferenced && !node.Mem.empty()) {
        Root(node);
      } else {
        Row(node);
      }
    }
    return std::move(text_);
  }

 private:
  [[nodiscard]] bool Comments() const { return ctx_.Srv.Opt.Flag("FCk_DspCm"); }

  void Header(const Chart_Node& node) {
    if (style_.On_Screen) text_.Set_RTx_Img(node.Img);
    text_.Add(node.Mdl, module_);
    text_.Add("\r\n");
    before_ = node.Mdl;
    analyser::Tbl_Cur cur;
    if (!Comments() || !analyser::Set_Mdl_Fld(ctx_.Tbl, cur, node.Mdl) || cur.Mdl.Mdl_CTx.empty())
      return;
    text_.Add(kComment, branch_);
    text_.Add(cur.Mdl.Mdl_CTx, comment_);
    text_.Add("\r\n");
  }

  void Root(const Chart_Node& node) {
    if (style_.On_Screen) text_.Set_RTx_Img(node.Img);
    text_.Add(node.Mem, member_);
    text_.Add(chart_.Crt_Mod == kCallees ? " が呼出しているプロシージャ"
                                         : " を参照しているプロシージャ");
    text_.Add("\r\n");
    before_ = node.Mdl;
    analyser::Tbl_Cur cur;
    if (!Comments() || !analyser::Set_Mem_Fld(ctx_.Tbl, cur, node.Mdl, node.Mem) ||
        cur.Mem.Mem_CTx.empty())
      return;
    text_.Add("   ");
    text_.Add(kComment, branch_);
    text_.Add(cur.Mem.Mem_CTx, comment_);
    text_.Add("\r\n");
  }

  void Row(const Chart_Node& node) {
    if (node.Mem.empty()) {  // the row that says that there is nothing
      text_.Add(node.Text);
      text_.Add("\r\n");
      return;
    }
    if (style_.On_Screen) {
      text_.Add(Mark_Text(node.Mark));
      text_.Set_RTx_Img(node.Img);
    }
    text_.Add(node.Mem, style_.On_Screen ? member_ : Run_Style{});
    if (!style_.On_Screen && node.Mark != Chart_Mark::None)
      text_.Add(node.Mark == Chart_Mark::Expanded ? " *1"
                : node.Mark == Chart_Mark::Cycle  ? " *2"
                                                  : " ＋");
    // A copy names a module where it changes from line to line; on a screen, where a row's own
    // place in the tree is seen, where it is not that of the procedure above it.
    const Chart_Node& above = chart_.Nodes[static_cast<std::size_t>(node.Parent)];
    if (node.Mdl != (style_.On_Screen ? std::string_view(above.Mdl) : before_))
      text_.Add(" (" + node.Mdl + ")", module_);
    before_ = node.Mdl;
    if (style_.On_Screen && node.Error_Section) text_.Add(" [エラー処理部]", comment_);
    text_.Add("\r\n");
  }

  const Query_Ctx& ctx_;
  const Frm_Chart& chart_;
  const Tree_Style& style_;
  Text_Styles styles_;
  Rich_Text text_;
  Run_Style module_, member_, comment_, branch_;
  std::vector<bool> later_;  // by depth, of the rows above
  std::string_view before_;  // module of the row above
};

}  // namespace

Rich_Text Frm_Chart::Tree_Text(const Query_Ctx& ctx, Chart_Copy what,
                               const Tree_Style& style) const {
  return Tree_Writer(ctx, *this, style).Write(what);
}

void Frm_Chart::Cpy_Crt_Fmt(const Query_Ctx& ctx, Chart_Copy what,
                            const std::function<bool(const std::string&)>& set_clipboard) const {
  const bool copied = set_clipboard(Tree_Text(ctx, what).Text());
  (void)service::Srv_Dsp_Msg(
      ctx.Srv, copied ? "コピーしました。    " : "コピーに失敗しました。    ", service::Buttons::Ok,
      1, copied ? service::Icon::Information : service::Icon::Warning);
}

}  // namespace oru::query
