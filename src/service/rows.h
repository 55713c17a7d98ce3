// SPDX-License-Identifier: MIT
// Record text: a row is its fields in fixed order, joined by one tab; the same bytes stand in
// memory and on disk. A row type lists its fields once, in a static `Fields()` that returns an
// array of member pointers; splitting, joining, files and tests derive from that list.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace oru::service {

/// Splits `row` at tabs into the fields; stops when fields or columns run out, so a shorter row
/// leaves the later fields as they were and surplus columns are ignored.
void Srv_Sep_Txt(std::string_view row, std::span<std::string* const> fields);

/// The values joined with tabs. A tab inside a value becomes one blank.
[[nodiscard]] std::string Srv_Str_Txt(std::span<const std::string_view> values);
[[nodiscard]] std::string Srv_Str_Txt(std::initializer_list<std::string_view> values);

/// The n-th field (from 0) of a row, empty if it has no such field.
[[nodiscard]] std::string_view Row_Field(std::string_view row, std::size_t index);

/// Splits a row into a row type's fields, with the rule of the first overload.
template <class Row>
void Srv_Sep_Txt(std::string_view row, Row& into) {
  constexpr auto fields = Row::Fields();
  std::array<std::string*, fields.size()> targets;
  for (std::size_t i = 0; i < fields.size(); ++i) targets[i] = &(into.*fields[i]);
  Srv_Sep_Txt(row, std::span<std::string* const>(targets));
}

/// Joins the first `count` fields of a row type (all of them unless said).
template <class Row>
[[nodiscard]] std::string Srv_Str_Row(const Row& row, std::size_t count = Row::Fields().size()) {
  constexpr auto fields = Row::Fields();
  std::array<std::string_view, fields.size()> values;
  for (std::size_t i = 0; i < fields.size(); ++i) values[i] = row.*fields[i];
  return Srv_Str_Txt(std::span<const std::string_view>(values).first(count));
}

}  // namespace oru::service
