// SPDX-License-Identifier: MIT
#include "service/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "service/text.h"

namespace oru::service {
namespace {

namespace fs = std::filesystem;

// ---- the platform: everything that talks to the system stands in this section ------------------

/// Owns a file descriptor.
class Handle {
 public:
  explicit Handle(int descriptor) : descriptor_(descriptor) {}
  ~Handle() { (void)Close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  [[nodiscard]] bool Ok() const { return descriptor_ >= 0; }
  [[nodiscard]] int Get() const { return descriptor_; }
  /// False if the system tells of a late write error.
  bool Close() {
    if (descriptor_ < 0) return true;
    return ::close(std::exchange(descriptor_, -1)) == 0 || errno == EINTR;
  }

 private:
  int descriptor_;
};

/// Opens, again after an interruption; -1 with errno on failure.
int Open(const fs::path& path, int flags, mode_t mode = 0) {
  int descriptor = -1;
  do descriptor = ::open(path.c_str(), flags | O_CLOEXEC, mode);
  while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

/// Reads to the end of the file, at most one byte more than `limit`; 0 or the error number.
int Read_All(int descriptor, std::uintmax_t size, std::uintmax_t limit, std::string& bytes) {
  constexpr std::size_t step = 1 << 16;
  std::size_t filled = 0;
  bytes.resize(static_cast<std::size_t>(size) + 1);  // one more: the end is seen without growing
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + step);
    const ssize_t got = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    filled += static_cast<std::size_t>(got);
    if (got == 0 || filled > limit) break;
  }
  bytes.resize(filled);
  return 0;
}

/// 0 or the error number.
int Write_All(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = ::write(descriptor, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return errno;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return 0;
}

/// The file behind a chain of symbolic links, which need not exist; nothing for a circle.
std::optional<fs::path> Follow_Links(fs::path path) {
  for (int hops = 0; hops < 40; ++hops) {
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return path;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return std::nullopt;
}

std::string Reason(int error_number) {
  switch (error_number) {
    case ENOENT:
      return "ファイルまたはフォルダがありません";
    case EACCES:
    case EPERM:
      return "アクセスが許可されていません";
    case ENOSPC:
    case EDQUOT:
      return "ディスクの空き容量が足りません";
    case EFBIG:
      return "ファイルの大きさの上限を超えました";
    case EROFS:
      return "読み取り専用の場所です";
    case EISDIR:
      return "フォルダです";
    case ENOTDIR:
      return "パスの途中がフォルダではありません";
    case ELOOP:
      return "シンボリックリンクが循環しています";
    case ENAMETOOLONG:
      return "名前が長すぎます";
    case EIO:
      return "入出力エラーです";
    case EMFILE:
    case ENFILE:
      return "開いているファイルが多すぎます";
    default:
      return fmt::format("エラー番号 {}", error_number);
  }
}

/// A new file beside the target: removed again unless it was renamed over the target.
class Temporary {
 public:
  explicit Temporary(const fs::path& target, mode_t mode) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    for (int i = 0; i < 1000; ++i) {
      path_ = folder / fmt::format(".oru-{}-{}.tmp", ::getpid(), i);
      descriptor_ = Open(path_, O_WRONLY | O_CREAT | O_EXCL, mode);
      if (descriptor_ >= 0 || errno != EEXIST) break;
    }
    error_ = descriptor_ >= 0 ? 0 : errno;
  }
  ~Temporary() {
    if (descriptor_ >= 0 && !renamed_) ::unlink(path_.c_str());
  }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  [[nodiscard]] int Error() const { return error_; }
  [[nodiscard]] int Descriptor() const { return descriptor_; }
  int Rename_To(const fs::path& target) {
    if (::rename(path_.c_str(), target.c_str()) != 0) return errno;
    renamed_ = true;
    return 0;
  }

 private:
  fs::path path_;
  int descriptor_ = -1, error_ = 0;
  bool renamed_ = false;
};

/// Makes the rename itself durable. What a file system cannot do here is no failure: the file's
/// bytes are on the disk already.
void Flush_Folder(const fs::path& folder) {
  const Handle handle(Open(folder.empty() ? fs::path(".") : folder, O_RDONLY | O_DIRECTORY));
  if (handle.Ok()) (void)::fsync(handle.Get());
}

// ---- the rules ---------------------------------------------------------------------------------

File_Result Read_Failure(const fs::path& path, std::string_view reason) {
  return {fmt::format("ファイル「{}」を読めません（{}）。", Path_Text(path), reason)};
}

File_Result Write_Failure(const fs::path& path, std::string_view reason, bool existed) {
  return {fmt::format("ファイル「{}」に書けません（{}）。{}", Path_Text(path), reason,
                      existed ? "元の内容は変わっていません。" : "ファイルは作られていません。")};
}

}  // namespace

Read_Result Read_File(const fs::path& path, std::uintmax_t limit) {
  Read_Result result;
  const auto fail = [&](std::string_view reason) {
    result.bytes.clear();
    result.error = Read_Failure(path, reason).error;
    return std::move(result);
  };
  const Handle file(Open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY));  // a pipe must not block here
  if (!file.Ok()) return fail(errno == ENXIO ? "通常のファイルではありません" : Reason(errno));
  struct stat state {};
  if (::fstat(file.Get(), &state) != 0) return fail(Reason(errno));
  if (S_ISDIR(state.st_mode)) return fail(Reason(EISDIR));
  if (!S_ISREG(state.st_mode)) return fail("通常のファイルではありません");
  const auto size = static_cast<std::uintmax_t>(state.st_size);
  const std::string too_large = fmt::format("大きさの上限 {} バイトを超えています", limit);
  if (size > limit) return fail(too_large);
  const int error = Read_All(file.Get(), size, limit, result.bytes);
  if (error != 0) return fail(Reason(error));
  if (result.bytes.size() > limit) return fail(too_large);
  return result;
}

File_Result Write_File(const fs::path& path, std::string_view bytes,
                       const std::optional<std::string>& expected) {
  const std::optional<fs::path> target = Follow_Links(path);
  if (!target) return Write_Failure(path, Reason(ELOOP), true);
  struct stat old {};
  const bool existed = ::stat(target->c_str(), &old) == 0;
  const auto fail = [&](std::string_view reason) { return Write_Failure(path, reason, existed); };
  if (!existed && errno != ENOENT) return fail(Reason(errno));
  if (existed && S_ISDIR(old.st_mode)) return fail(Reason(EISDIR));
  if (existed && !S_ISREG(old.st_mode)) return fail("通常のファイルではありません");
  // A rename would replace a write-protected file too; its protection is respected as if it were
  // written in place.
  if (existed && ::faccessat(AT_FDCWD, target->c_str(), W_OK, AT_EACCESS) != 0)
    return fail(Reason(errno));

  Temporary temporary(*target, existed ? mode_t{0600} : mode_t{0666});
  Handle file(temporary.Descriptor());
  if (temporary.Error() != 0) return fail(Reason(temporary.Error()));
  if (const int error = Write_All(file.Get(), bytes); error != 0) return fail(Reason(error));
  if (existed) {
    // The owner first: changing it clears some permission bits. It fails for ordinary users, who
    // then own the new file.
    const bool owner_kept = ::fchown(file.Get(), old.st_uid, old.st_gid) == 0;
    const mode_t mode = old.st_mode & (owner_kept ? mode_t{07777} : mode_t{0777});
    if (::fchmod(file.Get(), mode) != 0) return fail(Reason(errno));
  }
  if (::fsync(file.Get()) != 0) return fail(Reason(errno));
  if (!file.Close()) return fail(Reason(errno));

  if (expected) {
    const Read_Result now = Read_File(*target, expected->size());
    if (!now.Ok() || now.bytes != *expected)
      return fail("読み込んだあとに、ほかのプログラムが変更しています");
  }
  if (const int error = temporary.Rename_To(*target); error != 0) return fail(Reason(error));
  Flush_Folder(target->parent_path());
  return {};
}

bool Srv_Chk_Fdr(const fs::path& path) {
  std::error_code error;
  return !path.empty() && fs::is_directory(path, error);
}

bool Srv_Fil_Ctl(const fs::path& source, const fs::path& destination) {
  const Read_Result read = Read_File(source);
  return read.Ok() && Write_File(destination, read.bytes).Ok();
}

bool Srv_RAl_TFl(const fs::path& path, std::string& text) {
  text.clear();
  Read_Result read = Read_File(path);
  if (!read.Ok()) return false;
  text = std::move(read.bytes);
  return true;
}

bool Srv_WAl_TFl(const fs::path& path, std::string_view text) {
  return Write_File(path, text).Ok();
}

std::string Path_Text(const fs::path& path) {
  std::string bytes = path.generic_string();
  if (Is_Utf8(bytes)) return bytes;
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) Append_Code_Point(text, Next_Code_Point(bytes, at));
  return text;
}

}  // namespace oru::service
