// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "form_storage_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  oru::fuzz::Run_Form_Storage({reinterpret_cast<const char*>(data), size});
  return 0;
}
