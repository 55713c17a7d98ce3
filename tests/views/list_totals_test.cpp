// SPDX-License-Identifier: MIT
#include "views/list_totals.h"

#include <gtest/gtest.h>

#include "support/project.h"
#include "support/tables_builder.h"

namespace oru::views {
namespace {

TEST(ListTotals, CountsLinesOfTheEditorAndRowsOfTheTables) {
  test::Project project;
  project.Add("計算", R"bas(
Option Explicit
' 概要：計算
Private Declare Sub Sleep Lib "kernel32" (ByVal ms As Long)

Public Sub Total()
10: ' a comment behind a number
20:
  Dim x As Long ' not a comment line
End Sub
Public Function F() As Long
End Function
)bas");
  project.Add("Class1", "Property Get P() As Long\nEnd Property\n", host::kType_Class);
  project.Add_Form("UserForm1", "Private Sub Ok_Click()\nEnd Sub\n", {"Ok:CommandButton"});
  project.Add("Sheet1", "", host::kType_Document);
  test::Tables_Builder made;
  made.Mdl("計算|1||").Mem("%Declare|||||1").Mem("Total|1|1").Mem("F|2|1").Mem("Sleep|4|2|1");
  made.Mdl("Class1|2||").Mem("%Declare|||||1").Mem("P(Get)|3|1|1");
  made.Mdl("UserForm1|3||").Mem("%Declare|||||1").Mem("Ok_Click|0|2");
  made.Mdl("Sheet1|72||").Mem("%Declare|||||1");
  const View_Ctx ctx{project.Srv, project.Editor, made.tables};

  const std::vector<std::string> lines = FMn_PackF_Click(ctx, 2);
  const std::vector<std::string> counters{
      "\tTotal\t15", "\tStep\t11", "\tComment\t2", "\tModul\t1",    "\tClass\t1", "\tForm\t0",
      "\tEtc\t2",    "\tEvent\t1", "\tSub\t1",     "\tFunction\t1", "\tApi\t1",   "\tEPr\t5"};
  ASSERT_EQ(lines.size(), counters.size() + 4);
  for (std::size_t i = 0; i < counters.size(); ++i) EXPECT_EQ(lines[i], counters[i]);
  EXPECT_EQ(lines[12], "計算" + std::string(73, ' ') + "\t11");
  EXPECT_EQ(lines[15], "Sheet1" + std::string(71, ' ') + "\t0");
  ASSERT_EQ(project.Ui.messages.size(), 1U);
  EXPECT_EQ(project.Ui.messages[0].text, "  情報出力終了!!");

  EXPECT_TRUE(FMn_PackF_Click(ctx, 1).empty());
  EXPECT_EQ(project.Ui.messages.size(), 1U);
}

TEST(ListTotals, LinesGoToTheTraceLogWhereItIsOn) {
  test::Fake_Services fake;
  host::Memory_Editor editor;
  const analyser::Tables tables;
  fake.services.Sw.Trace = true;
  fake.services.Trace.Path = fake.folder / "trace.txt";
  (void)FMn_PackF_Click({fake.services, editor, tables}, 2);
  EXPECT_TRUE(fake.folder.Get("trace.txt").starts_with("240305-060708 \tTotal\t0\r\n"));
}

}  // namespace
}  // namespace oru::views
