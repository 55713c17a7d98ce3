// SPDX-License-Identifier: MIT
#include "analyser/references.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "analyser/definitions.h"
#include "analyser/instances.h"
#include "analyser/reader.h"
#include "analyser/word_index.h"
#include "service/text.h"

namespace oru::analyser {

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t kMost_With = 11;
constexpr std::size_t kLine_Digits = 5;
constexpr char kWith_Separator = '\0';
// A chain of `With .a` blocks longer than any statement leads nowhere.
constexpr std::size_t kLongest_Chain = std::size_t{64} * 1024;
constexpr std::size_t kReport_Width = 200;  // bytes of a statement that a report shows

// The targets hit so far by one section of a member, with the words that hit them.
class Hit_Table {
 public:
  struct Row {
    std::string target;
    std::string lines;  // "|00012 00015", or empty when nothing is pending
  };

  // `Chk_RCa_Tbl`: a word that already hit adds its line to the first row that holds it.
  bool Know(std::string_view word, std::string_view line) {
    const auto at = words_.find(word);
    if (at == words_.end()) return false;
    Add_Line(rows_[at->second], line);
    return true;
  }
  // `Add_RCa_Tbl`, for one hit.
  void Add(std::string_view word, const std::string& target, std::string_view line) {
    const auto [at, is_new] = targets_.try_emplace(target, rows_.size());
    if (is_new) {
      rows_.push_back({target, {}});
    }
    // The first row that holds the word is the one that later lines go to.
    const auto [known, is_new_word] = words_.try_emplace(std::string(word), at->second);
    if (!is_new_word) known->second = std::min(known->second, at->second);
    Add_Line(rows_[at->second], line);
  }
  void Clear() {
    if (rows_.empty()) return;
    rows_.clear();
    words_.clear();
    targets_.clear();
    pending_ = false;
  }
  // Something was added since the last `Written`.
  [[nodiscard]] bool Pending() const { return pending_; }
  void Written() {
    for (Row& row : rows_) row.lines.clear();
    pending_ = false;
  }
  [[nodiscard]] const std::vector<Row>& Rows() const { return rows_; }

 private:
  void Add_Line(Row& row, std::string_view line) {
    if (row.lines.ends_with(line)) return;
    row.lines += row.lines.empty() ? '|' : ' ';
    row.lines += line;
    pending_ = true;
  }

  std::vector<Row> rows_;
  service::Text_Map<std::size_t> words_;    // word -> first row that holds it
  service::Text_Map<std::size_t> targets_;  // target -> row
  bool pending_ = false;
};

// The enclosing `With` expressions of the member that is being read.
struct With_State {
  std::string current;  // `Wth_Cur`: levels of one chain, separated by a NUL
  std::array<std::string, kMost_With> stack;
  std::size_t depth = 0;

  void Clear() {
    current.clear();
    depth = 0;
  }
  // False when the stack is full; nothing is changed then.
  [[nodiscard]] bool Enter(std::string_view expression) {
    if (expression.starts_with('.')) {
      current += kWith_Separator;
      current += expression.substr(1);
      return true;
    }
    if (depth >= kMost_With) return false;
    stack[depth++].swap(current);
    current = expression;
    return true;
  }
  void Leave() {
    if (const std::size_t at = current.rfind(kWith_Separator); at != std::string::npos) {
      current.resize(at);
    } else if (depth > 0) {
      current.swap(stack[--depth]);
    } else {
      current.clear();
    }
  }
};

// What a statement holds at all, found in one pass over its bytes: most hold nothing that one of the
// searches below would find.
constexpr unsigned kMark_Quote = 1;  // a literal
constexpr unsigned kMark_Paren = 2;  // an index
constexpr unsigned kMark_O = 4;      // perhaps "On Error GoTo"
constexpr unsigned kMark_A = 8;      // perhaps "AddressOf"

constexpr std::array<std::uint8_t, 256> kMarks = [] {
  std::array<std::uint8_t, 256> marks{};
  marks['"'] = kMark_Quote;
  marks[')'] = kMark_Paren;
  marks['O'] = kMark_O;
  marks['A'] = kMark_A;
  return marks;
}();

unsigned Marks_In(std::string_view statement) {
  unsigned marks = 0;
  for (const char c : statement) marks |= kMarks[static_cast<unsigned char>(c)];
  return marks;
}

class Reference_Reader {
 public:
  Reference_Reader(const Ref_Ctx& ctx, const Mem_Dic& members)
      : ctx_(ctx), members_(members), instances_(ctx.Tbl) {}

