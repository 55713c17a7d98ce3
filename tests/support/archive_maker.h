// SPDX-License-Identifier: MIT
// A zip archive in memory, made by the archive library from names and contents.
#pragma once

#include <zip.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oru::test {

[[nodiscard]] inline std::string Make_Archive(
    const std::vector<std::pair<std::string, std::string>>& parts, bool packed = true) {
  zip_source_t* source = zip_source_buffer_create(nullptr, 0, 0, nullptr);
  zip_source_keep(source);
  zip_t* zip = zip_open_from_source(source, ZIP_TRUNCATE, nullptr);
  for (const auto& [name, content] : parts) {
    zip_source_t* part = zip_source_buffer(zip, content.data(), content.size(), 0);
    const zip_int64_t at = zip_file_add(zip, name.c_str(), part, ZIP_FL_ENC_UTF_8);
    if (at < 0) throw std::runtime_error("part not added");
    if (!packed)
      (void)zip_set_file_compression(zip, static_cast<zip_uint64_t>(at), ZIP_CM_STORE, 0);
    (void)zip_file_set_mtime(zip, static_cast<zip_uint64_t>(at), 315'532'800, 0);
  }
  zip_stat_t stat;
  if (zip_close(zip) != 0 || zip_source_stat(source, &stat) != 0 || zip_source_open(source) != 0)
    throw std::runtime_error("archive not made");
  std::string bytes(stat.size, '\0');
  (void)zip_source_read(source, bytes.data(), bytes.size());
  (void)zip_source_close(source);
  zip_source_free(source);
  return bytes;
}

}  // namespace oru::test
