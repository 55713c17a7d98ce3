// SPDX-License-Identifier: MIT
#include "service/text.h"

#include <fmt/format.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace oru::service {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool Is_Ascii(std::string_view text) {
  for (const char c : text)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

char Lower_Ascii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool Is_Digit(char c) {
  return c >= '0' && c <= '9';
}

// Width of characters below U+0100: those of the Japanese code page take two bytes, the others are
// mapped to a single-byte look-alike.
bool Is_Wide_Latin1(char32_t c) {
  switch (c) {
    case 0xA7:
    case 0xA8:
    case 0xB0:
    case 0xB1:
    case 0xB4:
    case 0xB6:
    case 0xD7:
    case 0xF7:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::string Without_Controls(std::string_view text) {
  std::string out(text);
  for (std::size_t i = 0; i < out.size(); ++i) {
    const auto byte = static_cast<unsigned char>(out[i]);
    const bool second_set =
        byte == 0xC2 && i + 1 < out.size() && static_cast<unsigned char>(out[i + 1]) < 0xA0;
    if (second_set) out.erase(i + 1, 1);
    if (byte < 0x20 || byte == 0x7F || second_set) out[i] = ' ';
  }
  return out;
}

char32_t Lower_Of(char32_t c) {
  if (c < 0x80) return c >= U'A' && c <= U'Z' ? c + (U'a' - U'A') : c;
  if (c >= 0x2E80 && c < 0xA640) return c;
  return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c)));
}

std::string_view Trim_Left(std::string_view text) {
  // An empty result still points into the text, so that offsets can be taken from it.
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view Trim_Right(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);  // npos + 1 is 0
}

std::string_view Trim(std::string_view text) {
  return Trim_Left(Trim_Right(text));
}

std::string_view Take_Word(std::string_view& text) {
  const std::size_t blank = text.find(' ');
  const std::string_view word = text.substr(0, blank);
  text = blank == std::string_view::npos ? std::string_view{} : text.substr(blank + 1);
  return word;
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  std::size_t from = 0;
  while (true) {
    const std::size_t at = text.find(separator, from);
    pieces.push_back(text.substr(from, at == std::string_view::npos ? at : at - from));
    if (at == std::string_view::npos) return pieces;
    from = at + separator.size();
  }
}

std::string Replace_All(std::string_view text, std::string_view from, std::string_view to) {
  std::string result;
  std::size_t start = 0;
  for (std::size_t at = text.find(from); at != std::string_view::npos;
       at = text.find(from, start)) {
    result.append(text, start, at - start).append(to);
    start = at + from.size();
  }
  result.append(text, start);
  return result;
}

std::string To_Lower(std::string_view text) {
  std::string result;
  if (Is_Ascii(text)) {
    result.resize(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) result[i] = Lower_Ascii(text[i]);
    return result;
  }
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = i;
    const char32_t c = Next_Code_Point(text, i);
    if (c < 0x80) {
      result += Lower_Ascii(static_cast<char>(c));
    } else if (const char32_t lower = Lower_Of(c); lower != c) {
      Append_Code_Point(result, lower);
    } else {
      result.append(text, start, i - start);
    }
  }
  return result;
}

std::size_t Match_No_Case(std::string_view text, std::string_view head) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < head.size();) {
    if (at >= text.size()) return std::string_view::npos;
    // Bytes below 0x80 stand for themselves in both texts; all others are compared as characters.
    if (Lower_Of(Next_Code_Point(text, at)) != Lower_Of(Next_Code_Point(head, i)))
      return std::string_view::npos;
  }
  return at;
}

bool Equal_No_Case(std::string_view a, std::string_view b) {
  return a == b || Match_No_Case(a, b) == a.size();
}

std::size_t Find_No_Case(std::string_view text, std::string_view what, std::size_t from) {
  for (std::size_t at = from; at <= text.size();) {
    if (Match_No_Case(text.substr(at), what) != std::string_view::npos) return at;
    if (at == text.size()) break;
    (void)Next_Code_Point(text, at);
  }
  return std::string_view::npos;
}

Chr_Count Len_Chr(std::string_view text) {
  std::int64_t count = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    count += (byte & 0xC0U) != 0x80U;  // one for each character's first byte
    count += byte >= 0xF0U;            // and one more for a surrogate pair
  }
  return Chr_Count{count};
}

Wid_Count Len_Wid(std::string_view text) {
  if (Is_Ascii(text)) return Wid_Count{static_cast<std::int64_t>(text.size())};
  std::int64_t width = 0;
  for (std::size_t i = 0; i < text.size();) width += Width_Of(Next_Code_Point(text, i));
  return Wid_Count{width};
}

