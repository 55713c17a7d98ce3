// SPDX-License-Identifier: MIT
// The detail pane of the chart as coloured text: which procedure, what it is, and the statements by
// which it calls or is called, read from the live code with their lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "query/keyword_colours.h"
#include "query/query_context.h"
#include "query/result_text.h"

namespace oru::query {

/// The module lines, 1-based, that a record's list of offsets means, where the caller stands now;
/// none if it is gone.
[[nodiscard]] std::vector<int> Lines_Of_Record(const Query_Ctx& ctx, std::string_view module,
                                               std::string_view member, std::string_view offsets);

class Chart_Pane {
 public:
  Chart_Pane(const Query_Ctx& ctx, bool absolute_lines);

  /// "★" and a message.
  void Star(std::string_view message);
  /// A procedure's row: icon, name, module, direction mark, comment.
  void Set_DIf_Prc(std::string_view module, std::string_view member, std::string_view mark);
  /// The arrow between caller and callee.
  void Arrow();
  /// A procedure's header statement.
  void Header(std::string_view module, std::string_view member);
  /// The statements of a reference, behind " →", or behind " □" those of error handling.
  void Set_DIf_Ref(std::string_view module, std::string_view member, std::string_view offsets,
                   bool error_section);
  /// Moves the text out, and the module line of each place, 0 for rows that are none.
  void Take(Result_Text& text, std::vector<int>& lines);

 private:
  void Begin_Row(int line);
  void Statement(const host::CodeModule& code, int line, int member_line, std::string_view mark);

  const Query_Ctx& ctx_;
  bool absolute_;
  Text_Styles styles_;
  Result_Text text_;
  std::vector<int> lines_;
};

}  // namespace oru::query
