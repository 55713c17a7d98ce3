// SPDX-License-Identifier: MIT
#include "host/procedure_map.h"

#include <algorithm>
#include <functional>
#include <string>

#include "service/text.h"

namespace oru::host {
namespace {

std::size_t Hash_Of(std::string_view name, ProcKind kind) {
  std::string key = service::To_Lower(name);
  key.push_back(static_cast<char>('0' + static_cast<int>(kind)));
  return std::hash<std::string>{}(key);
}

}  // namespace

void Procedure_Map::Forget_Old() const {
  if (edits_ != lines_.Edits()) {
    edits_ = lines_.Edits();
    declaration_end_.reset();
    last_ = {};
  }
  if (structure_edits_ != lines_.Structure_Edits()) {
    structure_edits_ = lines_.Structure_Edits();
    index_.clear();
    indexed_ = false;
  }
}

int Procedure_Map::Body_Of(int named) const {
  int body = named;
  while (In_Header(lines_.Before(body))) --body;
  return body;
}

Line_Header Procedure_Map::Header_At(int named) const {
  return Header_In_Line(lines_.Line(named), lines_.Before(named)).value_or(Line_Header{});
}

int Procedure_Map::Declaration_End() const {
  Forget_Old();
  if (!declaration_end_) {
    const int named = lines_.Next_With(1, kLine_Opens);
    declaration_end_ =
        named == 0 ? lines_.Count() : lines_.Prev_With(Body_Of(named) - 1, kLine_Code);
  }
  return *declaration_end_;
}

Procedure_Extent Procedure_Map::Extent_Of(int named) const {
  Procedure_Extent extent;
  extent.named = named;
  extent.body = Body_Of(named);
  const int earlier = lines_.Prev_With(named - 1, kLine_Opens);
  // The first end behind any earlier opening is the end of the procedure before this one.
  extent.start = earlier == 0 ? Declaration_End() + 1 : lines_.Next_With(earlier, kLine_Closes) + 1;
  const int end = lines_.Next_With(named, kLine_Closes);
  const bool is_last = end == 0 || lines_.Next_With(end + 1, kLine_Opens) == 0;
  extent.end = is_last ? lines_.Count() : end;
  return extent;
}

int Procedure_Map::Named_At(int line) const {
  const int end = lines_.Prev_With(line - 1, kLine_Closes);
  const int named = lines_.Next_With(end + 1, kLine_Opens);
  if (named != 0) return named;
  const int last_opening = lines_.Prev_With(lines_.Count(), kLine_Opens);
  if (last_opening == 0) return 0;
  return lines_.Next_With(lines_.Prev_With(last_opening - 1, kLine_Closes) + 1, kLine_Opens);
}

Line_Header Procedure_Map::At(int line) const {
  if (line <= Declaration_End()) return {};
  if (line < last_.start || line > last_.end) {
    const int named = Named_At(line);
    if (named == 0) return {};
    last_ = Extent_Of(named);
  }
  return Header_At(last_.named);
}

void Procedure_Map::Fill_Index() const {
  index_.clear();
  int opening = 0;
  int end = 0;  // of the procedure in hand
  for (int line = lines_.Next_With(1, kLine_Opens); line != 0;
       line = lines_.Next_With(line + 1, kLine_Opens), ++opening) {
    if (opening > 0 && (end == 0 || line <= end)) continue;  // met while one is open
    const Line_Header header = Header_At(line);
    index_.push_back({Hash_Of(header.name, header.kind), opening});
    end = lines_.Next_With(line, kLine_Closes);
  }
  std::ranges::sort(index_, [](const Index_Entry& a, const Index_Entry& b) {
    return std::pair(a.hash, a.opening) < std::pair(b.hash, b.opening);
  });
  indexed_ = true;
}

std::optional<Procedure_Extent> Procedure_Map::Find(std::string_view name, ProcKind kind) const {
  Forget_Old();
  if (!indexed_) Fill_Index();
  const std::size_t hash = Hash_Of(name, kind);
  auto entry = std::ranges::lower_bound(index_, hash, {}, &Index_Entry::hash);
  for (; entry != index_.end() && entry->hash == hash; ++entry) {
    const int named = lines_.Nth_Opening(entry->opening);
    const Line_Header header = Header_At(named);
    if (header.kind == kind && service::Equal_No_Case(header.name, name)) return Extent_Of(named);
  }
  return std::nullopt;
}

}  // namespace oru::host
