// SPDX-License-Identifier: MIT
// The designer of a form, from the storage that a workbook or an .frx file keeps it in
// ([MS-OFORMS] 2.1.2): the form, its controls, and what lies in frames and pages.
#pragma once

#include <string>
#include <vector>

#include "container/compound_file.h"
#include "host/memory_project.h"

namespace oru::workbook {

struct Form_Storage {
  std::string caption;
  /// In the order in which they are stored, a container before what it contains. A page of a
  /// multi-page is no control of the form, but names what lies on it as its container.
  std::vector<host::Control_Data> controls;
  std::vector<std::string> problems;  ///< Japanese, each naming the control
};

/// Reads a form. Places and sizes are in points, as the host gives them. A control that is damaged
/// has what could be read of it; a damaged list of controls ends where the damage begins.
[[nodiscard]] Form_Storage Read_Form(const container::Storage& form);

}  // namespace oru::workbook
