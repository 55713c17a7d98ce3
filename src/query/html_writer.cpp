// SPDX-License-Identifier: MIT
#include "query/html_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

#include "query/icons.h"
#include "query/safe_text.h"

namespace oru::query {

namespace {

std::string Colour_Text(Host_Colour colour) {
  const Rgb rgb = Rgb_Of(colour);
  return fmt::format("#{:02x}{:02x}{:02x}", rgb.red, rgb.green, rgb.blue);
}

// A name as a string of a style sheet. Escapes end with a blank; "<" is escaped too, since it could
// end the style element.
std::string Css_String(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = byte >= 0x80 || c == ' ' || c == '-' || (c >= '0' && c <= '9') ||
                       (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (plain) {
      out += c;
    } else {
      fmt::format_to(std::back_inserter(out), "\\{:x} ", static_cast<unsigned>(byte));
    }
  }
  return out += '"';
}

std::string Base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8U | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    for (std::size_t k = 0; k < 4; ++k)
      out += i + k <= bytes.size() ? kDigits[group >> (18U - 6U * k) & 0x3FU] : '=';
  }
  return out;
}

// A bitmap with a palette and four bits a pixel: a tile has two colours, and a page thousands of
// tiles.
std::string Bitmap(const Icon_Pixels& pixels) {
  constexpr std::uint32_t side = kIcon_Side, row_bytes = side / 2, header_bytes = 54;
  constexpr std::size_t most_colours = 16;
  std::vector<Rgb> palette;
  const auto index_of = [&](const Rgb& pixel) {
    const auto found = std::ranges::find(palette, pixel);
    const auto index = static_cast<std::size_t>(found - palette.begin());
    if (found == palette.end() && palette.size() < most_colours) palette.push_back(pixel);
    return static_cast<unsigned>(std::min(index, most_colours - 1));
  };
  std::string rows;
  for (std::uint32_t y = side; y-- > 0;) {  // from the bottom up
    for (std::uint32_t x = 0; x < side; x += 2) {
      const unsigned left = index_of(pixels[y * side + x]);
      rows += static_cast<char>(left << 4U | index_of(pixels[y * side + x + 1]));
    }
  }
  std::string out = "BM";
  const auto put = [&](std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFFU);
  };
  const auto colours = static_cast<std::uint32_t>(palette.size());
  const std::uint32_t pixels_at = header_bytes + 4 * colours;
  put(pixels_at + side * row_bytes, 4);
  put(0, 4);
  put(pixels_at, 4);
  put(40, 4);
  put(side, 4);
  put(side, 4);
  put(1, 2);  // planes
  put(4, 2);  // bits a pixel
  put(0, 4);  // not packed
  put(side * row_bytes, 4);
  put(0, 4);
  put(0, 4);
  put(colours, 4);
  put(0, 4);
  for (const Rgb& colour : palette) {
    put(colour.blue, 1);
    put(colour.green, 1);
    put(colour.red, 1);
    put(0, 1);
  }
  return out + rows;
}

void Append_Escaped(std::string& out, std::string_view text) {
  For_Each_Line(
      text,
      [&](std::string_view piece) {
        For_Each_Safe(
            piece,
            [&](std::string_view safe) {
              for (const char c : safe) {
                switch (c) {
                  case '&':
                    out += "&amp;";
                    break;
                  case '<':
                    out += "&lt;";
                    break;
                  case '>':
                    out += "&gt;";
                    break;
                  case '"':
                    out += "&quot;";
                    break;
                  case '\'':
                    out += "&#39;";
                    break;
                  default:
                    out += c;
                }
              }
            },
            [&] { out += kReplacement; });
      },
      [&] { out += '\n'; });
}

std::string Style_Sheet(const Rich_Text& text, const Html_Options& options) {
  std::string css = fmt::format(
      "body{{margin:8px;background:{};color:{}}}\n"
      "pre{{margin:0;tab-size:4;font-family:{},monospace;font-size:{}pt}}\n"
      "pre img{{vertical-align:middle}}\n",
      Colour_Text(options.background), Colour_Text(text.Colours().front()),
      Css_String(text.Font_Name()), text.Font_Size());
  for (std::size_t i = 1; i < text.Colours().size(); ++i)
    fmt::format_to(std::back_inserter(css), ".c{}{{color:{}}}\n", i + 1,
                   Colour_Text(text.Colours()[i]));
  return css;
}

// Elements for all but the colour: programs that know little of style sheets show them too.
struct Tags {
  std::string begin, end;
};
Tags Tags_Of(const Run_Style& style) {
  Tags tags;
  const auto add = [&](bool on, std::string_view name) {
    if (!on) return;
    tags.begin += fmt::format("<{}>", name);
    tags.end.insert(0, fmt::format("</{}>", name));
  };
  if (style.colour != kBase_Colour) {
    tags.begin = fmt::format("<span class=\"c{}\">", static_cast<unsigned>(style.colour));
    tags.end = "</span>";
  }
  add(style.und, "u");
  add(style.bld, "b");
  add(style.itl, "i");
  add(style.stk, "s");
  return tags;
}

std::string Block_Begin(std::int32_t spacing) {
  constexpr double twips_a_point = 20;
  // A line end right behind the tag is no part of the text; one of the text's own would be lost.
  if (spacing == 0) return "<pre>\n";
  return fmt::format("<pre style=\"line-height:{}pt\">\n", spacing / twips_a_point);
}

}  // namespace

std::string Esc_Html(std::string_view text) {
  std::string out;
  Append_Escaped(out, text);
  return out;
}

std::string Get_RTx_Html(const Rich_Text& text, const Html_Options& options) {
  std::vector<std::string> pictures;
  for (const std::string& tag : text.Images())
    pictures.push_back(
        fmt::format("<img width=\"16\" height=\"16\" alt=\"{}\" src=\"data:image/bmp;base64,{}\">",
                    Icon_Word(tag), Base64(Bitmap(Get_Icon(tag)))));

  std::string out = fmt::format(
      "<!DOCTYPE html>\n<html lang=\"ja\">\n<head>\n<meta charset=\"utf-8\">\n<title>{}</title>\n"
      "<style>\n{}</style>\n</head>\n<body>\n",
      Esc_Html(options.title), Style_Sheet(text, options));
  out.reserve(out.size() + text.Text().size() * 2 + text.Runs().size() * 24);
  bool open = false, line_start = true;
  std::int32_t spacing = 0, wanted = 0;  // twips
  for (const Rich_Run& run : text.Runs()) {
    if (run.spacing > 0) wanted = run.spacing;
    // A block can only begin where a line does.
    if (!open || (line_start && wanted != spacing)) {
      out += open ? "</pre>" : "";
      out += Block_Begin(wanted);
      spacing = wanted;
      open = true;
    }
    if (run.image >= 0) {
      out += pictures[static_cast<std::size_t>(run.image)];
      line_start = false;
      continue;
    }
    if (run.size == 0) continue;
    const Tags tags = Tags_Of(run.style);
    out += tags.begin;
    Append_Escaped(out, text.Text(run));
    line_start = out.back() == '\n';
    out += tags.end;
  }
  out += open ? "</pre>" : "";
  out += "\n</body>\n</html>\n";
  return out;
}

}  // namespace oru::query
