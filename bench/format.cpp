// SPDX-License-Identifier: MIT
// Every procedure of a large project formatted in memory, one change each; all indents were taken
// off before.
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/derived.h"
#include "service/text.h"
#include "support.h"
#include "transform/rev_indent.h"

namespace oru::bench {

namespace {

std::string Without_Indents(std::string_view text) {
  std::string flat;
  flat.reserve(text.size());
  for (const std::string_view line : service::Split(text, "\r\n"))
    flat.append(service::Trim_Left(line)).append("\r\n");
  return flat;
}

class Flat_Project {
 public:
  explicit Flat_Project(const std::filesystem::path& folder) : project_(folder) {
    for (const auto& component : project_.project->Components())
      texts_.push_back(Without_Indents(component->Text()));
  }
  void Reset() {
    for (std::size_t i = 0; i < texts_.size(); ++i)
      project_.project->Components()[i]->Load_Text(texts_[i]);
  }
  // The number of procedures that were changed.
  int Format() {
    const transform::Transform_Ctx ctx{project_.services, project_.editor, project_.tables};
    int changed = 0;
    for (const auto& component : project_.project->Components()) {
      host::CodeModule& code = *component->CodeModule();
      const std::string name = component->Name();
      for (host::Member_Place& place : host::Get_Procedures(code)) {
        const host::Change_Result result =
            transform::Format_Procedure(ctx, {code, name, std::move(place)});
        if (!result.Ok()) throw std::runtime_error(result.Error);
        changed += result.Changed ? 1 : 0;
      }
    }
    return changed;
  }
  [[nodiscard]] const Project& Get() const { return project_; }

 private:
  Project project_;
  std::vector<std::string> texts_;
};

}  // namespace

void Register(const std::filesystem::path& data) {
  const auto project = std::make_shared<Flat_Project>(data / "million");
  benchmark::RegisterBenchmark("format_all", [project](benchmark::State& state) {
    int changed = 0;
    for (auto _ : state) {
      state.PauseTiming();
      project->Reset();
      state.ResumeTiming();
      changed = project->Format();
    }
    state.counters["changed"] = changed;
    Set_Work(state, project->Get().Lines(), project->Get().Bytes());
  })->Unit(benchmark::kMillisecond);
}

}  // namespace oru::bench
