// SPDX-License-Identifier: MIT
#include "transform/line_numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <string_view>
#include <utility>

#include "analyser/reader.h"
#include "host/line_class.h"
#include "service/text.h"

namespace oru::transform {

namespace {

using service::Trim;
using service::Trim_Left;

constexpr auto npos = std::string_view::npos;
constexpr std::string_view kDigits = "0123456789";

// Statements that get no label: a label in front of them is an error or of no use.
constexpr std::array<std::string_view, 7> kNo_Label{"On Error ", "Dim ",  "Static ", "Case ",
                                                    "Else ",     "Exit ", "End "};
constexpr std::string_view kConst = "Const ";

// What a number of a line may follow.
constexpr std::array<std::string_view, 5> kJumps{"GoTo", "GoSub", "Resume", "Then", "Else"};

// The place of the colon behind a line's number; npos if it has no such label.
std::size_t Label_Colon(std::string_view line) {
  const std::size_t colon = line.find(':');
  return colon != npos && service::Is_Numeric(line.substr(0, colon)) ? colon : npos;
}

// The blank behind the colon belongs to the label; code that stands there without one does not.
std::string_view Behind_Label(std::string_view line, std::size_t colon) {
  line.remove_prefix(colon + 1);
  if (line.starts_with(' ')) line.remove_prefix(1);
  return line;
}

// The number in front of a line, "010" as "10", with or without a colon behind it; empty for none.
std::string_view Number_Of(std::string_view line) {
  line = Trim_Left(line);
  std::string_view number = line.substr(0, line.find_first_not_of(kDigits));
  while (number.size() > 1 && number.front() == '0') number.remove_prefix(1);
  return number;
}

// A line number as the language had it first: no colon, only a blank behind it.
bool Has_Bare_Number(std::string_view line) {
  line = Trim(line);
  const std::size_t end = line.find_first_not_of(kDigits);
  if (line.empty() || end == 0) return false;
  return end == npos || (line[end] == ' ' && Label_Colon(line) == npos);
}

// The line numbers that statements of a procedure name.
class Used_Numbers {
 public:
  Used_Numbers(std::span<const std::string> lines, If_Erl if_erl)
      : all_count_(if_erl == If_Erl::Keep) {
    const std::string text = fmt::format("{}", fmt::join(lines, "\r\n"));
    for (analyser::Stm_Reader reader(text, 1); reader.Next();) {
      if (reader.Kind() != analyser::Stm_Kind::Code) continue;
      (void)analyser::Sep_Comment(reader.Cur_Stm());
      analyser::Rev_Cst_Val(reader.Cur_Stm());
      Take(reader.Cur_Stm());
    }
  }

  [[nodiscard]] bool Has(std::string_view number) const {
    return (all_ && all_count_) || numbers_.contains(number);
  }
  void Add(std::string_view number) { numbers_.emplace(number); }

 private:
  static bool Is_Word_Byte(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
  }

  void Take(std::string_view code) {
    bool behind_jump = false;
    for (std::size_t at = 0; at < code.size();) {
      if (!Is_Word_Byte(code[at])) {
        behind_jump = behind_jump && (code[at] == ' ' || code[at] == ',');
        ++at;
        continue;
      }
      std::size_t end = at;
      while (end < code.size() && Is_Word_Byte(code[end])) ++end;
      const std::string_view word = code.substr(at, end - at);
      at = end;
      if (word.find_first_not_of(kDigits) == npos) {
        if (behind_jump) Add(Number_Of(word));
        continue;
      }
      behind_jump = std::ranges::any_of(
          kJumps, [&](std::string_view jump) { return service::Equal_No_Case(word, jump); });
      all_ = all_ || service::Equal_No_Case(word, "Erl");
    }
  }

  std::set<std::string, std::less<>> numbers_;
  bool all_count_;
  bool all_ = false;
};

bool Takes_Label(std::string_view code, bool skip_const) {
  if (code.empty() || code.front() == '\'' || code.front() == '#' || code.ends_with(':'))
    return false;
  if (skip_const && code.starts_with(kConst)) return false;
  return std::ranges::none_of(kNo_Label,
                              [&](std::string_view start) { return code.starts_with(start); });
}

// Numbers that no label may get: a jump means another line by them, or a line has them already.
Used_Numbers Taken_Numbers(std::span<const std::string> lines, std::size_t header) {
  const auto body = lines.subspan(header);
  Used_Numbers taken(body, If_Erl::Remove);
  for (const std::string& line : body)
    if (Has_Bare_Number(line)) taken.Add(Number_Of(line));
  return taken;
}

// What the lines above say about a line.
class Line_Above {
 public:
  // Goes on to the next line.
  void Take(std::string_view line, std::string_view code) {
    Looks_Continued = Trim(code).ends_with('_');
    Is_Continued = host::Is_Continued(service::Trim_Right(line));
  }
  bool Looks_Continued = false;  // no label then, though a name may end in "_"
  bool Is_Continued = false;
};

// Headers of procedures, and what stands outside of them.
class Headers {
 public:
  // False for a line that must not get a label, because it is part of a header or behind the end.
  bool Take(std::string_view line) {
    const std::uint8_t verdict = host::Judge_Line(line, state_);
    state_ = host::State_Of(verdict);
    const bool opens = (verdict & host::kLine_Opens) != 0;
    if (opens) ended_ = false;
    const bool allowed = !opens && !ended_ && !host::In_Header(state_);
    if ((verdict & host::kLine_Closes) != 0) ended_ = true;
    return allowed;
  }

