// SPDX-License-Identifier: MIT
// The macro project inside a compound file ([MS-OVBA]): its modules with their sources, and the way
// back for a source that was edited. Sources are bytes in the project's code page, with their
// `Attribute` lines, which the editor does not show.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "container/compound_file.h"
#include "workbook/vba_dir.h"

namespace oru::workbook {

/// What a document module is bound to, by the class id of its `VB_Base`.
enum class Document_Kind : std::uint8_t { None, Workbook, Worksheet, Chart, Other };

struct Vba_Module {
  std::string name;
  int type = 1;  ///< of the component, as `host::kType_Module` and its like
  Document_Kind document = Document_Kind::None;
  std::string source;
  std::string error;  ///< empty, or why there is no source, in Japanese
};

struct Vba_Project {
  std::string error;  ///< empty, or why nothing could be read, in Japanese
  std::string name, description;
  int code_page = 1252;
  std::shared_ptr<const service::Code_Page> page;  ///< that code page; there is one if `Ok()`
  bool locked = false;                             ///< for viewing
  std::vector<Dir_Reference> references;
  std::vector<Vba_Module> modules;  ///< in the directory's order
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// The storage that holds the project: the root itself, or the one that workbooks (.xls) and
/// documents (.doc) keep it in. Null if there is none.
[[nodiscard]] const container::Storage* Find_Project(const container::Storage& root);
[[nodiscard]] container::Storage* Find_Project(container::Storage& root);

/// Reads the project. A module whose source is damaged has an `error`; a damaged directory makes
/// the whole fail.
[[nodiscard]] Vba_Project Read_Vba(const container::Storage& project);

struct Changed_Module {
  std::string name;
  std::string source;
};

/// Puts new sources into the project, and takes out what the host compiled from the old ones, so
/// that it compiles all anew ([MS-OVBA] 2.3.4.1 and 2.2.6). No other stream is touched. Gives an
/// empty text, or in Japanese why nothing was changed.
[[nodiscard]] std::string Write_Vba(container::Storage& project,
                                    const std::vector<Changed_Module>& changed);

/// True if the two projects have the same storages and streams, those aside that `Write_Vba` writes.
[[nodiscard]] bool Same_But_Sources(const container::Storage& a, const container::Storage& b);

}  // namespace oru::workbook
