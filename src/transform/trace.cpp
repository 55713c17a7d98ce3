// SPDX-License-Identifier: MIT
#include "transform/trace.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "host/line_class.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::transform {

namespace {

constexpr std::string_view kComment = "    ' ";
// What a trace calls must not be traced.
constexpr std::string_view kTrace_Module = "Mod_Trace";

// Procedures of the system itself that run on each message.
constexpr std::array<std::string_view, 22> kOwn{
    "Srv_Log_Out", "Chk_Focus_Timer", "Run_Focus_Timer", "Chk_Comment", "Sep_Comment",
    "Chk_Des_Mod", "Chk_Edt_Mod",     "Chk_Mdl_Typ",     "Set_Mdl_Fld", "Set_Mdl_Img",
    "Set_Mdl_Typ", "Set_Mem_Fld",     "Set_Mem_Img",     "Set_Mem_Typ", "Chk_Win_Cap",
    "Get_Win_Cap", "Rciv_MHk_WMsg",   "Chk_Win_Typ",     "Chk_Msg_Prc", "Srv_Fil_IO",
    "Srv_Str_Txt", "Srv_Sep_Txt"};
constexpr std::string_view kOwn_Module = "Mod_Entry";

bool Is_Trace_Line(std::string_view line) {
  return line.size() >= kTrace_Marker.size() &&
         service::Equal_No_Case(line.substr(line.size() - kTrace_Marker.size()), kTrace_Marker);
}

// The line behind the statement that begins a procedure, counted as `lines` are, from its first line
// on; nothing if the procedure ends in that statement, as "Sub A(): End Sub" does. Only blank and
// underscore continue a line: behind "Sub A() '___" the body begins, which may be a `Select Case`
// that nothing may stand in.
std::optional<std::size_t> Body_Begin(std::span<const std::string> lines, std::size_t header) {
  host::Line_State state = host::Line_State::Fresh;
  for (std::size_t i = header; i < lines.size(); ++i) {
    const std::uint8_t verdict = host::Judge_Line(lines[i], state);
    if ((verdict & host::kLine_Closes) != 0) return std::nullopt;
    if (!host::Is_Continued(service::Trim_Right(lines[i]))) return i + 1;
    state = host::State_Of(verdict);
  }
  return lines.size();
}

}  // namespace

// What will be written: the changes of each module.
struct Frm_Trace::Plan {
  struct Module {
    host::CodeModule* code;
    std::string name;
    std::vector<host::Line_Change> changes;
  };
  std::vector<Module> modules;
  int procedures = 0;
};

void Frm_Trace::Lod_State(const service::Settings& settings) {
  Sta = settings.Text("TrcSta");
  Pub_Onl = !settings.Flag("TrcPub");
  Sub = settings.Flag("TrcSub");
  Fnc = settings.Flag("TrcFnc");
  Prp = settings.Flag("TrcPrp");
  Own = settings.Flag("TrcOwn");
}

void Frm_Trace::Sav_State(service::Settings& settings) const {
  (void)settings.Set_Text("TrcSta", Sta);
  settings.Set_Number("TrcPub", Pub_Onl ? 0 : 1);
  settings.Set_Number("TrcSub", Sub ? 1 : 0);
  settings.Set_Number("TrcFnc", Fnc ? 1 : 0);
  settings.Set_Number("TrcPrp", Prp ? 1 : 0);
  settings.Set_Number("TrcOwn", Own ? 1 : 0);
}

bool Frm_Trace::FBt_Start_Click(const Transform_Ctx& ctx, Trace_Mode mode) const {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_Trace", "FBt_Start_Click");
  const auto tell = [&](std::string_view text) {
    (void)service::Srv_Dsp_Msg(ctx.Srv, text, service::Buttons::Ok, 1, service::Icon::Warning);
    return false;
  };
  if (mode == Trace_Mode::Set && service::Trim(Sta).empty())
    return tell("設定文が指定されていません。    ");
  if (Prc.empty() || (!Sub && !Fnc && !Prp))
    return tell("対象プロシージャが指定されていません。    ");
  const Result result = Set_Trace(ctx, mode);
  return result.Error.empty() || tell(result.Error);
}

