// SPDX-License-Identifier: MIT
// The matchers that decide by one statement.
#include <fmt/format.h>

#include <algorithm>

#include "analyser/reader.h"
#include "analyser/references.h"
#include "host/derived.h"
#include "query/search_run.h"
#include "query/statement_text.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::query {

using service::Text_Span;
using service::Trim;

namespace {

constexpr auto npos = std::string_view::npos;

// Where a search goes on behind the beginning of a place: by one character.
std::size_t Behind_First(std::string_view text, Text_Span span) {
  std::size_t at = span.at;
  (void)service::Next_Code_Point(text, at);
  return at;
}

bool Is_Delimited(std::string_view token) {
  return token.find_first_of(kSuffixes) != npos || token.find_first_of(kDelimiters) != npos;
}

// The token of a statement that may begin with ".", as a With's target is used: "Foo(.Bar" gives
// ".Bar", ".Bar(1)" gives ".Bar".
std::string_view Member_Token(std::string_view token) {
  for (std::size_t dot = token.find('.', 1); dot != npos; dot = token.find('.', dot + 1)) {
    const bool digit = dot + 1 < token.size() && token[dot + 1] >= '0' && token[dot + 1] <= '9';
    if (token[dot - 1] == '(' && !digit) {
      token.remove_prefix(dot);
      break;
    }
  }
  if (const std::size_t cut = token.find_first_of(",(", 1); cut != npos)
    token = token.substr(0, cut);
  while (token.size() > 1 && token.ends_with("))")) token.remove_suffix(1);
  if (token.ends_with(')') && token.find('(') == npos) token.remove_suffix(1);
  return token;
}

}  // namespace

const std::string* Search_Run::Pass_Gate(bool always_cut) {
  if (Is_Comment(tested_)) {
    if (!cond_.Cmt) return nullptr;
    if (!cond_.COt && Is_Commented_Out(tested_)) return nullptr;
    return &tested_;
  }
  if (cond_.Cmt && !always_cut) return &tested_;
  cut_ = tested_;
  (void)analyser::Sep_Comment(cut_);
  return &cut_;
}

void Search_Run::Chk_RegEx() {
  const std::string* text = Pass_Gate(false);
  if (text == nullptr) return;
  if (text == &cut_) {
    // Only the comment goes: the blanks in front stay, which a pattern may ask for.
    std::string code = tested_;
    const std::string comment = analyser::Sep_Comment(code);
    cut_ = comment.empty() ? tested_ : service::Replace_All(tested_, comment, "");
  }
  const std::vector<Text_Span> matches = pattern_->Matches(*text);
  if (matches.empty() && !pattern_->Test(*text)) return;
  for (const Text_Span span : matches)
    Add_Hit_Name(std::string_view(*text).substr(span.at, span.size));
  Set_Hit_Lst();
}

bool Search_Run::Any_Or_All(bool (Search_Run::*found)(std::size_t, const std::string&),
                            const std::string& text) {
  for (std::size_t i = 0; i < finders_.size(); ++i)
    if ((this->*found)(i, text) == (cond_.Cnd == 1)) return cond_.Cnd == 1;
  return cond_.Cnd != 1 && !finders_.empty();
}

bool Search_Run::Has_Text(std::size_t word, const std::string& text) {
  return finders_[word].Is_In(text);
}

void Search_Run::Chk_Char() {
  const std::string* text = Pass_Gate(false);
  if (text != nullptr && Any_Or_All(&Search_Run::Has_Text, *text)) Set_Hit_Lst();
}

bool Search_Run::Has_Word(std::size_t word, const std::string& padded) {
  for (std::size_t from = 0;;) {
    const auto span = finders_[word].Find(padded, from);
    if (!span) return false;
    from = Behind_First(padded, *span);
    if (!Is_Word_At(padded, *span, Src_Dlm)) continue;
    if (cond_.Knd == kSearch_Exact && cond_.Opt != kAssigned) return true;
    if (Chk_Let_Sta(padded, span->at, true)) return true;
    if (cond_.Knd == kSearch_Reference && (padded.find("Declare ") != npos || Src_Lno == CMm_Bdy))
      return true;
  }
}

