// SPDX-License-Identifier: MIT
#include "host/line_find.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "host/model.h"
#include "service/text.h"

namespace oru::host {
namespace {

char32_t Fold(char32_t c) {
  if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
  return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c)));
}

bool Is_Word_Character(char32_t c) {
  return c == '_' || u_isalnum(static_cast<UChar32>(c)) != 0;
}

/// True if no word runs across the place between two characters.
bool Is_Word_Edge(std::string_view line, std::size_t at) {
  if (at == 0 || at >= line.size()) return true;
  std::size_t next = at;
  if (!Is_Word_Character(service::Next_Code_Point(line, next))) return true;
  std::size_t before = at - 1;
  while (before > 0 && (static_cast<unsigned char>(line[before]) & 0xC0) == 0x80) --before;
  return !Is_Word_Character(service::Next_Code_Point(line, before));
}

}  // namespace

Line_Finder::Line_Finder(std::string_view target, bool whole_word, bool match_case, bool pattern)
    : whole_word_(whole_word) {
  if (pattern && match_case)
    throw Host_Error(kErr_Bad_Call, "パターン検索では大文字と小文字を区別できません。");
  if (!pattern)
    plain_.emplace(target, match_case ? service::Compare::Binary : service::Compare::Text);
  else if (!target.empty())
    Read_Pattern(target);
}

bool Line_Finder::May_Stand_In(std::string_view text) const {
  return plain_ ? plain_->Is_In(text) : !pieces_.empty();
}

void Line_Finder::Read_Pattern(std::string_view target) {
  pieces_.emplace_back();
  for (std::size_t at = 0; at < target.size();) {
    const char32_t c = service::Next_Code_Point(target, at);
    const std::size_t close = c == '[' ? target.find(']', at) : std::string_view::npos;
    if (c == '*') {
      pieces_.emplace_back();
    } else if (c == '?') {
      pieces_.back().emplace_back(Any{});
    } else if (c == '#') {
      pieces_.back().emplace_back(Digit{});
    } else if (close != std::string_view::npos) {
      List list;
      std::string_view inside = target.substr(at, close - at);
      at = close + 1;
      if (inside.starts_with('!') && inside.size() > 1) {
        list.exclude = true;
        inside.remove_prefix(1);
      }
      for (std::size_t i = 0; i < inside.size();) {
        const char32_t low = service::Next_Code_Point(inside, i);
        char32_t high = low;
        if (i + 1 < inside.size() && inside[i] == '-') high = service::Next_Code_Point(inside, ++i);
        list.ranges.emplace_back(low, high);
      }
      if (!list.ranges.empty()) pieces_.back().emplace_back(std::move(list));
    } else {
      pieces_.back().emplace_back(Fold(c));
    }
  }
}

bool Line_Finder::Fits(const Step& step, char32_t character) {
  if (const auto* exact = std::get_if<char32_t>(&step)) return *exact == Fold(character);
  if (std::holds_alternative<Any>(step)) return true;
  if (std::holds_alternative<Digit>(step)) return character >= '0' && character <= '9';
  const auto& list = std::get<List>(step);
  const char32_t lower = Fold(character);
  const auto upper = static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
  const bool listed = std::ranges::any_of(list.ranges, [&](const auto& range) {
    return (lower >= range.first && lower <= range.second) ||
           (upper >= range.first && upper <= range.second) ||
           (character >= range.first && character <= range.second);
  });
  return listed != list.exclude;
}

std::optional<Byte_Range> Line_Finder::Find(std::string_view line, std::size_t from,
                                            std::size_t to) const {
  to = std::min(to, line.size());
  if (from > to || (!plain_ && pieces_.empty())) return std::nullopt;
  return plain_ ? Find_Plain(line, from, to) : Find_Pattern(line, from, to);
}

std::optional<Byte_Range> Line_Finder::Find_Plain(std::string_view line, std::size_t from,
                                                  std::size_t to) const {
  const std::string_view searched = line.substr(0, to);
  while (const auto span = plain_->Find(searched, from)) {
    if (!whole_word_ || (Is_Word_Edge(line, span->at) && Is_Word_Edge(line, span->End())))
      return Byte_Range{span->at, span->End()};
    from = span->at;
    (void)service::Next_Code_Point(line, from);
  }
  return std::nullopt;
}

std::optional<Byte_Range> Line_Finder::Find_Piece(const Piece& piece, std::string_view line,
                                                  std::size_t from, std::size_t to,
                                                  bool word_begins, bool word_ends) const {
  for (std::size_t begin = from;; (void)service::Next_Code_Point(line, begin)) {
    std::size_t at = begin;
    bool fits = true;
    for (const Step& step : piece) {
      fits = at < to && Fits(step, service::Next_Code_Point(line, at));
      if (!fits) break;
    }
    if (fits && (!word_begins || Is_Word_Edge(line, begin)) &&
        (!word_ends || Is_Word_Edge(line, at)))
      return Byte_Range{begin, at};
    if (begin >= to) return std::nullopt;
  }
}

std::optional<Byte_Range> Line_Finder::Find_Pattern(std::string_view line, std::size_t from,
                                                    std::size_t to) const {
  // Each piece is taken at its first place behind the one before: if the pieces fit at all behind
  // a place, they fit behind the first such place, so that nothing need be tried twice.
  Byte_Range found{0, from};
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const bool first = i == 0;
    const auto hit = Find_Piece(pieces_[i], line, found.end, to, whole_word_ && first,
                                whole_word_ && i + 1 == pieces_.size());
    if (!hit) return std::nullopt;
    found = {first ? hit->begin : found.begin, hit->end};
  }
  return found;
}

}  // namespace oru::host
