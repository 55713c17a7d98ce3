// SPDX-License-Identifier: MIT
#include "analyser/definitions.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "analyser/reader.h"
#include "service/text.h"

namespace oru::analyser {

using service::Take_Word;
using service::Trim;
using service::Trim_Right;

namespace {

constexpr auto npos = std::string_view::npos;

struct Definition_Word {
  std::string_view word;
  char kind;
};

constexpr std::array kDefinition_Words{
    Definition_Word{"Dim", kDef_Dim},           Definition_Word{"Const", kDef_Const},
    Definition_Word{"Static", kDef_Static},     Definition_Word{"Type", kDef_Type},
    Definition_Word{"Enum", kDef_Enum},         Definition_Word{"WithEvents", kDef_WithEvents},
    Definition_Word{"Events", kDef_WithEvents}, Definition_Word{"Event", kDef_Event},
};

constexpr std::array<std::string_view, 4> kNo_Definition{"Sub", "Function", "Property", "Declare"};

constexpr double kMost_Enum = 1e15;  // beyond a Long anyway, and far from where counting overflows
// A comment is kept with each name of its line, up to this many bytes for a statement: no line that
// an editor can hold comes near it, and a damaged file must not blow up the tables.
constexpr std::size_t kMost_Comment = std::size_t{1} << 20U;

bool Is_List_Kind(char kind) {
  return kind == kDef_Variable || kind == kDef_Static || kind == kDef_Dim;
}

std::string Without_Blanks(std::string_view text) {
  return service::Replace_All(text, " ", "");
}

// Offset of the ")" that closes the "(" at `open`, or npos.
std::size_t Closing(std::string_view text, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')' && --depth == 0) return i;
  }
  return npos;
}

// Bounds in parentheses with all blanks removed, "()" for none; empty if the text has no "(".
std::string Array_Bounds(std::string_view text) {
  const std::size_t open = text.find('(');
  if (open == npos) return {};
  const std::size_t close = Closing(text, open);
  const std::string_view inside = text.substr(open + 1, close == npos ? npos : close - open - 1);
  return "(" + Without_Blanks(inside) + ")";
}

std::string_view Name_Of(std::string_view text) {
  return text.substr(0, text.find_first_of(" ("));
}

// The statement with all that stands in parentheses or quotes overwritten with blanks, byte for
// byte, so that offsets in it are offsets in the statement.
std::string Blank_Out(std::string_view statement) {
  std::string copy(statement);
  int depth = 0;
  bool inside = false;
  for (char& c : copy) {
    const bool is_quote = c == '"';
    const bool is_open = c == '(' && !inside;
    const bool is_close = c == ')' && !inside;
    if (is_quote) inside = !inside;
    if (is_open) ++depth;
    if (is_quote || is_open || is_close || inside || depth > 0) c = ' ';
    if (is_close) depth = std::max(depth - 1, 0);
  }
  return copy;
}

// Bounds, type, value and name of one declared name. `text` is the statement up to the first name's
// end, or a later name's own piece; the name starts at `name_at` in it.
void Fill_Name(std::string text, std::size_t name_at, Def_Row& row) {
  const char kind = row.Def_Knd.front();
  if (Is_List_Kind(kind)) row.Def_Dim = Array_Bounds(std::string_view(text).substr(name_at));
  if (const std::size_t at = text.find(" New "); at != std::string::npos) text.erase(at, 4);
  switch (kind) {
    case kDef_Type:
      row.Def_Typ = "Type";
      break;
    case kDef_Enum:
      row.Def_Typ = "Enum";
      break;
    case kDef_Event:
      row.Def_Typ = "Event";
      break;
    default:
      row.Def_Typ = As_Type(text);
  }
  if (kind == kDef_Const) {
    if (const std::size_t at = text.find(" = "); at != std::string::npos) {
      std::string_view value = Trim_Right(std::string_view(text).substr(at + 3));
      if (value.ends_with(':')) value.remove_suffix(1);
      row.Def_Val = value;
    }
  } else if (kind == kDef_Event) {
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open != std::string::npos && close != std::string::npos && close > open)
      row.Def_Val = text.substr(open, close - open + 1);
  }
  row.Def_Nam = Name_Of(std::string_view(text).substr(std::min(name_at, text.size())));
  if (row.Def_Typ.empty()) {
    row.Def_Typ = Rev_Pic_Val(row.Def_Nam);
    if (row.Def_Typ.empty() && kind != kDef_Const) row.Def_Typ = "Variant";
  }
}

}  // namespace

