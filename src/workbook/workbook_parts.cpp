// SPDX-License-Identifier: MIT
#include "workbook/workbook_parts.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "service/text.h"
#include "workbook/package.h"
#include "workbook/sheet_parts.h"

namespace oru::workbook {
namespace {

constexpr int kActive_X = 2;
constexpr std::size_t kMost_Problems = 100;  // nobody reads more

bool Is_Binary(std::string_view part) {
  return part.size() > 4 && service::Equal_No_Case(part.substr(part.size() - 4), ".bin");
}

class Parts_Reader {
 public:
  explicit Parts_Reader(const container::Archive& archive) : archive_(archive) {}

  Workbook_Parts Read() {
    const auto main = Main_Part(archive_);
    if (!main) {
      Report("ブックの部品（workbook）が見つかりません。");
      parts_.workbook.fails = parts_.workbook.sheets_fail = true;
      return std::move(parts_);
    }
    Book_Part book =
        Is_Binary(*main) ? Read_Book_Bin(archive_, *main) : Read_Book_Xml(archive_, *main);
    Report(book.error);
    parts_.workbook.code_name = std::move(book.code_name);
    parts_.workbook.fails = !book.error.empty() && parts_.workbook.code_name.empty();
    parts_.workbook.sheets_fail = !book.error.empty() && book.sheets.empty();
    const Relationships links = Read_Relationships(archive_, *main);
    Report(links.error);
    for (const Sheet_Entry& entry : book.sheets) {
      const Relationship* link = links.Of_Id(entry.relationship_id);
      host::Sheet_Data& sheet = parts_.workbook.sheets.emplace_back();
      sheet.name = entry.name;
      // A part is one sheet's: what is read over and over again takes for ever.
      if (link != nullptr && read_.insert(link->target).second) {
        Read_Sheet(link->target, sheet);
        continue;
      }
      Report(fmt::format("シート「{}」の部品が見つかりません。", entry.name));
      sheet.fails = sheet.ole_objects_fail = sheet.shapes_fail = true;
    }
    return std::move(parts_);
  }

 private:
  void Report(std::string message) {
    if (!message.empty() && parts_.problems.size() < kMost_Problems)
      parts_.problems.push_back(std::move(message));
  }

  void Read_Sheet(const std::string& part, host::Sheet_Data& sheet) {
    Sheet_Part read =
        Is_Binary(part) ? Read_Sheet_Bin(archive_, part) : Read_Sheet_Xml(archive_, part);
    if (!read.error.empty()) {
      Report(read.error);
      sheet.fails = read.code_name.empty();
      sheet.ole_objects_fail = true;
    }
    sheet.code_name = std::move(read.code_name);
    const Relationships links = Read_Relationships(archive_, part);
    Report(links.error);
    sheet.shapes_fail = !links.error.empty();

    Drawing_Part drawing, legacy;
    if (const Relationship* link = links.Of_Type("drawing");
        link != nullptr && read_.insert(link->target).second)
      drawing = Read_Drawing(archive_, link->target);
    if (const Relationship* link = links.Of_Type("vmlDrawing");
        link != nullptr && read_.insert(link->target).second)
      legacy = Read_Legacy_Drawing(archive_, link->target);
    for (const Drawing_Part* one : {&drawing, &legacy}) {
      if (one->error.empty()) continue;
      Report(one->error);
      sheet.shapes_fail = true;
    }

    // One shape may stand in up to three places; the first that tells its macro counts.
    std::set<std::uint32_t> seen;
    const auto add_shape = [&](std::uint32_t id, const std::string& macro) {
      if (macro.empty() || (id != 0 && !seen.insert(id).second)) return;
      sheet.shapes.push_back({macro});
    };
    for (const Macro_Shape& shape : drawing.shapes) add_shape(shape.id, shape.macro);
    for (const Macro_Shape& shape : legacy.shapes) add_shape(shape.id, shape.macro);
    std::map<std::uint32_t, const std::string*> names;
    for (const Macro_Shape& shape : legacy.shapes)
      if (shape.id != 0) names.emplace(shape.id, &shape.name);
    for (const Control_Entry& control : read.controls) {
      const Relationship* link = links.Of_Id(control.relationship_id);
      if (link == nullptr || link->type != "control") {
        add_shape(control.shape_id, control.macro);
        continue;
      }
      const auto named = names.find(control.shape_id);
      const bool has_name = control.name.empty() && named != names.end();
      sheet.ole_objects.push_back({has_name ? *named->second : control.name, kActive_X});
    }
  }

  const container::Archive& archive_;
  Workbook_Parts parts_;
  std::set<std::string> read_;  // sheet parts and drawings
};

}  // namespace

Workbook_Parts Read_Parts(const container::Archive& archive) {
  return Parts_Reader(archive).Read();
}

}  // namespace oru::workbook
