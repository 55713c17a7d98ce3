// SPDX-License-Identifier: MIT
// The rows of a search result: texts of tab-joined fields that sort into the order of the result,
// because each begins with its sort key. The last field is a blank and the row's type.
//   " L"  module rank, module                                  the blank line before a module
//   " M"  module rank, module                                  the module's line
//   " P"  module rank, module, procedure rank + order, member  the procedure's line
//   " R"  as " P", line * 100 + index in seven digits, text, relative line, hit names ...
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "query/keyword_colours.h"

namespace oru::query {

struct Result_Row {
  char Type = 0;  ///< 'L', 'M', 'P' or 'R'
  std::string_view Mdl, Mem;
  int Lno = 0;                         ///< line in the module when it was searched, 1-based
  int Index = 0;                       ///< of the line in its statement, from 0
  std::string_view Text;               ///< the line as it stands, tabs as blanks, without the mark
  int Mark = 0;                        ///< 1 for "①", 2 for "②", else 0
  int Relative = 0;                    ///< line in the member, 1-based
  std::vector<std::string_view> Hits;  ///< the names to mark
};
/// Splits a row; the views point into it.
[[nodiscard]] Result_Row Read_Row(std::string_view row);

/// The options that decide the order of a result.
struct Row_Order {
  bool By_Name = false;                  ///< procedures by name, else in the order of the source
  std::string First_Mdl, First_Mem;      ///< the declaration of the word: rank "X"; empty: no such
  std::string Current_Mdl, Current_Mem;  ///< under the caret: rank "Y"; empty: no such
};

/// What is reported as one hit.
struct Hit {
  std::string_view Mdl, Mem;
  int Mem_Ix = 0;          ///< position of the member in its module
  int CMm_Sta = 1;         ///< first line of the member
  int Lno = 0;             ///< line of the statement in the module
  std::string_view Lin;    ///< its physical lines, joined by CR LF
  std::string_view Names;  ///< names to mark, separated by tabs
};
/// Adds the rows of a hit, those of its module and (with `procedures`) its member included. They
/// are in order, each once, after `Sort_Rows`.
void Add_Hit_Rows(std::vector<std::string>& rows, const Row_Order& order, bool procedures,
                  const Hit& hit);
/// Sorts by character code and drops rows that stand there twice.
void Sort_Rows(std::vector<std::string>& rows);

}  // namespace oru::query
