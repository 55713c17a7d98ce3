// SPDX-License-Identifier: MIT
#include "container/directory_depth.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "container/byte_reader.h"

namespace oru::container {
namespace {

constexpr std::uint32_t kMost_Sector = 0xFFFFFFFA;  // numbers from here on are no sectors
constexpr std::uint32_t kNo_Entry = 0xFFFFFFFF;
constexpr std::size_t kEntry = 128, kIn_Header = 109;

std::uint32_t Number_At(std::string_view bytes, std::size_t at) {
  Byte_Reader reader(bytes, at);
  return reader.U32();
}

// The sectors of a compound file and the table that chains them.
class Sectors {
 public:
  explicit Sectors(std::string_view bytes) : bytes_(bytes) {
    if (bytes.size() < 512) return;
    const unsigned shift = Number_At(bytes, 30) & 0xFFFFU;
    if (shift != 9 && shift != 12) return;
    size_ = std::size_t{1} << shift;
    for (std::size_t i = 0; i < kIn_Header; ++i) Add_Table(Number_At(bytes, 76 + i * 4));
    // Further sectors of the table stand in a chain, whose last number is that of the next one.
    const std::size_t most = bytes.size() / size_;
    std::uint32_t next = Number_At(bytes, 68);
    for (std::size_t i = 0; i < most && next < kMost_Sector; ++i) {
      const std::string_view sector = Sector(next);
      if (sector.empty()) break;
      for (std::size_t at = 0; at + 4 < size_; at += 4) Add_Table(Number_At(sector, at));
      next = Number_At(sector, size_ - 4);
    }
  }

  // The sectors of a chain; nothing if it has no end.
  [[nodiscard]] std::optional<std::vector<std::string_view>> Chain(std::uint32_t first) const {
    std::vector<std::string_view> chain;
    if (size_ == 0) return std::nullopt;
    const std::size_t most = bytes_.size() / size_ + 1;
    for (std::uint32_t at = first; at < kMost_Sector;) {
      const std::string_view sector = Sector(at);
      if (sector.empty() || chain.size() == most) return std::nullopt;
      chain.push_back(sector);
      const std::size_t table = at / (size_ / 4);
      if (table >= table_.size()) return std::nullopt;
      at = Number_At(Sector(table_[table]), at % (size_ / 4) * 4);
    }
    return chain;
  }
  [[nodiscard]] std::size_t Size() const { return size_; }

 private:
  void Add_Table(std::uint32_t sector) {
    if (sector < kMost_Sector && !Sector(sector).empty()) table_.push_back(sector);
  }
  // The last sector of a file may be cut.
  [[nodiscard]] std::string_view Sector(std::uint32_t number) const {
    const std::size_t at = (std::size_t{number} + 1) * size_;
    return at < bytes_.size() ? bytes_.substr(at, size_) : std::string_view();
  }

  std::string_view bytes_;
  std::size_t size_ = 0;
  std::vector<std::uint32_t> table_;
};

}  // namespace

std::size_t Directory_Depth(std::string_view bytes, std::size_t most) {
  const Sectors sectors(bytes);
  const auto chain = bytes.size() < 512 ? std::nullopt : sectors.Chain(Number_At(bytes, 48));
  if (!chain) return most + 1;
  const std::size_t in_sector = sectors.Size() / kEntry;
  const std::size_t count = chain->size() * in_sector;
  std::vector<bool> seen(count);
  std::vector<std::pair<std::uint32_t, std::size_t>> open{{0, 1}};
  std::size_t deepest = 0;
  while (!open.empty()) {
    const auto [entry, depth] = open.back();
    open.pop_back();
    if (entry >= count) continue;  // the library passes over it as well
    if (seen[entry] || depth > most) return most + 1;
    seen[entry] = true;
    deepest = std::max(deepest, depth);
    const std::string_view at = (*chain)[entry / in_sector].substr(
        std::min(entry % in_sector * kEntry, (*chain)[entry / in_sector].size()));
    if (at.size() < kEntry) continue;
    for (const std::size_t link : {std::size_t{68}, std::size_t{72}, std::size_t{76}})
      if (const std::uint32_t next = Number_At(at, link); next != kNo_Entry)
        open.emplace_back(next, depth + 1);
  }
  return deepest;
}

}  // namespace oru::container
