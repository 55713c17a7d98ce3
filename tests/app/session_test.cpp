// SPDX-License-Identifier: MIT
// The life of a session: what it makes and reads at start, what it needs, in which order it stops,
// and what is left when something is not there.
#include "app/session.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "analyser/table_text.h"
#include "app/file_project.h"
#include "service/files.h"
#include "support/fakes.h"

namespace oru::app {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTemplates = ORU_SOURCE_DIR "/share";

// A folder with a project of two modules, and a session over it.
struct Job {
  test::Temp_Folder folder;
  test::Fake_User_Interface ui;
  test::Fixed_Clock clock;

  Job() {
    folder.Put("Jobs/modMain.bas",
               "Attribute VB_Name = \"modMain\"\r\nSub Main()\r\n    Call Other\r\nEnd Sub\r\n");
    folder.Put("Jobs/modOther.bas",
               "Attribute VB_Name = \"modOther\"\r\nSub Other()\r\n    x = 1\r\nEnd Sub\r\n");
  }
  [[nodiscard]] fs::path Data() const { return folder / "share/Velmo/OruExl"; }
  [[nodiscard]] Session_Options Options() const {
    return {.Data_Folder = Data(), .Program_Folder = kTemplates};
  }
  // One run from start to end; the number of modules that were read, -1 if it did not start.
  int Run(const std::function<void(Session&)>& work = {}) {
    File_Project project;
    EXPECT_EQ(project.Open(folder / "Jobs", 932), "");
    Session session(ui, clock, Options());
    if (!session.AddinInstance_OnConnection(project.Editor, nullptr)) return -1;
    session.Out_Edt = [&](std::string_view module) { return project.Edited_At(module); };
    EXPECT_TRUE(session.Analyse());
    const int read = session.Sta.Mdl_Cnt;
    if (work) work(session);
    session.AddinInstance_OnDisconnection();
    return read;
  }
  // The last message, without its line ends.
  [[nodiscard]] std::string Told() const {
    return ui.messages.empty() ? "" : service::Replace_All(ui.messages.back().text, "\r\n", "");
  }
};

TEST(Session, FirstStartMakesTheDataFolderAndKeepsWhatIsThere) {
  Job job;
  job.folder.Put("share/Velmo/OruExl/DA-KWd.txt", "Mine\r\n");
  EXPECT_EQ(job.Run([](Session& s) {
    EXPECT_TRUE(s.Srv.KWd.Has("Mine"));
    EXPECT_FALSE(s.Srv.KWd.Has("Dim"));
    EXPECT_FALSE(s.Scr.Phrases.empty());
  }),
            2);
  EXPECT_TRUE(job.ui.messages.empty()) << job.Told();
  for (const char* name : {"DA-Sta.VMO", "DA-LPt.txt", "標準書式.doc"})
    EXPECT_EQ(job.folder.Get(std::string("share/Velmo/OruExl/") + name),
              service::Read_File(fs::path(kTemplates) / name).bytes)
        << name;
  EXPECT_EQ(job.folder.Get("share/Velmo/OruExl/DA-KWd.txt"), "Mine\r\n");
  EXPECT_EQ(fs::file_size(job.Data() / "DA-Sys.VMO"), 7168U);
}

TEST(Session, SecondRunReadsOnlyWhatChanged) {
  Job job;
  EXPECT_EQ(job.Run(), 2);
  EXPECT_TRUE(job.folder.Has("Jobs/Jobs.VMH"));
  EXPECT_EQ(job.Run(), 0);
  job.folder.Put("Jobs/modOther.bas",
                 "Attribute VB_Name = \"modOther\"\r\nSub Other()\r\n    x = 2\r\nEnd Sub\r\n");
  EXPECT_EQ(job.Run([](Session& s) {
    EXPECT_EQ(s.View().Prc_Upd_Inf("Other.modOther").substr(12), "00002modOther.Other");
    EXPECT_EQ(s.View().Prc_Upd_Inf("Main.modMain"), "");
  }),
            1);
  EXPECT_EQ(job.Run([](Session& s) { EXPECT_EQ(s.Lst.His.Count(), 1U); }), 0);
}

// The callers of a procedure that moved to another module have not changed themselves.
TEST(Session, NamesThatMovedBetweenRunsAreResolvedAnew) {
  const struct {
    std::string_view what, file, text;
  } kCases[]{
      {"moved to a new module", "Jobs/modNew.bas",
       "Attribute VB_Name = \"modNew\"\r\nSub Other()\r\nEnd Sub\r\n"},
      {"moved to one that was there", "Jobs/modLast.bas",
       "Attribute VB_Name = \"modLast\"\r\nSub Other()\r\nEnd Sub\r\n"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Job job;
    job.folder.Put("Jobs/modLast.bas",
                   "Attribute VB_Name = \"modLast\"\r\nSub Last()\r\nEnd Sub\r\n");
    (void)job.Run();
    job.folder.Put("Jobs/modOther.bas", "Attribute VB_Name = \"modOther\"\r\n");
    job.folder.Put(c.file, c.text);
    (void)job.Run([&](Session& s) {
      const std::string target = std::string(c.file).substr(5, c.file.find('.') - 5) + ".Other";
      EXPECT_EQ(s.Tbl.RIf_Dic.Get(target), analyser::Ref_Marks::kReferred);
      EXPECT_EQ(s.Tbl.RIf_Dic.Get("modOther.Other"), 0U);
    });
    // And a module that went takes the marks of what it called along.
    fs::remove(job.folder / "Jobs/modMain.bas");
    (void)job.Run([&](Session& s) { EXPECT_EQ(s.Tbl.RIf_Dic.Count(), 0U); });
  }
}

TEST(Session, ModuleOfAnotherTypeOrWithOtherControlsIsReadAgain) {
  const auto form = [](std::string_view control) {
    return "VERSION 5.00\r\nBegin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmIn \r\n   Begin MSForms.CommandButton " +
           std::string(control) +
           " \r\n   End\r\nEnd\r\nAttribute VB_Name = \"frmIn\"\r\nSub cmdOk_Click()\r\nEnd Sub\r\n";
  };
  const std::string code = "Sub Later()\r\nEnd Sub\r\n";
  Job job;
  job.folder.Put("Jobs/frmIn.frm", form("cmdNo"));
  job.folder.Put("Jobs/clsA.cls", "VERSION 1.0 CLASS\r\nAttribute VB_Name = \"clsA\"\r\n" + code);
  (void)job.Run();
  EXPECT_EQ(job.Run(), 0);
  job.folder.Put("Jobs/frmIn.frm", form("cmdOk"));
  EXPECT_GT(job.Run([](Session& s) {
    EXPECT_NE((*s.Tbl.Mdl_Tbl.Get("frmIn"))->Ctl.Get("cmdOk"), nullptr);
    // What the user did to the form is no edit of its code.
    EXPECT_EQ(s.View().Prc_Upd_Inf("frmIn"), "");
  }),
            0);
  fs::remove(job.folder / "Jobs/clsA.cls");
  job.folder.Put("Jobs/clsA.bas", "Attribute VB_Name = \"clsA\"\r\n" + code);
  EXPECT_GT(job.Run([](Session& s) {
    EXPECT_EQ(service::Row_Field((*s.Tbl.Mdl_Tbl.Get("clsA"))->Mdl, 1), "1");
  }),
            0);
  EXPECT_EQ(job.Run(), 0);
}

TEST(Session, WhatCannotBeMadeIsToldAndStopsTheStart) {
  const struct {
    std::string_view what, file, told;
  } kCases[]{
      {"maker's folder", "share/Velmo", "データ管理用フォルダ（組織）を作成できません。"},
      {"program's folder", "share/Velmo/OruExl",
       "データ管理用フォルダ（プログラム）を作成できません。"},
      {"phrases", "templates/DA-Sta.VMO", "定型文管理ファイルを作成できません。"},
      {"words", "templates/DA-KWd.txt", "キーワード管理ファイルを作成できません。"},
      {"spacing", "templates/DA-LPt.txt", "フォント間隔補正値ファイルを作成できません。"},
      {"template", "templates/標準書式.doc", "仕様書テンプレートファイルを作成できません。"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Job job;
    Session_Options options = job.Options();
    options.Program_Folder = job.folder / "templates";
    fs::copy(kTemplates, options.Program_Folder, fs::copy_options::recursive);
    if (c.file.starts_with("templates")) {
      fs::remove(job.folder / c.file);
    } else {
      job.folder.Put(c.file, "a file where a folder should be");
    }
    host::Memory_Editor editor;
    Session session(job.ui, job.clock, options);
    EXPECT_FALSE(session.AddinInstance_OnConnection(editor, nullptr));
    EXPECT_FALSE(session.Connected());
    EXPECT_EQ(job.ui.messages.size(), 1U);
    EXPECT_EQ(job.Told().find(c.told), 2U) << job.Told();
    EXPECT_EQ(editor.Bars().Count(), 3);
  }
}

TEST(Session, EditorOutsideTheSupportedVersionsIsRefused) {
  for (const int version : {4, 8}) {
    Job job;
    Session_Options options = job.Options();
    options.Ide_Version = version;
    host::Memory_Editor editor;
    Session session(job.ui, job.clock, options);
    EXPECT_FALSE(session.AddinInstance_OnConnection(editor, nullptr));
    EXPECT_EQ(job.ui.messages.size(), 1U);
    EXPECT_NE(job.Told().find("ＩＤＥのバージョンが対象外です。"), std::string::npos);
    EXPECT_FALSE(fs::exists(job.Data()));
  }
}

TEST(Session, UnusableSettingsBecomeDefaultsAndAreKeptAside) {
  for (const std::size_t size : {7167U, 7169U}) {
    Job job;
    const std::string bytes(size, 'x');
    job.folder.Put("share/Velmo/OruExl/DA-Sys.VMO", bytes);
    EXPECT_EQ(job.Run([](Session& s) { EXPECT_EQ(s.Srv.Opt.Number("LinLen"), 200); }), 2);
    EXPECT_TRUE(job.ui.messages.empty());
    EXPECT_EQ(job.folder.Get("share/Velmo/OruExl/DA-Sys.VMO.bak"), bytes);
    EXPECT_EQ(fs::file_size(job.Data() / "DA-Sys.VMO"), 7168U);
  }
  // A record of an older version is told.
  Job job;
  service::Settings old;
  old.Set_Number("RecVer", 0);
  old.Set_Number("LinLen", 77);
  job.folder.Put("share/Velmo/OruExl/DA-Sys.VMO", old.Bytes());
  EXPECT_EQ(job.Run([](Session& s) { EXPECT_EQ(s.Srv.Opt.Number("LinLen"), 200); }), 2);
  EXPECT_EQ(
      job.Told(),
      "  プログラムのバージョンにあわせシステム情報を初期化しました。  （すべてのオプション項目が規定値となっています）");
  EXPECT_EQ(job.folder.Get("share/Velmo/OruExl/DA-Sys.VMO.bak"), old.Bytes());
}

TEST(Session, TwoSessionsKeepEachOthersOptions) {
  Job job;
  (void)job.Run();
  (void)job.Run([&](Session& outer) {
    outer.Srv.Opt.Set_Number("LinLen", 111);
    service::Settings other;
    ASSERT_TRUE(service::Lod_SysInf(other, job.Data()));
    other.Set_Number("TmrSec", 222);
    ASSERT_EQ(service::Upd_SysInf(other, job.Data(), ""), "");
  });
  service::Settings now;
  ASSERT_TRUE(service::Lod_SysInf(now, job.Data()));
  EXPECT_EQ(now.Number("LinLen"), 111);
  EXPECT_EQ(now.Number("TmrSec"), 222);
}

TEST(Session, StopsInOrderAndGivesTheBarsBack) {
  Job job;
  File_Project project;
  ASSERT_EQ(project.Open(job.folder / "Jobs", 932), "");
  const auto bar_entries = [&] {
    return project.Editor.CommandBars()
        .Item("ﾒﾆｭｰ ﾊﾞｰ")
        ->Controls()
        .Item("ﾂｰﾙ(&T)")
        ->CommandBar()
        ->Controls()
        .Count();
  };
  const int before = bar_entries();
  Session session(job.ui, job.clock, job.Options());
  ASSERT_TRUE(session.AddinInstance_OnConnection(project.Editor, nullptr));
  EXPECT_EQ(bar_entries(), before + 1);
  EXPECT_TRUE(session.Tbl.Mdl_Tbl.Empty());  // nothing is analysed yet
  ASSERT_TRUE(session.Analyse());
  job.ui.calls.clear();
  session.AddinInstance_OnBeginShutdown();
  session.AddinInstance_OnDisconnection();
  std::erase(job.ui.calls, "Progress");
  EXPECT_EQ(job.ui.calls, (std::vector<std::string>{"Ctl_Hlp_Prc", "Mouse_Hook 0", "All_Unl_Prc",
                                                    "Ctl_Hlp_Prc", "Close_Progress"}));
  EXPECT_TRUE(session.Tbl.Mdl_Tbl.Empty());
  EXPECT_FALSE(session.Connected());
  EXPECT_EQ(bar_entries(), before);
  EXPECT_EQ(project.Editor.Bars().Count(), 3);
  session.AddinInstance_OnDisconnection();  // nothing is done twice
  EXPECT_FALSE(session.Analyse());
}

TEST(Session, DataFolderThatVanishesCostsNoAnalysis) {
  Job job;
  EXPECT_EQ(job.Run([&](Session& s) {
    s.Scr.Phrases.emplace_back("new#||||#x");
    fs::remove_all(job.Data());
  }),
            2);
  // The options could not be written, which is told; the analysis beside the project was saved.
  ASSERT_EQ(job.ui.messages.size(), 1U);
  EXPECT_NE(job.Told().find("DA-Sys.VMO"), std::string::npos);
  EXPECT_TRUE(job.folder.Has("Jobs/Jobs.VMH"));
  job.ui.messages.clear();
  EXPECT_EQ(job.Run(), 0);
  EXPECT_TRUE(job.ui.messages.empty());
}

TEST(Session, CommandsOnTheCodeInFront) {
  Job job;
  (void)job.Run([&](Session& s) {
    host::CodeModule* code = nullptr;
    host::VBComponents& all = s.VBInst->ActiveVBProject()->VBComponents();
    for (int i = 1; i <= all.Count() && code == nullptr; ++i)
      if (all.Item(i)->CodeModule()->CountOfLines() > 0) code = all.Item(i)->CodeModule();
    ASSERT_NE(code, nullptr);
    code->DeleteLines(1, code->CountOfLines());
    code->InsertLines(1, "Sub A()\nx = y\nB\nEnd Sub\nSub B()\nEnd Sub");
    code->CodePane().Show();
    code->CodePane().SetSelection({2, 1, 2, 6});
    ASSERT_TRUE(s.Run("CTE_CT_4_Click"));
    ASSERT_TRUE(s.Control);
    EXPECT_EQ(s.Control->Cur().Mem, "A");
    ASSERT_TRUE(s.Run("CTE_CT_2_Click"));
    ASSERT_TRUE(s.Chart);
    EXPECT_EQ(s.Chart->Nodes.size(), 3U);
    EXPECT_TRUE(s.Run("CEv_CE_3_Click"));
    EXPECT_TRUE(s.Sta.Edt_Chg);
    EXPECT_TRUE(s.Run("CEv_CE_7_Click"));
    EXPECT_EQ(s.Control->Cur().Rows.at(1).Lines.front(), "B");  // shown anew
    EXPECT_TRUE(s.Run("CTE_CE_8_Click"));
    EXPECT_EQ(code->Lines(1, 3), "Sub A()\r\n2:     y = x\r\n3:     B");
    EXPECT_TRUE(s.Run("CTE_CE_6_Click"));
    EXPECT_EQ(code->Lines(1, 3), "Sub A()\r\n    y = x\r\n    B");
    EXPECT_TRUE(s.Run("CTE_CE_5_Click"));
    EXPECT_TRUE(s.Trace);
  });
}

TEST(Session, StateIsKeptBetweenRuns) {
  Job job;
  (void)job.Run([](Session& s) {
    s.Scr.Phrases = {"題#||||#本文#vbCrLf#2"};
    s.Scr.Screens.Put("Frm_List", "1 2\t3");
  });
  (void)job.Run([](Session& s) {
    EXPECT_EQ(s.Scr.Phrases, std::vector<std::string>{"題#||||#本文#vbCrLf#2"});
    ASSERT_NE(s.Scr.Screens.Get("Frm_List"), nullptr);
    EXPECT_EQ(*s.Scr.Screens.Get("Frm_List"), "1 2\t3");
  });
  // What is no state file is kept aside before it is written.
  job.folder.Put("share/Velmo/OruExl/DA-Sta.VMO", "rubbish");
  (void)job.Run([](Session& s) {
    EXPECT_TRUE(s.Scr.Phrases.empty());
    s.Scr.Phrases = {"a#||||#b"};
  });
  EXPECT_EQ(job.folder.Get("share/Velmo/OruExl/DA-Sta.VMO.bak"), "rubbish");
  EXPECT_EQ(job.folder.Get("share/Velmo/OruExl/DA-Sta.VMO"), "Sta1\r\nPa#||||#b\r\n");
}

TEST(Session, CancelledRunKeepsTheOldAnalysisFile) {
  Job job;
  (void)job.Run();
  const std::string old = job.folder.Get("Jobs/Jobs.VMH");
  job.folder.Put("Jobs/modOther.bas", "Sub Other()\r\n    x = 3\r\nEnd Sub\r\n");
  File_Project project;
  ASSERT_EQ(project.Open(job.folder / "Jobs", 932), "");
  Session session(job.ui, job.clock, job.Options());
  ASSERT_TRUE(session.AddinInstance_OnConnection(project.Editor, nullptr));
  session.Out_Edt = [&](std::string_view module) { return project.Edited_At(module); };
  job.ui.on_events = [&] { session.Sta.Anl_Cnl = true; };
  EXPECT_FALSE(session.Analyse());
  session.AddinInstance_OnDisconnection();
  EXPECT_EQ(job.folder.Get("Jobs/Jobs.VMH"), old);
}

}  // namespace
}  // namespace oru::app
