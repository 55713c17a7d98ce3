// SPDX-License-Identifier: MIT
// The analysis file: what is written, what is read back, where it lies, and what is refused.
#include "analyser/analysis_file.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <xxhash.h>

#include "analyser/table_text.h"
#include "service/text.h"
#include "support/fake_store.h"
#include "support/project.h"

namespace oru::analyser {
namespace {

constexpr const char* kFile = "C:\\Jobs\\Book1.VMH";

// A project with something of everything, never analysed so far.
struct Kept_Project : test::Project {
  explicit Kept_Project(const std::string& host_file = "C:\\Jobs\\Book1.xlsm")
      : test::Project(host_file) {
    Add("modMain", R"bas(
Option Explicit
Public gName As String ' 名前
Private mJob As clsJob
' 概要：主処理
Sub Main()
    Dim c As New clsJob
    If gName <> "" Then c.Run 1
    Call Sub2
End Sub
Private Sub Sub2()
End Sub
)bas");
    Add("clsJob", R"bas(
Private mNo As Long
Public Property Get No() As Long
    No = mNo
End Property
Public Sub Run(ByVal n As Long)
    mNo = n
    modMain.Sub2
End Sub
)bas",
        host::kType_Class);
    Add_Form("frmInput", "Private Sub cmdOk_Click()\n    Unload Me\nEnd Sub\n",
             {"cmdOk:CommandButton", "txt日付:TextBox"});
    Add("modEmpty", "");
  }
  Anl_Ctx Ctx_With(test::Fake_Store& store) {
    Anl_Ctx ctx = Ctx();
    ctx.Fil = &store;
    return ctx;
  }
  // A run of the driver; the number of modules that were read.
  int Run(test::Fake_Store& store) {
    Anl_Ctx ctx = Ctx_With(store);
    (void)Get_Pgm_Inf(ctx, true);
    return Sta.Mdl_Cnt;
  }
  bool Save(test::Fake_Store& store) {
    Anl_Ctx ctx = Ctx_With(store);
    return Sav_UpdInf(ctx);
  }
  [[nodiscard]] std::string Text() const {
    std::string text;
    const Line_Sink put = [&](std::string_view tag, std::string_view payload) {
      text.append(tag).append(payload).append("\n");
    };
    Put_Lists(Lst, put);
    for (const auto& item : Tbl.Mdl_Tbl) Put_Module_Block(Tbl, *item.value, put);
    Put_Ref_Marks(Tbl, put);
    return text + Tbl.Ref_All;
  }
};

void Fill_Lists(Kept_Lists& lists) {
  lists.Exp_Val = "C:\\出力";
  lists.Dif_Val = "1";
  lists.Mdl_Upd.Add("modMain", "24030506070800012modMain");
  lists.Mem_Upd.Add("modMain.Main", "24030506070800003modMain.Main");
  lists.His.Add("modMain.Main", {"240305060708", 3, "modMain", "Main"});
  lists.His.Add("clsJob.No(Get)", {"", 2, "clsJob", "No(Get)"});
  lists.Sav = {"保存\t1", ""};
  lists.Src = {{{"a\tb", "検索"}, {}, {"third"}}};
  lists.Cnd = {"条件"};
  lists.Ctl = {"modMain.Main\t1"};
}

// The checksum of a text that was changed by hand.
std::string With_Sum(std::string text) {
  text.resize(text.size() - 18);
  return text + fmt::format("{:016x}\r\n", XXH3_64bits(text.data(), text.size()));
}

TEST(Analysis_File, RoundTripKeepsEveryTableAndList) {
  test::Fake_Store store;
  Kept_Project first;
  EXPECT_EQ(first.Run(store), 4);
  Fill_Lists(first.Lst);
  ASSERT_TRUE(first.Save(store));
  EXPECT_FALSE(first.Sta.Anl_Chg);

  Kept_Project second;
  EXPECT_EQ(second.Run(store), 0);
  EXPECT_EQ(second.Text(), first.Text());
  EXPECT_EQ(second.Tbl.MLL, first.Tbl.MLL);
  EXPECT_EQ(second.Tbl.MHL, first.Tbl.MHL);
  EXPECT_EQ(second.Lst.His.At(1)->value.Mom, "240305060708");
  // What was loaded and not changed is the file's already.
  store.calls.clear();
  EXPECT_TRUE(second.Save(store));
  EXPECT_TRUE(store.calls.empty());
  second.Sta.Anl_Chg = true;
  const std::string bytes = store.files[kFile].bytes;
  EXPECT_TRUE(second.Save(store));
  EXPECT_EQ(store.files[kFile].bytes, bytes);
}

TEST(Analysis_File, LinesStandInTheirOrder) {
  test::Fake_Store store;
  test::Project p("C:\\Jobs\\Book1.xlsm");
  p.Add("A", "Dim x\nSub S()\nCall T\nEnd Sub");
  p.Add("B", "Sub T()\nEnd Sub");
  Anl_Ctx ctx = p.Ctx();
  ctx.Fil = &store;
  ASSERT_TRUE(Get_Pgm_Inf(ctx, true));
  p.Lst.Exp_Val = "x";
  p.Lst.Src[2] = {"q"};
  p.Lst.Cnd.assign(kCnd_Rows + 5, "c");
  ASSERT_TRUE(Sav_UpdInf(ctx));
  std::string conditions;
  for (std::size_t i = 0; i < kCnd_Rows; ++i) conditions += "Hc\r\n";
  const std::string expected = "Ver7\r\nFx\r\nG\r\nT2q\r\n" + conditions +
                               "#MdlA\t1\t\t\r\n"
                               "#Mem%Declare\tA\t\t\t\t\t1\t1\t0\t0\t0\t0\r\n"
                               "#MemS\tA\t1\t1\t\t\t2\t3\t0\t0\t0\t0\r\n"
                               "#MLL1\r\n#MHL8\r\n"
                               "#Defx\t2\t5\tVariant\t\t\t\tA\t1\r\n"
                               "#CCdDim xSub S()Call TEnd Sub\r\n"
                               "#Ref%A.S#B.T|00002N\r\n#End\r\n"
                               "#MdlB\t1\t\t\r\n"
                               "#Mem%Declare\tB\t\t\t\t\t1\t0\t0\t0\t0\t0\r\n"
                               "#MemT\tB\t1\t1\t\t\t1\t2\t0\t0\t0\t0\r\n"
                               "#MLL1\r\n#MHL8\r\n"
                               "#CCdSub T()End Sub\r\n"
                               "#Ref\r\n#End\r\n"
                               "#RIfA.S1-\r\n#RIfB.T-1\r\n";
  const std::string& bytes = store.files[kFile].bytes;
  EXPECT_EQ(bytes.substr(0, bytes.rfind("#Sum")), expected);
  EXPECT_EQ(bytes, With_Sum(bytes));
}

// Whatever is lost or put in, the file is refused, and the analysis comes out as without it.
void Expect_Rebuilt(const std::string& bytes, const std::string& text) {
  test::Fake_Store store;
  store.Put(kFile, bytes);
  Kept_Project p;
  EXPECT_EQ(p.Run(store), 4);
  EXPECT_EQ(p.Text(), text);
  EXPECT_FALSE(p.Sta.Fil_Why.empty());
  EXPECT_FALSE(p.Sta.Fil_Bad);  // the rebuilt tables may be saved
}

TEST(Analysis_File, DamageAnywhereIsNeverTrustedInPart) {
  test::Fake_Store store;
  Kept_Project whole;
  (void)whole.Run(store);
  const std::string text = whole.Text();
  ASSERT_TRUE(whole.Save(store));
  const std::string bytes = store.files[kFile].bytes;
  for (std::size_t cut = 1; cut < bytes.size(); cut += 13) {
    SCOPED_TRACE(fmt::format("cut at {}", cut));
    Expect_Rebuilt(bytes.substr(0, cut), text);
  }
  for (std::size_t from = 0; from < bytes.size();) {
    SCOPED_TRACE(fmt::format("without the line at {}", from));
    const std::size_t next = bytes.find('\n', from) + 1;
    Expect_Rebuilt(bytes.substr(0, from) + bytes.substr(next), text);
    from = next;
  }
  for (std::size_t at = 0; at < bytes.size(); at += 17) {
    SCOPED_TRACE(fmt::format("another byte at {}", at));
    std::string other = bytes;
    other[at] = static_cast<char>(other[at] ^ 1);
    Expect_Rebuilt(other, text);
  }
  Expect_Rebuilt(bytes + "#RIfx.y11\r\n", text);
  Expect_Rebuilt(std::string(2'000'000, 'x'), text);
  Expect_Rebuilt("Ver7\r\nF\r\nG\r\n#Mdl" + std::string(2'000'000, 'x'), text);
}

// The same with a checksum that fits, as a faulty program would write it.
TEST(Analysis_File, LinesThatDoNotBelongTogetherAreRefused) {
  test::Fake_Store store;
  Kept_Project whole;
  (void)whole.Run(store);
  Fill_Lists(whole.Lst);
  whole.Lst.Ctl.clear();
  ASSERT_TRUE(whole.Save(store));
  const std::string bytes = store.files[kFile].bytes;
  const struct {
    std::string_view what, old, now;
  } kCases[]{
      {"older version", "Ver7", "Ver6"},
      {"unknown list", "\r\nH", "\r\nX"},
      {"unknown tag", "#Def", "#Xyz"},
      {"list out of order", "\r\nG1\r\n", "\r\nSx\r\nG1\r\n"},
      {"no export value", "FC:\\出力\r\n", ""},
      {"update string without line", "M24030506070800012modMain", "M240305060708modMain"},
      {"update string twice", "P2403", "P24030506070800003modMain.main\r\nP2403"},
      {"history without member", "S00003modMain.Main", "S00003modMain"},
      {"search list 3", "T2third", "T3third"},
      {"module row too short", "#MdlmodEmpty\t1\t\t", "#MdlmodEmpty\t1"},
      {"member row too short", "#MemSub2\tmodMain", "#MemSub2 modMain"},
      {"member twice", "#MemSub2", "#MemMain"},
      {"definition row too long", "#DefgName", "#DefgName\t"},
      {"instance row too short", "#InVmJob\tmodMain", "#InVmJob modMain"},
      {"control row too short", "#CtlcmdOk\t", "#CtlcmdOk "},
      {"control twice", "#Ctltxt日付", "#CtlcmdOk"},
      {"length no number", "#MLL3", "#MLLx"},
      {"no compared text", "#CCdPrivate mNo", "#InVa\tb\tc\td\te\tf\r\n#End"},
      {"block that is not closed", "#End\r\n#MdlclsJob", "#MdlclsJob"},
      {"module twice", "#MdlclsJob", "#MdlmodMain"},
      {"text behind the end of a block", "#End", "#Endx"},
      {"mark of a member that is gone", "#RIfmodMain.Main1-", "#RIfmodMain.Gone1-"},
      {"mark with other flags", "#RIfmodMain.Main1-", "#RIfmodMain.Main11"},
      {"mark too many", "#RIfmodMain.Main1-", "#RIfmodMain.Main1-\r\n#RIfmodMain.Gone1-"},
      {"no line end before the sum", "\r\n#Sum", "#Sum"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    std::string changed = bytes;
    const std::size_t at = changed.find(c.old);
    ASSERT_NE(at, std::string::npos);
    changed.replace(at, c.old.size(), c.now);
    store.Put(kFile, With_Sum(changed));
    Kept_Project p;
    EXPECT_EQ(p.Run(store), 4);
    EXPECT_FALSE(p.Sta.Fil_Why.empty());
    EXPECT_TRUE(p.Lst.His.Empty());
  }
}

TEST(Analysis_File, OnlyWhatChangedIsReadAgain) {
  test::Fake_Store store;
  Kept_Project first;
  (void)first.Run(store);
  first.Lst.Ctl = {"modMain.Main\tx", "modMain.Gone\tx", "odd"};
  ASSERT_TRUE(first.Save(store));
  store.files[kFile].date = {2024, 2, 29, 23, 59, 58};

  Kept_Project second;
  second.Code("clsJob").InsertLines(1, "' note");
  second.Remove("frmInput");
  EXPECT_EQ(second.Run(store), 1);
  EXPECT_TRUE(second.Sta.Del_Chg);
  EXPECT_EQ(second.Lst.Ctl, std::vector<std::string>{"modMain.Main\tx"});
  EXPECT_EQ(second.Sta.Anl_New, "240305060708");  // of the run that found the change
  EXPECT_EQ(second.Sta.Lod_Dat, "240305060708");

  Kept_Project unchanged;
  EXPECT_EQ(unchanged.Run(store), 0);
  EXPECT_EQ(unchanged.Sta.Anl_New, "240229235958");  // of the file
}

// The compared text does not show a blank line that only moved; the lines of the references do.
TEST(Analysis_File, BlankLineMovedMeanwhileIsSeen) {
  test::Fake_Store store;
  const auto make = [](std::string_view text) {
    auto p = std::make_unique<test::Project>("C:\\Jobs\\Book1.xlsm");
    p->Add("A", text);
    return p;
  };
  const auto run = [&](test::Project& p) {
    Anl_Ctx ctx = p.Ctx();
    ctx.Fil = &store;
    (void)Get_Pgm_Inf(ctx, true);
    const int read = p.Sta.Mdl_Cnt;
    EXPECT_TRUE(Sav_UpdInf(ctx));
    return read;
  };
  EXPECT_EQ(run(*make("Sub S()\n\nx = 1\nCall T\nEnd Sub\nSub T()\nEnd Sub\n\n")), 1);
  const auto moved = make("Sub S()\nx = 1\n\nCall T\nEnd Sub\nSub T()\nEnd Sub\n\n");
  EXPECT_EQ(run(*moved), 1);
  const auto taken = make("Sub S()\nx = 1\nCall T\nEnd Sub\nSub T()\nEnd Sub\n\n");
  EXPECT_EQ(run(*taken), 1);
}

TEST(Analysis_File, LiesBesideTheProjectUnlessTheOptionsSayOtherwise) {
  test::Fake_Store store;
  store.folders = {"D:\\Anl"};
  const struct {
    std::string_view what, option, project, upd, work;
  } kCases[]{
      {"beside the workbook", "", "C:\\Jobs\\Book1.xlsm", "C:\\Jobs\\Book1.VMH",
       "C:\\Jobs\\Book1.VMH"},
      {"the other separator", "", "/home/a/Book1.xlsm", "/home/a/Book1.VMH", "/home/a/Book1.VMH"},
      {"a file by option", "D:\\x.vmh", "C:\\Book1.xlsm", "D:\\x.vmh", "D:\\x.vmh"},
      {"a folder by option", "D:\\Anl", "C:\\Book1.xlsm", "D:\\Anl\\Book1.VMH",
       "D:\\Anl\\Book1.VMH"},
      {"a folder to be", "/tmp/a/", "C:\\Book1.xlsm", "/tmp/a/Book1.VMH", "/tmp/a/Book1.VMH"},
      {"on a share", "", "\\\\srv\\a\\Book1.xlsm", "\\\\srv\\a\\Book1.VMH", "/data/Book1.VMH"},
      {"a share by option", "\\\\srv\\x\\", "C:\\Book1.xlsm", "\\\\srv\\x\\Book1.VMH",
       "/data/Book1.VMH"},
      {"never saved", "D:\\x.vmh", "", "", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    const Anl_Paths paths =
        Get_Anl_Paths(store, std::string(c.option), std::string(c.project), "Book1", "/data");
    EXPECT_EQ(paths.Upd_FP, c.upd);
    EXPECT_EQ(paths.Upd_WP, c.work);
    EXPECT_EQ(paths.Remote, c.upd != c.work);
  }
}

TEST(Analysis_File, SystemFoldersAreLeftAlone) {
  for (const auto& [path, system] : std::vector<std::pair<std::string_view, bool>>{
           {"C:\\Users\\a\\XLSTART\\Book1.VMH", true},
           {"C:\\PROGRAM FILES (x86)\\x\\Book1.VMH", true},
           {"/mnt/c/Program Files/Book1.VMH", true},
           {"C:\\Users\\a\\AppData\\Microsoft\\AddIns\\Book1.VMH", true},
           {"C:\\Jobs\\MyMicrosoft\\Book1.VMH", false},
           {"C:\\ProgramFiles\\Book1.VMH", false}})
    EXPECT_EQ(Is_System_Path(path), system) << path;

  test::Fake_Store store;
  Kept_Project p("C:\\Program Files\\Book1.xlsm");
  EXPECT_EQ(p.Run(store), 4);
  EXPECT_FALSE(p.Save(store));
  EXPECT_FALSE(p.Save(store));  // once for each attempt
  ASSERT_EQ(p.Ui.messages.size(), 2U);
  EXPECT_EQ(
      p.Ui.messages[0].text,
      "  システム関連フォルダに保存するプロジェクトの解析情報は保存されません。    \r\nプロジェクト名：Book1");
  EXPECT_EQ(p.Ui.messages[0].icon, service::Icon::Warning);
  p.Srv.Opt.Set_Number("NoSysSv", 1);
  EXPECT_FALSE(p.Save(store));
  EXPECT_EQ(p.Ui.messages.size(), 2U);
  EXPECT_TRUE(store.files.empty());
}

TEST(Analysis_File, NetworkShareIsWorkedOnInACopyThatGoesAgain) {
  const std::string server = "\\\\srv\\a\\Book1.VMH", work = "D:\\data/Book1.VMH";
  test::Fake_Store store;
  Kept_Project first("\\\\srv\\a\\Book1.xlsm");
  first.Srv.Data_Folder = "D:\\data";
  (void)first.Run(store);
  store.calls.clear();
  ASSERT_TRUE(first.Save(store));
  const std::string copy = work.substr(0, 7) + "\\Book1.VMH";
  EXPECT_EQ(store.calls, (std::vector<std::string>{
                             "Write " + copy, "Copy " + copy + " -> " + server, "Delete " + copy}));
  EXPECT_TRUE(store.Has(server));
  EXPECT_FALSE(store.Has(copy));

  store.calls.clear();
  Kept_Project second("\\\\srv\\a\\Book1.xlsm");
  second.Srv.Data_Folder = "D:\\data";
  EXPECT_EQ(second.Run(store), 0);
  EXPECT_EQ(store.calls, (std::vector<std::string>{"Copy " + server + " -> " + copy, "Read " + copy,
                                                   "Delete " + copy}));
  // A server that refuses: the user is told where his analysis is, and nothing is lost.
  store.refused = {server};
  second.Sta.Anl_Chg = true;
  EXPECT_FALSE(second.Save(store));
  ASSERT_EQ(second.Ui.messages.size(), 1U);
  EXPECT_NE(second.Ui.messages[0].text.find(copy), std::string::npos);
  EXPECT_TRUE(store.Has(copy));
  EXPECT_TRUE(second.Sta.Anl_Chg);
}

TEST(Analysis_File, TeamsFolderGivesAndTakesTheNewerFile) {
  test::Fake_Services data;
  const std::string shared = "E:\\team\\Book1.VMH";
  const std::string list = service::Path_Text(data.folder / "CommonAFL.txt");
  test::Fake_Store store;
  store.Put(list, "E:\\team\r\nother\r\n");
  store.folders = {"E:\\team"};
  store.now = {2024, 3, 1, 0, 0, 0};
  Kept_Project first;
  first.Srv.Data_Folder = data.folder.Path();
  (void)first.Run(store);
  ASSERT_TRUE(first.Save(store));
  ASSERT_TRUE(store.Has(shared));  // a missing file always loses
  EXPECT_EQ(store.files[shared].bytes, store.files[kFile].bytes);

  // The team's copy is newer: it is taken.
  store.files[kFile].bytes = "rubbish";
  store.files[shared].date = {2024, 3, 1, 0, 0, 1};
  Kept_Project second;
  second.Srv.Data_Folder = data.folder.Path();
  EXPECT_EQ(second.Run(store), 0);
  // The own one is older than a copy that somebody else brought meanwhile: it stays out of it.
  store.files[shared].date = {2024, 3, 9, 0, 0, 0};
  second.Sta.Anl_Chg = true;
  store.calls.clear();
  ASSERT_TRUE(second.Save(store));
  EXPECT_EQ(store.calls, std::vector<std::string>{std::string("Write ") + kFile});
  // Without the folder the feature is off.
  store.folders.clear();
  Kept_Project third;
  third.Srv.Data_Folder = data.folder.Path();
  store.files[kFile].bytes = "rubbish";
  EXPECT_EQ(third.Run(store), 4);
}

TEST(Analysis_File, ProjectChangeSavesTheOldOneFirst) {
  test::Fake_Store store;
  Kept_Project p;
  (void)p.Run(store);
  ASSERT_FALSE(store.Has(kFile));
  p.Lst.Exp_Val = "of Book1";
  host::Component_Data other;
  other.name = "modOther";
  p.Editor.Add_Project("VBAProject", "C:\\Jobs\\Book2.xlsm").Add_Component(std::move(other));
  EXPECT_EQ(p.Run(store), 1);
  EXPECT_NE(store.files[kFile].bytes.find("Fof Book1\r\n"), std::string::npos);
  EXPECT_EQ(p.Lst.Exp_Val, "");
  EXPECT_EQ(p.Srv.Prj_Nam, "Book2");
}

TEST(Analysis_File, AnotherProgramsFileIsNotOverwritten) {
  test::Fake_Store store;
  Kept_Project p;
  (void)p.Run(store);
  store.Put(kFile, "theirs");
  EXPECT_FALSE(p.Save(store));
  EXPECT_EQ(store.files[kFile].bytes, "theirs");
  ASSERT_EQ(p.Ui.messages.size(), 1U);
  EXPECT_NE(p.Ui.messages[0].text.find(kFile), std::string::npos);
  EXPECT_TRUE(p.Sta.Anl_Chg);
}

TEST(Analysis_File, TraceTellsPathsTimesAndRefusals) {
  test::Temp_Folder folder;
  test::Fake_Store store;
  Kept_Project p;
  p.Srv.Sw.Trace = true;
  p.Srv.Trace.Path = folder / "Trcfile.TXT";
  store.Put(kFile, "Ver6\r\n");
  (void)p.Run(store);
  ASSERT_TRUE(p.Save(store));
  const std::string trace = folder.Get("Trcfile.TXT");
  const std::string rule(77, '-');
  for (const std::string& line :
       {"Lod_UpdInf IN  " + rule, "MSI_UpdFP=|" + std::string(kFile) + "|",
        "my_UpdWP =|" + std::string(kFile) + "|",
        std::string("Lod_UpdInf Error!! (line 1: another version)"),
        std::string("Lod_UpdInf Out | Load.Time=0Ms"), "Sav_UpdInf IN  " + rule,
        std::string("Sav_UpdInf Out | Save.Time=0Ms")})
    EXPECT_NE(trace.find("240305-060708 " + line + "\r\n"), std::string::npos) << line;
}

}  // namespace
}  // namespace oru::analyser
