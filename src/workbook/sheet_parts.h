// SPDX-License-Identifier: MIT
// The parts of a workbook's package, each on its own: the list of sheets, a sheet's own part, and
// the two kinds of drawings. `workbook_parts.h` puts them together.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "container/archive.h"

namespace oru::workbook {

/// The workbook's part: its code name, and its sheets in the order of their tabs.
struct Sheet_Entry {
  std::string name;             ///< of the tab
  std::string relationship_id;  ///< of its part
};
struct Book_Part {
  std::string error;  ///< empty, or what is wrong, in Japanese
  std::string code_name;
  std::vector<Sheet_Entry> sheets;
};

/// A control as a sheet's part lists it: an ActiveX control or one of the sheet's own kind; the
/// relationship tells which.
struct Control_Entry {
  std::uint32_t shape_id = 0;
  std::string name;
  std::string relationship_id;
  std::string macro;  ///< of the sheet's own kind
};
struct Sheet_Part {
  std::string error;
  std::string code_name;
  std::vector<Control_Entry> controls;  ///< each once
};

/// A shape with a macro, in a drawing.
struct Macro_Shape {
  std::uint32_t id = 0;  ///< the same in both kinds of drawings; 0 if it is not told
  std::string name;      ///< of a legacy drawing's shape; may be empty
  std::string macro;     ///< empty for shapes that only have a name
};
struct Drawing_Part {
  std::string error;
  std::vector<Macro_Shape> shapes;
};

// In XML (ECMA-376).
[[nodiscard]] Book_Part Read_Book_Xml(const container::Archive& archive, std::string_view part);
[[nodiscard]] Sheet_Part Read_Sheet_Xml(const container::Archive& archive, std::string_view part);
[[nodiscard]] Drawing_Part Read_Drawing(const container::Archive& archive, std::string_view part);
[[nodiscard]] Drawing_Part Read_Legacy_Drawing(const container::Archive& archive,
                                               std::string_view part);

// In the binary form ([MS-XLSB]); drawings are XML there as well.
[[nodiscard]] Book_Part Read_Book_Bin(const container::Archive& archive, std::string_view part);
[[nodiscard]] Sheet_Part Read_Sheet_Bin(const container::Archive& archive, std::string_view part);

}  // namespace oru::workbook
