// SPDX-License-Identifier: MIT
// Property sets of a compound file ([MS-OLEPS]), as far as they tell of a signature.
#pragma once

#include "container/compound_file.h"

namespace oru::workbook {

/// True if the summary of a workbook (.xls) or document (.doc) holds a signature of its macros.
[[nodiscard]] bool Has_Signature(const container::Storage& root);

}  // namespace oru::workbook
