// SPDX-License-Identifier: MIT
#include "service/settings.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "service/files.h"
#include "service/text.h"

namespace oru::service {
namespace {

constexpr int kCode_Page = 932;
constexpr std::string_view kFile_Name = "DA-Sys.VMO";

bool Is_Number(Field_Type type) {
  return type == Field_Type::Flag || type == Field_Type::Byte || type == Field_Type::Int32;
}

const Settings_Field& Find_Field(std::string_view name, bool fits(Field_Type)) {
  const Settings_Field* const field = Find_Settings_Field(name);
  if (field == nullptr || !fits(field->type)) {
    throw std::logic_error(fmt::format("settings: no such field: {}", name));
  }
  return *field;
}

const Settings_Field& Number_Field(std::string_view name) {
  return Find_Field(name, Is_Number);
}
const Settings_Field& Real_Field(std::string_view name) {
  return Find_Field(name, [](Field_Type type) { return type == Field_Type::Float32; });
}
const Settings_Field& Text_Field(std::string_view name) {
  return Find_Field(name, [](Field_Type type) { return type == Field_Type::Text; });
}

std::uint32_t Get_Little(const std::string& bytes, const Settings_Field& field) {
  std::uint32_t value = 0;
  for (std::size_t i = field.width; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(bytes[field.offset + i]);
  }
  return value;
}

void Put_Little(std::string& bytes, const Settings_Field& field, std::uint32_t value) {
  for (std::size_t i = 0; i < field.width; ++i, value >>= 8) {
    bytes[field.offset + i] = static_cast<char>(value & 0xFF);
  }
}

bool Is_Ascii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Bytes of the whole characters at the beginning of `encoded` that fit the field.
std::size_t Fitting_Bytes(std::string_view encoded, const Settings_Field& field) {
  const auto is_lead = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
  };
  std::size_t size = 0;
  for (int characters = 0; characters < field.characters && size < encoded.size(); ++characters) {
    const std::size_t next = size + (is_lead(encoded[size]) ? 2 : 1);
    if (next > field.width || next > encoded.size()) break;
    size = next;
  }
  return size;
}

void Set_Blank_Path(Settings& settings, std::string_view name, const std::filesystem::path& path) {
  if (!settings.Text(name).empty()) return;
  const std::string text = Path_Text(path);
  // A path that was cut would lead somewhere else; then rather none.
  if (!settings.Set_Text(name, text) || settings.Text(name) != text) {
    (void)settings.Set_Text(name, "");
  }
}

}  // namespace

Settings::Settings() : page_(Code_Page::Open(kCode_Page)) {
  Int_SysInf();
}

void Settings::Int_SysInf() {
  bytes_.assign(kSettings_Size, '\0');
  for (const Settings_Field& field : Settings_Fields()) {
    if (field.type == Field_Type::Text) {
      if (!Set_Text(field.name, field.text)) (void)Set_Text(field.name, "");
    } else if (field.type == Field_Type::Float32) {
      Set_Real(field.name, static_cast<float>(field.number) / 100.0F);
    } else {
      Set_Number(field.name, field.number);
    }
  }
}

bool Settings::Set_Bytes(std::string_view bytes) {
  if (bytes.size() != kSettings_Size) return false;
  bytes_ = bytes;
  return true;
}

std::int32_t Settings::Number(std::string_view name) const {
  return static_cast<std::int32_t>(Get_Little(bytes_, Number_Field(name)));
}

float Settings::Real(std::string_view name) const {
  const Settings_Field& field = Real_Field(name);
  const float value = std::bit_cast<float>(Get_Little(bytes_, field));
  return std::isfinite(value) ? value : static_cast<float>(field.number) / 100.0F;
}

