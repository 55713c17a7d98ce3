// SPDX-License-Identifier: MIT
#include "app/session.h"

#include <cstdlib>
#include <utility>

#include "host/derived.h"
#include "service/files.h"

namespace oru::app {

namespace fs = std::filesystem;

Session::Session(service::User_Interface& ui, const service::Clock& clock,
                 const Session_Options& options)
    : Srv(ui, clock, options.Data_Folder), options_(options) {
  Srv.Sw = service::Chk_Switches(options.Program_Folder);
  if (options.Data_Folder.empty()) return;
  // A missing or unusable record leaves the defaults; so does a missing list of words.
  (void)service::Lod_SysInf(Srv.Opt, options.Data_Folder);
  (void)service::Lod_KWd(Srv.KWd, options.Data_Folder);
}

std::string Session::Open(const fs::path& project) {
  provider::Exported_Project read =
      provider::Read_Project(project, {.code_page = options_.Code_Page});
  if (!read.Ok()) return read.error;
  Project_Path = service::Path_Text(project);
  Problems = std::move(read.problems);
  Files = std::move(read.files);
  host::Memory_Project& opened = VBInst.Add_Project(read.name, read.host_file);
  for (host::Component_Data& component : read.components)
    opened.Add_Component(std::move(component));
  return {};
}

std::string Session::File_Of(std::string_view module) const {
  for (const provider::Module_File& file : Files)
    if (file.name == module) return file.relative;
  return {};
}

bool Session::Analyse() {
  if (host::Chk_Protect(VBInst, Srv, true)) return false;
  analyser::Anl_Ctx ctx{Srv, VBInst, nullptr, Tbl, Sta, Lst};
  const bool ran = service::Run_Evt(Srv, "Mod_Anl", "Get_Pgm_Inf",
                                    [&] { (void)analyser::Get_Pgm_Inf(ctx, true); });
  return ran && !Tbl.Mdl_Tbl.Empty();
}

fs::path Default_Data_Folder() {
  if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/')
    return fs::path(data) / "oru";
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
    return fs::path(home) / ".local" / "share" / "oru";
  return {};
}

}  // namespace oru::app
