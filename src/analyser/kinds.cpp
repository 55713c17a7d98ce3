// SPDX-License-Identifier: MIT
#include "analyser/kinds.h"

#include <fmt/format.h>

#include <array>

namespace oru::analyser {

namespace {

struct Module_Kind {
  std::string_view code, word, tag;
};

constexpr std::array kModule_Kinds{
    Module_Kind{"1", "Module", "C_Module"},       Module_Kind{"2", "Class", "C_Class"},
    Module_Kind{"3", "Form", "C_Form"},           Module_Kind{"5", "Form", "C_Form"},
    Module_Kind{"8", "UserControl", "C_UserCtl"}, Module_Kind{"9", "UserDocument", "C_UserDoc"},
    Module_Kind{"11", "Designer", "C_Dsr"},       Module_Kind{"71", "WorkBook", "C_Book"},
    Module_Kind{"72", "WorkSheet", "C_Sheet"},    Module_Kind{"81", "Form", "C_Form"},
    Module_Kind{"82", "Report", "C_Report"},      Module_Kind{"88", "Document", "C_Word"},
    Module_Kind{"100", "Document", "C_Document"},
};

struct Member_Kind {
  char knd;
  std::string_view sub;
  std::string_view word, tag;
};

constexpr std::array kMember_Kinds{
    Member_Kind{kMem_Event, "", "Event", "C_Event"},
    Member_Kind{kMem_Sub, "", "Sub", "C_Sub"},
    Member_Kind{kMem_Function, "", "Function", "C_Func"},
    Member_Kind{kMem_Property, "1", "Property(Get)", "C_PGet"},
    Member_Kind{kMem_Property, "2", "Property(Let)", "C_PLet"},
    Member_Kind{kMem_Property, "3", "Property(Set)", "C_PSet"},
    Member_Kind{kMem_Api, "1", "Api(Sub)", "C_ApiS"},
    Member_Kind{kMem_Api, "2", "Api(Func)", "C_ApiF"},
};

struct Icon_Name {
  std::string_view tag, english, japanese;
};

// "V_PublicN" (a public enumeration) has no name: the tag never had a text of its own.
constexpr std::array kIcon_Names{
    Icon_Name{"C_Module", "Module", "｜標準モジュール"},
    Icon_Name{"C_Class", "Class", "｜クラスモジュール"},
    Icon_Name{"C_Form", "Form", "｜フォームモジュール"},
    Icon_Name{"C_UserCtl", "UserControl", "｜ユーザコントロール"},
    Icon_Name{"C_UserDoc", "UserDocument", "｜ユーザドキュメント"},
    Icon_Name{"C_Dsr", "Designer", "｜デザイナ"},
    Icon_Name{"C_Book", "WorkBook", "｜ワークブック"},
    Icon_Name{"C_Sheet", "WorkSheet", "｜ワークシート"},
    Icon_Name{"C_Report", "Report", "｜レポート"},
    Icon_Name{"C_Word", "Document", "｜ドキュメント"},
    Icon_Name{"C_Document", "Document", "｜ドキュメント"},
    Icon_Name{"C_Event", "Event", "｜イベントプロシージャ"},
    Icon_Name{"C_EventP", "Event(Public)", "｜イベントプロシージャ(Public)"},
    Icon_Name{"C_Sub", "Sub", "｜Subプロシージャ"},
    Icon_Name{"C_SubP", "Sub(Public)", "｜Subプロシージャ(Public)"},
    Icon_Name{"C_Func", "Function", "｜Functionプロシージャ"},
    Icon_Name{"C_FuncP", "Function(Public)", "｜Functionプロシージャ(Public)"},
    Icon_Name{"C_PGet", "Get", "｜プロパティ取得"},
    Icon_Name{"C_PLet", "Let", "｜プロパティ設定"},
    Icon_Name{"C_PSet", "Set", "｜プロパティ参照"},
    Icon_Name{"C_PGetP", "Get(Public)", "｜プロパティ取得(Public)"},
    Icon_Name{"C_PLetP", "Let(Public)", "｜プロパティ設定(Public)"},
    Icon_Name{"C_PSetP", "Set(Public)", "｜プロパティ参照(Public)"},
    Icon_Name{"C_ApiS", "Api･Sub", "｜Api･Sub"},
    Icon_Name{"C_ApiF", "Api･Function", "｜Api･Function"},
    Icon_Name{"C_ApiSP", "Api･Sub(Public)", "｜Api･Sub(Public)"},
    Icon_Name{"C_ApiFP", "Api･Function(Public)", "｜Api･Function(Public)"},
    Icon_Name{"C_Def", "Declaretions", "｜モジュール宣言部"},
    Icon_Name{"V_ArgVl", "", "｜引数"},
    Icon_Name{"V_Local", "", "｜ローカル変数"},
    Icon_Name{"V_LocalC", "", "｜ローカル定数"},
    Icon_Name{"V_LocalU", "", "｜ローカルユーザ定義変数"},
    Icon_Name{"V_Modul", "", "｜モジュール内変数"},
    Icon_Name{"V_ModulC", "", "｜モジュール内定数"},
    Icon_Name{"V_ModulE", "", "｜モジュール内イベント定義変数"},
    Icon_Name{"V_ModulN", "", "｜モジュール内列挙型定義"},
    Icon_Name{"V_ModulT", "", "｜モジュール内構造体定義"},
    Icon_Name{"V_ModulU", "", "｜モジュール内ユーザ定義変数"},
    Icon_Name{"V_Public", "", "｜グローバル変数"},
    Icon_Name{"V_PublicC", "", "｜グローバル定数"},
    Icon_Name{"V_PublicE", "", "｜グローバルイベント定義変数"},
    Icon_Name{"V_PublicT", "", "｜グローバル構造体定義"},
    Icon_Name{"V_PublicU", "", "｜グローバルユーザ定義変数"},
};

const Module_Kind* Find_Module_Kind(std::string_view code) {
  for (const Module_Kind& kind : kModule_Kinds)
    if (kind.code == code) return &kind;
  return nullptr;
}

const Member_Kind* Find_Member_Kind(const Mem_Row& row) {
  if (row.Mem_Knd.empty()) return nullptr;
  for (const Member_Kind& kind : kMember_Kinds)
    if (kind.knd == row.Mem_Knd.front() && (kind.sub.empty() || kind.sub == row.Mem_Sub))
      return &kind;
  return nullptr;
}

// A late-bound call; a refusal leaves things as they are.
template <class Call>
void Late(Call call) {
  try {
    call();
  } catch (const host::Host_Error&) {
  }
}

const Icon_Name* Find_Icon(std::string_view tag) {
  for (const Icon_Name& icon : kIcon_Names)
    if (icon.tag == tag) return &icon;
  return nullptr;
}

}  // namespace

std::string_view Set_Mdl_Typ(std::string_view mdl_typ) {
  const Module_Kind* kind = Find_Module_Kind(mdl_typ);
  return kind == nullptr ? std::string_view{} : kind->word;
}

std::string_view Set_Mdl_Img(std::string_view mdl_typ) {
  const Module_Kind* kind = Find_Module_Kind(mdl_typ);
  return kind == nullptr ? std::string_view{} : kind->tag;
}

std::string_view Set_Mem_Typ(const Mem_Row& row) {
  const Member_Kind* kind = Find_Member_Kind(row);
  return kind == nullptr ? std::string_view{} : kind->word;
}

std::string Set_Mem_Img(const Mem_Row& row) {
  const Member_Kind* kind = Find_Member_Kind(row);
  if (kind == nullptr) return "C_Def";
  std::string tag(kind->tag);
  if (row.Mem_Scp == std::string_view(&kScp_Public, 1)) tag += 'P';
  return tag;
}

std::string_view Set_Icn_NmE(std::string_view tag) {
  const Icon_Name* icon = Find_Icon(tag);
  return icon == nullptr ? std::string_view{} : icon->english;
}

std::string_view Set_Icn_NmJ(std::string_view tag) {
  const Icon_Name* icon = Find_Icon(tag);
  return icon == nullptr ? std::string_view{} : icon->japanese;
}

Mdl_Kind Rev_Mdl_Typ(host::VBE& vbe, host::HostApp* app, std::string_view host_file,
                     std::string_view name) {
  host::VBProject* project = vbe.ActiveVBProject();
  host::VBComponent* component = project == nullptr ? nullptr : project->VBComponents().Item(name);
  if (component == nullptr) return {};
  const int type = component->Type();
  if (type != host::kType_Document || app == nullptr) return {fmt::to_string(type), {}};
  // Each call may be refused by itself (a closed workbook, an add-in's own project, one damaged
  // sheet): what answers still counts, and what does not stays a document.
  host::Workbook* book = nullptr;
  host::Sheets* sheets = nullptr;
  int count = 0;
  Late([&] { book = &app->Workbooks(host_file); });
  if (book == nullptr) return {fmt::to_string(type), {}};
  Mdl_Kind kind{fmt::to_string(type), {}};
  Late([&] {
    if (book->CodeName() == name) kind = {std::string(kTyp_Workbook), book->Name()};
  });
  Late([&] {
    sheets = &book->Sheets();
    count = sheets->Count();
  });
  for (int i = 1; i <= count && kind.Mdl_Cap.empty(); ++i)
    Late([&] {
      host::Sheet& sheet = sheets->Item(i);
      if (sheet.CodeName() == name) kind = {std::string(kTyp_Sheet), sheet.Name()};
    });
  return kind;
}

}  // namespace oru::analyser
