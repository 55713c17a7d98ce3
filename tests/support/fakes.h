// SPDX-License-Identifier: MIT
// Recording stand-ins for the outside world: a user with queued answers, a clock that stands still,
// a folder that goes away again, and a bundle of services built on the three.
#pragma once

#include <stdlib.h>

#include <cerrno>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "service/clock.h"
#include "service/services.h"
#include "service/user_interface.h"

namespace oru::test {

/// Answers from a queue (Ok once it is empty) and records every call in order.
class Fake_User_Interface final : public service::User_Interface {
 public:
  std::deque<service::Answer> answers;     ///< taken from the front
  std::vector<service::Message> messages;  ///< as shown
  std::vector<std::string> progress;       ///< the label, or the text where there is none
  std::vector<std::string> calls;          ///< "Message", "Timer 0", "Timer 1", "All_Unl_Prc" ...
  std::vector<std::string> opened;         ///< paths given to Open_File
  std::function<void()> on_message;        ///< runs while a message is shown; may throw
  std::function<void()> on_events;         ///< runs in Do_Events, where a cancel may come in

  [[nodiscard]] service::Answer Show_Message(const service::Message& message) override {
    calls.emplace_back("Message");
    messages.push_back(message);
    if (on_message) on_message();
    if (answers.empty()) return service::Answer::Ok;
    const service::Answer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void Show_Progress(const service::Progress& state) override {
    calls.emplace_back("Progress");
    progress.push_back(state.label.empty() ? std::string(state.text) : state.label);
  }
  void Close_Progress() override { calls.emplace_back("Close_Progress"); }
  void Do_Events() override {
    calls.emplace_back("Do_Events");
    if (on_events) on_events();
  }
  void All_Unl_Prc() override { calls.emplace_back("All_Unl_Prc"); }
  void Show_Frm(std::string_view form) override { calls.push_back("Show " + std::string(form)); }
  void Ctl_Hlp_Prc() override { calls.emplace_back("Ctl_Hlp_Prc"); }
  void Set_Mouse_Hook(bool on) override {
    calls.emplace_back(on ? "Mouse_Hook 1" : "Mouse_Hook 0");
  }
  void Set_Timer(bool on) override { calls.emplace_back(on ? "Timer 1" : "Timer 0"); }
  void Set_Wait_Cursor(bool on) override { calls.emplace_back(on ? "Wait 1" : "Wait 0"); }
  void Open_File(const std::string& path) override {
    calls.emplace_back("Open_File");
    opened.push_back(path);
  }
};

/// Stands at 2024-03-05 06:07:08 unless set; moves only when told.
class Fixed_Clock final : public service::Clock {
 public:
  service::Date_Time time{2024, 3, 5, 6, 7, 8};
  std::int64_t milliseconds = 0;

  [[nodiscard]] service::Date_Time Now() const override { return time; }
  [[nodiscard]] std::int64_t Milliseconds() const override { return milliseconds; }
};

/// An empty folder of its own, removed with all it holds.
class Temp_Folder {
 public:
  Temp_Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "oru-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), pattern);
    }
    path_ = pattern;
  }
  ~Temp_Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Temp_Folder(const Temp_Folder&) = delete;
  Temp_Folder& operator=(const Temp_Folder&) = delete;

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(std::string_view name) const {
    return path_ / name;
  }
  /// Writes a file, with the folders above it, and gives its path; called for its effect too.
  // NOLINTNEXTLINE(modernize-use-nodiscard)
  std::filesystem::path Put(std::string_view name, std::string_view bytes) const {
    std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
  }
  /// The bytes of a file, empty if there is none.
  [[nodiscard]] std::string Get(std::string_view name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  [[nodiscard]] bool Has(std::string_view name) const {
    return std::filesystem::exists(path_ / name);
  }

 private:
  std::filesystem::path path_;
};

/// Services over the fakes, with a data folder of their own.
struct Fake_Services {
  Fake_User_Interface ui;
  Fixed_Clock clock;
  Temp_Folder folder;
  service::Services services{ui, clock, folder.Path()};
};

}  // namespace oru::test
