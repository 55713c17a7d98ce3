// SPDX-License-Identifier: MIT
// What stands on the editor's bars, in which order, and that nothing of it stays behind.
#include "lifecycle/menus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lifecycle/fake_bars.h"
#include "support/fakes.h"

namespace oru::lifecycle {
namespace {

using Texts = std::vector<std::string>;
using host::CommandBar;
using host::CommandBarControl;
using host::ControlType;

const Texts kMain_Entries = {
    "検索...(&1)",
    "参照文...(&2)",
    "コード制御構造...(&3)",
    "参照関係...(&4)",
    "変更履歴...(&5)",
    "変更履歴登録...(&6)",
    "その他の機能...(&7)",
    "スニペットアシスタント ∞ ...",
    "ＳＱＬアシスタント ∞ ...",
};
const Texts kFunction_Entries = {
    "プロジェクト構成情報...(&1)",
    "コントロール情報...(&2)",
    "変数・定数定義情報...(&3)",
    "コード差分...(&4)",
    "ドキュメント生成...(&5)",
    "コード整形(&N)",
    "As句の整列(&A)",
    "行内コメントの整列(&M)",
    "代入文の反転 (&R)",
    "コードウィンドウ分割・解除(&Y)",
    "IDE内ウィンドウの表示切替(&P)",
    "コード・オブジェクトの表示切替(&B)",
    "オプション設定...(&O)",
    "ヘルプの表示...(&H)",
};
const Texts kSupport_Entries = {"オプション設定...(&O)", "更新情報の初期化(&D)",
                                "障害レポート表示(&E)", "ヘルプの表示...(&H)",
                                "バージョン情報...(&A)"};
const Texts kTool_Buttons = {
    "変更履歴登録",
    "プロシージャ変更履歴...",
    "プロジェクト構成情報...",
    "プロシージャ参照関係...",
    "検索...",
    "コード制御構造...",
    "変数・定数定義情報...",
    "コード差分...",
    "コントロール情報...",
    "ドキュメント生成...",
    "定型文挿入...",
    "無効コード管理...",
    "プロシージャ定義行に移動",
    "最終変更行に移動",
    "プロシージャ最終行に移動",
    "行ジャンプ...",
    "コード整形",
    "As句の整列",
    "行内コメントの整列",
    "代入文の反転",
    "IDE内ウィンドウの表示切替",
    "コードウィンドウ分割・解除",
    "コード・オブジェクトの表示切替",
    "トレース用命令文の設定・解除...",
    "エラー処理用行ラベルの解除...",
    "エラー処理用行ラベルの設定...",
    "プロジェクト情報取得",
    "オプション設定",
    "ヘルプの表示",
};
const Texts kFrame_Entries = {
    "プロシージャ変更履歴...(&0)",
    "プロジェクト構成情報...(&1)",
    "プロシージャ参照関係...(&2)",
    "検索...(&3)",
    "コード制御構造...(&4)",
    "変数・定数定義情報...(&5)",
    "コード差分...(&6)",
    "コントロール情報...(&7)",
    "ドキュメント生成...(&8)",
    "定型文挿入...(&9)",
    "無効コード管理...(&A)",
    "すべて最小化する(&N)",
    "すべて元のサイズに戻す(&R)",
    "すべて閉じる(&C)",
    "このウィンドウのトピック...(&T)",
    "目次...(&C)",
    "キーワード...(&I)",
};

Texts Captions(host::CommandBarControls& controls) {
  Texts captions;
  for (int i = 1; i <= controls.Count(); ++i) captions.push_back(controls.Item(i)->Caption());
  return captions;
}

CommandBar* Menu(host::CommandBars& bars, const Texts& path) {
  CommandBar* bar = bars.Item(path.front());
  for (std::size_t i = 1; bar != nullptr && i < path.size(); ++i) {
    CommandBarControl* control = bar->Controls().Item(path[i]);
    bar = control == nullptr ? nullptr : control->CommandBar();
  }
  return bar;
}

// All that the bars show, to compare.
void Dump(CommandBar& bar, const std::string& indent, Texts& lines) {
  for (int i = 1; i <= bar.Controls().Count(); ++i) {
    CommandBarControl* control = bar.Controls().Item(i);
    lines.push_back(indent + control->Caption() + (control->BeginGroup() ? " |" : "") +
                    (control->Enabled() ? "" : " -"));
    if (control->Type() == ControlType::Popup) Dump(*control->CommandBar(), indent + "  ", lines);
  }
}
Texts Dump(host::CommandBars& bars) {
  Texts lines;
  for (int i = 1; i <= bars.Count(); ++i) {
    lines.push_back(bars.Item(i)->Name() + (bars.Item(i)->Visible() ? "" : " -"));
    Dump(*bars.Item(i), "  ", lines);
  }
  return lines;
}

struct Desk : test::Fake_Services {
  host::Memory_Editor real;
  test::Fake_Editor editor{real};
  Texts heard;
  Run_Command run = [this](std::string_view handler) { heard.emplace_back(handler); };
};

TEST(Menus, StandInTheirPlacesInOrder) {
  Desk desk;
  Menus menus(desk.editor, desk.services, desk.run);
  ASSERT_TRUE(menus.Add_Menu());
  host::CommandBars& bars = desk.real.Bars();
  Texts popup = kMain_Entries;
  popup.insert(popup.end(), {"機能", "サポート"});
  Texts context = {"切り取り(&T)", "貼り付け(&P)", "定義(&D)", "元の位置へ移動(&N)"};
  context.insert(context.end(), kMain_Entries.begin(), kMain_Entries.end());

  const struct {
    std::string_view what;
    Texts path;
    const Texts& captions;
  } cases[] = {
      {"popup", {"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", " サポートメニュー(&F)"}, popup},
      {"functions", {"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", " サポートメニュー(&F)", "機能"}, kFunction_Entries},
      {"support", {"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", " サポートメニュー(&F)", "サポート"}, kSupport_Entries},
      {"context menu", {"Code Window"}, context},
      {"tool bar", {"Oru/Excel"}, kTool_Buttons},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    CommandBar* bar = Menu(bars, each.path);
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(Captions(bar->Controls()), each.captions);
  }
  EXPECT_TRUE(bars.Item("Oru/Excel")->Visible());

  Texts frame;
  for (const Menu_Entry& entry : Menu_Entries(Place::Frame)) frame.emplace_back(entry.Caption);
  EXPECT_EQ(frame, kFrame_Entries);
}

TEST(Menus, AClickRunsTheHandlerOfItsEntry) {
  const struct {
    Texts path;
    std::string_view handler;
  } cases[] = {
      {{"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", " サポートメニュー(&F)", "検索...(&1)"}, "CTE_CT_3_Click"},
      {{"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", " サポートメニュー(&F)", "コード制御構造...(&3)"}, "CTE_CT_4_Click"},
      {{"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", " サポートメニュー(&F)", "機能", "代入文の反転 (&R)"},
       "CEv_CE_3_Click"},
      {{"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", " サポートメニュー(&F)", "サポート", "障害レポート表示(&E)"},
       "CEv_EL_1_Click"},
      {{"Code Window", "コード制御構造...(&3)"}, "CEd_MN_3_Click"},
      {{"Code Window", "ＳＱＬアシスタント ∞ ..."}, "CEd_SQ_1_Click"},
      {{"Oru/Excel", "変更履歴登録"}, "CTE_HS_1_Click"},
      {{"Oru/Excel", "プロジェクト情報取得"}, "CYH_An_T_Click"},
  };
  Desk desk;
  Menus menus(desk.editor, desk.services, desk.run);
  ASSERT_TRUE(menus.Add_Menu());
  for (const auto& each : cases) {
    SCOPED_TRACE(each.path.back());
    desk.heard.clear();
    const Texts above(each.path.begin(), each.path.end() - 1);
    Menu(desk.real.Bars(), above)->Controls().Item(each.path.back())->Execute();
    EXPECT_EQ(desk.heard, Texts{std::string(each.handler)});
  }
}

TEST(Menus, LeaveTheEditorsBarsAsTheyWere) {
  Desk desk;
  host::CommandBars& bars = desk.real.Bars();
  // An entry of somebody else that reads as one of ours stays.
  bars.Item("Code Window")->Controls().Add(ControlType::Button, 1).Set_Caption("検索...(&1)");
  const Texts before = Dump(bars);
  {
    Menus menus(desk.editor, desk.services, desk.run);
    ASSERT_TRUE(menus.Add_Menu());
    const Texts added = Dump(bars);
    ASSERT_TRUE(menus.Add_Menu());
    EXPECT_EQ(Dump(bars), added);  // not doubled
    menus.Del_Menu();
    EXPECT_EQ(Dump(bars), before);
    menus.Del_Menu();
    ASSERT_TRUE(menus.Add_Menu());
  }
  EXPECT_EQ(Dump(bars), before);
}

TEST(Menus, PassOverWhatTheUserTookAway) {
  Desk desk;
  host::CommandBars& bars = desk.real.Bars();
  const Texts before = Dump(bars);
  Menus menus(desk.editor, desk.services, desk.run);
  ASSERT_TRUE(menus.Add_Menu());
  Menu(bars, {"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)"})->Controls().Item(" サポートメニュー(&F)")->Delete();
  bars.Item("Code Window")->Controls().Item("変更履歴...(&5)")->Delete();
  bars.Item("Oru/Excel")->Delete();
  menus.Del_Menu();
  EXPECT_EQ(Dump(bars), before);
}

TEST(Menus, ACommandMayTakeTheMenusAway) {
  Desk desk;
  host::CommandBars& bars = desk.real.Bars();
  const Texts before = Dump(bars);
  std::unique_ptr<Menus> menus;
  menus = std::make_unique<Menus>(
      desk.editor, desk.services,
      [&, note = std::string("a name too long to stand inside its object")](std::string_view) {
        menus.reset();
        desk.heard.push_back(note);
      });
  ASSERT_TRUE(menus->Add_Menu());
  bars.Item("Oru/Excel")->Controls().Item("検索...")->Execute();
  EXPECT_EQ(desk.heard, Texts{"a name too long to stand inside its object"});
  EXPECT_EQ(Dump(bars), before);
}

TEST(Menus, ABarThatCannotBeSetEndsTheAddIn) {
  const struct {
    std::string_view what;
    void (*damage)(Desk& desk);
    int number;
  } cases[] = {
      {"no menu bar", [](Desk& desk) { desk.editor.bars.hidden = "ﾒﾆｭｰ ﾊﾞｰ"; }, 5},
      {"no tool menu",
       [](Desk& desk) { desk.real.Bars().Item("ﾒﾆｭｰ ﾊﾞｰ")->Controls().Item("ﾂｰﾙ(&T)")->Delete(); },
       5},
      {"no context menu", [](Desk& desk) { desk.editor.bars.hidden = "Code Window"; }, 5},
      {"the tool bar's name is taken", [](Desk& desk) { (void)desk.real.Bars().Add("Oru/Excel"); },
       5},
      {"refused on the way", [](Desk& desk) { desk.editor.bars.fuse.left = 9; }, 50289},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Desk desk;
    each.damage(desk);
    const Texts before = Dump(desk.real.Bars());
    Menus menus(desk.editor, desk.services, desk.run);
    EXPECT_FALSE(menus.Add_Menu());
    EXPECT_EQ(Dump(desk.real.Bars()), before);
    EXPECT_TRUE(desk.services.Unl_Req);
    ASSERT_EQ(desk.ui.messages.size(), 1U);
    EXPECT_EQ(
        desk.ui.messages[0].text,
        "  Oru/Excel のツールバーを設定できません。 (" + std::to_string(each.number) +
            ")\r\n  ＩＤＥの標準メニューまたはツールバーが変更されている可能性があります。\r\n"
            "  このアドインをアンロードします。");
  }
}

TEST(Menus, NothingStaysWhicheverCallIsRefused) {
  int refusals = 0;
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    ASSERT_LT(n, 1000);
    Desk desk;
    const Texts before = Dump(desk.real.Bars());
    desk.editor.bars.fuse.left = n;
    Menus menus(desk.editor, desk.services, desk.run);
    const bool added = menus.Add_Menu();
    EXPECT_EQ(added, !desk.editor.bars.fuse.burnt);
    if (added) break;
    ++refusals;
    EXPECT_EQ(Dump(desk.real.Bars()), before);
    EXPECT_EQ(desk.ui.messages.size(), 1U);
  }
  // Each of the 66 buttons and 3 popups is added, named, and connected or opened.
  EXPECT_GE(refusals, 3 * 69);
}

TEST(CommandTable, NamesEachHandlerOnce) {
  std::set<std::string_view> handlers;
  for (const Command& command : Commands_Table()) {
    EXPECT_TRUE(handlers.insert(command.Handler).second) << command.Handler;
    EXPECT_TRUE(command.Handler.ends_with("_Click")) << command.Handler;
  }
}

}  // namespace
}  // namespace oru::lifecycle
