// SPDX-License-Identifier: MIT
// Edited modules, back into the workbook they came from. Only the macros change: every other part
// keeps its bytes. The old file stays beside the new one until that has been read back; what could
// not be read back as it was meant is not written.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/vba_project.h"

namespace oru::provider {

struct Book_Write_Options {
  bool signed_too = false;  ///< write although the signature of the macros becomes invalid
};

struct Rewritten_Book {
  std::string error;  ///< Japanese, naming the file; empty on success
  std::string bytes;
};

/// The bytes of a workbook with new sources of some modules, checked: read again, it has these
/// sources, and everything else as before. Refuses a project that is locked for viewing, and a
/// signed one unless told otherwise. `shown` names the file in messages.
[[nodiscard]] Rewritten_Book Rewrite_Book(const std::string& bytes,
                                          const std::vector<workbook::Changed_Module>& changed,
                                          std::string_view shown,
                                          const Book_Write_Options& options);

/// True if a file beside the workbook (or beside what it is a link to) tells that the host has it
/// open.
[[nodiscard]] bool Is_Open_In_Host(const std::filesystem::path& path);

struct Written_Book {
  std::string error;  ///< Japanese, naming the file; empty on success
  std::string bytes;  ///< of the file now
};

/// Writes them to the disk. `expected` are the bytes the file had when it was read: if it has
/// others now, or is open in the host, nothing is written.
[[nodiscard]] Written_Book Write_Book(const std::filesystem::path& path,
                                      const std::string& expected,
                                      const std::vector<workbook::Changed_Module>& changed,
                                      std::string_view shown, const Book_Write_Options& options);

}  // namespace oru::provider
