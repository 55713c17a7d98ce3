// SPDX-License-Identifier: MIT
// The data folder of the user: settings, state, word lists, templates, reports. It and the files
// that must be in it are made at start, the files from the templates of the installation; what is
// there already is never touched.
#pragma once

#include <filesystem>

#include "service/services.h"

namespace oru::service {

/// The data folder where the user names none: the maker's and the product's folder in the
/// platform's place for application data ($XDG_DATA_HOME, ~/.local/share); empty if there is none.
[[nodiscard]] std::filesystem::path Default_Data_Folder(std::string_view product);
/// The folder of the template files: that of the program, or "share/oru" beside it.
[[nodiscard]] std::filesystem::path Template_Folder(const std::filesystem::path& program_folder);

/// Makes what is missing of the data folder and its files (`Chk_Ctl_Fdr`). False, and the user is
/// told, at the first thing that cannot be made.
[[nodiscard]] bool Chk_Ctl_Fdr(Services& services, const std::filesystem::path& template_folder);

}  // namespace oru::service
