// SPDX-License-Identifier: MIT
#include "service/platform_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <system_error>
#include <utility>

namespace oru::service {

namespace fs = std::filesystem;

namespace {

// 0 or the error number.
int Write_All(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = ::write(descriptor, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return errno;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return 0;
}

// The file behind a chain of symbolic links, which need not exist; nothing for a circle.
std::optional<fs::path> Follow_Links(fs::path path) {
  for (int hops = 0; hops < 40; ++hops) {
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return path;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return std::nullopt;
}

// Makes the rename itself durable. What a file system cannot do here is no failure: the file's
// bytes are on the disk already.
void Flush_Folder(const fs::path& folder) {
  const Handle handle(
      Open_Descriptor(folder.empty() ? fs::path(".") : folder, O_RDONLY | O_DIRECTORY));
  if (handle.Ok()) (void)::fsync(handle.Get());
}

fs::path Folder_Of(const fs::path& target) {
  return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

}  // namespace

bool Handle::Close() {
  if (descriptor_ < 0) return true;
  return ::close(std::exchange(descriptor_, -1)) == 0 || errno == EINTR;
}

int Open_Descriptor(const fs::path& path, int flags, unsigned mode) {
  int descriptor = -1;
  do descriptor = ::open(path.c_str(), flags | O_CLOEXEC, mode);
  while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

int Open_Plain(const fs::path& path, std::uintmax_t& size, std::string& why) {
  // A pipe must not block here.
  const int descriptor = Open_Descriptor(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    why = Reason(errno);
    return -1;
  }
  struct stat state {};
  if (::fstat(descriptor, &state) != 0) {
    why = Reason(errno);
  } else if (S_ISDIR(state.st_mode)) {
    why = Reason(EISDIR);
  } else if (!S_ISREG(state.st_mode)) {
    why = Reason(ENODEV);
  }
  if (!why.empty()) {
    ::close(descriptor);
    return -1;
  }
  size = static_cast<std::uintmax_t>(state.st_size);
  return descriptor;
}

std::ptrdiff_t Read_Some(int descriptor, char* bytes, std::size_t size) {
  ssize_t got = -1;
  do got = ::read(descriptor, bytes, size);
  while (got < 0 && errno == EINTR);
  return got;
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
    case ENODEV:
    case ENXIO:
      return "通常のファイルではありません";
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

Replacement::Replacement(const fs::path& path) : target_(path) {
  if (const int error = Open_For(path); error != 0) Fail(error);
}

int Replacement::Open_For(const fs::path& path) {
  const std::optional<fs::path> target = Follow_Links(path);
  existed_ = true;
  if (!target) return ELOOP;
  target_ = *target;
  struct stat old {};
  existed_ = ::stat(target_.c_str(), &old) == 0;
  if (!existed_) return errno == ENOENT ? Open_New() : errno;
  if (S_ISDIR(old.st_mode)) return EISDIR;
  if (!S_ISREG(old.st_mode)) return ENODEV;
  // A rename would replace a write-protected file too; its protection is respected as if it were
  // written in place.
  if (::faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) return errno;
  mode_ = old.st_mode & 07777;
  owner_ = old.st_uid;
  group_ = old.st_gid;
  return Open_New();
}

Replacement::~Replacement() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!name_.empty() && !renamed_) ::unlink(name_.c_str());
}

int Replacement::Open_New() {
  const unsigned mode = existed_ ? 0600U : 0666U;
  const fs::path folder = Folder_Of(target_);
  // A file without a name leaves nothing behind when the process is killed; it gets one in the last
  // moment. Not every file system can do that.
  if (::access("/proc/self/fd", X_OK) == 0) {
    descriptor_ = Open_Descriptor(folder, O_TMPFILE | O_WRONLY, mode);
    if (descriptor_ >= 0) return 0;
  }
  for (int i = 0; i < 1000; ++i) {
    name_ = folder / fmt::format(".oru-{}-{}.tmp", ::getpid(), i);
    descriptor_ = Open_Descriptor(name_, O_WRONLY | O_CREAT | O_EXCL, mode);
    if (descriptor_ >= 0) return 0;
    if (errno != EEXIST) break;
  }
  name_.clear();  // it belongs to somebody else, if to anybody
  return errno;
}

int Replacement::Give_Name() {
  const std::string link = fmt::format("/proc/self/fd/{}", descriptor_);
  for (int i = 0; i < 1000; ++i) {
    const fs::path name = Folder_Of(target_) / fmt::format(".oru-{}-{}.tmp", ::getpid(), i);
    if (::linkat(AT_FDCWD, link.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      name_ = name;
      return 0;
    }
    if (errno != EEXIST) break;
  }
  return errno;
}

void Replacement::Put(std::string_view bytes) {
  if (!why_.empty()) return;
  if (const int error = Write_All(descriptor_, bytes); error != 0) Fail(error);
}

void Replacement::Commit(const std::function<std::string(const fs::path&)>& may_replace) {
  if (!why_.empty()) return;
  if (existed_) {
    // The owner first: changing it clears some permission bits. It fails for ordinary users, who
    // then own the new file.
    const bool owner_kept = ::fchown(descriptor_, owner_, group_) == 0;
    if (::fchmod(descriptor_, owner_kept ? mode_ : mode_ & 0777U) != 0) return Fail(errno);
  }
  if (::fsync(descriptor_) != 0) return Fail(errno);
  // Network file systems tell of a late write error at closing; they know no files without a name.
  if (!name_.empty() && ::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR)
    return Fail(errno);
  why_ = may_replace ? may_replace(target_) : std::string();
  if (!why_.empty()) return;
  if (name_.empty()) {
    if (const int error = Give_Name(); error != 0) return Fail(error);
  }
  if (::rename(name_.c_str(), target_.c_str()) != 0) return Fail(errno);
  renamed_ = true;
  Flush_Folder(target_.parent_path());
}

}  // namespace oru::service
