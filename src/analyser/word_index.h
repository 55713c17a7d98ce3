// SPDX-License-Identifier: MIT
// The index of all member names of the project (`Mem_Dic`), asked for every word of every statement:
// a bit table in front of the hash table turns most words away without touching it.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "analyser/tables.h"

namespace oru::analyser {

class Mem_Dic {
 public:
  /// One member of that name.
  struct Entry {
    std::string_view Mdl;
    char Scp = 0;
  };

  /// Reads all "Mem" rows, in table order; the tables must outlive the index. Widens `MLL`, `MHL`.
  explicit Mem_Dic(Tables& tables);

  /// The members of that exact name in module order; null if there is none.
  [[nodiscard]] const std::vector<Entry>* Get(std::string_view name) const {
    const std::size_t hash = service::Text_Hash{}(name);
    if ((bits_[(hash >> 6U) & mask_] >> (hash & 63U) & 1U) == 0) return nullptr;
    const auto at = entries_.find(name);
    return at == entries_.end() ? nullptr : &at->second;
  }

 private:
  std::unordered_map<std::string_view, std::vector<Entry>> entries_;
  std::vector<std::uint64_t> bits_;
  std::size_t mask_ = 0;
};

}  // namespace oru::analyser
