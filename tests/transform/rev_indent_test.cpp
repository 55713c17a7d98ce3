// SPDX-License-Identifier: MIT
// The formatter over the editor: what it leaves alone, that it is done whole or not at all, and that
// it changes nothing but blanks in the sample project.
#include "transform/rev_indent.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "provider/project_source.h"
#include "support/failing_host.h"
#include "support/project.h"
#include "text_lines.h"
#include "transform/line_numbers.h"

namespace oru::transform {
namespace {

using Names = std::vector<std::string>;

class Formatter : public ::testing::Test {
 protected:
  Formatter() {
    ctx_.Note_Edit = [this](std::string_view module) { calls_.emplace_back(module); };
    ctx_.Renew_Control = [this](std::string_view module, std::string_view member) {
      calls_.push_back("Renew " + std::string(module) + "." + std::string(member));
    };
  }
  host::CodeModule& Module(std::string_view text) {
    if (text.starts_with('\n')) text.remove_prefix(1);
    project_.Add("M", text);
    return project_.Code("M");
  }
  static std::string Text(const host::CodeModule& code) {
    return test::Shown(host::Lines_Of(code, 1, code.CountOfLines()));
  }
  host::Change_Result Format(host::CodeModule& code, int line = 1) {
    return Format_Procedure(ctx_, {code, "M", host::Get_CML_Inf(code, line)});
  }
  void Caret(host::CodeModule& code, const host::Selection& selection) {
    code.CodePane().Show();
    code.CodePane().SetSelection(selection);
  }

