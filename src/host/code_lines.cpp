// SPDX-License-Identifier: MIT
#include "host/code_lines.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace oru::host {
namespace {

constexpr std::size_t kFill = 512;       // lines in a new block
constexpr std::size_t kMost = 1024;      // lines that a block may grow to
constexpr std::size_t kSlack = 1 << 16;  // unused bytes that are never worth a clean-up
constexpr std::uint32_t kWritten = 0x80000000U;
constexpr std::uint8_t kStructure = kLine_Opens | kLine_Closes;

/// Cuts a text into lines. The next CR and the next LF are remembered, so that a text which has
/// only one of them is not searched again and again for the other.
class Line_Cutter {
 public:
  explicit Line_Cutter(std::string_view text) : text_(text) {}

  [[nodiscard]] std::size_t At() const { return at_; }
  [[nodiscard]] bool At_End() const { return at_ == text_.size(); }
  /// True if the last line taken had a line end, and if that was CR LF.
  [[nodiscard]] bool Had_End() const { return end_size_ != 0; }
  [[nodiscard]] bool Had_Cr_Lf() const { return end_size_ == 2; }

  std::string_view Take() {
    const std::size_t lf = Next('\n', lf_);
    const std::size_t end = std::min(lf, Next('\r', cr_));
    const std::string_view line = text_.substr(at_, end - at_);
    const std::string_view rest = text_.substr(end);
    if (rest.empty())
      end_size_ = 0;
    else if (rest.starts_with("\r\n"))
      end_size_ = 2;
    else if (rest.starts_with("\r\r\n"))
      end_size_ = 3;
    else
      end_size_ = 1;
    at_ = end + end_size_;
    return line;
  }

 private:
  std::size_t Next(char what, std::size_t& known) {
    if (known < at_ || known == npos) {
      const void* hit =
          at_ == text_.size() ? nullptr : std::memchr(text_.data() + at_, what, text_.size() - at_);
      known = hit == nullptr
                  ? text_.size()
                  : static_cast<std::size_t>(static_cast<const char*>(hit) - text_.data());
    }
    return known;
  }

  static constexpr std::size_t npos = std::string_view::npos;
  std::string_view text_;
  std::size_t at_ = 0, lf_ = npos, cr_ = npos, end_size_ = 0;
};

bool Is_White(std::string_view line) {
  for (const char c : line)
    if (c != ' ' && c != '\t') return false;
  return true;
}

void Check_Size(std::size_t bytes) {
  if (bytes > Code_Lines::kMax_Bytes)
    throw Host_Error(kErr_Memory, "モジュールのテキストが大きすぎます。");
}

}  // namespace

bool Code_Lines::Block::Has(std::uint8_t flags) const {
  return ((flags & kLine_Opens) != 0 && opens > 0) || ((flags & kLine_Closes) != 0 && closes > 0) ||
         ((flags & kLine_Code) != 0 && codes > 0);
}

void Code_Lines::Block::Count_Again() {
  opens = closes = codes = 0;
  for (const std::uint8_t verdict : verdicts) {
    opens += (verdict & kLine_Opens) != 0;
    closes += (verdict & kLine_Closes) != 0;
    codes += (verdict & kLine_Code) != 0;
  }
}

void Code_Lines::Block::Put(std::size_t index, std::uint8_t verdict) {
  const std::uint8_t old = verdicts[index];
  opens += ((verdict & kLine_Opens) != 0) - ((old & kLine_Opens) != 0);
  closes += ((verdict & kLine_Closes) != 0) - ((old & kLine_Closes) != 0);
  codes += ((verdict & kLine_Code) != 0) - ((old & kLine_Code) != 0);
  verdicts[index] = verdict;
}

