// SPDX-License-Identifier: MIT
// Fuzz entry for the two forms of a module's text: a source that is exported and imported comes
// back. The input is a byte for the kind of the module, and the source behind its name.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "host/model.h"
#include "provider/frx_form.h"
#include "provider/module_text.h"
#include "require.h"

namespace oru::fuzz {

inline void Run_Module_Text(std::string_view input) {
  using namespace oru::provider;
  static const auto page = service::Code_Page::Open(932);
  constexpr std::array kTypes = {host::kType_Module, host::kType_Class, host::kType_Form,
                                 host::kType_Document};
  if (input.empty()) return;
  const int type = kTypes[static_cast<unsigned char>(input.front()) % kTypes.size()];
  std::string source = "Attribute VB_Name = \"M\"\r\n";
  source += input.substr(1);
  const Exported_Form file = To_File(
      source, type, "VERSION 5.00\r\nBegin {X} M \r\n   Caption = \"c\"\r\nEnd\r\n", "M.frx");
  const Imported_Source back = To_Source(file.bytes, source, *page);
  Require(!back.error.empty() || back.bytes == source, "an unchanged file changes nothing");
  const Imported_Source any = To_Source(input.substr(1), source, *page);
  Require(!any.error.empty() || any.bytes.starts_with("Attribute VB_Name = \"M\""),
          "a module keeps its name");
  (void)Find_Frx(input);
  (void)Read_Frx(input, 0);
}

}  // namespace oru::fuzz
