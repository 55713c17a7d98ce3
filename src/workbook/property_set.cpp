// SPDX-License-Identifier: MIT
#include "workbook/property_set.h"

#include <algorithm>
#include <cstdint>

#include "container/byte_reader.h"

namespace oru::workbook {

using container::Byte_Reader;

// The sets follow a header; of the first one, which is not the user's own, stand there the class id
// and the place, and in that place the properties' numbers.
bool Has_Signature(const container::Storage& root) {
  constexpr std::uint32_t kSignature = 0x18;  // [MS-OSHARED] GKPIDDSI_DIGSIG
  constexpr std::size_t kHeader = 28, kClass_Id = 16;
  const auto* summary = root.Find_Stream(
      "\x05"
      "DocumentSummaryInformation");
  if (summary == nullptr) return false;
  Byte_Reader place(summary->bytes, std::min(summary->bytes.size(), kHeader + kClass_Id));
  Byte_Reader reader(summary->bytes, place.U32());
  reader.Skip(4);
  const std::uint32_t count = reader.U32();
  for (std::uint32_t i = 0; i < count && reader.Ok(); ++i) {
    const std::uint32_t id = reader.U32();
    reader.Skip(4);
    if (reader.Ok() && id == kSignature) return true;
  }
  return false;
}

}  // namespace oru::workbook
