// SPDX-License-Identifier: MIT
#include "provider/line_match.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "service/text.h"

namespace oru::provider {
namespace {

/// Each character is a line; the result has the old line's index (from 0) or "-" for each new line.
std::string Match(std::string_view old, std::string_view now) {
  std::vector<std::string_view> old_lines, now_lines;
  for (std::size_t i = 0; i < old.size(); ++i) old_lines.push_back(old.substr(i, 1));
  for (std::size_t i = 0; i < now.size(); ++i) now_lines.push_back(now.substr(i, 1));
  std::string result;
  for (const std::size_t at : Match_Lines(old_lines, now_lines))
    result += at == kNo_Line ? "-" : std::to_string(at);
  return result;
}

TEST(LineMatch, FindsTheLinesThatStayed) {
  struct Case {
    std::string_view what, old, now, match;
  };
  constexpr Case cases[] = {
      {"equal", "abc", "abc", "012"},
      {"all new", "abc", "xyz", "---"},
      {"from nothing", "", "a", "-"},
      {"to nothing", "a", "", ""},
      {"inserted", "abc", "abxc", "01-2"},
      {"removed", "abc", "ac", "02"},
      {"replaced at both ends", "abcd", "xbcy", "-12-"},
      {"every line indented but the empty ones", "a.b..c.d", "A.B..C.D", "-1-34-6-"},
      {"moved line: the longer part stays", "abcd", "bcda", "123-"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Match(c.old, c.now), c.match);
  }
}

TEST(LineMatch, RepeatedLinesGiveARisingMatchOfTheGreatestLength) {
  struct Case {
    std::string_view old, now;
    int length;
  };
  for (const Case& c :
       {Case{"babab", "aabba", 3}, Case{"aaxbaa", "axbba", 4}, Case{"abcabba", "cbabac", 4}}) {
    SCOPED_TRACE(c.old);
    const std::string match = Match(c.old, c.now);
    int before = -1, count = 0;
    for (std::size_t i = 0; i < match.size(); ++i) {
      if (match[i] == '-') continue;
      EXPECT_EQ(c.old[static_cast<std::size_t>(match[i] - '0')], c.now[i]);
      EXPECT_GT(match[i] - '0', before);
      before = match[i] - '0';
      ++count;
    }
    EXPECT_EQ(count, c.length);
  }
}

TEST(LineMatch, LongStretchesKeepTheirLines) {
  std::vector<std::string> texts;
  texts.reserve(5000);
  for (int i = 0; i < 5000; ++i) texts.push_back("line " + std::to_string(i));
  std::vector<std::string_view> old(texts.begin(), texts.end()), now;
  for (std::size_t i = 0; i < old.size(); ++i) {
    if (i % 7 != 0) now.push_back(old[i]);  // every seventh line goes
    if (i % 5 == 0) now.push_back("new");
  }
  const auto match = Match_Lines(old, now);
  std::size_t kept = 0;
  for (const std::size_t at : match) kept += at != kNo_Line;
  EXPECT_EQ(kept, 5000u - 715u);
}

}  // namespace
}  // namespace oru::provider
