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
#include "provider/frx_form.h"
#include "service/codec.h"

namespace oru::provider {

/// What a file's extension says. `Stored` is the source of a module as a workbook holds it: no file
/// of its own, without a header, and always in the project's code page.
enum class File_Kind : std::uint8_t { Bas, Cls, Frm, Doccls, Stored };

/// The kind for an extension with its dot, letter case aside; nothing for other files.
[[nodiscard]] std::optional<File_Kind> Kind_Of_Extension(std::string_view extension);

struct Exported_File {
  host::Component_Data component;
  service::Encoding encoding = service::Encoding::Code_Page;
  bool is_text = true;              ///< false: it holds NUL characters, and nothing else is set
  bool name_changed = false;        ///< the name it gives cannot stand as it is
  std::size_t bad_bytes = 0;        ///< undecodable bytes, now U+FFFD
  std::size_t first_bad_line = 0;   ///< 1-based line of the file with the first of them
  std::uint64_t code_hash = 0;      ///< of the list of code lines (`Hash_Line`)
  std::optional<Frx_Place> design;  ///< of a form whose controls are not in the file itself
};

/// The encoding of a file's bytes: told by `Detect_Encoding`, but for what is `Stored`.
[[nodiscard]] service::Encoding Encoding_Of(std::string_view bytes, File_Kind kind);

/// Decodes a file and takes out what is not code. `stem` (the file's name without its extension)
/// names a module that does not name itself. The encoding is that of `Encoding_Of`: `page` serves
/// the files that have no byte order mark and are no well-formed UTF-8, whichever code page
/// the user chose.
[[nodiscard]] Exported_File Read_Exported(std::string bytes, File_Kind kind, std::string_view stem,
                                          const service::Code_Page& page);

/// A name as a module can have it: without control characters, and with "_" for what separates the
/// parts of the analysis' records, which the editor would not allow either.
[[nodiscard]] std::string Module_Name(std::string_view given);

}  // namespace oru::provider
