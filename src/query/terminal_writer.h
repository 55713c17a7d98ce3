// SPDX-License-Identifier: MIT
// Rich text for a terminal. The base colour is the terminal's own, whatever its background is. No
// escape sequence of the text's own gets through, and no attribute lasts over a line's end, so that
// lines may be cut, paged and filtered.
#pragma once

#include <cstdint>
#include <string>

#include "query/rich_text.h"

namespace oru::query {

/// What the terminal can show. `None`: plain text, not even bold.
enum class Term_Colours : std::uint8_t { None, Ansi16, Ansi256, True };

struct Term_Options {
  Term_Colours colours = Term_Colours::True;
  bool icons = false;  ///< pictures as a word in brackets; else left out
};

/// The text with LF as line end. Control characters other than tab and line end, and bytes that are
/// no UTF-8, become U+FFFD.
[[nodiscard]] std::string Get_RTx_Term(const Rich_Text& text, const Term_Options& options);

}  // namespace oru::query
