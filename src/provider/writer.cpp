// SPDX-License-Identifier: MIT
#include "provider/writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <string>
#include <utility>

#include "host/line_class.h"
#include "provider/attributes.h"
#include "provider/layout.h"
#include "provider/line_match.h"
#include "provider/lines.h"
#include "service/files.h"
#include "service/text.h"
#include "workbook/book.h"

namespace oru::provider {
namespace {

using service::Encoding;

/// The lines of a file in its own encoding, the byte order mark aside. A line end is never part of
/// a longer character, so they pair with the lines of the decoded text.
std::vector<Line> Raw_Lines(std::string_view bytes, Encoding encoding) {
  if (encoding != Encoding::Utf16_Le_Bom && encoding != Encoding::Utf16_Be_Bom)
    return All_Lines(bytes);
  std::string units;  // one byte for each unit; what is no line end does not matter
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const bool whole = at + 1 < bytes.size();
    const char low = !whole ? 'x' : bytes[encoding == Encoding::Utf16_Le_Bom ? at : at + 1];
    const char high = !whole ? 'x' : bytes[encoding == Encoding::Utf16_Le_Bom ? at + 1 : at];
    units += high == '\0' ? low : 'x';
  }
  std::vector<Line> lines = All_Lines(units);
  for (Line& line : lines)
    line = {line.begin * 2, std::min(line.end * 2, bytes.size()),
            std::min(line.next * 2, bytes.size())};
  return lines;
}

/// A line of the new file.
struct Piece {
  std::string content;
  std::string_view line_end;
};

class Rewriter {
 public:
  Rewriter(std::string_view bytes, File_Kind kind, const service::Code_Page& page,
           std::string_view shown)
      : bytes_(bytes), kind_(kind), page_(page), shown_(shown) {}

  Rewritten Rewrite(std::span<const std::string_view> lines) {
    encoding_ = Encoding_Of(bytes_, kind_);
    mark_ = service::Byte_Order_Mark(encoding_);
    body_ = bytes_.substr(mark_.size());
    const service::Decoded decoded = service::Decode(bytes_, encoding_, page_);
    text_ = decoded.text;
    damaged_ = decoded.bad_bytes > 0;
    raw_lines_ = Raw_Lines(body_, encoding_);
    text_lines_ = All_Lines(text_);
    if (raw_lines_.size() != text_lines_.size())
      return Refuse("行の区切りを読み取れません。文字コードを確かめてください");
    Sort_Lines();
    Choose_Line_End();
    if (auto refusal = Build(lines)) return std::move(*refusal);
    Rewritten out;
    out.bytes = Join();
    return Check(std::move(out), lines);
  }

 private:
  [[nodiscard]] Rewritten Refuse(std::string_view reason) const {
    return {fmt::format("「{}」には書き込みません（{}）。", shown_, reason), {}};
  }

  /// Tells code lines from hidden ones, and groups the latter.
  void Sort_Lines() {
    const Layout layout = Scan_Layout(text_);
    std::size_t range = 0;
    bool continued = false;  // inside an attribute that goes on
    for (std::size_t i = 0; i < text_lines_.size(); ++i) {
      const std::string_view content = text_lines_[i].Content(text_);
      while (range < layout.hidden.size() && layout.hidden[range].end <= text_lines_[i].begin)
        ++range;
      const bool is_hidden =
          range < layout.hidden.size() && layout.hidden[range].begin <= text_lines_[i].begin;
      if (!is_hidden) {
        code_.push_back(i);
        old_code_.push_back(As_Shown(content));
        continued = false;
        continue;
      }
      if (continued) {
        hidden_.back().last = i;
      } else {
        const auto attribute = Parse_Attribute(content);
        hidden_.push_back({i, i, code_.size(), attribute ? attribute->member : ""});
        continued = attribute.has_value();
      }
      continued = continued && host::Is_Continued(content);
    }
  }

  /// The line end that most lines of the file have; CR LF where none does.
  void Choose_Line_End() {
    constexpr std::array<std::string_view, 4> kinds = {"\r\n", "\n", "\r", "\r\r\n"};
    std::array<std::size_t, 4> counts{};
    for (const Line& line : text_lines_)
      for (std::size_t k = 0; k < kinds.size(); ++k)
        if (line.Line_End(text_) == kinds[k]) ++counts[k];
    const auto most = std::max_element(counts.begin(), counts.end()) - counts.begin();
    const auto encode = [&](std::string_view end) {
      return service::Encode(end, encoding_, page_).value_or(std::string(end));
    };
    line_end_ = encode(kinds[static_cast<std::size_t>(most)]);
    cr_ = encode("\r");
    lf_ = encode("\n");
    cr_lf_ = encode("\r\n");
  }

