// SPDX-License-Identifier: MIT
// The control structure of a procedure as a view without a window: a front end sets `FCo`, calls a
// routine, and shows `Cur().Text`. Up to 31 views keep what they showed. It reads the live code; the
// tables give the calls and the comments.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "query/control_rows.h"
#include "query/query_context.h"
#include "query/result_text.h"

namespace oru::query {

constexpr int kControl_Views = 31;

struct Control_Slot {
  std::string Mdl, Mem;  ///< what is shown; empty: nothing yet
  std::string Tim;       ///< when, "YYMMDDHHMMSS"
  Control_Cond Cond;
  std::vector<Control_Row> Rows;
  Result_Text Text;  ///< with the place of each row
};

/// A view that shows a procedure, for the history.
struct Control_History {
  int Slot = 0;
  std::string Mdl, Mem, Time;
};

struct Frm_Control {
  Control_Cond FCo;  ///< the conditions as the window shows them
  std::array<Control_Slot, kControl_Views> Slots;
  int Ctl_Cur = 0;
  bool Absolute_Lines = false;  ///< line numbers are those of the module

  [[nodiscard]] Control_Slot& Cur() { return Slots[static_cast<std::size_t>(Ctl_Cur)]; }

  /// Takes what is shown at first from the options.
  void Lod_State(const service::Settings& settings);
  /// Shows the procedure under the caret (`Dsp_Start_Proc`); what is selected there is the element by
  /// which rows are chosen. False, with a hint in the pane, if the
  /// caret is in none.
  bool Dsp_Start_Proc(const Query_Ctx& ctx);
  /// Shows a member; "%Declare" is the declaration section. False if there is no such member.
  bool Dsp_Member(const Query_Ctx& ctx, std::string_view module, std::string_view member);

  /// A condition was changed: shows the member again, if the options want that.
  void Cond_Changed(const Query_Ctx& ctx);

  /// The row that shows a line of the module, or the last one before it (`Syn_Dsp_Pos`), as its
  /// place in the text, 0-based characters; nothing if there is none.
  [[nodiscard]] std::optional<service::Chr_Count> Syn_Dsp_Pos(int line);
  /// Moves the caret to the row at a place of the text. False if there is none.
  [[nodiscard]] bool FRt_Result_Click(const Query_Ctx& ctx, service::Chr_Count place);

  /// The views in use, newest first.
  [[nodiscard]] std::vector<Control_History> Dsp_Hst_Viw() const;
  [[nodiscard]] bool Chg_Res_Viw(int slot);
  void Clr_Res_Viw(int slot);
  /// Makes the next free view current, or the oldest of those that the options keep.
  void Set_Res_Viw(const Query_Ctx& ctx);
};

}  // namespace oru::query
