// SPDX-License-Identifier: MIT
// The editor's own commands: which entries a key presses, and what a damaged menu leads to.
#include "host/host_commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/memory_editor.h"
#include "support/fakes.h"

namespace oru::host {
namespace {

using Paths = std::vector<std::string>;

const std::string kClear = "ﾒﾆｭｰ ﾊﾞｰ > 編集(&E) > ﾌﾞｯｸﾏｰｸ(&B) > すべてのﾌﾞｯｸﾏｰｸの解除(&C)";
const std::string kToggle = "ﾒﾆｭｰ ﾊﾞｰ > 編集(&E) > ﾌﾞｯｸﾏｰｸ(&B) > ﾌﾞｯｸﾏｰｸの設定/解除(&T)";

struct Desk : test::Fake_Services {
  Memory_Editor editor;

  /// The controls of a menu, from the bar down.
  CommandBarControls& Menu(const std::vector<std::string>& path) {
    CommandBar* bar = editor.Bars().Item(path.front());
    for (std::size_t i = 1; i < path.size(); ++i) bar = bar->Controls().Item(path[i])->CommandBar();
    return bar->Controls();
  }
  [[nodiscard]] int Events() const {
    return static_cast<int>(std::ranges::count(ui.calls, "Do_Events"));
  }
  bool Run(std::string_view key) { return Exc_Hst_Cmd(editor, services, key); }
};

TEST(HostCommands, EachKeyPressesItsEntries) {
  const struct {
    std::string_view key;
    Paths pressed;
    int events;
  } cases[] = {
      {"Define", {"Code Window > 定義(&D)"}, 0},
      {"Resume", {"Code Window > 元の位置へ移動(&N)"}, 0},
      {"Code", {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ｺｰﾄﾞ(&C)"}, 0},
      {"Obj", {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ｵﾌﾞｼﾞｪｸﾄ(&B)"}, 0},
      {"Proj", {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗｰ(&P)"}, 0},
      {"Prop", {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ﾌﾟﾛﾊﾟﾃｨ ｳｨﾝﾄﾞｳ(&W)"}, 0},
      {"FLay", {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ﾌｫｰﾑ ﾚｲｱｳﾄ ｳｨﾝﾄﾞｳ(&F)"}, 0},
      {"Tool", {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ﾂｰﾙﾎﾞｯｸｽ(&X)"}, 0},
      {"Imd", {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ｲﾐﾃﾞｨｴｲﾄ ｳｨﾝﾄﾞｳ(&I)"}, 0},
      {"WSpl", {"ﾒﾆｭｰ ﾊﾞｰ > ｳｨﾝﾄﾞｳ(&W) > 分割(&P)"}, 0},
      {"WAlg", {"ﾒﾆｭｰ ﾊﾞｰ > ｳｨﾝﾄﾞｳ(&W) > 重ねて表示(&C)"}, 0},
      {"Book", {kClear, kToggle}, 1},
      {"BookSet", {kClear, kToggle}, 1},
      {"BookClr", {kClear}, 1},
      {"BookAdd", {kToggle}, 1},
  };
  ASSERT_EQ(std::size(cases), Hst_Commands().size());
  for (const auto& each : cases) {
    SCOPED_TRACE(each.key);
    Desk desk;
    EXPECT_TRUE(desk.Run(each.key));
    EXPECT_EQ(desk.editor.Bars().Executed(), each.pressed);
    EXPECT_EQ(desk.Events(), each.events);
    EXPECT_TRUE(desk.ui.messages.empty());
    EXPECT_FALSE(desk.services.Unl_Req);
  }
}

TEST(HostCommands, WithoutTheOptionOnlyBookIsSilent) {
  Desk desk;
  desk.services.Opt.Set_Number("FCk_BokMk", 0);
  EXPECT_TRUE(desk.Run("Book"));
  EXPECT_TRUE(desk.editor.Bars().Executed().empty());
  EXPECT_TRUE(desk.Run("BookSet"));
  EXPECT_EQ(desk.editor.Bars().Executed(), (Paths{kClear, kToggle}));
}

TEST(HostCommands, OtherEditionsSpellTheExplorerOtherwise) {
  Desk desk;
  desk.Menu({"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)"})
      .Item("ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗｰ(&P)")
      ->Set_Caption("ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗ(&P)");
  EXPECT_TRUE(desk.Run("Proj"));
  EXPECT_EQ(desk.editor.Bars().Executed(), (Paths{"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗ(&P)"}));
}

TEST(HostCommands, ADamagedMenuEndsTheAddIn) {
  const struct {
    std::string_view what, key;
    void (*damage)(Desk& desk);
    std::string_view caption;
    Paths pressed;
  } cases[] = {
      {"entry of the context menu gone",
       "Define",
       [](Desk& desk) { desk.Menu({"Code Window"}).Item("定義(&D)")->Delete(); },
       "定義(&D)",
       {}},
      {"menu gone",
       "WSpl",
       [](Desk& desk) { desk.Menu({"ﾒﾆｭｰ ﾊﾞｰ"}).Item("ｳｨﾝﾄﾞｳ(&W)")->Delete(); },
       "分割(&P)",
       {}},
      {"menu replaced by a button",
       "Imd",
       [](Desk& desk) {
         desk.Menu({"ﾒﾆｭｰ ﾊﾞｰ"}).Item("表示(&V)")->Delete();
         desk.Menu({"ﾒﾆｭｰ ﾊﾞｰ"}).Add(ControlType::Button).Set_Caption("表示(&V)");
       },
       "ｲﾐﾃﾞｨｴｲﾄ ｳｨﾝﾄﾞｳ(&I)",
       {}},
      {"neither spelling",
       "Proj",
       [](Desk& desk) {
         desk.Menu({"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)"}).Item("ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗｰ(&P)")->Delete();
       },
       "ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗｰ(&P)",
       {}},
      {"entry refuses",
       "Code",
       [](Desk& desk) {
         desk.Menu({"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)"}).Item("ｺｰﾄﾞ(&C)")->Set_Enabled(false);
       },
       "ｺｰﾄﾞ(&C)",
       {}},
      {"second of two entries gone",
       "Book",
       [](Desk& desk) {
         desk.Menu({"ﾒﾆｭｰ ﾊﾞｰ", "編集(&E)", "ﾌﾞｯｸﾏｰｸ(&B)"})
             .Item("ﾌﾞｯｸﾏｰｸの設定/解除(&T)")
             ->Delete();
       },
       "ﾌﾞｯｸﾏｰｸの設定/解除(&T)",
       {kClear}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Desk desk;
    each.damage(desk);
    EXPECT_FALSE(desk.Run(each.key));
    EXPECT_EQ(desk.editor.Bars().Executed(), each.pressed);
    EXPECT_EQ(desk.Events(), 0);
    EXPECT_TRUE(desk.services.Unl_Req);
    ASSERT_EQ(desk.ui.messages.size(), 1U);
    EXPECT_EQ(desk.ui.messages[0].text,
              "  ＩＤＥ標準コマンドを実行できません。(" + std::string(each.caption) +
                  ")\r\n  このアドインをアンロードします。\r\n"
                  "  詳細は補足説明書の「ＩＤＥコマンドメニューの破損･･･」をご参照ください。\r\n"
                  "    Command=(" +
                  std::string(each.key) + ")");
  }
}

TEST(HostCommands, OnlyRefusalsOfTheHostCountAsSuch) {
  Desk desk;
  EXPECT_THROW((void)desk.Run("define"), std::logic_error);
  const auto source =
      desk.editor.Bars().CommandBarEvents(*desk.Menu({"Code Window"}).Item("定義(&D)"));
  source->Set_Click([] { throw std::runtime_error("of a handler"); });
  EXPECT_THROW((void)desk.Run("Define"), std::runtime_error);
  EXPECT_FALSE(desk.services.Unl_Req);
}

}  // namespace
}  // namespace oru::host