std::string Settings::Text(std::string_view name) const {
  const Settings_Field& field = Text_Field(name);
  std::string_view text = std::string_view(bytes_).substr(field.offset, field.width);
  // A record made elsewhere may pad with zero bytes. Neither byte is ever half of a character.
  const std::size_t last = text.find_last_not_of(std::string_view(" \0", 2));
  text = text.substr(0, last == std::string_view::npos ? 0 : last + 1);
  return Is_Ascii(text) || page_ == nullptr ? std::string(text) : page_->Decode(text).text;
}

void Settings::Set_Number(std::string_view name, std::int32_t value) {
  const Settings_Field& field = Number_Field(name);
  if (field.type == Field_Type::Byte) {
    value = std::clamp<std::int32_t>(value, 0, std::numeric_limits<std::uint8_t>::max());
  }
  if (field.type == Field_Type::Flag) value = value != 0 ? 1 : 0;
  Put_Little(bytes_, field, static_cast<std::uint32_t>(value));
}

void Settings::Set_Real(std::string_view name, float value) {
  Put_Little(bytes_, Real_Field(name), std::bit_cast<std::uint32_t>(value));
}

bool Settings::Set_Text(std::string_view name, std::string_view value) {
  const Settings_Field& field = Text_Field(name);
  std::string encoded(value);
  if (!Is_Ascii(value)) {
    auto converted = page_ == nullptr ? std::nullopt : page_->Encode(value);
    if (!converted) return false;
    encoded = std::move(*converted);
  }
  encoded.resize(Fitting_Bytes(encoded, field));
  encoded.resize(field.width, ' ');
  bytes_.replace(field.offset, field.width, encoded);
  return true;
}

bool Lod_SysInf(Settings& settings, const std::filesystem::path& data_folder) {
  settings.Int_SysInf();
  settings.Set_File_Bytes({});
  if (data_folder.empty()) return false;
  const std::filesystem::path path = data_folder / kFile_Name;
  const Read_Result file = Read_File(path, kSettings_Size);
  const bool read = file.Ok() && settings.Set_Bytes(file.bytes);
  std::error_code error;
  if (read) {
    settings.Set_File_Bytes(file.bytes);
  } else if (std::filesystem::is_regular_file(path, error)) {
    (void)Keep_Aside(path);
  }
  Set_Blank_Path(settings, "TplPth", data_folder / u8"標準書式.doc");
  Set_Blank_Path(settings, "OutPth", data_folder);
  return read;
}

bool Chk_SysVer(const Settings& settings) {
  constexpr std::string_view kVersion = "RecVer";
  return settings.Number(kVersion) >= Number_Field(kVersion).number;
}

std::string Upd_SysInf(Settings& settings, const std::filesystem::path& data_folder,
                       std::string_view prj_nam) {
  if (data_folder.empty()) return {};
  // A name that is no single file name must not reach out of the folder.
  if (!prj_nam.empty() && prj_nam.find_first_of("/\\:") == std::string_view::npos) {
    const std::string name = std::string(prj_nam) + ".RIF";
    std::error_code ignored;
    std::filesystem::remove(data_folder / std::u8string(name.begin(), name.end()), ignored);
  }
  const std::filesystem::path path = data_folder / kFile_Name;
  const std::string old = settings.File_Bytes();
  const Read_Result now = Read_File(path, kSettings_Size);
  const bool usable = now.Ok() && now.bytes.size() == kSettings_Size;
  if (usable && old.size() == kSettings_Size && now.bytes != old) {
    std::string merged = settings.Bytes();
    for (std::size_t i = 0; i < kSettings_Size; ++i)
      if (merged[i] == old[i]) merged[i] = now.bytes[i];
    (void)settings.Set_Bytes(merged);
  }
  if (usable && now.bytes == settings.Bytes()) return {};
  const File_Result written = Write_File(
      path, settings.Bytes(), usable ? std::optional<std::string>(now.bytes) : std::nullopt);
  if (written.Ok()) settings.Set_File_Bytes(settings.Bytes());
  return written.error;
}

}  // namespace oru::service
