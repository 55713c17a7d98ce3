// SPDX-License-Identifier: MIT
#include "query/search_kinds.h"

#include <algorithm>
#include <string>

#include "service/text.h"

namespace oru::query {

const Search_Kind* Kind_Of(int code) {
  if (code == kSearch_Exact) code = kSearch_Text;
  const auto at = std::find_if(kSearch_Kinds.begin(), kSearch_Kinds.end(),
                               [&](const Search_Kind& kind) { return kind.Code == code; });
  return at == kSearch_Kinds.end() ? nullptr : &*at;
}

const Search_Kind* Kind_By_Name(std::string_view name) {
  const auto at =
      std::find_if(kSearch_Kinds.begin(), kSearch_Kinds.end(), [&](const Search_Kind& kind) {
        return service::Equal_No_Case(kind.Word, name) || std::to_string(kind.Code) == name;
      });
  return at == kSearch_Kinds.end() ? nullptr : &*at;
}

std::string_view Kind_Text(int code, int opt) {
  if (code == kSearch_Exact) return opt == 2 ? "代入文" : "完全一致文字列";
  const Search_Kind* kind = Kind_Of(code);
  return kind == nullptr ? std::string_view{} : kind->Text;
}

bool Has_Condition(int code, Search_Condition condition) {
  switch (condition) {
    case Search_Condition::Words:
      return code < kSearch_Variable;
    case Search_Condition::Partial:
    case Search_Condition::Exact:
      return code == kSearch_Text || code == kSearch_Exact;
    case Search_Condition::In_Procedure:
      return !Is_One_Of(code, {kSearch_Type, kSearch_Enum, kSearch_Reference, kSearch_Unused_Type,
                               kSearch_Unused_Enum, kSearch_Api, kSearch_Unused_Api});
    case Search_Condition::Scope:
      return code != kSearch_Reference;
    case Search_Condition::Compare:
      return code < kSearch_With;
    case Search_Condition::Commented_Out:
      return code < kSearch_With || code == kSearch_Comment;
    case Search_Condition::Constants:
      return code == kSearch_Exact;
  }
  return false;
}

}  // namespace oru::query
