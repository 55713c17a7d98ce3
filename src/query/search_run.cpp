// SPDX-License-Identifier: MIT
#include "query/search_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "analyser/kinds.h"
#include "analyser/reader.h"
#include "analyser/references.h"
#include "host/places.h"
#include "query/statement_text.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::query {

using service::Trim;

namespace {

constexpr const char* kModule = "Frm_Search";
constexpr std::string_view kSearching = "検索しています";
constexpr std::string_view kLooking_For_Uses = "使用状況を調査しています";

int Number(std::string_view digits) {
  return static_cast<int>(service::Val(digits));
}

bool Reports_Unused(int code) {
  return code == kSearch_Unused_Variable || code == kSearch_Unused_Constant ||
         code == kSearch_Unused_Type || code == kSearch_Unused_Enum;
}

}  // namespace

Search_Run::Search_Run(const Query_Ctx& ctx, Search_View& view, Row_Order order,
                       const service::Pattern* pattern)
    : ctx_(ctx),
      view_(view),
      cond_(view.Cond),
      order_(std::move(order)),
      pattern_(pattern),
      options_(ctx.Srv.Opt),
      Src_Dlm(cond_.Knd == kSearch_Exact && !cond_.Cns ? kDelimiters_No_Quote : kDelimiters) {
  for (const std::string& word : view.Words)
    if (!word.empty()) finders_.emplace_back(word, cond_.Cmp);
  if (cond_.Knd != kSearch_Comment) return;
  comment_characters_ = ctx.Srv.Opt.Text("FTx_DelCH");
  comment_characters_.resize(std::min(comment_characters_.find(' '), comment_characters_.size()));
}

void Search_Run::Src_Main() {
  const service::Err_Frame frame(ctx_.Srv.Errors, kModule, "Src_Main", &Src_Lin, &Src_Lno);
  view_.Row.clear();
  view_.Viw_Hit = 0;
  const std::size_t count = ctx_.Tbl.Mdl_Tbl.Count();
  const bool everywhere = cond_.Scp == kIn_Project || cond_.Knd == kSearch_Global_Use ||
                          cond_.Knd == kSearch_Module_Use;
  for (std::size_t i = 1; analyser::Set_Mdl_Fld(ctx_.Tbl, cur_, i); ++i) {
    if (!everywhere && cur_.Mdl.Mdl_Nam != view_.Viw_SMd) continue;
    if (Tes_CMd_Fnd()) Src_Modul(1);
    Show_Progress(kSearching, i, count);
  }
  const Search_Kind* kind = Kind_Of(cond_.Knd);
  if (kind != nullptr && kind->Two_Passes && !Cnd_Row.empty()) {
    Cnd_Flg.assign(Cnd_Row.size(), 0);
    for (std::size_t i = 1; analyser::Set_Mdl_Fld(ctx_.Tbl, cur_, i); ++i) {
      if (cond_.Scp != kIn_Project && cur_.Mdl.Mdl_Nam != view_.Viw_SMd && !Cnd_Glb) continue;
      if (Tes_CMd_Fnd()) Src_Modul(2);
      Show_Progress(kLooking_For_Uses, i, count);
    }
    Report_Candidates();
  }
  if (cond_.Scp != kIn_Procedure) ctx_.Srv.Ui.Close_Progress();
  Sort_Rows(view_.Row);
}

void Search_Run::Show_Progress(std::string_view text, std::size_t count, std::size_t total) {
  if (cond_.Scp != kIn_Procedure) {
    service::Progress progress;
    progress.text = text;
    progress.item = cur_.Mdl.Mdl_Nam;
    progress.count = static_cast<std::int64_t>(count);
    progress.total = static_cast<std::int64_t>(total);
    progress.label = fmt::format("{} ( {} / {} )", text, count, total);
    ctx_.Srv.Ui.Show_Progress(progress);
  }
  ctx_.Srv.Ui.Do_Events();
}

