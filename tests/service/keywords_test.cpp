// SPDX-License-Identifier: MIT
#include "service/keywords.h"

#include <gtest/gtest.h>

#include "service/text.h"
#include "support/fakes.h"

namespace oru::service {
namespace {

TEST(Keywords, TakesTrimmedWordsAndPassesOverNotes) {
  Keywords words;
  words.Load_Text("/ title\r\n  Dim  \r\n\r\n   \n/End\n:=\nDim\nLast");
  EXPECT_EQ(words.Count(), 3u);
  EXPECT_TRUE(words.Has("Dim"));
  EXPECT_TRUE(words.Has(":="));
  EXPECT_TRUE(words.Has("Last"));
  EXPECT_FALSE(words.Has("/End"));
  EXPECT_FALSE(words.Has(""));
}

TEST(Keywords, OneTestMindsLetterCaseAndTheOtherDoesNot) {
  Keywords words;
  words.Load_Text("ByVal\n");
  EXPECT_FALSE(words.Has("byval"));
  EXPECT_TRUE(words.Has_No_Case("BYVAL"));
  EXPECT_FALSE(words.Has_No_Case("ByRef"));
}

TEST(Keywords, LoadingForgetsTheWordsBefore) {
  Keywords words;
  words.Load_Text("Neu\n");
  EXPECT_FALSE(words.Has("Dim"));
  EXPECT_FALSE(words.Has_No_Case("dim"));
}

TEST(Keywords, TemplateHoldsEachKindOfWord) {
  const Keywords words;
  for (const char* word : {"ElseIf",
                           "Wend",
                           "GoSub",
                           "WithEvents",
                           "PtrSafe",
                           "DefLngPtr",
                           "#If",
                           "#Else",
                           "VBA7",
                           "LongPtr",
                           "=",
                           "<>",
                           "&",
                           ":=",
                           "Left$",
                           "Left",
                           "MidB$",
                           "CLngPtr",
                           "InStrRev",
                           "DateSerial",
                           "Sqr",
                           "NPV",
                           "FreeFile",
                           "Environ$",
                           "TypeName",
                           "LBound",
                           "MsgBox",
                           "Erl",
                           "vbCrLf",
                           "vbYesNoCancel",
                           "vbTextCompare",
                           "vbObjectError",
                           "vbKeyF16"}) {
    EXPECT_TRUE(words.Has(word)) << word;
  }
}

// A word of the list is never looked up as a name of the project, so names that people give to
// their own procedures must not stand in it, though members of built-in objects have them.
TEST(Keywords, TemplateLeavesUsualNamesToTheProject) {
  const Keywords words;
  for (const char* word :
       {"Count", "Item", "Add", "Number", "Source", "Clear", "Assert", "Application", "Range"}) {
    EXPECT_FALSE(words.Has_No_Case(word)) << word;
  }
}

TEST(Keywords, TemplateHasNoWordTwice) {
  std::size_t lines = 0;
  for (const auto line : Split(Keywords::Template(), "\n")) {
    if (!line.empty() && line.front() != '/') ++lines;
    EXPECT_EQ(line, Trim(line));
  }
  EXPECT_EQ(Keywords().Count(), lines);
}

TEST(Keywords, MissingFileLeavesTheWordsOfTheProgram) {
  test::Temp_Folder folder;
  Keywords words;
  EXPECT_FALSE(Lod_KWd(words, folder.Path()));
  EXPECT_FALSE(folder.Has("DA-KWd.txt"));
  EXPECT_EQ(words.Count(), Keywords().Count());
}

TEST(Keywords, FileOfTheUserCountsInEitherEncoding) {
  test::Temp_Folder folder;
  Keywords words;
  folder.Put("DA-KWd.txt", "\xEF\xBB\xBF\xE8\xA1\xA8\r\nMine\r\n");  // a mark, then UTF-8
  ASSERT_TRUE(Lod_KWd(words, folder.Path()));
  EXPECT_TRUE(words.Has("表"));
  EXPECT_TRUE(words.Has("Mine"));
  folder.Put("DA-KWd.txt", "\x95\x5C\r\n");  // code page 932
  ASSERT_TRUE(Lod_KWd(words, folder.Path()));
  EXPECT_TRUE(words.Has("表"));
  EXPECT_EQ(words.Count(), 1u);
}

TEST(Keywords, UnreadableFileLeavesTheWordsAsTheyAre) {
  test::Temp_Folder folder;
  std::filesystem::create_directory(folder / "DA-KWd.txt");
  Keywords words;
  EXPECT_FALSE(Lod_KWd(words, folder.Path()));
  EXPECT_FALSE(Lod_KWd(words, folder / "none"));
  EXPECT_FALSE(Lod_KWd(words, {}));
  EXPECT_TRUE(words.Has("Dim"));
}

}  // namespace
}  // namespace oru::service
