// SPDX-License-Identifier: MIT
// Who calls whom, as a view without a window: a front end sets the conditions, builds a tree for
// the caret's procedure or a named one, and shows `Nodes` and the pane's text. The tree stays until
// the next build, also when the code changes; the detail pane reads the live code.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "query/call_tree.h"
#include "query/query_context.h"
#include "query/result_text.h"

namespace oru::query {

/// A root that was shown.
struct Chart_History {
  std::string Mdl, Mem;
  int Mod = kCallees;
  std::string Text;  ///< the member's name and " ▼(呼出)" or " ▲(参照)"
};

/// What the window offers for the selected row (`Ctl_Cmd_Btn`).
struct Chart_Commands {
  bool Normal = false, Reverce = false;  ///< its callees, its callers as a new tree
  std::string Caption;                   ///< the name as it stands beside the commands
  std::string Note;                      ///< what the conditions leave out; empty: nothing
};

/// Which rows a copy takes.
enum class Chart_Copy : std::uint8_t {
  All,
  Shown,    ///< those whose parents are all open
  Sub_Tree  ///< those below the current row, and the way to it
};

/// How a tree is drawn as text.
struct Tree_Style {
  /// For each row above that has a later sibling, and for each that has none; in front of a row with
  /// a later sibling, and of the last one.
  std::string_view Through, Blank, Middle, Last;
  bool On_Screen = false;  ///< marks in front of the names, with icons and calls of error handling
};
/// The text of a copy: full-width branches, two columns each, and marks behind the names.
constexpr Tree_Style kCopy_Style{"│  ", "    ", "├", "└"};
/// A terminal, where a branch takes one column.
constexpr Tree_Style kScreen_Style{"│   ", "    ", "├", "└", true};

struct Frm_Chart {
  int Crt_Mod = kCallees;  ///< kept between builds
  Chart_Cond Cond;
  std::string Crt_RMd, Crt_RMm;  ///< the root
  std::vector<Chart_Node> Nodes;
  int Cur = -1;                    ///< the current row
  Result_Text Pane;                ///< `FRt_Info`, with the place of each of `Pane_Lines`
  std::vector<int> Pane_Lines;     ///< module lines of the statements in the pane, 0 for other rows
  std::vector<Chart_History> His;  ///< newest first, each root and mode once
  bool Absolute_Lines = false;     ///< line numbers are those of the module

  /// Takes the options. The view has none of its own beside them.
  void Lod_State(const service::Settings& settings);

  /// Build the tree of `Crt_Mod` 1, 2 and 3 anew. `ag_Keep` 1: the root is taken from the caret, and
  /// `ag_Keep` becomes 0; else it stays. False, and told, if the caret is on no usable root; without
  /// a caret the pane says what to do.
  bool Set_Ref_Tree(const Query_Ctx& ctx, int& ag_Keep);
  bool Set_Rev_Tree(const Query_Ctx& ctx, int& ag_Keep);
  bool Set_NRf_Tree(const Query_Ctx& ctx, int& ag_Keep);
  /// Builds a tree for a named root, with the mode given. False if the tables have no such member.
  bool Show(const Query_Ctx& ctx, int mode, std::string_view module, std::string_view member);

  /// Makes a row current and fills the pane (`FTv_Chart_NodeClick`).
  void FTv_Chart_NodeClick(const Query_Ctx& ctx, int row);
  /// Moves the caret to the statement at a place of the pane. False if there is none.
  [[nodiscard]] bool FRt_Info_Click(const Query_Ctx& ctx, service::Chr_Count place) const;

  /// Opens the path from the root to a row.
  void Rev_Nod_Opn(int row);
  [[nodiscard]] Chart_Commands Ctl_Cmd_Btn() const;

  /// The tree as text, lines ended by CR LF.
  [[nodiscard]] Rich_Text Tree_Text(const Query_Ctx& ctx, Chart_Copy what,
                                    const Tree_Style& style = kCopy_Style) const;
  /// Puts the plain text into the clipboard, by a routine that may fail, and tells how it went.
  void Cpy_Crt_Fmt(const Query_Ctx& ctx, Chart_Copy what,
                   const std::function<bool(const std::string&)>& set_clipboard) const;
  /// The statements by which a row calls or is called, as module lines, 1-based.
  [[nodiscard]] std::vector<int> Call_Lines(const Query_Ctx& ctx, int row) const;

 private:
  [[nodiscard]] bool Take_Root(const Query_Ctx& ctx, int mode, int& ag_Keep);
  [[nodiscard]] bool Chk_Dsp_Mem(const Query_Ctx& ctx, int mode);
  [[nodiscard]] bool Set_Tree(const Query_Ctx& ctx, int mode, int& ag_Keep,
                              std::string_view nothing);
  void Set_Ope_Msg(const Query_Ctx& ctx);
  void Start_Tree(const Query_Ctx& ctx);
  void Fill_In(const Query_Ctx& ctx);
  void Set_Nothing(std::string_view text);
  void Set_Des_Inf(const Query_Ctx& ctx, const Chart_Node& node);
  void Sav_Nod_Exp();
  void Set_Nod_Exp();
  void Set_Crt_His();

  std::set<std::string, std::less<>> expanded_;  // keys of the rows that were open
};

/// True for the names that count as referenced by themselves (`Chk_NRf_Mem`).
[[nodiscard]] bool Chk_NRf_Mem(std::string_view name);

}  // namespace oru::query
