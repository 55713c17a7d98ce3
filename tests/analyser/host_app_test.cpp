// SPDX-License-Identifier: MIT
// What the spreadsheet host adds: kinds of documents, captions, controls of sheets, macros of shapes,
// each allowed to be refused.
#include <gtest/gtest.h>

#include "analyser/kinds.h"
#include "host/memory_host_app.h"
#include "support/project.h"

namespace oru::analyser {
namespace {

using test::Project;
using Names = std::vector<std::string>;

class Book : public testing::Test {
 protected:
  Book() {
    book.name = "Book1.xlsm";
    book.code_name = "ThisWorkbook";
    book.sheets = {{.name = "受注", .code_name = "Sheet1"},
                   {.name = "Sheet2", .code_name = "Sheet2"},
                   {.name = "集計", .code_name = "Sheet3"}};
    p.Add("ThisWorkbook", "Private Sub Workbook_Open()\nEnd Sub", host::kType_Document);
    p.Add("Sheet1", "Sub Button1_Click()\nEnd Sub\nSub Worksheet_Change()\nEnd Sub",
          host::kType_Document);
    p.Add("Sheet2", "", host::kType_Document);
    p.Add("Sheet3", "' 集計シート\nOption Explicit", host::kType_Document);
    p.Add("Module1", "Sub DrawIt()\nEnd Sub\nSub Idle()\nEnd Sub");
  }
  void Analyse() {
    app.Add_Workbook(book);
    p.App = &app;
    p.Analyse();
  }
  std::string Row(std::string_view module) {
    Tbl_Cur cur;
    if (!Set_Mdl_Fld(p.Tbl, cur, module)) return "(none)";
    return cur.Mdl.Mdl_Typ + "|" + cur.Mdl.Mdl_CTx + "|" + cur.Mdl.Mdl_Cap;
  }

  host::Workbook_Data book;
  host::Memory_Host_App app;
  Project p;
};

TEST_F(Book, DocumentsHaveKindsAndCaptions) {
  Analyse();
  EXPECT_EQ(Row("ThisWorkbook"), "71|Book1.xlsm|Book1.xlsm");
  EXPECT_EQ(Row("Sheet1"), "72|受注|受注");
  EXPECT_EQ(Row("Sheet2"), "72||Sheet2") << "a caption equal to the name is no comment";
  EXPECT_EQ(Row("Sheet3"), "72|集計シート|集計") << "its own comment comes first";
  EXPECT_EQ(p.Ctl("ThisWorkbook"), (Names{"WorkBook"}));
  EXPECT_EQ(p.Field("ThisWorkbook", "Workbook_Open", 2), "0");
  EXPECT_EQ(p.Field("Sheet1", "Worksheet_Change", 2), "0");
  EXPECT_EQ(p.Field("Sheet1", "Button1_Click", 2), "1");
}

TEST_F(Book, ControlsAndMacrosOfASheet) {
  book.sheets[0].ole_objects = {{.name = "Button1"}, {.name = "Linked", .type = 0}};
  book.sheets[1].shapes = {
      {.on_action = "Book1.xlsm!Module1.DrawIt"}, {.fails = true}, {.on_action = ""}};
  book.sheets[2].shapes = {{.on_action = "[0]!Idle"}};
  Analyse();
  EXPECT_EQ(p.Ctl("Sheet1"), (Names{"WorkSheet", "Button1"}));
  EXPECT_EQ(p.Field("Sheet1", "Button1_Click", 2), "0");
  EXPECT_EQ(p.Sta.Mac_Lst, " DrawIt Idle ");
  EXPECT_EQ(p.Field("Module1", "DrawIt", 2), "0");
}

TEST_F(Book, WhatIsRefusedLeavesTheRestAlone) {
  book.sheets[1].fails = true;
  book.sheets[1].shapes_fail = true;
  book.sheets[2].shapes = {{.on_action = "DrawIt"}};
  Analyse();
  EXPECT_EQ(Row("Sheet2"), "100||");
  EXPECT_EQ(Row("Sheet3"), "72|集計シート|集計");
  EXPECT_EQ(p.Sta.Mac_Lst, " DrawIt ");
}

TEST_F(Book, WithoutTheWorkbookDocumentsStayDocuments) {
  book.name = "Other.xlsm";
  Analyse();
  EXPECT_EQ(Row("ThisWorkbook"), "100||");
  EXPECT_EQ(Row("Sheet1"), "100||");
  EXPECT_EQ(p.Sta.Mac_Lst, " ");
}

TEST_F(Book, ASheetWhoseControlsAreRefusedIsReadAgain) {
  book.sheets[0].ole_objects_fail = true;
  Analyse();
  EXPECT_TRUE(p.Tbl.Anl_Mdl.Has("Sheet1"));
  book.sheets[0].ole_objects_fail = false;
  book.sheets[0].ole_objects = {{.name = "Button1"}};
  app.Add_Workbook(book);
  EXPECT_TRUE(p.Analyse());
  EXPECT_EQ(p.Sta.Mdl_Cnt, 1);
  EXPECT_EQ(p.Field("Sheet1", "Button1_Click", 2), "0");
  EXPECT_FALSE(p.Analyse());
}

TEST_F(Book, ANewTabNameIsAChange) {
  Analyse();
  EXPECT_FALSE(p.Analyse());
  book.sheets[2].name = "月次";
  app.Add_Workbook(book);
  EXPECT_TRUE(p.Analyse());
  EXPECT_EQ(p.Sta.Mdl_Cnt, 1);
  EXPECT_EQ(Row("Sheet3"), "72|集計シート|月次");
}

TEST(Kinds, WordsAndIcons) {
  const struct {
    std::string_view knd, sub, scp, word, tag, english;
  } kCases[]{
      {"0", "", "2", "Event", "C_Event", "Event"},
      {"2", "", "1", "Function", "C_FuncP", "Function(Public)"},
      {"3", "2", "2", "Property(Let)", "C_PLet", "Let"},
      {"4", "2", "1", "Api(Func)", "C_ApiFP", "Api･Function(Public)"},
      {"", "", "1", "", "C_Def", "Declaretions"},
  };
  for (const auto& c : kCases) {
    Mem_Row row;
    row.Mem_Knd = c.knd;
    row.Mem_Sub = c.sub;
    row.Mem_Scp = c.scp;
    EXPECT_EQ(Set_Mem_Typ(row), c.word);
    EXPECT_EQ(Set_Mem_Img(row), c.tag);
    EXPECT_EQ(Set_Icn_NmE(Set_Mem_Img(row)), c.english);
  }
  EXPECT_EQ(Set_Mdl_Img("88"), "C_Word");
  EXPECT_EQ(Set_Icn_NmE("C_Word"), "Document");
  EXPECT_EQ(Set_Icn_NmJ("V_PublicE"), "｜グローバルイベント定義変数");
  EXPECT_EQ(Set_Icn_NmJ("V_PublicN"), "");
}

}  // namespace
}  // namespace oru::analyser
