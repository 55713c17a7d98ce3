// SPDX-License-Identifier: MIT
#include "service/files.h"

#include <fmt/format.h>

#include <utility>

#include "service/platform_file.h"
#include "service/text.h"

namespace oru::service {
namespace {

namespace fs = std::filesystem;

/// Reads to the end of the file, at most one byte more than `limit`; 0 or the error number.
int Read_All(int descriptor, std::uintmax_t size, std::uintmax_t limit, std::string& bytes) {
  constexpr std::size_t step = 1 << 16;
  std::size_t filled = 0;
  bytes.resize(static_cast<std::size_t>(size) + 1);  // one more: the end is seen without growing
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + step);
    const std::ptrdiff_t got = Read_Some(descriptor, bytes.data() + filled, bytes.size() - filled);
    if (got < 0) return errno;
    filled += static_cast<std::size_t>(got);
    if (got == 0 || filled > limit) break;
  }
  bytes.resize(filled);
  return 0;
}

}  // namespace

File_Result Read_Failure(const fs::path& path, std::string_view reason) {
  return {fmt::format("ファイル「{}」を読めません（{}）。", Path_Text(path), reason)};
}

File_Result Write_Failure(const fs::path& path, std::string_view reason, bool existed) {
  return {fmt::format("ファイル「{}」に書けません（{}）。{}", Path_Text(path), reason,
                      existed ? "元の内容は変わっていません。" : "ファイルは作られていません。")};
}

Read_Result Read_File(const fs::path& path, std::uintmax_t limit) {
  Read_Result result;
  const auto fail = [&](std::string_view reason) {
    result.bytes.clear();
    result.error = Read_Failure(path, reason).error;
    return std::move(result);
  };
  std::uintmax_t size = 0;
  std::string why;
  const Handle file(Open_Plain(path, size, why));
  if (!file.Ok()) return fail(why);
  const std::string too_large = fmt::format("大きさの上限 {} バイトを超えています", limit);
  if (size > limit) return fail(too_large);
  const int error = Read_All(file.Get(), size, limit, result.bytes);
  if (error != 0) return fail(Reason(error));
  if (result.bytes.size() > limit) return fail(too_large);
  return result;
}

File_Result Write_File(const fs::path& path, std::string_view bytes,
                       const std::optional<std::string>& expected) {
  Replacement file(path);
  file.Put(bytes);
  file.Commit([&](const fs::path& target) -> std::string {
    if (!expected) return {};
    const Read_Result now = Read_File(target, expected->size());
    return now.Ok() && now.bytes == *expected ? "" : std::string(kChanged_Meanwhile);
  });
  if (!file.Why().empty()) return Write_Failure(path, file.Why(), file.Existed());
  return {};
}

bool Keep_Aside(const fs::path& path) {
  fs::path aside = path;
  aside += ".bak";
  return Srv_Fil_Ctl(path, aside);
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
