// SPDX-License-Identifier: MIT
// Recognition of declared names in statements, by word position and exact keyword: variables,
// constants, types, enumerations, events, parameters.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analyser/comments.h"
#include "analyser/tables.h"
#include "host/model.h"

namespace oru::analyser {

/// One declared name with the piece of the statement that declares it.
struct Def_Found {
  Def_Row Row;        ///< `Def_Mdl` and `Def_Lin` are the caller's to fill
  std::string Piece;  ///< for `Chk_Cls_Inf`: the first name's text, or a later name's own piece
};

/// The scope digit of a declaration's scope word ("1", "2", "3"), or 0 for any other word.
[[nodiscard]] char Scope_Of(std::string_view word);

/// False for a statement that declares nothing, told by its first word alone; trimmed or not.
[[nodiscard]] bool May_Define(std::string_view statement);

/// One declaration statement (`Chk_Def_Inf`, with `Set_DSc_Inf` for the further names of a list):
/// fills `found` with its names, in order; none if the statement declares nothing. `in_declare`
/// tells whether it stands in a declaration section.
void Chk_Def_Inf(std::string_view statement, bool in_declare, std::vector<Def_Found>& found);

/// An element of a `Type` block.
struct Typ_Element {
  std::string Nam, Typ, Dim, CTx;
};
/// One line of a `Type` block; nothing for a line that holds only a comment.
[[nodiscard]] std::optional<Typ_Element> Chk_Typ_Inf(std::string_view line);

/// An element of an `Enum` block.
struct Enm_Element {
  std::string Nam;
  long long Val = 0;
  std::string CTx;
};
/// One line of an `Enum` block. `counter` is the value of the element before, -1 at the header.
[[nodiscard]] std::optional<Enm_Element> Chk_Enm_Inf(std::string_view line, long long& counter);

/// Name of the `Declare` at a module line; empty if there is none.
[[nodiscard]] std::string Chk_Api_Def(const host::CodeModule& module, int line);

/// A member as the host knows it, from the name that the tables use.
struct Host_Name {
  std::string_view Nam;
  host::ProcKind Knd = host::ProcKind::Proc;
};
/// "Price(Get)" is the procedure "Price" of kind Get.
[[nodiscard]] Host_Name To_Host_Name(std::string_view mem_nam);

/// The header statement of a procedure as it stands, joined over its continuations; empty if the
/// module has no such procedure.
[[nodiscard]] std::string Get_Prc_Hed(const host::CodeModule& module, std::string_view mem_nam);

/// The pieces of a header's parameter list; none for an empty list.
[[nodiscard]] std::vector<std::string_view> Split_Arguments(std::string_view header);
/// One parameter, at its 1-based position; module, line and comment are the caller's to fill.
[[nodiscard]] Def_Row Parse_Argument(std::string_view piece, int position);
/// The word behind " As ", a ":" at its end removed; empty if there is no " As ".
[[nodiscard]] std::string_view As_Type(std::string_view text);

/// The parameters of a procedure (`Arg_Col`): rows of kind "A", the comment of each looked up in the
/// comment block above the header.
[[nodiscard]] std::vector<Def_Row> Set_Arg_Inf(const host::CodeModule& module,
                                               std::string_view mdl_nam, std::string_view mem_nam,
                                               const Anl_Options& options);

/// Which names of other modules `Set_Def_Tbl` gives.
enum class Def_Reach { Module, Project };

/// The names visible from a member, as `Def` rows with a one-digit prefix: "0" parameters and local
/// names (taken fresh from the editor; none with `all` or for "%Declare"), "1" the module's own,
/// "2" public ones of the other modules (all of them with `all`).
struct Visible_Names {
  std::vector<std::string> Rows;
  service::Collection<std::string> Types;  ///< the `Type` rows met, key = type name
};
[[nodiscard]] Visible_Names Set_Def_Tbl(const Tables& tables, host::VBE& vbe,
                                        const Anl_Options& options, std::string_view mdl_nam,
                                        std::string_view mem_nam, Def_Reach reach, bool all);

}  // namespace oru::analyser
