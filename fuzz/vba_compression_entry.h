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
  const auto packed = workbook::Compress(unpacked ? *unpacked : input);
  if (!packed) return;
  const auto again = workbook::Decompress(*packed, kMost + input.size());
  Require(again && *again == (unpacked ? std::string_view(*unpacked) : input),
          "what was packed can be unpacked");
}

}  // namespace oru::fuzz
