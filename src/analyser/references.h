// SPDX-License-Identifier: MIT
// The reference pass: turns the reduced code of each changed module into reference records, which
// member refers to which member, on which lines, and whether from an error-handling section.
// Resolution is by name, word by word, against an index of all members of the project.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "analyser/tables.h"
#include "service/services.h"

namespace oru::analyser {

/// What the reference pass works with.
struct Ref_Ctx {
  service::Services& Srv;
  Tables& Tbl;
  /// Takes a problem that did not stop the pass.
  std::function<void(std::string_view module, std::string text)> Problem;
};

/// Lets events run; false stops the pass (a cancel).
using Go_On = std::function<bool()>;
/// Told before each module that is read; false stops the pass.
using Module_Step = std::function<bool(std::string_view module)>;

/// Reads the modules of `Anl_Mdl` (`Get_Ref_Man`): widens `MLL` and `MHL`, replaces their strings
/// in `Ref_Tbl`, empties their "RCd", and makes `Ref_All` and `RIf_Dic` anew. True if a string
/// differs from the one before. A pass that was stopped leaves the tables unusable.
bool Get_Ref_Man(const Ref_Ctx& ctx, const Go_On& go_on, const Module_Step& step);

/// Rewrites indexed parts of a masked statement, from the right: "Foo(i).Bar" becomes "i Foo.Bar",
/// so that the index is looked at by itself and the member stays qualified.
void Del_Mod_Idx(std::string& statement);

/// Makes `Ref_All` from `Ref_Tbl`, and `RIf_Dic` from `Ref_All`.
void Join_Ref_Texts(Tables& tables);

/// One reference record read back.
struct Ref_Record {
  std::string_view Caller;  ///< `Module.Member`
  std::string_view Target;  ///< `Module.Member`, also in its two parts
  std::string_view Tgt_Mdl;
  std::string_view Tgt_Mem;
  std::string_view Ref_Lns;  ///< five-digit line offsets in the caller, joined by blanks
  char Ref_Flg = 'N';        ///< 'N' normal flow, 'Y' error-handling section
};

/// Position of a walk over a reference text; starts at 0.
struct Ref_Cursor {
  std::size_t Position = 0;
  Ref_Record Record;
};

/// What `Set_Ref_Fld` looks for; empty parts match everything.
struct Ref_Filter {
  std::string_view Caller;  ///< `Module.Member`
  std::string_view Tgt_Mdl;
  std::string_view Tgt_Mem;
};

/// Moves to the next record that fits. The views point into `text`. False at the end.
[[nodiscard]] bool Set_Ref_Fld(std::string_view text, const Ref_Filter& filter, Ref_Cursor& cursor);

}  // namespace oru::analyser
