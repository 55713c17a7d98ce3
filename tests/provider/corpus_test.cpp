// SPDX-License-Identifier: MIT
// Runs every input of the fuzz corpora: seeds, and inputs that once failed.
#include "support/corpus.h"

#include <gtest/gtest.h>

#include "../fuzz/codec_entry.h"
#include "../fuzz/exported_file_entry.h"
#include "../fuzz/module_text_entry.h"
#include "../fuzz/undo_record_entry.h"

namespace oru {
namespace {

TEST(FuzzCorpus, Codec) {
  test::Run_Corpus("codec", 7, fuzz::Run_Codec);
}
TEST(FuzzCorpus, ExportedFile) {
  test::Run_Corpus("exported_file", 7, fuzz::Run_Exported_File);
}

TEST(FuzzCorpus, ModuleText) {
  test::Run_Corpus("module_text", 7, fuzz::Run_Module_Text);
}

TEST(FuzzCorpus, UndoRecord) {
  test::Run_Corpus("undo_record", 1, fuzz::Run_Undo_Record);
}

}  // namespace
}  // namespace oru
