// SPDX-License-Identifier: MIT
#include "service/text.h"

#include <gtest/gtest.h>

#include "service/collection.h"
#include "service/rows.h"

namespace oru::service {
namespace {

TEST(Text, NumericAsTheHostSeesIt) {
  const struct {
    std::string_view text;
    bool numeric;
  } kCases[]{{"10", true},    {"-1.5", true},   {" 7 ", true},  {"1,234", true}, {"1E5", true},
             {"&H1F", true},  {"&HFG", false},  {"&17", true},  {"&18", false},  {"(5)", true},
             {"\\100", true}, {"１０", true},   {".5", true},   {"5-", true},    {"", false},
             {"-", false},    {"1E", false},    {"1 2", false}, {"x", false},    {"10x", false},
             {".", false},    {"Label", false}, {"受注", false}};
  for (const auto& c : kCases) EXPECT_EQ(Is_Numeric(c.text), c.numeric) << c.text;
}

TEST(Text, ValReadsTheNumberInFront) {
  const struct {
    std::string_view text;
    double value;
  } kCases[]{{"12abc", 12},  {" 1 2 3", 123},    {"-4.5x", -4.5}, {"&HFF", 255},
             {"&HFFFF", -1}, {"&HFFFF&", 65535}, {"&O17", 15},    {"1E3", 1000},
             {"1e", 1},      {"abc", 0},         {"", 0},         {".", 0},
             {"1.2.3", 1.2}, {"(5)", 0}};
  for (const auto& c : kCases) EXPECT_EQ(Val(c.text), c.value) << c.text;
}

TEST(Text, UnitsOfOneText) {
  const struct {
    std::string_view text;
    int characters, width;
  } kCases[]{{"abc", 3, 3}, {"受注a", 3, 5}, {"ｱｲ", 2, 2}, {"𠮷", 2, 2}, {"±é", 2, 3}, {"", 0, 0}};
  for (const auto& c : kCases) {
    EXPECT_EQ(Len_Chr(c.text), Chr_Count{c.characters}) << c.text;
    EXPECT_EQ(Len_Wid(c.text), Wid_Count{c.width}) << c.text;
  }
  EXPECT_EQ(Byte_Of_Chr("受a𠮷b", Chr_Count{2}), 3U);
  EXPECT_EQ(Byte_Of_Chr("受a𠮷b", Chr_Count{5}), 8U);
  EXPECT_EQ(Chr_Of_Byte("受a𠮷b", 8), Chr_Count{5});
  EXPECT_EQ(Pad_Left("受", Wid_Count{4}), "  受");
  EXPECT_EQ(Pad_Right("受注", Wid_Count{2}), "受注") << "never cut";
  EXPECT_EQ(Cut_Bytes("受注", 4), "受…") << "never inside a character";
}

TEST(Text, LetterCaseIsFoldedCharacterByCharacter) {
  EXPECT_EQ(To_Lower("ABCÄЖＡ受"), "abcäжａ受");
  EXPECT_TRUE(Equal_No_Case("Ｍod１", "ｍOD１"));
  EXPECT_FALSE(Equal_No_Case("abc", "abcd"));
  EXPECT_EQ(Find_No_Case("xＡbＡB", "ａb"), 1U);
  EXPECT_EQ(Find_No_Case("xＡbＡB", "ａb", 2), 5U);
  EXPECT_EQ(Find_No_Case("abc", "d"), std::string_view::npos);
  EXPECT_EQ(Match_No_Case("\u212A1", "k"), 3U) << "the Kelvin sign is longer than its lower case";
}

TEST(Text, BytesThatAreNoUtf8) {
  EXPECT_TRUE(Is_Utf8("受𠮷\xEF\xBF\xBD"));
  for (const std::string_view bad :
       {"\x80", "\xC0\xAF", "\xE5\x8F", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"})
    EXPECT_FALSE(Is_Utf8(bad));
  std::size_t at = 0;
  EXPECT_EQ(Next_Code_Point("\xE5\x8F"
                            "a",
                            at),
            U'\uFFFD');
  EXPECT_EQ(at, 1U) << "only one byte is passed over";
}

TEST(Text, TrimTakesBlanksOnlyAndStaysInTheText) {
  EXPECT_EQ(Trim("  a b\t "), "a b\t");
  const std::string blanks = "   ";
  const std::string_view trimmed = Trim(blanks);
  EXPECT_TRUE(trimmed.empty());
  EXPECT_GE(trimmed.data(), blanks.data());
  EXPECT_LE(trimmed.data(), blanks.data() + blanks.size());
}

TEST(Rows, FewerAndMoreFieldsThanColumns) {
  std::string a = "A", b = "B", c = "C";
  std::string* const targets[]{&a, &b, &c};
  const std::span<std::string* const> fields(targets);
  Srv_Sep_Txt("1\t2", fields);
  EXPECT_EQ(a + b + c, "12C") << "a later field stays as it was";
  Srv_Sep_Txt("x\ty\tz\tmore", fields);
  EXPECT_EQ(a + b + c, "xyz");
  EXPECT_EQ(Srv_Str_Txt({"a\tb", "", "c"}), "a b\t\tc");
  EXPECT_EQ(Row_Field("a\tb", 1), "b");
  EXPECT_EQ(Row_Field("a\tb", 2), "");
}

TEST(Collections, KeysIgnoreCaseAndOrderStays) {
  Collection<int> items;
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(items.Add("Key" + std::to_string(i), i));
  EXPECT_FALSE(items.Add("KEY3", 99));
  EXPECT_EQ(*items.Get("key3"), 3);
  EXPECT_TRUE(items.Remove("kEy3"));
  EXPECT_FALSE(items.Has("Key3"));
  EXPECT_EQ(*items.Get("Key19"), 19) << "found after others moved up";
  EXPECT_EQ(items.At(4)->value, 4);
  EXPECT_EQ(items.At(0), nullptr);
  EXPECT_EQ(items.At(20), nullptr);
  EXPECT_TRUE(Add_Col_Itm(items, "KEY4", 0)) << "was there already";
  EXPECT_FALSE(Add_Col_Itm(items, "", 0));
  EXPECT_EQ(items.Count(), 19U);
  EXPECT_EQ(Chk_Col_Key<int>(nullptr, "Key4"), nullptr) << "a missing collection has no keys";
}

TEST(Collections, DictionariesAreExact) {
  Dictionary<int> words;
  EXPECT_TRUE(Add_Dic_Itm(words, "b", 1));
  EXPECT_TRUE(Add_Dic_Itm(words, "B", 2));
  EXPECT_FALSE(Add_Dic_Itm(words, "b", 3));
  EXPECT_FALSE(Add_Dic_Itm(words, "", 3));
  words.Put("b", 4);
  std::string shown;
  for (const auto& [key, value] : words) shown += key + std::to_string(value);
  EXPECT_EQ(shown, "b4B2");
}

}  // namespace
}  // namespace oru::service
