// SPDX-License-Identifier: MIT
// The two forms of a module's text: the source that a workbook stores, and the file that the editor
// exports and imports. The file has a header in front that the source lacks; the source has
// attributes that bind it to the workbook and that the file lacks. Both are bytes.
#pragma once

#include <string>
#include <string_view>

#include "service/codec.h"

namespace oru::provider {

/// What a file of a module is made of.
struct Exported_Form {
  std::string extension;  ///< ".bas", ".cls" or ".frm"
  std::string bytes;
};

/// The file that an export of a module gives. `type` is that of the component; `layout` is the
/// block that the workbook holds for a form ("VERSION 5.00" ... "End", CR LF), else empty, and
/// `frx` the name of the file that its design goes to. Bytes stay in the project's code page.
[[nodiscard]] Exported_Form To_File(std::string_view source, int type, std::string_view layout,
                                    std::string_view frx);

struct Imported_Source {
  std::string error;  ///< Japanese, naming the line and the character; empty on success
  std::string bytes;
};

/// The source that an import of a file into a module gives: the file's code and attributes, with
/// those attributes of the old source that a file does not carry. The old source comes back byte
/// for byte if no line differs. A file in UTF-8 or UTF-16 is encoded for `page`, the project's;
/// line ends become CR LF where anything changed.
[[nodiscard]] Imported_Source To_Source(std::string_view file, std::string_view old_source,
                                        const service::Code_Page& page);

}  // namespace oru::provider
