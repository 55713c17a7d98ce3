// SPDX-License-Identifier: MIT
// Which lines of a module declare which names: as much of the language as it takes to keep a
// member's attributes at their member when its lines were edited.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "host/model.h"
#include "service/collection.h"

namespace oru::provider {

/// A statement line that declares a name, with its 0-based first and last line.
struct Declaration {
  std::optional<host::ProcKind> kind;  ///< nothing for what is no procedure
  std::size_t first = 0, last = 0;
};

/// The declarations of each name (in lower case), in the order of the lines. Procedures are found
/// everywhere, the rest (variables, constants, events, external procedures) up to the first of
/// them; of such a statement every word counts as declared.
using Declarations = service::Text_Map<std::vector<Declaration>>;
[[nodiscard]] Declarations Find_Declarations(std::span<const std::string_view> lines);

}  // namespace oru::provider
