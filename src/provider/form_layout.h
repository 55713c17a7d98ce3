// SPDX-License-Identifier: MIT
// The controls in the layout block of an exported form. Only layouts in text hold controls; where
// the designer is a binary blob in the .frx file, the block tells of the form alone.
#pragma once

#include <string_view>
#include <vector>

#include "host/memory_project.h"

namespace oru::provider {

/// The controls in a block `Begin Lib.Type Name` ... `End`, a container before what it contains;
/// the outermost one, which is the form, is left out. The type name is what follows the last dot
/// of Lib.Type. `Caption`, `Text` and `Tag` are known where they stand as a string; a reference
/// into the .frx file leaves them unknown.
[[nodiscard]] std::vector<host::Control_Data> Parse_Controls(std::string_view block);

}  // namespace oru::provider
