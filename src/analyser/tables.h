// SPDX-License-Identifier: MIT
// The analysis tables: what is known of one project after analysis. Every view, search and report
// reads these tables and nothing else; only the passes and the analysis file write them, so all
// others take `const Tables&`. A row is a text of tab-joined fields: in memory and in the analysis
// file the same bytes. A cursor (`Tbl_Cur`) is a value that a walk declares for itself.
// Between two runs the tables are read-only; `Int_Anl_Res` empties them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "service/collection.h"
#include "service/rows.h"

namespace oru::analyser {

/// The pseudo-member that stands for a module's declaration section, first in every "Mem".
constexpr std::string_view kDeclare = "%Declare";

struct Mdl_Row {
  std::string Mdl_Nam;  ///< module name, the key
  std::string Mdl_Typ;  ///< module type code, see kinds.h
  std::string Mdl_CTx;  ///< module comment
  std::string Mdl_Cap;  ///< workbook file name or sheet tab name, else empty
  static constexpr auto Fields() {
    using R = Mdl_Row;
    return std::array{&R::Mdl_Nam, &R::Mdl_Typ, &R::Mdl_CTx, &R::Mdl_Cap};
  }
};

struct Mem_Row {
  std::string Mem_Nam;  ///< the key; a property carries "(Get)", "(Let)" or "(Set)"
  std::string Mem_Mdl;  ///< module name
  std::string Mem_Knd;  ///< see kMem_*; empty for "%Declare"
  std::string Mem_Scp;  ///< see kScp_*; empty for "%Declare"
  std::string Mem_Sub;  ///< property: "1" Get, "2" Let, "3" Set; Declare: "1" Sub, "2" Function
  std::string Mem_CTx;  ///< member comment
  std::string Mem_Lin;  ///< first line in the module, 1-based; a Declare's statement line
  std::string Mem_Stm;  ///< physical lines of code
  std::string Mem_Cmt;  ///< physical lines of comment-only statements
  std::string Mem_Blk;  ///< blank lines
  std::string Mem_Cpx;  ///< branching statements
  std::string Mem_Nst;  ///< deepest block nesting
  static constexpr auto Fields() {
    using R = Mem_Row;
    return std::array{&R::Mem_Nam, &R::Mem_Mdl, &R::Mem_Knd, &R::Mem_Scp, &R::Mem_Sub, &R::Mem_CTx,
                      &R::Mem_Lin, &R::Mem_Stm, &R::Mem_Cmt, &R::Mem_Blk, &R::Mem_Cpx, &R::Mem_Nst};
  }
};
/// A `Declare` row ends behind `Mem_Blk`.
constexpr std::size_t kDeclare_Row_Fields = 10;

constexpr char kMem_Event = '0';
constexpr char kMem_Sub = '1';
constexpr char kMem_Function = '2';
constexpr char kMem_Property = '3';
constexpr char kMem_Api = '4';

constexpr char kScp_Public = '1';
constexpr char kScp_Private = '2';
constexpr char kScp_Friend = '3';
constexpr char kScp_Local = '4';

struct Def_Row {
  std::string Def_Nam;  ///< without type-declaration character
  std::string Def_Scp;  ///< see kScp_*; of a parameter: position and way of passing, as a text
  std::string Def_Knd;  ///< see kDef_*
  std::string Def_Typ;
  std::string Def_Dim;  ///< array bounds in parentheses without blanks; "()" dynamic; empty scalar
  std::string Def_Val;  ///< a constant's expression, an event's parameter list, a default value
  std::string Def_CTx;
  std::string Def_Mdl;
  std::string Def_Lin;  ///< source line of the statement, 1-based
  static constexpr auto Fields() {
    using R = Def_Row;
    return std::array{&R::Def_Nam, &R::Def_Scp, &R::Def_Knd, &R::Def_Typ, &R::Def_Dim,
                      &R::Def_Val, &R::Def_CTx, &R::Def_Mdl, &R::Def_Lin};
  }
};

constexpr char kDef_Dim = '5';
constexpr char kDef_Const = '6';
constexpr char kDef_Static = '7';
constexpr char kDef_Type = '8';
constexpr char kDef_Enum = 'N';
constexpr char kDef_WithEvents = '9';
constexpr char kDef_Event = 'E';
constexpr char kDef_Variable = 'V';  ///< only a scope word in front
constexpr char kDef_Argument = 'A';

struct InV_Row {
  std::string InV_Nam;  ///< variable or function name
  std::string InV_Mdl;
  std::string InV_Scp;  ///< as `Def_Scp`
  std::string InV_Cls;  ///< "1" a class of the project, "2" known only at a `Set` or `With`
  std::string InV_Knd;  ///< "V" variable, "F" function
  std::string InV_Typ;  ///< the class if `InV_Cls` is "1"
  static constexpr auto Fields() {
    using R = InV_Row;
    return std::array{&R::InV_Nam, &R::InV_Mdl, &R::InV_Scp, &R::InV_Cls, &R::InV_Knd, &R::InV_Typ};
  }
};

struct Ctl_Row {
  std::string Ctl_Nam;  ///< control name, or the word that marks an event source
  std::string Ctl_Typ;
  std::string Ctl_Txt;
  std::string Ctl_Cap;
  std::string Ctl_Tag;
  static constexpr auto Fields() {
    using R = Ctl_Row;
    return std::array{&R::Ctl_Nam, &R::Ctl_Typ, &R::Ctl_Txt, &R::Ctl_Cap, &R::Ctl_Tag};
  }
};

/// True if a field of a row holds that code.
[[nodiscard]] constexpr bool Is_Code(std::string_view field, char code) {
  return field.size() == 1 && field[0] == code;
}

/// One analysed module: the seven items.
struct Mdl_Entry {
  std::string Mdl;                       ///< the `Mdl` row
  service::Collection<std::string> Mem;  ///< key = member name
  std::vector<std::string> InV;
  std::vector<std::string> Def;
  service::Collection<std::string> Ctl;  ///< key = control name; the value may be empty
  std::string RCd;                       ///< reduced code, until the reference pass has read it
  /// The parameters that may hold objects, as "name type", in the order of their members; until the
  /// reference pass has read them.
  struct Argument {
    std::string Mem_Nam, Words;
  };
  std::vector<Argument> Arg;
  std::string CCd;  ///< compared code
  /// What `CCd` cannot show of the lines: a hash of their lengths, without the blank ones at the end.
  std::uint64_t Lin_Hash = 0;
  int Lin_Cnt = 0;  ///< lines of the module when it was read
};

/// The reference marks (`RIf_Dic`): for each `Module.Member` that has one, whether it refers to
/// something and whether something refers to it. Keys are exact and keep the order of adding; the
/// text of an entry is the key followed by the two flags, "1" or "-".
class Ref_Marks {
 public:
  static constexpr unsigned kRefers = 1;
  static constexpr unsigned kReferred = 2;

