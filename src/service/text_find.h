// SPDX-License-Identifier: MIT
// Finding a word in a text as the host language's `InStr` does: exact, or by its text comparison in
// Japanese, which sees no difference in letter case, in full and half width, and between hiragana
// and katakana. Characters are compared one by one, so that a place found is a place of the source
// text. What is ASCII is searched as bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oru::service {

/// The numbers are the host's.
enum class Compare : std::uint8_t { Binary = 0, Text = 1 };

/// A character as the text comparison sees it: half-width, hiragana, lower case. (Half-width
/// katakana are full-width first; their voice marks stay characters of their own.)
[[nodiscard]] char32_t Fold_Of(char32_t c);

/// A piece of a text, in bytes.
struct Text_Span {
  std::size_t at = 0, size = 0;
  [[nodiscard]] std::size_t End() const { return at + size; }
  bool operator==(const Text_Span&) const = default;
};

class Text_Finder {
 public:
  /// `word` is well-formed UTF-8; an empty one is found nowhere.
  Text_Finder(std::string_view word, Compare compare);

  /// The first place at or behind `from` (which is no place within a character). It may be longer or
  /// shorter in bytes than the word.
  [[nodiscard]] std::optional<Text_Span> Find(std::string_view text, std::size_t from = 0) const;
  [[nodiscard]] bool Is_In(std::string_view text) const { return Find(text).has_value(); }

 private:
  struct Form {
    std::array<char, 4> bytes{};
    std::size_t size = 0;
  };
  [[nodiscard]] char32_t Seen(char32_t c) const {
    return compare_ == Compare::Text ? Fold_Of(c) : c;
  }
  [[nodiscard]] static std::size_t Seek(const Form& form, std::string_view text, std::size_t from,
                                        std::size_t to);
  [[nodiscard]] std::optional<Text_Span> Fits(std::string_view text, Text_Span anchor) const;

  Compare compare_;
  std::u32string word_;      ///< as the comparison sees it
  std::size_t anchor_ = 0;   ///< the character of the word that is looked for first: the rarest
  std::vector<Form> forms_;  ///< all characters that are the same as it, in UTF-8
};

}  // namespace oru::service
