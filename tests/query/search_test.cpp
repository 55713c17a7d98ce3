// SPDX-License-Identifier: MIT
// The search: which statements each kind finds, over small modules.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/places.h"
#include "query/frm_search.h"
#include "query/statement_text.h"
#include "support/project.h"

namespace oru::query {
namespace {

using service::Compare;

struct Question {
  int code;
  std::string words = {};
  int scope = kIn_Project;
  std::string caret = {};  ///< "Module:line"
  int opt = kPartial;
};

class Searches : public testing::Test {
 protected:
  Query_Ctx Ctx() {
    return {project.Srv, project.Editor, project.Tbl, [this] { (void)project.Analyse(); }, {}};
  }
  void Put_Caret(std::string_view place) {
    if (place.empty()) return;
    const std::size_t colon = place.find(':');
    (void)host::Set_Mdl_Lin(project.Editor, place.substr(0, colon),
                            std::stoi(std::string(place.substr(colon + 1))));
  }
  // The lines found, in order: "Module.Member line[hit names]".
  std::string Found() {
    std::string out;
    for (const std::string& text : form.Cur().Viw.Row) {
      const Result_Row row = Read_Row(text);
      if (row.Type != 'R') continue;
      if (!out.empty()) out += " ";
      out += std::string(row.Mdl) + "." + std::string(row.Mem) + ":" +
             std::to_string(row.Lno + row.Index);
      for (const std::string_view hit : row.Hits) out.append("~").append(hit);
    }
    return out;
  }
  std::string Search(const Question& question) {
    Put_Caret(question.caret);
    form.FCo.Knd = question.code;
    form.FCo.Wrd = question.words;
    form.FCo.Scp = question.scope;
    form.FCo.Opt = question.opt;
    return form.Src_Start_Proc(Ctx(), 1) ? Found() : "no run";
  }
  struct Case {
    std::string_view what;
    Question question;
    std::string_view found;
  };
  void Expect(std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.what);
      EXPECT_EQ(Search(c.question), c.found);
    }
  }
  std::string Last_Message() {
    return project.Ui.messages.empty() ? "" : project.Ui.messages.back().text;
  }

  test::Project project;
  Frm_Search form;
};

TEST(Statements, AssignmentsByText) {
  const struct {
    std::string_view text;  // the name is marked by "¦" in front
    bool assigned, only_let;
  } kCases[] = {
      {"¦Foo = 1", true, true},
      {"x = ¦Foo", false, false},
      {"x = 1: ¦Foo = 2", true, true},
      {"Set ¦Foo = Nothing", true, false},
      {"For ¦i = 1 To 3", true, false},
      {"If ¦Foo = 1 Then y = 2", false, false},
      {"If a = 1 Then ¦y = 2", true, true},
      {"If a = 1 Then b = 1 Else ¦y = 2", true, true},
      {"If a = ¦Foo Then", false, false},
      {"arr(¦i) = 5", false, false},
      {"¦arr(i) = 5", true, true},
      {"x.y(1).¦Foo = 3", true, true},  // parentheses in front of a "." do not count
      {"x.y(¦Foo) = 3", false, false},
      {"Call ¦Foo", false, false},
      {"10: ¦Foo = 1", true, true},
      {"Do While ¦x = 1", false, false},
      {"x = y = ¦z = 1", false, false},
      {"Let ¦Foo = 1", false, false},
  };
  for (const auto& c : kCases) {
    const std::size_t mark = c.text.find("¦");
    std::string text(c.text);
    text.erase(mark, std::string_view("¦").size());
    EXPECT_EQ(Chk_Let_Sta(Padded(text), mark + 1, true), c.assigned) << c.text;
    EXPECT_EQ(Chk_Let_Sta(Padded(text), mark + 1, false), c.only_let) << c.text;
  }
}

