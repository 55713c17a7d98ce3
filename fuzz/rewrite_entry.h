// SPDX-License-Identifier: MIT
// Fuzz entry for what rewrites code: the input is the text of a module. Whatever stands in it, no
// character gets lost, a second run changes nothing, and what was set can be taken out again.
#pragma once

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "host/derived.h"
#include "host/memory_editor.h"
#include "require.h"
#include "service/codec.h"
#include "service/text.h"
#include "silent_user.h"
#include "transform/line_numbers.h"
#include "transform/line_tools.h"
#include "transform/rev_indent.h"

namespace oru::fuzz {

inline std::string Visible_Text(std::string_view text) {
  std::string visible;
  for (const char c : text)
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n') visible += c;
  return visible;
}

// The text without blanks at the ends of its lines.
inline std::string Without_Ends(std::string_view text) {
  std::string all;
  for (const std::string_view line : service::Split(text, "\r\n"))
    all.append(service::Trim_Right(line)).append("\n");
  return all;
}

// True for a line that begins with something like a number, and for a continuation mark alone, in
// front of which nobody knows where a statement ends.
inline bool Is_Odd(std::string_view given) {
  const std::string blanks = service::Replace_All(given, "\t", " ");
  const std::string_view line = service::Trim(blanks);
  return line == "_" || (!line.empty() && service::Is_Numeric(line.substr(0, line.find(':')))) ||
         (!line.empty() && (std::isdigit(static_cast<unsigned char>(line.front())) != 0 ||
                            line.front() == '&' || line.front() == '.'));
}

inline void Run_Rewrite(std::string_view input) {
  static const auto page = service::Code_Page::Open(65001);
  Silent_User user;
  const service::System_Clock clock;
  service::Services services(user, clock, {});
  host::Memory_Editor editor;
  host::Memory_Project& project = editor.Add_Project("Fuzz", "Fuzz.xlsm");
  host::Memory_Component& component = project.Add_Component(
      {.name = "M", .text = service::Decode(input, service::Encoding::Utf8, *page).text});
  host::CodeModule& code = *component.CodeModule();
  const analyser::Tables tables;
  const transform::Transform_Ctx ctx{services, editor, tables};
  const std::string before = component.Text();
  bool odd = false;
  for (const std::string_view line : service::Split(before, "\r\n")) odd = odd || Is_Odd(line);
  const auto each = [&](auto change) {
    for (host::Member_Place& place : host::Get_Procedures(code)) {
      const std::string was = component.Text();
      const host::Change_Result result = change(transform::Procedure{code, "M", std::move(place)});
      Require(result.Ok() || component.Text() == was, "a refused change is none");
    }
  };
  const auto format = [&](const transform::Procedure& procedure) {
    return transform::Format_Procedure(ctx, procedure);
  };
  const auto labels = [&](transform::Label_Mode mode) {
    return [&ctx, mode](const transform::Procedure& procedure) {
      return transform::Set_LNo_Lop(ctx, procedure, mode);
    };
  };
  each(format);
  const std::string formatted = component.Text();
  Require(odd || Visible_Text(formatted) == Visible_Text(before), "no character is lost");
  each(format);
  Require(odd || component.Text() == formatted, "formatting is stable");

  component.Load_Text(before + "\r\n");  // the last line end begins no line
  each(labels(transform::Label_Mode::Set));
  each(labels(transform::Label_Mode::Remove));
  Require(odd || Without_Ends(component.Text()) == Without_Ends(before), "labels go as they came");

  component.Load_Text(before + "\r\n");
  for (const auto tool : {transform::Line_Tool::Align_Comments, transform::Line_Tool::Align_As}) {
    if (code.CountOfLines() == 0) break;
    (void)transform::Change_Lines(ctx, code, "M", 1, code.CountOfLines(), tool);
    const std::string aligned = component.Text();
    Require(Visible_Text(aligned) == Visible_Text(before), "aligning moves blanks only");
    (void)transform::Change_Lines(ctx, code, "M", 1, code.CountOfLines(), tool);
    Require(component.Text() == aligned, "aligning is stable");
  }
  if (code.CountOfLines() > 0)
    (void)transform::Change_Lines(ctx, code, "M", 1, code.CountOfLines(),
                                  transform::Line_Tool::Swap_Sides);
  std::string sorted = Visible_Text(component.Text()), expected = Visible_Text(before);
  std::sort(sorted.begin(), sorted.end());
  std::sort(expected.begin(), expected.end());
  Require(sorted == expected, "swapping keeps every character");
}

}  // namespace oru::fuzz
