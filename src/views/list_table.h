// SPDX-License-Identifier: MIT
// A list as a front end shows it: columns, rows of cells with icons, a selected row, the filter
// above it. Rows carry their sort keys; sorting and the thinning of the module column work on rows
// that have been filled before, so that a click on a title needs no tables.
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "views/list_columns.h"

namespace oru::views {

struct List_Column {
  std::string Ttl;       ///< as shown, with the mark of the order
  std::string_view Bas;  ///< the title alone
  std::string_view Key;
  bool Right = false;
};

struct List_Row {
  std::string Key;  ///< module name, or procedure name, ".", module name
  std::string Img;  ///< icon tag of the first column
  std::vector<std::string> Cells;
  bool Ref_Red = false;  ///< the reference mark is in red
  // By project: the module cell. Its icon, the module's name behind it, and the cell's unique key,
  // which keeps the icon tag while the cell is thinned out.
  std::string Mdl_Img, Mdl_Tag, Cel_Key;
  // Sort keys.
  std::string Nam_Key, Chg_Key;
  bool Chg = false;     ///< `Chg_Key` is a moment and a line
  std::size_t Seq = 0;  ///< place in the order of filling
};

/// Order of rows: the sort modes 0 to 2.
enum class List_Order { Name_Up = 0, Name_Down = 1, Change = 2 };

struct List_Table {
  std::vector<List_Column> Columns;
  std::vector<List_Row> Rows;
  std::string Sel;  ///< key of the selected row, empty for none

  [[nodiscard]] const List_Row* Find(std::string_view key) const;
  /// Selects the row of that key; false, and nothing selected, if there is none.
  bool Select(std::string_view key);
};

/// A filter box: its rows and the chosen one.
struct Filter_Box {
  std::vector<std::string> Rows;
  std::string Text;

  /// Chooses a row; false, and nothing changed, if there is no such row.
  [[nodiscard]] bool Choose(std::string_view text);
  /// True while a filter other than the first row is in force: the box is shown in light yellow.
  [[nodiscard]] bool Highlighted() const { return !Rows.empty() && Text != Rows.front(); }
};

/// The sorted work list behind a filter box: each row once, in the order of the prefixes and then
/// of the texts.
class Filter_Rows {
 public:
  void Add(std::string_view order, std::string_view text);
  /// Fills the box without the prefixes; the text chosen before stays chosen if it still exists,
  /// else the first row is.
  void Fill(Filter_Box& box) const;

 private:
  std::map<std::pair<std::string, std::string>, std::string> rows_;
};

/// Titles without a mark, from column definitions.
[[nodiscard]] std::vector<List_Column> Make_Columns(std::span<const Column_Def> definitions);

/// Sorts rows. By name: simple lower case, then code points. By change: the changed ones first,
/// newest first, the others by name. `by_module` puts the rows of a module together, modules by
/// name. Rows that are equal keep the order of filling.
void Sort_Rows(std::vector<List_Row>& rows, List_Order order, bool by_module);

/// Unique key of a module cell; the icon tag stands behind its digits.
[[nodiscard]] std::string Cell_Key(std::size_t row, std::size_t column, std::string_view tag);
/// Shows "|" and no icon in a module cell whose module is that of the row above, or, with `thin`
/// false, names and icons again.
void Thin_Modules(std::vector<List_Row>& rows, bool thin);

/// The list as text: heading, titles, one line for each row, ended by CR LF. Cells are without
/// their outer blanks, thinned modules with their names. With "," as separator, a cell that holds
/// one or a quotation mark is quoted.
[[nodiscard]] std::string Cpy_Lst_Inf(std::string_view heading, const List_Table& table,
                                      char separator);

}  // namespace oru::views
