// SPDX-License-Identifier: MIT
// `oru outline`: the control structure of a procedure.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "query/frm_control.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::app {

namespace {

constexpr std::array<std::string_view, 4> kStates{"control", "calls", "comments", "all"};
constexpr std::array<std::string_view, 4> kClasses{"above", "other", "1", "2"};

template <std::size_t N>
int Place_In(const std::array<std::string_view, N>& words, std::string_view word) {
  const auto at = std::find(words.begin(), words.end(), word);
  return at == words.end() ? -1 : static_cast<int>(at - words.begin());
}

// All members of a module, or the one that is meant. Another exit code, and told, if there is none.
int Find_All(const Work& work, const Output& output, const std::string& name,
             std::vector<views::Member_Name>& found) {
  analyser::Tbl_Cur cur;
  if (analyser::Set_Mdl_Fld(work.session.Tbl, cur, name)) {
    for (const auto& member : cur.Entry->Mem) {
      analyser::Set_Mem_Inf(cur, member.value);
      if (!analyser::Is_Code(cur.Mem.Mem_Knd, analyser::kMem_Api))
        found.push_back({cur.Mdl.Mdl_Nam, member.key});
    }
    return kExit_Ok;
  }
  return Find_One(work, output, name, found.emplace_back());
}

Out_Table Rows_Of(const std::vector<views::Member_Name>& members,
                  const std::vector<std::vector<query::Control_Row>>& rows) {
  Out_Table table;
  table.columns = {{"モジュール", "module"},
                   {"プロシージャ", "procedure"},
                   {"行", "line", Cell_Type::Number},
                   {"深さ", "depth", Cell_Type::Number},
                   {"文", "text"}};
  for (std::size_t i = 0; i < members.size(); ++i)
    for (const query::Control_Row& row : rows[i]) {
      std::string text;
      for (const std::string& line : row.Lines) text.append(text.empty() ? "" : "\n").append(line);
      table.rows.push_back({members[i].Module, members[i].Member, std::to_string(row.Lno),
                            std::to_string(row.Depth), text});
    }
  return table;
}

}  // namespace

void Add_Outline_Options(CLI::App& command, Outline_Options& options) {
  command.add_option("NAME", options.Name, "Module.Member (Member だけでもよい)、またはモジュール")
      ->required();
  command
      .add_option("--show", options.Show,
                  "control 制御文、calls 呼出文、comments コメント文、all すべての文")
      ->capture_default_str();
  command
      .add_option("--comments", options.Comments,
                  "表示するコメント: above 制御文直上部、other その他、1 強調①、2 強調②、none なし "
                  "(省略時 above,1,2)")
      ->delimiter(',');
  command.add_option("--levels", options.Levels, "表示する階層の数 (0 はすべて)")
      ->check(CLI::Range(0, 1000));
  command.add_option("--from", options.From, "モジュールのこの行以降を表示する")
      ->check(CLI::Range(1, 100000));
  command.add_flag("--blank", options.Blank, "空白行を表示する");
  command.add_flag("--no-calls", options.No_Calls, "プロシージャ呼出文を表示しない");
  command.add_flag("--call-comments", options.Call_Comments,
                   "呼び出すプロシージャのコメントを表示する");
  command.add_flag("--commented-out", options.Commented_Out,
                   "--show all で、コメントアウト文も表示する");
  command.add_flag("--no-jumps", options.No_Jumps, "On Error と GoTo を表示しない");
  command.add_flag("--no-directives", options.No_Directives, "ディレクティブを表示しない");
  command
      .add_option("--element", options.Element,
                  "この語を含む文だけを表示する (--mark なら、すべての文の中で目立たせる)")
      ->type_name("WORD");
  command.add_flag("--mark", options.Mark, "--element の語を含まない文も表示する");
  command.add_flag("--relative", options.Relative, "行番号をプロシージャの先頭から数える");
  Add_Text_Files(command, options.Files);
}

int Cmd_Outline(const Work& work, const Output& output, const Outline_Options& options) {
  query::Frm_Control form;
  query::Control_Cond& cond = form.FCo;
  cond.Sta = Place_In(kStates, options.Show);
  if (cond.Sta < 0) {
    Tell(output.err, fmt::format("「{}」は表示できません。control、calls、comments、all "
                                 "から選んでください。",
                                 options.Show));
    return kExit_Usage;
  }
  if (!options.Comments.empty()) cond.Cmt = {};
  for (const std::string& word : options.Comments) {
    const int place = Place_In(kClasses, word);
    if (place >= 0) cond.Cmt[static_cast<std::size_t>(place)] = true;
    if (place >= 0 || word == "none") continue;
    Tell(output.err, fmt::format("「{}」というコメントの種類はありません。above、other、1、2、none "
                                 "から選んでください。",
                                 word));
    return kExit_Usage;
  }
  cond.Lev = options.Levels;
  cond.Rng = options.From > 0 ? 1 : 0;
  cond.Lin = options.From;
  cond.Blk = options.Blank;
  cond.Ref = !options.No_Calls;
  cond.RCm = options.Call_Comments;
  cond.COt = options.Commented_Out;
  cond.Jumps = !options.No_Jumps;
  cond.Directives = !options.No_Directives;
  cond.Ele = options.Element;
  cond.Sel = options.Mark;
  form.Absolute_Lines = !options.Relative;

  std::vector<views::Member_Name> members;
  if (const int exit = Find_All(work, output, options.Name, members); exit != kExit_Ok) return exit;
  const query::Query_Ctx ctx{work.session.Srv, *work.session.VBInst, work.session.Tbl, {}, {}};
  std::vector<std::vector<query::Control_Row>> rows;
  for (const views::Member_Name& member : members) {
    bool shown = false;
    if (!service::Run_Evt(work.session.Srv, "oru", "Cmd_Outline",
                          [&] { shown = form.Dsp_Member(ctx, member.Module, member.Member); }))
      return kExit_Stopped;
    if (!shown) {
      Tell(output.err,
           fmt::format("「{}.{}」のコードがありません。", member.Module, member.Member));
      return kExit_Not_Found;
    }
    rows.push_back(form.Cur().Rows);
    if (output.format != Format::Columns) continue;
    if (!options.Files.Empty()) {
      if (members.size() > 1) {
        Tell(output.err, "--rtf と --html には、プロシージャを１つ指定してください。");
        return kExit_Usage;
      }
      if (!Save_Text(output, form.Cur().Text.Text, options.Files, member.Member))
        return kExit_Output;
      continue;
    }
    if (rows.size() > 1) output.out << '\n';
    Print_Text(output, form.Cur().Text.Text);
  }
  if (output.format != Format::Columns)
    Print_Table(output.out, Rows_Of(members, rows), output.format, output.width);
  return kExit_Ok;
}

}  // namespace oru::app
