// SPDX-License-Identifier: MIT
#include "service/logs.h"

#include <fmt/format.h>

#include <ios>
#include <system_error>

#include "service/services.h"
#include "service/text.h"

namespace oru::service {
namespace {

constexpr std::array<std::string_view, 2> kReport_Names = {"実行統計レポート",
                                                           "解析エラーレポート"};

std::filesystem::path Utf8_Path(std::string_view text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::string Heading(const Services& services, Channel channel) {
  return fmt::format("{0}\r\n{1}- {2}\r\n   プロジェクト名：{3}\r\n{0}\r\n", Rule_Line(),
                     kReport_Names[static_cast<std::size_t>(channel)], services.Product.Title,
                     services.Prj_Nam);
}

}  // namespace

std::string Rule_Line() {
  constexpr std::size_t kWidth = 77;
  return std::string(kWidth, '-');
}

std::filesystem::path Report_Path(const Services& services, Channel channel) {
  if (services.Data_Folder.empty()) return {};
  const std::string_view name = kReport_Names[static_cast<std::size_t>(channel)];
  return services.Data_Folder / Utf8_Path(std::string(name) + ".txt");
}

void Srv_Put_Log(Services& services, std::string_view text, Channel channel) {
  if (text == "#End") return Srv_End_Log(services);
  if (channel == Channel::Statistics && !services.Sw.Statistics) return;

  Report_Log::State& state = services.Reports.channels_[static_cast<std::size_t>(channel)];
  ++state.lines;
  if (state.failed) return;
  if (!state.file.is_open()) {
    const std::filesystem::path path = Report_Path(services, channel);
    if (!path.empty()) state.file.open(path, std::ios::binary | std::ios::trunc);
    if (!state.file.is_open()) {
      state.failed = true;
      return;
    }
    state.file << Heading(services, channel);
  }
  state.file << text << "\r\n";
}

void Srv_End_Log(Services& services) {
  for (Report_Log::State& state : services.Reports.channels_) state = {};
}

std::filesystem::path Trace_Path(std::string_view system_folder,
                                 const std::filesystem::path& data_folder) {
  constexpr std::size_t kDrive = 2;  // "C:"
  std::filesystem::path root = data_folder;
  if (system_folder.size() >= kDrive && system_folder[1] == ':') {
    root = Utf8_Path(std::string(system_folder.substr(0, kDrive)) + "/");
  }
  return root.empty() ? root : root / "Log" / "Trcfile.TXT";
}

void Srv_Trc_Log(Services& services, std::string_view text) {
  const Trace_Log& trace = services.Trace;
  if (!services.Sw.Trace || !trace.Enabled || trace.Path.empty()) return;

  std::error_code ignored;
  std::filesystem::create_directories(trace.Path.parent_path(), ignored);
  std::ofstream file(trace.Path, std::ios::binary | std::ios::app);
  const std::string stamp = Stamp(services.Clk.Now());
  file << stamp.substr(0, 6) << '-' << stamp.substr(6) << ' ' << Replace_All(text, "~~", "\r\n")
       << "\r\n";
}

}  // namespace oru::service
