// SPDX-License-Identifier: MIT
// Searches over a large project whose tables are current, and the text of a large result.
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "query/frm_search.h"
#include "query/rtf_writer.h"
#include "support.h"

namespace oru::bench {

namespace {

class Searched_Project {
 public:
  explicit Searched_Project(const std::filesystem::path& folder) : project_(folder) {
    analyser::Anl_Ctx ctx = project_.Ctx();
    (void)analyser::Get_Pgm_Inf(ctx, true);
  }
  // One run of a question; the number of its hits.
  int Search(int kind, const std::string& words) {
    form_.FCo = {};
    form_.FCo.Knd = kind;
    form_.FCo.Wrd = words;
    const query::Query_Ctx ctx{project_.services, project_.editor, project_.tables, {}, {}};
    if (!form_.Src_Start_Proc(ctx, 1)) throw std::runtime_error("no run");
    return form_.Cur().Viw.Viw_Hit;
  }
  [[nodiscard]] const Project& Get() const { return project_; }
  // The result's first rows as RTF; its size.
  std::size_t Write(std::size_t rows) {
    query::Search_View& view = form_.Cur().Viw;
    if (view.Row.size() < rows) throw std::runtime_error("too few rows");
    view.Row.resize(rows);
    const query::Result_Text text =
        query::Set_Res_Lin(project_.tables, view, {project_.services.Opt, project_.services.KWd});
    return writer_.Add_RTx_Hed(text.Text).size();
  }

 private:
  Project project_;
  query::Frm_Search form_;
  query::Rtf_Writer writer_;
};

}  // namespace

void Register(const std::filesystem::path& data) {
  const auto project = std::make_shared<Searched_Project>(data / "million");
  const auto search = [project](const char* name, int kind, const char* words) {
    benchmark::RegisterBenchmark(name, [project, kind, words](benchmark::State& state) {
      int hits = 0;
      for (auto _ : state) hits = project->Search(kind, words);
      state.counters["hits"] = hits;
      Set_Work(state, project->Get().Lines(), project->Get().Bytes());
    })->Unit(benchmark::kMillisecond);
  };
  search("search_ascii", query::kSearch_Text, "ClsAddr0090");
  search("search_japanese", query::kSearch_Text, "棚番の書式を整える");
  search("search_unused_variables", query::kSearch_Unused_Variable, "");
  benchmark::RegisterBenchmark("result_rtf", [project](benchmark::State& state) {
    constexpr std::size_t kRows = 20'000;
    (void)project->Search(query::kSearch_Text, "Then");
    for (auto _ : state) benchmark::DoNotOptimize(project->Write(kRows));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kRows));
  })->Unit(benchmark::kMillisecond);
}

}  // namespace oru::bench
