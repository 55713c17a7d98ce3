// SPDX-License-Identifier: MIT
#include "service/logs.h"

#include <gtest/gtest.h>

#include "service/services.h"
#include "support/fakes.h"

namespace oru::service {
namespace {

constexpr const char* kStatistics = "実行統計レポート.txt";
constexpr const char* kErrors = "解析エラーレポート.txt";

std::string Headed(const std::string& name, const std::string& lines) {
  const std::string rule =
      "-----------------------------------------------------------------------------\r\n";
  return rule + name + "- Oru/Excel\r\n   プロジェクト名：Sales\r\n" + rule + lines;
}

struct Logs : testing::Test {
  Logs() {
    f.services.Sw.Statistics = true;
    f.services.Prj_Nam = "Sales";
  }
  test::Fake_Services f;
};

TEST_F(Logs, ReportBeginsWithItsHeadingAtTheFirstLine) {
  EXPECT_FALSE(f.folder.Has(kErrors));
  Srv_Put_Log(f.services, "一行目", Channel::Errors);
  Srv_Put_Log(f.services, "\r\n二行目", Channel::Errors);
  EXPECT_EQ(f.services.Reports.Lines(Channel::Errors), 2);
  Srv_Put_Log(f.services, "#End");
  EXPECT_EQ(f.folder.Get(kErrors), Headed("解析エラーレポート", "一行目\r\n\r\n二行目\r\n"));
  EXPECT_FALSE(f.folder.Has(kStatistics));
}

TEST_F(Logs, EachRunReplacesTheReportOfTheLast) {
  f.folder.Put(kStatistics, "of the run before");
  Srv_Put_Log(f.services, "A");
  Srv_End_Log(f.services);
  EXPECT_EQ(f.services.Reports.Lines(Channel::Statistics), 0);
  Srv_Put_Log(f.services, "B");
  Srv_End_Log(f.services);
  EXPECT_EQ(f.folder.Get(kStatistics), Headed("実行統計レポート", "B\r\n"));
}

TEST_F(Logs, EndClosesBothChannels) {
  Srv_Put_Log(f.services, "S");
  Srv_Put_Log(f.services, "E", Channel::Errors);
  Srv_Put_Log(f.services, "#End", Channel::Errors);
  EXPECT_EQ(f.folder.Get(kStatistics), Headed("実行統計レポート", "S\r\n"));
  EXPECT_EQ(f.folder.Get(kErrors), Headed("解析エラーレポート", "E\r\n"));
}

TEST_F(Logs, StatisticsNeedTheirSwitchAndErrorsDoNot) {
  f.services.Sw.Statistics = false;
  Srv_Put_Log(f.services, "S");
  Srv_Put_Log(f.services, "E", Channel::Errors);
  Srv_End_Log(f.services);
  EXPECT_FALSE(f.folder.Has(kStatistics));
  EXPECT_TRUE(f.folder.Has(kErrors));
}

TEST_F(Logs, EndWithNothingOpenDoesNothing) {
  Srv_End_Log(f.services);
  EXPECT_TRUE(std::filesystem::is_empty(f.folder.Path()));
}

TEST_F(Logs, ChannelThatFailedToOpenIsSkippedUntilTheEnd) {
  std::filesystem::create_directory(f.folder / kErrors);  // nobody can write a folder
  Srv_Put_Log(f.services, "lost", Channel::Errors);
  std::filesystem::remove(f.folder / kErrors);
  Srv_Put_Log(f.services, "lost too", Channel::Errors);
  EXPECT_FALSE(f.folder.Has(kErrors));
  EXPECT_EQ(f.services.Reports.Lines(Channel::Errors), 2);

  Srv_End_Log(f.services);
  Srv_Put_Log(f.services, "kept", Channel::Errors);
  Srv_End_Log(f.services);
  EXPECT_EQ(f.folder.Get(kErrors), Headed("解析エラーレポート", "kept\r\n"));
}

TEST_F(Logs, TraceAppendsStampedLines) {
  f.services.Sw.Trace = true;
  Srv_Trc_Log(f.services, "始め~~続き");
  f.clock.time = {2031, 12, 31, 23, 59, 58};
  Srv_Trc_Log(f.services, "終わり");
  EXPECT_EQ(f.folder.Get("Log/Trcfile.TXT"),
            "240305-060708 始め\r\n続き\r\n311231-235958 終わり\r\n");
}

TEST_F(Logs, TraceNeedsItsSwitchItsOutputAndAPlace) {
  Srv_Trc_Log(f.services, "switch is off");
  f.services.Sw.Trace = true;
  f.services.Trace.Enabled = false;
  Srv_Trc_Log(f.services, "output is off");
  f.services.Trace = {};
  Srv_Trc_Log(f.services, "no place");
  EXPECT_TRUE(std::filesystem::is_empty(f.folder.Path()));
}

TEST_F(Logs, TraceThatCannotBeWrittenIsDropped) {
  f.services.Sw.Trace = true;
  f.folder.Put("Log", "a file stands where the folder should");
  Srv_Trc_Log(f.services, "lost");
  EXPECT_EQ(f.folder.Get("Log"), "a file stands where the folder should");
}

TEST(Logs_Without_A_Folder, GoNowhere) {
  test::Fake_Services f;
  Services services(f.ui, f.clock, {});
  services.Sw = {true, true, true};
  EXPECT_TRUE(services.Trace.Path.empty());
  EXPECT_TRUE(Report_Path(services, Channel::Errors).empty());
  Srv_Put_Log(services, "A");
  Srv_Put_Log(services, "A", Channel::Errors);
  Srv_Trc_Log(services, "A");
  Srv_End_Log(services);
  EXPECT_FALSE(std::filesystem::exists("実行統計レポート.txt"));
}

TEST(Trace_Path, LiesUnderTheDriveOfTheSystem) {
  EXPECT_EQ(Trace_Path("D:\\Windows", "/data").generic_string(), "D:/Log/Trcfile.TXT");
  EXPECT_EQ(Trace_Path("", "/data").generic_string(), "/data/Log/Trcfile.TXT");
  EXPECT_EQ(Trace_Path("Windows", "").generic_string(), "");
}

TEST(Clock, StampHasTwoDigitsEach) {
  EXPECT_EQ(Stamp({2024, 3, 5, 6, 7, 8}), "240305060708");
  EXPECT_EQ(Stamp({1999, 12, 31, 23, 59, 59}), "991231235959");
  EXPECT_EQ(Stamp({2000, 1, 1, 0, 0, 0}), "000101000000");
}

}  // namespace
}  // namespace oru::service
