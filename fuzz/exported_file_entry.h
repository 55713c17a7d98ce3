// SPDX-License-Identifier: MIT
// Fuzz entry for exported files: reads one, edits a line, writes it back. The input is
//   byte 0  kind of the file (low two bits), code page (next three), what is edited (the rest)
//   byte 1  which line is edited
//   byte 2  length of the new line, which follows; behind it come the bytes of the file
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "provider/lines.h"
#include "provider/writer.h"
#include "require.h"
#include "service/text.h"

namespace oru::fuzz {

inline void Run_Exported_File(std::string_view input) {
  using namespace oru::provider;
  using service::Code_Page;
  static const std::array pages = {Code_Page::Open(932), Code_Page::Open(949),
                                   Code_Page::Open(1252), Code_Page::Open(65001)};
  if (input.size() < 3) return;
  const auto number = [&](std::size_t i) {
    return std::size_t{static_cast<unsigned char>(input[i])};
  };
  const auto kind = static_cast<File_Kind>(number(0) & 3);
  const Code_Page& page = *pages[(number(0) >> 2 & 7) % pages.size()];
  const std::size_t edit = number(0) >> 5;
  const std::string_view rest = input.substr(3);
  const std::size_t length = std::min(number(2), rest.size());
  const std::string_view bytes = rest.substr(length);
  std::string line = service::Decode(rest.substr(0, length), service::Encoding::Utf8, page).text;
  std::erase_if(line, [](char c) { return c == '\r' || c == '\n'; });

  const auto lines_of = [](std::string_view text) {
    std::vector<std::string_view> lines;
    for (const Line& at : All_Lines(text)) lines.push_back(As_Shown(at.Content(text)));
    return lines;
  };
  const Exported_File file = Read_Exported(std::string(bytes), kind, "Stem", page);
  if (!file.is_text) return;
  std::vector<std::string_view> lines = lines_of(file.component.text);

  const Rewritten same = Rewrite_Code(bytes, kind, lines, page, "a");
  Require(same.error.empty() && same.bytes == bytes, "an unedited file stays as it is");

  const std::size_t place = lines.empty() ? 0 : number(1) % lines.size();
  const auto at = lines.begin() + static_cast<std::ptrdiff_t>(place);
  if (edit == 0 || lines.empty())
    lines.insert(at, As_Shown(line));
  else if (edit == 1)
    lines.erase(at);
  else if (edit == 2)
    std::rotate(lines.begin(), at, lines.end());
  else if (edit == 3)
    lines.erase(lines.begin(), at);
  else
    *at = As_Shown(line);

  const Rewritten edited = Rewrite_Code(bytes, kind, lines, page, "a");
  if (!edited.error.empty()) {
    Require(edited.bytes.empty(), "a refusal comes without bytes");
    return;
  }
  const Exported_File again = Read_Exported(edited.bytes, kind, "Stem", page);
  Require(again.is_text && lines_of(again.component.text) == lines, "written lines are read again");
  Require(
      again.component.name == file.component.name && again.component.type == file.component.type,
      "name and type stay");
  std::uint64_t hash = 0;
  for (const std::string_view text : lines) hash = Hash_Line(hash, text);
  Require(again.code_hash == hash, "the hash of the file's code is that of its lines");
  const Rewritten settled = Rewrite_Code(edited.bytes, kind, lines, page, "a");
  Require(settled.error.empty() && settled.bytes == edited.bytes, "a second write changes nothing");
}

}  // namespace oru::fuzz
