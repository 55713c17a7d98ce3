// SPDX-License-Identifier: MIT
#include "analyser/references.h"

#include <gtest/gtest.h>

#include "support/project.h"

namespace oru::analyser {
namespace {

using test::Project;
using Records = std::vector<std::string>;

TEST(IndexedParts, AreRewrittenFromTheRight) {
  const struct {
    std::string_view in, out;
  } kCases[]{
      {"Foo(i).Bar", "i Foo.Bar"},
      {"x = a(1).b(2).c", "x = 2 1 a.b.c"},
      {"a(x, 1).b(2).c", "x, 2 1 a.b.c"},
      {"Foo(a(1).b).c", "1 a.b Foo.c"},
      {"f(g(h(1))).x", "g(h(1)) f.x"},
      {"(a).b", "(a).b"},
      {"a).b", "a).b"},
      {"no index", "no index"},
      {"x = (a + b(1).c)", "x = (a + 1 b.c)"},
  };
  for (const auto& c : kCases) {
    std::string statement(c.in);
    Del_Mod_Idx(statement);
    EXPECT_EQ(statement, c.out) << c.in;
  }
}

TEST(References, WordsThatRefer) {
  const struct {
    std::string_view what, body;
    Records refs;
  } kCases[]{
      {"Call, value, arguments, parentheses",
       "Call Foo\nx = Foo\nFoo 1, 2\ny = Foo(1)\nz = a + Foo(Foo(2))",
       {"Work>M1.Foo 00002 00003 00004 00005 00006 N"}},
      {"a name in a literal or behind Run does not", "Application.Run \"Foo\"\nx = \"Foo\"", {}},
      {"a module prefix", "M1.Foo\nx = M2.Bar(1)", {"Work>M1.Foo 00002 N", "Work>M2.Bar 00003 N"}},
      {"a public member of another module, not a private one",
       "Bar\nHidden",
       {"Work>M2.Bar 00002 N"}},
      {"a private member is found with its module", "M2.Hidden", {"Work>M2.Hidden 00002 N"}},
      {"a Friend only with a prefix", "Near\nM2.Near", {"Work>M2.Near 00003 N"}},
      {"an unknown object is passed over", "obj.Foo\nMe.Foo", {}},
      {"a type character is dropped", "x = Text1$(1)\nx = Bar$(1)", {"Work>M2.Bar 00003 N"}},
      {"an operator glued to a name hides it", "x = -Foo\nDoIt Key:=Foo", {}},
      {"a recursion makes no record", "Work\nM1.Work", {}},
      {"a reserved word is no reference", "Name", {}},
      {"no shadowing by local names", "Dim Foo As Long\nFoo = 1", {"Work>M1.Foo 00003 N"}},
      {"twice in a statement is one line", "Foo: Foo", {"Work>M1.Foo 00002 N"}},
      {"letter case counts", "foo\nm1.Foo", {}},
      {"both branches of a directive",
       "#If A Then\nFoo\n#Else\nFoo\n#End If",
       {"Work>M1.Foo 00003 00005 N"}},
      {"dropped first words",
       "Exit Sub\nElse: Foo\nCase Foo\nNext Foo\nConst c = Foo",
       {"Work>M1.Foo 00003 N"}},
      {"ElseIf and a line If are read",
       "If Foo Then Bar\nElseIf Foo Then",
       {"Work>M1.Foo 00002 00003 N", "Work>M2.Bar 00002 N"}},
      {"an index of a qualified name", "x = M1.Foo(Bar(1)).Value", {"Work>M2.Bar 00002 N"}},
      {"AddressOf", "SetTimer 0, 0, AddressOf Foo, 1", {"Work>M1.Foo 00002 N"}},
      {"a comment and a Rem", "' Foo\nx = 1 ' Foo\nRem Foo", {"Work>M1.Foo 00004 N"}},
      {"a property is never found", "x = Price\nM2.Price = 1", {}},
      {"a Declare is", "Sleep 10", {"Work>M2.Sleep 00002 N"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Project p;
    p.Add("M1", "Public Sub Work()\n" + std::string(c.body) +
                    "\nEnd Sub\nFunction Foo(Optional a)\nEnd Function");
    p.Add("M2", R"(
Public Declare Sub Sleep Lib "kernel32" (ByVal ms As Long)
Public Function Bar(Optional a)
End Function
Private Sub Hidden()
End Sub
Friend Sub Near()
End Sub
Public Sub Name()
End Sub
Property Get Price() As Long
End Property
Property Let Price(ByVal v As Long)
End Property
)");
    ASSERT_TRUE(p.Analyse());
    EXPECT_EQ(p.Refs("M1"), c.refs);
  }
}

TEST(References, TheModuleItselfComesFirstThenModuleOrder) {
  Project p;
  p.Add("A", "Sub Foo()\nEnd Sub\nSub Go()\nFoo\nBar\nEnd Sub");
  p.Add("B", "Sub Foo()\nEnd Sub\nSub Bar()\nEnd Sub");
  p.Add("C", "Sub Bar()\nEnd Sub\nSub Go()\nFoo\nBar\nEnd Sub");
  p.Analyse();
  EXPECT_EQ(p.Refs("A"), (Records{"Go>A.Foo 00002 N", "Go>B.Bar 00003 N"}));
  EXPECT_EQ(p.Refs("C"), (Records{"Go>A.Foo 00002 N", "Go>C.Bar 00003 N"}));
}

TEST(References, WithBlocksPrefixTheDot) {
  const struct {
    std::string_view what, body;
    Records refs;
  } kCases[]{
      {"one level", "With M2\n.Run\nEnd With\n.Run", {"Go>M2.Run 00003 N"}},
      {"a chain is looked up by its ends",
       "With M2\nWith .Inner\n.Run\nEnd With\n.Run\nEnd With",
       {"Go>M2.Run 00004 00006 N"}},
      {"a new expression is stacked and comes back",
       "With M2\nWith Other\n.Run\nEnd With\n.Run\nEnd With",
       {"Go>M2.Run 00006 N"}},
      {"With New", "With New Cls\n.Act\nEnd With", {"Go>Cls.Act 00003 N"}},
      {"the With expression itself is not read", "With M2.Run\nEnd With", {}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Project p;
    p.Add("M1", "Sub Go()\n" + std::string(c.body) + "\nEnd Sub");
    p.Add("M2", "Function Run()\nEnd Function");
    p.Add("Cls", "Sub Act()\nEnd Sub", host::kType_Class);
    p.Analyse();
    EXPECT_EQ(p.Refs("M1"), c.refs);
  }
}

TEST(References, TooDeepWithIsReportedAndTheRestIsRead) {
  std::string body;
  for (int i = 0; i < 12; ++i) body += "With a" + std::to_string(i) + "\n";
  Project p;
  p.Add("M1", "Sub Go()\n" + body + "Foo\nEnd Sub\nSub Foo()\nEnd Sub");
  EXPECT_TRUE(p.Analyse());
  EXPECT_EQ(p.Refs("M1"), (Records{"Go>M1.Foo 00014 N"}));
  ASSERT_EQ(p.Sta.Problems.size(), 1U);
  EXPECT_NE(p.Sta.Problems[0].Text.find("M1.Go"), std::string::npos);
  EXPECT_NE(p.Sta.Problems[0].Text.find("Sentence=(With a11)"), std::string::npos);
}

TEST(References, ErrorSectionsHaveTheirOwnRecords) {
  const struct {
    std::string_view what, body;
    Records refs;
  } kCases[]{
      {"before and behind the label",
       "On Error GoTo Err1\nFoo\nExit Sub\nErr1:\nFoo\nBar",
       {"Go>M1.Foo 00003 N", "Go>M1.Foo 00006 Y", "Go>M1.Bar 00007 Y"}},
      {"GoTo 0 takes the label back",
       "On Error GoTo Err1\nOn Error GoTo 0\nErr1:\nFoo",
       {"Go>M1.Foo 00005 N"}},
      {"another label changes nothing", "On Error GoTo Err1\nErr2:\nFoo", {"Go>M1.Foo 00004 N"}},
      {"a label with a statement behind it is no label line",
       "On Error GoTo Err1\nErr1: Foo\nBar",
       {"Go>M1.Foo 00003 N", "Go>M1.Bar 00004 N"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Project p;
    p.Add("M1",
          "Sub Go()\n" + std::string(c.body) + "\nEnd Sub\nSub Foo()\nEnd Sub\nSub Bar()\nEnd Sub");
    p.Analyse();
    EXPECT_EQ(p.Refs("M1"), c.refs);
  }
}

TEST(References, AnErrorSectionRemembersWordsUntilTheModuleEnds) {
  // The word is known from the first member, so that even a recursion is recorded in the second.
  Project p;
  p.Add("M1", R"(
Sub First()
On Error GoTo E
E:
Foo
End Sub
Sub Foo()
On Error GoTo E
Foo
E:
Foo
End Sub
)");
  p.Analyse();
  EXPECT_EQ(p.Refs("M1"), (Records{"First>M1.Foo 00004 Y", "Foo>M1.Foo 00005 Y"}));
}

TEST(References, ObjectsLeadToTheirClasses) {
  const struct {
    std::string_view what, body;
    Records refs;
  } kCases[]{
      {"a declared class", "Dim cus As Customer\ncus.Save", {"Go>Customer.Save 00003 N"}},
      {"As New", "Dim cus As New Customer\ncus.Save", {"Go>Customer.Save 00003 N"}},
      {"each name of a list",
       "Dim aa As Long, cus As Customer\ncus.Save",
       {"Go>Customer.Save 00003 N"}},
      {"an Object learns at Set",
       "Dim obj As Object\nSet obj = New Order\nobj.Save",
       {"Go>Order.Save 00004 N"}},
      {"its first class counts",
       "Dim obj As Object\nSet obj = New Order\nSet obj = New Customer\nobj.Save",
       {"Go>Order.Save 00005 N"}},
      {"after a use a Set replaces",
       "Dim obj As Object\nSet obj = New Order\nobj.Save\nSet obj = New Customer\nobj.Only",
       {"Go>Order.Save 00004 N", "Go>Customer.Only 00006 N"}},
      {"an Object of unknown class hits every public one",
       "Dim obj As Object\nobj.Save",
       {"Go>Customer.Save 00003 N", "Go>Order.Save 00003 N"}},
      {"a name of one character is no instance", "Dim c As Customer\nc.Save", {}},
      {"an instance of the module", "shop.Save", {"Go>Customer.Save 00002 N"}},
      {"a function that gives a class",
       "Make().Save",
       {"Go>M2.Make 00002 N", "Go>Customer.Save 00002 N"}},
      {"a later use of an object adds to the first row",
       "Dim obj As Object\nobj.Save\nobj.Save",
       {"Go>Customer.Save 00003 00004 N", "Go>Order.Save 00003 N"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Project p;
    p.Add("Customer", "Public Sub Save()\nEnd Sub\nPublic Sub Only()\nEnd Sub", host::kType_Class);
    p.Add("M1", "Private shop As Customer\nSub Go()\n" + std::string(c.body) + "\nEnd Sub");
    p.Add("M2", "Private shop As Order\nFunction Make() As Customer\nEnd Function");
    p.Add("Order", "Public Sub Save()\nEnd Sub", host::kType_Class);
    p.Analyse();
    EXPECT_EQ(p.Refs("M1"), c.refs);
  }
}

TEST(References, WhatAMemberTaughtEndsWithIt) {
  Project p;
  p.Add("Order", "Public Sub Save()\nEnd Sub", host::kType_Class);
  p.Add("Other", "Public Sub Save()\nEnd Sub", host::kType_Class);
  p.Add("M1", R"(
Private obj As Object
Sub Aa(ord As Order)
Set obj = New Order
obj.Save
ord.Save
End Sub
Sub Bb()
ord.Save
obj.Save
End Sub
)");
  p.Analyse();
  EXPECT_EQ(p.Refs("M1"), (Records{"Aa>Order.Save 00003 00004 N", "Bb>Order.Save 00003 N",
                                   "Bb>Other.Save 00003 N"}));
}

TEST(References, MarksComeFromAllRecords) {
  Project p;
  p.Add("M1", "Sub Top()\nMiddle\nEnd Sub\nSub Middle()\nEnd Sub\nSub Alone()\nEnd Sub");
  p.Analyse();
  EXPECT_EQ(Set_Ref_Mrk(p.Tbl, "M1", "Top"), "↓");
  EXPECT_EQ(Set_Ref_Mrk(p.Tbl, "M1", "Middle"), "↑");
  EXPECT_EQ(Set_Ref_Mrk(p.Tbl, "M1", "Alone"), "");
  EXPECT_EQ(p.Tbl.MLL, 3);
  EXPECT_EQ(p.Tbl.MHL, 8);  // the declaration section's name counts too

  // A call that is taken out takes its mark away.
  p.Code("M1").ReplaceLine(2, "x = 1");
  EXPECT_TRUE(p.Analyse_After_Edit());
  EXPECT_EQ(Set_Ref_Mrk(p.Tbl, "M1", "Top"), "");
  EXPECT_EQ(Set_Ref_Mrk(p.Tbl, "M1", "Middle"), "");
}

TEST(References, ReadingRecordsBack) {
  const std::string text = "%A.x#B.y|00001 00002N%A.x#C.z|00003Y%B.y#C.z|00009N";
  const struct {
    Ref_Filter filter;
    std::vector<std::string> hits;
  } kCases[]{
      {{}, {"A.x B.y 00001 00002 N", "A.x C.z 00003 Y", "B.y C.z 00009 N"}},
      {{"A.x", {}, {}}, {"A.x B.y 00001 00002 N", "A.x C.z 00003 Y"}},
      {{"A.x", "C", {}}, {"A.x C.z 00003 Y"}},
      {{{}, {}, "z"}, {"A.x C.z 00003 Y", "B.y C.z 00009 N"}},
      {{"A", {}, {}}, {}},
  };
  for (const auto& c : kCases) {
    std::vector<std::string> hits;
    for (Ref_Cursor cursor; Set_Ref_Fld(text, c.filter, cursor);) {
      const Ref_Record& r = cursor.Record;
      hits.push_back(std::string(r.Caller) + " " + Full_Name(r.Tgt_Mdl, r.Tgt_Mem) + " " +
                     std::string(r.Ref_Lns) + " " + r.Ref_Flg);
    }
    EXPECT_EQ(hits, c.hits);
  }
  for (std::size_t cut = 0; cut <= text.size(); ++cut)  // a damaged text ends the walk
    for (Ref_Cursor cursor; Set_Ref_Fld(std::string_view(text).substr(0, cut), {}, cursor);)
      ASSERT_LE(cursor.Position, cut);
}

}  // namespace
}  // namespace oru::analyser
