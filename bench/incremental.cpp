// SPDX-License-Identifier: MIT
// A run after an edit in one module of 1,000, and what it is made of: the comparison of all modules'
// texts, which an edit always costs, and the rest, which has to stay a small part of a full run.
#include <memory>

#include "analyser/change_check.h"
#include "analyser/module_pass.h"
#include "support.h"

namespace oru::bench {

namespace {

void Analyse(Project& p) {
  analyser::Anl_Ctx ctx = p.Ctx();
  benchmark::DoNotOptimize(analyser::Get_Pgm_Inf(ctx, true));
}

// Changes a statement of one procedure: a different module each time, so that none is special.
class Editor_At_Work {
 public:
  void Edit(Project& p) {
    const auto& components = p.project->Components();
    next_ = (next_ + 331) % components.size();
    host::CodeModule& code = *components[next_]->CodeModule();
    const int line = code.CountOfDeclarationLines() + 1;
    const std::string name = code.ProcOfLine(line).name;
    const int body = name.empty() ? 1 : code.ProcBodyLine(name, code.ProcOfLine(line).kind) + 1;
    code.InsertLines(body, "lngCount = lngCount + 1");
    p.state.Edt_Chg = true;
  }

 private:
  std::size_t next_ = 0;
};

}  // namespace

void Register(const std::filesystem::path& data) {
  const auto project = std::make_shared<Project>(data / "million");
  benchmark::RegisterBenchmark("full_run", [project](benchmark::State& run) {
    for (auto _ : run) {
      run.PauseTiming();
      analyser::Anl_Ctx ctx = project->Ctx();
      analyser::Int_Anl_Res(ctx, true);
      run.ResumeTiming();
      Analyse(*project);
    }
    Set_Work(run, project->Lines(), project->Bytes());
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("one_module_changed", [project](benchmark::State& run) {
    Editor_At_Work editor;
    Analyse(*project);
    for (auto _ : run) {
      run.PauseTiming();
      editor.Edit(*project);
      run.ResumeTiming();
      Analyse(*project);
    }
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("no_module_changed", [project](benchmark::State& run) {
    Analyse(*project);
    for (auto _ : run) {
      project->state.Edt_Chg = true;
      Analyse(*project);
    }
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("nothing_edited", [project](benchmark::State& run) {
    Analyse(*project);
    for (auto _ : run) Analyse(*project);
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("text_comparison", [project](benchmark::State& run) {
    Analyse(*project);
    for (auto _ : run) {
      for (const auto& component : project->project->Components()) {
        const auto* entry = project->tables.Mdl_Tbl.Get(component->Name());
        benchmark::DoNotOptimize(analyser::Get_Mdl_Cod(*component->CodeModule()).CCd ==
                                 (*entry)->CCd);
      }
    }
  })->Unit(benchmark::kMillisecond);
}

}  // namespace oru::bench
