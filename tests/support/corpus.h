// SPDX-License-Identifier: MIT
// Runs the inputs of a fuzz corpus, seeds and inputs that once failed, and what is left of each when
// it is cut.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string_view>

#include "service/files.h"

namespace oru::test {

/// `step` is the distance in bytes between two cuts of an input.
inline void Run_Corpus(std::string_view target, std::size_t step,
                       const std::function<void(std::string_view)>& entry) {
  int count = 0;
  const auto folder = std::filesystem::path(ORU_SOURCE_DIR) / "fuzz/corpus" / target;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    SCOPED_TRACE(file.path().filename().string());
    const auto input = service::Read_File(file.path());
    ASSERT_EQ(input.error, "");
    entry(input.bytes);
    for (std::size_t size = 0; size < input.bytes.size(); size += step)
      entry(std::string_view(input.bytes).substr(0, size));
    ++count;
  }
  EXPECT_GT(count, 0);
}

}  // namespace oru::test
