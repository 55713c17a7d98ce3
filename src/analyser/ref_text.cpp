// SPDX-License-Identifier: MIT
// The reference text: records that simply follow one another,
//   "%" caller "#" target "|" line list, flag
// and the marks that are derived from them.
#include "analyser/references.h"

namespace oru::analyser {

namespace {

constexpr auto npos = std::string_view::npos;

}  // namespace

void Join_Ref_Texts(Tables& tables) {
  std::size_t size = 0;
  for (const auto& item : tables.Ref_Tbl) size += item.value.size();
  tables.Ref_All.clear();
  tables.Ref_All.reserve(size);
  for (const auto& item : tables.Ref_Tbl) tables.Ref_All += item.value;

  std::size_t members = 0;
  for (const auto& item : tables.Mdl_Tbl) members += item.value->Mem.Count();
  tables.RIf_Dic.Clear(members);
  // A record's caller and target are all that counts here, and mostly the caller is the one before:
  // this runs over the whole text after every change of one module.
  const std::string_view text = tables.Ref_All;
  std::string_view caller;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t hash = at + 1 + caller.size();
    if (caller.empty() || hash >= text.size() || text[hash] != '#' ||
        text.compare(at + 1, caller.size(), caller) != 0) {
      hash = text.find('#', at);
      if (hash == npos) return;
      // A member's records stand one behind the other.
      caller = text.substr(at + 1, hash - at - 1);
      tables.RIf_Dic.Set(caller, Ref_Marks::kRefers);
    }
    const std::size_t bar = text.find('|', hash);
    if (bar == npos) return;
    tables.RIf_Dic.Set(text.substr(hash + 1, bar - hash - 1), Ref_Marks::kReferred);
    at = text.find('%', bar);
  }
}

bool Set_Ref_Fld(std::string_view text, const Ref_Filter& filter, Ref_Cursor& cursor) {
  std::string key;
  if (!filter.Caller.empty()) key.append("%").append(filter.Caller).append("#");
  while (cursor.Position < text.size()) {
    const std::size_t start = key.empty() ? cursor.Position : text.find(key, cursor.Position);
    if (start == npos) break;
    const std::size_t hash = text.find('#', start);
    const std::size_t bar = hash == npos ? npos : text.find('|', hash);
    if (bar == npos) break;
    const std::size_t end = std::min(text.find('%', bar), text.size());
    cursor.Position = end;
    if (end <= bar + 1) continue;

    Ref_Record& record = cursor.Record;
    record.Caller = text.substr(start + 1, hash - start - 1);
    const std::string_view target = text.substr(hash + 1, bar - hash - 1);
    const std::size_t dot = target.find('.');
    record.Target = target;
    record.Tgt_Mdl = target.substr(0, dot);
    record.Tgt_Mem = dot == npos ? std::string_view{} : target.substr(dot + 1);
    record.Ref_Lns = text.substr(bar + 1, end - bar - 2);
    record.Ref_Flg = text[end - 1];
    if ((filter.Tgt_Mdl.empty() || filter.Tgt_Mdl == record.Tgt_Mdl) &&
        (filter.Tgt_Mem.empty() || filter.Tgt_Mem == record.Tgt_Mem))
      return true;
  }
  cursor.Position = text.size();
  return false;
}

}  // namespace oru::analyser
