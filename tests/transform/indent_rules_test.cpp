// SPDX-License-Identifier: MIT
// The rules of the formatter, text in and text out. Every case is formatted twice: the second time
// nothing may change.
#include "transform/indent_rules.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "text_lines.h"

namespace oru::transform {
namespace {

using test::Lines_In;
using test::Shown;

struct Case {
  std::string_view what, in, out;
};

void Check(std::span<const Case> cases, std::size_t base = 0, const Indent_Options& options = {}) {
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    Indented once = Indent_Body(Lines_In(each.in), base, options);
    EXPECT_FALSE(once.Too_Deep);
    EXPECT_EQ(Shown(once.Lines), each.out);
    if (once.Lines.front() == "\t") once.Lines.front().clear();  // as an editor holds it
    const Indented twice = Indent_Body(once.Lines, base, options);
    if (once.Lines.front().empty()) once.Lines.front() = "\t";
    EXPECT_EQ(Shown(twice.Lines), Shown(once.Lines));
  }
}

TEST(IndentRules, Blocks) {
  constexpr Case kCases[] = {
      {"all in one",
       R"(
Dim a
Select Case a
Case 1
b = 1
If b Then c = 1
If b Then
d = 1
Else
d = 2
End If
Case Else
e = 1
End Select
f = 1
)",
       R"(
    Dim a
    Select Case a
        Case 1
            b = 1
            If b Then c = 1
            If b Then
                d = 1
            Else
                d = 2
            End If
        Case Else
            e = 1
    End Select
    f = 1
)"},
      {"loops",
       R"(
        For i = 1 To 3
        For Each v In c
  x = 1
        Next v
Next
Do While a
    b
Loop
Do
b
Loop Until a
While a
b
Wend
)",
       R"(
    For i = 1 To 3
        For Each v In c
            x = 1
        Next v
    Next
    Do While a
        b
    Loop
    Do
        b
    Loop Until a
    While a
        b
    Wend
)"},
      {"With, ElseIf, and a Select inside a Select",
       R"(
With a
If b Then
.c = 1
ElseIf d Then
Select Case e
Case 1
Select Case f
Case 2
.g = 1
End Select
End Select
End If
End With
)",
       R"(
    With a
        If b Then
            .c = 1
        ElseIf d Then
            Select Case e
                Case 1
                    Select Case f
                        Case 2
                            .g = 1
                    End Select
            End Select
        End If
    End With
)"},
      {"statements of one word, jumps and directives stand at the level of the code around them",
       R"(
On Error GoTo Err1
For i = 1 To 3
#If Win64 Then
If a Then Exit For
#Else
GoTo Err1
#End If
Next
End
)",
       R"(
    On Error GoTo Err1
    For i = 1 To 3
        #If Win64 Then
        If a Then Exit For
        #Else
        GoTo Err1
        #End If
    Next
    End
)"},
      {"closers without a block do no harm",
       "\nNext\nEnd If\nLoop\nIf a Then\nb\nEnd If\nEnd With\nc\n",
       "\n    Next\n    End If\n    Loop\n    If a Then\n        b\n    End If\n    End With\n    c\n"},
      {"a Case behind a nested block, and an Else inside a Case",
       R"(
Select Case a
Case 1
If b Then
Else
End If
Case 2
c
End Select
)",
       R"(
    Select Case a
        Case 1
            If b Then
            Else
            End If
        Case 2
            c
    End Select
)"},
  };
  Check(kCases);
}

