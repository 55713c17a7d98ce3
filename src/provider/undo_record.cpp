// SPDX-License-Identifier: MIT
#include "provider/undo_record.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "provider/book_writer.h"
#include "provider/lines.h"
#include "service/files.h"
#include "service/text.h"

namespace oru::provider {

namespace fs = std::filesystem;
using nlohmann::json;
using service::Path_Text;

namespace {

constexpr int kVersion = 1;

// The file of the project with that name.
const Module_File* File_Of(const Project_Source& project, std::string_view relative) {
  const auto at = std::find_if(project.files.begin(), project.files.end(),
                               [&](const Module_File& file) { return file.relative == relative; });
  return at == project.files.end() ? nullptr : &*at;
}

}  // namespace

fs::path Undo_Path(std::string_view host_file) {
  const fs::path path{std::string(host_file)};
  std::error_code error;
  const fs::path folder = fs::is_directory(path, error) ? path : path.parent_path();
  const fs::path name = fs::is_directory(path, error) ? path.filename() : path.stem();
  return folder / fs::path(name.string() + ".oru-undo");
}

std::string Pack_Undo(const std::vector<Undo_File>& files) {
  json list = json::array();
  for (const Undo_File& file : files)
    list.push_back({{"file", file.relative},
                    {"old", json::binary({file.old_bytes.begin(), file.old_bytes.end()})},
                    {"hash", file.new_hash},
                    {"size", file.new_size}});
  std::string bytes;
  json::to_cbor(json{{"oru-undo", kVersion}, {"files", std::move(list)}}, bytes);
  return bytes;
}

std::optional<std::vector<Undo_File>> Unpack_Undo(std::string_view bytes) {
  json record;
  try {
    record = json::from_cbor(bytes.begin(), bytes.end(), true, false);
  } catch (const json::exception&) {
    return std::nullopt;  // absurd counts are thrown all the same
  }
  if (!record.is_object() || !record.contains("oru-undo") || record["oru-undo"] != kVersion ||
      !record.contains("files") || !record["files"].is_array())
    return std::nullopt;
  std::vector<Undo_File> files;
  for (const json& entry : record["files"]) {
    if (!entry.is_object() || !entry.contains("file") || !entry["file"].is_string() ||
        !entry.contains("old") || !entry["old"].is_binary() || !entry.contains("hash") ||
        !entry["hash"].is_number_unsigned() || !entry.contains("size") ||
        !entry["size"].is_number_unsigned())
      return std::nullopt;
    const auto& old = entry["old"].get_binary();
    files.push_back({entry["file"].get<std::string>(), std::string(old.begin(), old.end()),
                     entry["hash"].get<std::uint64_t>(), entry["size"].get<std::uint64_t>()});
  }
  return files;
}

std::string Save_Undo(std::string_view host_file, const std::vector<Undo_File>& files) {
  return service::Write_File(Undo_Path(host_file), Pack_Undo(files)).error;
}

Undone Take_Back(const Project_Source& project) {
  Undone undone;
  const fs::path path = Undo_Path(project.host_file);
  const auto fail = [&](std::string error, bool unread) {
    undone.error = std::move(error);
    undone.unread = unread;
    return undone;
  };
  std::error_code error;
  if (!fs::exists(path, error)) return fail("取り消せる変更がありません。", true);
  const service::Read_Result read = service::Read_File(path);
  if (!read.Ok()) return fail(read.error, true);
  const auto record = Unpack_Undo(read.bytes);
  if (!record)
    return fail(
        fmt::format("変更の記録「{}」が破損しているため、取り消せません。", Path_Text(path)), true);

  // First all files are looked at, so that they are all taken back or none.
  std::vector<std::pair<fs::path, std::string>> now;
  for (const Undo_File& file : *record) {
    const Module_File* known = File_Of(project, file.relative);
    if (known == nullptr)
      return fail(fmt::format("「{}」がプロジェクトにないため、変更を取り消しません。",
                              service::Without_Controls(file.relative)),
                  false);
    service::Read_Result current = service::Read_File(known->path);
    if (!current.Ok()) return fail(current.error, false);
    if (current.bytes.size() != file.new_size || Hash_Bytes(current.bytes) != file.new_hash)
      return fail(
          fmt::format("「{}」はそのあとに変更されているため、取り消しません。", known->relative),
          false);
    if (known->kind == File_Kind::Stored && Is_Open_In_Host(known->path))
      return fail(
          fmt::format("「{}」は開かれています。閉じてから実行してください。", known->relative),
          false);
    now.emplace_back(known->path, std::move(current.bytes));
  }
  for (std::size_t i = 0; i < now.size(); ++i) {
    const service::File_Result put =
        service::Write_File(now[i].first, (*record)[i].old_bytes, now[i].second);
    if (!put.Ok())
      return fail(put.error + fmt::format("（{} 個のファイルは元に戻しました）", i), false);
    undone.files.push_back((*record)[i].relative);
  }
  fs::remove(path, error);
  return undone;
}

}  // namespace oru::provider
