// SPDX-License-Identifier: MIT
#include "analyser/comments.h"

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

bool Begins_No_Case(std::string_view text, std::string_view head) {
  return service::To_Lower(text).starts_with(service::To_Lower(head));
}

void Remove_No_Case(std::string& text, std::string_view what, bool all) {
  for (std::size_t at = service::Find_No_Case(text, what); at != std::string::npos;
       at = service::Find_No_Case(text, what, at)) {
    // The match covers as many characters as `what`, whose bytes may differ with letter case.
    std::size_t end = at;
    for (std::size_t i = 0; i < what.size();) {
      (void)service::Next_Code_Point(what, i);
      if (end < text.size()) (void)service::Next_Code_Point(text, end);
    }
    text.erase(at, end - at);
    if (!all) return;
  }
}

}  // namespace

Anl_Options::Anl_Options(const service::Settings& settings)
    : Mdl_Tags(Head_Words(settings.Text("MdlCmtTag"))),
      Mem_Tags(Head_Words(settings.Text("MemCmtTag"))),
      Del_Tag(settings.Flag("CmtDelTag")),
      Evt_Key(service::Trim(settings.Text("EvtPrcKey"))) {
  const std::string characters = settings.Text("CmtDelChr");
  for (std::size_t i = 0; i < characters.size() && Del_Chr.size() < kMost_Removed;) {
    const std::size_t start = i;
    if (service::Next_Code_Point(characters, i) == U' ') break;
    Del_Chr.push_back(characters.substr(start, i - start));
  }
}

std::string Rev_CTx_Fmt(const Anl_Options& options, std::string_view text) {
  std::string result = service::Replace_All(text, "'", "");
  for (const std::string& character : options.Del_Chr) {
    if (result.empty()) break;
    const char first = character.front();
    const bool has_case =
        character.size() > 1 || (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z');
    if (!has_case) {
      std::erase(result, first);
    } else {
      Remove_No_Case(result, character, true);
    }
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
      if (!Begins_No_Case(text, tag)) continue;
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
    Remove_No_Case(value_, tag_, false);
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
