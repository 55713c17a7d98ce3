// SPDX-License-Identifier: MIT
#include "provider/exported_folder.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "provider/lines.h"
#include "service/codec.h"
#include "service/collection.h"
#include "service/files.h"
#include "service/text.h"

namespace oru::provider {
namespace {

namespace fs = std::filesystem;
using service::Path_Text;

struct Found_File {
  fs::path path;
  std::string relative;  ///< the system's own bytes, "/" between folders: the order of the modules
  File_Kind kind = File_Kind::Bas;
};

/// Walks a tree of folders. Real folders come first, links to folders afterwards in byte order, so
/// that a folder that can be reached in two ways is taken by its own path.
class Walk {
 public:
  Walk(fs::path root, std::vector<Problem>& problems)
      : root_(std::move(root)), problems_(problems) {}

  std::vector<Found_File> Find() {
    Enter(root_, "");
    for (Drain(); !links_.empty(); Drain()) {
      const auto link = links_.extract(links_.begin());
      Enter(link.mapped(), link.key());
    }
    std::sort(files_.begin(), files_.end(),
              [](const Found_File& a, const Found_File& b) { return a.relative < b.relative; });
    return std::move(files_);
  }

 private:
  struct Folder {
    fs::path path;
    std::string relative;
  };

  /// Has a folder read, unless it was already under another name.
  void Enter(const fs::path& path, const std::string& relative) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    if (!error && !seen_.insert(real).second) return;
    pending_.push_back({path, relative});
  }

  void Drain() {
    while (!pending_.empty()) {
      const Folder folder = std::move(pending_.back());
      pending_.pop_back();
      std::error_code error;
      fs::directory_iterator entry(folder.path, error);
      for (const fs::directory_iterator end; !error && entry != end; entry.increment(error))
        Look_At(*entry, folder);
      if (error) {
        const std::string shown = folder.relative.empty() ? "." : Path_Text(folder.relative);
        Report(folder.relative,
               fmt::format("フォルダ「{}」を最後まで読めません。アクセス権を確かめてください。",
                           shown));
      }
    }
  }

  void Look_At(const fs::directory_entry& entry, const Folder& folder) {
    const std::string name = entry.path().filename().string();
    const std::string relative = folder.relative.empty() ? name : folder.relative + "/" + name;
    std::error_code error, ignored;
    const fs::file_status status = entry.status(error);
    const bool is_link = entry.is_symlink(ignored);
    if (fs::is_directory(status)) {
      if (!is_link) return Enter(entry.path(), relative);
      if (!Is_Above(entry.path())) {
        links_.emplace(relative, entry.path());
        return;
      }
    }
    const auto kind = Kind_Of_Extension(entry.path().extension().string());
    if (fs::is_directory(status) || error == std::errc::too_many_symbolic_link_levels) {
      Report(
          relative,
          fmt::format(
              "シンボリックリンク「{}」は循環しているため、たどりません。リンク先を直してください。",
              Path_Text(relative)));
    } else if (kind) {
      files_.push_back({entry.path(), relative, *kind});  // what is no file is told when it is read
    }
  }

  /// True if a link leads to a folder that holds the link itself.
  static bool Is_Above(const fs::path& link) {
    std::error_code error;
    const fs::path target = fs::canonical(link, error);
    if (error) return false;
    const fs::path place = fs::canonical(link.parent_path(), error);
    return !error &&
           std::mismatch(target.begin(), target.end(), place.begin(), place.end()).first ==
               target.end();
  }

  void Report(const std::string& relative, std::string message) {
    problems_.push_back({relative.empty() ? "." : Path_Text(relative), std::move(message)});
  }

  fs::path root_;
  std::vector<Problem>& problems_;
  std::vector<Folder> pending_;
  std::map<std::string, fs::path> links_;
  std::set<fs::path> seen_;
  std::vector<Found_File> files_;
};

std::string Encoding_Name(service::Encoding encoding, const service::Code_Page& page) {
  switch (encoding) {
    case service::Encoding::Utf8:
    case service::Encoding::Utf8_Bom:
      return "UTF-8";
    case service::Encoding::Utf16_Le_Bom:
    case service::Encoding::Utf16_Be_Bom:
      return "UTF-16";
    case service::Encoding::Code_Page:
      break;
  }
  return fmt::format("コードページ {}", page.Number());
}

/// Reads the files that were found, one at a time: of a file, only the decoded text stays.
class Loader {
 public:
  Loader(Project_Source& project, const Read_Options& options, const service::Code_Page& page)
      : project_(project), options_(options), page_(page) {}

