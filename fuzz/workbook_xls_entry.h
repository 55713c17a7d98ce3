// SPDX-License-Identifier: MIT
// Fuzz entry for the stream "Workbook" of older workbooks.
#pragma once

#include <string_view>

#include "require.h"
#include "workbook/workbook_parts.h"

namespace oru::fuzz {

inline void Run_Workbook_Xls(std::string_view input) {
  const workbook::Workbook_Parts read = workbook::Read_Parts_Xls(input);
  Require(read.workbook.sheets.size() <= input.size() / 8, "no sheets out of nothing");
}

}  // namespace oru::fuzz