  test::Project project_;
  Transform_Ctx ctx_{project_.Srv, project_.Editor, project_.Tbl};
  Names calls_;
};

TEST_F(Formatter, TouchesTheBodyOnly) {
  const struct {
    std::string_view what, in, out;
  } kCases[] = {
      {"signature, comments, end", "\n  ' a\n Sub A( _\n b)\nc\n  End Sub\n  ' d",
       "\n  ' a\n Sub A( _\n b)\n     c\n  End Sub\n  ' d\n"},
      {"End Function", "\nFunction A()\nDo\nEnd Function\nDo",
       "\nFunction A()\n    Do\nEnd Function\nDo\n"},
      {"End Property", "\nProperty Let A(b)\nDo\nEnd Property\nDo",
       "\nProperty Let A(b)\n    Do\nEnd Property\nDo\n"},
      {"an empty first line", "\nSub A()\n\nb\nEnd Sub", "\nSub A()\n\n    b\nEnd Sub\n"},
      {"no body", "\nSub A()\nEnd Sub\n' b", "\nSub A()\nEnd Sub\n' b\n"},
      {"all on one line", "\nSub A(): b: End Sub\n' c", "\nSub A(): b: End Sub\n' c\n"},
      {"an end behind something else", "\nSub A()\nb\nc: End Sub\n' d",
       "\nSub A()\n    b\nc: End Sub\n' d\n"},
      {"labels go", "\nSub A()\n10: b\n20: If c Then\n30: d\n40: End If\n50: End Sub",
       "\nSub A()\n    b\n    If c Then\n        d\n    End If\nEnd Sub\n"},
      {"labels in use stay", "\nSub A()\n10: b\n20: If c Then GoTo 40\n30: Do\nd\n40: End Sub",
       "\nSub A()\n    b\n    If c Then GoTo 40\n    Do\n        d\n40: End Sub\n"},
      {"tabs count as blanks",
       "\n  Sub A()\n\tDo\n \t\tb = \"\t\"\n\tx _\n\t\ty\n\tLoop\n  End Sub",
       "\n  Sub A()\n      Do\n          b = \"\t\"\n          x _\n              y\n      Loop\n"
       "  End Sub\n"},
      {"a number that is no label", "\nSub A()\nb = Array( _\n10: 1)\n20 Do\nEnd Sub",
       "\nSub A()\n    b = Array( _\n    10: 1)\n    20 Do\nEnd Sub\n"},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    host::CodeModule& code = Module(each.in);
    const std::string before = Text(code);
    const host::Change_Result result = Format(code);
    EXPECT_EQ(result.Error, "");
    EXPECT_EQ(Text(code), each.out);
    EXPECT_EQ(result.Changed, before != each.out);
    EXPECT_FALSE(Format(code).Changed);
    project_.Remove("M");
  }
}

TEST_F(Formatter, TakesItsOptions) {
  project_.Srv.Opt.Set_Number("FTx_IdtCn", 2);
  project_.Srv.Opt.Set_Number("FCk_RevDS", 0);
  host::CodeModule& code = Module("Sub A()\nDim b\nDo\nc\nLoop\nEnd Sub");
  EXPECT_TRUE(Format(code).Changed);
  EXPECT_EQ(Text(code), "\nSub A()\nDim b\n  Do\n    c\n  Loop\nEnd Sub\n");
}

TEST_F(Formatter, RefusesWhole) {
  std::string deep = "Sub A()\n10: x\n";
  for (int i = 0; i < 38; ++i) deep += "Do\n";
  const std::string full = "x = " + std::string(host::kMost_Characters - 4, '1');
  const struct {
    std::string_view what;
    std::string text;
    std::string_view line;
  } kCases[] = {
      {"too deep", deep + "End Sub", "40 行目"},
      {"too long a line", "Sub A()\n10: x\n" + full + "\nEnd Sub", "3 行目"},
      {"lost characters", "    Sub A()\n      x = _\n  y\n    End Sub", "3 行目"},
      {"lost characters and labels", "    Sub A()\n10: x\n  y\n    End Sub", "3 行目"},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    host::CodeModule& code = Module(each.text);
    const std::string before = Text(code);
    const host::Change_Result result = Format(code);
    EXPECT_NE(result.Error.find(each.line), std::string::npos) << result.Error;
    EXPECT_FALSE(result.Changed);
    EXPECT_EQ(Text(code), before);
    project_.Remove("M");
  }
  EXPECT_TRUE(calls_.empty());
}

TEST_F(Formatter, AHostThatRefusesKeepsItsText) {
  using Work = std::function<host::Change_Result(const Procedure&)>;
  const struct {
    std::string_view what;
    Work work;
    std::string_view out;
  } kCases[] = {
      {"format", [this](const Procedure& p) { return Format_Procedure(ctx_, p); },
       "\nSub A()\n    b\n    If c Then\n        d\n    End If\nEnd Sub\n"},
      {"set", [this](const Procedure& p) { return Set_LNo_Lop(ctx_, p, Label_Mode::Set); },
       "\nSub A()\n2: b\n3: If c Then\n4: d\nEnd If\nEnd Sub\n"},
      {"remove", [this](const Procedure& p) { return Set_LNo_Lop(ctx_, p, Label_Mode::Remove); },
       "\nSub A()\nb\nIf c Then\nd\nEnd If\nEnd Sub\n"},
  };
  for (const auto& each : kCases) {
    SCOPED_TRACE(each.what);
    host::CodeModule& real = Module("Sub A()\n10: b\n20: If c Then\nd\n40: End If\n50: End Sub");
    const std::string before = Text(real);
    const host::Member_Place place = host::Get_CML_Inf(real, 1);
    for (int call = 1;; ++call) {
      SCOPED_TRACE(call);
      ASSERT_LT(call, 1000);
      test::Fuse fuse{call};
      test::Failing_Module code(real, fuse);
      try {
        const host::Change_Result result = each.work({code, "M", place});
        if (!fuse.burnt) break;
        EXPECT_FALSE(result.Ok());
      } catch (const host::Host_Error&) {
        EXPECT_TRUE(fuse.burnt);
      }
      EXPECT_EQ(Text(real), before);
    }
    EXPECT_EQ(Text(real), each.out);
    project_.Remove("M");
  }
}

TEST_F(Formatter, PutsThePaneBack) {
  std::string text = "Option Explicit\nSub A()\n";
  for (int i = 0; i < 100; ++i) text += "b\n";
  host::CodeModule& code = Module(text + "End Sub");
  Caret(code, {60, 1, 62, 2});
  code.CodePane().Set_TopLine(50);
  EXPECT_TRUE(Rev_Indent(ctx_).Changed);
  EXPECT_EQ(code.Lines(102, 1), "    b");
  EXPECT_EQ(code.CodePane().GetSelection(), (host::Selection{60, 1, 60, 1}));
  EXPECT_EQ(code.CodePane().TopLine(), 50);
  EXPECT_EQ(project_.Editor.Bars().Executed().size(), 2U);  // the marks cleared, one set
  EXPECT_EQ(calls_, (Names{"M", "Renew M.A"}));
  EXPECT_EQ(project_.Ui.calls,
            (Names{"Timer 0", "Wait 1", "Do_Events", "Do_Events", "Timer 1", "Wait 0"}));
}

TEST_F(Formatter, NothingWithoutAProcedureInEditing) {
  host::CodeModule& code = Module("Option Explicit\nSub A()\nb\nEnd Sub");
  Caret(code, {1, 1, 1, 1});
  EXPECT_FALSE(Rev_Indent(ctx_).Changed);
  EXPECT_TRUE(project_.Ui.messages.empty());

  Caret(code, {3, 1, 3, 1});
  project_.Editor.Set_Mode("中断");
  EXPECT_FALSE(Rev_Indent(ctx_).Changed);
  ASSERT_EQ(project_.Ui.messages.size(), 1U);
  EXPECT_NE(project_.Ui.messages[0].text.find("この機能はコード編集時のみ利用可能です。"),
            std::string::npos);
  EXPECT_EQ(code.Lines(3, 1), "b");
}

TEST_F(Formatter, TheTimerGoesOnBehindARefusal) {
  host::CodeModule& code = Module("    Sub A()\n  b\n    End Sub");
  Caret(code, {2, 2, 2, 2});
  EXPECT_FALSE(Rev_Indent(ctx_).Ok());
  EXPECT_EQ(project_.Ui.calls, (Names{"Timer 0", "Wait 1", "Timer 1", "Wait 0"}));
  EXPECT_EQ(code.CodePane().GetSelection(), (host::Selection{2, 2, 2, 2}));
  EXPECT_TRUE(project_.Editor.Bars().Executed().empty());
}

std::string Without_Blanks(std::string text) {
  std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
  return text;
}

// All procedures of the sample: formatting keeps every character and is done after the first time;
// numbers come and go; formatting takes them out.
TEST_F(Formatter, TheSampleProject) {
  provider::Project_Source source =
      provider::Read_Project(ORU_SOURCE_DIR "/samples/juchu", {.code_page = 932});
  ASSERT_TRUE(source.Ok()) << source.error;
  host::Memory_Project& project = provider::Add_To_Editor(project_.Editor, source);
  int procedures = 0, formatted = 0, numbered = 0;
  for (int i = 1; i <= project.VBComponents().Count(); ++i) {
    host::VBComponent& component = *project.VBComponents().Item(i);
    host::CodeModule& code = *component.CodeModule();
    for (int line = code.CountOfDeclarationLines() + 1; line <= code.CountOfLines();) {
      const Procedure procedure{code, component.Name(), host::Get_CML_Inf(code, line)};
      line = procedure.Mem.Top + procedure.Mem.Cnt;
      SCOPED_TRACE(procedure.Mdl + "." + procedure.Mem.Nam);
      ++procedures;
      const std::string before = Text(code);
      if (Set_LNo_Lop(ctx_, procedure, Label_Mode::Set).Changed) ++numbered;
      const std::string with_numbers = Text(code);
      (void)Set_LNo_Lop(ctx_, procedure, Label_Mode::Remove);
      ASSERT_EQ(Text(code), before);

      if (Format_Procedure(ctx_, procedure).Changed) ++formatted;
      const std::string after = Text(code);
      ASSERT_EQ(Without_Blanks(after), Without_Blanks(before));
      ASSERT_FALSE(Format_Procedure(ctx_, procedure).Changed);
      if (with_numbers.find("Erl") != std::string::npos) continue;
      (void)Set_LNo_Lop(ctx_, procedure, Label_Mode::Set);
      ASSERT_TRUE(Format_Procedure(ctx_, procedure).Ok());
      ASSERT_EQ(Text(code), after);
    }
  }
  EXPECT_GT(procedures, 100);
  EXPECT_GT(numbered, procedures / 2);
  EXPECT_GT(formatted, 0);
}

}  // namespace
}  // namespace oru::transform
