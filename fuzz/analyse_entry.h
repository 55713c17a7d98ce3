// SPDX-License-Identifier: MIT
// Fuzz entry for the analysis: the input is the text of up to four modules (a standard module, a
// class, a form, a document) with a form feed between them. Whatever stands in them, the run comes
// to its end, every line is counted once, and a second look finds nothing changed.
#pragma once

#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include "../tests/support/fake_store.h"
#include "analyser/analysis_file.h"
#include "analyser/definitions.h"
#include "analyser/driver.h"
#include "analyser/references.h"
#include "analyser/table_text.h"
#include "host/memory_editor.h"
#include "require.h"
#include "service/codec.h"
#include "service/text.h"
#include "silent_user.h"

namespace oru::fuzz {

inline void Require_Readable(const analyser::Tables& tables) {
  const analyser::Line_Sink one_line = [](std::string_view tag, std::string_view row) {
    Require(tag.size() == 4 && row.find('\n') == std::string_view::npos, "a record is one line");
  };
  for (const auto& item : tables.Mdl_Tbl) {
    analyser::Put_Module_Block(tables, *item.value, one_line);
    Require(item.value->Mem.At(1)->key == analyser::kDeclare, "the section stands first");
    Require(item.value->RCd.empty(), "reduced code has been read");
  }
  analyser::Put_Ref_Marks(tables, one_line);
}

inline void Run_Analyse(std::string_view input) {
  static const auto page = service::Code_Page::Open(65001);
  const std::string text = service::Decode(input, service::Encoding::Utf8, *page).text;
  constexpr std::array types{host::kType_Module, host::kType_Class, host::kType_Form,
                             host::kType_Document};
  Silent_User user;
  const service::System_Clock clock;
  service::Services services(user, clock, {});
  host::Memory_Editor editor;
  host::Memory_Project& project = editor.Add_Project("Fuzz", "Fuzz.xlsm");
  std::size_t count = 0;
  for (const std::string_view piece : service::Split(text, "\f")) {
    if (count == types.size()) break;
    host::Component_Data data;
    data.name = std::string("Mod") + static_cast<char>('A' + count);
    data.type = types[count];
    data.has_designer = data.type == host::kType_Form;
    data.text = piece;
    project.Add_Component(std::move(data));
    ++count;
  }

  analyser::Tables tables;
  analyser::Anl_State state;
  analyser::Kept_Lists lists;
  analyser::Anl_Ctx ctx{services, editor, nullptr, tables, state, lists};
  const auto run = [&] {
    return service::Run_Evt(services, "Mod_Anl", "Get_Pgm_Inf",
                            [&] { (void)analyser::Get_Pgm_Inf(ctx, true); });
  };
  Require(run(), "the analysis comes to its end");
  Require(tables.Mdl_Tbl.Count() == count, "every module is there");
  Require_Readable(tables);
  const analyser::Anl_Options options(services.Opt);
  for (const auto& item : tables.Mdl_Tbl)
    for (const auto& member : item.value->Mem)
      (void)analyser::Set_Def_Tbl(tables, editor, options, item.key, member.key,
                                  analyser::Def_Reach::Project, false);
  for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(tables.Ref_All, {}, cursor);)
    Require(!cursor.Record.Ref_Lns.empty(), "a record has lines");

  state.Edt_Chg = true;
  Require(run() && state.Mdl_Cnt == 0, "a second look finds nothing changed");

  test::Fake_Store store;
  ctx.Fil = &store;
  Require(state.Prj_FP == "Fuzz.xlsm" && analyser::Sav_UpdInf(ctx), "what was analysed is saved");
  services.Prj_Nam.clear();
  Require(run() && state.Fil_Why.empty() && state.Mdl_Cnt == 0, "a new start reads no module");
  Require(tables.Mdl_Tbl.Count() == count, "and finds every module");
}

}  // namespace oru::fuzz
