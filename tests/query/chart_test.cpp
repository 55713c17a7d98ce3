// SPDX-License-Identifier: MIT
// The chart: what stands in a tree and why, its limits, its texts, and what the window shows of it.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/places.h"
#include "provider/project_source.h"
#include "query/chart_dot.h"
#include "query/frm_chart.h"
#include "support/project.h"

namespace oru::query {
namespace {

// Each row below the root as dots for its depth, its mark, its name, "!" for error handling.
std::string Tree(const Frm_Chart& chart) {
  std::string out;
  for (const Chart_Node& node : chart.Nodes) {
    if (node.Depth < 1 || node.Tag.ends_with('P')) continue;
    if (!out.empty()) out += ' ';
    out += std::string(static_cast<std::size_t>(std::max(node.Depth - 2, 0)), '.');
    out += node.Mem.empty() ? node.Text : std::string(Mark_Text(node.Mark)) + node.Mem;
    if (node.Error_Section) out += '!';
  }
  return out;
}

class Chart : public ::testing::Test {
 protected:
  [[nodiscard]] Query_Ctx Ctx() { return {project.Srv, project.Editor, project.Tbl, {}, {}}; }
  std::string Show(int mode, std::string_view module, std::string_view member) {
    if (!chart.Show(Ctx(), mode, module, member)) return "(none)";
    return Tree(chart);
  }
  std::string Pane() { return chart.Pane.Text.Text(); }