  // `Get_Ref_Lop`: reads one module and returns its reference text.
  std::string Read_Module(std::string_view module);

 private:
  void Begin_Member(std::string_view member);
  void End_Member();  // `Upd_Ref_Inf`
  void Chk_Ref_Inf(std::string_view line);
  void Read_Words();
  void Read_Plain_Word(std::string_view word, std::uint32_t hash);
  void Read_Dotted_Word(std::string_view word);
  [[nodiscard]] bool Chk_Known(std::string_view word);
  [[nodiscard]] bool Leads_On(std::string_view first);
  [[nodiscard]] bool Names_Class(std::string_view statement);
  [[nodiscard]] bool Is_Class(std::string_view word);
  void Resolve(std::string_view word, std::string_view first, std::string_view member);
  bool Hit_Candidate(std::string_view word, std::string_view member, std::string_view module,
                     bool open_class);
  void Report(std::string_view what);

  const Ref_Ctx& ctx_;
  const Mem_Dic& members_;
  Instances instances_;
  const Mdl_Entry::Argument* argument_ = nullptr;  // the next one that has not been met
  const Mdl_Entry::Argument* arguments_end_ = nullptr;
  std::string buffer_;   // the module's records
  std::string cur_ref_;  // the current module
  std::string cur_prc_;  // the member whose statements are read
  std::string err_lbl_;
  bool err_sec_ = false;
  With_State with_;
  Hit_Table normal_, error_;  // `RCa_Tbl`, `RCe_Tbl`
  struct Hit {
    std::string word, target;
  };
  std::vector<Hit> hits_;  // `Hit_Col`; the strings are used again and again
  std::size_t hit_count_ = 0;
  std::string statement_;  // `Cur_Stm`
  std::string_view line_;  // its five digits
  std::string word_;       // a word with its `With` prefix
  std::vector<Def_Found> found_;
  service::Text_Map<bool> classes_;  // type words asked for, and whether an object can have them
  service::Text_Map<bool> first_parts_;
  std::size_t first_parts_known_ = 0;
};

// Parentheses and commas count as blanks once the indexed parts have been rewritten.
bool Ends_Word(char c) {
  return c == ' ' || c == '(' || c == ')' || c == ',';
}

std::string Reference_Reader::Read_Module(std::string_view module) {
  const service::Err_Frame frame(ctx_.Srv.Errors, "Mod_Ref", "Get_Ref_Lop");
  const auto* entry = ctx_.Tbl.Mdl_Tbl.Get(module);
  cur_ref_ = module;
  cur_prc_.clear();
  buffer_.clear();
  normal_.Clear();
  error_.Clear();
  argument_ = (*entry)->Arg.data();
  arguments_end_ = argument_ + (*entry)->Arg.size();
  // What a fault says of the statement in hand.
  const service::Err_Frame statement(ctx_.Srv.Errors, "Mod_Ref", "Chk_Ref_Inf", &statement_);

  std::string_view rest = (*entry)->RCd;
  while (!rest.empty()) {
    const std::size_t end = rest.find("\r\n");
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == npos ? rest.size() : end + 2);
    if (line.starts_with('#')) {
      End_Member();
      Begin_Member(line.substr(1));
    } else {
      Chk_Ref_Inf(line);
    }
  }
  End_Member();
  return buffer_;
}

void Reference_Reader::Begin_Member(std::string_view member) {
  cur_prc_ = member;
  instances_.Begin_Member();
  err_lbl_.clear();
  err_sec_ = false;
  with_.Clear();
  statement_.clear();
  // Members come in the order in which their parameters were noted.
  for (; argument_ != arguments_end_ && argument_->Mem_Nam == member; ++argument_)
    instances_.Declare(ctx_.Tbl, argument_->Words, cur_ref_);
}

