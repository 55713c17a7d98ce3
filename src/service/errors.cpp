// SPDX-License-Identifier: MIT
#include "service/errors.h"

#include <fmt/format.h>

#include <new>

#include "service/logs.h"
#include "service/services.h"
#include "service/text.h"

namespace oru::service {

std::vector<std::string> Error_Trace::Lines() const {
  std::vector<std::string> lines;
  lines.reserve(steps_.size());
  for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
    const bool deepest = step + 1 == steps_.rend();
    std::string line =
        fmt::format("{}{} -> {}", deepest ? "└─ " : "├─ ", step->module, step->procedure);
    if (step->line != 0) line += fmt::format(" Line=({})", step->line);
    if (!step->statement.empty()) line += fmt::format(" Sentence=({})", step->statement);
    lines.push_back(std::move(line));
  }
  return lines;
}

void Err_Frame::Pass() noexcept {
  try {
    trace_.Add({module_, procedure_, statement_ == nullptr ? std::string() : *statement_,
                line_ == nullptr ? 0 : *line_});
  } catch (...) {
    // Out of memory on the way out: the trace lacks a line, the fault goes on.
  }
}

namespace {

// What a fault of any kind is to the user.
struct Fault {
  int number;
  std::string description;
};

// Called inside a handler: names the fault in hand.
Fault Current_Fault() {
  constexpr int kOut_Of_Memory = 7;
  constexpr int kInternal = 51;
  try {
    throw;
  } catch (const Sys_Error& error) {
    return {error.number, error.what()};
  } catch (const std::bad_alloc&) {
    return {kOut_Of_Memory, "Out of memory"};
  } catch (const std::exception& error) {
    return {kInternal, error.what()};
  } catch (...) {
    return {kInternal, "Internal error"};
  }
}

}  // namespace

bool Run_Evt(Services& services, const char* module, const char* procedure,
             const std::function<void()>& event) noexcept {
  const bool was_busy = services.Anl_Bsy;
  bool done = false;
  try {
    const Err_Frame frame(services.Errors, module, procedure);
    event();
    done = true;
  } catch (...) {
    try {
      const Fault fault = Current_Fault();
      // An analysis leaves its mark standing while its fault passes, so that it is known here.
      Sys_Err_Prc(services, fault.number, fault.description, services.Anl_Bsy, services.Anl_Bsy);
    } catch (...) {
      // The handling failed too: there is nobody left to tell.
    }
  }
  services.Errors.Clear();
  if (!done) services.Anl_Bsy = was_busy;
  return done;
}

}  // namespace oru::service
