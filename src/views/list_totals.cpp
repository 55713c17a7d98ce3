// SPDX-License-Identifier: MIT
#include "views/list_totals.h"

#include <fmt/format.h>

#include "analyser/reader.h"
#include "host/derived.h"
#include "service/text.h"

namespace oru::views {

namespace {

void Count_Lines(const host::CodeModule& code, Prj_Totals& totals) {
  const int count = code.CountOfLines();
  totals.Total += count;
  if (count == 0) return;
  const std::string text = code.Lines(1, count);
  for (const std::string_view line : service::Split(text, "\r\n")) {
    std::string statement(line);
    analyser::Del_Label(statement);
    const std::string_view trimmed = service::Trim(statement);
    if (trimmed.empty()) continue;
    ++(trimmed.front() == '\'' ? totals.Comment : totals.Step);
  }
}

std::int64_t& Component_Counter(Prj_Totals& totals, int type) {
  constexpr int kForm = 5;  // the other hosts' number; a user form of this one is "Etc"
  switch (type) {
    case host::kType_Module:
      return totals.Modul;
    case host::kType_Class:
      return totals.Class;
    case kForm:
      return totals.Form;
    default:
      return totals.Etc;
  }
}

std::int64_t& Member_Counter(Prj_Totals& totals, std::string_view kind) {
  switch (kind.empty() ? '\0' : kind.front()) {
    case analyser::kMem_Event:
      return totals.Event;
    case analyser::kMem_Sub:
      return totals.Sub;
    case analyser::kMem_Function:
      return totals.Function;
    case analyser::kMem_Api:
      return totals.Api;
    default:
      return totals.EPr;
  }
}

}  // namespace

Prj_Totals Get_Prj_Totals(const View_Ctx& ctx) {
  Prj_Totals totals;
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  if (project == nullptr) return totals;
  host::VBComponents& components = project->VBComponents();
  for (int i = 1; i <= components.Count(); ++i) {
    host::VBComponent* component = components.Item(i);
    if (component == nullptr || !host::Chk_Mdl_Typ(component->Type())) continue;
    ++Component_Counter(totals, component->Type());
    const host::CodeModule* code = component->CodeModule();
    if (code != nullptr) Count_Lines(*code, totals);
    totals.Lines.emplace_back(component->Name(), code == nullptr ? 0 : code->CountOfLines());
  }
  for (const auto& module : ctx.Tbl.Mdl_Tbl) {
    for (const auto& item : module.value->Mem) {
      analyser::Tbl_Cur cur;
      analyser::Set_Mem_Inf(cur, item.value);
      ++Member_Counter(totals, cur.Mem.Mem_Knd);
    }
  }
  return totals;
}

std::vector<std::string> Totals_Text(const Prj_Totals& totals) {
  constexpr service::Wid_Count kName_Width{77};
  const std::pair<std::string_view, std::int64_t> counters[] = {
      {"Total", totals.Total},       {"Step", totals.Step},   {"Comment", totals.Comment},
      {"Modul", totals.Modul},       {"Class", totals.Class}, {"Form", totals.Form},
      {"Etc", totals.Etc},           {"Event", totals.Event}, {"Sub", totals.Sub},
      {"Function", totals.Function}, {"Api", totals.Api},     {"EPr", totals.EPr}};
  std::vector<std::string> lines;
  for (const auto& [name, number] : counters)
    lines.push_back(fmt::format("\t{}\t{}", name, number));
  for (const auto& [name, count] : totals.Lines)
    lines.push_back(fmt::format("{}\t{}", service::Pad_Right(name, kName_Width), count));
  return lines;
}

std::vector<std::string> FMn_PackF_Click(const View_Ctx& ctx, int index) {
  constexpr int kTotals = 2;
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_List", "FMn_PackF_Click");
  if (index != kTotals) return {};
  std::vector<std::string> lines = Totals_Text(Get_Prj_Totals(ctx));
  for (const std::string& line : lines) service::Srv_Trc_Log(ctx.Srv, line);
  (void)service::Srv_Dsp_Msg(ctx.Srv, "情報出力終了!!    ", service::Buttons::Ok, 1,
                             service::Icon::Information);
  return lines;
}

}  // namespace oru::views
