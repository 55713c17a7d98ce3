// SPDX-License-Identifier: MIT
// Fuzz entry for the record of a replacement: what can be read can be written and read again.
#pragma once

#include <string_view>

#include "provider/undo_record.h"
#include "require.h"

namespace oru::fuzz {

inline void Run_Undo_Record(std::string_view input) {
  const auto files = provider::Unpack_Undo(input);
  if (!files) return;
  const auto again = provider::Unpack_Undo(provider::Pack_Undo(*files));
  Require(again && again->size() == files->size(), "what was written can be read");
  for (std::size_t i = 0; i < files->size(); ++i)
    Require((*again)[i].old_bytes == (*files)[i].old_bytes &&
                (*again)[i].relative == (*files)[i].relative,
            "it is the same");
}

}  // namespace oru::fuzz
