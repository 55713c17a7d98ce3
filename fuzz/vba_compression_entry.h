// SPDX-License-Identifier: MIT
// Fuzz entry for the compression of sources: the input is taken as packed and as unpacked bytes.
#pragma once

#include <string_view>

#include "require.h"
#include "workbook/vba_compression.h"

namespace oru::fuzz {

inline void Run_Vba_Compression(std::string_view input) {
  constexpr std::size_t kMost = std::size_t{1} << 20;
  const auto unpacked = workbook::Decompress(input, kMost);
  Require(!unpacked || unpacked->size() <= kMost, "no more is unpacked than is allowed");
  const std::string_view plain = unpacked ? std::string_view(*unpacked) : input;
  const auto again = workbook::Decompress(workbook::Compress(plain), kMost + input.size() + 4096);
  Require(again && again->starts_with(plain) &&
              again->find_first_not_of('\0', plain.size()) == again->npos,
          "what was packed can be unpacked");
}

}  // namespace oru::fuzz