TEST(IndentRules, WhatOpensABlock) {
  constexpr Case kCases[] = {
      {"a note behind Then", "\nIf x Then ' note\ny\nEnd If\n",
       "\n    If x Then ' note\n        y\n    End If\n"},
      {"an apostrophe in a text", "\nIf x = \"'\" Then\ny\nEnd If\n",
       "\n    If x = \"'\" Then\n        y\n    End If\n"},
      {"a one-line If", "\nIf x Then y = 1\nz\n", "\n    If x Then y = 1\n    z\n"},
      {"an If that goes on behind Then", "\nIf x Then _\n    y = 1\nz\n",
       "\n    If x Then _\n        y = 1\n    z\n"},
      {"an If whose Then comes in the next line", "\nIf x And _\n  y Then\nz\nEnd If\n",
       "\n    If x And _\n      y Then\n        z\n    End If\n"},
      {"an If whose Then begins a line", "\nIf x _\nThen\nz\nEnd If\n",
       "\n    If x _\n    Then\n        z\n    End If\n"},
      {"a keyword with a note right behind it", "\nDo 'a\nb\nLoop 'c\nd\n",
       "\n    Do 'a\n        b\n    Loop 'c\n    d\n"},
      {"End in a text of two blanks", "\nIf x Then\nEnd  If\ny\nEnd If\n",
       "\n    If x Then\n        End  If\n        y\n    End If\n"},
      {"other words, and other letters", "\nWithdraw a\ndo\nFormat b\nEnd Type\nc\n",
       "\n    Withdraw a\n    do\n    Format b\n    End Type\n    c\n"},
      {"Else with a colon is a plain statement", "\nIf x Then\nElse: y\nCase: z\nEnd If\n",
       "\n    If x Then\n        Else: y\n        Case: z\n    End If\n"},
      {"several statements in a line", "\nFor i = 1 To 3: a: Next\nb\nNext\n",
       "\n    For i = 1 To 3: a: Next\n        b\n    Next\n"},
      {"a number without a colon stays and is passed over",
       "\n10 If x Then\n20   y\n30 ' z\n40 End If\n50\n",
       "\n    10 If x Then\n        20   y\n        30 ' z\n    40 End If\n    50\n"},
  };
  Check(kCases);
}

TEST(IndentRules, LabelLines) {
  constexpr Case kCases[] = {
      {"stand at the level of the code", "\nIf x Then\nErr1:\ny\nEnd If\nErr2: z\n",
       "\n    If x Then\n        Err1:\n        y\n    End If\n    Err2: z\n"},
      {"what stands behind one opens nothing", "\na\nLbl: If x Then\ny\n10: Do\nz\n",
       "\n    a\n    Lbl: If x Then\n    y\n    10: Do\n    z\n"},
      {"one in front of all statements stays, and so does a comment in front of it",
       "\n  ' a\nLbl:\n  ' b\n\n  ' c\nx\n", "\n  ' a\nLbl:\n  ' b\n\n    ' c\n    x\n"},
      {"anything with a colon and no blank before it is one", "\nDo\ny=1:z=2\n: Loop\nx\nLoop\n",
       "\n    Do\n        y=1:z=2\n        : Loop\n        x\n    Loop\n"},
      {"a blank or an apostrophe before the colon: none",
       "\nDo\nx = \"a:b\"\nLoop 'a:b\nLoop'a:b\n",
       "\n    Do\n        x = \"a:b\"\n    Loop 'a:b\n    Loop'a:b\n"},
  };
  Check(kCases);
  constexpr Case kLeft[] = {
      {"at the first column, where they may stay", "\nx\nDo\n' a\nErr1:\n  Err2: y\nz\nLoop\n",
       "\n    x\n    Do\n        ' a\nErr1:\n        Err2: y\n        z\n    Loop\n"},
  };
  Check(kLeft, 0, {.Labels = Label_Lines::Stay});
}

TEST(IndentRules, CommentsGoWithTheNextStatement) {
  constexpr Case kCases[] = {
      {"in front of Else, Case and what closes",
       R"(
Select Case a
' one
Case 1
' if
If b Then
' c
c
' else
' and more

' d
Else
' end
End If
' two
Case 2
' last
End Select
' behind
)",
       R"(
    Select Case a
        ' one
        Case 1
            ' if
            If b Then
                ' c
                c
                ' else
                ' and more

            ' d
            Else
            ' end
            End If
        ' two
        Case 2
    ' last
    End Select
    ' behind
)"},
      {"in front of a label, and at the end of an open block", "\nDo\n' a\nLbl:\nb\n' c\n",
       "\n    Do\n        ' a\n        Lbl:\n        b\n        ' c\n"},
      {"three apostrophes keep their place", "\nIf a Then\n''' x\n  '''' y\n'' z\nb\nEnd If\n",
       "\n    If a Then\n''' x\n  '''' y\n        '' z\n        b\n    End If\n"},
      {"continued", "\nDo\n' a _\n   b _\n c\n''' d _\n e\nx\nLoop\n",
       "\n    Do\n        ' a _\n           b _\n         c\n''' d _\n e\n        x\n    Loop\n"},
  };
  Check(kCases);
}