bool Search_Run::Tes_CMd_Fnd() {
  code_ = nullptr;
  try {
    host::VBProject* project = ctx_.VBInst.ActiveVBProject();
    host::VBComponent* component =
        project == nullptr ? nullptr : project->VBComponents().Item(cur_.Mdl.Mdl_Nam);
    code_ = component == nullptr ? nullptr : component->CodeModule();
  } catch (const host::Host_Error&) {
    return false;  // a module that cannot be reached is passed over
  }
  if (code_ == nullptr) return false;
  const auto stands_there = [&](std::string_view word) {
    host::Selection range{1, 1, -1, -1};
    return code_->Find(word, range, false, cond_.Cmp == service::Compare::Binary, false);
  };
  switch (cond_.Knd) {
    case kSearch_Text:
    case kSearch_Exact: {
      bool all = true, any = false;
      for (const std::string& word : view_.Words) {
        if (word.empty()) continue;
        const bool there = stands_there(word);
        any = any || there;
        all = all && there;
        if (cond_.Cnd == 1 ? any : !all) break;
      }
      return cond_.Cnd == 1 ? any : all;
    }
    case kSearch_With:
      return stands_there("With");
    case kSearch_Directive:
      return stands_there("#If");
    default:
      return true;
  }
}

std::string Search_Run::Get_Def_Lin(int line) const {
  std::string statement;
  for (const auto count = static_cast<int>(lines_.size()); line >= 1 && line <= count; ++line) {
    if (!statement.empty()) statement += "\r\n";
    statement += Line(line);
    if (!service::Trim_Right(statement).ends_with(" _")) break;
  }
  return statement;
}

void Search_Run::Src_Modul(int ag_Pass) {
  const int count = code_->CountOfLines();
  text_ = count == 0 ? std::string() : code_->Lines(1, count);
  lines_ = count == 0 ? std::vector<std::string_view>() : service::Split(text_, "\r\n");
  module_key_ = service::To_Lower(cur_.Mdl.Mdl_Nam);
  of_module_ = ag_Pass == 2 ? Names_Of(module_key_) : nullptr;
  public_ = ag_Pass == 2 ? Names_Of("") : nullptr;
  Mark_Lines();
  const int declarations = code_->CountOfDeclarationLines();
  Search_Declarations(ag_Pass);

  const bool only_declarations =
      ag_Pass == 1 && (cond_.Knd == kSearch_Global_Use || cond_.Knd == kSearch_Module_Use);
  // A name that comes twice (in branches of an `#If`) has more ranges than one.
  std::unordered_map<std::string, std::vector<Range>> ranges;
  for (int line = declarations + 1; line <= count && !only_declarations;) {
    const host::Member_Place place = host::Get_CML_Inf(*code_, line);
    const int last = std::max(line, std::min(place.Top + place.Cnt - 1, count));
    ranges[place.Nam].push_back({line, last, place.Bdy});
    line = last + 1;
  }
  Mem_Ix = 0;
  for (const auto& row : cur_.Entry->Mem) {
    ++Mem_Ix;
    analyser::Set_Mem_Inf(cur_, row.value);
    Mem_Nam = row.key;
    if (Mem_Nam == analyser::kDeclare) continue;
    if (!cur_.Mem.Mem_Knd.empty() && cur_.Mem.Mem_Knd[0] >= analyser::kMem_Api) {
      const bool listed = cond_.Knd == kSearch_Api ||
                          (cond_.Knd == kSearch_Unused_Api &&
                           analyser::Set_Ref_Mrk(ctx_.Tbl, cur_.Mem.Mem_Mdl, Mem_Nam).empty());
      CMm_Sta = 1;
      if (listed && ag_Pass == 1) Set_Hit_At(Number(cur_.Mem.Mem_Lin), Mem_Nam);
      continue;
    }
    const auto at = ranges.find(Mem_Nam);
    if (only_declarations || at == ranges.end()) continue;
    if (cond_.Scp == kIn_Procedure && Mem_Nam != view_.Viw_SMm) continue;
    Search_Member(ag_Pass, at->second);
  }
}

void Search_Run::Search_Declarations(int ag_Pass) {
  if (ag_Pass != 1 && cond_.Knd != kSearch_Unused_Type) return;
  if (cond_.Scp == kIn_Procedure && cond_.Knd != kSearch_Global_Use &&
      !(cond_.Knd == kSearch_Module_Use && cur_.Mdl.Mdl_Nam == view_.Viw_SMd) &&
      view_.Viw_SMm != analyser::kDeclare)
    return;
  Mem_Nam = analyser::kDeclare;
  member_key_ = module_key_ + "\t";
  local_ = nullptr;
  Mem_Ix = 1;
  CMm_Sta = CMm_Bdy = 1;
  Ref_Sec = {};
  cur_.Mem = {};
  Arg_Lst.clear();
  in_declare_ = true;
  Src_Modul_Lop(1, code_->CountOfDeclarationLines(), ag_Pass);
  in_declare_ = false;
}

