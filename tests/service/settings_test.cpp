// SPDX-License-Identifier: MIT
#include "service/settings.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

#include "service/text.h"
#include "support/fakes.h"

namespace oru::service {
namespace {

std::string Bytes_Of(const Settings& settings, std::size_t offset, std::size_t count) {
  return settings.Bytes().substr(offset, count);
}

TEST(Settings_Table, FieldsLieInTheBlocksInOrderAndApart) {
  std::size_t end = 0;
  std::set<std::string_view> names;
  for (const Settings_Field& field : Settings_Fields()) {
    SCOPED_TRACE(field.name);
    EXPECT_GE(field.offset, end);
    end = field.offset + std::size_t{field.width};
    EXPECT_TRUE(field.offset >= kView_Begin ? end <= kView_End : end <= kMain_End);
    EXPECT_TRUE(names.insert(field.name).second);
    EXPECT_EQ(Find_Settings_Field(field.name), &field);

    const bool is_text = field.type == Field_Type::Text;
    const bool is_one = field.type == Field_Type::Flag || field.type == Field_Type::Byte;
    EXPECT_EQ(field.width, is_text ? 2 * field.characters : is_one ? 1 : 4);
  }
  EXPECT_EQ(Find_Settings_Field("winlft"), nullptr);
  EXPECT_EQ(Find_Settings_Field(""), nullptr);
}

// What stands at these places in the records of users, and so may never move.
TEST(Settings_Table, FixedPlacesAndDefaultsStand) {
  using enum Field_Type;
  constexpr struct {
    const char* name;
    int offset;
    Field_Type type;
    int number;
  } kNumbers[] = {
      {"WinLft", 0, Int32, 60},        {"WinTop", 4, Int32, 60},    {"WinWid", 8, Int32, 960},
      {"OptFlg0", 12, Flag, 0},        {"OptFlg1", 13, Flag, 1},    {"OptFlg2", 14, Flag, 1},
      {"OptFlg3", 16, Flag, 1},        {"CmtPos", 17, Byte, 1},     {"SpcCnt", 18, Byte, 5},
      {"OptFlg4", 19, Flag, 1},        {"TmrSec", 20, Int32, 600},  {"OptFlg5", 24, Flag, 1},
      {"OptCnt0", 32, Int32, 3},       {"OptFlg6", 36, Flag, 1},    {"LSPeed", 40, Int32, 0},
      {"BckClr", 48, Int32, 0xEAF4F7}, {"ClrMod", 52, Int32, 1},    {"PrcHs", 56, Flag, 0},
      {"LstSep", 59, Byte, 0},         {"CmtDelTag", 316, Flag, 1}, {"LinLen", 652, Int32, 200},
  };
  const Settings settings;
  for (const auto& c : kNumbers) {
    SCOPED_TRACE(c.name);
    const Settings_Field* const field = Find_Settings_Field(c.name);
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->offset, c.offset);
    EXPECT_EQ(field->type, c.type);
    EXPECT_EQ(settings.Number(c.name), c.number);
  }
  constexpr struct {
    const char* name;
    int offset, characters;
    const char* text;
  } kTexts[] = {
      {"MdlCmtTag", 60, 64, "概要：|説明：|処理内容："},
      {"MemCmtTag", 188, 64, "概要：|説明：|処理内容："},
      {"CmtDelChr", 317, 12, "*=-/■"},
      {"FntNam1", 432, 12, "ＭＳ Ｐゴシック"},
      {"FntNam2", 460, 12, "ＭＳ Ｐゴシック"},
      {"FntNam3", 488, 12, "ＭＳ ゴシック"},
      {"LinChr", 649, 1, "-"},
      {"EvtPrcKey", 1728, 10, "Evt_"},
  };
  for (const auto& c : kTexts) {
    SCOPED_TRACE(c.name);
    const Settings_Field* const field = Find_Settings_Field(c.name);
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->offset, c.offset);
    EXPECT_EQ(field->characters, c.characters);
    EXPECT_EQ(settings.Text(c.name), c.text);
  }
  EXPECT_EQ(Find_Settings_Field("FntSiz1")->offset, 456);
  EXPECT_EQ(Find_Settings_Field("FntSiz2")->offset, 484);
  EXPECT_EQ(Find_Settings_Field("FntSiz3")->offset, 512);
  EXPECT_EQ(settings.Real("FntSiz3"), 10.0F);
}

