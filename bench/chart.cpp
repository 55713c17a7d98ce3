// SPDX-License-Identifier: MIT
// Trees of calls: a graph shown in full up to the limit of rows, in both directions, and a graph of
// cycles and exponential paths, which only the limits end.
#include <fmt/format.h>
#include <sys/resource.h>

#include <filesystem>
#include <memory>
#include <string>

#include "query/frm_chart.h"
#include "support.h"

namespace oru::bench {

namespace {

// A project of modules that were written here.
class Made_Project {
 public:
  Made_Project() : project_(editor_.Add_Project("P", "P.xlsm")) {}
  void Add(const std::string& name, std::string text) {
    (void)project_.Add_Component({.name = name, .text = std::move(text)});
  }
  void Analyse() {
    analyser::Anl_Ctx ctx{services_, editor_, nullptr, tables_, state_, lists_};
    (void)analyser::Get_Pgm_Inf(ctx, true);
  }
  std::size_t Show(int mode, const char* member) {
    query::Frm_Chart chart;
    chart.Cond.Crt_Cmp = false;
    (void)chart.Show({services_, editor_, tables_, {}, {}}, mode, "Root", member);
    return chart.Nodes.size();
  }

 private:
  Silent_User ui_;
  service::System_Clock clock_;
  service::Services services_{ui_, clock_, {}};
  host::Memory_Editor editor_;
  host::Memory_Project& project_;
  analyser::Tables tables_;
  analyser::Anl_State state_;
  analyser::Kept_Lists lists_;
};

constexpr int kHubs = 141, kLeaves = 140;  // 19,881 procedures below the root

// A root that calls hubs, each of which calls leaves of its own; the leaves call one sink.
std::shared_ptr<Made_Project> Wide() {
  auto project = std::make_shared<Made_Project>();
  std::string root = "Sub Main()\n";
  for (int hub = 0; hub < kHubs; ++hub) {
    root += fmt::format("Hub{}\n", hub);
    std::string text = fmt::format("Sub Hub{}()\n", hub);
    std::string leaves;
    for (int leaf = 0; leaf < kLeaves; ++leaf) {
      text += fmt::format("Leaf{}_{}\n", hub, leaf);
      leaves += fmt::format("Sub Leaf{}_{}()\nSinkOfAll\nEnd Sub\n", hub, leaf);
    }
    project->Add(fmt::format("Hub{}Mod", hub), text + "End Sub\n" + leaves);
  }
  project->Add("Root", root + "End Sub\nSub SinkOfAll()\nEnd Sub\n");
  project->Analyse();
  return project;
}

// Two procedures a level, each of which calls both of the next one and the first of all.
std::shared_ptr<Made_Project> Steep() {
  constexpr int kLevels = 60;
  auto project = std::make_shared<Made_Project>();
  std::string text;
  for (int level = 0; level < kLevels; ++level)
    for (const char side : {'L', 'R'})
      text += fmt::format("Sub {}{:02}()\nL{:02}\nR{:02}\nL00\nEnd Sub\n", side, level, level + 1,
                          level + 1);
  project->Add("Root", text + fmt::format("Sub L{0}()\nEnd Sub\nSub R{0}()\nEnd Sub\n", kLevels));
  project->Analyse();
  return project;
}

double Peak_Bytes() {
  rusage usage{};
  (void)getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024;
}

}  // namespace

void Register(const std::filesystem::path& /*data*/) {
  const auto show = [](const char* name, const std::shared_ptr<Made_Project>& project, int mode,
                       const char* member) {
    benchmark::RegisterBenchmark(name, [project, mode, member](benchmark::State& state) {
      std::size_t rows = 0;
      for (auto _ : state) rows = project->Show(mode, member);
      state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * rows));
      state.counters["rows"] = static_cast<double>(rows);
      state.counters["peak"] = Peak_Bytes();
    })->Unit(benchmark::kMillisecond);
  };
  const auto steep = Steep();
  show("chart_limits", steep, query::kCallees, "L00");
  const auto wide = Wide();
  show("chart_callees", wide, query::kCallees, "Main");
  show("chart_callers", wide, query::kCallers, "SinkOfAll");
}

}  // namespace oru::bench
