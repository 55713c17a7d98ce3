// SPDX-License-Identifier: MIT
// The kinds of statements that a search can ask for, each once: code, texts, the word of the command
// line, and which conditions it has.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace oru::query {

/// Codes that have a meaning of their own in the search's rules.
enum Search_Code : int {
  kSearch_Pattern = -1,
  kSearch_Text = 0,
  kSearch_Exact = 1,  ///< what kind 0 becomes with "完全" or "代入"; not in the list
  kSearch_With = 2,
  kSearch_Variable = 3,
  kSearch_Constant = 4,
  kSearch_Comment = 5,
  kSearch_Form = 6,
  kSearch_Unused_Variable = 7,
  kSearch_Directive = 8,
  kSearch_Type = 9,
  kSearch_Unused_Constant = 10,
  kSearch_Variables = 11,
  kSearch_Constants = 12,
  kSearch_Call = 13,
  kSearch_Global_Use = 14,
  kSearch_Module_Use = 15,
  kSearch_Local_Use = 16,
  kSearch_Enum = 17,
  kSearch_Reference = 18,
  kSearch_Assigned_Only = 19,
  kSearch_Assigned_Argument = 20,
  kSearch_Unused_Argument = 21,
  kSearch_Unused_Type = 22,
  kSearch_Unused_Enum = 23,
  kSearch_Api = 24,
  kSearch_Unused_Api = 25,
  kSearch_Error_Call = 71,
  kSearch_Separator = 77
};

struct Search_Kind {
  int Code;
  std::string_view Text;  ///< as shown; the list puts one blank in front
  std::string_view Word;  ///< of the command line
  bool Two_Passes;        ///< collects candidates first and then looks for their uses
};

/// The list `FCx_Object`, in its order.
constexpr std::array<Search_Kind, 27> kSearch_Kinds{{
    {kSearch_Text, "文字列", "text", false},
    {kSearch_Pattern, "パターン文字列", "pattern", false},
    {kSearch_With, "修飾対象文", "with", false},
    {kSearch_Comment, "コメント文", "comment", false},
    {kSearch_Call, "プロシージャ呼出文", "call", false},
    {kSearch_Reference, "プロシージャ参照文", "reference", false},
    {kSearch_Form, "フォーム制御文", "form", false},
    {kSearch_Global_Use, "グローバル変数使用文", "global-use", true},
    {kSearch_Module_Use, "モジュール変数使用文", "module-use", true},
    {kSearch_Local_Use, "ローカル変数使用文", "local-use", true},
    {kSearch_Variable, "変数定義文", "variable", false},
    {kSearch_Constant, "定数定義文", "constant", false},
    {kSearch_Unused_Variable, "未使用変数定義文", "unused-variable", true},
    {kSearch_Unused_Constant, "未使用定数定義文", "unused-constant", true},
    {kSearch_Assigned_Only, "代入のみの変数定義文", "assigned-only", true},
    {kSearch_Unused_Argument, "未使用引数", "unused-argument", false},
    {kSearch_Assigned_Argument, "参照渡し引数への代入文", "assigned-argument", false},
    {kSearch_Variables, "複数変数定義文", "variables", false},
    {kSearch_Constants, "複数定数定義文", "constants", false},
    {kSearch_Type, "構造体定義文", "type", false},
    {kSearch_Enum, "列挙型定義文", "enum", false},
    {kSearch_Unused_Type, "未使用構造体定義文", "unused-type", true},
    {kSearch_Unused_Enum, "未使用列挙型定義文", "unused-enum", true},
    {kSearch_Api, "API定義文", "api", false},
    {kSearch_Unused_Api, "未使用API定義文", "unused-api", false},
    {kSearch_Directive, "ディレクティブ", "directive", false},
    {kSearch_Error_Call, "不整合の例外処理呼出文", "error-call", false},
}};

/// True if the code is one of those.
[[nodiscard]] constexpr bool Is_One_Of(int code, std::initializer_list<int> codes) {
  for (const int one : codes)
    if (one == code) return true;
  return false;
}

/// The kind of a code, or null; code 1 answers as 0.
[[nodiscard]] const Search_Kind* Kind_Of(int code);
/// The kind named by its code in digits or by its word, letter case aside; null if there is none.
[[nodiscard]] const Search_Kind* Kind_By_Name(std::string_view name);
/// The kind's text for messages; of code 1 "完全一致文字列" or, with `opt` 2, "代入文".
[[nodiscard]] std::string_view Kind_Text(int code, int opt);

enum class Search_Condition : std::uint8_t {
  Words,          ///< the text box
  Partial,        ///< `FOp_SrcOp`(0)
  Exact,          ///< `FOp_SrcOp`(1), (2)
  In_Procedure,   ///< `FOp_Scope`(0)
  Scope,          ///< `FOp_Scope`(1), (2)
  Compare,        ///< `FOp_CCmp`, `FCk_ComSc`, `FCk_MemDs`
  Commented_Out,  ///< `FCk_ComOc`
  Constants       ///< `FCk_CnsDs`
};
/// Whether a condition is available for a kind.
[[nodiscard]] bool Has_Condition(int code, Search_Condition condition);

}  // namespace oru::query
