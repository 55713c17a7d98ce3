// SPDX-License-Identifier: MIT
// Drawings of the older workbooks ([MS-ODRAW]), as far as they name a shape.
#pragma once

#include <string>
#include <string_view>

namespace oru::workbook {

/// The name of the last shape in a stretch of drawing records; empty if it has none.
[[nodiscard]] std::string Shape_Name(std::string_view records);

}  // namespace oru::workbook
