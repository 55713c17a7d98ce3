// SPDX-License-Identifier: MIT
#include "workbook/escher.h"

#include <algorithm>
#include <cstdint>

#include "container/byte_reader.h"
#include "service/codec.h"

namespace oru::workbook {
namespace {

using container::Byte_Reader;

constexpr std::uint16_t kProperties = 0xF00B;
constexpr std::uint16_t kShape_Name_Property = 0x0380;
constexpr std::uint16_t kComplex = 0x8000;  // the value is the size of content behind the table

// The name in a table of properties, of which there are `count`.
std::string Name_In(std::string_view table, std::size_t count) {
  Byte_Reader reader(table);
  std::size_t before = 0, size = 0;  // bytes of content before the name's, and of its own
  bool found = false;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint16_t id = reader.U16();
    const std::uint32_t value = reader.U32();
    if (!reader.Ok()) return {};
    if ((id & kComplex) == 0 || found) continue;
    if ((id & 0x3FFFU) == kShape_Name_Property) {
      found = true;
      size = value;
    } else {
      before += value;
    }
  }
  if (!found) return {};
  reader.Skip(before);
  const std::string name = service::Text_Of_Utf16(reader.Bytes(size));
  return name.substr(0, name.find('\0'));
}

}  // namespace

std::string Shape_Name(std::string_view records) {
  std::string name;
  Byte_Reader reader(records);
  while (reader.Left() >= 8) {
    const std::uint16_t head = reader.U16(), type = reader.U16();
    const std::uint32_t size = reader.U32();
    if ((head & 0xFU) == 0xFU) continue;  // a container: its content follows
    const std::string_view content = reader.Bytes(std::min<std::size_t>(size, reader.Left()));
    if (type == kProperties) name = Name_In(content, head >> 4);
  }
  return name;
}

}  // namespace oru::workbook