std::string_view As_Type(std::string_view text) {
  const std::size_t as = text.find(" As ");
  if (as == npos) return {};
  std::string_view rest = text.substr(as + 4);
  std::string_view word = Take_Word(rest);
  if (word.ends_with(':')) word.remove_suffix(1);
  return word;
}

char Scope_Of(std::string_view word) {
  if (word == "Private") return kScp_Private;
  if (word == "Public" || word == "Global") return kScp_Public;
  if (word == "Friend") return kScp_Friend;
  return 0;
}

bool May_Define(std::string_view statement) {
  statement = service::Trim_Left(statement);
  const std::string_view word = statement.substr(0, statement.find(' '));
  // Most statements begin with a letter that none of the words has.
  if (word.empty() || std::string_view("CDEFGPSTW0123456789").find(word[0]) == npos) return false;
  // A number in front is a label, which the reader of declarations takes off.
  return (word[0] >= '0' && word[0] <= '9') || Scope_Of(word) != 0 ||
         std::any_of(kDefinition_Words.begin(), kDefinition_Words.end(),
                     [word](const Definition_Word& known) { return known.word == word; });
}

void Chk_Def_Inf(std::string_view source, bool in_declare, std::vector<Def_Found>& found) {
  found.clear();
  if (!May_Define(source)) return;
  std::string statement(source);
  Del_Label(statement);
  const std::string comment = Sep_Comment(statement);
  // The sentinel ends the last word.
  statement += ' ';
  std::string_view rest = statement;
  if (rest.find(' ') < 3) return;

  Def_Row common;
  std::string_view word = Take_Word(rest);
  if (const char scope = Scope_Of(word); scope != 0) {
    common.Def_Scp = scope;
    if (rest.empty()) return;
    word = Take_Word(rest);
  }
  if (std::find(kNo_Definition.begin(), kNo_Definition.end(), word) != kNo_Definition.end()) return;
  const auto* known = std::find_if(kDefinition_Words.begin(), kDefinition_Words.end(),
                                   [word](const Definition_Word& d) { return d.word == word; });
  std::size_t name_at = 0;
  if (known != kDefinition_Words.end()) {
    common.Def_Knd = known->kind;
    if (rest.find(' ') == npos) return;
    name_at = static_cast<std::size_t>(rest.data() - statement.data());
  } else if (!common.Def_Scp.empty()) {
    common.Def_Knd = kDef_Variable;
    name_at = static_cast<std::size_t>(word.data() - statement.data());
  } else {
    return;
  }
  const char kind = common.Def_Knd.front();
  if (common.Def_Scp.empty()) common.Def_Scp = in_declare ? kScp_Private : kScp_Local;
  common.Def_CTx = Trim(service::Replace_All(comment, "'", ""));

  // Only variables come in lists: the first "," (else the first ":") outside parentheses and quotes
  // ends the first name, even if a ":" stands before the ",".
  std::string copy;
  std::size_t list_at = npos;
  if (Is_List_Kind(kind)) {
    copy = Blank_Out(statement);
    list_at = copy.find(',');
    if (list_at == std::string::npos) list_at = copy.find(':');
  }
  Def_Found first{common, statement.substr(0, list_at)};
  Fill_Name(first.Piece, name_at, first.Row);
  found.push_back(std::move(first));
  if (list_at == npos || copy[list_at] != ',') return;

  // A ":" ends the list and with it whatever statement follows on the line.
  const std::size_t end = std::min(copy.find(':', list_at), copy.size());
  for (std::size_t at = list_at; at < end;) {
    const std::size_t next = std::min(copy.find(',', at + 1), end);
    const std::string_view piece = Trim(std::string_view(statement).substr(at + 1, next - at - 1));
    if (!piece.empty()) {
      Def_Found further{common, std::string(piece)};
      if (common.Def_CTx.size() * (found.size() + 1) > kMost_Comment) further.Row.Def_CTx.clear();
      Fill_Name(further.Piece + ' ', 0, further.Row);
      found.push_back(std::move(further));
    }
    at = next;
  }
}

std::optional<Typ_Element> Chk_Typ_Inf(std::string_view line) {
  std::string statement(Trim(line));
  if (statement.empty() || statement.front() == '\'') return std::nullopt;
  Typ_Element element;
  element.CTx = Trim(service::Replace_All(Sep_Comment(statement), "'", ""));
  statement += ' ';
  element.Dim = Array_Bounds(statement);
  if (element.Dim == "()") element.Dim = "(?)";
  element.Typ = As_Type(statement);
  element.Nam = Name_Of(statement);
  if (element.Typ.empty()) element.Typ = Rev_Pic_Val(element.Nam);
  return element;
}

