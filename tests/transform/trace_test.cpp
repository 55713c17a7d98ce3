// SPDX-License-Identifier: MIT
// Trace statements set, replaced and removed, and the table of a traced run.
#include "transform/trace.h"

#include <gtest/gtest.h>

#include "support/project.h"

namespace oru::transform {
namespace {

constexpr std::string_view kCode = R"(
Declare Sub Api Lib "k" ()
'about A
Public Sub A( _
    x As Long)
    x = 1
End Sub
Private Function F() As Long
End Function
Property Get P() As Long
End Property
Sub One(): End Sub
Sub Srv_Log_Out()
End Sub)";

class Trace : public ::testing::Test {
 protected:
  Trace() {
    project_.Add("M", kCode);
    project_.Add("Mod_Trace", "Sub Set_Trace_Info(m, p)\nEnd Sub");
    form_.Lod_State(project_.Srv.Opt);
    for (const char* member : {"%Declare", "A", "F", "P(Get)", "One", "Srv_Log_Out", "Gone"})
      form_.Prc.push_back({"M", member});
    form_.Prc.push_back({"Mod_Trace", "Set_Trace_Info"});
  }
  std::string Text(std::string_view module = "M") {
    host::CodeModule& code = project_.Code(module);
    return code.Lines(1, code.CountOfLines());
  }
  // The lines that hold the marker, each with its number.
  std::string Traced() {
    std::string traced;
    const host::CodeModule& code = project_.Code("M");
    for (int line = 1; line <= code.CountOfLines(); ++line)
      if (const std::string text = code.Lines(line, 1); text.find("TraceLine") != std::string::npos)
        traced += "\n" + std::to_string(line) + " " + text;
    return traced;
  }
  [[nodiscard]] Transform_Ctx Ctx() {
    return {project_.Srv, project_.Editor, project_.Tbl,
            [this](std::string_view module) { told_ += module; }};
  }

