// SPDX-License-Identifier: MIT
#include "query/terminal_writer.h"

#include <fmt/format.h>

#include <array>
#include <limits>
#include <string_view>

#include "query/icons.h"
#include "query/safe_text.h"

namespace oru::query {

namespace {

constexpr std::string_view kReset = "\x1b[0m";

int Distance(Rgb a, Rgb b) {
  const int red = a.red - b.red, green = a.green - b.green, blue = a.blue - b.blue;
  return red * red + green * green + blue * blue;
}

/// Index of the colour that is nearest to `wanted`, the first one of several.
template <std::size_t n>
std::size_t Nearest(const std::array<Rgb, n>& colours, Rgb wanted) {
  std::size_t best = 0;
  int least = std::numeric_limits<int>::max();
  for (std::size_t i = 0; i < n; ++i) {
    const int distance = Distance(colours[i], wanted);
    if (distance >= least) continue;
    least = distance;
    best = i;
  }
  return best;
}

constexpr std::array kAnsi_Colours{
    Rgb{0, 0, 0},       Rgb{128, 0, 0},   Rgb{0, 128, 0},   Rgb{128, 128, 0},
    Rgb{0, 0, 128},     Rgb{128, 0, 128}, Rgb{0, 128, 128}, Rgb{192, 192, 192},
    Rgb{128, 128, 128}, Rgb{255, 0, 0},   Rgb{0, 255, 0},   Rgb{255, 255, 0},
    Rgb{0, 0, 255},     Rgb{255, 0, 255}, Rgb{0, 255, 255}, Rgb{255, 255, 255},
};

/// The colours from number 16 on: a cube of six steps a channel, then greys.
constexpr auto kCube_Colours = [] {
  constexpr std::array<std::uint8_t, 6> steps{0, 95, 135, 175, 215, 255};
  std::array<Rgb, 240> colours{};
  std::size_t at = 0;
  for (const std::uint8_t red : steps)
    for (const std::uint8_t green : steps)
      for (const std::uint8_t blue : steps) colours[at++] = {red, green, blue};
  for (unsigned grey = 8; at < colours.size(); grey += 10) {
    const auto level = static_cast<std::uint8_t>(grey);
    colours[at++] = {level, level, level};
  }
  return colours;
}();

std::string Colour_Code(Term_Colours depth, Rgb rgb) {
  if (depth == Term_Colours::True)
    return fmt::format(";38;2;{};{};{}", rgb.red, rgb.green, rgb.blue);
  if (depth == Term_Colours::Ansi256)
    return fmt::format(";38;5;{}", 16 + Nearest(kCube_Colours, rgb));
  const std::size_t index = Nearest(kAnsi_Colours, rgb);
  return fmt::format(";{}", index < 8 ? 30 + index : 82 + index);
}

class Writer {
 public:
  Writer(const Rich_Text& text, const Term_Options& options) : text_(text), options_(options) {
    for (const Host_Colour colour : text.Colours())
      colour_codes_.push_back(Colour_Code(options.colours, Rgb_Of(colour)));
    // Most of a text of code is ASCII with a change of colour every few characters.
    out_.reserve(text.Text().size() + text.Runs().size() * 16);
  }

  std::string Take() {
    for (const Rich_Run& run : text_.Runs()) {
      if (run.image >= 0) {
        Put_Image(text_.Images()[static_cast<std::size_t>(run.image)]);
        continue;
      }
      For_Each_Line(
          text_.Text(run), [&](std::string_view piece) { Put(piece, run.style); },
          [&] {
            Set_Style({});
            out_ += '\n';
          });
    }
    Set_Style({});
    return std::move(out_);
  }

 private:
  void Put(std::string_view piece, const Run_Style& style) {
    Set_Style(style);
    For_Each_Safe(
        piece, [&](std::string_view safe) { out_ += safe; }, [&] { out_ += kReplacement; });
  }

  void Put_Image(std::string_view tag) {
    const std::string_view word = Icon_Word(tag);
    if (!options_.icons || word.empty()) return;
    Set_Style({});
    out_.append("[").append(word).append("]");
  }

  void Set_Style(const Run_Style& style) {
    if (options_.colours == Term_Colours::None || style == now_) return;
    now_ = style;
    if (style == Run_Style{}) {
      out_ += kReset;
      return;
    }
    out_ += "\x1b[0";  // from the ground up: terminals differ in what they take back one by one
    if (style.bld) out_ += ";1";
    if (style.itl) out_ += ";3";
    if (style.und) out_ += ";4";
    if (style.stk) out_ += ";9";
    if (style.colour != kBase_Colour) out_ += colour_codes_[style.colour - 1U];
    out_ += 'm';
  }

  const Rich_Text& text_;
  const Term_Options& options_;
  std::vector<std::string> colour_codes_;  ///< by slot, from 0
  std::string out_;
  Run_Style now_;
};

}  // namespace

std::string Get_RTx_Term(const Rich_Text& text, const Term_Options& options) {
  return Writer(text, options).Take();
}

}  // namespace oru::query
