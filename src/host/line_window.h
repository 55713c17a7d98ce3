// SPDX-License-Identifier: MIT
// The judged lines of a module that is known through the model alone, read piece by piece around
// the places that are asked for. Good until the module's next edit.
#pragma once

#include <cstdint>
#include <deque>

#include "host/line_class.h"
#include "host/model.h"

namespace oru::host {

/// A source of lines for procedure_rule.h.
class Line_Window {
 public:
  /// Begins at `line`, which must exist. `module` must outlive the window.
  Line_Window(const CodeModule& module, int line);

  [[nodiscard]] int Count() const { return count_; }
  [[nodiscard]] Line_State Before(int line);
  [[nodiscard]] int Next_With(int line, std::uint8_t flags);
  [[nodiscard]] int Prev_With(int line, std::uint8_t flags);

 private:
  [[nodiscard]] std::uint8_t Verdict(int line);
  void Read_Before();
  void Read_Behind();

  const CodeModule& module_;
  int count_;
  int first_;  ///< the lines read are those from `first_` on
  int piece_ = 64;
  std::deque<std::uint8_t> verdicts_;
};

}  // namespace oru::host
