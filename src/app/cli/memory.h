// SPDX-License-Identifier: MIT
// Tuning of the C library's memory for a program that fills large tables once and ends: no memory
// is handed back meanwhile, and the heap asks for large pages, which saves most page faults. It
// changes no result, and does nothing where the platform has no such tuning.
#pragma once

namespace oru::app {

/// To be called first in main().
void Prepare_Memory();

}  // namespace oru::app
