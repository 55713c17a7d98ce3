// SPDX-License-Identifier: MIT
// Fuzz entries for the two containers: what can be read can be written and read again.
#pragma once

#include <string_view>

#include "container/archive.h"
#include "container/compound_file.h"
#include "require.h"

namespace oru::fuzz {

inline std::size_t Size_Of(const container::Storage& storage) {
  std::size_t size = 0;
  for (const auto& stream : storage.streams) size += stream.bytes.size();
  for (const auto& inner : storage.storages) size += Size_Of(inner);
  return size;
}

inline void Run_Compound_File(std::string_view input) {
  const container::Compound_File file = container::Read_Compound(input);
  Require(Size_Of(file.root) <= input.size(), "no more in the streams than in the file");
  if (!file.Ok()) return;
  const std::string bytes = container::Write_Compound(file.root);
  if (bytes.empty()) return;
  const container::Compound_File again = container::Read_Compound(bytes);
  Require(again.Ok(), "what was written can be read");
}

inline void Run_Archive(std::string_view input) {
  container::Archive archive;
  if (!archive.Open(std::string(input), {.part = 1 << 20, .total = 1 << 24}).empty()) return;
  for (const std::string& name : archive.Names()) {
    const container::Archive::Part part = archive.Read(name);
    Require(part.bytes.size() <= std::size_t{1} << 20, "a part has a limit");
  }
  if (archive.Names().empty()) return;
  const std::string& first = archive.Names().front();
  const container::Archive::Part changed = archive.With_Part(first, "fresh");
  if (!changed.Ok()) return;
  container::Archive again;
  Require(again.Open(changed.bytes).empty(), "what was written can be read");
  Require(again.Read(first).bytes == "fresh", "the part has its new content");
}

}  // namespace oru::fuzz
