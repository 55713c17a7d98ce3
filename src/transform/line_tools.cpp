// SPDX-License-Identifier: MIT
#include "transform/line_tools.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "host/line_class.h"
#include "service/errors.h"
#include "service/text.h"

namespace oru::transform {

namespace {

using service::Trim;
using service::Trim_Right;

constexpr auto npos = std::string_view::npos;
constexpr std::string_view kEquals = " = ", kAs = " As ";

// A line with its parts. Places are bytes.
struct Line_Parts {
  explicit Line_Parts(std::string_view line) : masked(line) {
    bool inside = false;
    for (std::size_t i = 0; i < masked.size(); ++i) {
      if (masked[i] == '"') {
        inside = !inside;
      } else if (inside) {
        masked[i] = '?';
      } else if (masked[i] == '\'') {
        comment = i;
        break;
      }
    }
    code = Trim_Right(std::string_view(masked).substr(0, comment)).size();
    const std::string_view text = Trim(line);
    comment_line = text.starts_with('\'') || text == "Rem" || text.starts_with("Rem ");
  }
  /// The code with a "?" for each byte of a literal.
  [[nodiscard]] std::string_view Code() const { return std::string_view(masked).substr(0, code); }

  std::string masked;
  std::size_t comment = npos;  ///< where the trailing comment begins
  std::size_t code = 0;        ///< where the code ends
  bool comment_line = false;
};

bool Is_Simple(std::string_view side) {
  return !side.empty() && side.find(' ') == npos;
}

bool Is_Literal(std::string_view side) {
  constexpr std::array<std::string_view, 5> kWords{"True", "False", "Nothing", "Null", "Empty"};
  return side.starts_with('"') || side.starts_with('#') || service::Is_Numeric(side) ||
         std::find(kWords.begin(), kWords.end(), side) != kWords.end();
}

// A line with the sides of its assignment swapped; nothing if it has none that can be.
std::optional<std::string> Swapped(std::string_view line, const Line_Parts& parts) {
  const std::string_view code = parts.Code();
  const std::size_t at = code.find(kEquals);
  if (at == npos || code.find(kEquals, at + 1) != npos) return std::nullopt;
  const std::size_t indent = std::min(code.find_first_not_of(" \t"), at);
  const std::string_view left = Trim(line.substr(indent, at - indent));
  const std::string_view right =
      Trim(line.substr(at + kEquals.size(), parts.code - at - kEquals.size()));
  // A literal takes no assignment, and a "_" is the mark of a statement that goes on.
  if (!Is_Simple(left) || !Is_Simple(right) || Is_Literal(right) || right == "_")
    return std::nullopt;
  std::string swapped(line.substr(0, indent));
  swapped.append(right).append(kEquals).append(left);
  if (parts.comment != npos) swapped.append(line.substr(parts.code));
  return swapped;
}

// Where the item to be aligned begins; npos for a line without one.
std::size_t Item_Of(Line_Tool tool, const Line_Parts& parts) {
  if (tool == Line_Tool::Align_Comments) return parts.comment;
  const std::size_t at = parts.Code().find(kAs);
  return at == npos ? npos : at + 1;
}

std::int64_t Column_Behind(std::string_view text) {
  return To_Int(service::Len_Wid(text)) + 1;
}

// The line with its item at a column, in widths of code page 932; as it is where the code in front
// is too long for that.
std::string Aligned(std::string_view line, std::size_t item, std::int64_t target) {
  const std::string_view front = line.substr(0, item);
  // Surplus blanks may go, all but where the item begins.
  const std::int64_t column = Column_Behind(front);
  const std::string_view kept = column > target ? Trim_Right(front) : front;
  const std::int64_t begin = Column_Behind(kept);
  if (begin >= target || kept.empty()) return std::string(line);
  return std::string(kept)
      .append(static_cast<std::size_t>(target - begin), ' ')
      .append(line.substr(item));
}

bool Has_Selection(const host::Selection& sel) {
  return sel.start_line != sel.end_line || sel.start_column != sel.end_column;
}

// Applies a tool to the selected lines.
host::Change_Result Change_Selected(const Transform_Ctx& ctx, Line_Tool tool) {
  host::CodePane* pane = ctx.VBInst.ActiveCodePane();
  if (!host::Chk_Edt_Mod(ctx.VBInst) || pane == nullptr) return {};
  const host::Selection sel = pane->GetSelection();
  if (!Has_Selection(sel)) return {};
  const int last =
      sel.end_column == 1 && sel.end_line > sel.start_line ? sel.end_line - 1 : sel.end_line;
  return Change_Lines(ctx, pane->CodeModule(), host::Set_Mdl_Nam(ctx.VBInst), sel.start_line, last,
                      tool);
}

// What the lines above the first one leave open.
Lines_Above Above(const host::CodeModule& code, int first) {
  Lines_Above above;
  int line = first;
  while (line > 1 && host::Is_Continued(code.Lines(line - 1, 1))) --line;
  above.Continued = line < first;
  for (; line < first; ++line)
    above.Comment = above.Comment || Line_Parts(code.Lines(line, 1)).comment != npos ||
                    Line_Parts(code.Lines(line, 1)).comment_line;
  return above;
}

}  // namespace

std::vector<std::string> Apply_Tool(Line_Tool tool, std::span<const std::string> lines,
                                    Lines_Above above) {
  std::vector<std::string> changed(lines.begin(), lines.end());
  std::int64_t target = 0;
  for (std::string& line : changed) {
    const Line_Parts parts(line);
    const bool comment = parts.comment_line || (above.Continued && above.Comment);
    const bool within = above.Continued;
    above.Comment = comment || parts.comment != npos;
    above.Continued = host::Is_Continued(line);
    if (comment) continue;
    if (tool == Line_Tool::Swap_Sides) {
      // The inside of a statement is no statement.
      if (auto swapped = within ? std::nullopt : Swapped(line, parts)) line = std::move(*swapped);
      continue;
    }
    const std::size_t item = Item_Of(tool, parts);
    if (item == npos) continue;
    // The first one that has an item says where.
    if (target == 0) target = Column_Behind(std::string_view(line).substr(0, item));
    line = Aligned(line, item, target);
  }
  return changed;
}

host::Change_Result Change_Lines(const Transform_Ctx& ctx, host::CodeModule& code,
                                 std::string_view module, int first, int last, Line_Tool tool) {
  std::vector<std::string> old = host::Lines_Of(code, first, last - first + 1);
  std::vector<std::string> now = Apply_Tool(tool, old, Above(code, first));
  std::vector<host::Line_Change> changes;
  for (std::size_t i = 0; i < old.size(); ++i)
    if (old[i] != now[i])
      changes.push_back({first + static_cast<int>(i), {std::move(old[i])}, {std::move(now[i])}});
  return Write(ctx, code, module, changes,
               tool == Line_Tool::Swap_Sides ? host::Keeps::Nothing : host::Keeps::All_But_Blanks);
}

host::Change_Result Rev_Let_Sta(const Transform_Ctx& ctx) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Sub", "Rev_Let_Sta");
  return Change_Selected(ctx, Line_Tool::Swap_Sides);
}

host::Change_Result Alg_CmA_Pos(const Transform_Ctx& ctx, int mode) {
  const service::Err_Frame frame(ctx.Srv.Errors, "Mod_Sub", "Alg_CmA_Pos");
  return Change_Selected(ctx, mode == 1 ? Line_Tool::Align_Comments : Line_Tool::Align_As);
}

}  // namespace oru::transform
