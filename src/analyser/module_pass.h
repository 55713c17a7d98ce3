// SPDX-License-Identifier: MIT
// The definition pass: reads one module and rebuilds its entry in the tables, looking at no other
// module: its row, members, declared names, names that hold objects, controls, reduced code for the
// reference pass, and compared code.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "analyser/comments.h"
#include "analyser/tables.h"
#include "host/host_app.h"
#include "host/model.h"
#include "service/services.h"

namespace oru::analyser {

/// What the definition pass works with, made once for a run.
struct Mdl_Ctx {
  service::Services& Srv;
  host::VBE& VBInst;
  host::HostApp* App;  ///< may be null
  Tables& Tbl;
  std::string HFl_Nam;  ///< host file name of the project
  std::string Mac_Lst;  ///< " " + each macro bound to a shape + " "
  Anl_Options Options;
  /// Takes a control list that could not be read.
  std::function<void(std::string)> Control_Problem;
  /// Takes a statement that could not be read.
  std::function<void(std::string)> Problem;
  std::int64_t Tot_Lin = 0;  ///< lines read: code, comment and blank
  std::int64_t Cod_Lin = 0;  ///< lines read: code and comment
};

/// Reads a module again (`Get_Mdl_Lop`): its entry is removed and added anew at the end. Throws
/// `Sys_Error` 9999 if a designer that is closed cannot be opened.
void Get_Mdl_Lop(Mdl_Ctx& ctx, host::VBComponent& component);

/// The text that tells whether a module has changed: all its lines without line ends, trimmed.
[[nodiscard]] std::string Get_Mdl_Cod(const host::CodeModule& module);
/// Number of blank lines at the module's end.
[[nodiscard]] int Get_End_Blk(const host::CodeModule& module);

}  // namespace oru::analyser
