// SPDX-License-Identifier: MIT
#include "query/frm_search.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <utility>

#include "analyser/definitions.h"
#include "analyser/kinds.h"
#include "host/derived.h"
#include "host/places.h"
#include "query/search_run.h"
#include "query/statement_text.h"
#include "service/clock.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::query {

using service::Answer;
using service::Buttons;
using service::Icon;
using service::Srv_Dsp_Msg;
using service::Trim;

namespace {

constexpr auto npos = std::string_view::npos;
constexpr const char* kModule = "Frm_Search";
constexpr std::string_view kStopped = "●検索処理を中止しました。";
constexpr std::string_view kWide_Blank = "\u3000";
constexpr std::size_t kMost_Rows = 20'000;
constexpr std::size_t kRows_At_Once = 300;  // more are worth a word

// The text with each full-width blank as a blank.
std::string Plain_Blanks(std::string_view text) {
  return service::Replace_All(text, kWide_Blank, " ");
}

// A question cut into its words. "%|" stands for "|"; with any other "|" blanks belong to words.
// Empty elements stand at the end: their number decides some messages.
std::vector<std::string> Cut_Words(std::string_view question) {
  const std::string text = service::Replace_All(question, "%|", "\t");
  const bool bars = text.find('|') != npos;
  const std::string cut = bars ? text : Plain_Blanks(text);
  std::vector<std::string> words;
  for (const std::string_view part : service::Split(cut, bars ? "|" : " "))
    words.push_back(service::Replace_All(part, "\t", "|"));
  std::stable_partition(words.begin(), words.end(),
                        [](const std::string& word) { return !word.empty(); });
  return words;
}

// The word at a column of a line, 1-based characters.
std::string Word_At(std::string_view line, int column) {
  const std::size_t at = service::Byte_Of_Chr(line, service::Chr_Count{column});
  const auto ends = [](char c) {
    return kDelimiters.find(c) != npos || kSuffixes.find(c) != npos ||
           std::string_view("+-*/\\^<>=;{}").find(c) != npos;
  };
  std::size_t begin = at, end = at;
  while (begin > 0 && !ends(line[begin - 1])) --begin;
  while (end < line.size() && !ends(line[end])) ++end;
  return std::string(line.substr(begin, end - begin));
}

// What a pattern matched, each text once.
std::vector<std::string> Matches_In(const std::vector<std::string>& rows) {
  std::set<std::string, std::less<>> matches;
  for (const std::string& row : rows)
    for (const std::string_view match : Read_Row(row).Hits) matches.emplace(match);
  return {matches.begin(), matches.end()};
}

// Puts flags back whatever happens.
class Busy {
 public:
  Busy(bool& flag, service::User_Interface& ui) : flag_(flag), ui_(ui) {
    flag_ = true;
    ui_.Set_Wait_Cursor(true);
  }
  ~Busy() {
    flag_ = false;
    ui_.Set_Wait_Cursor(false);
  }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  bool& flag_;
  service::User_Interface& ui_;
};

Result_Style Style_Of(const Query_Ctx& ctx, bool absolute_lines) {
  return {ctx.Srv.Opt, ctx.Srv.KWd, absolute_lines};
}

}  // namespace

std::string Join_Words(const std::vector<std::string>& words) {
  std::string question;
  const bool bars = std::any_of(words.begin(), words.end(), [](const std::string& word) {
    return word.find(' ') != npos || word.find(kWide_Blank) != npos;
  });
  for (const std::string& word : words) {
    if (word.empty()) continue;
    if (!question.empty()) question += bars ? "|" : " ";
    question += service::Replace_All(word, "|", "%|");
  }
  return bars && question.find('|') == npos ? question + "|" : question;
}

void Frm_Search::FCx_Object_Click(const Query_Ctx& ctx, int code) {
  FCo.Knd = code;
  const int scope = ctx.Srv.Opt.Number("FOp_AScSc");
  if (code >= kSearch_Exact && code != kSearch_Reference && scope <= kIn_Project) FCo.Scp = scope;
  if (FCo.Scp == kIn_Procedure && !Has_Condition(code, Search_Condition::In_Procedure))
    FCo.Scp = kIn_Module;
  if (code > kSearch_With) {
    FCo.Opt = kPartial;
    FCo.Wrd.clear();
  }
}

