// SPDX-License-Identifier: MIT
// One view of the search: its question, the conditions under which it was asked, and its result. A
// search window keeps up to 31 of them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "query/search_kinds.h"
#include "service/text_find.h"

namespace oru::query {

constexpr int kSearch_Views = 31;

enum Search_Scope : int { kIn_Procedure = 0, kIn_Module = 1, kIn_Project = 2 };
enum Search_Option : int { kPartial = 0, kExact = 1, kAssigned = 2 };

/// The conditions of a question; the numbers are those of the window's controls.
struct Search_Cond {
  int Knd = kSearch_Text;  ///< search kind code
  std::string Wrd;         ///< the question's text
  int Opt = kPartial;      ///< `FOp_SrcOp`: 0 "部分", 1 "完全", 2 "代入"
  int Scp = kIn_Project;   ///< `FOp_Scope`: 0 procedure, 1 module, 2 project
  int Cnd = 0;             ///< `FOp_Cond`: 0 all words, 1 any word
  service::Compare Cmp = service::Compare::Text;  ///< `FOp_CCmp`
  bool Cmt = true;                                ///< `FCk_ComSc`: comment text is searched
  bool COt = true;  ///< `FCk_ComOc`: commented-out statements are searched
  bool Prc = true;  ///< `FCk_MemDs`: the result shows procedure lines
  bool Cns = true;  ///< `FCk_CnsDs`: a double quote ends a word
};

struct Search_View {
  Search_Cond Cond;                       ///< `Viw_Knd`, `Viw_Opt` ... as the run took them
  std::string Viw_Wrd;                    ///< the question as shown
  std::string Viw_CMd, Viw_CMm;           ///< module and member under the caret when the run began
  std::string Viw_SMd, Viw_SMm;           ///< module and member that the scope means, else empty
  std::string Viw_RMd, Viw_RMm, Viw_RSc;  ///< kind 18: the target; empty: take it from the caret
  std::string Viw_Pos;                    ///< relative line, tab, member, tab, module of the caret
  std::string Viw_Tim;                    ///< time of the run, "YYMMDDHHMMSS"; empty: no run yet
  int Viw_Hit = 0;                        ///< statements found
  bool Viw_Rep = false;                   ///< replacing is allowed on this result
  bool Viw_Rdo = false;                   ///< a replacement can be taken back
  std::vector<std::string> Words;  ///< the words of the run (`Src_Wds`), empty elements at the end
  std::vector<std::string> Row;    ///< `FLs_Result`: sorted rows, see result_rows.h
  std::string Message;             ///< the pane's text where there are no rows
};

}  // namespace oru::query
