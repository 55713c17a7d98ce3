// SPDX-License-Identifier: MIT
#include "query/rtf_writer.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <iterator>

#include "query/icons.h"

namespace oru::query {

namespace {

constexpr std::string_view kHeader =
    "{\\rtf1\\ansi\\deff0\r\n{\\fonttbl{\\f0\\fnil\\fcharset128 %FontName;}}{\\colortbl ;%ColorTable}"
    "\\viewkind4\\uc1\\pard\\cf1\\lang1041\\f0\\fs%FontSize ";

constexpr std::uint16_t kNot_Asked = 0, kNo_Code = 0xFFFF;
constexpr std::size_t kUnits = 0x10000;

void Append_Hex(std::string& out, unsigned byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  out += kDigits[byte >> 4U & 0xFU];
  out += kDigits[byte & 0xFU];
}

void Append_Byte(std::string& out, unsigned byte) {
  out += "\\'";
  Append_Hex(out, byte);
}

// N is signed, and "?" is what a reader without Unicode shows.
void Append_Unit(std::string& out, std::uint16_t unit) {
  fmt::format_to(std::back_inserter(out), "\\u{}?", static_cast<std::int16_t>(unit));
}

// The control words by which a run differs from the attributes in force.
void Append_Prefix(std::string& out, const Rich_Run& run, Run_Style& now, bool& colour_set) {
  const std::size_t before = out.size();
  if (run.spacing > 0)
    fmt::format_to(std::back_inserter(out), "\\pard\\sl-{}\\slmult0", run.spacing);
  const Run_Style& to = run.style;
  if (!colour_set || to.colour != now.colour)
    fmt::format_to(std::back_inserter(out), "\\cf{}", static_cast<unsigned>(to.colour));
  if (to.und != now.und) out += to.und ? "\\ul" : "\\ulnone";
  if (to.bld != now.bld) out += to.bld ? "\\b" : "\\b0";
  if (to.itl != now.itl) out += to.itl ? "\\i" : "\\i0";
  if (to.stk != now.stk) out += to.stk ? "\\strike" : "\\strike0";
  now = to;
  colour_set = true;
  if (out.size() > before) out += ' ';
}

// ---- metafile of one picture (MS-WMF): words and records, low byte first ------------------------

class Metafile {
 public:
  void Put(std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) Append_Hex(hex_, value >> (8 * i) & 0xFFU);
  }
  void Words(std::initializer_list<std::uint32_t> words) {
    for (const std::uint32_t word : words) Put(word, 2);
  }
  [[nodiscard]] const std::string& Hex() const { return hex_; }

 private:
  std::string hex_;
};

std::string Make_Metafile(const Icon_Pixels& pixels) {
  constexpr std::uint32_t side = kIcon_Side;
  constexpr std::uint32_t pixel_bytes = side * side * 3, info_bytes = 40;
  constexpr std::uint32_t blit_words = 3 + 11 + (info_bytes + pixel_bytes) / 2;
  constexpr std::uint32_t other_words = 9 + 4 + 5 + 5 + 3;  // header, mode, origin, extent, end
  Metafile file;
  file.Words({1, 9, 0x0300});  // in memory, words of the header, version
  file.Put(other_words + blit_words, 4);
  file.Words({0});
  file.Put(blit_words, 4);  // the largest record
  file.Words({0});

  const auto record = [&](std::uint32_t words, std::uint32_t function) {
    file.Put(words, 4);
    file.Words({function});
  };
  record(4, 0x0103);  // META_SETMAPMODE: MM_ANISOTROPIC
  file.Words({8});
  record(5, 0x020B);  // META_SETWINDOWORG
  file.Words({0, 0});
  record(5, 0x020C);  // META_SETWINDOWEXT
  file.Words({side, side});
  record(blit_words, 0x0F43);  // META_STRETCHDIB
  file.Put(0x00CC0020, 4);     // SRCCOPY
  file.Words({0});             // colours are RGB
  file.Words({side, side, 0, 0, side, side, 0, 0});

  file.Put(info_bytes, 4);
  file.Put(side, 4);
  file.Put(side, 4);
  file.Words({1, 24});
  file.Put(0, 4);  // not packed
  file.Put(pixel_bytes, 4);
  for (int i = 0; i < 4; ++i) file.Put(0, 4);  // resolution, palette
  for (std::size_t y = side; y-- > 0;) {       // rows from the bottom up
    for (std::size_t x = 0; x < side; ++x) {
      const Rgb& pixel = pixels[y * side + x];
      file.Put(pixel.blue, 1);
      file.Put(pixel.green, 1);
      file.Put(pixel.red, 1);
    }
  }
  record(3, 0);  // META_EOF
  return file.Hex();
}

}  // namespace

