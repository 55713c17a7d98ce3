// SPDX-License-Identifier: MIT
// Text of others on its way to a screen: what a terminal or a page would obey instead of show.
#pragma once

#include <cstddef>
#include <string_view>

#include "service/text.h"

namespace oru::query {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

/// True for control characters of both sets, and for the marks that turn the direction of the text
/// around, by which code can be shown in another order than it has. A tab is safe.
[[nodiscard]] constexpr bool Is_Unsafe(char32_t c) {
  return (c < 0x20 && c != U'\t') || (c >= 0x7F && c < 0xA0) || (c >= 0x200E && c <= 0x200F) ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

/// Calls `put(stretch)` for the stretches of a line that are safe, and `replace()` for each unsafe
/// character and each byte that is no UTF-8.
template <class Put, class Replace>
void For_Each_Safe(std::string_view line, Put put, Replace replace) {
  std::size_t begin = 0;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t start = at;
    const char32_t c = service::Next_Code_Point(line, at);
    const bool no_utf8 = c == 0xFFFD && at == start + 1;
    if (!Is_Unsafe(c) && !no_utf8) continue;
    if (start > begin) put(line.substr(begin, start - begin));
    replace();
    begin = at;
  }
  if (begin < line.size()) put(line.substr(begin));
}

}  // namespace oru::query
