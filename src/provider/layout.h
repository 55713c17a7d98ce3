// SPDX-License-Identifier: MIT
// Which lines of an exported file are code. The rest, which the editor does not show, is the header
// (VERSION, BEGIN ... END), the layout block of a form, and all `Attribute` lines, those inside
// procedures too. Works on decoded text and keeps no copy of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oru::provider {

/// Whole lines with their line ends: the bytes [begin, end).
struct Range {
  std::size_t begin = 0, end = 0;
};

/// An `Attribute` line, as views into it.
struct Attribute {
  std::string_view member;  ///< "Item" in `Attribute Item.VB_UserMemId = 0`; empty for the module's
  std::string_view name;    ///< "VB_UserMemId"
  std::string_view value;   ///< what follows "=" in the line, without blanks around it
};

struct Layout {
  std::vector<Range> hidden;        ///< what is not code: in order, no two touch
  Range block;                      ///< the first BEGIN ... END block; empty if there is none
  std::optional<std::string> name;  ///< of the first `Attribute VB_Name`
  bool predeclared = false, exposed = false;
  std::uint64_t code_hash = 0;  ///< of the list of code lines (`Hash_Line`)
};

/// Tells code from the rest in one pass. A block that is not closed is no block: in doubt, a line
/// is shown rather than hidden.
[[nodiscard]] Layout Scan_Layout(std::string_view text);
/// The parts of an `Attribute` line; nothing for any other line. The line must begin a statement.
[[nodiscard]] std::optional<Attribute> Parse_Attribute(std::string_view line);
/// The content of a string literal at the beginning of `text` ("" stands for one "); nothing if
/// there is none or it does not end. `rest` is what follows it.
struct Literal {
  std::string content;
  std::string_view rest;
};
[[nodiscard]] std::optional<Literal> Parse_Literal(std::string_view text);
/// Takes the hidden ranges out of the text, in place.
void Remove_Hidden(std::string& text, const std::vector<Range>& hidden);

}  // namespace oru::provider
