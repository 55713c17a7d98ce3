// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "rewrite_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  oru::fuzz::Run_Rewrite({reinterpret_cast<const char*>(data), size});
  return 0;
}
