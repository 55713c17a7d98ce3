// SPDX-License-Identifier: MIT
#include "views/list_table.h"

#include <gtest/gtest.h>

namespace oru::views {
namespace {

// "Load@M1" unchanged, "Load@M1!24…" changed.
List_Row Row(std::string_view text) {
  const std::size_t at = text.find('@');
  const std::size_t mark = text.find('!');
  List_Row row;
  row.Nam_Key = text.substr(0, at);
  row.Mdl_Tag = text.substr(at + 1, mark - at - 1);
  row.Key = row.Nam_Key + "." + row.Mdl_Tag;
  row.Chg = mark != std::string_view::npos;
  row.Chg_Key = row.Chg ? std::string(text.substr(mark + 1)) : row.Key + " ";
  row.Cells = {row.Nam_Key, "", "", row.Mdl_Tag, "a comment"};
  return row;
}

std::vector<List_Row> Rows(std::initializer_list<std::string_view> texts) {
  std::vector<List_Row> rows;
  for (const std::string_view text : texts) {
    rows.push_back(Row(text));
    rows.back().Seq = rows.size() - 1;
    rows.back().Cel_Key = Cell_Key(rows.size(), kCol_Mdl, "C_Module");
    rows.back().Mdl_Img = "C_Module";
  }
  return rows;
}

using Texts = std::vector<std::string>;

Texts Keys(const std::vector<List_Row>& rows) {
  Texts keys;
  for (const List_Row& row : rows) keys.push_back(row.Key);
  return keys;
}

TEST(ListTable, OrdersOfRows) {
  using enum List_Order;
  const auto names = {"save@M2", "Load@M2", "計算@M1", "Load@M1", "LOAD@M1", "%Declare@M1"};
  const auto changes = {"b@M1",
                        "A@M2",
                        "Old@M1!23010100000000009",
                        "New@M2!24010100000000002",
                        "a@M1",
                        "Line@M1!24010100000000010"};
  struct {
    std::string_view what;
    std::initializer_list<const char*> rows;
    List_Order order;
    bool grouped;
    Texts out;
  } const cases[] = {
      {"names: letter case last, equal ones as filled",
       names,
       Name_Up,
       false,
       {"%Declare.M1", "LOAD.M1", "Load.M2", "Load.M1", "save.M2", "計算.M1"}},
      {"names down: equal ones as filled too",
       names,
       Name_Down,
       false,
       {"計算.M1", "save.M2", "Load.M2", "Load.M1", "LOAD.M1", "%Declare.M1"}},
      {"modules first, up also when names go down",
       names,
       Name_Down,
       true,
       {"計算.M1", "Load.M1", "LOAD.M1", "%Declare.M1", "save.M2", "Load.M2"}},
      {"newest first, then by line; the others by name",
       changes,
       Change,
       false,
       {"Line.M1", "New.M2", "Old.M1", "a.M1", "A.M2", "b.M1"}},
      {"changes inside each module",
       changes,
       Change,
       true,
       {"Line.M1", "Old.M1", "a.M1", "b.M1", "New.M2", "A.M2"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<List_Row> rows;
    for (const char* text : c.rows) {
      rows.push_back(Row(text));
      rows.back().Seq = rows.size() - 1;
    }
    Sort_Rows(rows, c.order, c.grouped);
    EXPECT_EQ(Keys(rows), c.out);
    // The order that the rows had before does not show.
    Sort_Rows(rows, Name_Down, false);
    Sort_Rows(rows, c.order, c.grouped);
    EXPECT_EQ(Keys(rows), c.out);
  }
}

TEST(ListTable, ThinnedModulesComeBackWithTheirIcons) {
  std::vector<List_Row> rows = Rows({"a@M1", "b@M1", "c@M2", "d@M1", "e@M1"});
  const auto shown = [&rows] {
    Texts cells;
    for (const List_Row& row : rows) cells.push_back(row.Cells[kCol_Mdl] + " " + row.Mdl_Img);
    return cells;
  };
  EXPECT_EQ(rows[1].Cel_Key, "000203C_Module");
  Thin_Modules(rows, true);
  EXPECT_EQ(shown(),
            (Texts{"M1 C_Module", "| C_NoDef", "M2 C_Module", "M1 C_Module", "| C_NoDef"}));
  Thin_Modules(rows, true);
  EXPECT_EQ(shown()[1], "| C_NoDef");
  rows[1].Cel_Key = Cell_Key(12345, kCol_Mdl, "C_Class");  // seven digits
  Thin_Modules(rows, false);
  EXPECT_EQ(shown(),
            (Texts{"M1 C_Module", "M1 C_Class", "M2 C_Module", "M1 C_Module", "M1 C_Module"}));
}

TEST(ListTable, CopyNamesThinnedModulesAndKeepsCellsApart) {
  List_Table table;
  table.Columns = Make_Columns(std::array{Column_Def{"名前", "n"}, Column_Def{"Ｓ", "s"},
                                          Column_Def{"参照", "r"}, Column_Def{"モジュール名", "m"},
                                          Column_Def{"コメント", "c"}});
  table.Columns[0].Ttl = "名前 ▲";
  table.Rows = Rows({"a@M1", "b@M1"});
  table.Rows[0].Cells[0] = "a ";
  table.Rows[0].Cells[4] = "5\" x, y";
  Thin_Modules(table.Rows, true);
  EXPECT_EQ(Cpy_Lst_Inf("（P）", table, '\t'),
            "（P）\r\n名前\tＳ\t参照\tモジュール名\tコメント\r\n"
            "a\t\t\tM1\t5\" x, y\r\nb\t\t\tM1\ta comment\r\n");
  EXPECT_EQ(Cpy_Lst_Inf("（P）", table, ','),
            "（P）\r\n名前,Ｓ,参照,モジュール名,コメント\r\n"
            "a,,,M1,\"5\"\" x, y\"\r\nb,,,M1,a comment\r\n");
}

TEST(ListTable, FilterKeepsItsChoiceWhileItExists) {
  Filter_Rows rows;
  rows.Add("10", "last");
  rows.Add("00", "all");
  rows.Add("02", "b");
  rows.Add("02", "A");
  rows.Add("02", "B");
  Filter_Box box;
  rows.Fill(box);
  EXPECT_EQ(box.Rows, (Texts{"all", "A", "b", "last"}));
  EXPECT_EQ(box.Text, "all");
  EXPECT_FALSE(box.Highlighted());
  EXPECT_FALSE(box.Choose("nothing"));
  EXPECT_TRUE(box.Choose("b"));
  EXPECT_TRUE(box.Highlighted());
  rows.Fill(box);
  EXPECT_EQ(box.Text, "b");
  Filter_Rows fewer;
  fewer.Add("00", "all");
  fewer.Fill(box);
  EXPECT_EQ(box.Text, "all");
}

}  // namespace
}  // namespace oru::views
