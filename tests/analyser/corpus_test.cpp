// SPDX-License-Identifier: MIT
// Runs the inputs of the analysis' fuzz corpus: seeds, and inputs that once failed.
#include <gtest/gtest.h>

#include <filesystem>

#include "../fuzz/analyse_entry.h"
#include "service/files.h"

namespace oru {
namespace {

TEST(FuzzCorpus, Analyse) {
  int count = 0;
  for (const auto& file :
       std::filesystem::directory_iterator(ORU_SOURCE_DIR "/fuzz/corpus/analyse")) {
    SCOPED_TRACE(file.path().filename().string());
    const auto input = service::Read_File(file.path());
    ASSERT_EQ(input.error, "");
    fuzz::Run_Analyse(input.bytes);
    for (std::size_t size = 0; size < input.bytes.size(); size += 61)
      fuzz::Run_Analyse(std::string_view(input.bytes).substr(0, size));
    ++count;
  }
  EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace oru
