// SPDX-License-Identifier: MIT
// The central handler: what the user is told of a fault, and the report for those who repair it.
#include <fmt/format.h>

#include <fstream>
#include <ios>
#include <utility>

#include "service/errors.h"
#include "service/services.h"
#include "service/text.h"

namespace oru::service {
namespace {

// A call that is not allowed, and an object that is not there: what is seen when the host was not
// ready, and so the two numbers by which a timing fault shows.
constexpr int kInvalid_Call = 5;
constexpr int kNo_Object = 91;

std::string Message_Text(const Services& services, int number, const std::string& description,
                         bool analysing, bool fatal) {
  if (number == kOwn_Error) return description;

  const Product_Info& product = services.Product;
  std::string text;
  if (services.Sw.Debug && (number == kInvalid_Call || number == kNo_Object)) {
    text += "★★★★★★★ タイミングエラーチェック ★★★★★★★。     |";
  }
  text += analysing ? "プロジェクト情報解析中に障害が発生しました。    |"
                    : "要求された処理を実行することができませんでした。     |";
  text += "構文エラー、操作のタイミング等により、" + product.Title +
          "の機能を正常に実行できないことがあります。    |";
  text += std::string("プロジェクトの「") + (product.Host_Name == "VB6" ? "完全" : "") +
          "コンパイル」を実行し、構文エラーがないか確認してください。    |";
  text += "障害が再現する場合は、ヘルプの「障害サポート等について」をご参照願います。    ";
  if (fatal) text += "|このアドインをアンロードします。    |";
  return text;
}

// Cuts "10.0 SP1" into its three parts; the service pack may be missing.
std::string Windows_Line(const std::string& version) {
  const std::size_t blank = version.find(' ');
  const std::string numbers = version.substr(0, blank);
  const std::size_t dot = numbers.find('.');
  const std::string minor = dot == std::string::npos ? "" : numbers.substr(dot + 1);
  const std::string pack = blank == std::string::npos ? "No-SP" : version.substr(blank + 1);
  return fmt::format("     Windows：{}.{} ({})", Pad_Left(numbers.substr(0, dot), Wid_Count{6}),
                     minor, pack);
}

std::string Report_Text(const Services& services, int number, const std::string& description) {
  const Product_Info& product = services.Product;
  const Date_Time now = services.Clk.Now();
  std::string report = "［プログラム障害情報］\r\n" + Rule_Line() + "\r\n";
  report += " システム障害\r\n";
  report += fmt::format("    発生日時：{:04}年{:02}月{:02}日／{:02}時{:02}分{:02}秒\r\n", now.year,
                        now.month, now.day, now.hour, now.minute, now.second);
  report += fmt::format("     Product：{} ({}.{}.{})\r\n", product.Title, product.Major,
                        product.Minor, product.Revision);
  report += Windows_Line(product.Os_Version) + "\r\n";
  report += fmt::format("     {}：{} ({})\r\n", Pad_Left(product.Host_Name, Wid_Count{7}),
                        Pad_Left(product.Host_Version, Wid_Count{6}), product.Host_Build);
  // The first line of the trace stands behind "Code = ", the others below it.
  const std::string indent = "\r\n" + std::string(std::string_view("    Code = ").size(), ' ');
  report += "    Code = ";
  for (const std::string& line : services.Errors.Lines()) report += line + indent;
  report += fmt::format("└─→ ErrorCode = {} : {}\r\n", number, description);
  return report;
}

void Append_Report(const Services& services, const std::string& report) {
  if (services.Data_Folder.empty()) return;
  std::ofstream file(services.Data_Folder / "Logfile.txt", std::ios::binary | std::ios::app);
  file << report;
}

}  // namespace

void Srv_Log_Err(Services& services, std::string_view module, std::string_view procedure,
                 const std::string& description) {
  Error_Trace other;
  other.Add({std::string(module), std::string(procedure), {}, 0});
  std::swap(services.Errors, other);
  Append_Report(services, Report_Text(services, kOwn_Error, description));
  std::swap(services.Errors, other);
  Srv_Trc_Log(services, fmt::format("{} -> {} {}", module, procedure, description));
}

void Sys_Err_Prc(Services& services, int number, const std::string& description, bool analysing,
                 bool fatal) {
  if (fatal) services.Unl_Req = true;

  // The message comes last: it is what can fail, and it may stay open for hours.
  Append_Report(services, Report_Text(services, number, description));
  const auto& steps = services.Errors.Steps();
  const std::string place =
      steps.empty() ? "" : steps.back().module + " -> " + steps.back().procedure;
  Srv_Trc_Log(services,
              fmt::format("Abort!!({} ErrNo={}:{}){}", place, number, description, Rule_Line()));
  Srv_End_Log(services);
  (void)Srv_Dsp_Msg(services, Message_Text(services, number, description, analysing, fatal),
                    Buttons::Ok, 1, number == kOwn_Error ? Icon::Warning : Icon::Stop);
}

}  // namespace oru::service