  test::Project project;
  Frm_Chart chart;
};

constexpr std::string_view kCalls = R"(
Declare Function GetTick Lib "k" () As Long
Sub Main()
    B
    C
    On Error GoTo Err_Main
    D
Err_Main:
    D
    E
End Sub
Sub B()
    D
End Sub
Sub C()
    D
    B
End Sub
Sub D()
    E
    x = GetTick
End Sub
Sub E()
End Sub
Sub Ping()
    Pong
End Sub
Sub Pong()
    Ping
    E
End Sub)";

TEST_F(Chart, TreesOfCallsInBothDirections) {
  project.Add("M", kCalls);
  ASSERT_TRUE(project.Analyse());
  const struct {
    std::string_view what, member;
    int mode;
    Chart_Cond cond;
    std::string_view tree;
  } kCases[] = {
      {"expanded once; a target of both flows stands twice",
       "Main",
       kCallees,
       {},
       "B .D ..E ..GetTick C .▲D .▲B ▲D ▲D! E!"},
      {"expanded wherever it stands",
       "C",
       kCallees,
       {.Crt_Cmp = false},
       "D .E .GetTick B .D ..E ..GetTick"},
      {"without error handling",
       "Main",
       kCallees,
       {.Crt_ErH = true},
       "B .D ..E ..GetTick C .▲D .▲B ▲D"},
      {"one level", "Main", kCallees, {.Crt_Lvl = 1}, "＋B ＋C ＋D ＋D! E!"},
      {"two levels", "Main", kCallees, {.Crt_Lvl = 2}, "B .＋D C .＋D .▲B D .E .GetTick ▲D! E!"},
      {"a cycle", "Ping", kCallees, {}, "Pong .▼Ping .E"},
      {"callers",
       "E",
       kCallers,
       {},
       "Main! D .Main .Main! .B ..Main ..C ...Main .▲C Pong .Ping ..▼Pong"},
      {"callers without error handling",
       "E",
       kCallers,
       {.Crt_Lvl = 1, .Crt_ErH = true},
       "＋D ＋Pong"},
      {"callers of an API", "GetTick", kCallers, {.Crt_Lvl = 1}, "＋D"},
      {"an API calls nothing", "GetTick", kCallees, {}, "呼出しているプロシージャはありません。"},
      {"nothing", "E", kCallees, {}, "呼出しているプロシージャはありません。"},
      {"nothing with the condition",
       "E",
       kCallees,
       {.Crt_ErH = true},
       "呼出しているプロシージャはありません。（エラー処理部のプロシージャは除く）"},
      {"nobody", "Main", kCallers, {}, "このプロシージャは参照されていません。"},
      {"no such procedure", "None", kCallees, {}, "(none)"},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    chart.Cond = each.cond;
    EXPECT_EQ(Show(each.mode, "M", each.member), each.tree);
    EXPECT_TRUE(project.Ui.messages.empty());
  }
  // A limit hides nothing where the conditions leave nothing to show.
  project.Add(
      "N",
      "Sub F()\nG\nEnd Sub\nSub G()\nOn Error GoTo Err_G\nErr_G:\nH\nEnd Sub\nSub H()\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  chart.Cond = {.Crt_Lvl = 1, .Crt_ErH = true};
  EXPECT_EQ(Show(kCallees, "N", "F"), "G");
  chart.Cond.Crt_ErH = false;
  EXPECT_EQ(Show(kCallees, "N", "F"), "＋G");
}

TEST_F(Chart, WhatIsGoneSinceTheAnalysisIsLeftOut) {
  project.Add("M", kCalls);
  ASSERT_TRUE(project.Analyse());
  project.Code("M").DeleteLines(project.Code("M").ProcStartLine("B", host::ProcKind::Proc), 3);
  EXPECT_EQ(Show(kCallees, "M", "C"), "D .E .GetTick");
  EXPECT_EQ(Show(kCallers, "M", "D"), "Main Main! C .Main");
  project.Code("M").InsertLines(1, "Option Explicit");
  EXPECT_EQ(Show(kCallees, "M", "D"), "E GetTick");
  project.Code("M").DeleteLines(2);
  EXPECT_EQ(Show(kCallees, "M", "D"), "E");
}

TEST_F(Chart, UnreferencedOnes) {
  project.Add("M", R"(
Declare Sub Api Lib "k" ()
Sub Main()
    Used
End Sub
Sub Used()
End Sub
Private Function Spare()
End Function
Property Get P()
End Property
Sub Auto_Open()
End Sub
Sub Odd()
End Sub)");
  project.Add("Clean", "Sub Main()\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  EXPECT_EQ(Show(kUnreferenced, "M", "%Declare"), "Spare Odd");
  EXPECT_EQ(Pane().substr(0, Pane().find("\r\n")),
            "●次のプロシージャは未参照と判定されることがあります。");
  EXPECT_EQ(chart.Tree_Text(Ctx(), Chart_Copy::All).Text(), "M\r\n├ Spare\r\n└ Odd\r\n");
  EXPECT_EQ(Show(kUnreferenced, "Clean", "Main"),
            "対象モジュール内の未参照プロシージャはありません。");
  for (const std::string_view name : {"Main", "Class_Initialize", "Class_Terminate", "Auto_Open"})
    EXPECT_TRUE(Chk_NRf_Mem(name));
  EXPECT_FALSE(Chk_NRf_Mem("main"));
}

TEST_F(Chart, StopsAtFortyLevelsAndSaysItOnce) {
  std::string code;
  for (const char chain : {'A', 'B'})
    for (int i = 0; i < 45; ++i)
      code += fmt::format("Sub {0}{1}()\n{0}{2}\nEnd Sub\n", chain, i, i + 1);
  project.Add("M",
              code + "Sub A45()\nEnd Sub\nSub B45()\nEnd Sub\nSub Root()\nA0\nB0\nA6\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "Root"));
  ASSERT_EQ(project.Ui.messages.size(), 1U);
  EXPECT_NE(
      project.Ui.messages[0].text.find("参照ツリーの階層が上限を超えました。処理を中断します。"),
      std::string::npos);
  // Two chains of forty rows. The rest of the first one, which was cut off, is expanded elsewhere.
  const auto deepest =
      std::max_element(chart.Nodes.begin(), chart.Nodes.end(),
                       [](const Chart_Node& a, const Chart_Node& b) { return a.Depth < b.Depth; });
  EXPECT_EQ(deepest->Mem, "A39");
  EXPECT_EQ(deepest->Depth, 41);
  EXPECT_EQ(chart.Nodes.size(), 2U + 40 + 40 + 1);
  EXPECT_EQ(chart.Nodes.back().Mark, Chart_Mark::Expanded);
  EXPECT_TRUE(chart.Show(Ctx(), kCallees, "M", "A5"));
  EXPECT_EQ(chart.Nodes.back().Mem, "A45");
  EXPECT_EQ(project.Ui.messages.size(), 1U);
}

TEST_F(Chart, StopsAtTwentyThousandRowsAndSaysItOnce) {
  std::string code;
  for (int i = 0; i < 30; ++i)
    for (const char side : {'L', 'R'})
      code += fmt::format("Sub {0}{1}()\nL{2}\nR{2}\nEnd Sub\n", side, i, i + 1);
  project.Add("M", code + "Sub L30()\nEnd Sub\nSub R30()\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  project.Ui.calls.clear();
  project.Ui.progress.clear();
  chart.Cond.Crt_Cmp = false;
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "L0"));
  EXPECT_EQ(chart.Nodes.size(), kMost_Nodes);
  ASSERT_EQ(project.Ui.messages.size(), 1U);
  EXPECT_NE(project.Ui.messages[0].text.find("上限（20,000件）"), std::string::npos);
  EXPECT_EQ(project.Ui.progress.front(), "呼出ツリーの設定中です ( 100 )");
  EXPECT_EQ(project.Ui.progress.back(), "呼出ツリーの設定中です ( 20000 )");
  EXPECT_EQ(project.Ui.calls.front(), "Timer 0");
  chart.Cond.Crt_Cmp = true;
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "L0"));
  EXPECT_EQ(chart.Nodes.size(), 2U + 4 * 30 - 2);
}

TEST_F(Chart, TheRootIsTakenFromTheCaret) {
  project.Add("M", kCalls);
  ASSERT_TRUE(project.Analyse());
  const auto caret = [&](int line) { ASSERT_TRUE(host::Set_Mdl_Lin(project.Editor, "M", line)); };
  int keep = 0;
  EXPECT_FALSE(chart.Set_Ref_Tree(Ctx(), keep));
  EXPECT_EQ(Pane(), "●キャレット（カーソル）を対象のプロシージャに移動してください。\r\n\r\n");

  caret(12);
  keep = 1;
  ASSERT_TRUE(chart.Set_Ref_Tree(Ctx(), keep));
  EXPECT_EQ(keep, 0);
  EXPECT_EQ(Tree(chart), "D .E .GetTick");
  caret(1);
  EXPECT_TRUE(chart.Set_Rev_Tree(Ctx(), keep));
  EXPECT_EQ(chart.Crt_RMm, "B");  // the root was kept

  keep = 1;
  EXPECT_FALSE(chart.Set_Ref_Tree(Ctx(), keep));
  EXPECT_EQ(keep, 1);
  EXPECT_EQ(chart.Crt_RMm, "B");
  ASSERT_EQ(project.Ui.messages.size(), 1U);
  EXPECT_EQ(project.Ui.messages[0].text,
            "  モジュール宣言部にキャレット(カーソル)が設定されているため表示できません。\r\n"
            "  キャレットの位置を、表示対象プロシージャに移動してから実行してください。");
  EXPECT_TRUE(chart.Set_Rev_Tree(Ctx(), keep));
  EXPECT_EQ(chart.Crt_RMm, "GetTick");
  project.Code("M").InsertLines(1, "Option Explicit");
  caret(1);
  keep = 1;
  EXPECT_FALSE(chart.Set_Rev_Tree(Ctx(), keep));
  ASSERT_EQ(project.Ui.messages.size(), 2U);
  EXPECT_NE(project.Ui.messages[1].text.find("がが設定"), std::string::npos);
  EXPECT_TRUE(chart.Set_NRf_Tree(Ctx(), keep));

  ASSERT_EQ(chart.His.size(), 3U);
  EXPECT_EQ(chart.His[0].Text, "GetTick ▲(参照)");
  EXPECT_EQ(chart.His[2].Text, "B ▼(呼出)");
}

TEST_F(Chart, PaneShowsTheStatementsOfACall) {
  project.Add("M", R"(
'what A does
Sub A()
    x = 1
    Call N.B( _
        x)
    On Error GoTo E
E:
    N.B 2
End Sub
Property Get P()
End Property)");
  project.Add("N", "Sub B(x)\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "A"));
  EXPECT_EQ(
      Pane(),
      "★表示対象プロシージャが選択されています。\r\n\r\n  A  (M)  what A does\r\n        2|Sub A()\r\n\r\n");
  chart.FTv_Chart_NodeClick(Ctx(), 0);
  EXPECT_EQ(Pane(), "★モジュールが選択されています。\r\n\r\n");
  chart.FTv_Chart_NodeClick(Ctx(), 2);
  EXPECT_EQ(Pane(),
            "  A  (M) ↓  what A does\r\n  →\r\n  B  (N) ↑\r\n        1|Sub B(x)\r\n\r\n"
            " →     4|    Call N.B( _\r\n        5|        x)\r\n");
  EXPECT_TRUE(chart.FRt_Info_Click(Ctx(), chart.Pane.Begins[4]));
  EXPECT_EQ(host::Get_ACp_Inf(project.Editor)->Sel.start_line, 4);
  EXPECT_FALSE(chart.FRt_Info_Click(Ctx(), chart.Pane.Begins[0]));
  EXPECT_EQ(chart.Call_Lines(Ctx(), 3), std::vector<int>{8});
  // The live code decides, also when it moved.
  project.Code("M").InsertLines(1, "Option Explicit");
  chart.Absolute_Lines = true;
  ASSERT_TRUE(chart.Show(Ctx(), kCallers, "N", "B"));
  chart.FTv_Chart_NodeClick(Ctx(), 3);
  EXPECT_EQ(
      Pane(),
      "  A  (M) ↓  what A does\r\n  →\r\n  B  (N) ↑\r\n        3|Sub A()\r\n\r\n □     9|    N.B 2\r\n");
  ASSERT_TRUE(chart.Show(Ctx(), kCallers, "M", "P(Get)"));
  EXPECT_EQ(
      Pane().substr(0, Pane().find("\r\n")),
      "●プロパティへの参照は記録されないため、プロパティを参照しているプロシージャは表示されません。");
}

TEST_F(Chart, CopiesDrawWhatIsChosen) {
  project.Add("M",
              "'about M\nOption Explicit\n'about Root\nSub Root()\nA\nPing\nB\nEnd Sub\n"
              "Sub A()\nN.C\nEnd Sub\nSub Ping()\nRoot\nA\nEnd Sub");
  project.Add("N", "Sub B()\nC\nEnd Sub\nSub C()\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "Root"));
  const std::string head = "M\r\n｜   about M\r\n";
  const std::string about = "   ｜   about Root\r\n";
  EXPECT_EQ(chart.Tree_Text(Ctx(), Chart_Copy::All).Text(),
            head + "└ Root が呼出しているプロシージャ\r\n" + about +
                "    ├ A\r\n    │  └ C (N)\r\n    ├ Ping (M)\r\n    │  ├ Root *2\r\n"
                "    │  └ A *1\r\n    └ B (N)\r\n        └ C\r\n");
  EXPECT_EQ(chart.Tree_Text(Ctx(), Chart_Copy::All, kScreen_Style).Text(),
            head + "└ Root が呼出しているプロシージャ\r\n" + about +
                "    ├ A\r\n    │   └ C (N)\r\n    ├ Ping\r\n    │   ├ ▼Root\r\n"
                "    │   └ ▲A\r\n    └ B (N)\r\n        └ C\r\n");
  EXPECT_EQ(chart.Tree_Text(Ctx(), Chart_Copy::Shown).Text(),
            head + "└ Root が呼出しているプロシージャ\r\n" + about +
                "    ├+A\r\n    ├+Ping\r\n    └+B (N)\r\n");
  chart.FTv_Chart_NodeClick(Ctx(), 4);  // Ping
  EXPECT_EQ(chart.Tree_Text(Ctx(), Chart_Copy::Sub_Tree).Text(),
            head + "└+Root が呼出しているプロシージャ\r\n" + about +
                "    └ Ping\r\n        ├ Root *2\r\n        └ A *1\r\n");
  std::string clipboard;
  chart.Cpy_Crt_Fmt(Ctx(), Chart_Copy::Shown, [&](const std::string& text) {
    clipboard = text;
    return true;
  });
  chart.Cpy_Crt_Fmt(Ctx(), Chart_Copy::Shown, [](const std::string&) { return false; });
  EXPECT_EQ(clipboard, chart.Tree_Text(Ctx(), Chart_Copy::Shown).Text());
  ASSERT_EQ(project.Ui.messages.size(), 2U);
  EXPECT_EQ(project.Ui.messages[0].text, "  コピーしました。");
  EXPECT_EQ(project.Ui.messages[1].text, "  コピーに失敗しました。");
  chart.Cond.Crt_Lvl = 1;
  ASSERT_TRUE(chart.Show(Ctx(), kCallers, "N", "C"));
  EXPECT_EQ(chart.Tree_Text(Ctx(), Chart_Copy::All).Text(),
            "N\r\n└ C を参照しているプロシージャ\r\n    ├ A ＋ (M)\r\n    └ B ＋ (N)\r\n");
}

TEST_F(Chart, NodesCommandsAndOpenRows) {
  project.Add("M", "Sub Root()\nA\nEnd Sub\nSub A()\nB\nEnd Sub\nSub B()\nRoot\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  project.Srv.Opt.Set_Number("CMmBld", 1);
  project.Srv.Opt.Set_Number("CRfBld", 0);
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "Root"));
  ASSERT_EQ(chart.Nodes.size(), 5U);
  EXPECT_EQ(chart.Nodes[0].Text, " M " + std::string(600, ' '));
  const struct {
    std::string_view key, text, tag;
    bool bold;
  } kNodes[] = {{"M", "", "M", true},
                {"M.Root", " Root ", "MP", true},
                {"K00003M.A", " A ", "MR", false},
                {"K00004M.B", " B ", "MR", false},
                {"K00005M.Root", "▼ Root ", "MR", false}};
  for (std::size_t i = 0; i < chart.Nodes.size(); ++i) {
    EXPECT_EQ(chart.Nodes[i].Key, kNodes[i].key);
    EXPECT_EQ(chart.Nodes[i].Tag, kNodes[i].tag);
    EXPECT_EQ(chart.Nodes[i].Bold, kNodes[i].bold);
    EXPECT_TRUE(chart.Nodes[i].Text.starts_with(kNodes[i].text));
  }
  EXPECT_EQ(chart.Nodes[4].Cycle_Of, 1);
  EXPECT_EQ(chart.Ctl_Cmd_Btn().Caption, "（Root）");
  chart.FTv_Chart_NodeClick(Ctx(), 0);
  EXPECT_FALSE(chart.Ctl_Cmd_Btn().Normal);
  chart.FTv_Chart_NodeClick(Ctx(), 3);
  EXPECT_TRUE(chart.Ctl_Cmd_Btn().Reverce);
  EXPECT_EQ(chart.Ctl_Cmd_Btn().Caption, "B");
  EXPECT_EQ(chart.Ctl_Cmd_Btn().Note, "");
  chart.Cond.Crt_ErH = true;
  EXPECT_EQ(chart.Ctl_Cmd_Btn().Note, "エラー処理部のプロシージャは非表示に設定されています。");

  EXPECT_FALSE(chart.Nodes[2].Open);
  chart.Rev_Nod_Opn(3);
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "Root"));
  EXPECT_TRUE(chart.Nodes[2].Open);
  EXPECT_TRUE(chart.Nodes[3].Open);
  EXPECT_FALSE(chart.Nodes[4].Open);
}

