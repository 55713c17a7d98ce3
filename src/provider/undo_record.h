// SPDX-License-Identifier: MIT
// What takes the last change of the code back: the bytes that each changed file had, in one file beside the
// project (docs/formats.md). Taking back puts them all in their places again, or none of them: where
// a file is no longer what the change left, nothing is done.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "provider/project_source.h"

namespace oru::provider {

/// A file that was changed.
struct Undo_File {
  std::string relative;        ///< as `Module_File::relative`
  std::string old_bytes;       ///< before the change
  std::uint64_t new_hash = 0;  ///< `Hash_Bytes` of what it holds since
  std::uint64_t new_size = 0;
};

/// Where the record of a project lies: "NAME.oru-undo" in its folder, or beside its file.
/// `host_file` is that of `Project_Source`.
[[nodiscard]] std::filesystem::path Undo_Path(std::string_view host_file);

/// The record as bytes, and back; nothing for bytes that are none.
[[nodiscard]] std::string Pack_Undo(const std::vector<Undo_File>& files);
[[nodiscard]] std::optional<std::vector<Undo_File>> Unpack_Undo(std::string_view bytes);

/// Writes the record. An empty text, or in Japanese why it could not be written.
[[nodiscard]] std::string Save_Undo(std::string_view host_file,
                                    const std::vector<Undo_File>& files);

struct Undone {
  std::string error;               ///< Japanese; empty on success
  bool unread = false;             ///< the error: there is no record, or it cannot be read
  std::vector<std::string> files;  ///< those that have their old bytes again
};
/// Takes the last change of a project back and removes the record. Only files of the project
/// are written.
[[nodiscard]] Undone Take_Back(const Project_Source& project);

}  // namespace oru::provider