void Reference_Reader::End_Member() {
  const auto write = [&](const Hit_Table::Row& row, char flag) {
    if (row.lines.empty()) return;
    buffer_.append("%").append(cur_ref_).append(".").append(cur_prc_);
    buffer_.append("#").append(row.target).append(row.lines).append(1, flag);
  };
  if (normal_.Pending())
    for (const Hit_Table::Row& row : normal_.Rows()) write(row, 'N');
  normal_.Clear();
  // The error section's rows keep their words until the module ends.
  if (error_.Pending()) {
    for (const Hit_Table::Row& row : error_.Rows()) write(row, 'Y');
    error_.Written();
  }
}

void Reference_Reader::Report(std::string_view what) {
  ctx_.Problem(cur_ref_,
               fmt::format("{}.{} - {} Line={} -> Chk_Ref_Inf Sentence=({})", cur_ref_, cur_prc_,
                           what, line_, service::Cut_Bytes(statement_, kReport_Width)));
}

void Reference_Reader::Chk_Ref_Inf(std::string_view line) {
  if (line.size() <= kLine_Digits) return;
  line_ = line.substr(0, kLine_Digits);
  statement_ = line.substr(kLine_Digits);
  std::string& s = statement_;
  if (s.starts_with("Dim ") || s.starts_with("Static ")) {
    if (!Names_Class(s)) return;
    Chk_Def_Inf(s, false, found_);
    for (const Def_Found& def : found_) instances_.Declare(ctx_.Tbl, def.Piece, cur_ref_);
    return;
  }
  if (s.starts_with("Set ") || s.starts_with("With ")) instances_.Bind(ctx_.Tbl, s, cur_ref_);
  const unsigned marks = Marks_In(s);
  if ((marks & kMark_O) != 0 && s.find("On Error GoTo") != npos) {
    const std::size_t last = s.rfind(' ');
    err_lbl_.clear();
    const std::string_view label = std::string_view(s).substr(last + 1);
    if (!service::Is_Numeric(label)) {
      err_lbl_ = label;
      if (!err_lbl_.ends_with(':')) err_lbl_ += ':';
    }
  }
  if (s.ends_with(':')) {
    if (!err_lbl_.empty() && s.starts_with(err_lbl_)) err_sec_ = true;
    return;
  }
  if ((marks & kMark_Quote) != 0) Rev_Cst_Val(s);
  const std::size_t address = (marks & kMark_A) != 0 ? s.find(" AddressOf ") : npos;
  if (address != npos) {
    const std::string_view behind = std::string_view(s).substr(address + 11);
    std::size_t end = behind.find(',');
    if (end == npos) end = behind.find(')');
    const std::string_view name = service::Trim(behind.substr(0, end));
    service::Add_Col_Itm(ctx_.Tbl.Cbk_Col, name, std::string(name));
  }
  if (s.starts_with("With ")) {
    std::string expression = s.substr(4);  // with the blank, so that "With New C" has its " New "
    if (const std::size_t at = expression.find(" New "); at != npos) expression.erase(at, 4);
    if (!with_.Enter(service::Trim(expression)))
      Report("With ブロックの入れ子が深すぎるため、この文を解析しませんでした。");
    return;
  }
  if (s.starts_with("End With")) {
    with_.Leave();
    return;
  }
  if ((marks & kMark_Paren) != 0) Del_Mod_Idx(s);
  Read_Words();
}

void Reference_Reader::Read_Words() {
  hit_count_ = 0;
  const std::string_view text = statement_;
  for (std::size_t from = 0; from < text.size(); ++from) {
    std::uint32_t hash = Mem_Dic::kHash_Start;
    bool dotted = false;
    std::size_t end = from;
    for (; end < text.size() && !Ends_Word(text[end]); ++end) {
      dotted |= text[end] == '.';
      hash = Mem_Dic::Hash_Byte(hash, text[end]);
    }
    if (end > from) {
      const std::string_view word = text.substr(from, end - from);
      if (dotted) {
        Read_Dotted_Word(word);
      } else if (Is_Type_Character(word.back())) {
        const std::string_view name = word.substr(0, word.size() - 1);
        Read_Plain_Word(name, Mem_Dic::Hash(name));
      } else {
        Read_Plain_Word(word, hash);
      }
    }
    from = end;
  }
  Hit_Table& table = err_sec_ ? error_ : normal_;
  for (std::size_t i = 0; i < hit_count_; ++i) table.Add(hits_[i].word, hits_[i].target, line_);
}