TEST(Statements, ListsOfConstants) {
  using List = std::vector<std::string>;
  EXPECT_EQ(Split_Constants("Const A = 1, B = \"x, y\", C As String = F(1, 2) ' a, b"),
            (List{"Const A = 1", "Const B = \"x, y\"", "Const C As String = F(1, 2) ' a, b"}));
  EXPECT_EQ(Split_Constants("Private Const 甲 = \"あ,い\", 乙 = 2"),
            (List{"Private Const 甲 = \"あ,い\"", "Private Const 乙 = 2"}));
  EXPECT_EQ(Split_Constants("Dim a, b"), (List{"Dim a, b"}));
  EXPECT_EQ(Split_Constants("' Const A, B"), (List{"' Const A, B"}));
}

TEST_F(Searches, Words) {
  project.Add("M", R"bas(
Option Explicit
Public Foo As Long ' FOO here
Sub A()
    'foo in a comment
    '''foo = 1
    Foo = Foo_1 + 1 'foo behind
    x = "foo" & Foo$ & _
        ｆｏｏ
10: foo.Bar = 2: If Foo = 1 Then Foo = 3
End Sub)bas");
  ASSERT_TRUE(project.Analyse());
  struct Word_Case {
    std::string_view what;
    std::string words;
    int opt, any;
    Compare compare;
    bool comments, commented_out, constants;
    std::string_view found;
  };
  const Word_Case cases[] = {
      {"anywhere", "foo", 0, 0, Compare::Text, true, true, true,
       "M.%Declare:2 M.A:4 M.A:5 M.A:6 M.A:7 M.A:8 M.A:9"},
      {"exact letters", "foo", 0, 0, Compare::Binary, true, true, true,
       "M.A:4 M.A:5 M.A:6 M.A:7 M.A:8 M.A:9"},
      {"no comments", "foo", 0, 0, Compare::Binary, false, true, true, "M.A:7 M.A:8 M.A:9"},
      {"nothing commented out", "foo", 0, 0, Compare::Text, true, false, true,
       "M.%Declare:2 M.A:4 M.A:6 M.A:7 M.A:8 M.A:9"},
      {"all words", "foo bar", 0, 0, Compare::Text, true, true, true, "M.A:9"},
      {"any word", "behind bar", 0, 1, Compare::Text, true, true, true, "M.A:6 M.A:9"},
      {"a word with a blank", "foo in|", 0, 0, Compare::Text, true, true, true, "M.A:4"},
      {"none", "foo zzz", 0, 0, Compare::Text, true, true, true, ""},
      {"whole words", "Foo", 1, 0, Compare::Binary, false, true, true,
       "M.%Declare:2 M.A:6 M.A:7 M.A:8 M.A:9"},
      {"whole words in constants", "foo", 1, 0, Compare::Binary, false, true, true,
       "M.A:7 M.A:8 M.A:9"},
      {"and not in them", "foo", 1, 0, Compare::Binary, false, true, false, "M.A:9"},
      {"assigned", "Foo", 2, 0, Compare::Binary, true, true, true, "M.A:6"},
  };
  for (const Word_Case& c : cases) {
    SCOPED_TRACE(c.what);
    form.FCo.Cnd = c.any;
    form.FCo.Cmp = c.compare;
    form.FCo.Cmt = c.comments;
    form.FCo.COt = c.commented_out;
    form.FCo.Cns = c.constants;
    EXPECT_EQ(Search({kSearch_Text, c.words, kIn_Project, {}, c.opt}), c.found);
  }
}

TEST_F(Searches, PatternsAreTestedOnTheStatement) {
  project.Add("M", "Sub A()\n    x1 = 22 ' 333\n    y = _\n        4\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  EXPECT_EQ(Search({kSearch_Pattern, "\\d\\d+"}), "M.A:2~333~22");
  form.FCo.Cmt = false;
  EXPECT_EQ(Search({kSearch_Pattern, "\\d\\d+"}), "M.A:2~22");
  EXPECT_EQ(Search({kSearch_Pattern, "^ +X\\d"}), "M.A:2~    x1");
  EXPECT_EQ(Search({kSearch_Pattern, "y = _\\s+\\d$"}),
            "M.A:3~y = _          4 M.A:4~y = _          4");
  EXPECT_EQ(Search({kSearch_Pattern, "(a"}), "no run");
  EXPECT_EQ(Last_Message(), "  パターン文字列に誤りがあります。");
  project.Code("M").ReplaceLine(2, "    s = \"" + std::string(900, 'a') + "\"");
  EXPECT_THROW((void)Search({kSearch_Pattern, "(a+)+[bc]"}), service::Sys_Error);
  EXPECT_EQ(form.Cur().Viw.Message, "●検索処理を中止しました。");
}

TEST_F(Searches, ObjectsOfWith) {
  project.Add("M", R"bas(
Sub A()
    With Sheet1.Range("A1")
        x = 1
        .Value = Foo(.Text, 1.5)
        With .Font
            .Bold = True
            .Name = "x"
        End With
        .Clear
    End With
    With Other
        .Value = 1
    End With
    End With
    With Unused
    End With
End Sub)bas");
  ASSERT_TRUE(project.Analyse());
  EXPECT_EQ(Search({kSearch_With, "value"}), "M.A:2 M.A:4 M.A:11 M.A:12");
  EXPECT_EQ(Search({kSearch_With, "Bold"}), "M.A:2 M.A:5 M.A:6");
  EXPECT_EQ(Search({kSearch_With, "Font"}), "M.A:2 M.A:5 M.A:6 M.A:7");
  EXPECT_EQ(Search({kSearch_With, "Val"}), "");
  EXPECT_EQ(Search({kSearch_With, "Text"}), "M.A:2 M.A:4");
  EXPECT_EQ(Search({kSearch_With, "Value "}), "no run");
  EXPECT_EQ(Last_Message(), "  修飾語検索で複数の文字列を指定することはできません。");
  std::string deep = "Sub A()\n";
  for (int i = 0; i < 11; ++i) deep += "With O" + std::to_string(i) + "\n";
  project.Add("Deep", deep + "End Sub");
  ASSERT_TRUE(project.Analyse());
  EXPECT_THROW((void)Search({kSearch_With, "x"}), service::Sys_Error);
}

TEST_F(Searches, Definitions) {
  project
      .Add("M", R"bas(
Public a As Long, b As String
Private c As Long
Const k = 1, m = "x, y"
Public Const n = 2
Private Type T
    x As Long
End Type
Public Enum E
    e1
End Enum
#If VBA7 Then
Declare Sub Api1 Lib "k" ()
#Else
Declare Sub Api2 Lib "k" ()
#End If
'-----
'''out = 1
'text
Sub A()
    Dim i As Long, j As Long
    Static s As Long
    Const z = 1
End Sub)bas")
      .Add("N", "Public g As Long\nSub B()\n    Dim v As Long\n    Api1\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  Expect({
      {"public variables", {kSearch_Variable}, "M.%Declare:1~a N.%Declare:1~g"},
      {"a module's", {kSearch_Variable, "", kIn_Module, "M:20"}, "M.%Declare:1~a M.%Declare:2~c"},
      {"a procedure's", {kSearch_Variable, "", kIn_Procedure, "M:20"}, "M.A:20~i M.A:21~s"},
      {"several at once", {kSearch_Variables}, "M.A:20~i M.%Declare:1~a"},
      {"public constants", {kSearch_Constant}, "M.%Declare:4~n"},
      {"a module's constants",
       {kSearch_Constant, "", kIn_Module, "M:20"},
       "M.%Declare:3~k M.%Declare:4~n"},
      {"lists of constants", {kSearch_Constants, "", kIn_Module, "M:20"}, "M.%Declare:3~k"},
      {"types", {kSearch_Type}, "M.%Declare:5~T M.%Declare:6 M.%Declare:7"},
      {"enumerations", {kSearch_Enum}, "M.%Declare:8~E M.%Declare:9 M.%Declare:10"},
      {"directives",
       {kSearch_Directive},
       "M.%Declare:11 M.%Declare:12 M.%Declare:13 M.%Declare:14 M.%Declare:15"},
      {"declared procedures", {kSearch_Api}, "M.Api1:12~Api1 M.Api2:14~Api2"},
      {"those that nobody calls", {kSearch_Unused_Api}, "M.Api2:14~Api2"},
      {"comments", {kSearch_Comment}, "M.A:17 M.A:18"},
  });
  form.FCo.COt = false;
  EXPECT_EQ(Search({kSearch_Comment}), "M.A:18");
}

