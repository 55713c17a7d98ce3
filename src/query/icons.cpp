// SPDX-License-Identifier: MIT
#include "query/icons.h"

#include <cstdint>

namespace oru::query {

namespace {

struct Tile {
  std::string_view tag;
  char letter;
  Rgb colour;
  bool filled;
  std::string_view word;
};

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlue{0x1F, 0x5F, 0xBF}, kGreen{0x1E, 0x84, 0x49}, kOrange{0xC4, 0x62, 0x10},
    kPurple{0x7D, 0x3C, 0x98}, kTeal{0x0E, 0x7C, 0x86}, kRed{0xB0, 0x2A, 0x37},
    kGrey{0x6B, 0x72, 0x80};

// A member's tag has "P" behind it if the member is public; its tile is filled then.
constexpr std::array kTiles{
    Tile{"C_Module", 'M', kBlue, true, "Module"},
    Tile{"C_Class", 'C', kPurple, true, "Class"},
    Tile{"C_Form", 'F', kOrange, true, "Form"},
    Tile{"C_UserCtl", 'U', kOrange, true, "UserControl"},
    Tile{"C_UserDoc", 'U', kTeal, true, "UserDocument"},
    Tile{"C_Dsr", 'D', kOrange, true, "Designer"},
    Tile{"C_Book", 'B', kGreen, true, "WorkBook"},
    Tile{"C_Sheet", 'S', kGreen, true, "WorkSheet"},
    Tile{"C_Report", 'R', kTeal, true, "Report"},
    Tile{"C_Word", 'W', kBlue, true, "Document"},
    Tile{"C_Document", 'D', kTeal, true, "Document"},
    Tile{"C_Event", 'E', kRed, false, "Event"},
    Tile{"C_Sub", 'S', kBlue, false, "Sub"},
    Tile{"C_Func", 'F', kPurple, false, "Function"},
    Tile{"C_PGet", 'G', kTeal, false, "Get"},
    Tile{"C_PLet", 'L', kTeal, false, "Let"},
    Tile{"C_PSet", 'T', kTeal, false, "Set"},
    Tile{"C_ApiS", 'A', kBlue, false, "Api"},
    Tile{"C_ApiF", 'A', kPurple, false, "Api"},
    Tile{"C_Def", 'D', kGrey, false, "Declarations"},
    Tile{"V_ArgVl", 'A', kGreen, false, "Argument"},
    Tile{"V_Local", 'V', kGreen, false, "Variable"},
    Tile{"V_LocalC", 'C', kOrange, false, "Const"},
    Tile{"V_LocalU", 'U', kGreen, false, "Variable"},
    Tile{"V_Modul", 'V', kBlue, false, "Variable"},
    Tile{"V_ModulC", 'C', kRed, false, "Const"},
    Tile{"V_ModulE", 'E', kPurple, false, "Event"},
    Tile{"V_ModulN", 'N', kTeal, false, "Enum"},
    Tile{"V_ModulT", 'T', kPurple, false, "Type"},
    Tile{"V_ModulU", 'U', kBlue, false, "Variable"},
    Tile{"V_Public", 'V', kBlue, true, "Variable"},
    Tile{"V_PublicC", 'C', kRed, true, "Const"},
    Tile{"V_PublicE", 'E', kPurple, true, "Event"},
    Tile{"V_PublicN", 'N', kTeal, true, "Enum"},
    Tile{"V_PublicT", 'T', kPurple, true, "Type"},
    Tile{"V_PublicU", 'U', kBlue, true, "Variable"},
};

// Rows of five pixels, top to bottom; the highest of the five bits is the leftmost pixel.
struct Glyph {
  char letter;
  std::array<std::uint8_t, 7> rows;
};
constexpr std::size_t kGlyph_Width = 5;

constexpr std::array kGlyphs{
    Glyph{'A', {0b01110, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001, 0b10001}},
    Glyph{'B', {0b11110, 0b10001, 0b10001, 0b11110, 0b10001, 0b10001, 0b11110}},
    Glyph{'C', {0b01110, 0b10001, 0b10000, 0b10000, 0b10000, 0b10001, 0b01110}},
    Glyph{'D', {0b11110, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b11110}},
    Glyph{'E', {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b11111}},
    Glyph{'F', {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b10000}},
    Glyph{'G', {0b01110, 0b10001, 0b10000, 0b10111, 0b10001, 0b10001, 0b01110}},
    Glyph{'L', {0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b11111}},
    Glyph{'M', {0b10001, 0b11011, 0b10101, 0b10101, 0b10001, 0b10001, 0b10001}},
    Glyph{'N', {0b10001, 0b11001, 0b10101, 0b10101, 0b10011, 0b10001, 0b10001}},
    Glyph{'R', {0b11110, 0b10001, 0b10001, 0b11110, 0b10100, 0b10010, 0b10001}},
    Glyph{'S', {0b01111, 0b10000, 0b10000, 0b01110, 0b00001, 0b00001, 0b11110}},
    Glyph{'T', {0b11111, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100}},
    Glyph{'U', {0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110}},
    Glyph{'V', {0b10001, 0b10001, 0b10001, 0b10001, 0b01010, 0b01010, 0b00100}},
    Glyph{'W', {0b10001, 0b10001, 0b10001, 0b10101, 0b10101, 0b11011, 0b10001}},
};

// Rows that stay white at the top: with a fixed line spacing, programs cut a picture there.
constexpr std::size_t kTop = 2;

const Tile* Find_Tile(std::string_view tag) {
  for (const Tile& tile : kTiles)
    if (tile.tag == tag) return &tile;
  return nullptr;
}

struct Found {
  const Tile* tile;
  bool is_public;
};
Found Find_Tag(std::string_view tag) {
  if (const Tile* tile = Find_Tile(tag); tile != nullptr) return {tile, false};
  const bool maybe_public = tag.starts_with("C_") && tag.ends_with('P');
  return {maybe_public ? Find_Tile(tag.substr(0, tag.size() - 1)) : nullptr, maybe_public};
}

// The letter in the tile's middle: each pixel twice as wide, the height stretched to ten rows.
void Draw(Icon_Pixels& pixels, const Glyph& glyph, Rgb ink) {
  constexpr std::size_t left = 3, top = kTop + 2, height = 10;
  for (std::size_t y = 0; y < height; ++y) {
    const unsigned row = glyph.rows[y * glyph.rows.size() / height];
    for (std::size_t x = 0; x < kGlyph_Width * 2; ++x)
      if ((row >> (kGlyph_Width - 1 - x / 2) & 1U) != 0)
        pixels[(top + y) * kIcon_Side + left + x] = ink;
  }
}

}  // namespace

Icon_Pixels Get_Icon(std::string_view tag) {
  const auto [tile, is_public] = Find_Tag(tag);
  const Rgb colour = tile == nullptr ? kGrey : tile->colour;
  const bool filled = tile == nullptr || tile->filled || is_public;
  Icon_Pixels pixels;
  pixels.fill(kWhite);
  for (std::size_t y = kTop; y < kIcon_Side; ++y) {
    for (std::size_t x = 0; x < kIcon_Side; ++x) {
      const bool edge = y == kTop || y + 1 == kIcon_Side || x == 0 || x + 1 == kIcon_Side;
      if (filled || edge) pixels[y * kIcon_Side + x] = colour;
    }
  }
  for (const Glyph& glyph : kGlyphs)
    if (tile != nullptr && glyph.letter == tile->letter)
      Draw(pixels, glyph, filled ? kWhite : colour);
  return pixels;
}

std::string_view Icon_Word(std::string_view tag) {
  const Tile* tile = Find_Tag(tag).tile;
  return tile == nullptr ? std::string_view() : tile->word;
}

}  // namespace oru::query
