// SPDX-License-Identifier: MIT
// A change of a module's code, and the guard that every change goes through, whichever tool makes
// it: what the editor cannot hold, what is meant for a text that is no longer there, and what loses
// characters that should be kept is refused whole, before anything is written.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/model.h"

namespace oru::host {

/// Lines that take the place of others, all without line ends.
struct Line_Change {
  int Line = 1;                  ///< the first of them in the module, 1-based
  std::vector<std::string> Old;  ///< the lines as they were read; none: `New` goes in before `Line`
  std::vector<std::string> New;  ///< none: the old lines go
};

/// What a change has to leave as it was.
enum class Keeps {
  Nothing,
  All_But_Blanks  ///< every character that is no blank, no tab and no line end, in its order
};

/// The part of the guard that compares characters, for a change that takes the place of a text that
/// is not in the module yet: empty if `New` has those of `Old`, blanks aside.
[[nodiscard]] std::string Chk_Visible(std::string_view module, const Line_Change& change);

/// Why the changes cannot be made: in Japanese, with the module and the line as it stands there
/// now. Empty if they can. The changes are in order of their lines, none over another.
[[nodiscard]] std::string Chk_Change(const CodeModule& code, std::string_view module,
                                     std::span<const Line_Change> changes, Keeps keeps);

struct Change_Result {
  std::string Error;     ///< that of `Chk_Change`, or what the host said; then nothing is changed
  bool Changed = false;  ///< the module has another text now
  [[nodiscard]] bool Ok() const { return Error.empty(); }
};

/// Makes all changes or none. Each takes one `ReplaceLine`, or one `DeleteLines` and one
/// `InsertLines`; one that would change nothing takes none. Where the host refuses one of them,
/// those before it are taken back.
[[nodiscard]] Change_Result Do_Change(CodeModule& code, std::string_view module,
                                      std::span<const Line_Change> changes, Keeps keeps);

/// The lines of a range (which may be empty) as they stand, for `Line_Change::Old`.
[[nodiscard]] std::vector<std::string> Lines_Of(const CodeModule& code, int start, int count);

}  // namespace oru::host
