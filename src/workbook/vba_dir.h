// SPDX-License-Identifier: MIT
// The directory of a macro project: its stream "dir", unpacked ([MS-OVBA] 2.3.4.2). It tells the
// project's name and code page, what the project refers to, and where each module's source is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "service/codec.h"

namespace oru::workbook {

struct Dir_Reference {
  std::string name;
  std::string library;  ///< as stored: "*\G{...}#2.0#0#path#description"
};

struct Dir_Module {
  std::string name;
  std::string stream;         ///< of the source, in the storage "VBA"
  std::uint32_t offset = 0;   ///< bytes in that stream before the packed source
  std::size_t offset_at = 0;  ///< where those four bytes stand in the directory; 0 if they do not
  bool procedural = false;    ///< a standard module; the others are told apart elsewhere
};

struct Vba_Dir {
  std::string error;  ///< empty, or what is wrong, in Japanese
  int code_page = 1252;
  std::shared_ptr<const service::Code_Page> page;  ///< null if it is not known
  std::string name, description;
  std::vector<Dir_Reference> references;
  std::vector<Dir_Module> modules;
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// Reads an unpacked directory. A record that does not fit into it, one with an unknown number, and
/// fewer modules than announced make it fail as a whole: nothing behind such a place is certain.
/// Code page 0 means the machine's own and is taken for 1252.
[[nodiscard]] Vba_Dir Read_Dir(std::string_view bytes);

}  // namespace oru::workbook
