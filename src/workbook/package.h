// SPDX-License-Identifier: MIT
// How the parts of an office package refer to each other (ECMA-376 part 2): relationships, and by
// them the parts of the macros.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "container/archive.h"
#include "service/collection.h"

namespace oru::workbook {

struct Relationship {
  std::string id;
  std::string type;    ///< what follows the last "/" of the type: "worksheet", "vbaProject"
  std::string target;  ///< name of the part, without a leading "/"
};

struct Relationships {
  std::string error;  ///< empty, or what is wrong, in Japanese
  std::vector<Relationship> list;
  service::Text_Map<std::size_t> places;  ///< in the list, by id
  /// The first one of a type, or the one of that id; null if there is none.
  [[nodiscard]] const Relationship* Of_Type(std::string_view type) const;
  [[nodiscard]] const Relationship* Of_Id(std::string_view id) const;
};

/// The relationships of a part, or of the package for an empty name; none if it has none. Targets
/// outside the package are left out.
[[nodiscard]] Relationships Read_Relationships(const container::Archive& archive,
                                               std::string_view part);

/// The name of the main part: workbook, document or presentation; nothing if there is none.
[[nodiscard]] std::optional<std::string> Main_Part(const container::Archive& archive);
/// The name of the part with the macros; nothing if there is none.
[[nodiscard]] std::optional<std::string> Vba_Part(const container::Archive& archive);
/// True if a signature belongs to the part with the macros.
[[nodiscard]] bool Has_Signature(const container::Archive& archive, std::string_view vba_part);

}  // namespace oru::workbook
