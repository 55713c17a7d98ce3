// SPDX-License-Identifier: MIT
// Tests on the text of one statement, its physical lines joined by CR LF: is it a comment, where
// does a word stand alone, is a name assigned to. They are textual on purpose: a word in a literal
// is a word, and a statement is what its line says.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "service/text_find.h"

namespace oru::query {

/// What may follow a name that it belongs to: the type-declaration characters.
constexpr std::string_view kSuffixes = "%&!#$@";
/// What ends a word.
constexpr std::string_view kDelimiters = " ()[]!.:,'\"";
/// The same without the double quote: a word inside a string constant is then none.
constexpr std::string_view kDelimiters_No_Quote = " ()[]!.:,'";

/// The end of the statement that is tested: all of it, but for a label in front.
[[nodiscard]] std::string_view Without_Label(std::string_view statement);

/// True if the statement, trimmed, is a comment; begins with three apostrophes.
[[nodiscard]] bool Is_Comment(std::string_view statement);
[[nodiscard]] bool Is_Commented_Out(std::string_view statement);

/// The text with one blank on each side, which the tests below take.
[[nodiscard]] std::string Padded(std::string_view text);

/// True if what stands at `span` of a padded text is a word: delimited in front, and behind by a
/// delimiter or a suffix.
[[nodiscard]] bool Is_Word_At(std::string_view padded, service::Text_Span span,
                              std::string_view delimiters);

/// True if the name at byte `at` of a padded text is the target of an assignment (`Chk_Let_Sta`).
/// `with_for_and_set` is false for the search for variables that are only assigned: a counter of a
/// `For` and an object that is `Set` do not count there.
[[nodiscard]] bool Chk_Let_Sta(std::string_view padded, std::size_t at, bool with_for_and_set);

/// The statement as the declarations' reader takes it: its lines trimmed and joined, continuation
/// marks taken off.
[[nodiscard]] std::string Joined(std::string_view statement);

/// The definitions of a statement that defines constants, each as a statement of its own: "Const A
/// = 1, B = 2" gives two. One element for any other statement.
[[nodiscard]] std::vector<std::string> Split_Constants(std::string_view statement);

}  // namespace oru::query
