// SPDX-License-Identifier: MIT
// Regular expressions as the host's `RegExp` object reads them: "^" and "$" are the ends of the
// text, "." is anything but a line feed, "\d \w \s \b" mean ASCII. The engine is PCRE2 with limits,
// so that a pattern which tries for ever ends with a fault. docs/formats.md lists what differs.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "service/errors.h"
#include "service/text_find.h"

namespace oru::service {

/// A match was given up: the pattern took more steps or more depth than it may.
class Pattern_Limit : public Sys_Error {
 public:
  Pattern_Limit();
};

class Pattern {
 public:
  /// `ignore_case` is the object's `IgnoreCase`. Check `Ok` before anything else.
  Pattern(std::string_view pattern, bool ignore_case);
  ~Pattern();
  Pattern(Pattern&&) noexcept;
  Pattern& operator=(Pattern&&) noexcept;

  /// False for a text that is no pattern.
  [[nodiscard]] bool Ok() const;
  /// True if the pattern matches anywhere. Throws `Pattern_Limit`.
  [[nodiscard]] bool Test(std::string_view text) const;
  /// All matches from left to right, none over another (the object's `Global`), empty ones left
  /// out. Throws `Pattern_Limit`.
  [[nodiscard]] std::vector<Text_Span> Matches(std::string_view text) const;

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
};

}  // namespace oru::service
