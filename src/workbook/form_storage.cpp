// SPDX-License-Identifier: MIT
#include "workbook/form_storage.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "service/text.h"
#include "workbook/form_records.h"

namespace oru::workbook {
namespace {

using container::Storage;
using container::Stream;

// What a kind of control is called, and which of the host's properties it has.
struct Kind_Traits {
  Control_Kind kind;
  std::string_view type_name;
  bool has_caption, has_text, has_tab_stop, has_tab_index;
};
constexpr std::array<Kind_Traits, 16> kKinds = {{
    {Control_Kind::Form, "Page", true, false, false, false},
    {Control_Kind::Image, "Image", false, false, false, false},
    {Control_Kind::Frame, "Frame", true, false, true, true},
    {Control_Kind::Morph, "TextBox", false, true, true, true},
    {Control_Kind::Spin_Button, "SpinButton", false, false, true, true},
    {Control_Kind::Command_Button, "CommandButton", true, false, true, true},
    {Control_Kind::Tab_Strip, "TabStrip", false, false, true, true},
    {Control_Kind::Label, "Label", true, false, false, true},
    {Control_Kind::Text_Box, "TextBox", false, true, true, true},
    {Control_Kind::List_Box, "ListBox", false, true, true, true},
    {Control_Kind::Combo_Box, "ComboBox", false, true, true, true},
    {Control_Kind::Check_Box, "CheckBox", true, false, true, true},
    {Control_Kind::Option_Button, "OptionButton", true, false, true, true},
    {Control_Kind::Toggle_Button, "ToggleButton", true, false, true, true},
    {Control_Kind::Scroll_Bar, "ScrollBar", false, false, true, true},
    {Control_Kind::Multi_Page, "MultiPage", false, false, true, true},
}};

constexpr std::uint16_t kForeign = 0x8000;  // the number is one of the form's own table
constexpr int kMost_Levels = 32;
constexpr std::size_t kMost_Controls = 8192;  // of one form, far beyond what the host can show

const Kind_Traits* Traits_Of(std::uint16_t class_index) {
  const auto at = std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind_Traits& traits) {
    return static_cast<std::uint16_t>(traits.kind) == class_index;
  });
  return at == kKinds.end() ? nullptr : &*at;
}

// Hundredths of a millimetre as points, as the host shows them.
std::string Points(std::int32_t himetric) {
  const double points = std::round(himetric * 72.0 / 2540.0 * 100) / 100;
  return fmt::format("{}", points == 0 ? 0.0 : points);
}

std::string Flag(bool on) {
  return on ? "True" : "False";
}

class Form_Reader {
 public:
  Form_Storage Read(const Storage& form) {
    read_.caption = Read_Level(form, {}, 0).caption;
    if (sites_ == kMost_Controls) Report({}, "コントロールが多すぎます。");
    return std::move(read_);
  }

 private:
  // Reads the sites of a storage and what is in its containers; gives the form's own record.
  Form_Record Read_Level(const Storage& storage, const std::string& container, int level) {
    const Stream* sites = storage.Find_Stream("f");
    // Each storage once: two containers of one number would be read over and over again.
    if (sites == nullptr || level > kMost_Levels || !storages_.insert(&storage).second) {
      Report(container, "画面の情報（f ストリーム）がありません。");
      return {};
    }
    Form_Record form = Read_Form_Stream(sites->bytes);
    if (!form.ok) Report(container, "画面の情報（f ストリーム）が破損しています。");
    const Stream* objects = storage.Find_Stream("o");
    std::string_view records = objects == nullptr ? std::string_view() : objects->bytes;
    for (const Form_Site& site : form.sites) {
      if (sites_ == kMost_Controls) break;
      ++sites_;
      std::string_view record;
      if ((site.flags & Form_Site::kStreamed) != 0) {
        const std::size_t size = std::min<std::size_t>(site.stream_size, records.size());
        record = records.substr(0, size);
        records.remove_prefix(size);
      }
      Add(storage, form, site, record, container, level);
    }
    return form;
  }