void Frm_Search::Cond_Changed(const Query_Ctx& ctx) {
  if (!busy_ && ctx.Srv.Opt.Flag("FOp_ScOpt1")) (void)Src_Start_Proc(ctx, 0);
}

bool Frm_Search::Take_Words(const Query_Ctx& ctx, Search_View& view, int ag_Msg) {
  service::Services& srv = ctx.Srv;
  Search_Cond& cond = view.Cond;
  const auto tell = [&](std::string_view text) {
    (void)Srv_Dsp_Msg(srv, text, Buttons::Ok, 1, Icon::Warning);
    return false;
  };
  if (Plain_Blanks(cond.Wrd).find_first_not_of(" |") == std::string::npos) {
    if (ag_Msg != 1) return false;
    const std::string_view what = cond.Knd == kSearch_Pattern ? "パターン文字列"
                                  : cond.Knd == kSearch_With  ? "With句の対象語"
                                                              : "検索文字列";
    return tell(fmt::format("{}を指定してください。    ", what));
  }
  if (cond.Knd == kSearch_Pattern) {
    view.Words = {cond.Wrd};
    return true;
  }
  view.Words = Cut_Words(cond.Wrd);
  std::int64_t longest = 0;
  std::string one;
  for (const std::string& word : view.Words) {
    const std::int64_t width = service::To_Int(service::Len_Wid(word));
    longest = std::max(longest, width);
    if (width == 1) one = word;
  }
  // Elements that were removed count: a blank behind the word is refused as well.
  if (view.Words.size() > 1 && cond.Knd == kSearch_With)
    return tell("修飾語検索で複数の文字列を指定することはできません。    ");
  if (cond.Knd != kSearch_Text || cond.Opt != kPartial || longest != 1) {
    Chk_One.clear();
    return true;
  }
  if (srv.Opt.Flag("FCk_ParHt")) {
    cond.Knd = kSearch_Exact;
    cond.Opt = kExact;
    return true;
  }
  if (one == Chk_One) return true;
  Chk_One = one;
  switch (Srv_Dsp_Msg(srv,
                      "検索文字列が半角１桁です。|完全一致オプションを設定して検索しますか。    ",
                      Buttons::Yes_No_Cancel, 1, Icon::Question)) {
    case Answer::Yes:
      cond.Knd = kSearch_Exact;
      cond.Opt = FCo.Opt = kExact;
      return true;
    case Answer::No:
      return true;
    default:
      return false;
  }
}

bool Frm_Search::Take_Target(const Query_Ctx& ctx, Search_View& view) {
  const auto tell = [&](std::string_view text) {
    (void)Srv_Dsp_Msg(ctx.Srv, text, Buttons::Ok, 1, Icon::Warning);
    return false;
  };
  if (view.Viw_RMm.empty()) {
    constexpr std::string_view kNowhere =
        "対象プロシージャかApi宣言文にキャレットを移動してから実行してください。    ";
    const auto caret = host::Get_ACp_Inf(ctx.VBInst);
    if (!caret) return tell(kNowhere);
    std::string member = caret->Mem.Nam;
    if (member == analyser::kDeclare) {
      host::VBComponent* component =
          ctx.VBInst.ActiveVBProject()->VBComponents().Item(caret->Mdl_Nam);
      host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
      member = code == nullptr ? "" : analyser::Chk_Api_Def(*code, caret->Sel.start_line);
      if (member.empty()) return tell(kNowhere);
    }
    view.Viw_RMd = caret->Mdl_Nam;
    view.Viw_RMm = std::move(member);
  }
  analyser::Tbl_Cur cur;
  if (analyser::Set_Ref_Mrk(ctx.Tbl, view.Viw_RMd, view.Viw_RMm).find("↑") == npos ||
      !analyser::Set_Mem_Fld(ctx.Tbl, cur, view.Viw_RMd, view.Viw_RMm)) {
    view.Viw_RMd.clear();
    view.Viw_RMm.clear();
    return tell("このプロシージャは他から参照されていません。    |");
  }
  view.Viw_RMd = cur.Mem.Mem_Mdl;
  view.Viw_RMm = cur.Mem.Mem_Nam;
  view.Viw_RSc = cur.Mem.Mem_Scp;
  view.Viw_Wrd = view.Cond.Wrd = FCo.Wrd = view.Viw_RMm;
  view.Cond.Scp =
      analyser::Is_Code(view.Viw_RSc, analyser::kScp_Private) ? kIn_Module : kIn_Project;
  view.Words.clear();
  for (const std::string_view word : service::Split(view.Viw_Wrd, " "))
    view.Words.emplace_back(analyser::To_Host_Name(word).Nam);
  return true;
}