std::size_t Byte_Of_Chr(std::string_view text, Chr_Count position) {
  std::int64_t at = 1;
  std::size_t i = 0;
  while (i < text.size() && at < To_Int(position)) at += Next_Code_Point(text, i) > 0xFFFF ? 2 : 1;
  return i;
}

Chr_Count Chr_Of_Byte(std::string_view text, std::size_t offset) {
  return Chr_Count{To_Int(Len_Chr(text.substr(0, offset))) + 1};
}

std::string Pad_Right(std::string_view text, Wid_Count width) {
  std::string result(text);
  const std::int64_t missing = To_Int(width) - To_Int(Len_Wid(text));
  if (missing > 0) result.append(static_cast<std::size_t>(missing), ' ');
  return result;
}

std::string Pad_Left(std::string_view text, Wid_Count width) {
  const std::int64_t missing = To_Int(width) - To_Int(Len_Wid(text));
  std::string result(missing > 0 ? static_cast<std::size_t>(missing) : 0U, ' ');
  return result.append(text);
}

std::string Cut_Bytes(std::string_view text, std::size_t most) {
  if (text.size() <= most) return std::string(text);
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80U) --most;
  return std::string(text.substr(0, most)) + "…";
}

char32_t Next_Code_Point(std::string_view text, std::size_t& offset) {
  const auto byte = [&](std::size_t i) -> unsigned { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(offset);
  if (first < 0x80) {
    ++offset;
    return first;
  }
  const unsigned length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
  if (length == 0 || first > 0xF4 || offset + length > text.size()) {
    ++offset;
    return kReplacement;
  }
  char32_t c = first & (0xFFU >> (length + 1));
  for (unsigned i = 1; i < length; ++i) {
    const unsigned next = byte(offset + i);
    if ((next & 0xC0U) != 0x80U) {
      ++offset;
      return kReplacement;
    }
    c = (c << 6U) | (next & 0x3FU);
  }
  const bool overlong = (length == 3 && c < 0x800) || (length == 4 && c < 0x10000);
  if (overlong || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
    ++offset;
    return kReplacement;
  }
  offset += length;
  return c;
}

void Append_Code_Point(std::string& text, char32_t c) {
  const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0U | (c >> 6U));
    put(0x80U | (c & 0x3FU));
  } else if (c < 0x10000) {
    put(0xE0U | (c >> 12U));
    put(0x80U | ((c >> 6U) & 0x3FU));
    put(0x80U | (c & 0x3FU));
  } else {
    put(0xF0U | (c >> 18U));
    put(0x80U | ((c >> 12U) & 0x3FU));
    put(0x80U | ((c >> 6U) & 0x3FU));
    put(0x80U | (c & 0x3FU));
  }
}

int Width_Of(char32_t c) {
  if (c < 0x80) return 1;
  if (c < 0x100) return Is_Wide_Latin1(c) ? 2 : 1;
  if (c < 0x250) return 1;                   // Latin letters with marks: no full-width form
  if (c >= 0x300 && c < 0x370) return 1;     // combining marks
  if (c >= 0xFF61 && c <= 0xFF9F) return 1;  // half-width katakana
  return 2;
}

bool Is_Utf8(std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size();) {
    if (static_cast<unsigned char>(bytes[i]) < 0x80) {
      ++i;
      continue;
    }
    const std::size_t start = i;
    // U+FFFD itself is three bytes; a fault moves by one.
    if (Next_Code_Point(bytes, i) == kReplacement && i == start + 1) return false;
  }
  return true;
}

