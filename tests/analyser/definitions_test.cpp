// SPDX-License-Identifier: MIT
#include "analyser/definitions.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace oru::analyser {
namespace {

// "name scope kind type dim value comment", empty parts as "-", names separated by " ; ".
std::string Defs(std::string_view statement, bool in_declare) {
  std::vector<Def_Found> found;
  Chk_Def_Inf(statement, in_declare, found);
  std::string shown;
  for (const Def_Found& def : found) {
    const Def_Row& r = def.Row;
    if (!shown.empty()) shown += " ; ";
    for (const std::string* part :
         {&r.Def_Nam, &r.Def_Scp, &r.Def_Knd, &r.Def_Typ, &r.Def_Dim, &r.Def_Val, &r.Def_CTx})
      shown += (part == &r.Def_Nam ? "" : "|") + *part;
  }
  return shown;
}

TEST(Definitions, NamesOfADeclarationSection) {
  const struct {
    std::string_view what, in, out;
  } kCases[]{
      {"scope alone declares a variable", "Private x As Long", "x|2|V|Long|||"},
      {"Public and Global", "Global g As String ' 名前", "g|1|V|String|||名前"},
      {"Dim without scope is private here", "Dim a", "a|2|5|Variant|||"},
      {"each name of a list has its own type", "Public a, b As Long, c$",
       "a|1|V|Variant||| ; b|1|V|Long||| ; c|1|V|String|||"},
      {"a comma in bounds does not end the name", "Dim m(1 To 3, 0 To 4) As Byte, n",
       "m|2|5|Byte|(1To3,0To4)|| ; n|2|5|Variant|||"},
      {"a dynamic array", "Private a() As Long", "a|2|V|Long|()||"},
      {"a constant list is one value", "Private Const A = 1, B = 2", "A|2|6|||1, B = 2|"},
      {"a typed constant with a comma in its literal", "Public Const A As String = \"x, y\" 'c",
       "A|1|6|String||\"x, y\"|c"},
      {"a constant without type stays empty", "Const A = 1", "A|2|6|||1|"},
      {"a constant's type character", "Const A$ = \"1\"", "A|2|6|String||\"1\"|"},
      {"As in a literal is seen", "Const A = \"b As c\"", "A|2|6|c\"||\"b As c\"|"},
      {"New vanishes", "Public x As New Class1", "x|1|V|Class1|||"},
      {"Type, Enum and Event", "Private Type T", "T|2|8|Type|||"},
      {"an Enum", "Public Enum E", "E|1|N|Enum|||"},
      {"an Event keeps its parameters", "Public Event Done(ByVal a() As Long)",
       "Done|1|E|Event||(ByVal a() As Long)|"},
      {"WithEvents", "Private WithEvents w As Cls", "w|2|9|Cls|||"},
      {"procedures declare nothing", "Public Function F() As Long", ""},
      {"nor do declares", "Private Declare Sub S Lib \"x\" ()", ""},
      {"a short first word cannot declare", "x = 1", ""},
      {"an element of a Type block", "Name As String", ""},
      {"Dim alone", "Dim", ""},
      {"a scope word alone", "Private", ""},
      {"a line number in front", "10: Dim x As Long", "x|2|5|Long|||"},
      {"fixed length", "Dim s As String * 5", "s|2|5|String|||"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Defs(c.in, true), c.out);
  }
}

TEST(Definitions, LocalNames) {
  const struct {
    std::string_view what, in, out;
  } kCases[]{
      {"Dim is local", "Dim i As Long", "i|4|5|Long|||"},
      {"Static", "Static n%", "n|4|7|Integer|||"},
      {"a colon ends a name without a comma", "Dim a: a = 1", "a|4|5|Variant|||"},
      {"a colon ends the list", "Dim a, b: Dim c", "a|4|5|Variant||| ; b|4|5|Variant|||"},
      {"the first comma counts even behind a colon", "Dim a: Dim b, c",
       "a:|4|5|Variant||| ; c|4|5|Variant|||"},
      {"Friend", "Friend x", "x|3|V|Variant|||"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Defs(c.in, false), c.out);
  }
}

TEST(Definitions, ElementsOfBlocks) {
  const struct {
    std::string_view in, name, type, bounds, comment;
  } kTypes[]{{"Name As String ' 氏名", "Name", "String", "", "氏名"},
             {"  a(1 To 3) As Long", "a", "Long", "(1To3)", ""},
             {"a() As Long", "a", "Long", "(?)", ""},
             {"s As String * 10", "s", "String", "", ""},
             {"n%", "n", "Integer", "", ""}};
  for (const auto& c : kTypes) {
    SCOPED_TRACE(c.in);
    const auto element = Chk_Typ_Inf(c.in);
    ASSERT_TRUE(element.has_value());
    EXPECT_EQ(element->Nam, c.name);
    EXPECT_EQ(element->Typ, c.type);
    EXPECT_EQ(element->Dim, c.bounds);
    EXPECT_EQ(element->CTx, c.comment);
  }
  EXPECT_FALSE(Chk_Typ_Inf("  ' only a comment").has_value());

  long long counter = -1;
  const struct {
    std::string_view in, name;
    long long value;
  } kEnums[]{{"A", "A", 0},          {"B = 10 ' x", "B", 10}, {"C", "C", 11},
             {"D = &HFF", "D", 255}, {"[_E]", "[_E]", 256},   {"F = A + 1", "F", 0}};
  for (const auto& c : kEnums) {
    SCOPED_TRACE(c.in);
    const auto element = Chk_Enm_Inf(c.in, counter);
    ASSERT_TRUE(element.has_value());
    EXPECT_EQ(element->Nam, c.name);
    EXPECT_EQ(element->Val, c.value);
  }
}

}  // namespace
}  // namespace oru::analyser
