// SPDX-License-Identifier: MIT
#include "analyser/module_pass.h"

#include <gtest/gtest.h>

#include "analyser/definitions.h"
#include "host/memory_host_app.h"
#include "support/project.h"

namespace oru::analyser {
namespace {

using test::Project;
using Rows = std::vector<std::string>;

TEST(Members, RowsOfAModule) {
  Project p;
  p.Add("Mod1", R"(
Option Explicit
' 外部関数
Private Declare PtrSafe Function Beep Lib "kernel32" (ByVal f As Long) As Long
Declare Sub Sleep Lib "kernel32" ()

' 在庫を調べる
Public Function Stock(ByVal code As String) As Long
    If code = "" Then Exit Function ' none

    Do While Stock < 10
        Stock = Stock + _
            1
    Loop
End Function
Private Static Sub Work()
End Sub
Public Static Function Odd() As Long
End Function
Friend Property Get Price() As Long
End Property
Property Let Price(ByVal v As Long)
End Property
)");
  p.Analyse();
  EXPECT_EQ(p.Mem("Mod1"), (Rows{
                               "%Declare|Mod1|||||1|3|1|0|0|0",
                               "Beep|Mod1|4|2|2|外部関数|3|||",
                               "Sleep|Mod1|4|1|1|外部関数|4|||",
                               "Stock|Mod1|2|1||在庫を調べる|5|7|1|2|2|1",
                               "Work|Mod1|1|2|||15|2|0|0|0|0",
                               "Odd|Mod1|1|1|||17|2|0|0|0|0",
                               "Price(Get)|Mod1|3|3|1||19|2|0|0|0|0",
                               "Price(Let)|Mod1|3|1|2||21|2|0|0|0|0",
                           }));
  EXPECT_EQ(p.Sta.Tot_Lin, 22);
  EXPECT_EQ(p.Sta.Cod_Lin, 20);
}

TEST(Members, CommentsOfModulesAndMembers) {
  const struct {
    std::string_view what, text, module, member;
  } kCases[]{
      {"the first comment line", "Sub A()\n' one\n' two\nEnd Sub", "", "one"},
      {"a head word wins over the first line", "Sub A()\n' one\n'概要： 二つ目\nEnd Sub", "",
       "二つ目"},
      {"a lone head word takes the next line", "Sub A()\n'*** 説明： ***\n'*** 本文 ***\nEnd Sub",
       "", "本文"},
      {"rules are no comment", "Sub A()\n'=======\n'-------\n' 三つ目\nEnd Sub", "", "三つ目"},
      {"above Option it is the module's", "' モジュール\nOption Explicit\nDim a\nSub A()\nEnd Sub",
       "モジュール", ""},
      {"above a Dim it is not", "' 変数\nDim a\nSub A()\nEnd Sub", "", ""},
      {"a head word in the section", "' x\nDim a\n' 概要：全体\nDim b\nSub A()\nEnd Sub", "全体",
       ""},
      {"a comment above the header is the member's", "Dim a\n\n' 前書き\nSub A()\n' 中\nEnd Sub",
       "", "前書き"},
      {"a tab becomes a blank", "Sub A()\n' a\tb\nEnd Sub", "", "a b"},
      {"quotes and bars stay", "Sub A()\n' a \"b\" | c\nEnd Sub", "", "a \"b\" | c"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Project p;
    p.Add("Mod1", c.text);
    p.Analyse();
    Tbl_Cur cur;
    ASSERT_TRUE(Set_Mdl_Fld(p.Tbl, cur, "Mod1"));
    EXPECT_EQ(cur.Mdl.Mdl_CTx, c.module);
    EXPECT_EQ(p.Field("Mod1", "A", 5), c.member);
  }
}

TEST(Members, EventProcedures) {
  Project p;
  p.Add_Form("Form1", R"(
Private WithEvents app As Cls
Private Sub cmdOk_Click()
End Sub
Private Sub CMDOK_Enter()
End Sub
Private Sub UserForm_Initialize()
End Sub
Private Sub app_Done()
End Sub
Private Sub other_Click()
End Sub
Private Function cmdOk_Value()
End Function
Private Sub Evt_Custom()
End Sub
)",
             {"cmdOk:CommandButton", "txtName:TextBox"});
  p.Add(
      "Mod1",
      "Sub Auto_Open()\nEnd Sub\nSub Auto_Close()\nEnd Sub\nSub cmdOk_Click()\nEnd Sub\nSub CustomEvt_()\nEnd Sub");
  p.Add("Cls", "Public Event Done()", host::kType_Class);
  p.Analyse();
  EXPECT_EQ(p.Ctl("Form1"), (Rows{"UserForm", "cmdOk", "txtName", "|", "app"}));
  const struct {
    std::string_view module, member, kind;
  } kCases[]{{"Form1", "cmdOk_Click", "0"},
             {"Form1", "CMDOK_Enter", "0"},
             {"Form1", "UserForm_Initialize", "0"},
             {"Form1", "app_Done", "0"},
             {"Form1", "other_Click", "1"},
             {"Form1", "cmdOk_Value", "2"},
             {"Form1", "Evt_Custom", "0"},
             {"Mod1", "Auto_Open", "0"},
             {"Mod1", "Auto_Close", "1"},
             {"Mod1", "cmdOk_Click", "1"},
             {"Mod1", "CustomEvt_", "0"}};
  for (const auto& c : kCases) EXPECT_EQ(p.Field(c.module, c.member, 2), c.kind) << c.member;
}

TEST(Members, TextsOfControlsAreOneLine) {
  test::Project p;
  host::Control_Data box{"txtNote", "TextBox", "one\r\ntwo\tthree", std::nullopt, "a\nb"};
  p.Add_Component(
      {.name = "Form1", .type = host::kType_Form, .has_designer = true, .controls = {box}});
  ASSERT_TRUE(p.Analyse());
  EXPECT_EQ(*(*p.Tbl.Mdl_Tbl.Get("Form1"))->Ctl.Get("txtNote"),
            "txtNote\tTextBox\tone  two three\t\ta b");
}

TEST(Members, TwoOfOneName) {
  Project p;
  p.Add("Mod1", R"(
#If VBA7 Then
Sub A()
    x = 1
End Sub
#Else
Sub A()
    B
    x = 2
End Sub
#End If
Sub B()
End Sub
)");
  p.Analyse();
  // The first one stays, the second one's lines are passed over, and the next is read whole.
  EXPECT_EQ(p.Mem("Mod1"), (Rows{"%Declare|Mod1|||||1|1|0|0|0|0", "A|Mod1|1|1|||2|3|0|0|0|0",
                                 "B|Mod1|1|1|||10|3|0|0|0|0"}));
  EXPECT_TRUE(p.Refs("Mod1").empty());
}

TEST(Members, EmptyModuleAndCompareText) {
  Project p;
  p.Add("Empty", "");
  p.Add("Mod1", "  Sub A()\n\n  x = 1\nEnd Sub\n\n");
  p.Analyse();
  EXPECT_EQ(p.Mem("Empty"), (Rows{"%Declare|Empty|||||1|0|0|0|0|0"}));
  EXPECT_EQ((*p.Tbl.Mdl_Tbl.Get("Empty"))->CCd, "");
  EXPECT_EQ((*p.Tbl.Mdl_Tbl.Get("Mod1"))->CCd, "Sub A()  x = 1End Sub");
}

TEST(Names, DefinitionsAndInstancesOfAModule) {
  Project p;
  p.Add("Cls", "", host::kType_Class);
  p.Add("Mod1", R"(
Private Type Rec
    Cls As Cls
End Type
Public gCls As New Cls, n As Long
Dim o As Object
Public Function Make() As Cls
End Function
Function Many() As Cls()
End Function
)");
  p.Analyse();
  EXPECT_EQ(p.Def("Mod1"), (Rows{"Rec|2|8|Type||||Mod1|1", "gCls|1|V|Cls||||Mod1|4",
                                 "n|1|V|Long||||Mod1|4", "o|2|5|Object||||Mod1|5"}));
  EXPECT_EQ(p.InV("Mod1"), (Rows{"gCls|Mod1|1|1|V|Cls", "o|Mod1|2|2|V|", "Make|Mod1|1|1|F|Cls"}));
}

TEST(Names, ParametersOfAMember) {
  Project p;
  p.Add("Mod1", R"(
' code : 商品コード
' *qty* : 数量
Private Sub Work(ByVal code As String, ByRef qty() As Long, _
        Optional ByVal memo As String = "x", ParamArray rest())
End Sub
)");
  p.Analyse();
  const Anl_Options options(p.Srv.Opt);
  std::vector<std::string> rows;
  for (const Def_Row& row : Set_Arg_Inf(p.Code("Mod1"), "Mod1", "Work", options)) {
    std::string shown = service::Srv_Str_Row(row);
    std::replace(shown.begin(), shown.end(), '\t', '|');
    rows.push_back(shown);
  }
  EXPECT_EQ(
      rows,
      (Rows{"code|1 値渡し|A|String|||:商品コード|Mod1|3", "qty|2 参照渡し|A|Long|()||:数量|Mod1|3",
            "memo|3 値渡し（省略可）|A|String||\"x\"||Mod1|3", "rest|4 参照渡し|A||()|||Mod1|3"}));
}

TEST(Names, VisibleFromAMember) {
  Project p;
  p.Add(
      "Mod1",
      "Public gA As Long\nPrivate Type T\n  x As Long\nEnd Type\nSub Work(ByVal n As Long)\n  Dim i As Long, _\n    j\nEnd Sub");
  p.Add("Mod2", "Public gB As Long\nPrivate hidden As Long");
  p.Analyse();
  const auto names = [&](bool all, Def_Reach reach) {
    std::vector<std::string> found;
    const Anl_Options options(p.Srv.Opt);
    for (const std::string& row :
         Set_Def_Tbl(p.Tbl, p.Editor, options, "Mod1", "Work", reach, all).Rows)
      found.push_back(row.substr(0, row.find('\t')));
    return found;
  };
  EXPECT_EQ(names(false, Def_Reach::Project), (Rows{"0n", "0i", "0j", "1gA", "1T", "2gB"}));
  EXPECT_EQ(names(false, Def_Reach::Module), (Rows{"0n", "0i", "0j", "1gA", "1T"}));
  EXPECT_EQ(names(true, Def_Reach::Project), (Rows{"1gA", "1T", "2gB", "2hidden"}));
}

TEST(Names, DeclareAtALine) {
  Project p;
  p.Add(
      "Mod1",
      "Private Declare PtrSafe Function _\n    Beep Lib \"k\" ()\nDim a\nDeclare Sub Sleep Lib \"k\" ()");
  EXPECT_EQ(Chk_Api_Def(p.Code("Mod1"), 1), "Beep");
  EXPECT_EQ(Chk_Api_Def(p.Code("Mod1"), 3), "");
  EXPECT_EQ(Chk_Api_Def(p.Code("Mod1"), 4), "Sleep");
  EXPECT_EQ(Chk_Api_Def(p.Code("Mod1"), 99), "");
}

}  // namespace
}  // namespace oru::analyser