TEST_F(Searches, FormsAndCallsAndArguments) {
  project.Add_Form("frmIn", "", {});
  project.Add("M", R"bas(
Sub A(x As Long, ByVal y As Long, z As Long)
    frmIn.Show vbModal
    Me.Hide
    Load frmIn
    Unload frmIn 'done
    Set f = frmIn
    Load "x"
    Nothing1.Show
    x = y + 1
    B p:=z, q:=2
End Sub
Sub B(p, Optional q As Long)
    If p = 1 Then Call C
    On Error GoTo E1
    q = 1
End Sub
Private Sub C(u)
    C = 1 'itself
End Sub)bas");
  ASSERT_TRUE(project.Analyse());
  EXPECT_EQ(Search({kSearch_Form}), "M.A:2~frmIn M.A:3~Me M.A:4~frmIn M.A:5~frmIn M.A:6~frmIn");
  EXPECT_EQ(Search({kSearch_Call}), "M.A:10~B M.B:13~C");
  EXPECT_EQ(Search({kSearch_Unused_Argument}), "M.C:17~u");
  EXPECT_EQ(Search({kSearch_Assigned_Argument}), "M.A:1~x M.A:9~x M.B:12~q M.B:15~q");
  EXPECT_EQ(Search({kSearch_Reference, "", kIn_Project, "M:17"}), "M.C:17 M.C:18 M.B:13~C");
  EXPECT_EQ(form.Cur().Viw.Cond.Scp, kIn_Module) << "a private member is looked for in its module";
  EXPECT_EQ(form.FCo.Wrd, "C");
  form.FCo.Knd = kSearch_Text;
  form.FCo.Wrd = "Me";
  ASSERT_TRUE(form.Src_Start_Proc(Ctx(), 1));
  EXPECT_EQ(Search({kSearch_Reference, "", kIn_Project, "M:2"}), "no run");
  EXPECT_EQ(Last_Message(), "  このプロシージャは他から参照されていません。");
  EXPECT_EQ(Found(), "M.A:3") << "a refused question leaves the result";
}

