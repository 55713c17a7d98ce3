// SPDX-License-Identifier: MIT
#include "analyser/word_index.h"

#include <algorithm>
#include <bit>

#include "service/text.h"

namespace oru::analyser {

void Mem_Dic::Add(const Mdl_Entry& entry) {
  for (const auto& member : entry.Mem) {
    // Views into the rows: the name as the row holds it, and the row's own module name.
    const std::string_view row = member.value;
    const std::string_view name = service::Row_Field(row, 0);
    const std::string_view scope = service::Row_Field(row, 3);
    entries_[name].push_back({service::Row_Field(row, 1), scope.empty() ? '\0' : scope.front()});
    const int length = static_cast<int>(service::To_Int(service::Len_Chr(name)));
    tables_.MLL = std::min(tables_.MLL, length);
    tables_.MHL = std::max(tables_.MHL, length);
  }
}

void Mem_Dic::Close() {
  slots_.resize(std::bit_ceil(std::max<std::size_t>(entries_.size() * 4, 16)));
  mask_ = slots_.size() - 1;
  for (const auto& [name, members] : entries_) {
    const std::uint32_t hash = Hash(name);
    std::size_t i = hash & mask_;
    while (slots_[i].members != nullptr) i = (i + 1) & mask_;
    slots_[i] = {hash, name, &members};
  }
}

}  // namespace oru::analyser
