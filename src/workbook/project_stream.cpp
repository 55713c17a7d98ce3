// SPDX-License-Identifier: MIT
#include "workbook/project_stream.h"

#include <optional>
#include <utility>

#include "container/byte_reader.h"
#include "service/text.h"

namespace oru::workbook {
namespace {

constexpr struct {
  std::string_view key;
  Item_Kind kind;
} kItems[] = {
    {"Document", Item_Kind::Document},
    {"Module", Item_Kind::Module},
    {"Class", Item_Kind::Class},
    {"BaseClass", Item_Kind::Form},
};

constexpr std::uint8_t kCipher_Version = 2;
constexpr std::uint8_t kNot_Visible = 0x00;

// The bytes of an enciphered value, given as hexadecimal digits ([MS-OVBA] 2.4.3.3).
std::optional<std::string> Decipher(std::string_view digits) {
  std::string bytes;
  const auto digit = [](char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
  };
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    const int high = digit(digits[i]), low = digit(digits[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
  }
  container::Byte_Reader reader(bytes);
  const std::uint8_t seed = reader.U8();
  std::uint8_t far = reader.U8(), near = reader.U8();  // the two enciphered bytes before
  if ((far ^ seed) != kCipher_Version) return std::nullopt;
  auto plain = static_cast<std::uint8_t>(near ^ seed);
  const auto next = [&] {
    const std::uint8_t byte = reader.U8();
    plain = static_cast<std::uint8_t>(byte ^ static_cast<std::uint8_t>(far + plain));
    far = std::exchange(near, byte);
    return plain;
  };
  for (int ignored = (seed & 6) / 2; ignored > 0; --ignored) (void)next();
  std::uint32_t length = 0;
  for (unsigned i = 0; i < 4; ++i) length |= static_cast<std::uint32_t>(next()) << (i * 8);
  if (!reader.Ok() || length > reader.Left()) return std::nullopt;
  std::string out;
  for (std::uint32_t i = 0; i < length; ++i) out += static_cast<char>(next());
  return out;
}

std::string_view Unquoted(std::string_view value) {
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
    value = value.substr(1, value.size() - 2);
  return value;
}

}  // namespace

Project_Stream Read_Project_Stream(std::string_view bytes, const service::Code_Page& page) {
  Project_Stream stream;
  const std::string text = page.Decode(bytes).text;
  for (std::size_t at = 0; at < text.size();) {
    // Both CR LF and LF CR occur.
    const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    const std::string_view line = std::string_view(text).substr(at, end - at);
    at = end + 1;
    if (line.starts_with('[')) break;  // the windows of each module follow, under its name
    const std::size_t equals = line.find('=');
    if (equals == line.npos) continue;
    const std::string_view key = line.substr(0, equals);
    const std::string_view value = Unquoted(line.substr(equals + 1));
    for (const auto& item : kItems)
      if (service::Equal_No_Case(key, item.key))
        stream.items.push_back({item.kind, std::string(value.substr(0, value.find('/')))});
    if (key == "CMG") {
      const auto state = Decipher(value);
      // The user, the host, or the editor locked it.
      if (state && state->size() >= 4 && ((*state)[0] & 7) != 0) stream.locked = true;
    } else if (key == "GC") {
      const auto visible = Decipher(value);
      if (visible && visible->size() == 1 &&
          static_cast<std::uint8_t>((*visible)[0]) == kNot_Visible)
        stream.locked = true;
    }
  }
  return stream;
}

}  // namespace oru::workbook
