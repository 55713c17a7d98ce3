// SPDX-License-Identifier: MIT
#include "app/cli/terminal.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <string_view>

#include "app/cli/output.h"
#include "service/text.h"

namespace oru::app {

namespace {

constexpr std::size_t kBar_Width = 24;

// A signal handler gets no user pointer, so this one flag is static.
volatile std::sig_atomic_t g_interrupted = 0;

void On_Signal(int signal) {
  if (g_interrupted != 0) {  // the second Ctrl+C does not wait for the next module
    std::signal(signal, SIG_DFL);
    std::raise(signal);
  }
  g_interrupted = 1;
}

struct Button_Word {
  service::Answer answer;
  std::string_view key, word;
};

std::vector<Button_Word> Words_Of(service::Buttons buttons) {
  using service::Answer;
  using service::Buttons;
  switch (buttons) {
    case Buttons::Ok:
      return {{Answer::Ok, "o", "OK"}};
    case Buttons::Ok_Cancel:
      return {{Answer::Ok, "o", "OK"}, {Answer::Cancel, "c", "キャンセル"}};
    case Buttons::Abort_Retry_Ignore:
      return {{Answer::Abort, "a", "中止"},
              {Answer::Retry, "r", "再試行"},
              {Answer::Ignore, "i", "無視"}};
    case Buttons::Yes_No_Cancel:
      return {{Answer::Yes, "y", "はい"},
              {Answer::No, "n", "いいえ"},
              {Answer::Cancel, "c", "キャンセル"}};
    case Buttons::Yes_No:
      return {{Answer::Yes, "y", "はい"}, {Answer::No, "n", "いいえ"}};
  }
  return {{Answer::Ok, "o", "OK"}};
}

}  // namespace

Terminal::Terminal(std::ostream& err, bool interactive, bool show_progress)
    : err_(err), interactive_(interactive), show_progress_(show_progress) {}

Terminal::~Terminal() {
  Close_Progress();
}

void Terminal::Watch_Interrupt(bool watch) {
  g_interrupted = 0;
  std::signal(SIGINT, watch ? On_Signal : SIG_DFL);
}

service::Answer Terminal::Show_Message(const service::Message& message) {
  Close_Progress();
  err_ << service::Replace_All(message.text, "\r\n", "\n") << '\n';
  const std::vector<Button_Word> buttons = Words_Of(message.buttons);
  const auto wanted = static_cast<std::size_t>(message.default_button);
  const Button_Word& preset = buttons[wanted >= 1 && wanted <= buttons.size() ? wanted - 1 : 0];
  if (buttons.size() == 1) return preset.answer;
  std::string choices;
  for (const Button_Word& button : buttons)
    choices += fmt::format("{}{}={}", choices.empty() ? "" : " / ", button.key, button.word);
  if (!interactive_) {
    err_ << fmt::format("  [{}] → {}\n", choices, preset.word);
    return preset.answer;
  }
  for (std::string line;;) {
    err_ << fmt::format("  [{}] ({}): ", choices, preset.key) << std::flush;
    if (!std::getline(std::cin, line) || line.empty()) return preset.answer;
    for (const Button_Word& button : buttons)
      if (service::To_Lower(service::Trim(line)) == button.key) return button.answer;
  }
}

void Terminal::Show_Progress(const service::Progress& progress) {
  if (!show_progress_) return;
  const long long total = std::max<long long>(progress.total, 1);
  const long long percent = std::min<long long>(progress.count * 100 / total, 100);
  if (percent == last_percent_) return;
  last_percent_ = percent;
  const std::size_t filled = static_cast<std::size_t>(percent) * kBar_Width / 100;
  const std::string bar = std::string(filled, '#') + std::string(kBar_Width - filled, '.');
  const std::string line =
      fmt::format("[{}] {:3}% {} {}", bar, percent, progress.label, progress.elapsed);
  const std::size_t width = Terminal_Width_Of(line);
  err_ << '\r' << line << std::string(shown_ > width ? shown_ - width : 0, ' ') << std::flush;
  shown_ = width;
}

void Terminal::Close_Progress() {
  if (shown_ > 0) err_ << '\r' << std::string(shown_, ' ') << '\r' << std::flush;
  shown_ = 0;
  last_percent_ = -1;
}

void Terminal::Do_Events() {
  if (g_interrupted == 0) return;
  g_interrupted = 0;
  if (On_Interrupt) On_Interrupt();
}

void Terminal::Open_File(const std::string& path) {
  err_ << path << '\n';
}

std::size_t Terminal_Columns(int descriptor) {
  if (isatty(descriptor) == 0) return 0;
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return 80;
}

}  // namespace oru::app
