// SPDX-License-Identifier: MIT
#include "views/frm_list.h"

#include <gtest/gtest.h>

#include <map>

#include "support/project.h"
#include "support/tables_builder.h"

namespace oru::views {
namespace {

using Texts = std::vector<std::string>;

Texts Keys(const List_Table& table) {
  Texts keys;
  for (const List_Row& row : table.Rows) keys.push_back(row.Key);
  return keys;
}

std::string Shown(const List_Row* row) {
  std::string text;
  if (row != nullptr)
    for (const std::string& cell : row->Cells) text += cell + "|";
  return text;
}

class List : public testing::Test {
 protected:
  List() {
    made_.Mdl("Module1|1|共通処理|")
        .Mem("%Declare|||||1|3|1|2|0|0")
        .Mem("Main|1|1||起動|7|12|4|1|3|2")
        .Mem("Total|2|2||合計|24|1234|0|0|0|0")
        .Mem("Value(Get)|3|1|1||30|3|0|0|0|0")
        .Mem("Value(Let)|3|2|2||33|3|0|0|0|0")
        .Mem("Sleep|4|1|1||2|||");
    made_.Mdl("UserForm1|3||")
        .Mem("%Declare|||||1|1|0|0|0|0")
        .Mem("Text10_Change|0|2||変更|3|2|0|0|0|0")
        .Mem("Text1_Change|0|1||変更|5|2|0|0|0|0")
        .Mem("UserForm_Initialize|0|2|||7|2|0|0|0|0")
        .Mem("Form_Load|0|2|||9|2|0|0|0|0")
        .Mem("Show_All|1|1|||11|2|0|0|0|0");
    made_.Mdl("Sheet1|72||一覧").Mem("%Declare|||||1|1|0|0|0|0");
    made_.Ref("Module1.Main", "1-").Ref("Module1.Total", "-1");
    project_.Add("Module1", "Option Explicit\nPublic Sub Main()\nEnd Sub\n");
    project_.Add_Form("UserForm1", "Private Sub Text1_Change()\nEnd Sub\n",
                      {"Text1:TextBox", "Text10:TextBox"});
    project_.Add("Sheet1", "Option Explicit\n", host::kType_Document);
    project_.Srv.Prj_Nam = "受注管理";
  }

  // The code window shows this line of a module.
  void Stand_At(std::string_view module, int line) {
    host::CodePane& pane = project_.Code(module).CodePane();
    pane.Show();
    pane.SetSelection({line, 1, line, 1});
  }

