// SPDX-License-Identifier: MIT
// Faults. Expected outcomes are values; what remains unwinds as an exception inside one event and
// ends at its entry, `Run_Evt`, the only place that catches. On the way, each routine that can
// fail has an `Err_Frame` at its top, which adds its line to the error trace as the fault passes.
#pragma once

#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace oru::service {

struct Services;

/// A fault with an error number of the host language. 9999 is the system's own: its text is shown
/// to the user as it is.
class Sys_Error : public std::runtime_error {
 public:
  Sys_Error(int error_number, const std::string& description)
      : std::runtime_error(description), number(error_number) {}
  int number;
};

constexpr int kOwn_Error = 9999;
constexpr int kOut_Of_Range = 9;

/// The chain of procedures that a fault passed, deepest first.
class Error_Trace {
 public:
  struct Step {
    std::string module;     ///< "Mod_Anl"
    std::string procedure;  ///< "Chk_Dec_Inf"
    std::string statement;  ///< the statement in hand, or empty
    int line = 0;           ///< source line in hand, 1-based; 0 when there is none
  };
  void Add(Step step) { steps_.push_back(std::move(step)); }
  void Clear() { steps_.clear(); }
  [[nodiscard]] const std::vector<Step>& Steps() const { return steps_; }
  /// The trace as lines, deepest last: "├─ Mod -> Proc Line=(5) Sentence=(…)", the deepest with
  /// "└─ ". A line of 0 and an empty statement leave their part out.
  [[nodiscard]] std::vector<std::string> Lines() const;

 private:
  std::vector<Step> steps_;
};

/// Stands at the top of a routine that can fail. Names are literals; the statement and the line are
/// variables declared before the frame, read only while a fault passes. A frame that is left in the
/// usual way empties the trace: what stood in it belongs to a fault that somebody deeper dealt with.
class Err_Frame {
 public:
  Err_Frame(Error_Trace& trace, const char* module, const char* procedure,
            const std::string* statement = nullptr, const int* line = nullptr) noexcept
      : trace_(trace),
        module_(module),
        procedure_(procedure),
        statement_(statement),
        line_(line),
        faults_(std::uncaught_exceptions()) {}
  ~Err_Frame() {
    const int faults = std::uncaught_exceptions();
    if (faults > faults_) {
      Pass();
    } else if (faults == 0 && !trace_.Steps().empty()) {
      trace_.Clear();
    }
  }
  Err_Frame(const Err_Frame&) = delete;
  Err_Frame& operator=(const Err_Frame&) = delete;

 private:
  void Pass() noexcept;

  Error_Trace& trace_;
  const char* module_;
  const char* procedure_;
  const std::string* statement_;
  const int* line_;
  int faults_;
};

/// Central handling of a fault that reached the entry of its event: writes the fatal report to
/// "Logfile.txt", closes the report channels, assembles and shows the text (number 9999: the text
/// as it is). `analysing` chooses the wording; `fatal` adds that the add-in is unloaded, and asks
/// the front end for it through `Services::Unl_Req`.
void Sys_Err_Prc(Services& services, int number, const std::string& description, bool analysing,
                 bool fatal);

/// Writes the fatal report of something that stops nobody and needs no message.
void Srv_Log_Err(Services& services, std::string_view module, std::string_view procedure,
                 const std::string& description);

/// Runs one event (a command, a hook, a timer, a verb of the program). True if it came to its end;
/// false if it failed, in which case `Sys_Err_Prc` has been called and the trace emptied. A fault
/// while `Services::Anl_Bsy` stands is fatal; therefore an analysis does not take its mark away
/// when a fault passes. It is set back here.
[[nodiscard]] bool Run_Evt(Services& services, const char* module, const char* procedure,
                           const std::function<void()>& event) noexcept;

}  // namespace oru::service
