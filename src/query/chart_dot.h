// SPDX-License-Identifier: MIT
// A tree of calls as a graph in the DOT language of Graphviz (graphviz.org/doc/info/lang.html): each
// procedure once, in a box for its module, an arrow from caller to callee for each pair; dashed where
// all calls of the pair come from error handling.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "query/frm_chart.h"

namespace oru::query {

/// What every graph begins with.
constexpr std::string_view kDot_Begin = "digraph ";

struct Dot_Graph {
  std::string Text;
  std::size_t Procedures = 0;
};
[[nodiscard]] Dot_Graph Get_Dot(const Frm_Chart& chart);

}  // namespace oru::query
