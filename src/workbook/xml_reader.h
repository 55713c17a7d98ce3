// SPDX-License-Identifier: MIT
// An XML part of a package, element by element as it is unpacked, so that a part of any size takes
// no memory. Nothing outside the part is ever loaded, and a part that declares entities is refused.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "container/archive.h"

namespace oru::workbook {

struct Xml_Attribute {
  std::string_view name;  ///< without its prefix
  bool prefixed = false;  ///< it has a name space of its own, as `r:id` has
  std::string_view value;
};

struct Xml_Element {
  std::string_view name;  ///< without its prefix
  std::vector<Xml_Attribute> attributes;
  /// The value of an attribute, empty if there is none.
  [[nodiscard]] std::string_view Get(std::string_view attribute, bool prefixed = false) const;
};

/// What is called for each element; the views last during the call.
struct Xml_Events {
  std::function<void(const Xml_Element&)> begin;
  std::function<void(std::string_view name)> end = {};
  std::function<void(std::string_view)> text = {};
};

enum class Xml_Form {
  Strict,
  Lenient
};  ///< lenient: goes on behind an error, as legacy drawings need

/// Reads one part of an archive. An empty text, or in Japanese what is wrong with it; the events up
/// to there have come.
[[nodiscard]] std::string Read_Xml(const container::Archive& archive, std::string_view part,
                                   const Xml_Events& events, Xml_Form form = Xml_Form::Strict);
/// The same for bytes; `part` names them in messages.
[[nodiscard]] std::string Parse_Xml(std::string_view bytes, std::string_view part,
                                    const Xml_Events& events, Xml_Form form = Xml_Form::Strict);

}  // namespace oru::workbook
