// SPDX-License-Identifier: MIT
// Trace statements: one line behind the header of each chosen procedure, known by the marker at its
// end, set or taken out again. And the table of what the traced runs wrote down.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "transform/transform_ctx.h"

namespace oru::transform {

constexpr std::string_view kTrace_Marker = "%%TraceLine";
/// Characters of a statement that count; the window's field holds no more.
constexpr std::int64_t kMost_Statement = 100;

enum class Trace_Mode : std::uint8_t { Set = 1, Remove = 2 };

/// The view: a front end fills it and calls `FBt_Start_Click`.
struct Frm_Trace {
  struct Chosen {
    std::string Mdl, Mem;
  };
  struct Result {
    int Changed = 0;  ///< procedures
    /// Empty on success. What the guard refuses is written in no module; where the host itself
    /// refuses one, those before it are written.
    std::string Error;
  };

  std::string Sta;  ///< the statement; "%MN" and "%PN" stand for module and procedure
  bool Pub_Onl = false;
  bool Sub = true, Fnc = true, Prp = true;
  bool Own = false;  ///< leave out the procedures that run on each message
  std::vector<Chosen> Prc;

  /// Takes the options (`TrcSta` and the others), and puts them back.
  void Lod_State(const service::Settings& settings);
  void Sav_State(service::Settings& settings) const;

  /// Checks what was chosen, tells what is missing, and runs `Set_Trace`, whose error it tells. True
  /// if that ran to its end.
  [[nodiscard]] bool FBt_Start_Click(const Transform_Ctx& ctx, Trace_Mode mode) const;
  /// Sets or removes the trace lines of the chosen procedures, with a progress display. All modules
  /// are checked before the first one is written.
  [[nodiscard]] Result Set_Trace(const Transform_Ctx& ctx, Trace_Mode mode) const;

  /// Puts the table of a statistics file's text into the clipboard, by a routine that may fail, and
  /// tells that it is there, or that the text is none.
  static void FMn_CpyIf_Click(const Transform_Ctx& ctx, std::string_view text,
                              const std::function<bool(const std::string&)>& set_clipboard);

 private:
  struct Plan;
  void Set_Tra_Mdl(const Transform_Ctx& ctx, Trace_Mode mode, std::string_view module,
                   Plan& plan) const;
  void Set_Tra_Mem(Trace_Mode mode, const Procedure& procedure, Plan& plan) const;
  [[nodiscard]] bool Is_Chosen(const Transform_Ctx& ctx, Trace_Mode mode,
                               const Procedure& procedure) const;
};

/// A statistics file's text as TAB-separated text, with the comment of each procedure as a third
/// column; lines end with CR LF. Empty for a text of another kind. Further columns are copied as they
/// stand, but for control characters, which become blanks.
[[nodiscard]] std::string Trace_Statistics(const analyser::Tables& tables, std::string_view text);
constexpr std::string_view kNo_Statistics = "実行統計ファイルの構成が不正です。    ";

}  // namespace oru::transform
