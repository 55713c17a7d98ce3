// SPDX-License-Identifier: MIT
#include "views/place_messages.h"

#include <fmt/format.h>

namespace oru::views {

namespace {

std::string_view Hint_Text(Gone_Hint hint) {
  switch (hint) {
    case Gone_Hint::Reopen_Form:
      return "一旦フォームを閉じて再表示してください。    |";
    case Gone_Hint::Update_View:
      return "「表示更新（&U)」を実行してください。    |";
    case Gone_Hint::Reopen_Chart:
      return "一旦フォームを閉じてこの参照関係を再表示してください。    |";
  }
  return {};
}

}  // namespace

bool Chk_Prc_Exs(host::VBE& vbe, service::Services& services, std::string_view module,
                 std::string_view member, Gone_Hint hint) {
  if (host::Chk_Prc_Exs(vbe, module, member)) return true;
  const std::string text = fmt::format(
      "指定されたモジュール({}）内の|プロシージャ({}）を参照できません。    |{}現象が解消されないときは、|「プロジェクト情報取得処理」を実行してください。    ",
      module, member, Hint_Text(hint));
  (void)service::Srv_Dsp_Msg(services, text, service::Buttons::Ok, 1, service::Icon::Warning);
  return false;
}

}  // namespace oru::views
