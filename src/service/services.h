// SPDX-License-Identifier: MIT
// The bundle of services that a session owns and hands down: who answers the user, the clock, the
// data folder and its switches, the logs, the error trace, the settings, and the reserved words.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "service/clock.h"
#include "service/errors.h"
#include "service/keywords.h"
#include "service/logs.h"
#include "service/settings.h"
#include "service/user_interface.h"

namespace oru::service {

/// Switched on by marker files in the program's folder, or by a front end.
struct Switches {
  bool Statistics = false;  ///< "measure.txt": the statistics report is written
  bool Debug = false;       ///< "debug.txt"
  bool Trace = false;       ///< "TRCMARKR": the trace log is written
};

/// Version of the operating system as "major.minor", empty if it is not known.
[[nodiscard]] std::string Os_Version();
/// Looks for the three marker files; an empty folder has none.
[[nodiscard]] Switches Chk_Switches(const std::filesystem::path& program_folder);

/// What the fatal report says of the program and the host.
struct Product_Info {
  std::string Title = "Oru/Excel";  ///< title of messages and reports (`Set_Pro_Nam`)
  std::string Product = "OruExl";   ///< product tag
  std::string Host_Name = "Excel";  ///< host tag word, `ProductName`
  std::string Host_Version;
  std::string Host_Build;
  std::string Os_Version;  ///< "10.0", and behind a blank a service pack if any
  int Major = 0, Minor = 1, Revision = 0;
  int Ide_Version = 6;  ///< messages are formatted for 6 and later
};

struct Services {
  Services(User_Interface& ui, const Clock& clock, std::filesystem::path data_folder);

  User_Interface& Ui;
  const Clock& Clk;
  std::filesystem::path Data_Folder;  ///< may be empty: then nothing is read or written there
  Switches Sw;
  Product_Info Product;
  Settings Opt;
  Keywords KWd;
  Report_Log Reports;
  Trace_Log Trace;
  Error_Trace Errors;
  std::string Prj_Nam;   ///< name of the project in work, for report headings
  bool Anl_Bsy = false;  ///< an analysis is running; the central handler words its text by it
  bool Unl_Req = false;  ///< a fatal fault was told: the front end takes the program down
};

/// The message box in the house style: formats `text` ("|" is a line break; four blanks in front
/// of it, and all blanks and breaks at the end are cut; every line is indented by two), suspends the timers, shows it, and
/// returns the pressed button. `default_button` is 1-based; anything but 1 to 4 means the first.
[[nodiscard]] Answer Srv_Dsp_Msg(Services& services, std::string_view text, Buttons buttons,
                                 int default_button, Icon icon);
/// Opens a file with its associated program; tells the user that there is no report if it is
/// not there.
void Opn_Rel_Fil(Services& services, const std::filesystem::path& path);
/// The formatting alone; `ide_version` below 6 leaves all but the line breaks as it is.
[[nodiscard]] std::string Fmt_Msg_Txt(std::string_view text, int ide_version);

}  // namespace oru::service
