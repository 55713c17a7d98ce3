// SPDX-License-Identifier: MIT
// Line-number labels: which lines get one, and that taking them out gives the old text back.
#include "transform/line_numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/project.h"
#include "text_lines.h"

namespace oru::transform {
namespace {

using test::Lines_In;
using test::Shown;
using Lines = std::vector<std::string>;

Lines With(Lines lines, const std::vector<New_Line>& changed) {
  for (const New_Line& line : changed) {
    EXPECT_NE(lines[line.Line], line.Text);
    lines[line.Line] = line.Text;
  }
  return lines;
}

Lines Set(const Lines& lines, std::size_t header = 0, bool skip_const = false) {
  return With(lines, Set_Labels(lines, header, skip_const));
}

Lines Cut(const Lines& lines, If_Erl if_erl = If_Erl::Remove) {
  return With(lines, Cut_Labels(lines, 0, if_erl));
}

struct Case {
  std::string_view what, in, out;
};

TEST(LineNumbers, SetThenRemoveGivesTheSameText) {
  constexpr Case kCases[] = {
      {"code gets its place in the procedure",
       R"(
Sub A(ByVal b As Long, _
      c)
    ' a comment
    Dim d
    Static e
    Const f = 1
    On Error GoTo Err1

    Select Case d
        Case 1
            d = 2
        Case Else
            Exit Sub
    End Select
    If d Then
        d = 1
    Else
        d = 2
    End If
  #If Win64 Then
    d = 3
  #End If
    End
Err1:
    x = "a: b"
    Debug.Print d: d = 4
End Sub

' behind
Rem behind
)",
       R"(
Sub A(ByVal b As Long, _
      c)
    ' a comment
    Dim d
    Static e
6:     Const f = 1
    On Error GoTo Err1

9:     Select Case d
        Case 1
11:             d = 2
        Case Else
            Exit Sub
    End Select
15:     If d Then
16:         d = 1
17:     Else
18:         d = 2
    End If
  #If Win64 Then
21:     d = 3
  #End If
23:     End
Err1:
25:     x = "a: b"
26:     Debug.Print d: d = 4
End Sub

' behind
Rem behind
)"},
      {"statements that go on in further lines",
       R"(
Sub A()
    x = Array(1, _
10: 2, _
        b: c)
    ' a comment _
    goes on
    x = y_
    z = 1
    w = 2
End Sub
)",
       R"(
Sub A()
2:     x = Array(1, _
10: 2, _
        b: c)
    ' a comment _
    goes on
7:     x = y_
    z = 1
9:     w = 2
End Sub
)"},
      {"labels of other kinds, and what looks like one",
       R"(
Sub A()
Err1: a
    Err2: b
    y=1:z=2
: c
    d _
    :
End Sub
)",
       R"(
Sub A()
Err1: a
    Err2: b
    y=1:z=2
: c
6:     d _
    :
End Sub
)"},
      {"numbers without a colon stay, and their number is not given twice",
       R"(
Sub A()
4 a
    20   b: c
    d
    e
30
End Sub
)",
       R"(
Sub A()
4 a
    20   b: c
    d
5:     e
30
End Sub
)"},
      {"numbers that a jump needs stay, and are not given twice",
       R"(
Sub A()
    If a Then 08 Else 9
    On b GoTo _
      3, 4
    c = "GoTo 2" ' GoTo 5
08: d
9:  e
    f: Resume 10: GoSub Other
    g
    GoTo 0
3:
4: h
End Sub
)",
       R"(
Sub A()
2:     If a Then 08 Else 9
    On b GoTo _
      3, 4
5:     c = "GoTo 2" ' GoTo 5
08: d
9:  e
    f: Resume 10: GoSub Other
    g
    GoTo 0
3:
4: h
End Sub
)"},
      {"a jump to a line that is not there", "\nSub A()\n    GoTo 3\n    b\nEnd Sub\n",
       "\nSub A()\n2:     GoTo 3\n    b\nEnd Sub\n"},
      {"a second header",
       R"(
#If Win64 Then
Public Sub A(b As LongPtr)
#Else
Private Static _
Sub A( _
  b As Long)
#End If
    c
End Sub
)",
       R"(
