// SPDX-License-Identifier: MIT
// Fuzz entry for a macro project. The input is
//   bytes 0 and 1  length of the directory, which follows, unpacked
//   then a byte    length of the stream PROJECT, which follows; the rest is the stream of each module
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "container/byte_reader.h"
#include "require.h"
#include "service/text.h"
#include "workbook/vba_compression.h"
#include "workbook/vba_project.h"

namespace oru::fuzz {

inline void Run_Vba_Project(std::string_view input) {
  using namespace oru::workbook;
  container::Byte_Reader reader(input);
  const std::string_view dir = reader.Bytes(std::min<std::size_t>(reader.U16(), reader.Left()));
  const std::string_view told = reader.Bytes(std::min<std::size_t>(reader.U8(), reader.Left()));
  const std::string_view source = reader.Bytes(reader.Left());
  container::Storage project;
  project.streams = {{"PROJECT", std::string(told)}, {"other", "kept"}};
  container::Storage vba{.name = "VBA", .streams = {}, .storages = {}};
  vba.streams = {{"dir", Compress(dir)}, {"_VBA_PROJECT", "cache"}, {"__SRP_0", "compiled"}};
  for (const Dir_Module& module : Read_Dir(dir).modules)
    if (vba.Find_Stream(module.stream) == nullptr)
      vba.streams.push_back({module.stream, std::string(source)});
  project.storages.push_back(vba);

  const Vba_Project read = Read_Vba(project);
  if (!read.Ok()) return;
  const auto module =
      std::find_if(read.modules.begin(), read.modules.end(),
                   [](const Vba_Module& candidate) { return candidate.error.empty(); });
  if (module == read.modules.end()) return;
  container::Storage changed = project;
  const std::string fresh = module->source + "'\r\n";
  if (!Write_Vba(changed, {{module->name, fresh}}).empty()) {
    Require(Same_But_Sources(project, changed), "what could not be written changes nothing");
    return;
  }
  Require(Same_But_Sources(project, changed), "nothing else is touched");
  const Vba_Project again = Read_Vba(changed);
  Require(again.Ok() && again.modules.size() == read.modules.size(), "it can be read again");
  for (std::size_t i = 0; i < read.modules.size(); ++i) {
    const bool is_changed = service::Equal_No_Case(read.modules[i].name, module->name);
    if (!is_changed)
      Require(again.modules[i].source == read.modules[i].source, "the others keep their source");
    else if (&read.modules[i] == &*module)
      Require(again.modules[i].source == fresh, "the module has its new source");
  }
}

}  // namespace oru::fuzz