  /// Lays out the pieces; what is refused comes back.
  std::optional<Rewritten> Build(std::span<const std::string_view> lines) {
    // Lines are paired without regard to their indent, so that a formatter leaves each line, and
    // with it the empty ones and the attributes, at its place.
    std::vector<std::string_view> shown_lines, old_keys, new_keys;
    for (const std::string_view line : lines) shown_lines.push_back(As_Shown(line));
    for (const std::string_view line : old_code_) old_keys.push_back(Cut_Blanks(Skip_Blanks(line)));
    for (const std::string_view line : lines) new_keys.push_back(Cut_Blanks(Skip_Blanks(line)));
    const std::vector<std::size_t> match = Match_Lines(old_keys, new_keys);
    const std::vector<std::size_t> twins = Twins(match);
    const std::vector<std::size_t> places = Place_Hidden(hidden_, old_code_, shown_lines, match);
    std::vector<std::vector<std::size_t>> at_place(lines.size() + 1);
    for (std::size_t i = 0; i < places.size(); ++i)
      if (places[i] != kNo_Line) at_place[places[i]].push_back(i);

    for (std::size_t i = 0; i <= lines.size(); ++i) {
      for (const std::size_t group : at_place[i])
        for (std::size_t k = hidden_[group].first; k <= hidden_[group].last; ++k) Keep(k);
      if (i == lines.size()) break;
      if (match[i] != kNo_Line && old_code_[match[i]] == shown_lines[i]) {
        Keep(code_[match[i]]);
        continue;
      }
      auto encoded = service::Encode(lines[i], encoding_, page_);
      if (!encoded || (damaged_ && lines[i].find("\uFFFD") != lines[i].npos))
        return Refuse(fmt::format("{} 行目の「{}」はこのファイルの文字コードで表せません", i + 1,
                                  First_Unfit(lines[i])));
      const std::size_t twin = twins[i];
      pieces_.push_back({std::move(*encoded),
                         twin == kNo_Line ? line_end_ : raw_lines_[code_[twin]].Line_End(body_)});
    }
    return std::nullopt;
  }

  /// For each new line the old one whose line end it takes: the one it is matched with, or between
  /// matched lines, where as many new ones stand as old ones, the one in its place.
  [[nodiscard]] std::vector<std::size_t> Twins(const std::vector<std::size_t>& match) const {
    std::vector<std::size_t> twins = match;
    std::size_t next_old = 0;  // behind the last matched line
    for (std::size_t i = 0; i < match.size();) {
      std::size_t end = i;
      while (end < match.size() && match[end] == kNo_Line) ++end;
      const std::size_t old_end = end == match.size() ? old_code_.size() : match[end];
      if (old_end - next_old == end - i)
        for (; i < end; ++i) twins[i] = next_old++;
      next_old = old_end + 1;
      i = end + 1;
    }
    return twins;
  }

  void Keep(std::size_t line) {
    pieces_.push_back(
        {std::string(raw_lines_[line].Content(body_)), raw_lines_[line].Line_End(body_)});
  }

  /// The first character of a line that cannot be encoded.
  [[nodiscard]] std::string First_Unfit(std::string_view line) const {
    for (std::size_t at = 0, next = 0; at < line.size(); at = next) {
      std::string character;
      service::Append_Code_Point(character, service::Next_Code_Point(line, next));
      if (character == "\uFFFD" || !service::Encode(character, encoding_, page_)) return character;
    }
    return std::string(line);
  }

  std::string Join() {
    const bool ended = raw_lines_.empty() || raw_lines_.back().end < raw_lines_.back().next;
    std::string out(mark_);
    out.reserve(bytes_.size() + bytes_.size() / 8);
    std::string_view before;  // the line end before
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      Piece& piece = pieces_[i];
      const bool last = i + 1 == pieces_.size();
      if (piece.line_end.empty()) piece.line_end = line_end_;
      // Of lines that did not follow each other before, a CR and the line end of an empty line
      // behind it would become one line end.
      if (piece.content.empty() && before == cr_ &&
          (piece.line_end == lf_ || piece.line_end == cr_lf_))
        piece.line_end = cr_;
      out += piece.content;
      // Without a line end, an empty last line would be none.
      if (!last || ended || piece.content.empty()) out += piece.line_end;
      before = piece.line_end;
    }
    return out;
  }

