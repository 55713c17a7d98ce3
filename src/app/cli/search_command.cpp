// SPDX-License-Identifier: MIT
// `oru search`, `oru replace` and `oru undo`.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "app/cli/edit_output.h"
#include "host/places.h"
#include "provider/undo_record.h"
#include "query/frm_search.h"
#include "query/terminal_writer.h"
#include "service/errors.h"
#include "service/text.h"
#include "views/references.h"

namespace oru::app {

namespace {

std::string Kinds_Help() {
  std::string help = "検索対象 (コードまたは英語名):";
  for (const query::Search_Kind& kind : query::kSearch_Kinds)
    help += fmt::format("\n  {:>3}  {:<18} {}", kind.Code, kind.Word, kind.Text);
  return help;
}

void Add_Conditions(CLI::App& command, Search_Options& options) {
  auto* exact = command.add_flag("--exact", options.Exact, "単語として一致する (完全)");
  command.add_flag("--assigned", options.Assigned, "代入される名前だけを検索する (代入)")
      ->excludes(exact);
  command.add_flag("--binary", options.Binary,
                   "大文字・小文字、全角・半角、ひらがな・カタカナを区別する");
  command.add_flag("--no-comments", options.No_Comments, "注釈を検索しない");
  command.add_flag("--no-commented-out", options.No_Commented_Out,
                   "コメントアウト文 (''' で始まる行) を検索しない");
  command.add_flag("--no-literals", options.No_Literals,
                   "--exact で、文字列定数の中の単語に一致しない");
  auto* module =
      command.add_option("--module", options.Module, "範囲: このモジュール")->type_name("NAME");
  command.add_option("--procedure", options.Procedure, "範囲: このプロシージャ (Module.Member)")
      ->type_name("NAME")
      ->excludes(module);
}

// What a front end sets before a search; an exit code, or 0.
class Search_Work {
 public:
  Search_Work(const Work& work, const Output& output, const Search_Options& options)
      : work_(work), output_(output), options_(options) {
    ctx_.Get_Pgm_Inf = [this] { (void)work_.session.Analyse(); };
    form_.Absolute_Lines = !options.Relative;
  }

  // Sets kind, words, conditions and scope.
  int Ask(int code, const std::vector<std::string>& words) {
    form_.FCx_Object_Click(ctx_, code);
    query::Search_Cond& cond = form_.FCo;
    cond.Wrd = code == query::kSearch_Pattern ? (words.empty() ? "" : words.front())
                                              : query::Join_Words(words);
    cond.Opt = options_.Assigned ? query::kAssigned
               : options_.Exact  ? query::kExact
                                 : query::kPartial;
    cond.Cnd = options_.Any ? 1 : 0;
    cond.Cmp = options_.Binary ? service::Compare::Binary : service::Compare::Text;
    cond.Cmt = !options_.No_Comments;
    cond.COt = !options_.No_Commented_Out;
    cond.Cns = !options_.No_Literals;
    cond.Scp = query::kIn_Project;
    // Whoever gives one letter on a command line means it.
    for (const std::string& word : words)
      if (word.size() == 1) form_.Chk_One = word;
    if (code == query::kSearch_Reference) return Put_Caret_On_Target(words);
    if (!options_.Procedure.empty()) return Put_Caret_On_Procedure(code);
    if (options_.Module.empty()) return kExit_Ok;
    cond.Scp = query::kIn_Module;
    if (host::Set_Mdl_Lin(*work_.session.VBInst, options_.Module, 1)) return kExit_Ok;
    Tell(output_.err, fmt::format("「{}」というモジュールはプロジェクトにありません。「oru list "
                                  "modules」で名前を確認してください。",
                                  options_.Module));
    return kExit_Not_Found;
  }

  // Runs the search as one event. An exit code, or 0 if there is a result, which may be empty.
  int Run() {
    bool ran = false;
    const bool whole = service::Run_Evt(work_.session.Srv, "oru", "Cmd_Search",
                                        [&] { ran = form_.Src_Start_Proc(ctx_, 1); });
    return !whole ? kExit_Stopped : ran ? kExit_Ok : kExit_Usage;
  }

  [[nodiscard]] query::Frm_Search& Form() { return form_; }
  [[nodiscard]] const query::Query_Ctx& Ctx() const { return ctx_; }

