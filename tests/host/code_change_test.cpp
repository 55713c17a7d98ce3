// SPDX-License-Identifier: MIT
// The guard of changes: what it refuses, and that a refusal leaves the module alone.
#include "host/code_change.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/memory_editor.h"
#include "support/failing_host.h"

namespace oru::host {
namespace {

using Changes = std::vector<Line_Change>;

class Code_Change : public ::testing::Test {
 protected:
  CodeModule& Module(std::string text) {
    Memory_Project& project = editor_.Add_Project("P", "P.xlsm");
    return *project.Add_Component({.name = "M", .text = std::move(text)}).CodeModule();
  }
  static std::string Text(const CodeModule& code) { return code.Lines(1, code.CountOfLines()); }

 private:
  Memory_Editor editor_;
};

std::string Repeated(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST_F(Code_Change, AllOfThemFromTheTopOfTheModuleToItsEnd) {
  CodeModule& code = Module("a\nb\nc\nd");
  const Changes changes{
      {1, {}, {"0"}}, {1, {"a", "b"}, {"b", "a", "x"}}, {4, {"d"}, {}}, {5, {}, {"e", ""}}};
  const Change_Result result = Do_Change(code, "M", changes, Keeps::Nothing);
  EXPECT_EQ(result.Error, "");
  EXPECT_TRUE(result.Changed);
  EXPECT_EQ(Text(code), "0\r\nb\r\na\r\nx\r\nc\r\ne\r\n");
}

TEST_F(Code_Change, WhatChangesNothingIsNotWritten) {
  CodeModule& code = Module("a\n\nb");
  Selection marked{2, 1, 3, 2};
  code.CodePane().SetSelection(marked);
  const Change_Result result =
      Do_Change(code, "M", Changes{{1, {"a", ""}, {"a", "\t"}}}, Keeps::All_But_Blanks);
  EXPECT_TRUE(result.Ok());
  EXPECT_FALSE(result.Changed);
  EXPECT_EQ(code.CodePane().GetSelection(), marked);
}

TEST_F(Code_Change, RefusesTheWholeOfIt) {
  const std::string full(kMost_Characters - 1, 'x');
  const std::string long_text = "a\n" + Repeated("b _\n", 24) + "c\nd";
  const struct {
    std::string_view what;
    std::string text;
    Changes changes;
    Keeps keeps;
    std::string_view line;  // named in the message; empty: it is made
  } kCases[] = {
      {"text of another moment",
       "a\nb\nc",
       {{1, {"a"}, {"x"}}, {2, {"B"}, {"y"}}},
       Keeps::Nothing,
       "2 行目"},
      {"lines that are gone", "a", {{1, {"a", "b"}, {"x"}}}, Keeps::Nothing, "2 行目"},
      {"no such place", "a", {{3, {}, {"x"}}}, Keeps::Nothing, "3 行目"},
      {"a full line", "a\nb", {{2, {"b"}, {full + "字"}}}, Keeps::Nothing, ""},
      {"one character more",
       "a\nb",
       {{1, {"a"}, {"x"}}, {2, {"b"}, {full + "字 "}}},
       Keeps::Nothing,
       "2 行目"},
      {"a full statement", long_text, {{26, {"c"}, {"x"}}}, Keeps::Nothing, ""},
      {"continued above", long_text, {{26, {"c"}, {"c _"}}}, Keeps::Nothing, "26 行目"},
      {"continued below", long_text, {{1, {"a"}, {"a _"}}}, Keeps::Nothing, "25 行目"},
      {"continued by what goes in", long_text, {{10, {}, {"x _"}}}, Keeps::Nothing, "25 行目"},
      {"by two changes together",
       long_text,
       {{1, {"a"}, {"a _"}}, {2, {"b _"}, {"b"}}},
       Keeps::Nothing,
       ""},
      {"moved characters",
       "a = 1\nb",
       {{1, {"a = 1", "b"}, {"\ta=1b", ""}}},
       Keeps::All_But_Blanks,
       ""},
      {"a lost character",
       "a = 1\nbc\nd",
       {{1, {"a = 1", "bc", "d"}, {"a = 1", " c", "d"}}},
       Keeps::All_But_Blanks,
       "2 行目"},
      {"lost lines", "a\nb\nc", {{1, {"a", "b", "c"}, {"a"}}}, Keeps::All_But_Blanks, "2 行目"},
      {"text from nowhere",
       "a\nb",
       {{1, {"a", "b"}, {"a", "b", "c"}}},
       Keeps::All_But_Blanks,
       "2 行目"},
      {"a full-width blank is a character",
       "a　b",
       {{1, {"a　b"}, {"a b"}}},
       Keeps::All_But_Blanks,
       "1 行目"},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    CodeModule& code = Module(each.text);
    const std::string before = Text(code);
    const Change_Result result = Do_Change(code, "M", each.changes, each.keeps);
    EXPECT_EQ(result.Ok(), each.line.empty()) << result.Error;
    if (each.line.empty()) continue;

    EXPECT_NE(result.Error.find(each.line), std::string::npos) << result.Error;
    EXPECT_EQ(Text(code), before);
  }
}

TEST_F(Code_Change, AModuleBeyondTheLimitKeepsItsLines) {
  CodeModule& code = Module(Repeated("x\n", kMost_Lines + 2));
  const std::string before = Text(code);
  const Change_Result result =
      Do_Change(code, "M", Changes{{2, {"x", "x"}, {"y", "y"}}}, Keeps::Nothing);
  EXPECT_NE(result.Error.find("65536 行"), std::string::npos) << result.Error;
  EXPECT_EQ(Text(code), before);
  EXPECT_TRUE(
      Do_Change(code, "M", Changes{{1, {"x"}, {"y"}}, {2, {"x"}, {"y"}}}, Keeps::Nothing).Ok());
  EXPECT_TRUE(Do_Change(code, "M", Changes{{1, {"y", "y"}, {}}}, Keeps::Nothing).Ok());
}

TEST_F(Code_Change, AHostThatRefusesKeepsItsText) {
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    CodeModule& real = Module("a\nb\nc\nd");
    const Changes changes{{1, {"a"}, {"x"}}, {2, {"b", "c"}, {"y"}}, {4, {"d"}, {"z", "z"}}};
    ASSERT_EQ(Chk_Change(real, "M", changes, Keeps::Nothing), "");
    test::Fuse fuse{call};
    test::Failing_Module code(real, fuse);
    Change_Result result;
    try {
      result = Do_Change(code, "M", changes, Keeps::Nothing);
    } catch (const Host_Error&) {
      EXPECT_EQ(Text(real), "a\r\nb\r\nc\r\nd");
      continue;
    }
    if (!fuse.burnt) {
      EXPECT_EQ(Text(real), "x\r\ny\r\nz\r\nz");
      break;
    }
    EXPECT_FALSE(result.Ok());
    EXPECT_FALSE(result.Changed);
    EXPECT_EQ(Text(real), "a\r\nb\r\nc\r\nd");
  }
}

}  // namespace
}  // namespace oru::host
