// SPDX-License-Identifier: MIT
// What a transform works with, and what it works on. It reads the code of this moment from the
// editor, the tables where it needs to know procedures, and writes through one routine here.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "analyser/tables.h"
#include "host/code_change.h"
#include "host/derived.h"
#include "host/model.h"
#include "service/services.h"

namespace oru::transform {

struct Transform_Ctx {
  service::Services& Srv;
  host::VBE& VBInst;
  const analyser::Tables& Tbl;
  /// Told of each module whose code a transform changed.
  std::function<void(std::string_view module)> Note_Edit = {};
  /// Takes the place of the caret's procedure into the system's state again (`Set_Sif_Inf`).
  std::function<void()> Set_Sif_Inf = {};
  /// Renews the control-structure view if it shows this procedure.
  std::function<void(std::string_view module, std::string_view member)> Renew_Control = {};
};

/// A procedure where it stands now.
struct Procedure {
  host::CodeModule& Code;
  std::string Mdl;
  host::Member_Place Mem;
};

/// The procedure of the caret; nothing without a code pane, and in the declaration section.
[[nodiscard]] std::optional<Procedure> Get_Cur_Prc(const Transform_Ctx& ctx);
/// A procedure by its name; nothing if it is gone.
[[nodiscard]] std::optional<Procedure> Get_Prc(const Transform_Ctx& ctx, std::string_view module,
                                               std::string_view member);

/// The last line of the procedure's header statement, in the module: the first line from its
/// header on that does not end in "_", blanks behind it aside.
[[nodiscard]] int Header_End(const host::CodeModule& code, const host::Member_Place& place);

/// `host::Do_Change` on a module, told to `Note_Edit` if it changed something.
[[nodiscard]] host::Change_Result Write(const Transform_Ctx& ctx, host::CodeModule& code,
                                        std::string_view module,
                                        std::span<const host::Line_Change> changes,
                                        host::Keeps keeps);

}  // namespace oru::transform
