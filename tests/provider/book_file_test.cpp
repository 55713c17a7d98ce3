// SPDX-License-Identifier: MIT
// Workbooks as projects: what the in-memory editor and host tell of them, and how one that cannot
// be read is told.
#include "provider/book_file.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/memory_editor.h"
#include "provider/frx_form.h"
#include "support/archive_maker.h"
#include "support/book_maker.h"
#include "support/fakes.h"

namespace oru::provider {
namespace {

using test::Made_Project;

constexpr std::string_view kWorkbook_Base =
    "Attribute VB_Base = \"0{00020819-0000-0000-C000-000000000046}\"\r\n";
constexpr std::string_view kNot_Visible = "GC=\"0002101311131113\"\r\n";

Made_Project Orders() {
  Made_Project project;
  project.modules = {
      {"ThisWorkbook", "Document", std::string(kWorkbook_Base) + "Private Sub Workbook_Open()\r\n"},
      {"Sheet1", "Document", "Option Explicit\r\n", "compiled"},
      {"modMain", "Module", "Sub Run()\r\nEnd Sub\r\n"},
      {"clsOrder", "Class"},
      {"frmInput", "BaseClass"}};
  return project;
}

Project_Source Read(std::string bytes) {
  return Read_Book_Bytes(std::move(bytes), "/data/受注.xlsm", "受注.xlsm");
}

std::string Show(const Project_Source& project) {
  std::string out = project.error;
  for (const auto& component : project.components)
    out += component.name + " " + std::to_string(component.type) + "\n";
  for (const auto& problem : project.problems) out += problem.path + ": " + problem.message + "\n";
  return out;
}

TEST(Book_File, ModulesSheetsAndReferences) {
  Project_Source project = Read(test::Make_Xlsm(Orders()));
  EXPECT_EQ(Show(project),
            "ThisWorkbook 100\nSheet1 100\nmodMain 1\nclsOrder 2\nfrmInput 3\n"
            "受注.xlsm: 「受注.xlsm」のフォーム「frmInput」の画面がありません。\n");
  ASSERT_TRUE(project.workbook.has_value());
  EXPECT_EQ(project.workbook->code_name, "ThisWorkbook")
      << "no part names it; one module can be it";
  ASSERT_EQ(project.workbook->sheets.size(), 1U);
  EXPECT_EQ(project.workbook->sheets[0].name, "受注");
  EXPECT_EQ(project.workbook->sheets[0].code_name, "Sheet1");

  host::Memory_Editor editor;
  host::Memory_Project& loaded = Add_To_Editor(editor, project);
  EXPECT_EQ(loaded.Name(), "Juchu");
  EXPECT_EQ(loaded.Description(), "orders");
  EXPECT_EQ(loaded.FileName(), "/data/受注.xlsm");
  EXPECT_EQ(loaded.Protection(), host::Protection::None);
  EXPECT_EQ(loaded.References().Count(), 1);
  EXPECT_EQ(loaded.References().Item(1)->Description(), "OLE Automation");
  EXPECT_FALSE(loaded.References().Item(1)->IsBroken());
  EXPECT_EQ(loaded.Find_Component("modMain")->CodeModule()->Lines(1, 2), "Sub Run()\r\nEnd Sub");
  EXPECT_EQ(loaded.Find_Component("ThisWorkbook")->CodeModule()->CountOfLines(), 1);
}

TEST(Book_File, AProjectLockedForViewingHasItsModules) {
  Made_Project project = Orders();
  project.project_lines = kNot_Visible;
  Project_Source read = Read(test::Make_Xlsm(project));
  EXPECT_EQ(read.components.size(), 5U);
  host::Memory_Editor editor;
  EXPECT_EQ(Add_To_Editor(editor, read).Protection(), host::Protection::Locked);
}

TEST(Book_File, ABareProjectAndADocumentHaveNoSheets) {
  Project_Source bare = Read(container::Write_Compound(Orders().Storage()));
  EXPECT_EQ(bare.components.size(), 5U);
  EXPECT_FALSE(bare.workbook.has_value());
  const Project_Source document = Read(test::Make_Archive({
      {"_rels/.rels",
       "<Relationships><Relationship Id=\"rId1\" Type=\"t/officeDocument\" "
       "Target=\"word/document.xml\"/></Relationships>"},
      {"word/document.xml", "<document/>"},
      {"word/_rels/document.xml.rels",
       "<Relationships><Relationship Id=\"rId2\" Type=\"t/vbaProject\" Target=\"vbaProject.bin\"/>"
       "</Relationships>"},
      {"word/vbaProject.bin",
       container::Write_Compound(
           Made_Project{.modules = {{"ThisDocument", "Document"}}}.Storage())},
  }));
  EXPECT_EQ(Show(document), "ThisDocument 100\n");
}

TEST(Book_File, OneDamagedModuleDoesNotKeepTheOthersOut) {
  container::Storage storage = Orders().Storage();
  storage.Find_Storage("VBA")->Find_Stream("modMain")->bytes = "\x01\xFF\xFF";
  storage.Find_Storage("VBA")->Find_Stream("Sheet1")->bytes = "";
  std::erase_if(storage.Find_Storage("VBA")->streams,
                [](const container::Stream& stream) { return stream.name == "clsOrder"; });
  EXPECT_EQ(
      Show(Read(test::Make_Xlsm(storage))),
      "ThisWorkbook 100\nfrmInput 3\n"
      "受注.xlsm: 「受注.xlsm」のモジュール「Sheet1」のソースの位置が、ストリームの外を指しています。"
      "このモジュールを除いて読み込みました。\n"
      "受注.xlsm: 「受注.xlsm」のモジュール「modMain」のソースが破損しています。"
      "このモジュールを除いて読み込みました。\n"
      "受注.xlsm: 「受注.xlsm」のモジュール「clsOrder」のストリーム「clsOrder」がありません。"
      "このモジュールを除いて読み込みました。\n"
      "受注.xlsm: 「受注.xlsm」のフォーム「frmInput」の画面がありません。\n");

  Made_Project twice;
  twice.modules = {{"modA", "Module", "' \x81\x81\r\n"}, {"MODA", "Module"}};
  EXPECT_NE(Show(Read(test::Make_Xlsm(twice))).find("モジュール「MODA」は、名前が重複"),
            std::string::npos);
}

TEST(Book_File, WhatCannotBeReadIsToldWithItsReason) {
  const auto compound = [](std::string stream) {
    container::Storage root;
    root.streams.push_back({std::move(stream), "x"});
    return container::Write_Compound(root);
  };
  container::Storage no_dir = Orders().Storage();
  std::erase_if(no_dir.Find_Storage("VBA")->streams,
                [](const container::Stream& stream) { return stream.name == "dir"; });
  const test::Temp_Folder folder;
  const std::string plain = test::Make_Archive({{"xl/workbook.xml", "<workbook/>"}});
  const struct {
    std::string_view file;
    std::string bytes;
    std::string_view told;
  } kCases[] = {
      {"空.xlsm", "", "空のファイル"},
      {"plain.xlsx", plain, "マクロ（VBA プロジェクト）がありません"},
      {"text.xlsm", "Sub A()\r\n", "形式（xlsm、xlsb、xls など）ではありません"},
      {"secret.xlsm", compound("EncryptedPackage"), "暗号化"},
      {"old.xls", compound("Book"), "Excel 5.0/95"},
      {"no-macros.xls", compound("Workbook"), "マクロ（VBA プロジェクト）がありません"},
      {"no-dir.xlsm", test::Make_Xlsm(no_dir), "dir ストリーム"},
      {"cut.xlsm", plain.substr(0, plain.size() / 2), "破損"},
      {"~$open.xlsm", "owner", "ロックファイル"},
      {"bomb.xlsm", test::Make_Archive({{"xl/vbaProject.bin", std::string(64 << 20, '\0')}}),
       "展開すると大きすぎる"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.file);
    const Project_Source read = Read_Project(folder.Put(c.file, c.bytes));
    EXPECT_NE(read.error.find(c.told), std::string::npos) << read.error;
    EXPECT_NE(read.error.find(c.file), std::string::npos) << read.error;
    EXPECT_TRUE(read.components.empty());
  }
  // A workbook is known by its first bytes where its name does not tell.
  EXPECT_EQ(Read_Project(folder.Put("book.zip", test::Make_Xlsm(Orders()))).components.size(), 5U);
}

TEST(Book_File, ACutFileIsToldAtAnyLength) {
  Made_Project small;
  small.modules = {{"modMain", "Module", "Sub Run()\r\nEnd Sub\r\n"}};
  for (const std::string& whole :
       {test::Make_Xlsm(small), container::Write_Compound(small.Storage())}) {
    ASSERT_EQ(Read(whole).components.size(), 1U);
    for (std::size_t size = 0; size + 1 < whole.size(); size += 3) {
      const Project_Source read = Read(whole.substr(0, size));
      if (read.Ok())
        EXPECT_EQ(read.components[0].text, "Sub Run()\r\nEnd Sub\r\n") << size;
      else
        EXPECT_NE(read.error.find("受注.xlsm"), std::string::npos) << size;
    }
  }
}

TEST(Frx, TheFormBesideItsFile) {
  // A design with one label, as the workbook's form storage has it.
  container::Storage design;
  design.name = "frmInput";
  const std::string site = test::Bytes()
                               .U16(0)
                               .U16(24)
                               .U32(0x0001 | 0x0004 | 0x0020 | 0x0080)
                               .U32(0x80000004)
                               .U32(1)
                               .U32(0)
                               .U16(21)
                               .U16(0)
                               .Put("lblA")
                               .Text();
  design.streams = {{"f", test::Bytes()
                              .U16(0x0400)
                              .U16(8)
                              .U32(1U << 6)
                              .U32(0x8004)  // without a table of classes
                              .U32(1)
                              .U32(static_cast<std::uint32_t>(site.size() + 4))
                              .U8(0)
                              .U8(1)
                              .U16(0)
                              .Put(site)
                              .Text()},
                    {"o", ""},
                    {"\x03VBFrame", "VERSION 5.00\r\n"}};
  const std::string frx = Write_Frx(design);
  ASSERT_TRUE(frx.starts_with("LB"));
  const test::Temp_Folder folder;
  const auto form = [](std::string_view reference) {
    return "VERSION 5.00\r\nBegin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmInput \r\n"
           "   Caption         =   \"x\"\r\n   OleObjectBlob   =   " +
           std::string(reference) + "\r\nEnd\r\nAttribute VB_Name = \"frmInput\"\r\n";
  };
  const struct {
    std::string_view what;
    std::string reference;
    std::string frx;
    std::size_t controls;
  } kCases[] = {
      {"as exported", "\"f.frx\":0000", frx, 1},
      {"a place within the file", "\"f.frx\":0010", std::string(16, 'x') + frx, 1},
      {"a place outside", "\"f.frx\":FFFFFF", frx, 0},
      {"cut", "\"f.frx\":0000", frx.substr(0, 600), 0},
      {"another file", "\"../g.frx\":0000", frx, 0},
      {"no literal", "f.frx", frx, 0},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    folder.Put("f.frx", c.frx);
    folder.Put("f.frm", form(c.reference));
    const Project_Source read = Read_Project(folder.Path());
    ASSERT_EQ(read.components.size(), 1U) << read.error;
    ASSERT_EQ(read.components[0].controls.size(), c.controls);
    for (const auto& control : read.components[0].controls) EXPECT_EQ(control.name, "lblA");
  }
}

}  // namespace
}  // namespace oru::provider
