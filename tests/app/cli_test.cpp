// SPDX-License-Identifier: MIT
// The program as a user runs it: arguments in, standard output, standard error and exit code out.
#include "app/cli/cli.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/output.h"
#include "app/run_oru.h"
#include "service/text.h"
#include "support/book_maker.h"
#include "support/fakes.h"

namespace oru::app {
namespace {

namespace fs = std::filesystem;

std::string Whole(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Each case is a folder with a project, the arguments ("PROJECT" stands for the project's path),
// and what comes out. They were read line by line before they were taken in.
TEST(Cases, PrintWhatWasReviewed) {
  const fs::path root = ORU_SOURCE_DIR "/tests/cases";
  std::vector<fs::path> folders;
  for (const auto& entry : fs::recursive_directory_iterator(root))
    if (entry.path().filename() == "cmd") folders.push_back(entry.path().parent_path());
  std::sort(folders.begin(), folders.end());
  ASSERT_FALSE(folders.empty());
  for (const fs::path& folder : folders) {
    SCOPED_TRACE(folder.lexically_relative(root).string());
    std::string command = Whole(folder / "cmd");
    while (command.ends_with('\n')) command.pop_back();
    // Cases of one folder may share the project above them.
    const fs::path own = folder / "project";
    const std::string project = Copy_Of(fs::exists(own) ? own : folder.parent_path() / "project",
                                        folder.lexically_relative(root).string() + "/project");
    std::vector<std::string> arguments;
    for (const std::string_view word : service::Split(command, " "))
      arguments.push_back(word == "PROJECT" ? project : std::string(word));
    // The second run takes the analysis from its file, and must not differ.
    for (const char* turn : {"analysed", "from the analysis file"}) {
      SCOPED_TRACE(turn);
      const Ran run = Oru(arguments);
      EXPECT_EQ(run.out, Whole(folder / "out.txt"));
      EXPECT_EQ(service::Replace_All(run.err, project, "PROJECT"), Whole(folder / "err.txt"));
      const std::string code = Whole(folder / "code");
      EXPECT_EQ(run.code, code.empty() ? 0 : std::stoi(code));
    }
  }
}

TEST(Cli, ExitCodesTellWhatWentWrong) {
  test::Temp_Folder folder;
  const std::string empty = folder.Path().string();
  const std::string sample = Sample();
  const struct {
    std::string_view what;
    std::vector<std::string> arguments;
    int code;
    std::string_view in_err;
  } kCases[]{
      {"no command", {}, kExit_Usage, "oru --help"},
      {"an unknown command", {"frobnicate"}, kExit_Usage, "oru --help"},
      {"an unknown option", {"analyse", sample, "--no-such"}, kExit_Usage, "--no-such"},
      {"no project", {"analyse"}, kExit_Usage, "PROJECT"},
      {"two forms of output",
       {"list", "modules", sample, "--tsv", "--json"},
       kExit_Usage,
       "--json"},
      {"a data folder that is not there",
       {"analyse", sample, "--data", empty + "/none"},
       kExit_Usage,
       "none"},
      {"a project that is not there", {"analyse", empty + "/none"}, kExit_Project, "none"},
      {"a folder without modules", {"analyse", empty}, kExit_Project, empty},
      {"an unknown code page", {"analyse", sample, "--codepage", "12345"}, kExit_Project, "12345"},
      {"an unknown member", {"refs", sample, "modMain.Nope"}, kExit_Not_Found, "modMain.Nope"},
      {"an unknown module",
       {"list", "procedures", sample, "--module", "Nope"},
       kExit_Not_Found,
       "Nope"},
      {"an unknown filter",
       {"list", "modules", sample, "--filter", "report"},
       kExit_Not_Found,
       "class クラスモジュール"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    const Ran run = Oru(c.arguments);
    EXPECT_EQ(run.code, c.code);
    EXPECT_NE(run.err.find(c.in_err), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
  }
}

TEST(Cli, AWorkbookIsAProject) {
  const test::Temp_Folder folder;
  test::Made_Project made;
  made.modules = {{"ThisWorkbook", "Document"},
                  {"Sheet1", "Document"},
                  {"modMain", "Module", "Sub Run()\r\nEnd Sub\r\n"}};
  const std::string book = folder.Put("b.xlsm", test::Make_Xlsm(made)).string();
  const std::string out = (folder / "out").string();

  const Ran list = Oru({"list", "modules", book, "--tsv"});
  EXPECT_EQ(list.code, kExit_Ok) << list.err;
  for (const std::string_view told : {"ThisWorkbook", "受注", "modMain"})
    EXPECT_NE(list.out.find(told), std::string::npos) << list.out;

  EXPECT_EQ(Oru({"extract", book, out, "--tsv"}).out,
            "file\tresult\nThisWorkbook.cls\t書き出し\nSheet1.cls\t書き出し\n"
            "modMain.bas\t書き出し\n");
  folder.Put("out/modMain.bas", "Attribute VB_Name = \"modMain\"\r\nSub Go()\r\nEnd Sub\r\n");
  EXPECT_EQ(Oru({"import", out, book, "--tsv"}).out,
            "module\tresult\nmodMain\t取り込み\nSheet1\t変更なし\nThisWorkbook\t変更なし\n");
  EXPECT_NE(Oru({"list", "procedures", book, "--tsv"}).out.find("Go"), std::string::npos);

  made.project_lines = "GC=\"0002101311131113\"\r\n";
  const Ran locked = Oru({"analyse", folder.Put("locked.xlsm", test::Make_Xlsm(made)).string()});
  EXPECT_EQ(locked.code, kExit_Project);
  EXPECT_NE(locked.err.find("locked.xlsm"), std::string::npos) << locked.err;

  folder.Put("out/modMain.bas", "' another\r\n");
  EXPECT_EQ(Oru({"extract", book, out}).code, kExit_Output);
  EXPECT_EQ(Oru({"extract", out, out}).code, kExit_Project);
  folder.Put("~$b.xlsm", "");
  EXPECT_EQ(Oru({"import", out, book}).code, kExit_Output);
}

TEST(Cli, SearchReplaceAndUndo) {
  const test::Temp_Folder folder;
  const std::string source =
      "Attribute VB_Name = \"M\"\r\nSub A()\n    Tanka = 1 'Tanka\r\n    x = TANKA\r\nEnd Sub\r\n";
  folder.Put("p/m.bas", source);
  const std::string project = (folder / "p").string();
  const auto search = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"search", project});
    return Oru(more);
  };
  EXPECT_EQ(search({"tanka", "--tsv"}).out,
            "module\tprocedure\tfile\tline\trelative\tnames\ttext\n"
            "M\tA\tm.bas\t2\t2\t\t    Tanka = 1 'Tanka\n"
            "M\tA\tm.bas\t3\t3\t\t    x = TANKA\n");
  EXPECT_EQ(search({"Tanka", "--exact", "--binary", "--no-comments"}).out,
            "  M\n     A\n     2|    Tanka = 1 'Tanka\n\n ");
  const struct {
    std::vector<std::string> more;
    int code;
    std::string_view in_err;
  } kCases[] = {
      {{"zzz"}, kExit_Not_Found, "●検索条件に該当する文はありません"},
      {{}, kExit_Usage, "検索文字列を指定してください"},
      {{"x", "--kind", "nothing"}, kExit_Usage, "nothing"},
      {{"(", "--kind", "pattern"}, kExit_Usage, "パターン文字列に誤り"},
      {{"A", "--kind", "18"}, kExit_Usage, "参照されていません"},
      {{"x", "--module", "N"}, kExit_Not_Found, "「N」"},
      {{"--kind", "type", "--procedure", "M.A"}, kExit_Usage, "範囲"},
      {{"tanka", "--html", project + "/m.bas"}, kExit_Output, "m.bas"},
  };
  for (const auto& c : kCases) {
    const Ran run = search(c.more);
    EXPECT_EQ(run.code, c.code) << c.in_err;
    EXPECT_NE(run.err.find(c.in_err), std::string::npos) << run.err;
  }
  EXPECT_EQ(search({"tanka", "--html", (folder / "r.html").string(), "--rtf",
                    (folder / "r.rtf").string()})
                .code,
            kExit_Ok);
  EXPECT_NE(folder.Get("r.html").find("<html"), std::string::npos);
  EXPECT_TRUE(folder.Get("r.rtf").starts_with("{\\rtf1"));

  const std::vector<std::string> replace = {"replace", project, "Tanka", "単価", "--exact"};
  const Ran shown = Oru(replace);
  EXPECT_EQ(shown.out,
            "m.bas:2\n-    Tanka = 1 'Tanka\n+    単価 = 1 '単価\n"
            "m.bas:3\n-    x = TANKA\n+    x = 単価\n2 行が変わります。--write で書き込みます。\n");
  EXPECT_EQ(folder.Get("p/m.bas"), source);
  std::vector<std::string> write = replace;
  write.emplace_back("--write");
  EXPECT_EQ(Oru(write).code, kExit_Ok);
  EXPECT_EQ(folder.Get("p/m.bas"),
            "Attribute VB_Name = \"M\"\r\nSub A()\n    \x92P\x89\xBF = 1 '\x92P\x89\xBF\r\n"
            "    x = \x92P\x89\xBF\r\nEnd Sub\r\n");
  EXPECT_EQ(Oru({"undo", project}).code, kExit_Ok);
  EXPECT_EQ(folder.Get("p/m.bas"), source);
  EXPECT_EQ(Oru({"undo", project}).code, kExit_Not_Found);
  EXPECT_EQ(Oru({"replace", project, "Tanka"}).code, kExit_Usage);
  // What could not be taken back is not done: a folder stands where the record has to go.
  fs::create_directory(folder / "p/p.oru-undo");
  EXPECT_EQ(Oru(write).code, kExit_Output);
  EXPECT_EQ(folder.Get("p/m.bas"), source);
  fs::remove(folder / "p/p.oru-undo");
  EXPECT_EQ(Oru({"replace", project, "Tanka", "😀", "--write"}).code, kExit_Output);
  EXPECT_EQ(folder.Get("p/m.bas"), source);
}

TEST(Cli, Outline) {
  const test::Temp_Folder folder;
  folder.Put("p/m.bas",
             "Attribute VB_Name = \"M\"\r\nSub A()\r\n    If x Then\r\n        B\r\n    End If\r\n"
             "End Sub\r\nSub B()\r\nEnd Sub\r\n");
  const std::string project = (folder / "p").string();
  const std::string a =
      "  A  (M)\n     1|Sub A()\n     2|If x Then\n     3|│  B\n     4|End If\n"
      "     5|End Sub\n";
  EXPECT_EQ(Oru({"outline", project, "M.A"}).out, a);
  EXPECT_EQ(Oru({"outline", project, "M", "--no-calls", "--tsv"}).out,
            "module\tprocedure\tline\tdepth\ttext\nM\tA\t1\t0\tSub A()\nM\tA\t2\t0\tIf x Then\n"
            "M\tA\t4\t0\tEnd If\nM\tA\t5\t0\tEnd Sub\nM\tB\t6\t0\tSub B()\n"
            "M\tB\t7\t0\tEnd Sub\n");
  EXPECT_EQ(Oru({"outline", project, "M.A", "--element", "b"}).out, "  A  (M)\n     3|│  B\n");
  EXPECT_EQ(Oru({"outline", project, "M.A", "--element", "b", "--mark"}).out, a);
  EXPECT_EQ(Oru({"outline", project, "M.None"}).code, kExit_Not_Found);
  EXPECT_EQ(Oru({"outline", project, "A", "--show", "x"}).code, kExit_Usage);
  EXPECT_EQ(Oru({"outline", project, "A", "--comments", "above,x"}).code, kExit_Usage);
}

TEST(Cli, Chart) {
  const test::Temp_Folder folder;
  folder.Put(
      "p/m.bas",
      "Attribute VB_Name = \"M\"\r\nSub A()\r\nB\r\nC\r\nEnd Sub\r\nSub B()\r\nC\r\nEnd Sub\r\n"
      "Sub C()\r\nEnd Sub\r\nSub 帳票()\r\nEnd Sub\r\n");
  const std::string project = (folder / "p").string();
  const auto chart = [&](std::vector<std::string> more) {
    std::vector<std::string> all{"chart", project};
    all.insert(all.end(), more.begin(), more.end());
    return Oru(all);
  };
  EXPECT_EQ(chart({"A"}).out, "M\n└ A が呼出しているプロシージャ\n    ├ B\n    │   └ C\n    └ C\n");
  EXPECT_EQ(chart({"M.C", "--callers", "--levels", "1", "--copy"}).out,
            "M\n└ C を参照しているプロシージャ\n    ├ A\n    └ B ＋\n");
  const Ran unreferenced = chart({"M", "--unreferenced"});
  EXPECT_EQ(unreferenced.out, "M\n├ A\n└ 帳票\n");
  EXPECT_NE(unreferenced.err.find("未参照と判定されることがあります"), std::string::npos);
  EXPECT_EQ(chart({"A", "--tsv"}).out,
            "id\tparent\tlevel\tmodule\tprocedure\tmark\terror_section\tcall_lines\tfile\n"
            "1\t0\t0\tM\tA\t\t\t\tm.bas\n2\t1\t1\tM\tB\t\t\t2\tm.bas\n"
            "3\t2\t2\tM\tC\t\t\t6\tm.bas\n4\t1\t1\tM\tC\t\t\t3\tm.bas\n");
  EXPECT_TRUE(chart({"A", "--dot"}).out.starts_with("digraph calls {"));
  const std::string dot = (folder / "a.dot").string(), svg = (folder / "a.svg").string();
  folder.Put("b.dot", "\xD0\xCF\x11\xE0");
  EXPECT_EQ(chart({"A", "--dot", dot, "--svg", svg}).code, kExit_Ok);
  EXPECT_EQ(chart({"A", "--dot", dot}).code, kExit_Ok);
  EXPECT_TRUE(folder.Get("a.dot").starts_with("digraph calls {"));
  EXPECT_NE(folder.Get("a.svg").find(">B</text>"), std::string::npos);
  EXPECT_EQ(chart({"A", "--dot", (folder / "b.dot").string()}).code, kExit_Output);
  EXPECT_EQ(folder.Get("b.dot"), "\xD0\xCF\x11\xE0");
  EXPECT_EQ(chart({"None"}).code, kExit_Not_Found);
  EXPECT_EQ(chart({"None", "--unreferenced"}).code, kExit_Not_Found);
  EXPECT_EQ(chart({"A", "--callers", "--callees"}).code, kExit_Usage);
}

TEST(Cli, JsonIsAListOfObjects) {
  const std::string sample = Sample();
  const auto modules = nlohmann::json::parse(Oru({"list", "modules", sample, "--json"}).out);
  ASSERT_EQ(modules.size(), 26U);
  const auto form = std::find_if(modules.begin(), modules.end(),
                                 [](const auto& m) { return m["name"] == "frmJuchu"; });
  ASSERT_NE(form, modules.end());
  EXPECT_EQ((*form)["type"], 3);
  EXPECT_EQ((*form)["lines"], 220);
  const auto procedures = nlohmann::json::parse(
      Oru({"list", "procedures", sample, "--json", "--filter", "unconfirmed"}).out);
  EXPECT_EQ(procedures.size(), 35U);
  const auto summary = nlohmann::json::parse(Oru({"analyse", sample, "--json"}).out);
  EXPECT_EQ(summary[0]["modules"], 26);
  EXPECT_EQ(summary[0]["unreferenced"], 35);
}

TEST(Output, ColumnsLineUpByDisplayWidth) {
  const Out_Table table{
      {{"名前", "name"}, {"行", "lines", Cell_Type::Number}, {"注", "note", Cell_Type::Text, true}},
      {{"受注", "5", "短い"}, {"abc", "1234", "とても長い\tコメント"}}};
  std::ostringstream wide, narrow, tsv;
  Print_Table(wide, table, Format::Columns, 0);
  EXPECT_EQ(wide.str(), "名前    行  注\n受注     5  短い\nabc   1234  とても長い コメント\n");
  Print_Table(narrow, table, Format::Columns, 22);
  EXPECT_EQ(narrow.str(), "名前    行  注\n受注     5  短い\nabc   1234  とても長…\n");
  Print_Table(tsv, table, Format::Tsv, 22);
  EXPECT_EQ(tsv.str(), "name\tlines\tnote\n受注\t5\t短い\nabc\t1234\tとても長い コメント\n");
}

}  // namespace
}  // namespace oru::app