void Search_Run::Search_Member(int ag_Pass, const std::vector<Range>& ranges) {
  CMm_Sta = ranges.front().first;
  CMm_Bdy = ranges.front().header;
  member_key_ = module_key_;
  member_key_.append("\t").append(service::To_Lower(Mem_Nam));
  local_ = ag_Pass == 2 ? Names_Of(member_key_) : nullptr;
  Ref_Sec = {};
  if (cond_.Knd == kSearch_Call || cond_.Knd == kSearch_Reference) {
    const std::string* all = ctx_.Tbl.Ref_Tbl.Get(cur_.Mdl.Mdl_Nam);
    if (all != nullptr) Ref_Sec = *all;
  }
  if (cond_.Knd == kSearch_Reference) {
    Search_References();
    if (cur_.Mdl.Mdl_Nam != view_.Viw_RMd || Mem_Nam != view_.Viw_RMm) return;
  }
  Arg_Set = "\t";
  Arg_Lst.clear();
  if (ag_Pass == 1) Set_Arguments();
  for (const Range& range : ranges) {
    CMm_Sta = range.first;
    CMm_Bdy = range.header;
    Src_Modul_Lop(range.first, range.last, ag_Pass);
    Ref_Sec = {};  // the references are those of the first procedure of the name
  }
  CMm_Sta = ranges.front().first;
  if (cond_.Knd == kSearch_Unused_Argument) {
    std::string names;
    for (std::size_t i = 0; i < Arg_Lst.size(); ++i)
      if (!Arg_Flg[i]) names.append(names.empty() ? "" : "\t").append(Arg_Lst[i]);
    if (!names.empty()) Set_Hit_At(ranges.front().header, names);
  }
  if (cond_.Knd == kSearch_Assigned_Argument && Arg_Set.size() > 1)
    Set_Hit_At(ranges.front().header, Arg_Set);
}

// The statements that the tables tell of, without reading the member.
void Search_Run::Search_References() {
  const std::string caller = analyser::Full_Name(cur_.Mdl.Mdl_Nam, Mem_Nam);
  const analyser::Ref_Filter filter{caller, view_.Viw_RMd, view_.Viw_RMm};
  for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(Ref_Sec, filter, cursor);)
    for (const std::string_view offset : service::Split(cursor.Record.Ref_Lns, " "))
      Set_Hit_At(CMm_Sta + Number(offset) - 1, view_.Viw_RMm);
}

void Search_Run::Set_Arguments() {
  const bool unused = cond_.Knd == kSearch_Unused_Argument;
  if (!unused && cond_.Knd != kSearch_Assigned_Argument) return;
  // The signature of an event or of a callback is fixed.
  if (unused && (analyser::Is_Code(cur_.Mem.Mem_Knd, analyser::kMem_Event) ||
                 ctx_.Tbl.Cbk_Col.Has(analyser::To_Host_Name(Mem_Nam).Nam)))
    return;
  arguments_.clear();
  for (const analyser::Def_Row& row :
       analyser::Set_Arg_Inf(*code_, cur_.Mdl.Mdl_Nam, Mem_Nam, options_)) {
    if (!unused && row.Def_Scp.find("参照") == std::string::npos) continue;
    Arg_Lst.push_back(row.Def_Nam);
    arguments_.emplace_back(row.Def_Nam, cond_.Cmp);
  }
  Arg_Flg.assign(Arg_Lst.size(), false);
}

// Kinds that ask for words need only read the statements in which one stands.
void Search_Run::Mark_Lines() {
  may_hit_.clear();
  if (cond_.Knd != kSearch_Text && cond_.Knd != kSearch_Exact) return;
  may_hit_.resize(lines_.size());
  for (const service::Text_Finder& finder : finders_) {
    for (std::size_t from = 0;;) {
      const auto span = finder.Find(text_, from);
      if (!span) break;
      const char* place = text_.data() + span->at;
      const auto behind =
          std::upper_bound(lines_.begin(), lines_.end(), place,
                           [](const char* at, std::string_view line) { return at < line.data(); });
      const auto line = static_cast<std::size_t>(behind - lines_.begin()) - 1;
      may_hit_[line] = true;
      if (line + 1 == lines_.size()) break;
      from = static_cast<std::size_t>(lines_[line + 1].data() - text_.data());
    }
  }
}

