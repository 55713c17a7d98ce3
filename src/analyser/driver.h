// SPDX-License-Identifier: MIT
// The analysis driver. Whoever needs the tables calls `Get_Pgm_Inf` first: it finds out how little
// has to be read again, runs the definition pass and the reference pass over those modules, shows
// progress, lets a cancel come in between modules, and writes the statistics and error reports.
// One thread; events run inside the module loops, and a nested call returns at once.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "analyser/kept_lists.h"
#include "analyser/tables.h"
#include "host/host_app.h"
#include "host/model.h"
#include "service/file_store.h"
#include "service/services.h"

namespace oru::analyser {

/// Something of a module that could not be read; the rest was.
struct Anl_Problem {
  std::string Module;
  std::string Text;  ///< begins with the module's name
};

/// State of the driver, for the life of a connection. (`Anl_Bsy` and `Prj_Nam` stand in the
/// services, whose reports need them.)
struct Anl_State {
  bool Anl_Cnl = false;      ///< cancel requested; polled after every module
  std::string Anl_Dat;       ///< stamp of the last change of the tables, "YYMMDDHHMMSS"
  std::string Anl_New;       ///< stamp of the last run that found changes
  bool Anl_Chg = false;      ///< the tables differ from the saved analysis file
  bool Ref_Chg = false;      ///< a module's reference text changed in this run
  bool Edt_Chg = false;      ///< code was edited since the last full comparison
  bool Prj_Chg = false;      ///< the active project changed in this call
  bool Del_Chg = false;      ///< a module disappeared in this call
  bool Fst_Anl = true;       ///< first analysis since `Int_Anl_Res`
  bool Err_Ctl = false;      ///< controls could not be read
  bool Err_Ref = false;      ///< broken references
  bool Err_Oth = false;      ///< reserved
  bool Tbl_Chg = false;      ///< this run changed the tables: views and search results are stale
  std::int64_t Tot_Lin = 0;  ///< lines read in this run: code, comment, blank
  std::int64_t Cod_Lin = 0;  ///< lines read in this run: code and comment
  std::int64_t Anl_Tim = 0;  ///< milliseconds spent in the module and reference loops
  std::int64_t Lin_Sec = 0;  ///< lines per second of the last run
  std::int64_t Cod_Sec = 0;  ///< the same for code and comment lines
  int Mdl_Cnt = 0;           ///< modules read in this run
  std::string Mac_Lst = " ";
  std::string HFl_Nam;
  std::vector<Anl_Problem> Problems;  ///< what this run could not read, for the user
  std::string Lod_Dat;                ///< load baseline: edits from this moment on are new
  std::string Prj_FP;                 ///< path of the project's file; empty: never saved
  bool Fil_Bad = false;               ///< the analysis file was found unusable at the last load
  std::string Fil_Why;                ///< why the analysis file was not taken
  service::File_Mark Fil_Mrk;         ///< the analysis file as it was last read or written
  std::string Com_AFl;                ///< the team's folder; "NF" none, empty not asked yet
  std::int64_t Lod_Tim = -1;          ///< milliseconds of the last load that gave tables; -1 none
  std::int64_t Sav_Tim = -1;          ///< milliseconds of the last save; -1 none
  std::string Edt_Mdl, Edt_Mem;       ///< where the last edit was recorded,
  int Edt_Lin = 0;                    ///< and its line in the member
};

/// Tells when a module was edited, "YYMMDDHHMMSS", where the editor does not see the edits itself.
using Edit_Moment = std::function<std::string(std::string_view module)>;

/// What the driver works with; the session owns all of it.
struct Anl_Ctx {
  service::Services& Srv;
  host::VBE& VBInst;
  host::HostApp* App;  ///< null without a spreadsheet host
  Tables& Tbl;
  Anl_State& Sta;
  Kept_Lists& Lst;
  service::File_Store* Fil = nullptr;  ///< where the analysis file lies; null: none is used
  Edit_Moment Out_Edt = {};            ///< set for a project that is edited outside the editor
};

/// Brings the tables up to date. True when there was anything to analyse; false for a nested call.
/// `keep_hook` false has the mouse hook stopped for the run. A fault unwinds through it with the
/// tables emptied.
bool Get_Pgm_Inf(Anl_Ctx& ctx, bool keep_hook);

/// Empties all tables; with `make_new` also resets the driver's state.
void Int_Anl_Res(Anl_Ctx& ctx, bool make_new);

/// The progress window's cancel button: asks, and on Yes has the running analysis stop.
void Req_Anl_Cnl(Anl_Ctx& ctx);

}  // namespace oru::analyser
