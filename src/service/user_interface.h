// SPDX-License-Identifier: MIT
// What the core asks of whoever stands in front of it (a terminal, a test, a page, a window): show
// a message and bring the answer, show progress, let events run, close the system's windows, stop
// and start hooks and timers. Every call that would point up the layers is turned round here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace oru::service {

/// Which button was pressed; the numbers are the host's.
enum class Answer { Ok = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

/// Which buttons a message has; the numbers are the host's box styles.
enum class Buttons { Ok = 0, Ok_Cancel = 1, Abort_Retry_Ignore = 2, Yes_No_Cancel = 3, Yes_No = 4 };

enum class Icon { None = 0, Stop = 1, Question = 2, Warning = 3, Information = 4 };

/// A message ready for display: `text` has its final line breaks (CR LF) and indents.
struct Message {
  std::string text;
  std::string title;
  Buttons buttons = Buttons::Ok;
  int default_button = 1;  ///< 1-based
  Icon icon = Icon::None;
};

/// One state of a running walk.
struct Progress {
  std::string_view text;   ///< what is being done, in the user's language
  std::string_view item;   ///< the module at hand, may be empty
  std::int64_t count = 0;  ///< done so far
  std::int64_t total = 0;  ///< 0 when unknown
  std::string label;       ///< `text` with " ( count / total )"
  std::string elapsed;     ///< "( 1m 5s )" or empty
};

class User_Interface {
 public:
  virtual ~User_Interface() = default;

  /// Shows the message and returns the pressed button.
  [[nodiscard]] virtual Answer Show_Message(const Message& message) = 0;
  /// Shows or moves the progress display; the first call opens it.
  virtual void Show_Progress(const Progress& /*progress*/) {}
  virtual void Close_Progress() {}
  /// Lets waiting events run; called once per module in long walks, where a cancel may come in.
  virtual void Do_Events() {}
  /// Closes all of the system's windows.
  virtual void All_Unl_Prc() {}
  /// Shows a view that is open, by its form name, or brings it to the front.
  virtual void Show_Frm(std::string_view /*form*/) {}
  /// Stops the help that is on display (`Ctl_Hlp_Prc`).
  virtual void Ctl_Hlp_Prc() {}
  /// Stops (false) or restarts (true) the mouse hook.
  virtual void Set_Mouse_Hook(bool /*on*/) {}
  /// Suspends (false) or resumes (true) the system's timers.
  virtual void Set_Timer(bool /*on*/) {}
  virtual void Set_Wait_Cursor(bool /*on*/) {}
  /// Opens a file with its associated program.
  virtual void Open_File(const std::string& /*path*/) {}
};

}  // namespace oru::service