#If Win64 Then
Public Sub A(b As LongPtr)
#Else
Private Static _
Sub A( _
  b As Long)
#End If
8:     c
End Sub
)"},
      {"a procedure on one line", "\nSub A(): b: End Sub\n\nRem c\n",
       "\nSub A(): b: End Sub\n\nRem c\n"},
  };
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.what);
    const Lines lines = Lines_In(each.in);
    const Lines set = Set(lines);
    EXPECT_EQ(Shown(set), each.out);
    EXPECT_EQ(Shown(Set(set)), each.out);
    EXPECT_EQ(Shown(Cut(set)), each.in);
  }
}

TEST(LineNumbers, CountFromTheFirstCommentLine) {
  const Lines lines = Lines_In("' a\n' b\nSub A()\nc\nEnd Sub");
  EXPECT_EQ(Shown(Set(lines, 2)), "\n' a\n' b\nSub A()\n4: c\nEnd Sub\n");
}

TEST(LineNumbers, OldLabels) {
  constexpr Case kCases[] = {
      {"renumbered", "Sub A()\n10: x = 1\n   20:   y\nEnd Sub",
       "\nSub A()\n2: x = 1\n3:   y\nEnd Sub\n"},
      {"not given again where none is set", "Sub A()\n10: Dim x\n20:\n30: ' y\n40: Lbl: z\nEnd Sub",
       "\nSub A()\nDim x\n\n' y\n5: Lbl: z\nEnd Sub\n"},
      {"nothing but the label goes", "Sub A()\n10:x = 1\nEnd Sub",
       "\nSub A()\n2: x = 1\nEnd Sub\n"},
  };
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.what);
    EXPECT_EQ(Shown(Set(Lines_In(each.in))), each.out);
  }
}

TEST(LineNumbers, ConstsWhereTheyCannotHaveOne) {
  EXPECT_EQ(Shown(Set(Lines_In("Sub A()\nConst b = 1\nConstant\nEnd Sub"), 0, true)),
            "\nSub A()\nConst b = 1\n3: Constant\nEnd Sub\n");
}

TEST(LineNumbers, WhatIsRemoved) {
  constexpr std::string_view kErl = "Sub A()\n10: a\n20: If Erl = 10 Then b ' Erl\nEnd Sub";
  EXPECT_EQ(Shown(Cut(Lines_In(kErl))), "\nSub A()\na\nIf Erl = 10 Then b ' Erl\nEnd Sub\n");
  EXPECT_TRUE(Cut_Labels(Lines_In(kErl), 0, If_Erl::Keep).empty());

  constexpr Case kCases[] = {
      {"Erl in a text, a comment or a name",
       "Sub A()\n10: a = \"Erl\" ' Erl\n20: Erls = 10\nEnd Sub",
       "\nSub A()\na = \"Erl\" ' Erl\nErls = 10\nEnd Sub\n"},
      {"all jumps",
       "Sub A()\n1: GoTo 2\n2: gosub 3\n3: On Error Resume 4\n4: On x GoSub 5, 6\n5: a\n6: "
       "y(7)\n7: b\n10: End Sub",
       "\nSub A()\nGoTo 2\n2: gosub 3\n3: On Error Resume 4\n4: On x GoSub 5, 6\n5: a\n6: "
       "y(7)\nb\nEnd Sub\n"},
      {"blanks behind, tabs before", "Sub A()\n10:   a  \n20: \tb\nEnd Sub",
       "\nSub A()\n  a\n\tb\nEnd Sub\n"},
      {"no numbers", "Sub A()\na: b\n\"1\": c\n-: d\nEnd Sub",
       "\nSub A()\na: b\n\"1\": c\n-: d\nEnd Sub\n"},
  };
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.what);
    EXPECT_EQ(Shown(Cut(Lines_In(each.in), If_Erl::Keep)), each.out);
  }
}

