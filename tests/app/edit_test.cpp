// SPDX-License-Identifier: MIT
// The commands that rewrite code: what they show, what they write, and what they refuse.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/run_oru.h"
#include "support/book_maker.h"

namespace oru::app {
namespace {

// Code page 932, CR LF and LF mixed, a member attribute, blanks at an end.
const std::string kBytes =
    "Attribute VB_Name = \"M\"\r\nOption Explicit\r\nSub A() '\x8E\xF3\x92\x8D\r\n"
    "Attribute A.VB_Description = \"x\"\r\nDo   \r\nx = y ' a\nLoop\r\nlong_name = 1    ' b\r\nEnd Sub\r\n"
    "Function B()\r\nB = 1\r\nEnd Function\r\n";

class Edit : public ::testing::Test {
 protected:
  Edit() {
    folder_.Put("p/m.bas", kBytes);
    folder_.Put("p/n.bas", "Attribute VB_Name = \"N\"\r\nSub B()\r\nEnd Sub\r\n");
  }
  Ran Run(std::vector<std::string> command, const std::vector<std::string>& more = {}) {
    command.push_back((folder_ / "p").string());
    command.insert(command.end(), more.begin(), more.end());
    return Oru(command);
  }
  std::string Bytes() { return folder_.Get("p/m.bas"); }
  test::Temp_Folder folder_;
};

TEST_F(Edit, ShowsADifferenceAndWritesNothing) {
  const Ran shown = Run({"format"}, {"M.A"});
  EXPECT_EQ(shown.code, kExit_Ok);
  EXPECT_EQ(shown.out,
            "--- m.bas\n+++ m.bas\n@@ -1,9 +1,9 @@\n Option Explicit\n Sub A() '受注\n-Do   \n"
            "-x = y ' a\n-Loop\n-long_name = 1    ' b\n+    Do\n+        x = y ' a\n+    Loop\n"
            "+    long_name = 1    ' b\n End Sub\n Function B()\n B = 1\n");
  EXPECT_NE(shown.err.find("1 個のプロシージャが変わります。--write で書き込みます。"),
            std::string::npos);
  EXPECT_EQ(Bytes(), kBytes);

  const Ran checked = Run({"format"}, {"--check", "--tsv"});
  EXPECT_EQ(checked.code, kExit_Would_Change);
  EXPECT_EQ(checked.out,
            "file\tmodule\tprocedure\tline\tchanged\nm.bas\tM\tA\t3\t4\nm.bas\tM\tB\t9\t1\n");
  EXPECT_EQ(Run({"format"}, {"N", "--check"}).code, kExit_Ok);
  EXPECT_EQ(Bytes(), kBytes);
  EXPECT_FALSE(folder_.Has("p/p.VMH"));
}

TEST_F(Edit, WritesAndTakesBack) {
  const Ran written = Run({"format"}, {"m.a", "M.B", "--indent", "2", "--write"});
  EXPECT_EQ(written.code, kExit_Ok);
  EXPECT_EQ(written.out, "");
  EXPECT_EQ(Bytes(),
            "Attribute VB_Name = \"M\"\r\nOption Explicit\r\nSub A() '\x8E\xF3\x92\x8D\r\n"
            "Attribute A.VB_Description = \"x\"\r\n  Do\r\n    x = y ' a\n  Loop\r\n"
            "  long_name = 1    ' b\r\nEnd Sub\r\nFunction B()\r\n  B = 1\r\nEnd Function\r\n");
  EXPECT_EQ(Run({"format"}, {"M", "--indent", "2", "--write"}).code, kExit_Ok);
  EXPECT_EQ(Run({"undo"}).code, kExit_Ok);
  EXPECT_EQ(Bytes(), kBytes);
}

TEST_F(Edit, SetAndRemovedTheBytesAreTheOldOnes) {
  // What is numbered loses the blanks at its end.
  const std::string trimmed = std::string(kBytes).replace(kBytes.find("Do   "), 5, "Do");
  EXPECT_EQ(Run({"number", "set"}, {"--write"}).code, kExit_Ok);
  EXPECT_NE(Bytes().find("\r\n2: Do   \r\n3: x = y ' a\n4: Loop\r\n"), std::string::npos);
  EXPECT_EQ(Run({"number", "remove"}, {"--write"}).code, kExit_Ok);
  EXPECT_EQ(Bytes(), trimmed);

  const std::vector<std::string> set{"--statement", "Debug.Print \"%MN.%PN\"", "--no-function",
                                     "--write"};
  EXPECT_EQ(Run({"trace", "set"}, set).code, kExit_Ok);
  EXPECT_NE(
      Bytes().find("VB_Description = \"x\"\r\nDebug.Print \"M.A\"    ' %%TraceLine\r\nDo\r\n"),
      std::string::npos);
  EXPECT_EQ(Bytes().find("M.B"), std::string::npos);
  EXPECT_EQ(Run({"trace", "remove"}, {"--write"}).code, kExit_Ok);
  EXPECT_EQ(Bytes(), trimmed);
}

TEST_F(Edit, AStatementIsNotCut) {
  std::string statement(100, 'x');
  EXPECT_EQ(Run({"trace", "set"}, {"--statement", statement, "--check"}).code, kExit_Would_Change);
  statement += "字";
  const Ran run = Run({"trace", "set"}, {"--statement", statement, "--write"});
  EXPECT_EQ(run.code, kExit_Usage);
  EXPECT_NE(run.err.find("100 文字を超えています"), std::string::npos);
  EXPECT_EQ(Bytes(), kBytes);
}

TEST_F(Edit, LinesOfARange) {
  folder_.Put("p/n.bas", "Attribute VB_Name = \"N\"\r\nlong_name = 1 ' a\r\nx = 2 ' b\r\n");
  EXPECT_EQ(Run({"align", "comments"}, {"n:1-2"}).out,
            "--- n.bas\n+++ n.bas\n@@ -1,2 +1,2 @@\n long_name = 1 ' a\n-x = 2 ' b\n"
            "+x = 2         ' b\n");
  EXPECT_EQ(Run({"swap"}, {"M:4", "--write"}).code, kExit_Ok);
  EXPECT_NE(Bytes().find("Do   \r\ny = x ' a\n"), std::string::npos);
  EXPECT_EQ(Run({"align", "as"}, {"M:1-2"}).out, "");
  for (const char* range : {"M", "M:", "M:0-3", "M:5-4", "M:1-99", "M:x-2", "M:2-3-4"})
    EXPECT_EQ(Run({"swap"}, {range}).code, kExit_Usage) << range;
  EXPECT_EQ(Run({"swap"}, {"None:1-2"}).code, kExit_Not_Found);
}

TEST_F(Edit, NamesThatMeanNothingOrTooMuch) {
  EXPECT_EQ(Run({"format"}, {"None"}).code, kExit_Not_Found);
  EXPECT_EQ(Run({"format"}, {"M.None"}).code, kExit_Not_Found);
  const Ran two = Run({"format"}, {"B"});
  EXPECT_EQ(two.code, kExit_Usage);
  EXPECT_NE(two.err.find("M.B N.B"), std::string::npos);
  EXPECT_EQ(Run({"format"}, {"M", "--write", "--check"}).code, kExit_Usage);
}

TEST_F(Edit, OneRefusedProcedureKeepsItsText) {
  std::string deep = "Attribute VB_Name = \"M\"\r\nSub Deep()\r\n";
  for (int i = 0; i < 38; ++i) deep += "Do\r\n";
  deep += "End Sub\r\n";
  folder_.Put("p/m.bas", deep + "Sub C()\r\nx\r\nEnd Sub\r\n");
  const Ran run = Run({"format"}, {"--write"});
  EXPECT_EQ(run.code, kExit_Output);
  EXPECT_NE(run.err.find("「M」の 39 行目で"), std::string::npos) << run.err;
  EXPECT_EQ(Bytes(), deep + "Sub C()\r\n    x\r\nEnd Sub\r\n");
  EXPECT_EQ(Run({"format"}, {"--check"}).code, kExit_Output);
}

TEST_F(Edit, TheTableOfATracedRun) {
  folder_.Put("run.csv",
              "\x83\x82\x83\x57\x83\x85\x81\x5B\x83\x8B\x96\xBC,"
              "\x83\x76\x83\x8D\x83\x56\x81\x5B\x83\x57\x83\x83\x96\xBC,n\r\nM,A,3\r\n");
  EXPECT_EQ(Run({"trace", "table"}, {(folder_ / "run.csv").string()}).out,
            "モジュール名\tプロシージャ名\tコメント\tn\nM\tA\t\t3\n");
  folder_.Put("run.csv", "x,y\n");
  EXPECT_EQ(Run({"trace", "table"}, {(folder_ / "run.csv").string()}).code, kExit_Usage);
}

TEST(Edit_Book, AWorkbookIsWrittenToo) {
  const test::Temp_Folder folder;
  folder.Put("b.xlsm",
             test::Make_Xlsm(test::Made_Project{
                 .modules = {{.name = "M", .source = "Sub A()\r\nx\r\nEnd Sub\r\n"},
                             {.name = "N", .source = "Sub B()\r\n    x\r\nEnd Sub\r\n"}}}));
  const std::string before = folder.Get("b.xlsm"), book = (folder / "b.xlsm").string();
  EXPECT_EQ(Oru({"format", book}).out,
            "--- b.xlsm:M\n+++ b.xlsm:M\n@@ -1,3 +1,3 @@\n Sub A()\n-x\n+    x\n End Sub\n");
  EXPECT_EQ(Oru({"format", book, "--write"}).code, kExit_Ok);
  EXPECT_EQ(Oru({"format", book, "--check"}).code, kExit_Ok);
  EXPECT_NE(folder.Get("b.xlsm"), before);
  EXPECT_EQ(Oru({"undo", book}).code, kExit_Ok);
  EXPECT_EQ(folder.Get("b.xlsm"), before);
}

}  // namespace
}  // namespace oru::app
