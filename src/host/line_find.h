// SPDX-License-Identifier: MIT
// The editor's search inside one line: plain or by pattern, whole words, letter case. Where letter
// case does not matter, a plain target is compared as the host compares texts in Japanese: full and
// half width and the kinds of kana do not matter either. Works on byte offsets; the caller turns
// them into columns.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "service/text_find.h"

namespace oru::host {

struct Byte_Range {
  std::size_t begin = 0, end = 0;  ///< [begin, end)
};

class Line_Finder {
 public:
  /// A pattern knows `*` (any text), `?` (any character), `#` (a digit), `[list]` and `[!list]`
  /// with ranges; a "[" without its "]" is itself. Throws kErr_Bad_Call for a pattern with
  /// `match_case`. An empty target is found nowhere.
  Line_Finder(std::string_view target, bool whole_word, bool match_case, bool pattern);

  /// The first hit that lies in [from, to) of the line. With `*` it is the shortest text from the
  /// first place where a hit can begin.
  [[nodiscard]] std::optional<Byte_Range> Find(std::string_view line, std::size_t from,
                                               std::size_t to) const;
  /// True if the target may stand in a text of several lines; never false where it does. Much faster
  /// than asking for each line.
  [[nodiscard]] bool May_Stand_In(std::string_view text) const;

 private:
  struct Any {};
  struct Digit {};
  struct List {
    bool exclude = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;
  };
  using Step = std::variant<char32_t, Any, Digit, List>;
  using Piece = std::vector<Step>;  ///< what stands between two `*`

  void Read_Pattern(std::string_view target);
  [[nodiscard]] static bool Fits(const Step& step, char32_t character);
  [[nodiscard]] std::optional<Byte_Range> Find_Plain(std::string_view line, std::size_t from,
                                                     std::size_t to) const;
  [[nodiscard]] std::optional<Byte_Range> Find_Pattern(std::string_view line, std::size_t from,
                                                       std::size_t to) const;
  [[nodiscard]] std::optional<Byte_Range> Find_Piece(const Piece& piece, std::string_view line,
                                                     std::size_t from, std::size_t to,
                                                     bool word_begins, bool word_ends) const;

  bool whole_word_;
  std::optional<service::Text_Finder> plain_;  ///< none for a pattern
  std::vector<Piece> pieces_;                  ///< of a pattern
};

}  // namespace oru::host
