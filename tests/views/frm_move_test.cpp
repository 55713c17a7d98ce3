// SPDX-License-Identifier: MIT
#include "views/frm_move.h"

#include <gtest/gtest.h>

#include "analyser/change_history.h"
#include "support/project.h"

namespace oru::views {
namespace {

// A history of ten procedures "P1" to "P10" in turn in two modules, P1 recorded last.
struct Arranged : test::Project {
  Arranged() {
    std::string one, two;
    for (int i = 1; i <= 10; ++i) {
      std::string& code = i % 2 == 1 ? one : two;
      code += "Sub P" + std::to_string(i) + "()\n    x = 1\nEnd Sub\n";
    }
    Add("modOne", "Declare Sub Api Lib \"x\" ()\n" + one);
    Add("modTwo", two);
    (void)Analyse();
    Sta.Anl_Chg = false;
    for (int i = 1; i <= 10; ++i) {
      const std::string module = i % 2 == 1 ? "modOne" : "modTwo", member = "P" + std::to_string(i);
      std::string key = module;
      key.append(".").append(member);
      Lst.His.Add(key, {"240305060708", 2, module, member});
    }
    Lst.Mem_Upd.Add("modOne.P1", "24030506070800002modOne.P1");
    Lst.Mem_Upd.Add("modTwo.P2", "23010203040500003modTwo.P2");
    Sta.Lod_Dat = "240101000000";
  }
  Move_Ctx View() {
    return {{Srv, Editor, Tbl,
             [this](std::string_view key) { return analyser::Prc_Upd_Inf(Lst, key); }, Sta.Lod_Dat},
            Lst,
            Sta.Anl_Chg};
  }
  [[nodiscard]] std::string Left() const {
    std::string text;
    for (const auto& item : Lst.His) text += item.value.Mem.substr(1) + " ";
    return text;
  }
};

// The rows' names in order, thinned modules behind "/".
std::string Rows(const Frm_Move& view) {
  std::string text;
  for (const List_Row& row : view.FLv_Move.Rows) text += row.Cells[0] + "/" + row.Cells[3] + " ";
  return text;
}

TEST(Frm_Move, ListsTheHistoryNewestFirst) {
  Arranged p;
  Frm_Move view;
  view.Set_MovLs(p.View());
  ASSERT_EQ(view.FLv_Move.Rows.size(), 10U);
  EXPECT_EQ(view.FLv_Move.Columns[0].Ttl, "プロシージャ名 (登録順)");
  const List_Row& first = view.FLv_Move.Rows[0];
  EXPECT_EQ(first.Cells,
            (std::vector<std::string>{"P1 ", "★", "", "modOne", "2024/03/05 06:07:08"}));
  EXPECT_EQ(first.Chg_Key, "00001");
  EXPECT_EQ(first.Img, "C_SubP");
  // An edit before the analysis was loaded has its date and no mark.
  EXPECT_EQ(view.FLv_Move.Rows[1].Cells[1], "");
  EXPECT_EQ(view.FLv_Move.Rows[1].Cells[4], "2023/01/02 03:04:05");
  EXPECT_EQ(view.FLv_Move.Rows[2].Cells[4], "");

  view.FLv_Move_ColumnClick(0);
  EXPECT_EQ(view.FLv_Move.Columns[0].Ttl, "プロシージャ名 ▲");
  EXPECT_EQ(view.FLv_Move.Rows[1].Cells[0], "P10 ");
  view.FLv_Move_ColumnClick(3);
  EXPECT_EQ(view.FLv_Move.Columns[3].Ttl, "モジュール名 ▲");
  EXPECT_EQ(Rows(view), "P1 /modOne P3 /| P5 /| P7 /| P9 /| P10 /modTwo P2 /| P4 /| P6 /| P8 /| ");
  EXPECT_EQ(view.FLv_Move.Rows[1].Mdl_Img, "C_NoDef");
  view.FLv_Move_ColumnClick(3);
  EXPECT_EQ(Rows(view).substr(0, 24), "P1 /modOne P2 /modTwo P3");
}

TEST(Frm_Move, ListsTheProjectsProceduresToo) {
  Arranged p;
  Frm_Move view;
  view.Kind = Move_Kind::Project;
  view.FTx_SelCh = "modone/";
  view.Set_MovLs(p.View());
  EXPECT_EQ(view.FLv_Move.Columns[0].Ttl, "対象プロシージャ名");
  EXPECT_EQ(Rows(view),
            "【宣言部】 /modOne P1 /modOne P3 /modOne P5 /modOne P7 /modOne P9 /modOne ");
  view.FCk_ScApi = true;
  view.Set_MovLs(p.View());
  EXPECT_NE(Rows(view).find("Api /modOne "), std::string::npos);
  view.FBt_ClrCh_Click(p.View());
  EXPECT_EQ(view.FTx_SelCh, "");
  EXPECT_EQ(view.FLv_Move.Rows.size(), 13U);
}

TEST(Frm_Move, NameFilterKnowsItsShorthand) {
  const struct {
    std::string_view filter;
    bool fits;
  } kCases[]{{"", true},
             {"zaiko", true},
             {"Get_Zaiko", true},
             {"juchu", false},
             {"modstock/", true},
             {"modstock/zaiko", true},
             {"other/zaiko", false},
             {"zaiko.modstock", true},
             {"zaiko.other", false},
             {"/get", true},
             {"get zaiko", true},
             {"get:zaiko", true},
             {"get juchu", false},
             {"get*", true},
             {"*zaiko", true},
             {"zaiko*", false},
             {"g*z*o", true},
             {"get_*x*", false},
             {"mod*/*zaiko", true},
             {"*.mod*k", true},
             {"*", true}};
  for (const auto& c : kCases)
    EXPECT_EQ(Chk_Nam_Flt(c.filter, "modStock", "Get_Zaiko"), c.fits) << c.filter;
}

TEST(Frm_Move, ArrangingAsksAndRemoves) {
  const struct {
    std::string_view what;
    int index;
    std::vector<int> checked;
    std::string_view question, left;
  } kCases[]{
      {"the checked rows", 1, {2, 5}, "チェックした行の履歴 ２ 件", "1 3 4 6 7 8 9 10 "},
      {"from the first checked one down", 2, {3}, "チェックした行から下の履歴 ８ 件", "1 2 "},
      {"down to the last checked one",
       3,
       {2, 5},
       "チェックした行から上の履歴 ５ 件",
       "6 7 8 9 10 "},
      {"the unchecked rows", 4, {1, 10}, "未チェックの行の履歴 ８ 件", "1 10 "},
      {"all of them", 2, {1}, "チェックした行から下の履歴 １０ 件", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Arranged p;
    Frm_Move view;
    view.Set_MovLs(p.View());
    for (const int row : c.checked)
      view.FLv_Move_ItemCheck(view.FLv_Move.Rows[static_cast<std::size_t>(row) - 1].Key, true);
    EXPECT_TRUE(view.FMn_AlgHs_Enabled);
    p.Ui.answers = {service::Answer::No, service::Answer::Yes};
    EXPECT_FALSE(view.FMn_AlgHs_Click(p.View(), c.index));
    EXPECT_EQ(p.Lst.His.Count(), 10U);
    EXPECT_FALSE(p.Sta.Anl_Chg);
    view.Lst_Pos = 3;
    EXPECT_TRUE(view.FMn_AlgHs_Click(p.View(), c.index));
    EXPECT_EQ(p.Ui.messages[0].text,
              "  " + std::string(c.question) + "を削除します。\r\n  実行しますか。");
    EXPECT_EQ(p.Ui.messages[0].buttons, service::Buttons::Yes_No);
    EXPECT_EQ(p.Left(), c.left);
    EXPECT_EQ(view.FLv_Move.Rows.size(), p.Lst.His.Count());
    EXPECT_TRUE(p.Sta.Anl_Chg);
    EXPECT_EQ(view.Lst_Pos, 0U);
  }
}

TEST(Frm_Move, ArrangingNeedsACheckedRowOfTheHistory) {
  Arranged p;
  Frm_Move view;
  view.Set_MovLs(p.View());
  for (int index = 1; index <= 4; ++index) EXPECT_FALSE(view.FMn_AlgHs_Click(p.View(), index));
  view.FLv_Move_ItemCheck("P1.modOne", true);
  EXPECT_FALSE(view.FMn_AlgHs_Click(p.View(), 5));
  view.FMn_ClrCh_Click();
  EXPECT_FALSE(view.FMn_AlgHs_Enabled);
  EXPECT_FALSE(view.FMn_AlgHs_Click(p.View(), 1));
  view.Kind = Move_Kind::Project;
  view.Set_MovLs(p.View());
  view.FLv_Move_ItemCheck("P1.modOne", true);
  EXPECT_FALSE(view.FMn_AlgHs_Click(p.View(), 1));
  EXPECT_TRUE(p.Ui.messages.empty());
  EXPECT_EQ(p.Lst.His.Count(), 10U);

  view.Kind = Move_Kind::History;
  view.Set_MovLs(p.View());
  view.FLv_Move_ItemClick("P4.modTwo");
  view.FMn_LstDl_Click(p.View());
  EXPECT_EQ(p.Left(), "1 2 3 5 6 7 8 9 10 ");
  EXPECT_EQ(view.FLv_Move.Rows.size(), 9U);
}

TEST(Frm_Move, MovesToTheRecordedPlaceWhileItIsThere) {
  Arranged p;
  Frm_Move view;
  view.Set_MovLs(p.View());
  EXPECT_FALSE(view.FMn_MovHs_Click(p.View()));  // nothing is selected
  view.FLv_Move_ItemClick("P3.modOne");
  EXPECT_TRUE(view.FMn_MovHs_Click(p.View()));
  EXPECT_EQ(p.Code("modOne").CodePane().GetSelection().start_line, 6);

  p.Code("modOne").DeleteLines(5, 3);
  EXPECT_FALSE(view.FMn_MovHs_Click(p.View()));
  ASSERT_EQ(p.Ui.messages.size(), 1U);
  EXPECT_EQ(
      p.Ui.messages[0].text,
      "  指定されたモジュール(modOne）内の\r\n  プロシージャ(P3）を参照できません。\r\n  「表示更新（&U)」を実行してください。\r\n  現象が解消されないときは、\r\n  「プロジェクト情報取得処理」を実行してください。");
  // Its row stays, so that it can be removed.
  (void)p.Analyse_After_Edit();
  view.Set_MovLs(p.View());
  EXPECT_NE(view.FLv_Move.Find("P3.modOne"), nullptr);
}

}  // namespace
}  // namespace oru::views
