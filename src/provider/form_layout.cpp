// SPDX-License-Identifier: MIT
#include "provider/form_layout.h"

#include <optional>
#include <string>
#include <utility>

#include "provider/layout.h"
#include "provider/lines.h"
#include "service/text.h"

namespace oru::provider {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::string_view Take(std::string_view& text) {
  text = Skip_Blanks(text);
  const std::string_view word = text.substr(0, text.find_first_of(" \t"));
  text.remove_prefix(word.size());
  return word;
}

void Set_Property(host::Control_Data& control, std::string_view name, std::string_view value) {
  std::optional<std::string>* target = nullptr;
  if (service::Equal_No_Case(name, "Caption")) target = &control.caption;
  if (service::Equal_No_Case(name, "Text")) target = &control.text;
  if (service::Equal_No_Case(name, "Tag")) target = &control.tag;
  if (target == nullptr) return;
  auto literal = Parse_Literal(value);
  if (literal && !Skip_Blanks(literal->rest).starts_with(':'))
    *target = std::move(literal->content);
}

}  // namespace

std::vector<host::Control_Data> Parse_Controls(std::string_view block) {
  std::vector<host::Control_Data> controls;
  std::vector<std::size_t> open;  // index of the control of each open Begin; kNone: not a control
  for (std::size_t at = 0; at < block.size();) {
    const Line line = Line_At(block, at);
    at = line.next;
    std::string_view rest = line.Content(block);
    const std::size_t equals = rest.find('=');
    const std::string_view key = Cut_Blanks(Skip_Blanks(rest.substr(0, equals)));
    if (equals != rest.npos && key.find_first_of(" \t\"") == key.npos) {
      if (!open.empty() && open.back() != kNone)
        Set_Property(controls[open.back()], key, Skip_Blanks(rest.substr(equals + 1)));
      continue;
    }
    const std::string_view word = Take(rest);
    if (service::Equal_No_Case(word, "BeginProperty")) {
      open.push_back(kNone);
    } else if (service::Equal_No_Case(word, "Begin")) {
      const std::string_view type = Take(rest), name = Take(rest);
      if (open.empty() || name.empty()) {
        open.push_back(kNone);
        continue;
      }
      open.push_back(controls.size());
      host::Control_Data control;
      control.name = name;
      control.type_name = type.substr(type.rfind('.') + 1);  // npos + 1 is 0: no dot, all of it
      controls.push_back(std::move(control));
    } else if (service::Equal_No_Case(word, "End") || service::Equal_No_Case(word, "EndProperty")) {
      if (!open.empty()) open.pop_back();
    }
  }
  return controls;
}

}  // namespace oru::provider
