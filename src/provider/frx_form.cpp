// SPDX-License-Identifier: MIT
#include "provider/frx_form.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "provider/layout.h"
#include "provider/lines.h"
#include "service/text.h"

namespace oru::provider {
namespace {

constexpr std::size_t kHeader = 24;
constexpr std::string_view kLayout_Stream = "\x03VBFrame";  // stands as text in the .frm file
constexpr std::size_t kSearched = 64;  // bytes in which the compound file begins

}  // namespace

std::optional<Frx_Place> Find_Frx(std::string_view block) {
  for (const Line& line : All_Lines(block)) {
    const std::string_view content = Skip_Blanks(line.Content(block));
    if (!Begins_With(content, "oleobjectblob")) continue;
    const std::size_t equals = content.find('=');
    if (equals == content.npos) return std::nullopt;
    const auto literal = Parse_Literal(Skip_Blanks(content.substr(equals + 1)));
    if (!literal || !literal->rest.starts_with(':')) return std::nullopt;
    Frx_Place place;
    place.file = literal->content.substr(literal->content.find_last_of("/\\") + 1);
    const std::string_view digits = literal->rest.substr(1);
    (void)std::from_chars(digits.data(), digits.data() + digits.size(), place.offset, 16);
    return place;
  }
  return std::nullopt;
}

std::optional<workbook::Form_Storage> Read_Frx(std::string_view bytes, std::size_t offset) {
  if (offset >= bytes.size()) return std::nullopt;
  for (std::size_t at = offset; at < std::min(bytes.size(), offset + kSearched); ++at) {
    const std::string_view design = bytes.substr(at);
    if (!container::Is_Compound(design)) continue;
    const container::Compound_File file = container::Read_Compound(design);
    if (!file.Ok() || file.root.Find_Stream("f") == nullptr) return std::nullopt;
    return workbook::Read_Form(file.root);
  }
  return std::nullopt;
}

std::string Write_Frx(const container::Storage& form) {
  container::Storage design = form;
  design.name.clear();
  std::erase_if(design.streams,
                [](const container::Stream& stream) { return stream.name == kLayout_Stream; });
  const std::string compound = container::Write_Compound(design);
  if (compound.empty()) return {};
  std::string bytes("LB\0\0", 4);
  for (unsigned i = 0; i < 4; ++i) bytes += static_cast<char>(compound.size() >> (i * 8) & 0xFFU);
  bytes.resize(kHeader, '\0');
  return bytes + compound;
}

}  // namespace oru::provider
