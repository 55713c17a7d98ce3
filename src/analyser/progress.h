// SPDX-License-Identifier: MIT
// Progress of a run: the phases' texts, the counting, and the rule when a display is worth opening.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "service/services.h"

namespace oru::analyser {

class Anl_Progress {
 public:
  explicit Anl_Progress(service::Services& services);
  /// Closes the display too, so that none stays behind a fault.
  ~Anl_Progress() { Close(); }
  Anl_Progress(const Anl_Progress&) = delete;
  Anl_Progress& operator=(const Anl_Progress&) = delete;

  /// `Dsp_Anl_Res`: a tag ("Lod", "Sav", "Chk", "Mdl", "Ref") starts a count at zero with the given
  /// total; an empty tag adds one. `lines` and `speed` (lines read, lines per second of the last
  /// run) decide whether the work will last beyond a second, so that a display is opened.
  void Dsp_Anl_Res(std::string_view tag, std::string_view module, std::int64_t total,
                   std::int64_t lines, std::int64_t speed);
  /// Closes the display if it was opened.
  void Close();

 private:
  service::Services& services_;
  std::int64_t start_;
  std::int64_t seconds_ = 0;
  std::string_view text_;
  bool short_operation_ = false;
  bool shown_ = false;
  std::int64_t count_ = 0, total_ = 0;
  std::string elapsed_;
};

}  // namespace oru::analyser
