// SPDX-License-Identifier: MIT
#include "analyser/reader.h"

#include <algorithm>
#include <array>

#include "service/text.h"

namespace oru::analyser {

using service::Trim;

namespace {

constexpr auto npos = std::string_view::npos;

struct Type_Character {
  char character;
  std::string_view type;
};

constexpr std::array kType_Characters{
    Type_Character{'%', "Integer"}, Type_Character{'&', "Long"},   Type_Character{'@', "Currency"},
    Type_Character{'!', "Single"},  Type_Character{'#', "Double"}, Type_Character{'$', "String"},
};

constexpr std::array<std::string_view, 5> kOpening_Words{"While", "Do", "For", "Select", "If"};
constexpr std::array<std::string_view, 3> kClosing_Words{"Wend", "Loop", "Next"};

template <std::size_t N>
bool Is_One_Of(const std::array<std::string_view, N>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

}  // namespace

bool Stm_Reader::Next() {
  statement_.clear();
  line_count_ = 0;
  while (!at_end_) {
    const std::size_t end = rest_.find('\r');
    // Only CR LF ends a line; a lone CR cannot stand in a text of the host.
    const std::string_view line = Trim(rest_.substr(0, end));
    if (statement_.empty()) statement_line_ = line_;
    statement_ += line;
    ++line_count_;
    ++line_;
    at_end_ = end == npos;
    if (!at_end_) rest_.remove_prefix(std::min(end + 2, rest_.size()));
    if (statement_.size() >= 2 && statement_.ends_with(" _")) {
      statement_.pop_back();
      continue;
    }
    kind_ = statement_.empty()           ? Stm_Kind::Blank
            : statement_.front() == '\'' ? Stm_Kind::Comment
                                         : Stm_Kind::Code;
    return true;
  }
  return false;
}

void Del_Label(std::string& statement) {
  // Almost every statement begins with a letter, and so with no number.
  if (const char c = statement.empty() ? ':' : statement.front();
      (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'))
    return;
  std::size_t p = statement.find(':');
  if (p == npos) p = statement.find(' ');
  if (p == npos || p == 0 || !service::Is_Numeric(std::string_view(statement).substr(0, p))) return;
  statement.erase(0, p + 2);
}

std::string Sep_Comment(std::string& statement) {
  const std::string_view left = service::Trim_Left(statement);
  if (left.starts_with('\'')) return {};
  const auto keep = [&](std::size_t length) {
    const std::string_view code = Trim(std::string_view(statement).substr(0, length));
    const auto start = static_cast<std::size_t>(code.data() - statement.data());
    const std::size_t size = code.size();
    statement.resize(start + size);
    statement.erase(0, start);
  };
  std::size_t apostrophe = statement.find('\'');
  if (apostrophe != npos) {
    const std::size_t quote = statement.find('"');
    if (quote != npos && quote < apostrophe) {
      bool inside = false;
      apostrophe = npos;
      for (std::size_t i = quote; i < statement.size(); ++i) {
        if (statement[i] == '"') inside = !inside;
        if (statement[i] == '\'' && !inside) {
          apostrophe = i;
          break;
        }
      }
    }
  }
  if (apostrophe == npos) {
    keep(npos);
    return {};
  }
  std::string comment = statement.substr(apostrophe);
  keep(apostrophe);
  return comment;
}

void Rev_Cst_Val(std::string& statement) {
  const std::size_t first = statement.find('"');
  if (first == npos) return;
  std::string masked = statement.substr(0, first);
  masked.reserve(statement.size());
  bool inside = false;
  for (std::size_t i = first; i < statement.size();) {
    if (statement[i] == '"') {
      inside = !inside;
      masked += '"';
      ++i;
    } else if (inside) {
      masked += service::Width_Of(service::Next_Code_Point(statement, i)) == 1 ? "?" : "？";
    } else {
      masked += statement[i++];
    }
  }
  statement.swap(masked);
}

std::string_view Rev_Pic_Val(std::string& name) {
  if (name.size() < 2) return {};
  for (const auto& [character, type] : kType_Characters) {
    if (name.back() == character) {
      name.pop_back();
      return type;
    }
  }
  return {};
}

bool Is_Type_Character(char c) {
  return std::any_of(kType_Characters.begin(), kType_Characters.end(),
                     [c](const Type_Character& t) { return t.character == c; });
}

bool Has_Colon_List(std::string_view statement) {
  const std::size_t at = statement.find(": ");
  return at != npos && at + 2 < statement.size();
}

std::vector<std::string_view> Split_Colons(std::string_view statement) {
  std::vector<std::string_view> pieces;
  for (const std::string_view piece : service::Split(statement, ": "))
    if (const std::string_view trimmed = Trim(piece); !trimmed.empty()) pieces.push_back(trimmed);
  return pieces;
}

void Metrics::Chk_Metrics(std::string_view statement) {
  std::string_view rest = Trim(statement);
  const std::string_view all = rest;
  const std::string_view first = service::Take_Word(rest);
  // Every word that counts begins with one of these.
  if (first.empty() || std::string_view("WDFSILNE").find(first.front()) == npos) return;
  // The second word as splitting at single blanks gives it.
  const std::string_view second = rest.substr(0, rest.find(' '));
  if (Is_One_Of(kOpening_Words, first)) {
    ++conditions_;
    const std::size_t blank = all.rfind(' ');
    const std::string_view last = blank == npos ? all : all.substr(blank + 1);
    if (first != "If" || last == "Then") ++depth_;
  } else if (Is_One_Of(kClosing_Words, first) ||
             (first == "End" && (second == "Select" || second == "If"))) {
    depth_ = std::max(depth_ - 1, 0);
  }
  deepest_ = std::max(deepest_, depth_);
}

}  // namespace oru::analyser
