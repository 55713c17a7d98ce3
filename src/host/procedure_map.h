// SPDX-License-Identifier: MIT
// The procedures of one module. Nothing is stored: each answer is found by procedure_rule.h from the
// verdicts of the lines, and the last ones are kept until the next edit.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "host/code_lines.h"
#include "host/model.h"
#include "host/procedure_rule.h"

namespace oru::host {

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

  [[nodiscard]] Line_Header Header_At(int named) const;
  void Fill_Index() const;
  void Forget_Old() const;

  const Code_Lines& lines_;
  mutable std::uint64_t edits_ = 0, structure_edits_ = 0;  ///< what the kept answers are for
  mutable std::optional<int> declaration_end_;
  mutable Procedure_Extent last_;                  ///< of the last `At`
  mutable std::optional<Procedure_Extent> found_;  ///< of the last `Find`, with what was sought
  mutable std::string found_name_;
  mutable ProcKind found_kind_ = ProcKind::Proc;
  mutable std::vector<Index_Entry> index_;
  mutable bool indexed_ = false;
};

}  // namespace oru::host