 private:
  int Put_Caret_On_Procedure(int code) {
    if (!query::Has_Condition(code, query::Search_Condition::In_Procedure)) {
      Tell(output_.err, "この検索対象にプロシージャの範囲は指定できません。");
      return kExit_Usage;
    }
    views::Member_Name member;
    if (const int exit = Find_One(work_, output_, options_.Procedure, member); exit != kExit_Ok)
      return exit;
    form_.FCo.Scp = query::kIn_Procedure;
    if (host::Set_Prc_Pos(*work_.session.VBInst, member.Module, member.Member, 1)) return kExit_Ok;
    return host::Set_Mdl_Lin(*work_.session.VBInst, member.Module, 1) ? kExit_Ok : kExit_Not_Found;
  }

  int Put_Caret_On_Target(const std::vector<std::string>& words) {
    if (words.size() != 1) {
      Tell(output_.err, "対象のプロシージャを Module.Member の形で１つ指定してください。");
      return kExit_Usage;
    }
    views::Member_Name member;
    if (const int exit = Find_One(work_, output_, words.front(), member); exit != kExit_Ok)
      return exit;
    analyser::Tbl_Cur cur;
    if (!analyser::Set_Mem_Fld(work_.session.Tbl, cur, member.Module, member.Member))
      return kExit_Not_Found;
    if (!host::Set_Prc_Pos(*work_.session.VBInst, member.Module, member.Member, 1))
      (void)host::Set_Mdl_Lin(*work_.session.VBInst, member.Module,
                              static_cast<int>(service::Val(cur.Mem.Mem_Lin)));
    return kExit_Ok;
  }

