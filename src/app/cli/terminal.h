// SPDX-License-Identifier: MIT
// A terminal as the user interface: messages and questions, a progress bar on standard error, and
// Ctrl+C as the request to stop the analysis.
#pragma once

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>

#include "service/user_interface.h"

namespace oru::app {

class Terminal final : public service::User_Interface {
 public:
  /// Everything is written to `err`. Questions are asked only if `interactive`; otherwise each is
  /// answered by its default button, and said so.
  Terminal(std::ostream& err, bool interactive, bool show_progress);
  ~Terminal() override;
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Called when the user asked to stop (Ctrl+C), between two modules.
  std::function<void()> On_Interrupt;
  /// Takes Ctrl+C as that request (true), or leaves it to the system again (false).
  static void Watch_Interrupt(bool watch);
  [[nodiscard]] bool Interactive() const { return interactive_; }

  [[nodiscard]] service::Answer Show_Message(const service::Message& message) override;
  void Show_Progress(const service::Progress& progress) override;
  void Close_Progress() override;
  void Do_Events() override;
  void Open_File(const std::string& path) override;

 private:
  std::ostream& err_;
  bool interactive_;
  bool show_progress_;
  std::size_t shown_ = 0;  // columns of the bar on the screen
  long long last_percent_ = -1;
};

/// Columns of the terminal that a file descriptor is; 0 if it is none.
[[nodiscard]] std::size_t Terminal_Columns(int descriptor);

}  // namespace oru::app
