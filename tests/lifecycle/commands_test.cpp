// SPDX-License-Identifier: MIT
// What a command tests before it acts, in which order, what it then runs, and that no fault of it
// gets out.
#include "lifecycle/commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/fake_bars.h"
#include "lifecycle/menus.h"
#include "support/fakes.h"

namespace oru::lifecycle {
namespace {

using Texts = std::vector<std::string>;

const std::string kNo_Project = "  有効なプロジェクトがありません。";
const std::string kLocked = "  保護されたプロジェクトでは実行できません。";
const std::string kUnsaved =
    "  ワークブック（プロジェクト）が未保存の場合、正しく解析できないことがあります。\r\n  ワークブックを一度保存してから実行してください。";
const std::string kNo_Module = "  有効なモジュールがありません。";
const std::string kNot_Editing = "  この機能はコード編集時のみ利用可能です。";
const std::string kNo_Designer = "  フォームモジュール以外では利用できません。";

/// An editor with a code window in front, and commands that have all they can run.
struct Desk : test::Fake_Services {
  host::Memory_Editor real;
  host::Memory_Project& project = real.Add_Project("P", "C:\\仕事\\Book1.xlsm");
  host::Memory_Component& module = project.Add_Component({.name = "Module1", .text = "Sub A()"});
  test::Fake_Editor editor{real};
  Texts done;
  Command_Ctx ctx{services, editor};

