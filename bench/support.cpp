// SPDX-License-Identifier: MIT
#include "support.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "provider/project_source.h"

namespace oru::bench {

namespace fs = std::filesystem;

Project::Project(const fs::path& folder) {
  provider::Project_Source read = provider::Read_Project(folder);
  if (!read.Ok()) throw std::runtime_error(read.error);
  project = &provider::Add_To_Editor(editor, read);
}

std::int64_t Project::Lines() const {
  std::int64_t lines = 0;
  for (const auto& component : project->Components())
    lines += component->CodeModule()->CountOfLines();
  return lines;
}

std::int64_t Project::Bytes() const {
  std::int64_t bytes = 0;
  for (const auto& component : project->Components())
    bytes += static_cast<std::int64_t>(component->Text().size());
  return bytes;
}

std::vector<std::pair<fs::path, std::string>> Read_Files(const fs::path& folder) {
  std::vector<std::pair<fs::path, std::string>> files;
  for (const auto& item : fs::directory_iterator(folder)) {
    std::ifstream in(item.path(), std::ios::binary);
    files.emplace_back(item.path(), std::string(std::istreambuf_iterator<char>(in), {}));
  }
  std::sort(files.begin(), files.end());
  return files;
}

void Set_Work(benchmark::State& run, std::int64_t lines, std::int64_t bytes) {
  run.SetItemsProcessed(static_cast<std::int64_t>(run.iterations()) * lines);
  run.SetBytesProcessed(static_cast<std::int64_t>(run.iterations()) * bytes);
}

}  // namespace oru::bench

int main(int argc, char** argv) {
  if (argc < 2 || argv[1][0] == '-') {
    std::fprintf(stderr, "usage: %s DATA_FOLDER [--benchmark_...]\n", argv[0]);
    return 2;
  }
  const std::filesystem::path data = argv[1];
  // The library looks at its own options only.
  std::copy(argv + 2, argv + argc + 1, argv + 1);
  --argc;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  try {
    oru::bench::Register(data);
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
  }
  benchmark::Shutdown();
  return 0;
}
