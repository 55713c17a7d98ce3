// SPDX-License-Identifier: MIT
#include "provider/declarations.h"

#include <algorithm>
#include <array>
#include <string>

#include "host/line_class.h"
#include "provider/lines.h"
#include "service/text.h"

namespace oru::provider {
namespace {

bool Is_Name_Byte(char c) {
  const auto b = static_cast<unsigned char>(c);
  return b >= 0x80 || c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
         (c >= 'a' && c <= 'z');
}

/// Takes the next name or keyword, in lower case, from the line; empty at its end. Literals and a
/// comment are passed over.
std::string Next_Word(std::string_view& text) {
  while (!text.empty() && !Is_Name_Byte(text.front())) {
    if (text.front() == '\'') text = {};
    if (text.starts_with('"')) text.remove_prefix(std::min(text.find('"', 1), text.size() - 1));
    if (!text.empty()) text.remove_prefix(1);
  }
  std::size_t length = 0;
  while (length < text.size() && Is_Name_Byte(text[length])) ++length;
  std::string word = service::To_Lower(text.substr(0, length));
  text.remove_prefix(length);
  return word;
}

/// True for the beginning of a statement that may declare something other than a procedure.
bool May_Declare(std::string_view line) {
  constexpr std::array<std::string_view, 9> words = {
      "public", "private", "friend", "global", "static", "dim", "const", "declare", "event"};
  const std::string_view text = Skip_Blanks(line);
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view word) { return Begins_With(text, word); });
}

}  // namespace

Declarations Find_Declarations(std::span<const std::string_view> lines) {
  Declarations found;
  bool in_members = false;  // the first procedure came already
  for (std::size_t first = 0, last = 0; first < lines.size(); first = last + 1) {
    last = first;
    while (last + 1 < lines.size() && host::Is_Continued(lines[last])) ++last;
    bool is_header = false;
    host::Line_State state = host::Line_State::Fresh;
    for (std::size_t i = first; i <= last; ++i) {
      const std::uint8_t verdict = host::Judge_Line(lines[i], state);
      if ((verdict & host::kLine_Opens) != 0) {
        if (const auto header = host::Header_In_Line(lines[i], state)) {
          found[service::To_Lower(header->name)].push_back({header->kind, first, last});
          is_header = in_members = true;
        }
      }
      state = host::State_Of(verdict);
    }
    if (is_header || in_members || !May_Declare(lines[first])) continue;
    for (std::size_t i = first; i <= last; ++i) {
      std::string_view rest = lines[i];
      for (std::string word = Next_Word(rest); !word.empty(); word = Next_Word(rest))
        found[word].push_back({std::nullopt, first, last});
    }
  }
  return found;
}

}  // namespace oru::provider