Frm_Trace::Result Frm_Trace::Set_Trace(const Transform_Ctx& ctx, Trace_Mode mode) const {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_Trace", "Set_Trace");
  if (mode == Trace_Mode::Set && Sta.find_first_of("\r\n") != std::string::npos)
    return {0, "設定文に改行を含めることはできません。"};
  struct Display {
    service::User_Interface& ui;
    ~Display() { ui.Close_Progress(); }
  };
  const Display display{ctx.Srv.Ui};
  std::vector<std::string_view> modules;
  for (const Chosen& chosen : Prc)
    if (std::find(modules.begin(), modules.end(), chosen.Mdl) == modules.end())
      modules.push_back(chosen.Mdl);

  Plan plan;
  std::int64_t count = 0;
  const auto total = static_cast<std::int64_t>(modules.size());
  for (const std::string_view module : modules) {
    service::Progress progress;
    progress.text = mode == Trace_Mode::Set ? "トレース文設定中" : "トレース文解除中";
    progress.item = module;
    progress.count = ++count;
    progress.total = total;
    progress.label = fmt::format("{} ( {} / {} )", progress.text, count, total);
    ctx.Srv.Ui.Show_Progress(progress);
    ctx.Srv.Ui.Do_Events();
    Set_Tra_Mdl(ctx, mode, module, plan);
  }
  for (const Plan::Module& module : plan.modules)
    if (std::string error =
            host::Chk_Change(*module.code, module.name, module.changes, host::Keeps::Nothing);
        !error.empty())
      return {0, std::move(error)};
  Result result;
  for (const Plan::Module& module : plan.modules) {
    result.Error =
        Write(ctx, *module.code, module.name, module.changes, host::Keeps::Nothing).Error;
    if (!result.Error.empty()) return result;
  }
  result.Changed = plan.procedures;
  return result;
}

void Frm_Trace::Set_Tra_Mdl(const Transform_Ctx& ctx, Trace_Mode mode, std::string_view module,
                            Plan& plan) const {
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  host::VBComponent* component =
      project == nullptr ? nullptr : project->VBComponents().Item(module);
  if (service::Equal_No_Case(module, kTrace_Module) || component == nullptr ||
      component->CodeModule() == nullptr || !host::Chk_Mdl_Typ(component->Type()))
    return;
  host::CodeModule& code = *component->CodeModule();
  std::set<std::string_view> members;
  for (const Chosen& chosen : Prc)
    if (chosen.Mdl == module) members.insert(chosen.Mem);
  plan.modules.push_back({&code, std::string(module), {}});
  for (host::Member_Place& place : host::Get_Procedures(code)) {
    if (!members.contains(place.Nam)) continue;
    const Procedure procedure{code, std::string(module), std::move(place)};
    if (Is_Chosen(ctx, mode, procedure)) Set_Tra_Mem(mode, procedure, plan);
  }
}

bool Frm_Trace::Is_Chosen(const Transform_Ctx& ctx, Trace_Mode mode,
                          const Procedure& procedure) const {
  analyser::Tbl_Cur cur;
  const std::string& name = procedure.Mem.Nam;
  if (!analyser::Set_Mem_Fld(ctx.Tbl, cur, procedure.Mdl, name)) return false;
  const analyser::Mem_Row& row = cur.Mem;
  if (Pub_Onl && !analyser::Is_Code(row.Mem_Scp, analyser::kScp_Public)) return false;
  const bool kind = analyser::Is_Code(row.Mem_Knd, analyser::kMem_Function)   ? Fnc
                    : analyser::Is_Code(row.Mem_Knd, analyser::kMem_Property) ? Prp
                                                                              : Sub;
  const bool own =
      Own && mode == Trace_Mode::Set &&
      (procedure.Mdl == kOwn_Module || std::find(kOwn.begin(), kOwn.end(), name) != kOwn.end());
  return kind && !own;
}

