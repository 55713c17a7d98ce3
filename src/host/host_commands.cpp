// SPDX-License-Identifier: MIT
#include "host/host_commands.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace oru::host {
namespace {

constexpr std::string_view kContext = "Code Window";
constexpr std::string_view kMain = "ﾒﾆｭｰ ﾊﾞｰ";
constexpr std::string_view kView = "表示(&V)";
constexpr std::string_view kWindow = "ｳｨﾝﾄﾞｳ(&W)";
constexpr std::string_view kEdit = "編集(&E)";
constexpr std::string_view kMarks = "ﾌﾞｯｸﾏｰｸ(&B)";
constexpr std::string_view kClear_Marks = "すべてのﾌﾞｯｸﾏｰｸの解除(&C)";
constexpr std::string_view kToggle_Mark = "ﾌﾞｯｸﾏｰｸの設定/解除(&T)";

// "Book" first clears, then sets: one mark is left, at the caret.
constexpr Hst_Command kCommands[] = {
    {"Define", kContext, {}, {"定義(&D)"}},
    {"Resume", kContext, {}, {"元の位置へ移動(&N)"}},
    {"Code", kMain, {kView}, {"ｺｰﾄﾞ(&C)"}},
    {"Obj", kMain, {kView}, {"ｵﾌﾞｼﾞｪｸﾄ(&B)"}},
    {"Proj", kMain, {kView}, {"ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗｰ(&P)"}, "ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗ(&P)"},
    {"Prop", kMain, {kView}, {"ﾌﾟﾛﾊﾟﾃｨ ｳｨﾝﾄﾞｳ(&W)"}},
    {"FLay", kMain, {kView}, {"ﾌｫｰﾑ ﾚｲｱｳﾄ ｳｨﾝﾄﾞｳ(&F)"}},
    {"Tool", kMain, {kView}, {"ﾂｰﾙﾎﾞｯｸｽ(&X)"}},
    {"Imd", kMain, {kView}, {"ｲﾐﾃﾞｨｴｲﾄ ｳｨﾝﾄﾞｳ(&I)"}},
    {"WSpl", kMain, {kWindow}, {"分割(&P)"}},
    {"WAlg", kMain, {kWindow}, {"重ねて表示(&C)"}},
    {"Book", kMain, {kEdit, kMarks}, {kClear_Marks, kToggle_Mark}, {}, true, "FCk_BokMk"},
    {"BookSet", kMain, {kEdit, kMarks}, {kClear_Marks, kToggle_Mark}, {}, true},
    {"BookClr", kMain, {kEdit, kMarks}, {kClear_Marks}, {}, true},
    {"BookAdd", kMain, {kEdit, kMarks}, {kToggle_Mark}, {}, true},
};

// The bar that holds the entries, or null.
CommandBar* Find_Bar(VBE& vbe, const Hst_Command& command) {
  CommandBar* bar = vbe.CommandBars().Item(command.Bar);
  for (const std::string_view menu : command.Menus) {
    if (menu.empty() || bar == nullptr) break;
    CommandBarControl* control = bar->Controls().Item(menu);
    bar = control == nullptr ? nullptr : control->CommandBar();
  }
  return bar;
}

// Presses an entry, `other` in its absence. The bar is looked for at each: what an entry runs may
// rebuild the menus.
bool Press(VBE& vbe, const Hst_Command& command, std::string_view caption, std::string_view other) {
  try {
    CommandBar* bar = Find_Bar(vbe, command);
    if (bar == nullptr) return false;
    CommandBarControl* entry = bar->Controls().Item(caption);
    if (entry == nullptr && !other.empty()) entry = bar->Controls().Item(other);
    if (entry == nullptr) return false;
    entry->Execute();
  } catch (const Host_Error&) {  // told as an entry that cannot be run
    return false;
  }
  return true;
}

}  // namespace

std::span<const Hst_Command> Hst_Commands() {
  return kCommands;
}

bool Exc_Hst_Cmd(VBE& vbe, service::Services& services, std::string_view key) {
  const service::Err_Frame frame(services.Errors, "Mod_Sub", "Exc_Hst_Cmd");
  const auto* const command = std::ranges::find(kCommands, key, &Hst_Command::Key);
  if (command == std::end(kCommands))
    throw std::logic_error("no such host command: " + std::string(key));
  if (!command->Option.empty() && !services.Opt.Flag(command->Option)) return true;

  std::string_view other = command->Other;
  for (const std::string_view caption : command->Entries) {
    if (caption.empty()) break;
    if (!Press(vbe, *command, caption, other)) {
      services.Unl_Req = true;
      (void)service::Srv_Dsp_Msg(
          services,
          "ＩＤＥ標準コマンドを実行できません。(" + std::string(caption) + ")|" +
              "このアドインをアンロードします。|" +
              "詳細は補足説明書の「ＩＤＥコマンドメニューの破損･･･」をご参照ください。|" +
              "  Command=(" + std::string(key) + ")",
          service::Buttons::Ok, 1, service::Icon::Stop);
      return false;
    }
    other = {};
  }
  if (command->Marks) services.Ui.Do_Events();
  return true;
}

}  // namespace oru::host
