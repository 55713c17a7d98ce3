// SPDX-License-Identifier: MIT
// The tree of calls below a procedure: what it calls, or what calls it. It is walked on the
// reference text itself, record by record, with one stack; no graph is built. What a walk looks up
// more than once (where a caller's records begin, which records name a target) is noted for the
// modules that it meets. Nothing here outlives a change of the tables.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "analyser/references.h"
#include "analyser/tables.h"

namespace oru::query {

constexpr std::size_t kMost_Nodes = 20'000;  ///< rows of a tree, module and root included
constexpr std::size_t kMost_Levels = 40;     ///< procedures on the path from the root

enum Chart_Mode : int { kCallees = 1, kCallers = 2, kUnreferenced = 3 };

/// Why nothing stands below a node.
enum class Chart_Mark : std::uint8_t {
  None,
  Cycle,     ///< "▼": it stands on its own path from the root
  Expanded,  ///< "▲": what is below it stands elsewhere in the tree
  More       ///< "＋": the limit of levels hides it
};
/// The mark as it stands in front of a node's text; empty for none.
[[nodiscard]] std::string_view Mark_Text(Chart_Mark mark);

/// The conditions of a tree.
struct Chart_Cond {
  bool Crt_Cmp = true;   ///< `FCk_CmpDs`: a procedure is expanded once
  int Crt_Lvl = 0;       ///< `FCx_DspLv`: levels shown below the root; 0: as deep as it goes
  bool Crt_ErH = false;  ///< calls from error handling are left out
};

/// A row of the tree. Rows stand in the order in which they are shown, parents first.
struct Chart_Node {
  int Parent = -1;  ///< row, from 0; -1: none
  int Depth = 0;    ///< 0 module, 1 root, 2 what it calls
  std::string Key;
  std::string Text;  ///< with its mark, a blank in front and a filler behind
  std::string Tag;   ///< "M", the module and "P" (root), the module and "R"
  std::string Img;   ///< icon tag
  bool Bold = false;
  std::string Mdl, Mem;
  Chart_Mark Mark = Chart_Mark::None;
  bool Error_Section = false;  ///< called from error handling
  int Cycle_Of = -1;           ///< row of the same procedure above
  std::string Ref_Lns;         ///< offsets of the statements in the caller, as its record has them
  bool Open = false;           ///< its children are shown
};

/// The neighbours of procedures, as handles of records: callees by adjacency, callers by an index of
/// all records by target. Keys are "Module.Member", exact.
class Neighbours {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  Neighbours(const analyser::Tables& tables, Chart_Mode mode);
  /// Handle of the first record of a procedure, or of the next one behind a handle; kNone if there is
  /// no other.
  [[nodiscard]] std::size_t First(std::string_view key);
  [[nodiscard]] std::size_t Next(std::size_t handle) const;
  [[nodiscard]] analyser::Ref_Record Record(std::size_t handle) const;

 private:
  struct Module_Text {
    std::size_t begin = 0, end = 0;  // in `Ref_All`
    bool read = false;
  };
  struct Entry {
    std::size_t position;
    std::size_t next;
  };
  void Index_Targets();
  [[nodiscard]] analyser::Ref_Cursor At(std::size_t position) const;

  std::string_view text_;
  Chart_Mode mode_;
  std::unordered_map<std::string_view, Module_Text> modules_;
  std::unordered_map<std::string_view, std::size_t> first_;  // by caller, or by target
  std::vector<Entry> entries_;                               // callers only
};

/// What a walk asks for.
struct Walk_Needs {
  const analyser::Tables& Tbl;
  /// True if the member is still in the code (`Chk_Prc_Exs`, without its message); asked once each.
  std::function<bool(std::string_view module, std::string_view member)> Chk_Prc_Exs;
  /// Told every 100 rows.
  std::function<void(std::size_t count)> Progress;
  bool Bold = false;  ///< option of the rows of calls
};

/// Limits that a walk met.
struct Walk_End {
  bool Too_Many = false;  ///< it stopped at kMost_Nodes
  bool Too_Deep = false;  ///< it left out what lies deeper than kMost_Levels
};

/// Appends the tree below the last of `nodes`, the root (`Set_Ref_Info`, `Set_Rev_Info`).
[[nodiscard]] Walk_End Walk_Calls(const Walk_Needs& needs, Chart_Mode mode, const Chart_Cond& cond,
                                  std::vector<Chart_Node>& nodes);

/// A row of the list or tree, with its key made of the number of rows before it.
[[nodiscard]] Chart_Node Call_Node(const analyser::Tables& tables, int parent, int depth,
                                   std::size_t number, std::string_view module,
                                   std::string_view member);

}  // namespace oru::query
