// SPDX-License-Identifier: MIT
// Random edits: after each one the module answers as one built anew from its text.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "host/code_lines.h"
#include "host/derived.h"
#include "host/memory_module.h"

namespace oru::host {
namespace {

constexpr std::string_view kPieces[] = {
    "",
    "' note",
    "' note _",
    "Rem x",
    "Option Explicit",
    "  x = 1 _",
    "  y = 2: z = 3",
    "10 End Sub",
    "End Sub",
    "End Function ' over _",
    "End _",
    "Sub _",
    "Public _",
    "Sub A()",
    "Function B() As Long",
    "Property Get C()",
    "Property Let C(v)",
    "End Property",
    "Sub D(): End Sub",
    "Public Sub E( _",
    "x: Sub F()",
    "s = \"Sub G()\"",
};

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int Below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
  std::string_view Piece() { return kPieces[Below(static_cast<int>(std::size(kPieces)))]; }

 private:
  std::mt19937 engine_;
};

/// All answers of a module, line by line, as text.
std::string Answers(const CodeModule& module) {
  std::string all = std::to_string(module.CountOfDeclarationLines()) + "\n";
  for (int line = 1; line <= module.CountOfLines(); ++line) {
    const ProcAtLine at = module.ProcOfLine(line);
    all += at.name;
    if (!at.name.empty())
      all += " " + std::to_string(static_cast<int>(at.kind)) + " " +
             std::to_string(module.ProcStartLine(at.name, at.kind)) + " " +
             std::to_string(module.ProcBodyLine(at.name, at.kind)) + " " +
             std::to_string(module.ProcCountLines(at.name, at.kind));
    all += "\n";
  }
  return all;
}

/// The section and all procedures, one behind the other, fill the module, also those that the host
/// cannot find by name because another one of that name comes first.
void Expect_Partition(const CodeModule& module) {
  const int count = module.CountOfLines();
  int line = module.CountOfDeclarationLines() + 1;
  for (int i = 1; i < line; ++i) ASSERT_EQ(Get_CML_Inf(module, i).Nam, "%Declare");
  while (line <= count) {
    const Member_Place place = Get_CML_Inf(module, line);
    ASSERT_EQ(place.Top, line);
    ASSERT_GE(place.Cnt, 1);
    ASSERT_GE(place.Bdy, line);
    line += place.Cnt;
    ASSERT_LT(place.Bdy, line);
    for (int i = place.Top; i < line && i <= count; ++i) {
      const Member_Place same = Get_CML_Inf(module, i);
      ASSERT_EQ(std::tuple(same.Nam, same.Top, same.Bdy, same.Cnt),
                std::tuple(place.Nam, place.Top, place.Bdy, place.Cnt));
    }
  }
  EXPECT_EQ(line, count + 1);
}

TEST(Edits, EqualAModuleBuiltAnew) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    Window_Desk desk;
    const auto caption = [] { return std::string(); };
    std::vector<std::string> expected;
    Memory_Module module(desk, {}, caption);
    for (int step = 0; step < 150; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      const int count = module.CountOfLines();
      const auto at = [&](int line) { return expected.begin() + (line - 1); };
      const int what = count == 0 ? 0 : random.Below(5);
      if (what <= 1) {
        const int line = 1 + random.Below(count + 1);
        const int added = what == 0 ? 1 : 1 + random.Below(12);
        std::vector<std::string> pieces;
        std::string text;
        for (int i = 0; i < added; ++i) {
          pieces.emplace_back(random.Piece());
          text.append(i == 0 ? "" : "\r\n").append(pieces.back());
        }
        module.InsertLines(line, text);
        expected.insert(at(line), pieces.begin(), pieces.end());
      } else if (what <= 3) {
        const int line = 1 + random.Below(count);
        const std::string piece(random.Piece());
        module.ReplaceLine(line, piece);
        *at(line) = piece;
      } else {
        const int line = 1 + random.Below(count);
        const int removed = 1 + random.Below(std::min(count - line + 1, 8));
        module.DeleteLines(line, removed);
        expected.erase(at(line), at(line + removed));
      }
      std::string text;
      for (const std::string& line : expected)
        text.append(&line == expected.data() ? "" : "\r\n").append(line);
      ASSERT_EQ(module.CountOfLines(), static_cast<int>(expected.size()));
      ASSERT_EQ(module.Lines(1, module.CountOfLines()), text);
      Memory_Module fresh(desk, text + (expected.empty() ? "" : "\r\n"), caption);
      ASSERT_EQ(Answers(module), Answers(fresh));
      Expect_Partition(module);
    }
  }
}

