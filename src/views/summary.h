// SPDX-License-Identifier: MIT
// The project at a glance: how many modules and procedures of each kind, how many lines, which
// procedure is the longest, the deepest, the most complex, and how many nothing refers to.
#pragma once

#include <array>
#include <map>
#include <string>

#include "analyser/tables.h"

namespace oru::views {

/// A member and the number that made it stand out; an empty name if there is none.
struct Peak {
  std::string Member;  ///< `Module.Member`
  int Value = 0;
};

struct Project_Summary {
  std::map<int, int> Modules;  ///< module type code -> count
  int Module_Count = 0;
  std::array<int, 5> Members{};  ///< by `Mem_Knd` 0..4: event, Sub, Function, Property, API
  long long Code = 0, Comment = 0, Blank = 0;  ///< physical lines
  Peak Longest;                                ///< code, comment and blank lines
  Peak Deepest;                                ///< block nesting
  Peak Most_Complex;                           ///< branching statements
  int Unreferenced = 0;                        ///< Subs and Functions that nothing refers to
};

/// Reads the tables; of equal members the first one stands.
[[nodiscard]] Project_Summary Get_Summary(const analyser::Tables& tables);

}  // namespace oru::views
