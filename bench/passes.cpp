// SPDX-License-Identifier: MIT
// The two passes of the analysis by themselves, over modules that are in the editor already.
#include <memory>

#include "analyser/module_pass.h"
#include "analyser/references.h"
#include "host/derived.h"
#include "support.h"

namespace oru::bench {

namespace {

void Read_Definitions(Project& p) {
  analyser::Mdl_Ctx pass{p.services,
                         p.editor,
                         nullptr,
                         p.tables,
                         p.state.HFl_Nam,
                         " ",
                         analyser::Anl_Options(p.services.Opt),
                         [](std::string_view, const std::string&) {},
                         [](std::string_view, const std::string&) {}};
  for (const auto& component : p.project->Components()) analyser::Get_Mdl_Lop(pass, *component);
}

// The tables as they are before the definition pass: all modules known by name, none read.
void Name_Modules(Project& p) {
  analyser::Anl_Ctx ctx = p.Ctx();
  analyser::Int_Anl_Res(ctx, true);
  for (const auto& component : p.project->Components()) {
    service::Add_Col_Itm(p.tables.Prj_Mdl, component->Name(), std::string("*"));
    service::Add_Col_Itm(p.tables.Anl_Mdl, component->Name(), std::string());
  }
}

void Read_References(Project& p) {
  const analyser::Ref_Ctx pass{p.services, p.tables, [](std::string_view, const std::string&) {}};
  benchmark::DoNotOptimize(analyser::Get_Ref_Man(
      pass, [] { return true; }, [](std::string_view) { return true; }));
}

}  // namespace

void Register(const std::filesystem::path& data) {
  const auto project = std::make_shared<Project>(data / "million");
  benchmark::RegisterBenchmark("definition_pass", [project](benchmark::State& run) {
    for (auto _ : run) {
      run.PauseTiming();
      Name_Modules(*project);
      run.ResumeTiming();
      Read_Definitions(*project);
    }
    Set_Work(run, project->Lines(), project->Bytes());
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("reference_pass", [project](benchmark::State& run) {
    for (auto _ : run) {
      run.PauseTiming();
      Name_Modules(*project);
      Read_Definitions(*project);
      run.ResumeTiming();
      Read_References(*project);
    }
    Set_Work(run, project->Lines(), project->Bytes());
  })->Unit(benchmark::kMillisecond);
}

}  // namespace oru::bench
