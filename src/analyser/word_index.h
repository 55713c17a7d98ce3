// SPDX-License-Identifier: MIT
// The index of all member names of the project (`Mem_Dic`), asked for every word of every statement.
// The hash is computed while a word is being scanned, and most words end at an empty slot.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "analyser/tables.h"

namespace oru::analyser {

class Mem_Dic {
 public:
  /// One member of a name; those of one name are chained in module order.
  struct Entry {
    std::string_view Mdl;
    char Scp = 0;
    std::uint32_t Next = 0;  ///< position of the next one, 0 at the end
  };

  /// An empty index for the members of `tables`, whose `MLL` and `MHL` it widens.
  explicit Mem_Dic(Tables& tables);
  /// Takes a module's "Mem" rows, which must outlive the index.
  void Add(const Mdl_Entry& entry);

  /// Hash of a name, computed byte by byte from `kHash_Start`.
  static constexpr std::uint32_t kHash_Start = 2166136261U;
  [[nodiscard]] static constexpr std::uint32_t Hash_Byte(std::uint32_t hash, char byte) {
    return (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
  }
  [[nodiscard]] static constexpr std::uint32_t Hash(std::string_view name) {
    std::uint32_t hash = kHash_Start;
    for (const char byte : name) hash = Hash_Byte(hash, byte);
    return hash;
  }

  /// The first member of that exact name; null if there is none.
  [[nodiscard]] const Entry* Get(std::string_view name, std::uint32_t hash) const {
    for (std::size_t i = hash & mask_; slots_[i].first != 0; i = (i + 1) & mask_)
      if (slots_[i].hash == hash && slots_[i].name == name) return &entries_[slots_[i].first];
    return nullptr;
  }
  /// The next member of the same name, or null.
  [[nodiscard]] const Entry* Next(const Entry& entry) const {
    return entry.Next == 0 ? nullptr : &entries_[entry.Next];
  }

 private:
  struct Slot {
    std::uint32_t hash = 0, first = 0, last = 0;
    std::string_view name;
  };
  Tables& tables_;
  std::vector<Entry> entries_;  // the one at 0 stands for none
  std::vector<Slot> slots_;     // open addressing, at most a quarter full
  std::size_t mask_ = 0;
};

}  // namespace oru::analyser
