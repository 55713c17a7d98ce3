// SPDX-License-Identifier: MIT
#include "analyser/change_history.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "analyser/module_pass.h"
#include "host/derived.h"
#include "host/places.h"
#include "service/text.h"

namespace oru::analyser {

namespace {

constexpr std::size_t kMoment = 12;  // "YYMMDDHHMMSS"
constexpr std::size_t kDigits = 17;  // and a five-digit line

void Put_Update(service::Collection<std::string>& updates, const std::string& key,
                std::string_view moment, int line) {
  std::string update = fmt::format("{}{:05}{}", moment, line, key);
  if (std::string* old = updates.Get(key)) {
    *old = std::move(update);
  } else {
    updates.Add(key, std::move(update));
  }
}

// To the head of the history; each member stands there once.
void Put_First(Kept_Lists& lists, His_Entry entry) {
  const std::string key = Full_Name(entry.Mdl, entry.Mem);
  lists.His.Remove(key);
  lists.His.Add_First(key, std::move(entry));
}

int To_Number(std::string_view digits) {
  int number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

// The line, from 1, that holds the first byte at which the compared code of `text` differs from
// `stored`. Both have no line ends and are trimmed, so the lines of `text` are walked along.
int First_Different_Line(std::string_view text, std::string_view stored) {
  const auto lines = service::Split(text, "\r\n");
  std::size_t first = 0;
  while (first < lines.size() && service::Trim(lines[first]).empty()) ++first;
  int last_code = static_cast<int>(std::min(first, lines.size() - 1)) + 1;
  std::size_t at = 0;  // in `stored`
  for (std::size_t i = first; i < lines.size(); ++i) {
    std::string_view line = lines[i];
    if (i == first) line = line.substr(line.find_first_not_of(' '));
    if (!service::Trim(line).empty()) last_code = static_cast<int>(i) + 1;
    const std::string_view then = stored.substr(std::min(at, stored.size()), line.size());
    // Blanks behind the last code are no difference: the stored text was trimmed.
    if (then != line && !(then.size() < line.size() && line.starts_with(then) &&
                          service::Trim(line.substr(then.size())).empty()))
      return static_cast<int>(i) + 1;
    at += line.size();
  }
  return last_code;
}

// Where only blank lines came or went: the first member that begins elsewhere, or has other lines.
int First_Moved_Line(const Mdl_Entry& stored, const host::CodeModule& now) {
  const auto counted = [](std::string_view row) {
    return To_Number(service::Row_Field(row, 7)) + To_Number(service::Row_Field(row, 8)) +
           To_Number(service::Row_Field(row, 9));
  };
  const int last = now.CountOfLines();
  int line = 1;
  while (line <= last) {
    const host::Member_Place place = host::Get_CML_Inf(now, line);
    const std::string* row = stored.Mem.Get(place.Nam);
    const int next = place.Top + std::max(place.Cnt, 1);
    if (row == nullptr || counted(*row) != place.Cnt) return place.Top;
    line = next;
  }
  return 1;
}

}  // namespace

std::string Prc_Upd_Inf(const Kept_Lists& lists, std::string_view key) {
  const std::size_t dot = key.rfind('.');
  const std::string* update =
      dot == std::string_view::npos
          ? lists.Mdl_Upd.Get(key)
          : lists.Mem_Upd.Get(Full_Name(key.substr(dot + 1), key.substr(0, dot)));
  return update == nullptr ? std::string() : *update;
}

bool Upd_Edt_Inf(Anl_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Sub", "Upd_Edt_Inf");
  ctx.Sta.Edt_Chg = true;
  const std::optional<host::Pane_Place> place = host::Get_ACp_Inf(ctx.VBInst);
  if (!place) return false;
  const int line = place->Sel.start_line;
  const std::string now = service::Stamp(ctx.Srv.Clk.Now());
  if (place->Mdl_Nam != ctx.Sta.Edt_Mdl) {
    ctx.Sta.Edt_Mdl = place->Mdl_Nam;
    ctx.Sta.Edt_Mem.clear();
    service::Add_Col_Itm(ctx.Tbl.Anl_Mdl, place->Mdl_Nam, std::string());
    ctx.Sta.Anl_Chg = true;
    Put_Update(ctx.Lst.Mdl_Upd, place->Mdl_Nam, now, line);
  }
  const int relative = line - place->Mem.Top + 1;
  if (place->Mem.Nam == ctx.Sta.Edt_Mem && relative == ctx.Sta.Edt_Lin) return false;
  ctx.Sta.Edt_Mem = place->Mem.Nam;
  ctx.Sta.Edt_Lin = relative;
  ctx.Sta.Anl_Chg = true;
  Put_Update(ctx.Lst.Mem_Upd, Full_Name(place->Mdl_Nam, place->Mem.Nam), now, relative);
  Set_Sif_Inf(ctx);
  return true;
}

void Set_Sif_Inf(Anl_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Sub", "Set_Sif_Inf");
  const std::optional<host::Pane_Place> place = host::Get_ACp_Inf(ctx.VBInst);
  if (!place || place->Mem.Nam == kDeclare) return;
  const int relative = place->Sel.start_line - place->Mem.Top + 1;
  if (relative <= 0) return;
  const auto* head = ctx.Lst.His.At(1);
  if (head != nullptr && head->value.Mdl == place->Mdl_Nam && head->value.Mem == place->Mem.Nam &&
      head->value.Lin == relative)
    return;
  ctx.Sta.Anl_Chg = true;
  Put_First(ctx.Lst, {service::Stamp(ctx.Srv.Clk.Now()), relative, place->Mdl_Nam, place->Mem.Nam});
}

void Rec_Out_Edt(Anl_Ctx& ctx, std::string_view module, const Mdl_Entry* stored,
                 const host::CodeModule& now, std::string_view moment) {
  const int count = now.CountOfLines();
  // A file without a date was taken away in the meantime: then now is as good as any time.
  const std::string when =
      moment.size() == kMoment ? std::string(moment) : service::Stamp(ctx.Srv.Clk.Now());
  int line = 1;
  if (count > 0 && stored != nullptr)
    line = Get_Mdl_Cod(now).CCd == stored->CCd
               ? First_Moved_Line(*stored, now)
               : First_Different_Line(now.Lines(1, count), stored->CCd);
  ctx.Sta.Anl_Chg = true;
  Put_Update(ctx.Lst.Mdl_Upd, std::string(module), when, line);
  if (count == 0) return;
  const host::Member_Place place = host::Get_CML_Inf(now, line);
  const int relative = line - place.Top + 1;
  Put_Update(ctx.Lst.Mem_Upd, Full_Name(module, place.Nam), when, relative);
  Put_First(ctx.Lst, {when, relative, std::string(module), place.Nam});
}

bool Mov_Prc_His(Anl_Ctx& ctx, int kind) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Sub", "Mov_Prc_His");
  if (!host::Chk_Edt_Mod(ctx.VBInst)) return false;
  const std::optional<host::Pane_Place> place = host::Get_ACp_Inf(ctx.VBInst);
  if (!place || place->Mem.Nam == kDeclare) return false;
  const host::Member_Place& member = place->Mem;
  switch (kind) {
    case 1:
      return host::Set_Mdl_Lin(ctx.VBInst, place->Mdl_Nam, member.Bdy);
    case 2: {
      const std::string* update = ctx.Lst.Mem_Upd.Get(Full_Name(place->Mdl_Nam, member.Nam));
      if (update == nullptr || update->size() < kDigits) return false;
      const int line = To_Number(std::string_view(*update).substr(kMoment, kDigits - kMoment));
      // What was cut from the procedure since then must not lead into the next one.
      return host::Set_Mdl_Lin(ctx.VBInst, place->Mdl_Nam,
                               member.Top + std::clamp(line, 1, member.Cnt) - 1);
    }
    case 3: {
      // Behind the last procedure of a module there may be blank lines and comments.
      const host::CodeModule& code = ctx.VBInst.ActiveCodePane()->CodeModule();
      int line = member.Top + member.Cnt - 1;
      const auto is_code = [&](int at) {
        const std::string text = code.Lines(at, 1);
        const std::string_view trimmed = service::Trim(text);
        return !trimmed.empty() && trimmed.front() != '\'';
      };
      while (line > member.Bdy && !is_code(line)) --line;
      return host::Set_Mdl_Lin(ctx.VBInst, place->Mdl_Nam, line);
    }
    default:
      return false;
  }
}

void Del_Old_Upd(Kept_Lists& lists, const Tables& tables) {
  const auto gone = [&](std::string_view name) {
    const std::size_t dot = name.find('.');
    const auto* entry = tables.Mdl_Tbl.Get(name.substr(0, dot));
    return entry == nullptr ||
           (dot != std::string_view::npos && !(*entry)->Mem.Has(name.substr(dot + 1)));
  };
  const auto clean = [&](auto& items) {
    std::vector<std::string> keys;
    for (const auto& item : items)
      if (gone(item.key)) keys.push_back(item.key);
    for (const std::string& key : keys) items.Remove(key);
  };
  clean(lists.Mdl_Upd);
  clean(lists.Mem_Upd);
  clean(lists.His);
}

}  // namespace oru::analyser
