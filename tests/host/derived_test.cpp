// SPDX-License-Identifier: MIT
#include "host/derived.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/memory_editor.h"
#include "support/fakes.h"

namespace oru::host {
namespace {

TEST(Derived, HostFileFromTheCaption) {
  // The caption is built from the file and the mode, so that all forms can be reached by them.
  const struct {
    std::string_view what, file, mode, name, project;
  } cases[] = {
      {"plain", "/x/Book1.xlsm", "", "Book1.xlsm", "Book1"},
      {"running", "/x/Book1.xlsm", "実行中", "Book1.xlsm", "Book1"},
      {"brackets in the name and a mode", "a [1].xlsm", "中断", "a [1].xlsm", "a [1]"},
      {"brackets in the name alone are taken for a mode", "a [1].xlsm", "", "a", "a"},
      {"up to the next dash", "売上 - 4月.xlsm", "", "売上", "売上"},
      {"dots in the name", "v1.2.集計.xlsm", "", "v1.2.集計.xlsm", "v1.2.集計"},
      {"never saved", "Book1", "", "Book1", "Book1"},
  };
  for (const bool maximised : {false, true})
    for (const auto& each : cases) {
      SCOPED_TRACE(std::string(each.what) + (maximised ? ", maximised" : ""));
      Memory_Editor editor;
      Memory_Project& project = editor.Add_Project("P", std::string(each.file));
      editor.Set_Mode(std::string(each.mode));
      project.Add_Component({.name = "Module1"}).Activate();
      if (maximised) editor.ActiveWindow()->Set_WindowState(kState_Maximised);
      EXPECT_EQ(Get_HFl_Nam(editor), each.name);
      EXPECT_EQ(Get_Prj_Nam(editor), each.project);
    }
  Memory_Editor none;
  EXPECT_EQ(Get_HFl_Nam(none), "");
  EXPECT_EQ(Get_Prj_Nam(none), "");
}

TEST(Derived, Modes) {
  Memory_Editor editor;
  EXPECT_TRUE(Chk_Des_Mod(editor));
  EXPECT_FALSE(Chk_Edt_Mod(editor)) << "no window";
  Memory_Project& project = editor.Add_Project("P", "Book1.xlsm");
  Memory_Component& form =
      project.Add_Component({.name = "F", .type = kType_Form, .has_designer = true});
  form.CodeModule()->CodePane().Show();
  EXPECT_TRUE(Chk_Edt_Mod(editor));
  for (const char* mode : {"実行中", "中断"}) {
    editor.Set_Mode(mode);
    EXPECT_FALSE(Chk_Des_Mod(editor));
    EXPECT_FALSE(Chk_Edt_Mod(editor));
  }
  editor.Set_Mode("");
  form.Activate();
  EXPECT_FALSE(Chk_Edt_Mod(editor)) << "a designer in front";
}

TEST(Derived, CodeComponents) {
  Memory_Editor editor;
  EXPECT_FALSE(Chk_Mdl_Typ(editor, "Module1"));
  Memory_Project& project = editor.Add_Project("P", "Book1.xlsm");
  for (const int type : {1, 2, 3, 11, 100, 0, 4, 71, 72}) {
    SCOPED_TRACE(type);
    const std::string name = "M" + std::to_string(type);
    project.Add_Component({.name = name, .type = type});
    const bool is_code = type == 1 || type == 2 || type == 3 || type == 11 || type == 100;
    EXPECT_EQ(Chk_Mdl_Typ(editor, name), is_code);
  }
  EXPECT_TRUE(Chk_Mdl_Typ(editor, "m1"));
  EXPECT_FALSE(Chk_Mdl_Typ(editor, "Nothing"));
  project.Set_Protection(Protection::Locked);
  EXPECT_FALSE(Chk_Mdl_Typ(editor, "M1"));
}

TEST(Derived, ProtectionStopsCommands) {
  Memory_Editor editor;
  test::Fake_Services fake;
  EXPECT_TRUE(Chk_Protect(editor, fake.services, false));
  EXPECT_EQ(fake.ui.calls, (std::vector<std::string>{"All_Unl_Prc"}));
  EXPECT_TRUE(Chk_Protect(editor, fake.services, true));
  ASSERT_EQ(fake.ui.messages.size(), 1U);
  EXPECT_NE(fake.ui.messages[0].text.find("有効なプロジェクトがありません。"), std::string::npos);
  Memory_Project& project = editor.Add_Project("P", "Book1.xlsm");
  fake.ui.calls.clear();
  EXPECT_FALSE(Chk_Protect(editor, fake.services, true));
  EXPECT_TRUE(fake.ui.calls.empty());
  project.Set_Protection(Protection::Locked);
  EXPECT_TRUE(Chk_Protect(editor, fake.services, true));
  ASSERT_EQ(fake.ui.messages.size(), 2U);
  EXPECT_NE(fake.ui.messages[1].text.find("保護されたプロジェクトでは実行できません。"),
            std::string::npos);
  EXPECT_EQ(fake.ui.calls.back(), "All_Unl_Prc");
}

TEST(Derived, KindsOfMembers) {
  const struct {
    std::string_view header, name;
    char kind, sub;
  } cases[] = {
      {"Sub M()", "M", '1', 0},
      {"Function M()", "M", '1', 0},
      {"Property Get M()", "M(Get)", '3', '1'},
      {"Property Let M(v)", "M(Let)", '3', '2'},
      {"Property Set M(v)", "M(Set)", '3', '3'},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.header);
    Memory_Editor editor;
    const CodeModule& module = *editor.Add_Project("P", "B")
                                    .Add_Component({.name = "M", .text = std::string(each.header)})
                                    .CodeModule();
    const Member_Place place = Get_CML_Inf(module, 1);
    EXPECT_EQ(place.Nam, each.name);
    EXPECT_EQ(place.Prc_Nam, "M");
    EXPECT_EQ(place.Knd, each.kind);
    EXPECT_EQ(place.Sub, each.sub);
  }
}

TEST(Derived, ProceduresOfAModule) {
  Memory_Editor editor;
  Memory_Project& project = editor.Add_Project("P", "B");
  const CodeModule& module =
      *project
           .Add_Component({.name = "M",
                           .text = "Dim x\n'about\nSub A()\nEnd Sub\n#If X Then\n"
                                   "Sub B()\nEnd Sub\n#Else\nSub B()\nx = 1\nEnd Sub\n"
                                   "#End If\nProperty Get C()\nEnd Property\n\n"})
           .CodeModule();
  std::string all;
  for (const Member_Place& place : Get_Procedures(module))
    all += place.Nam + " " + std::to_string(place.Top) + " " + std::to_string(place.Bdy) + " " +
           std::to_string(place.Cnt) + "\n";
  EXPECT_EQ(all, "A 2 3 3\nB 5 6 3\nB 8 9 4\nC(Get) 12 13 4\n");
  EXPECT_TRUE(
      Get_Procedures(*project.Add_Component({.name = "N", .text = "Dim x"}).CodeModule()).empty());
}

TEST(Derived, ActivePane) {
  Memory_Editor editor;
  EXPECT_FALSE(Get_ACp_Inf(editor).has_value());
  Memory_Project& project = editor.Add_Project("P", "Book1.xlsm");
  Memory_Component& module =
      project.Add_Component({.name = "Module1", .text = "Dim a\nSub S()\nEnd Sub"});
  Memory_Component& form =
      project.Add_Component({.name = "Form1", .type = kType_Form, .has_designer = true});
  EXPECT_EQ(Set_Mdl_Nam(editor), "");

  CodePane& pane = module.CodeModule()->CodePane();
  pane.SetSelection({3, 2, 3, 4});
  pane.Set_TopLine(2);
  const auto place = Get_ACp_Inf(editor);
  ASSERT_TRUE(place.has_value());
  EXPECT_EQ(place->Mdl_Nam, "Module1");
  EXPECT_EQ(place->Sel, (Selection{3, 2, 3, 4}));
  EXPECT_EQ(place->TopLine, 2);
  EXPECT_EQ(place->Mem.Nam, "S");
  EXPECT_EQ(place->Mem.Top, 2);

  form.Activate();
  EXPECT_EQ(Set_Mdl_Nam(editor), "Form1") << "from the caption of a designer's window";
  EXPECT_FALSE(Get_ACp_Inf(editor).has_value()) << "no code in front";
  pane.Show();
  project.Set_Protection(Protection::Locked);
  EXPECT_EQ(Set_Mdl_Nam(editor), "");
  Memory_Project& other = editor.Add_Project("Q", "Book2.xlsm");
  other.Add_Component({.name = "Module9"});
  EXPECT_EQ(Set_Mdl_Nam(editor), "") << "a pane of another project";
}

}  // namespace
}  // namespace oru::host
