// SPDX-License-Identifier: MIT
// The matchers of two passes: definitions that may be unused, or whose uses are asked for, and the
// words that are such uses. Words are compared by the language's rules of scope, the most local
// name first, but only as text: a member of that name of another object counts as a use.
#include <algorithm>

#include "analyser/reader.h"
#include "query/search_run.h"
#include "query/statement_text.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::query {

using service::Trim;

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t kMost_With = 10;

// Whether a kind asks for definitions of that kind.
bool Asks_For(int code, char kind) {
  switch (kind) {
    case analyser::kDef_Dim:
    case analyser::kDef_Static:
    case analyser::kDef_WithEvents:
    case analyser::kDef_Variable:
      return code == kSearch_Unused_Variable || code == kSearch_Global_Use ||
             code == kSearch_Module_Use || code == kSearch_Local_Use ||
             code == kSearch_Assigned_Only;
    case analyser::kDef_Const:
      return code == kSearch_Unused_Constant;
    case analyser::kDef_Type:
      return code == kSearch_Unused_Type;
    case analyser::kDef_Enum:
      return code == kSearch_Unused_Enum;
    default:
      return false;
  }
}

bool Is_One_Of(int code, std::initializer_list<int> codes) {
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

bool Lists_Uses(int code) {
  return Is_One_Of(code, {kSearch_Global_Use, kSearch_Module_Use, kSearch_Local_Use});
}

// True for a character that no name begins with.
bool Begins_No_Name(char c) {
  return (c >= 33 && c <= 64) || (c >= 91 && c <= 96) || (c >= 123 && c <= 126);
}

}  // namespace

void Search_Run::Chk_ValCs() {
  const std::string statement = Joined(tested_);
  if (cond_.Knd == kSearch_Unused_Constant) {
    for (const std::string& part : Split_Constants(statement)) {
      analyser::Chk_Def_Inf(part, in_declare_, found_);
      for (const analyser::Def_Found& one : found_) Add_Candidate(one.Row);
    }
    return;
  }
  analyser::Chk_Def_Inf(statement, in_declare_, found_);
  for (const analyser::Def_Found& one : found_) Add_Candidate(one.Row);
}

void Search_Run::Add_Candidate(const analyser::Def_Row& row) {
  if (row.Def_Knd.empty() || row.Def_Scp.empty() || row.Def_Nam.empty() ||
      !Asks_For(cond_.Knd, row.Def_Knd[0]))
    return;
  Known known{Known::Reach::Module, cur_.Mdl.Mdl_Nam, {}, Cnd_Row.size()};
  switch (row.Def_Scp[0]) {
    case analyser::kScp_Local:
      if (!Is_One_Of(cond_.Knd, {kSearch_Unused_Variable, kSearch_Unused_Constant,
                                 kSearch_Local_Use, kSearch_Assigned_Only}))
        return;
      known.reach = Known::Reach::Member;
      known.mem = Mem_Nam;
      break;
    case analyser::kScp_Private:
    case analyser::kScp_Friend:
      if (Is_One_Of(cond_.Knd, {kSearch_Global_Use, kSearch_Local_Use})) return;
      break;
    case analyser::kScp_Public:
      if (cond_.Knd == kSearch_Local_Use ||
          (cond_.Knd == kSearch_Module_Use && cur_.Mdl.Mdl_Nam != view_.Viw_SMd))
        return;
      if (cur_.Mdl.Mdl_Typ == "1" || cur_.Mdl.Mdl_Typ == "2") {
        known.reach = Known::Reach::Project;
        known.mdl.clear();
      }
      // What decides by uses has to see those in all modules.
      if (!Lists_Uses(cond_.Knd)) Cnd_Glb = true;
      break;
    default:
      return;
  }
  std::vector<Known>& same_name = Cnd_Key[service::To_Lower(row.Def_Nam)];
  const bool there = std::any_of(same_name.begin(), same_name.end(), [&](const Known& other) {
    return other.reach == known.reach && other.mdl == known.mdl && other.mem == known.mem;
  });
  if (there) return;  // the first definition stays
  same_name.push_back(std::move(known));
  Cnd_Row.push_back({cur_.Mdl.Mdl_Nam, Mem_Nam, Src_Lin, row.Def_Nam, Mem_Ix, CMm_Sta, Src_Lno});
}