void Search_Run::Chk_Word() {
  if (cond_.Knd == kSearch_Reference && Is_Comment(tested_)) return;
  const std::string* text = Pass_Gate(cond_.Opt == kAssigned);
  if (text != nullptr && Any_Or_All(&Search_Run::Has_Word, Padded(*text))) Set_Hit_Lst();
}

void Search_Run::Chk_With() {
  if (Is_Comment(tested_)) return;
  const std::string_view statement = Trim(tested_);
  if (statement.starts_with("With ")) {
    const std::string_view target = statement.substr(5, statement.find(' ', 5) - 5);
    auto pending = std::make_unique<Pending>(Pending{Src_Lno, Src_Lin});
    if (!target.starts_with('.')) {
      if (Wth.size() == kMost_With)
        throw service::Sys_Error(service::kOwn_Error, "修飾の制限数(10)を超過しました。");
      Wth.emplace_back();
    }
    if (Wth.empty()) return;
    Wth.back().Tgt.emplace_back(target);
    Wth.back().Pnd.push_back(std::move(pending));
    return;
  }
  if (Padded(statement).find(" End With ") == 0) {
    if (Wth.empty()) return;
    Wth.back().Tgt.pop_back();
    Wth.back().Pnd.pop_back();
    if (Wth.back().Tgt.empty()) Wth.pop_back();
    return;
  }
  if (!Wth.empty() && statement.find('.') != npos) Use_With(statement);
}

void Search_Run::Use_With(std::string_view statement) {
  if (finders_.empty()) return;
  std::string target;
  for (const std::string& part : Wth.back().Tgt) target += part;
  const service::Text_Finder finder(view_.Words.front(), service::Compare::Text);
  for (std::string_view token : service::Split(statement, " ")) {
    token = Member_Token(token);
    if (token.size() <= 1 || !token.starts_with('.')) continue;
    const std::string chain = target + std::string(token);
    bool used = false;
    for (std::size_t from = 0; !used;) {
      const auto span = finder.Find(chain, from);
      if (!span) break;
      from = Behind_First(chain, *span);
      used = (span->at == 0 || kDelimiters.find(chain[span->at - 1]) != npos) &&
             (span->End() == chain.size() || kDelimiters.find(chain[span->End()]) != npos ||
              kSuffixes.find(chain[span->End()]) != npos);
    }
    if (!used) continue;
    const std::string line = Src_Lin;
    const int number = Src_Lno;
    for (std::unique_ptr<Pending>& pending : Wth.back().Pnd) {
      if (!pending) continue;
      Src_Lin = pending->Lin;
      Src_Lno = pending->Lno;
      Set_Hit_Lst();
      pending.reset();
    }
    Src_Lin = line;
    Src_Lno = number;
    return Set_Hit_Lst();
  }
}

bool Search_Run::Is_Asked_Scope(char scope, bool several, bool friends) const {
  switch (scope) {
    case analyser::kScp_Public:
      return true;
    case analyser::kScp_Friend:
      return friends && view_.Viw_SMd == cur_.Mdl.Mdl_Nam;
    case analyser::kScp_Private:
      return view_.Viw_SMd == cur_.Mdl.Mdl_Nam;
    case analyser::kScp_Local:
      return several || (view_.Viw_SMd == cur_.Mdl.Mdl_Nam && view_.Viw_SMm == Mem_Nam);
    default:
      return false;
  }
}

void Search_Run::Chk_Value() {
  if (!analyser::May_Define(tested_)) return;
  analyser::Chk_Def_Inf(Joined(tested_), in_declare_, found_);
  if (found_.empty()) return;
  const analyser::Def_Row& row = found_.front().Row;
  const bool several = cond_.Knd == kSearch_Variables;
  if (!(analyser::Is_Code(row.Def_Knd, analyser::kDef_Dim) ||
        analyser::Is_Code(row.Def_Knd, analyser::kDef_Static) ||
        analyser::Is_Code(row.Def_Knd, analyser::kDef_Variable)) ||
      row.Def_Scp.empty() || !Is_Asked_Scope(row.Def_Scp[0], several, true) ||
      (several && found_.size() < 2))
    return;
  Src_Hit = row.Def_Nam;
  Set_Hit_Lst();
}

