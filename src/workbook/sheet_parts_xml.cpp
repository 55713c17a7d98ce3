// SPDX-License-Identifier: MIT
#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <utility>

#include "workbook/sheet_parts.h"
#include "workbook/xml_reader.h"

namespace oru::workbook {
namespace {

std::uint32_t Number(std::string_view digits) {
  std::uint32_t number = 0;
  (void)std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

// The number in "_x0000_s1025", by which a legacy drawing and the others name one shape.
std::uint32_t Legacy_Id(std::string_view id) {
  const std::size_t at = id.rfind("_s");
  return at == id.npos || !id.starts_with('_') ? 0 : Number(id.substr(at + 2));
}

}  // namespace

Book_Part Read_Book_Xml(const container::Archive& archive, std::string_view part) {
  Book_Part read;
  read.error = Read_Xml(archive, part, {.begin = [&](const Xml_Element& element) {
                          if (element.name == "workbookPr" && read.code_name.empty())
                            read.code_name = std::string(element.Get("codeName"));
                          if (element.name == "sheet")
                            read.sheets.push_back({std::string(element.Get("name")),
                                                   std::string(element.Get("id", true))});
                        }});
  return read;
}

Sheet_Part Read_Sheet_Xml(const container::Archive& archive, std::string_view part) {
  Sheet_Part read;
  Control_Entry* open = nullptr;
  std::unordered_map<std::uint32_t, std::size_t> places;  // of the controls, by shape
  const auto begin = [&](const Xml_Element& element) {
    if (element.name == "sheetPr") {
      read.code_name = std::string(element.Get("codeName"));
    } else if (element.name == "control") {
      const std::uint32_t id = Number(element.Get("shapeId"));
      // Each stands twice: for hosts that know its properties, and for those that do not.
      const auto at = places.find(id);
      if (id == 0 || at == places.end()) {
        places.emplace(id, read.controls.size());
        read.controls.push_back(
            {id, std::string(element.Get("name")), std::string(element.Get("id", true)), {}});
        open = &read.controls.back();
      } else {
        open = &read.controls[at->second];
      }
    } else if (element.name == "controlPr" && open != nullptr && open->macro.empty()) {
      open->macro = std::string(element.Get("macro"));
    }
  };
  const auto end = [&](std::string_view name) {
    if (name == "control") open = nullptr;
  };
  read.error = Read_Xml(archive, part, {.begin = begin, .end = end});
  return read;
}

Drawing_Part Read_Drawing(const container::Archive& archive, std::string_view part) {
  Drawing_Part read;
  bool open = false;  // inside the shape that was added last, before another one begins
  const auto begin = [&](const Xml_Element& element) {
    const std::string_view macro = element.Get("macro");
    if (!macro.empty()) {
      read.shapes.push_back({0, {}, std::string(macro)});
      open = true;
    } else if (element.name == "sp" || element.name == "pic" || element.name == "cxnSp" ||
               element.name == "grpSp" || element.name == "graphicFrame") {
      open = false;
    } else if (element.name == "compatExt" && open) {
      read.shapes.back().id = Legacy_Id(element.Get("spid"));
    }
  };
  read.error = Read_Xml(archive, part, {.begin = begin});
  return read;
}

Drawing_Part Read_Legacy_Drawing(const container::Archive& archive, std::string_view part) {
  Drawing_Part read;
  bool in_shape = false, in_macro = false;
  const auto begin = [&](const Xml_Element& element) {
    if (element.name == "shape" || element.name == "rect" || element.name == "oval" ||
        element.name == "line" || element.name == "roundrect") {
      const std::string_view id = element.Get("id"), legacy = element.Get("spid", true);
      read.shapes.push_back({Legacy_Id(legacy.empty() ? id : legacy),
                             Legacy_Id(id) == 0 ? std::string(id) : std::string(),
                             {}});
      in_shape = true;
    }
    in_macro = in_shape && element.name == "FmlaMacro";
  };
  const auto text = [&](std::string_view piece) {
    if (in_macro) read.shapes.back().macro += piece;
  };
  const auto end = [&](std::string_view name) {
    if (name == "FmlaMacro") in_macro = false;
  };
  // Texts in these drawings are HTML, and not always closed.
  read.error =
      Read_Xml(archive, part, {.begin = begin, .end = end, .text = text}, Xml_Form::Lenient);
  for (Macro_Shape& shape : read.shapes) {
    const std::size_t first = shape.macro.find_first_not_of(" \t\r\n");
    const std::size_t last = shape.macro.find_last_not_of(" \t\r\n");
    shape.macro = first == std::string::npos ? "" : shape.macro.substr(first, last - first + 1);
  }
  return read;
}

}  // namespace oru::workbook
