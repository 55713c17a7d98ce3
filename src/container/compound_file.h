// SPDX-License-Identifier: MIT
// A compound file ([MS-CFB]): storages and streams in one file, as .xls workbooks, `vbaProject.bin`
// and the designers of forms are. It is read whole into plain data, and written whole from it.
// Names are compared without regard to letter case, as the format does.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace oru::container {

using Class_Id = std::array<std::uint8_t, 16>;

struct Stream {
  std::string name;  ///< UTF-8
  std::string bytes;
};

struct Storage {
  std::string name;  ///< UTF-8; the root's is empty
  Class_Id class_id{};
  std::vector<Stream> streams;
  std::vector<Storage> storages;

  /// The child of that name, or null.
  [[nodiscard]] const Stream* Find_Stream(std::string_view child) const;
  [[nodiscard]] Stream* Find_Stream(std::string_view child);
  [[nodiscard]] const Storage* Find_Storage(std::string_view child) const;
  [[nodiscard]] Storage* Find_Storage(std::string_view child);
};

/// True if the bytes begin as a compound file does.
[[nodiscard]] bool Is_Compound(std::string_view bytes);

struct Compound_File {
  std::string error;  ///< empty, or what is wrong, in Japanese, without the file's name
  Storage root;
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// Fails as a whole for a damaged file: one that is cut, whose chains of sectors loop, whose
/// streams together are larger than the file, or with storages in more than 32 levels.
[[nodiscard]] Compound_File Read_Compound(std::string_view bytes);

/// The bytes of a compound file with this content; an empty text if the library cannot make one
/// (a name that is too long).
[[nodiscard]] std::string Write_Compound(const Storage& root);

}  // namespace oru::container
