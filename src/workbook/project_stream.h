// SPDX-License-Identifier: MIT
// The stream PROJECT of a macro project ([MS-OVBA] 2.3.1): lines of text that tell what kind each
// module is, and whether the project is locked for viewing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "service/codec.h"

namespace oru::workbook {

enum class Item_Kind : std::uint8_t { Document, Module, Class, Form };

struct Project_Item {
  Item_Kind kind = Item_Kind::Module;
  std::string name;
};

struct Project_Stream {
  std::vector<Project_Item> items;
  bool locked = false;  ///< the host asks for a password before it shows the code
};

/// Reads what is there; lines of an unknown form say nothing, and lines of protection that cannot
/// be deciphered leave the project open.
[[nodiscard]] Project_Stream Read_Project_Stream(std::string_view bytes,
                                                 const service::Code_Page& page);

}  // namespace oru::workbook
