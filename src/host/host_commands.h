// SPDX-License-Identifier: MIT
// The editor's own commands, run by pressing entries of its menus: it offers no other way to them.
// The captions are those of a Japanese editor. An editor whose menus lack one of them ends the
// add-in, which depends on these entries.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "host/model.h"
#include "service/services.h"

namespace oru::host {

/// One command: where its entry is, and what is pressed there.
struct Hst_Command {
  std::string_view Key;
  std::string_view Bar;
  std::array<std::string_view, 2> Menus;    ///< from the bar down to the entries; "" for none
  std::array<std::string_view, 2> Entries;  ///< pressed in this order; "" for none
  std::string_view Other = {};   ///< caption of the first entry in other editions; "" for none
  bool Marks = false;            ///< sets or clears bookmarks: events run behind it
  std::string_view Option = {};  ///< the option without which nothing is pressed; "" for none
};

/// All commands.
[[nodiscard]] std::span<const Hst_Command> Hst_Commands();

/// Runs a command. True if all its entries were pressed, or its option is off. False if one is
/// missing or refuses: the user has been told, and `Services::Unl_Req` is set. A key that the table
/// does not hold is a fault of the program (`std::logic_error`).
[[nodiscard]] bool Exc_Hst_Cmd(VBE& vbe, service::Services& services, std::string_view key);

}  // namespace oru::host
