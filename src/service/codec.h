// SPDX-License-Identifier: MIT
// Bytes of files to text and back: UTF-8, UTF-16, and code pages through the platform (iconv).
// This header alone decides what an undecodable byte and an unmappable character become: the
// former becomes U+FFFD and is counted, the latter makes the encoding fail as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace oru::service {

enum class Encoding : std::uint8_t { Utf8, Utf8_Bom, Utf16_Le_Bom, Utf16_Be_Bom, Code_Page };

struct Decoded {
  std::string text;                ///< UTF-8; each undecodable byte (UTF-16: unit) became U+FFFD
  std::size_t bad_bytes = 0;       ///< number of undecodable bytes
  std::size_t first_bad = 0;       ///< byte offset of the first undecodable byte, if any
  std::size_t first_bad_text = 0;  ///< byte offset in `text` of what stands for it
};

/// A converter for one Windows code page. It is immutable and may be shared. Bytes below 128 mean
/// themselves in it, and a line end is never part of a longer character.
class Code_Page {
 public:
  /// `number` is the Windows number (932, 1252, ... and 65001 for UTF-8). Null for a code page that
  /// the platform does not know or that breaks the class's promise (EBCDIC, stateful ones).
  [[nodiscard]] static std::shared_ptr<const Code_Page> Open(int number);
  virtual ~Code_Page() = default;
  [[nodiscard]] virtual int Number() const = 0;
  /// A lead byte without a fitting second byte is undecodable alone; what follows is read anew, so
  /// that a damaged character never takes a quotation mark or a line end with it.
  [[nodiscard]] virtual Decoded Decode(std::string_view bytes) const = 0;
  /// Null if a character (U+FFFD among them) has no place in the code page. What is encoded
  /// decodes to the same text again: look-alikes are not put in a character's place.
  [[nodiscard]] virtual std::optional<std::string> Encode(std::string_view text) const = 0;
};

/// Tells the encoding: a byte order mark, else well-formed UTF-8 (ASCII alone counts as the code
/// page, in which the bytes mean the same), else the code page.
[[nodiscard]] Encoding Detect_Encoding(std::string_view bytes);
/// Decodes; a byte order mark is not part of the text. `page` serves `Encoding::Code_Page`.
[[nodiscard]] Decoded Decode(std::string_view bytes, Encoding encoding, const Code_Page& page);
/// The same for bytes that are no longer needed: where they are the text already, they are not
/// copied.
[[nodiscard]] Decoded Decode_Moved(std::string bytes, Encoding encoding, const Code_Page& page);
/// Encodes without a byte order mark; null as `Code_Page::Encode`, and for text that is no
/// well-formed UTF-8.
[[nodiscard]] std::optional<std::string> Encode(std::string_view text, Encoding encoding,
                                                const Code_Page& page);
/// The text of UTF-16, little-endian and without a byte order mark; what is undecodable is U+FFFD.
[[nodiscard]] std::string Text_Of_Utf16(std::string_view bytes);
/// The byte order mark of an encoding, or nothing.
[[nodiscard]] std::string_view Byte_Order_Mark(Encoding encoding);

}  // namespace oru::service
