// SPDX-License-Identifier: MIT
#include "app/cli/commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "analyser/kinds.h"
#include "analyser/table_text.h"
#include "app/cli/cli.h"
#include "service/text.h"
#include "views/references.h"
#include "views/summary.h"

namespace oru::app {

namespace {

std::string Number(long long value) {
  return fmt::to_string(value);
}

// "12,345": how people read counts.
std::string Grouped(long long value) {
  std::string digits = fmt::to_string(value);
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, ",");
  return digits;
}

std::string Peak_Text(const views::Peak& peak, std::string_view unit) {
  return peak.Member.empty() ? "なし"
                             : fmt::format("{}  {} {}", peak.Member, Grouped(peak.Value), unit);
}

long long Per_Second(long long lines, double seconds) {
  return seconds > 0 ? std::llround(static_cast<double>(lines) / seconds) : 0;
}

void Print_Summary(const Work& work, const Output& output, const views::Project_Summary& sum) {
  std::string kinds;
  for (const auto& [type, count] : sum.Modules)
    kinds += fmt::format("{}{} {}", kinds.empty() ? "" : " / ",
                         analyser::Set_Mdl_Typ(fmt::to_string(type)), count);
  constexpr std::array<std::string_view, 5> kWords{"Event", "Sub", "Function", "Property", "API"};
  std::string members;
  int procedures = 0;
  for (std::size_t i = 0; i < kWords.size(); ++i) {
    members += fmt::format("{}{} {}", i == 0 ? "" : " / ", kWords[i], Grouped(sum.Members[i]));
    procedures += sum.Members[i];
  }
  const long long lines = sum.Code + sum.Comment + sum.Blank;
  const auto line = [&](std::string_view title, const std::string& text) {
    const std::size_t width = Terminal_Width_Of(title);
    output.out << title << std::string(width < 14 ? 14 - width : 1, ' ') << text << '\n';
  };
  line("プロジェクト", fmt::format("{}  ({})", work.session.Srv.Prj_Nam, work.project.Path));
  line("モジュール", fmt::format("{}  ({})", Grouped(sum.Module_Count), kinds));
  line("プロシージャ", fmt::format("{}  ({})", Grouped(procedures), members));
  line("行数", fmt::format("{}  (コード {} / 注釈 {} / 空白 {})", Grouped(lines), Grouped(sum.Code),
                           Grouped(sum.Comment), Grouped(sum.Blank)));
  line("最長", Peak_Text(sum.Longest, "行"));
  line("最深ネスト", Peak_Text(sum.Deepest, "段"));
  line("最多条件", Peak_Text(sum.Most_Complex, "条件"));
  line("未参照", fmt::format("{}  (Sub・Function)", Grouped(sum.Unreferenced)));
  line("解析時間", fmt::format("{:.3f} 秒  ({} 行／秒)", work.seconds,
                               Grouped(Per_Second(lines, work.seconds))));
}

}  // namespace

int Cmd_Analyse(const Work& work, const Output& output) {
  const double seconds = work.seconds;
  const views::Project_Summary sum = views::Get_Summary(work.session.Tbl);
  if (output.format == Format::Columns) {
    Print_Summary(work, output, sum);
    return kExit_Ok;
  }
  const long long lines = sum.Code + sum.Comment + sum.Blank;
  Out_Table table;
  std::vector<std::string> row;
  const auto add = [&](const std::string& key, Cell_Type type, std::string value) {
    table.columns.push_back({key, key, type});
    row.push_back(std::move(value));
  };
  const auto add_peak = [&](const std::string& key, const views::Peak& peak) {
    add(key, Cell_Type::Text, peak.Member);
    add(key + "Value", Cell_Type::Number, Number(peak.Value));
  };
  add("project", Cell_Type::Text, work.session.Srv.Prj_Nam);
  add("path", Cell_Type::Text, work.project.Path);
  add("modules", Cell_Type::Number, Number(sum.Module_Count));
  constexpr std::array<const char*, 5> kKeys{"events", "subs", "functions", "properties", "apis"};
  for (std::size_t i = 0; i < kKeys.size(); ++i)
    add(kKeys[i], Cell_Type::Number, Number(sum.Members[i]));
  add("lines", Cell_Type::Number, Number(lines));
  add("code", Cell_Type::Number, Number(sum.Code));
  add("comments", Cell_Type::Number, Number(sum.Comment));
  add("blanks", Cell_Type::Number, Number(sum.Blank));
  add_peak("longest", sum.Longest);
  add_peak("deepest", sum.Deepest);
  add_peak("mostComplex", sum.Most_Complex);
  add("unreferenced", Cell_Type::Number, Number(sum.Unreferenced));
  add("milliseconds", Cell_Type::Number, Number(std::llround(seconds * 1000)));
  add("linesPerSecond", Cell_Type::Number, Number(Per_Second(lines, seconds)));
  table.rows.push_back(std::move(row));
  Print_Table(output.out, table, output.format, output.width);
  return kExit_Ok;
}

