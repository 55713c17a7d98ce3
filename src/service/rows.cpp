// SPDX-License-Identifier: MIT
#include "service/rows.h"

#include <algorithm>

namespace oru::service {

void Srv_Sep_Txt(std::string_view row, std::span<std::string* const> fields) {
  for (std::string* field : fields) {
    const std::size_t tab = row.find('\t');
    field->assign(row.substr(0, tab));
    if (tab == std::string_view::npos) return;
    row.remove_prefix(tab + 1);
  }
}

std::string Srv_Str_Txt(std::span<const std::string_view> values) {
  std::size_t size = values.size();
  for (const std::string_view value : values) size += value.size();
  std::string row;
  row.reserve(size);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) row += '\t';
    const std::size_t start = row.size();
    row += values[i];
    std::replace(row.begin() + static_cast<std::ptrdiff_t>(start), row.end(), '\t', ' ');
  }
  return row;
}

std::string Srv_Str_Txt(std::initializer_list<std::string_view> values) {
  return Srv_Str_Txt(std::span<const std::string_view>(values.begin(), values.size()));
}

std::string_view Row_Field(std::string_view row, std::size_t index) {
  for (; index > 0; --index) {
    const std::size_t tab = row.find('\t');
    if (tab == std::string_view::npos) return {};
    row.remove_prefix(tab + 1);
  }
  return row.substr(0, row.find('\t'));
}

}  // namespace oru::service
