// SPDX-License-Identifier: MIT
// Runs the inputs of the analyser's fuzz corpora: seeds, and inputs that once failed.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string_view>

#include "../fuzz/analyse_entry.h"
#include "../fuzz/analysis_file_entry.h"
#include "service/files.h"

namespace oru {
namespace {

void Run_All(std::string_view target, const std::function<void(std::string_view)>& entry) {
  int count = 0;
  const auto folder = std::filesystem::path(ORU_SOURCE_DIR) / "fuzz/corpus" / target;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    SCOPED_TRACE(file.path().filename().string());
    const auto input = service::Read_File(file.path());
    ASSERT_EQ(input.error, "");
    entry(input.bytes);
    for (std::size_t size = 0; size < input.bytes.size(); size += 61)
      entry(std::string_view(input.bytes).substr(0, size));
    ++count;
  }
  EXPECT_GT(count, 0);
}

TEST(FuzzCorpus, Analyse) {
  Run_All("analyse", fuzz::Run_Analyse);
}
TEST(FuzzCorpus, AnalysisFile) {
  Run_All("analysis_file", fuzz::Run_Analysis_File);
}

}  // namespace
}  // namespace oru
