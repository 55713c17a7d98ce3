// SPDX-License-Identifier: MIT
// The analysis of a project between two runs: one text file beside the project, "NAME.VMH", so that
// opening it again costs a comparison of texts and not an analysis. It is the only store of
// analysis results; the lists of `Kept_Lists` travel in it. It is written whole or not at all, and
// read whole or not at all. docs/formats.md tells the layout and where the file lies.
#pragma once

#include <string>

#include "analyser/driver.h"
#include "analyser/progress.h"

namespace oru::analyser {

/// Where the analysis file of a project lies, and with which file this run works: another one where
/// it lies on a network share.
struct Anl_Paths {
  std::string Upd_FP;   ///< `MSI_UpdFP`: the file; empty: the project has none
  std::string Upd_WP;   ///< `my_UpdWP`: the file that is read and written
  bool Remote = false;  ///< the two differ
};
/// `option` is the user's choice: empty, a file, or a folder (which exists, or ends in a separator).
/// `project` is the path of the project's file.
[[nodiscard]] Anl_Paths Get_Anl_Paths(service::File_Store& files, const std::string& option,
                                      const std::string& project, const std::string& prj_nam,
                                      const std::string& data_folder);
/// True for a path in a folder of the system or of the host, where nothing is saved.
[[nodiscard]] bool Is_System_Path(std::string_view path);

/// Writes tables and lists, if they differ from the file. False if they should have been written
/// and were not; the user has been told then, and the old file is untouched.
bool Sav_UpdInf(Anl_Ctx& ctx);

/// Reads tables and lists of the project that `Sta` names in place of those held; empty ones, and
/// `Sta.Fil_Bad`, if the file is damaged or of another version. Takes the load baseline.
void Lod_UpdInf(Anl_Ctx& ctx, Anl_Progress& progress);

/// `Ctl_Com_AFl`: exchanges the analysis file with the folder that a team shares, named in the first
/// line of "CommonAFL.txt" in the data folder. Mode 'G' takes the shared copy if it is newer, any
/// other mode gives the own one if that is newer.
void Ctl_Com_AFl(Anl_Ctx& ctx, const Anl_Paths& paths, char mode);

}  // namespace oru::analyser
