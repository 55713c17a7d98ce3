// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "exported_file_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  oru::fuzz::Run_Exported_File({reinterpret_cast<const char*>(data), size});
  return 0;
}
