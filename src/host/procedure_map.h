// SPDX-License-Identifier: MIT
// Which line of a module belongs to which procedure. The rule, which holds nowhere else:
//
// - The declaration section ends with the last line above the first header that is neither blank
//   nor comment. Without any header the whole module is declarations.
// - What stands between it and the first header belongs to the first procedure. What follows an
//   end belongs to the next procedure, behind the last end to the last one.
// - A header met while a procedure is open belongs to the open one, so that two headers in the
//   branches of an `#If` around one body make one procedure, and one without an end runs on to the
//   next end or the module's end. An end met while none is open does nothing.
//
// The section and all procedures are thus a partition of the module. Nothing is stored: each answer
// is found from the verdicts of the lines, and the last ones are kept until the next edit.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "host/code_lines.h"
#include "host/model.h"

namespace oru::host {

/// The lines of one procedure.
struct Procedure_Extent {
  int named = 0;  ///< the line with its name
  int start = 0;  ///< first line
  int body = 0;   ///< first line of the header statement
  int end = 0;    ///< last line
  [[nodiscard]] int Count() const { return end - start + 1; }
};

class Procedure_Map {
 public:
  /// `lines` must outlive the map.
  explicit Procedure_Map(const Code_Lines& lines) : lines_(lines) {}

  /// Last line of the declaration section, 0 if there is none.
  [[nodiscard]] int Declaration_End() const;
  /// The procedure that holds a line (1 .. Count()); an empty name for the declaration section. The
  /// name points into the text.
  [[nodiscard]] Line_Header At(int line) const;
  /// The first procedure of the name (letter case aside) and kind.
  [[nodiscard]] std::optional<Procedure_Extent> Find(std::string_view name, ProcKind kind) const;

 private:
  struct Index_Entry {
    std::size_t hash;
    int opening;  ///< which of the lines that open, so that it survives moved lines
  };

  /// The extent of the procedure whose header (met while none was open) has its name at `named`.
  [[nodiscard]] Procedure_Extent Extent_Of(int named) const;
  /// The line that names the procedure which holds `line`; 0 if there is no procedure.
  [[nodiscard]] int Named_At(int line) const;
  [[nodiscard]] int Body_Of(int named) const;
  [[nodiscard]] Line_Header Header_At(int named) const;
  void Fill_Index() const;
  void Forget_Old() const;

  const Code_Lines& lines_;
  mutable std::uint64_t edits_ = 0, structure_edits_ = 0;  ///< what the kept answers are for
  mutable std::optional<int> declaration_end_;
  mutable Procedure_Extent last_;  ///< of the last `At`
  mutable std::vector<Index_Entry> index_;
  mutable bool indexed_ = false;
};

}  // namespace oru::host
