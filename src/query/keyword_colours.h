// SPDX-License-Identifier: MIT
// Code in colours: statements, blocks and lines of a comparison are cut into tokens, and each token
// is appended in the style that the options give its class. Words are classed by exact spelling,
// which the editor's normalisation of code makes enough. Nothing is appended behind a line but what
// it holds: line ends are the caller's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "query/rich_text.h"
#include "service/text_find.h"

namespace oru::service {
class Keywords;
class Settings;
}  // namespace oru::service

namespace oru::query {

/// A colour option from here on means "no colour": the base colour is taken.
constexpr Host_Colour kNo_Colour = 16777215;

/// Style options of one class of text.
struct Text_Style {
  Host_Colour colour = kNo_Colour;
  bool bld = false, itl = false, und = false;
};

/// The style options, read once for a text.
struct Text_Styles {
  explicit Text_Styles(const service::Settings& settings);

  Text_Style Txt;            ///< plain text, delimiters, numbers, string literals
  Text_Style Mdl, Mem;       ///< lines of modules and of procedures
  Text_Style Lin;            ///< line numbers
  Text_Style Cmt;            ///< comments
  Text_Style Em1, Em2;       ///< comments of emphasis class 1 and 2
  Text_Style Nam;            ///< names of variables, procedures and controls
  Text_Style Oth;            ///< reserved words and others
  Text_Style Cwd;            ///< control words
  Text_Style Hit;            ///< hit words
  Text_Style Tag;            ///< tags of templates
  Text_Style Idt, Id2;       ///< lines of the indent, by turns
  Text_Style Add, Del, Upd;  ///< runs of a comparison
};

/// The attributes of a style in this text; its colour gets a slot.
[[nodiscard]] Run_Style Run_Style_Of(Rich_Text& text, const Text_Style& style);

/// Behind a comment of a result row: this, and its emphasis class "0", "1" or "2".
constexpr std::string_view kCmt_Mark = "'~~~";

/// Appends one statement or physical line. `hits` are byte ranges of it, sorted; they take the hit style
/// wherever they stand, but not in a line that is a comment as a whole. A mark at the end
/// (`kCmt_Mark`) makes the line a comment of its class and is not appended.
void Set_KWd_Lin(Rich_Text& text, const Text_Styles& styles, const service::Keywords& keywords,
                 std::string_view line, std::span<const service::Text_Span> hits = {});

/// Appends a block of several lines (CR LF), which may hold template tags ("%MN") and the lines of
/// an indent ("│", "└", "|", "'→").
void Set_KWd_Txt(Rich_Text& text, const Text_Styles& styles, const service::Keywords& keywords,
                 std::string_view block);

enum class Dif_Kind : std::uint8_t { Added, Deleted, Changed };
struct Dif_Run {
  std::size_t begin = 0, size = 0;  ///< byte offset, bytes
  Dif_Kind kind = Dif_Kind::Changed;
};
/// What stands in place of the lines that a comparison leaves out.
constexpr std::string_view kDif_Cut = "↓以下表示省略";

/// Appends a line of a comparison. `runs` are sorted by offset. In them tokens take the colour of
/// the kind, and keep their own where it has none; what was added is underlined, what was deleted
/// struck through. `kDif_Cut` at the end is written as a comment.
void Set_KWd_Dif(Rich_Text& text, const Text_Styles& styles, const service::Keywords& keywords,
                 std::string_view line, std::span<const Dif_Run> runs);

/// True if `word` is a control word where it stands: `first` is the first word of its statement
/// (the word itself at its beginning), `before` and `next` are its neighbours, empty at the ends.
[[nodiscard]] bool Set_Eff_Cwd(std::string_view first, std::string_view before,
                               std::string_view word, std::string_view next);

}  // namespace oru::query
