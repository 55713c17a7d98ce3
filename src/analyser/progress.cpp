// SPDX-License-Identifier: MIT
#include "analyser/progress.h"

#include <fmt/format.h>

#include <array>

namespace oru::analyser {

namespace {

struct Phase {
  std::string_view tag, text;
  bool short_operation;
};

constexpr std::array kPhases{
    Phase{"Sav", "解析情報を保存しています。", true},
    Phase{"Lod", "解析情報を取得しています。", true},
    Phase{"Chk", "変更内容を調査しています。(1／3)", true},
    Phase{"Mdl", "定義情報を解析しています。(2／3)", false},
    Phase{"Ref", "参照関係を解析しています。(3／3)", false},
};

}  // namespace

Anl_Progress::Anl_Progress(service::Services& services)
    : services_(services), start_(services.Clk.Milliseconds()) {}

void Anl_Progress::Dsp_Anl_Res(std::string_view tag, std::string_view module, std::int64_t total,
                               std::int64_t lines, std::int64_t speed) {
  if (tag.empty()) {
    ++count_;
  } else {
    for (const Phase& phase : kPhases) {
      if (phase.tag != tag) continue;
      text_ = phase.text;
      short_operation_ = phase.short_operation;
    }
    count_ = 0;
    total_ = total;
  }
  if (!shown_ && !short_operation_ && lines <= speed) return;
  shown_ = true;
  const std::int64_t seconds = (services_.Clk.Milliseconds() - start_) / 1000;
  if (seconds >= 1 && seconds != seconds_) {
    seconds_ = seconds;
    elapsed_ = seconds >= 60 ? fmt::format("( {}m {}s )", seconds / 60, seconds % 60)
                             : fmt::format("( {}s )", seconds);
  }
  const service::Progress progress{
      text_,   module, count_, total_, fmt::format("{} ( {} / {} )", text_, count_, total_),
      elapsed_};
  services_.Ui.Show_Progress(progress);
}

void Anl_Progress::Close() {
  if (shown_) services_.Ui.Close_Progress();
  shown_ = false;
}

}  // namespace oru::analyser
