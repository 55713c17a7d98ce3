// SPDX-License-Identifier: MIT
// Parts in the binary form: records of a number, a size, and content ([MS-XLSB] 2.1.4).
#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "container/byte_reader.h"
#include "service/codec.h"
#include "workbook/sheet_parts.h"

namespace oru::workbook {
namespace {

using container::Byte_Reader;

constexpr std::uint32_t kSheet_Properties = 147, kBook_Properties = 153, kSheet_Entry = 156,
                        kActive_X = 644;
// Records that are looked into are small; of larger ones only the end is looked for.
constexpr std::size_t kMost_Content = std::size_t{1} << 16;

// Cuts the bytes of a part, which come in pieces, into records.
class Record_Cutter {
 public:
  using Take = std::function<void(std::uint32_t id, std::string_view content)>;
  explicit Record_Cutter(Take take) : take_(std::move(take)) {}

  void Add(std::string_view piece) {
    while (!piece.empty()) {
      if (skip_ > 0) {
        const std::size_t gone = std::min(skip_, piece.size());
        skip_ -= gone;
        piece.remove_prefix(gone);
        continue;
      }
      // One byte at a time into the header, then the content at once.
      const std::size_t wanted = in_content_ ? size_ - held_.size() : 1;
      const std::size_t got = std::min(wanted, piece.size());
      held_ += piece.substr(0, got);
      piece.remove_prefix(got);
      if (!in_content_)
        Read_Header();
      else if (held_.size() == size_)
        Give();
    }
  }
  [[nodiscard]] bool At_End() const { return held_.empty() && !in_content_ && skip_ == 0; }

 private:
  // A number is one or two bytes, a size one to four, seven bits in each but the last.
  void Read_Header() {
    std::size_t at = 0;
    const auto number = [&](std::size_t most) -> std::optional<std::uint32_t> {
      std::uint32_t value = 0;
      for (std::size_t i = 0; i < most; ++i, ++at) {
        if (at == held_.size()) return std::nullopt;
        const auto byte = static_cast<unsigned char>(held_[at]);
        value |= static_cast<std::uint32_t>(byte & 0x7FU) << (7 * i);
        if ((byte & 0x80U) == 0) {
          ++at;
          return value;
        }
      }
      return value;
    };
    const auto id = number(2);
    const auto size = id ? number(4) : std::nullopt;
    if (!size) return;
    id_ = *id;
    size_ = *size;
    held_.clear();
    if (size_ > kMost_Content) {
      skip_ = size_;
      return;
    }
    in_content_ = true;
    if (size_ == 0) Give();
  }

  void Give() {
    take_(id_, held_);
    held_.clear();
    in_content_ = false;
  }

  Take take_;
  std::string held_;
  std::uint32_t id_ = 0;
  std::size_t size_ = 0, skip_ = 0;
  bool in_content_ = false;
};

// A counted string; the count 0xFFFFFFFF stands for none.
std::string Wide_String(Byte_Reader& reader) {
  const std::uint32_t count = reader.U32();
  if (count == 0xFFFFFFFF || count > reader.Left() / 2) return {};
  return service::Text_Of_Utf16(reader.Bytes(std::size_t{count} * 2));
}

std::string Read_Records(const container::Archive& archive, std::string_view part,
                         Record_Cutter::Take take) {
  Record_Cutter cutter(std::move(take));
  std::string error = archive.Read_Pieces(part, [&](std::string_view piece) {
    cutter.Add(piece);
    return true;
  });
  if (error.empty() && !cutter.At_End())
    error = fmt::format("部品「{}」が途中で切れています。", part);
  return error;
}

}  // namespace

Book_Part Read_Book_Bin(const container::Archive& archive, std::string_view part) {
  Book_Part read;
  read.error = Read_Records(archive, part, [&](std::uint32_t id, std::string_view content) {
    Byte_Reader reader(content);
    if (id == kBook_Properties) {
      reader.Skip(8);  // flags, version of the theme
      read.code_name = Wide_String(reader);
    } else if (id == kSheet_Entry) {
      reader.Skip(8);  // state, number
      std::string relationship = Wide_String(reader);
      read.sheets.push_back({Wide_String(reader), std::move(relationship)});
    }
  });
  return read;
}

Sheet_Part Read_Sheet_Bin(const container::Archive& archive, std::string_view part) {
  Sheet_Part read;
  read.error = Read_Records(archive, part, [&](std::uint32_t id, std::string_view content) {
    Byte_Reader reader(content);
    if (id == kSheet_Properties) {
      reader.Skip(19);  // flags, colour of the tab, place of the synchronised view
      read.code_name = Wide_String(reader);
    } else if (id == kActive_X) {
      Control_Entry control;
      control.shape_id = reader.U32();
      control.relationship_id = Wide_String(reader);
      control.name = Wide_String(reader);
      read.controls.push_back(std::move(control));
    }
  });
  return read;
}

}  // namespace oru::workbook
