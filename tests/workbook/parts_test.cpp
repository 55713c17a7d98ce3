// SPDX-License-Identifier: MIT
// What the host tells of a workbook, from parts in XML, in the binary form, and in the older form.
#include <gtest/gtest.h>

#include <string>

#include "../fuzz/vba_compression_entry.h"
#include "../fuzz/vba_project_entry.h"
#include "../fuzz/workbook_parts_entry.h"
#include "../fuzz/workbook_xls_entry.h"
#include "support/archive_maker.h"
#include "support/book_maker.h"
#include "support/corpus.h"
#include "workbook/package.h"
#include "workbook/workbook_parts.h"
#include "workbook/xml_reader.h"

namespace oru::workbook {
namespace {

using test::Bytes;
using Parts = std::vector<std::pair<std::string, std::string>>;

std::string Show(const Workbook_Parts& parts) {
  std::string out = parts.workbook.code_name + (parts.workbook.fails ? "!" : "") +
                    (parts.workbook.sheets_fail ? "!" : "") + "\n";
  for (const auto& sheet : parts.workbook.sheets) {
    out += sheet.name + "=" + sheet.code_name + (sheet.fails ? "!" : "") + " ole";
    for (const auto& object : sheet.ole_objects) out += " " + object.name;
    out += sheet.ole_objects_fail ? "! mac" : " mac";
    for (const auto& shape : sheet.shapes) out += " " + shape.on_action;
    out += sheet.shapes_fail ? "!\n" : "\n";
  }
  for (const std::string& problem : parts.problems) out += problem + "\n";
  return out;
}

Workbook_Parts Read(const Parts& parts) {
  container::Archive archive;
  EXPECT_EQ(archive.Open(test::Make_Archive(parts)), "");
  return Read_Parts(archive);
}

std::string Links(const std::vector<std::array<std::string, 3>>& links) {
  std::string out = "<?xml version=\"1.0\"?><Relationships xmlns=\"http://x/relationships\">";
  for (const auto& [id, type, target] : links)
    out.append("<Relationship Id=\"")
        .append(id)
        .append("\" Type=\"http://x/")
        .append(type)
        .append("\" Target=\"")
        .append(target)
        .append("\"/>");
  return out + "</Relationships>";
}

Parts Sample() {
  return {
      {"_rels/.rels", Links({{"rId1", "officeDocument", "xl/workbook.xml"}})},
      {"xl/workbook.xml",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?><w:workbook xmlns:w=\"m\" xmlns:r=\"r\">"
       "<w:workbookPr codeName=\"ThisWorkbook\"/><w:sheets>"
       "<w:sheet name=\"受注 &amp; 在庫\" sheetId=\"4\" r:id=\"rId2\"/>"
       "<w:sheet name=\"グラフ\" sheetId=\"1\" r:id=\"rId1\"/></w:sheets></w:workbook>"},
      {"xl/_rels/workbook.xml.rels", Links({{"rId1", "chartsheet", "chartsheets/sheet1.xml"},
                                            {"rId2", "worksheet", "/xl/worksheets/sheet1.xml"}})},
      {"xl/chartsheets/sheet1.xml", "<chartsheet><sheetPr codeName=\"Graph1\"/></chartsheet>"},
      {"xl/worksheets/sheet1.xml",
       "<worksheet xmlns:r=\"r\" xmlns:mc=\"mc\"><sheetPr codeName=\"Sheet1\"/><sheetData>"
       "<row><c><v>1</v></c></row></sheetData><mc:AlternateContent><mc:Choice><controls>"
       "<control shapeId=\"1025\" r:id=\"rId4\" name=\"cmdOk\"><controlPr macro=\"no\"/></control>"
       "<control shapeId=\"1027\" r:id=\"rId5\" name=\"btn\"><controlPr macro=\"[0]!Three\"/></control>"
       "<control shapeId=\"1028\" r:id=\"rId5\" name=\"btn2\"><controlPr macro=\"[0]!Four\"/></control>"
       "</controls></mc:Choice><mc:Fallback><controls>"
       "<control shapeId=\"1025\" r:id=\"rId4\" name=\"cmdOk\"/></controls></mc:Fallback>"
       "</mc:AlternateContent></worksheet>"},
      {"xl/worksheets/_rels/sheet1.xml.rels",
       Links({{"rId1", "drawing", "../drawings/drawing1.xml"},
              {"rId2", "vmlDrawing", "../drawings/vmlDrawing1.vml"},
              {"rId4", "control", "../activeX/activeX1.xml"},
              {"rId5", "ctrlProp", "../ctrlProps/ctrlProp1.xml"}})},
      {"xl/drawings/drawing1.xml",
       "<wsDr><grpSp macro=\"\"><sp macro=\"[0]!modA.One\"/><sp macro=\"\"/></grpSp>"
       "<pic macro=\"Two\"><nvPicPr><cNvPr id=\"3\"/></nvPicPr></pic>"
       "<sp macro=\"\"><cNvPr><compatExt spid=\"_x0000_s1027\"/></cNvPr></sp></wsDr>"},
      {"xl/drawings/vmlDrawing1.vml",
       "<xml xmlns:v=\"v\" xmlns:o=\"o\" xmlns:x=\"x\"><v:shape id=\"btn\" o:spid=\"_x0000_s1027\">"
       "<v:textbox><div>push<br>me</div></v:textbox><x:ClientData><x:FmlaMacro>[0]!Three\n"
       "</x:FmlaMacro></x:ClientData></v:shape><v:shape id=\"_x0000_s1030\"><x:ClientData>"
       "<x:FmlaMacro>[0]!モジュール.五</x:FmlaMacro></x:ClientData></v:shape></xml>"},
  };
}

void Replace(Parts& parts, std::string_view name, std::string_view content) {
  for (auto& [part, old] : parts)
    if (part == name) old = content;
}

TEST(Workbook_Parts, InXml) {
  // A form control stands in the sheet and in the legacy drawing, and counts once.
  EXPECT_EQ(
      Show(Read(Sample())),
      "ThisWorkbook\n"
      "受注 & 在庫=Sheet1 ole cmdOk mac [0]!modA.One Two [0]!Three [0]!モジュール.五 [0]!Four\n"
      "グラフ=Graph1 ole mac\n");
}

TEST(Workbook_Parts, ADamagedPartDoesNotTakeTheOthersWithIt) {
  const std::string kSheets = "グラフ=Graph1 ole mac\n";
  Parts drawing = Sample();
  Replace(drawing, "xl/drawings/drawing1.xml", "<wsDr><sp macro=\"One\"/>");
  EXPECT_EQ(
      Show(Read(drawing)),
      "ThisWorkbook\n受注 & 在庫=Sheet1 ole cmdOk mac One [0]!Three [0]!モジュール.五 [0]!Four!\n" +
          kSheets + "部品「xl/drawings/drawing1.xml」の XML が正しくありません。\n");
  Parts sheet = Sample();
  Replace(sheet, "xl/worksheets/sheet1.xml", "PK");
  EXPECT_EQ(Show(Read(sheet)),
            "ThisWorkbook\n受注 & 在庫=! ole! mac [0]!modA.One Two [0]!Three [0]!モジュール.五\n" +
                kSheets + "部品「xl/worksheets/sheet1.xml」の XML が正しくありません。\n");
  Parts missing = Sample();
  missing.erase(missing.begin() + 3);
  EXPECT_NE(Show(Read(missing))
                .find("グラフ=! ole! mac\n部品「xl/chartsheets/sheet1.xml」がありません。"),
            std::string::npos);
  Parts book = Sample();
  Replace(
      book, "xl/workbook.xml",
      "<!DOCTYPE w [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><workbook><sheets><sheet name=\"&b;\"/>"
      "</sheets></workbook>");
  EXPECT_EQ(Show(Read(book)), "!!\n部品「xl/workbook.xml」の XML が正しくありません。\n");
  EXPECT_EQ(Show(Read({{"a.txt", ""}})), "!!\nブックの部品（workbook）が見つかりません。\n");
}

// What would cost time or memory far beyond the part's size is refused before it does.
TEST(Xml, ATagOrADepthThatNoPartHas) {
  const auto ok = [](const std::string& xml) {
    return Parse_Xml(xml, "p", {.begin = [](const Xml_Element&) {}}).empty();
  };
  std::string attributes, levels, ends;
  for (int i = 0; i < 600; ++i) {
    attributes += " a" + std::to_string(i) + "='>'";
    levels += "<b>";
    ends += "</b>";
    if (i % 199 != 1 || i == 1) continue;
    EXPECT_EQ(ok("<r" + attributes + "/>"), i < 512) << i;
    EXPECT_EQ(ok(levels + ends), i < 256) << i;
  }
  EXPECT_TRUE(ok("<?x don't?><r><!-- ' <a \" > --><b a='1'/><![CDATA[ ' > ]]><c/></r>"));
}

TEST(Workbook_Parts, InTheBinaryForm) {
  const auto text = [](std::string_view ascii) {
    return Bytes().U32(static_cast<std::uint32_t>(ascii.size())).Wide(ascii).Text();
  };
  const auto record = [](unsigned id, const std::string& content) {
    Bytes out;
    out.U8((id & 0x7F) | 0x80).U8(id >> 7);
    std::size_t size = content.size();
    for (; size > 0x7F; size >>= 7) out.U8(static_cast<unsigned>((size & 0x7F) | 0x80));
    return out.U8(static_cast<unsigned>(size)).Put(content).Text();
  };
  const std::string book = record(131, "") +
                           record(153, Bytes().Zeros(8).Put(text("ThisWorkbook")).Text()) +
                           record(156, Bytes().Zeros(8).Put(text("rId1")).Put(text("Data")).Text());
  // Cells of 70,000 bytes are passed over.
  const std::string sheet =
      record(147, Bytes().Zeros(19).Put(text("Sheet1")).Text()) +
      record(384, std::string(70000, 'x')) +
      record(644, Bytes().U32(1025).Put(text("rId3")).Put(text("cmdOk")).Text()) + record(130, "");
  Parts parts = {
      {"_rels/.rels", Links({{"rId1", "officeDocument", "xl/workbook.bin"}})},
      {"xl/workbook.bin", book},
      {"xl/_rels/workbook.bin.rels", Links({{"rId1", "worksheet", "worksheets/sheet1.bin"}})},
      {"xl/worksheets/sheet1.bin", sheet},
      {"xl/worksheets/_rels/sheet1.bin.rels",
       Links({{"rId3", "control", "../activeX/activeX1.xml"}})},
  };
  EXPECT_EQ(Show(Read(parts)), "ThisWorkbook\nData=Sheet1 ole cmdOk mac\n");
  Replace(parts, "xl/worksheets/sheet1.bin", sheet.substr(0, 30));
  EXPECT_EQ(
      Show(Read(parts)),
      "ThisWorkbook\nData=! ole! mac\n部品「xl/worksheets/sheet1.bin」が途中で切れています。\n");
}

// The older form.
std::string Record(unsigned id, const std::string& content) {
  return Bytes().U16(id).U16(static_cast<unsigned>(content.size())).Put(content).Text();
}
std::string Begin(unsigned kind) {
  return Record(0x0809, Bytes().U16(0x0600).U16(kind).Zeros(12).Text());
}
const std::string kEnd = Record(0x000A, "");

std::string Xls(std::string_view extra = {}) {
  const std::string name = Bytes().Zeros(3).U8(5).Zeros(10).U8(0).Put("M.Run").Text();
  const auto globals = [&](std::uint32_t place) {
    return Begin(5) + std::string(extra) +
           Record(0x01BA, Bytes().U16(12).U8(0).Put("ThisWorkbook").Text()) +
           Record(0x0085,
                  Bytes().U32(place).U8(0).U8(0).U8(2).U8(1).U16(0x53D7).U16(0x6CE8).Text()) +
           Record(0x0085,
                  Bytes().U32(7).U8(0).U8(6).U8(3).U8(0).Put("Old").Text()) +  // a module sheet
           Record(0x0018, name) +
           kEnd;
  };
  // A shape named cmdOk: a container with a table of two properties, and their content behind it.
  const std::string table =
      Bytes().U16(0x8105).U32(4).U16(0x8380).U32(12).Put("skip").Wide("cmdOk").U16(0).Text();
  const std::string shape = Bytes()
                                .U16(0x0023)
                                .U16(0xF00B)
                                .U32(static_cast<std::uint32_t>(table.size()))
                                .Put(table)
                                .Text();
  const std::string drawing =
      Bytes().U16(0xF).U16(0xF004).U32(static_cast<std::uint32_t>(shape.size())).Put(shape).Text();
  const std::string control =
      Bytes().U16(0x15).U16(18).Zeros(18).U16(8).U16(2).U16(0x10).Zeros(4).Text();
  const std::string button = Bytes()
                                 .U16(0x15)
                                 .U16(18)
                                 .Zeros(18)
                                 .U16(4)
                                 .U16(13)
                                 .U16(11)
                                 .U16(5)
                                 .U32(0)
                                 .U8(0x23)
                                 .U32(1)
                                 .Zeros(4)
                                 .Text();
  const std::string sheet =
      Begin(0x10) + Record(0x01BA, Bytes().U16(6).U8(0).Put("Sheet1").Text()) + Begin(0x20) +
      Record(0x01BA, Bytes().U16(5).U8(0).Put("Chart").Text()) + kEnd + Record(0x00EC, drawing) +
      Record(0x005D, control) + Record(0x005D, button) + kEnd;
  const auto place = static_cast<std::uint32_t>(globals(0).size());
  return globals(place) + sheet;
}

TEST(Workbook_Parts, InTheOlderForm) {
  EXPECT_EQ(Show(Read_Parts_Xls(Xls())), "ThisWorkbook\n受注=Sheet1 ole cmdOk mac M.Run\n");
  EXPECT_EQ(Show(Read_Parts_Xls(Xls(Record(0x002F, Bytes().U16(1).Zeros(4).Text())))),
            "!!\nシートの情報がパスワードで暗号化されているため、シート名などを読めません。\n");
  EXPECT_EQ(Show(Read_Parts_Xls(Bytes().U16(0x0809).U16(4).U16(0x0500).U16(5).Text())),
            "!!\nシートの情報（Workbook ストリーム）が Excel 97 以降の形式ではありません。\n");
  const std::string whole = Xls();
  for (std::size_t size = 20; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    EXPECT_FALSE(Read_Parts_Xls(std::string_view(whole).substr(0, size)).problems.empty());
  }
}

TEST(Packages, ThePartOfTheMacrosAndItsSignature) {
  const auto opened = [](const Parts& parts) {
    container::Archive archive;
    EXPECT_EQ(archive.Open(test::Make_Archive(parts)), "");
    return archive;
  };
  const container::Archive document = opened(
      {{"_rels/.rels", Links({{"rId1", "officeDocument", "word/document.xml"}})},
       {"word/document.xml", "<d/>"},
       {"word/_rels/document.xml.rels", Links({{"rId9", "vbaProject", "macros.bin"}})},
       {"word/macros.bin", "x"},
       {"word/_rels/macros.bin.rels", Links({{"rId1", "vbaProjectSignatureAgile", "s.bin"}})}});
  EXPECT_EQ(Vba_Part(document), "word/macros.bin");
  EXPECT_TRUE(Has_Signature(document, "word/macros.bin"));
  const container::Archive lost = opened({{"ppt/VBAPROJECT.BIN", "x"}});
  EXPECT_EQ(Vba_Part(lost), "ppt/VBAPROJECT.BIN");
  EXPECT_FALSE(Has_Signature(lost, "ppt/VBAPROJECT.BIN"));
  EXPECT_EQ(Vba_Part(opened({{"xl/workbook.xml", "x"}})), std::nullopt);
}

TEST(FuzzCorpus, OfWorkbooks) {
  test::Run_Corpus("vba_compression", 1, fuzz::Run_Vba_Compression);
  test::Run_Corpus("vba_project", 17, fuzz::Run_Vba_Project);
  test::Run_Corpus("workbook_xml", 13, fuzz::Run_Workbook_Xml);
  test::Run_Corpus("workbook_bin", 3, fuzz::Run_Workbook_Bin);
  test::Run_Corpus("workbook_xls", 1, fuzz::Run_Workbook_Xls);
}

}  // namespace
}  // namespace oru::workbook
