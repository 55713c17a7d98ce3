// SPDX-License-Identifier: MIT
// Messages in the house style.
#include <system_error>

#include "service/files.h"
#include "service/services.h"
#include "service/text.h"

namespace oru::service {
namespace {

// No timer may fire behind a message that waits for its answer; a display that fails must not
// leave them stopped. During an analysis they stand still anyway, and go on doing so.
class Timer_Pause {
 public:
  Timer_Pause(User_Interface& ui, bool pauses) : ui_(ui), pauses_(pauses) {
    if (pauses_) ui_.Set_Timer(false);
  }
  ~Timer_Pause() {
    if (pauses_) ui_.Set_Timer(true);
  }
  Timer_Pause(const Timer_Pause&) = delete;
  Timer_Pause& operator=(const Timer_Pause&) = delete;

 private:
  User_Interface& ui_;
  bool pauses_;
};

}  // namespace

std::string Fmt_Msg_Txt(std::string_view text, int ide_version) {
  constexpr int kIndented = 6;
  if (ide_version < kIndented) return Replace_All(text, "|", "\r\n");

  std::string lines = Replace_All(text, "    |", "|");
  while (!lines.empty() && (lines.back() == ' ' || lines.back() == '|')) lines.pop_back();
  return "  " + Replace_All(lines, "|", "\r\n  ");
}

Answer Srv_Dsp_Msg(Services& services, std::string_view text, Buttons buttons, int default_button,
                   Icon icon) {
  constexpr int kMost_Buttons = 4;
  const bool named = default_button >= 1 && default_button <= kMost_Buttons;
  const Message message{Fmt_Msg_Txt(text, services.Product.Ide_Version), services.Product.Title,
                        buttons, named ? default_button : 1, icon};
  const Timer_Pause pause(services.Ui, !services.Anl_Bsy);
  return services.Ui.Show_Message(message);
}

void Opn_Rel_Fil(Services& services, const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::exists(path, error)) {
    services.Ui.Open_File(Path_Text(path));
    return;
  }
  (void)Srv_Dsp_Msg(services, "障害レポートは作成されていません。    ", Buttons::Ok, 1,
                    Icon::Information);
}

}  // namespace oru::service
