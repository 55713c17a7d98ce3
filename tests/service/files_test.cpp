// SPDX-License-Identifier: MIT
#include "service/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <string>

#include "support/fakes.h"

namespace oru::service {
namespace {

namespace fs = std::filesystem;
using test::Temp_Folder;

auto Count_Entries(const fs::path& folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

TEST(Files, WritesAndReadsAnyBytes) {
  const Temp_Folder folder;
  const std::string bytes("a\0\r\n\xFF", 5);
  ASSERT_EQ(Write_File(folder / "新規.bas", bytes).error, "");
  EXPECT_EQ(Read_File(folder / "新規.bas").bytes, bytes);
  ASSERT_EQ(Write_File(folder / "新規.bas", "").error, "");
  EXPECT_EQ(Read_File(folder / "新規.bas").bytes, "");
  EXPECT_EQ(Count_Entries(folder.Path()), 1);
}

TEST(Files, KeepsThePermissionsOfTheOldFile) {
  const Temp_Folder folder;
  const fs::path file = folder.Put("a.bas", "old");
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  ASSERT_TRUE(Write_File(file, "new").Ok());
  EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0640));
}

TEST(Files, WritesThroughASymbolicLink) {
  const Temp_Folder folder;
  folder.Put("real/a.bas", "old");
  fs::create_symlink("real/a.bas", folder / "link.bas");
  fs::create_symlink("real/none.bas", folder / "dangling.bas");
  ASSERT_TRUE(Write_File(folder / "link.bas", "new").Ok());
  ASSERT_TRUE(Write_File(folder / "dangling.bas", "made").Ok());
  EXPECT_TRUE(fs::is_symlink(folder / "link.bas"));
  EXPECT_EQ(folder.Get("real/a.bas"), "new");
  EXPECT_EQ(folder.Get("real/none.bas"), "made");
}

TEST(Files, RefusesAFileThatIsNoLongerTheExpectedOne) {
  const Temp_Folder folder;
  const fs::path file = folder.Put("a.bas", "theirs");
  for (const char* expected : {"ours", "", "theirs and more", "their"}) {
    SCOPED_TRACE(expected);
    const File_Result result = Write_File(file, "new", expected);
    EXPECT_NE(result.error.find("a.bas"), std::string::npos) << result.error;
    EXPECT_EQ(folder.Get("a.bas"), "theirs");
  }
  EXPECT_FALSE(Write_File(folder / "gone.bas", "new", "").Ok());
  EXPECT_EQ(Count_Entries(folder.Path()), 1);
  EXPECT_TRUE(Write_File(file, "new", "theirs").Ok());
  EXPECT_EQ(folder.Get("a.bas"), "new");
}

TEST(Files, WhatIsNoOrdinaryFileIsRefusedAtOnce) {
  const Temp_Folder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  fs::create_directory(folder / "folder");
  fs::create_symlink("circle", folder / "circle");
  folder.Put("plain", "x");
  for (const char* name : {"pipe", "folder", "circle", "plain/below", "missing/below"}) {
    SCOPED_TRACE(name);
    const fs::path path = folder / name;
    const Read_Result read = Read_File(path);
    EXPECT_NE(read.error.find(name), std::string::npos) << read.error;
    EXPECT_NE(Write_File(path, "x").error.find(name), std::string::npos);
  }
  EXPECT_FALSE(Read_File("/dev/zero").Ok());
  EXPECT_FALSE(Read_File("").Ok());
  EXPECT_EQ(Count_Entries(folder.Path()), 4);
}

TEST(Files, TheLimitCountsBytes) {
  const Temp_Folder folder;
  const fs::path file = folder.Put("a", "12345");
  EXPECT_EQ(Read_File(file, 5).bytes, "12345");
  const Read_Result over = Read_File(file, 4);
  EXPECT_FALSE(over.Ok());
  EXPECT_EQ(over.bytes, "");
}

/// Makes writes beyond a size fail, as a full disk does.
class File_Size_Limit {
 public:
  explicit File_Size_Limit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{size, old_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~File_Size_Limit() {
    ::setrlimit(RLIMIT_FSIZE, &old_);
    (void)std::signal(SIGXFSZ, handler_);
  }
  File_Size_Limit(const File_Size_Limit&) = delete;
  File_Size_Limit& operator=(const File_Size_Limit&) = delete;

 private:
  rlimit old_{};
  void (*handler_)(int);
};

TEST(Files, AWriteThatBreaksOffLeavesTheOldFileAndNothingElse) {
  const Temp_Folder folder;
  const fs::path file = folder.Put("a.bas", "old");
  File_Result result;
  {
    const File_Size_Limit limit(4096);
    result = Write_File(file, std::string(100000, 'x'));
  }
  EXPECT_NE(result.error.find("元の内容は変わっていません"), std::string::npos) << result.error;
  EXPECT_EQ(folder.Get("a.bas"), "old");
  EXPECT_EQ(Count_Entries(folder.Path()), 1);
}

TEST(Files, WriteProtectionIsRespected) {
  if (::geteuid() == 0) GTEST_SKIP() << "protection does not bind the superuser";
  const Temp_Folder folder;
  const fs::path file = folder.Put("a.bas", "old");
  fs::permissions(file, fs::perms::owner_read);
  EXPECT_FALSE(Write_File(file, "new").Ok());
  EXPECT_EQ(folder.Get("a.bas"), "old");
}

TEST(Files, ServiceRoutinesTellSuccessOnly) {
  const Temp_Folder folder;
  EXPECT_TRUE(Srv_Chk_Fdr(folder.Path()));
  EXPECT_FALSE(Srv_Chk_Fdr(""));
  EXPECT_FALSE(Srv_Chk_Fdr(folder.Put("a.txt", "あ\r\n")));
  EXPECT_TRUE(Srv_Fil_Ctl(folder / "a.txt", folder / "b.txt"));
  EXPECT_FALSE(Srv_Fil_Ctl(folder / "none", folder / "c.txt"));
  std::string text = "before";
  EXPECT_TRUE(Srv_RAl_TFl(folder / "b.txt", text));
  EXPECT_EQ(text, "あ\r\n");
  EXPECT_FALSE(Srv_RAl_TFl(folder / "none", text));
  EXPECT_EQ(text, "");
  EXPECT_TRUE(Srv_WAl_TFl(folder / "d.txt", "d"));
  EXPECT_FALSE(Srv_WAl_TFl(folder / "none/d.txt", "d"));
}

TEST(Files, APathIsShownAsText) {
  EXPECT_EQ(Path_Text("資料/a.bas"), "資料/a.bas");
  EXPECT_EQ(Path_Text("a\x82\xA0.bas"), "a\uFFFD\uFFFD.bas");
}

}  // namespace
}  // namespace oru::service
