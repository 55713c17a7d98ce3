// SPDX-License-Identifier: MIT
// The records that the designer of a form is stored in ([MS-OFORMS] 2.1): a mask that tells which
// properties follow, their values, and behind them their texts and sizes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oru::workbook {

/// Himetric, hundredths of a millimetre.
struct Form_Size {
  std::int32_t width = 0, height = 0;
};

/// A font as a control's record gives it.
struct Form_Font {
  std::string name;
  double points = 0;  ///< 0 if it is not told
};

/// What the record of a control tells; what it leaves out has its default value.
struct Control_Record {
  bool ok = false;  ///< false if the record is damaged
  std::optional<Form_Size> size;
  std::string caption, value;
  bool enabled = true;
  Form_Font font;
};

/// The kinds of controls, by the number that stands for their class in a form.
enum class Control_Kind : std::uint8_t {
  Form = 7,
  Image = 12,
  Frame = 14,
  Morph = 15,
  Spin_Button = 16,
  Command_Button = 17,
  Tab_Strip = 18,
  Label = 21,
  Text_Box = 23,
  List_Box = 24,
  Combo_Box = 25,
  Check_Box = 26,
  Option_Button = 27,
  Toggle_Button = 28,
  Scroll_Bar = 47,
  Multi_Page = 57,
};

/// Reads the record of a control. A kind without a record of its own gives one that is not `ok`.
[[nodiscard]] Control_Record Read_Control(Control_Kind kind, std::string_view bytes);

/// A place on a form where a control is.
struct Form_Site {
  std::string name, tag, tip, control_source, row_source;
  std::int32_t id = 0, help_context = 0;
  std::uint32_t flags = 0x33;
  std::uint32_t stream_size = 0;  ///< of its record in the stream "o"
  std::int32_t tab_index = -1;
  std::uint16_t class_index = 0x7FFF;
  std::int32_t left = 0, top = 0;  ///< himetric

  static constexpr std::uint32_t kTab_Stop = 1, kVisible = 2, kStreamed = 0x10;
};

/// The stream "f": the form itself, and its sites.
struct Form_Record {
  bool ok = false;  ///< false if it is damaged; the sites read so far are there
  std::string caption;
  Form_Size size;
  bool enabled = true;
  std::vector<std::string> classes;  ///< class ids of foreign controls, as texts
  std::vector<Form_Site> sites;
};
[[nodiscard]] Form_Record Read_Form_Stream(std::string_view bytes);

}  // namespace oru::workbook
