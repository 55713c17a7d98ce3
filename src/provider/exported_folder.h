// SPDX-License-Identifier: MIT
// A folder of exported files as a project: finds the files and reads them in byte order of their
// paths.
#pragma once

#include <filesystem>

#include "provider/project_source.h"

namespace oru::provider {

/// Reads all exported files below a folder, or a single one; `shown` is the path as the user gave
/// it. Links to folders are followed, each folder once. Fails as `Read_Project` does.
[[nodiscard]] Project_Source Read_Exported_Files(const std::filesystem::path& path,
                                                 std::string_view shown,
                                                 const Read_Options& options);

}  // namespace oru::provider
