// SPDX-License-Identifier: MIT
// Edited modules, back into the files they came from. What is not code stays as it was: header,
// attributes, encoding, and line ends. Lines that were not edited keep their very bytes. Where the
// result could not be read back as what was written, nothing is written and the user is told.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/memory_project.h"
#include "provider/book_writer.h"
#include "provider/project_source.h"
#include "service/codec.h"

namespace oru::provider {

/// The new bytes of a file, or why there are none.
struct Rewritten {
  std::string error;  ///< Japanese, naming file, line and character; empty on success
  std::string bytes;
};

/// Puts `lines` (without line ends) in the place of the code lines of a file. `shown` names the
/// file in messages. A member's attributes follow the last line of its declaration, which is found
/// by name where it was edited; they go with the member. Touches no disk.
[[nodiscard]] Rewritten Rewrite_Code(std::string_view bytes, File_Kind kind,
                                     std::span<const std::string_view> lines,
                                     const service::Code_Page& page, std::string_view shown);

struct Write_Result {
  std::string error;     ///< Japanese; empty on success
  bool written = false;  ///< false on success: the module was not edited
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// Writes the modules of one project. It knows the files as they were read, and refuses to replace
/// one that somebody else changed since. A workbook is written once for all its modules.
class Writer {
 public:
  /// `files` and the code page number are those of `Read_Project`.
  Writer(std::vector<Module_File> files, int code_page, Book_Write_Options options = {});

  /// Writes a module's lines if they differ from those last read or written.
  [[nodiscard]] Write_Result Write(std::string_view module,
                                   std::span<const std::string_view> lines);
  /// The same with the text that the editor holds. A component of the project that came from no
  /// file is an error.
  [[nodiscard]] Write_Result Write(host::VBComponent& component);
  /// Writes all components that were edited and marks them as saved; gives what could not be
  /// written, and why. Those stay edited.
  [[nodiscard]] std::vector<Problem> Write_Edited(host::Memory_Project& project);

 private:
  /// A module with the lines it shall have.
  struct Edit {
    Module_File* file;
    std::uint64_t code_hash;
    std::vector<std::string_view> lines;
  };
  [[nodiscard]] Module_File* Find(std::string_view module);
  [[nodiscard]] Write_Result Write_File(const Edit& edit);
  [[nodiscard]] Write_Result Write_To_Book(std::span<const Edit> edits);

  std::vector<Module_File> files_;
  std::shared_ptr<const service::Code_Page> page_;  ///< null for an unknown number
  Book_Write_Options options_;
};

}  // namespace oru::provider
