// SPDX-License-Identifier: MIT
#include "analyser/change_history.h"

#include <gtest/gtest.h>

#include "host/places.h"
#include "support/project.h"

namespace oru::analyser {
namespace {

// A project with the caret in its editor.
struct Edited : test::Project {
  Edited() {
    Add("modA",
        "Dim x\n\n' first\nSub Aa()\n    x = 1\n    x = 2\nEnd Sub\nSub Bb()\n    x = 3\nEnd Sub\n\n' end");
    Add("clsB", "Property Get No()\nEnd Property\nProperty Let No(v)\n    v = 1\nEnd Property",
        host::kType_Class);
    (void)Analyse();
    Sta.Anl_Chg = false;
  }
  void Caret(std::string_view module, int line) {
    Code(module).CodePane().Show();
    Code(module).CodePane().SetSelection({line, 1, line, 1});
  }
  bool Edit(std::string_view module, int line) {
    Caret(module, line);
    Anl_Ctx ctx = Ctx();
    return Upd_Edt_Inf(ctx);
  }
  void Register(std::string_view module, int line) {
    Caret(module, line);
    Anl_Ctx ctx = Ctx();
    Set_Sif_Inf(ctx);
  }
  // The history as "Module.Member line", newest first.
  [[nodiscard]] std::string History() const {
    std::string text;
    for (const auto& item : Lst.His)
      text += item.value.Mdl + "." + item.value.Mem + " " + std::to_string(item.value.Lin) + "; ";
    return text;
  }
};

TEST(Change_History, EditsAreRecordedWhereTheyAreMade) {
  Edited p;
  EXPECT_TRUE(p.Edit("modA", 5));  // "Aa" begins behind the declarations, at line 2
  EXPECT_TRUE(p.Sta.Edt_Chg && p.Sta.Anl_Chg);
  EXPECT_TRUE(p.Tbl.Anl_Mdl.Has("modA"));
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "modA"), "24030506070800005modA");
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "Aa.modA"), "24030506070800004modA.Aa");
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "Bb.modA"), "");

  p.Clk.time.minute = 30;
  p.Sta.Anl_Chg = p.Sta.Edt_Chg = false;
  EXPECT_FALSE(p.Edit("modA", 5));  // the same line once more
  EXPECT_FALSE(p.Sta.Anl_Chg);
  EXPECT_TRUE(p.Sta.Edt_Chg);  // but its text has to be looked at
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "Aa.modA"), "24030506070800004modA.Aa");

  EXPECT_TRUE(p.Edit("modA", 9));
  EXPECT_TRUE(p.Edit("modA", 6));
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "Aa.modA"), "24030506300800005modA.Aa");
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "modA"), "24030506070800005modA");  // of its first edit in a row
  EXPECT_EQ(p.History(), "modA.Aa 5; modA.Bb 2; ");

  EXPECT_TRUE(p.Edit("clsB", 4));
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "No(Let).clsB"), "24030506300800002clsB.No(Let)");
  EXPECT_EQ(p.History(), "clsB.No(Let) 2; modA.Aa 5; modA.Bb 2; ");

  // In the declaration section only the update string is kept.
  EXPECT_TRUE(p.Edit("modA", 1));
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "%Declare.modA"), "24030506300800001modA.%Declare");
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "modA"), "24030506300800001modA");
  EXPECT_EQ(p.History(), "clsB.No(Let) 2; modA.Aa 5; modA.Bb 2; ");
}

TEST(Change_History, RegisteringMovesAMemberToTheHead) {
  Edited p;
  p.Register("modA", 1);  // in no procedure
  EXPECT_EQ(p.History(), "");
  EXPECT_FALSE(p.Sta.Anl_Chg);
  p.Register("modA", 4);
  p.Register("modA", 8);
  p.Register("modA", 5);
  EXPECT_EQ(p.History(), "modA.Aa 4; modA.Bb 1; ");
  p.Sta.Anl_Chg = false;
  p.Register("modA", 5);
  EXPECT_FALSE(p.Sta.Anl_Chg);
  EXPECT_EQ(Prc_Upd_Inf(p.Lst, "Aa.modA"), "");  // nothing was edited
}

