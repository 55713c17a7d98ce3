// SPDX-License-Identifier: MIT
// Fuzz entry for the designer of a form. The input is
//   bytes 0 and 1  length of the stream "f", which follows; the rest is the stream "o"
// The containers of the form have the same streams.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "container/byte_reader.h"
#include "require.h"
#include "workbook/form_storage.h"

namespace oru::fuzz {

inline void Run_Form_Storage(std::string_view input) {
  container::Byte_Reader reader(input);
  const std::string_view sites = reader.Bytes(std::min<std::size_t>(reader.U16(), reader.Left()));
  container::Storage form;
  form.streams = {{"f", std::string(sites)}, {"o", std::string(reader.Bytes(reader.Left()))}};
  container::Storage inner = form;
  inner.name = "i02";
  form.storages.push_back(inner);
  inner.name = "i01";
  form.storages.push_back(inner);
  const workbook::Form_Storage read = workbook::Read_Form(form);
  Require(read.controls.size() <= 8192, "a form has a limit");
  for (const auto& control : read.controls)
    Require(!control.name.empty(), "each control has a name");
}

}  // namespace oru::fuzz
