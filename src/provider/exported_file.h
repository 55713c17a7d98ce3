// SPDX-License-Identifier: MIT
// One exported file: from its bytes to what the editor holds of it. Nothing here touches the disk.
// The file's own form (header, attributes, encoding, line ends) is not kept: whoever writes the
// module back reads the file again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/memory_project.h"
#include "service/codec.h"

namespace oru::provider {

/// What a file's extension says.
enum class File_Kind : std::uint8_t { Bas, Cls, Frm, Doccls };

/// The kind for an extension with its dot, letter case aside; nothing for other files.
[[nodiscard]] std::optional<File_Kind> Kind_Of_Extension(std::string_view extension);

struct Exported_File {
  host::Component_Data component;
  service::Encoding encoding = service::Encoding::Code_Page;
  bool is_text = true;             ///< false: it holds NUL characters, and nothing else is set
  bool name_changed = false;       ///< the name it gives cannot stand as it is
  std::size_t bad_bytes = 0;       ///< undecodable bytes, now U+FFFD
  std::size_t first_bad_line = 0;  ///< 1-based line of the file with the first of them
  std::uint64_t code_hash = 0;     ///< of the list of code lines (`Hash_Line`)
};

/// Decodes a file and takes out what is not code. `stem` (the file's name without its extension)
/// names a module that does not name itself. The encoding is told by `Detect_Encoding`: `page`
/// serves the files that have no byte order mark and are no well-formed UTF-8, whichever code page
/// the user chose.
[[nodiscard]] Exported_File Read_Exported(std::string bytes, File_Kind kind, std::string_view stem,
                                          const service::Code_Page& page);

/// The text with a blank for each control character.
[[nodiscard]] std::string Without_Controls(std::string_view text);

}  // namespace oru::provider
