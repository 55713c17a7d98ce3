// SPDX-License-Identifier: MIT
// Little-endian numbers and stretches of bytes, read from the front of a text of bytes. A read
// beyond the end gives 0 or nothing and makes the reader fail for good, so that a parser may read
// a whole record and ask once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace oru::container {

class Byte_Reader {
 public:
  explicit Byte_Reader(std::string_view bytes, std::size_t at = 0)
      : bytes_(bytes), at_(at), failed_(at > bytes.size()) {}

  /// False once something was asked for that is not there.
  [[nodiscard]] bool Ok() const { return !failed_; }
  /// Byte offset of the next read.
  [[nodiscard]] std::size_t At() const { return at_; }
  [[nodiscard]] std::size_t Left() const { return failed_ ? 0 : bytes_.size() - at_; }
  [[nodiscard]] bool At_End() const { return Left() == 0; }

  std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t U32() { return static_cast<std::uint32_t>(Number(4)); }
  std::int32_t I32() { return static_cast<std::int32_t>(U32()); }
  std::uint64_t U64() { return Number(8); }
  std::string_view Bytes(std::size_t count) {
    if (count > Left()) {
      failed_ = true;
      return {};
    }
    const std::string_view taken = bytes_.substr(at_, count);
    at_ += count;
    return taken;
  }
  void Skip(std::size_t count) { (void)Bytes(count); }
  void Fail() { failed_ = true; }

 private:
  std::uint64_t Number(std::size_t count) {
    std::uint64_t number = 0;
    const std::string_view bytes = Bytes(count);
    for (std::size_t i = bytes.size(); i-- > 0;)
      number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
  }

  std::string_view bytes_;
  std::size_t at_;
  bool failed_;
};

}  // namespace oru::container
