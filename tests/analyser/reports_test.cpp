// SPDX-License-Identifier: MIT
// What a run writes and asks besides the tables: the statistics and error reports, the trace, the
// question at the end, the display of progress.
#include <gtest/gtest.h>

#include "analyser/progress.h"
#include "service/files.h"
#include "support/project.h"

namespace oru::analyser {
namespace {

using service::Answer;
using test::Project;

// A project whose reports go to a folder.
struct Reported {
  Reported() {
    p.Srv.Data_Folder = folder.Path();
    p.Srv.Trace.Path = folder / "Trcfile.TXT";
    p.Srv.Sw.Statistics = p.Srv.Sw.Trace = true;
  }
  [[nodiscard]] std::string Text(std::string_view name) const {
    std::string text;
    (void)service::Srv_RAl_TFl(folder / name, text);
    return text;
  }
  test::Temp_Folder folder;
  Project p;
};

TEST(Reports, StatisticsNameEveryStep) {
  Reported r;
  r.p.Add("A", "Sub Aa()\nEnd Sub");
  r.p.Analyse();
  const std::string text = r.Text("実行統計レポート.txt");
  std::size_t at = 0;
  for (const std::string_view step :
       {"   プロジェクト名：Book1", "初期処理・実行判定\t\t0",
        "オートシェープ､フォームコントロールのマクロ定義取得\t\t0",
        "モジュール別定義情報取得\tA\t0", "参照関係取得時の初期処理\t\t0",
        "モジュール別参照情報取得\tA\t0", "総合実行時間\t\t0"}) {
    at = text.find(step, at);
    ASSERT_NE(at, std::string::npos) << step << "\n" << text;
  }
}

TEST(Reports, TheTraceHoldsTheAnalyzeReport) {
  Reported r;
  r.p.Add("A", "Sub Aa()\n' x\n\nEnd Sub");
  r.p.Analyse();
  const std::string text = r.Text("Trcfile.TXT");
  for (const std::string_view line :
       {"Project Change (Book1)", "Analyze Report (Book1)", "        ModuleCount = 1",
        "        TotalTime   = 0Ms", "        AnalizeTime = 0Ms", "        TotalLine   = 4 (3)",
        "        Line／Sec   = 0 (0)"})
    EXPECT_NE(text.find(line), std::string::npos) << line;
}

TEST(Reports, UnreadableControlsAreOfferedAsAReportOnce) {
  for (const Answer answer : {Answer::Yes, Answer::No}) {
    Reported r;
    r.p.Add("F", "", host::kType_Form);
    r.p.Ui.answers = {answer};
    r.p.Analyse();
    ASSERT_EQ(r.p.Ui.messages.size(), 1U);
    EXPECT_EQ(r.p.Ui.messages[0].text, "  解析エラーレポートを表示しますか。");
    EXPECT_EQ(r.p.Ui.opened.size(), answer == Answer::Yes ? 1U : 0U);
    EXPECT_NE(
        r.Text("解析エラーレポート.txt").find("F - コントロール情報を取得できません。 (Err.No=91)"),
        std::string::npos);
    r.p.Code("F").InsertLines(1, "Dim a");
    r.p.Analyse_After_Edit();
    EXPECT_EQ(r.p.Ui.messages.size(), 1U) << "only the first analysis offers it";
  }
}

TEST(Reports, AClosedDesignerIsOpenedForItsControls) {
  Project p;
  p.Add_Form("F", "Sub cmd_Click()\nEnd Sub", {"cmd:CommandButton"});
  auto* form = static_cast<host::Memory_Project*>(p.Editor.ActiveVBProject())->Find_Component("F");
  form->Set_Designer_Open(false);
  p.Analyse();
  EXPECT_EQ(p.Ctl("F"), (std::vector<std::string>{"UserForm", "cmd", "|"}));
  EXPECT_EQ(p.Editor.Windows().Count(), 0) << "and its window is closed again";
  EXPECT_TRUE(p.Ui.messages.empty());
}

TEST(Reports, WaitingForEventsIsNotMeasured) {
  Project p;
  p.Add("A", "Sub Aa()\n' x\nEnd Sub\n\n");
  p.Ui.on_events = [&] { p.Clk.milliseconds += 7; };
  p.Analyse();
  EXPECT_EQ(p.Sta.Anl_Tim, 0);
}

TEST(Progress, OpensOnlyForWorkThatLasts) {
  Project p;
  {
    Anl_Progress progress(p.Srv);
    progress.Dsp_Anl_Res("Mdl", {}, 10, 0, 1000);
    progress.Dsp_Anl_Res({}, "A", 0, 1000, 1000);
    EXPECT_TRUE(p.Ui.progress.empty()) << "not beyond a second yet";
    progress.Dsp_Anl_Res({}, "B", 0, 1001, 1000);
    EXPECT_EQ(p.Ui.progress,
              (std::vector<std::string>{"定義情報を解析しています。(2／3) ( 2 / 10 )"}));
  }
  EXPECT_EQ(p.Ui.calls.back(), "Close_Progress") << "also behind a fault";
  p.Ui.progress.clear();
  Anl_Progress progress(p.Srv);
  progress.Dsp_Anl_Res("Sav", {}, 3, 0, 1000);
  EXPECT_EQ(p.Ui.progress, (std::vector<std::string>{"解析情報を保存しています。 ( 0 / 3 )"}));
}

}  // namespace
}  // namespace oru::analyser
