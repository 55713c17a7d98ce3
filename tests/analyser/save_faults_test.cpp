// SPDX-License-Identifier: MIT
// Saving the analysis file on a real disk, under everything that can go wrong there: the process is
// killed, the disk is full, the folder is write-protected, another process saves the same project.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <random>

#include "analyser/analysis_file.h"
#include "service/files.h"
#include "support/project.h"

namespace oru::analyser {
namespace {

namespace fs = std::filesystem;

// A project whose file is large enough to be written in several blocks.
class Saved_Project : public test::Project {
 public:
  Saved_Project(const fs::path& folder, const std::string& mark)
      : test::Project((folder / "Book1.xlsm").string()) {
    Srv.Data_Folder = folder / "data";
    std::string code = "Sub Main()\n    x = \"" + mark + "\"\nEnd Sub\n";
    for (int i = 0; i < 3000; ++i)
      code += "Sub P" + std::to_string(i) + "()\n    Call Main ' 注釈\nEnd Sub\n";
    for (const char* name : {"modA", "modB", "modC"}) Add(name, code);
  }
  bool Run() {
    Anl_Ctx ctx = Disk_Ctx();
    (void)Get_Pgm_Inf(ctx, true);
    return !Tbl.Mdl_Tbl.Empty();
  }
  bool Save() {
    Anl_Ctx ctx = Disk_Ctx();
    Sta.Anl_Chg = true;
    return Sav_UpdInf(ctx);
  }

