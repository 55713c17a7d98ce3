// SPDX-License-Identifier: MIT
// Runs the inputs of the analyser's fuzz corpora: seeds, and inputs that once failed.
#include "support/corpus.h"

#include <gtest/gtest.h>

#include "../fuzz/analyse_entry.h"
#include "../fuzz/analysis_file_entry.h"

namespace oru {
namespace {

TEST(FuzzCorpus, Analyse) {
  test::Run_Corpus("analyse", 61, fuzz::Run_Analyse);
}
TEST(FuzzCorpus, AnalysisFile) {
  test::Run_Corpus("analysis_file", 61, fuzz::Run_Analysis_File);
}

}  // namespace
}  // namespace oru
