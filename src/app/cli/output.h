// SPDX-License-Identifier: MIT
// Forms of output: one table of rows, printed as aligned columns (by the widths of a terminal), as
// tab-separated values, or as a JSON list of objects.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace oru::app {

enum class Format { Columns, Tsv, Json };

/// How a column's cells are read.
enum class Cell_Type { Text, Number, Flag };

struct Out_Column {
  std::string title;  ///< heading of the columns, in the user's language
  std::string key;    ///< name in JSON and heading of tab-separated values
  Cell_Type type = Cell_Type::Text;
  bool shrinks = false;  ///< may be cut where the line is too long for the terminal
};

struct Out_Table {
  std::vector<Out_Column> columns;
  /// One text a column; "1" is a true flag, an empty number is 0 in JSON and blank elsewhere.
  std::vector<std::vector<std::string>> rows;
};

/// Prints the table. `width` is the terminal's, 0 when the output is no terminal: then nothing is
/// cut. Control characters in cells are shown as blanks.
void Print_Table(std::ostream& out, const Out_Table& table, Format format, std::size_t width);

/// Prints a message for the user: "oru: ", the text in one line, without control characters (it
/// may quote what stands in a file), and a line end.
void Tell(std::ostream& err, std::string_view message);

/// Columns that a text takes on a terminal.
[[nodiscard]] std::size_t Terminal_Width_Of(std::string_view text);

}  // namespace oru::app
