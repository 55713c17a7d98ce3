// SPDX-License-Identifier: MIT
#include "service/text_find.h"

#include <gtest/gtest.h>

#include <string>

#include "service/pattern.h"
#include "service/text.h"

namespace oru::service {
namespace {

constexpr auto kNone = std::string_view::npos;

std::string Fold_Text(std::string_view text) {
  std::string folded;
  for (std::size_t at = 0; at < text.size();)
    Append_Code_Point(folded, Fold_Of(Next_Code_Point(text, at)));
  return folded;
}

TEST(Text_Find, TheTextComparisonSeesNeitherCaseNorWidthNorKana) {
  const struct {
    std::string_view word, text;
    std::size_t exact, folded, size;  // places in bytes, and the bytes of the folded one
  } kCases[] = {
      {"Foo", "x = foo", kNone, 4, 3}, {"foo", "x = Foo + foo", 10, 4, 3},
      {"foo", "'ＦＯo", kNone, 1, 7},  {"ＡＢＣ", "abc", kNone, 0, 3},
      {"ア", "あア", 3, 0, 3},         {"ｱ", "アあ", kNone, 0, 3},
      {"がｶﾞ", "ガｶﾞ", kNone, 0, 9},   {"ガ", "ｶﾞ", kNone, kNone, 0},  // one character against two
      {"ー。", "ｰ｡", kNone, 0, 6},     {"a b", "A　B", kNone, 0, 5},
      {"受注", "発注受受注", 9, 9, 6}, {"Ä", "aä", kNone, 1, 2},
      {"k", "\u212A", kNone, 0, 3},  // a letter of three bytes whose lower case has one
      {"(", "（", kNone, 0, 3},        {"", "abc", kNone, kNone, 0},
      {"abc", "ab", kNone, kNone, 0},  {"é\xFF", "É\xFF", kNone, 0, 3},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.word);
    const auto exact = Text_Finder(c.word, Compare::Binary).Find(c.text);
    EXPECT_EQ(exact ? exact->at : kNone, c.exact);
    const auto folded = Text_Finder(c.word, Compare::Text).Find(c.text);
    EXPECT_EQ(folded ? folded->at : kNone, c.folded);
    EXPECT_EQ(folded ? folded->size : 0, c.size);
  }
}

// The finder jumps from one rare character to the next; the plain way is to try each place.
TEST(Text_Find, FindsWhatComparingAtEachPlaceFinds) {
  std::string text;
  for (unsigned i = 0, state = 7; i < 30'000; ++i) {
    constexpr std::string_view kParts[] = {"a",  "A", "ａ", "b", "ｂ", "ア",
                                           "あ", "ｱ", "e",  " ", "zz"};
    state = state * 1103515245 + 12345;
    text += kParts[(state >> 16) % std::size(kParts)];
  }
  for (const std::string_view word : {"ab", "あa", "zza", "eアe", "aaaa", "ｱ b"}) {
    const std::string folded = Fold_Text(word);
    const Text_Finder finder(word, Compare::Text);
    std::size_t from = 0, count = 0;
    for (std::size_t at = 0; at < text.size();) {
      std::size_t end = at, characters = 0;
      for (std::size_t i = 0; i < word.size(); ++characters) (void)Next_Code_Point(word, i);
      for (; characters > 0 && end < text.size(); --characters) (void)Next_Code_Point(text, end);
      if (characters == 0 && Fold_Text(text.substr(at, end - at)) == folded) {
        const auto found = finder.Find(text, from);
        ASSERT_TRUE(found.has_value()) << word;
        ASSERT_EQ(*found, (Text_Span{at, end - at})) << word;
        from = at + 1;
        while (from < text.size() && (static_cast<unsigned char>(text[from]) & 0xC0) == 0x80)
          ++from;
        ++count;
      }
      (void)Next_Code_Point(text, at);
    }
    EXPECT_GT(count, 0U) << word;
    EXPECT_FALSE(finder.Find(text, from).has_value()) << word;
  }
}

TEST(Patterns, ReadAsTheHostDoes) {
  const struct {
    std::string_view pattern, text;
    bool ignore_case;
    std::string_view matches;  // each match in brackets
  } kCases[] = {
      {"a.c", "abc a\nc aXc", false, "[abc][aXc]"},
      {"^x", "x\nx", false, "[x]"},
      {"x$", "x\nx\n", false, ""},  // no line end is passed over
      {"\\d+", "12 ３４", false, "[12]"},
      {"\\w+", "ab_1 受注", false, "[ab_1]"},
      {"\\bab\\b", "ab受 cab ab", false, "[ab][ab]"},
      {"\\s", "a　b", false, ""},
      {"(a)|b\\1", "b", false, "[b]"},  // a group that took no part is empty
      {"(.)\\1", "xaab", false, "[aa]"},
      {"a+?", "aaa", false, "[a][a][a]"},
      {"foo(?=bar)", "foo foobar", false, "[foo]"},
      {"foo(?!bar)", "foobar foo", false, "[foo]"},
      {"FOO", "foo Foo", true, "[foo][Foo]"},
      {"\\u53d7\\x41", "受A", false, "[受A]"},
      {"[^]x", "ax", false, "[ax]"},
      {"x*", "axx", false, "[xx]"},  // empty matches are no places
      {"受.", "受注受", false, "[受注]"},
  };
  for (const auto& c : kCases) {
    const Pattern pattern(c.pattern, c.ignore_case);
    ASSERT_TRUE(pattern.Ok()) << c.pattern;
    std::string matches;
    for (const Text_Span span : pattern.Matches(c.text))
      matches.append("[").append(c.text.substr(span.at, span.size)).append("]");
    EXPECT_EQ(matches, c.matches) << c.pattern;
    EXPECT_EQ(pattern.Test(c.text), !matches.empty()) << c.pattern;
  }
  for (const std::string_view bad : {"(", "[a", "*", "a{2,1}", "(?<n", "\\C", "\xFF"})
    EXPECT_FALSE(Pattern(bad, false).Ok()) << bad;
}

TEST(Patterns, OneThatTriesForEverEnds) {
  const std::string line(5000, 'a');
  EXPECT_THROW((void)Pattern("(a+)+[bc]", false).Test(line), Pattern_Limit);
  EXPECT_THROW((void)Pattern("(a|aa)+[bc]", false).Matches(line), Pattern_Limit);
}

}  // namespace
}  // namespace oru::service