std::string Cnv_RTx_Clr(Host_Colour colour) {
  const Rgb rgb = Rgb_Of(colour);
  return fmt::format("\\red{}\\green{}\\blue{};", rgb.red, rgb.green, rgb.blue);
}

Rtf_Writer::Rtf_Writer() : page_(service::Code_Page::Open(932)), codes_(kUnits, kNot_Asked) {}

void Rtf_Writer::Append_Character(std::string& out, char32_t character, std::string_view utf8) {
  if (character >= kUnits) {
    Append_Unit(out, static_cast<std::uint16_t>(0xD800 + ((character - kUnits) >> 10U)));
    Append_Unit(out, static_cast<std::uint16_t>(0xDC00 + ((character - kUnits) & 0x3FFU)));
    return;
  }
  std::uint16_t& code = codes_[character];
  if (code == kNot_Asked) {
    const auto bytes = page_ ? page_->Encode(utf8) : std::nullopt;
    code = kNo_Code;
    if (bytes && !bytes->empty()) {
      code = 0;
      for (const char c : *bytes)
        code = static_cast<std::uint16_t>(code << 8U | static_cast<unsigned char>(c));
    }
  }
  if (code == kNo_Code) {
    Append_Unit(out, static_cast<std::uint16_t>(character));
    return;
  }
  if (code > 0xFF) Append_Byte(out, code >> 8U);
  Append_Byte(out, code & 0xFFU);
}

void Rtf_Writer::Append_Escaped(std::string& out, std::string_view text) {
  const auto is_plain = [](unsigned char c) {
    return (c >= 0x20 && c < 0x7F && c != '\\' && c != '{' && c != '}') || c == '\t';
  };
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && is_plain(static_cast<unsigned char>(text[end]))) ++end;
    out.append(text, at, end - at);
    at = end;
    if (at == text.size()) return;
    const char c = text[at];
    if (c == '\r' || c == '\n') {
      out += "\\par \r\n";
      at += text.substr(at).starts_with("\r\n") ? 2 : 1;
    } else if (c == '\\' || c == '{' || c == '}') {
      out += '\\';
      out += c;
      ++at;
    } else if (static_cast<unsigned char>(c) < 0x80) {
      Append_Byte(out, static_cast<unsigned char>(c));
      ++at;
    } else {
      const std::size_t start = at;
      const char32_t character = service::Next_Code_Point(text, at);
      Append_Character(out, character, text.substr(start, at - start));
    }
  }
}

std::string Rtf_Writer::Cnv_RTx_Txt(std::string_view text) {
  std::string out;
  Append_Escaped(out, text);
  return out;
}

const std::string& Rtf_Writer::Picture(const std::string& tag) {
  const auto found = pictures_.find(tag);
  if (found != pictures_.end()) return found->second;
  std::string picture = "{\\pict\\wmetafile8\\picw423\\pich423\\picwgoal240\\pichgoal240\r\n";
  picture += Make_Metafile(Get_Icon(tag));
  picture += "}\r\n";
  return pictures_.emplace(tag, std::move(picture)).first->second;
}

std::string Rtf_Writer::Add_RTx_Hed(const Rich_Text& text) {
  std::string colours;
  for (const Host_Colour colour : text.Colours()) colours += Cnv_RTx_Clr(colour);
  std::string header = service::Replace_All(kHeader, "%ColorTable", colours);
  header =
      service::Replace_All(header, "%FontSize", fmt::to_string(std::lround(text.Font_Size() * 2)));
  // The name comes last: it is the user's, and might hold the other tags.
  std::string out = service::Replace_All(header, "%FontName", Cnv_RTx_Txt(text.Font_Name()));
  out.reserve(out.size() + text.Text().size() * 2 + text.Runs().size() * 16);

  Run_Style now;
  bool colour_set = false;  // the first run always names its colour
  for (const Rich_Run& run : text.Runs()) {
    if (run.image >= 0) {
      out += Picture(text.Images()[static_cast<std::size_t>(run.image)]);
      continue;
    }
    Append_Prefix(out, run, now, colour_set);
    Append_Escaped(out, text.Text(run));
  }
  out += '}';
  return out;
}

}  // namespace oru::query
