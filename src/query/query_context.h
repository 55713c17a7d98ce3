// SPDX-License-Identifier: MIT
// What a query works with. Queries only read the tables; `Get_Pgm_Inf` brings them up to date where
// a query needs the code of this moment, as after a replacement.
#pragma once

#include <functional>

#include "analyser/tables.h"
#include "host/model.h"
#include "service/services.h"

namespace oru::query {

struct Query_Ctx {
  service::Services& Srv;
  host::VBE& VBInst;
  const analyser::Tables& Tbl;
  std::function<void()> Get_Pgm_Inf = {};  ///< none set: the tables are current already
  /// Told of each module whose code a query changed.
  std::function<void(std::string_view module)> Note_Edit = {};
};

}  // namespace oru::query
