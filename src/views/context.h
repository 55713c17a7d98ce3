// SPDX-License-Identifier: MIT
// What a view works with. Views only read: the tables are brought up to date by the caller
// (`analyser::Get_Pgm_Inf`) before a view's `Get_Inform`, and are not changed while it runs.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "analyser/tables.h"
#include "host/model.h"
#include "service/services.h"

namespace oru::views {

/// Gives the update string of a key: the moment of change as "YYMMDDHHMMSS", the line of the change
/// in five digits, the key's text; an empty text if the key has no entry. The key of a module is
/// its name, that of a procedure is procedure name, ".", module name.
using Upd_Lookup = std::function<std::string(std::string_view key)>;

struct View_Ctx {
  service::Services& Srv;
  host::VBE& VBInst;
  const analyser::Tables& Tbl;
  Upd_Lookup Prc_Upd_Inf = {};  ///< none set: nothing was ever changed
  /// The moment at which the analysis was loaded, "YYMMDDHHMMSS".
  std::string Lod_Dat = {};
};

}  // namespace oru::views
