// SPDX-License-Identifier: MIT
#include "service/codec.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>
#include <vector>

#include "service/text.h"

namespace oru::service {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kUtf8_Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16_Le_Mark = "\xFF\xFE";
constexpr std::string_view kUtf16_Be_Mark = "\xFE\xFF";

constexpr unsigned Byte(char c) {
  return static_cast<unsigned char>(c);
}

/// First position at or behind `at` that holds no ASCII byte. Eight bytes at a time: most of a
/// module is ASCII.
std::size_t Skip_Ascii(std::string_view bytes, std::size_t at) {
  constexpr std::uint64_t high_bits = 0x8080808080808080u;
  while (at + 8 <= bytes.size()) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, 8);
    if ((word & high_bits) != 0) break;
    at += 8;
  }
  while (at < bytes.size() && Byte(bytes[at]) < 0x80) ++at;
  return at;
}

/// Number of bytes that are not ASCII.
std::size_t Count_Wide(std::string_view bytes) {
  std::size_t count = 0, at = 0;
  for (; at + 8 <= bytes.size(); at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, 8);
    count += static_cast<std::size_t>(std::popcount(word & 0x8080808080808080u));
  }
  for (; at < bytes.size(); ++at) count += Byte(bytes[at]) >= 0x80;
  return count;
}

/// Length of the well-formed UTF-8 sequence at a byte that is not ASCII; 0 if there is none.
std::size_t Sequence_Length(std::string_view bytes, std::size_t at) {
  const auto in = [&](std::size_t offset, unsigned low, unsigned high) {
    const unsigned b = at + offset < bytes.size() ? Byte(bytes[at + offset]) : 0;
    return b >= low && b <= high;
  };
  const unsigned lead = Byte(bytes[at]);
  if (lead < 0xC2 || lead > 0xF4) return 0;
  if (lead < 0xE0) return in(1, 0x80, 0xBF) ? 2 : 0;
  if (lead < 0xF0) {
    const bool second = in(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
    return second && in(2, 0x80, 0xBF) ? 3 : 0;
  }
  const bool second = in(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
  return second && in(2, 0x80, 0xBF) && in(3, 0x80, 0xBF) ? 4 : 0;
}

/// First position at or behind `at` where no well-formed UTF-8 goes on.
std::size_t Skip_Utf8(std::string_view bytes, std::size_t at) {
  while ((at = Skip_Ascii(bytes, at)) < bytes.size()) {
    const std::size_t length = Sequence_Length(bytes, at);
    if (length == 0) break;
    at += length;
  }
  return at;
}

/// Counts bytes at `offset` as undecodable; U+FFFD comes at `text_offset` of the text.
void Add_Bad(Decoded& out, std::size_t offset, std::size_t count, std::size_t text_offset) {
  if (out.bad_bytes == 0) {
    out.first_bad = offset;
    out.first_bad_text = text_offset;
  }
  out.bad_bytes += count;
}

Decoded Decode_Utf8(std::string_view bytes) {
  Decoded out;
  out.text.reserve(bytes.size());
  std::size_t at = 0;
  while (at < bytes.size()) {
    const std::size_t end = Skip_Utf8(bytes, at);
    out.text.append(bytes.substr(at, end - at));
    at = end;
    if (at == bytes.size()) break;
    Add_Bad(out, at, 1, out.text.size());
    out.text += kReplacement;
    ++at;
  }
  return out;
}

Decoded Decode_Utf16(std::string_view bytes, bool little) {
  const auto unit = [&](std::size_t at) -> char32_t {
    const unsigned a = Byte(bytes[at]), b = Byte(bytes[at + 1]);
    return little ? a | b << 8 : a << 8 | b;
  };
  Decoded out;
  out.text.reserve(bytes.size() / 2 + bytes.size() / 8);
  std::size_t at = 0;
  for (; at + 2 <= bytes.size(); at += 2) {
    const char32_t first = unit(at);
    if (first < 0x80) {
      out.text += static_cast<char>(first);
    } else if (first < 0xD800 || first > 0xDFFF) {
      Append_Code_Point(out.text, first);
    } else {
      const char32_t second = first < 0xDC00 && at + 4 <= bytes.size() ? unit(at + 2) : 0;
      if (second >= 0xDC00 && second <= 0xDFFF) {
        Append_Code_Point(out.text, 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00));
        at += 2;
      } else {
        Add_Bad(out, at, 2, out.text.size());
        out.text += kReplacement;
      }
    }
  }
  if (at < bytes.size()) {
    Add_Bad(out, at, 1, out.text.size());
    out.text += kReplacement;
  }
  return out;
}

std::optional<std::string> Encode_Utf16(std::string_view text, bool little) {
  if (Skip_Utf8(text, 0) != text.size()) return std::nullopt;
  std::string out;
  out.reserve(text.size() * 2);
  const auto put = [&](char32_t unit) {
    const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8 & 0xFF);
    out += little ? low : high;
    out += little ? high : low;
  };
  for (std::size_t at = 0; at < text.size();) {
    const char32_t code_point = Next_Code_Point(text, at);
    if (code_point < 0x10000) {
      put(code_point);
    } else {
      put(0xD800 + ((code_point - 0x10000) >> 10));
      put(0xDC00 + ((code_point - 0x10000) & 0x3FF));
    }
  }
  return out;
}

