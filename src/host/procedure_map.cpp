// SPDX-License-Identifier: MIT
#include "host/procedure_map.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

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
    found_.reset();
  }
  if (structure_edits_ != lines_.Structure_Edits()) {
    structure_edits_ = lines_.Structure_Edits();
    index_.clear();
    indexed_ = false;
  }
}

Line_Header Procedure_Map::Header_At(int named) const {
  return Header_In_Line(lines_.Line(named), lines_.Before(named)).value_or(Line_Header{});
}

int Procedure_Map::Declaration_End() const {
  Forget_Old();
  if (!declaration_end_) declaration_end_ = Declaration_End_Of(lines_);
  return *declaration_end_;
}

Line_Header Procedure_Map::At(int line) const {
  if (line <= Declaration_End()) return {};
  if (line < last_.start || line > last_.end)
    last_ = Extent_Of(lines_, Named_At(lines_, line), Declaration_End());
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
  // Start, body and count of one procedure are asked for one after the other.
  if (found_ && found_kind_ == kind && found_name_ == name) return found_;
  if (!indexed_) Fill_Index();
  const std::size_t hash = Hash_Of(name, kind);
  auto entry = std::ranges::lower_bound(index_, hash, {}, &Index_Entry::hash);
  for (; entry != index_.end() && entry->hash == hash; ++entry) {
    const int named = lines_.Nth_Opening(entry->opening);
    const Line_Header header = Header_At(named);
    if (header.kind == kind && service::Equal_No_Case(header.name, name)) {
      found_ = Extent_Of(lines_, named, Declaration_End());
      found_name_ = name;
      found_kind_ = kind;
      return found_;
    }
  }
  return std::nullopt;
}

}  // namespace oru::host