std::optional<Enm_Element> Chk_Enm_Inf(std::string_view line, long long& counter) {
  std::string statement(Trim(line));
  if (statement.empty() || statement.front() == '\'') return std::nullopt;
  Enm_Element element;
  element.CTx = Trim(service::Replace_All(Sep_Comment(statement), "'", ""));
  if (const std::size_t at = statement.find(" = "); at != std::string::npos) {
    element.Nam = Trim(std::string_view(statement).substr(0, at));
    const double value = service::Val(std::string_view(statement).substr(at + 3));
    counter = static_cast<long long>(std::clamp(value, -kMost_Enum, kMost_Enum));
  } else {
    element.Nam = statement;
    ++counter;
  }
  element.Val = counter;
  return element;
}

std::string Chk_Api_Def(const host::CodeModule& module, int line) {
  const int count = module.CountOfLines();
  if (line < 1 || line > count) return {};
  // A statement of the host has at most 24 continuations.
  const std::string text = module.Lines(line, std::min(count - line + 1, 25));
  Stm_Reader reader(text, line);
  if (!reader.Next() || reader.Kind() != Stm_Kind::Code) return {};
  const std::string& statement = reader.Cur_Stm();
  for (const std::string_view head :
       {"Declare Function ", "Declare Sub ", "Declare PtrSafe Function ", "Declare PtrSafe Sub "}) {
    if (const std::size_t at = statement.find(head); at != std::string::npos) {
      std::string_view rest = std::string_view(statement).substr(at + head.size());
      return std::string(Take_Word(rest));
    }
  }
  return {};
}

Host_Name To_Host_Name(std::string_view mem_nam) {
  using host::ProcKind;
  if (mem_nam.ends_with("(Get)")) return {mem_nam.substr(0, mem_nam.size() - 5), ProcKind::Get};
  if (mem_nam.ends_with("(Let)")) return {mem_nam.substr(0, mem_nam.size() - 5), ProcKind::Let};
  if (mem_nam.ends_with("(Set)")) return {mem_nam.substr(0, mem_nam.size() - 5), ProcKind::Set};
  return {mem_nam, ProcKind::Proc};
}

namespace {

// Lines of the procedure from its body line on, read in small steps until the header is complete.
std::string Read_Header(const host::CodeModule& module, int body) {
  const int last = module.CountOfLines();
  for (int step = 1;; step *= 8) {
    const int count = std::min(step, last - body + 1);
    const std::string text = module.Lines(body, count);
    Stm_Reader reader(text, body);
    if (reader.Next()) return reader.Cur_Stm();
    if (count == last - body + 1) return {};
  }
}

// The text behind a parameter's name in the comment block, up to the end of that comment line.
std::string Argument_Comment(std::string_view comments, std::string_view name) {
  if (name.empty()) return {};
  const std::size_t at = service::Find_No_Case(comments, name);
  if (at == npos) return {};
  const std::string_view found = comments.substr(at);
  const std::string_view rest = found.substr(service::Match_No_Case(found, name));
  return std::string(rest.substr(0, rest.find('\r')));
}

}  // namespace

std::string Get_Prc_Hed(const host::CodeModule& module, std::string_view mem_nam) {
  const Host_Name host = To_Host_Name(mem_nam);
  try {
    return Read_Header(module, module.ProcBodyLine(host.Nam, host.Knd));
  } catch (const host::Host_Error& error) {
    if (error.number != host::kErr_No_Procedure) throw;
    return {};  // the member is gone, or is no procedure
  }
}

std::vector<std::string_view> Split_Arguments(std::string_view header) {
  const std::size_t open = header.find('(');
  const std::size_t close = header.rfind(')');
  if (open == npos || close == npos || close < open) return {};
  const std::string_view list = Trim(header.substr(open + 1, close - open - 1));
  return list.empty() ? std::vector<std::string_view>{} : service::Split(list, ",");
}

