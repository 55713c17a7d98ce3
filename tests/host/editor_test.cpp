// SPDX-License-Identifier: MIT
// Panes, windows, bars, components and workbooks of the editor in memory.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/memory_editor.h"
#include "host/memory_host_app.h"

namespace oru::host {
namespace {

struct Book {
  Memory_Editor editor;
  Memory_Project& project = editor.Add_Project("P", "C:\\仕事\\Book1.xlsm");
  Memory_Component& first = project.Add_Component({.name = "Module1", .text = "abc\n値x\n\nlast"});
  Memory_Component& form = project.Add_Component(
      {.name = "UserForm1",
       .type = kType_Form,
       .text = "x",
       .has_designer = true,
       .controls = {{"Label1", "Label", {}, "名前", "t"}, {"TextBox1", "TextBox", "", {}, {}}},
       .properties = {{"Caption", "入力"}}});
};

TEST(Pane, SelectionAndTopLineStayInTheText) {
  const struct {
    std::string_view what;
    Selection set, got;
  } cases[] = {
      {"inside", {1, 2, 2, 3}, {1, 2, 2, 3}},
      {"columns to the line's end", {1, 99, 2, 99}, {1, 4, 2, 3}},
      {"lines to the module's end", {9, 1, 12, 2}, {4, 1, 4, 2}},
      {"before the start", {0, -4, -1, 0}, {1, 1, 1, 1}},
      {"turned round", {4, 2, 1, 3}, {1, 3, 4, 2}},
  };
  Book book;
  CodePane& pane = book.first.CodeModule()->CodePane();
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    pane.SetSelection(each.set);
    EXPECT_EQ(pane.GetSelection(), each.got);
  }
  for (const auto& [set, got] : {std::pair{-3, 1}, {3, 3}, {40, 4}}) {
    pane.Set_TopLine(set);
    EXPECT_EQ(pane.TopLine(), got);
  }
}

TEST(Pane, FollowsEdits) {
  using Edit = void (*)(CodeModule&);
  const struct {
    std::string_view what;
    Edit edit;
    Selection after;  // of lines 5 to 7, columns 2 to 3
    int top;          // of 4
  } cases[] = {
      {"insert above", [](CodeModule& m) { m.InsertLines(2, "x\r\ny"); }, {7, 2, 9, 3}, 6},
      {"insert at the selection", [](CodeModule& m) { m.InsertLines(5, "x"); }, {6, 2, 8, 3}, 4},
      {"insert inside", [](CodeModule& m) { m.InsertLines(6, "x"); }, {5, 2, 8, 3}, 4},
      {"insert below", [](CodeModule& m) { m.InsertLines(8, "x"); }, {5, 2, 7, 3}, 4},
      {"delete above", [](CodeModule& m) { m.DeleteLines(1, 3); }, {2, 2, 4, 3}, 1},
      {"delete its start and above", [](CodeModule& m) { m.DeleteLines(3, 4); }, {3, 1, 3, 3}, 3},
      {"delete its lines but the last",
       [](CodeModule& m) { m.DeleteLines(5, 2); },
       {5, 1, 5, 3},
       4},
      {"delete all", [](CodeModule& m) { m.DeleteLines(1, 9); }, {1, 1, 1, 1}, 1},
      {"replace its line by a short one",
       [](CodeModule& m) { m.ReplaceLine(5, ""); },
       {5, 1, 7, 3},
       4},
      {"replace a line above by two",
       [](CodeModule& m) { m.ReplaceLine(1, "a\r\nb"); },
       {6, 2, 8, 3},
       5},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Book book;
    book.first.Load_Text("line\nline\nline\nline\nline\nline\nline\nline\nline");
    CodeModule& module = *book.first.CodeModule();
    module.CodePane().SetSelection({5, 2, 7, 3});
    module.CodePane().Set_TopLine(4);
    each.edit(module);
    EXPECT_EQ(module.CodePane().GetSelection(), each.after);
    EXPECT_EQ(module.CodePane().TopLine(), each.top);
  }
}

TEST(Windows, OpenCloseAndLieInOrder) {
  Book book;
  Memory_Editor& editor = book.editor;
  EXPECT_EQ(editor.ActiveCodePane(), nullptr);
  EXPECT_EQ(editor.ActiveWindow(), nullptr);
  EXPECT_EQ(editor.Windows().Count(), 0);

  CodePane& pane = book.first.CodeModule()->CodePane();
  EXPECT_EQ(editor.ActiveCodePane(), &pane);
  EXPECT_EQ(pane.Window().Caption(), "Book1.xlsm - Module1 (コード)");
  EXPECT_EQ(pane.Window().Type(), kWindow_Code);
  book.form.Activate();
  EXPECT_EQ(editor.ActiveCodePane(), nullptr);
  EXPECT_EQ(editor.ActiveWindow()->Caption(), "Book1.xlsm - UserForm1 (UserForm)");
  EXPECT_EQ(editor.ActiveWindow()->Type(), kWindow_Designer);
  CodePane& other = book.form.CodeModule()->CodePane();
  EXPECT_EQ(editor.Windows().Count(), 3);
  EXPECT_EQ(editor.CodePanes().Count(), 2);
  EXPECT_EQ(editor.CodePanes().Item(2), &other);
  EXPECT_EQ(editor.CodePanes().Item(3), nullptr);

  EXPECT_EQ(&book.first.CodeModule()->CodePane(), &pane);
  EXPECT_EQ(editor.ActiveCodePane(), &other) << "an open pane stays where it is";
  pane.Show();
  EXPECT_EQ(editor.ActiveCodePane(), &pane);
  pane.Window().Set_Visible(false);
  EXPECT_EQ(editor.ActiveCodePane(), &other);
  EXPECT_FALSE(pane.Window().Visible());
  other.Window().Close();
  EXPECT_EQ(editor.Windows().Count(), 2);
  EXPECT_EQ(editor.ActiveWindow()->Type(), kWindow_Designer);

  book.project.Remove_Component(book.form);
  EXPECT_EQ(editor.Windows().Count(), 1);
  EXPECT_EQ(editor.ActiveWindow(), nullptr) << "the one left is hidden";
  book.first.Activate();
  EXPECT_EQ(editor.ActiveCodePane(), &pane);
}

TEST(Windows, MainCaption) {
  Book book;
  Window& main = book.editor.MainWindow();
  EXPECT_EQ(main.Caption(), "Visual Basic - Book1.xlsm");
  book.editor.Set_Mode("実行中");
  book.first.Activate();
  EXPECT_EQ(main.Caption(), "Visual Basic - Book1.xlsm [実行中]");
  book.editor.ActiveWindow()->Set_WindowState(kState_Maximised);
  EXPECT_EQ(main.Caption(), "Visual Basic - Book1.xlsm [実行中] - [Module1 (コード)]");
  Memory_Project& other = book.editor.Add_Project("Q", "/home/x/集計.xlam");
  book.editor.Set_Mode("");
  EXPECT_EQ(main.Caption(), "Visual Basic - 集計.xlam - [Module1 (コード)]");
  book.editor.Close_Project(other);
  EXPECT_EQ(book.editor.ActiveVBProject(), &book.project);
  book.editor.Close_Project(book.project);
  EXPECT_EQ(book.editor.ActiveVBProject(), nullptr);
  EXPECT_EQ(main.Caption(), "Visual Basic");
}

TEST(Component, ShowsItsDesignerAndProperties) {
  Book book;
  EXPECT_EQ(book.first.Designer(), nullptr);
  EXPECT_EQ(book.first.DesignerWindow(), nullptr);
  Controls& controls = book.form.Designer()->Controls();
  ASSERT_EQ(controls.Count(), 2);
  EXPECT_EQ(controls.Item(1)->Caption(), "名前");
  EXPECT_THROW((void)controls.Item(1)->Text(), Host_Error);
  EXPECT_EQ(controls.Item("textbox1")->Text(), "");
  EXPECT_THROW((void)controls.Item(2)->Tag(), Host_Error);
  EXPECT_EQ(controls.Item(3), nullptr);
  book.form.Set_Designer_Open(false);
  EXPECT_EQ(book.form.Designer(), nullptr);
  book.form.Activate();
  EXPECT_TRUE(book.form.HasOpenDesigner());

  EXPECT_EQ(book.form.Properties().Item("caption")->Value(), "入力");
  book.form.Properties().Item(1)->Set_Value("Form2");
  EXPECT_EQ(book.form.Name(), "Form2");
  EXPECT_EQ(book.project.VBComponents().Item("FORM2"), &book.form);
  EXPECT_EQ(book.editor.ActiveWindow()->Caption(), "Book1.xlsm - Form2 (UserForm)");
}

TEST(Component, KnowsWhetherItWasEdited) {
  Book book;
  EXPECT_FALSE(book.first.Is_Edited());
  book.first.CodeModule()->ReplaceLine(1, "x");
  EXPECT_TRUE(book.first.Is_Edited());
  EXPECT_EQ(book.first.Text(), "x\r\n値x\r\n\r\nlast");
  book.first.Mark_Saved();
  EXPECT_FALSE(book.first.Is_Edited());
  book.first.CodeModule()->DeleteLines(1);
  book.first.Load_Text("y");
  EXPECT_FALSE(book.first.Is_Edited());
  Memory_Component& bare = book.project.Add_Component({.name = "Bare", .has_code = false});
  EXPECT_EQ(bare.CodeModule(), nullptr);
  EXPECT_EQ(bare.Text(), "");
}

TEST(Project, GuardsItsComponents) {
  Book book;
  EXPECT_THROW(book.project.Add_Component({.name = "MODULE1"}), Host_Error);
  EXPECT_EQ(book.project.VBComponents().Count(), 2);
  book.project.Set_Protection(Protection::Locked);
  EXPECT_THROW((void)book.project.VBComponents(), Host_Error);
  EXPECT_EQ(book.project.Find_Component("module1"), &book.first);
}

// Those that no key of the host commands presses.
TEST(Bars, HoldTheCaptionsThatTheSystemRuns) {
  const std::vector<std::vector<std::string>> paths = {
      {"Code Window", "切り取り(&T)"},
      {"Code Window", "貼り付け(&P)"},
      {"編集", "ｺﾒﾝﾄ ﾌﾞﾛｯｸ"},
      {"編集", "非ｺﾒﾝﾄ ﾌﾞﾛｯｸ"},
  };
  Memory_Command_Bars bars;
  for (const auto& path : paths) {
    CommandBar* bar = bars.Item(path.front());
    std::string joined = path.front();
    CommandBarControl* control = nullptr;
    for (std::size_t i = 1; i < path.size(); ++i) {
      SCOPED_TRACE(path[i]);
      ASSERT_NE(bar, nullptr);
      control = bar->Controls().Item(path[i]);
      ASSERT_NE(control, nullptr);
      bar = control->CommandBar();
      joined += " > " + path[i];
    }
    control->Execute();
    EXPECT_EQ(bars.Executed().back(), joined);
  }
  EXPECT_NE(bars.Item("ﾒﾆｭｰ ﾊﾞｰ")->Controls().Item("ﾂｰﾙ(&T)")->CommandBar(), nullptr);
  EXPECT_THROW(bars.Item("Code Window")->Delete(), Host_Error);
}

TEST(Bars, RaiseClicksOfLivingSources) {
  Memory_Command_Bars bars;
  std::vector<std::string> heard;
  bars.Set_Handler([&](const std::string& path) { heard.push_back(path); });
  CommandBar& bar = bars.Add("Oru");
  CommandBarControl& popup = bar.Controls().Add(ControlType::Popup);
  CommandBarControl& button = popup.CommandBar()->Controls().Add(ControlType::Button);
  CommandBarControl& before = popup.CommandBar()->Controls().Add(ControlType::Button, 1);
  popup.Set_Caption("機能");
  button.Set_Caption("検索");
  EXPECT_EQ(popup.CommandBar()->Controls().Item(1), &before);
  EXPECT_EQ(popup.CommandBar()->Controls().Item(2), &button);
  EXPECT_THROW((void)bar.Controls().Add(ControlType::Button, 3), Host_Error);

  auto one = bars.CommandBarEvents(button);
  auto two = bars.CommandBarEvents(button);
  one->Set_Click([&] { heard.emplace_back("one"); });
  two->Set_Click([&] { heard.emplace_back("two"); });
  button.Execute();
  EXPECT_EQ(heard, (std::vector<std::string>{"Oru > 機能 > 検索", "one", "two"}));
  heard.clear();
  two.reset();
  button.Set_Enabled(false);
  EXPECT_THROW(button.Execute(), Host_Error);
  EXPECT_TRUE(heard.empty());

  // A handler may replace itself and still use what it holds.
  one->Set_Click([&, name = std::string("a name too long to stand inside its object")] {
    one->Set_Click({});
    heard.push_back(name);
  });
  button.Set_Enabled(true);
  button.Execute();
  button.Execute();
  EXPECT_EQ(heard, (std::vector<std::string>{"Oru > 機能 > 検索",
                                             "a name too long to stand inside its object",
                                             "Oru > 機能 > 検索"}));

  // A handler may take away the very button it was called for, and its own source.
  one->Set_Click([&] {
    button.Delete();
    one.reset();
    heard.emplace_back("gone");
  });
  button.Execute();
  EXPECT_EQ(heard.back(), "gone");
  EXPECT_EQ(popup.CommandBar()->Controls().Count(), 1);
  bar.Delete();
  EXPECT_EQ(bars.Item("Oru"), nullptr);
}

TEST(HostApp, ServesItsDataAndFailsWhereMarked) {
  Memory_Host_App app;
  app.Add_Workbook({.name = "Book1.xlsm",
                    .code_name = "ThisWorkbook",
                    .sheets = {{.name = "表",
                                .code_name = "Sheet1",
                                .ole_objects = {{.name = "Button1"}, {.name = "X", .fails = true}},
                                .shapes = {{.on_action = "Book1.xlsm!Run"}, {.fails = true}}},
                               {.name = "隠", .ole_objects_fail = true, .shapes_fail = true}}});
  Workbook& book = app.Workbooks("BOOK1.xlsm");
  EXPECT_EQ(book.CodeName(), "ThisWorkbook");
  Sheet& sheet = book.Sheets().Item(1);
  EXPECT_EQ(sheet.CodeName(), "Sheet1");
  EXPECT_EQ(sheet.OLEObjects().Item(1).OLEType(), 2);
  EXPECT_THROW((void)sheet.OLEObjects().Item(2).Name(), Host_Error);
  EXPECT_EQ(sheet.Shapes().Item(1).OnAction(), "Book1.xlsm!Run");
  EXPECT_THROW((void)sheet.Shapes().Item(2).OnAction(), Host_Error);
  EXPECT_EQ(book.Sheets().Item(2).Name(), "隠");
  EXPECT_THROW((void)book.Sheets().Item(2).OLEObjects(), Host_Error);
  EXPECT_THROW((void)book.Sheets().Item(2).Shapes(), Host_Error);
  EXPECT_THROW((void)book.Sheets().Item(3), Host_Error);
  app.Add_Workbook({.name = "book1.XLSM", .fails = true, .sheets_fail = true});
  EXPECT_THROW((void)app.Workbooks("Book1.xlsm").Name(), Host_Error);
  EXPECT_THROW((void)app.Workbooks("Book1.xlsm").Sheets(), Host_Error);
  app.Close_Workbook("Book1.xlsm");
  EXPECT_THROW((void)app.Workbooks("Book1.xlsm"), Host_Error);
}

}  // namespace
}  // namespace oru::host