void Search_Run::Chk_Const() {
  if (!analyser::May_Define(tested_)) return;
  const std::vector<std::string> parts = Split_Constants(Joined(tested_));
  analyser::Chk_Def_Inf(parts.front(), in_declare_, found_);
  if (found_.empty()) return;
  const analyser::Def_Row& row = found_.front().Row;
  const bool several = cond_.Knd == kSearch_Constants;
  if (!analyser::Is_Code(row.Def_Knd, analyser::kDef_Const) || row.Def_Scp.empty() ||
      !Is_Asked_Scope(row.Def_Scp[0], several, false) || (several && parts.size() < 2))
    return;
  Src_Hit = row.Def_Nam;
  Set_Hit_Lst();
}

void Search_Run::Chk_Block(char kind, std::string_view end) {
  if (!Blk_On && !analyser::May_Define(tested_)) return;
  const std::string statement = Joined(tested_);
  if (Blk_On) {
    Set_Hit_Lst();
  } else {
    analyser::Chk_Def_Inf(statement, in_declare_, found_);
    if (!found_.empty()) {
      const analyser::Def_Row& row = found_.front().Row;
      if (analyser::Is_Code(row.Def_Knd, kind) &&
          (analyser::Is_Code(row.Def_Scp, analyser::kScp_Public) ||
           analyser::Is_Code(row.Def_Scp, analyser::kScp_Private))) {
        Src_Hit = row.Def_Nam;
        Set_Hit_Lst();
        Blk_On = true;
      }
    }
  }
  if (statement.starts_with(end)) Blk_On = false;
}

void Search_Run::Chk_Comm() {
  if (!Is_Comment(tested_) || (Is_Commented_Out(tested_) && !cond_.COt)) return;
  const std::string removed = "' \u3000\r\n" + comment_characters_;
  for (std::size_t at = 0; at < tested_.size();) {
    const std::size_t begin = at;
    (void)service::Next_Code_Point(tested_, at);
    if (service::Text_Finder(std::string_view(tested_).substr(begin, at - begin),
                             service::Compare::Text)
            .Is_In(removed))
      continue;
    return Set_Hit_Lst();
  }
}

void Search_Run::Chk_Delec() {
  const std::string statement = Padded(Trim(tested_)).substr(1);
  if (!statement.starts_with('#') && !Blk_On) return;
  Set_Hit_Lst();
  if (statement.starts_with("#If ")) {
    Blk_On = true;
    ++Dir_Nst;
  } else if (statement.starts_with("#End ") && --Dir_Nst < 1) {
    Blk_On = false;
    Dir_Nst = 0;
  }
}

void Search_Run::Chk_Form() {
  if (Is_Comment(tested_)) return;
  cut_ = tested_;
  (void)analyser::Sep_Comment(cut_);
  if (Trim(cut_).empty()) return;
  const std::string padded = Padded(cut_);
  const std::string_view text = padded;
  const auto form_before = [&](std::string_view mark, bool checked) {
    const std::size_t at = text.find(mark);
    if (at == npos) return false;
    const std::size_t blank = text.rfind(' ', at);
    const std::string_view name = text.substr(blank + 1, at - blank - 1);
    if (name.empty() || Is_Delimited(name) || (checked && !host::Chk_Mdl_Typ(ctx_.VBInst, name)))
      return false;
    Src_Hit = name;
    return true;
  };
  const auto form_behind = [&](std::string_view mark) {
    const std::size_t at = text.find(mark);
    if (at == npos) return false;
    const std::string_view rest = Trim(text.substr(at + mark.size()));
    if (rest.empty() || rest.find('"') != npos) return false;
    Src_Hit = rest;
    return true;
  };
  const auto form_set = [&] {
    if (text.find(" Set ") == npos) return false;
    for (const std::string& form : view_.Words) {
      if (form.empty()) continue;
      const std::size_t at = text.find(Padded(form));
      if (at == npos) continue;
      Src_Hit = Trim(text.substr(at));
      return true;
    }
    return false;
  };
  if (form_before(".Show ", true) || form_before(".Hide ", false) || form_behind(" Load ") ||
      form_behind(" Unload ") || form_set())
    Set_Hit_Lst();
}

