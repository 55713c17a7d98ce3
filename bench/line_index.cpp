// SPDX-License-Identifier: MIT
// The numbered lines of one module of 100,000 lines, and which procedure a line belongs to. The
// figures with edits show whether an answer costs the same between edits as without them, wherever
// the edits are.
#include <memory>
#include <random>

#include "support.h"

namespace oru::bench {

namespace {

struct Large_Module {
  explicit Large_Module(const std::filesystem::path& folder)
      : project(folder),
        component(*project.project->Components().front()),
        code(*component.CodeModule()),
        text(component.Text()) {}
  Project project;
  host::Memory_Component& component;
  host::CodeModule& code;
  std::string text;
};

void Set_Lines(benchmark::State& run, std::int64_t lines) {
  run.SetItemsProcessed(static_cast<std::int64_t>(run.iterations()) * lines);
}

// The line is written as it stands: the index does not know that, and the module stays the same.
void Edit(host::CodeModule& code, int line) {
  code.ReplaceLine(line, code.Lines(line, 1));
}

}  // namespace

void Register(const std::filesystem::path& data) {
  const auto large = std::make_shared<Large_Module>(data / "one-module");
  benchmark::RegisterBenchmark("load_lines", [large](benchmark::State& run) {
    for (auto _ : run) large->component.Load_Text(large->text);
    Set_Work(run, large->code.CountOfLines(), static_cast<std::int64_t>(large->text.size()));
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("procedure_of_every_line", [large](benchmark::State& run) {
    const int count = large->code.CountOfLines();
    for (auto _ : run)
      for (int line = 1; line <= count; ++line)
        benchmark::DoNotOptimize(large->code.ProcOfLine(line));
    Set_Lines(run, count);
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("procedure_of_every_line_between_edits", [large](
                                                                            benchmark::State& run) {
    const int count = large->code.CountOfLines();
    for (auto _ : run) {
      for (int line = 1; line <= count; ++line) {
        Edit(large->code, line);
        benchmark::DoNotOptimize(large->code.ProcOfLine(line));
      }
    }
    Set_Lines(run, count);
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("procedure_of_line_between_random_edits", [large](benchmark::State&
                                                                                     run) {
    constexpr int kEdits = 10'000;
    std::mt19937 random(1);
    std::uniform_int_distribution<int> any(1, large->code.CountOfLines());
    for (auto _ : run) {
      for (int i = 0; i < kEdits; ++i) {
        Edit(large->code, any(random));
        benchmark::DoNotOptimize(large->code.ProcOfLine(any(random)));
      }
    }
    Set_Lines(run, kEdits);
  })->Unit(benchmark::kMillisecond);
}

}  // namespace oru::bench
