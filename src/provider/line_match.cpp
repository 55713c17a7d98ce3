// SPDX-License-Identifier: MIT
#include "provider/line_match.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace oru::provider {
namespace {

/// Half-open stretches of both texts that are still to be matched.
struct Stretch {
  std::size_t old_begin, old_end, now_begin, now_end;
  int depth;
};

class Matcher {
 public:
  Matcher(std::span<const std::string_view> old, std::span<const std::string_view> now)
      : old_(old), now_(now), match_(now.size(), kNo_Line) {}

  std::vector<std::size_t> Match() {
    open_.push_back({0, old_.size(), 0, now_.size(), 0});
    while (!open_.empty()) {
      Stretch s = open_.back();
      open_.pop_back();
      Trim(s);
      if (s.old_begin == s.old_end || s.now_begin == s.now_end) continue;
      if (s.depth < kMax_Depth && Split(s)) continue;
      Compare(s);
    }
    return std::move(match_);
  }

 private:
  static constexpr int kMax_Depth = 16;               // a bound on the work for hostile texts
  static constexpr std::size_t kMax_Cells = 1 << 20;  // of a full comparison

  void Trim(Stretch& s) {
    while (s.old_begin < s.old_end && s.now_begin < s.now_end &&
           old_[s.old_begin] == now_[s.now_begin])
      match_[s.now_begin++] = s.old_begin++;
    while (s.old_begin < s.old_end && s.now_begin < s.now_end &&
           old_[s.old_end - 1] == now_[s.now_end - 1])
      match_[--s.now_end] = --s.old_end;
  }

  /// Pairs the lines that come once on each side, as many as rise together, and leaves what lies
  /// between them for later. False if there is no such line.
  bool Split(const Stretch& s) {
    struct Place {
      std::size_t old_count = 0, now_count = 0, old_at = 0;
    };
    std::unordered_map<std::string_view, Place> places;
    for (std::size_t i = s.old_begin; i < s.old_end; ++i) {
      Place& place = places[old_[i]];
      ++place.old_count;
      place.old_at = i;
    }
    for (std::size_t i = s.now_begin; i < s.now_end; ++i)
      if (const auto at = places.find(now_[i]); at != places.end()) ++at->second.now_count;

    std::vector<std::pair<std::size_t, std::size_t>> pairs;  // (now, old), rising in `now`
    for (std::size_t i = s.now_begin; i < s.now_end; ++i) {
      const auto at = places.find(now_[i]);
      if (at != places.end() && at->second.old_count == 1 && at->second.now_count == 1)
        pairs.emplace_back(i, at->second.old_at);
    }
    if (pairs.empty()) return false;

    Stretch between = s;
    ++between.depth;
    for (const auto& [now, old] : Longest_Rise(pairs)) {
      match_[now] = old;
      between.old_end = old;
      between.now_end = now;
      open_.push_back(between);
      between.old_begin = old + 1;
      between.now_begin = now + 1;
    }
    between.old_end = s.old_end;
    between.now_end = s.now_end;
    open_.push_back(between);
    return true;
  }

  /// The longest part of the pairs whose old lines rise too.
  static std::vector<std::pair<std::size_t, std::size_t>> Longest_Rise(
      const std::vector<std::pair<std::size_t, std::size_t>>& pairs) {
    std::vector<std::size_t> tails;  // tails[k]: the pair that ends the best rise of length k + 1
    std::vector<std::size_t> before(pairs.size(), kNo_Line);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      const auto at = std::lower_bound(
          tails.begin(), tails.end(), i,
          [&](std::size_t a, std::size_t b) { return pairs[a].second < pairs[b].second; });
      if (at != tails.begin()) before[i] = *(at - 1);
      if (at == tails.end())
        tails.push_back(i);
      else
        *at = i;
    }
    std::vector<std::pair<std::size_t, std::size_t>> rise;
    for (std::size_t i = tails.back(); i != kNo_Line; i = before[i]) rise.push_back(pairs[i]);
    std::reverse(rise.begin(), rise.end());
    return rise;
  }

  /// The longest common subsequence, where the stretch is short enough for it. Of several, the one
  /// line by line: a formatter that indents every line leaves only the empty ones equal.
  void Compare(const Stretch& s) {
    const std::size_t rows = s.old_end - s.old_begin, columns = s.now_end - s.now_begin;
    std::size_t in_place = 0;
    for (std::size_t i = 0; rows == columns && i < rows; ++i)
      in_place += old_[s.old_begin + i] == now_[s.now_begin + i];
    const auto pair_in_place = [&] {
      for (std::size_t i = 0; i < rows; ++i)
        if (old_[s.old_begin + i] == now_[s.now_begin + i])
          match_[s.now_begin + i] = s.old_begin + i;
    };
    if (rows > kMax_Cells / columns) {
      if (in_place > 0) pair_in_place();
      return;
    }
    std::vector<std::uint32_t> length((rows + 1) * (columns + 1), 0);
    const auto at = [&](std::size_t row, std::size_t column) -> std::uint32_t& {
      return length[row * (columns + 1) + column];
    };
    for (std::size_t r = rows; r-- > 0;)
      for (std::size_t c = columns; c-- > 0;)
        at(r, c) = old_[s.old_begin + r] == now_[s.now_begin + c]
                       ? at(r + 1, c + 1) + 1
                       : std::max(at(r + 1, c), at(r, c + 1));
    if (in_place > 0 && in_place == at(0, 0)) return pair_in_place();
    for (std::size_t r = 0, c = 0; r < rows && c < columns;) {
      if (old_[s.old_begin + r] == now_[s.now_begin + c]) {
        match_[s.now_begin + c++] = s.old_begin + r++;
      } else if (at(r + 1, c) >= at(r, c + 1)) {
        ++r;
      } else {
        ++c;
      }
    }
  }

  std::span<const std::string_view> old_, now_;
  std::vector<std::size_t> match_;
  std::vector<Stretch> open_;
};

}  // namespace

std::vector<std::size_t> Match_Lines(std::span<const std::string_view> old,
                                     std::span<const std::string_view> now) {
  return Matcher(old, now).Match();
}

}  // namespace oru::provider
