// SPDX-License-Identifier: MIT
#include "app/cli/output.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "service/text.h"

namespace oru::app {

namespace {

constexpr std::size_t kGap = 2;           // between columns
constexpr std::size_t kLeast_Shrunk = 8;  // a cut column keeps this much

std::size_t Columns_Of(char32_t c) {
  if (c < 0x300) return 1;
  const auto code = static_cast<UChar32>(c);
  const int category = u_charType(code);
  if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR)
    return 0;
  const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_FULLWIDTH || width == U_EA_WIDE ? 2 : 1;
}

std::string Cut_To(std::string_view text, std::size_t width) {
  if (Terminal_Width_Of(text) <= width) return std::string(text);
  std::size_t used = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    std::size_t next = i;
    const std::size_t columns = Columns_Of(service::Next_Code_Point(text, next));
    if (used + columns + 1 > width) break;
    used += columns;
    i = next;
  }
  return std::string(text.substr(0, i)) + "…";
}

void Print_Columns(std::ostream& out, const Out_Table& table, std::size_t terminal) {
  const std::size_t count = table.columns.size();
  std::vector<std::vector<std::string>> cells;
  cells.reserve(table.rows.size() + 1);
  std::vector<std::string> titles;
  for (const Out_Column& column : table.columns) titles.push_back(column.title);
  cells.push_back(std::move(titles));
  for (const auto& row : table.rows) {
    std::vector<std::string> shown;
    for (std::size_t c = 0; c < count; ++c) {
      const bool is_flag = table.columns[c].type == Cell_Type::Flag;
      shown.push_back(is_flag ? (row[c] == "1" ? "○" : "") : service::Without_Controls(row[c]));
    }
    cells.push_back(std::move(shown));
  }
  std::vector<std::size_t> widths(count, 0);
  for (const auto& row : cells)
    for (std::size_t c = 0; c < count; ++c)
      widths[c] = std::max(widths[c], Terminal_Width_Of(row[c]));

  std::size_t total = count == 0 ? 0 : kGap * (count - 1);
  for (const std::size_t width : widths) total += width;
  if (terminal > 0 && total > terminal) {
    for (std::size_t c = 0; c < count && total > terminal; ++c) {
      if (!table.columns[c].shrinks || widths[c] <= kLeast_Shrunk) continue;
      const std::size_t cut = std::min(total - terminal, widths[c] - kLeast_Shrunk);
      widths[c] -= cut;
      total -= cut;
    }
  }
  for (const auto& row : cells) {
    std::string line;
    for (std::size_t c = 0; c < count; ++c) {
      const std::string cell = Cut_To(row[c], widths[c]);
      const std::string padding(widths[c] - std::min(widths[c], Terminal_Width_Of(cell)), ' ');
      if (c > 0) line.append(kGap, ' ');
      line += table.columns[c].type == Cell_Type::Number ? padding + cell : cell + padding;
    }
    line.resize(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}

void Print_Tsv(std::ostream& out, const Out_Table& table) {
  for (std::size_t c = 0; c < table.columns.size(); ++c)
    out << (c == 0 ? "" : "\t") << table.columns[c].key;
  out << '\n';
  for (const auto& row : table.rows) {
    for (std::size_t c = 0; c < row.size(); ++c)
      out << (c == 0 ? "" : "\t") << service::Without_Controls(row[c]);
    out << '\n';
  }
}

void Print_Json(std::ostream& out, const Out_Table& table) {
  using Json = nlohmann::ordered_json;
  Json list = Json::array();
  for (const auto& row : table.rows) {
    Json object = Json::object();
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
      const Out_Column& column = table.columns[c];
      if (column.type == Cell_Type::Number) {
        long long number = 0;
        const std::string_view digits = service::Trim(row[c]);
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
        object[column.key] = number;
      } else if (column.type == Cell_Type::Flag) {
        object[column.key] = row[c] == "1";
      } else {
        object[column.key] = row[c];
      }
    }
    list.push_back(std::move(object));
  }
  // A byte that is no UTF-8 cannot come out of the tables, but must not end the program either.
  out << list.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

void Tell(std::ostream& err, std::string_view message) {
  err << "oru: " << service::Without_Controls(message) << '\n';
}

std::size_t Terminal_Width_Of(std::string_view text) {
  std::size_t width = 0;
  for (std::size_t i = 0; i < text.size();) width += Columns_Of(service::Next_Code_Point(text, i));
  return width;
}

void Print_Table(std::ostream& out, const Out_Table& table, Format format, std::size_t width) {
  switch (format) {
    case Format::Columns:
      Print_Columns(out, table, width);
      break;
    case Format::Tsv:
      Print_Tsv(out, table);
      break;
    case Format::Json:
      Print_Json(out, table);
      break;
  }
}

}  // namespace oru::app
