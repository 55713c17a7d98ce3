// SPDX-License-Identifier: MIT
// The columns and the filters of the project structure lists, each table in one place. Texts are
// what users see; keys are for output that programs read and for options of the command line.
#pragma once

#include <array>
#include <string_view>

#include "analyser/tables.h"

namespace oru::views {

struct Column_Def {
  std::string_view Ttl;  ///< title
  std::string_view Key;  ///< ASCII name
  bool Right = false;    ///< a number, right-aligned
};

inline constexpr std::array kModul_Columns{
    Column_Def{"モジュール名", "module"},      Column_Def{"Ｓ", "mark"},
    Column_Def{"コメント", "comment"},         Column_Def{"Evt", "events", true},
    Column_Def{"Sub", "subs", true},           Column_Def{"Func", "functions", true},
    Column_Def{"Pro", "properties", true},     Column_Def{"API", "apis", true},
    Column_Def{"定義行", "code_lines", true},  Column_Def{"注釈行", "comment_lines", true},
    Column_Def{"空白行", "blank_lines", true}, Column_Def{"更新日時", "updated"},
};

inline constexpr std::array kMembr_Columns{
    Column_Def{"プロシージャ名", "procedure"}, Column_Def{"Ｓ", "mark"},
    Column_Def{"参照", "references"},          Column_Def{"コメント", "comment"},
    Column_Def{"定義行", "code_lines", true},  Column_Def{"注釈行", "comment_lines", true},
    Column_Def{"空白行", "blank_lines", true}, Column_Def{"条件数", "conditions", true},
    Column_Def{"ネスト", "nesting", true},     Column_Def{"更新日時", "updated"},
};

/// By project, this column stands in front of the comment.
constexpr Column_Def kMdl_Column{"モジュール名", "module"};

constexpr std::size_t kCol_Mrk = 1;  ///< change mark, in all tables
constexpr std::size_t kCol_Ref = 2;  ///< reference mark of a procedure
constexpr std::size_t kCol_Mdl = 3;  ///< module of a procedure, by project

constexpr std::string_view kNo_Icon = "C_NoDef";
constexpr std::string_view kDeclare_Text = "【宣言部】";
constexpr std::string_view kMrk_None = "－";  ///< nothing that could change, or be confirmed

/// Behind a title: the order that the rows have. The first three are the steps of a click.
inline constexpr std::array<std::string_view, 3> kOrder_Marks{" ▲", " ▼", " (変更順)"};

/// A filter of modules: which type codes it takes. Rows stand in the order of `Ord`.
struct Mdl_Filter {
  std::string_view Ord;
  std::string_view Key;
  std::string_view Txt;
  std::array<std::string_view, 3> Typ{};
};
inline constexpr std::array kMdl_Filters{
    Mdl_Filter{"00", "all", "すべてのモジュール"},
    Mdl_Filter{"01", "form", "フォームモジュール", {"3", "5", "81"}},
    Mdl_Filter{"02", "report", "レポートモジュール", {"82"}},
    Mdl_Filter{"03", "module", "標準モジュール", {"1"}},
    Mdl_Filter{"04", "class", "クラスモジュール", {"2"}},
    Mdl_Filter{"05", "designer", "デザイナ", {"11"}},
    Mdl_Filter{"06", "control", "ユーザコントロール", {"8"}},
    Mdl_Filter{"07", "user-document", "ユーザドキュメント", {"9"}},
    Mdl_Filter{"08", "workbook", "ワークブック", {"71"}},
    Mdl_Filter{"09", "worksheet", "ワークシート", {"72"}},
    Mdl_Filter{"10", "document", "ドキュメント", {"88", "100"}},
};

/// A filter of procedures; `Knd` 0 takes all of them, or is told by the text.
struct Mem_Filter {
  std::string_view Ord;
  std::string_view Key;
  std::string_view Txt;
  char Knd = 0;
};
/// By module. The objects that events belong to follow with "5 " (the form) and "6 ".
inline constexpr std::array kMem_Filters{
    Mem_Filter{"0 ", "all", "すべてのプロシージャ"},
    Mem_Filter{"1 ", "event", "イベントプロシージャ", analyser::kMem_Event},
    Mem_Filter{"2 ", "sub", "Subプロシージャ", analyser::kMem_Sub},
    Mem_Filter{"3 ", "function", "Functionプロシージャ", analyser::kMem_Function},
    Mem_Filter{"4 ", "property", "Propertyプロシージャ", analyser::kMem_Property},
};
constexpr std::string_view kForm_Object = "Form";
constexpr std::string_view kOrd_Form = "5 ", kOrd_Object = "6 ";

/// By project, the public ones of a kind.
inline constexpr std::array kMAl_Filters{
    Mem_Filter{"0 ", "all", "すべてのプロシージャ"},
    Mem_Filter{"1 ", "event", "Public イベントプロシージャ", analyser::kMem_Event},
    Mem_Filter{"2 ", "sub", "Public Subプロシージャ", analyser::kMem_Sub},
    Mem_Filter{"3 ", "function", "Public Functionプロシージャ", analyser::kMem_Function},
    Mem_Filter{"4 ", "property", "Public Propertyプロシージャ", analyser::kMem_Property},
    Mem_Filter{"5 ", "unconfirmed", "参照関係を確認できないSub､Functionプロシージャ"},
};
constexpr std::string_view kUnconfirmed_Text = kMAl_Filters.back().Txt;

/// Entry procedures that nobody in the project calls.
inline constexpr std::array<std::string_view, 4> kNot_Called{"Main", "Class_Initialize",
                                                             "Class_Terminate", "Auto_Open"};

}  // namespace oru::views
