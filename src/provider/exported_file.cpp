// SPDX-License-Identifier: MIT
#include "provider/exported_file.h"

#include <utility>

#include "provider/form_layout.h"
#include "provider/layout.h"
#include "provider/lines.h"
#include "service/text.h"

namespace oru::provider {
namespace {

constexpr struct {
  std::string_view extension;
  File_Kind kind;
} kExtensions[] = {
    {".bas", File_Kind::Bas},
    {".cls", File_Kind::Cls},
    {".frm", File_Kind::Frm},
    {".doccls", File_Kind::Doccls},
};

int Component_Type(File_Kind kind, const Layout& layout) {
  switch (kind) {
    case File_Kind::Bas:
    case File_Kind::Stored:  // the workbook tells
      return host::kType_Module;
    case File_Kind::Frm:
      return host::kType_Form;
    case File_Kind::Doccls:
      return host::kType_Document;
    case File_Kind::Cls:
      // Sheets and workbooks are exported as classes; only they have both attributes set.
      return layout.predeclared && layout.exposed ? host::kType_Document : host::kType_Class;
  }
  return host::kType_Module;
}

/// 1-based number of the line that holds a byte of the text.
std::size_t Line_Number(std::string_view text, std::size_t offset) {
  std::size_t number = 1;
  for (std::size_t next = Line_At(text, 0).next; next <= offset; next = Line_At(text, next).next)
    ++number;
  return number;
}

}  // namespace

std::optional<File_Kind> Kind_Of_Extension(std::string_view extension) {
  for (const auto& entry : kExtensions)
    if (service::Equal_No_Case(extension, entry.extension)) return entry.kind;
  return std::nullopt;
}

std::string Module_Name(std::string_view given) {
  std::string name(service::Trim(service::Without_Controls(given)));
  for (char& c : name)
    if (c == '%' || c == '#' || c == '|' || c == '.') c = '_';
  return name;
}

service::Encoding Encoding_Of(std::string_view bytes, File_Kind kind) {
  return kind == File_Kind::Stored ? service::Encoding::Code_Page : service::Detect_Encoding(bytes);
}

Exported_File Read_Exported(std::string bytes, File_Kind kind, std::string_view stem,
                            const service::Code_Page& page) {
  Exported_File file;
  file.encoding = Encoding_Of(bytes, kind);
  const bool wide = file.encoding == service::Encoding::Utf16_Le_Bom ||
                    file.encoding == service::Encoding::Utf16_Be_Bom;
  if (!wide && bytes.find('\0') != bytes.npos) {
    file.is_text = false;
    return file;
  }
  service::Decoded decoded = service::Decode_Moved(std::move(bytes), file.encoding, page);
  if (wide && decoded.text.find('\0') != decoded.text.npos) {
    file.is_text = false;
    return file;
  }
  file.bad_bytes = decoded.bad_bytes;
  if (decoded.bad_bytes > 0)
    file.first_bad_line = Line_Number(decoded.text, decoded.first_bad_text);

  const Layout layout = Scan_Layout(decoded.text);
  file.code_hash = layout.code_hash;
  file.component.type = Component_Type(kind, layout);
  if (kind == File_Kind::Frm) {
    const std::string_view text = decoded.text;
    file.component.has_designer = true;
    const std::string_view block =
        text.substr(layout.block.begin, layout.block.end - layout.block.begin);
    file.component.controls = Parse_Controls(block);
    file.design = Find_Frx(block);
  }
  const std::string given = layout.name.value_or(std::string(stem));
  file.component.name = Module_Name(given);
  if (file.component.name.empty()) file.component.name = Module_Name(stem);
  file.name_changed = file.component.name != given;
  Remove_Hidden(decoded.text, layout.hidden);
  file.component.text = std::move(decoded.text);
  return file;
}

}  // namespace oru::provider
