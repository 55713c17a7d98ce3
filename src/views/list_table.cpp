// SPDX-License-Identifier: MIT
#include "views/list_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <compare>

#include "service/text.h"

namespace oru::views {

namespace {

// A name made ready for many comparisons.
struct Name_Key {
  explicit Name_Key(std::string_view name) : low(service::To_Lower(name)), raw(name) {}
  std::string low;
  std::string_view raw;

  // UTF-8 bytes compare as their code points do.
  std::strong_ordering operator<=>(const Name_Key& other) const {
    const std::strong_ordering folded = low <=> other.low;
    return std::is_neq(folded) ? folded : raw <=> other.raw;
  }
};

struct Sort_Key {
  Name_Key module, name;
  std::size_t index;
};

std::strong_ordering Compare_Changes(const List_Row& a, const List_Row& b, const Sort_Key& key_a,
                                     const Sort_Key& key_b) {
  if (a.Chg != b.Chg) return a.Chg ? std::strong_ordering::less : std::strong_ordering::greater;
  return a.Chg ? b.Chg_Key <=> a.Chg_Key : key_a.name <=> key_b.name;
}

std::string Copied_Cell(std::string_view cell, char separator) {
  const std::string_view text = service::Trim(cell);
  if (separator != ',' || text.find_first_of(",\"") == std::string_view::npos)
    return std::string(text);
  return fmt::format("\"{}\"", service::Replace_All(text, "\"", "\"\""));
}

}  // namespace

const List_Row* List_Table::Find(std::string_view key) const {
  const auto at = std::ranges::find_if(
      Rows, [key](const List_Row& row) { return service::Equal_No_Case(row.Key, key); });
  return at == Rows.end() ? nullptr : &*at;
}

bool List_Table::Select(std::string_view key) {
  const List_Row* row = Find(key);
  Sel = row == nullptr ? std::string() : row->Key;
  return row != nullptr;
}

bool Filter_Box::Choose(std::string_view text) {
  if (std::ranges::find(Rows, text) == Rows.end()) return false;
  Text = text;
  return true;
}

void Filter_Rows::Add(std::string_view order, std::string_view text) {
  rows_.try_emplace({std::string(order), service::To_Lower(text)}, text);
}

void Filter_Rows::Fill(Filter_Box& box) const {
  box.Rows.clear();
  for (const auto& [key, text] : rows_) box.Rows.push_back(text);
  if (!box.Choose(box.Text)) box.Text = box.Rows.empty() ? std::string() : box.Rows.front();
}

std::vector<List_Column> Make_Columns(std::span<const Column_Def> definitions) {
  std::vector<List_Column> columns;
  columns.reserve(definitions.size() + 1);
  for (const Column_Def& d : definitions)
    columns.push_back({std::string(d.Ttl), d.Ttl, d.Key, d.Right});
  return columns;
}

void Sort_Rows(std::vector<List_Row>& rows, List_Order order, bool by_module) {
  std::vector<Sort_Key> keys;
  keys.reserve(rows.size());
  for (const List_Row& row : rows) {
    // Without a change, the change key is the row's key: names, then modules.
    const std::string& name = order == List_Order::Change ? row.Chg_Key : row.Nam_Key;
    keys.push_back({Name_Key(by_module ? std::string_view(row.Mdl_Tag) : std::string_view()),
                    Name_Key(name), keys.size()});
  }
  std::ranges::sort(keys, [&](const Sort_Key& a, const Sort_Key& b) {
    const List_Row& row_a = rows[a.index];
    const List_Row& row_b = rows[b.index];
    std::strong_ordering result = a.module <=> b.module;
    if (std::is_eq(result)) {
      switch (order) {
        case List_Order::Name_Up:
          result = a.name <=> b.name;
          break;
        case List_Order::Name_Down:
          result = b.name <=> a.name;
          break;
        case List_Order::Change:
          result = Compare_Changes(row_a, row_b, a, b);
          break;
      }
    }
    return std::is_neq(result) ? std::is_lt(result) : row_a.Seq < row_b.Seq;
  });
  std::vector<List_Row> sorted;
  sorted.reserve(rows.size());
  for (const Sort_Key& key : keys) sorted.push_back(std::move(rows[key.index]));
  rows = std::move(sorted);
}

std::string Cell_Key(std::size_t row, std::size_t column, std::string_view tag) {
  return fmt::format("{:06}{}", row * 100 + column, tag);
}

void Thin_Modules(std::vector<List_Row>& rows, bool thin) {
  std::string_view above;
  for (List_Row& row : rows) {
    if (row.Cells.size() <= kCol_Mdl) continue;
    if (thin && row.Mdl_Tag == above) {
      row.Cells[kCol_Mdl] = "|";
      row.Mdl_Img = kNo_Icon;
    } else {
      row.Cells[kCol_Mdl] = row.Mdl_Tag;
      row.Mdl_Img = row.Cel_Key.substr(
          std::min(row.Cel_Key.find_first_not_of("0123456789"), row.Cel_Key.size()));
    }
    above = row.Mdl_Tag;
  }
}

std::string Cpy_Lst_Inf(std::string_view heading, const List_Table& table, char separator) {
  std::string text(heading);
  text += "\r\n";
  for (std::size_t i = 0; i < table.Columns.size(); ++i) {
    if (i > 0) text += separator;
    text += table.Columns[i].Bas;
  }
  text += "\r\n";
  for (const List_Row& row : table.Rows) {
    for (std::size_t i = 0; i < row.Cells.size(); ++i) {
      if (i > 0) text += separator;
      const bool thinned = i == kCol_Mdl && row.Mdl_Img == kNo_Icon;
      text += Copied_Cell(thinned ? row.Mdl_Tag : row.Cells[i], separator);
    }
    text += "\r\n";
  }
  return text;
}

}  // namespace oru::views
