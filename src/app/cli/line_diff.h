// SPDX-License-Identifier: MIT
// The difference of two texts in the unified form: three lines around each change, "-" for what
// goes, "+" for what comes.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace oru::app {

/// Who reads the difference. For a patch the lines stand byte by byte; on a terminal U+FFFD takes
/// the place of what would be obeyed instead of shown.
enum class Diff_For : std::uint8_t { Patch, Terminal, Coloured_Terminal };

/// The difference under the name of its file; empty for equal texts. Lines are without line ends; in
/// the result each ends with LF.
[[nodiscard]] std::string Unified_Diff(std::span<const std::string_view> old,
                                       std::span<const std::string_view> now, std::string_view name,
                                       Diff_For reader);

}  // namespace oru::app
