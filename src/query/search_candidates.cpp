// SPDX-License-Identifier: MIT
// The matchers of two passes: definitions that may be unused, or whose uses are asked for, and the
// words that are such uses. Words are compared by the language's rules of scope, the most local
// name first, but only as text: a member of that name of another object counts as a use.
#include <algorithm>
#include <array>

#include "analyser/reader.h"
#include "query/search_run.h"
#include "query/statement_text.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::query {

using service::Trim;

namespace {

constexpr auto npos = std::string_view::npos;

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

bool Lists_Uses(int code) {
  return Is_One_Of(code, {kSearch_Global_Use, kSearch_Module_Use, kSearch_Local_Use});
}

struct Byte_Set {
  constexpr explicit Byte_Set(std::string_view bytes) {
    for (const char c : bytes) has[static_cast<unsigned char>(c)] = true;
  }
  [[nodiscard]] constexpr bool Has(char c) const { return has[static_cast<unsigned char>(c)]; }
  std::array<bool, 256> has{};
};
// What stands between words; the names of types keep their qualifier.
constexpr Byte_Set kBreaks(" (),.!:\r\n"), kBreaks_Of_Types(" (),!:\r\n");

// True for a character that no name begins with.
bool Begins_No_Name(char c) {
  return (c >= 33 && c <= 64) || (c >= 91 && c <= 96) || (c >= 123 && c <= 126);
}

}  // namespace

void Search_Run::Chk_ValCs() {
  if (!analyser::May_Define(tested_)) return;
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
  std::string owner = module_key_;
  unsigned reach = kOf_Module;
  switch (row.Def_Scp[0]) {
    case analyser::kScp_Local:
      if (!Is_One_Of(cond_.Knd, {kSearch_Unused_Variable, kSearch_Unused_Constant,
                                 kSearch_Local_Use, kSearch_Assigned_Only}))
        return;
      owner = member_key_;
      reach = kLocal;
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
        owner.clear();
        reach = kPublic;
      }
      // What decides by uses has to see those in all modules.
      if (!Lists_Uses(cond_.Knd)) Cnd_Glb = true;
      break;
    default:
      return;
  }
  // The first definition of a name stays.
  const std::string name = service::To_Lower(row.Def_Nam);
  if (!Cnd_Key[owner].emplace(name, Cnd_Row.size()).second) return;
  known_[name] |= reach;
  Cnd_Row.push_back({cur_.Mdl.Mdl_Nam, Mem_Nam, Src_Lin, row.Def_Nam, Mem_Ix, CMm_Sta, Src_Lno});
}

// The word in lower case; good until the next call.
std::string_view Search_Run::Folded(std::string_view word) const {
  const bool ascii = std::all_of(word.begin(), word.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (!ascii) {
    folded_ = service::To_Lower(word);
    return folded_;
  }
  folded_.resize(word.size());
  std::transform(word.begin(), word.end(), folded_.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return folded_;
}

const Search_Run::Names* Search_Run::Names_Of(std::string_view owner) const {
  const auto at = Cnd_Key.find(owner);
  return at == Cnd_Key.end() ? nullptr : &at->second;
}

const std::size_t* Search_Run::Find_Candidate(std::string_view word,
                                              std::string_view before) const {
  const std::string_view name = Folded(word);
  const auto known = known_.find(name);
  if (known == known_.end()) return nullptr;
  const auto in = [&](const Names* names) -> const std::size_t* {
    if (names == nullptr) return nullptr;
    const auto at = names->find(name);
    return at == names->end() ? nullptr : &at->second;
  };
  // The most local one first; then one that is qualified by its module; then the public one.
  if ((known->second & kLocal) != 0)
    if (const std::size_t* number = in(local_); number != nullptr) return number;
  if ((known->second & kOf_Module) != 0) {
    if (const std::size_t* number = in(of_module_); number != nullptr) return number;
    const std::string_view with = Wth.empty() ? std::string_view() : Wth.back().Tgt.back();
    for (const std::string_view qualifier : {before, with}) {
      if (qualifier.empty()) continue;
      if (const std::size_t* number = in(Names_Of(service::To_Lower(qualifier))); number != nullptr)
        return number;
    }
  }
  return (known->second & kPublic) != 0 ? in(public_) : nullptr;
}

void Search_Run::Use_Token(std::string_view padded, std::string_view token, std::size_t at,
                           std::string_view before) {
  if (token.empty() || Begins_No_Name(token.front())) return;
  if (kSuffixes.find(token.back()) != npos) token.remove_suffix(1);
  for (std::size_t end = token.size(); end > 0;) {
    const std::size_t dot = token.rfind('.', end - 1);
    const std::size_t begin = dot == npos ? 0 : dot + 1;
    if (const std::size_t* number = Find_Candidate(token.substr(begin, end - begin), before);
        number != nullptr) {
      if (Lists_Uses(cond_.Knd))
        Add_Hit_Name(Cnd_Row[*number].Nam);
      else
        Cnd_Flg[*number] |=
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

  const Byte_Set& breaks = types ? kBreaks_Of_Types : kBreaks;
  std::string_view before;
  for (std::size_t at = 0;;) {
    while (at < padded.size() && breaks.Has(padded[at])) ++at;
    if (at == padded.size()) break;
    std::size_t end = at;
    while (end < padded.size() && !breaks.Has(padded[end])) ++end;
    const std::string_view token = std::string_view(padded).substr(at, end - at);
    Use_Token(padded, token, at, before);
    before = token;
    at = end;
  }
  if (!Src_Hit.empty()) Set_Hit_Lst();
}

}  // namespace oru::query
