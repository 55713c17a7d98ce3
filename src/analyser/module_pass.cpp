// SPDX-License-Identifier: MIT
#include "analyser/module_pass.h"

#include <fmt/format.h>

#include <array>

#include "analyser/controls.h"
#include "analyser/definitions.h"
#include "analyser/kinds.h"
#include "analyser/reader.h"
#include "host/derived.h"
#include "service/text.h"

namespace oru::analyser {

using service::Take_Word;

namespace {

constexpr auto npos = std::string_view::npos;

void Append_Five(std::string& text, int number) {
  std::array<char, 5> digits{};
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, number /= 10)
    *digit = static_cast<char>('0' + number % 10);
  text.append(digits.data(), digits.size());
}

// Line offsets are five digits.
constexpr int kLast_Offset = 99999;
// The editor's longest statement has 25 lines of 1,023 characters.
constexpr std::size_t kLongest_Statement = std::size_t{64} * 1024;

class Module_Reader {
 public:
  Module_Reader(Mdl_Ctx& ctx, Mdl_Entry& entry, const host::CodeModule& code, std::string_view name)
      : ctx_(ctx), entry_(entry), code_(code), name_(name) {}

  // `Get_Mem_Inf`: the declaration section and all members. Returns the module's comment.
  std::string Read();

 private:
  struct Counts {
    int code = 0, comment = 0, blank = 0;
    void Add(const Stm_Reader& reader) {
      switch (reader.Kind()) {
        case Stm_Kind::Blank:
          blank += reader.Line_Count();
          break;
        case Stm_Kind::Comment:
          comment += reader.Line_Count();
          break;
        case Stm_Kind::Code:
          code += reader.Line_Count();
          break;
      }
    }
  };

  std::string Read_Section();
  void Read_Member(const host::Member_Place& place);
  void Chk_Dec_Inf(const std::string& statement, int line, const std::string& comment);
  void Add_Declare(std::string_view rest, char scope, int line, const std::string& comment);
  void Chk_Mem_Inf(const std::string& statement, int line);
  void Chk_Header(std::string_view statement);
  void Chk_Mem_Lin(std::string_view statement, int line);
  [[nodiscard]] bool Is_Event(std::string_view member) const;
  void Note_Arguments(std::string_view header);
  void Tell_Left_Out(int line);
  void Set_RCk_Inf(std::string_view name, std::string_view scope, char kind, std::string_view type);
  void Put_Counts(Mem_Row& row, const Counts& counts, const Metrics& metrics);

