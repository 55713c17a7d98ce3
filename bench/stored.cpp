// SPDX-License-Identifier: MIT
// The analysis file of a large project: a start that finds nothing changed, and what it is made of;
// saving; and the full run that the file saves.
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "analyser/analysis_file.h"
#include "support.h"

namespace oru::bench {

namespace {

// The project's analysis file lies beside the others, not in the folder of the modules.
class Stored_Project {
 public:
  explicit Stored_Project(const std::filesystem::path& folder) : project_(folder) {
    const std::filesystem::path file = folder.parent_path() / (folder.filename().string() + ".VMH");
    std::filesystem::remove(file);
    project_.project->Set_FileName(file.string());
  }
  // A start: nothing is known of the project but what the file tells.
  void Start(bool stored) {
    project_.services.Prj_Nam.clear();
    project_.state = {};
    analyser::Anl_Ctx ctx = Ctx(stored);
    (void)analyser::Get_Pgm_Inf(ctx, true);
    if (stored && project_.state.Mdl_Cnt != 0) throw std::runtime_error("modules were read again");
  }
  void Empty() {
    analyser::Anl_Ctx ctx = Ctx(false);
    analyser::Int_Anl_Res(ctx, true);
  }
  void Load() {
    analyser::Anl_Ctx ctx = Ctx(true);
    analyser::Anl_Progress progress(project_.services);
    analyser::Lod_UpdInf(ctx, progress);
    if (project_.tables.Mdl_Tbl.Empty()) throw std::runtime_error(project_.state.Fil_Why);
  }
  void Save() {
    analyser::Anl_Ctx ctx = Ctx(true);
    project_.state.Anl_Chg = true;
    if (!analyser::Sav_UpdInf(ctx)) throw std::runtime_error("not saved");
  }
  [[nodiscard]] const Project& Get() const { return project_; }

 private:
  analyser::Anl_Ctx Ctx(bool stored) {
    analyser::Anl_Ctx ctx = project_.Ctx();
    if (stored) ctx.Fil = &disk_;
    return ctx;
  }
  Project project_;
  service::Disk_Store disk_;
};

}  // namespace

void Register(const std::filesystem::path& data) {
  const auto project = std::make_shared<Stored_Project>(data / "million");
  project->Start(false);
  project->Save();
  const auto run = [project](const char* name, auto work) {
    benchmark::RegisterBenchmark(name, [project, work](benchmark::State& state) {
      for (auto _ : state) {
        state.PauseTiming();
        project->Empty();
        state.ResumeTiming();
        work(*project);
      }
      Set_Work(state, project->Get().Lines(), project->Get().Bytes());
    })->Unit(benchmark::kMillisecond);
  };
  run("start_analysed", [](Stored_Project& p) { p.Start(false); });
  run("start_stored", [](Stored_Project& p) { p.Start(true); });
  run("load_file", [](Stored_Project& p) { p.Load(); });
  benchmark::RegisterBenchmark("save_file", [project](benchmark::State& state) {
    project->Start(true);
    for (auto _ : state) project->Save();
    Set_Work(state, project->Get().Lines(), project->Get().Bytes());
  })->Unit(benchmark::kMillisecond);
}

}  // namespace oru::bench
