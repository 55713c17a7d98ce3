// SPDX-License-Identifier: MIT
// The one builder of every coloured text: runs of text with their attributes, and pictures between
// them. It knows no output format; the writers beside it make RTF, HTML and terminal text of it.
// All text lies in one growing buffer, and a run is a range of it, so that a text of many thousand
// rows costs no allocation per run. Runs that nothing tells apart are one run.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "service/text.h"

namespace oru::query {

/// A colour as the host has it: red in the lowest byte, then green, then blue.
using Host_Colour = std::int32_t;
/// A slot of the colour table, 1-based; slot 1 is the base colour.
using Colour_Index = std::uint8_t;
constexpr std::size_t kColour_Slots = 16;
constexpr Colour_Index kBase_Colour = 1;

struct Rgb {
  std::uint8_t red = 0, green = 0, blue = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};
/// The channels of a host's colour; what stands above them does not count.
[[nodiscard]] Rgb Rgb_Of(Host_Colour colour);

/// The attributes of a run.
struct Run_Style {
  Colour_Index colour = kBase_Colour;
  bool und = false, bld = false, itl = false, stk = false;
  friend bool operator==(const Run_Style&, const Run_Style&) = default;
};

/// One run: a range of the text, or a picture (then `size` is 0).
struct Rich_Run {
  std::size_t begin = 0;     ///< byte offset in `Text()`
  std::size_t size = 0;      ///< bytes
  std::int32_t spacing = 0;  ///< line spacing from here on, twips; 0: as before
  std::int32_t image = -1;   ///< index into `Images()`, or -1
  Run_Style style;
};

class Rich_Text {
 public:
  /// Empty, ready for `Int_RTx_Inf`.
  Rich_Text() = default;

  /// Starts a text: base colour, font, its size in points, the standard line spacing in twips. What
  /// was held before goes.
  void Int_RTx_Inf(Host_Colour base, std::string_view font_name, float font_size,
                   std::int32_t spacing);
  /// Lets go of the text and its memory; the colour table keeps the base colour only.
  void Rls_RTx_Inf();

  /// Appends a run. `text` is UTF-8, a line end is CR LF. `spacing`: line spacing in twips from this
  /// paragraph on, 0 to leave it. A colour index that is not in use counts as the base colour.
  void Set_RTx_Txt(std::string_view text, std::int32_t spacing, Colour_Index colour, bool und,
                   bool bld, bool itl, bool stk);
  /// The same with the attributes in one value and the spacing left as it is.
  void Add(std::string_view text, const Run_Style& style = {}) { Append(text, 0, style); }
  /// Appends a picture, by its icon tag. It counts no character.
  void Set_RTx_Img(std::string_view tag);
  /// Appends a plain message, in which the two characters "\n" stand for a line end.
  void Edt_RTx_Msg(std::string_view message);

  /// The slot of a colour, which is added if it is new. A colour for which no slot is left gets the
  /// base colour's.
  [[nodiscard]] Colour_Index Set_RTx_CIx(Host_Colour colour);

  /// Plain characters written so far; CR LF counts two.
  [[nodiscard]] service::Chr_Count RTx_Len() const { return service::Chr_Count{length_}; }
  /// All text, without attributes.
  [[nodiscard]] const std::string& Text() const { return text_; }
  [[nodiscard]] std::string_view Text(const Rich_Run& run) const {
    return std::string_view(text_).substr(run.begin, run.size);
  }
  [[nodiscard]] std::span<const Rich_Run> Runs() const { return runs_; }
  [[nodiscard]] std::span<const std::string> Images() const { return images_; }
  /// The colours in use, slot 1 first.
  [[nodiscard]] std::span<const Host_Colour> Colours() const {
    return std::span(colours_).first(colour_count_);
  }
  [[nodiscard]] const std::string& Font_Name() const { return font_name_; }
  [[nodiscard]] float Font_Size() const { return font_size_; }

 private:
  void Append(std::string_view text, std::int32_t spacing, Run_Style style);

  std::string text_;
  std::vector<Rich_Run> runs_;
  std::vector<std::string> images_;
  std::array<Host_Colour, kColour_Slots> colours_{};
  std::size_t colour_count_ = 1;
  std::int64_t length_ = 0;
  std::string font_name_;
  float font_size_ = 0;
};

/// Calls `put(piece)` for each stretch of a text without line ends, and `end_line()` for each line
/// end: CR LF, and a CR or LF that stands alone.
template <class Put, class End_Line>
void For_Each_Line(std::string_view text, Put put, End_Line end_line) {
  while (true) {
    const std::size_t at = text.find_first_of("\r\n");
    if (at != 0 && !text.empty()) put(text.substr(0, at));
    if (at == std::string_view::npos) return;
    end_line();
    text.remove_prefix(at + (text.substr(at).starts_with("\r\n") ? 2 : 1));
  }
}

}  // namespace oru::query
