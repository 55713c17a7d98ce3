// SPDX-License-Identifier: MIT
// The one place that talks to the system about files: opening, reading and writing by descriptor,
// and a file that replaces another one atomically. Errors are the system's numbers; `Reason` words
// them. Only this folder's sources use it.
#pragma once

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace oru::service {

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
  bool Close();

 private:
  int descriptor_;
};

/// Opens, again after an interruption; -1 with errno on failure.
[[nodiscard]] int Open_Descriptor(const std::filesystem::path& path, int flags, unsigned mode = 0);
/// Opens a plain file for reading, without waiting for anybody; `why` tells what is wrong where the
/// handle is not good.
[[nodiscard]] int Open_Plain(const std::filesystem::path& path, std::uintmax_t& size,
                             std::string& why);
/// Reads up to `size` bytes; their number, 0 at the end, or -1 with errno.
[[nodiscard]] std::ptrdiff_t Read_Some(int descriptor, char* bytes, std::size_t size);
/// Why the system refused, in Japanese.
[[nodiscard]] std::string Reason(int error_number);

/// The new bytes of a file, written beside it and put in its place by `Commit`, with its
/// permissions; symbolic links are followed, write protection is respected. Goes away without a
/// trace unless committed, where the file system can do so even if the process is killed.
class Replacement {
 public:
  explicit Replacement(const std::filesystem::path& path);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// Empty, or why nothing can be written; later calls do nothing then.
  [[nodiscard]] const std::string& Why() const { return why_; }
  [[nodiscard]] bool Existed() const { return existed_; }
  [[nodiscard]] const std::filesystem::path& Target() const { return target_; }
  void Put(std::string_view bytes);
  /// Flushes, asks `may_replace` (an empty text, or why not) in the last moment, and renames.
  void Commit(const std::function<std::string(const std::filesystem::path& target)>& may_replace);

 private:
  void Fail(int error_number) { why_ = Reason(error_number); }
  int Open_For(const std::filesystem::path& path);
  int Open_New();
  int Give_Name();

  std::filesystem::path target_, name_;  // `name_` is empty while the new file has none
  std::string why_;
  int descriptor_ = -1;
  bool existed_ = false, renamed_ = false;
  unsigned mode_ = 0, owner_ = 0, group_ = 0;  // of the old file
};

}  // namespace oru::service
