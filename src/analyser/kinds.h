// SPDX-License-Identifier: MIT
// Codes of modules and members with their words and icon tags, each table in one place.
#pragma once

#include <string>
#include <string_view>

#include "analyser/tables.h"
#include "host/host_app.h"
#include "host/model.h"

namespace oru::analyser {

/// Module type codes that the host's own component types do not have.
constexpr std::string_view kTyp_Workbook = "71";
constexpr std::string_view kTyp_Sheet = "72";
constexpr std::string_view kTyp_Word_Document = "88";

/// The module kind word ("Module", "Class", ...); empty for an unknown code.
[[nodiscard]] std::string_view Set_Mdl_Typ(std::string_view mdl_typ);
/// The module icon tag ("C_Module", ...).
[[nodiscard]] std::string_view Set_Mdl_Img(std::string_view mdl_typ);
/// The member kind word ("Sub", "Property(Get)", ...); empty for "%Declare".
[[nodiscard]] std::string_view Set_Mem_Typ(const Mem_Row& row);
/// The member icon tag, with "P" behind it for a public member.
[[nodiscard]] std::string Set_Mem_Img(const Mem_Row& row);
/// English and Japanese name of an icon tag; empty for an unknown tag.
[[nodiscard]] std::string_view Set_Icn_NmE(std::string_view tag);
[[nodiscard]] std::string_view Set_Icn_NmJ(std::string_view tag);

/// What `Rev_Mdl_Typ` tells of a component.
struct Mdl_Kind {
  std::string Mdl_Typ;  ///< empty if there is no such component
  std::string Mdl_Cap;
};
/// Module type code: the component's own type; of a document, 71 or 72 if the spreadsheet host
/// knows it as the project's workbook or one of its sheets, with the file or tab name as caption.
/// `app` may be null; whatever it refuses leaves the type as it is.
[[nodiscard]] Mdl_Kind Rev_Mdl_Typ(host::VBE& vbe, host::HostApp* app, std::string_view host_file,
                                   std::string_view name);

}  // namespace oru::analyser
