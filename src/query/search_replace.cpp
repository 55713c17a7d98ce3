// SPDX-License-Identifier: MIT
#include "query/search_replace.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "analyser/reader.h"
#include "host/code_change.h"
#include "query/result_rows.h"
#include "query/statement_text.h"
#include "service/text.h"
#include "service/text_find.h"

namespace oru::query {

using service::Text_Span;

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t kMost_Words = 20;

host::CodeModule* Module_Of(const Query_Ctx& ctx, std::string_view name) {
  host::VBProject* project = ctx.VBInst.ActiveVBProject();
  host::VBComponent* component = project == nullptr ? nullptr : project->VBComponents().Item(name);
  return component == nullptr ? nullptr : component->CodeModule();
}

std::string Line_Of(const host::CodeModule& code, int line) {
  return line >= 1 && line <= code.CountOfLines() ? code.Lines(line, 1) : std::string();
}

// The statement that begins at a line, and where one of its lines begins in it.
struct Statement {
  std::string text;
  std::size_t line_at = 0;
};
Statement Statement_At(const host::CodeModule& code, int first, int line) {
  Statement statement;
  for (int at = first; at <= code.CountOfLines(); ++at) {
    if (at > first) statement.text += "\r\n";
    if (at == line) statement.line_at = statement.text.size();
    statement.text += code.Lines(at, 1);
    if (!service::Trim_Right(statement.text).ends_with(" _") && at >= line) break;
  }
  return statement;
}

// Puts the new words in the place of the old ones.
class Line_Rewriter {
 public:
  Line_Rewriter(const Search_View& view, const std::vector<std::string>& rep_wds)
      : cond_(view.Cond),
        delimiters_(cond_.Knd == kSearch_Exact && !cond_.Cns ? kDelimiters_No_Quote : kDelimiters) {
    for (std::size_t i = 0; i < view.Words.size() && i < rep_wds.size(); ++i)
      if (!view.Words[i].empty() && view.Words[i] != rep_wds[i])
        words_.push_back({service::Text_Finder(view.Words[i], cond_.Cmp), rep_wds[i]});
  }

  [[nodiscard]] std::string Rewrite(const Statement& statement, std::string_view line) const {
    // What the search looked at is what is replaced in; places are those of that part, padded.
    const Text_Span part = Searched(statement.text);
    const std::string padded = Padded(std::string_view(statement.text).substr(part.at, part.size));
    const auto place = [&](std::size_t at) {
      return std::clamp(at, part.at, part.End()) - part.at + 1;
    };
    const std::size_t end = place(statement.line_at + line.size());
    std::string out;
    std::size_t done = 0;  // of the line
    for (std::size_t at = place(statement.line_at); const auto hit = Next(padded, at, end);) {
      const std::size_t in_line = hit->span.at - 1 + part.at - statement.line_at;
      out.append(line, done, in_line - done).append(hit->word->now);
      done = in_line + hit->span.size;
      at = hit->span.End();
    }
    return out.append(line, done);
  }

 private:
  struct Word {
    service::Text_Finder was;
    std::string now;
  };
  struct Found {
    Text_Span span;
    const Word* word;
  };

  // The part of a statement that the search looked at: without its label, and without a comment
  // that was left out.
  [[nodiscard]] Text_Span Searched(std::string_view statement) const {
    const std::string_view tested = Without_Label(statement);
    const auto begin = static_cast<std::size_t>(tested.data() - statement.data());
    const bool assigned = cond_.Knd == kSearch_Exact && cond_.Opt == kAssigned;
    if ((cond_.Cmt && !assigned) || Is_Comment(tested)) return {begin, tested.size()};
    std::string code(tested);
    (void)analyser::Sep_Comment(code);
    const std::size_t blanks = tested.size() - service::Trim_Left(tested).size();
    return {begin + blanks, code.size()};
  }

