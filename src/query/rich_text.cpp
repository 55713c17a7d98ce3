// SPDX-License-Identifier: MIT
#include "query/rich_text.h"

#include <algorithm>

namespace oru::query {

Rgb Rgb_Of(Host_Colour colour) {
  const auto bits = static_cast<std::uint32_t>(colour);
  return {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8U),
          static_cast<std::uint8_t>(bits >> 16U)};
}

void Rich_Text::Int_RTx_Inf(Host_Colour base, std::string_view font_name, float font_size,
                            std::int32_t spacing) {
  text_.clear();
  runs_.clear();
  images_.clear();
  colours_[0] = base;
  colour_count_ = 1;
  length_ = 0;
  font_name_ = service::Trim(font_name);
  font_size_ = font_size;
  Append({}, spacing, {});
}

void Rich_Text::Rls_RTx_Inf() {
  const Host_Colour base = colours_[0];
  *this = Rich_Text();
  colours_[0] = base;
}

void Rich_Text::Append(std::string_view text, std::int32_t spacing, Run_Style style) {
  if (style.colour < 1 || style.colour > colour_count_) style.colour = kBase_Colour;
  const std::size_t begin = text_.size();
  text_ += text;
  length_ += service::To_Int(service::Len_Chr(text));
  const bool plain = spacing <= 0 && !runs_.empty() && runs_.back().image < 0;
  if (plain && runs_.back().style == style) {
    runs_.back().size += text.size();
  } else {
    runs_.push_back({begin, text.size(), std::max(spacing, 0), -1, style});
  }
}

void Rich_Text::Set_RTx_Txt(std::string_view text, std::int32_t spacing, Colour_Index colour,
                            bool und, bool bld, bool itl, bool stk) {
  Append(text, spacing, {colour, und, bld, itl, stk});
}

void Rich_Text::Set_RTx_Img(std::string_view tag) {
  auto found = std::ranges::find(images_, tag);
  if (found == images_.end()) found = images_.emplace(images_.end(), tag);
  Rich_Run run;
  run.begin = text_.size();
  run.image = static_cast<std::int32_t>(found - images_.begin());
  runs_.push_back(run);
}

void Rich_Text::Edt_RTx_Msg(std::string_view message) {
  Add(service::Replace_All(message, "\\n", "\r\n"));
}

Colour_Index Rich_Text::Set_RTx_CIx(Host_Colour colour) {
  for (std::size_t i = 0; i < colour_count_; ++i)
    if (colours_[i] == colour) return static_cast<Colour_Index>(i + 1);
  if (colour_count_ == kColour_Slots) return kBase_Colour;
  colours_[colour_count_++] = colour;
  return static_cast<Colour_Index>(colour_count_);
}

}  // namespace oru::query
