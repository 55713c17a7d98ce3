// SPDX-License-Identifier: MIT
// Replacing the words of a search result, line by line in the code panes, and taking it back. A line
// that is no longer the one that was found is told and left alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "query/query_context.h"
#include "query/search_view.h"

namespace oru::query {

/// One line that a replacement changed.
struct Undo_Line {
  std::string Mdl;
  int Lno = 0;  ///< line in the module, 1-based
  std::string Old, New;
  bool operator==(const Undo_Line&) const = default;
};
/// All lines of a replacement with its words; empty: there is none.
struct Undo_List {
  std::vector<Undo_Line> Lines;
  std::vector<std::string> Old_Words, New_Words;
};

struct Replace_Result {
  std::string Error;                 ///< Japanese: why nothing was done; empty on success
  std::vector<Undo_Line> Lines;      ///< what was, or would be, changed, in order
  std::vector<std::string> Skipped;  ///< places that were left alone, and why
  [[nodiscard]] bool Ok() const { return Error.empty(); }
};

/// The checks of `Frm_Replace`: the message why the words cannot replace those of the view, or
/// nothing. Both have as many elements; those of empty search words do not count.
[[nodiscard]] std::string Chk_Rep_Wds(const Search_View& view,
                                      const std::vector<std::string>& rep_wds);

/// What a replacement would change (`Rep_Word` without writing). All words are replaced in one pass
/// over the old text. A trailing comment that the search left out is left alone; with "代入" only the
/// places that made the hit change.
[[nodiscard]] Replace_Result Plan_Replacement(const Query_Ctx& ctx, const Search_View& view,
                                              const std::vector<std::string>& rep_wds);

/// Writes planned lines: each takes the place of its old text, or is told in `Skipped` if that is
/// not there any more. `back` puts the old texts in the place of the new ones. Lines that were
/// written stay in `Lines`.
void Write_Lines(const Query_Ctx& ctx, Replace_Result& plan, bool back);

}  // namespace oru::query
