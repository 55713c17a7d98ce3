// SPDX-License-Identifier: MIT
// What the fuzz entries claim. A claim that does not hold ends the process, which both the fuzzer
// and the test runner report.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace oru::fuzz {

inline void Require(bool claim, const char* text) {
  if (claim) return;
  std::fprintf(stderr, "claim does not hold: %s\n", text);
  std::abort();
}

}  // namespace oru::fuzz
