// SPDX-License-Identifier: MIT
// The tables and the kept lists as the lines of the analysis file: one record a line, a tag in
// front, the row unchanged behind it. Written here, and read back line by line into new tables that
// are good only once the last line was taken: what is damaged anywhere is refused as a whole.
// docs/formats.md tells the layout.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "analyser/kept_lists.h"
#include "analyser/tables.h"

namespace oru::analyser {

/// Takes one line: its tag ("#Mdl", "M") and its payload, without a line end.
using Line_Sink = std::function<void(std::string_view tag, std::string_view payload)>;

/// The first line.
constexpr std::string_view kFile_Version = "Ver7";

/// The lines of the lists, "F" to "V"; of the long ones as many rows as are kept.
void Put_Lists(const Kept_Lists& lists, const Line_Sink& put);
/// The lines of one module's block, "#Mdl" to "#End".
void Put_Module_Block(const Tables& tables, const Mdl_Entry& entry, const Line_Sink& put);
/// The "#RIf" lines.
void Put_Ref_Marks(const Tables& tables, const Line_Sink& put);

/// Reads the lines back, in order. It trusts nothing: order of the lines, number of fields, keys
/// that come twice, and marks that the references do not give are all found.
class Table_Reader {
 public:
  /// Takes the next line, without its end. False once something is wrong.
  [[nodiscard]] bool Take(std::string_view line);
  /// After the last line: makes what is derived from the tables. False if they are not whole.
  [[nodiscard]] bool Finish();
  /// What is wrong, with the number of the line; empty as long as nothing is.
  [[nodiscard]] const std::string& Why() const { return why_; }

  Tables Tbl;        ///< good after `Finish`
  Kept_Lists Lists;  ///< good after `Finish`

 private:
  bool Fail(std::string_view what);
  bool In_Order(int rank, bool once);
  bool Take_List(std::string_view line);
  bool Take_Block(std::string_view tag, std::string_view payload);
  bool Take_Member(std::string_view row);
  bool End_Block();

  int line_ = 0;  // of the line in hand, 1-based
  int rank_ = 0;  // of the line before it in the order of the file, or of the block
  std::string why_;
  std::unique_ptr<Mdl_Entry> entry_;  // of the block in hand
  std::string module_, references_;
  bool has_references_ = false;
  std::vector<std::string> marks_;  // the "#RIf" payloads
};

}  // namespace oru::analyser
