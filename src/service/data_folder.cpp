// SPDX-License-Identifier: MIT
#include "service/data_folder.h"

#include <array>
#include <cstdlib>
#include <system_error>

#include "service/files.h"

namespace oru::service {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kMaker = "Velmo";
constexpr std::string_view kNo_Maker = "データ管理用フォルダ（組織）を作成できません。";
constexpr std::string_view kNo_Program = "データ管理用フォルダ（プログラム）を作成できません。";

struct Data_File {
  std::string_view name, failure;
};
constexpr std::array kFiles{
    Data_File{"DA-Sta.VMO", "定型文管理ファイルを作成できません。"},
    Data_File{"DA-KWd.txt", "キーワード管理ファイルを作成できません。"},
    Data_File{"DA-LPt.txt", "フォント間隔補正値ファイルを作成できません。"},
    Data_File{"標準書式.doc", "仕様書テンプレートファイルを作成できません。"},
};

fs::path Utf8_Path(std::string_view text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

bool Make_Folder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  return Srv_Chk_Fdr(folder);
}

// What is missing is told with its place: "cannot be made" alone helps nobody.
bool Fail(Services& services, std::string_view text, const fs::path& place) {
  const std::string shown = place.empty() ? "（場所が決まりません）" : Path_Text(place);
  (void)Srv_Dsp_Msg(services, std::string(text) + "    |" + shown, Buttons::Ok, 1, Icon::Stop);
  return false;
}

}  // namespace

fs::path Default_Data_Folder(std::string_view product) {
  fs::path base;
#ifdef _WIN32
  if (const wchar_t* data = _wgetenv(L"APPDATA"); data != nullptr) base = data;
#else
  if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/') {
    base = data;
  } else if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
    base = fs::path(home) / ".local" / "share";
  }
#endif
  return base.empty() ? base : base / kMaker / Utf8_Path(product);
}

fs::path Template_Folder(const fs::path& program_folder) {
  std::error_code error;
  const fs::path shared = program_folder.parent_path() / "share" / "oru";
  const bool beside = fs::exists(program_folder / Utf8_Path(kFiles.front().name), error);
  return beside || !Srv_Chk_Fdr(shared) ? program_folder : shared;
}

bool Chk_Ctl_Fdr(Services& services, const fs::path& template_folder) {
  const fs::path& folder = services.Data_Folder;
  if (folder.empty() || !Make_Folder(folder.parent_path()))
    return Fail(services, kNo_Maker, folder.parent_path());
  if (!Make_Folder(folder)) return Fail(services, kNo_Program, folder);
  for (const Data_File& file : kFiles) {
    const fs::path path = folder / Utf8_Path(file.name);
    std::error_code error;
    if (fs::exists(path, error)) continue;
    if (error || !Srv_Fil_Ctl(template_folder / Utf8_Path(file.name), path))
      return Fail(services, file.failure, path);
  }
  return true;
}

}  // namespace oru::service
