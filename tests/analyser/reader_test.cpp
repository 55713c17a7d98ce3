// SPDX-License-Identifier: MIT
#include "analyser/reader.h"

#include <gtest/gtest.h>

#include "service/text.h"

namespace oru::analyser {
namespace {

std::string Read_All(std::string_view text) {
  std::string shown;
  const std::string lines = service::Replace_All(text, "\n", "\r\n");
  for (Stm_Reader reader(lines, 1); reader.Next();) {
    shown += std::to_string(reader.Cur_Lin()) + "+" + std::to_string(reader.Line_Count());
    shown += reader.Kind() == Stm_Kind::Blank     ? "b"
             : reader.Kind() == Stm_Kind::Comment ? "'"
                                                  : "c";
    shown += "[" + reader.Cur_Stm() + "]";
  }
  return shown;
}

TEST(Reader, LinesBecomeStatements) {
  const struct {
    std::string_view what, text, statements;
  } kCases[]{
      {"no text has no statement", "", ""},
      {"each kind", "x = 1\n\n' note", "1+1c[x = 1]2+1b[]3+1'[' note]"},
      {"blanks around a line go, tabs stay", "   x = 1  \n\ty", "1+1c[x = 1]2+1c[\ty]"},
      {"a continuation joins with one blank", "x = 1 + _\n    2\ny", "1+2c[x = 1 + 2]3+1c[y]"},
      {"a comment swallows the next line", "' a _\nx = 1\ny", "1+2'[' a x = 1]3+1c[y]"},
      {"an underscore without a blank does not continue", "x_\ny", "1+1c[x_]2+1c[y]"},
      {"a lone underscore is a statement", "_\ny", "1+1c[_]2+1c[y]"},
      {"what is still open at the end is dropped", "x\ny _", "1+1c[x]"},
      {"a blank line ends a continuation", "x _\n\ny", "1+2c[x ]3+1c[y]"},
      {"Rem is code here", "Rem note", "1+1c[Rem note]"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Read_All(c.text), c.statements);
  }
}

TEST(Reader, LineNumbersComeOff) {
  const struct {
    std::string_view in, out;
  } kCases[]{
      {"10: x = 1", "x = 1"},
      {"10 x = 1", " = 1"},  // one character more goes when there is no colon
      {"10:x", ""},
      {"10 x = \"a:b\"", "10 x = \"a:b\""},  // the first colon stands in the literal
      {"Label: x", "Label: x"},
      {"x = 1", "x = 1"},
      {"10", "10"},
      {": x", ": x"},
      {"１０: x", "x"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.in);
    std::string statement(c.in);
    Del_Label(statement);
    // "10 x = 1" reads "= 1" for whoever trims.
    EXPECT_EQ(service::Trim(statement), service::Trim(c.out));
  }
}

TEST(Reader, CommentsAreSplitOffOutsideLiterals) {
  const struct {
    std::string_view in, code, comment;
  } kCases[]{
      {"x = \"a'b\" ' note", "x = \"a'b\"", "' note"},
      {"x = 1   ' note", "x = 1", "' note"},
      {"x = \"say \"\"it's\"\"\" ' n", "x = \"say \"\"it's\"\"\"", "' n"},
      {"x ' a \"quote\" behind", "x", "' a \"quote\" behind"},
      {"x = \"it's\"", "x = \"it's\"", ""},
      {"  x = 1  ", "x = 1", ""},
      {"  ' only", "  ' only", ""},
      {"Rem it", "Rem it", ""},
      {"'", "'", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.in);
    std::string statement(c.in);
    EXPECT_EQ(Sep_Comment(statement), c.comment);
    EXPECT_EQ(statement, c.code);
  }
}

TEST(Reader, MaskKeepsCharactersAndWidths) {
  const struct {
    std::string_view in, out;
  } kCases[]{
      {"x = \"a: b\" & y", "x = \"????\" & y"},
      {"x = \"受注ｱ1\"", "x = \"？？??\""},
      {"x = \"a\"\"b\"", "x = \"?\"\"?\""},
      {"x = \"open", "x = \"????"},
      {"no literal", "no literal"},
  };
  for (const auto& c : kCases) {
    std::string statement(c.in);
    Rev_Cst_Val(statement);
    EXPECT_EQ(statement, c.out);
    EXPECT_EQ(service::Len_Chr(statement), service::Len_Chr(c.in));
    EXPECT_EQ(service::Len_Wid(statement), service::Len_Wid(c.in));
  }
}

TEST(Reader, ColonsSplitOnlyInsideTheStatement) {
  EXPECT_TRUE(Has_Colon_List("a: b"));
  EXPECT_FALSE(Has_Colon_List("Foo:"));
  EXPECT_FALSE(Has_Colon_List("Foo: "));
  EXPECT_FALSE(Has_Colon_List("x:=1"));
  EXPECT_EQ(Split_Colons("a: b:  : c"), (std::vector<std::string_view>{"a", "b", "c"}));
}

TEST(Reader, TypeCharactersGiveTypes) {
  const struct {
    std::string_view in, name, type;
  } kCases[]{{"a%", "a", "Integer"}, {"a&", "a", "Long"},   {"a@", "a", "Currency"},
             {"a!", "a", "Single"},  {"a#", "a", "Double"}, {"a$", "a", "String"},
             {"$", "$", ""},         {"ab", "ab", ""}};
  for (const auto& c : kCases) {
    std::string name(c.in);
    EXPECT_EQ(Rev_Pic_Val(name), c.type);
    EXPECT_EQ(name, c.name);
  }
}

TEST(Reader, BranchesAndNesting) {
  const struct {
    std::string_view what, code;
    int conditions, nesting;
  } kCases[]{
      {"a one-line If is a condition and no block", "If a Then b", 1, 0},
      {"an If block", "If a Then\nb\nElseIf c Then\nEnd If", 1, 1},
      {"a Select counts once", "Select Case x\nCase 1\nCase 2\nCase Else\nEnd Select", 1, 1},
      {"loops nest", "For i = 1 To 3\nDo While x\nLoop\nNext i\nWhile y\nWend", 3, 2},
      {"Do While counts once", "Do While x\nLoop", 1, 1},
      {"a Loop without a Do stays at 0", "Loop\nFor i = 1 To 2\nNext", 1, 1},
      {"keywords are exact", "if a Then\nEnd if\nWhileX\nEnd With\nWith a", 0, 0},
      {"an If whose last word is another one is a line", "If a Then ' b", 1, 0},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Metrics metrics;
    for (const std::string_view line : service::Split(c.code, "\n")) metrics.Chk_Metrics(line);
    EXPECT_EQ(metrics.Mem_Cpx(), c.conditions);
    EXPECT_EQ(metrics.Mem_Nst(), c.nesting);
  }
}

}  // namespace
}  // namespace oru::analyser
