// SPDX-License-Identifier: MIT
// What one physical line does to the procedures of a module: does it open one, close one, is it a
// line of code at all, and in which state does it leave a statement that goes on in the next line.
// A line is judged from its own text and the state in front of it alone, so that after an edit only
// the lines from the edited one on need a look, until the state agrees again.
//
// A header is a `Sub`, `Function` or `Property Get|Let|Set` with its name, behind any of `Public`,
// `Private`, `Friend`, `Global` and `Static`; a `Declare` is none. Headers and ends count at the
// beginning of any statement of a line, behind a line number or a label too, never inside a string
// or a comment. Nothing that stands behind an end in the same statement line counts.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "host/model.h"

namespace oru::host {

/// How far a statement has come at a line's end. `Fresh` everywhere but behind " _".
enum class Line_State : std::uint8_t {
  Fresh,     ///< a new statement line begins
  Comment,   ///< inside a comment
  Start,     ///< at the beginning of a statement
  Middle,    ///< inside a statement that is neither header nor end
  Modifier,  ///< behind `Public`, `Static` ...
  Property,  ///< behind `Property`
  Proc,      ///< behind `Sub` or `Function`: the name comes next
  Let,       ///< behind `Property Let`
  Set,
  Get,
  End,   ///< behind `End`
  Done,  ///< behind an `End Sub`
};

/// A line's verdict, packed: the state behind it in the low four bits, and these flags.
constexpr std::uint8_t kLine_State = 0x0F;
constexpr std::uint8_t kLine_Opens = 0x10;   ///< a header's name stands in it
constexpr std::uint8_t kLine_Closes = 0x20;  ///< last line of a statement line with an end in it
constexpr std::uint8_t kLine_Code = 0x40;  ///< neither blank nor comment (`Rem` counts as comment)

constexpr Line_State State_Of(std::uint8_t verdict) {
  return static_cast<Line_State>(verdict & kLine_State);
}
/// True inside a header statement whose name has not come yet.
constexpr bool In_Header(Line_State state) {
  return state >= Line_State::Modifier && state <= Line_State::Get;
}

/// The verdict on a line (without its line end) that follows `before`.
[[nodiscard]] std::uint8_t Judge_Line(std::string_view line, Line_State before);

struct Line_Header {
  std::string_view name;  ///< points into the line
  ProcKind kind = ProcKind::Proc;
};
/// The header whose name stands in the line; nothing if there is none.
[[nodiscard]] std::optional<Line_Header> Header_In_Line(std::string_view line, Line_State before);

/// True for a line that the next one continues: it ends in blank and underscore.
constexpr bool Is_Continued(std::string_view line) {
  return line.ends_with(" _");
}

}  // namespace oru::host