// The tests that a candidate has to pass besides being a name: its length, and being no reserved
// word; a word that this section knows needs no more work. (A number is no member's name, so it
// needs no test of its own.)
bool Reference_Reader::Chk_Known(std::string_view word) {
  if (service::To_Int(service::Len_Chr(word)) < ctx_.Tbl.MLL) return true;
  if (ctx_.Srv.KWd.Has(word)) return true;
  return (err_sec_ ? error_ : normal_).Know(word, line_);
}

void Reference_Reader::Read_Plain_Word(std::string_view word, std::uint32_t hash) {
  // Most words end here.
  if (members_.Get(word, hash) == nullptr || Chk_Known(word)) return;
  Resolve(word, {}, word);
}

void Reference_Reader::Read_Dotted_Word(std::string_view word) {
  if (word.front() == '.') {
    // Most chains lead nowhere: that is seen before the word is put together.
    const std::string_view chain = with_.current;
    const std::size_t level = std::min(chain.find(kWith_Separator), chain.find('.'));
    if (chain.size() > kLongest_Chain || !Leads_On(chain.substr(0, level))) return;
    word_ = with_.current;
    std::replace(word_.begin(), word_.end(), kWith_Separator, '.');
    word_ += word;
    word = word_;
  }
  if (Is_Type_Character(word.back())) word.remove_suffix(1);
  if (word.front() == '"') return;
  const std::string_view first = word.substr(0, word.find('.'));
  if (!Leads_On(first) || Chk_Known(word)) return;
  Resolve(word, first, word.substr(word.rfind('.') + 1));
}

// Whether a variable of that type can be an instance; the few types of a project are remembered.
bool Reference_Reader::Is_Class(std::string_view word) {
  const auto at = classes_.find(word);
  if (at != classes_.end()) return at->second;
  const bool is_class = Chk_InV_Typ(ctx_.Tbl, word) != 0;
  classes_.emplace(std::string(word), is_class);
  return is_class;
}

// Whether any word of a declaration is a class: if not, none of its names is an instance.
bool Reference_Reader::Names_Class(std::string_view statement) {
  for (std::size_t from = 0; from < statement.size();) {
    const std::size_t end = std::min(statement.find_first_of(" ,:", from), statement.size());
    if (end > from && Is_Class(statement.substr(from, end - from))) return true;
    from = end + 1;
  }
  return false;
}

// Whether the first part of a dotted word is a module or was ever an instance. Asked for the same
// few words again and again, so the answer yes or no is kept; an instance that turns up later makes
// a no stale, which the count of instances tells.
bool Reference_Reader::Leads_On(std::string_view first) {
  if (first_parts_known_ != instances_.Name_Count()) {
    first_parts_.clear();
    first_parts_known_ = instances_.Name_Count();
  }
  const auto at = first_parts_.find(first);
  if (at != first_parts_.end()) return at->second;
  const bool leads = ctx_.Tbl.Prj_Mdl.Has(first) || instances_.Knows(first);
  first_parts_.emplace(std::string(first), leads);
  return leads;
}

void Reference_Reader::Resolve(std::string_view word, std::string_view first,
                               std::string_view member) {
  std::string_view module = first;
  const CsI_Row* instance = nullptr;
  std::string class_name;
  if (!first.empty() && !ctx_.Tbl.Prj_Mdl.Has(first)) {
    instance = instances_.Find(first, cur_ref_);
    if (instance != nullptr) {
      class_name = instance->CsI_Typ.empty() ? "?" : instance->CsI_Typ.front();
      module = class_name;
    }
  }
  const std::int64_t length = service::To_Int(service::Len_Chr(member));
  if (length < ctx_.Tbl.MLL || length > ctx_.Tbl.MHL) return;
  if (member == cur_prc_ && (module.empty() || module == cur_ref_)) return;

  const bool open_class = instance != nullptr && instance->CsI_Cls == '2';
  if (instance != nullptr && instance->CsI_Knd == 'F' && first != cur_prc_)
    (void)Hit_Candidate(word, first, {}, open_class);
  (void)Hit_Candidate(word, member, module, open_class);
}

