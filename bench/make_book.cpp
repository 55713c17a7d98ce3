// SPDX-License-Identifier: MIT
// Puts a generated project into a workbook, compressed as the host does it, so that both can be
// measured against each other:  make_book FOLDER BOOK
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "provider/module_text.h"
#include "service/files.h"
#include "support/book_maker.h"
#include "workbook/vba_compression.h"

namespace {

namespace fs = std::filesystem;
using namespace oru;

void Make_Book(const fs::path& folder, const fs::path& book) {
  const auto page = service::Code_Page::Open(932);
  test::Made_Project project;
  project.code_page = 932;
  std::vector<std::string> sources;
  std::set<fs::path> files;  // in the order of their names
  for (const auto& entry : fs::directory_iterator(folder)) files.insert(entry.path());
  for (const fs::path& path : files) {
    const std::string bytes = service::Read_File(path).bytes;
    const std::string name = path.stem().string();
    const std::string extension = path.extension().string();
    const bool sheet = name.starts_with("Sheet");
    project.modules.push_back({.name = name,
                               .key = extension == ".bas" ? "Module"
                                      : sheet             ? "Document"
                                                          : "Class"});
    provider::Imported_Source source =
        provider::To_Source(bytes, "Attribute VB_Name = \"" + name + "\"\r\n", *page);
    if (!source.error.empty()) throw std::runtime_error(source.error);
    sources.push_back(std::move(source.bytes));
  }
  container::Storage storage = project.Storage();
  container::Storage& vba = *storage.Find_Storage("VBA");
  for (std::size_t i = 0; i < sources.size(); ++i)
    vba.Find_Stream(project.modules[i].name)->bytes = workbook::Compress(sources[i]);
  const std::string bytes = test::Make_Xlsm(storage);
  std::ofstream out(book, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) throw std::runtime_error("cannot write " + book.string());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_book FOLDER BOOK\n");
    return 2;
  }
  try {
    Make_Book(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_book: %s\n", error.what());
    return 1;
  }
  return 0;
}