bool Frm_Search::Src_Start_Proc(const Query_Ctx& ctx, int ag_Msg) {
  const service::Err_Frame frame(ctx.Srv.Errors, kModule, "Src_Start_Proc");
  if (busy_) return false;
  const Busy busy(busy_, ctx.Srv.Ui);
  if (ctx.Get_Pgm_Inf) ctx.Get_Pgm_Inf();

  if (ag_Msg == 1) {
    // The user's own word; where that is declared nobody asked.
    Asr_Mdl.clear();
    Asr_Mem.clear();
  }
  Search_View& view = Cur().Viw;
  const Search_View before = view;  // a question that is refused leaves the view as it was
  const bool same_target = view.Cond.Knd == kSearch_Reference && FCo.Knd == kSearch_Reference;
  view.Cond = FCo;
  if (view.Cond.Knd == kSearch_Text && view.Cond.Opt != kPartial) view.Cond.Knd = kSearch_Exact;
  if (!same_target) {
    view.Viw_RMd.clear();
    view.Viw_RMm.clear();
  }
  const auto refuse = [&] {
    view = before;
    return false;
  };
  view.Viw_Wrd = view.Cond.Wrd;
  view.Words.clear();
  if (view.Cond.Knd < kSearch_Variable && !Take_Words(ctx, view, ag_Msg)) return refuse();
  std::optional<service::Pattern> pattern;
  if (view.Cond.Knd == kSearch_Pattern) {
    pattern.emplace(view.Cond.Wrd, view.Cond.Cmp == service::Compare::Text);
    if (!pattern->Ok()) {
      (void)Srv_Dsp_Msg(ctx.Srv, "パターン文字列に誤りがあります。    ", Buttons::Ok, 1,
                        Icon::Warning);
      return refuse();
    }
  }
  if (view.Cond.Knd == kSearch_Form && ctx.VBInst.ActiveVBProject() != nullptr) {
    host::VBComponents& components = ctx.VBInst.ActiveVBProject()->VBComponents();
    for (int i = 1; i <= components.Count(); ++i)
      if (const int type = components.Item(i)->Type(); type == 3 || type == 5 || type == 9)
        view.Words.push_back(components.Item(i)->Name());
  }
  if (view.Cond.Knd == kSearch_Reference && !Take_Target(ctx, view)) return refuse();

  const auto caret = host::Get_ACp_Inf(ctx.VBInst);
  view.Viw_CMd = caret ? caret->Mdl_Nam : "";
  view.Viw_CMm = caret ? caret->Mem.Nam : "";
  if (caret && caret->Mem.Nam == analyser::kDeclare && view.Cond.Scp == kIn_Procedure &&
      (view.Cond.Knd == kSearch_Unused_Variable || view.Cond.Knd == kSearch_Unused_Constant))
    view.Cond.Scp = FCo.Scp = kIn_Module;
  view.Viw_Pos = caret ? fmt::format("{}\t{}\t{}", caret->Sel.start_line - caret->Mem.Top + 1,
                                     caret->Mem.Nam, caret->Mdl_Nam)
                       : "";
  Src_Main(ctx, pattern ? &*pattern : nullptr, false);
  return true;
}