  Mdl_Ctx& ctx_;
  Mdl_Entry& entry_;
  const host::CodeModule& code_;
  std::string_view name_;
  Mem_Row mem_;                                                // the member that is being read
  host::Member_Place place_;                                   // where it stands
  std::vector<std::pair<std::string, std::string>> declares_;  // name, row
  std::vector<Def_Found> found_;
  std::string masked_;
  bool left_out_told_ = false;  // once for each member
};

std::string Module_Reader::Read() {
  std::string comment = Read_Section();
  const int last = code_.CountOfLines();
  for (int line = code_.CountOfDeclarationLines() + 1; line <= last;) {
    place_ = host::Get_CML_Inf(code_, line);
    if (place_.Cnt <= 0) break;
    // A name that comes twice (branches of an `#If`): the first stays, this one's lines are passed.
    if (!entry_.Mem.Has(place_.Nam)) Read_Member(place_);
    line = place_.Top + place_.Cnt;
  }
  return comment;
}

std::string Module_Reader::Read_Section() {
  Cmt_Text module_comment(ctx_.Options, ctx_.Options.Mdl_Tags);
  std::string last_comment;
  Counts counts;
  const std::string text = code_.Lines(1, code_.CountOfDeclarationLines());
  Stm_Reader reader(text, 1);
  const service::Err_Frame frame(ctx_.Srv.Errors, "Mod_Anl", "Chk_Dec_Inf", &reader.Cur_Stm(),
                                 &reader.Cur_Lin());
  while (reader.Next()) {
    counts.Add(reader);
    if (reader.Kind() == Stm_Kind::Comment) {
      module_comment.Add(reader.Cur_Stm());
      last_comment = reader.Cur_Stm();
    } else if (reader.Kind() == Stm_Kind::Code) {
      const bool is_option = reader.Cur_Stm().starts_with("Option ");
      module_comment.Meet_Code(is_option);
      if (reader.Cur_Stm().size() > kLongest_Statement) {
        Tell_Left_Out(reader.Cur_Lin());
        continue;
      }
      if (!is_option) Chk_Dec_Inf(reader.Cur_Stm(), reader.Cur_Lin(), last_comment);
    }
  }
  Mem_Row section;
  section.Mem_Nam = kDeclare;
  section.Mem_Mdl = name_;
  section.Mem_Lin = "1";
  Put_Counts(section, counts, Metrics());
  entry_.Mem.Add(kDeclare, service::Srv_Str_Row(section));
  for (auto& [name, row] : declares_) service::Add_Col_Itm(entry_.Mem, name, std::move(row));
  return module_comment.Take();
}

void Module_Reader::Put_Counts(Mem_Row& row, const Counts& counts, const Metrics& metrics) {
  row.Mem_Stm = fmt::to_string(counts.code);
  row.Mem_Cmt = fmt::to_string(counts.comment);
  row.Mem_Blk = fmt::to_string(counts.blank);
  row.Mem_Cpx = fmt::to_string(metrics.Mem_Cpx());
  row.Mem_Nst = fmt::to_string(metrics.Mem_Nst());
  ctx_.Tot_Lin += counts.code + counts.comment + counts.blank;
  ctx_.Cod_Lin += counts.code + counts.comment;
}

void Module_Reader::Chk_Dec_Inf(const std::string& statement, int line,
                                const std::string& comment) {
  std::string_view rest = statement;
  if (rest.find(' ') == npos) return;
  std::string_view word = Take_Word(rest);
  char scope = Scope_Of(word);
  if (scope != 0) {
    word = Take_Word(rest);
  } else {
    scope = kScp_Public;
  }
  if (word == "Declare") {
    Add_Declare(rest, scope, line, comment);
    return;
  }
  Chk_Def_Inf(statement, true, found_);
  for (Def_Found& def : found_) {
    def.Row.Def_Mdl = name_;
    def.Row.Def_Lin = fmt::to_string(line);
    entry_.Def.push_back(service::Srv_Str_Row(def.Row));
    Set_RCk_Inf(def.Row.Def_Nam, def.Row.Def_Scp, 'V', def.Row.Def_Typ);
  }
  if (word == "WithEvents" && !found_.empty())
    service::Add_Col_Itm(entry_.Ctl, found_.back().Row.Def_Nam, std::string());
}

void Module_Reader::Add_Declare(std::string_view rest, char scope, int line,
                                const std::string& comment) {
  std::string_view word = Take_Word(rest);
  if (word == "PtrSafe") word = Take_Word(rest);
  if (word != "Sub" && word != "Function") return;
  Mem_Row row;
  row.Mem_Nam = Take_Word(rest);
  row.Mem_Mdl = name_;
  row.Mem_Knd = kMem_Api;
  row.Mem_Scp = scope;
  row.Mem_Sub = word == "Sub" ? '1' : '2';
  row.Mem_CTx = Rev_CTx_Fmt(ctx_.Options, comment);
  row.Mem_Lin = fmt::to_string(line);
  declares_.emplace_back(row.Mem_Nam, service::Srv_Str_Row(row, kDeclare_Row_Fields));
}

void Module_Reader::Read_Member(const host::Member_Place& place) {
  mem_ = {};
  left_out_told_ = false;
  mem_.Mem_Nam = place.Nam;
  mem_.Mem_Mdl = name_;
  mem_.Mem_Knd = place.Knd;
  if (place.Sub != 0) mem_.Mem_Sub = place.Sub;
  mem_.Mem_Lin = fmt::to_string(place.Top);
  // What stands above the header belongs to this member too, so its line opens here.
  ctx_.RCd_Buffer.append(1, '#').append(place.Nam).append("\r\n");

  Cmt_Text comment(ctx_.Options, ctx_.Options.Mem_Tags);
  Counts counts;
  Metrics metrics;
  const std::string text = code_.Lines(place.Top, place.Cnt);
  Stm_Reader reader(text, place.Top);
  const service::Err_Frame frame(ctx_.Srv.Errors, "Mod_Anl", "Chk_Mem_Inf", &reader.Cur_Stm(),
                                 &reader.Cur_Lin());
  while (reader.Next()) {
    counts.Add(reader);
    if (reader.Kind() == Stm_Kind::Comment) comment.Add(reader.Cur_Stm());
    if (reader.Kind() != Stm_Kind::Code) continue;
    std::string& statement = reader.Cur_Stm();
    if (reader.Cur_Lin() == place.Bdy) Note_Arguments(statement);
    Del_Label(statement);
    (void)Sep_Comment(statement);
    Chk_Mem_Inf(statement, reader.Cur_Lin());
    metrics.Chk_Metrics(statement);
  }
  mem_.Mem_CTx = comment.Take();
  Put_Counts(mem_, counts, metrics);
  entry_.Mem.Add(place.Nam, service::Srv_Str_Row(mem_));
}

void Module_Reader::Chk_Mem_Inf(const std::string& statement, int line) {
  if (line == place_.Bdy) {
    Chk_Header(statement);
  } else if (Has_Colon_List(statement)) {
    masked_ = statement;
    Rev_Cst_Val(masked_);
    for (const std::string_view piece : Split_Colons(masked_)) Chk_Mem_Lin(piece, line);
  } else {
    Chk_Mem_Lin(statement, line);
  }
}

void Module_Reader::Chk_Header(std::string_view statement) {
  std::string_view rest = statement;
  std::string_view word = Take_Word(rest);
  mem_.Mem_Scp = kScp_Public;
  if (const char scope = Scope_Of(word); scope != 0 || word == "Static") {
    if (scope != 0) mem_.Mem_Scp = scope;
    word = Take_Word(rest);
  }
  // Any other word, as after "Public Static", leaves the kind that the editor told.
  if (word == "Sub") mem_.Mem_Knd = kMem_Sub;
  if (word == "Function") mem_.Mem_Knd = kMem_Function;
  if (mem_.Mem_Knd.front() == kMem_Sub && Is_Event(mem_.Mem_Nam)) mem_.Mem_Knd = kMem_Event;
  if (mem_.Mem_Knd.front() == kMem_Function) {
    const std::size_t as = statement.rfind(" As ");
    const std::size_t close = statement.rfind(')');
    if (as != npos && close != npos && as > close && close + 5 <= statement.size()) {
      std::string_view type = statement.substr(close + 5);
      type = Take_Word(type);
      if (ctx_.Tbl.Prj_Mdl.Has(type)) Set_RCk_Inf(mem_.Mem_Nam, mem_.Mem_Scp, 'F', type);
    }
  }
}

bool Module_Reader::Is_Event(std::string_view member) const {
  const std::size_t underscore = member.rfind('_');
  if (underscore != npos && underscore > 0 && entry_.Ctl.Has(member.substr(0, underscore)))
    return true;
  if (ctx_.Mac_Lst.size() > 1) {
    if (ctx_.Mac_Lst.find(fmt::format(" {} ", member)) != npos) return true;
    if (ctx_.Mac_Lst.find(fmt::format(" {}.{} ", name_, member)) != npos) return true;
  }
  if (ctx_.Srv.Product.Host_Name == "Excel" && member == "Auto_Open") return true;
  const std::string& key = ctx_.Options.Evt_Key;
  return !key.empty() && (member.starts_with(key) || member.ends_with(key));
}

// Statements with these first words refer to nothing.
void Module_Reader::Chk_Mem_Lin(std::string_view statement, int line) {
  if (statement.empty()) return;
  const std::string_view word = statement.substr(0, statement.find(' '));
  switch (word.empty() ? '\0' : word.front()) {
    case 'E':
      if (word == "Else" || word == "Exit") return;
      if (word == "End" && !statement.starts_with("End With")) return;
      break;
    case 'N':
      if (word == "Next") return;
      break;
    case 'C':
      if (word == "Const" || word == "Case") return;
      break;
    case '#':
      if (word == "#") return;
      break;
    default:
      break;
  }
  const int offset = line - place_.Top + 1;
  if (offset > kLast_Offset || statement.size() > kLongest_Statement) {
    // The record has five digits; and what is far beyond the editor's own limits is no code.
    Tell_Left_Out(line);
    return;
  }
  Append_Five(ctx_.RCd_Buffer, offset);
  ctx_.RCd_Buffer.append(statement).append("\r\n");
}

// Few parameters are of a class: the others are turned away by their type word alone.
void Module_Reader::Note_Arguments(std::string_view header) {
  for (const std::string_view piece : Split_Arguments(header)) {
    const std::string_view type = As_Type(piece);
    if (!type.empty() && Chk_InV_Typ(ctx_.Tbl, type) == 0) continue;
    const Def_Row argument = Parse_Argument(piece, 0);
    entry_.Arg.push_back({mem_.Mem_Nam, argument.Def_Nam + ' ' + argument.Def_Typ});
  }
}

void Module_Reader::Tell_Left_Out(int line) {
  if (left_out_told_) return;
  left_out_told_ = true;
  ctx_.Problem(
      name_,
      fmt::format(
          "{} - {} 行目からの文は、行数または長さがエディタの限度を超えるため解析しませんでした。",
          name_, line));
}

void Module_Reader::Set_RCk_Inf(std::string_view name, std::string_view scope, char kind,
                                std::string_view type) {
  const char flag = kind == 'F' ? '1' : Chk_InV_Typ(ctx_.Tbl, type);
  if (flag == 0) return;
  entry_.InV.push_back(service::Srv_Str_Txt({name, name_, scope, std::string_view(&flag, 1),
                                             std::string_view(&kind, 1), flag == '1' ? type : ""}));
}

}  // namespace