  [[nodiscard]] bool Counts(std::string_view padded, Text_Span span) const {
    if (cond_.Knd != kSearch_Exact) return true;
    return Is_Word_At(padded, span, delimiters_) &&
           (cond_.Opt != kAssigned || Chk_Let_Sta(padded, span.at, true));
  }

  // The next place of any word in [from, end); of two at one place the longer one.
  [[nodiscard]] std::optional<Found> Next(std::string_view padded, std::size_t from,
                                          std::size_t end) const {
    std::optional<Found> best;
    for (const Word& word : words_) {
      for (std::size_t at = from; at < end;) {
        const auto span = word.was.Find(padded, at);
        if (!span || span->End() > end) break;
        if (Counts(padded, *span)) {
          if (!best || span->at < best->span.at ||
              (span->at == best->span.at && span->size > best->span.size))
            best = Found{*span, &word};
          break;
        }
        at = span->at;
        (void)service::Next_Code_Point(padded, at);
      }
    }
    return best;
  }

  const Search_Cond& cond_;
  std::string_view delimiters_;
  std::vector<Word> words_;
};

}  // namespace

std::string Chk_Rep_Wds(const Search_View& view, const std::vector<std::string>& rep_wds) {
  if (view.Words.size() > kMost_Words)
    return "置換対象文字列数が上限（２０）を超えているため実行できません。    ";
  bool changes = false;
  for (std::size_t i = 0; i < view.Words.size(); ++i) {
    if (view.Words[i].empty()) continue;
    const std::string_view fresh = i < rep_wds.size() ? std::string_view(rep_wds[i]) : "";
    if (fresh.empty()) return "空文字への置換はサポートしていません。   ";
    if (fresh.find_first_of("\r\n") != npos)
      return "置換後の文字列に改行を含めることはできません。    ";
    changes = changes || fresh != view.Words[i];
  }
  return changes ? std::string() : "置換後の文字列がすべて置換対象文字列と同じです。   ";
}

Replace_Result Plan_Replacement(const Query_Ctx& ctx, const Search_View& view,
                                const std::vector<std::string>& rep_wds) {
  Replace_Result plan;
  plan.Error = Chk_Rep_Wds(view, rep_wds);
  if (!plan.Ok()) return plan;
  const Line_Rewriter rewriter(view, rep_wds);
  for (const std::string& text : view.Row) {
    const Result_Row row = Read_Row(text);
    if (row.Type != 'R') continue;
    const host::CodeModule* code = Module_Of(ctx, row.Mdl);
    const int number = row.Lno + row.Index;
    const std::string line = code == nullptr ? std::string() : Line_Of(*code, number);
    std::string shown = line;
    std::replace(shown.begin(), shown.end(), '\t', ' ');
    if (shown != row.Text) {
      plan.Skipped.push_back(fmt::format(
          "「{}」の {} 行目は、検索したあとに変更されているため置換しません。", row.Mdl, number));
      continue;
    }
    std::string fresh = rewriter.Rewrite(Statement_At(*code, row.Lno, number), line);
    if (fresh != line) plan.Lines.push_back({std::string(row.Mdl), number, line, std::move(fresh)});
  }
  return plan;
}

void Write_Lines(const Query_Ctx& ctx, Replace_Result& plan, bool back) {
  std::erase_if(plan.Lines, [&](const Undo_Line& line) {
    host::CodeModule* code = Module_Of(ctx, line.Mdl);
    const std::string& was = back ? line.New : line.Old;
    const std::string& now = back ? line.Old : line.New;
    const std::string error =
        code == nullptr
            ? fmt::format("「{}」というモジュールがなくなっているため書き換えません。", line.Mdl)
            : host::Do_Change(*code, line.Mdl,
                              std::vector<host::Line_Change>{{line.Lno, {was}, {now}}},
                              host::Keeps::Nothing)
                  .Error;
    if (!error.empty()) {
      plan.Skipped.push_back(error);
      return true;
    }
    if (ctx.Note_Edit) ctx.Note_Edit(line.Mdl);
    return false;
  });
}

}  // namespace oru::query
