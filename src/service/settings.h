// SPDX-License-Identifier: MIT
// The options of the user, held as one binary record of fixed layout ("DA-Sys.VMO", 7168 bytes,
// described in docs/formats.md). Reader, writer and defaults derive from one table of fields; bytes
// that no field covers are kept as they were read.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "service/codec.h"

namespace oru::service {

constexpr std::size_t kSettings_Size = 7168;

/// The record's two blocks, main options and view options: first byte, and the byte behind the last.
/// What lies outside them is never used.
constexpr std::size_t kMain_Begin = 0, kMain_End = 1768;
constexpr std::size_t kView_Begin = 4096, kView_End = 6928;

enum class Field_Type : std::uint8_t { Flag, Byte, Int32, Float32, Text };

/// One field of the record. Text is blank-padded, in code page 932.
struct Settings_Field {
  std::string_view name;
  std::uint16_t offset;
  std::uint16_t width;  ///< bytes
  Field_Type type;
  std::int32_t number;       ///< default of a number (a float's is this / 100)
  std::string_view text;     ///< default of a text
  std::uint16_t characters;  ///< most characters of a text; one takes one byte or two
  std::string_view meaning;
};

/// All fields, by offset.
[[nodiscard]] std::span<const Settings_Field> Settings_Fields();
/// The field of that name (letter case counts), or null.
[[nodiscard]] const Settings_Field* Find_Settings_Field(std::string_view name);

class Settings {
 public:
  /// Holds the defaults.
  Settings();
  /// Puts the defaults in place of all that is held.
  void Int_SysInf();
  /// The record's bytes, exactly `kSettings_Size` of them.
  [[nodiscard]] const std::string& Bytes() const { return bytes_; }
  /// Takes a record's bytes; false, and nothing changed, for any other size.
  [[nodiscard]] bool Set_Bytes(std::string_view bytes);

  /// The record as the file held it when it was last read or written; empty if it held none.
  [[nodiscard]] const std::string& File_Bytes() const { return file_bytes_; }
  void Set_File_Bytes(std::string bytes) { file_bytes_ = std::move(bytes); }

  /// Values by field name; a name that the table does not hold with such a type is a fault of the
  /// program (`std::logic_error`).
  [[nodiscard]] std::int32_t Number(std::string_view name) const;
  [[nodiscard]] bool Flag(std::string_view name) const { return Number(name) != 0; }
  [[nodiscard]] float Real(std::string_view name) const;
  /// A text field without its trailing blanks, as UTF-8.
  [[nodiscard]] std::string Text(std::string_view name) const;
  /// A byte takes 0 to 255, a flag 0 or 1: the nearest of them is kept.
  void Set_Number(std::string_view name, std::int32_t value);
  void Set_Real(std::string_view name, float value);
  /// Cut at a character's end to what fits the field. False if a character has no place in code
  /// page 932; nothing is changed then.
  [[nodiscard]] bool Set_Text(std::string_view name, std::string_view value);

 private:
  std::shared_ptr<const Code_Page> page_;
  std::string bytes_, file_bytes_;
};

/// A number that counts for as long as this lives, as an argument of one command does; then the one
/// before it comes back, which is what the file keeps.
class Number_For_Now {
 public:
  Number_For_Now(Settings& settings, std::string_view name, std::int32_t value)
      : settings_(settings), name_(name), before_(settings.Number(name)) {
    settings_.Set_Number(name_, value);
  }
  ~Number_For_Now() { settings_.Set_Number(name_, before_); }
  Number_For_Now(const Number_For_Now&) = delete;
  Number_For_Now& operator=(const Number_For_Now&) = delete;

 private:
  Settings& settings_;
  std::string_view name_;
  std::int32_t before_;
};

/// Reads the record from the data folder; defaults, and false, if it is missing, unreadable, or of
/// another size. A file that is there and cannot be used is kept as "DA-Sys.VMO.bak". Blank template and output paths become paths in `data_folder`.
[[nodiscard]] bool Lod_SysInf(Settings& settings, const std::filesystem::path& data_folder);
/// False if the record was written by an older version of the program (`RecVer`): the caller puts
/// the defaults in its place and tells the user.
[[nodiscard]] bool Chk_SysVer(const Settings& settings);
/// Writes the record in full, atomically, if it differs from the file, and removes a left-over
/// ".RIF" file of `prj_nam` (unless empty). What another program changed in the file meanwhile is
/// taken over where this one changed nothing. An empty text, or what went wrong.
[[nodiscard]] std::string Upd_SysInf(Settings& settings, const std::filesystem::path& data_folder,
                                     std::string_view prj_nam);

}  // namespace oru::service
