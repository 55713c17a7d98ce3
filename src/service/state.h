// SPDX-License-Identifier: MIT
// What the user keeps that is no option: his fixed phrases, and where screens were left. It stands
// in "DA-Sta.VMO" in the data folder, a text of one record a line; docs/formats.md tells the layout.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/collection.h"
#include "service/services.h"

namespace oru::service {

/// Most fixed phrases.
constexpr std::size_t kMost_Phrases = 99;

struct State {
  std::vector<std::string> Phrases;  ///< title, "#||||#", body; a line break is "#vbCrLf#"
  Dictionary<std::string> Screens;   ///< state of a screen by its name
  std::string Read;                  ///< the file's bytes as they were read or written last
};

/// The text of the file.
[[nodiscard]] std::string State_Text(const State& state);
/// Takes a file's text; false, and nothing taken, for one of another kind.
[[nodiscard]] bool Set_State_Text(State& state, std::string_view text);

/// Reads the file. A missing one leaves the state empty; one that cannot be used is kept beside as
/// "DA-Sta.VMO.bak" before it is ever written.
void Lod_State(Services& services, State& state);
/// Writes the file if the state differs from it. A failure is logged, and no more.
void Upd_State(Services& services, State& state);

}  // namespace oru::service
