// SPDX-License-Identifier: MIT
// Text as the system holds it: UTF-8 bytes inside. Three units never mix: a byte offset in our
// text (size_t), a character of the editor (Chr_Count: UTF-16 code units), and a width in bytes of
// code page 932, which is also the column on a screen (Wid_Count). "blank" is U+0020 only. The
// host language's string routines stand here once, with its semantics.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace oru::service {

/// A count or 1-based position in characters of the editor (UTF-16 code units).
enum class Chr_Count : std::int64_t {};
/// A count in bytes of code page 932: half-width characters take 1, full-width ones 2.
enum class Wid_Count : std::int64_t {};

constexpr std::int64_t To_Int(Chr_Count n) {
  return static_cast<std::int64_t>(n);
}
constexpr std::int64_t To_Int(Wid_Count n) {
  return static_cast<std::int64_t>(n);
}

/// The text without blanks at its left, right, or both ends. Tabs stay.
[[nodiscard]] std::string_view Trim_Left(std::string_view text);
[[nodiscard]] std::string_view Trim_Right(std::string_view text);
[[nodiscard]] std::string_view Trim(std::string_view text);

/// The text up to the first blank, or all of it; `text` keeps what stands behind that blank.
[[nodiscard]] std::string_view Take_Word(std::string_view& text);

/// All pieces between the separators, empty ones included; one empty piece for an empty text.
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text,
                                                  std::string_view separator);

/// `text` with every occurrence of `from` (not empty) replaced, left to right.
[[nodiscard]] std::string Replace_All(std::string_view text, std::string_view from,
                                      std::string_view to);

/// The text with a blank for each control character.
[[nodiscard]] std::string Without_Controls(std::string_view text);

/// Simple lower case of one character.
[[nodiscard]] char32_t Lower_Of(char32_t code_point);
/// Each character replaced by its simple lower case (one character for one).
[[nodiscard]] std::string To_Lower(std::string_view text);
/// Equality after `To_Lower`.
[[nodiscard]] bool Equal_No_Case(std::string_view a, std::string_view b);
/// Length in bytes of the beginning of `text` that equals `head`, letter case aside; npos if it does
/// not begin with it. (The two may differ in bytes.)
[[nodiscard]] std::size_t Match_No_Case(std::string_view text, std::string_view head);
/// The first byte offset at or behind `from` where `what` stands, letter case aside, or npos.
[[nodiscard]] std::size_t Find_No_Case(std::string_view text, std::string_view what,
                                       std::size_t from = 0);

/// Length in characters of the editor.
[[nodiscard]] Chr_Count Len_Chr(std::string_view text);
/// Length in bytes of code page 932.
[[nodiscard]] Wid_Count Len_Wid(std::string_view text);
/// Byte offset of the 1-based character `position`; the text's size if it lies behind the end.
[[nodiscard]] std::size_t Byte_Of_Chr(std::string_view text, Chr_Count position);
/// 1-based character position of a byte offset that lies on a character's first byte.
[[nodiscard]] Chr_Count Chr_Of_Byte(std::string_view text, std::size_t offset);
/// `text` padded with blanks to `width`, at the right or (for `Pad_Left`) at the left; never cut.
[[nodiscard]] std::string Pad_Right(std::string_view text, Wid_Count width);
[[nodiscard]] std::string Pad_Left(std::string_view text, Wid_Count width);

/// At most `most` bytes of the text, cut at a character's end, with "…" behind it if it was cut.
[[nodiscard]] std::string Cut_Bytes(std::string_view text, std::size_t most);

/// One code point decoded at `offset`, which moves behind it. A byte that is no UTF-8 is taken
/// alone and gives U+FFFD.
[[nodiscard]] char32_t Next_Code_Point(std::string_view text, std::size_t& offset);
/// Appends the UTF-8 form of a code point.
void Append_Code_Point(std::string& text, char32_t code_point);
/// Bytes of code page 932 that a character takes: 1 or 2.
[[nodiscard]] int Width_Of(char32_t code_point);
/// True if the bytes are well-formed UTF-8.
[[nodiscard]] bool Is_Utf8(std::string_view bytes);

/// The host language's `IsNumeric` of a text.
[[nodiscard]] bool Is_Numeric(std::string_view text);
/// The host language's `Val`: the number at the text's beginning, blanks passed over; 0 if none.
[[nodiscard]] double Val(std::string_view text);
/// The number with the format "######" (or any run of "#"): nothing for 0.
[[nodiscard]] std::string Format_Hash(std::int64_t number);
/// The number with the format "00000".
[[nodiscard]] std::string Format_Five(std::int64_t number);

}  // namespace oru::service
