// SPDX-License-Identifier: MIT
#include "service/keywords.h"

#include "service/codec.h"
#include "service/files.h"
#include "service/text.h"

namespace oru::service {

Keywords::Keywords() {
  Load_Text(Template());
}

void Keywords::Load_Text(std::string_view text) {
  exact_.clear();
  folded_.clear();
  for (std::string_view line : Split(text, "\n")) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const std::string_view word = Trim(line);
    if (word.empty() || word.front() == '/') continue;
    exact_.emplace(word);
    folded_.insert(To_Lower(word));
  }
}

bool Keywords::Has_No_Case(std::string_view word) const {
  return folded_.contains(To_Lower(word));
}

bool Lod_KWd(Keywords& keywords, const std::filesystem::path& data_folder) {
  if (data_folder.empty()) return false;
  const std::filesystem::path path = data_folder / "DA-KWd.txt";
  const Read_Result file = Read_File(path);
  const auto page = Code_Page::Open(932);
  if (!file.Ok() || page == nullptr) return false;
  keywords.Load_Text(Decode(file.bytes, Detect_Encoding(file.bytes), *page).text);
  return true;
}

}  // namespace oru::service
