// SPDX-License-Identifier: MIT
#include "service/errors.h"

#include <gtest/gtest.h>

#include <new>

#include "service/services.h"
#include "support/fakes.h"

namespace oru::service {
namespace {

using Text_Lines = std::vector<std::string>;

// Three routines deep; the deepest has a statement and a line in hand.
void Deepest(Services& services, const std::function<void()>& act) {
  std::string statement;
  int line = 0;
  const Err_Frame frame(services.Errors, "Mod_Anl", "Chk_Dec_Inf", &statement, &line);
  statement = "Dim a, b";
  line = 12;
  act();
}
void Middle(Services& services, const std::function<void()>& act) {
  const std::string statement;
  const int line = 0;
  const Err_Frame frame(services.Errors, "Mod_Anl", "Get_Mdl_Lop", &statement, &line);
  Deepest(services, act);
}
std::function<void()> Fault(int number, const char* text) {
  return [=] { throw Sys_Error(number, text); };
}

const std::string kCommon =
    "  構文エラー、操作のタイミング等により、Oru/Excelの機能を正常に実行できないことがあります。\r\n"
    "  プロジェクトの「コンパイル」を実行し、構文エラーがないか確認してください。\r\n"
    "  障害が再現する場合は、ヘルプの「障害サポート等について」をご参照願います。";

TEST(Errors, TraceNamesTheCallsWithTheDeepestLast) {
  test::Fake_Services f;
  Text_Lines seen;
  try {
    Middle(f.services, Fault(6, "Overflow"));
  } catch (const Sys_Error&) {
    seen = f.services.Errors.Lines();
  }
  EXPECT_EQ(seen, (Text_Lines{"├─ Mod_Anl -> Get_Mdl_Lop",
                              "└─ Mod_Anl -> Chk_Dec_Inf Line=(12) Sentence=(Dim a, b)"}));
}

TEST(Errors, FaultDealtWithBelowLeavesNoTrace) {
  test::Fake_Services f;
  const Err_Frame outer(f.services.Errors, "Mod_Pub", "Outer");
  {
    const Err_Frame frame(f.services.Errors, "Mod_Pub", "Get_Ctl_Lst");
    try {
      Middle(f.services, Fault(438, "no such property"));
    } catch (const Sys_Error&) {
      EXPECT_EQ(f.services.Errors.Steps().size(), 2u);
    }
  }
  EXPECT_TRUE(f.services.Errors.Steps().empty());
}

TEST(Errors, FrameInADestructorKeepsTheTraceOfTheFaultOnItsWay) {
  test::Fake_Services f;
  struct Cleaner {
    Services& services;
    ~Cleaner() { const Err_Frame frame(services.Errors, "Mod_Pub", "Clean"); }
  };
  try {
    const Cleaner cleaner{f.services};
    Deepest(f.services, Fault(6, "Overflow"));
  } catch (const Sys_Error&) {
    EXPECT_EQ(f.services.Errors.Steps().size(), 1u);
  }
}

TEST(Errors, EventThatEndsWellSaysNothing) {
  test::Fake_Services f;
  EXPECT_TRUE(Run_Evt(f.services, "Frm_List", "FBt_List_Click", [] {}));
  EXPECT_TRUE(f.ui.calls.empty());
  EXPECT_TRUE(std::filesystem::is_empty(f.folder.Path()));
}

TEST(Errors, MessageTellsWhatTheUserCanDo) {
  struct Case {
    const char* what;
    int number;
    bool debug, busy;
    std::string text;
  };
  const std::string plain = "  要求された処理を実行することができませんでした。 \r\n" + kCommon;
  const std::string timing = "  ★★★★★★★ タイミングエラーチェック ★★★★★★★。 \r\n";
  const std::string analysis = "  プロジェクト情報解析中に障害が発生しました。\r\n" + kCommon +
                               "\r\n  このアドインをアンロードします。";
  const Case cases[] = {
      {"any fault", 13, false, false, plain},
      {"a timing fault without the switch", 91, false, false, plain},
      {"a timing fault, number 91", 91, true, false, timing + plain},
      {"a timing fault, number 5", 5, true, false, timing + plain},
      {"another fault with the switch", 13, true, false, plain},
      {"in an analysis", 13, false, true, analysis},
      {"our own text is shown as it is", 9999, true, false, "  text"},
      {"our own text in an analysis", 9999, false, true, "  text"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    test::Fake_Services f;
    f.services.Sw.Debug = c.debug;
    EXPECT_FALSE(Run_Evt(f.services, "Frm_Search", "Get_Inform", [&] {
      f.services.Anl_Bsy = c.busy;
      throw Sys_Error(c.number, "text");
    }));
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_EQ(f.ui.messages[0].text, c.text);
    EXPECT_EQ(f.services.Unl_Req, c.busy);
    EXPECT_FALSE(f.services.Anl_Bsy);
    EXPECT_TRUE(f.services.Errors.Steps().empty());
  }
}

TEST(Errors, OnlyOneHostHasTheFullCompile) {
  test::Fake_Services f;
  f.services.Product.Host_Name = "VB6";
  Sys_Err_Prc(f.services, 13, "Type mismatch", false, false);
  EXPECT_NE(f.ui.messages.at(0).text.find("プロジェクトの「完全コンパイル」を実行し"),
            std::string::npos);
}

TEST(Errors, FaultOfANestedEventLeavesTheAnalysisAroundItBusy) {
  test::Fake_Services f;
  EXPECT_TRUE(Run_Evt(f.services, "Mod_Cmd", "CEv_RV_1_Click", [&] {
    f.services.Anl_Bsy = true;
    EXPECT_FALSE(Run_Evt(f.services, "Mod_Post", "Rciv_Fcs_Tmr", Fault(13, "x")));
    EXPECT_TRUE(f.services.Anl_Bsy);
    f.services.Anl_Bsy = false;
  }));
}

TEST(Errors, ReportTellsTimeProgramHostAndTrace) {
  test::Fake_Services f;
  Product_Info& product = f.services.Product;
  product.Major = 2, product.Minor = 10, product.Revision = 3;
  product.Os_Version = "6.1 SP1";
  product.Host_Version = "11.0";
  product.Host_Build = "8237";
  f.folder.Put("Logfile.txt", "before\r\n");
  EXPECT_FALSE(Run_Evt(f.services, "Frm_Chart", "Dsp_Chart",
                       [&] { Middle(f.services, Fault(6, "Overflow")); }));
  EXPECT_EQ(f.folder.Get("Logfile.txt"),
            "before\r\n"
            "［プログラム障害情報］\r\n"
            "-----------------------------------------------------------------------------\r\n"
            " システム障害\r\n"
            "    発生日時：2024年03月05日／06時07分08秒\r\n"
            "     Product：Oru/Excel (2.10.3)\r\n"
            "     Windows：     6.1 (SP1)\r\n"
            "       Excel：  11.0 (8237)\r\n"
            "    Code = ├─ Frm_Chart -> Dsp_Chart\r\n"
            "           ├─ Mod_Anl -> Get_Mdl_Lop\r\n"
            "           └─ Mod_Anl -> Chk_Dec_Inf Line=(12) Sentence=(Dim a, b)\r\n"
            "           └─→ ErrorCode = 6 : Overflow\r\n");
}

TEST(Errors, ReportNamesAMissingServicePack) {
  test::Fake_Services f;
  f.services.Product.Os_Version = "10.0";
  Sys_Err_Prc(f.services, 6, "Overflow", false, false);
  EXPECT_NE(f.folder.Get("Logfile.txt").find("     Windows：    10.0 (No-SP)\r\n"),
            std::string::npos);
}

TEST(Errors, AbortStandsInTheTraceLogAndReportsAreClosed) {
  test::Fake_Services f;
  f.services.Sw.Trace = true;
  EXPECT_FALSE(Run_Evt(f.services, "Mod_Cmd", "Main", [&] {
    Srv_Put_Log(f.services, "E", Channel::Errors);
    throw Sys_Error(6, "Overflow");
  }));
  EXPECT_EQ(f.folder.Get("Log/Trcfile.TXT"),
            "240305-060708 Abort!!(Mod_Cmd -> Main ErrNo=6:Overflow)"
            "-----------------------------------------------------------------------------\r\n");
  EXPECT_EQ(f.services.Reports.Lines(Channel::Errors), 0);
}

TEST(Errors, EveryKindOfFaultHasANumber) {
  const struct {
    const char* what;
    std::function<void()> event;
    const char* code;
  } cases[] = {
      {"of the host language", Fault(35, "Sub not defined"),
       "ErrorCode = 35 : Sub not defined\r\n"},
      {"memory", [] { throw std::bad_alloc(); }, "ErrorCode = 7 : Out of memory\r\n"},
      {"of a library", [] { throw std::logic_error("broken"); }, "ErrorCode = 51 : broken\r\n"},
      {"unknown", [] { throw 42; }, "ErrorCode = 51 : Internal error\r\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    test::Fake_Services f;
    EXPECT_FALSE(Run_Evt(f.services, "Mod_Cmd", "Main", c.event));
    EXPECT_NE(f.folder.Get("Logfile.txt").find(c.code), std::string::npos);
  }
}

TEST(Errors, SecondFaultWhileTellingDoesNotEscape) {
  test::Fake_Services f;
  f.ui.on_message = [] { throw std::runtime_error("no screen"); };
  f.services.Anl_Bsy = false;
  EXPECT_FALSE(Run_Evt(f.services, "Mod_Cmd", "Main", [&] {
    f.services.Anl_Bsy = true;
    throw Sys_Error(6, "Overflow");
  }));
  EXPECT_TRUE(f.folder.Has("Logfile.txt"));
  EXPECT_FALSE(f.services.Anl_Bsy);
  EXPECT_TRUE(f.services.Errors.Steps().empty());
}

TEST(Errors, WithoutADataFolderTheUserIsStillTold) {
  test::Fake_Services f;
  Services services(f.ui, f.clock, {});
  EXPECT_FALSE(Run_Evt(services, "Mod_Cmd", "Main", Fault(6, "Overflow")));
  EXPECT_EQ(f.ui.messages.size(), 1u);
}

}  // namespace
}  // namespace oru::service
