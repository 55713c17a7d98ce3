// SPDX-License-Identifier: MIT
// Which line belongs to which procedure: small modules annotated line by line.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/derived.h"
#include "host/memory_editor.h"
#include "service/text.h"

namespace oru::host {
namespace {

struct Case {
  std::string_view what;
  /// Each line: the member that owns it ("-" the declaration section; a second procedure of the
  /// same name has a "'" behind it), "*" at the header's line, "|", the text.
  std::string_view module;
};

struct Expected_Line {
  std::string owner;
  bool is_body = false;
  std::string text;
};

std::vector<Expected_Line> Read(std::string_view module) {
  std::vector<Expected_Line> lines;
  if (module.starts_with('\n')) module.remove_prefix(1);
  for (const std::string_view line : service::Split(module, "\n")) {
    if (line.empty()) continue;
    const std::size_t bar = line.find('|');
    std::string_view owner = line.substr(0, bar);
    const bool is_body = owner.ends_with('*');
    if (is_body) owner.remove_suffix(1);
    lines.push_back({std::string(owner), is_body, std::string(line.substr(bar + 1))});
  }
  return lines;
}

std::string Text_Of(const std::vector<Expected_Line>& lines) {
  std::string text;
  for (const Expected_Line& line : lines) text += line.text + "\r\n";
  return text;
}

void Check(const Case& each) {
  SCOPED_TRACE(each.what);
  const auto lines = Read(each.module);
  Memory_Editor editor;
  Memory_Component& component =
      editor.Add_Project("P", "Book1.xlsm").Add_Component({.name = "M", .text = Text_Of(lines)});
  const CodeModule& module = *component.CodeModule();
  ASSERT_EQ(module.CountOfLines(), static_cast<int>(lines.size()));

  const auto count = [&](std::string_view owner) {
    int n = 0;
    for (const auto& line : lines) n += line.owner == owner;
    return n;
  };
  EXPECT_EQ(module.CountOfDeclarationLines(), count("-"));
  int top = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    SCOPED_TRACE("line " + std::to_string(number) + ": " + lines[i].text);
    const std::string& owner = lines[i].owner;
    const Member_Place place = Get_CML_Inf(module, number);
    if (owner == "-") {
      EXPECT_EQ(place.Nam, "%Declare");
      EXPECT_EQ(place.Cnt, count("-"));
      continue;
    }
    if (i == 0 || lines[i - 1].owner != owner) top = number;
    int body = top;
    while (!lines[static_cast<std::size_t>(body) - 1].is_body) ++body;
    EXPECT_EQ(place.Nam, owner.substr(0, owner.find('\'')));
    EXPECT_EQ(place.Top, top);
    EXPECT_EQ(place.Bdy, body);
    EXPECT_EQ(place.Cnt, count(owner));
    if (owner.ends_with('\'')) continue;
    EXPECT_EQ(module.ProcStartLine(place.Prc_Nam, place.Prc_Knd), top);
    EXPECT_EQ(module.ProcBodyLine(place.Prc_Nam, place.Prc_Knd), body);
    EXPECT_EQ(module.ProcCountLines(place.Prc_Nam, place.Prc_Knd), count(owner));
  }
}

TEST(Partition, Sections) {
  const Case cases[] = {
      {"no procedure: all is declarations", R"bas(
-|Option Explicit
-|
-|' end
)bas"},
      {"only comments above the header: no section", R"bas(
A|
A|' about A
A|Rem more
A*|Sub A()
A|End Sub
)bas"},
      {"the section ends at its last line of code", R"bas(
-|Option Explicit
-|' inside
-|Dim a
A|
A|rem about A
A|REM
A*|Public Sub A()
A|  x = 1
A|End Sub
B|
B|' about B
B*|Private Function B(c As String) As Long
B|End Function
B|
B|' the end
)bas"},
      {"a word that only begins with Rem is code", R"bas(
-|Remark = 1
A*|Sub A()
A|End Sub
)bas"},
      {"a comment goes on behind its mark", R"bas(
-|Dim a ' note _
A|Dim b _
A|Sub X()
A|' one _
A|Sub Y()
A|Rem two _
A|End Sub
A*|Sub A()
A|End Sub
)bas"},
      {"a remark behind a colon", R"bas(
-|Dim a: Rem note _
A|Sub X()
A*|Sub A()
A|End Sub
)bas"},
      {"a comment that ends a continued statement stays with it", R"bas(
-|Const a = 1 _
-|  ' one
A|' about A
A*|Sub A()
A|End Sub
)bas"},
      {"no continuation without a blank before the mark", R"bas(
A|' one_
A*|Sub A()
A|End Sub
)bas"},
  };
  for (const Case& each : cases) Check(each);
}

TEST(Partition, Headers) {
  const Case cases[] = {
      {"modifiers, letter case, and blanks", R"bas(
A*|	public  STATIC   sub A
A|END   SUB
B*|Friend Static Function B%(c)
B|End Function
G*|Global Sub G()
G|End Sub
S*|Static Sub S() ' note
S|End Sub
)bas"},
      {"the legs of a property are three procedures", R"bas(
P(Get)*|Property Get P() As Long
P(Get)|End Property
P(Let)*|Public Property Let P(v As Long)
P(Let)|End Property
P(Set)*|Private Static Property Set P(v As Object)
P(Set)|End Property
)bas"},
      {"Japanese names", R"bas(
集計_1*|Sub 集計_1()
集計_1|End Sub
ｶﾅ*|Function ｶﾅ$(行 As Long)
ｶﾅ|End Function
)bas"},
      {"no headers", R"bas(
-|Private Declare PtrSafe Function A Lib "x" () As Long
-|Public Declare Sub B Lib "x" ()
-|Declare Function C Lib "x" ()
-|Public Event Sub1(x)
-|Private Type Property1
-|  Property As Long
-|End Type
-|Dim Sub1, Function2
-|s = "Sub X()": t = "a"": Sub Y()": ' : Sub Z()
-|Sub
-|Property Get
-|Public Enum E: End Enum
)bas"},
      {"a continued header", R"bas(
-|Dim a
A|' about A
A*|Public _
A|  Static _
A|  Sub _
A|    A( _
A|    b) ' c
A|End Sub
P(Let)*|Property _
P(Let)|Let P(v)
P(Let)|End _
P(Let)| Property
Q*|Sub Q()
Q|End Sub
)bas"},
      {"behind numbers, labels and other statements", R"bas(
A*|10 Sub A()
A|100: x = 1
A|200 End Sub
B*|Dim b: Function B()
B|Done: End Function
C*|Sub C()
C|x = 1: End Sub ' over
D*|Sub D(): Call E(a:=1): End Sub
E*|Sub E(): x = "End Sub": y = 1
E|300: End Sub: Sub No()
F*|10: Sub F()
F|End Sub: Rem over _
F|Sub Inside()
F|' last
)bas"},
  };
  for (const Case& each : cases) Check(each);
}

TEST(Partition, EndsAndUnclosedOnes) {
  const Case cases[] = {
      {"two headers around one body are one procedure", R"bas(
-|Dim a
-|#If VBA7 Then
A*|Function A(x As LongPtr)
A|#Else
A|Function A(x As Long)
A|#End If
A|End Function
B*|Sub B()
B|End Sub
)bas"},
      {"an unclosed procedure runs to the next end", R"bas(
A*|Sub A()
A|  x = 1
A|Sub B()
A|End Sub
C*|Sub C()
C|End Sub
)bas"},
      {"an unclosed procedure runs to the module's end", R"bas(
A*|Sub A()
A|End Sub
B*|Sub B()
B|Sub C()
B|End If
)bas"},
      {"stray ends do nothing", R"bas(
-|End Sub
A|
A*|Sub A()
A|End Sub
B|End Function
B*|Sub B()
B|End Sub
B|End Sub
B|x = 1
)bas"},
      {"other kinds of end", R"bas(
A*|Sub A()
A|If x Then End
A|End If: End With
A|End
A|  EndSub = 1
A|x.End Sub
A|#End If
A|s = "End Sub" ' End Sub
A|' End Sub
A|End Function 'closes it all the same
)bas"},
      {"one-line procedures", R"bas(
A*|Sub A(): End Sub
B*|Sub B(): End Sub
B|
)bas"},
  };
  for (const Case& each : cases) Check(each);
}

TEST(Partition, SameNames) {
  const Case cases[] = {
      {"neighbours of one name", R"bas(
-|#If Win64 Then
A*|Sub A()
A|End Sub
A'|#Else
A'|' other
A'*|Public _
A'|Sub A()
A'|  x = 1
A'|End Sub
A''*|Sub A(): End Sub
B|#End If
B*|Sub B()
B|End Sub
)bas"},
      {"one of the name at the end of the module", R"bas(
A*|Sub A()
A|End Sub
B*|Sub B()
B|End Sub
A'|'
A'*|Sub A()
A'|End Sub
A''*|Sub A()
A''|End Sub
A''|' last
)bas"},
      {"an unclosed one of the name at the end", R"bas(
A*|Sub A()
A|End Sub
A'*|Sub A()
A'|Sub A()
)bas"},
      {"another kind has a name of its own", R"bas(
P(Get)*|Property Get P()
P(Get)|End Property
P(Let)*|Property Let P(x)
P(Let)|End Property
P(Get)'*|Property Get P()
P(Get)'|End Property
)bas"},
  };
  for (const Case& each : cases) Check(each);
}

/// Far from its beginning, a line can only be judged from where its statement begins.
TEST(Partition, SameNamesAroundALongStatement) {
  std::string text = "Sub A()\nEnd Sub\nSub A()\nx = f(b, _\n";
  for (int i = 0; i < 300; ++i) text += "End Sub, _\n";
  text += "c)\nEnd Sub\nSub A()\nEnd Sub\n";
  Memory_Editor editor;
  const CodeModule& module =
      *editor.Add_Project("P", "B").Add_Component({.name = "M", .text = text}).CodeModule();
  for (int line = 3; line <= 308; ++line) {
    SCOPED_TRACE(line);
    const Member_Place place = Get_CML_Inf(module, line);
    const bool is_last = line > 306;
    EXPECT_EQ(place.Top, is_last ? 307 : 3);
    EXPECT_EQ(place.Bdy, is_last ? 307 : 3);
    EXPECT_EQ(place.Cnt, is_last ? 2 : 304);
  }
}

TEST(Partition, AsksForWhatIsNotThere) {
  Memory_Editor editor;
  Memory_Project& project = editor.Add_Project("P", "Book1.xlsm");
  const CodeModule& module =
      *project.Add_Component({.name = "M", .text = "Sub A()\nEnd Sub\nProperty Get P()\n"})
           .CodeModule();
  EXPECT_EQ(module.ProcStartLine("a", ProcKind::Proc), 1);
  EXPECT_EQ(module.ProcBodyLine("p", ProcKind::Get), 3);
  const struct {
    std::string_view name;
    ProcKind kind;
  } missing[] = {{"P", ProcKind::Proc},
                 {"P", ProcKind::Let},
                 {"A", ProcKind::Get},
                 {"", ProcKind::Proc},
                 {"B", ProcKind::Proc}};
  for (const auto& each : missing) {
    SCOPED_TRACE(each.name);
    try {
      (void)module.ProcCountLines(each.name, each.kind);
      ADD_FAILURE() << "no error";
    } catch (const Host_Error& error) {
      EXPECT_EQ(error.number, kErr_No_Procedure);
    }
  }
  const CodeModule& empty = *project.Add_Component({.name = "Empty"}).CodeModule();
  EXPECT_EQ(empty.CountOfDeclarationLines(), 0);
  EXPECT_EQ(Get_CML_Inf(empty, 1).Nam, "%Declare");
  EXPECT_THROW((void)empty.ProcOfLine(1), Host_Error);
}

}  // namespace
}  // namespace oru::host
