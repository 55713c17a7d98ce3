// SPDX-License-Identifier: MIT
// Whole files, read and written. Writing is atomic everywhere: a new file beside the old one,
// flushed to the disk, renamed over it; a failure leaves the old file whole.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace oru::service {

/// Outcome of a file operation: `error` is empty on success, else a Japanese text for the user that
/// says what failed and why, with the file's name.
struct File_Result {
  std::string error;
  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// Words for what went wrong with a file, `reason` in parentheses; of writing also what became of the
/// old content.
[[nodiscard]] File_Result Read_Failure(const std::filesystem::path& path, std::string_view reason);
[[nodiscard]] File_Result Write_Failure(const std::filesystem::path& path, std::string_view reason,
                                        bool existed);
/// The reason where another program was at the file.
constexpr std::string_view kChanged_Meanwhile =
    "読み込んだあとに、ほかのプログラムが変更しています";

struct Read_Result : File_Result {
  std::string bytes;
};

/// Reads a whole file, up to `limit` bytes; a larger one, a folder, a device, or a pipe is an error
/// (and is told without waiting for anybody).
[[nodiscard]] Read_Result Read_File(const std::filesystem::path& path,
                                    std::uintmax_t limit = std::uintmax_t{1} << 30);
/// Replaces the file's bytes atomically, keeping its permissions; follows a symbolic link to the
/// file behind it; respects write protection. If `expected` is given, refuses when the file no
/// longer holds exactly it. A file that does not exist is made.
[[nodiscard]] File_Result Write_File(const std::filesystem::path& path, std::string_view bytes,
                                     const std::optional<std::string>& expected = std::nullopt);

/// Copies a file that cannot be used, and will be written anew, beside itself as NAME.bak, so that
/// nothing of the user's is lost. False if that failed.
bool Keep_Aside(const std::filesystem::path& path);

/// The folder exists; an empty path gives false.
[[nodiscard]] bool Srv_Chk_Fdr(const std::filesystem::path& path);
/// Copies a file's bytes, atomically; false on any failure.
[[nodiscard]] bool Srv_Fil_Ctl(const std::filesystem::path& source,
                               const std::filesystem::path& destination);
/// Reads a text file whole into `text`, which is emptied first; the bytes are taken as they are.
/// False on any failure.
[[nodiscard]] bool Srv_RAl_TFl(const std::filesystem::path& path, std::string& text);
/// Writes a text file whole, the bytes as they are; false on any failure.
[[nodiscard]] bool Srv_WAl_TFl(const std::filesystem::path& path, std::string_view text);

/// A path as UTF-8 for messages and output, with "/" between folders; bytes that are no UTF-8
/// become U+FFFD.
[[nodiscard]] std::string Path_Text(const std::filesystem::path& path);

}  // namespace oru::service
