// SPDX-License-Identifier: MIT
// Where the lines that the editor does not show go when the code around them was edited.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "provider/line_match.h"

namespace oru::provider {

/// Hidden lines that stay together: one attribute with its continuation lines, or a header line.
struct Hidden_Lines {
  std::size_t first = 0, last = 0;  ///< 0-based lines of the file
  std::size_t behind = 0;           ///< number of code lines in front of them
  std::string_view member;          ///< of a member's attribute, else empty
};

/// For each of `hidden` the number of new code lines in front of it, or kNo_Line if it goes because
/// its member is gone. What stands before all code stays there. `match` is that of `Match_Lines`.
[[nodiscard]] std::vector<std::size_t> Place_Hidden(std::span<const Hidden_Lines> hidden,
                                                    std::span<const std::string_view> old_code,
                                                    std::span<const std::string_view> new_code,
                                                    std::span<const std::size_t> match);

}  // namespace oru::provider
