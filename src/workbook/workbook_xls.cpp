// SPDX-License-Identifier: MIT
// The stream "Workbook" of the older form ([MS-XLS]): records of a number, a size, and content, in
// substreams; the first is the workbook's, the others are the sheets'.
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

#include "container/byte_reader.h"
#include "service/codec.h"
#include "workbook/escher.h"
#include "workbook/workbook_parts.h"

namespace oru::workbook {
namespace {

using container::Byte_Reader;

enum Record : std::uint16_t {
  kEof = 0x000A,
  kName = 0x0018,
  kFile_Pass = 0x002F,
  kContinue = 0x003C,
  kObject = 0x005D,
  kBound_Sheet = 0x0085,
  kDrawing = 0x00EC,
  kCode_Name = 0x01BA,
  kBof = 0x0809,
};
constexpr std::uint16_t kBiff8 = 0x0600;
constexpr std::uint8_t kModule_Sheet = 6;  // macros of the time before projects
constexpr int kActive_X = 2;

// A string of counted characters, of one or two bytes each as a flag says.
std::string String(Byte_Reader& reader, std::size_t count) {
  const bool wide = (reader.U8() & 1U) != 0;
  if (wide) return service::Text_Of_Utf16(reader.Bytes(count * 2));
  std::string text;  // the high bytes, which are 0, are left out
  for (const char c : reader.Bytes(count)) text.append({c, '\0'});
  return service::Text_Of_Utf16(text);
}

// The parts of an Obj record that matter.
struct Object {
  bool is_control = false;
  std::uint32_t macro_name = 0;  ///< 1-based place in the list of names; 0 without a macro
};

Object Read_Object(std::string_view content) {
  enum Part : std::uint16_t { kEnd = 0x00, kMacro = 0x04, kPicture_Flags = 0x08 };
  constexpr std::uint16_t kControl_Flag = 0x10;
  Object object;
  Byte_Reader reader(content);
  while (reader.Left() >= 4) {
    const std::uint16_t part = reader.U16(), size = reader.U16();
    Byte_Reader value(reader.Bytes(std::min<std::size_t>(size, reader.Left())));
    if (part == kEnd) break;
    if (part == kPicture_Flags) object.is_control = (value.U16() & kControl_Flag) != 0;
    if (part == kMacro) {
      value.Skip(2 + 2 + 4);  // sizes of the formula
      const unsigned token = value.U8() & 0x1FU;
      constexpr unsigned kPtg_Name = 0x03;
      const std::uint32_t name = value.U32();
      if (token == kPtg_Name && value.Ok()) object.macro_name = name;
    }
  }
  return object;
}

struct Bound_Sheet {
  std::uint32_t place = 0;
  std::string name;
};

class Xls_Reader {
 public:
  explicit Xls_Reader(std::string_view stream) : stream_(stream) {}

  Workbook_Parts Read() {
    Byte_Reader first(stream_);
    const std::uint16_t id = first.U16();
    first.Skip(2);
    const std::uint16_t version = first.U16();
    if (!first.Ok() || id != kBof || version != kBiff8)
      return Fail("シートの情報（Workbook ストリーム）が Excel 97 以降の形式ではありません。");
    const bool whole = Walk(0, [this](std::uint16_t record, std::string_view content) {
      Take_Global(record, content);
    });
    if (encrypted_)
      return Fail("シートの情報がパスワードで暗号化されているため、シート名などを読めません。");
    if (!whole)
      parts_.problems.emplace_back("シートの情報（Workbook ストリーム）が途中で切れています。");
    for (const Bound_Sheet& bound : sheets_) Read_Sheet(bound);
    return std::move(parts_);
  }

 private:
  Workbook_Parts Fail(std::string message) {
    Workbook_Parts failed;
    failed.workbook.fails = failed.workbook.sheets_fail = true;
    failed.problems.push_back(std::move(message));
    return failed;
  }

  // Gives the records of the substream at `at`, embedded substreams left out; false if it is cut.
  // Substreams do not overlap, so all together they are read once; a file whose sheets all lie in
  // one place is not read over and over.
  template <class Take>
  bool Walk(std::size_t at, Take take) {
    Byte_Reader reader(stream_, at);
    int depth = 0;
    while (reader.Left() >= 4) {
      const std::uint16_t id = reader.U16(), size = reader.U16();
      const std::string_view content = reader.Bytes(size);
      if (!reader.Ok() || budget_ < content.size() + 4) return false;
      budget_ -= content.size() + 4;
      if (id == kBof) ++depth;
      if (depth == 1) take(id, content);
      if (id == kEof && --depth <= 0) return true;
    }
    return false;
  }

  void Take_Global(std::uint16_t record, std::string_view content) {
    Byte_Reader reader(content);
    if (record == kFile_Pass) {
      encrypted_ = true;
    } else if (record == kCode_Name) {
      const std::size_t count = reader.U16();
      parts_.workbook.code_name = String(reader, count);
    } else if (record == kBound_Sheet) {
      Bound_Sheet sheet;
      sheet.place = reader.U32();
      reader.Skip(1);
      const std::uint8_t type = reader.U8();
      const std::size_t count = reader.U8();
      sheet.name = String(reader, count);
      if (type != kModule_Sheet) sheets_.push_back(std::move(sheet));
    } else if (record == kName) {
      reader.Skip(3);
      const std::size_t count = reader.U8();
      reader.Skip(10);
      names_.push_back(String(reader, count));
    }
  }

  void Read_Sheet(const Bound_Sheet& bound) {
    host::Sheet_Data& sheet = parts_.workbook.sheets.emplace_back();
    sheet.name = bound.name;
    std::string drawing;  // of the shape that the next object belongs to
    bool continues = false;
    const bool whole = Walk(bound.place, [&](std::uint16_t record, std::string_view content) {
      Byte_Reader reader(content);
      if (record == kDrawing || (record == kContinue && continues)) {
        drawing += content;
        continues = true;
        return;
      }
      continues = false;
      if (record == kCode_Name) {
        const std::size_t count = reader.U16();
        sheet.code_name = String(reader, count);
      } else if (record == kObject) {
        const Object object = Read_Object(content);
        if (object.is_control) sheet.ole_objects.push_back({Shape_Name(drawing), kActive_X});
        if (object.macro_name > 0 && object.macro_name <= names_.size())
          sheet.shapes.push_back({names_[object.macro_name - 1]});
        drawing.clear();
      }
    });
    if (whole) return;
    parts_.problems.push_back(fmt::format("シート「{}」の情報が破損しています。", bound.name));
    sheet.fails = sheet.code_name.empty();
    sheet.ole_objects_fail = sheet.shapes_fail = true;
  }

  std::string_view stream_;
  std::size_t budget_ = stream_.size();
  Workbook_Parts parts_;
  std::vector<Bound_Sheet> sheets_;
  std::vector<std::string> names_;
  bool encrypted_ = false;
};

}  // namespace

Workbook_Parts Read_Parts_Xls(std::string_view stream) {
  return Xls_Reader(stream).Read();
}

}  // namespace oru::workbook
