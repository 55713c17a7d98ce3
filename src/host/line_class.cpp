// SPDX-License-Identifier: MIT
#include "host/line_class.h"

#include <cstring>

namespace oru::host {
namespace {

constexpr bool Is_Blank(char c) {
  return c == ' ' || c == '\t';
}
constexpr bool Is_Digit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
constexpr bool Is_Letter(char c) {
  return (Lower(c) >= 'a' && Lower(c) <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}
constexpr bool Is_Name(char c) {
  return Is_Letter(c) || Is_Digit(c) || c == '_';
}

bool Is_Word(std::string_view word, std::string_view lower) {
  if (word.size() != lower.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (Lower(word[i]) != lower[i]) return false;
  return true;
}

bool Is_Number(std::string_view word) {
  for (const char c : word)
    if (!Is_Digit(c)) return false;
  return true;
}

bool Is_Modifier(std::string_view word) {
  return Is_Word(word, "public") || Is_Word(word, "private") || Is_Word(word, "friend") ||
         Is_Word(word, "static") || Is_Word(word, "global");
}

/// The state behind the next word of a statement; `Comment` for a `Rem`.
Line_State Behind_Word(Line_State state, std::string_view word) {
  using enum Line_State;
  switch (state) {
    case Start:
      if (Is_Number(word)) return Start;
      if (Is_Word(word, "rem")) return Comment;
      if (Is_Word(word, "end")) return End;
      [[fallthrough]];
    case Modifier:
      if (Is_Modifier(word)) return Modifier;
      if (Is_Word(word, "sub") || Is_Word(word, "function")) return Proc;
      if (Is_Word(word, "property")) return Property;
      return Middle;
    case Property:
      if (Is_Word(word, "get")) return Get;
      if (Is_Word(word, "let")) return Let;
      if (Is_Word(word, "set")) return Set;
      return Middle;
    case End:
      if (Is_Word(word, "sub") || Is_Word(word, "function") || Is_Word(word, "property"))
        return Done;
      return Middle;
    default:
      return Middle;
  }
}

constexpr bool Wants_Name(Line_State state) {
  return state >= Line_State::Proc && state <= Line_State::Get;
}

constexpr ProcKind Kind_Of(Line_State state) {
  switch (state) {
    case Line_State::Let:
      return ProcKind::Let;
    case Line_State::Set:
      return ProcKind::Set;
    case Line_State::Get:
      return ProcKind::Get;
    default:
      return ProcKind::Proc;
  }
}

/// Position behind the string that begins at `at`; a doubled quote is two strings in a row.
std::size_t Behind_String(std::string_view text, std::size_t at) {
  const std::size_t close = text.find('"', at + 1);
  return close == std::string_view::npos ? text.size() : close + 1;
}

/// The next character that matters inside a statement.
std::size_t Next_Mark(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] != ':' && text[at] != '"' && text[at] != '\'') ++at;
  return at;
}

/// The whole judgement, statement by statement; `header` takes the first header of the line.
std::uint8_t Scan_Line(std::string_view line, Line_State before,
                       std::optional<Line_Header>& header) {
  using enum Line_State;
  const bool continued = Is_Continued(line);
  const std::string_view text = continued ? line.substr(0, line.size() - 1) : line;
  std::uint8_t flags = !line.empty() && before != Comment ? kLine_Code : std::uint8_t{0};
  Line_State state = before == Fresh ? Start : before;
  bool first = before == Fresh;  // only blanks so far: a comment here takes the whole line

  std::size_t at = 0;
  while (state != Comment && state != Done) {
    while (at < text.size() && Is_Blank(text[at])) ++at;
    if (at == text.size()) break;
    const char c = text[at];
    if (c == '\'') {
      state = Comment;
    } else if (c == ':') {
      state = Start;
      ++at;
    } else if (c == '"') {
      state = Middle;
      at = Behind_String(text, at);
    } else if (state == Middle) {
      at = Next_Mark(text, at + 1);
    } else if (!Is_Name(c)) {
      state = Middle;
      ++at;
    } else {
      std::size_t end = at + 1;
      while (end < text.size() && Is_Name(text[end])) ++end;
      const std::string_view word = text.substr(at, end - at);
      if (Wants_Name(state) && Is_Letter(c)) {
        if (!header) header = Line_Header{word, Kind_Of(state)};
        flags |= kLine_Opens;
      }
      state = Behind_Word(state, word);
      at = end;
    }
    if (state == Comment && first) flags = 0;
    first = false;
  }
  if (continued) return static_cast<std::uint8_t>(flags | static_cast<std::uint8_t>(state));
  return static_cast<std::uint8_t>(state == Done ? flags | kLine_Closes : flags);
}

/// First two letters of the words that a header or an end can begin with.
constexpr bool May_Matter(char first, char second) {
  const char b = Lower(second);
  switch (Lower(first)) {
    case 'p':
    case 'f':
      return b == 'u' || b == 'r';
    case 's':
      return b == 'u' || b == 't';
    case 'g':
      return b == 'l';
    case 'e':
      return b == 'n';
    case 'r':
      return b == 'e';
    default:
      return Is_Digit(first);
  }
}

}  // namespace

std::uint8_t Judge_Line(std::string_view line, Line_State before) {
  // Nearly all lines are decided here, from their first letters and the want of a colon.
  if (before == Line_State::Fresh && !Is_Continued(line)) {
    std::size_t at = 0;
    while (at < line.size() && Is_Blank(line[at])) ++at;
    if (at == line.size() || line[at] == '\'') return 0;
    if (!May_Matter(line[at], at + 1 < line.size() ? line[at + 1] : '\0') &&
        std::memchr(line.data() + at, ':', line.size() - at) == nullptr)
      return kLine_Code;
  }
  std::optional<Line_Header> header;
  return Scan_Line(line, before, header);
}

std::optional<Line_Header> Header_In_Line(std::string_view line, Line_State before) {
  std::optional<Line_Header> header;
  (void)Scan_Line(line, before, header);
  return header;
}

}  // namespace oru::host
