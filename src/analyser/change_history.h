// SPDX-License-Identifier: MIT
// Where and when the user edits: the update strings of modules and members, and the history of
// edited members, newest first, each of them in it once. Recorded from the caret when an edit is
// seen in the code window; for a project that is edited elsewhere, from the difference between
// stored and present code. All of it is kept in the analysis file.
//
// An update string is the moment, "YYMMDDHHMMSS", the line in five digits, and the module's name or
// `Module.Member`. The line of a member is counted from its first line, 1-based; that of a module
// is the module's own.
#pragma once

#include <string>
#include <string_view>

#include "analyser/driver.h"

namespace oru::analyser {

/// The update string of a key: a module's name, or procedure name, ".", module name. Empty if the
/// key has none.
[[nodiscard]] std::string Prc_Upd_Inf(const Kept_Lists& lists, std::string_view key);

/// Records an edit at the caret: the module's update string when the module is another one than at
/// the last recording, the member's when module, member or line differ; the member moves to the
/// head of the history. In any case the next run compares texts. True if it recorded a member.
bool Upd_Edt_Inf(Anl_Ctx& ctx);

/// Puts the caret's place at the head of the history, unless it stands there with the same line.
void Set_Sif_Inf(Anl_Ctx& ctx);

/// Records an edit that was made outside the editor: `stored` is what the analysis knew of the
/// module, null if it is new. The place is the first line of `now` at which the compared code
/// differs; where only blank lines came or went, the first line of the first member whose lines
/// have moved or grown.
void Rec_Out_Edt(Anl_Ctx& ctx, std::string_view module, const Mdl_Entry* stored,
                 const host::CodeModule& now, std::string_view moment);

/// Moves the caret within the procedure at the caret: 1 its header, 2 its last changed line, 3 its
/// last line. False if the caret is in no procedure, or (2) no change is known of it.
bool Mov_Prc_His(Anl_Ctx& ctx, int kind);

/// Takes out what belongs to modules and members that the tables no longer hold; called after the
/// whole project was read.
void Del_Old_Upd(Kept_Lists& lists, const Tables& tables);

}  // namespace oru::analyser
