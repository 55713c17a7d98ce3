// SPDX-License-Identifier: MIT
// What the spreadsheet host tells of a workbook beside its macros, read from the workbook's own
// parts: code names and tab names, the controls on sheets, and the macros of shapes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "container/archive.h"
#include "host/memory_host_app.h"

namespace oru::workbook {

struct Workbook_Parts {
  host::Workbook_Data workbook;       ///< without the file's name
  std::vector<std::string> problems;  ///< Japanese, each naming the part
};

/// Reads the package of a workbook (ECMA-376), its parts in XML or in the binary form ([MS-XLSB]).
/// Sheets are in the order of their tabs, shapes in the order of their parts. What is damaged is
/// marked as failing and told; the rest is there.
[[nodiscard]] Workbook_Parts Read_Parts(const container::Archive& archive);

/// Reads the stream "Workbook" of a workbook in the older form ([MS-XLS]).
[[nodiscard]] Workbook_Parts Read_Parts_Xls(std::string_view stream);

}  // namespace oru::workbook
