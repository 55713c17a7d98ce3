// SPDX-License-Identifier: MIT
// A file that holds a macro project: a workbook or document in one of its containers, or the bare
// `vbaProject.bin`. It is held in memory from its bytes; the disk is never touched.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "container/archive.h"
#include "container/compound_file.h"
#include "workbook/vba_project.h"
#include "workbook/workbook_parts.h"

namespace oru::workbook {

class Book {
 public:
  /// Takes the bytes of a file. An empty text, or why there is no macro project to read in it, in
  /// Japanese, without the file's name.
  [[nodiscard]] std::string Open(std::string bytes);

  /// The storage of the macro project; its designers are storages in it.
  [[nodiscard]] const container::Storage& Project() const { return *Find_Project(compound_); }
  /// True if somebody signed the macros; writing to them would make the signature wrong.
  [[nodiscard]] bool Is_Signed() const { return signed_; }
  /// What the spreadsheet host tells of the workbook's own parts; nothing for a document of another
  /// host and for a bare project.
  [[nodiscard]] std::optional<Workbook_Parts> Parts() const;

  /// True if all that is no macro is the same in both: the archive's other parts, and the streams
  /// and class ids around the sources.
  [[nodiscard]] bool Same_Elsewhere(const Book& other) const;

  struct Rewritten {
    std::string error;  ///< Japanese; empty on success
    std::string bytes;
  };
  /// The file's bytes with new sources of some modules (see `Write_Vba`).
  [[nodiscard]] Rewritten With_Sources(const std::vector<Changed_Module>& changed) const;

 private:
  std::string Open_Archive(std::string bytes);
  std::string Open_Compound(std::string_view bytes);

  std::optional<container::Archive> archive_;
  std::string vba_part_;  ///< of the archive
  container::Storage compound_;
  bool signed_ = false;
};

}  // namespace oru::workbook