  Desk() {
    module.CodeModule()->CodePane().Show();
    for (const Command& command : Commands_Table()) {
      const std::string name(command.Nam);
      if (command.Act == Action::Transform)
        ctx.Trf[name] = [this, name](int mode) { Note(name, mode); };
      else if (!name.empty())
        ctx.Frm[name] = [this](const View_Request& view) {
          done.push_back(std::string(view.Frm) + " " + std::string(view.Mod) +
                         (view.Sel_Wrd ? "word" : ""));
        };
    }
    ctx.Disp_Help = [this](Help_Topic topic) { Note("Disp_Help", static_cast<int>(topic)); };
    ctx.Set_Sif_Inf = [this] { done.emplace_back("Set_Sif_Inf"); };
    ctx.Set_MovLs = [this] { done.emplace_back("Set_MovLs"); };
    ctx.Mov_Prc_His = [this](int kind) { return Note("Mov_Prc_His", kind), true; };
    ctx.Clr_Upd_Inf = [this] { done.emplace_back("Clr_Upd_Inf"); };
    ctx.Get_Pgm_Inf = [this](bool from_empty) { Note("Get_Pgm_Inf", from_empty ? 1 : 0); };
    ctx.Ctl_Fnc_Frm = [this](int function) { Note("Ctl_Fnc_Frm", function); };
    ctx.Dsp_Pop_Mnu = [this](std::span<const Menu_Entry> entries) {
      done.emplace_back(entries.front().Caption);
      return std::string("CEv_CE_7_Click");
    };
  }
  void Note(const std::string& what, int number) {
    done.push_back(what + " " + std::to_string(number));
  }
  bool Run(std::string_view handler) { return Commands(ctx).Exc_CBt_Evt(handler); }
  [[nodiscard]] Texts Told() const {
    Texts texts;
    for (const auto& message : ui.messages) texts.push_back(message.text);
    return texts;
  }
};

TEST(Commands, EachHandlerRunsWhatItIsFor) {
  const struct {
    std::string_view handler;
    Texts done;
  } cases[] = {
      {"CTE_HS_1_Click", {"Set_Sif_Inf", "Set_MovLs"}},
      {"CTS_Ev_1_Click", {"Set_Sif_Inf"}},
      {"CTE_CM_2_Click", {"Frm_Move "}},
      {"CTE_CM_3_Click", {"Mov_Prc_His 1"}},
      {"CTE_CM_4_Click", {"Mov_Prc_His 2"}},
      {"CTE_CM_5_Click", {"Mov_Prc_His 3"}},
      {"CTE_CM_6_Click", {"Frm_Jump "}},
      {"CTE_CT_1_Click", {"Frm_List "}},
      {"CTE_CT_2_Click", {"Frm_Chart "}},
      {"CTE_CT_3_Click", {"Frm_Search "}},
      {"CTE_CT_4_Click", {"Frm_Control "}},
      {"CTE_CT_5_Click", {"Frm_Insert "}},
      {"CTE_CT_6_Click", {"Frm_Export "}},
      {"CTE_CT_8_Click", {"Frm_Report "}},
      {"CTE_CT_9_Click", {"Frm_Value "}},
      {"CTE_CT_V_Click", {"Frm_Diff "}},
      {"CEd_MN_2_Click", {"Frm_Search 参照文"}},
      {"CEd_MN_3_Click", {"Frm_Control word"}},
      {"CEd_SN_1_Click", {"Frm_Snippet S"}},
      {"CEd_SQ_1_Click", {"Get_Pgm_Inf 0", "Frm_SQLCp "}},
      {"CTE_CE_5_Click", {"Get_Pgm_Inf 0", "Frm_Trace "}},
      {"CEv_CE_1_Click", {"Alg_CmA_Pos 2"}},
      {"CEv_CE_2_Click", {"Alg_CmA_Pos 1"}},
      {"CEv_CE_3_Click", {"Rev_Let_Sta 0"}},
      {"CEv_CE_7_Click", {"Rev_Indent 0"}},
      {"CTE_CE_6_Click", {"Set_LNo_Key 2"}},
      {"CTE_CE_8_Click", {"Set_LNo_Key 1"}},
      {"CEv_MN_T_Click", {"プロジェクト構成情報...(&1)", "Rev_Indent 0"}},
      {"CEv_OP_1_Click", {"Frm_Option "}},
      {"CEv_HP_1_Click", {"Disp_Help 0"}},
      {"CTS_HP_1_Click", {"Disp_Help 1"}},
      {"CTS_HP_3_Click", {"Disp_Help 2"}},
      {"CTS_CT_A_Click", {"Ctl_Fnc_Frm 1"}},
      {"CTS_CT_B_Click", {"Ctl_Fnc_Frm 2"}},
      {"CTS_CT_C_Click", {"Ctl_Fnc_Frm 3"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.handler);
    Desk desk;
    EXPECT_TRUE(desk.Run(each.handler));
    EXPECT_EQ(desk.done, each.done);
    EXPECT_TRUE(desk.Told().empty());
  }
  Desk desk;
  EXPECT_FALSE(desk.Run("CTE_CT_3"));
  EXPECT_TRUE(desk.done.empty());
}

TEST(Commands, AViewStopsAtTheFirstOfFourReasons) {
  // Each state also has all the reasons that stand behind it, but for those without a project.
  const auto no_modules = [](Desk& desk) {
    desk.project.Remove_Component(desk.module);
    (void)desk.project.Add_Component({.name = "Page1", .type = 82});
  };
  const auto unsaved = [no_modules](Desk& desk) {
    no_modules(desk);
    desk.project.Set_FileName("");
  };
  const auto locked = [unsaved](Desk& desk) {
    unsaved(desk);
    desk.project.Set_Protection(host::Protection::Locked);
  };
  const struct {
    std::string_view what;
    std::function<void(Desk&)> state;
    std::string text;
    bool closes;  // the system's windows
  } cases[] = {
      {"no project", [](Desk& desk) { desk.real.Set_Active(nullptr); }, kNo_Project, true},
      {"locked", locked, kLocked, true},
      {"unsaved", unsaved, kUnsaved, false},
      {"no modules", no_modules, kNo_Module, false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Desk desk;
    each.state(desk);
    desk.ctx.Frm.clear();  // that the view is not here comes last
    EXPECT_FALSE(desk.Run("CTE_CT_3_Click"));
    EXPECT_EQ(desk.Told(), Texts{each.text});
    EXPECT_EQ(desk.ui.messages[0].icon, service::Icon::Warning);
    EXPECT_EQ(std::ranges::count(desk.ui.calls, "All_Unl_Prc"), each.closes ? 1 : 0);
    EXPECT_FALSE(Commands(desk.ctx).Set_Dva_Frm("Frm_Search"));
    EXPECT_EQ(desk.Told(), (Texts{each.text, each.text}));
  }
}

TEST(Commands, EveryHandlerIsStoppedByALockedProject) {
  for (const Command& command : Commands_Table()) {
    SCOPED_TRACE(command.Handler);
    Desk desk;
    desk.project.Set_Protection(host::Protection::Locked);
    EXPECT_FALSE(desk.Run(command.Handler));
    EXPECT_EQ(desk.Told(), Texts{kLocked});
    EXPECT_TRUE(desk.done.empty());
    EXPECT_TRUE(desk.real.Bars().Executed().empty());
  }
}

TEST(Commands, OptionsNeedNoSavedWorkbook) {
  Desk desk;
  desk.project.Set_FileName("");
  EXPECT_TRUE(desk.Run("CEv_OP_1_Click"));
  EXPECT_EQ(desk.done, Texts{"Frm_Option "});
}

TEST(Commands, CodeMustBeEdited) {
  for (const std::string_view handler : {"CEv_CE_1_Click", "CEv_CE_2_Click", "CEv_CE_3_Click",
                                         "CTE_CM_3_Click", "CTE_CM_4_Click", "CTE_CM_5_Click"}) {
    for (const bool running : {false, true}) {
      SCOPED_TRACE(handler);
      Desk desk;
      if (running)
        desk.real.Set_Mode("実行中");
      else
        desk.module.CodeModule()->CodePane().Window().Close();
      EXPECT_FALSE(desk.Run(handler));
      EXPECT_EQ(desk.Told(), Texts{kNot_Editing});
      EXPECT_TRUE(desk.done.empty());
    }
  }
}

TEST(Commands, ControlsAreShownOfModulesWithADesignerOnly) {
  const struct {
    std::string_view what;
    int type;
    bool shown;
  } cases[] = {
      {"form", host::kType_Form, true},
      {"module", host::kType_Module, false},
      {"class", host::kType_Class, false},
      {"sheet", host::kType_Document, false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Desk desk;
    auto& other = desk.project.Add_Component({.name = "Other", .type = each.type, .text = "x"});
    other.CodeModule()->CodePane().Show();
    EXPECT_EQ(desk.Run("CTE_CT_7_Click"), each.shown);
    EXPECT_EQ(desk.done, each.shown ? Texts{"Frm_Inform "} : Texts{});
    EXPECT_EQ(desk.Told(), each.shown ? Texts{} : Texts{kNo_Designer});
  }
}

TEST(Commands, WhatIsNotInThisBuildSaysSoAndAsksNothing) {
  const struct {
    std::string_view handler, text;
  } cases[] = {
      {"CTE_CT_3_Click", "  「検索」(Frm_Search)は、この版には含まれていないため実行できません。"},
      {"CEv_CE_7_Click",
       "  「コード整形」(Rev_Indent)は、この版には含まれていないため実行できません。"},
      {"CTE_HS_1_Click", "  「変更履歴登録」は、この版には含まれていないため実行できません。"},
      {"CTE_CM_4_Click", "  「最終変更行に移動」は、この版には含まれていないため実行できません。"},
      {"CEv_CL_1_Click", "  「更新情報の初期化」は、この版には含まれていないため実行できません。"},
      {"CYH_An_T_Click",
       "  「プロジェクト情報取得」は、この版には含まれていないため実行できません。"},
      {"CEv_MN_T_Click", "  「その他の機能」は、この版には含まれていないため実行できません。"},
      {"CTS_CT_C_Click", "  「すべて閉じる」は、この版には含まれていないため実行できません。"},
      {"CTS_HP_2_Click", "  「目次」は、この版には含まれていないため実行できません。"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.handler);
    Desk desk;
    Commands bare(Command_Ctx{desk.services, desk.editor});
    EXPECT_FALSE(bare.Exc_CBt_Evt(each.handler));
    EXPECT_EQ(desk.Told(), Texts{std::string(each.text)});
    EXPECT_EQ(std::ranges::count(desk.ui.calls, "All_Unl_Prc"), 0);
  }
}

TEST(Commands, TheListingTellsWhatIsHere) {
  Desk desk;
  for (const Command_Info& each : List_Commands(desk.ctx)) EXPECT_TRUE(each.Here) << each.Handler;
  desk.ctx.Frm["Frm_Search"] = nullptr;
  desk.ctx.Get_Pgm_Inf = nullptr;
  std::vector<std::string> missing;
  for (const Command_Info& each : List_Commands(desk.ctx))
    if (!each.Here && each.Where == Place::Tool_Bar) missing.emplace_back(each.Caption);
  EXPECT_EQ(missing, (Texts{"検索...", "トレース用命令文の設定・解除...", "プロジェクト情報取得"}));
}

TEST(Commands, QuestionsComeBeforeWhatTheyAskFor) {
  const struct {
    std::string_view handler, question;
    int default_button;
    Texts done;
    int closed;
  } cases[] = {
      {"CEv_CL_1_Click",
       "  現在までの更新履歴をクリアします。\r\n  実行しますか。",
       2,
       {"Clr_Upd_Inf"},
       0},
      {"CYH_An_T_Click",
       "  プロジェクトの全情報を再取得します。\r\n  実行しますか。",
       1,
       {"Get_Pgm_Inf 1"},
       1},
  };
  for (const auto& each : cases) {
    for (const auto answer : {service::Answer::Yes, service::Answer::No}) {
      SCOPED_TRACE(each.handler);
      const bool yes = answer == service::Answer::Yes;
      Desk desk;
      desk.ui.answers = {answer};
      EXPECT_EQ(desk.Run(each.handler), yes);
      ASSERT_EQ(desk.Told(), Texts{std::string(each.question)});
      EXPECT_EQ(desk.ui.messages[0].buttons, service::Buttons::Yes_No);
      EXPECT_EQ(desk.ui.messages[0].icon, service::Icon::Question);
      EXPECT_EQ(desk.ui.messages[0].default_button, each.default_button);
      EXPECT_EQ(desk.done, yes ? each.done : Texts{});
      EXPECT_EQ(std::ranges::count(desk.ui.calls, "All_Unl_Prc"), yes ? each.closed : 0);
    }
  }
}

TEST(Commands, TheReportIsOpenedWhereItLies) {
  Desk desk;
  EXPECT_TRUE(desk.Run("CEv_EL_1_Click"));
  EXPECT_EQ(desk.Told(), Texts{"  障害レポートは作成されていません。"});
  const auto path = desk.folder.Put("Logfile.txt", "x");
  EXPECT_TRUE(desk.Run("CEv_EL_1_Click"));
  EXPECT_EQ(desk.ui.opened, Texts{path.string()});
}

TEST(Commands, ASecondClickWhileTheViewOpensIsDropped) {
  Desk desk;
  Commands* commands = nullptr;
  int opened = 0;
  desk.ctx.Frm["Frm_Control"] = [&](const View_Request&) {
    ++opened;
    EXPECT_FALSE(commands->Exc_CBt_Evt("CTE_CT_4_Click"));
    EXPECT_TRUE(commands->Exc_CBt_Evt("CTE_CT_2_Click"));
    if (opened == 2) throw std::runtime_error("while opening");
  };
  Commands runner(desk.ctx);
  commands = &runner;
  EXPECT_TRUE(runner.Exc_CBt_Evt("CTE_CT_4_Click"));
  EXPECT_FALSE(runner.Exc_CBt_Evt("CTE_CT_4_Click"));  // fails
  EXPECT_TRUE(runner.Exc_CBt_Evt("CTE_CT_4_Click"));   // and leaves no mark behind
  EXPECT_EQ(opened, 3);
}

TEST(Commands, AFaultEndsAtTheClick) {
  Desk desk;
  desk.ctx.Trf["Rev_Indent"] = [](int) { throw std::runtime_error("damaged"); };
  Commands commands(desk.ctx);
  Menus menus(desk.editor, desk.services,
              [&](std::string_view handler) { commands.Exc_CBt_Evt(handler); });
  ASSERT_TRUE(menus.Add_Menu());
  auto& buttons = desk.real.Bars().Item("Oru/Excel")->Controls();
  EXPECT_NO_THROW(buttons.Item("コード整形")->Execute());
  ASSERT_EQ(desk.ui.messages.size(), 1U);
  EXPECT_EQ(desk.ui.messages[0].icon, service::Icon::Stop);
  EXPECT_NE(desk.folder.Get("Logfile.txt").find("Mod_Entry -> CEv_CE_7_Click"), std::string::npos);
  EXPECT_FALSE(desk.services.Unl_Req);
  buttons.Item("検索...")->Execute();
  EXPECT_EQ(desk.done, Texts{"Frm_Search "});
}

TEST(WindowCommands, CodeAndObjectTakeTurns) {
  const struct {
    std::string_view what;
    int type;
    bool object_in_front;
    Texts pressed;
  } cases[] = {
      {"code of a form", host::kType_Form, false, {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ｵﾌﾞｼﾞｪｸﾄ(&B)"}},
      {"object of a form", host::kType_Form, true, {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ｺｰﾄﾞ(&C)"}},
      {"code of a sheet", host::kType_Document, false, {"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ｵﾌﾞｼﾞｪｸﾄ(&B)"}},
      {"a module has no object", host::kType_Module, false, {}},
      {"nor has a class", host::kType_Class, false, {}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Desk desk;
    auto& other = desk.project.Add_Component({.name = "Other",
                                              .type = each.type,
                                              .text = "x",
                                              .has_designer = each.type == host::kType_Form});
    other.CodeModule()->CodePane().Show();
    if (each.object_in_front) other.Activate();
    EXPECT_TRUE(desk.Run("CEv_CW_2_Click"));
    EXPECT_EQ(desk.real.Bars().Executed(), each.pressed);
  }
}

TEST(WindowCommands, BothPanesOfASplitWindowShowThePlace) {
  Desk desk;
  auto& text = *desk.module.CodeModule();
  text.InsertLines(2, "a\r\nb\r\nEnd Sub");
  host::CodePane& first = text.CodePane();
  first.SetSelection({3, 1, 3, 2});
  first.Set_TopLine(2);
  test::Second_Pane second(first);
  auto& other = desk.project.Add_Component({.name = "Other", .text = "x\ny\nz"});
  host::CodePane& elsewhere = other.CodeModule()->CodePane();
  first.Show();
  desk.editor.panes.items = {&elsewhere, &first, &second};
  // The editor starts a new pane at the top, and may move the old one.
  desk.real.Bars().Set_Handler([&](const std::string&) { first.SetSelection({1, 1, 1, 1}); });

  EXPECT_TRUE(desk.Run("CEv_CW_5_Click"));
  for (host::CodePane* pane : {&first, static_cast<host::CodePane*>(&second)})
    EXPECT_EQ(pane->TopLine(), 2);
  EXPECT_EQ(second.GetSelection(), (host::Selection{3, 1, 3, 2}));
  EXPECT_EQ(elsewhere.GetSelection(), (host::Selection{1, 1, 1, 1}));
  EXPECT_EQ(desk.real.Bars().Executed(),
            (Texts{"ﾒﾆｭｰ ﾊﾞｰ > ｳｨﾝﾄﾞｳ(&W) > 分割(&P)",
                   "ﾒﾆｭｰ ﾊﾞｰ > 編集(&E) > ﾌﾞｯｸﾏｰｸ(&B) > すべてのﾌﾞｯｸﾏｰｸの解除(&C)",
                   "ﾒﾆｭｰ ﾊﾞｰ > 編集(&E) > ﾌﾞｯｸﾏｰｸ(&B) > ﾌﾞｯｸﾏｰｸの設定/解除(&T)"}));
}

TEST(WindowCommands, ADamagedMenuStopsTheCommandAndEndsTheAddIn) {
  for (const std::string_view handler : {"CEv_CW_1_Click", "CEv_CW_5_Click"}) {
    SCOPED_TRACE(handler);
    Desk desk;
    auto& bar = desk.real.Bars().Item("ﾒﾆｭｰ ﾊﾞｰ")->Controls();
    bar.Item("表示(&V)")->Delete();
    bar.Item("ｳｨﾝﾄﾞｳ(&W)")->Delete();
    EXPECT_FALSE(desk.Run(handler));
    EXPECT_EQ(desk.ui.messages.size(), 1U);
    EXPECT_TRUE(desk.services.Unl_Req);
    EXPECT_TRUE(desk.real.Bars().Executed().empty());
  }
}

TEST(WindowCommands, ToolWindowsAreHiddenIfAnyIsShown) {
  Desk desk;
  test::Plain_Window explorer(6, false), properties(7, false), immediate(5, true), watch(3, true);
  desk.editor.windows.items = {&watch, &explorer, &properties, &immediate};
  EXPECT_TRUE(desk.Run("CEv_CW_1_Click"));
  EXPECT_FALSE(immediate.Visible());
  EXPECT_TRUE(watch.Visible());
  EXPECT_TRUE(desk.real.Bars().Executed().empty());
  EXPECT_TRUE(desk.Run("CEv_CW_1_Click"));
  EXPECT_EQ(desk.real.Bars().Executed(), (Texts{"ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗｰ(&P)",
                                                "ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ﾌﾟﾛﾊﾟﾃｨ ｳｨﾝﾄﾞｳ(&W)",
                                                "ﾒﾆｭｰ ﾊﾞｰ > 表示(&V) > ｲﾐﾃﾞｨｴｲﾄ ｳｨﾝﾄﾞｳ(&I)"}));
}

TEST(WindowCommands, ClosingSparesTheOthersAndARunningProgram) {
  for (const bool running : {true, false}) {
    Desk desk;
    (void)desk.project.Add_Component(
        {.name = "UserForm1", .type = host::kType_Form, .text = "x", .has_designer = true});
    desk.project.Find_Component("UserForm1")->Activate();
    test::Plain_Window explorer(6, true);
    desk.editor.windows.items = {&explorer};
    for (int i = 1; i <= desk.real.Windows().Count(); ++i)
      desk.editor.windows.items.push_back(desk.real.Windows().Item(i));
    ASSERT_EQ(desk.real.Windows().Count(), 2);
    if (running) desk.real.Set_Mode("実行中");
    EXPECT_TRUE(desk.Run("CTE_CW_4_Click"));
    EXPECT_EQ(desk.real.Windows().Count(), running ? 2 : 0);
    EXPECT_TRUE(explorer.Visible());
  }
}

}  // namespace
}  // namespace oru::lifecycle