void Code_Lines::Load(std::string text) {
  Check_Size(text.size());
  std::vector<Block> blocks;
  std::string copy;  // takes over at the first line that is not held as it stands
  bool copying = false;
  int count = 0;
  std::size_t live = 0;
  Line_State state = Line_State::Fresh;
  for (Line_Cutter cutter(text); !cutter.At_End();) {
    const std::size_t from = cutter.At();
    std::string_view line = cutter.Take();
    const bool white = !line.empty() && Is_White(line);
    if (white) line = {};
    if (!copying && (white || (cutter.Had_End() && !cutter.Had_Cr_Lf()))) {
      copying = true;
      copy.reserve(text.size() + text.size() / 32 + 2);
      copy.assign(text, 0, from);
    }
    const std::size_t at = copying ? copy.size() : from;
    if (copying) copy.append(line).append("\r\n");
    if (blocks.empty() || blocks.back().spans.size() == kFill) {
      blocks.emplace_back();
      blocks.back().spans.reserve(kFill);
      blocks.back().verdicts.reserve(kFill);
    }
    const std::uint8_t verdict = Judge_Line(line, state);
    state = State_Of(verdict);
    blocks.back().spans.push_back(
        {static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(line.size())});
    blocks.back().verdicts.push_back(verdict);
    live += line.size() + 2;
    ++count;
  }
  if (copying) Check_Size(copy.size());
  if (blocks.empty()) blocks.emplace_back();
  for (Block& block : blocks) block.Count_Again();

  loaded_ = copying ? std::move(copy) : std::move(text);
  written_.clear();
  written_.shrink_to_fit();
  blocks_ = std::move(blocks);
  count_ = count;
  live_ = live;
  Number_From(0);
  ++edits_;
  ++structure_edits_;
}

std::string_view Code_Lines::View(Span span) const {
  const std::string& buffer = (span.at & kWritten) != 0 ? written_ : loaded_;
  return {buffer.data() + (span.at & ~kWritten), span.size};
}

Code_Lines::Place Code_Lines::Find(int line) const {
  const auto behind = std::upper_bound(first_.begin(), first_.end(), line);
  const auto block = static_cast<std::size_t>(behind - first_.begin()) - 1;
  return {block, static_cast<std::size_t>(line - first_[block])};
}

std::string_view Code_Lines::Line(int line) const {
  const Place place = Find(line);
  return View(blocks_[place.block].spans[place.index]);
}

std::uint8_t Code_Lines::Verdict(int line) const {
  const Place place = Find(line);
  return blocks_[place.block].verdicts[place.index];
}

Line_State Code_Lines::Before(int line) const {
  return line <= 1 ? Line_State::Fresh : State_Of(Verdict(line - 1));
}

Code_Lines::Run Code_Lines::Run_From(int start) const {
  Place place = Find(start);
  Span run = blocks_[place.block].spans[place.index];
  int count = 0;
  for (; place.block < blocks_.size(); ++place.block, place.index = 0) {
    const auto& spans = blocks_[place.block].spans;
    for (; place.index < spans.size(); ++place.index, ++count) {
      const Span span = spans[place.index];
      if (count > 0 && run.at + run.size + 2 != span.at) return {count, View(run)};
      run.size = span.at + span.size - run.at;
    }
  }
  return {count, View(run)};
}

std::string Code_Lines::Join(int start, int count) const {
  std::string text;
  if (count <= 0) return text;
  Place place = Find(start);
  std::size_t bytes = static_cast<std::size_t>(count - 1) * 2;
  for (auto [at, left] = std::pair(place, count); left > 0; ++at.block, at.index = 0) {
    const auto& spans = blocks_[at.block].spans;
    for (; at.index < spans.size() && left > 0; ++at.index, --left) bytes += spans[at.index].size;
  }
  text.reserve(bytes);

  // Both buffers hold CR LF behind each line that another one follows, so that lines which stand
  // there one behind the other are copied in one go.
  Span run{0, 0};
  bool running = false;
  for (int n = count; n > 0; ++place.block, place.index = 0) {
    const auto& spans = blocks_[place.block].spans;
    for (; place.index < spans.size() && n > 0; ++place.index, --n) {
      const Span span = spans[place.index];
      if (running && run.at + run.size + 2 == span.at) {
        run.size += 2 + span.size;
        continue;
      }
      if (running) text.append(View(run)).append("\r\n");
      run = span;
      running = true;
    }
  }
  return text.append(View(run));
}

std::vector<Code_Lines::Span> Code_Lines::Add_Text(std::string_view text) {
  Check_Size(written_.size() + text.size() * 2 + 2);
  std::vector<Span> spans;
  for (Line_Cutter cutter(text);;) {
    std::string_view line = cutter.Take();
    if (Is_White(line)) line = {};
    spans.push_back({static_cast<std::uint32_t>(written_.size()) | kWritten,
                     static_cast<std::uint32_t>(line.size())});
    written_.append(line).append("\r\n");
    if (!cutter.Had_End()) return spans;
  }
}

