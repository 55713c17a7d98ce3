// SPDX-License-Identifier: MIT
#include "transform/rev_indent.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/host_commands.h"
#include "host/line_class.h"
#include "service/text.h"
#include "transform/indent_rules.h"
#include "transform/line_numbers.h"

namespace oru::transform {

namespace {

using Lines = std::vector<std::string>;

bool Is_End_Line(std::string_view line) {
  line = service::Trim_Left(line);
  return line.starts_with("End Sub") || line.starts_with("End Function") ||
         line.starts_with("End Property");
}

// The index behind the last line of the body. `lines` begin with the header; its body would begin
// at `first`.
std::size_t Body_End(std::span<const std::string> lines, std::size_t first) {
  for (std::size_t i = first; i < lines.size(); ++i)
    if (Is_End_Line(lines[i])) return i;
  // The end stands behind something else in its line: a label that is used, or the whole procedure.
  host::Line_State state = host::Line_State::Fresh;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::uint8_t verdict = host::Judge_Line(lines[i], state);
    if ((verdict & host::kLine_Closes) != 0) return std::max(i, first);
    state = host::State_Of(verdict);
  }
  return lines.size();
}

// The editor holds no tabs in front of a line, but files that were edited elsewhere do: they count
// as blanks up to the next stop.
void Expand_Tabs(Lines& lines, std::size_t stop) {
  for (std::string& line : lines) {
    const std::size_t text = std::min(line.find_first_not_of(" \t"), line.size());
    if (line.find('\t') >= text) continue;
    std::size_t column = 0;
    for (std::size_t i = 0; i < text; ++i) column += line[i] == '\t' ? stop - column % stop : 1;
    line.replace(0, text, column, ' ');
  }
}

Lines Part(Lines& lines, std::size_t first, std::size_t end) {
  const auto at = [&](std::size_t i) {
    return std::move_iterator(lines.begin() + static_cast<std::ptrdiff_t>(i));
  };
  return {at(first), at(end)};
}

// The periodic timer stands still and the pointer shows that there is work, until the end.
class Busy {
 public:
  explicit Busy(service::User_Interface& ui) : ui_(ui) {
    ui_.Set_Timer(false);
    ui_.Set_Wait_Cursor(true);
  }
  ~Busy() {
    ui_.Set_Timer(true);
    ui_.Set_Wait_Cursor(false);
  }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  service::User_Interface& ui_;
};

}  // namespace

host::Change_Result Format_Procedure(const Transform_Ctx& ctx, const Procedure& procedure,
                                     Label_Lines labels) {
  const host::Member_Place& place = procedure.Mem;
  const Indent_Options options{std::max(ctx.Srv.Opt.Number("FTx_IdtCn"), 1),
                               ctx.Srv.Opt.Flag("FCk_RevDS"), labels};

  Lines old = host::Lines_Of(procedure.Code, place.Bdy, place.Top + place.Cnt - place.Bdy);
  if (old.empty()) return {};
  const std::vector<New_Line> cut = Cut_Labels(old, 0, If_Erl::Keep);
  const bool tabs = std::ranges::any_of(
      old, [](const std::string& line) { return line.find('\t') != std::string::npos; });
  Lines bare;  // without labels and tabs, if there were any
  if (!cut.empty() || tabs) {
    bare = old;
    for (const New_Line& line : cut) bare[line.Line] = line.Text;
    if (tabs) Expand_Tabs(bare, static_cast<std::size_t>(options.Idt_Cnt));
  }
  const std::span<const std::string> lines = bare.empty() ? old : bare;

  const std::string_view header = lines.front();
  const std::size_t base = header.size() - service::Trim_Left(header).size();
  const auto first = static_cast<std::size_t>(Header_End(procedure.Code, place) - place.Bdy) + 1;
  const std::size_t end = Body_End(lines, first);
  Indented body = Indent_Body(lines.subspan(first, end - first), base, options);
  const auto module_line = [&](std::size_t i) { return place.Bdy + static_cast<int>(i); };
  if (body.Too_Deep)
    return {fmt::format(
        "「{}」の {} 行目で、制御構造の入れ子が上限（{} 段）を超えるため整形しません。入れ子を浅くしてから実行してください。",
        procedure.Mdl, module_line(first + *body.Too_Deep), kMost_Depth)};

  std::vector<host::Line_Change> changes;
  if (end > first) {
    if (!cut.empty()) {
      // The old text of the change has the labels too, so that here is what must not lose anything.
      const host::Line_Change indented{module_line(first), Part(bare, first, end), body.Lines};
      std::string error = host::Chk_Visible(procedure.Mdl, indented);
      if (!error.empty()) return {std::move(error)};
    }
    changes.push_back({module_line(first), Part(old, first, end), std::move(body.Lines)});
  }
  // A label in front of the end.
  for (const New_Line& line : cut)
    if (line.Line >= end)
      changes.push_back({module_line(line.Line), {old[line.Line]}, {line.Text}});
  return Write(ctx, procedure.Code, procedure.Mdl, changes,
               cut.empty() ? host::Keeps::All_But_Blanks : host::Keeps::Nothing);
}

host::Change_Result Rev_Indent(const Transform_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Sub", "Rev_Indent");
  if (!host::Chk_Run_Fnc(ctx.VBInst, ctx.Srv) || !Get_Cur_Prc(ctx)) return {};
  const Busy busy(ctx.Srv.Ui);
  if (ctx.Set_Sif_Inf) ctx.Set_Sif_Inf();
  const auto procedure = Get_Cur_Prc(ctx);
  const auto seen = host::Get_ACp_Inf(ctx.VBInst);
  if (!procedure || !seen) return {};

  host::Change_Result result = Format_Procedure(ctx, *procedure);
  if (!result.Ok()) return result;
  ctx.Srv.Ui.Do_Events();
  // The events may have brought another pane to the front.
  host::CodePane* pane = ctx.VBInst.ActiveCodePane();
  if (pane != nullptr && &pane->CodeModule() == &procedure->Code) {
    pane->Set_TopLine(seen->TopLine);
    const int line = seen->Sel.start_line;
    pane->SetSelection({line, 1, line, 1});
    // The bookmark on the caret's line went with the old lines.
    if (!host::Exc_Hst_Cmd(ctx.VBInst, ctx.Srv, "Book")) return result;
  }
  if (ctx.Renew_Control) ctx.Renew_Control(procedure->Mdl, procedure->Mem.Nam);
  return result;
}

}  // namespace oru::transform
