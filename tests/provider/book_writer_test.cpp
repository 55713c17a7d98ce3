// SPDX-License-Identifier: MIT
// Edited modules on their way back into a workbook on the disk.
#include "provider/book_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "container/archive.h"
#include "host/memory_editor.h"
#include "provider/book_exchange.h"
#include "provider/writer.h"
#include "support/archive_maker.h"
#include "support/book_maker.h"
#include "support/fakes.h"
#include "workbook/book.h"

namespace oru::provider {
namespace {

namespace fs = std::filesystem;
using List = std::vector<std::string>;

test::Made_Project Orders() {
  test::Made_Project project;
  project.code_page = 932;
  project.modules = {{"ThisWorkbook", "Document", "Attribute VB_Base = \"0{1}\"\r\n"},
                     {"modMain", "Module", "Sub Run()\r\nEnd Sub\r\n", "compiled"},
                     {"clsOrder", "Class", "' \x8E\xF3\x92\x8D\r\n", "compiled too"}};
  return project;
}

std::string Source_In(const std::string& bytes, std::string_view module) {
  workbook::Book book;
  if (std::string error = book.Open(bytes); !error.empty()) return error;
  for (const auto& read : workbook::Read_Vba(book.Project()).modules)
    if (read.name == module) return read.source;
  return "?";
}

class Books : public testing::Test {
 protected:
  [[nodiscard]] List Files() const {
    List names;
    for (const auto& entry : fs::directory_iterator(folder.Path()))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  [[nodiscard]] Exchange Extract(Existing existing = Existing::Refuse) const {
    return Extract_Book(folder / "b.xlsm", folder / "out", existing);
  }
  [[nodiscard]] Exchange Import(const Book_Write_Options& options = {}) const {
    return Import_Files(folder / "out", folder / "b.xlsm", options);
  }

  test::Temp_Folder folder;
  std::string bytes = test::Make_Xlsm(Orders());
};

TEST_F(Books, EditedModulesGoBackInOneWrite) {
  const fs::path path = folder.Put("b.xlsm", bytes);
  Project_Source project = Read_Project(path);
  host::Memory_Editor editor;
  host::Memory_Project& loaded = Add_To_Editor(editor, project);
  loaded.Find_Component("modMain")->CodeModule()->InsertLines(2, "  '受注");
  loaded.Find_Component("clsOrder")->CodeModule()->InsertLines(2, "Dim X");
  Writer writer(project.files, 932);
  EXPECT_TRUE(writer.Write_Edited(loaded).empty());
  const std::string now = folder.Get("b.xlsm");
  EXPECT_EQ(Source_In(now, "modMain"),
            "Attribute VB_Name = \"modMain\"\r\nSub Run()\r\n  '\x8E\xF3\x92\x8D\r\nEnd Sub\r\n");
  EXPECT_EQ(Source_In(now, "clsOrder"),
            "Attribute VB_Name = \"clsOrder\"\r\n' \x8E\xF3\x92\x8D\r\nDim X\r\n");
  EXPECT_EQ(Source_In(now, "ThisWorkbook"), Source_In(bytes, "ThisWorkbook"));
  EXPECT_EQ(Files(), (List{"b.xlsm"})) << "no backup stays behind";

  container::Archive was, is;
  ASSERT_EQ(was.Open(bytes), "");
  ASSERT_EQ(is.Open(now), "");
  ASSERT_EQ(was.Names(), is.Names());
  for (const std::string& name : was.Names())
    EXPECT_EQ(was.Read(name).bytes == is.Read(name).bytes, name != "xl/vbaProject.bin") << name;

  // The writer knows what it wrote; somebody else's change is not overwritten.
  loaded.Find_Component("modMain")->CodeModule()->DeleteLines(2);
  EXPECT_TRUE(writer.Write_Edited(loaded).empty());
  EXPECT_EQ(Source_In(folder.Get("b.xlsm"), "modMain"), Source_In(bytes, "modMain"));
  folder.Put("b.xlsm", bytes);
  loaded.Find_Component("modMain")->CodeModule()->DeleteLines(1);
  const auto problems = writer.Write_Edited(loaded);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.find("b.xlsm"), std::string::npos) << problems[0].message;
  EXPECT_EQ(folder.Get("b.xlsm"), bytes);
  EXPECT_TRUE(loaded.Find_Component("modMain")->Is_Edited());
}

TEST_F(Books, WhatMayNotBeWrittenStaysAsItIs) {
  test::Made_Project locked = Orders(), twice = Orders();
  locked.project_lines = "GC=\"0002101311131113\"\r\n";
  twice.modules[1].cache.clear();
  twice.modules.push_back(twice.modules[1]);
  struct Case {
    std::string_view what, told;
    std::string bytes;
    std::string_view beside;
  };
  const std::string signature = [&] {
    container::Archive archive;
    EXPECT_EQ(archive.Open(bytes), "");
    std::vector<std::pair<std::string, std::string>> parts;
    for (const std::string& name : archive.Names())
      parts.emplace_back(name, archive.Read(name).bytes);
    parts.emplace_back("xl/_rels/vbaProject.bin.rels",
                       "<Relationships><Relationship Id=\"rId1\" Type=\"t/vbaProjectSignature\" "
                       "Target=\"vbaProjectSignature.bin\"/></Relationships>");
    return test::Make_Archive(parts);
  }();
  const Case cases[] = {
      {"locked for viewing", "保護", test::Make_Xlsm(locked), ""},
      {"signed", "--signed", signature, ""},
      {"open in the host", "開かれています", bytes, "~$b.xlsm"},
      {"two modules of one name", "正しく記録されていません", test::Make_Xlsm(twice), ""},
      {"cut", "破損", bytes.substr(0, bytes.size() - 9), ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const fs::path path = folder.Put("b.xlsm", c.bytes);
    if (!c.beside.empty()) folder.Put(c.beside, "");
    const Written_Book put = Write_Book(path, c.bytes, {{"modMain", "X\r\n"}}, "b.xlsm", {});
    EXPECT_NE(put.error.find(c.told), std::string::npos) << put.error;
    EXPECT_NE(put.error.find("b.xlsm"), std::string::npos) << put.error;
    EXPECT_EQ(folder.Get("b.xlsm"), c.bytes);
    if (!c.beside.empty()) fs::remove(folder / c.beside);
    EXPECT_EQ(Files(), (List{"b.xlsm"}));
  }
  const fs::path path = folder.Put("b.xlsm", signature);
  EXPECT_EQ(
      Write_Book(path, signature, {{"modMain", "X\r\n"}}, "b.xlsm", {.signed_too = true}).error,
      "");
  EXPECT_EQ(Source_In(folder.Get("b.xlsm"), "modMain"), "X\r\n");
  EXPECT_NE(
      Write_Book(path, signature, {{"modMain", "Y\r\n"}}, "b.xlsm", {.signed_too = true}).error, "")
      << "it changed meanwhile";
  EXPECT_EQ(Files(), (List{"b.xlsm"}));
}

TEST_F(Books, ExtractImportAndExtractGiveTheSameFiles) {
  folder.Put("b.xlsm", bytes);
  const Exchange first = Extract();
  EXPECT_EQ(first.error, "");
  EXPECT_EQ(first.written, (List{"ThisWorkbook.cls", "modMain.bas", "clsOrder.cls"}));
  EXPECT_EQ(folder.Get("out/modMain.bas"), Source_In(bytes, "modMain"));
  EXPECT_EQ(Extract().unchanged.size(), 3U);

  const Exchange nothing = Import();
  EXPECT_EQ(nothing.error, "");
  EXPECT_TRUE(nothing.written.empty());
  EXPECT_EQ(folder.Get("b.xlsm"), bytes) << "nothing changed: nothing is written";

  folder.Put("out/modMain.bas",
             "\xEF\xBB\xBF"
             "Attribute VB_Name = \"modMain\"\nSub 受注()\nEnd Sub\n");
  folder.Put("out/modNew.bas", "Attribute VB_Name = \"modNew\"\r\n");
  const Exchange import = Import();
  EXPECT_EQ(import.error, "");
  EXPECT_EQ(import.written, List{"modMain"});
  EXPECT_EQ(import.unchanged, (List{"ThisWorkbook", "clsOrder"}));
  ASSERT_EQ(import.problems.size(), 1U);
  EXPECT_NE(import.problems[0].message.find("modNew"), std::string::npos);
  const std::string source =
      "Attribute VB_Name = \"modMain\"\r\nSub \x8E\xF3\x92\x8D()\r\nEnd Sub\r\n";
  EXPECT_EQ(Source_In(folder.Get("b.xlsm"), "modMain"), source);

  // The file is UTF-8, the export is not: it is another content, and is not replaced unasked.
  const Exchange refused = Extract();
  EXPECT_NE(refused.error.find("--overwrite"), std::string::npos) << refused.error;
  EXPECT_TRUE(refused.written.empty());
  const Exchange again = Extract(Existing::Replace);
  EXPECT_EQ(again.error, "");
  EXPECT_EQ(again.written, List{"modMain.bas"});
  EXPECT_EQ(folder.Get("out/modMain.bas"), source);
  EXPECT_TRUE(Import().written.empty());
}

TEST_F(Books, ExtractedFilesHaveNamesOfTheirOwn) {
  test::Made_Project made;
  made.modules = {{"a/b"}, {"a\\b"}, {"A_B"}, {"modC"}, {"MODC"}};
  folder.Put("b.xlsm", test::Make_Xlsm(made));
  const Exchange first = Extract();
  EXPECT_EQ(first.error, "");
  EXPECT_EQ(first.written, (List{"a_b.bas", "a_b_2.bas", "A_B_3.bas", "modC.bas"}));
  ASSERT_EQ(first.problems.size(), 1U);
  EXPECT_NE(first.problems[0].message.find("MODC"), std::string::npos);
  // A link would lead out of the folder.
  folder.Put("outside", "x");
  fs::remove(folder / "out/modC.bas");
  fs::create_symlink(folder / "outside", folder / "out/modC.bas");
  EXPECT_FALSE(Extract(Existing::Replace).Ok());
  EXPECT_EQ(folder.Get("outside"), "x");
}

TEST_F(Books, AnImportTakesNoFileInAModulesPlaceByChance) {
  folder.Put("b.xlsm", bytes);
  folder.Put("out/modMain.cls", "Attribute VB_Name = \"modMain\"\r\nX\r\n");
  Exchange import = Import();
  EXPECT_EQ(import.error, "");
  ASSERT_EQ(import.problems.size(), 1U);
  EXPECT_NE(import.problems[0].message.find("種類"), std::string::npos);
  folder.Put("out/clsOrder.cls", "Attribute VB_Name = \"clsOrder\"\r\nX\r\n");
  folder.Put("out/second.cls", "Attribute VB_Name = \"CLSORDER\"\r\nY\r\n");
  import = Import();
  EXPECT_NE(import.error.find("second.cls"), std::string::npos) << import.error;
  EXPECT_EQ(folder.Get("b.xlsm"), bytes);
  // A link to a workbook that is open.
  folder.Put("real/book.xlsm", bytes);
  folder.Put("real/~$book.xlsm", "");
  fs::create_symlink(folder / "real/book.xlsm", folder / "link.xlsm");
  const Written_Book put =
      Write_Book(folder / "link.xlsm", bytes, {{"modMain", "X\r\n"}}, "link.xlsm", {});
  EXPECT_NE(put.error, "");
  EXPECT_EQ(folder.Get("real/book.xlsm"), bytes);
}

TEST_F(Books, AFileThatDoesNotFitIsRefusedAsAWhole) {
  folder.Put("b.xlsm", bytes);
  folder.Put("out/modMain.bas", "Attribute VB_Name = \"modMain\"\r\nX\r\n");
  folder.Put("out/clsOrder.cls",
             "\xEF\xBB\xBF"
             "Attribute VB_Name = \"clsOrder\"\r\n'😀\r\n");
  const Exchange import = Import();
  EXPECT_NE(import.error.find("clsOrder.cls"), std::string::npos) << import.error;
  EXPECT_NE(import.error.find("932"), std::string::npos) << import.error;
  EXPECT_EQ(folder.Get("b.xlsm"), bytes);
  // A workbook is no folder of files, and a folder no workbook.
  EXPECT_FALSE(Import_Files(folder / "b.xlsm", folder / "b.xlsm", {}).Ok());
  EXPECT_TRUE(Import_Files(folder / "out", folder / "out", {}).unread);
  EXPECT_TRUE(Extract_Book(folder / "none.xlsm", folder / "o", Existing::Refuse).unread);
  EXPECT_FALSE(folder.Has("o"));
  folder.Put("file", "");
  EXPECT_FALSE(Extract_Book(folder / "b.xlsm", folder / "file", Existing::Refuse).Ok());
}

}  // namespace
}  // namespace oru::provider
