// SPDX-License-Identifier: MIT
#include "analyser/word_index.h"

#include <algorithm>
#include <bit>

#include "service/text.h"

namespace oru::analyser {

Mem_Dic::Mem_Dic(Tables& tables) : tables_(tables) {
  std::size_t count = 1;
  for (const auto& item : tables.Mdl_Tbl) count += item.value->Mem.Count();
  entries_.reserve(count);
  entries_.emplace_back();
  slots_.resize(std::bit_ceil(std::max<std::size_t>(count * 4, 16)));
  mask_ = slots_.size() - 1;
}

void Mem_Dic::Add(const Mdl_Entry& entry) {
  for (const auto& member : entry.Mem) {
    // Views into the row: the name as it holds it, and its own module name.
    const std::string_view row = member.value;
    const std::string_view name = service::Row_Field(row, 0);
    const std::string_view scope = service::Row_Field(row, 3);
    const auto position = static_cast<std::uint32_t>(entries_.size());
    entries_.push_back({service::Row_Field(row, 1), scope.empty() ? '\0' : scope.front(), 0});
    const int length = static_cast<int>(service::To_Int(service::Len_Chr(name)));
    tables_.MLL = std::min(tables_.MLL, length);
    tables_.MHL = std::max(tables_.MHL, length);

    const std::uint32_t hash = Hash(name);
    std::size_t i = hash & mask_;
    while (slots_[i].first != 0 && (slots_[i].hash != hash || slots_[i].name != name))
      i = (i + 1) & mask_;
    if (slots_[i].first == 0) {
      slots_[i] = {hash, position, position, name};
    } else {
      entries_[slots_[i].last].Next = position;
      slots_[i].last = position;
    }
  }
}

}  // namespace oru::analyser
