// SPDX-License-Identifier: MIT
#include "app/cli/edit_output.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "app/cli/cli.h"
#include "provider/lines.h"
#include "provider/undo_record.h"
#include "provider/writer.h"
#include "service/files.h"

namespace oru::app {

namespace {

// The bytes of each file that holds one of the modules, by the file's relative path.
std::map<std::string, std::string> Bytes_Of(const Work& work,
                                            const std::set<std::string>& modules) {
  std::map<std::string, std::string> bytes;
  for (const provider::Module_File& file : work.project.Files) {
    if (!modules.contains(file.name) || bytes.contains(file.relative)) continue;
    service::Read_Result read = service::Read_File(file.path);
    if (read.Ok()) bytes.emplace(file.relative, std::move(read.bytes));
  }
  return bytes;
}

void Put_Back(const Work& work, const Output& output,
              const std::vector<provider::Undo_File>& record,
              const std::map<std::string, std::string>& now) {
  for (const provider::Undo_File& file : record)
    for (const provider::Module_File& known : work.project.Files)
      if (known.relative == file.relative) {
        const service::File_Result put =
            service::Write_File(known.path, file.old_bytes, now.at(file.relative));
        if (!put.Ok()) Tell(output.err, put.error);
        break;
      }
}

}  // namespace

Edits_Written Write_Edits(const Work& work, const Output& output, std::string_view what,
                          bool signed_too) {
  auto* project = dynamic_cast<host::Memory_Project*>(work.session.VBInst->ActiveVBProject());
  if (project == nullptr) return {kExit_Output};
  std::set<std::string> modules;
  for (const auto& component : project->Components())
    if (component->Is_Edited()) modules.insert(component->Name());
  const auto before = Bytes_Of(work, modules);
  provider::Writer writer(work.project.Files, work.project.Code_Page, {.signed_too = signed_too});
  const std::vector<provider::Problem> problems = writer.Write_Edited(*project);
  for (const provider::Problem& problem : problems) Tell(output.err, problem.message);
  std::vector<provider::Undo_File> record;
  const auto after = Bytes_Of(work, modules);
  for (const auto& [relative, now] : after) {
    const auto was = before.find(relative);
    if (was != before.end() && was->second != now)
      record.push_back({relative, was->second, provider::Hash_Bytes(now), now.size()});
  }
  const int exit = problems.empty() ? kExit_Ok : kExit_Output;
  if (record.empty()) return {exit};
  if (const std::string error = provider::Save_Undo(work.project.Host_File, record);
      !error.empty()) {
    // What could not be taken back later is taken back now.
    Tell(output.err,
         fmt::format("{}取り消すための記録を残せないため、{}を取りやめます。", error, what));
    Put_Back(work, output, record, after);
    return {kExit_Output};
  }
  return {exit, record.size()};
}

}  // namespace oru::app
