// SPDX-License-Identifier: MIT
#include "workbook/vba_compression.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "container/byte_reader.h"

namespace oru::workbook {
namespace {

constexpr char kSignature = 1;
constexpr std::size_t kChunk = 4096;        // unpacked bytes of each chunk but the last
constexpr std::size_t kMost_Packed = 4096;  // packed bytes of a chunk behind its header
constexpr std::size_t kLeast_Copy = 3;
constexpr unsigned kIs_Packed = 0x8000, kMark = 0x3000, kMark_Mask = 0x7000, kSize_Mask = 0x0FFF;

// How the 16 bits of a reference are shared out depends on how much of the chunk is unpacked: the
// offset gets just enough bits to reach its beginning, the length the others.
struct Token_Bits {
  unsigned length_bits;
  [[nodiscard]] unsigned Length_Mask() const { return 0xFFFFU >> (16 - length_bits); }
};

Token_Bits Bits_At(std::size_t unpacked) {
  unsigned offset_bits = 4;
  while ((std::size_t{1} << offset_bits) < unpacked) ++offset_bits;
  return {16 - offset_bits};
}

bool Unpack_Chunk(std::string_view packed, std::string& out) {
  const std::size_t start = out.size();
  container::Byte_Reader reader(packed);
  while (!reader.At_End()) {
    const unsigned flags = reader.U8();
    for (unsigned bit = 0; bit < 8 && !reader.At_End(); ++bit) {
      const std::size_t done = out.size() - start;
      if ((flags >> bit & 1U) == 0) {
        if (done >= kChunk) return false;
        out += static_cast<char>(reader.U8());
        continue;
      }
      const unsigned token = reader.U16();
      const Token_Bits bits = Bits_At(done);
      const std::size_t length = (token & bits.Length_Mask()) + kLeast_Copy;
      const std::size_t offset = (token >> bits.length_bits) + 1;
      if (!reader.Ok() || offset > done || done + length > kChunk) return false;
      // Byte by byte: the bytes that are copied may be ones that this reference makes.
      for (std::size_t i = 0; i < length; ++i) out += out[out.size() - offset];
    }
  }
  return true;
}

// Finds earlier places of the next three bytes of a chunk, the nearest first.
class Chunk_Index {
 public:
  explicit Chunk_Index(std::string_view chunk) : chunk_(chunk) { first_.fill(kNone); }

  void Add(std::size_t at) {
    if (at + kLeast_Copy > chunk_.size()) return;
    const std::size_t slot = Slot(at);
    before_[at] = first_[slot];
    first_[slot] = static_cast<std::uint16_t>(at);
  }

  struct Match {
    std::size_t offset = 0, length = 0;
  };
  [[nodiscard]] Match Longest(std::size_t at, std::size_t most) const {
    Match best;
    most = std::min(most, chunk_.size() - at);
    if (most < kLeast_Copy) return best;
    for (std::uint16_t from = first_[Slot(at)]; from != kNone; from = before_[from]) {
      std::size_t length = 0;
      while (length < most && chunk_[from + length] == chunk_[at + length]) ++length;
      if (length > best.length) best = {at - from, length};
      if (length == most) break;
    }
    return best.length < kLeast_Copy ? Match{} : best;
  }

 private:
  static constexpr std::uint16_t kNone = 0xFFFF;
  static constexpr std::size_t kSlots = 1024;
  [[nodiscard]] std::size_t Slot(std::size_t at) const {
    const auto byte = [&](std::size_t i) {
      return static_cast<std::size_t>(static_cast<unsigned char>(chunk_[at + i]));
    };
    return (byte(0) * 131 + byte(1) * 31 + byte(2) * 7) % kSlots;
  }

  std::string_view chunk_;
  std::array<std::uint16_t, kSlots> first_{};
  std::array<std::uint16_t, kChunk> before_{};
};

std::string Pack_Chunk(std::string_view chunk) {
  std::string out;
  Chunk_Index index(chunk);
  for (std::size_t at = 0; at < chunk.size();) {
    const std::size_t flags_at = out.size();
    unsigned flags = 0;
    out += '\0';
    for (unsigned bit = 0; bit < 8 && at < chunk.size(); ++bit) {
      const Token_Bits bits = Bits_At(at);
      const auto match = index.Longest(at, bits.Length_Mask() + kLeast_Copy);
      const std::size_t step = std::max<std::size_t>(match.length, 1);
      if (match.length == 0) {
        out += chunk[at];
      } else {
        const auto token = static_cast<unsigned>((match.offset - 1) << bits.length_bits |
                                                 (match.length - kLeast_Copy));
        out += static_cast<char>(token & 0xFFU);
        out += static_cast<char>(token >> 8);
        flags |= 1U << bit;
      }
      for (std::size_t i = 0; i < step; ++i) index.Add(at + i);
      at += step;
    }
    out[flags_at] = static_cast<char>(flags);
  }
  return out;
}

void Put_Header(std::string& out, unsigned header) {
  out += static_cast<char>(header & 0xFFU);
  out += static_cast<char>(header >> 8);
}

}  // namespace

std::optional<std::string> Decompress(std::string_view packed, std::size_t most) {
  if (packed.empty() || packed[0] != kSignature) return std::nullopt;
  std::string out;
  container::Byte_Reader reader(packed, 1);
  while (!reader.At_End()) {
    const unsigned header = reader.U16();
    // The size counts the header's two bytes, and is told less three.
    const std::size_t size = (header & kSize_Mask) + 1;
    const std::string_view chunk = reader.Bytes(size);
    if (!reader.Ok() || (header & kMark_Mask) != kMark) return std::nullopt;
    if ((header & kIs_Packed) == 0) {
      out += chunk;
    } else if (!Unpack_Chunk(chunk, out)) {
      return std::nullopt;
    }
    if (out.size() > most) return std::nullopt;
  }
  return out;
}

std::string Compress(std::string_view bytes) {
  std::string out(1, kSignature);
  for (std::size_t at = 0; at < bytes.size(); at += kChunk) {
    const std::string_view chunk = bytes.substr(at, kChunk);
    const std::string packed = Pack_Chunk(chunk);
    if (packed.size() < kMost_Packed) {
      Put_Header(out, kIs_Packed | kMark | static_cast<unsigned>(packed.size() - 1));
      out += packed;
    } else {
      // An unpacked chunk has no length: the last one is filled up ([MS-OVBA] 2.4.1.3.10).
      Put_Header(out, kMark | static_cast<unsigned>(kChunk - 1));
      out.append(chunk).append(kChunk - chunk.size(), '\0');
    }
  }
  return out;
}

}  // namespace oru::workbook
