// SPDX-License-Identifier: MIT
// From the bytes of exported files to text: the code page alone, and with header, layout and
// attribute lines taken out.
#include <algorithm>
#include <memory>

#include "service/codec.h"
#include "support.h"

namespace oru::bench {

namespace {

struct Files {
  std::vector<std::pair<std::filesystem::path, std::string>> list;
  std::shared_ptr<const service::Code_Page> page = service::Code_Page::Open(932);
  std::int64_t lines = 0, bytes = 0;
};

std::shared_ptr<const Files> Load(const std::filesystem::path& folder) {
  auto files = std::make_shared<Files>();
  files->list = Read_Files(folder);
  for (const auto& [path, content] : files->list) {
    files->lines += std::count(content.begin(), content.end(), '\n');
    files->bytes += static_cast<std::int64_t>(content.size());
  }
  return files;
}

}  // namespace

void Register(const std::filesystem::path& data) {
  const auto files = Load(data / "million");
  benchmark::RegisterBenchmark("decode_932", [files](benchmark::State& run) {
    for (auto _ : run)
      for (const auto& [path, content] : files->list)
        benchmark::DoNotOptimize(files->page->Decode(content).text);
    Set_Work(run, files->lines, files->bytes);
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("read_exported", [files](benchmark::State& run) {
    for (auto _ : run) {
      for (const auto& [path, content] : files->list) {
        const auto kind = provider::Kind_Of_Extension(path.extension().string());
        benchmark::DoNotOptimize(
            provider::Read_Exported(content, *kind, path.stem().string(), *files->page).code_hash);
      }
    }
    Set_Work(run, files->lines, files->bytes);
  })->Unit(benchmark::kMillisecond);
}

}  // namespace oru::bench
