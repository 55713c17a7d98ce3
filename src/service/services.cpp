// SPDX-License-Identifier: MIT
#include "service/services.h"

#ifndef _WIN32
#include <sys/utsname.h>
#endif

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

std::string Os_Version() {
#ifdef _WIN32
  return {};  // the registry tells the add-in
#else
  utsname system{};
  if (::uname(&system) != 0) return {};
  const std::string release = system.release;
  const std::size_t dot = release.find('.');
  const std::size_t end = release.find_first_not_of("0123456789", dot + 1);
  return dot == std::string::npos ? release : release.substr(0, end);
#endif
}

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
