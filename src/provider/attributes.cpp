// SPDX-License-Identifier: MIT
#include "provider/attributes.h"

#include <algorithm>
#include <optional>

#include "host/line_class.h"
#include "provider/declarations.h"
#include "service/text.h"

namespace oru::provider {
namespace {

class Placer {
 public:
  Placer(std::span<const std::string_view> old_code, std::span<const std::string_view> new_code,
         std::span<const std::size_t> match)
      : old_code_(old_code),
        new_code_(new_code),
        match_(match),
        place_of_(old_code.size(), kNo_Line) {
    for (std::size_t i = 0; i < match.size(); ++i)
      if (match[i] != kNo_Line) place_of_[match[i]] = i;
  }

  std::size_t Place(const Hidden_Lines& hidden) {
    if (hidden.behind == 0) return 0;
    if (const auto owner = Owner_Of(hidden)) return Behind_Member(hidden, *owner);
    std::size_t line = hidden.behind;
    while (line > 0 && place_of_[line - 1] == kNo_Line) --line;
    return line == 0 ? 0 : Statement_End(place_of_[line - 1]) + 1;
  }

 private:
  /// The declaration that an attribute belongs to: the last one of its name before it.
  std::optional<Declaration> Owner_Of(const Hidden_Lines& hidden) {
    if (hidden.member.empty()) return std::nullopt;
    if (!declared_) {
      was_ = Find_Declarations(old_code_);
      is_ = Find_Declarations(new_code_);
      declared_ = true;
    }
    name_ = service::To_Lower(hidden.member);
    std::optional<Declaration> owner;
    if (const auto at = was_.find(name_); at != was_.end())
      for (const Declaration& declaration : at->second)
        if (declaration.last < hidden.behind) owner = declaration;
    return owner;
  }

  std::size_t Behind_Member(const Hidden_Lines& hidden, const Declaration& owner) const {
    const auto now = Member_Now(owner);
    if (!now) return kNo_Line;
    std::size_t place = now->last + 1;
    // Lines may stand between the declaration and the attribute; behind them again if they do.
    const std::size_t gap = hidden.behind - 1 - owner.last;
    if (place + gap <= new_code_.size() &&
        std::equal(old_code_.begin() + Offset(owner.last + 1),
                   old_code_.begin() + Offset(hidden.behind), new_code_.begin() + Offset(place)))
      place += gap;
    return place;
  }

  /// The declaration as it stands in the new code, edited or not.
  std::optional<Declaration> Member_Now(const Declaration& owner) const {
    const auto at = is_.find(name_);
    if (at == is_.end()) return std::nullopt;
    std::size_t low = owner.first, high = owner.last + 1;
    while (low > 0 && place_of_[low - 1] == kNo_Line) --low;
    while (high < place_of_.size() && place_of_[high] == kNo_Line) ++high;
    const std::size_t from = low == 0 ? 0 : place_of_[low - 1] + 1;
    const std::size_t to = high == place_of_.size() ? new_code_.size() : place_of_[high];

    // From the surest to the least sure: the same line, a new line in the old one's place, a new
    // line elsewhere (moved), a new line with another kind (a Sub made a Function is still a Sub
    // for the host, but a variable may have become a property).
    const Declaration* best = nullptr;
    int best_rank = 0;
    for (const Declaration& candidate : at->second) {
      const bool same_kind = candidate.kind == owner.kind;
      int rank = 0;
      if (same_kind && place_of_[owner.first] == candidate.first) {
        rank = 4;
      } else if (match_[candidate.first] != kNo_Line && match_[candidate.last] != kNo_Line) {
        continue;  // it was there before, with attributes of its own
      } else {
        const bool in_place = candidate.first >= from && candidate.last < to;
        rank = same_kind ? (in_place ? 3 : 2) : 1;
      }
      if (rank > best_rank) {
        best = &candidate;
        best_rank = rank;
      }
    }
    return best == nullptr ? std::nullopt : std::optional(*best);
  }

  /// Last line of the statement that a line belongs to: nothing may come between its lines.
  std::size_t Statement_End(std::size_t line) const {
    while (line + 1 < new_code_.size() && host::Is_Continued(new_code_[line])) ++line;
    return line;
  }

  static std::ptrdiff_t Offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

  std::span<const std::string_view> old_code_, new_code_;
  std::span<const std::size_t> match_;
  std::vector<std::size_t> place_of_;  ///< for each old line its new one, or kNo_Line
  Declarations was_, is_;
  bool declared_ = false;
  std::string name_;  ///< of the member in hand, in lower case
};

}  // namespace

std::vector<std::size_t> Place_Hidden(std::span<const Hidden_Lines> hidden,
                                      std::span<const std::string_view> old_code,
                                      std::span<const std::string_view> new_code,
                                      std::span<const std::size_t> match) {
  Placer placer(old_code, new_code, match);
  std::vector<std::size_t> places;
  places.reserve(hidden.size());
  for (const Hidden_Lines& lines : hidden) places.push_back(placer.Place(lines));
  return places;
}

}  // namespace oru::provider
