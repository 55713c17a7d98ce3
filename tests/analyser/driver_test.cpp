// SPDX-License-Identifier: MIT
#include "analyser/driver.h"

#include <gtest/gtest.h>

#include "analyser/table_text.h"
#include "support/failing_host.h"
#include "support/project.h"

namespace oru::analyser {
namespace {

using service::Answer;
using test::Project;
using Names = std::vector<std::string>;

// All tables as text, module blocks in name order, so that two ways to the same state compare.
std::string Shown(const Tables& tables) {
  std::vector<std::string> blocks;
  for (const auto& item : tables.Mdl_Tbl) {
    std::string block;
    Put_Module_Block(tables, *item.value, [&](std::string_view tag, std::string_view row) {
      block.append(tag).append(row).append("\n");
    });
    blocks.push_back(block);
  }
  std::sort(blocks.begin(), blocks.end());
  std::vector<std::string> marks;
  Put_Ref_Marks(tables, [&](std::string_view, std::string_view row) { marks.emplace_back(row); });
  std::sort(marks.begin(), marks.end());
  std::string all;
  for (const auto& part : blocks) all += part;
  for (const auto& mark : marks) all += mark + "\n";
  return all;
}

Names Order(const Tables& tables) {
  Names names;
  for (const auto& item : tables.Mdl_Tbl) names.push_back(item.key);
  return names;
}

TEST(Driver, ReadsOnlyWhatChanged) {
  Project p;
  p.Add("A", "Sub Aa()\nBb\nEnd Sub").Add("B", "Sub Bb()\nEnd Sub").Add("C", "' c");
  EXPECT_TRUE(p.Analyse());
  EXPECT_EQ(p.Sta.Mdl_Cnt, 3);
  EXPECT_FALSE(p.Analyse()) << "nothing to do";
  EXPECT_EQ(p.Sta.Mdl_Cnt, 0);

  p.Code("A").InsertLines(2, "x = 1");
  EXPECT_FALSE(p.Analyse()) << "without a key stroke no text is compared";
  EXPECT_TRUE(p.Analyse_After_Edit());
  EXPECT_EQ(p.Sta.Mdl_Cnt, 1);
  EXPECT_EQ(Order(p.Tbl), (Names{"B", "C", "A"})) << "a module read again moves to the end";
  EXPECT_EQ(p.Refs("A"), (Names{"Aa>B.Bb 00003 N"}));
}

TEST(Driver, BlankLinesInsideCountAtTheEndDoNot) {
  const struct {
    std::string_view what;
    void (*edit)(host::CodeModule&);
    int modules;
  } kCases[]{
      {"nothing", [](host::CodeModule&) {}, 0},
      {"inside a member", [](host::CodeModule& m) { m.InsertLines(6, ""); }, 1},
      {"in the declaration section", [](host::CodeModule& m) { m.InsertLines(1, ""); }, 1},
      {"between members", [](host::CodeModule& m) { m.InsertLines(8, ""); }, 1},
      {"one taken out", [](host::CodeModule& m) { m.DeleteLines(3); }, 1},
      {"at the module's end", [](host::CodeModule& m) { m.InsertLines(m.CountOfLines() + 1, ""); },
       0},
      {"the blank line at the end taken out",
       [](host::CodeModule& m) { m.DeleteLines(m.CountOfLines()); }, 0},
      {"one inside the last member", [](host::CodeModule& m) { m.DeleteLines(10); }, 1},
      {"moved from the end into the last member",
       [](host::CodeModule& m) {
         m.DeleteLines(12);
         m.InsertLines(9, "");
       },
       1},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Project p;
    p.Add(
        "A",
        "Option Explicit\nDim a\n\nDim b\nSub Aa()\nx = 1\nEnd Sub\nSub Bb()\ny = 1\n\nEnd Sub\n\n\n");
    p.Analyse();
    c.edit(p.Code("A"));
    p.Analyse_After_Edit();
    EXPECT_EQ(p.Sta.Mdl_Cnt, c.modules);
  }
}

TEST(Driver, IncrementalEqualsFull) {
  const auto make = [](Project& p) {
    p.Add("A", "Public cls As Worker\nSub Aa()\ncls.Run\nBb\nEnd Sub", host::kType_Module);
    p.Add("B", "Sub Bb()\nOn Error GoTo E\nAa\nE:\nCc\nEnd Sub\nSub Cc()\nEnd Sub");
    p.Add("Worker", "Public Sub Run()\nBb\nEnd Sub", host::kType_Class);
  };
  const auto edit = [](Project& p) {
    p.Code("B").ReplaceLine(5, "Aa");
    p.Code("A").AddFromString("Private Const K = 1");
  };
  Project incremental;
  make(incremental);
  incremental.Analyse();
  edit(incremental);
  incremental.Analyse_After_Edit();
  EXPECT_EQ(incremental.Sta.Mdl_Cnt, 2);

  Project full;
  make(full);
  edit(full);
  full.Analyse();
  EXPECT_EQ(Shown(incremental.Tbl), Shown(full.Tbl));
}

TEST(Driver, ADeletedModuleLeavesTheTablesButNotTheMarks) {
  Project p;
  p.Add("A", "Sub Aa()\nBb\nEnd Sub").Add("B", "Sub Bb()\nEnd Sub");
  p.Analyse();
  p.Sta.Anl_Chg = false;
  p.Remove("A");
  EXPECT_FALSE(p.Analyse());
  EXPECT_TRUE(p.Sta.Del_Chg);
  EXPECT_TRUE(p.Sta.Anl_Chg);
  EXPECT_EQ(p.Sta.Mdl_Cnt, 0);
  EXPECT_EQ(Order(p.Tbl), (Names{"B"}));
  EXPECT_EQ(Set_Ref_Mrk(p.Tbl, "B", "Bb"), "↑");
  Tbl_Cur cur;
  EXPECT_FALSE(Set_Mem_Fld(p.Tbl, cur, "A", "Aa"));
  EXPECT_EQ(cur.Mem.Mem_Nam + cur.Mem.Mem_Mdl + cur.Mem.Mem_Lin + cur.Mem.Mem_Knd, "AaA1");
}

TEST(Driver, CancelThrowsEverythingAway) {
  for (const int at : {1, 2, 3, 4, 5, 6}) {  // two modules: in both passes and the index
    SCOPED_TRACE(at);
    Project p;
    p.Add("A", "Sub Aa()\nEnd Sub").Add("B", "Sub Bb()\nEnd Sub");
    int step = 0;
    p.Ui.on_events = [&] { p.Sta.Anl_Cnl = ++step == at || p.Sta.Anl_Cnl; };
    p.Analyse();
    EXPECT_TRUE(p.Tbl.Mdl_Tbl.Empty());
    EXPECT_EQ(p.Tbl.RIf_Dic.Count(), 0U);
    EXPECT_FALSE(p.Srv.Anl_Bsy);

    p.Ui.on_events = nullptr;
    EXPECT_TRUE(p.Analyse()) << "the next run starts anew";
    EXPECT_EQ(p.Tbl.Mdl_Tbl.Count(), 2U);
  }
}

TEST(Driver, TheCancelButtonAsks) {
  Project p;
  p.Add("A", "Sub Aa()\nEnd Sub");
  p.Ui.answers = {Answer::No, Answer::Yes};
  p.Ui.on_events = [&] {
    analyser::Anl_Ctx ctx = p.Ctx();
    Req_Anl_Cnl(ctx);
  };
  p.Analyse();  // No in the first pass, Yes while the index is made
  ASSERT_EQ(p.Ui.messages.size(), 2U);
  EXPECT_EQ(p.Ui.messages[0].text,
            "  解析処理を中止するとこれまでの取得情報はすべて破棄します。\r\n  中止しますか。");
  EXPECT_TRUE(p.Tbl.Mdl_Tbl.Empty());
}

TEST(Driver, ANestedCallReturnsAtOnce) {
  Project p;
  p.Add("A", "Sub Aa()\nEnd Sub");
  int nested = 0;
  p.Ui.on_events = [&] { nested += p.Analyse() ? 1 : 0; };
  EXPECT_TRUE(p.Analyse());
  EXPECT_EQ(nested, 0);
  EXPECT_EQ(p.Tbl.Mdl_Tbl.Count(), 1U);
}

TEST(Driver, BrokenReferencesAreAskedAbout) {
  for (const Answer answer : {Answer::Yes, Answer::No}) {
    Project p;
    p.Add("A", "Sub Aa()\nEnd Sub");
    p.Add_Reference("Gone", true);
    p.Ui.answers = {answer};
    p.Analyse();
    ASSERT_EQ(p.Ui.messages.size(), 1U);
    EXPECT_EQ(p.Ui.messages[0].default_button, 2);
    EXPECT_EQ(
        p.Ui.messages[0].text,
        "  参照不可のコンポーネントがあるため機能が正常に動作しないことがあります。\r\n  処理を続行しますか。");
    EXPECT_EQ(p.Tbl.Mdl_Tbl.Count(), answer == Answer::Yes ? 1U : 0U);
  }
}

TEST(Driver, ProgressTellsThreePhases) {
  Project p;
  p.Add("A", "Sub Aa()\nEnd Sub");
  p.Analyse();
  EXPECT_EQ(p.Ui.progress, (Names{
                               "変更内容を調査しています。(1／3) ( 0 / 1 )",
                               "変更内容を調査しています。(1／3) ( 1 / 1 )",
                               "定義情報を解析しています。(2／3) ( 0 / 1 )",
                               "定義情報を解析しています。(2／3) ( 1 / 1 )",
                               "参照関係を解析しています。(3／3) ( 0 / 1 )",
                               "参照関係を解析しています。(3／3) ( 1 / 1 )",
                           }));
}

TEST(Driver, TimersAndHookStandStillForTheRun) {
  Project p;
  p.Add("A", "");
  analyser::Anl_Ctx ctx = p.Ctx();
  (void)Get_Pgm_Inf(ctx, false);
  const Names& calls = p.Ui.calls;
  ASSERT_GE(calls.size(), 6U);
  EXPECT_EQ(Names(calls.begin(), calls.begin() + 3), (Names{"Mouse_Hook 0", "Timer 0", "Wait 1"}));
  EXPECT_EQ(Names(calls.end() - 3, calls.end()), (Names{"Wait 0", "Mouse_Hook 1", "Timer 1"}));
}

// Whatever call the editor refuses: the tables are empty or whole, nothing stays switched off, no
// text has changed, and the next run starts as if nothing had been.
TEST(Driver, ARefusedCallLeavesNothingHalfDone) {
  const auto make = [](Project& p) {
    p.Add("A", "Private o As B\nSub Aa(ByVal c As B)\nc.Bb\nEnd Sub");
    p.Add("B", "Sub Bb()\nEnd Sub", host::kType_Class);
    p.Add_Form("F", "Private Sub cmd_Click()\nEnd Sub", {"cmd:CommandButton"});
  };
  Project whole;
  make(whole);
  whole.Analyse();
  const std::string expected = Shown(whole.Tbl);

  int failures = 0;
  int designer_failures = 0;
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    Project p;
    make(p);
    test::Fuse fuse{n};
    test::Failing_Editor editor(p.Editor, fuse);
    Anl_Ctx ctx{p.Srv, editor, nullptr, p.Tbl, p.Sta, p.Lst};
    const bool done =
        service::Run_Evt(p.Srv, "Mod_Anl", "Get_Pgm_Inf", [&] { (void)Get_Pgm_Inf(ctx, false); });
    if (!done) {
      ++failures;
      EXPECT_TRUE(p.Tbl.Mdl_Tbl.Empty());
      EXPECT_TRUE(p.Tbl.Anl_Mdl.Empty());
      ASSERT_EQ(p.Ui.messages.size(), 1U);
      const std::string& text = p.Ui.messages[0].text;
      const bool designer =
          text.find("プロジェクト情報を正しく参照できません。") != std::string::npos;
      designer_failures += designer ? 1 : 0;
      EXPECT_TRUE(designer ||
                  text.find("プロジェクト情報解析中に障害が発生しました。") != std::string::npos)
          << text;
    }
    EXPECT_FALSE(p.Srv.Anl_Bsy);
    EXPECT_EQ(std::count(p.Ui.calls.begin(), p.Ui.calls.end(), "Timer 0"),
              std::count(p.Ui.calls.begin(), p.Ui.calls.end(), "Timer 1"));
    EXPECT_EQ(p.Code("B").Lines(1, 2), "Sub Bb()\r\nEnd Sub");
    const bool burnt = fuse.burnt;
    fuse.left = 0;
    p.Srv.Prj_Nam.clear();
    p.Analyse();
    EXPECT_EQ(Shown(p.Tbl), expected);
    if (!burnt) break;
  }
  EXPECT_GT(failures, 50);
  EXPECT_EQ(designer_failures, 1);
}

}  // namespace
}  // namespace oru::analyser
