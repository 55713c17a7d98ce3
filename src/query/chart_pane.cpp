// SPDX-License-Identifier: MIT
#include "query/chart_pane.h"

#include <fmt/format.h>

#include "analyser/kinds.h"
#include "host/line_class.h"
#include "host/places.h"
#include "service/text.h"

namespace oru::query {

namespace {

constexpr int kNumber_Width = 5;

const host::CodeModule* Code_Of(const Query_Ctx& ctx, std::string_view module) {
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  host::VBComponent* component =
      project == nullptr ? nullptr : project->VBComponents().Item(module);
  return component == nullptr ? nullptr : component->CodeModule();
}

}  // namespace

std::vector<int> Lines_Of_Record(const Query_Ctx& ctx, std::string_view module,
                                 std::string_view member, std::string_view offsets) {
  std::vector<int> lines;
  const auto place = host::Get_CMm_Inf(ctx.VBInst, module, member);
  if (!place) return lines;
  for (const std::string_view offset : service::Split(offsets, " "))
    lines.push_back(place->Top + static_cast<int>(service::Val(offset)) - 1);
  return lines;
}

Chart_Pane::Chart_Pane(const Query_Ctx& ctx, bool absolute_lines)
    : ctx_(ctx), absolute_(absolute_lines), styles_(ctx.Srv.Opt) {
  text_.Text.Int_RTx_Inf(styles_.Txt.colour, ctx.Srv.Opt.Text("FntNam3"),
                         ctx.Srv.Opt.Real("FntSiz3"), ctx.Srv.Opt.Number("Spc_Lin"));
}

void Chart_Pane::Begin_Row(int line) {
  text_.Begins.push_back(text_.Text.RTx_Len());
  lines_.push_back(line);
}

void Chart_Pane::Star(std::string_view message) {
  Begin_Row(0);
  text_.Text.Add(fmt::format("★{}\r\n\r\n", message));
}

void Chart_Pane::Set_DIf_Prc(std::string_view module, std::string_view member,
                             std::string_view mark) {
  Begin_Row(0);
  Rich_Text& text = text_.Text;
  analyser::Tbl_Cur cur;
  const bool known = analyser::Set_Mem_Fld(ctx_.Tbl, cur, module, member);
  text.Add(" ");
  if (known) text.Set_RTx_Img(analyser::Set_Mem_Img(cur.Mem));
  text.Add(" ");
  text.Add(member, Run_Style_Of(text, styles_.Mem));
  text.Add(fmt::format("  ({})", module), Run_Style_Of(text, styles_.Mdl));
  text.Add(mark);
  if (known && !cur.Mem.Mem_CTx.empty() && ctx_.Srv.Opt.Flag("FCk_DspCm")) {
    text.Add("  ");
    text.Add(cur.Mem.Mem_CTx, Run_Style_Of(text, styles_.Cmt));
  }
  text.Add("\r\n");
}

void Chart_Pane::Arrow() {
  Begin_Row(0);
  text_.Text.Add("  →\r\n");
}

void Chart_Pane::Statement(const host::CodeModule& code, int line, int member_line,
                           std::string_view mark) {
  for (const int last = code.CountOfLines(); line <= last; ++line) {
    const std::string one = code.Lines(line, 1);
    Begin_Row(line);
    text_.Text.Add(mark);
    text_.Text.Add(
        fmt::format(" {:>{}}|", absolute_ ? line : line - member_line + 1, kNumber_Width),
        Run_Style_Of(text_.Text, styles_.Lin));
    Set_KWd_Lin(text_.Text, styles_, ctx_.Srv.KWd, one);
    text_.Text.Add("\r\n");
    if (!host::Is_Continued(one)) return;
    mark = "   ";
  }
}

void Chart_Pane::Header(std::string_view module, std::string_view member) {
  const host::CodeModule* code = Code_Of(ctx_, module);
  const auto place = host::Get_CMm_Inf(ctx_.VBInst, module, member);
  if (code == nullptr || !place) return;
  Statement(*code, place->Bdy, place->Top, "   ");
  text_.Text.Add("\r\n");
}

void Chart_Pane::Set_DIf_Ref(std::string_view module, std::string_view member,
                             std::string_view offsets, bool error_section) {
  const host::CodeModule* code = Code_Of(ctx_, module);
  const auto place = host::Get_CMm_Inf(ctx_.VBInst, module, member);
  if (code == nullptr || !place) return;
  for (const int line : Lines_Of_Record(ctx_, module, member, offsets))
    Statement(*code, line, place->Top, error_section ? " □" : " →");
}

void Chart_Pane::Take(Result_Text& text, std::vector<int>& lines) {
  text = std::move(text_);
  lines = std::move(lines_);
}

}  // namespace oru::query
