// SPDX-License-Identifier: MIT
#include "service/clock.h"

#include <fmt/format.h>

#include <chrono>
#include <ctime>

namespace oru::service {

Date_Time System_Clock::Now() const {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
}

std::int64_t System_Clock::Milliseconds() const {
  using std::chrono::steady_clock;
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             steady_clock::now().time_since_epoch())
      .count();
}

std::string Stamp(const Date_Time& time) {
  return fmt::format("{:02}{:02}{:02}{:02}{:02}{:02}", time.year % 100, time.month, time.day,
                     time.hour, time.minute, time.second);
}

}  // namespace oru::service