  test::Project project_;
  test::Tables_Builder made_;
  std::map<std::string, std::string, std::less<>> updates_;
  View_Ctx ctx_{project_.Srv, project_.Editor, made_.tables,
                [this](std::string_view key) {
                  const auto at = updates_.find(key);
                  return at == updates_.end() ? std::string() : at->second;
                },
                "240305060708"};
  Frm_List view_;
};

TEST_F(List, ModuleRowCountsKindsAndSumsLines) {
  updates_["Module1"] = "24030506070800003Module1";
  view_.Get_Inform(ctx_);
  EXPECT_EQ(Keys(view_.FLv_Modul), (Texts{"Module1", "Sheet1", "UserForm1"}));
  EXPECT_EQ(Shown(view_.FLv_Modul.Find("Module1")),
            "Module1 |★|共通処理|    |   1|   1|   2|   1|  1255|     5|     3|2024/03/05 06:07|");
  EXPECT_EQ(Shown(view_.FLv_Modul.Find("UserForm1")),
            "UserForm1 |||   4|   1|    |    |    |    11|     |     ||");
  EXPECT_EQ(Shown(view_.FLv_Modul.Find("Sheet1")),
            "Sheet1 |－||    |    |    |    |    |     1|     |     ||");
  EXPECT_EQ(view_.FLv_Modul.Find("Sheet1")->Img, "C_Sheet");
  EXPECT_EQ(view_.FLv_Modul.Columns.size(), 12U);
}

TEST_F(List, ProcedureRowsOfOneModuleAndOfTheProject) {
  updates_["Main.Module1"] = "24030506070700002Module1.Main";
  view_.Get_Inform(ctx_);
  EXPECT_EQ(Shown(view_.FLv_Membr.Find("Main.Module1")),
            "Main |☆|↓|起動|    12|     4|     1|     3|     2|2024/03/05 06:07|");
  EXPECT_FALSE(view_.FLv_Membr.Find("Main.Module1")->Ref_Red);
  EXPECT_EQ(Shown(view_.FLv_Membr.Find("%Declare.Module1")),
            "【宣言部】 ||||     3|     1|     2|     |     ||");
  EXPECT_EQ(Shown(view_.FLv_Membr.Find("Sleep.Module1")),
            "Sleep ||||     |     |     |     |     ||");
  EXPECT_EQ(view_.FLv_Membr.Find("Sleep.Module1")->Img, "C_ApiSP");
  EXPECT_EQ(view_.FLv_Membr.Columns.size(), 10U);

  view_.FBt_List_Click(ctx_);
  EXPECT_EQ(view_.FLv_Membr.Columns.size(), 11U);
  EXPECT_EQ(view_.FLv_Membr.Rows.size(), 13U);
  const List_Row* row = view_.FLv_Membr.Find("Show_All.UserForm1");
  EXPECT_EQ(Shown(row), "Show_All ||－|UserForm1||     2|     |     |     |     ||");
  EXPECT_TRUE(row->Ref_Red);
  EXPECT_EQ(row->Mdl_Img, "C_Form");
  EXPECT_EQ(row->Cel_Key, "001203C_Form");
  EXPECT_EQ(project_.Ui.progress.front(), "リストを設定しています ( 1 / 3 )");
  EXPECT_EQ(project_.Ui.calls.back(), "Close_Progress");
}

TEST_F(List, ModuleFilterOffersAndTakesWhatTheProjectHas) {
  made_.Mdl("Form2|81||").Mdl("ThisWorkbook|71||").Mdl("Odd|77||").Mdl("Doc|100||");
  view_.Get_Inform(ctx_);
  EXPECT_EQ(view_.FCx_Modul.Rows,
            (Texts{"すべてのモジュール", "フォームモジュール", "標準モジュール", "ワークブック",
                   "ワークシート", "ドキュメント"}));
  EXPECT_TRUE(view_.FCx_Modul_Click(ctx_, "フォームモジュール"));
  EXPECT_EQ(Keys(view_.FLv_Modul), (Texts{"Form2", "UserForm1"}));
  EXPECT_EQ(view_.FLv_Modul.Sel, "");  // the current module is not among them
  EXPECT_TRUE(view_.FCx_Modul.Highlighted());
  EXPECT_FALSE(view_.FCx_Modul_Click(ctx_, "クラスモジュール"));
  EXPECT_TRUE(view_.FCx_Modul_Click(ctx_, "すべてのモジュール"));
  EXPECT_EQ(view_.FLv_Modul.Rows.size(), 7U);
  EXPECT_EQ(view_.FLv_Modul.Sel, "Module1");
}

TEST_F(List, ProcedureFilterOfAModule) {
  view_.Get_Inform(ctx_);
  EXPECT_EQ(view_.FCx_Membr.Rows, (Texts{"すべてのプロシージャ", "Subプロシージャ",
                                         "Functionプロシージャ", "Propertyプロシージャ"}));
  EXPECT_TRUE(view_.FCx_Membr_Click(ctx_, "Propertyプロシージャ"));
  EXPECT_EQ(Keys(view_.FLv_Membr), (Texts{"Value(Get).Module1", "Value(Let).Module1"}));

  view_.FLv_Modul_ItemClick(ctx_, "UserForm1");
  EXPECT_EQ(view_.FCx_Membr.Rows,
            (Texts{"すべてのプロシージャ", "イベントプロシージャ", "Subプロシージャ", "Form",
                   "Text1  (TextBox) ", "Text10  (TextBox) ", "UserForm"}));
  struct {
    std::string_view filter;
    std::size_t rows;
    std::string_view first;
  } const cases[] = {
      {"すべてのプロシージャ", 6, "%Declare.UserForm1"},
      {"イベントプロシージャ", 4, "Form_Load.UserForm1"},
      {"Subプロシージャ", 1, "Show_All.UserForm1"},
      {"Text1  (TextBox) ", 1, "Text1_Change.UserForm1"},
      {"Text10  (TextBox) ", 2, "Text10_Change.UserForm1"},  // a shorter name stands in it too
      {"Form", 1, "Form_Load.UserForm1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.filter);
    ASSERT_TRUE(view_.FCx_Membr_Click(ctx_, c.filter));
    ASSERT_EQ(view_.FLv_Membr.Rows.size(), c.rows);
    EXPECT_EQ(view_.FLv_Membr.Rows.front().Key, c.first);
  }
}

TEST_F(List, ProcedureFilterOfTheProjectTakesPublicOnes) {
  view_.ListMode = kBy_Project;
  view_.Get_Inform(ctx_);
  struct {
    std::string_view filter;
    Texts rows;
  } const cases[] = {
      {"Public イベントプロシージャ", {"Text1_Change.UserForm1"}},
      {"Public Subプロシージャ", {"Main.Module1", "Show_All.UserForm1"}},
      {"Public Functionプロシージャ", {}},
      {"Public Propertyプロシージャ", {"Value(Get).Module1"}},
      {"参照関係を確認できないSub､Functionプロシージャ", {"Show_All.UserForm1"}},
  };
  EXPECT_EQ(view_.FCx_Membr.Rows.size(), 6U);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.filter);
    ASSERT_TRUE(view_.FCx_Membr_Click(ctx_, c.filter));
    EXPECT_EQ(Keys(view_.FLv_Membr), c.rows);
  }
}

TEST_F(List, TitlesTellTheOrderAndClicksStepIt) {
  view_.Get_Inform(ctx_);
  const auto title = [this](std::size_t column) { return view_.FLv_Membr.Columns[column].Ttl; };
  EXPECT_EQ(view_.FLv_Modul.Columns[0].Ttl, "モジュール名 ▲");
  view_.FLv_Modul_ColumnClick(0);
  EXPECT_EQ(view_.FLv_Modul.Columns[0].Ttl, "モジュール名 ▼");
  view_.FLv_Modul_ColumnClick(0);
  EXPECT_EQ(view_.FLv_Modul.Columns[0].Ttl, "モジュール名 (変更順)");
  view_.FLv_Modul_ColumnClick(3);
  EXPECT_EQ(view_.ModulSortMode, 2);
  view_.FLv_Modul_ColumnClick(0);
  EXPECT_EQ(view_.ModulSortMode, 0);
  EXPECT_EQ(view_.FLv_Modul.Sel, "Module1");

  view_.FLv_Membr_ColumnClick(kCol_Mdl);  // the comment's title, by module
  EXPECT_EQ(view_.MembrSortMode, 0);
  view_.FLv_Membr_ColumnClick(0);
  EXPECT_EQ(title(0), "プロシージャ名 ▼");
  EXPECT_EQ(view_.FLv_Membr.Rows.front().Key, "Value(Let).Module1");

  EXPECT_EQ(view_.FBt_List_Text(), "すべてのプロシージャ(&L)");
  view_.FBt_List_Click(ctx_);
  EXPECT_EQ(view_.FBt_List_Text(), "モジュール単位(&L)");
  EXPECT_EQ(title(0), "プロシージャ名 ▲");
  EXPECT_EQ(title(kCol_Mdl), "モジュール名");
  for (const int mode : {1, 2, 0}) {
    view_.FLv_Membr_ColumnClick(0);
    EXPECT_EQ(view_.MemAlSortMode, mode);
  }
  view_.FLv_Membr_ColumnClick(kCol_Mdl);
  EXPECT_EQ(title(kCol_Mdl), "モジュール名 ▲");
  EXPECT_EQ(view_.FLv_Membr.Rows[1].Cells[kCol_Mdl], "|");
  for (const int mode : {8, 9, 7}) {
    view_.FLv_Membr_ColumnClick(0);
    EXPECT_EQ(view_.MemAlSortMode, mode);
  }
  view_.FLv_Membr_ColumnClick(kCol_Mdl);
  EXPECT_EQ(view_.MemAlSortMode, 0);
  EXPECT_EQ(title(kCol_Mdl), "モジュール名");
  EXPECT_EQ(view_.FLv_Membr.Rows[1].Cells[kCol_Mdl], "UserForm1");
}

TEST_F(List, CodeWindowSelectsItsRow) {
  Stand_At("UserForm1", 1);
  view_.Get_Inform(ctx_);
  EXPECT_EQ(view_.FLv_Modul.Sel, "UserForm1");
  EXPECT_EQ(view_.FLv_Membr.Sel, "Text1_Change.UserForm1");
  Stand_At("Sheet1", 1);
  view_.Get_Inform(ctx_);
  EXPECT_EQ(view_.FLv_Membr.Sel, "%Declare.Sheet1");

  // By project, a procedure that the tables do not know leads to its module.
  project_.Code("Sheet1").InsertLines(2, "Sub Fresh()\r\nEnd Sub");
  Stand_At("Sheet1", 2);
  view_.Get_Inform(ctx_);
  EXPECT_EQ(view_.FLv_Modul.Sel, "Sheet1");
  EXPECT_EQ(view_.FLv_Membr.Sel, "");
  view_.FBt_List_Click(ctx_);
  EXPECT_EQ(view_.FLv_Membr.Sel, "%Declare.Sheet1");
  EXPECT_TRUE(view_.FCx_Membr_Click(ctx_, "Public Functionプロシージャ"));
  view_.Get_Inform(ctx_);
  EXPECT_EQ(view_.FLv_Membr.Sel, "");
}

TEST_F(List, CopyHasAHeadingForEachList) {
  made_.Mdl("Empty|1||");
  view_.Get_Inform(ctx_);
  const auto heading = [](const std::string& text) { return text.substr(0, text.find("\r\n")); };
  EXPECT_EQ(heading(view_.FMn_CCopy_Modul(ctx_)), "（受注管理）内のモジュール情報");
  EXPECT_EQ(heading(view_.FMn_CCopy_Membr(ctx_)), "（Module1）内のプロシージャ情報");
  view_.FLv_Modul_ItemClick(ctx_, "Empty");
  project_.Srv.Opt.Set_Number("LstSep", 1);
  EXPECT_EQ(view_.FMn_CCopy_Membr(ctx_),
            "（Empty）内のプロシージャ情報\r\n"
            "プロシージャ名,Ｓ,参照,コメント,定義行,注釈行,空白行,条件数,ネスト,更新日時\r\n");
  view_.FBt_List_Click(ctx_);
  EXPECT_EQ(heading(view_.FMn_CCopy_Membr(ctx_)), "（受注管理）プロシージャ情報");
}

TEST_F(List, StateIsKeptWithTheOptions) {
  service::Settings settings;
  view_.ListMode = kBy_Project;
  view_.ModulSortMode = 2;
  view_.MembrSortMode = 1;
  view_.MemAlSortMode = 9;
  view_.Sav_State(settings);
  Frm_List other;
  other.Lod_State(settings);
  EXPECT_EQ(other.ListMode, kBy_Project);
  EXPECT_EQ(other.ModulSortMode, 2);
  EXPECT_EQ(other.MembrSortMode, 1);
  EXPECT_EQ(other.MemAlSortMode, 9);
  // Modes that only the list of all procedures has, or none.
  for (const char* name : {"ListMode", "ModulSortMode", "MembrSortMode"})
    settings.Set_Number(name, 7);
  settings.Set_Number("MemAlSortMode", 5);
  other.Lod_State(settings);
  EXPECT_EQ(other.ListMode, kBy_Module);
  EXPECT_EQ(other.ModulSortMode + other.MembrSortMode + other.MemAlSortMode, 0);
}

TEST_F(List, UnknownMemberKindIsAFaultOfTheView) {
  made_.Mdl("Bad|1||").Mem("What|5|1|||1|1|0|0|0|0");
  EXPECT_FALSE(
      service::Run_Evt(project_.Srv, "Frm_List", "Form_Load", [this] { view_.Get_Inform(ctx_); }));
  EXPECT_EQ(project_.Ui.messages.size(), 1U);
}

}  // namespace
}  // namespace oru::views
