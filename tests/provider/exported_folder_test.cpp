// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <string_view>
#include <vector>

#include "provider/project_source.h"
#include "support/fakes.h"

namespace oru::provider {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;
using test::Temp_Folder;

std::vector<std::string> Names(const Project_Source& project) {
  std::vector<std::string> names;
  for (const auto& component : project.components) names.push_back(component.name);
  return names;
}

using List = std::vector<std::string>;

TEST(ExportedFolder, ModulesStandInByteOrderOfTheirPaths) {
  const Temp_Folder folder;
  for (const char* name : {"b/x.BAS", "b.bas", "B2.Cls", "a/deep/er/f.frm", "あ.doccls", "b/y.txt",
                           "f.frx", "book.xlsm"})
    folder.Put(name, "X\r\n");
  const Project_Source project = Read_Project(folder.Path());
  EXPECT_EQ(project.error, "");
  EXPECT_EQ(Names(project), (List{"B2", "f", "b", "x", "あ"}));
  EXPECT_TRUE(project.problems.empty());
  EXPECT_EQ(project.name, folder.Path().filename());
  EXPECT_EQ(project.host_file, folder.Path());
}

TEST(ExportedFolder, TheNameIsTheRealFoldersName) {
  const Temp_Folder folder;
  folder.Put("計算 v1.2/sub/a.bas", "X\r\n");
  const fs::path old = fs::current_path();
  fs::current_path(folder / "計算 v1.2");
  for (const char* path : {".", "./", "sub/..", "../計算 v1.2/", "../計算 v1.2"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(Read_Project(path).name, "計算 v1.2");
    EXPECT_EQ(fs::path(Read_Project(path).host_file).filename(), "計算 v1.2");
  }
  fs::current_path(old);
}

TEST(ExportedFolder, ASingleFileIsAProject) {
  const Temp_Folder folder;
  const Project_Source project = Read_Project(folder.Put("a.b.bas", "X\r\n"));
  EXPECT_EQ(Names(project), List{"a_b"});
  EXPECT_EQ(project.name, "a.b");
  EXPECT_EQ(project.host_file, folder / "a.b.bas");
}

TEST(ExportedFolder, OneBadFileDoesNotKeepTheOthersOut) {
  struct Case {
    std::string_view what, name, bytes;
    List names;
    std::vector<std::string_view> told;
  };
  const Case cases[] = {
      {"NUL", "b.bas", "a\0b"sv, {"Z"}, {"b.bas", "NUL"}},
      {"undecodable",
       "b.bas",
       "X\r\nY\xFF\xFF\r\n",
       {"b", "Z"},
       {"b.bas", "932", "2 個", "2 行目"}},
      {"same module, other case",
       "zz.cls",
       "Attribute VB_Name = \"z\"",
       {"Z"},
       {"zz.cls", "「z」", "z.bas"}},
      {"bad name", "b.bas", "Attribute VB_Name = \"a\tb\"\r\n", {"a b", "Z"}, {"b.bas", "「a b」"}},
      {"bad file name", "b\n.bas", "X", {"b", "Z"}, {"「b」"}},
      {"too large", "b.bas", "0123456789012345678901234567890123456789", {"Z"}, {"b.bas", "39"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Temp_Folder folder;
    folder.Put("z.bas", "Attribute VB_Name = \"Z\"\r\nX\r\n");
    folder.Put(c.name, c.bytes);
    const Project_Source project = Read_Project(folder.Path(), {932, 39});
    EXPECT_EQ(Names(project), c.names);
    ASSERT_EQ(project.problems.size(), 1u);
    EXPECT_EQ(project.problems[0].path, c.name);
    for (const std::string_view told : c.told)
      EXPECT_NE(project.problems[0].message.find(told), std::string::npos)
          << project.problems[0].message;
  }
}

TEST(ExportedFolder, WhatIsNoFileIsReported) {
  const Temp_Folder folder;
  folder.Put("z.bas", "X\r\n");
  ASSERT_EQ(::mkfifo((folder / "pipe.bas").c_str(), 0600), 0);
  fs::create_symlink("gone", folder / "dangling.bas");
  fs::create_symlink("circle.bas", folder / "circle.bas");
  fs::create_symlink("gone", folder / "no module");
  fs::create_directory(folder / "folder.bas");
  const Project_Source project = Read_Project(folder.Path());
  EXPECT_EQ(Names(project), List{"z"});
  List paths;
  for (const Problem& problem : project.problems) paths.push_back(problem.path);
  EXPECT_EQ(paths, (List{"circle.bas", "dangling.bas", "pipe.bas"}));
}

TEST(ExportedFolder, LinkedFoldersAreTakenOnce) {
  const Temp_Folder folder, other;
  folder.Put("real/a.bas", "X\r\n");
  other.Put("b.bas", "X\r\n");
  other.Put("deep/c.bas", "X\r\n");
  fs::create_directory_symlink("real", folder / "alias");
  fs::create_directory_symlink(other.Path(), folder / "one");
  fs::create_directory_symlink(other.Path(), folder / "two");
  fs::create_directory_symlink(folder.Path(), folder / "real" / "up");
  const Project_Source project = Read_Project(folder.Path());
  List paths;
  for (const Module_File& file : project.files) paths.push_back(file.relative);
  EXPECT_EQ(paths, (List{"one/b.bas", "one/deep/c.bas", "real/a.bas"}));
  ASSERT_EQ(project.problems.size(), 1u);
  EXPECT_EQ(project.problems[0].path, "real/up");
}

TEST(ExportedFolder, FailsAsAWholeWithOneMessage) {
  const Temp_Folder folder;
  folder.Put("empty/readme.txt", "X");
  folder.Put("bad/a.bas", "\0"sv);
  folder.Put("book.xlsm", "X");
  for (const char* name : {"missing", "empty", "bad", "book.xlsm", "book.xlsm/below"}) {
    SCOPED_TRACE(name);
    const Project_Source project = Read_Project(folder / name);
    EXPECT_FALSE(project.Ok());
    EXPECT_NE(project.error.find(name), std::string::npos) << project.error;
    EXPECT_TRUE(project.components.empty());
  }
  EXPECT_FALSE(Read_Project("").Ok());
  EXPECT_NE(Read_Project(folder.Path(), {37, 1}).error.find("37"), std::string::npos);
}

TEST(ExportedFolder, TheCodePageIsTheUsers) {
  const Temp_Folder folder;
  folder.Put("a.bas", "Attribute VB_Name = \"\xCC\xEE\xE4\"\r\n");
  EXPECT_EQ(Names(Read_Project(folder.Path(), {1251})), List{"Мод"});
}

}  // namespace
}  // namespace oru::provider
