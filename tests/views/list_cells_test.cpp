// SPDX-License-Identifier: MIT
#include "views/list_cells.h"

#include <gtest/gtest.h>

#include "support/project.h"
#include "support/tables_builder.h"

namespace oru::views {
namespace {

TEST(ListCells, ZeroIsNeverPrinted) {
  struct {
    std::int64_t n;
    std::string_view count, metric;
  } const cases[] = {
      {0, "    ", "     "},       {7, "   7", "     7"},          {1234, "1234", "  1234"},
      {65534, "65534", " 65534"}, {1234567, "1234567", "234567"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.n);
    EXPECT_EQ(Edt_Count(c.n), c.count);
    EXPECT_EQ(Edt_Metric(c.n), c.metric);
  }
}

class Cells : public testing::Test {
 protected:
  test::Project project_;
  test::Tables_Builder made_;
  std::string update_;
  View_Ctx ctx_{project_.Srv, project_.Editor, made_.tables,
                [this](std::string_view) { return update_; }, "240305060708"};
};

TEST_F(Cells, ChangeIsMarkedByTheMomentOfLoading) {
  struct {
    std::string_view what, update, mark, date, key;
  } const cases[] = {
      {"second of loading", "24030506070800012M.P", "★", "2024/03/05 06:07", "24030506070800012"},
      {"one second before", "24030506070700012M.P", "☆", "2024/03/05 06:07", "24030506070700012"},
      {"a day later", "24030600000000001M.P", "★", "2024/03/06 00:00", "24030600000000001"},
      {"the year before", "23123123595900345M.P", "☆", "2023/12/31 23:59", "23123123595900345"},
      {"never", "", "", "", "P.M "},
      {"cut off", "240305060708", "", "", "P.M "},
      {"damaged", "24-3050607080001200", "", "", "P.M "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    update_ = c.update;
    const UDt_Inf inf = Set_UDt_Inf(ctx_, "P.M");
    EXPECT_EQ(inf.Mrk, c.mark);
    EXPECT_EQ(inf.Dat, c.date);
    EXPECT_EQ(inf.Key, c.key);
    EXPECT_EQ(inf.Chg, !c.mark.empty());
  }
}

TEST_F(Cells, WithoutALookUpNothingIsChanged) {
  ctx_.Prc_Upd_Inf = nullptr;
  EXPECT_EQ(Set_UDt_Inf(ctx_, "M").Mrk, "");
}

TEST_F(Cells, ReferenceMarkTellsWhoIsNotCalled) {
  made_.Ref("M.Caller", "1-").Ref("M.Called", "-1").Ref("M.Both", "11").Ref("M.Main", "1-");
  struct {
    std::string_view name, kind, mark;
    bool red;
  } const cases[] = {
      {"Called", "1", "↑", false},    {"Both", "2", "↓↑", false},
      {"Caller", "1", "↓", true},     {"Caller", "0", "↓", false},
      {"Alone", "1", "－", true},     {"Alone", "2", "－", true},
      {"Alone", "0", "", false},      {"Alone", "3", "", false},
      {"Alone", "4", "", false},      {"%Declare", "", "", false},
      {"Main", "1", "↓", false},      {"Auto_Open", "1", "", false},
      {"auto_open", "1", "－", true}, {"Class_Terminate", "1", "", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " of kind " + std::string(c.kind));
    analyser::Mem_Row row;
    row.Mem_Nam = c.name;
    row.Mem_Mdl = "M";
    row.Mem_Knd = c.kind;
    const Ref_Cell cell = Get_Ref_Cell(made_.tables, row);
    EXPECT_EQ(cell.Mrk, c.mark);
    EXPECT_EQ(cell.Red, c.red);
  }
}

TEST_F(Cells, DefinitionStatementIsAnythingButBlankAndOption) {
  struct {
    std::string_view what, text;
    bool found;
  } const cases[] = {
      {"nothing", "", false},
      {"options and blanks", "Option Explicit\n\n  Option Base 1\n", false},
      {"variable", "Option Explicit\nPrivate Total As Long\n", true},
      {"comment", "Option Explicit\n' later\n", true},
      {"only in a procedure", "Option Explicit\nSub A()\n  Dim x As Long\nEnd Sub\n", false},
      {"word that begins so", "Optional_Value = 1\n", true},
  };
  int n = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const std::string name = "Module" + std::to_string(++n);
    project_.Add(name, c.text);
    EXPECT_EQ(Chk_Def_Stm(project_.Editor, name), c.found);
  }
  EXPECT_FALSE(Chk_Def_Stm(project_.Editor, "Gone"));
}

TEST_F(Cells, ControlTypeComesFromTheDesignerAndFromTheTablesWhileItIsClosed) {
  project_.Add_Form("Form1", "", {"Ok:CommandButton"});
  made_.Mdl("Form1|3||").Ctl("Ok|Label|||").Ctl("Old|TextBox|||");
  EXPECT_EQ(Get_Ctl_Typ(ctx_, "Form1", "Ok"), "CommandButton");
  EXPECT_EQ(Get_Ctl_Typ(ctx_, "Form1", "Old"), "");
  auto* form = dynamic_cast<host::Memory_Component*>(
      project_.Editor.ActiveVBProject()->VBComponents().Item("Form1"));
  form->Set_Designer_Open(false);
  EXPECT_EQ(Get_Ctl_Typ(ctx_, "Form1", "Old"), "TextBox");
  EXPECT_EQ(Get_Ctl_Typ(ctx_, "Form1", "UserForm"), "");
}

}  // namespace
}  // namespace oru::views
