// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <stdexcept>

#include "service/services.h"
#include "support/fakes.h"

namespace oru::service {
namespace {

TEST(Messages, FormatsInTheHouseStyle) {
  struct Case {
    const char *what, *in, *out;
    int version;
  };
  constexpr Case kCases[] = {
      {"four blanks before a break and at the end go", "A    |B    ", "  A\r\n  B", 6},
      {"breaks and blanks at the end go, whatever their order", "A    | |  |", "  A", 6},
      {"an empty line in the middle stays, indented", "A    ||B", "  A\r\n  \r\n  B", 6},
      {"fewer blanks before a break are text", "A  |B", "  A  \r\n  B", 6},
      {"of five blanks one is text", "A     |B", "  A \r\n  B", 6},
      {"blanks within a line are text", "A    B", "  A    B", 6},
      {"a full-width blank at the end is text", "A　", "  A　", 6},
      {"a line break of its own is not indented", "A\r\nB    ", "  A\r\nB", 6},
      {"nothing but padding", "    |    ", "  ", 6},
      {"a later version is treated alike", "A|B", "  A\r\n  B", 7},
      {"an older version only breaks the lines", "A    |B    ", "A    \r\nB    ", 5},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Fmt_Msg_Txt(c.in, c.version), c.out);
  }
}

TEST(Messages, ShowsTextTitleAndChoicesAndBringsTheAnswer) {
  test::Fake_Services f;
  f.services.Product.Title = "Oru/Word";
  f.ui.answers = {Answer::No};
  EXPECT_EQ(Srv_Dsp_Msg(f.services, "続行しますか。    ", Buttons::Yes_No, 2, Icon::Question),
            Answer::No);
  ASSERT_EQ(f.ui.messages.size(), 1u);
  const Message& shown = f.ui.messages.front();
  EXPECT_EQ(shown.text, "  続行しますか。");
  EXPECT_EQ(shown.title, "Oru/Word");
  EXPECT_EQ(shown.buttons, Buttons::Yes_No);
  EXPECT_EQ(shown.default_button, 2);
  EXPECT_EQ(shown.icon, Icon::Question);
}

TEST(Messages, DefaultButtonOutsideOneToFourIsTheFirst) {
  constexpr struct { int given, shown; } kCases[] = {{0, 1}, {1, 1}, {4, 4}, {5, 1}, {-1, 1}};
  for (const auto& c : kCases) {
    test::Fake_Services f;
    (void)Srv_Dsp_Msg(f.services, "A", Buttons::Ok, c.given, Icon::None);
    EXPECT_EQ(f.ui.messages.at(0).default_button, c.shown) << c.given;
  }
}

TEST(Messages, TimersRestWhileAMessageStands) {
  test::Fake_Services f;
  (void)Srv_Dsp_Msg(f.services, "A", Buttons::Ok, 1, Icon::None);
  EXPECT_EQ(f.ui.calls, (std::vector<std::string>{"Timer 0", "Message", "Timer 1"}));
}

TEST(Messages, TimersRunAgainAfterAFailedDisplay) {
  test::Fake_Services f;
  f.ui.on_message = [] { throw std::runtime_error("no screen"); };
  EXPECT_THROW((void)Srv_Dsp_Msg(f.services, "A", Buttons::Ok, 1, Icon::None), std::runtime_error);
  EXPECT_EQ(f.ui.calls.back(), "Timer 1");
}

TEST(Messages, OpensAReportOrTellsThatThereIsNone) {
  test::Fake_Services f;
  Opn_Rel_Fil(f.services, f.folder / "Logfile.txt");
  EXPECT_TRUE(f.ui.opened.empty());
  ASSERT_EQ(f.ui.messages.size(), 1u);
  EXPECT_EQ(f.ui.messages[0].text, "  障害レポートは作成されていません。");

  const auto path = f.folder.Put("Logfile.txt", "x");
  Opn_Rel_Fil(f.services, path);
  EXPECT_EQ(f.ui.opened, std::vector<std::string>{path.string()});
  EXPECT_EQ(f.ui.messages.size(), 1u);
}

TEST(Messages, MarkerFilesTurnTheSwitchesOn) {
  test::Temp_Folder folder;
  folder.Put("measure.txt", "");
  folder.Put("TRCMARKR", "");
  const Switches found = Chk_Switches(folder.Path());
  EXPECT_TRUE(found.Statistics);
  EXPECT_FALSE(found.Debug);
  EXPECT_TRUE(found.Trace);

  folder.Put("debug.txt", "");
  EXPECT_TRUE(Chk_Switches(folder.Path()).Debug);
  EXPECT_FALSE(Chk_Switches({}).Statistics);
}

}  // namespace
}  // namespace oru::service