TEST_F(Chart, AsAGraphEachProcedureStandsOnce) {
  project.Add("M", "Sub A()\nB\nN.C\nOn Error GoTo E\nE:\nB\nN.D\nEnd Sub\nSub B()\nN.C\nEnd Sub");
  project.Add("N", "Sub C()\nA\nEnd Sub\nSub D()\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  const std::string edges =
      "  p0 -> p1;\n  p0 -> p2;\n  p0 -> p3 [style=dashed];\n  p1 -> p2;\n  p2 -> p0;\n}\n";
  ASSERT_TRUE(chart.Show(Ctx(), kCallees, "M", "A"));
  const Dot_Graph graph = Get_Dot(chart);
  EXPECT_EQ(graph.Procedures, 4U);
  EXPECT_TRUE(graph.Text.starts_with("digraph "));
  EXPECT_TRUE(graph.Text.ends_with(edges)) << graph.Text;
  EXPECT_NE(graph.Text.find("label=\"N\";\n    p2 [label=\"C\"];"), std::string::npos)
      << graph.Text;
}

// The index of targets and the adjacency of callers give what a search in the text gives.
TEST(Chart_Neighbours, AreThoseOfTheReferenceText) {
  test::Project project;
  const auto source = provider::Read_Project(std::string(ORU_SOURCE_DIR) + "/samples/juchu");
  ASSERT_TRUE(source.error.empty());
  for (const auto& component : source.components) project.Add_Component(component);
  ASSERT_TRUE(project.Analyse());
  std::size_t records = 0;
  for (const auto mode : {kCallees, kCallers}) {
    Neighbours near(project.Tbl, mode);
    for (const auto& module : project.Tbl.Mdl_Tbl)
      for (const auto& member : module.value->Mem) {
        const std::string key = analyser::Full_Name(module.key, member.key);
        std::vector<std::string> wanted, found;
        const analyser::Ref_Filter filter = mode == kCallees
                                                ? analyser::Ref_Filter{key, {}, {}}
                                                : analyser::Ref_Filter{{}, module.key, member.key};
        for (analyser::Ref_Cursor at; analyser::Set_Ref_Fld(project.Tbl.Ref_All, filter, at);)
          wanted.emplace_back(mode == kCallees ? at.Record.Target : at.Record.Caller);
        for (std::size_t at = near.First(key); at != Neighbours::kNone; at = near.Next(at))
          found.emplace_back(mode == kCallees ? near.Record(at).Target : near.Record(at).Caller);
        EXPECT_EQ(found, wanted) << key;
        records += found.size();
      }
  }
  EXPECT_GT(records, 400U);
}

}  // namespace
}  // namespace oru::query
