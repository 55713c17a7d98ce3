// SPDX-License-Identifier: MIT
// Line-number labels, "12: x = 1", by which an error handler tells the line with `Erl`: set into a
// procedure and taken out again, after which it has its old bytes but for blanks at the end of a
// line. The number is the line's place in the procedure, counted from its first comment line.
// Labels that a jump of the procedure needs are never changed, nor doubled.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/code_change.h"
#include "transform/transform_ctx.h"

namespace oru::transform {

enum class Label_Mode : std::uint8_t { Set = 1, Remove = 2 };

/// A line that gets another text.
struct New_Line {
  std::size_t Line = 0;  ///< index into the lines given
  std::string Text;
};

/// The lines of a procedure that get a label or another one. `lines` begin with its first line
/// (`ProcStartLine`); `header` is the index of its header line. With `skip_const` a `Const` gets none.
[[nodiscard]] std::vector<New_Line> Set_Labels(std::span<const std::string> lines,
                                               std::size_t header, bool skip_const);

/// Whether a procedure that asks for the number of the line (`Erl`) keeps all of them.
enum class If_Erl : std::uint8_t { Remove, Keep };
/// The lines that lose their label; `lines` may begin with any line up to the header.
[[nodiscard]] std::vector<New_Line> Cut_Labels(std::span<const std::string> lines,
                                               std::size_t header, If_Erl if_erl);

/// Sets or removes the labels of the caret's procedure. Nothing happens in the declaration section,
/// and while no code is being edited, which the user is told.
[[nodiscard]] host::Change_Result Set_LNo_Key(const Transform_Ctx& ctx, Label_Mode mode);

/// The same for any procedure; `Const` statements get no label here.
[[nodiscard]] host::Change_Result Set_LNo_Lop(const Transform_Ctx& ctx, const Procedure& procedure,
                                              Label_Mode mode);

/// The view that numbers many procedures: a front end fills it and calls `Set_LinNo`.
struct Frm_LinNo {
  struct Chosen {
    std::string Mdl, Mem;
  };
  struct Result {
    int Changed = 0;                  ///< procedures
    std::vector<std::string> Errors;  ///< of those that were refused and are as before
  };

  std::vector<Chosen> Prc;
  Label_Mode Mode = Label_Mode::Set;

  /// Takes all chosen procedures, with a progress display; one that is refused does not keep the
  /// others from being done.
  [[nodiscard]] Result Set_LinNo(const Transform_Ctx& ctx) const;
};

}  // namespace oru::transform