  /// Reads the result as it will be read next time. This is the guarantee, whatever the reason:
  /// a new line that looks like an attribute, or bytes that turn the file into another encoding.
  [[nodiscard]] Rewritten Check(Rewritten out, std::span<const std::string_view> lines) const {
    const Exported_File was = Read_Exported(std::string(bytes_), kind_, "-", page_);
    const Exported_File now = Read_Exported(out.bytes, kind_, "-", page_);
    if (!now.is_text) return Refuse("NUL 文字は書き込めません");
    const std::string_view text = now.component.text;
    const std::vector<Line> now_lines = All_Lines(text);
    const std::size_t common = std::min(lines.size(), now_lines.size());
    for (std::size_t i = 0; i < common; ++i) {
      if (As_Shown(now_lines[i].Content(text)) != As_Shown(lines[i]))
        return Refuse(fmt::format("{} 行目は、書き込むと別の内容として読み戻されます", i + 1));
    }
    if (lines.size() != now_lines.size())
      return Refuse(fmt::format("{} 行目は、書き込むとコードとして読み戻されません", common + 1));
    if (now.component.name != was.component.name || now.component.type != was.component.type)
      return Refuse("書き込むとモジュールの名前か種類が変わります");
    return out;
  }

  std::string_view bytes_, body_, mark_;
  File_Kind kind_;
  const service::Code_Page& page_;
  std::string_view shown_;
  Encoding encoding_ = Encoding::Code_Page;
  std::string text_;
  bool damaged_ = false;  ///< some bytes are undecodable: U+FFFD stands for bytes, not for itself
  std::vector<Line> raw_lines_, text_lines_;
  std::vector<std::size_t> code_;  ///< the file's line of each code line
  std::vector<std::string_view> old_code_;
  std::vector<Hidden_Lines> hidden_;
  std::string line_end_, cr_, lf_, cr_lf_;  ///< in the file's encoding
  std::vector<Piece> pieces_;
};

}  // namespace

Rewritten Rewrite_Code(std::string_view bytes, File_Kind kind,
                       std::span<const std::string_view> lines, const service::Code_Page& page,
                       std::string_view shown) {
  return Rewriter(bytes, kind, page, shown).Rewrite(lines);
}

namespace {

std::uint64_t Hash_Of(std::span<const std::string_view> lines) {
  std::uint64_t hash = 0;
  for (const std::string_view line : lines) hash = Hash_Line(hash, line);
  return hash;
}

std::string Changed_Since(std::string_view shown) {
  return fmt::format(
      "「{}」は読み込んだあとにほかのプログラムが変更しているため、書き込みません。読み込み直してください。",
      shown);
}

bool Is_Same(const service::Read_Result& read, const Module_File& file) {
  return read.bytes.size() == file.size && Hash_Bytes(read.bytes) == file.file_hash;
}

// The text of a component, and its lines.
struct Text_Of {
  explicit Text_Of(host::VBComponent& component) {
    const host::CodeModule* code = component.CodeModule();
    const int count = code == nullptr ? 0 : code->CountOfLines();
    if (count == 0) return;
    text = code->Lines(1, count);
    lines = service::Split(text, "\r\n");
  }
  Text_Of(const Text_Of&) = delete;
  Text_Of& operator=(const Text_Of&) = delete;
  std::string text;
  std::vector<std::string_view> lines;
};

}  // namespace

Writer::Writer(std::vector<Module_File> files, int code_page, Book_Write_Options options)
    : files_(std::move(files)), page_(service::Code_Page::Open(code_page)), options_(options) {}

Module_File* Writer::Find(std::string_view module) {
  const auto file = std::find_if(files_.begin(), files_.end(), [&](const Module_File& candidate) {
    return service::Equal_No_Case(candidate.name, module);
  });
  return file == files_.end() ? nullptr : &*file;
}

