// SPDX-License-Identifier: MIT
// The difference of two texts in the unified form: three lines around each change, "-" for what
// goes, "+" for what comes.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace oru::app {

/// The difference under the name of its file; empty for equal texts. Lines are without line ends; in
/// the result each ends with LF. `colours`: escape sequences for a terminal, and no control
/// characters of the lines' own.
[[nodiscard]] std::string Unified_Diff(std::span<const std::string_view> old,
                                       std::span<const std::string_view> now, std::string_view name,
                                       bool colours);

}  // namespace oru::app
