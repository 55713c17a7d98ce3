// SPDX-License-Identifier: MIT
// What a command did to the code in the editor, back into the project's files, with a record beside
// the project by which `oru undo` takes all of it back.
#pragma once

#include <cstddef>
#include <string_view>

#include "app/cli/commands.h"

namespace oru::app {

struct Edits_Written {
  int exit = 0;           ///< `kExit_Ok`, or what went wrong was told
  std::size_t files = 0;  ///< that have other bytes now
};
/// Writes all modules that were edited. `what` names the change in messages ("置換"). Where the
/// record cannot be written, the files get their old bytes back.
[[nodiscard]] Edits_Written Write_Edits(const Work& work, const Output& output,
                                        std::string_view what, bool signed_too);

}  // namespace oru::app