Write_Result Writer::Write(std::string_view module, std::span<const std::string_view> lines) {
  Module_File* file = Find(module);
  if (file == nullptr)
    return {fmt::format("モジュール「{}」のファイルがないため、書き込めません。", module)};
  const Edit edit{file, Hash_Of(lines), {lines.begin(), lines.end()}};
  if (edit.code_hash == file->code_hash) return {};
  return file->kind == File_Kind::Stored ? Write_To_Book({&edit, 1}) : Write_File(edit);
}

Write_Result Writer::Write(host::VBComponent& component) {
  const Text_Of text(component);
  return Write(component.Name(), text.lines);
}

Write_Result Writer::Write_File(const Edit& edit) {
  Module_File& file = *edit.file;
  if (page_ == nullptr) return {"指定されたコードページは使えないため、書き込めません。"};
  const service::Read_Result old = service::Read_File(file.path);
  if (!old.Ok()) return {old.error};
  if (!Is_Same(old, file)) return {Changed_Since(file.relative)};
  const Rewritten now = Rewrite_Code(old.bytes, file.kind, edit.lines, *page_, file.relative);
  if (!now.error.empty()) return {now.error};
  const service::File_Result put = service::Write_File(file.path, now.bytes, old.bytes);
  if (!put.Ok()) return {put.error};
  file.size = now.bytes.size();
  file.file_hash = Hash_Bytes(now.bytes);
  file.code_hash = edit.code_hash;
  return {"", true};
}

Write_Result Writer::Write_To_Book(std::span<const Edit> edits) {
  const Module_File first = *edits.front().file;
  const service::Read_Result old = service::Read_File(first.path);
  if (!old.Ok()) return {old.error};
  if (!Is_Same(old, first)) return {Changed_Since(first.relative)};
  workbook::Book book;
  if (const std::string error = book.Open(old.bytes); !error.empty()) return {error};
  const workbook::Vba_Project vba = workbook::Read_Vba(book.Project());
  if (!vba.Ok()) return {vba.error};
  std::vector<workbook::Changed_Module> changed;
  for (const Edit& edit : edits) {
    const auto module = std::find_if(
        vba.modules.begin(), vba.modules.end(), [&](const workbook::Vba_Module& candidate) {
          return service::Equal_No_Case(Module_Name(candidate.name), edit.file->name);
        });
    if (module == vba.modules.end()) return {Changed_Since(first.relative)};
    Rewritten now =
        Rewrite_Code(module->source, File_Kind::Stored, edit.lines, *vba.page, module->name);
    if (!now.error.empty()) return {now.error};
    changed.push_back({module->name, std::move(now.bytes)});
  }
  const Written_Book put = Write_Book(first.path, old.bytes, changed, first.relative, options_);
  if (!put.error.empty()) return {put.error};
  for (const Edit& edit : edits) edit.file->code_hash = edit.code_hash;
  for (Module_File& file : files_) {
    if (file.path != first.path) continue;
    file.size = put.bytes.size();
    file.file_hash = Hash_Bytes(put.bytes);
  }
  return {"", true};
}

std::vector<Problem> Writer::Write_Edited(host::Memory_Project& project) {
  std::vector<Problem> problems;
  std::vector<host::Memory_Component*> in_book;
  std::deque<Text_Of> texts;  // what the edits look at; it stays in its place
  std::vector<Edit> edits;
  for (const auto& component : project.Components()) {
    if (!component->Is_Edited()) continue;
    Module_File* file = Find(component->Name());
    if (file != nullptr && file->kind == File_Kind::Stored) {
      in_book.push_back(component.get());
      continue;
    }
    Write_Result result = Write(*component);
    if (result.Ok())
      component->Mark_Saved();
    else
      problems.push_back({component->Name(), std::move(result.error)});
  }
  for (host::Memory_Component* component : in_book) {
    const Text_Of& text = texts.emplace_back(*component);
    edits.push_back({Find(component->Name()), Hash_Of(text.lines), text.lines});
  }
  std::erase_if(edits, [](const Edit& edit) { return edit.code_hash == edit.file->code_hash; });
  Write_Result result = edits.empty() ? Write_Result{} : Write_To_Book(edits);
  for (host::Memory_Component* component : in_book) {
    if (result.Ok())
      component->Mark_Saved();
    else
      problems.push_back({component->Name(), result.error});
  }
  return problems;
}

}  // namespace oru::provider
