// SPDX-License-Identifier: MIT
// Runs the inputs of the corpus of what rewrites code: seeds, and inputs that once failed.
#include "support/corpus.h"

#include <gtest/gtest.h>

#include "../fuzz/rewrite_entry.h"

namespace oru {
namespace {

TEST(FuzzCorpus, Rewrite) {
  test::Run_Corpus("rewrite", 3, fuzz::Run_Rewrite);
}

}  // namespace
}  // namespace oru
