// SPDX-License-Identifier: MIT
// The control structure: what is a row, and how deep it stands.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/places.h"
#include "query/frm_control.h"
#include "service/text.h"
#include "support/project.h"

namespace oru::query {
namespace {

// Each row as its first line's number, its depth as dots, and its text.
std::string Rows(std::string_view code, const Control_Cond& cond, int call_line = 0) {
  if (code.starts_with('\n')) code.remove_prefix(1);
  std::string out;
  for (const Control_Row& row :
       Get_Control_Rows(service::Split(code, "\n"), 1, 1, cond, [&](int relative) {
         return relative == call_line ? std::vector<std::string>{"called", ""}
                                      : std::vector<std::string>{};
       })) {
    out += std::to_string(row.Lno) + std::string(static_cast<std::size_t>(row.Depth), '.');
    for (const std::string& line : row.Lines) out += line + "|";
    for (const std::string& call : row.Calls) out += "->" + call;
    out += "\n";
  }
  return out;
}

TEST(Control_Rows, DepthOfEachStatement) {
  const struct {
    std::string_view what, code, rows;
  } kCases[] = {
      {"blocks", R"(
Sub A()
    If a Then
        x = 1
        For i = 1 To 2
        Next
    ElseIf b Then
    Else
    End If
End Sub)",
       "1Sub A()|\n2If a Then|\n4.For i = 1 To 2|\n5.Next|\n6ElseIf b Then|\n7Else|\n8End If|\n"
       "9End Sub|\n"},
      {"a one-line If raises nothing", "If a Then b\nDo\nLoop While c",
       "1If a Then b|\n2Do|\n3Loop While c|\n"},
      {"Case stands in from its Select", R"(
Select Case x
Case 1
    If a Then
    End If
Case Else
    With b
    End With
End Select
While d
Wend)",
       "1Select Case x|\n2.Case 1|\n3..If a Then|\n4..End If|\n5.Case Else|\n6..With b|\n"
       "7..End With|\n8End Select|\n9While d|\n10Wend|\n"},
      {"several on a line, labels, literals", R"(
10 For i = 1 To 2: If a Then
Foo: x = "Do: Loop": End If: Next
Bar:
GoTo Bar
On Error Resume Next
#If X Then
Exit Sub)",
       "110 For i = 1 To 2: If a Then|\n2..Foo: x = \"Do: Loop\": End If: Next|\n3Bar:|\n4GoTo Bar|\n5On Error Resume Next|\n6#If X Then|\n"
       "7Exit Sub|\n"},
      {"never below the first level, and open Selects apart", R"(
Next
End Select
Select Case a
End Select
Do)",
       "1Next|\n2End Select|\n3Select Case a|\n4End Select|\n5Do|\n"},
      {"a continued statement is one row", "If a And _\n    b Then\n    Do\n    Loop\nEnd If",
       "1If a And _|    b Then|\n3.Do|\n4.Loop|\n5End If|\n"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Rows(c.code, {}), c.rows) << c.what;
}