  void Load(const Found_File& found) {
    const std::string shown = Path_Text(found.relative);
    const auto report = [&](std::string message, Problem::Kind kind = Problem::Kind::Left_Out) {
      project_.problems.push_back({shown, std::move(message), kind});
    };
    service::Read_Result read = service::Read_File(found.path, options_.size_limit);
    if (!read.Ok()) return report(read.error + "このファイルを除いて読み込みました。");

    Module_File file;
    file.path = found.path;
    file.relative = shown;
    file.kind = found.kind;
    file.size = read.bytes.size();
    file.file_hash = Hash_Bytes(read.bytes);
    const std::string stem = Path_Text(found.path.stem());
    Exported_File module = Read_Exported(std::move(read.bytes), found.kind, stem, page_);
    if (!module.is_text)
      return report(fmt::format(
          "「{}」は NUL 文字を含みテキストではないため、除いて読み込みました。エクスポートしたファイルか確かめてください。",
          shown));
    const std::string& name = module.component.name;
    if (name.empty())
      return report(fmt::format(
          "「{}」のモジュール名が空のため、除いて読み込みました。VB_Name を付けてください。",
          shown));
    const std::string folded = service::To_Lower(name);
    if (const auto first = names_.find(folded); first != names_.end())
      return report(
          fmt::format(
              "「{}」のモジュール名「{}」は「{}」と同じため、除いて読み込みました。どちらかの名前を変えてください。",
              shown, name, project_.files[first->second].relative),
          Problem::Kind::Twice);
    if (module.name_changed)
      report(
          fmt::format(
              "「{}」のモジュール名は空か、使えない文字を含むため、「{}」として読み込みました。VB_Name を直してください。",
              shown, name),
          Problem::Kind::Note);
    if (module.bad_bytes > 0)
      report(
          fmt::format(
              "「{}」に {} として読めないバイトが {} 個あり、「\uFFFD」に置き換えました（最初は {} 行目）。正しいコードページを指定してください。",
              shown, Encoding_Name(module.encoding, page_), module.bad_bytes,
              module.first_bad_line),
          Problem::Kind::Note);
    if (module.design) Add_Design(found, *module.design, module.component);
    names_.emplace(folded, project_.files.size());
    file.name = name;
    file.code_hash = module.code_hash;
    project_.files.push_back(std::move(file));
    project_.components.push_back(std::move(module.component));
  }

 private:
  // The controls of a form, from the file beside it. Without that file the form has none.
  void Add_Design(const Found_File& found, const Frx_Place& place,
                  host::Component_Data& component) {
    const fs::path path = found.path.parent_path() / fs::path(place.file);
    std::error_code error;
    if (!fs::exists(path, error)) return;
    const service::Read_Result read = service::Read_File(path, options_.size_limit);
    auto design = read.Ok() ? Read_Frx(read.bytes, place.offset) : std::nullopt;
    const std::string shown =
        Path_Text(fs::path(found.relative).parent_path() / fs::path(place.file));
    if (!design) {
      project_.problems.push_back(
          {shown,
           fmt::format(
               "「{}」からフォームのコントロールを読めません。エクスポートし直してください。",
               shown)});
      return;
    }
    for (const std::string& problem : design->problems)
      project_.problems.push_back({shown, fmt::format("「{}」の{}", shown, problem)});
    if (!design->controls.empty()) component.controls = std::move(design->controls);
  }

  Project_Source& project_;
  const Read_Options& options_;
  const service::Code_Page& page_;
  service::Text_Map<std::size_t> names_;  ///< module names in lower case, to the file's index
};

}  // namespace

Project_Source Read_Exported_Files(const fs::path& path, std::string_view shown,
                                   const Read_Options& options) {
  Project_Source project;
  const auto page = service::Code_Page::Open(options.code_page);
  if (!page) {
    project.error =
        fmt::format("コードページ {} は使えません。932、1252、65001 などを指定してください。",
                    options.code_page);
    return project;
  }
  std::error_code error;
  const bool single = !fs::is_directory(path, error);
  project.host_file = Path_Text(path);
  project.name = service::Without_Controls(Path_Text(single ? path.stem() : path.filename()));
  std::vector<Found_File> found;
  if (single)
    found.push_back({path, path.filename().string(),
                     Kind_Of_Extension(path.extension().string()).value_or(File_Kind::Bas)});
  else
    found = Walk(path, project.problems).Find();
  Loader loader(project, options, *page);
  for (const Found_File& file : found) loader.Load(file);
  std::stable_sort(project.problems.begin(), project.problems.end(),
                   [](const Problem& a, const Problem& b) { return a.path < b.path; });
  if (!project.files.empty()) return project;

  const std::string why = project.problems.empty() ? "" : project.problems.front().message;
  project.error = fmt::format(
      "「{}」に読み込めるモジュール（.bas、.cls、.frm、.doccls）がありません。{}", shown, why);
  return project;
}

}  // namespace oru::provider