const Search_Run::Known* Search_Run::Find_Candidate(std::string_view word,
                                                    std::string_view before) const {
  const auto at = Cnd_Key.find(service::To_Lower(word));
  if (at == Cnd_Key.end()) return nullptr;
  const std::string_view with =
      Wth.empty() || Wth.back().Tgt.empty() ? std::string_view() : Wth.back().Tgt.back();
  // The most local one first; then one that is qualified by its module; then the public one.
  const auto rank = [&](const Known& known) {
    switch (known.reach) {
      case Known::Reach::Member:
        return known.mdl == cur_.Mdl.Mdl_Nam && known.mem == Mem_Nam ? 1 : 0;
      case Known::Reach::Module:
        if (known.mdl == cur_.Mdl.Mdl_Nam) return 2;
        if (service::Equal_No_Case(known.mdl, before)) return 3;
        return service::Equal_No_Case(known.mdl, with) ? 4 : 0;
      case Known::Reach::Project:
        return 5;
    }
    return 0;
  };
  const Known* best = nullptr;
  for (const Known& known : at->second)
    if (const int own = rank(known); own > 0 && (best == nullptr || own < rank(*best)))
      best = &known;
  return best;
}

void Search_Run::Use_Token(std::string_view padded, std::string_view token, std::size_t at,
                           std::string_view before) {
  if (token.empty() || Begins_No_Name(token.front())) return;
  if (kSuffixes.find(token.back()) != npos) token.remove_suffix(1);
  for (std::size_t end = token.size(); end > 0;) {
    const std::size_t dot = token.rfind('.', end - 1);
    const std::size_t begin = dot == npos ? 0 : dot + 1;
    if (const Known* known = Find_Candidate(token.substr(begin, end - begin), before);
        known != nullptr) {
      if (Lists_Uses(cond_.Knd))
        Add_Hit_Name(Cnd_Row[known->number].Nam);
      else
        Cnd_Flg[known->number] |=
            Chk_Let_Sta(padded, at + begin, cond_.Knd != kSearch_Assigned_Only) ? kSet : kRead;
    }
    if (dot == npos) return;
    end = dot;
  }
}

void Search_Run::Chk_Refer() {
  if (Is_Comment(tested_)) return;
  cut_ = tested_;
  (void)analyser::Sep_Comment(cut_);
  const std::string_view statement = Trim(cut_);
  if (statement.empty()) return;
  const bool types = cond_.Knd == kSearch_Unused_Type || cond_.Knd == kSearch_Unused_Enum;
  const std::string padded = Padded(cut_);
  if (statement.starts_with("With ")) {
    if (Wth.size() == kMost_With)
      throw service::Sys_Error(service::kOwn_Error, "修飾の制限数(10)を超過しました。");
    Wth.emplace_back().Tgt.emplace_back(statement.substr(5, statement.find(' ', 5) - 5));
  } else if (padded.find(" End With ") == padded.find_first_not_of(' ') - 1) {
    if (!Wth.empty()) Wth.pop_back();
    return;
  }
  const std::string_view first = statement.substr(0, statement.find(' '));
  if (first == "End" || first == "Else" || first == "Exit" || first == "On" || first == "Const")
    return;
  if ((first == "Dim" || first == "Static") && cond_.Knd != kSearch_Unused_Type) return;
  if (cond_.Knd == kSearch_Unused_Type &&
      (statement.starts_with("Type ") || statement.find(" Type ") != npos))
    return;

  constexpr std::string_view kBreaks = " (),.!:\r\n", kBreaks_Of_Types = " (),!:\r\n";
  const std::string_view breaks = types ? kBreaks_Of_Types : kBreaks;
  std::string_view before;
  for (std::size_t at = 0; at < padded.size();) {
    at = padded.find_first_not_of(breaks, at);
    if (at == npos) break;
    const std::size_t end = std::min(padded.find_first_of(breaks, at), padded.size());
    const std::string_view token = std::string_view(padded).substr(at, end - at);
    Use_Token(padded, token, at, before);
    before = token;
    at = end;
  }
  if (!Src_Hit.empty()) Set_Hit_Lst();
}

}  // namespace oru::query
