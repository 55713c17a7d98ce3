// SPDX-License-Identifier: MIT
// The compression of macro sources and of the directory of a macro project ([MS-OVBA] 2.4.1):
// chunks of 4096 bytes, each with references back into itself.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace oru::workbook {

/// The unpacked bytes; nothing if the packed ones are damaged: no signature, a chunk that ends
/// early, a reference to before its chunk's beginning, more than 4096 bytes in a chunk, or more than
/// `most` bytes in all (a few bytes can stand for 4096).
[[nodiscard]] std::optional<std::string> Decompress(std::string_view packed, std::size_t most);

/// Packs bytes so that `Decompress` gives them again. A last piece below 4096 bytes with hardly any
/// repetition can only be held filled up with zero bytes, as the host does it: these come back too.
[[nodiscard]] std::string Compress(std::string_view bytes);

}  // namespace oru::workbook