void Code_Lines::Replace(int start, int removed, std::string_view text) {
  Splice(start, removed, Add_Text(text));
}

void Code_Lines::Delete(int start, int count) {
  if (count > 0) Splice(start, count, {});
}

void Code_Lines::Splice(int start, int removed, const std::vector<Span>& added) {
  const auto added_count = static_cast<int>(added.size());
  const Line_State old_behind = Before(start + removed);
  bool structure = false;
  for (int line = start; line < start + removed; ++line) {
    const Place place = Find(line);
    const Block& block = blocks_[place.block];
    live_ -= block.spans[place.index].size + std::size_t{2};
    structure = structure || (block.verdicts[place.index] & kStructure) != 0;
  }
  for (const Span span : added) live_ += span.size + std::size_t{2};

  const int common = std::min(removed, added_count);
  for (int i = 0; i < common; ++i) {
    const Place place = Find(start + i);
    blocks_[place.block].spans[place.index] = added[static_cast<std::size_t>(i)];
  }
  if (removed > common) Erase(start + common, removed - common);
  if (added_count > common)
    Insert(start + common, added.data() + common, static_cast<std::size_t>(added_count - common));
  ++edits_;
  if (structure) ++structure_edits_;
  Judge(start, added_count, old_behind);
  Clean_Up();
}

void Code_Lines::Erase(int start, int count) {
  const auto cut = [](Block& block, std::size_t from, std::size_t to) {
    const auto a = static_cast<std::ptrdiff_t>(from), b = static_cast<std::ptrdiff_t>(to);
    block.spans.erase(block.spans.begin() + a, block.spans.begin() + b);
    block.verdicts.erase(block.verdicts.begin() + a, block.verdicts.begin() + b);
    block.Count_Again();
  };
  const Place from = Find(start);
  const Place last = Find(start + count - 1);
  if (from.block == last.block) {
    cut(blocks_[from.block], from.index, last.index + 1);
  } else {
    cut(blocks_[from.block], from.index, blocks_[from.block].spans.size());
    cut(blocks_[last.block], 0, last.index + 1);
    blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(from.block) + 1,
                  blocks_.begin() + static_cast<std::ptrdiff_t>(last.block));
  }
  count_ -= count;
  Join_Small(from.block);
  Number_From(from.block == 0 ? 0 : from.block - 1);
}

/// Keeps blocks from becoming many and tiny: joins the block with its neighbours while they fit.
void Code_Lines::Join_Small(std::size_t block) {
  const auto join = [this](std::size_t left) {
    if (left + 1 >= blocks_.size()) return;
    Block& a = blocks_[left];
    const Block& b = blocks_[left + 1];
    if (a.spans.size() + b.spans.size() > kFill && !a.spans.empty() && !b.spans.empty()) return;
    a.spans.insert(a.spans.end(), b.spans.begin(), b.spans.end());
    a.verdicts.insert(a.verdicts.end(), b.verdicts.begin(), b.verdicts.end());
    a.Count_Again();
    blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(left) + 1);
  };
  join(block);
  if (block > 0) join(block - 1);
}

void Code_Lines::Insert(int start, const Span* spans, std::size_t count) {
  // Behind the last line is behind the end of the last block, not a block of its own.
  const Place at = Find(start);
  Block& block = blocks_[at.block];
  const auto index = static_cast<std::ptrdiff_t>(at.index);
  block.spans.insert(block.spans.begin() + index, spans, spans + count);
  block.verdicts.insert(block.verdicts.begin() + index, count, std::uint8_t{0});
  if (block.spans.size() > kMost) {
    const Block whole = std::move(block);
    const std::size_t total = whole.spans.size();
    const std::size_t parts = (total + kMost - 1) / (kMost * 3 / 4);
    std::vector<Block> pieces(parts);
    for (std::size_t i = 0; i < parts; ++i) {
      const auto a = static_cast<std::ptrdiff_t>(total * i / parts);
      const auto b = static_cast<std::ptrdiff_t>(total * (i + 1) / parts);
      pieces[i].spans.assign(whole.spans.begin() + a, whole.spans.begin() + b);
      pieces[i].verdicts.assign(whole.verdicts.begin() + a, whole.verdicts.begin() + b);
      pieces[i].Count_Again();
    }
    blocks_[at.block] = std::move(pieces.front());
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(at.block) + 1,
                   std::make_move_iterator(pieces.begin() + 1),
                   std::make_move_iterator(pieces.end()));
  }
  count_ += static_cast<int>(count);
  Number_From(at.block);
}