bool Reference_Reader::Hit_Candidate(std::string_view word, std::string_view member,
                                     std::string_view module, bool open_class) {
  const Mem_Dic::Entry* first = members_.Get(member, Mem_Dic::Hash(member));
  if (member.empty() || first == nullptr) return false;
  const auto hit = [&](const Mem_Dic::Entry& entry) {
    if (hit_count_ == hits_.size()) hits_.emplace_back();
    Hit& one = hits_[hit_count_++];
    one.word = word;
    one.target.assign(entry.Mdl).append(1, '.').append(member);
    return true;
  };
  const std::string_view wanted = module.empty() ? std::string_view(cur_ref_) : module;
  for (const auto* entry = first; entry != nullptr; entry = members_.Next(*entry))
    if (entry->Mdl == wanted) return hit(*entry);
  if (module.empty()) {
    for (const auto* entry = first; entry != nullptr; entry = members_.Next(*entry))
      if (entry->Scp == kScp_Public) return hit(*entry);
  }
  if (!open_class) return false;
  bool any = false;
  for (const auto* entry = first; entry != nullptr; entry = members_.Next(*entry))
    if (entry->Scp == kScp_Public) any = hit(*entry);
  return any;
}

}  // namespace

void Del_Mod_Idx(std::string& statement) {
  std::string_view s = statement;
  const auto last_close = [&s] {
    for (std::size_t i = s.size(); i-- > 1;)
      if (s[i] == '.' && s[i - 1] == ')') return i - 1;
    return npos;
  };
  for (std::size_t close = last_close(); close != npos && close != 0; close = last_close()) {
    std::size_t open = close;
    for (int depth = 0;; --open) {
      if (s[open] == ')') ++depth;
      if (s[open] == '(' && --depth == 0) break;
      if (open == 0) return;
    }
    const std::size_t before = open == 0 ? npos : s.find_last_of(" ,", open - 1);
    const std::size_t word_at = before == npos ? 0 : before + 1;
    if (open == word_at) return;
    const std::string word(s.substr(word_at, open - word_at));
    std::string rewritten;
    rewritten.reserve(s.size());
    rewritten.append(s.substr(0, word_at)).append(s.substr(open + 1, close - open - 1));
    rewritten.append(1, ' ').append(word).append(s.substr(close + 1));
    statement.swap(rewritten);
    s = statement;
  }
}

bool Get_Ref_Man(const Ref_Ctx& ctx, const Go_On& go_on, const Module_Step& step) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Ref", "Get_Ref_Man");
  bool changed = false;
  Mem_Dic members(ctx.Tbl);
  for (const auto& item : ctx.Tbl.Mdl_Tbl) {
    if (!go_on()) return changed;
    members.Add(*item.value);
  }
  Reference_Reader reader(ctx, members);
  for (const auto& item : ctx.Tbl.Anl_Mdl) {
    if (!step(item.key)) return changed;
    const auto* entry = ctx.Tbl.Mdl_Tbl.Get(item.key);
    if (entry == nullptr) continue;  // gone meanwhile
    std::string text = reader.Read_Module(item.key);
    const std::string* old = ctx.Tbl.Ref_Tbl.Get(item.key);
    changed |= old == nullptr || *old != text;
    ctx.Tbl.Ref_Tbl.Remove(item.key);
    ctx.Tbl.Ref_Tbl.Add(item.key, std::move(text));
    std::string().swap((*entry)->RCd);
    (*entry)->Arg.clear();
  }
  Join_Ref_Texts(ctx.Tbl);
  return changed;
}

}  // namespace oru::analyser
