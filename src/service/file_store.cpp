// SPDX-License-Identifier: MIT
#include "service/file_store.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <ctime>
#include <filesystem>
#include <system_error>
#include <utility>

#include "service/platform_file.h"

namespace oru::service {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 18;  // stays in the cache of the processor

fs::path To_Path(const std::string& text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

class Disk_File final : public New_File {
 public:
  Disk_File(Disk_Store& store, std::string path)
      : store_(store), path_(std::move(path)), file_(To_Path(path_)) {}

  void Put(std::string_view bytes) override { file_.Put(bytes); }
  [[nodiscard]] Outcome Commit(const std::optional<File_Mark>& expected) override {
    Outcome outcome;
    file_.Commit([&](const fs::path&) -> std::string {
      if (!expected) return {};
      const auto now = store_.Look(path_);
      outcome.changed = (now ? now->mark : File_Mark()) != *expected;
      return outcome.changed ? std::string(kChanged_Meanwhile) : std::string();
    });
    if (!file_.Why().empty()) {
      outcome.error = Write_Failure(To_Path(path_), file_.Why(), file_.Existed()).error;
    } else if (const auto now = store_.Look(path_)) {
      outcome.mark = now->mark;
    }
    return outcome;
  }

 private:
  Disk_Store& store_;
  std::string path_;
  Replacement file_;
};

Date_Time Local_Time(std::time_t time) {
  std::tm local{};
  localtime_r(&time, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
}

}  // namespace

std::optional<File_Store::Seen> Disk_Store::Look(const std::string& path) {
  struct stat state {};
  if (::stat(To_Path(path).c_str(), &state) != 0 || !S_ISREG(state.st_mode)) return std::nullopt;
  return Seen{Local_Time(state.st_mtim.tv_sec), static_cast<std::uint64_t>(state.st_size),
              fmt::format("{} {} {} {}.{}", state.st_dev, state.st_ino, state.st_size,
                          state.st_mtim.tv_sec, state.st_mtim.tv_nsec)};
}

File_Result Disk_Store::Read(const std::string& path,
                             const std::function<bool(std::string_view)>& take) {
  std::uintmax_t size = 0;
  std::string why;
  const Handle file(Open_Plain(To_Path(path), size, why));
  if (!file.Ok()) return Read_Failure(To_Path(path), why);
  const auto block = std::make_unique<char[]>(kBlock);
  for (;;) {
    const std::ptrdiff_t got = Read_Some(file.Get(), block.get(), kBlock);
    if (got < 0) return Read_Failure(To_Path(path), Reason(errno));
    if (got == 0 || !take({block.get(), static_cast<std::size_t>(got)})) return {};
  }
}

std::unique_ptr<New_File> Disk_Store::Create(const std::string& path) {
  return std::make_unique<Disk_File>(*this, path);
}

bool Disk_Store::CopyFile(const std::string& from, const std::string& to) {
  if (!Srv_Fil_Ctl(To_Path(from), To_Path(to))) return false;
  std::error_code error;
  const auto date = fs::last_write_time(To_Path(from), error);
  if (!error) fs::last_write_time(To_Path(to), date, error);
  return !error;
}

bool Disk_Store::DeleteFile(const std::string& path) {
  std::error_code error;
  return fs::remove(To_Path(path), error);
}

bool Disk_Store::Folder_Exists(const std::string& path) {
  return Srv_Chk_Fdr(To_Path(path));
}

}  // namespace oru::service
