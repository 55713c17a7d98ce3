// SPDX-License-Identifier: MIT
#include "service/state.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "service/files.h"
#include "service/text.h"

namespace oru::service {

namespace {

constexpr std::string_view kFile_Name = "DA-Sta.VMO";
constexpr std::string_view kFirst_Line = "Sta1";
constexpr char kPhrase = 'P', kScreen = 'S';

}  // namespace

std::string State_Text(const State& state) {
  std::string text = fmt::format("{}\r\n", kFirst_Line);
  for (const auto& [name, value] : state.Screens)
    text += fmt::format("{}{}\t{}\r\n", kScreen, name, value);
  for (const std::string& phrase : state.Phrases) text += fmt::format("{}{}\r\n", kPhrase, phrase);
  return text;
}

bool Set_State_Text(State& state, std::string_view text) {
  State read;
  bool first = true;
  if (!text.ends_with('\n') || !Is_Utf8(text)) return false;
  for (std::string_view line : Split(text.substr(0, text.size() - 1), "\n")) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (std::exchange(first, false)) {
      if (line != kFirst_Line) return false;
    } else if (line.starts_with(kPhrase) && read.Phrases.size() < kMost_Phrases) {
      read.Phrases.emplace_back(line.substr(1));
    } else if (line.starts_with(kScreen) && line.find('\t') != std::string_view::npos) {
      const std::size_t tab = line.find('\t');
      read.Screens.Put(line.substr(1, tab - 1), std::string(line.substr(tab + 1)));
    } else {
      return false;
    }
  }
  state.Phrases = std::move(read.Phrases);
  state.Screens = std::move(read.Screens);
  return true;
}

void Lod_State(Services& services, State& state) {
  state = {};
  if (services.Data_Folder.empty()) return;
  const std::filesystem::path path = services.Data_Folder / kFile_Name;
  Read_Result file = Read_File(path);
  if (!file.Ok()) return;
  state.Read = std::move(file.bytes);
  if (!Set_State_Text(state, state.Read)) Keep_Aside(path);
}

void Upd_State(Services& services, State& state) {
  if (services.Data_Folder.empty()) return;
  std::string text = State_Text(state);
  if (text == state.Read) return;
  const std::filesystem::path path = services.Data_Folder / kFile_Name;
  const File_Result written = Write_File(
      path, text, state.Read.empty() ? std::nullopt : std::optional<std::string>(state.Read));
  if (written.Ok()) {
    state.Read = std::move(text);
    return;
  }
  Srv_Log_Err(services, "Mod_Srv", "Upd_State Path=" + Path_Text(path), written.error);
}

}  // namespace oru::service