 private:
  Anl_Ctx Disk_Ctx() {
    Anl_Ctx ctx = Ctx();
    ctx.Fil = &disk_;
    return ctx;
  }
  service::Disk_Store disk_;
};

std::string Bytes(const fs::path& path) {
  return service::Read_File(path).bytes;
}

// Runs something in a process of its own; its exit code, or minus the signal that ended it.
pid_t Start(const std::function<int()>& run) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  const int code = run();
  ::_exit(code);
}
int Wait(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::size_t Count_Files(const fs::path& folder) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(Saving, KilledAtAnyMomentLeavesAWholeFile) {
  test::Temp_Folder folder;
  const fs::path file = folder / "Book1.VMH";
  Saved_Project old(folder.Path(), "old"), next(folder.Path(), "new");
  ASSERT_TRUE(next.Run() && next.Save());
  const std::string new_bytes = Bytes(file);
  fs::remove(file);
  ASSERT_TRUE(old.Run());
  old.Sta.Fil_Mrk.clear();
  ASSERT_TRUE(old.Save());
  const std::string old_bytes = Bytes(file);
  ASSERT_NE(old_bytes, new_bytes);

  std::mt19937 random(1);
  std::uniform_int_distribution<useconds_t> delay(0, 4000);
  int killed = 0;
  for (int i = 0; i < 200; ++i) {
    const pid_t child = Start([&] {
      for (bool turn = false;; turn = !turn) {
        // The other one's file is to be replaced as well.
        old.Sta.Fil_Mrk = next.Sta.Fil_Mrk = service::Disk_Store().Look(file.string()).value().mark;
        if (!(turn ? old : next).Save()) return 1;
      }
    });
    ::usleep(delay(random));
    ::kill(child, SIGKILL);
    killed += Wait(child) == -SIGKILL ? 1 : 0;
    const std::string now = Bytes(file);
    ASSERT_TRUE(now == old_bytes || now == new_bytes) << "run " << i;
  }
  EXPECT_EQ(killed, 200);
  // The next start finds an analysis in any case.
  Saved_Project start(folder.Path(), "old");
  ASSERT_TRUE(start.Run());
  EXPECT_EQ(start.Sta.Fil_Why, "");
  EXPECT_LE(start.Sta.Mdl_Cnt, 3);
}

TEST(Saving, FullDiskKeepsTheOldFileAndTellsTheUser) {
  test::Temp_Folder folder;
  const fs::path file = folder / "Book1.VMH";
  Saved_Project p(folder.Path(), "x");
  ASSERT_TRUE(p.Run() && p.Save());
  const std::string before = Bytes(file);
  const int code = Wait(Start([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100'000, 100'000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    if (p.Save() || !p.Sta.Anl_Chg || p.Ui.messages.size() != 1) return 1;
    const std::string& text = p.Ui.messages[0].text;
    if (text.find("Book1.VMH") == std::string::npos) return 2;
    return text.find("元の内容は変わっていません。") == std::string::npos ? 3 : 0;
  }));
  EXPECT_EQ(code, 0);
  EXPECT_EQ(Bytes(file), before);
  EXPECT_EQ(Count_Files(folder.Path()), 1U);
}

TEST(Saving, WriteProtectedFolderIsToldAndLogged) {
  test::Temp_Folder folder;
  fs::create_directories(folder / "job");
  fs::create_directories(folder / "job/data");
  fs::permissions(folder.Path(), fs::perms(0755));
  fs::permissions(folder / "job/data", fs::perms(0777));
  Saved_Project p(folder / "job", "x");
  ASSERT_TRUE(p.Run());
  fs::permissions(folder / "job", fs::perms(0555));
  const int code = Wait(Start([&] {
    // The superuser is stopped by no permission.
    constexpr uid_t kNobody = 65534;
    if (::geteuid() == 0 && ::setuid(kNobody) != 0) return 9;
    return p.Save() || p.Ui.messages.size() != 1 ||
                   p.Ui.messages[0].text.find("アクセスが許可されていません") == std::string::npos
               ? 1
               : 0;
  }));
  EXPECT_EQ(code, 0);
  EXPECT_FALSE(fs::exists(folder / "job/Book1.VMH"));
  EXPECT_NE(folder.Get("job/data/Logfile.txt").find("Mod_Anl -> Sav_UpdInf "), std::string::npos);
  fs::permissions(folder / "job", fs::perms(0755));
}

TEST(Saving, TwoProcessesAtOnceLeaveOneWholeFile) {
  test::Temp_Folder folder;
  const fs::path file = folder / "Book1.VMH";
  Saved_Project old(folder.Path(), "old"), next(folder.Path(), "new");
  ASSERT_TRUE(old.Run() && old.Save());
  const std::string old_bytes = Bytes(file);
  ASSERT_TRUE(next.Run());
  const auto save_often = [&](Saved_Project& p) {
    return Start([&] {
      int refused = 0;
      for (int i = 0; i < 30; ++i) {
        const auto seen = service::Disk_Store().Look(file.string());
        p.Sta.Fil_Mrk = seen ? seen->mark : service::File_Mark();
        refused += p.Save() ? 0 : 1;
      }
      // Whenever one is refused it is told so.
      return p.Ui.messages.size() == static_cast<std::size_t>(refused) ? 0 : 1;
    });
  };
  const pid_t one = save_often(old), other = save_often(next);
  EXPECT_EQ(Wait(one), 0);
  EXPECT_EQ(Wait(other), 0);
  Saved_Project start(folder.Path(), "old");
  ASSERT_TRUE(start.Run());
  EXPECT_EQ(start.Sta.Fil_Why, "");
  EXPECT_TRUE(start.Sta.Mdl_Cnt == 0 || start.Sta.Mdl_Cnt == 3);
  EXPECT_LE(Count_Files(folder.Path()), 2U);  // the file, and the data folder with its log
}

TEST(Saving, ClockThatGoesBackKeepsTheFileAndTheHistory) {
  test::Temp_Folder folder;
  Saved_Project p(folder.Path(), "x");
  p.Clk.time = {2030, 1, 1, 0, 0, 0};
  ASSERT_TRUE(p.Run());
  p.Lst.Mdl_Upd.Add("modA", "30010100000000001modA");
  ASSERT_TRUE(p.Save());
  fs::last_write_time(folder / "Book1.VMH",
                      fs::file_time_type::clock::now() + std::chrono::hours(24 * 3000));
  Saved_Project later(folder.Path(), "x");
  later.Clk.time = {2020, 1, 1, 0, 0, 0};
  ASSERT_TRUE(later.Run());
  EXPECT_EQ(later.Sta.Mdl_Cnt, 0);
  EXPECT_EQ(later.Sta.Lod_Dat, "200101000000");
  later.Code("modA").InsertLines(1, "' note");
  later.Sta.Edt_Chg = true;
  ASSERT_TRUE(later.Run());
  EXPECT_EQ(later.Sta.Mdl_Cnt, 1);
  ASSERT_TRUE(later.Save());
  Saved_Project last(folder.Path(), "x");
  ASSERT_TRUE(last.Run());
  EXPECT_EQ(last.Lst.Mdl_Upd.Count(), 1U);
}

}  // namespace
}  // namespace oru::analyser
