// SPDX-License-Identifier: MIT
// Pictures of graphs, drawn by the program `dot` of Graphviz where it is installed.
#pragma once

#include <string>

namespace oru::app {

struct Picture {
  std::string error;  ///< Japanese; empty on success
  std::string svg;
};
/// Runs `dot -Tsvg` on a graph and waits for its end.
[[nodiscard]] Picture Draw_Graph(const std::string& dot);

}  // namespace oru::app