void Search_Run::Src_Modul_Lop(int first, int last, int ag_Pass) {
  Wth.clear();
  Blk_On = false;
  Dir_Nst = 0;
  Src_Lin.clear();
  bool open = false;
  bool asked = may_hit_.empty();  // one of the statement's lines may hold what is asked for
  for (int line = first; line <= last; ++line) {
    const std::string_view text = Line(line);
    if (!may_hit_.empty()) {
      asked = (open && asked) || may_hit_[static_cast<std::size_t>(line) - 1];
      if (!open && !asked && !text.ends_with('_') && !text.ends_with(' ')) continue;
    }
    if (open) {
      Src_Lin.append("\r\n").append(text);
    } else {
      Src_Lin = text;
      Src_Lno = line;
    }
    open = service::Trim_Right(text).ends_with(" _") || (open && Trim(text) == "_");
    if (open || !asked || Trim(Src_Lin).empty()) continue;
    tested_ = Without_Label(Src_Lin);
    if (Trim(tested_).empty()) continue;
    Src_Hit.clear();
    Dispatch(ag_Pass);
  }
  Src_Lno = 0;
}

void Search_Run::Dispatch(int ag_Pass) {
  const Search_Kind* kind = Kind_Of(cond_.Knd);
  if (kind != nullptr && kind->Two_Passes) return ag_Pass == 1 ? Chk_ValCs() : Chk_Refer();
  switch (cond_.Knd) {
    case kSearch_Pattern:
      return Chk_RegEx();
    case kSearch_Text:
      return Chk_Char();
    case kSearch_Exact:
    case kSearch_Reference:
      return Chk_Word();
    case kSearch_With:
      return Chk_With();
    case kSearch_Variable:
    case kSearch_Variables:
      return Chk_Value();
    case kSearch_Constant:
    case kSearch_Constants:
      return Chk_Const();
    case kSearch_Comment:
      return Chk_Comm();
    case kSearch_Form:
      return Chk_Form();
    case kSearch_Directive:
      return Chk_Delec();
    case kSearch_Type:
      return Chk_Block(analyser::kDef_Type, "End Type");
    case kSearch_Enum:
      return Chk_Block(analyser::kDef_Enum, "End Enum");
    case kSearch_Call:
      return Chk_Call();
    case kSearch_Assigned_Argument:
    case kSearch_Unused_Argument:
      return Chk_RfArg();
    case kSearch_Error_Call:
      return Chk_EErSt();
    default:
      return;
  }
}

void Search_Run::Report_Candidates() {
  const bool unused = Reports_Unused(cond_.Knd);
  if (!unused && cond_.Knd != kSearch_Assigned_Only) return;
  const Candidate* last = nullptr;
  std::string names;
  const auto flush = [&] {
    if (last == nullptr) return;
    Add_Hit_Rows(view_.Row, order_, cond_.Prc,
                 {last->Mdl, last->Mem, last->Mem_Ix, last->CMm_Sta, last->Lno, last->Lin, names});
    ++view_.Viw_Hit;
    names.clear();
  };
  for (std::size_t i = 0; i < Cnd_Row.size(); ++i) {
    if (Cnd_Flg[i] != (unused ? 0 : kSet)) continue;
    const Candidate& row = Cnd_Row[i];
    if (last != nullptr && (last->Mdl != row.Mdl || last->Mem != row.Mem || last->Lno != row.Lno))
      flush();
    if (!names.empty()) names.insert(0, "\t");
    names.insert(0, row.Nam);
    last = &row;
  }
  flush();
}

void Search_Run::Set_Hit_Lst() {
  Add_Hit_Rows(view_.Row, order_, cond_.Prc,
               {cur_.Mdl.Mdl_Nam, Mem_Nam, Mem_Ix, CMm_Sta, Src_Lno, Src_Lin, Src_Hit});
  ++view_.Viw_Hit;
}

// A statement that is known by its line, whatever was read before it.
void Search_Run::Set_Hit_At(int line, std::string_view names) {
  const std::string lines = Get_Def_Lin(line);
  if (lines.empty()) return;
  Add_Hit_Rows(view_.Row, order_, cond_.Prc,
               {cur_.Mdl.Mdl_Nam, Mem_Nam, Mem_Ix, CMm_Sta, line, lines, names});
  ++view_.Viw_Hit;
}

}  // namespace oru::query
