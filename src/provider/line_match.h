// SPDX-License-Identifier: MIT
// Which lines of an edited text are lines of the old one.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace oru::provider {

constexpr std::size_t kNo_Line = static_cast<std::size_t>(-1);

/// For each line of `now` the index of the equal line of `old` that it is taken for, or kNo_Line.
/// The indexes rise. Equal lines at both ends are always paired; between, lines that come once in
/// both texts are, and short stretches are compared in full.
[[nodiscard]] std::vector<std::size_t> Match_Lines(std::span<const std::string_view> old,
                                                   std::span<const std::string_view> now);

}  // namespace oru::provider