  test::Project project_;
  Frm_Trace form_;
  std::string told_;
};

TEST_F(Trace, SetReplacedAndRemoved) {
  ASSERT_TRUE(project_.Analyse());
  const std::string before = Text();
  EXPECT_TRUE(form_.FBt_Start_Click(Ctx(), Trace_Mode::Set));
  EXPECT_EQ(Traced(),
            "\n5 Set_Trace_Info \"M\", \"A\"    ' %%TraceLine"
            "\n9 Set_Trace_Info \"M\", \"F\"    ' %%TraceLine"
            "\n12 Set_Trace_Info \"M\", \"P(Get)\"    ' %%TraceLine"
            "\n16 Set_Trace_Info \"M\", \"Srv_Log_Out\"    ' %%TraceLine");
  EXPECT_EQ(told_, "M");
  EXPECT_EQ(project_.Ui.progress.back(), "トレース文設定中 ( 2 / 2 )");
  EXPECT_EQ(form_.Set_Trace(Ctx(), Trace_Mode::Set).Changed, 0);

  form_.Sta = "Log \"%MN.%PN, %MN\"   ";
  project_.Code("M").ReplaceLine(5, "x ' %%traceline");
  EXPECT_EQ(form_.Set_Trace(Ctx(), Trace_Mode::Set).Changed, 4);
  EXPECT_EQ(Traced().substr(0, 42), "\n5 Log \"M.A, M\"    ' %%TraceLine\n9 Log \"M.");
  project_.Code("M").InsertLines(7, "y ' %%TraceLine");
  EXPECT_EQ(form_.Set_Trace(Ctx(), Trace_Mode::Remove).Changed, 4);
  EXPECT_EQ(Text(), before);
  EXPECT_EQ(Text("Mod_Trace").find(kTrace_Marker), std::string::npos);
}

TEST_F(Trace, StandsBehindTheHeaderStatement) {
  constexpr std::string_view kMark = "@    ' %%TraceLine";
  const struct {
    std::string_view what, in;
    std::vector<int> lines;  // where the statement goes in, as the text is afterwards
  } kCases[] = {
      {"an underscore that continues nothing",
       "Sub A() '___\nSelect Case x\nCase 1\nEnd Select\nEnd Sub",
       {2}},
      {"a name that ends in one", "Function A() As Foo_\nEnd Function", {2}},
      {"a continued comment behind the header", "Sub A() ' x _\n  y\nx = 1\nEnd Sub", {3}},
      {"a header with blanks behind its mark", "Sub A( _  \n  x)\nEnd Sub", {3}},
      {"all of it in a continued statement", "Sub A( _\n  x): End Sub", {}},
      {"a statement on the header's line", "Sub A(): x = 1\nEnd Sub", {2}},
      {"comments above, code behind the end", "Dim x\n' a\nSub A()\nEnd Sub\n' b", {4}},
      {"two headers around one body",
       "#If X Then\nSub A()\n#Else\nSub A(y)\n#End If\nEnd Sub",
       {3}},
      {"a procedure in each branch",
       "#If X Then\nSub A()\nEnd Sub\n#Else\nSub A(y)\nEnd Sub\n#End If",
       {3, 7}},
      {"a procedure without an end", "Sub A()", {2}},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    test::Project project;
    project.Add("N", each.in);
    ASSERT_TRUE(project.Analyse());
    host::CodeModule& code = project.Code("N");
    const std::string before = code.Lines(1, code.CountOfLines());
    Frm_Trace form;
    form.Sta = "@";
    form.Prc = {{"N", "A"}};
    const Transform_Ctx ctx{project.Srv, project.Editor, project.Tbl};
    ASSERT_EQ(form.Set_Trace(ctx, Trace_Mode::Set).Error, "");
    std::vector<int> lines;
    for (int line = 1; line <= code.CountOfLines(); ++line)
      if (code.Lines(line, 1) == kMark) lines.push_back(line);
    EXPECT_EQ(lines, each.lines);
    ASSERT_EQ(form.Set_Trace(ctx, Trace_Mode::Remove).Error, "");
    EXPECT_EQ(code.Lines(1, code.CountOfLines()), before);
  }
}

TEST_F(Trace, ChosenByScopeKindAndName) {
  ASSERT_TRUE(project_.Analyse());
  const struct {
    std::string_view what;
    void (*set)(Frm_Trace&);
    std::string_view members;
  } kCases[] = {
      {"public ones", [](Frm_Trace& f) { f.Pub_Onl = true; }, "A P(Get) Srv_Log_Out "},
      {"functions", [](Frm_Trace& f) { f.Sub = f.Prp = false; }, "F "},
      {"properties", [](Frm_Trace& f) { f.Sub = f.Fnc = false; }, "P(Get) "},
      {"without the own ones", [](Frm_Trace& f) { f.Own = true; }, "A F P(Get) "},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    Frm_Trace form = form_;
    form.Sta = "%PN";
    each.set(form);
    ASSERT_EQ(form.Set_Trace(Ctx(), Trace_Mode::Set).Error, "");
    std::string members;
    const std::string traced = Traced();
    for (const std::string_view line : service::Split(traced, "\n"))
      if (const std::size_t blank = line.find(' '); blank != std::string_view::npos)
        members += std::string(line.substr(blank + 1, line.find("    '") - blank - 1)) + " ";
    EXPECT_EQ(members, each.members);
    ASSERT_EQ(form_.Set_Trace(Ctx(), Trace_Mode::Remove).Error, "");
  }
}

TEST_F(Trace, NothingIsWrittenAnywhereIfOneModuleIsRefused) {
  const std::string name(250, 'n');
  project_.Add("Z", "Sub " + name + "()\nEnd Sub");
  ASSERT_TRUE(project_.Analyse());
  form_.Prc.push_back({"Z", name});
  form_.Sta = "%PN%PN%PN%PN%PN";
  const std::string before = Text();
  EXPECT_FALSE(form_.FBt_Start_Click(Ctx(), Trace_Mode::Set));
  EXPECT_EQ(Text(), before);
  ASSERT_EQ(project_.Ui.messages.size(), 1U);
  EXPECT_NE(project_.Ui.messages[0].text.find("「Z」の 2 行目"), std::string::npos);
  form_.Sta = "a\r\nb";
  EXPECT_NE(form_.Set_Trace(Ctx(), Trace_Mode::Set).Error, "");
  EXPECT_EQ(Text(), before);
}

TEST_F(Trace, AsksForStatementAndProcedures) {
  form_.Sta = " ";
  EXPECT_FALSE(form_.FBt_Start_Click(Ctx(), Trace_Mode::Set));
  form_.Prc.clear();
  EXPECT_FALSE(form_.FBt_Start_Click(Ctx(), Trace_Mode::Remove));
  ASSERT_EQ(project_.Ui.messages.size(), 2U);
  EXPECT_EQ(project_.Ui.messages[0].text, "  設定文が指定されていません。");
  EXPECT_EQ(project_.Ui.messages[1].text, "  対象プロシージャが指定されていません。");
  form_.Sta = std::string(99, 'x') + "字yz";
  form_.Fnc = false;
  form_.Sav_State(project_.Srv.Opt);
  Frm_Trace other;
  other.Lod_State(project_.Srv.Opt);
  EXPECT_FALSE(other.Fnc);
  ASSERT_TRUE(project_.Analyse());
  form_.Prc = {{"M", "A"}};
  ASSERT_EQ(form_.Set_Trace(Ctx(), Trace_Mode::Set).Changed, 1);
  EXPECT_EQ(Traced(), "\n5 " + std::string(99, 'x') + "字    ' %%TraceLine");
}

TEST_F(Trace, StatisticsAsATable) {
  ASSERT_TRUE(project_.Analyse());
  EXPECT_EQ(
      Trace_Statistics(project_.Tbl,
                       "モジュール名,プロシージャ名,回数,秒\r\nM,A,3,0.5\n\nM,None,1\t2\rZ\n"),
      "モジュール名\tプロシージャ名\tコメント\t回数\t秒\r\nM\tA\tabout A\t3\t0.5\r\nM\tNone\t\t1 2\r\n"
      "Z\t\t\r\n");
  EXPECT_EQ(Trace_Statistics(project_.Tbl, "モジュール名,回数\nM,A"), "");
  std::string clipboard;
  const auto put = [&](const std::string& text) {
    clipboard = text;
    return true;
  };
  Frm_Trace::FMn_CpyIf_Click(Ctx(), "x", put);
  Frm_Trace::FMn_CpyIf_Click(Ctx(), "モジュール名,プロシージャ名,回数", put);
  EXPECT_EQ(clipboard, "モジュール名\tプロシージャ名\tコメント\t回数\r\n");
  ASSERT_EQ(project_.Ui.messages.size(), 2U);
  EXPECT_EQ(project_.Ui.messages[0].text, "  実行統計ファイルの構成が不正です。");
  EXPECT_EQ(project_.Ui.messages[1].text,
            "  プロシージャ実行統計をクリップボードにコピーしました。");
}

}  // namespace
}  // namespace oru::transform
