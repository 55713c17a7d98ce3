// SPDX-License-Identifier: MIT
// The modules of a workbook as exported files, and such files back into the workbook. Extracting,
// importing and extracting again gives the same files.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "provider/book_writer.h"
#include "provider/project_source.h"

namespace oru::provider {

struct Exchange {
  std::string error;                   ///< Japanese; empty on success
  bool unread = false;                 ///< the error: the workbook or the folder cannot be read
  std::vector<std::string> written;    ///< files, or names of modules
  std::vector<std::string> unchanged;  ///< those that were the same already
  std::vector<Problem> problems;       ///< what was left out, and why
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

enum class Existing : std::uint8_t { Refuse, Replace };

/// Writes each module into a file of the folder, named after it, as the editor's own export would;
/// a form also gives an .frx file with its design. The folder is made if it is not there. Bytes
/// stay in the project's code page. A file that is there with other content is only replaced if
/// told so; otherwise nothing is written at all.
[[nodiscard]] Exchange Extract_Book(const std::filesystem::path& book,
                                    const std::filesystem::path& folder, Existing existing);

/// Puts the code and the attributes of the files in a folder into the modules of those names.
/// Modules without a file stay as they are; files without a module are told and left out.
[[nodiscard]] Exchange Import_Files(const std::filesystem::path& folder,
                                    const std::filesystem::path& book,
                                    const Book_Write_Options& options);

}  // namespace oru::provider
