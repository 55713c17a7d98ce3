// SPDX-License-Identifier: MIT
#include "service/text_find.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "service/text.h"

namespace oru::service {
namespace {

constexpr char32_t kHalf_Katakana = 0xFF61, kHalf_Katakana_End = 0xFF9F;
// The full-width forms of U+FF61 to U+FF9F.
constexpr std::u32string_view kFull_Katakana =
    U"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリルレロワン゛゜";
// The half-width forms of U+FFE0 to U+FFE6.
constexpr std::u32string_view kHalf_Signs = U"\u00A2\u00A3\u00AC\u00AF\u00A6\u00A5\u20A9";

// Texts are looked through in pieces, so that a form that does not occur is not looked for in all of
// the text again behind every place of one that does.
constexpr std::size_t kPiece = std::size_t{1} << 14;

// No character has more forms than this.
constexpr std::size_t kMost_Forms = 16;

// How often a character is to be expected in code: the smaller, the better to look for.
int Frequency(char32_t c) {
  constexpr std::string_view kFrequent = "zqjkxvbywgpfmcudlhrsnioate";  // rising
  if (c >= 0x3041 && c <= 0x3096) return 20;
  if (c >= 0x80) return 1;
  const char byte = static_cast<char>(c);
  if (const std::size_t at = kFrequent.find(byte); at != kFrequent.npos)
    return 4 + static_cast<int>(at) * 2;
  if (byte == ' ') return 99;
  return byte >= '0' && byte <= '9' ? 15 : std::string_view("().,'\"=_").find(byte) < 8 ? 40 : 2;
}

using Same = std::pair<char32_t, char32_t>;  // a folded character, and one that folds to it

// Sorted; characters that fold to themselves stand in it only as the former.
const std::vector<Same>& All_Folded() {
  static const std::vector<Same> kAll = [] {
    std::vector<Same> all;
    for (char32_t c = 0; c < 0x20000; ++c)
      if (const char32_t folded = Fold_Of(c); folded != c && (c < 0xD800 || c > 0xDFFF))
        all.emplace_back(folded, c);
    std::sort(all.begin(), all.end());
    return all;
  }();
  return kAll;
}

// The first byte offset of the character that ends before `at`.
std::size_t Step_Back(std::string_view text, std::size_t at) {
  std::size_t begin = at - 1;
  while (begin > 0 && at - begin < 4 && (static_cast<unsigned char>(text[begin]) & 0xC0) == 0x80)
    --begin;
  std::size_t behind = begin;
  (void)Next_Code_Point(text, behind);
  return behind == at ? begin : at - 1;  // a byte that is no UTF-8 stands alone
}

}  // namespace

char32_t Fold_Of(char32_t c) {
  if (c < 0x80) return c >= U'A' && c <= U'Z' ? c + (U'a' - U'A') : c;
  if (c >= 0xFF01 && c <= 0xFF5E)
    c -= 0xFF01 - 0x21;
  else if (c == 0x3000)
    return U' ';
  else if (c >= kHalf_Katakana && c <= kHalf_Katakana_End)
    c = kFull_Katakana[c - kHalf_Katakana];
  else if (c >= 0xFFE0 && c <= 0xFFE6)
    return kHalf_Signs[c - 0xFFE0];
  if ((c >= 0x30A1 && c <= 0x30F6) || c == 0x30FD || c == 0x30FE) return c - 0x60;
  return Lower_Of(c);
}

Text_Finder::Text_Finder(std::string_view word, Compare compare) : compare_(compare) {
  std::u32string exact;
  for (std::size_t at = 0; at < word.size();) exact += Next_Code_Point(word, at);
  for (const char32_t c : exact) word_ += Seen(c);
  if (word_.empty()) return;
  const auto rarest = std::min_element(word_.begin(), word_.end(), [](char32_t a, char32_t b) {
    return Frequency(Fold_Of(a)) < Frequency(Fold_Of(b));
  });
  anchor_ = static_cast<std::size_t>(rarest - word_.begin());
  const auto add = [&](char32_t c) {
    std::string bytes;
    Append_Code_Point(bytes, c);
    Form form;
    form.size = bytes.size();
    std::copy(bytes.begin(), bytes.end(), form.bytes.begin());
    forms_.push_back(form);
  };
  add(*rarest);
  if (compare == Compare::Binary) return;
  const auto& all = All_Folded();
  for (auto at = std::lower_bound(all.begin(), all.end(), Same(*rarest, 0));
       at != all.end() && at->first == *rarest && forms_.size() < kMost_Forms; ++at)
    add(at->second);
}

// The first place of a form that begins in [from, to), or the text's size. Of a character's bytes
// the last one varies most.
std::size_t Text_Finder::Seek(const Form& form, std::string_view text, std::size_t from,
                              std::size_t to) {
  const std::size_t last = form.size - 1;
  const std::size_t end = std::min(text.size(), to + last);
  for (std::size_t at = from + last; at < end;) {
    const void* hit = std::memchr(text.data() + at, form.bytes[last], end - at);
    if (hit == nullptr) break;
    at = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
    if (std::memcmp(text.data() + at - last, form.bytes.data(), last) == 0) return at - last;
    ++at;
  }
  return text.size();
}

std::optional<Text_Span> Text_Finder::Fits(std::string_view text, Text_Span anchor) const {
  std::size_t end = anchor.End();
  for (std::size_t i = anchor_ + 1; i < word_.size(); ++i)
    if (end >= text.size() || Seen(Next_Code_Point(text, end)) != word_[i]) return std::nullopt;
  std::size_t begin = anchor.at;
  for (std::size_t i = anchor_; i > 0; --i) {
    if (begin == 0) return std::nullopt;
    begin = Step_Back(text, begin);
    std::size_t at = begin;
    if (Seen(Next_Code_Point(text, at)) != word_[i - 1]) return std::nullopt;
  }
  return Text_Span{begin, end - begin};
}

std::optional<Text_Span> Text_Finder::Find(std::string_view text, std::size_t from) const {
  std::array<std::size_t, kMost_Forms> next{};
  for (std::size_t begin = from; begin < text.size() && !forms_.empty(); begin += kPiece) {
    const std::size_t end = std::min(begin + kPiece, text.size());
    for (std::size_t i = 0; i < forms_.size(); ++i) next[i] = Seek(forms_[i], text, begin, end);
    while (true) {
      const auto first =
          std::min_element(next.begin(), next.begin() + static_cast<std::ptrdiff_t>(forms_.size()));
      if (*first >= end) break;
      const Form& form = forms_[static_cast<std::size_t>(first - next.begin())];
      const auto span = Fits(text, {*first, form.size});
      if (span && span->at >= from) return span;
      *first = Seek(form, text, *first + form.size, end);
    }
  }
  return std::nullopt;
}

}  // namespace oru::service
