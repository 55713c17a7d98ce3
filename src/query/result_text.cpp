// SPDX-License-Identifier: MIT
#include "query/result_text.h"

#include <fmt/format.h>

#include <algorithm>

#include "analyser/kinds.h"
#include "query/keyword_colours.h"
#include "query/statement_text.h"
#include "service/text.h"

namespace oru::query {

using service::Text_Span;

namespace {

constexpr int kNumber_Width = 5;

void Start(Rich_Text& text, const Result_Style& style, const Text_Styles& styles) {
  text.Int_RTx_Inf(styles.Txt.colour, style.Opt.Text("FntNam3"), style.Opt.Real("FntSiz3"),
                   style.Opt.Number("Spc_Lin"));
}

// Appends the rows of one result, one after the other.
class Row_Writer {
 public:
  Row_Writer(const analyser::Tables& tables, const Search_View& view, const Result_Style& style,
             Rich_Text& text)
      : tables_(tables),
        view_(view),
        style_(style),
        text_(text),
        styles_(style.Opt),
        marker_(view),
        comments_(style.Opt.Flag("FCk_DspCm")),
        module_(Run_Style_Of(text, styles_.Mdl)),
        member_(Run_Style_Of(text, styles_.Mem)),
        comment_(Run_Style_Of(text, styles_.Cmt)),
        number_(Run_Style_Of(text, styles_.Lin)) {}

  void Write(std::string_view row, bool first) {
    const Result_Row read = Read_Row(row);
    switch (read.Type) {
      case 'L':
        if (!first)
          text_.Set_RTx_Txt("\r\n", style_.Opt.Number("Spc_Mdl"), number_.colour, false, false,
                            false, false);
        break;
      case 'M':
        return Module(read);
      case 'P':
        return Member(read);
      case 'R':
        return Line(read);
      default:
        break;
    }
  }

 private:
  void Module(const Result_Row& row) {
    const bool known = analyser::Set_Mdl_Fld(tables_, cur_, row.Mdl);
    text_.Set_RTx_Txt(" ", style_.Opt.Number("Spc_Lin"), kBase_Colour, false, false, false, false);
    if (known) text_.Set_RTx_Img(analyser::Set_Mdl_Img(cur_.Mdl.Mdl_Typ));
    text_.Add(" ");
    text_.Add(row.Mdl, module_);
    if (known) Comment(cur_.Mdl.Mdl_CTx);
    text_.Add("\r\n");
  }
  void Member(const Result_Row& row) {
    const bool known = analyser::Set_Mem_Fld(tables_, cur_, row.Mdl, row.Mem);
    text_.Add("    ");
    if (known) text_.Set_RTx_Img(analyser::Set_Mem_Img(cur_.Mem));
    text_.Add(" ");
    text_.Add(row.Mem == analyser::kDeclare ? std::string_view("【宣言部】") : row.Mem, member_);
    if (known && view_.Cond.Knd != kSearch_Comment) Comment(cur_.Mem.Mem_CTx);
    text_.Add("\r\n");
  }
  void Comment(std::string_view comment) {
    if (!comments_ || comment.empty()) return;
    text_.Add("  ");
    text_.Add(comment, comment_);
  }
  void Line(const Result_Row& row) {
    const int number = style_.absolute_lines ? row.Lno + row.Index : row.Relative;
    text_.Add(fmt::format(" {:>{}}|", number, kNumber_Width), number_);
    std::string line(row.Text);
    if (row.Mark > 0) line.append(kCmt_Mark).append(std::to_string(row.Mark));
    Set_KWd_Lin(text_, styles_, style_.KWd, line, marker_.Spans(row.Text, row.Hits));
    text_.Add("\r\n");
  }

