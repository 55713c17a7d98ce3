// SPDX-License-Identifier: MIT
// The program run in the process of a test, with folders of the tests' own.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "app/cli/cli.h"
#include "support/fakes.h"

namespace oru::app {

struct Ran {
  int code = 0;
  std::string out, err;
};

// Settings, reports and projects of these tests: never the user's own.
inline const test::Temp_Folder& Scratch() {
  static const test::Temp_Folder folder;
  static const int set = ::setenv("XDG_DATA_HOME", (folder / "home").c_str(), 1);
  EXPECT_EQ(set, 0);
  return folder;
}

// A copy of a project, which may be written beside.
inline std::string Copy_Of(const std::filesystem::path& project, const std::string& name) {
  const std::filesystem::path copy = Scratch() / name;
  std::filesystem::create_directories(copy.parent_path());
  std::filesystem::copy(project, copy, std::filesystem::copy_options::recursive);
  return copy.string();
}
inline std::string Sample() {
  static const std::string copy = Copy_Of(ORU_SOURCE_DIR "/samples/juchu", "juchu");
  return copy;
}

inline Ran Oru(const std::vector<std::string>& arguments) {
  (void)Scratch();
  std::vector<const char*> argv{"oru"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  std::ostringstream out, err;
  Ran run;
  run.code = Run_Cli(static_cast<int>(argv.size()), argv.data(), out, err);
  run.out = out.str();
  run.err = err.str();
  return run;
}

}  // namespace oru::app
