// SPDX-License-Identifier: MIT
// The tables as the lines of the analysis file: one record a line, a tag of four characters and the
// row unchanged behind it. docs/formats.md tells the layout.
#pragma once

#include <functional>
#include <string_view>

#include "analyser/tables.h"

namespace oru::analyser {

/// Takes one line: its tag ("#Mdl") and its payload, without a line end.
using Line_Sink = std::function<void(std::string_view tag, std::string_view payload)>;

/// The lines of one module's block, "#Mdl" to "#End".
void Put_Module_Block(const Tables& tables, const Mdl_Entry& entry, const Line_Sink& put);
/// The "#RIf" lines.
void Put_Ref_Marks(const Tables& tables, const Line_Sink& put);

}  // namespace oru::analyser