/// Code page 65001: UTF-8 itself. It serves files that are not well-formed, so U+FFFD stands for
/// bytes that are gone and must not be written back as a character.
class Utf8_Page final : public Code_Page {
 public:
  [[nodiscard]] int Number() const override { return 65001; }
  [[nodiscard]] Decoded Decode(std::string_view bytes) const override { return Decode_Utf8(bytes); }
  [[nodiscard]] std::optional<std::string> Encode(std::string_view text) const override {
    if (Skip_Utf8(text, 0) != text.size() || text.find(kReplacement) != text.npos)
      return std::nullopt;
    return std::string(text);
  }
};

// ---- the platform: one-character conversions, used only while a table is built ----------------

class Iconv {
 public:
  Iconv(const std::string& to, const std::string& from)
      : handle_(iconv_open(to.c_str(), from.c_str())) {}
  ~Iconv() {
    if (Ok()) iconv_close(handle_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  [[nodiscard]] bool Ok() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

  /// Converts exactly one whole input; nothing if it is no input that stands alone.
  [[nodiscard]] std::optional<std::string> Convert(std::string_view input) const {
    std::array<char, 32> out;
    char* to = out.data();
    std::size_t room = out.size();
    char* from = const_cast<char*>(input.data());  // iconv's interface, it does not write there
    std::size_t left = input.size();
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    const bool good = iconv(handle_, &from, &left, &to, &room) == 0 && left == 0 &&
                      iconv(handle_, nullptr, nullptr, &to, &room) == 0;
    if (!good) return std::nullopt;
    return std::string(out.data(), out.size() - room);
  }

 private:
  iconv_t handle_;
};

// ---- code pages of one and two bytes a character ----------------------------------------------

/// The UTF-8 bytes of one character, in memory order, padded with zeros; all zeros for none.
using Cell = std::array<char, 4>;

constexpr std::array<std::uint8_t, 16> kLength_Of_Lead = {1, 1, 1, 1, 1, 1, 1, 1,
                                                          1, 1, 1, 1, 2, 2, 3, 4};
std::size_t Length_Of(const Cell& cell) {
  return kLength_Of_Lead[Byte(cell[0]) >> 4];
}

class Table_Page final : public Code_Page {
 public:
  static std::shared_ptr<const Code_Page> Make(int number) {
    const std::string name = "CP" + std::to_string(number);
    const Iconv decoder("UTF-8", name), encoder(name, "UTF-8");
    if (!decoder.Ok() || !encoder.Ok()) return nullptr;
    auto page = std::make_shared<Table_Page>(number);
    return page->Fill(decoder, encoder) ? page : nullptr;
  }
  explicit Table_Page(int number) : number_(number) {}

  [[nodiscard]] int Number() const override { return number_; }

  [[nodiscard]] Decoded Decode(std::string_view bytes) const override {
    Decoded out;
    // Two bytes become three as a rule; the second one may be ASCII. The text is kept, so that
    // more room than that would be wasted.
    out.text.reserve(bytes.size() + Count_Wide(bytes));
    std::array<char, 4096> buffer;  // filled without a check per character, then appended
    std::size_t used = 0;
    const auto flush = [&] {
      out.text.append(buffer.data(), used);
      used = 0;
    };
    for (std::size_t at = 0; at < bytes.size();) {
      if (Byte(bytes[at]) < 0x80) {
        const std::size_t end = Skip_Ascii(bytes, at);
        flush();
        out.text.append(bytes.substr(at, end - at));
        at = end;
        continue;
      }
      if (used + 4 > buffer.size()) flush();
      const unsigned lead = Byte(bytes[at]);
      const Cell* cell = &single_[lead - 0x80];
      std::size_t taken = 1;
      if (second_[lead - 0x80] != 0 && at + 1 < bytes.size()) {
        cell = &pairs_[second_[lead - 0x80] - 1u][Byte(bytes[at + 1])];
        taken = 2;
        if ((*cell)[0] == 0) {
          cell = &single_[lead - 0x80];
          taken = 1;
        }
      }
      if ((*cell)[0] == 0) {
        Add_Bad(out, at, 1, out.text.size() + used);
        std::memcpy(buffer.data() + used, kReplacement.data(), kReplacement.size());
        used += kReplacement.size();
      } else {
        std::memcpy(buffer.data() + used, cell->data(), cell->size());
        used += Length_Of(*cell);
      }
      at += taken;
    }
    flush();
    return out;
  }

  [[nodiscard]] std::optional<std::string> Encode(std::string_view text) const override {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = Skip_Ascii(text, at);
      out.append(text.substr(at, end - at));
      at = end;
      if (at == text.size()) break;
      const std::size_t length = Sequence_Length(text, at);
      if (length == 0) return std::nullopt;
      Cell key{};
      std::memcpy(key.data(), text.data() + at, length);
      const auto found = std::lower_bound(
          reverse_.begin(), reverse_.end(), key,
          [](const Reverse& entry, const Cell& wanted) { return entry.character < wanted; });
      if (found == reverse_.end() || found->character != key) return std::nullopt;
      if (found->code > 0xFF) out += static_cast<char>(found->code >> 8);
      out += static_cast<char>(found->code & 0xFF);
      at += length;
    }
    return out;
  }

 private:
  struct Reverse {
    Cell character;
    std::uint16_t code;
  };
  using Row = std::array<Cell, 256>;

  static Cell To_Cell(const std::optional<std::string>& utf8) {
    Cell cell{};
    // A result of several code points fits no cell; it is treated as unmapped.
    if (!utf8 || utf8->empty() || Byte((*utf8)[0]) < 0x80 || *utf8 == kReplacement) return cell;
    if (utf8->size() > cell.size() || Sequence_Length(*utf8, 0) != utf8->size()) return cell;
    std::memcpy(cell.data(), utf8->data(), utf8->size());
    return cell;
  }

  bool Fill(const Iconv& decoder, const Iconv& encoder) {
    for (unsigned b = 0; b < 0x80; ++b) {
      const std::string ascii(1, static_cast<char>(b));
      if (decoder.Convert(ascii) != ascii) return false;
    }
    for (unsigned lead = 0x80; lead < 0x100; ++lead) {
      std::string bytes(1, static_cast<char>(lead));
      single_[lead - 0x80] = To_Cell(decoder.Convert(bytes));
      if (single_[lead - 0x80][0] != 0) {
        reverse_.push_back({single_[lead - 0x80], static_cast<std::uint16_t>(lead)});
        continue;
      }
      Row row{};
      bool any = false;
      for (unsigned next = 0x30; next < 0x100; ++next) {  // never a control character or a quote
        bytes.resize(1);
        bytes += static_cast<char>(next);
        row[next] = To_Cell(decoder.Convert(bytes));
        if (row[next][0] == 0) continue;
        any = true;
        reverse_.push_back({row[next], static_cast<std::uint16_t>(lead << 8 | next)});
      }
      if (!any) continue;
      pairs_.push_back(row);
      second_[lead - 0x80] = static_cast<std::uint8_t>(pairs_.size());
    }
    Choose_Reverse(encoder);
    return true;
  }

  /// Of several codes for one character, keeps the one that the platform writes.
  void Choose_Reverse(const Iconv& encoder) {
    std::stable_sort(reverse_.begin(), reverse_.end(),
                     [](const Reverse& a, const Reverse& b) { return a.character < b.character; });
    std::vector<Reverse> chosen;
    for (std::size_t i = 0, next = 0; i < reverse_.size(); i = next) {
      next = i + 1;
      while (next < reverse_.size() && reverse_[next].character == reverse_[i].character) ++next;
      Reverse entry = reverse_[i];
      if (next > i + 1) {
        const auto bytes =
            encoder.Convert(std::string_view(entry.character.data(), Length_Of(entry.character)));
        for (std::size_t k = i; bytes && k < next; ++k)
          if (*bytes == Bytes_Of(reverse_[k].code)) entry = reverse_[k];
      }
      chosen.push_back(entry);
    }
    reverse_ = std::move(chosen);
  }

  static std::string Bytes_Of(std::uint16_t code) {
    std::string bytes;
    if (code > 0xFF) bytes += static_cast<char>(code >> 8);
    bytes += static_cast<char>(code & 0xFF);
    return bytes;
  }

  int number_;
  std::array<Cell, 128> single_{};          ///< one byte alone, from 0x80
  std::array<std::uint8_t, 128> second_{};  ///< row of a lead byte in `pairs_`, plus 1; 0: no lead
  std::vector<Row> pairs_;
  std::vector<Reverse> reverse_;  ///< sorted by character
};

std::string_view Without_Mark(std::string_view bytes, Encoding encoding) {
  const std::string_view mark = Byte_Order_Mark(encoding);
  if (bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
  return bytes;
}

}  // namespace

std::shared_ptr<const Code_Page> Code_Page::Open(int number) {
  if (number == 65001) return std::make_shared<Utf8_Page>();
  if (number <= 0) return nullptr;
  return Table_Page::Make(number);
}

Encoding Detect_Encoding(std::string_view bytes) {
  if (bytes.starts_with(kUtf8_Mark)) return Encoding::Utf8_Bom;
  if (bytes.starts_with(kUtf16_Le_Mark)) return Encoding::Utf16_Le_Bom;
  if (bytes.starts_with(kUtf16_Be_Mark)) return Encoding::Utf16_Be_Bom;
  const std::size_t ascii = Skip_Ascii(bytes, 0);
  if (ascii == bytes.size()) return Encoding::Code_Page;
  return Skip_Utf8(bytes, ascii) == bytes.size() ? Encoding::Utf8 : Encoding::Code_Page;
}

Decoded Decode(std::string_view bytes, Encoding encoding, const Code_Page& page) {
  const std::string_view body = Without_Mark(bytes, encoding);
  Decoded out;
  switch (encoding) {
    case Encoding::Utf8:
    case Encoding::Utf8_Bom:
      out = Decode_Utf8(body);
      break;
    case Encoding::Utf16_Le_Bom:
    case Encoding::Utf16_Be_Bom:
      out = Decode_Utf16(body, encoding == Encoding::Utf16_Le_Bom);
      break;
    case Encoding::Code_Page:
      out = page.Decode(body);
      break;
  }
  if (out.bad_bytes > 0) out.first_bad += bytes.size() - body.size();
  return out;
}

Decoded Decode_Moved(std::string bytes, Encoding encoding, const Code_Page& page) {
  const bool utf8 = encoding == Encoding::Utf8 || encoding == Encoding::Utf8_Bom;
  const std::string_view body = Without_Mark(bytes, encoding);
  const bool is_text = (utf8 && Skip_Utf8(body, 0) == body.size()) ||
                       (encoding == Encoding::Code_Page && Skip_Ascii(body, 0) == body.size());
  if (!is_text) return Decode(bytes, encoding, page);
  Decoded out;
  const std::size_t mark = bytes.size() - body.size();
  out.text = std::move(bytes);
  out.text.erase(0, mark);
  return out;
}

std::optional<std::string> Encode(std::string_view text, Encoding encoding, const Code_Page& page) {
  switch (encoding) {
    case Encoding::Utf8:
    case Encoding::Utf8_Bom:
      if (Skip_Utf8(text, 0) != text.size()) return std::nullopt;
      return std::string(text);
    case Encoding::Utf16_Le_Bom:
    case Encoding::Utf16_Be_Bom:
      return Encode_Utf16(text, encoding == Encoding::Utf16_Le_Bom);
    case Encoding::Code_Page:
      return page.Encode(text);
  }
  return std::nullopt;
}

std::string Text_Of_Utf16(std::string_view bytes) {
  return Decode_Utf16(bytes, true).text;
}

std::string_view Byte_Order_Mark(Encoding encoding) {
  switch (encoding) {
    case Encoding::Utf8_Bom:
      return kUtf8_Mark;
    case Encoding::Utf16_Le_Bom:
      return kUtf16_Le_Mark;
    case Encoding::Utf16_Be_Bom:
      return kUtf16_Be_Mark;
    case Encoding::Utf8:
    case Encoding::Code_Page:
      return {};
  }
  return {};
}

}  // namespace oru::service
