// SPDX-License-Identifier: MIT
#include "analyser/word_index.h"

#include <algorithm>
#include <bit>

#include "service/text.h"

namespace oru::analyser {

Mem_Dic::Mem_Dic(Tables& tables) {
  for (const auto& item : tables.Mdl_Tbl) {
    for (const auto& member : item.value->Mem) {
      // Views into the rows: the key as the row holds it, and the row's own module name.
      const std::string_view row = member.value;
      const std::string_view name = service::Row_Field(row, 0);
      const std::string_view scope = service::Row_Field(row, 3);
      entries_[name].push_back({service::Row_Field(row, 1), scope.empty() ? '\0' : scope.front()});
      const int length = static_cast<int>(service::To_Int(service::Len_Chr(name)));
      tables.MLL = std::min(tables.MLL, length);
      tables.MHL = std::max(tables.MHL, length);
    }
  }
  // At least 16 bits a name keep false passes at a few per cent.
  const std::size_t words = std::bit_ceil(std::max<std::size_t>(entries_.size() / 4, 16));
  bits_.assign(words, 0);
  mask_ = words - 1;
  for (const auto& [name, unused] : entries_) {
    const std::size_t hash = service::Text_Hash{}(name);
    bits_[(hash >> 6U) & mask_] |= std::uint64_t{1} << (hash & 63U);
  }
}

}  // namespace oru::analyser
