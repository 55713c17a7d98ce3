// SPDX-License-Identifier: MIT
// Fuzz entry for the analysis file and the state file. The input is the lines of an analysis file;
// the checksum that belongs to them is put behind, so that the lines themselves are looked at.
#pragma once

#include <fmt/format.h>
#include <xxhash.h>

#include <string>
#include <string_view>

#include "../tests/support/fake_store.h"
#include "analyser/analysis_file.h"
#include "host/memory_editor.h"
#include "require.h"
#include "service/state.h"
#include "silent_user.h"

namespace oru::fuzz {

class Still_Clock final : public service::Clock {
 public:
  [[nodiscard]] service::Date_Time Now() const override { return {}; }
  [[nodiscard]] std::int64_t Milliseconds() const override { return 0; }
};

inline void Run_Analysis_File(std::string_view input) {
  using namespace oru::analyser;
  constexpr const char* kFile = "/job/Book1.VMH";
  std::string bytes(input);
  bytes += "#Sum";
  std::size_t modules = 0;
  for (std::size_t at = bytes.find("#Mdl"); at != std::string::npos;
       at = bytes.find("#Mdl", at + 1))
    ++modules;
  for (std::size_t i = 0; i < modules; ++i) bytes += "1f,2;";
  bytes += fmt::format("{:016x}\r\n", XXH3_64bits(bytes.data(), bytes.size()));

  Silent_User user;
  const Still_Clock clock;
  // Loads and saves again; the bytes that were written, empty if the file was refused.
  const auto turn = [&](const std::string& from) {
    test::Fake_Store store;
    store.Put(kFile, from);
    service::Services services(user, clock, {});
    services.Prj_Nam = "Book1";
    host::Memory_Editor editor;
    (void)editor.Add_Project("VBAProject", "/job/Book1.xlsm");
    Tables tables;
    Anl_State state;
    state.Prj_FP = "/job/Book1.xlsm";
    Kept_Lists lists;
    Anl_Ctx ctx{services, editor, nullptr, tables, state, lists, &store};
    Anl_Progress progress(services);
    Lod_UpdInf(ctx, progress);
    if (!state.Fil_Why.empty()) {
      Require(tables.Mdl_Tbl.Empty() && lists.His.Empty() && lists.Mdl_Upd.Empty(),
              "a refused file gives nothing");
      Require(state.Fil_Bad, "a refused file is told");
      return std::string();
    }
    state.Anl_Chg = true;
    Require(Sav_UpdInf(ctx), "what was loaded can be saved");
    return store.files[kFile].bytes;
  };
  const std::string saved = turn(bytes);
  if (!saved.empty()) Require(turn(saved) == saved, "what was saved stays as it is");

  service::State read;
  if (service::Set_State_Text(read, input)) {
    const std::string text = service::State_Text(read);
    service::State again;
    Require(service::Set_State_Text(again, text), "a state that was read can be read again");
    Require(service::State_Text(again) == text, "and stays as it is");
  }
}

}  // namespace oru::fuzz