 private:
  host::Line_State state_ = host::Line_State::Fresh;
  bool ended_ = false;
};

host::Change_Result Number(const Transform_Ctx& ctx, const Procedure& procedure, Label_Mode mode,
                           bool skip_const) {
  const host::Member_Place& place = procedure.Mem;
  std::vector<std::string> lines = host::Lines_Of(procedure.Code, place.Top, place.Cnt);
  const auto header = static_cast<std::size_t>(place.Bdy - place.Top);
  std::vector<New_Line> changed = mode == Label_Mode::Set
                                      ? Set_Labels(lines, header, skip_const)
                                      : Cut_Labels(lines, header, If_Erl::Remove);
  std::vector<host::Line_Change> changes;
  changes.reserve(changed.size());
  for (New_Line& line : changed)
    changes.push_back({place.Top + static_cast<int>(line.Line),
                       {std::move(lines[line.Line])},
                       {std::move(line.Text)}});
  return Write(ctx, procedure.Code, procedure.Mdl, changes, host::Keeps::Nothing);
}

}  // namespace

std::vector<New_Line> Set_Labels(std::span<const std::string> lines, std::size_t header,
                                 bool skip_const) {
  std::vector<New_Line> changed;
  if (header >= lines.size()) return changed;
  const Used_Numbers taken = Taken_Numbers(lines, header);
  Headers headers;
  (void)headers.Take(lines[header]);
  Line_Above above;
  above.Take(lines[header], lines[header]);
  for (std::size_t i = header + 1; i < lines.size(); ++i) {
    const std::string_view line = lines[i];
    const bool allowed = headers.Take(line);
    std::string_view code = line;
    if (!above.Is_Continued && !Has_Bare_Number(line)) {
      const std::size_t colon = Label_Colon(line);
      if (colon != npos && !taken.Has(Number_Of(line))) code = Behind_Label(line, colon);
      // A label of another kind, or what looks like one.
      const std::size_t other = colon == npos || code == line ? code.find(':') : npos;
      const bool labelled = other != npos && Trim(code.substr(0, other)).find(' ') == npos;
      const std::string number = std::to_string(i + 1);
      std::string text(code);
      if (allowed && !labelled && !above.Looks_Continued && !taken.Has(number) &&
          Takes_Label(Trim(code), skip_const))
        text.insert(0, number + ": ");
      if (text != line) changed.push_back({i, std::move(text)});
    }
    above.Take(line, code);
  }
  return changed;
}

std::vector<New_Line> Cut_Labels(std::span<const std::string> lines, std::size_t header,
                                 If_Erl if_erl) {
  std::vector<New_Line> changed;
  for (std::size_t i = header + 1; i < lines.size(); ++i) {
    const std::string_view line = Trim(lines[i]);
    const std::size_t colon = Label_Colon(line);
    if (colon == npos || host::Is_Continued(service::Trim_Right(lines[i - 1]))) continue;
    changed.push_back({i, std::string(Behind_Label(line, colon))});
  }
  if (changed.empty()) return changed;
  const Used_Numbers used(lines.subspan(header), if_erl);
  std::erase_if(changed,
                [&](const New_Line& line) { return used.Has(Number_Of(lines[line.Line])); });
  return changed;
}

host::Change_Result Set_LNo_Key(const Transform_Ctx& ctx, Label_Mode mode) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Sub", "Set_LNo_Key");
  if (!host::Chk_Run_Fnc(ctx.VBInst, ctx.Srv)) return {};
  if (mode == Label_Mode::Remove && ctx.Set_Sif_Inf) ctx.Set_Sif_Inf();
  const auto procedure = Get_Cur_Prc(ctx);
  return procedure ? Number(ctx, *procedure, mode, false) : host::Change_Result{};
}

host::Change_Result Set_LNo_Lop(const Transform_Ctx& ctx, const Procedure& procedure,
                                Label_Mode mode) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_LinNo", "Set_LNo_Lop");
  return Number(ctx, procedure, mode, true);
}

Frm_LinNo::Result Frm_LinNo::Set_LinNo(const Transform_Ctx& ctx) const {
  const service::Err_Frame frame(ctx.Srv.Errors, "Frm_LinNo", "Set_LinNo");
  struct Display {
    service::User_Interface& ui;
    ~Display() { ui.Close_Progress(); }
  };
  const Display display{ctx.Srv.Ui};
  const std::string_view status = Mode == Label_Mode::Set ? "行ラベル設定中" : "行ラベル解除中";
  Result result;
  std::int64_t count = 0;
  std::string_view module;
  const auto total = static_cast<std::int64_t>(Prc.size());
  for (const Chosen& chosen : Prc) {
    ++count;
    if (std::exchange(module, chosen.Mdl) != chosen.Mdl) ctx.Srv.Ui.Do_Events();
    ctx.Srv.Ui.Show_Progress({status,
                              chosen.Mdl,
                              count,
                              total,
                              fmt::format("{} ( {} / {} )", status, count, total),
                              {}});
    const auto procedure = Get_Prc(ctx, chosen.Mdl, chosen.Mem);
    if (!procedure) {
      result.Errors.push_back(
          fmt::format("プロシージャ「{}.{}」が見つかりません。", chosen.Mdl, chosen.Mem));
      continue;
    }
    host::Change_Result done = Set_LNo_Lop(ctx, *procedure, Mode);
    if (done.Changed) ++result.Changed;
    if (!done.Ok()) result.Errors.push_back(std::move(done.Error));
  }
  return result;
}

}  // namespace oru::transform
