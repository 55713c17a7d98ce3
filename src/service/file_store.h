// SPDX-License-Identifier: MIT
// Files as the analysis file needs them: read and written in blocks, copied, deleted, dated. An
// interface, so that network shares, failing disks and other programs at work on the same file can
// be played; `Disk_Store` is the machine's own disk.
// Paths are texts; folders are divided by "\" or "/".
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "service/clock.h"
#include "service/files.h"

namespace oru::service {

/// What tells whether a file is still the one that was seen: compared, never interpreted. Empty for
/// a file that is not there.
using File_Mark = std::string;

/// A file being written. It takes the place of an old one only when `Commit` says so; without that
/// nothing is left of it.
class New_File {
 public:
  virtual ~New_File() = default;
  /// Adds bytes at the end, without a buffer. A failure is remembered and told by `Commit`.
  virtual void Put(std::string_view bytes) = 0;
  /// Flushes the bytes to the disk and puts the file in its place, whole or not at all. Refuses,
  /// with `changed` set, if `expected` is given and the file in that place is another one now.
  struct Outcome : File_Result {
    bool changed = false;
    File_Mark mark;  ///< of the new file
  };
  [[nodiscard]] virtual Outcome Commit(const std::optional<File_Mark>& expected) = 0;
};

class File_Store {
 public:
  virtual ~File_Store() = default;
  struct Seen {
    Date_Time date;  ///< of the last change, local time
    std::uint64_t size = 0;
    File_Mark mark;
  };
  /// What is known of a file without opening it; nothing if it is not there or no plain file.
  [[nodiscard]] virtual std::optional<Seen> Look(const std::string& path) = 0;
  /// Gives the bytes block by block until `take` returns false or the file ends.
  [[nodiscard]] virtual File_Result Read(
      const std::string& path, const std::function<bool(std::string_view block)>& take) = 0;
  [[nodiscard]] virtual std::unique_ptr<New_File> Create(const std::string& path) = 0;
  /// Copies with the date of the last change, atomically; false on any failure.
  [[nodiscard]] virtual bool CopyFile(const std::string& from, const std::string& to) = 0;
  /// False if there was nothing to delete, or it could not be deleted.
  virtual bool DeleteFile(const std::string& path) = 0;
  [[nodiscard]] virtual bool Folder_Exists(const std::string& path) = 0;
};

class Disk_Store final : public File_Store {
 public:
  [[nodiscard]] std::optional<Seen> Look(const std::string& path) override;
  [[nodiscard]] File_Result Read(const std::string& path,
                                 const std::function<bool(std::string_view block)>& take) override;
  [[nodiscard]] std::unique_ptr<New_File> Create(const std::string& path) override;
  [[nodiscard]] bool CopyFile(const std::string& from, const std::string& to) override;
  bool DeleteFile(const std::string& path) override;
  [[nodiscard]] bool Folder_Exists(const std::string& path) override;
};

}  // namespace oru::service
