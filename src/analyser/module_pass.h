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
  std::function<void(std::string_view module, std::string text)> Control_Problem;
  /// Takes a statement that could not be read.
  std::function<void(std::string_view module, std::string text)> Problem;
  std::int64_t Tot_Lin = 0;  ///< lines read: code, comment and blank
  std::int64_t Cod_Lin = 0;  ///< lines read: code and comment
  std::string RCd_Buffer{};  ///< reduced code is built here and copied once
};

/// Reads a module again (`Get_Mdl_Lop`): its entry is removed and added anew at the end. Throws
/// `Sys_Error` 9999 if a designer that is closed cannot be opened.
void Get_Mdl_Lop(Mdl_Ctx& ctx, host::VBComponent& component);

/// What tells whether a module has changed.
struct Mdl_Code {
  std::string CCd;             ///< all lines without line ends, trimmed
  std::uint64_t Lin_Hash = 0;  ///< of the lengths of all lines but the blank ones at the end
};
/// Reads the module's present code.
[[nodiscard]] Mdl_Code Get_Mdl_Cod(const host::CodeModule& module);

}  // namespace oru::analyser
