// SPDX-License-Identifier: MIT
// The two containers that all tables are made of, with the host language's rules. A `Collection`
// keeps insertion order, has unique keys that ignore letter case, and is fetched by key or by
// 1-based position. A `Dictionary` keeps insertion order, and its keys are exact.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "service/text.h"

namespace oru::service {

struct Text_Hash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const {
    return std::hash<std::string_view>{}(text);
  }
};

/// Exact keys, as in `Scripting.Dictionary`.
template <class T>
using Text_Map = std::unordered_map<std::string, T, Text_Hash, std::equal_to<>>;

template <class T>
class Collection {
 public:
  struct Item {
    std::string key;
    T value;
  };

  [[nodiscard]] std::size_t Count() const { return items_.size(); }
  [[nodiscard]] bool Empty() const { return items_.empty(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }
  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }

  /// The item at a 1-based position; null outside 1..Count().
  [[nodiscard]] const Item* At(std::size_t position) const {
    return position >= 1 && position <= items_.size() ? &items_[position - 1] : nullptr;
  }
  [[nodiscard]] const T* Get(std::string_view key) const {
    const std::size_t i = Find(key);
    return i == npos ? nullptr : &items_[i].value;
  }
  [[nodiscard]] T* Get(std::string_view key) {
    const std::size_t i = Find(key);
    return i == npos ? nullptr : &items_[i].value;
  }
  /// The item under a key with the key as it was added, or null.
  [[nodiscard]] const Item* Get_Item(std::string_view key) const {
    const std::size_t i = Find(key);
    return i == npos ? nullptr : &items_[i];
  }
  [[nodiscard]] bool Has(std::string_view key) const { return Find(key) != npos; }

  /// Adds at the end; false, and nothing done, if the key exists.
  bool Add(std::string_view key, T value) {
    std::string folded = To_Lower(key);
    if (Find_Folded(folded) != npos) return false;
    items_.push_back({std::string(key), std::move(value)});
    if (!index_.empty() || items_.size() > kLinear) Index_Last(std::move(folded));
    return true;
  }
  /// Adds in front of all others; false, and nothing done, if the key exists.
  bool Add_First(std::string_view key, T value) {
    std::string folded = To_Lower(key);
    if (Find_Folded(folded) != npos) return false;
    items_.insert(items_.begin(), {std::string(key), std::move(value)});
    if (index_.empty()) return true;
    for (auto& [other, at] : index_) ++at;
    index_.emplace(std::move(folded), 0);
    return true;
  }
  /// Adds an item that no key can fetch, only a walk or a position.
  void Add_Unkeyed(T value) { items_.push_back({{}, std::move(value)}); }

  /// Takes the item out; later ones move up. False if there is none.
  bool Remove(std::string_view key) {
    const std::size_t i = Find(key);
    if (i == npos) return false;
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(i));
    if (!index_.empty()) {
      index_.erase(index_.find(To_Lower(key)));
      for (auto& [folded, at] : index_)
        if (at > i) --at;
    }
    return true;
  }
  void Clear() {
    items_.clear();
    index_.clear();
  }

 private:
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);
  static constexpr std::size_t kLinear = 8;  // up to here a walk beats a hash and needs no memory

  [[nodiscard]] std::size_t Find(std::string_view key) const {
    if (items_.empty()) return npos;
    return Find_Folded(To_Lower(key));
  }
  [[nodiscard]] std::size_t Find_Folded(std::string_view folded) const {
    if (folded.empty()) return npos;
    if (index_.empty()) {
      for (std::size_t i = 0; i < items_.size(); ++i)
        if (!items_[i].key.empty() && To_Lower(items_[i].key) == folded) return i;
      return npos;
    }
    const auto at = index_.find(folded);
    return at == index_.end() ? npos : at->second;
  }
  void Index_Last(std::string folded) {
    if (index_.empty()) {
      for (std::size_t i = 0; i + 1 < items_.size(); ++i)
        if (!items_[i].key.empty()) index_.emplace(To_Lower(items_[i].key), i);
    }
    index_.emplace(std::move(folded), items_.size() - 1);
  }

  std::vector<Item> items_;
  Text_Map<std::size_t> index_;
};

/// Insertion-ordered, exact keys: Exists, get, and put.
template <class T>
class Dictionary {
 public:
  [[nodiscard]] std::size_t Count() const { return items_.size(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }
  [[nodiscard]] bool Exists(std::string_view key) const { return index_.find(key) != index_.end(); }
  [[nodiscard]] const T* Get(std::string_view key) const {
    const auto at = index_.find(key);
    return at == index_.end() ? nullptr : &items_[at->second].second;
  }
  [[nodiscard]] T* Get(std::string_view key) {
    const auto at = index_.find(key);
    return at == index_.end() ? nullptr : &items_[at->second].second;
  }
  /// Sets the key's value, adding the key at the end if it is new.
  T& Put(std::string_view key, T value) {
    const auto at = index_.find(key);
    if (at != index_.end()) return items_[at->second].second = std::move(value);
    index_.emplace(std::string(key), items_.size());
    items_.emplace_back(std::string(key), std::move(value));
    return items_.back().second;
  }
  void Clear() {
    items_.clear();
    index_.clear();
  }

 private:
  std::vector<std::pair<std::string, T>> items_;
  Text_Map<std::size_t> index_;
};

/// Adds unless the key is empty or exists. True when added.
template <class T>
bool Add_Dic_Itm(Dictionary<T>& dictionary, std::string_view key, T item) {
  if (key.empty() || dictionary.Exists(key)) return false;
  dictionary.Put(key, std::move(item));
  return true;
}

/// Adds unless the key is empty or exists. True when the key was there already.
template <class T>
bool Add_Col_Itm(Collection<T>& collection, std::string_view key, T value) {
  if (key.empty()) return false;
  return !collection.Add(key, std::move(value));
}

/// The value under the key, or null; null for a missing collection too.
template <class T>
[[nodiscard]] const T* Chk_Col_Key(const Collection<T>* collection, std::string_view key) {
  return collection == nullptr ? nullptr : collection->Get(key);
}

}  // namespace oru::service