  const analyser::Tables& tables_;
  const Search_View& view_;
  const Result_Style& style_;
  Rich_Text& text_;
  Text_Styles styles_;
  Hit_Marker marker_;
  bool comments_;
  Run_Style module_, member_, comment_, number_;
  analyser::Tbl_Cur cur_;
};

}  // namespace

Hit_Marker::Hit_Marker(const Search_View& view)
    : whole_words_(view.Cond.Knd != kSearch_Text),
      delimiters_(view.Cond.Knd == kSearch_Exact && !view.Cond.Cns ? kDelimiters_No_Quote
                                                                   : kDelimiters),
      compare_(view.Cond.Cmp) {
  const int code = view.Cond.Knd;
  if (code == kSearch_Text || code == kSearch_Exact || code == kSearch_With ||
      code == kSearch_Reference)
    for (const std::string& word : view.Words)
      if (!word.empty()) words_.emplace_back(word, compare_);
}

std::vector<Text_Span> Hit_Marker::Spans(std::string_view line,
                                         const std::vector<std::string_view>& names) const {
  std::vector<Text_Span> spans;
  const std::string padded = Padded(line);
  const auto add = [&](const service::Text_Finder& finder, bool whole) {
    for (std::size_t from = 1;;) {
      const auto span = finder.Find(padded, from);
      if (!span || span->End() >= padded.size()) return;
      from = span->at;
      (void)service::Next_Code_Point(padded, from);
      if (whole && !Is_Word_At(padded, *span, delimiters_)) continue;
      spans.push_back({span->at - 1, span->size});
      from = span->End();
    }
  };
  for (const service::Text_Finder& word : words_) add(word, whole_words_);
  for (const std::string_view name : names) {
    const bool is_name = !name.empty() && name.find_first_of(kDelimiters) == name.npos;
    add(service::Text_Finder(name, service::Compare::Text), is_name);
  }
  std::sort(spans.begin(), spans.end(), [](const Text_Span& a, const Text_Span& b) {
    return a.at != b.at ? a.at < b.at : a.size > b.size;
  });
  std::size_t end = 0;
  std::erase_if(spans, [&](const Text_Span& span) {
    if (span.at < end) return true;
    end = span.End();
    return false;
  });
  return spans;
}

Result_Text Set_Res_Lin(const analyser::Tables& tables, const Search_View& view,
                        const Result_Style& style) {
  Result_Text result;
  Start(result.Text, style, Text_Styles(style.Opt));
  Row_Writer writer(tables, view, style, result.Text);
  result.Begins.reserve(view.Row.size());
  for (const std::string& row : view.Row) {
    result.Begins.push_back(result.Text.RTx_Len());
    writer.Write(row, result.Begins.size() == 1);
  }
  result.Text.Add("\r\n ");
  return result;
}

Result_Text Message_Text(std::string_view message, const Result_Style& style) {
  Result_Text result;
  Start(result.Text, style, Text_Styles(style.Opt));
  result.Text.Edt_RTx_Msg(message);
  return result;
}

std::string Set_Not_Msg(const Search_View& view) {
  const Search_Cond& cond = view.Cond;
  constexpr std::string_view kScopes[] = {"プロシージャ", "モジュール", "プロジェクト"};
  std::string text =
      "●検索条件に該当する文はありません。指定した条件が正しいか確認してください。\\n";
  text += fmt::format("　　［検索対象］ {}\\n", Kind_Text(cond.Knd, cond.Opt));
  if (cond.Knd < kSearch_Variable) text += fmt::format("　　［検索文字］ {}\\n", cond.Wrd);
  text += fmt::format("　　［検索範囲］ {}\\n",
                      kScopes[static_cast<std::size_t>(std::clamp(cond.Scp, 0, 2))]);
  if (cond.Knd < kSearch_With && view.Words.size() > 1)
    text +=
        fmt::format("　　［合致条件］ {}\\n", cond.Cnd == 1 ? "いずれかをを含む" : "すべてを含む");
  if (cond.Knd < kSearch_With)
    text += fmt::format("　　［文字比較］ 大文字・小文字、全角・半角を区別{}\\n",
                        cond.Cmp == service::Compare::Binary ? "する" : "しない");
  return text;
}

}  // namespace oru::query