void Search_Run::Add_Hit_Name(std::string_view name) {
  for (const std::string_view known : service::Split(Src_Hit, "\t"))
    if (known == name) return;
  std::string hit(name);
  // A tab would end the name, and a line end the row.
  std::replace_if(
      hit.begin(), hit.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
  Src_Hit = hit.append(Src_Hit.empty() ? "" : "\t").append(Src_Hit);
}

void Search_Run::Chk_Call() {
  if (Ref_Sec.empty() || Src_Lno == CMm_Bdy || Is_Comment(tested_)) return;
  cut_ = tested_;
  (void)analyser::Sep_Comment(cut_);
  const std::string_view statement = Trim(cut_);
  if (statement.starts_with("On ") || statement.starts_with("End ") ||
      statement.starts_with("Exit ") ||
      service::To_Int(service::Len_Chr(statement)) + 2 < ctx_.Tbl.MLL)
    return;
  const std::string caller = analyser::Full_Name(cur_.Mdl.Mdl_Nam, Mem_Nam);
  const std::string line = service::Format_Five(Src_Lno - CMm_Sta + 1);
  for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(Ref_Sec, {caller, {}, {}}, cursor);) {
    const auto lines = service::Split(cursor.Record.Ref_Lns, " ");
    if (std::find(lines.begin(), lines.end(), line) != lines.end())
      Add_Hit_Name(analyser::To_Host_Name(cursor.Record.Tgt_Mem).Nam);
  }
  if (!Src_Hit.empty()) Set_Hit_Lst();
}

void Search_Run::Chk_RfArg() {
  if (Arg_Lst.empty() || analyser::Is_Code(cur_.Mem.Mem_Knd, analyser::kMem_Event) ||
      Src_Lno == CMm_Bdy || Is_Comment(tested_))
    return;
  cut_ = tested_;
  (void)analyser::Sep_Comment(cut_);
  const std::string padded = Padded(cut_);
  bool hit = false;
  for (std::size_t i = 0; i < Arg_Lst.size(); ++i) {
    for (std::size_t from = 0;;) {
      const auto span = arguments_[i].Find(padded, from);
      if (!span) break;
      from = Behind_First(padded, *span);
      // The value of a named argument stands right behind ":=".
      const bool named = span->at >= 2 && padded.compare(span->at - 2, 2, ":=") == 0;
      std::string around = padded;
      if (named) around[span->at - 1] = ' ';
      if (!Is_Word_At(around, *span, kDelimiters)) continue;
      if (cond_.Knd == kSearch_Assigned_Argument && Chk_Let_Sta(padded, span->at, true)) {
        Add_Hit_Name(Arg_Lst[i]);
        if (Arg_Set.find(fmt::format("\t{}\t", Arg_Lst[i])) == npos)
          Arg_Set.append(Arg_Lst[i]).append("\t");
        hit = true;
      } else {
        Arg_Flg[i] = true;
      }
      break;
    }
  }
  if (hit) Set_Hit_Lst();
}

void Search_Run::Chk_EErSt() {
  const std::string* text = Pass_Gate(true);
  if (text == nullptr || text->find("Call Error_Dis(") == npos) return;
  const auto holds = [&](std::string_view what) { return text->find(what) != npos; };
  const std::string name = " " + std::string(analyser::To_Host_Name(Mem_Nam).Nam);
  if ((!holds(name + ")") && !holds(name + "\"") && !holds(name + " ")) ||
      (!holds("\"S\"") && !holds("\"E\"")) || !holds(" ECs_MDlNm "))
    Set_Hit_Lst();
}

}  // namespace oru::query
