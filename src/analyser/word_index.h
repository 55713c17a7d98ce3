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
  /// One member of that name.
  struct Entry {
    std::string_view Mdl;
    char Scp = 0;
  };

  /// An empty index; `tables` get their `MLL` and `MHL` widened.
  explicit Mem_Dic(Tables& tables) : tables_(tables) {}
  /// Takes a module's "Mem" rows, which must outlive the index.
  void Add(const Mdl_Entry& entry);
  /// Ends the adding; from here on names are found.
  void Close();

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

  /// The members of that exact name in module order; null if there is none.
  [[nodiscard]] const std::vector<Entry>* Get(std::string_view name, std::uint32_t hash) const {
    for (std::size_t i = hash & mask_; slots_[i].members != nullptr; i = (i + 1) & mask_)
      if (slots_[i].hash == hash && slots_[i].name == name) return slots_[i].members;
    return nullptr;
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::string_view name;
    const std::vector<Entry>* members = nullptr;
  };
  Tables& tables_;
  std::unordered_map<std::string_view, std::vector<Entry>> entries_;
  std::vector<Slot> slots_;  // open addressing, at most a quarter full
  std::size_t mask_ = 0;
};

}  // namespace oru::analyser
