// SPDX-License-Identifier: MIT
// Rich text as RTF for Japanese (font character set 128, code page 932): pure ASCII, characters of
// the code page as \'hh, all others as \uN?. A control word is written only where an attribute
// changes. The writer owns what is worth keeping from text to text: the codes of characters it has
// met, and the pictures by icon tag.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "query/rich_text.h"
#include "service/codec.h"
#include "service/collection.h"

namespace oru::query {

/// One entry of the colour table.
[[nodiscard]] std::string Cnv_RTx_Clr(Host_Colour colour);

class Rtf_Writer {
 public:
  /// Opens code page 932; without it every character that is not ASCII is written as \uN?.
  Rtf_Writer();

  /// The whole RTF of a text: header, runs, closing brace.
  [[nodiscard]] std::string Add_RTx_Hed(const Rich_Text& text);
  /// A text escaped. A line end (CR LF, and CR or LF alone) becomes "\par " and CR LF; a tab stays;
  /// other control characters are written as \'hh.
  [[nodiscard]] std::string Cnv_RTx_Txt(std::string_view text);
  /// Lets go of the pictures.
  void Rls_RTx_Inf() { pictures_.clear(); }

 private:
  void Append_Escaped(std::string& out, std::string_view text);
  void Append_Character(std::string& out, char32_t character, std::string_view utf8);
  const std::string& Picture(const std::string& tag);

  std::shared_ptr<const service::Code_Page> page_;
  std::vector<std::uint16_t> codes_;  ///< by UTF-16 unit: code in the page, or one of the two below
  service::Text_Map<std::string> pictures_;
};

}  // namespace oru::query
