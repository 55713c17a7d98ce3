// SPDX-License-Identifier: MIT
// A look at the directory of a compound file before the library reads it: the library goes down from
// entry to entry by calls within calls, so that a damaged or hostile chain of entries would take
// the whole stack. Format: [MS-CFB] 2.2 (header), 2.3 (chains of sectors), 2.6 (directory).
#pragma once

#include <cstddef>
#include <string_view>

namespace oru::container {

/// The most entries that lie on one way from the root of the directory down to an entry, 0 if there
/// are none. Nothing readable, a way that comes back to itself, or one longer than `most`: `most`
/// + 1.
[[nodiscard]] std::size_t Directory_Depth(std::string_view bytes, std::size_t most);

}  // namespace oru::container
