// SPDX-License-Identifier: MIT
// The skeleton of a procedure: its statements classed as control statements, calls, comments and
// blank lines, each with the depth of nesting at which it stands. Which of them are rows is told by
// conditions; the depth is counted through all of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "service/text_find.h"

namespace oru::query {

enum Control_State : int { kControls = 0, kCalls = 1, kComments = 2, kEverything = 3 };
/// Classes of comments, by which they are shown.
enum Comment_Class : std::size_t {
  kAbove_Control = 0,
  kOther = 1,
  kEmphasis_1 = 2,
  kEmphasis_2 = 3
};

/// What is shown; the numbers are those of the window's controls.
struct Control_Cond {
  int Sta = kControls;  ///< `FOp_State`: 0 control statements, 1 calls, 2 comments, 3 everything
  int Rng = 0;          ///< `FOp_Scope`: 0 all, 1 from the selected line on
  int Lin = 0;          ///< that line, in the module
  bool Blk = false;     ///< `FCk_SLnOS`: blank lines
  bool Ref = true;      ///< `FCk_RefSt`: statements that call
  bool COt = false;     ///< `FCk_ComOS`: commented-out statements, with everything only
  bool RCm = false;     ///< `FCk_RefCm`: the comment of the called procedure follows
  std::array<bool, 4> Cmt{true, false, true, true};  ///< `FCk_DCom`, by `Comment_Class`
  int Lev = 0;                                       ///< levels shown; 0: all
  bool Directives = true;                            ///< directives are control statements
  bool Jumps = true;                                 ///< On Error and GoTo are
  std::string Ele;                                   ///< the selected element, a word, or empty
  bool Sel = true;  ///< `FCk_SelOt`: with an element, what does not hold it is shown too
};

/// Where a word stands as a whole in lines of code, letter case and width aside.
class Element {
 public:
  explicit Element(std::string_view word);
  /// Byte ranges of the line, in order; none for an empty word.
  [[nodiscard]] std::vector<service::Text_Span> Spans(std::string_view line) const;

 private:
  std::optional<service::Text_Finder> word_;
};

/// A statement that is shown.
struct Control_Row {
  enum class Kind : std::uint8_t { Code, Comment, Blank };
  Kind kind = Kind::Code;
  int Depth = 0;
  int Lno = 0;                     ///< first line in the module, 1-based
  std::vector<std::string> Lines;  ///< physical lines without the indent that all of them share
  std::vector<std::string> Calls;  ///< comments of the called procedures, one for each
  int Mark = 0;                    ///< of a comment: 1 for "①", 2 for "②"
};

/// The procedures that a line calls, by its number in the member, as their comments (which may be
/// empty); none for a line that calls nothing.
using Calls_Of = std::function<std::vector<std::string>(int relative)>;

/// The rows of a range of lines (`Src_Main`, `Chk_Inst`). `first_line` is the module line of the
/// first one, `member_line` that of the member they belong to.
[[nodiscard]] std::vector<Control_Row> Get_Control_Rows(const std::vector<std::string_view>& lines,
                                                        int first_line, int member_line,
                                                        const Control_Cond& cond,
                                                        const Calls_Of& calls);

}  // namespace oru::query
