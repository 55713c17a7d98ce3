// SPDX-License-Identifier: MIT
// Fuzz entries for the parts of a workbook's package. Byte 0 of the input says which part the rest
// is; the other parts are sound ones.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../tests/support/archive_maker.h"
#include "require.h"
#include "workbook/workbook_parts.h"

namespace oru::fuzz {

using Package_Parts = std::vector<std::pair<std::string, std::string>>;

inline void Run_Package(std::string_view input, Package_Parts parts, std::size_t fuzzed) {
  if (input.empty()) return;
  const std::size_t which = static_cast<unsigned char>(input.front()) % fuzzed;
  parts[which].second = input.substr(1);
  container::Archive archive;
  Require(archive.Open(test::Make_Archive(parts, false)).empty(), "the archive is sound");
  const workbook::Workbook_Parts read = workbook::Read_Parts(archive);
  Require(read.workbook.sheets.size() <= input.size() + 1, "no sheets out of nothing");
}

inline void Run_Workbook_Xml(std::string_view input) {
  static const Package_Parts kParts = {
      {"xl/worksheets/sheet1.xml",
       "<worksheet><sheetPr codeName=\"Sheet1\"/><sheetData/></worksheet>"},
      {"xl/drawings/drawing1.xml", "<wsDr/>"},
      {"xl/drawings/vmlDrawing1.vml", "<xml/>"},
      {"xl/workbook.xml",
       "<workbook xmlns:r=\"r\"><sheets><sheet name=\"S\" r:id=\"rId1\"/></sheets></workbook>"},
      {"xl/worksheets/_rels/sheet1.xml.rels",
       "<Relationships>"
       "<Relationship Id=\"rId1\" Type=\"t/drawing\" Target=\"../drawings/drawing1.xml\"/>"
       "<Relationship Id=\"rId2\" Type=\"t/vmlDrawing\" Target=\"../drawings/vmlDrawing1.vml\"/>"
       "<Relationship Id=\"rId3\" Type=\"t/control\" Target=\"../activeX/activeX1.xml\"/>"
       "</Relationships>"},
      {"xl/_rels/workbook.xml.rels",
       "<Relationships>"
       "<Relationship Id=\"rId1\" Type=\"t/worksheet\" Target=\"worksheets/sheet1.xml\"/>"
       "</Relationships>"},
      {"_rels/.rels",
       "<Relationships>"
       "<Relationship Id=\"rId1\" Type=\"t/officeDocument\" Target=\"xl/workbook.xml\"/>"
       "</Relationships>"},
  };
  Run_Package(input, kParts, kParts.size());
}

inline void Run_Workbook_Bin(std::string_view input) {
  // A workbook with one sheet "S", whose part is rId1.
  static const std::string kBook("\x9C\x01\x1A\0\0\0\0\1\0\0\0\4\0\0\0r\0I\0d\0\x31\0\1\0\0\0S\0",
                                 29);
  static const Package_Parts kParts = {
      {"xl/worksheets/sheet1.bin", ""},
      {"xl/workbook.bin", kBook},
      {"xl/worksheets/_rels/sheet1.bin.rels",
       "<Relationships>"
       "<Relationship Id=\"rId3\" Type=\"t/control\" Target=\"../activeX/activeX1.xml\"/>"
       "</Relationships>"},
      {"xl/_rels/workbook.bin.rels",
       "<Relationships>"
       "<Relationship Id=\"rId1\" Type=\"t/worksheet\" Target=\"worksheets/sheet1.bin\"/>"
       "</Relationships>"},
      {"_rels/.rels",
       "<Relationships>"
       "<Relationship Id=\"rId1\" Type=\"t/officeDocument\" Target=\"xl/workbook.bin\"/>"
       "</Relationships>"},
  };
  Run_Package(input, kParts, 2);
}

}  // namespace oru::fuzz
