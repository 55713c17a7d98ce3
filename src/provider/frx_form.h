// SPDX-License-Identifier: MIT
// The .frx file beside an exported form, which holds its design: a record of 24 bytes ("LB", two
// zero bytes, the size of what follows in four bytes, sixteen zero bytes) and a compound file with
// the streams of the form, at the place that the .frm file names.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "container/compound_file.h"
#include "workbook/form_storage.h"

namespace oru::provider {

/// Where a layout block says that the design is: `OleObjectBlob = "Name.frx":0000`.
struct Frx_Place {
  std::string file;        ///< without a folder: it lies beside the form
  std::size_t offset = 0;  ///< bytes
};
[[nodiscard]] std::optional<Frx_Place> Find_Frx(std::string_view block);

/// The controls in the bytes of an .frx file; nothing if there is no design at that place.
[[nodiscard]] std::optional<workbook::Form_Storage> Read_Frx(std::string_view bytes,
                                                             std::size_t offset);
/// The bytes of an .frx file for the storage of a form; empty if it cannot be made.
[[nodiscard]] std::string Write_Frx(const container::Storage& form);

}  // namespace oru::provider
