// SPDX-License-Identifier: MIT
// The pictures that stand for modules, members and variables in coloured texts: tiles of 16 by 16
// pixels with a letter. What is seen from everywhere is a filled tile, what is private to a module
// or a procedure an outlined one; the colour tells the kind. A tile has two colours, white and its
// own.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "query/rich_text.h"

namespace oru::query {

constexpr std::size_t kIcon_Side = 16;
/// Rows from top to bottom, each from left to right.
using Icon_Pixels = std::array<Rgb, kIcon_Side * kIcon_Side>;

/// The tile of an icon tag ("C_Module", "V_Local"); an unknown tag gives a grey tile without letter.
[[nodiscard]] Icon_Pixels Get_Icon(std::string_view tag);
/// One word for the tag, where there are no pictures ("Module", "Sub"); empty for an unknown tag.
[[nodiscard]] std::string_view Icon_Word(std::string_view tag);

}  // namespace oru::query
