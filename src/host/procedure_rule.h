// SPDX-License-Identifier: MIT
// Which line of a module belongs to which procedure. The rule, which stands nowhere else:
//
// - The declaration section ends with the last line above the first header that is neither blank
//   nor comment. Without any header the whole module is declarations.
// - What stands between it and the first header belongs to the first procedure. What follows an
//   end belongs to the next procedure, behind the last end to the last one.
// - A header met while a procedure is open belongs to the open one, so that two headers in the
//   branches of an `#If` around one body make one procedure, and one without an end runs on to the
//   next end or the module's end. An end met while none is open does nothing.
//
// The section and all procedures are thus a partition of the module.
//
// `Lines` is any source of judged lines (line_class.h) with `Count()`, the state `Before(line)`, and
// `Next_With(line, flags)` and `Prev_With(line, flags)`: the first line at or behind `line`, the
// last one at or before it, whose verdict has one of the flags, 0 if there is none. The cost of each
// routine is that of a few such searches around its place.
#pragma once

#include "host/line_class.h"

namespace oru::host {

/// The lines of one procedure.
struct Procedure_Extent {
  int named = 0;  ///< the line with its name
  int start = 0;  ///< first line
  int body = 0;   ///< first line of the header statement
  int end = 0;    ///< last line
  [[nodiscard]] int Count() const { return end - start + 1; }
};

/// First line of the header statement whose name stands at `named`.
template <class Lines>
[[nodiscard]] int Body_Of(Lines& lines, int named) {
  while (In_Header(lines.Before(named))) --named;
  return named;
}

/// Last line of the declaration section, 0 if there is none.
template <class Lines>
[[nodiscard]] int Declaration_End_Of(Lines& lines) {
  const int named = lines.Next_With(1, kLine_Opens);
  return named == 0 ? lines.Count() : lines.Prev_With(Body_Of(lines, named) - 1, kLine_Code);
}

/// The line that names the procedure which holds a line behind the declaration section.
template <class Lines>
[[nodiscard]] int Named_At(Lines& lines, int line) {
  // Of the headers behind an end only the first one counts.
  const auto first_behind_end = [&](int before) {
    return lines.Next_With(lines.Prev_With(before, kLine_Closes) + 1, kLine_Opens);
  };
  const int named = first_behind_end(line - 1);
  if (named != 0) return named;
  return first_behind_end(lines.Prev_With(lines.Count(), kLine_Opens) - 1);
}

/// The extent of the procedure that is named at `named`, as `Named_At` gives it.
template <class Lines>
[[nodiscard]] Procedure_Extent Extent_Of(Lines& lines, int named, int declaration_end) {
  Procedure_Extent extent;
  extent.named = named;
  extent.body = Body_Of(lines, named);
  // The first end behind an earlier header is the end of the procedure before this one.
  const int earlier = lines.Prev_With(named - 1, kLine_Opens);
  extent.start = 1 + (earlier == 0 ? declaration_end : lines.Next_With(earlier, kLine_Closes));
  const int end = lines.Next_With(named, kLine_Closes);
  const bool is_last = end == 0 || lines.Next_With(end + 1, kLine_Opens) == 0;
  extent.end = is_last ? lines.Count() : end;
  return extent;
}

}  // namespace oru::host