  void Add(const Storage& storage, const Form_Record& form, const Form_Site& site,
           std::string_view record, const std::string& container, int level) {
    // The strip of tabs that a multi-page draws for itself has no name and is nobody's control.
    if (site.name.empty()) return;
    const bool foreign = site.class_index >= kForeign;
    const Kind_Traits* traits = foreign ? nullptr : Traits_Of(site.class_index);
    host::Control_Data control;
    control.name = service::Without_Controls(site.name);
    control.tag = site.tag;
    const std::size_t entry = site.class_index & (kForeign - 1U);
    if (traits != nullptr)
      control.type_name = traits->type_name;
    else if (foreign && entry < form.classes.size())
      control.type_name = form.classes[entry];
    const bool is_page = traits != nullptr && traits->kind == Control_Kind::Form;

    const Storage* inner = nullptr;
    if ((site.flags & Form_Site::kStreamed) == 0)
      inner = storage.Find_Storage(fmt::format("i{:02}", site.id));
    const std::size_t place = read_.controls.size();
    if (!is_page) read_.controls.emplace_back();

    Control_Record own;
    if (inner != nullptr && inner->Find_Stream("f") != nullptr) {
      Form_Record content = Read_Level(*inner, site.name, level + 1);
      own = {.ok = true,
             .size = content.size,
             .caption = std::move(content.caption),
             .value = {},
             .enabled = content.enabled,
             .font = {}};
    } else if (traits != nullptr) {
      own = Read_Control(traits->kind, record);
      if (!own.ok) Report(site.name, "情報が破損しています。");
    }
    if (is_page) return;
    if (traits != nullptr) {
      if (traits->has_caption) control.caption = own.caption;
      if (traits->has_text) control.text = own.value;
    }
    Set_Properties(control, site, own, traits);
    if (!container.empty())
      control.properties.emplace_back("Container", service::Without_Controls(container));
    read_.controls[place] = std::move(control);
  }

  static void Set_Properties(host::Control_Data& control, const Form_Site& site,
                             const Control_Record& own, const Kind_Traits* traits) {
    auto& properties = control.properties;
    if (traits == nullptr || traits->has_tab_index)
      properties.emplace_back("TabIndex", fmt::format("{}", site.tab_index));
    if (traits == nullptr || traits->has_tab_stop)
      properties.emplace_back("TabStop", Flag((site.flags & Form_Site::kTab_Stop) != 0));
    properties.emplace_back("Left", Points(site.left));
    properties.emplace_back("Top", Points(site.top));
    if (own.size) {
      properties.emplace_back("Width", Points(own.size->width));
      properties.emplace_back("Height", Points(own.size->height));
    }
    properties.emplace_back("Visible", Flag((site.flags & Form_Site::kVisible) != 0));
    properties.emplace_back("Enabled", Flag(own.enabled));
    properties.emplace_back("ControlTipText", site.tip);
    properties.emplace_back("HelpContextID", fmt::format("{}", site.help_context));
    if (!site.control_source.empty()) properties.emplace_back("ControlSource", site.control_source);
    if (!site.row_source.empty()) properties.emplace_back("RowSource", site.row_source);
    if (own.font.points > 0) {
      properties.emplace_back("FontName", own.font.name);
      properties.emplace_back("FontSize", fmt::format("{}", own.font.points));
    }
  }

  void Report(std::string_view name, std::string_view what) {
    read_.problems.push_back(name.empty() ? std::string(what)
                                          : fmt::format("コントロール「{}」の{}", name, what));
  }

  Form_Storage read_;
  std::size_t sites_ = 0;              // read so far, pages and nameless ones too
  std::set<const Storage*> storages_;  // read so far
};

}  // namespace

Form_Storage Read_Form(const Storage& form) {
  return Form_Reader().Read(form);
}

}  // namespace oru::workbook