int Cmd_Refs(const Work& work, const Output& output, const std::string& member) {
  Session& session = work.session;
  const std::vector<views::Member_Name> found = views::Find_Members(session.Tbl, member);
  if (found.empty()) {
    output.err << fmt::format(
        "oru: 「{}」というプロシージャはプロジェクトにありません。「oru list procedures」で名前を確認してください。\n",
        member);
    return kExit_Not_Found;
  }
  Out_Table table{{{"対象", "target"},
                   {"方向", "direction"},
                   {"相手", "member"},
                   {"行", "line", Cell_Type::Number},
                   {"位置", "offset", Cell_Type::Number},
                   {"エラー処理", "errorSection", Cell_Type::Flag},
                   {"文", "text", Cell_Type::Text, true}},
                  {}};
  for (const views::Member_Name& name : found) {
    const std::string target = analyser::Full_Name(name.Module, name.Member);
    for (const views::Ref_Line& line :
         views::Get_References(session.Tbl, *session.VBInst, name.Module, name.Member)) {
      const bool is_text = output.format == Format::Columns;
      const std::string direction =
          line.Outgoing ? (is_text ? "→ 呼出先" : "callee") : (is_text ? "← 呼出元" : "caller");
      table.rows.push_back({target, direction, line.Member, Number(line.Line), Number(line.Offset),
                            line.Error_Section ? "1" : "", line.Text});
    }
    if (name.Member.ends_with(')'))
      output.err << fmt::format("oru: {} はプロパティです。プロパティへの参照は記録されません。\n",
                                target);
  }
  if (table.rows.empty() && output.format == Format::Columns) {
    output.err << fmt::format("oru: 「{}」には呼出元も呼出先もありません。\n", member);
    return kExit_Ok;
  }
  // One target needs no column of its own on a screen.
  if (output.format == Format::Columns && found.size() == 1) {
    output.out << table.rows.front().front() << '\n';
    table.columns.erase(table.columns.begin());
    for (std::vector<std::string>& row : table.rows) row.erase(row.begin());
  }
  Print_Table(output.out, table, output.format, output.width);
  return kExit_Ok;
}

int Cmd_Unused(const Work& work, const Output& output) {
  Out_Table table{{{"モジュール", "module"},
                   {"プロシージャ", "member"},
                   {"種別", "kind"},
                   {"Public", "public", Cell_Type::Flag},
                   {"呼出あり", "calls", Cell_Type::Flag},
                   {"開始行", "line", Cell_Type::Number},
                   {"行数", "lines", Cell_Type::Number}},
                  {}};
  for (const views::Unused_Row& row : views::Get_Unused(work.session.Tbl))
    table.rows.push_back({row.Module, row.Member, row.Kind, row.Public ? "1" : "",
                          row.Calls ? "1" : "", Number(row.Line), Number(row.Lines)});
  Print_Table(output.out, table, output.format, output.width);
  return kExit_Ok;
}

int Cmd_Tables(const Work& work, const Output& output) {
  const Session& session = work.session;
  const analyser::Line_Sink put = [&](std::string_view tag, std::string_view payload) {
    output.out << tag << payload << '\n';
  };
  for (const auto& item : session.Tbl.Mdl_Tbl)
    analyser::Put_Module_Block(session.Tbl, *item.value, put);
  analyser::Put_Ref_Marks(session.Tbl, put);
  return kExit_Ok;
}

int Cmd_Commands(const Work& work, const Output& output) {
  Out_Table table{{{"場所", "place"},
                   {"コマンド", "caption"},
                   {"ハンドラ", "handler"},
                   {"この版", "available", Cell_Type::Flag}},
                  {}};
  for (const lifecycle::Command_Info& info : work.session.List_Commands())
    table.rows.push_back({std::string(lifecycle::Place_Name(info.Where)), std::string(info.Caption),
                          std::string(info.Handler), info.Here ? "1" : ""});
  Print_Table(output.out, table, output.format, output.width);
  return kExit_Ok;
}

}  // namespace oru::app