TEST_F(Searches, UnusedAndUsedNames) {
  project
      .Add("M", R"bas(
Public gUsed As Long, gUnused As Long
Private mSet As Long
Private mRead As Long, mNone As Long
Const K1 = 1, K2 = K1
Private Type T1
    a As Long
End Type
Private Type T2
    b As T1
End Type
Private v As T2
Enum E1
    e
End Enum
Enum E2
    f
End Enum
Sub A()
    Dim i As Long, o As Object, n As Long, same As Long
    mSet = 1
    Set o = Nothing
    For i = 1 To 2
    Next
    n = mRead
    Dim w As E1
    MsgBox Me.same
End Sub
Sub B()
    Dim n As Long, mNone As Long
    mNone = 2
End Sub)bas")
      .Add("N", "Sub C()\n    M.gUsed = 2\n    x = gUsed\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  Expect({
      {"unused variables",
       {kSearch_Unused_Variable},
       "M.%Declare:1~gUnused M.%Declare:3~mNone M.%Declare:11~v M.A:25~w M.B:29~n"},
      {"of a module, where a public one is used elsewhere",
       {kSearch_Unused_Variable, "", kIn_Module, "M:19"},
       "M.A:25~w M.%Declare:1~gUnused M.%Declare:3~mNone M.%Declare:11~v M.B:29~n"},
      {"of a procedure", {kSearch_Unused_Variable, "", kIn_Procedure, "M:29"}, "M.B:29~n"},
      {"unused constants, by their lists", {kSearch_Unused_Constant}, "M.%Declare:4~K2~K1"},
      {"only assigned", {kSearch_Assigned_Only}, "M.B:29~mNone M.%Declare:2~mSet M.A:19~n"},
      {"unused types", {kSearch_Unused_Type}, ""},
      {"unused enumerations, variables of them aside",
       {kSearch_Unused_Enum},
       "M.%Declare:12~E1 M.%Declare:15~E2"},
      {"uses of global variables", {kSearch_Global_Use}, "N.C:2~gUsed N.C:3~gUsed"},
      {"uses of a module's, also where a local name hides it",
       {kSearch_Module_Use, "", kIn_Module, "M:19"},
       "M.A:20~mSet M.A:24~mRead M.B:30~mNone"},
      {"uses of locals", {kSearch_Local_Use, "", kIn_Procedure, "M:29"}, "M.B:30~mNone"},
  });
  EXPECT_EQ(Search({kSearch_Unused_Variable, "", kIn_Procedure, "M:1"}),
            "M.%Declare:1~gUnused M.%Declare:3~mNone M.%Declare:11~v M.A:25~w M.B:29~n")
      << "from the declaration section the module is searched";
  EXPECT_EQ(form.FCo.Scp, kIn_Module);
}

