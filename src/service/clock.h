// SPDX-License-Identifier: MIT
// The time, behind an interface, so that stamps and logs are the same in every test run.
#pragma once

#include <cstdint>
#include <string>

namespace oru::service {

/// A local date and time, to the second.
struct Date_Time {
  int year = 2000, month = 1, day = 1, hour = 0, minute = 0, second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Date_Time Now() const = 0;
  /// A steady count of milliseconds for measuring spans.
  [[nodiscard]] virtual std::int64_t Milliseconds() const = 0;
};

/// The machine's own clock, local time.
class System_Clock : public Clock {
 public:
  [[nodiscard]] Date_Time Now() const override;
  [[nodiscard]] std::int64_t Milliseconds() const override;
};

/// "YYMMDDHHMMSS", the stamp that update strings and table stamps begin with.
[[nodiscard]] std::string Stamp(const Date_Time& time);

}  // namespace oru::service
