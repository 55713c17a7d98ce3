// SPDX-License-Identifier: MIT
// Rich text as one HTML page in UTF-8 that needs nothing else: styles and pictures are in it, there
// is no script, and all text is escaped, so that code of others is shown and never run.
#pragma once

#include <string>
#include <string_view>

#include "query/rich_text.h"

namespace oru::query {

struct Html_Options {
  std::string_view title;  ///< plain text
  Host_Colour background = 0xFFFFFF;
};

/// The page. Line spacing follows the text where it changes at the beginning of a line.
[[nodiscard]] std::string Get_RTx_Html(const Rich_Text& text, const Html_Options& options);

/// Plain text escaped for an element's content or a quoted attribute. Control characters other than
/// tab and line end, and bytes that are no UTF-8, become U+FFFD; a line end becomes LF.
[[nodiscard]] std::string Esc_Html(std::string_view text);

}  // namespace oru::query
