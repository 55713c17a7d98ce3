// SPDX-License-Identifier: MIT
// Workbooks made from a description, by the public formats and not by the code under test.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "container/compound_file.h"

namespace oru::test {

/// Little-endian numbers and texts, put one behind the other.
class Bytes {
 public:
  Bytes& U8(unsigned value) { return Number(value, 1); }
  Bytes& U16(unsigned value) { return Number(value, 2); }
  Bytes& U32(std::uint32_t value) { return Number(value, 4); }
  Bytes& Put(std::string_view bytes) {
    bytes_ += bytes;
    return *this;
  }
  /// ASCII as UTF-16.
  Bytes& Wide(std::string_view ascii) {
    for (const char c : ascii) bytes_.append({c, '\0'});
    return *this;
  }
  Bytes& Zeros(std::size_t count) {
    bytes_.append(count, '\0');
    return *this;
  }
  [[nodiscard]] const std::string& Text() const { return bytes_; }
  [[nodiscard]] std::uint32_t Size() const { return static_cast<std::uint32_t>(bytes_.size()); }

 private:
  Bytes& Number(std::uint32_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i) bytes_ += static_cast<char>(value >> (8 * i) & 0xFFU);
    return *this;
  }
  std::string bytes_;
};

/// Packs bytes without any reference back: eight literal bytes behind a flag byte of 0.
[[nodiscard]] std::string Pack_Literally(std::string_view bytes);

struct Made_Module {
  std::string name;
  std::string key = "Module";  ///< its line in PROJECT: Document, Module, Class or BaseClass
  std::string source = {};     ///< without the attribute of its name
  std::string cache = {};      ///< what stands in its stream before the source
};

struct Made_Project {
  std::vector<Made_Module> modules;
  unsigned code_page = 1252;
  std::string name = "Juchu";
  std::string project_lines = {};  ///< further lines of PROJECT
  /// The directory, unpacked; `offsets` are added to those of the sources.
  [[nodiscard]] std::string Dir(std::uint32_t offset_error = 0) const;
  [[nodiscard]] container::Storage Storage() const;
};

/// The source that a module has: its name, and what was given.
[[nodiscard]] std::string Source_Of(const Made_Module& module);

/// A workbook: a package with one sheet "受注" whose code name is Sheet1.
[[nodiscard]] std::string Make_Xlsm(const Made_Project& project);
[[nodiscard]] std::string Make_Xlsm(const container::Storage& project);

}  // namespace oru::test
