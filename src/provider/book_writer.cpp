// SPDX-License-Identifier: MIT
#include "provider/book_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "service/files.h"
#include "service/text.h"
#include "workbook/book.h"

namespace oru::provider {

namespace fs = std::filesystem;

namespace {

constexpr int kMost_Backups = 99;

bool Is_Changed(const std::vector<workbook::Changed_Module>& changed, std::string_view name) {
  return std::any_of(changed.begin(), changed.end(),
                     [&](const auto& change) { return service::Equal_No_Case(change.name, name); });
}

// What a reader of the new file would find different, beside what was meant to be.
std::string Difference(const workbook::Book& was, const workbook::Book& now,
                       const std::vector<workbook::Changed_Module>& changed) {
  const workbook::Vba_Project old = workbook::Read_Vba(was.Project());
  const workbook::Vba_Project fresh = workbook::Read_Vba(now.Project());
  if (!fresh.Ok()) return fresh.error;
  if (old.modules.size() != fresh.modules.size()) return "モジュールの数が変わります。";
  for (std::size_t i = 0; i < old.modules.size(); ++i) {
    const workbook::Vba_Module &before = old.modules[i], &after = fresh.modules[i];
    const auto change =
        std::find_if(changed.begin(), changed.end(), [&](const workbook::Changed_Module& c) {
          return service::Equal_No_Case(c.name, before.name);
        });
    const std::string& wanted = change == changed.end() ? before.source : change->source;
    if (before.error.empty() && !after.error.empty()) return after.error;
    if (before.name != after.name || before.type != after.type || before.error != after.error ||
        after.source != wanted)
      return fmt::format("モジュール「{}」が別の内容になります。", before.name);
  }
  return now.Same_Elsewhere(was) ? std::string() : "マクロ以外の部分が変わります。";
}

// A name beside the file that is not taken; empty if there is none.
fs::path Backup_Of(const fs::path& path) {
  for (int i = 1; i <= kMost_Backups; ++i) {
    fs::path backup = path;
    backup += i == 1 ? ".oru-bak" : fmt::format(".oru-bak{}", i);
    std::error_code error;
    if (fs::symlink_status(backup, error).type() == fs::file_type::not_found) return backup;
  }
  return {};
}

}  // namespace

// The host puts a file of this name beside each workbook that it has open.
bool Is_Open_In_Host(const fs::path& path) {
  std::error_code error;
  const auto marked = [&](const fs::path& file) {
    return fs::exists(file.parent_path() / ("~$" + file.filename().string()), error);
  };
  const fs::path real = fs::canonical(path, error);
  return marked(path) || (!error && marked(real));
}

Rewritten_Book Rewrite_Book(const std::string& bytes,
                            const std::vector<workbook::Changed_Module>& changed,
                            std::string_view shown, const Book_Write_Options& options) {
  const auto refuse = [&](std::string_view why) {
    return Rewritten_Book{fmt::format("「{}」には書き込みません。{}", shown, why), {}};
  };
  workbook::Book was;
  if (const std::string error = was.Open(bytes); !error.empty()) return refuse(error);
  const workbook::Vba_Project vba = workbook::Read_Vba(was.Project());
  if (!vba.Ok()) return refuse(vba.error);
  if (vba.locked)
    return refuse(
        "プロジェクトが保護されています。エディターで保護を解除してから実行してください。");
  if (was.Is_Signed() && !options.signed_too)
    return refuse(
        "マクロに署名があり、書き込むと署名が無効になります。承知のうえで書き込むときは --signed を指定してください。");
  for (const workbook::Vba_Module& module : vba.modules)
    if (!module.error.empty() && Is_Changed(changed, module.name)) return refuse(module.error);
  workbook::Book::Rewritten now = was.With_Sources(changed);
  if (!now.error.empty()) return refuse(now.error);
  workbook::Book again;
  if (const std::string error = again.Open(now.bytes); !error.empty()) return refuse(error);
  if (const std::string difference = Difference(was, again, changed); !difference.empty())
    return refuse("書き込むと、" + difference);
  return {{}, std::move(now.bytes)};
}

Written_Book Write_Book(const fs::path& path, const std::string& expected,
                        const std::vector<workbook::Changed_Module>& changed,
                        std::string_view shown, const Book_Write_Options& options) {
  if (Is_Open_In_Host(path))
    return {
        fmt::format("「{}」は開かれています（「~${}」があります）。閉じてから実行してください。",
                    shown, service::Path_Text(path.filename())),
        {}};
  Rewritten_Book now = Rewrite_Book(expected, changed, shown, options);
  if (!now.error.empty()) return {std::move(now.error), {}};
  const fs::path backup = Backup_Of(path);
  if (backup.empty() || !service::Srv_Fil_Ctl(path, backup))
    return {
        fmt::format(
            "「{}」の控えを作れないため、書き込みません。フォルダの空き容量とアクセス権を確かめてください。",
            shown),
        {}};
  std::error_code ignored;
  const service::File_Result put = service::Write_File(path, now.bytes, expected);
  if (!put.Ok()) {
    fs::remove(backup, ignored);
    return {put.error, {}};
  }
  const service::Read_Result read = service::Read_File(path);
  if (!read.Ok() || read.bytes != now.bytes)
    return {fmt::format(
                "「{}」に書き込んだ内容を読み戻せません。書き込む前のブックは「{}」にあります。",
                shown, service::Path_Text(backup)),
            {}};
  fs::remove(backup, ignored);
  return {{}, std::move(now.bytes)};
}

}  // namespace oru::provider
