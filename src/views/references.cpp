// SPDX-License-Identifier: MIT
#include "views/references.h"

#include "analyser/definitions.h"
#include "analyser/kinds.h"
#include "analyser/references.h"
#include "service/text.h"
#include "views/list_cells.h"

namespace oru::views {

using analyser::Full_Name;

namespace {

// Adds one row for each line of a record.
void Add_Lines(const analyser::Tables& tables, host::VBE& vbe, const analyser::Ref_Record& record,
               bool outgoing, std::vector<Ref_Line>& lines) {
  const std::size_t dot = record.Caller.find('.');
  analyser::Tbl_Cur cur;
  if (dot == std::string_view::npos ||
      !analyser::Set_Mem_Fld(tables, cur, record.Caller.substr(0, dot),
                             record.Caller.substr(dot + 1)))
    return;
  host::VBProject* project = vbe.ActiveVBProject();
  host::VBComponent* component =
      project == nullptr ? nullptr : project->VBComponents().Item(cur.Mem.Mem_Mdl);
  const host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
  for (const std::string_view digits : service::Split(record.Ref_Lns, " ")) {
    Ref_Line line;
    line.Outgoing = outgoing;
    line.Member = outgoing ? Full_Name(record.Tgt_Mdl, record.Tgt_Mem) : std::string(record.Caller);
    line.Offset = static_cast<int>(To_Number(digits));
    line.Line = static_cast<int>(To_Number(cur.Mem.Mem_Lin)) + line.Offset - 1;
    line.Error_Section = record.Ref_Flg == 'Y';
    if (code != nullptr && line.Line >= 1 && line.Line <= code->CountOfLines())
      line.Text = service::Trim(code->Lines(line.Line, 1));
    lines.push_back(std::move(line));
  }
}

}  // namespace

std::vector<Ref_Line> Get_References(const analyser::Tables& tables, host::VBE& vbe,
                                     std::string_view module, std::string_view member) {
  std::vector<Ref_Line> lines;
  for (analyser::Ref_Cursor cursor;
       analyser::Set_Ref_Fld(tables.Ref_All, {{}, module, member}, cursor);)
    Add_Lines(tables, vbe, cursor.Record, false, lines);
  const std::string caller = Full_Name(module, member);
  for (analyser::Ref_Cursor cursor;
       analyser::Set_Ref_Fld(tables.Ref_All, {caller, {}, {}}, cursor);)
    Add_Lines(tables, vbe, cursor.Record, true, lines);
  return lines;
}

std::vector<Member_Name> Find_Members(const analyser::Tables& tables, std::string_view name) {
  const std::size_t dot = name.find('.');
  const std::string_view module =
      dot == std::string_view::npos ? std::string_view{} : name.substr(0, dot);
  const std::string_view member = dot == std::string_view::npos ? name : name.substr(dot + 1);
  std::vector<Member_Name> found;
  for (const auto& item : tables.Mdl_Tbl) {
    if (!module.empty() && !service::Equal_No_Case(item.key, module)) continue;
    for (const auto& row : item.value->Mem) {
      const std::string_view bare = analyser::To_Host_Name(row.key).Nam;
      if (service::Equal_No_Case(row.key, member) || service::Equal_No_Case(bare, member))
        found.push_back({item.key, row.key});
    }
  }
  return found;
}

std::vector<Unused_Row> Get_Unused(const analyser::Tables& tables) {
  std::vector<Unused_Row> unused;
  analyser::Tbl_Cur cur;
  for (std::size_t i = 1; analyser::Set_Mdl_Fld(tables, cur, i); ++i) {
    for (const auto& item : cur.Entry->Mem) {
      analyser::Set_Mem_Inf(cur, item.value);
      const analyser::Mem_Row& row = cur.Mem;
      const bool is_api = analyser::Is_Code(row.Mem_Knd, analyser::kMem_Api);
      const Ref_Cell cell = Get_Ref_Cell(tables, row);
      if (is_api ? cell.Mrk.find("↑") != std::string_view::npos : !cell.Red) continue;
      const auto lines = To_Number(row.Mem_Stm) + To_Number(row.Mem_Cmt) + To_Number(row.Mem_Blk);
      unused.push_back({row.Mem_Mdl, row.Mem_Nam, std::string(analyser::Set_Mem_Typ(row)),
                        analyser::Is_Code(row.Mem_Scp, analyser::kScp_Public),
                        cell.Mrk.find("↓") != std::string_view::npos,
                        static_cast<int>(To_Number(row.Mem_Lin)), static_cast<int>(lines)});
    }
  }
  return unused;
}

}  // namespace oru::views
