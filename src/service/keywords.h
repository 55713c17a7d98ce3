// SPDX-License-Identifier: MIT
// The reserved words of the language and its built-in names, from "DA-KWd.txt": one a line, lines
// trimmed, empty ones and those that start with "/" passed over.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_set>

#include "service/collection.h"

namespace oru::service {

class Keywords {
 public:
  /// The words that the program is installed with.
  Keywords();
  /// Takes the words from a file's text instead of those held so far.
  void Load_Text(std::string_view text);
  /// Exact test (`KWd_Dic`).
  [[nodiscard]] bool Has(std::string_view word) const { return exact_.find(word) != exact_.end(); }
  /// Test without regard to letter case.
  [[nodiscard]] bool Has_No_Case(std::string_view word) const;
  [[nodiscard]] std::size_t Count() const { return exact_.size(); }
  /// The text of the template file.
  [[nodiscard]] static std::string_view Template();

 private:
  std::unordered_set<std::string, Text_Hash, std::equal_to<>> exact_;
  std::unordered_set<std::string, Text_Hash, std::equal_to<>> folded_;
};

/// Takes the words of "DA-KWd.txt" in the data folder. False, and the words held so far stay, if it
/// cannot be read.
[[nodiscard]] bool Lod_KWd(Keywords& keywords, const std::filesystem::path& data_folder);

}  // namespace oru::service
