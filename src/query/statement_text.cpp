// SPDX-License-Identifier: MIT
#include "query/statement_text.h"

#include <algorithm>

#include "analyser/reader.h"
#include "service/text.h"

namespace oru::query {

using service::Split;
using service::Trim;

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t kLabel_Reach = 32;  // characters

// The last place before `at` where `what` begins.
std::size_t Last_Before(std::string_view text, std::string_view what, std::size_t at) {
  return at == 0 ? npos : text.rfind(what, at - 1);
}

// For the comparison of places: none lies in front of all.
std::ptrdiff_t Order(std::size_t place) {
  return place == npos ? -1 : static_cast<std::ptrdiff_t>(place);
}

// The word in front of a name, with what the statement has in front of it.
std::string_view Word_In_Front(std::string_view text, std::size_t at) {
  const std::size_t blank = Last_Before(text, " ", at);
  if (blank == npos || blank == 0) return {};
  const std::size_t before = Last_Before(text, " ", blank);
  return Trim(before == npos ? text.substr(0, at) : text.substr(before, at - before));
}

}  // namespace

std::string_view Without_Label(std::string_view statement) {
  // Only a ":" near the beginning can be a label's.
  const std::size_t reach =
      statement.size() <= kLabel_Reach
          ? statement.size()
          : service::Byte_Of_Chr(statement, service::Chr_Count{kLabel_Reach + 1});
  if (statement.substr(0, reach).find(':') == npos) return statement;
  const std::string_view trimmed = Trim(statement);
  std::string without(trimmed);
  analyser::Del_Label(without);
  return without.size() == trimmed.size() ? statement
                                          : trimmed.substr(trimmed.size() - without.size());
}

bool Is_Comment(std::string_view statement) {
  return Trim(statement).starts_with('\'');
}

bool Is_Commented_Out(std::string_view statement) {
  return Trim(statement).starts_with("'''");
}

std::string Padded(std::string_view text) {
  std::string padded;
  padded.reserve(text.size() + 2);
  return padded.append(" ").append(text).append(" ");
}

bool Is_Word_At(std::string_view padded, service::Text_Span span, std::string_view delimiters) {
  if (span.at == 0 || span.End() >= padded.size()) return false;
  const char behind = padded[span.End()];
  return delimiters.find(padded[span.at - 1]) != npos &&
         (delimiters.find(behind) != npos || kSuffixes.find(behind) != npos);
}

bool Chk_Let_Sta(std::string_view padded, std::size_t at, bool with_for_and_set) {
  constexpr std::string_view kEquals = " = ", kThen = " Then ";
  if (padded.find(kEquals, at) == npos) return false;
  // No " = " between the statement's beginning and the name.
  std::size_t begin = npos;
  for (const std::string_view mark : {std::string_view(": "), std::string_view(" Else "), kThen})
    if (begin == npos) begin = Last_Before(padded, mark, at);
  const std::size_t equals = Last_Before(padded, kEquals, at);
  if (equals != npos && Order(equals) >= Order(begin)) return false;
  // Not in the condition of an If.
  if (padded.find(kThen, at) != npos || padded.find("\r\n Then", at) != npos) return false;
  // Not in parentheses, but those in front of a "." belong to an object with an index.
  const std::size_t open = Last_Before(padded, "(", at);
  if (open != npos && Order(open) >= Order(Last_Before(padded, kThen, at)) &&
      Order(open) >= Order(Last_Before(padded, ".", at)))
    return false;
  const std::string_view word = Word_In_Front(padded, at);
  if (!with_for_and_set && (word == "For" || word == "Set")) return false;
  return word.empty() || word == "Else:" || word == "Else" || word == "Then" || word == "For" ||
         word == "Set" || word.ends_with(':');
}

std::string Joined(std::string_view statement) {
  std::string joined;
  for (const std::string_view line : Split(statement, "\r\n")) {
    std::string_view text = Trim(line);
    if (text == "_")
      text = {};
    else if (text.ends_with(" _"))
      text.remove_suffix(1);
    joined += text;
  }
  return std::string(Trim(joined));
}

std::vector<std::string> Split_Constants(std::string_view statement) {
  std::string masked(statement);
  analyser::Rev_Cst_Val(masked);
  const std::size_t word = Padded(masked).find(" Const ");
  if (word == npos || Is_Comment(statement)) return {std::string(statement)};
  const std::size_t begin = word + 6;  // of the first name, a blank being in front of the text
  if (masked.size() != statement.size()) {
    // Full-width characters in literals are masked by a shorter one; then places differ.
    masked.assign(statement);
    bool in_literal = false;
    for (char& c : masked) {
      if (c == '"')
        in_literal = !in_literal;
      else if (in_literal)
        c = '?';
    }
  }
  std::vector<std::string> parts;
  std::size_t from = begin;
  int depth = 0;
  for (std::size_t i = begin; i <= masked.size(); ++i) {
    const char c = i == masked.size() ? ',' : masked[i];
    if (c == '\'') {
      parts.push_back(std::string(statement.substr(0, begin)) +
                      std::string(Trim(statement.substr(from))));
      return parts;
    }
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (c != ',' || (depth > 0 && i < masked.size())) continue;
    parts.push_back(std::string(statement.substr(0, begin)) +
                    std::string(Trim(statement.substr(from, i - from))));
    from = i + 1;
  }
  return parts;
}

}  // namespace oru::query
