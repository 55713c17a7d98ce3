// SPDX-License-Identifier: MIT
#include "analyser/analysis_lines.h"

#include <fmt/format.h>
#include <xxhash.h>

#include <algorithm>
#include <charconv>
#include <new>
#include <utility>

namespace oru::analyser {

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view kLine_End = "\r\n";
// The last line: what the compared texts cannot show of the lines of each module, and a checksum of
// all that stands before it.
constexpr std::string_view kSum_Tag = "#Sum";
constexpr std::size_t kSum_Digits = 16;
constexpr std::size_t kBlock = std::size_t{1} << 18;

// For each module the hash of its line lengths and the number of its lines: "hash,count;".
std::string Line_Marks(const Tables& tables) {
  std::string marks;
  for (const auto& item : tables.Mdl_Tbl)
    marks += fmt::format("{:x},{};", item.value->Lin_Hash, item.value->Lin_Cnt);
  return marks;
}

bool Set_Line_Marks(Tables& tables, std::string_view marks) {
  const char* at = marks.data();
  const char* const end = at + marks.size();
  for (const auto& item : tables.Mdl_Tbl) {
    const auto hash = std::from_chars(at, end, item.value->Lin_Hash, 16);
    if (hash.ec != std::errc() || hash.ptr == end || *hash.ptr != ',') return false;
    const auto count = std::from_chars(hash.ptr + 1, end, item.value->Lin_Cnt);
    if (count.ec != std::errc() || count.ptr == end || *count.ptr != ';') return false;
    at = count.ptr + 1;
  }
  return at == end;
}

}  // namespace

struct Checksum::State {
  std::unique_ptr<XXH3_state_t, decltype(&XXH3_freeState)> xxh{XXH3_createState(), XXH3_freeState};
};

Checksum::Checksum() : state_(std::make_unique<State>()) {
  if (!state_->xxh) throw std::bad_alloc();
  XXH3_64bits_reset(state_->xxh.get());
}

Checksum::~Checksum() = default;

void Checksum::Add(std::string_view bytes) {
  XXH3_64bits_update(state_->xxh.get(), bytes.data(), bytes.size());
}

std::string Checksum::Text() const {
  return fmt::format("{:016x}", XXH3_64bits_digest(state_->xxh.get()));
}

Line_Writer::Line_Writer(service::New_File& file) : file_(file) {
  buffer_.reserve(kBlock * 2);
}

void Line_Writer::Put(std::string_view tag, std::string_view payload) {
  if (payload.find('\n') != npos || payload.find('\r') != npos) bad_ = true;
  buffer_.append(tag).append(payload).append(kLine_End);
  if (buffer_.size() >= kBlock) Flush();
}

bool Line_Writer::End(const Tables& tables) {
  buffer_.append(kSum_Tag).append(Line_Marks(tables));
  Flush();
  file_.Put(sum_.Text().append(kLine_End));
  return !bad_;
}

void Line_Writer::Flush() {
  sum_.Add(buffer_);
  file_.Put(buffer_);
  buffer_.clear();
}

bool Line_Reader::Take(std::string_view block) {
  if (!rest_.empty()) {
    const std::size_t feed = block.find('\n');
    rest_ += block.substr(0, feed == npos ? npos : feed + 1);
    if (feed == npos) return true;
    block.remove_prefix(feed + 1);
    const std::string line = std::exchange(rest_, {});
    if (Line(line) && !ended_) sum_.Add(line);
  }
  // The lines that stand in the block are summed up at once.
  std::size_t at = 0;
  while (why_.empty() && at < block.size()) {
    const std::size_t feed = block.find('\n', at);
    if (ended_) return Fail("text behind the end");
    if (feed == npos) break;
    if (block.substr(at).starts_with(kSum_Tag)) {
      sum_.Add(block.substr(0, at));
      summed_ = true;
    }
    if (!Line(block.substr(at, feed + 1 - at))) return false;
    at = feed + 1;
  }
  if (!summed_) sum_.Add(block.substr(0, at));
  if (!ended_) rest_ = block.substr(at);
  return why_.empty();
}

std::string Line_Reader::Finish() {
  if (!ended_) (void)Fail("ends too early");
  if (why_.empty() && !reader_.Finish()) why_ = reader_.Why();
  if (why_.empty() && !Set_Line_Marks(reader_.Tbl, line_marks_)) (void)Fail("line marks");
  return why_;
}

bool Line_Reader::Fail(std::string_view why) {
  if (why_.empty()) why_ = why;
  return false;
}

bool Line_Reader::Line(std::string_view line) {
  if (ended_) return Fail("text behind the end");
  if (!line.ends_with(kLine_End)) return Fail("a line without CR LF");
  const std::string_view text = line.substr(0, line.size() - kLine_End.size());
  if (text.find('\r') != npos) return Fail("a CR within a line");
  if (text.starts_with(kSum_Tag)) {
    ended_ = true;
    const std::size_t digits = text.size() - std::min(text.size(), kSum_Digits);
    sum_.Add(text.substr(0, digits));
    if (digits < kSum_Tag.size() || text.substr(digits) != sum_.Text())
      return Fail("another checksum");
    line_marks_ = text.substr(kSum_Tag.size(), digits - kSum_Tag.size());
    return true;
  }
  if (!reader_.Take(text)) return Fail(reader_.Why());
  if (text == "#End") module_done_();
  return true;
}

}  // namespace oru::analyser
