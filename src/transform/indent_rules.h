// SPDX-License-Identifier: MIT
// The rules of the code formatter: the lines between a procedure's header and its end in, the same
// lines indented out. A state machine over statements that looks at no more than their first words
// and, for an `If`, at the last one. Pure text; linear in the size of the body.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace oru::transform {

constexpr std::size_t kMost_Depth = 37;  ///< blocks that may be open at a time

/// What becomes of a label line that stands at the first column, where the real editor puts labels
/// back to.
enum class Label_Lines : std::uint8_t { Indented, Stay };

struct Indent_Options {
  int Idt_Cnt = 4;      ///< `FTx_IdtCn`: blanks per level
  bool Rev_Dec = true;  ///< `FCk_RevDS`: the declarations at the beginning are indented too
  Label_Lines Labels = Label_Lines::Indented;
};

struct Indented {
  std::vector<std::string> Lines;       ///< one for each line given
  std::optional<std::size_t> Too_Deep;  ///< index of the line that opens one block too many; then
                                        ///< there are no lines
};

/// Indents a body. `base` is the number of blanks in front of the procedure's header. An empty first
/// line comes out as a single tab, which an editor holds as an empty line.
[[nodiscard]] Indented Indent_Body(std::span<const std::string> body, std::size_t base,
                                   const Indent_Options& options);

}  // namespace oru::transform