void Code_Lines::Number_From(std::size_t block) {
  first_.resize(blocks_.size());
  int line = 1;
  if (block > 0) line = first_[block - 1] + static_cast<int>(blocks_[block - 1].spans.size());
  for (; block < blocks_.size(); ++block) {
    first_[block] = line;
    line += static_cast<int>(blocks_[block].spans.size());
  }
}

void Code_Lines::Judge(int line, int count, Line_State old_state_behind) {
  Line_State state = Before(line);
  bool structure = false;
  for (int i = 0; line <= count_; ++line, ++i) {
    if (i >= count && state == old_state_behind) break;
    const Place place = Find(line);
    Block& block = blocks_[place.block];
    const std::uint8_t old = block.verdicts[place.index];
    const std::uint8_t verdict = Judge_Line(View(block.spans[place.index]), state);
    structure = structure || ((old | verdict) & kStructure) != 0;
    if (i >= count) old_state_behind = State_Of(old);
    block.Put(place.index, verdict);
    state = State_Of(verdict);
  }
  if (structure) ++structure_edits_;
}

void Code_Lines::Clean_Up() {
  if (loaded_.size() + written_.size() <= 2 * live_ + kSlack) return;
  std::string text;
  text.reserve(live_);
  for (Block& block : blocks_)
    for (Span& span : block.spans) {
      const std::string_view line = View(span);
      span.at = static_cast<std::uint32_t>(text.size());
      text.append(line).append("\r\n");
    }
  loaded_ = std::move(text);
  written_.clear();
  written_.shrink_to_fit();
}

int Code_Lines::Next_With(int line, std::uint8_t flags) const {
  if (line > count_) return 0;
  auto [block, index] = Find(std::max(line, 1));
  for (; block < blocks_.size(); ++block, index = 0) {
    if (!blocks_[block].Has(flags)) continue;
    const auto& verdicts = blocks_[block].verdicts;
    for (; index < verdicts.size(); ++index)
      if ((verdicts[index] & flags) != 0) return first_[block] + static_cast<int>(index);
  }
  return 0;
}

int Code_Lines::Prev_With(int line, std::uint8_t flags) const {
  line = std::min(line, count_);
  if (line < 1) return 0;
  const Place place = Find(line);
  std::size_t end = place.index + 1;
  for (std::size_t block = place.block + 1; block-- > 0;) {
    const auto& verdicts = blocks_[block].verdicts;
    if (block != place.block) end = verdicts.size();
    if (!blocks_[block].Has(flags)) continue;
    for (; end > 0; --end)
      if ((verdicts[end - 1] & flags) != 0) return first_[block] + static_cast<int>(end) - 1;
  }
  return 0;
}

int Code_Lines::Openings_Before(int line) const {
  if (line > count_) line = count_ + 1;
  if (line <= 1) return 0;
  const Place place = Find(line - 1);
  int count = 0;
  for (std::size_t block = 0; block < place.block; ++block) count += blocks_[block].opens;
  for (std::size_t i = 0; i <= place.index; ++i)
    count += (blocks_[place.block].verdicts[i] & kLine_Opens) != 0;
  return count;
}

int Code_Lines::Nth_Opening(int n) const {
  for (std::size_t block = 0; block < blocks_.size(); n -= blocks_[block].opens, ++block) {
    if (n >= blocks_[block].opens) continue;
    const auto& verdicts = blocks_[block].verdicts;
    for (std::size_t i = 0; i < verdicts.size(); ++i)
      if ((verdicts[i] & kLine_Opens) != 0 && n-- == 0) return first_[block] + static_cast<int>(i);
  }
  return 0;
}

std::size_t Code_Lines::Memory() const {
  std::size_t bytes = loaded_.capacity() + written_.capacity() + first_.capacity() * sizeof(int) +
                      blocks_.capacity() * sizeof(Block);
  for (const Block& block : blocks_)
    bytes += block.spans.capacity() * sizeof(Span) + block.verdicts.capacity();
  return bytes;
}

}  // namespace oru::host
