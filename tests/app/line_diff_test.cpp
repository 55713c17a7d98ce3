// SPDX-License-Identifier: MIT
// Unified differences.
#include "app/cli/line_diff.h"

#include <gtest/gtest.h>

#include "service/text.h"

namespace oru::app {
namespace {

std::string Diff(std::string_view old, std::string_view now, Diff_For reader = Diff_For::Patch,
                 std::string_view name = "f") {
  const auto lines = [](std::string_view text) {
    return text.empty() ? std::vector<std::string_view>{} : service::Split(text, " ");
  };
  return Unified_Diff(lines(old), lines(now), name, reader);
}

TEST(Line_Diff, HunksAndTheirNumbers) {
  const std::string head = "--- f\n+++ f\n";
  const struct {
    std::string_view what, old, now;
    std::string diff;
  } kCases[] = {
      {"nothing", "a b", "a b", ""},
      {"a change", "a b c d e f g h i", "a b c d X f g h i",
       head + "@@ -2,7 +2,7 @@\n b\n c\n d\n-e\n+X\n f\n g\n h\n"},
      {"at both ends", "a b c", "X b c Y", head + "@@ -1,3 +1,4 @@\n-a\n+X\n b\n c\n+Y\n"},
      {"into nothing", "", "a b", head + "@@ -0,0 +1,2 @@\n+a\n+b\n"},
      {"to nothing", "a", "", head + "@@ -1,1 +0,0 @@\n-a\n"},
      {"six lines between make one hunk", "a 1 2 3 4 5 6 b", "1 2 3 4 5 6",
       head + "@@ -1,8 +1,6 @@\n-a\n 1\n 2\n 3\n 4\n 5\n 6\n-b\n"},
      {"seven make two", "a 1 2 3 4 5 6 7 b", "1 2 3 4 5 6 7 c d",
       head + "@@ -1,4 +1,3 @@\n-a\n 1\n 2\n 3\n@@ -6,4 +5,5 @@\n 5\n 6\n 7\n-b\n+c\n+d\n"},
  };
  for (const auto& each : kCases) EXPECT_EQ(Diff(each.old, each.now), each.diff) << each.what;
}

TEST(Line_Diff, WhatATerminalWouldObeyIsMarkedThere) {
  // An escape, the mark that turns the direction, a byte that is no UTF-8; a tab may stand.
  constexpr std::string_view kNow = "\t\x1B[2J\u202Ex\xFF";
  const std::string seen = "\t\uFFFD[2J\uFFFDx\uFFFD";
  EXPECT_EQ(Diff("a", kNow), "--- f\n+++ f\n@@ -1,1 +1,1 @@\n-a\n+" + std::string(kNow) + "\n");
  EXPECT_EQ(Diff("a", kNow, Diff_For::Terminal),
            "--- f\n+++ f\n@@ -1,1 +1,1 @@\n-a\n+" + seen + "\n");
  EXPECT_EQ(Diff("a", kNow, Diff_For::Coloured_Terminal),
            "\x1B[1m--- f\x1B[0m\n\x1B[1m+++ f\x1B[0m\n\x1B[36m@@ -1,1 +1,1 @@\x1B[0m\n"
            "\x1B[31m-a\x1B[0m\n\x1B[32m+" +
                seen + "\x1B[0m\n");
}

TEST(Line_Diff, ATabEndsANameWithBlanks) {
  EXPECT_EQ(Diff("a", "", Diff_For::Patch, "受注 1.bas"),
            "--- 受注 1.bas\t\n+++ 受注 1.bas\t\n@@ -1,1 +0,0 @@\n-a\n");
  EXPECT_EQ(Diff("a", "", Diff_For::Patch, "a\nb"), "--- a b\t\n+++ a b\t\n@@ -1,1 +0,0 @@\n-a\n");
}

}  // namespace
}  // namespace oru::app
