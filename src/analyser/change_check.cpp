// SPDX-License-Identifier: MIT
#include "analyser/change_check.h"

#include "analyser/analysis_file.h"
#include "analyser/change_history.h"
#include "analyser/controls.h"
#include "analyser/kinds.h"
#include "analyser/module_pass.h"
#include "host/derived.h"
#include "host/places.h"

namespace oru::analyser {

namespace {

// Whether a module is another one than it was without a change in its code: of another type, with
// other controls, or with more or fewer blank lines at its end. Only those who edit a project outside the editor can do that unseen.
bool Chk_Shell_Chg(Anl_Ctx& ctx, host::VBComponent& component, const Mdl_Entry& entry) {
  const Mdl_Kind kind = Rev_Mdl_Typ(ctx.VBInst, ctx.App, ctx.Sta.HFl_Nam, component.Name());
  if (kind.Mdl_Typ != service::Row_Field(entry.Mdl, 1)) return true;
  if (component.CodeModule()->CountOfLines() != entry.Lin_Cnt) return true;
  const bool has_controls = component.Type() == host::kType_Form || kind.Mdl_Typ == kTyp_Sheet;
  if (!has_controls) return false;
  Tables scratch;
  const auto silent = [](std::string_view, const std::string&) {};
  Mdl_Ctx pass{ctx.Srv, ctx.VBInst, ctx.App, scratch, ctx.Sta.HFl_Nam, {}, Anl_Options(ctx.Srv.Opt),
               silent,  silent};
  Mdl_Row row;
  row.Mdl_Nam = component.Name();
  row.Mdl_Typ = kind.Mdl_Typ;
  Mdl_Entry now;
  Get_Controls(pass, component, row, now);
  // The controls stand first; behind them are words that the code gave, which have no row.
  std::size_t position = 0;
  for (const auto& item : entry.Ctl) {
    const auto* other = now.Ctl.At(++position);
    const bool same = other != nullptr && other->key == item.key && other->value == item.value;
    if (!same && (other != nullptr || !item.value.empty())) return true;
  }
  return now.Ctl.Count() > entry.Ctl.Count();
}

// The last place at which the user worked, if it is still there and he wants to go on there.
void Open_Last_Place(Anl_Ctx& ctx) {
  if (!ctx.Srv.Opt.Flag("PrcHs")) return;
  for (const auto& item : ctx.Lst.His)
    if (host::Set_Prc_Pos(ctx.VBInst, item.value.Mdl, item.value.Mem, item.value.Lin)) return;
}

// `Chk_Prj_Chg`: the active project is another one than the tables belong to. The old one's
// analysis is saved and the new one's loaded before anything is compared.
bool Chk_Prj_Chg(Anl_Ctx& ctx, Anl_Progress& progress) {
  ctx.Srv.Ui.Close_Progress();
  const std::string name = host::Get_Prj_Nam(ctx.VBInst);
  if (ctx.Srv.Prj_Nam == name) return false;
  service::Srv_Trc_Log(ctx.Srv, std::string(77, '-'));
  service::Srv_Trc_Log(ctx.Srv, "Project Change (" + name + ")");
  service::Srv_Trc_Log(ctx.Srv, std::string(77, '-'));
  ctx.Srv.Ui.All_Unl_Prc();
  if (!ctx.Srv.Prj_Nam.empty() && !ctx.Sta.Fil_Bad) (void)Sav_UpdInf(ctx);
  ctx.Srv.Prj_Nam = name;
  ctx.Sta.HFl_Nam = host::Get_HFl_Nam(ctx.VBInst);
  const host::VBProject* project = ctx.VBInst.ActiveVBProject();
  ctx.Sta.Prj_FP = project == nullptr ? std::string() : project->FileName();
  Int_Anl_Res(ctx, true);
  ctx.Sta.Anl_Chg = false;
  ctx.Sta.Edt_Mdl.clear();
  ctx.Sta.Edt_Mem.clear();
  Lod_UpdInf(ctx, progress);
  Open_Last_Place(ctx);
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
  // An empty module is the same, whatever its blank lines.
  return now.CCd != entry.CCd || (!now.CCd.empty() && now.Lin_Hash != entry.Lin_Hash);
}

bool Chk_Pgm_Inf(Anl_Ctx& ctx, Anl_Progress& progress) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Anl", "Chk_Pgm_Inf");
  Tables& tables = ctx.Tbl;
  ctx.Sta.Del_Chg = false;
  ctx.Sta.Prj_Chg = Chk_Prj_Chg(ctx, progress);
  if (ctx.Sta.Fil_Bad) Int_Anl_Res(ctx, true);
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  if (project == nullptr) return false;

  const auto stamp_and_add = [&](std::string_view name) {
    ctx.Sta.Anl_Dat = service::Stamp(ctx.Srv.Clk.Now());
    service::Add_Col_Itm(tables.Anl_Mdl, name, std::string());
  };
  tables.Prj_Mdl.Clear();
  host::VBComponents& components = project->VBComponents();
  const int count = components.Count();
  // Beside a stored analysis a module that it does not know was made meanwhile.
  const bool outside = ctx.Out_Edt && ctx.Sta.Prj_Chg && !tables.Mdl_Tbl.Empty();
  for (int i = 1; i <= count; ++i) {
    host::VBComponent* component = components.Item(i);
    if (component == nullptr || !host::Chk_Mdl_Typ(component->Type())) continue;
    const std::string name = component->Name();
    service::Add_Col_Itm(tables.Prj_Mdl, name, std::string("*"));
    if (tables.Mdl_Tbl.Has(name)) continue;
    stamp_and_add(name);
    const host::CodeModule* code = outside ? component->CodeModule() : nullptr;
    if (code != nullptr) Rec_Out_Edt(ctx, name, nullptr, *code, ctx.Out_Edt(name));
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
      if (entry == nullptr || code == nullptr) continue;
      if (Chk_Mdl_Chg(**entry, *code)) {
        stamp_and_add(name);
        if (ctx.Out_Edt) Rec_Out_Edt(ctx, name, entry->get(), *code, ctx.Out_Edt(name));
      } else if (outside && Chk_Shell_Chg(ctx, *component, **entry)) {
        stamp_and_add(name);
      }
    }
    ctx.Sta.Edt_Chg = false;
  }
  for (const auto& item : tables.Mdl_Tbl) {
    const std::string_view caption = service::Row_Field(item.value->Mdl, 3);
    if (caption.empty()) continue;
    if (Rev_Mdl_Typ(ctx.VBInst, ctx.App, ctx.Sta.HFl_Nam, item.key).Mdl_Cap != caption)
      stamp_and_add(item.key);
  }
  ctx.Sta.Fil_Bad = false;
  if (tables.Anl_Mdl.Empty()) return false;
  ctx.Sta.Anl_New = service::Stamp(ctx.Srv.Clk.Now());
  return true;
}

}  // namespace oru::analyser