TEST_F(Searches, EachLineIsInOneRange) {
  project.Add("M", R"bas(
Dim x
#If A Then
Sub S()
    x = 1
End Sub
#Else
Sub S()
    x = 2
End Sub
#End If
Function F()
    F = x
End Function)bas");
  ASSERT_TRUE(project.Analyse());
  EXPECT_EQ(
      Search({kSearch_Pattern, "(?=.)"}),
      "M.%Declare:1 M.%Declare:2 M.S:3 M.S:4 M.S:5 M.S:6 M.S:7 M.S:8 M.S:9 M.F:10 M.F:11 M.F:12 "
      "M.F:13");
  // The references are those of the first one; a line that is only a label is no statement.
  project.Add("N",
              "#If A Then\nSub D()\n    T\nEnd Sub\n#Else\nSub D()\n10:\n    T\nEnd Sub\n#End If\n"
              "Sub T()\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  EXPECT_EQ(Search({kSearch_Call}), "N.D:3~T");
  EXPECT_EQ(Search({kSearch_Pattern, "^$"}), "");
  project.Remove("N");
  project.Remove("M");
  EXPECT_EQ(Search({kSearch_Pattern, "x"}), "") << "a module that is gone is passed over";
}

TEST_F(Searches, QuestionsAndLimits) {
  project.Add("M", "Sub A()\n    x = 1\n    x = 2\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  for (const auto& [code, text] :
       std::vector<std::pair<int, std::string>>{{kSearch_Text, "検索文字列"},
                                                {kSearch_Pattern, "パターン文字列"},
                                                {kSearch_With, "With句の対象語"}}) {
    EXPECT_EQ(Search({code, " |　"}), "no run");
    EXPECT_EQ(Last_Message(), "  " + text + "を指定してください。");
  }
  project.Ui.messages.clear();
  // One half-width character: asked once.
  project.Ui.answers = {service::Answer::Cancel};
  EXPECT_EQ(Search({kSearch_Text, "x"}), "no run");
  EXPECT_EQ(Search({kSearch_Text, "x"}), "M.A:2 M.A:3") << "the same text asks no more";
  EXPECT_EQ(Search({kSearch_Text, "xx"}), "");
  project.Ui.answers = {service::Answer::Yes};
  EXPECT_EQ(Search({kSearch_Text, "x"}), "M.A:2 M.A:3");
  EXPECT_EQ(form.Cur().Viw.Cond.Knd, kSearch_Exact);
  EXPECT_EQ(project.Ui.messages.size(), 2U);
  EXPECT_EQ(Search({kSearch_Text, "="}), "no run") << "cancelled by default answers";
  EXPECT_EQ(Search({kSearch_Text, "zz|"}), "");
  EXPECT_EQ(form.Cur().Viw.Message,
            "●検索条件に該当する文はありません。指定した条件が正しいか確認してください。\\n"
            "　　［検索対象］ 文字列\\n　　［検索文字］ zz|\\n　　［検索範囲］ プロジェクト\\n"
            "　　［合致条件］ すべてを含む\\n"
            "　　［文字比較］ 大文字・小文字、全角・半角を区別しない\\n");

  project.Srv.Opt.Set_Number("FTx_SCMax", 2);
  project.Ui.messages.clear();
  EXPECT_EQ(Search({kSearch_Text, " = "}), "no run");
  EXPECT_EQ(Search({kSearch_Text, "= |"}), "M.A:2 M.A:3");
  EXPECT_TRUE(project.Ui.messages.size() <= 1U) << "exactly the limit asks nothing";
  project.Srv.Opt.Set_Number("FTx_SCMax", 1);
  project.Ui.answers = {service::Answer::No};
  EXPECT_EQ(Search({kSearch_Text, "= |"}), "");
  EXPECT_EQ(form.Cur().Viw.Message, "●検索処理を中止しました。");
  EXPECT_EQ(form.Cur().Viw.Viw_Hit, 0);
}

TEST_F(Searches, ConditionsFollowTheKind) {
  using C = Search_Condition;
  const struct {
    int code;
    std::vector<C> has;
  } kCases[] = {
      {kSearch_Text,
       {C::Words, C::Partial, C::Exact, C::In_Procedure, C::Scope, C::Compare, C::Commented_Out}},
      {kSearch_Exact,
       {C::Words, C::Partial, C::Exact, C::In_Procedure, C::Scope, C::Compare, C::Commented_Out,
        C::Constants}},
      {kSearch_Pattern, {C::Words, C::In_Procedure, C::Scope, C::Compare, C::Commented_Out}},
      {kSearch_With, {C::Words, C::In_Procedure, C::Scope}},
      {kSearch_Comment, {C::In_Procedure, C::Scope, C::Commented_Out}},
      {kSearch_Type, {C::Scope}},
      {kSearch_Unused_Api, {C::Scope}},
      {kSearch_Reference, {}},
  };
  for (const auto& c : kCases)
    for (const C condition : {C::Words, C::Partial, C::Exact, C::In_Procedure, C::Scope, C::Compare,
                              C::Commented_Out, C::Constants})
      EXPECT_EQ(Has_Condition(c.code, condition),
                std::find(c.has.begin(), c.has.end(), condition) != c.has.end())
          << c.code << " " << static_cast<int>(condition);

  project.Add("M", "Sub A()\n    xx = 1\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  (void)Search({kSearch_Text, "xx", kIn_Procedure, "M:2", kExact});
  form.FCx_Object_Click(Ctx(), kSearch_Enum);
  EXPECT_EQ(form.FCo.Scp, kIn_Module);
  EXPECT_EQ(form.FCo.Opt, kPartial);
  EXPECT_EQ(form.FCo.Wrd, "");
  // A changed condition asks again, if the options want that.
  form.FCx_Object_Click(Ctx(), kSearch_Text);
  form.FCo.Wrd = "yy";
  project.Srv.Opt.Set_Number("FOp_ScOpt1", 0);
  form.Cond_Changed(Ctx());
  EXPECT_EQ(Found(), "M.A:2");
  project.Srv.Opt.Set_Number("FOp_ScOpt1", 1);
  form.Cond_Changed(Ctx());
  EXPECT_EQ(Found(), "");
}

TEST_F(Searches, TheWordUnderTheCaret) {
  project
      .Add("M",
           "Private mCount As Long\nSub A()\n    Dim i As Long\n    i = mCount + B(1)\nEnd Sub")
      .Add("N", "Public Function B(x)\nEnd Function\nSub Q()\n    mCount = 1\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  const struct {
    int column;
    std::string_view found;
    int scope;
  } kCases[] = {
      {5, "M.A:3 M.A:4", kIn_Procedure},
      {10, "M.%Declare:1 M.A:4", kIn_Module},
      {18, "N.B:1 M.A:4", kIn_Project},  // the declaration comes first
  };
  for (const auto& c : kCases) {
    Put_Caret("M:4");
    project.Code("M").CodePane().SetSelection({4, c.column, 4, c.column});
    ASSERT_TRUE(form.Get_Inform(Ctx()));
    EXPECT_EQ(Found(), c.found) << c.column;
    EXPECT_EQ(form.FCo.Scp, c.scope);
  }
}

TEST_F(Searches, RowsTextIndexAndJumps) {
  project
      .Add("M", "'about M\nOption Explicit\nSub A()\n    x = 1 + _\n        2\n    'x ②\nEnd Sub")
      .Add("N", "Sub B()\n    y = x\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  EXPECT_EQ(Search({kSearch_Text, "x", kIn_Project, "N:2", kExact}), "N.B:2 M.A:4 M.A:5 M.A:6");
  Search_Slot& slot = form.Cur();
  EXPECT_EQ(slot.Viw.Viw_Hit, 3) << "a continued statement is one hit";
  EXPECT_EQ(slot.Viw.Viw_Pos, "2\tB\tN");
  EXPECT_EQ(slot.Text.Text.Text(),
            "  N\r\n     B\r\n     2|    y = x\r\n\r\n"
            "  M  about M\r\n     A  x ②\r\n     2|    x = 1 + _\r\n     3|        2\r\n"
            "     4|    'x ②\r\n\r\n ");
  const auto index = form.Dsp_DDL_Viw();
  ASSERT_EQ(index.size(), 4U);
  EXPECT_EQ(index[3].Caption, "  A");
  const auto at = [&](std::string_view text) {
    return service::Chr_Of_Byte(slot.Text.Text.Text(), slot.Text.Text.Text().find(text));
  };
  EXPECT_EQ(form.FRt_Result_Click(Ctx(), at("    x = 1")), std::string_view());
  EXPECT_EQ(host::Get_ACp_Inf(project.Editor)->Sel.start_line, 4);
  project.Code("M").InsertLines(1, "'new");
  EXPECT_EQ(form.FRt_Result_Click(Ctx(), at("    x = 1")), std::string_view())
      << "the line moved with its procedure";
  project.Code("M").ReplaceLine(5, "    x = 7");
  EXPECT_EQ(form.FRt_Result_Click(Ctx(), at("    x = 1")), kChanged_Since);

  // Views: a new run elsewhere keeps these rows, but not the right to replace.
  EXPECT_TRUE(slot.Viw.Viw_Rep);
  ASSERT_TRUE(form.Chg_Res_Viw(5));
  (void)Search({kSearch_Text, "yy"});
  EXPECT_FALSE(slot.Viw.Viw_Rep);
  EXPECT_EQ(slot.Viw.Row.size(), 10U);
  EXPECT_EQ(form.Dsp_Hst_Viw().size(), 2U);
  ASSERT_TRUE(form.Chg_Res_Viw(0));
  EXPECT_EQ(form.FCo.Wrd, "x");
  form.Clr_Res_Viw(5);
  EXPECT_EQ(form.Dsp_Hst_Viw().size(), 1U);
  EXPECT_FALSE(form.Chg_Res_Viw(31));
  form.FCo.Prc = false;
  (void)Search({kSearch_Text, "x", kIn_Project, "N:2", kExact});
  EXPECT_EQ(form.Cur().Text.Text.Text().find(" B\r\n"), std::string::npos);
}

TEST_F(Searches, ReplacingAndTakingBack) {
  const std::string before =
      "Sub A()\r\n    aa = bb 'aa \tz\r\n    bb = \"aa\" & _\r\n        aabb\r\n    aaaa = 1\r\nEnd Sub";
  project.Add("M", before);
  ASSERT_TRUE(project.Analyse());
  const auto text = [&] { return project.Code("M").Lines(1, project.Code("M").CountOfLines()); };
  form.FCo.Cnd = 1;
  // Both words in one pass, so that they change places.
  (void)Search({kSearch_Text, "aa bb", kIn_Project, {}, kExact});
  EXPECT_EQ(Chk_Rep_Wds(form.Cur().Viw, {"bb", ""}), "空文字への置換はサポートしていません。   ");
  EXPECT_EQ(Chk_Rep_Wds(form.Cur().Viw, {"aa", "bb"}),
            "置換後の文字列がすべて置換対象文字列と同じです。   ");
  Replace_Result done = form.Rep_Word(Ctx(), {"bb", "aa"});
  EXPECT_EQ(done.Error, "");
  EXPECT_EQ(
      text(),
      "Sub A()\r\n    bb = aa 'bb \tz\r\n    aa = \"bb\" & _\r\n        aabb\r\n    aaaa = 1\r\nEnd Sub");
  EXPECT_EQ(form.FCo.Wrd, "bb aa");
  EXPECT_TRUE(form.Cur().Viw.Viw_Rdo);
  done = form.Rdo_Word(Ctx());
  EXPECT_EQ(text(), before);
  EXPECT_EQ(form.FCo.Wrd, "aa bb");
  EXPECT_FALSE(form.Rdo_Word(Ctx()).Ok()) << "there is nothing more to take back";

  // Parts of words, without comments; the new word holds the old one and is not read again.
  form.FCo.Cmt = false;
  (void)Search({kSearch_Text, "aa"});
  done = form.Rep_Word(Ctx(), {"aaa"});
  EXPECT_EQ(
      text(),
      "Sub A()\r\n    aaa = bb 'aa \tz\r\n    bb = \"aaa\" & _\r\n        aaabb\r\n    aaaaaa = 1\r\nEnd Sub");
  EXPECT_EQ(done.Lines.size(), 4U);
  (void)form.Rdo_Word(Ctx());
  EXPECT_EQ(text(), before);

  // Only what is assigned.
  (void)Search({kSearch_Text, "bb", kIn_Project, {}, kAssigned});
  (void)form.Rep_Word(Ctx(), {"zz"});
  EXPECT_EQ(project.Code("M").Lines(2, 2), "    aa = bb 'aa \tz\r\n    zz = \"aa\" & _");
  (void)form.Rdo_Word(Ctx());

  // Decided on the text that was searched: indents, labels and comments do not count.
  project.Add("L",
              "Sub S()\n    Me.Foo = 1\n10: Foo = 2 ' x Then Foo\n    q(1).Foo = Foo\nEnd Sub");
  ASSERT_TRUE(project.Analyse());
  (void)Search({kSearch_Text, "Foo", kIn_Project, {}, kAssigned});
  (void)form.Rep_Word(Ctx(), {"Bar"});
  EXPECT_EQ(project.Code("L").Lines(2, 3),
            "    Me.Bar = 1\r\n10: Bar = 2 ' x Then Foo\r\n    q(1).Bar = Foo");
  project.Remove("L");
  (void)project.Analyse();

  // A line that was changed meanwhile, and one that would become too long.
  (void)Search({kSearch_Text, "aaaa"});
  project.Code("M").ReplaceLine(5, "    aaaa = 2");
  done = form.Rep_Word(Ctx(), {"q"});
  EXPECT_EQ(project.Code("M").Lines(5, 1), "    aaaa = 2");
  EXPECT_EQ(done.Skipped.size(), 1U);
  (void)Search({kSearch_Text, "aaaa"});
  done = form.Rep_Word(Ctx(), {std::string(1100, 'q')});
  EXPECT_EQ(project.Code("M").Lines(5, 1), "    aaaa = 2");
  EXPECT_EQ(done.Skipped.size(), 1U);
  std::string many;
  for (int i = 0; i < 21; ++i) many += "w" + std::to_string(i) + " ";
  (void)Search({kSearch_Text, many});
  form.Cur().Viw.Viw_Rep = true;
  EXPECT_EQ(form.Rep_Word(Ctx(), {}).Error,
            "置換対象文字列数が上限（２０）を超えているため実行できません。    ");
}

}  // namespace
}  // namespace oru::query