  /// Empties the marks and makes room for about `expected` new ones.
  void Clear(std::size_t expected);
  /// Sets a flag (`Upd_RIf_Dic`), adding the key if it is new.
  void Set(std::string_view key, unsigned flag);
  /// The flags of a key, 0 if it has no entry.
  [[nodiscard]] unsigned Get(std::string_view key) const;
  [[nodiscard]] std::size_t Count() const { return order_.size(); }
  /// The text of the entry at a position, from 0.
  [[nodiscard]] std::string Text(std::size_t position) const;
  /// The two flags as an entry's text ends with them.
  [[nodiscard]] static std::string Flag_Text(unsigned flags);

 private:
  service::Text_Map<unsigned> flags_;
  std::vector<const std::pair<const std::string, unsigned>*> order_;
};

struct Tables {
  /// Key = module name, in the order of analysis; a module read again moves to the end.
  service::Collection<std::unique_ptr<Mdl_Entry>> Mdl_Tbl;
  /// Key = module name: its outgoing reference records.
  service::Collection<std::string> Ref_Tbl;
  /// All strings of `Ref_Tbl` in table order.
  std::string Ref_All;
  Ref_Marks RIf_Dic;
  int MLL = 9999;                            ///< shortest member name, in characters
  int MHL = 0;                               ///< longest member name, in characters
  service::Collection<std::string> Prj_Mdl;  ///< names of the project's code components
  service::Collection<std::string> Anl_Mdl;  ///< modules to read in this run
  service::Collection<std::string> Rty_Mdl;  ///< modules to read again in the next run
  service::Collection<std::string> Cbk_Col;  ///< names behind `AddressOf`
};

/// Current rows of a walk.
struct Tbl_Cur {
  Mdl_Row Mdl;
  Mem_Row Mem;
  Def_Row Def;
  const Mdl_Entry* Entry = nullptr;  ///< the current module's store (`Cur_Mem` is its "Mem")
};

/// Names an entry: by its key, or by its 1-based position in the table.
struct Tbl_Ix {
  Tbl_Ix(std::string_view name) : Name(name) {}         // NOLINT(google-explicit-constructor)
  Tbl_Ix(const std::string& name) : Name(name) {}       // NOLINT(google-explicit-constructor)
  Tbl_Ix(const char* name) : Name(name) {}              // NOLINT(google-explicit-constructor)
  Tbl_Ix(std::size_t position) : Position(position) {}  // NOLINT(google-explicit-constructor)
  std::string_view Name;
  std::size_t Position = 0;  ///< 0: by name
};

/// Makes a module current. False if there is none.
[[nodiscard]] bool Set_Mdl_Fld(const Tables& tables, Tbl_Cur& cur, const Tbl_Ix& ag_MdlIx);
/// Makes a member current. On failure false: `Mem_Mdl` and `Mem_Nam` are the arguments as text, kind,
/// scope, sub-kind and comment empty, `Mem_Lin` 1.
[[nodiscard]] bool Set_Mem_Fld(const Tables& tables, Tbl_Cur& cur, const Tbl_Ix& ag_MdlIx,
                               const Tbl_Ix& ag_MemIx);
/// Split a given row into the cursor, looking nothing up.
void Set_Mdl_Inf(Tbl_Cur& cur, std::string_view row);
void Set_Mem_Inf(Tbl_Cur& cur, std::string_view row);
void Set_VCs_Inf(Tbl_Cur& cur, std::string_view row);

/// List mark of a member (of a module, with an empty member): "↓" refers, "↑" is referred to,
/// "↓↑" both, else empty.
[[nodiscard]] std::string_view Set_Ref_Mrk(const Tables& tables, std::string_view module,
                                           std::string_view member);

/// "1" if the type word is a code component of the project, "2" for "UserForm", "Form" and
/// "Object", else 0.
[[nodiscard]] char Chk_InV_Typ(const Tables& tables, std::string_view type_word);

/// "Module.Member", the name of a member everywhere.
[[nodiscard]] std::string Full_Name(std::string_view module, std::string_view member);

}  // namespace oru::analyser
