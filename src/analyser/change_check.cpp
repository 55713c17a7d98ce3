// SPDX-License-Identifier: MIT
#include "analyser/change_check.h"

#include <charconv>

#include "analyser/kinds.h"
#include "analyser/module_pass.h"
#include "analyser/reader.h"
#include "host/derived.h"

namespace oru::analyser {

namespace {

int To_Number(std::string_view digits) {
  int number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

// Lines of a row's member as they were counted: code, comment, blank.
int Counted_Lines(std::string_view row) {
  return To_Number(service::Row_Field(row, 7)) + To_Number(service::Row_Field(row, 8)) +
         To_Number(service::Row_Field(row, 9));
}

// A statement still open at a range's end was dropped uncounted, so lines may be missing in the
// counts; they are compared with what the reader would count now.
int Countable_Lines(const host::CodeModule& module, int top, int count) {
  int lines = 0;
  const std::string text = module.Lines(top, count);
  for (Stm_Reader reader(text, top); reader.Next();) lines += reader.Line_Count();
  return lines;
}

// Whether a range of lines has as many as its row was made from. Of the module's last range only
// what stands in front of the blank lines at its end counts.
bool Same_Lines(const Mdl_Entry& entry, std::string_view row, const host::CodeModule& module,
                int top, int count, bool last, int blank_now) {
  const int counted = Counted_Lines(row);
  if (last) {
    if (entry.End_Blk >= 0) return counted - entry.End_Blk == count - blank_now;
    const int blank_then = To_Number(service::Row_Field(row, 9));
    const int without = count - blank_now;
    if (without <= counted && counted - without <= blank_then) return true;
  }
  return counted == count || Countable_Lines(module, top, count) == counted;
}

// `Chk_Prj_Chg`: the active project is another one than the tables belong to.
bool Chk_Prj_Chg(Anl_Ctx& ctx) {
  ctx.Srv.Ui.Close_Progress();
  const std::string name = host::Get_Prj_Nam(ctx.VBInst);
  if (ctx.Srv.Prj_Nam == name) return false;
  service::Srv_Trc_Log(ctx.Srv, std::string(77, '-'));
  service::Srv_Trc_Log(ctx.Srv, "Project Change (" + name + ")");
  service::Srv_Trc_Log(ctx.Srv, std::string(77, '-'));
  ctx.Srv.Ui.All_Unl_Prc();
  ctx.Srv.Prj_Nam = name;
  ctx.Sta.HFl_Nam = host::Get_HFl_Nam(ctx.VBInst);
  Int_Anl_Res(ctx, true);
  return true;
}

// `Alg_Del_Mdl`: modules that are gone leave the tables.
void Alg_Del_Mdl(Anl_Ctx& ctx) {
  std::vector<std::string> gone;
  for (const auto& item : ctx.Tbl.Mdl_Tbl)
    if (!ctx.Tbl.Prj_Mdl.Has(item.key)) gone.push_back(item.key);
  for (const std::string& name : gone) {
    ctx.Tbl.Mdl_Tbl.Remove(name);
    ctx.Tbl.Ref_Tbl.Remove(name);
    ctx.Tbl.Anl_Mdl.Remove(name);
    ctx.Sta.Del_Chg = true;
  }
}

}  // namespace

bool Chk_Mdl_Chg(const Mdl_Entry& entry, const host::CodeModule& module) {
  const Mdl_Code now = Get_Mdl_Cod(module);
  if (now.CCd != entry.CCd) return true;
  if (entry.CCd.empty()) return false;  // an empty module, whatever its blank lines
  // The same lines all through: nothing can have moved.
  if (entry.Lin_Hash != 0 && now.Lin_Hash == entry.Lin_Hash) return false;
  const auto* section = entry.Mem.At(1);
  const int declarations = module.CountOfDeclarationLines();
  const int end = module.CountOfLines();
  if (section == nullptr ||
      !Same_Lines(entry, section->value, module, 1, declarations, declarations == end, now.End_Blk))
    return true;
  service::Collection<char> seen;
  for (int line = declarations + 1; line <= end;) {
    const host::Member_Place place = host::Get_CML_Inf(module, line);
    if (place.Cnt <= 0) return true;
    const std::string* row = entry.Mem.Get(place.Nam);
    if (row == nullptr) return true;
    const int next = place.Top + place.Cnt;
    // A later one of the same name has no row of its own, nor has one that a `Declare` shadows.
    const bool is_api = service::Row_Field(*row, 2) == std::string_view(&kMem_Api, 1);
    if (seen.Add(place.Nam, '*') && !is_api) {
      if (To_Number(service::Row_Field(*row, 6)) != place.Top) return true;
      if (!Same_Lines(entry, *row, module, place.Top, place.Cnt, next > end, now.End_Blk))
        return true;
    }
    line = next;
  }
  return false;
}

bool Chk_Pgm_Inf(Anl_Ctx& ctx, Anl_Progress& progress) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Anl", "Chk_Pgm_Inf");
  Tables& tables = ctx.Tbl;
  ctx.Sta.Del_Chg = false;
  ctx.Sta.Prj_Chg = Chk_Prj_Chg(ctx);
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  if (project == nullptr) return false;

  const auto stamp_and_add = [&](std::string_view name) {
    ctx.Sta.Anl_Dat = service::Stamp(ctx.Srv.Clk.Now());
    service::Add_Col_Itm(tables.Anl_Mdl, name, std::string());
  };
  tables.Prj_Mdl.Clear();
  host::VBComponents& components = project->VBComponents();
  const int count = components.Count();
  for (int i = 1; i <= count; ++i) {
    host::VBComponent* component = components.Item(i);
    if (component == nullptr || !host::Chk_Mdl_Typ(component->Type())) continue;
    const std::string name = component->Name();
    service::Add_Col_Itm(tables.Prj_Mdl, name, std::string("*"));
    if (!tables.Mdl_Tbl.Has(name)) stamp_and_add(name);
  }
  Alg_Del_Mdl(ctx);

  if (ctx.Sta.Edt_Chg || ctx.Sta.Prj_Chg) {
    progress.Dsp_Anl_Res("Chk", {}, static_cast<std::int64_t>(tables.Prj_Mdl.Count()), 0,
                         ctx.Sta.Lin_Sec);
    for (int i = 1; i <= count; ++i) {
      host::VBComponent* component = components.Item(i);
      if (component == nullptr || !host::Chk_Mdl_Typ(component->Type())) continue;
      const std::string name = component->Name();
      progress.Dsp_Anl_Res({}, name, 0, 0, ctx.Sta.Lin_Sec);
      if (tables.Anl_Mdl.Has(name)) continue;
      const auto* entry = tables.Mdl_Tbl.Get(name);
      const host::CodeModule* code = component->CodeModule();
      if (entry != nullptr && code != nullptr && Chk_Mdl_Chg(**entry, *code)) stamp_and_add(name);
    }
    ctx.Sta.Edt_Chg = false;
  }
  for (const auto& item : tables.Mdl_Tbl) {
    const std::string_view caption = service::Row_Field(item.value->Mdl, 3);
    if (caption.empty()) continue;
    if (Rev_Mdl_Typ(ctx.VBInst, ctx.App, ctx.Sta.HFl_Nam, item.key).Mdl_Cap != caption)
      stamp_and_add(item.key);
  }
  if (tables.Anl_Mdl.Empty()) return false;
  ctx.Sta.Anl_New = service::Stamp(ctx.Srv.Clk.Now());
  return true;
}

}  // namespace oru::analyser
