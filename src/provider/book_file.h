// SPDX-License-Identifier: MIT
// A workbook or document file as a project: its macros with what the live host would have told of
// the sheets, forms and shapes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "provider/project_source.h"

namespace oru::provider {

/// True if a file is read as a workbook: by its extension, or because it begins like one.
[[nodiscard]] bool Is_Book(const std::filesystem::path& path);

/// Reads the file; `shown` is the path as the user gave it. A project that is locked for viewing
/// has its modules and `Protection::Locked`, as the host has it. `Module_File::kind` is `Stored`.
[[nodiscard]] Project_Source Read_Book(const std::filesystem::path& path, std::string_view shown,
                                       const Read_Options& options);
/// The same from bytes. Nothing here touches the disk.
[[nodiscard]] Project_Source Read_Book_Bytes(std::string bytes, const std::filesystem::path& path,
                                             std::string_view shown);

/// Japanese: that the project of that file is locked for viewing, and what to do.
[[nodiscard]] std::string Locked_Message(std::string_view shown);

}  // namespace oru::provider