/// Enough lines for many blocks, edits of all sizes, and enough garbage for clean-ups.
TEST(Edits, BlocksAndBuffersFollow) {
  Random random(7);
  Code_Lines lines;
  std::vector<std::string> expected;
  expected.reserve(3000);
  for (int i = 0; i < 3000; ++i) expected.push_back("line " + std::to_string(i));
  std::string text;
  for (const std::string& line : expected) text += line + "\n";
  lines.Load(text);
  for (int step = 0; step < 400; ++step) {
    const int count = lines.Count();
    const int line = 1 + random.Below(count + 1);
    const int most = std::min(count - line + 1, random.Below(10) == 0 ? 2500 : 3);
    const int removed = most > 0 ? random.Below(most + 1) : 0;
    const int added = random.Below(10) == 0 ? random.Below(3000) : 1 + random.Below(3);
    std::vector<std::string> pieces;
    std::string written;
    for (int i = 0; i <= added; ++i) {
      pieces.push_back(std::string(random.Piece()) + std::to_string(step));
      written.append(i == 0 ? "" : "\n").append(pieces.back());
    }
    if (random.Below(4) == 0 && removed < count) {
      lines.Delete(line, removed);
      pieces.clear();
    } else {
      lines.Replace(line, removed, written);
    }
    expected.erase(expected.begin() + line - 1, expected.begin() + line - 1 + removed);
    expected.insert(expected.begin() + line - 1, pieces.begin(), pieces.end());
    ASSERT_EQ(lines.Count(), static_cast<int>(expected.size()));
    if (expected.empty()) continue;
    const int some = 1 + random.Below(lines.Count());
    ASSERT_EQ(lines.Line(some), expected[static_cast<std::size_t>(some) - 1]);
    if (step % 20 != 0) continue;
    std::string joined;
    for (const std::string& each : expected)
      joined.append(&each == expected.data() ? "" : "\r\n").append(each);
    ASSERT_EQ(lines.Join(1, lines.Count()), joined);
    Code_Lines fresh;
    fresh.Load(joined);
    for (int i = 1; i <= lines.Count(); i += 7) {
      ASSERT_EQ(lines.Before(i), fresh.Before(i));
      ASSERT_EQ(lines.Openings_Before(i), fresh.Openings_Before(i));
      for (const std::uint8_t flag : {kLine_Opens, kLine_Closes, kLine_Code}) {
        ASSERT_EQ(lines.Next_With(i, flag), fresh.Next_With(i, flag));
        ASSERT_EQ(lines.Prev_With(i, flag), fresh.Prev_With(i, flag));
      }
    }
    ASSERT_LT(lines.Memory(), 6 * joined.size() + (1U << 20));
  }
}

TEST(Edits, ReplacedTextIsGivenBack) {
  Code_Lines lines;
  lines.Load("a\n" + std::string(100'000, 'x'));
  for (int i = 0; i < 5000; ++i) lines.Replace(1 + i % 2, 1, std::string(1000, 'y'));
  EXPECT_EQ(lines.Count(), 2);
  EXPECT_LT(lines.Memory(), 500'000U);
}

}  // namespace
}  // namespace oru::host