void Frm_Search::Src_Main(const Query_Ctx& ctx, const service::Pattern* pattern, bool again) {
  Search_Slot& slot = Cur();
  Search_View& view = slot.Viw;
  // A new run can invalidate what other views remember of their lines.
  for (Search_Slot& other : Slots) other.Viw.Viw_Rep = other.Viw.Viw_Rdo = false;
  view.Viw_SMd = view.Cond.Scp == kIn_Project ? "" : view.Viw_CMd;
  view.Viw_SMm = view.Cond.Scp == kIn_Procedure ? view.Viw_CMm : "";
  if (view.Cond.Knd == kSearch_Reference && view.Cond.Scp != kIn_Project)
    view.Viw_SMd = view.Viw_RMd;
  slot.Text = {};
  view.Message.clear();
  Row_Order order;
  const service::Settings& opt = ctx.Srv.Opt;
  order.By_Name = opt.Flag("FOp_ScOpt2");
  if (opt.Flag("FOp_ScOpt5")) {
    order.Current_Mdl = view.Viw_CMd;
    order.Current_Mem = view.Viw_CMm;
  }
  if (opt.Flag("FOp_ScOpt7")) {
    order.First_Mdl = Asr_Mdl;
    order.First_Mem = Asr_Mem;
  }
  try {
    Search_Run(ctx, view, std::move(order), pattern).Src_Main();
  } catch (...) {
    // What was found so far is no answer.
    ctx.Srv.Ui.Close_Progress();
    Stop(ctx);
    throw;
  }
  view.Viw_Tim = service::Stamp(ctx.Srv.Clk.Now());
  const auto goes_on = [&](std::string_view question) {
    return Srv_Dsp_Msg(ctx.Srv, question, Buttons::Yes_No, 1, Icon::Question) != Answer::No;
  };
  if (view.Row.empty()) {
    view.Message = Set_Not_Msg(view);
    slot.Text = Message_Text(view.Message, Style_Of(ctx, Absolute_Lines));
    return;
  }
  const int limit = opt.Number("FTx_SCMax");
  if (!again && view.Viw_Hit > limit &&
      !goes_on(fmt::format("条件に該当する文の行数が、オプションで指定された制限行数を    |"
                           "超えています。    |該当文の行数 = {} ＞ オプション設定行数 = {}    |"
                           "処理を続行しますか。",
                           view.Viw_Hit, limit)))
    return Stop(ctx);
  if (!again && view.Row.size() > kMost_Rows &&
      !goes_on("検索結果の表示可能行数は最大９９９９行です。    |処理を続行しますか。"))
    return Stop(ctx);
  if (view.Cond.Knd == kSearch_Pattern) view.Words = Matches_In(view.Row);
  if (view.Row.size() > kRows_At_Once) {
    service::Progress progress;
    progress.text = "検索結果を編集しています";
    progress.total = static_cast<std::int64_t>(view.Row.size());
    progress.label = progress.text;
    ctx.Srv.Ui.Show_Progress(progress);
  }
  slot.Text = Set_Res_Lin(ctx.Tbl, view, Style_Of(ctx, Absolute_Lines));
  ctx.Srv.Ui.Close_Progress();
  view.Viw_Rep = (view.Cond.Knd == kSearch_Text || view.Cond.Knd == kSearch_Exact) &&
                 view.Viw_Hit >= 1 && view.Viw_Wrd.find('|') == std::string::npos;
}

void Frm_Search::Stop(const Query_Ctx& ctx) {
  Search_Slot& slot = Cur();
  slot.Viw.Row.clear();
  slot.Viw.Viw_Hit = 0;
  slot.Viw.Message = kStopped;
  slot.Text = Message_Text(kStopped, Style_Of(ctx, Absolute_Lines));
}