TEST(Change_History, NoCodeWindowRecordsNothing) {
  test::Project p;
  p.Add("modA", "Sub Aa()\nEnd Sub");
  Anl_Ctx ctx = p.Ctx();
  EXPECT_FALSE(Upd_Edt_Inf(ctx));
  EXPECT_TRUE(p.Sta.Edt_Chg);
  EXPECT_EQ(p.Lst.Mdl_Upd.Count(), 0U);
}

TEST(Change_History, OutsideEditsAreFoundAtTheFirstLineThatDiffers) {
  constexpr std::string_view kOld =
      "Option Explicit\n\nSub Aa()\n    x = \"受注\"\nEnd Sub\n\nSub Bb()\n    y = 1\nEnd Sub\n\n";
  const struct {
    std::string_view what, now;
    int line, in_member;
    std::string_view member;
  } kCases[]{
      {"a statement",
       "Option Explicit\n\nSub Aa()\n    x = \"受注\"\nEnd Sub\n\nSub Bb()\n    y = 2\nEnd Sub\n\n",
       8, 3, "Bb"},
      {"inside a character of three bytes",
       "Option Explicit\n\nSub Aa()\n    x = \"受沈\"\nEnd Sub\n\nSub Bb()\n    y = 1\nEnd Sub\n\n",
       4, 3, "Aa"},
      {"a line put in",
       "Option Explicit\n\nSub Aa()\n    Beep\n    x = \"受注\"\nEnd Sub\n\nSub Bb()\n    y = 1\nEnd Sub\n",
       4, 3, "Aa"},
      {"a line taken out", "Option Explicit\n\nSub Aa()\nEnd Sub\n\nSub Bb()\n    y = 1\nEnd Sub\n",
       4, 3, "Aa"},
      {"a procedure added at the end",
       "Option Explicit\n\nSub Aa()\n    x = \"受注\"\nEnd Sub\n\nSub Bb()\n    y = 1\nEnd Sub\nSub Cc()\nEnd Sub",
       10, 1, "Cc"},
      {"the last procedure gone", "Option Explicit\n\nSub Aa()\n    x = \"受注\"\nEnd Sub\n\n\n", 5,
       4, "Aa"},
      {"the declaration section",
       "Option Base 1\n\nSub Aa()\n    x = \"受注\"\nEnd Sub\n\nSub Bb()\n    y = 1\nEnd Sub\n", 1,
       1, "%Declare"},
      {"only a blank line more",
       "Option Explicit\n\nSub Aa()\n    x = \"受注\"\nEnd Sub\n\nSub Bb()\n\n    y = 1\nEnd Sub\n\n",
       6, 1, "Bb"},
      {"nothing left", "", 1, 0, ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    test::Project p;
    p.Add("A", kOld);
    (void)p.Analyse();
    p.Sta.Anl_Chg = false;
    test::Project now;
    now.Add("A", c.now);
    Anl_Ctx ctx = p.Ctx();
    Rec_Out_Edt(ctx, "A", p.Tbl.Mdl_Tbl.Get("A")->get(), now.Code("A"), "231224102030");
    const auto digits = [](int line) { return "2312241020300000" + std::to_string(line % 10); };
    const std::string module_line = c.line < 10 ? digits(c.line) : "23122410203000010";
    EXPECT_EQ(Prc_Upd_Inf(p.Lst, "A"), module_line + "A");
    EXPECT_TRUE(p.Sta.Anl_Chg);
    if (c.member.empty()) {
      EXPECT_TRUE(p.Lst.His.Empty());
      continue;
    }
    EXPECT_EQ(Prc_Upd_Inf(p.Lst, std::string(c.member) + ".A"),
              digits(c.in_member) + "A." + std::string(c.member));
    ASSERT_EQ(p.Lst.His.Count(), 1U);
    EXPECT_EQ(p.Lst.His.At(1)->value.Lin, c.in_member);
  }
}

TEST(Change_History, MovesWithinTheProcedureAtTheCaret) {
  Edited p;
  (void)p.Edit("modA", 6);
  const auto line_after = [&](int from, int kind) {
    p.Caret("modA", from);
    Anl_Ctx ctx = p.Ctx();
    const bool moved = Mov_Prc_His(ctx, kind);
    return moved ? p.Code("modA").CodePane().GetSelection().start_line : 0;
  };
  EXPECT_EQ(line_after(5, 1), 4);   // the header, not the comment above it
  EXPECT_EQ(line_after(4, 2), 6);   // the last change
  EXPECT_EQ(line_after(4, 3), 7);   // the last line
  EXPECT_EQ(line_after(8, 3), 10);  // not the comment behind the last procedure
  EXPECT_EQ(line_after(8, 2), 0);   // never changed
  EXPECT_EQ(line_after(1, 1), 0);   // in no procedure
  EXPECT_EQ(line_after(5, 4), 0);
  p.Editor.Set_Mode("実行中");
  EXPECT_EQ(line_after(5, 1), 0);
}

TEST(Change_History, FullAnalysisForgetsWhatIsGone) {
  Edited p;
  for (const auto& [module, line] : {std::pair{"modA", 5}, {"modA", 9}, {"clsB", 2}})
    (void)p.Edit(module, line);
  (void)p.Analyse_After_Edit();
  p.Remove("clsB");
  p.Code("modA").DeleteLines(3, 5);
  (void)p.Analyse_After_Edit();
  EXPECT_EQ(p.Lst.Mem_Upd.Count(), 3U);  // kept until everything is read again
  Anl_Ctx ctx = p.Ctx();
  Int_Anl_Res(ctx, true);
  (void)p.Analyse();
  EXPECT_EQ(p.History(), "modA.Bb 2; ");
  EXPECT_EQ(p.Lst.Mem_Upd.Count(), 1U);
  EXPECT_EQ(p.Lst.Mdl_Upd.Count(), 1U);
}

TEST(Places, MembersAreFoundByTheirNames) {
  Edited p;
  const struct {
    std::string_view module, member;
    int top, body, count;
  } kCases[]{{"modA", "Aa", 2, 4, 6},       {"moda", "bb", 8, 8, 5},
             {"modA", "%Declare", 1, 1, 1}, {"clsB", "No(Let)", 3, 3, 3},
             {"clsB", "No(Get)", 1, 1, 2},  {"clsB", "No(Set)", 0, 0, 0},
             {"clsB", "No", 0, 0, 0},       {"Nope", "Aa", 0, 0, 0}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.member);
    const auto place = host::Get_CMm_Inf(p.Editor, c.module, c.member);
    EXPECT_EQ(place.has_value(), c.top != 0);
    EXPECT_EQ(host::Chk_Prc_Exs(p.Editor, c.module, c.member), c.top != 0);
    if (!place) continue;
    EXPECT_EQ(place->Top, c.top);
    EXPECT_EQ(place->Bdy, c.body);
    EXPECT_EQ(place->Cnt, c.count);
  }
  EXPECT_TRUE(host::Set_Prc_Pos(p.Editor, "modA", "Bb", 2));
  EXPECT_EQ(p.Code("modA").CodePane().GetSelection().start_line, 9);
  EXPECT_TRUE(host::Set_Prc_Pos(p.Editor, "modA", "Bb", 999));  // to its nearest line
  EXPECT_EQ(p.Code("modA").CodePane().GetSelection().start_line, 12);
  EXPECT_FALSE(host::Set_Prc_Pos(p.Editor, "modA", "Gone", 1));
}

}  // namespace
}  // namespace oru::analyser
