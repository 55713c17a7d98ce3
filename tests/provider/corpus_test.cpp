// SPDX-License-Identifier: MIT
// Runs every input of the fuzz corpora: seeds, and inputs that once failed.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string_view>

#include "../fuzz/codec_entry.h"
#include "../fuzz/exported_file_entry.h"
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
    // Every cut of an input is an input too.
    for (std::size_t size = 0; size < input.bytes.size(); size += 7)
      entry(std::string_view(input.bytes).substr(0, size));
    ++count;
  }
  EXPECT_GT(count, 0);
}

TEST(FuzzCorpus, Codec) {
  Run_All("codec", fuzz::Run_Codec);
}
TEST(FuzzCorpus, ExportedFile) {
  Run_All("exported_file", fuzz::Run_Exported_File);
}

}  // namespace
}  // namespace oru
