// SPDX-License-Identifier: MIT
// The search as a view without a window: a front end sets the conditions in `FCo`, calls a routine,
// and shows `Cur().Text` or walks `Cur().Viw.Row`. Up to 31 views keep their question and result.
// The caller runs each routine as one event: faults (a pattern that does not end, the depth of With)
// leave through it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "query/query_context.h"
#include "query/result_text.h"
#include "query/search_replace.h"
#include "query/search_view.h"

namespace oru::query {

/// Shown beside a result whose code was changed since.
constexpr std::string_view kChanged_Since =
    "検索結果表示後にコードが変更されました。以降、正確なコード位置を表示できないことがあります。";

struct Search_Slot {
  Search_View Viw;
  Result_Text Text;  ///< `Viw_Rtf`
};

/// A place in a result: a module or a procedure with the first of its rows.
struct Result_Place {
  std::string Mdl, Mem;        ///< `Mem` empty for a module
  std::string Caption;         ///< as shown in the index
  service::Chr_Count Begin{};  ///< in the text, 0-based characters
};

/// A view that holds a result, for the history.
struct History_Row {
  int Slot = 0;
  std::string Kind, Words, Time;  ///< `Time` as "YYMMDDHHMMSS"
  int Hits = 0;
};

/// The text of a question that is cut into these words again: a "|" in a word becomes "%|", and
/// where a word holds a blank, "|" stands between them.
[[nodiscard]] std::string Join_Words(const std::vector<std::string>& words);

struct Frm_Search {
  Search_Cond FCo;                               ///< the conditions as the window shows them
  std::array<Search_Slot, kSearch_Views> Slots;  ///< by view number
  int Viw_Cur = 0;
  bool Absolute_Lines = false;   ///< line numbers are those of the module
  std::string Asr_Mdl, Asr_Mem;  ///< owner of the word that was taken from the code window
  std::string Chk_One;           ///< the one-character word for which the user was asked already

  [[nodiscard]] Search_Slot& Cur() { return Slots[static_cast<std::size_t>(Viw_Cur)]; }

  /// Asks for the default scope of a kind that was chosen, and drops what it has no condition for.
  void FCx_Object_Click(const Query_Ctx& ctx, int code);
  /// A condition was changed: asks again, silently, if the options want that.
  void Cond_Changed(const Query_Ctx& ctx);
  /// Validates the question and runs it in the current view. `ag_Msg` 1: started by the user, who is
  /// told what is missing. False if there was no run.
  bool Src_Start_Proc(const Query_Ctx& ctx, int ag_Msg);

  /// Takes the word that is selected in the code window, or the one under the caret, as the question
  /// (the automatic search as a command of its own), and runs it. False if there is no word.
  bool Get_Inform(const Query_Ctx& ctx);

  /// The replacement of the words of the current result. The outcome says what was done and what
  /// could not be; `Frm_Replace`'s checks come first.
  Replace_Result Rep_Word(const Query_Ctx& ctx, const std::vector<std::string>& rep_wds);
  /// Takes the last replacement back.
  Replace_Result Rdo_Word(const Query_Ctx& ctx);

  /// Opens the code at the row that holds a place of the text. `kChanged_Since` if the line is no
  /// longer what was found; empty if it is; nothing if there is no row, or its member is gone.
  [[nodiscard]] std::optional<std::string_view> FRt_Result_Click(const Query_Ctx& ctx,
                                                                 service::Chr_Count place);
  /// The drop-down index of the current view.
  [[nodiscard]] std::vector<Result_Place> Dsp_DDL_Viw();
  /// The views with a result, newest first.
  [[nodiscard]] std::vector<History_Row> Dsp_Hst_Viw() const;
  /// Shows another view; its question becomes that of the window. False for a number that is none.
  [[nodiscard]] bool Chg_Res_Viw(int slot);
  /// Empties a view.
  void Clr_Res_Viw(int slot);
  /// Makes the next view current that is free, or the oldest one of those that the options keep.
  void Set_Res_Viw(const Query_Ctx& ctx);

 private:
  [[nodiscard]] bool Take_Words(const Query_Ctx& ctx, Search_View& view, int ag_Msg);
  [[nodiscard]] bool Take_Target(const Query_Ctx& ctx, Search_View& view);
  void Src_Main(const Query_Ctx& ctx, const service::Pattern* pattern, bool again);
  void Stop(const Query_Ctx& ctx);
  Replace_Result After_Replacing(const Query_Ctx& ctx, Replace_Result done, bool undone);

  bool busy_ = false;
  Undo_List Rdo_Lst;  ///< of the last replacement
};

}  // namespace oru::query
