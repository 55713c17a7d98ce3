// SPDX-License-Identifier: MIT
#include "service/services.h"

#include <cstdlib>
#include <system_error>
#include <utility>

namespace oru::service {
namespace {

// Only one system has that variable; elsewhere a stray one must not send the log to a "C:" folder.
std::string System_Folder() {
#ifdef _WIN32
  if (const char* folder = std::getenv("windir")) return folder;
#endif
  return {};
}

}  // namespace

Services::Services(User_Interface& ui, const Clock& clock, std::filesystem::path data_folder)
    : Ui(ui), Clk(clock), Data_Folder(std::move(data_folder)) {
  Trace.Path = Trace_Path(System_Folder(), Data_Folder);
}

Switches Chk_Switches(const std::filesystem::path& program_folder) {
  const auto is_there = [&](const char* name) {
    std::error_code error;
    return !program_folder.empty() && std::filesystem::exists(program_folder / name, error);
  };
  return {is_there("measure.txt"), is_there("debug.txt"), is_there("TRCMARKR")};
}

}  // namespace oru::service