TEST(Control_Rows, WhatIsShown) {
  constexpr std::string_view kCode = R"(
Sub A()
    'above the call
    Call B
    'above
    'it
    If x Then

        'not above

        '''If y Then
        y = 1 'behind


        'mark ①
        For Each z In w
        Next
    End If
End Sub)";
  const auto with = [](auto change) {
    Control_Cond cond;
    change(cond);
    return cond;
  };
  const struct {
    std::string_view what;
    Control_Cond cond;
    std::string_view rows;
  } kCases[] = {
      {"control statements with calls and the comments above them",
       {},
       "1Sub A()|\n3Call B|\n4'above|\n5'it|\n6If x Then|\n14.'mark ①|\n15.For Each z In w|\n"
       "16.Next|\n17End If|\n18End Sub|\n"},
      {"no calls, no comments", with([](Control_Cond& c) {
         c.Ref = false;
         c.Cmt = {};
       }),
       "1Sub A()|\n6If x Then|\n15.For Each z In w|\n16.Next|\n17End If|\n18End Sub|\n"},
      {"calls only, with the comments of the called", with([](Control_Cond& c) {
         c.Sta = kCalls;
         c.RCm = true;
       }),
       "3Call B|->called\n"},
      {"comments only", with([](Control_Cond& c) {
         c.Sta = kComments;
         c.Cmt = {false, true, false, false};
       }),
       "2'above the call|\n4'above|\n5'it|\n8.'not above|\n"},
      {"blank lines, a row for a run", with([](Control_Cond& c) {
         c.Blk = true;
         c.Cmt = {};
         c.Lev = 2;
       }),
       "1Sub A()|\n3Call B|\n6If x Then|\n7.|\n9.|\n12.|\n15.For Each z In w|\n16.Next|\n17End If|\n"
       "18End Sub|\n"},
      {"everything", with([](Control_Cond& c) {
         c.Sta = kEverything;
         c.Blk = c.COt = true;
       }),
       "1Sub A()|\n3Call B|\n4'above|\n5'it|\n6If x Then|\n7.|\n9.|\n10.'''If y Then|\n"
       "11.y = 1 'behind|\n12.|\n13.|\n14.'mark ①|\n15.For Each z In w|\n16.Next|\n17End If|\n"
       "18End Sub|\n"},
      {"one level", with([](Control_Cond& c) { c.Lev = 1; }),
       "1Sub A()|\n3Call B|\n4'above|\n5'it|\n6If x Then|\n17End If|\n18End Sub|\n"},
      {"from a line on, at the depth it has", with([](Control_Cond& c) {
         c.Rng = 1;
         c.Lin = 15;
       }),
       "15.For Each z In w|\n16.Next|\n17End If|\n18End Sub|\n"},
      {"only what holds the element", with([](Control_Cond& c) {
         c.Blk = true;
         c.Ele = "Z";
         c.Sel = false;
       }),
       "15.For Each z In w|\n"},
      {"neither jumps nor directives", with([](Control_Cond& c) {
         c.Jumps = c.Directives = false;
         c.Sta = kControls;
         c.Rng = 1;
         c.Lin = 18;
       }),
       "18End Sub|\n"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Rows(kCode, c.cond, 3), c.rows) << c.what;
  Control_Cond quiet;
  quiet.Jumps = quiet.Directives = false;
  EXPECT_EQ(Rows("On Error GoTo E\n#If A Then\nGoTo E", quiet), "");
}

TEST(Frm_Controls, TextPlacesAndViews) {
  test::Project project;
  project.Add("M",
              "Dim x\n'what A does\nSub A()\n    If x Then\n        Call B\n    End If\nEnd Sub\n"
              "'what B does\nSub B()\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  const Query_Ctx ctx{project.Srv, project.Editor, project.Tbl, {}, {}};
  Frm_Control form;
  (void)host::Set_Mdl_Lin(project.Editor, "M", 1);
  EXPECT_FALSE(form.Dsp_Start_Proc(ctx));
  EXPECT_NE(form.Cur().Text.Text.Text().find("キャレットを表示対象プロシージャに移動し"),
            std::string::npos);
  (void)host::Set_Mdl_Lin(project.Editor, "M", 5);
  form.FCo.RCm = true;
  ASSERT_TRUE(form.Dsp_Start_Proc(ctx));
  EXPECT_EQ(
      form.Cur().Text.Text.Text(),
      "  A  (M)  what A does\r\n     1|'what A does\r\n     2|Sub A()\r\n     3|If x Then\r\n     4|│  Call B\r\n"
      "       │        '→ what B does\r\n     5|End If\r\n     6|End Sub\r\n");
  host::CodePane& pane = *project.Editor.ActiveCodePane();
  pane.SetSelection({5, 14, 5, 15});
  form.FCo.Sel = false;
  ASSERT_TRUE(form.Dsp_Start_Proc(ctx));
  EXPECT_EQ(form.FCo.Ele, "B");
  EXPECT_EQ(form.Cur().Rows.size(), 1U);
  form.FCo.Sel = true;
  form.Cond_Changed(ctx);
  EXPECT_EQ(form.Cur().Rows.size(), 6U);
  EXPECT_EQ(form.Syn_Dsp_Pos(4), form.Cur().Text.Begins[2]);
  EXPECT_EQ(form.Syn_Dsp_Pos(1), std::nullopt);
  EXPECT_TRUE(form.FRt_Result_Click(ctx, form.Cur().Text.Begins[3]));
  EXPECT_EQ(host::Get_ACp_Inf(project.Editor)->Sel.start_line, 5);
  EXPECT_FALSE(form.Dsp_Member(ctx, "M", "None"));
  ASSERT_TRUE(form.Chg_Res_Viw(3));
  ASSERT_TRUE(form.Dsp_Member(ctx, "M", "%Declare"));
  EXPECT_NE(form.Cur().Text.Text.Text().find("【宣言部】"), std::string::npos);
  EXPECT_EQ(form.Dsp_Hst_Viw().size(), 2U);
  form.Clr_Res_Viw(3);
  EXPECT_EQ(form.Dsp_Hst_Viw().size(), 1U);
  EXPECT_FALSE(form.Chg_Res_Viw(31));
}

}  // namespace
}  // namespace oru::query
