// SPDX-License-Identifier: MIT
// Lines of a text and hashes of them. A line end is CR LF, LF, CR, or CR CR LF, also mixed in one
// text; what stands behind the last one is a line only if it is not empty.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace oru::provider {

/// One line: the content is [begin, end), its line end [end, next).
struct Line {
  std::size_t begin = 0, end = 0, next = 0;
  [[nodiscard]] std::string_view Content(std::string_view text) const {
    return text.substr(begin, end - begin);
  }
  [[nodiscard]] std::string_view Line_End(std::string_view text) const {
    return text.substr(end, next - end);
  }
};

/// The line that begins at `begin`, which lies before the text's end.
[[nodiscard]] Line Line_At(std::string_view text, std::size_t begin);
/// All lines of a text.
[[nodiscard]] std::vector<Line> All_Lines(std::string_view text);

/// A 64-bit hash that tells changed bytes from unchanged ones; no protection against intent.
[[nodiscard]] std::uint64_t Hash_Bytes(std::string_view bytes);
/// The hash of a list of lines (as shown) after one more line; a list begins with 0.
[[nodiscard]] std::uint64_t Hash_Line(std::uint64_t list, std::string_view line);

/// The rest of a text behind its leading blanks and tabs.
[[nodiscard]] std::string_view Skip_Blanks(std::string_view text);
/// The text without blanks and tabs at its end.
[[nodiscard]] std::string_view Cut_Blanks(std::string_view text);
/// True if `text` begins with `word`, ASCII letter case aside; `word` is in lower case.
[[nodiscard]] bool Begins_With(std::string_view text, std::string_view word);
/// The line as the editor holds it: one of blanks and tabs alone is empty there.
[[nodiscard]] std::string_view As_Shown(std::string_view line);

}  // namespace oru::provider
