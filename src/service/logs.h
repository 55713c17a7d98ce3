// SPDX-License-Identifier: MIT
// The two reports (run statistics, analysis errors) and the trace log. All of them fail silently:
// a log that cannot be written is dropped, and never stops the work it tells about.
#pragma once

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace oru::service {

struct Services;

enum class Channel { Statistics = 0, Errors = 1 };

/// State of the two report files. A channel is opened, replacing the last run's file, at its first
/// line, and closed by "#End"; one that cannot be opened is marked and skipped until then.
class Report_Log {
 public:
  /// Number of texts put to a channel since the last "#End", whether or not the file took them.
  [[nodiscard]] int Lines(Channel channel) const {
    return channels_[static_cast<std::size_t>(channel)].lines;
  }

 private:
  friend void Srv_Put_Log(Services&, std::string_view, Channel);
  friend void Srv_End_Log(Services&);
  struct State {
    std::ofstream file;
    bool failed = false;
    int lines = 0;
  };
  std::array<State, 2> channels_;
};

/// Writes a line to a report: "実行統計レポート.txt" (only with the statistics switch on) or
/// "解析エラーレポート.txt", in the data folder. The text "#End" closes both.
void Srv_Put_Log(Services& services, std::string_view text, Channel channel = Channel::Statistics);
/// The same as the text "#End".
void Srv_End_Log(Services& services);
/// Path of a channel's report.
[[nodiscard]] std::filesystem::path Report_Path(const Services& services, Channel channel);

/// The row of hyphens that divides reports, without a line end.
[[nodiscard]] std::string Rule_Line();

/// Where the trace goes; empty means nowhere.
struct Trace_Log {
  std::filesystem::path Path;
  bool Enabled = true;
};

/// "Log\Trcfile.TXT" under the drive of the operating system's folder ("C:\Windows"), or under the
/// data folder where there are no drives; empty if both are.
[[nodiscard]] std::filesystem::path Trace_Path(std::string_view system_folder,
                                               const std::filesystem::path& data_folder);

/// Appends "YYMMDD-HHMMSS " + text to the trace log if its switch is on; "~~" is a line break.
void Srv_Trc_Log(Services& services, std::string_view text);

}  // namespace oru::service
