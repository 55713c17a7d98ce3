// SPDX-License-Identifier: MIT
#include "provider/writer.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/memory_editor.h"
#include "provider/lines.h"
#include "provider/undo_record.h"
#include "support/fakes.h"

namespace oru::provider {
namespace {

using namespace std::string_view_literals;

std::vector<std::string_view> Lines_Of(std::string_view text) {
  std::vector<std::string_view> lines;
  for (const Line& line : All_Lines(text)) lines.push_back(line.Content(text));
  return lines;
}

/// Puts the code `now` (LF between the lines) into a file and gives the bytes, or the error.
std::string Put(std::string_view file, std::string_view now, int page = 932) {
  const auto code_page = service::Code_Page::Open(page);
  const Rewritten result = Rewrite_Code(file, File_Kind::Cls, Lines_Of(now), *code_page, "a.cls");
  return result.error.empty() ? result.bytes : "error: " + result.error;
}

TEST(Writer, WhatIsNotEditedKeepsItsBytes) {
  struct Case {
    std::string_view what, file, now, bytes;
  };
  constexpr Case cases[] = {
      {"header and attributes stay",
       "VERSION 1.0 CLASS\r\nBEGIN\r\nEND\r\nAttribute VB_A = 1\r\nX\r\n", "Y\nX\n",
       "VERSION 1.0 CLASS\r\nBEGIN\r\nEND\r\nAttribute VB_A = 1\r\nY\r\nX\r\n"},
      {"undecodable bytes and trailing blanks", "a\xFF \r\nb\r\n \t\r\nc\r\n", "a\uFFFD \nB\n\nc\n",
       "a\xFF \r\nB\r\n \t\r\nc\r\n"},
      {"new lines are encoded", "X\r\n\x83\x5C\r\n", "X\nソ\n表\n",
       "X\r\n\x83\x5C\r\n\x95\x5C\r\n"},
      {"UTF-8 with its mark", "\xEF\xBB\xBFX\n", "X\nあ\n", "\xEF\xBB\xBFX\n\xE3\x81\x82\n"},
      {"UTF-16", "\xFF\xFEX\0\n\0"sv, "Y\nX\n", "\xFF\xFEY\0\n\0X\0\n\0"sv},
      {"UTF-16, big end first and an odd byte", "\xFE\xFF\0X\0\r\0\n\0Y\0\r\0\n1"sv, "X\nZ\n\uFFFD",
       "\xFE\xFF\0X\0\r\0\n\0Z\0\r\0\n1"sv},
      {"mixed line ends: the most frequent for new lines", "a\nb\rc\rd\r\r\ne\r\n",
       "a\nb\nN\nc\nd\ne\n", "a\nb\rN\rc\rd\r\r\ne\r\n"},
      {"indent changed: empty lines keep their blanks", "a\n  \n  a\n\nb\n",
       "  a\n\n    a\n\n  b\n", "  a\n  \n    a\n\n  b\n"},
      {"a changed line keeps its own", "a\nb\r\nc\rd\r\n", "a\nB\n  c\nD\n", "a\nB\r\n  c\rD\r\n"},
      {"changed and more of them: none is known", "a\r\nb\nc\r\n", "a\nx\ny\nc\n",
       "a\r\nx\r\ny\r\nc\r\n"},
      {"no final line end", "a\r\nb", "a\nb\nc\n", "a\r\nb\r\nc"},
      {"no final line end, last line gone", "a\r\nb", "a\n", "a"},
      {"an empty last line needs one", "a\r\nb", "a\n\n", "a\r\n\r\n"},
      {"lines that meet do not merge their line ends", "a\rb\r\n\nc\r\rd\re", "a\n\nc\n\nd\ne\n",
       "a\r\rc\r\rd\re"},
      {"everything goes", "Attribute VB_A = 1\r\nX\r\n", "", "Attribute VB_A = 1\r\n"},
      {"into an empty file", "", "X\n", "X\r\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Put(c.file, c.now), c.bytes);
    std::string same;  // and what is not edited at all gives the file again
    const Exported_File file =
        Read_Exported(std::string(c.file), File_Kind::Cls, "", *service::Code_Page::Open(932));
    for (const std::string_view line : Lines_Of(file.component.text))
      same.append(line).append("\n");
    EXPECT_EQ(Put(c.file, same), c.file);
  }
}

TEST(Writer, AttributesFollowTheirMember) {
  constexpr std::string_view file =
      "Public V As Long\nAttribute V.VB_VarUserMemId = 0\n"
      "Property Get Item( _\n  i)\nAttribute Item.VB_UserMemId = 0\nAttribute Item.VB_Description = _\n"
      "\"d\"\nEnd Property\nProperty Let Item(i, v)\nEnd Property\n"
      "Sub S()\nAttribute S.VB_Description = \"s\"\nEnd Sub\n";
  constexpr std::string_view v = "Attribute V.VB_VarUserMemId = 0\n",
                             item =
                                 "Attribute Item.VB_UserMemId = 0\n"
                                 "Attribute Item.VB_Description = _\n\"d\"\n",
                             s = "Attribute S.VB_Description = \"s\"\n";
  const auto join = [](std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) text += part;
    return text;
  };
  struct Case {
    std::string_view what;
    std::string now, bytes;
  };
  const std::string_view let = "Property Let Item(i, v)\nEnd Property\n",
                         get = "Property Get Item( _\n  i)\n", sub = "Sub S()\n",
                         var = "Public V As Long\n", end = "End Property\n", end_sub = "End Sub\n";
  const Case cases[] = {
      {"lines above and below", join({"'1\n", var, "'2\n", get, "'3\n", end, let, sub, end_sub}),
       join({"'1\n", var, v, "'2\n", get, item, "'3\n", end, let, sub, s, end_sub})},
      {"declarations edited",
       join({"Public V As String\n", "Property Get Item(i)\n", end, let, "Public Function s(a)\n",
             end_sub}),
       join({"Public V As String\n", v, "Property Get Item(i)\n", item, end, let,
             "Public Function s(a)\n", s, end_sub})},
      {"the header's last line edited, and continued",
       join({var, "Property Get Item( _\n  i, _\n  j)\n", end, let, sub, end_sub}),
       join({var, v, "Property Get Item( _\n  i, _\n  j)\n", item, end, let, sub, s, end_sub})},
      {"members gone, another leg of the property left", join({let, end_sub}),
       join({let, end_sub})},
      {"a member moved to the end", join({var, let, sub, end_sub, get, end}),
       join({var, v, let, sub, s, end_sub, get, item, end})},
      {"renamed: its attributes go", join({var, get, end, let, "Sub T()\n", end_sub}),
       join({var, v, get, item, end, let, "Sub T()\n", end_sub})},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Put(file, c.now), c.bytes);
  }
}

TEST(Writer, RefusesWhatCouldNotBeReadBack) {
  struct Case {
    std::string_view what, file, now;
    std::vector<std::string_view> told;
    int page;
  };
  const Case cases[] = {
      {"no place in the code page", "X\r\n", "X\na😀b\n", {"a.cls", "2 行目", "「😀」"}, 932},
      {"a damaged line edited", "a\xFF\r\nb\r\n", "b\na\uFFFD!\n", {"2 行目", "「\uFFFD」"}, 932},
      {"the same in UTF-8", "\xEF\xBB\xBF\xFF\r\n", "\uFFFD!\n", {"1 行目", "「\uFFFD」"}, 932},
      {"a line that is an attribute", "X\n", "X\nAttribute VB_Name = \"Y\"\n", {"2 行目"}, 932},
      {"a header above the code", "X\n", "VERSION 1.0 CLASS\nX\n", {"1 行目"}, 932},
      {"an attribute swallowed by a continued line",
       "Sub S()\nAttribute S.VB_A = 1\nEnd Sub\n",
       "Sub S() _\n",
       {},
       932},
      {"bytes that would be read as UTF-8", "X\r\n", "'ﾃｩ\n", {"1 行目"}, 932},
      {"NUL", "X\n", "a\0b\n"sv, {"NUL"}, 932},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const std::string result = Put(c.file, c.now, c.page);
    EXPECT_TRUE(result.starts_with("error: ")) << result;
    for (const std::string_view told : c.told)
      EXPECT_NE(result.find(told), std::string::npos) << result;
  }
}

class Writer_On_Disk : public testing::Test {
 protected:
  Project_Source Load() { return Read_Project(folder.Path()); }
  test::Temp_Folder folder;
};

TEST_F(Writer_On_Disk, WritesEditedModulesOnly) {
  folder.Put("a.bas", "Attribute VB_Name = \"A\"\r\nX\r\n");
  Writer writer(Load().files, 932);
  const std::vector<std::string_view> same = {"X"}, edited = {"X", "'あ"};

  folder.Put("a.bas", "changed by others");
  const Write_Result unedited = writer.Write("a", same);
  EXPECT_TRUE(unedited.Ok());
  EXPECT_FALSE(unedited.written);
  const Write_Result changed = writer.Write("A", edited);
  EXPECT_NE(changed.error.find("a.bas"), std::string::npos) << changed.error;
  EXPECT_EQ(folder.Get("a.bas"), "changed by others");

  folder.Put("a.bas", "Attribute VB_Name = \"A\"\r\nX\r\n");
  EXPECT_TRUE(writer.Write("A", edited).written);
  EXPECT_EQ(folder.Get("a.bas"), "Attribute VB_Name = \"A\"\r\nX\r\n'\x82\xA0\r\n");
  EXPECT_FALSE(writer.Write("A", edited).written);
  EXPECT_TRUE(writer.Write("A", same).written) << "a second edit follows the first";
  EXPECT_EQ(folder.Get("a.bas"), "Attribute VB_Name = \"A\"\r\nX\r\n");
  EXPECT_FALSE(writer.Write("B", same).Ok());
}

TEST_F(Writer_On_Disk, TheEditorsTextGoesBackToItsFiles) {
  folder.Put("a.bas", "Attribute VB_Name = \"A\"\r\nSub S()\r\n  \r\nEnd Sub\r\n");
  folder.Put("b.bas", "X\n");
  folder.Put("c.bas", "'1\n");
  Project_Source project = Load();
  host::Memory_Editor editor;
  host::Memory_Project& loaded = Add_To_Editor(editor, project);
  EXPECT_EQ(editor.ActiveVBProject(), &loaded);
  EXPECT_EQ(loaded.FileName(), folder.Path());
  loaded.Find_Component("A")->CodeModule()->InsertLines(2, "  ' ソ");
  loaded.Find_Component("c")->CodeModule()->ReplaceLine(1, "'😀");

  Writer writer(project.files, 932);
  const auto problems = writer.Write_Edited(loaded);
  ASSERT_EQ(problems.size(), 1u);
  EXPECT_EQ(problems[0].path, "c");
  EXPECT_EQ(folder.Get("a.bas"),
            "Attribute VB_Name = \"A\"\r\nSub S()\r\n  ' \x83\x5C\r\n  \r\nEnd Sub\r\n");
  EXPECT_EQ(folder.Get("c.bas"), "'1\n");
  EXPECT_FALSE(loaded.Find_Component("A")->Is_Edited());
  EXPECT_TRUE(loaded.Find_Component("c")->Is_Edited());

  // A module that lost all its lines, and one that consists of an empty line.
  loaded.Find_Component("b")->CodeModule()->DeleteLines(1);
  loaded.Find_Component("c")->CodeModule()->ReplaceLine(1, "");
  EXPECT_TRUE(writer.Write_Edited(loaded).empty());
  EXPECT_EQ(folder.Get("b.bas"), "");
  EXPECT_EQ(folder.Get("c.bas"), "\n");
}

TEST_F(Writer_On_Disk, WhatWasReplacedIsTakenBackAsAWhole) {
  const std::string old = "\xEF\xBB\xBFSub S()\n\r\nX\r", other = "Y\r\n";
  folder.Put("a.bas", old);
  folder.Put("sub/b.bas", other);
  EXPECT_TRUE(Take_Back(Load()).unread) << "there is no record";
  const auto replace = [&] {
    folder.Put("a.bas", "new a");
    folder.Put("sub/b.bas", "new b");
    ASSERT_EQ(Save_Undo(Load().host_file, {{"a.bas", old, Hash_Bytes("new a"), 5},
                                           {"sub/b.bas", other, Hash_Bytes("new b"), 5}}),
              "");
  };
  replace();
  EXPECT_TRUE(folder.Has(folder.Path().filename().string() + ".oru-undo"));
  folder.Put("sub/b.bas", "by others");
  Undone undone = Take_Back(Load());
  EXPECT_NE(undone.error.find("b.bas"), std::string::npos) << undone.error;
  EXPECT_EQ(folder.Get("a.bas"), "new a") << "all or nothing";
  replace();
  undone = Take_Back(Load());
  EXPECT_EQ(undone.error, "");
  EXPECT_EQ(folder.Get("a.bas"), old);
  EXPECT_EQ(folder.Get("sub/b.bas"), other);
  EXPECT_TRUE(Take_Back(Load()).unread) << "the record is gone";
  // A record names files of the project only.
  folder.Put("outside.txt", "x");
  ASSERT_EQ(Save_Undo(Load().host_file, {{"outside.txt", "y", Hash_Bytes("x"), 1}}), "");
  EXPECT_FALSE(Take_Back(Load()).error.empty());
  EXPECT_EQ(folder.Get("outside.txt"), "x");
}

TEST_F(Writer_On_Disk, AFileThatIsGoneIsNotMadeAgain) {
  folder.Put("a.bas", "X\r\n");
  Writer writer(Load().files, 932);
  std::filesystem::remove(folder / "a.bas");
  EXPECT_FALSE(writer.Write("a", std::vector<std::string_view>{"Y"}).Ok());
  EXPECT_FALSE(folder.Has("a.bas"));
}

}  // namespace
}  // namespace oru::provider
