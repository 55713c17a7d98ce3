// SPDX-License-Identifier: MIT
#include "analyser/comments.h"

#include <algorithm>

#include "service/settings.h"
#include "service/text.h"

namespace oru::analyser {

namespace {

constexpr std::size_t kMost_Removed = 12;

std::vector<std::string> Head_Words(const std::string& option) {
  std::vector<std::string> words;
  const std::string joined = service::Replace_All(option, " ", "");
  for (const std::string_view word : service::Split(joined, "|"))
    if (!word.empty()) words.emplace_back(word);
  return words;
}

}  // namespace

Anl_Options::Anl_Options(const service::Settings& settings)
    : Mdl_Tags(Head_Words(settings.Text("MdlCmtTag"))),
      Mem_Tags(Head_Words(settings.Text("MemCmtTag"))),
      Del_Tag(settings.Flag("CmtDelTag")),
      Evt_Key(service::Trim(settings.Text("EvtPrcKey"))) {
  const std::string characters = settings.Text("CmtDelChr");
  std::size_t taken = 0;
  for (std::size_t i = 0; i < characters.size() && taken < kMost_Removed; ++taken) {
    const char32_t removed = service::Lower_Of(service::Next_Code_Point(characters, i));
    if (removed == U' ') break;
    if (removed >= 0x80) Del_Wide.push_back(removed);
    for (char32_t c = 0; c < Del_Ascii.size(); ++c)
      if (service::Lower_Of(c) == removed) Del_Ascii[c] = true;
  }
  Del_Ascii[U'\''] = true;
}

bool Anl_Options::Is_Removed(char32_t character) const {
  if (character < 0x80) return Del_Ascii[character];
  if (Del_Wide.empty()) return false;
  return std::find(Del_Wide.begin(), Del_Wide.end(), service::Lower_Of(character)) !=
         Del_Wide.end();
}

std::string Rev_CTx_Fmt(const Anl_Options& options, std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = i;
    if (!options.Is_Removed(service::Next_Code_Point(text, i)))
      result.append(text, start, i - start);
  }
  return std::string(service::Trim(result));
}

void Cmt_Text::Add(std::string_view comment_statement) {
  if (final_) return;
  const std::string text = Rev_CTx_Fmt(options_, comment_statement);
  if (text.empty()) return;
  if (first_.empty()) {
    first_ = text;
    tag_.clear();
  }
  if (!value_.empty()) {
    value_ += text;
    final_ = true;
  } else if (!tags_.empty()) {
    for (const std::string& tag : tags_) {
      if (service::Match_No_Case(text, tag) == std::string_view::npos) continue;
      tag_ = tag;
      // A line holding only the head word: the next comment line completes the value.
      final_ = text != tag;
      value_ = final_ ? text : tag;
      break;
    }
  } else {
    value_ = text;
    final_ = true;
  }
  if (final_ && !tag_.empty() && options_.Del_Tag) {
    const std::size_t at = service::Find_No_Case(value_, tag_);
    if (at != std::string::npos)
      value_.erase(at, service::Match_No_Case(std::string_view(value_).substr(at), tag_));
    value_ = service::Trim(value_);
  }
}

void Cmt_Text::Meet_Code(bool is_option) {
  if (final_ || first_.empty()) return;
  if (is_option) {
    value_ = first_;
    final_ = true;
  } else {
    first_.clear();
  }
}

std::string Cmt_Text::Take() {
  return final_ ? value_ : first_;
}

}  // namespace oru::analyser
