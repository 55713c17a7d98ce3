// SPDX-License-Identifier: MIT
#include "provider/module_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "host/line_class.h"
#include "host/model.h"
#include "provider/layout.h"
#include "provider/lines.h"
#include "service/text.h"

namespace oru::provider {
namespace {

using service::Encoding;

constexpr std::string_view kClass_Header =
    "VERSION 1.0 CLASS\r\nBEGIN\r\n  MultiUse = -1  'True\r\nEND\r\n";
// What binds a module to its workbook; the editor's export leaves it out.
constexpr std::array<std::string_view, 3> kBinding = {"VB_Base", "VB_TemplateDerived",
                                                      "VB_Customizable"};

bool Is_Binding(std::string_view name) {
  return std::any_of(kBinding.begin(), kBinding.end(), [&](std::string_view binding) {
    return service::Equal_No_Case(name, binding);
  });
}

// An attribute that no import changes.
bool Is_Own(std::string_view name) {
  return Is_Binding(name) || service::Equal_No_Case(name, "VB_Name");
}

// An attribute of the module, with its line.
struct Head_Line {
  std::string_view name;
  std::string_view content;  ///< without line end
};

// The attributes of the module at the beginning of a text, and where they end. All bytes that
// matter are ASCII, so the text need not be decoded.
struct Head {
  std::vector<Head_Line> lines;
  std::size_t end = 0;
};

Head Head_Of(std::string_view text, std::size_t begin) {
  Head head;
  head.end = begin;
  while (head.end < text.size()) {
    const Line line = Line_At(text, head.end);
    const std::string_view content = line.Content(text);
    const auto attribute = Parse_Attribute(content);
    if (!attribute || !attribute->member.empty() || host::Is_Continued(content)) break;
    head.lines.push_back({attribute->name, content});
    head.end = line.next;
  }
  return head;
}

// The line of that name which comes as the `place`th of its name, or null: some attributes come
// several times, one for each control on a sheet.
const Head_Line* Find(const Head& head, std::string_view name, std::ptrdiff_t place) {
  for (const Head_Line& line : head.lines)
    if (service::Equal_No_Case(line.name, name) && place-- == 0) return &line;
  return nullptr;
}

// The number of lines of its name before this one.
std::ptrdiff_t Place_Of(const Head& head, const Head_Line& line) {
  return std::count_if(head.lines.data(), &line, [&](const Head_Line& before) {
    return service::Equal_No_Case(before.name, line.name);
  });
}

// Where the header of a file ends: VERSION, the layout block, references to control libraries.
std::size_t Header_End(std::string_view text) {
  const Layout layout = Scan_Layout(text);
  if (layout.hidden.empty() || layout.hidden.front().begin != 0) return 0;
  std::size_t at = 0;
  while (at < layout.hidden.front().end) {
    if (layout.block.end > layout.block.begin && at == layout.block.begin) {
      at = layout.block.end;
      continue;
    }
    const Line line = Line_At(text, at);
    if (Parse_Attribute(line.Content(text))) break;
    at = line.next;
  }
  return at;
}

// The block as an export has it: with the place of the design, among the properties, which are
// sorted by name, and without what only the stored one tells.
std::string With_Design(std::string_view layout, std::string_view frx) {
  constexpr std::string_view kPlace = "OleObjectBlob";
  const std::string design = fmt::format("   {:<16}=   \"{}\":0000\r\n", kPlace, frx);
  std::string out;
  bool placed = frx.empty();
  int depth = 0;
  for (const Line& line : All_Lines(layout)) {
    const std::string_view content = line.Content(layout), text = Skip_Blanks(content);
    const bool begins = Begins_With(text, "begin");
    const bool ends = Begins_With(text, "end");
    if (depth == 1 && !placed && (begins || ends || kPlace < text)) {
      out += design;
      placed = true;
    }
    if (begins) ++depth;
    if (ends) --depth;
    if (depth == 1 && Begins_With(text, "typeinfover")) continue;
    out.append(content).append("\r\n");
  }
  return out;
}

// True if the bytes are UTF-8 with more than ASCII in them.
bool Looks_Like_Utf8(std::string_view bytes) {
  return service::Detect_Encoding(bytes) == Encoding::Utf8;
}

}  // namespace

Exported_Form To_File(std::string_view source, int type, std::string_view layout,
                      std::string_view frx) {
  Exported_Form form;
  if (type == host::kType_Module) return {".bas", std::string(source)};
  const bool has_layout = type == host::kType_Form && !layout.empty();
  form.extension = type == host::kType_Form ? ".frm" : ".cls";
  form.bytes = has_layout ? With_Design(layout, frx) : std::string(kClass_Header);
  const Head head = Head_Of(source, 0);
  // With their own line ends, a CR before a line that goes and an LF behind it would become one.
  for (const Head_Line& line : head.lines)
    if (!Is_Binding(line.name)) form.bytes.append(line.content).append("\r\n");
  form.bytes += source.substr(head.end);
  return form;
}

Imported_Source To_Source(std::string_view file, std::string_view old_source,
                          const service::Code_Page& page) {
  std::string encoded;
  Encoding encoding = service::Detect_Encoding(file);
  // Bytes of a code page can look like UTF-8 by chance; then those of the old source's file do so.
  if (encoding == Encoding::Utf8 &&
      Looks_Like_Utf8(To_File(old_source, host::kType_Class, {}, {}).bytes))
    encoding = Encoding::Code_Page;
  if (encoding != Encoding::Code_Page) {
    const service::Decoded decoded = service::Decode(file, encoding, page);
    if (decoded.bad_bytes > 0) return {"文字コードが正しくないため、取り込めません。", {}};
    std::size_t number = 0;
    for (const Line& line : All_Lines(decoded.text)) {
      ++number;
      auto bytes = page.Encode(line.Content(decoded.text));
      if (!bytes)
        return {fmt::format(
                    "{} 行目にブックのコードページ {} で表せない文字があるため、取り込めません。",
                    number, page.Number()),
                {}};
      encoded.append(*bytes).append(line.Line_End(decoded.text));
    }
    file = encoded;
  }
  if (file.find('\0') != file.npos) return {"NUL 文字を含むため、取り込めません。", {}};

  const Head old_head = Head_Of(old_source, 0);
  const Head new_head = Head_Of(file, Header_End(file));
  std::vector<std::string_view> lines;
  for (const Head_Line& line : old_head.lines) {
    const Head_Line* given = Find(new_head, line.name, Place_Of(old_head, line));
    // The name's letter case is the workbook's; a file without any attribute changes none.
    if (new_head.lines.empty() || Is_Own(line.name))
      lines.push_back(line.content);
    else if (given != nullptr)
      lines.push_back(given->content);
  }
  for (const Head_Line& line : new_head.lines)
    if (!Is_Own(line.name) && Find(old_head, line.name, Place_Of(new_head, line)) == nullptr)
      lines.push_back(line.content);
  const std::string_view body = file.substr(new_head.end);
  for (const Line& line : All_Lines(body)) lines.push_back(line.Content(body));

  std::vector<std::string_view> old_lines;
  for (const Line& line : All_Lines(old_source)) old_lines.push_back(line.Content(old_source));
  if (lines == old_lines) return {{}, std::string(old_source)};
  Imported_Source out;
  for (const std::string_view line : lines) out.bytes.append(line).append("\r\n");
  return out;
}

}  // namespace oru::provider