  const Work& work_;
  const Output& output_;
  const Search_Options& options_;
  query::Query_Ctx ctx_{work_.session.Srv, *work_.session.VBInst, work_.session.Tbl, {}, {}};
  query::Frm_Search form_;
};

// The rows for programs: one for each line found.
Out_Table Rows_Of(const Work& work, const query::Search_View& view) {
  Out_Table table;
  table.columns = {{"モジュール", "module"},
                   {"プロシージャ", "procedure"},
                   {"ファイル", "file"},
                   {"行", "line", Cell_Type::Number},
                   {"相対行", "relative", Cell_Type::Number},
                   {"一致", "names"},
                   {"文", "text"}};
  for (const std::string& text : view.Row) {
    const query::Result_Row row = query::Read_Row(text);
    if (row.Type != 'R') continue;
    std::string names;
    for (const std::string_view hit : row.Hits) names.append(names.empty() ? "" : " ").append(hit);
    table.rows.push_back({std::string(row.Mdl), std::string(row.Mem), work.project.File_Of(row.Mdl),
                          std::to_string(row.Lno + row.Index), std::to_string(row.Relative), names,
                          std::string(row.Text)});
  }
  return table;
}

// A planned line as it is and as it will be.
void Print_Change(const Work& work, const Output& output, const query::Undo_Line& line) {
  const auto shown = [&](std::string_view colour, char mark, const std::string& text) {
    const std::string safe = service::Without_Controls(text);
    output.out << (output.colours ? colour : std::string_view()) << mark << safe
               << (output.colours ? "\x1B[0m" : "") << '\n';
  };
  output.out << fmt::format("{}:{}\n", work.project.File_Of(line.Mdl), line.Lno);
  shown("\x1B[31m", '-', line.Old);
  shown("\x1B[32m", '+', line.New);
}

}  // namespace

void Add_Search_Options(CLI::App& command, Search_Options& options) {
  command.add_option("WORDS", options.Words,
                     "検索する語 (空白を含む語は引用符で囲む)。reference では対象の Module.Member");
  command.add_option("--kind", options.Kind, "検索対象 (下の表)")->capture_default_str();
  command.add_flag("--any", options.Any, "語のどれかを含む文 (指定しなければ、すべてを含む文)");
  Add_Conditions(command, options);
  command.add_flag("--by-name", options.By_Name, "プロシージャを名前順に並べる");
  command.add_flag("--relative", options.Relative, "行番号をプロシージャの先頭から数える");
  Add_Text_Files(command, options.Files);
  command.footer(Kinds_Help());
}

void Add_Replace_Options(CLI::App& command, Search_Options& options) {
  command
      .add_option("WORDS", options.Words,
                  "置換対象の語と新しい語を交互に: OLD NEW [OLD NEW ...]。入れ替えもできる")
      ->required();
  Add_Conditions(command, options);
  command.add_flag("--write", options.Write, "ファイルに書き込む (指定しなければ表示だけ)");
  command.add_flag("--signed", options.Signed, "マクロの署名が無効になっても書き込む");
}

int Cmd_Search(const Work& work, const Output& output, const Search_Options& options) {
  const query::Search_Kind* kind = query::Kind_By_Name(options.Kind);
  if (kind == nullptr) {
    Tell(output.err,
         fmt::format(
             "「{}」という検索対象はありません。「oru search --help」の表から選んでください。",
             options.Kind));
    return kExit_Usage;
  }
  service::Settings& settings = work.session.Srv.Opt;
  const service::Number_For_Now by_name(settings, "FOp_ScOpt2",
                                        options.By_Name ? 1 : settings.Number("FOp_ScOpt2"));
  Search_Work search(work, output, options);
  if (const int exit = search.Ask(kind->Code, options.Words); exit != kExit_Ok) return exit;
  if (const int exit = search.Run(); exit != kExit_Ok) return exit;
  const query::Search_Slot& slot = search.Form().Cur();
  const query::Rich_Text& text = slot.Text.Text;
  if (!Save_Text(output, text, options.Files, work.session.Srv.Prj_Nam)) return kExit_Output;
  if (output.format != Format::Columns)
    Print_Table(output.out, Rows_Of(work, slot.Viw), output.format, output.width);
  else if (slot.Viw.Row.empty())
    output.err << query::Get_RTx_Term(text, {.colours = query::Term_Colours::None});
  else if (options.Files.Empty())
    Print_Text(output, text);
  return slot.Viw.Row.empty() ? kExit_Not_Found : kExit_Ok;
}

int Cmd_Replace(const Work& work, const Output& output, const Search_Options& options) {
  if (options.Words.size() % 2 != 0) {
    Tell(output.err, "置換対象の語と新しい語を、組で指定してください。");
    return kExit_Usage;
  }
  std::vector<std::string> was, now;
  for (std::size_t i = 0; i < options.Words.size(); i += 2) {
    was.push_back(options.Words[i]);
    now.push_back(options.Words[i + 1]);
  }
  Search_Options any = options;
  any.Any = true;
  Search_Work search(work, output, any);
  if (const int exit = search.Ask(query::kSearch_Text, was); exit != kExit_Ok) return exit;
  if (const int exit = search.Run(); exit != kExit_Ok) return exit;
  query::Search_View& view = search.Form().Cur().Viw;
  if (view.Row.empty()) {
    output.err << query::Get_RTx_Term(search.Form().Cur().Text.Text,
                                      {.colours = query::Term_Colours::None});
    return kExit_Not_Found;
  }
  if (!view.Viw_Rep) {
    Tell(output.err, "空白や「|」を含む語は置換できません。");
    return kExit_Usage;
  }
  query::Replace_Result done;
  const bool whole = service::Run_Evt(work.session.Srv, "oru", "Cmd_Replace", [&] {
    done = options.Write ? search.Form().Rep_Word(search.Ctx(), now)
                         : query::Plan_Replacement(search.Ctx(), view, now);
  });
  if (!whole) return kExit_Stopped;
  if (!done.Ok()) {
    Tell(output.err, done.Error);
    return kExit_Usage;
  }
  for (const std::string& skipped : done.Skipped) Tell(output.err, skipped);
  for (const query::Undo_Line& line : done.Lines) Print_Change(work, output, line);
  if (options.Write) {
    const Edits_Written written = Write_Edits(work, output, "置換", options.Signed);
    if (written.files > 0)
      output.out << fmt::format(
          "{} 行を置換しました ({} 個のファイル)。「oru undo」で取り消せます。\n",
          done.Lines.size(), written.files);
    return written.exit;
  }
  output.out << fmt::format("{} 行が変わります。--write で書き込みます。\n", done.Lines.size());
  return kExit_Ok;
}

int Cmd_Undo(const Output& output, const std::string& project, int code_page) {
  const provider::Project_Source read = provider::Read_Project(project, {.code_page = code_page});
  if (!read.Ok()) {
    Tell(output.err, read.error);
    return kExit_Project;
  }
  const provider::Undone undone = provider::Take_Back(read);
  if (!undone.error.empty()) {
    Tell(output.err, undone.error);
    return undone.unread ? kExit_Not_Found : kExit_Output;
  }
  Out_Table table;
  table.columns = {{.title = "ファイル", .key = "file", .shrinks = true},
                   {.title = "結果", .key = "result"}};
  for (const std::string& file : undone.files) table.rows.push_back({file, "元に戻しました"});
  Print_Table(output.out, table, output.format, output.width);
  return kExit_Ok;
}

}  // namespace oru::app
