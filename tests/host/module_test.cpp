// SPDX-License-Identifier: MIT
// The code of one module: loading, reading, writing, limits, and the search.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "host/memory_module.h"

namespace oru::host {
namespace {

struct Module {
  explicit Module(std::string text)
      : code(desk, std::move(text), [] { return std::string("M"); }) {}
  [[nodiscard]] std::string All() const { return code.Lines(1, code.CountOfLines()); }
  Window_Desk desk;
  Memory_Module code;
};

/// The number of the `Host_Error` that the call throws; 0 if it throws none.
int Error_Of(const std::function<void()>& call) {
  try {
    call();
  } catch (const Host_Error& error) {
    EXPECT_STRNE(error.what(), "");
    return error.number;
  }
  return 0;
}

TEST(Module, LoadsAnyLineEnds) {
  const struct {
    std::string_view what, text;
    int count;
    std::string_view held;
  } cases[] = {
      {"empty", "", 0, ""},
      {"one line without an end", "a", 1, "a"},
      {"one line with an end", "a\r\n", 1, "a"},
      {"one empty line", "\r\n", 1, ""},
      {"CR LF", "a\r\n\r\nb\r\n\r\n", 4, "a\r\n\r\nb\r\n"},
      {"LF", "a\n\nb\n", 3, "a\r\n\r\nb"},
      {"CR", "a\r\rb\r", 3, "a\r\n\r\nb"},
      {"CR CR LF is one end", "a\r\r\nb\r\r\n", 2, "a\r\nb"},
      {"mixed", "a\r\nb\nc\rd", 4, "a\r\nb\r\nc\r\nd"},
      {"white lines become empty, blanks elsewhere stay", "a \r\n \t\r\n\tb\r\n  ", 4,
       "a \r\n\r\n\tb\r\n"},
      {"LF in the middle of CR LF ones", "a\r\n\nb\r\nc", 4, "a\r\n\r\nb\r\nc"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Module module{std::string(each.text)};
    EXPECT_EQ(module.code.CountOfLines(), each.count);
    EXPECT_EQ(module.All(), each.held);
  }
}

TEST(Module, ReadsLines) {
  Module module("a\nb\nc\n");
  EXPECT_EQ(module.code.Lines(2, 2), "b\r\nc");
  EXPECT_EQ(module.code.Lines(3, 1), "c");
  EXPECT_EQ(module.code.Lines(2, 0), "");
  const struct {
    int start, count;
  } outside[] = {{0, 1}, {4, 1}, {1, 4}, {2, -1}, {3, 2'147'483'647}};
  for (const auto& [start, count] : outside)
    EXPECT_EQ(Error_Of([&, s = start, c = count] { (void)module.code.Lines(s, c); }),
              kErr_Subscript);
}

TEST(Module, Writes) {
  using Write = std::function<void(Memory_Module&)>;
  const struct {
    std::string_view what;
    Write write;
    std::string_view after;  // of "a\r\nb\r\nSub S()\r\nEnd Sub"
  } cases[] = {
      {"insert pushes down", [](auto& m) { m.InsertLines(2, "x"); }, "a|x|b|Sub S()|End Sub"},
      {"insert several", [](auto& m) { m.InsertLines(1, "x\r\n\ty\nz"); },
       "x|\ty|z|a|b|Sub S()|End Sub"},
      {"an end in the text leaves one more empty line", [](auto& m) { m.InsertLines(2, "x\r\n"); },
       "a|x||b|Sub S()|End Sub"},
      {"insert nothing gives an empty line", [](auto& m) { m.InsertLines(1, ""); },
       "|a|b|Sub S()|End Sub"},
      {"append", [](auto& m) { m.InsertLines(5, "x"); }, "a|b|Sub S()|End Sub|x"},
      {"replace", [](auto& m) { m.ReplaceLine(2, "x"); }, "a|x|Sub S()|End Sub"},
      {"replace by several", [](auto& m) { m.ReplaceLine(1, "x\r\ny"); }, "x|y|b|Sub S()|End Sub"},
      {"white text is written as empty", [](auto& m) { m.ReplaceLine(1, " \t "); },
       "|b|Sub S()|End Sub"},
      {"delete one", [](auto& m) { m.DeleteLines(2); }, "a|Sub S()|End Sub"},
      {"delete several", [](auto& m) { m.DeleteLines(1, 3); }, "End Sub"},
      {"delete all", [](auto& m) { m.DeleteLines(1, 4); }, ""},
      {"add goes before the first procedure", [](auto& m) { m.AddFromString("x"); },
       "a|b|x|Sub S()|End Sub"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Module module("a\nb\nSub S()\nEnd Sub");
    each.write(module.code);
    std::string after = module.All();
    for (std::size_t at = 0; (at = after.find("\r\n", at)) != std::string::npos;)
      after.replace(at, 2, "|");
    EXPECT_EQ(after, each.after);
    EXPECT_EQ(module.code.Edit_Count(), 1U);
  }
  Module empty("");
  EXPECT_EQ(Error_Of([&] { empty.code.ReplaceLine(1, "x"); }), kErr_Subscript);
  empty.code.AddFromString("x");
  empty.code.AddFromString("y");
  EXPECT_EQ(empty.All(), "x\r\ny");
}

TEST(Module, RefusedWritesDoNothing) {
  const std::string full = [] {
    std::string text;
    for (int i = 0; i < kMost_Lines; ++i) text += "x\n";
    return text;
  }();
  // 1,023 characters of three bytes each fit, one more does not, in any line of the text.
  std::string wide;
  for (int i = 0; i < kMost_Characters; ++i) wide += "あ";
  using Write = std::function<void(Memory_Module&)>;
  const struct {
    std::string_view what;
    std::string_view text;
    Write write;
    int error;
  } cases[] = {
      {"insert at 0", "a", [](auto& m) { m.InsertLines(0, "x"); }, kErr_Subscript},
      {"insert far behind", "a", [](auto& m) { m.InsertLines(3, "x"); }, kErr_Subscript},
      {"replace behind", "a", [](auto& m) { m.ReplaceLine(2, "x"); }, kErr_Subscript},
      {"delete behind", "a", [](auto& m) { m.DeleteLines(1, 2); }, kErr_Subscript},
      {"delete fewer than none", "a", [](auto& m) { m.DeleteLines(1, -1); }, kErr_Subscript},
      {"long line", "a", [&](auto& m) { m.InsertLines(1, "x\r\n" + wide + "い"); }, kErr_Bad_Call},
      {"long line replacing", "a", [&](auto& m) { m.ReplaceLine(1, wide + "い"); }, kErr_Bad_Call},
      {"one line too many", full, [](auto& m) { m.InsertLines(1, "x"); }, kErr_Memory},
      {"one line too many replacing", full, [](auto& m) { m.ReplaceLine(1, "x\r\ny"); },
       kErr_Memory},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Module module{std::string(each.text)};
    const std::string before = module.All();
    EXPECT_EQ(Error_Of([&] { each.write(module.code); }), each.error);
    EXPECT_EQ(module.All(), before);
    EXPECT_EQ(module.code.Edit_Count(), 0U);
  }
  Module longer(full + "one more\n" + wide + wide);
  longer.code.ReplaceLine(1, wide);
  longer.code.DeleteLines(2);
  EXPECT_EQ(longer.code.CountOfLines(), kMost_Lines + 1);
}

TEST(Module, Finds) {
  constexpr Selection kAll{1, 1, -1, -1};
  constexpr Selection kNone{0, 0, 0, 0};
  constexpr bool kWord = true, kCase = true, kPattern = true;
  const struct {
    std::string_view what, target;
    Selection range;
    bool word, match_case, pattern;
    Selection found;
  } cases[] = {
      {"plain", "foo", kAll, false, false, false, {1, 5, 1, 8}},
      {"matching case", "foo", kAll, false, kCase, false, {2, 3, 2, 6}},
      {"whole word", "FOO", kAll, kWord, false, false, {2, 3, 2, 6}},
      {"whole word in its case", "FOO", kAll, kWord, kCase, false, kNone},
      {"columns are characters", "値", kAll, false, false, false, {3, 7, 3, 8}},
      {"beyond the basic plane a character counts two",
       "end",
       kAll,
       false,
       false,
       false,
       {4, 5, 4, 8}},
      {"whole word of Japanese", "合計", kAll, kWord, false, false, {3, 10, 3, 12}},
      {"no whole word inside a Japanese one", "計", kAll, kWord, false, false, kNone},
      {"wide letters in another case", "ａｂ", kAll, false, false, false, {3, 13, 3, 15}},
      {"from the start column", "foo", {1, 5, -1, -1}, false, false, false, {1, 5, 1, 8}},
      {"behind the start column", "foo", {1, 6, -1, -1}, false, false, false, {2, 3, 2, 6}},
      {"start column behind the line", "foo", {1, 99, 1, -1}, false, false, false, kNone},
      {"the end column is inside", "foo", {2, 1, 2, 5}, false, false, false, {2, 3, 2, 6}},
      {"cut by the end column", "foo", {2, 1, 2, 4}, false, false, false, kNone},
      {"the end line is inside", "end", {1, 1, 4, -1}, false, false, false, {4, 5, 4, 8}},
      {"behind the end line", "end", {1, 1, 3, -1}, false, false, false, kNone},
      {"lines behind the module", "end", {9, 1, 12, -1}, false, false, false, kNone},
      {"empty target", "", kAll, false, false, false, kNone},
      {"star takes the shortest", "t*l", kAll, false, false, kPattern, {5, 2, 5, 6}},
      {"star at the end of a whole word", "sub*", kAll, kWord, false, kPattern, {1, 1, 1, 9}},
      {"any character", "f?o(", kAll, false, false, kPattern, {2, 3, 2, 7}},
      {"digit", "#)", kAll, false, false, kPattern, {2, 9, 2, 11}},
      {"list", "[x-z0-9][a-c]", kAll, false, false, kPattern, {2, 7, 2, 9}},
      {"list in another case", "[A-F]oo[(]", kAll, false, false, kPattern, {2, 3, 2, 7}},
      {"excluding list", "foo[!A-Z]", kAll, false, false, kPattern, {2, 3, 2, 7}},
      {"bracket without its end", "[tail", kAll, false, false, kPattern, {5, 1, 5, 6}},
      {"stars apart", "'*計*Ａ", kAll, false, false, kPattern, {3, 5, 3, 14}},
      {"pattern that fits nowhere", "foo*bar", kAll, false, false, kPattern, kNone},
      {"pattern signs in a plain search", "f*", kAll, false, false, false, kNone},
  };
  Module module(
      "Sub_FooX = 1\n"
      "a foo(xb1)\n"
      "x = ' 値, 合計 ＡＢ\n"
      "' 😀End\n"
      "[tail tail\n");
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Selection range = each.range;
    const bool found =
        module.code.Find(each.target, range, each.word, each.match_case, each.pattern);
    EXPECT_EQ(found, each.found.start_line != 0);
    EXPECT_EQ(range, found ? each.found : each.range);
  }
  Selection range = kAll;
  EXPECT_EQ(Error_Of([&] { (void)module.code.Find("a", range, false, kCase, kPattern); }),
            kErr_Bad_Call);
  range.start_line = 0;
  EXPECT_EQ(Error_Of([&] { (void)module.code.Find("a", range, false, false, false); }),
            kErr_Subscript);
}

}  // namespace
}  // namespace oru::host
