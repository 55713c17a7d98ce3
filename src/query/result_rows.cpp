// SPDX-License-Identifier: MIT
#include "query/result_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "analyser/tables.h"
#include "query/statement_text.h"
#include "service/rows.h"
#include "service/text.h"

namespace oru::query {

namespace {

int Number(std::string_view digits) {
  int number = 0;
  (void)std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

int Mark_Of(std::string_view line) {
  if (!Is_Comment(line)) return 0;
  return line.ends_with("①") ? 1 : line.ends_with("②") ? 2 : 0;
}

char Rank(bool first, bool current) {
  return first ? 'X' : current ? 'Y' : 'Z';
}

bool Names(std::string_view wanted, std::string_view name) {
  return !wanted.empty() && service::Equal_No_Case(wanted, name);
}

}  // namespace

Result_Row Read_Row(std::string_view row) {
  Result_Row read;
  const std::vector<std::string_view> fields = service::Split(row, "\t");
  read.Type = fields.back().empty() ? '\0' : fields.back().back();
  if (fields.size() > 2) read.Mdl = fields[1];
  if (read.Type != 'P' && read.Type != 'R') return read;
  if (fields.size() > 4) read.Mem = fields[3];
  if (read.Type != 'R' || fields.size() < 8) return read;
  const int key = Number(fields[4]);
  read.Lno = key / 100;
  read.Index = key % 100;
  read.Text = fields[5];
  if (const std::string_view text = read.Text.substr(0, read.Text.size() - !read.Text.empty());
      text.ends_with(kCmt_Mark) && (read.Text.back() == '1' || read.Text.back() == '2')) {
    read.Mark = read.Text.back() - '0';
    read.Text = text.substr(0, text.size() - kCmt_Mark.size());
  }
  read.Relative = Number(fields[6]);
  for (std::size_t i = 7; i + 1 < fields.size(); ++i)
    if (!fields[i].empty()) read.Hits.push_back(fields[i]);
  return read;
}

void Add_Hit_Rows(std::vector<std::string>& rows, const Row_Order& order, bool procedures,
                  const Hit& hit) {
  const bool in_first = Names(order.First_Mdl, hit.Mdl);
  const bool in_current = Names(order.Current_Mdl, hit.Mdl);
  const std::string module_key = fmt::format("{}\t{}", Rank(in_first, in_current), hit.Mdl);
  const std::string member_key = fmt::format("{}\t{}{:04}\t{}", module_key,
                                             Rank(in_first && Names(order.First_Mem, hit.Mem),
                                                  in_current && Names(order.Current_Mem, hit.Mem)),
                                             order.By_Name ? 0 : hit.Mem_Ix, hit.Mem);
  // The same lines come with each hit; what is not caught here goes when the rows are sorted.
  const std::size_t before = rows.size();
  if (before == 0 || !rows.back().starts_with(module_key + "\t")) {
    rows.push_back(module_key + "\t L");
    rows.push_back(module_key + "\t M");
  }
  if (procedures && (before != rows.size() || !rows.back().starts_with(member_key + "\t")))
    rows.push_back(member_key + "\t P");
  const bool declaration = hit.Mem == analyser::kDeclare;
  int index = 0;
  for (const std::string_view line : service::Split(hit.Lin, "\r\n")) {
    std::string text(line);
    std::replace(text.begin(), text.end(), '\t', ' ');
    if (const int mark = Mark_Of(line); mark > 0) text += fmt::format("{}{}", kCmt_Mark, mark);
    const int relative = declaration ? hit.Lno + index : hit.Lno - hit.CMm_Sta + 1 + index;
    rows.push_back(fmt::format("{}\t{:07}\t{}\t{}\t{}\t R", member_key, hit.Lno * 100 + index, text,
                               relative, hit.Names));
    ++index;
  }
}

void Sort_Rows(std::vector<std::string>& rows) {
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

}  // namespace oru::query
