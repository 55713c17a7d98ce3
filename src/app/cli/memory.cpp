// SPDX-License-Identifier: MIT
#include "app/cli/memory.h"

#include <cstdlib>  // tells which C library this is

#if defined(__linux__) && defined(__GLIBC__)
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#endif

namespace oru::app {

void Prepare_Memory() {
#if defined(__linux__) && defined(__GLIBC__)
  constexpr int kReserve = 512 << 20;       // of address space, not of memory
  constexpr int kLargest_Small = 32 << 20;  // the largest threshold that the library takes
  constexpr std::uintptr_t kLarge_Page = std::uintptr_t{2} << 20U;
  mallopt(M_TRIM_THRESHOLD, kReserve);
  mallopt(M_MMAP_THRESHOLD, kLargest_Small);
  mallopt(M_TOP_PAD, kReserve);
  void* volatile grown = std::malloc(1 << 20);  // NOLINT  makes the heap grow by the reserve
  std::free(grown);                             // NOLINT
  const auto end = reinterpret_cast<std::uintptr_t>(sbrk(0));  // NOLINT
  const std::uintptr_t last = end & ~(kLarge_Page - 1);
  const std::uintptr_t first = (end - kReserve + kLarge_Page - 1) & ~(kLarge_Page - 1);
  if (first < last)
    (void)madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);  // NOLINT
  mallopt(M_TOP_PAD, 64 << 20);
#endif
}

}  // namespace oru::app