bool Frm_Search::Get_Inform(const Query_Ctx& ctx) {
  const auto caret = host::Get_ACp_Inf(ctx.VBInst);
  if (!caret || ctx.VBInst.ActiveVBProject() == nullptr) return false;
  host::VBComponent* component = ctx.VBInst.ActiveVBProject()->VBComponents().Item(caret->Mdl_Nam);
  const host::CodeModule* code = component == nullptr ? nullptr : component->CodeModule();
  const host::Selection& sel = caret->Sel;
  if (code == nullptr || sel.start_line > code->CountOfLines()) return false;
  std::string word = host::Get_Sel_Wrd(*code, sel);
  if (word.empty() && sel.start_line == sel.end_line && sel.start_column == sel.end_column)
    word = Word_At(code->Lines(sel.start_line, 1), sel.start_column);
  if (word.empty()) return false;

  FCx_Object_Click(ctx, kSearch_Text);
  // The scope follows the word's declaration; a word that is declared nowhere is looked for as text.
  FCo.Opt = kPartial;
  FCo.Scp = kIn_Project;
  Asr_Mdl.clear();
  Asr_Mem.clear();
  const analyser::Anl_Options options(ctx.Srv.Opt);
  const analyser::Visible_Names names =
      analyser::Set_Def_Tbl(ctx.Tbl, ctx.VBInst, options, caret->Mdl_Nam, caret->Mem.Nam,
                            analyser::Def_Reach::Project, false);
  analyser::Tbl_Cur cur;
  for (const std::string& row : names.Rows) {
    analyser::Set_VCs_Inf(cur, std::string_view(row).substr(1));
    if (!service::Equal_No_Case(cur.Def.Def_Nam, word)) continue;
    FCo.Opt = kExact;
    FCo.Scp = row[0] == '0' ? kIn_Procedure
              : row[0] == '1' && !analyser::Is_Code(cur.Def.Def_Scp, analyser::kScp_Public)
                  ? kIn_Module
                  : kIn_Project;
    Asr_Mdl = row[0] == '2' ? cur.Def.Def_Mdl : caret->Mdl_Nam;
    Asr_Mem = row[0] == '0' ? caret->Mem.Nam : std::string(analyser::kDeclare);
    break;
  }
  for (std::size_t i = 1; FCo.Opt == kPartial && analyser::Set_Mdl_Fld(ctx.Tbl, cur, i); ++i) {
    const analyser::Mdl_Entry* entry = cur.Entry;
    for (const auto& member : entry->Mem) {
      if (!service::Equal_No_Case(analyser::To_Host_Name(member.key).Nam, word)) continue;
      analyser::Set_Mem_Inf(cur, member.value);
      const bool is_private = analyser::Is_Code(cur.Mem.Mem_Scp, analyser::kScp_Private);
      if (is_private && cur.Mdl.Mdl_Nam != caret->Mdl_Nam) continue;
      FCo.Opt = kExact;
      FCo.Scp = is_private ? kIn_Module : kIn_Project;
      Asr_Mdl = cur.Mdl.Mdl_Nam;
      Asr_Mem = member.key;
      break;
    }
  }
  word = service::Replace_All(word, "|", "%|");
  FCo.Wrd = Plain_Blanks(word).find(' ') == std::string::npos ? word : word + "|";
  return Src_Start_Proc(ctx, 0);
}

Replace_Result Frm_Search::Rep_Word(const Query_Ctx& ctx, const std::vector<std::string>& rep_wds) {
  const service::Err_Frame frame(ctx.Srv.Errors, kModule, "Rep_Word");
  Search_View& view = Cur().Viw;
  if (!view.Viw_Rep || busy_) return {"この検索結果では置換を実行できません。", {}, {}};
  const Busy busy(busy_, ctx.Srv.Ui);
  Replace_Result done = Plan_Replacement(ctx, view, rep_wds);
  if (!done.Ok()) return done;
  Write_Lines(ctx, done, false);
  Rdo_Lst = {done.Lines, view.Words, rep_wds};
  view.Words = rep_wds;
  return After_Replacing(ctx, std::move(done), false);
}

Replace_Result Frm_Search::Rdo_Word(const Query_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, kModule, "Rdo_Word");
  Search_View& view = Cur().Viw;
  if (!view.Viw_Rdo || busy_) return {"取り消せる置換がありません。", {}, {}};
  const Busy busy(busy_, ctx.Srv.Ui);
  Replace_Result done;
  done.Lines = Rdo_Lst.Lines;
  Write_Lines(ctx, done, true);
  view.Words = Rdo_Lst.Old_Words;
  return After_Replacing(ctx, std::move(done), true);
}

// The words of the view are looked for again, and the result may be replaced or taken back.
Replace_Result Frm_Search::After_Replacing(const Query_Ctx& ctx, Replace_Result done, bool undone) {
  if (ctx.Get_Pgm_Inf) ctx.Get_Pgm_Inf();
  Search_View& view = Cur().Viw;
  view.Viw_Wrd = view.Cond.Wrd = FCo.Wrd = Join_Words(view.Words);
  Src_Main(ctx, nullptr, true);
  view.Viw_Rep = true;
  view.Viw_Rdo = !undone && !done.Lines.empty();
  if (undone) Rdo_Lst = {};
  return done;
}