void Get_Mdl_Lop(Mdl_Ctx& ctx, host::VBComponent& component) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Anl", "Get_Mdl_Lop");
  Mdl_Row row;
  row.Mdl_Nam = component.Name();
  const Mdl_Kind kind = Rev_Mdl_Typ(ctx.VBInst, ctx.App, ctx.HFl_Nam, row.Mdl_Nam);
  row.Mdl_Typ = kind.Mdl_Typ;
  row.Mdl_Cap = kind.Mdl_Cap;
  ctx.Tbl.Mdl_Tbl.Remove(row.Mdl_Nam);

  auto entry = std::make_unique<Mdl_Entry>();
  ctx.RCd_Buffer.clear();
  Get_Controls(ctx, component, row, *entry);
  const host::CodeModule* code = component.CodeModule();
  if (code != nullptr && code->CountOfLines() > 0) {
    Module_Reader reader(ctx, *entry, *code, row.Mdl_Nam);
    row.Mdl_CTx = reader.Read();
  } else {
    Mem_Row section;
    section.Mem_Nam = kDeclare;
    section.Mem_Mdl = row.Mdl_Nam;
    section.Mem_Lin = "1";
    section.Mem_Stm = section.Mem_Cmt = section.Mem_Blk = section.Mem_Cpx = section.Mem_Nst = "0";
    entry->Mem.Add(kDeclare, service::Srv_Str_Row(section));
  }
  const bool shows_caption = row.Mdl_Typ == kTyp_Workbook || row.Mdl_Typ == kTyp_Sheet ||
                             row.Mdl_Typ == kTyp_Word_Document;
  if (shows_caption && row.Mdl_CTx.empty() && row.Mdl_Cap != row.Mdl_Nam) row.Mdl_CTx = row.Mdl_Cap;

  entry->Mdl = service::Srv_Str_Row(row);
  if (code != nullptr) {
    Mdl_Code text = Get_Mdl_Cod(*code);
    entry->CCd = std::move(text.CCd);
    entry->Lin_Hash = text.Lin_Hash;
    entry->Lin_Cnt = code->CountOfLines();
  }
  entry->RCd = ctx.RCd_Buffer;
  ctx.Tbl.Mdl_Tbl.Add(row.Mdl_Nam, std::move(entry));
}

Mdl_Code Get_Mdl_Cod(const host::CodeModule& module) {
  constexpr std::uint64_t kPrime = 1099511628211U;
  Mdl_Code code;
  std::string& text = code.CCd;
  text = module.Lines(1, module.CountOfLines());
  // The line ends come out in place, a whole line's bytes at a time.
  std::uint64_t hash = 14695981039346656037U;
  std::size_t to = 0;
  const bool has_lines = module.CountOfLines() > 0;
  for (std::size_t from = 0; has_lines && from <= text.size();) {
    std::size_t end = text.find("\r\n", from);
    if (end == std::string::npos) end = text.size();
    const std::string_view line = std::string_view(text).substr(from, end - from);
    hash = (hash ^ line.size()) * kPrime;
    if (!service::Trim(line).empty()) code.Lin_Hash = hash;
    if (to != from) std::char_traits<char>::move(&text[to], &text[from], end - from);
    to += end - from;
    from = end + 2;
  }
  text.resize(to);
  const std::string_view trimmed = service::Trim(text);
  const auto start = static_cast<std::size_t>(trimmed.data() - text.data());
  text.resize(start + trimmed.size());
  text.erase(0, start);
  return code;
}

}  // namespace oru::analyser
