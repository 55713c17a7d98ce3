// SPDX-License-Identifier: MIT
// What the benchmark programs share. Each is called with the folder of the generated projects and
// the options of the benchmark library, and registers its benchmarks in `Register`; `main` is in
// support.cpp.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "analyser/driver.h"
#include "host/memory_editor.h"
#include "provider/exported_file.h"
#include "service/services.h"

namespace oru::bench {

/// A user who sees nothing and answers Ok.
class Silent_User final : public service::User_Interface {
 public:
  [[nodiscard]] service::Answer Show_Message(const service::Message& /*message*/) override {
    return service::Answer::Ok;
  }
};

/// A project in the in-memory editor with all that the analyser needs, as the terminal program sets
/// it up. Throws `std::runtime_error` for a folder without modules.
class Project {
 public:
  explicit Project(const std::filesystem::path& folder);

  [[nodiscard]] analyser::Anl_Ctx Ctx() {
    return {services, editor, nullptr, tables, state, lists};
  }
  /// The modules' texts: lines and bytes.
  [[nodiscard]] std::int64_t Lines() const;
  [[nodiscard]] std::int64_t Bytes() const;

  Silent_User ui;
  service::System_Clock clock;
  service::Services services{ui, clock, {}};
  host::Memory_Editor editor;
  analyser::Tables tables;
  analyser::Anl_State state;
  analyser::Kept_Lists lists;
  host::Memory_Project* project = nullptr;  ///< owned by the editor
};

/// The bytes of each file of a folder with its path, in byte order of the paths.
[[nodiscard]] std::vector<std::pair<std::filesystem::path, std::string>> Read_Files(
    const std::filesystem::path& folder);

/// Has the figures of a benchmark tell the work of one iteration.
void Set_Work(benchmark::State& run, std::int64_t lines, std::int64_t bytes);

/// Each program's own: registers its benchmarks over the projects in `data`.
void Register(const std::filesystem::path& data);

}  // namespace oru::bench