std::optional<std::string_view> Frm_Search::FRt_Result_Click(const Query_Ctx& ctx,
                                                             service::Chr_Count place) {
  const Search_Slot& slot = Cur();
  const auto behind = std::upper_bound(slot.Text.Begins.begin(), slot.Text.Begins.end(), place);
  if (behind == slot.Text.Begins.begin()) return std::nullopt;
  const auto at = static_cast<std::size_t>(behind - slot.Text.Begins.begin()) - 1;
  const Result_Row row = Read_Row(slot.Viw.Row[at]);
  if (row.Type == 'L') return std::nullopt;
  if (row.Type == 'M')
    return host::Set_Mdl_Lin(ctx.VBInst, row.Mdl, 1) ? std::optional(std::string_view())
                                                     : std::nullopt;
  const int line = row.Type == 'R' ? row.Relative : 1;
  if (!host::Set_Prc_Pos(ctx.VBInst, row.Mdl, row.Mem, line)) return std::nullopt;
  if (row.Type != 'R') return std::string_view();
  const auto caret = host::Get_ACp_Inf(ctx.VBInst);
  host::CodeModule& code =
      *ctx.VBInst.ActiveVBProject()->VBComponents().Item(row.Mdl)->CodeModule();
  // A name that comes twice: the row's own line tells which.
  const auto is_it = [&](int number) {
    if (number < 1 || number > code.CountOfLines()) return false;
    std::string text = code.Lines(number, 1);
    std::replace(text.begin(), text.end(), '\t', ' ');
    return text == row.Text;
  };
  if (caret && is_it(caret->Sel.start_line)) return std::string_view();
  if (is_it(row.Lno + row.Index) && host::Set_Mdl_Lin(ctx.VBInst, row.Mdl, row.Lno + row.Index))
    return std::string_view();
  return kChanged_Since;
}

std::vector<Result_Place> Frm_Search::Dsp_DDL_Viw() {
  std::vector<Result_Place> places;
  const Search_Slot& slot = Cur();
  for (std::size_t i = 0; i < slot.Viw.Row.size() && i < slot.Text.Begins.size(); ++i) {
    const Result_Row row = Read_Row(slot.Viw.Row[i]);
    if (row.Type == 'M')
      places.push_back({std::string(row.Mdl), "", std::string(row.Mdl), slot.Text.Begins[i]});
    // Without procedure lines the first row of a procedure stands for it.
    if ((row.Type == 'P' || row.Type == 'R') && !places.empty() &&
        (places.back().Mem != row.Mem || places.back().Mdl != row.Mdl))
      places.push_back(
          {std::string(row.Mdl), std::string(row.Mem),
           row.Mem == analyser::kDeclare ? "  【宣言部】" : fmt::format("  {}", row.Mem),
           slot.Text.Begins[i]});
  }
  return places;
}

std::vector<History_Row> Frm_Search::Dsp_Hst_Viw() const {
  std::vector<History_Row> rows;
  for (int i = 0; i < kSearch_Views; ++i) {
    const Search_View& view = Slots[static_cast<std::size_t>(i)].Viw;
    if (view.Viw_Tim.empty()) continue;
    rows.push_back({i, std::string(Kind_Text(view.Cond.Knd, view.Cond.Opt)), view.Viw_Wrd,
                    view.Viw_Tim, view.Viw_Hit});
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [](const History_Row& a, const History_Row& b) { return a.Time > b.Time; });
  return rows;
}

bool Frm_Search::Chg_Res_Viw(int slot) {
  if (slot < 0 || slot >= kSearch_Views) return false;
  Viw_Cur = slot;
  if (Cur().Viw.Viw_Tim.empty()) return true;
  FCo = Cur().Viw.Cond;
  if (FCo.Knd == kSearch_Exact) FCo.Knd = kSearch_Text;
  return true;
}

void Frm_Search::Clr_Res_Viw(int slot) {
  if (slot >= 0 && slot < kSearch_Views) Slots[static_cast<std::size_t>(slot)] = {};
}

void Frm_Search::Set_Res_Viw(const Query_Ctx& ctx) {
  const int kept = std::clamp(ctx.Srv.Opt.Number("FTx_ViwCn0"), 1, kSearch_Views);
  const auto begin = Slots.begin();
  const auto oldest = std::min_element(
      begin, begin + kept,
      [](const Search_Slot& a, const Search_Slot& b) { return a.Viw.Viw_Tim < b.Viw.Viw_Tim; });
  Viw_Cur = static_cast<int>(oldest - begin);
  *oldest = {};
}

}  // namespace oru::query