bool Is_Numeric(std::string_view text) {
  text = Trim(text);
  if (text.empty()) return false;
  // Nothing but these can begin a number; the common case of a word ends here.
  const auto first = static_cast<unsigned char>(text.front());
  if (std::isdigit(first) == 0 && text.find_first_of("+-&.($\\", 0) != 0 && first < 0x80)
    return false;

  std::string plain;  // full-width digits and signs count as their half-width forms
  for (std::size_t i = 0; i < text.size();) {
    char32_t c = Next_Code_Point(text, i);
    if (c >= 0xFF01 && c <= 0xFF5E) c -= 0xFEE0;
    if (c == 0xFFE5 || c == 0xA5) c = U'\\';
    if (c >= 0x80) return false;
    plain += static_cast<char>(c);
  }
  std::string_view s = plain;
  if (s.front() == '&') {
    const bool hex = s.size() > 1 && Lower_Ascii(s[1]) == 'h';
    const bool octal = s.size() > 1 && (Lower_Ascii(s[1]) == 'o' || Is_Digit(s[1]));
    if (!hex && !octal) return false;
    s.remove_prefix(octal && Is_Digit(s[1]) ? 1 : 2);
    if (!s.empty() && s.back() == '&') s.remove_suffix(1);
    if (s.empty()) return false;
    for (const char c : s) {
      const bool digit =
          hex ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : c >= '0' && c <= '7';
      if (!digit) return false;
    }
    return true;
  }
  if (s.front() == '(' && s.back() == ')' && s.size() > 2) {
    s = Trim(s.substr(1, s.size() - 2));
    if (s.empty() || s.front() == '+' || s.front() == '-') return false;
  }
  bool sign = false;
  bool currency = false;
  while (!s.empty()) {
    if ((s.front() == '+' || s.front() == '-') && !sign) {
      sign = true;
    } else if ((s.front() == '\\' || s.front() == '$') && !currency) {
      currency = true;
    } else if (s.front() != ' ') {
      break;
    }
    s.remove_prefix(1);
  }
  if (!s.empty() && !sign && (s.back() == '+' || s.back() == '-'))
    s = Trim_Right(s.substr(0, s.size() - 1));
  std::size_t i = 0;
  bool digits = false;
  while (i < s.size() && (Is_Digit(s[i]) || (s[i] == ',' && digits))) digits |= Is_Digit(s[i++]);
  if (i < s.size() && s[i] == '.') {
    ++i;
    while (i < s.size() && Is_Digit(s[i])) digits |= Is_Digit(s[i++]);
  }
  if (!digits) return false;
  if (i < s.size() && (Lower_Ascii(s[i]) == 'e' || Lower_Ascii(s[i]) == 'd')) {
    ++i;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
    if (i == s.size()) return false;
    while (i < s.size() && Is_Digit(s[i])) ++i;
  }
  return i == s.size();
}

double Val(std::string_view text) {
  std::string plain;
  for (const char c : text.substr(0, 4096))
    if (c != ' ' && c != '\t' && c != '\n') plain += c;
  std::string_view s = plain;
  bool negative = false;
  if (!s.empty() && (s.front() == '+' || s.front() == '-')) {
    negative = s.front() == '-';
    s.remove_prefix(1);
  }
  if (s.size() >= 2 && s[0] == '&') {
    const char kind = Lower_Ascii(s[1]);
    const int base = kind == 'h' ? 16 : 8;
    s.remove_prefix(kind == 'h' || kind == 'o' ? 2 : 1);
    std::uint64_t bits = 0;
    const auto end = std::from_chars(s.data(), s.data() + s.size(), bits, base).ptr;
    const auto length = end - s.data();
    const bool is_long = end != s.data() + s.size() && *end == '&';
    // The host reads a literal of up to 16 bits as a signed Integer, a longer one as a Long.
    const bool is_short = bits <= 0xFFFF && !is_long && (base == 16 ? length <= 4 : length <= 6);
    const double value = is_short ? static_cast<double>(static_cast<std::int16_t>(bits))
                         : bits <= 0xFFFFFFFF
                             ? static_cast<double>(static_cast<std::int32_t>(bits))
                             : static_cast<double>(static_cast<std::int64_t>(bits));
    return negative ? -value : value;
  }
  std::size_t end = 0;
  bool point = false;
  while (end < s.size() && (Is_Digit(s[end]) || (s[end] == '.' && !point)))
    point |= s[end++] == '.';
  std::string number(s.substr(0, end));
  if (number.empty() || number == ".") return 0;
  if (end < s.size() && (Lower_Ascii(s[end]) == 'e' || Lower_Ascii(s[end]) == 'd')) {
    std::size_t digits = end + 1;
    if (digits < s.size() && (s[digits] == '+' || s[digits] == '-')) ++digits;
    if (digits < s.size() && Is_Digit(s[digits])) {
      number += 'e';
      number += s.substr(end + 1, digits - end - 1);
      while (digits < s.size() && Is_Digit(s[digits])) number += s[digits++];
    }
  }
  double value = 0;
  std::from_chars(number.data(), number.data() + number.size(), value);
  return negative ? -value : value;
}

std::string Format_Hash(std::int64_t number) {
  return number == 0 ? std::string() : fmt::to_string(number);
}

std::string Format_Five(std::int64_t number) {
  return fmt::format("{:05}", number);
}

}  // namespace oru::service
