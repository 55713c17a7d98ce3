// SPDX-License-Identifier: MIT
#include "provider/lines.h"

#include <bit>
#include <cstring>

namespace oru::provider {
namespace {

std::uint64_t Word_At(const char* data) {
  std::uint64_t word = 0;
  std::memcpy(&word, data, 8);
  return word;
}

/// Position of the first CR or LF at or behind `at`, else the text's size. Eight bytes at a time:
/// every byte that is read passes here.
std::size_t Find_Line_End(std::string_view text, std::size_t at) {
  if constexpr (std::endian::native == std::endian::little) {
    constexpr std::uint64_t ones = 0x0101010101010101u, highs = 0x8080808080808080u;
    for (; at + 8 <= text.size(); at += 8) {
      const std::uint64_t word = Word_At(text.data() + at);
      const std::uint64_t cr = word ^ ones * '\r', lf = word ^ ones * '\n';
      // The lowest bit set marks the first zero byte of either; bits above it may be false.
      const std::uint64_t hit = (((cr - ones) & ~cr) | ((lf - ones) & ~lf)) & highs;
      if (hit != 0) return at + static_cast<std::size_t>(std::countr_zero(hit)) / 8;
    }
  }
  while (at < text.size() && text[at] != '\r' && text[at] != '\n') ++at;
  return at;
}

/// One step: for a fixed hash each word gives another result, so that a change within one word is
/// never overlooked.
constexpr std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) {
  return (std::rotl(hash, 5) ^ word) * 0x9E3779B97F4A7C15u;
}

constexpr char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
constexpr bool Is_Blank(char c) {
  return c == ' ' || c == '\t';
}

}  // namespace

Line Line_At(std::string_view text, std::size_t begin) {
  const std::size_t end = Find_Line_End(text, begin);
  const std::string_view rest = text.substr(end, 3);
  std::size_t length = rest.empty() ? 0 : 1;
  if (rest.starts_with("\r\n")) length = 2;
  if (rest == "\r\r\n") length = 3;
  return {begin, end, end + length};
}

std::vector<Line> All_Lines(std::string_view text) {
  std::vector<Line> lines;
  for (std::size_t at = 0; at < text.size(); at = lines.back().next)
    lines.push_back(Line_At(text, at));
  return lines;
}

std::uint64_t Hash_Bytes(std::string_view bytes) {
  std::uint64_t hash = bytes.size();
  std::size_t at = 0;
  for (; at + 8 <= bytes.size(); at += 8) hash = Mix(hash, Word_At(bytes.data() + at));
  std::uint64_t tail = 0;
  if (at < bytes.size()) std::memcpy(&tail, bytes.data() + at, bytes.size() - at);
  return Mix(hash, tail);
}

std::uint64_t Hash_Line(std::uint64_t list, std::string_view line) {
  return Mix(list, Hash_Bytes(As_Shown(line)));
}

std::string_view Skip_Blanks(std::string_view text) {
  while (!text.empty() && Is_Blank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view Cut_Blanks(std::string_view text) {
  while (!text.empty() && Is_Blank(text.back())) text.remove_suffix(1);
  return text;
}

bool Begins_With(std::string_view text, std::string_view word) {
  if (text.size() < word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (Lower(text[i]) != word[i]) return false;
  return true;
}

std::string_view As_Shown(std::string_view line) {
  return Skip_Blanks(line).empty() ? std::string_view{} : line;
}

}  // namespace oru::provider
