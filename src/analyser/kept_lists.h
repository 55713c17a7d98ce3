// SPDX-License-Identifier: MIT
// What travels with a project beside its tables: the update strings and the history of edits, and
// the lists of views that the analysis file keeps without understanding them. They belong to one
// project: a change of project replaces them, an analysis that is thrown away does not touch them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "service/collection.h"

namespace oru::analyser {

/// Most rows that are written of each list.
constexpr std::size_t kSrc_Rows = 777;
constexpr std::size_t kCnd_Rows = 77;
constexpr std::size_t kCtl_Rows = 77;

/// One place of the history of edits.
struct His_Entry {
  std::string Mom;  ///< moment of the recording, "YYMMDDHHMMSS"; empty if it is not known
  int Lin = 1;      ///< line of the member, 1-based
  std::string Mdl;  ///< module
  std::string Mem;  ///< member, "%Declare" for the declaration section
};

struct Kept_Lists {
  std::string Exp_Val;  ///< "F": the value last used by code export
  std::string Dif_Val;  ///< "G": the value kept by the comparison with saved code
  /// "M": update strings of modules; key = module name.
  service::Collection<std::string> Mdl_Upd;
  /// "P": update strings of members; key = `Module.Member`.
  service::Collection<std::string> Mem_Upd;
  /// "S": history of edits, newest first; key = `Module.Member`.
  service::Collection<His_Entry> His;
  std::vector<std::string> Sav;                 ///< "E": saved code entries
  std::array<std::vector<std::string>, 3> Src;  ///< "T": search histories 0 to 2
  std::vector<std::string> Cnd;                 ///< "H": search conditions
  std::vector<std::string> Ctl;                 ///< "V": control histories; begins with a
                                                ///< `Module.Member`, up to a tab if there is one
};

}  // namespace oru::analyser
