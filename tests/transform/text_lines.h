// SPDX-License-Identifier: MIT
// Small readable texts as the lines that a transform takes and gives.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "service/text.h"

namespace oru::test {

/// The lines of a raw literal; a line break right behind its opening and one before its end go.
[[nodiscard]] inline std::vector<std::string> Lines_In(std::string_view text) {
  if (text.starts_with('\n')) text.remove_prefix(1);
  if (text.ends_with('\n')) text.remove_suffix(1);
  std::vector<std::string> lines;
  for (const std::string_view line : service::Split(text, "\n")) lines.emplace_back(line);
  return lines;
}

/// The lines, each with a line break in front of it, so that they compare with a raw literal.
[[nodiscard]] inline std::string Shown(std::span<const std::string> lines) {
  std::string text;
  for (const std::string& line : lines) text.append("\n").append(line);
  return text + "\n";
}

}  // namespace oru::test
