// SPDX-License-Identifier: MIT
// Swapped assignments and aligned columns.
#include "transform/line_tools.h"

#include <gtest/gtest.h>

#include "support/project.h"
#include "transform/text_lines.h"

namespace oru::transform {
namespace {

using test::Lines_In;
using test::Shown;

TEST(Line_Tools, SwapsSimpleAssignments) {
  const struct {
    std::string_view what, line, swapped;
  } kCases[] = {
      {"a simple one", "    x = y", "    y = x"},
      {"behind a tab", "\tx = y", "\ty = x"},
      {"the gap to a comment stays", "a = b   ' note = x", "b = a   ' note = x"},
      {"an element", "a(1) = b", "b = a(1)"},
      {"no blanks in literals", "a = b(\"k\")", "b(\"k\") = a"},
      {"full-width characters", "  単価 = 値(\"＝\")", "  値(\"＝\") = 単価"},
      {"an expression stays", "a = b + 1", ""},
      {"a text stays", "a = \"x\"", ""},
      {"a number stays", "a = 1", ""},
      {"a number of the other kind too", "a = &HFF", ""},
      {"and a date", "a = #1/2/2024#", ""},
      {"and what has a word of its own", "a = True", ""},
      {"two equals stay", "a = b = c", ""},
      {"but not one in a comment or literal", "a = b(\" = \") ' = c", ""},
      {"a literal with a blank is no name", "a = b(\"x y\")", ""},
      {"a declaration stays", "Const a = b", ""},
      {"a continued one stays", "a = _", ""},
      {"a comment stays", "' a = b", ""},
      {"of either kind", "Rem a = b", ""},
      {"no assignment", "a=b", ""},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    const std::vector<std::string> line{std::string(each.line)};
    const std::vector<std::string> swapped = Apply_Tool(Line_Tool::Swap_Sides, line);
    EXPECT_EQ(swapped.front(), each.swapped.empty() ? each.line : each.swapped);
    EXPECT_EQ(Apply_Tool(Line_Tool::Swap_Sides, swapped), line);
  }
  // Neither what a continued comment says nor the inside of a statement is an assignment.
  const auto lines = Lines_In("' about _\na = b\nFoo _\na = b\na = b");
  EXPECT_EQ(Shown(Apply_Tool(Line_Tool::Swap_Sides, lines)),
            "\n' about _\na = b\nFoo _\na = b\nb = a\n");
  EXPECT_EQ(Apply_Tool(Line_Tool::Swap_Sides, Lines_In("a = b"), {.Continued = true}),
            Lines_In("a = b"));
}

TEST(Line_Tools, AlignsToTheFirstItem) {
  const struct {
    std::string_view what;
    Line_Tool tool;
    std::string_view in, out;
  } kCases[] = {
      {"comments, the first one longest", Line_Tool::Align_Comments, R"(
long_name = 1 ' a
x = 2 ' b
y = 3
z = 4      ' c
)",
       R"(
long_name = 1 ' a
x = 2         ' b
y = 3
z = 4         ' c
)"},
      {"what is too long keeps its place, surplus blanks go", Line_Tool::Align_Comments, R"(
x = 2   ' a
long_name = 1 ' b
abc = 1       ' c
)",
       R"(
x = 2   ' a
long_name = 1 ' b
abc = 1 ' c
)"},
      {"a full-width character takes two columns", Line_Tool::Align_Comments, R"(
単価 = "数量" ' a
ｱｲｳ = "''" ' b
)",
       R"(
単価 = "数量" ' a
ｱｲｳ = "''"    ' b
)"},
      {"comment lines stay, continued ones too", Line_Tool::Align_Comments, R"(
      ' far _
  x ' y
a = 1 ' a
bc = 1 ' b
Rem x ' y
)",
       R"(
      ' far _
  x ' y
a = 1 ' a
bc = 1 ' b
Rem x ' y
)"},
      {"a comment that repeats the code", Line_Tool::Align_Comments, R"(
abc = 1  ' n
x = "' n" ' n
y = 2 ' n
)",
       R"(
abc = 1  ' n
x = "' n" ' n
y = 2    ' n
)"},
      {"As clauses, in declarations and parameters", Line_Tool::Align_As, R"(
    Dim strName As String
    Dim x As Long ' As is
    Dim longer_than_this As Date
    Dim y     As Long, z As Long
    x = " As "
    ' Dim c As Long
Sub S(a As Long, _
    b   As Long)
)",
       R"(
    Dim strName As String
    Dim x       As Long ' As is
    Dim longer_than_this As Date
    Dim y       As Long, z As Long
    x = " As "
    ' Dim c As Long
Sub S(a         As Long, _
    b           As Long)
)"},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    const auto once = Apply_Tool(each.tool, Lines_In(each.in));
    EXPECT_EQ(Shown(once), each.out);
    EXPECT_EQ(Apply_Tool(each.tool, once), once);
  }
}

class Selected_Lines : public ::testing::Test {
 protected:
  Selected_Lines() {
    project_.Add("M", "a = b\nc = d ' x\ne = f   ' y\n");
    pane_ = &project_.Code("M").CodePane();
    pane_->Show();
  }
  [[nodiscard]] std::string Text() { return project_.Code("M").Lines(1, 3); }
  [[nodiscard]] Transform_Ctx Ctx() {
    return {project_.Srv, project_.Editor, project_.Tbl,
            [this](std::string_view module) { told_ += module; }};
  }
  test::Project project_;
  host::CodePane* pane_;
  std::string told_;
};

TEST_F(Selected_Lines, AreThoseOfTheSelection) {
  pane_->SetSelection({1, 2, 1, 2});
  EXPECT_TRUE(Rev_Let_Sta(Ctx()).Ok());
  EXPECT_EQ(told_, "");
  pane_->SetSelection({1, 2, 3, 1});
  EXPECT_TRUE(Rev_Let_Sta(Ctx()).Changed);
  EXPECT_EQ(Text(), "b = a\r\nd = c ' x\r\ne = f   ' y");
  EXPECT_EQ(told_, "M");
  pane_->SetSelection({1, 1, 3, 3});
  EXPECT_TRUE(Alg_CmA_Pos(Ctx(), 1).Changed);
  EXPECT_EQ(Text(), "b = a\r\nd = c ' x\r\ne = f ' y");
  project_.Editor.Set_Mode("実行中");
  EXPECT_FALSE(Rev_Let_Sta(Ctx()).Changed);
  project_.Editor.Set_Mode("");
}

TEST_F(Selected_Lines, ALineThatGetsTooLongRefusesAllOfThem) {
  const std::string full = "x" + std::string(1000, 'y') + " = z ' c";
  project_.Code("M").ReplaceLine(1, full);
  project_.Code("M").ReplaceLine(3, "e = f ' " + std::string(1010, 'y'));
  const std::string before = Text();
  pane_->SetSelection({1, 1, 3, 3});
  const host::Change_Result result = Alg_CmA_Pos(Ctx(), 1);
  EXPECT_NE(result.Error.find("「M」の 3 行目"), std::string::npos);
  EXPECT_EQ(Text(), before);
}

}  // namespace
}  // namespace oru::transform