TEST(Settings_Table, IsWhatTheFormatDocumentSays) {
  constexpr std::string_view kTypes[] = {"flag", "byte", "integer", "float", "text"};
  std::ifstream file(ORU_SOURCE_DIR "/docs/formats.md", std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  const std::size_t begin = page.find("\n## DA-Sys.VMO\n");
  ASSERT_NE(begin, std::string::npos);
  const std::string section = page.substr(begin, page.find("\n## ", begin + 1) - begin);

  std::string expected;
  for (const Settings_Field& field : Settings_Fields()) {
    std::string value = std::to_string(field.number);
    if (field.type == Field_Type::Float32) value = fmt::format("{:.1f}", field.number / 100.0);
    if (field.type == Field_Type::Text) {
      value = field.text.empty() ? "" : '"' + Replace_All(field.text, "|", "\\|") + '"';
    }
    expected +=
        fmt::format("| {} | {} | `{}` | {} | {} | {} |\n", field.offset, field.width, field.name,
                    kTypes[static_cast<std::size_t>(field.type)], value, field.meaning);
  }
  const std::size_t rows = section.find("\n| 0 | ");
  ASSERT_NE(rows, std::string::npos);
  EXPECT_EQ(section.substr(rows + 1, expected.size()), expected);
}

TEST(Settings, BytesAreLittleEndianBlankPaddedCodePage) {
  Settings settings;
  EXPECT_EQ(Bytes_Of(settings, 48, 4), "\xF7\xF4\xEA" + std::string(1, '\0'));
  EXPECT_EQ(Bytes_Of(settings, 512, 4), std::string("\0\0\x20\x41", 4));  // 10.0
  EXPECT_EQ(Bytes_Of(settings, 317, 24), "*=-/\x81\xA1" + std::string(18, ' '));
  settings.Set_Number("TmrSec", -2);
  EXPECT_EQ(Bytes_Of(settings, 20, 4), "\xFE\xFF\xFF\xFF");
  EXPECT_EQ(settings.Number("TmrSec"), -2);
}

TEST(Settings, SmallNumbersKeepTheNearestValue) {
  constexpr struct {
    const char* name;
    int given, kept;
  } kCases[] = {{"SpcCnt", 255, 255},
                {"SpcCnt", 256, 255},
                {"SpcCnt", -1, 0},
                {"PrcHs", 7, 1},
                {"PrcHs", 0, 0}};
  for (const auto& c : kCases) {
    Settings settings;
    settings.Set_Number(c.name, c.given);
    EXPECT_EQ(settings.Number(c.name), c.kept) << c.name << c.given;
  }
}

TEST(Settings, TextsAreCutAtTheEndOfACharacter) {
  struct Case {
    const char *what, *name, *in, *out;
  };
  constexpr Case kCases[] = {
      {"as many characters as it has, half-width", "FntNam1", "abcdefghijklmn", "abcdefghijkl"},
      {"as many characters as it has, full-width", "FntNam1", "あいうえおかきくけこさしす",
       "あいうえおかきくけこさし"},
      {"a full-width one", "LinChr", "─-", "─"},
      {"half-width kana are one byte each", "LinChr", "ｱｲ", "ｱ"},
      {"blanks at the end are padding", "EvtPrcKey", "a b  ", "a b"},
      {"nothing", "EvtPrcKey", "", ""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.what);
    Settings settings;
    const std::string before = settings.Bytes();
    ASSERT_TRUE(settings.Set_Text(c.name, c.in));
    EXPECT_EQ(settings.Text(c.name), c.out);
    EXPECT_EQ(settings.Bytes().size(), kSettings_Size);
    const Settings_Field* const field = Find_Settings_Field(c.name);
    const std::size_t end = field->offset + std::size_t{field->width};
    EXPECT_EQ(settings.Bytes().substr(end), before.substr(end));
  }
}

TEST(Settings, TextWithoutAPlaceInTheCodePageIsRefused) {
  Settings settings;
  EXPECT_FALSE(settings.Set_Text("EvtPrcKey", "Ж한"));
  EXPECT_EQ(settings.Text("EvtPrcKey"), "Evt_");
}

TEST(Settings, NameOfAnotherTypeOrNoneIsAFault) {
  Settings settings;
  EXPECT_THROW((void)settings.Number("FntSiz1"), std::logic_error);
  EXPECT_THROW((void)settings.Number("EvtPrcKey"), std::logic_error);
  EXPECT_THROW((void)settings.Text("WinLft"), std::logic_error);
  EXPECT_THROW((void)settings.Real("WinLft"), std::logic_error);
  EXPECT_THROW(settings.Set_Number("Nonsense", 1), std::logic_error);
}

TEST(Settings, BytesThatNoFieldCoversAreKept) {
  test::Temp_Folder folder;
  std::string record(kSettings_Size, '\0');
  for (std::size_t i = 0; i < record.size(); ++i) record[i] = static_cast<char>(i * 31 % 251);
  record.replace(656, 1024, std::string(1024, 'p'));  // the two paths, which are filled when blank
  folder.Put("DA-Sys.VMO", record);

  Settings settings;
  ASSERT_TRUE(Lod_SysInf(settings, folder.Path()));
  EXPECT_EQ(settings.Bytes(), record);
  settings.Set_Number("TmrSec", 60);
  EXPECT_EQ(Upd_SysInf(settings, folder.Path(), ""), "");
  record.replace(20, 4, std::string("\x3C\0\0\0", 4));
  EXPECT_EQ(folder.Get("DA-Sys.VMO"), record);
}

TEST(Settings, RecordOfAnotherSizeGivesTheDefaults) {
  for (const std::size_t size : {std::size_t{0}, kSettings_Size - 1, kSettings_Size + 1}) {
    SCOPED_TRACE(size);
    test::Temp_Folder folder;
    folder.Put("DA-Sys.VMO", std::string(size, '\x07'));
    Settings settings;
    settings.Set_Number("TmrSec", 1);
    EXPECT_FALSE(Lod_SysInf(settings, folder.Path()));
    EXPECT_EQ(settings.Number("TmrSec"), 600);
  }
  test::Temp_Folder folder;
  Settings settings;
  EXPECT_FALSE(Lod_SysInf(settings, folder.Path()));
  EXPECT_FALSE(settings.Set_Bytes("short"));
  EXPECT_EQ(settings.Number("TmrSec"), 600);
}

TEST(Settings, RecordOfAnOlderVersionIsTold) {
  Settings settings;
  EXPECT_TRUE(Chk_SysVer(settings));
  ASSERT_TRUE(settings.Set_Bytes(std::string(kSettings_Size, '\0')));
  EXPECT_FALSE(Chk_SysVer(settings));
  settings.Int_SysInf();
  EXPECT_TRUE(Chk_SysVer(settings));
}

TEST(Settings, BlankPathsBecomePathsInTheDataFolder) {
  test::Temp_Folder folder;
  Settings settings;
  EXPECT_FALSE(Lod_SysInf(settings, folder.Path()));
  EXPECT_EQ(settings.Text("TplPth"), folder.Path().string() + "/標準書式.doc");
  EXPECT_EQ(settings.Text("OutPth"), folder.Path().string());

  ASSERT_TRUE(settings.Set_Text("OutPth", "/somewhere"));
  EXPECT_EQ(Upd_SysInf(settings, folder.Path(), ""), "");
  EXPECT_TRUE(Lod_SysInf(settings, folder.Path()));
  EXPECT_EQ(settings.Text("OutPth"), "/somewhere");
}

TEST(Settings, PathThatDoesNotFitStaysBlank) {
  test::Temp_Folder folder;
  Settings settings;
  EXPECT_FALSE(Lod_SysInf(settings, folder / std::string(250, 'x')));
  EXPECT_EQ(settings.Text("TplPth"), "");
}

TEST(Settings, WritingRemovesALeftOverWorkFileAndNoOther) {
  test::Temp_Folder folder;
  Settings fresh;
  folder.Put("data/Sales.RIF", "x");
  folder.Put("data/Other.RIF", "x");
  folder.Put("Up.RIF", "x");
  EXPECT_EQ(Upd_SysInf(fresh, folder / "data", "Sales"), "");
  EXPECT_EQ(Upd_SysInf(fresh, folder / "data", "../Up"), "");
  EXPECT_FALSE(folder.Has("data/Sales.RIF"));
  EXPECT_TRUE(folder.Has("data/Other.RIF"));
  EXPECT_TRUE(folder.Has("Up.RIF"));
}

TEST(Settings, WritingTellsWhatWentWrong) {
  test::Temp_Folder folder;
  Settings fresh;
  EXPECT_NE(Upd_SysInf(fresh, folder / "none", ""), "");
  EXPECT_EQ(Upd_SysInf(fresh, {}, ""), "");
}

}  // namespace
}  // namespace oru::service
