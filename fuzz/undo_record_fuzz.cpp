// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "undo_record_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  oru::fuzz::Run_Undo_Record({reinterpret_cast<const char*>(data), size});
  return 0;
}