TEST(IndentRules, Lines) {
  constexpr Case kCases[] = {
      {"a continued statement keeps what it had beyond its first line",
       "\n  x = a + _\n      b + _\n  c + _\nd\n",
       "\n    x = a + _\n        b + _\n    c + _\n    d\n"},
      {"an underscore without a blank does not continue", "\nx = y_\n    z\n",
       "\n    x = y_\n    z\n"},
      {"blanks behind the underscore", "\nx = _  \n  y\n", "\n    x = _\n      y\n"},
      {"an empty line continues nothing", "\nx = _\n\ny\n", "\n    x = _\n\n    y\n"},
      {"empty lines", "\nx\n\n   \ny\n\n", "\n    x\n\n\n    y\n\n"},
      {"an empty line at the beginning is a tab", "\n\n\nx\n", "\n\t\n\n    x\n"},
      {"what is still open at the end stays", "\n' note\nDo\nx = 1 + _\n      y _\n",
       "\n    ' note\n    Do\nx = 1 + _\n      y _\n"},
      {"tabs and wide blanks are text", "\n\tx\n　y\n", "\n    \tx\n    　y\n"},
  };
  Check(kCases);
}

TEST(IndentRules, BaseAndWidth) {
  constexpr Case kCases[] = {
      {"all is shifted", "\n  Do\n    x _\n      y\nLoop\n",
       "\n    Do\n      x _\n        y\n    Loop\n"},
      {"three apostrophes stay", "\n    ''' a\n''' b\n    x\n", "\n    ''' a\n''' b\n    x\n"},
  };
  Check(kCases, 2, {.Idt_Cnt = 2});

  constexpr Case kNone[] = {{"no blanks", "\n  Do\n    x\n  Loop\n", "\nDo\nx\nLoop\n"}};
  Check(kNone, 0, {.Idt_Cnt = 0});

  // Fewer blanks than the header: text goes, which whoever writes this has to refuse.
  const Indented cut = Indent_Body(Lines_In("  字 = 1\nb\n   c"), 4, {});
  EXPECT_EQ(Shown(cut.Lines), "\n        = 1\n        b\n\n");
}

TEST(IndentRules, LeadingDeclarations) {
  constexpr Case kCases[] = {
      {"stay as they are until the first statement",
       R"(
  ' a
  Dim a _
        As Long

  Static b
lbl:
Const c = 1
  ' call
Foo
Dim d
)",
       R"(
  ' a
  Dim a _
        As Long

  Static b
lbl:
Const c = 1
    ' call
    Foo
    Dim d
)"},
      {"any part of the words is one", "\ni = 1\nonst\nDo\ni = 2\nLoop\ni = 3\n",
       "\ni = 1\nonst\n    Do\n        i = 2\n    Loop\n    i = 3\n"},
      {"nothing but declarations", "\nDim a\n' b\n", "\nDim a\n' b\n"},
  };
  Check(kCases, 0, {.Rev_Dec = false});
  Check(std::span(kCases).first(1), 2, {.Idt_Cnt = 2, .Rev_Dec = false});
}

TEST(IndentRules, ThirtySevenLevels) {
  std::vector<std::string> body{"x", "' y"};
  body.insert(body.end(), kMost_Depth, "Do");
  body.emplace_back("z");
  const Indented deep = Indent_Body(body, 0, {});
  ASSERT_EQ(deep.Lines.size(), body.size());
  EXPECT_EQ(deep.Lines.back(), std::string(std::size_t{38} * 4, ' ') + "z");

  body.insert(body.end() - 1, {"Do _", " While a"});
  const Indented too_deep = Indent_Body(body, 0, {});
  EXPECT_EQ(too_deep.Too_Deep, 2 + kMost_Depth);
  EXPECT_TRUE(too_deep.Lines.empty());

  body.insert(body.end() - 3, "Loop");
  EXPECT_FALSE(Indent_Body(body, 0, {}).Too_Deep);
}

}  // namespace
}  // namespace oru::transform