class Numbering : public ::testing::Test {
 protected:
  static constexpr std::string_view kText = R"(
Option Explicit

' one
Sub One()
    a = 1
End Sub
Property Get Two()
    Const b = 1
    Two = b
End Property
)";
  Numbering() {
    project_.Add("M", kText);
    ctx_.Note_Edit = [this](std::string_view module) { edited_.emplace_back(module); };
    ctx_.Set_Sif_Inf = [this] { edited_.emplace_back("Sif"); };
  }
  void Caret(int line) {
    host::CodePane& pane = project_.Code("M").CodePane();
    pane.Show();
    pane.SetSelection({line, 1, line, 1});
  }
  std::string Text() {
    host::CodeModule& code = project_.Code("M");
    return Shown(host::Lines_Of(code, 1, code.CountOfLines()));
  }

  test::Project project_;
  Transform_Ctx ctx_{project_.Srv, project_.Editor, project_.Tbl};
  std::vector<std::string> edited_;
};

TEST_F(Numbering, TheProcedureOfTheCaret) {
  Caret(8);
  EXPECT_TRUE(Set_LNo_Key(ctx_, Label_Mode::Set).Changed);
  EXPECT_EQ(host::Lines_Of(project_.Code("M"), 5, 6),
            (Lines{"    a = 1", "End Sub", "Property Get Two()", "2:     Const b = 1",
                   "3:     Two = b", "End Property"}));
  EXPECT_FALSE(Set_LNo_Key(ctx_, Label_Mode::Set).Changed);
  EXPECT_TRUE(Set_LNo_Key(ctx_, Label_Mode::Remove).Changed);
  EXPECT_EQ(Text(), kText);
  EXPECT_EQ(edited_, (Lines{"M", "Sif", "M"}));

  Caret(1);
  EXPECT_FALSE(Set_LNo_Key(ctx_, Label_Mode::Set).Changed);
  EXPECT_TRUE(project_.Ui.messages.empty());
}

TEST_F(Numbering, OnlyWhileCodeIsEdited) {
  Caret(8);
  project_.Editor.Set_Mode("実行中");
  EXPECT_FALSE(Set_LNo_Key(ctx_, Label_Mode::Set).Changed);
  ASSERT_EQ(project_.Ui.messages.size(), 1U);
  EXPECT_NE(project_.Ui.messages[0].text.find("コード編集時のみ"), std::string::npos);
  EXPECT_EQ(Text(), kText);
}

TEST_F(Numbering, ChosenProceduresWithTheirProgress) {
  Frm_LinNo view{{{"M", "One"}, {"M", "Gone"}, {"M", "Two(Get)"}}, Label_Mode::Set};
  const Frm_LinNo::Result set = view.Set_LinNo(ctx_);
  EXPECT_EQ(set.Changed, 2);
  ASSERT_EQ(set.Errors.size(), 1U);
  EXPECT_NE(set.Errors[0].find("M.Gone"), std::string::npos);
  // The blank line and the comment above it count.
  EXPECT_NE(Text().find("\n4:     a = 1\n"), std::string::npos);
  EXPECT_NE(Text().find("\n    Const b = 1\n3:     Two = b\n"), std::string::npos);
  EXPECT_EQ(project_.Ui.progress, (Lines{"行ラベル設定中 ( 1 / 3 )", "行ラベル設定中 ( 2 / 3 )",
                                         "行ラベル設定中 ( 3 / 3 )"}));
  EXPECT_EQ(project_.Ui.calls.back(), "Close_Progress");

  view.Mode = Label_Mode::Remove;
  EXPECT_EQ(view.Set_LinNo(ctx_).Changed, 2);
  EXPECT_EQ(Text(), kText);
  EXPECT_EQ(project_.Ui.progress.back(), "行ラベル解除中 ( 3 / 3 )");
}

TEST_F(Numbering, ALineThatWouldGetTooLongIsRefused) {
  host::CodeModule& code = project_.Code("M");
  const std::string full = "b = " + std::string(host::kMost_Characters - 5, '1');
  code.InsertLines(6, full);
  const std::string before = Text();
  const Frm_LinNo view{{{"M", "One"}}, Label_Mode::Set};
  const Frm_LinNo::Result result = view.Set_LinNo(ctx_);
  EXPECT_EQ(result.Changed, 0);
  ASSERT_EQ(result.Errors.size(), 1U);
  EXPECT_NE(result.Errors[0].find("6 行目"), std::string::npos);
  EXPECT_EQ(Text(), before);
}

}  // namespace
}  // namespace oru::transform
