// SPDX-License-Identifier: MIT
// The rows of a search as one coloured text, with the place of each row in it, so that a row can be
// found under a click and a module or procedure in a list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analyser/tables.h"
#include "query/result_rows.h"
#include "query/rich_text.h"
#include "query/search_view.h"
#include "service/keywords.h"
#include "service/pattern.h"
#include "service/settings.h"
#include "service/text_find.h"

namespace oru::query {

struct Result_Text {
  Rich_Text Text;
  std::vector<service::Chr_Count>
      Begins;  ///< where each row of the view begins, 0-based characters
};

/// What a result is coloured by.
struct Result_Style {
  const service::Settings& Opt;
  const service::Keywords& KWd;
  bool absolute_lines = false;  ///< numbers of the module's lines, else of the member's
};

/// The words of a view's question as they are marked in a line.
class Hit_Marker {
 public:
  explicit Hit_Marker(const Search_View& view);
  /// Byte ranges of the line to mark, in order, none over another. `names` are those of the row.
  [[nodiscard]] std::vector<service::Text_Span> Spans(
      std::string_view line, const std::vector<std::string_view>& names) const;

 private:
  bool whole_words_;
  std::string_view delimiters_;
  service::Compare compare_;
  std::vector<service::Text_Finder> words_;
};

/// `Set_Res_Lin` and `Set_Res_Lop`: the text of all rows.
[[nodiscard]] Result_Text Set_Res_Lin(const analyser::Tables& tables, const Search_View& view,
                                      const Result_Style& style);

/// A text of one message, for a pane without rows.
[[nodiscard]] Result_Text Message_Text(std::string_view message, const Result_Style& style);

/// `Set_Not_Msg`: what stands in the pane when nothing was found; "\n" in it is a line end.
[[nodiscard]] std::string Set_Not_Msg(const Search_View& view);

}  // namespace oru::query