Def_Row Parse_Argument(std::string_view source, int position) {
  std::string text(Trim(source));
  Def_Row row;
  row.Def_Knd = kDef_Argument;
  const auto holds = [&](std::string_view word) { return text.find(word) != std::string::npos; };
  row.Def_Scp = fmt::format("{} {}渡し{}", position, holds("ByVal ") ? "値" : "参照",
                            holds("Optional ") ? "（省略可）" : "");
  if (const std::size_t at = text.find('='); at != std::string::npos && at + 2 <= text.size())
    row.Def_Val = Trim(std::string_view(text).substr(at + 2));
  for (const std::string_view word : {"ByVal ", "ByRef ", "Optional ", "ParamArray "})
    text = service::Replace_All(text, word, "");
  row.Def_Nam = std::string_view(text).substr(0, text.find(' '));
  if (const std::size_t open = row.Def_Nam.find('('); open != std::string::npos) {
    row.Def_Dim = row.Def_Nam.substr(open);
    row.Def_Nam.resize(open);
  }
  row.Def_Typ = As_Type(text + ' ');
  if (row.Def_Typ.empty()) row.Def_Typ = Rev_Pic_Val(row.Def_Nam);
  return row;
}

std::vector<Def_Row> Set_Arg_Inf(const host::CodeModule& module, std::string_view mdl_nam,
                                 std::string_view mem_nam, const Anl_Options& options) {
  std::vector<Def_Row> arguments;
  if (mem_nam == kDeclare) return arguments;
  const std::string header = Get_Prc_Hed(module, mem_nam);
  const std::vector<std::string_view> pieces = Split_Arguments(header);
  if (pieces.empty()) return arguments;

  const Host_Name host = To_Host_Name(mem_nam);
  const int top = module.ProcStartLine(host.Nam, host.Knd);
  const int body = module.ProcBodyLine(host.Nam, host.Knd);
  std::string comments;
  if (body > top) {
    const std::string block = Without_Blanks(module.Lines(top, body - top));
    for (std::size_t i = 0; i < block.size();) {
      const std::size_t start = i;
      const char32_t c = service::Next_Code_Point(block, i);
      if (c == U'\'' || !options.Is_Removed(c)) comments.append(block, start, i - start);
    }
  }
  for (const std::string_view piece : pieces) {
    Def_Row row = Parse_Argument(piece, static_cast<int>(arguments.size()) + 1);
    row.Def_Mdl = mdl_nam;
    row.Def_Lin = fmt::to_string(body);
    if (!comments.empty()) row.Def_CTx = Argument_Comment(comments, row.Def_Nam);
    arguments.push_back(std::move(row));
  }
  return arguments;
}

Visible_Names Set_Def_Tbl(const Tables& tables, host::VBE& vbe, const Anl_Options& options,
                          std::string_view mdl_nam, std::string_view mem_nam, Def_Reach reach,
                          bool all) {
  Visible_Names names;
  host::VBProject* project = vbe.ActiveVBProject();
  host::VBComponent* component =
      project == nullptr ? nullptr : project->VBComponents().Item(mdl_nam);
  host::CodeModule* module = component == nullptr ? nullptr : component->CodeModule();
  const Host_Name host_name = To_Host_Name(mem_nam);
  const bool is_procedure = module != nullptr && !Get_Prc_Hed(*module, mem_nam).empty();
  if (!all && mem_nam != kDeclare && is_procedure) {
    for (const Def_Row& row : Set_Arg_Inf(*module, mdl_nam, mem_nam, options))
      names.Rows.push_back("0" + service::Srv_Str_Row(row));
    const int top = module->ProcStartLine(host_name.Nam, host_name.Knd);
    const std::string text =
        module->Lines(top, module->ProcCountLines(host_name.Nam, host_name.Knd));
    Stm_Reader reader(text, top);
    std::vector<Def_Found> found;
    while (reader.Next()) {
      if (reader.Kind() != Stm_Kind::Code) continue;
      Chk_Def_Inf(reader.Cur_Stm(), false, found);
      for (Def_Found& def : found) {
        def.Row.Def_Mdl = mdl_nam;
        def.Row.Def_Lin = fmt::to_string(reader.Cur_Lin());
        names.Rows.push_back("0" + service::Srv_Str_Row(def.Row));
      }
    }
  }
  const auto add = [&](char prefix, const std::string& row) {
    names.Rows.push_back(prefix + row);
    if (service::Row_Field(row, 2) == std::string_view(&kDef_Type, 1))
      service::Add_Col_Itm(names.Types, service::Row_Field(row, 0), row);
  };
  if (const auto* entry = tables.Mdl_Tbl.Get(mdl_nam); entry != nullptr)
    for (const std::string& row : (*entry)->Def) add('1', row);
  if (reach == Def_Reach::Project) {
    for (const auto& item : tables.Mdl_Tbl) {
      if (service::Equal_No_Case(item.key, mdl_nam)) continue;
      for (const std::string& row : item.value->Def)
        if (all || service::Row_Field(row, 1) == std::string_view(&kScp_Public, 1)) add('2', row);
    }
  }
  return names;
}

}  // namespace oru::analyser