void Frm_Trace::Set_Tra_Mem(Trace_Mode mode, const Procedure& procedure, Plan& plan) const {
  const host::Member_Place& place = procedure.Mem;
  std::vector<host::Line_Change>& changes = plan.modules.back().changes;
  std::vector<std::string> lines = host::Lines_Of(procedure.Code, place.Top, place.Cnt);
  std::vector<std::size_t> traced;
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (Is_Trace_Line(lines[i])) traced.push_back(i);
  const auto change = [&](std::size_t line, std::vector<std::string> old,
                          std::vector<std::string> now) {
    changes.push_back({place.Top + static_cast<int>(line), std::move(old), std::move(now)});
  };
  if (mode == Trace_Mode::Remove) {
    for (const std::size_t line : traced) change(line, {std::move(lines[line])}, {});
    plan.procedures += traced.empty() ? 0 : 1;
    return;
  }
  std::string statement(service::Trim_Right(
      Sta.substr(0, service::Byte_Of_Chr(Sta, service::Chr_Count{kMost_Statement + 1}))));
  statement = service::Replace_All(statement, "%MN", procedure.Mdl);
  statement = service::Replace_All(statement, "%PN", place.Nam);
  statement.append(kComment).append(kTrace_Marker);
  if (!traced.empty()) {
    if (lines[traced.back()] == statement) return;
    change(traced.back(), {std::move(lines[traced.back()])}, {std::move(statement)});
  } else {
    const auto begin = Body_Begin(lines, static_cast<std::size_t>(place.Bdy - place.Top));
    if (!begin) return;
    change(*begin, {}, {std::move(statement)});
  }
  ++plan.procedures;
}

void Frm_Trace::FMn_CpyIf_Click(const Transform_Ctx& ctx, std::string_view text,
                                const std::function<bool(const std::string&)>& set_clipboard) {
  const std::string table = Trace_Statistics(ctx.Tbl, text);
  if (table.empty()) {
    (void)service::Srv_Dsp_Msg(ctx.Srv, kNo_Statistics, service::Buttons::Ok, 1,
                               service::Icon::Warning);
    return;
  }
  if (set_clipboard(table))
    (void)service::Srv_Dsp_Msg(ctx.Srv,
                               "プロシージャ実行統計をクリップボードにコピーしました。    ",
                               service::Buttons::Ok, 1, service::Icon::Information);
}

std::string Trace_Statistics(const analyser::Tables& tables, std::string_view text) {
  constexpr std::string_view kHeading = "モジュール名,プロシージャ名,";
  std::string table;
  // Whichever the line ends are: those of CR LF leave empty lines, which are passed over.
  const std::string lines = service::Replace_All(text, "\r", "\n");
  for (const std::string_view each : service::Split(lines, "\n")) {
    // A tab in a field would make two of it.
    const std::string shown = service::Without_Controls(each);
    const std::string_view line = shown;
    if (table.empty()) {
      if (!line.starts_with(kHeading)) return {};
      table = service::Replace_All(kHeading, ",", "\t") + "コメント\t" +
              service::Replace_All(line.substr(kHeading.size()), ",", "\t") + "\r\n";
      continue;
    }
    if (service::Trim(line).empty()) continue;
    const std::size_t module_end = std::min(line.find(','), line.size());
    const std::size_t member_end = std::min(line.find(',', module_end + 1), line.size());
    const std::string_view module = line.substr(0, module_end);
    const std::string_view member = module_end == line.size()
                                        ? std::string_view()
                                        : line.substr(module_end + 1, member_end - module_end - 1);
    analyser::Tbl_Cur cur;
    const bool known = analyser::Set_Mem_Fld(tables, cur, module, member);
    table.append(module).append("\t").append(member).append("\t");
    if (known) table.append(cur.Mem.Mem_CTx);
    if (member_end < line.size())
      table.append("\t").append(service::Replace_All(line.substr(member_end + 1), ",", "\t"));
    table.append("\r\n");
  }
  return table;
}

}  // namespace oru::transform
