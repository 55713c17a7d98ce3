// SPDX-License-Identifier: MIT
#include "workbook/form_records.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <span>

#include "container/byte_reader.h"
#include "service/codec.h"

namespace oru::workbook {
namespace {

using container::Byte_Reader;

// What a property is to us.
enum class Use : std::uint8_t {
  None,
  Flags,    // bits, "enabled" among them
  Caption,  // the size of a text that follows among the texts, in the order of these sizes
  Value,
  Name,
  Text,  // another text
};

// A property: its bit in the mask, and its size in bytes, to which it is aligned. Those without a
// value of their own are not listed.
struct Field {
  unsigned bit;
  unsigned size;
  Use use = Use::None;
};

// The order of each list is that of the values. Bits without a value here stand for sizes, which
// come behind, and for flags that are the bit itself.
constexpr std::array<Field, 9> kCommand_Button = {{{0, 4},
                                                   {1, 4},
                                                   {2, 4, Use::Flags},
                                                   {3, 4, Use::Caption},
                                                   {4, 4},
                                                   {6, 1},
                                                   {7, 2},
                                                   {8, 2},
                                                   {10, 2}}};
constexpr std::array<Field, 12> kLabel = {{{0, 4},
                                           {1, 4},
                                           {2, 4, Use::Flags},
                                           {3, 4, Use::Caption},
                                           {4, 4},
                                           {6, 1},
                                           {7, 4},
                                           {8, 2},
                                           {9, 2},
                                           {10, 2},
                                           {11, 2},
                                           {12, 2}}};
constexpr std::array<Field, 10> kImage = {{{3, 4},
                                           {4, 4},
                                           {5, 1},
                                           {6, 1},
                                           {7, 1},
                                           {8, 1},
                                           {10, 2},
                                           {11, 1},
                                           {13, 4, Use::Flags},
                                           {14, 2}}};
constexpr std::array<Field, 29> kMorph = {{{0, 4, Use::Flags},
                                           {1, 4},
                                           {2, 4},
                                           {3, 4},
                                           {4, 1},
                                           {5, 1},
                                           {6, 1},
                                           {7, 1},
                                           {9, 2},
                                           {10, 4},
                                           {11, 2},
                                           {12, 2},
                                           {13, 2},
                                           {14, 2},
                                           {15, 2},
                                           {16, 1},
                                           {17, 1},
                                           {18, 1},
                                           {20, 1},
                                           {21, 1},
                                           {22, 4, Use::Value},
                                           {23, 4, Use::Caption},
                                           {24, 4},
                                           {25, 4},
                                           {26, 4},
                                           {27, 2},
                                           {28, 2},
                                           {29, 2},
                                           {32, 4, Use::Text}}};
constexpr std::array<Field, 13> kSpin_Button = {{{0, 4},
                                                 {1, 4},
                                                 {2, 4, Use::Flags},
                                                 {5, 4},
                                                 {6, 4},
                                                 {7, 4},
                                                 {8, 4},
                                                 {9, 4},
                                                 {10, 4},
                                                 {11, 4},
                                                 {12, 4},
                                                 {13, 2},
                                                 {14, 1}}};
constexpr std::array<Field, 15> kScroll_Bar = {{{0, 4},
                                                {1, 4},
                                                {2, 4, Use::Flags},
                                                {4, 1},
                                                {5, 4},
                                                {6, 4},
                                                {7, 4},
                                                {9, 4},
                                                {10, 4},
                                                {11, 4},
                                                {12, 4},
                                                {13, 4},
                                                {14, 2},
                                                {15, 4},
                                                {16, 2}}};
constexpr std::array<Field, 17> kTab_Strip = {{{0, 4},
                                               {1, 4},
                                               {2, 4},
                                               {5, 4, Use::Text},
                                               {6, 1},
                                               {8, 4},
                                               {9, 4},
                                               {11, 4},
                                               {12, 4},
                                               {15, 4, Use::Text},
                                               {17, 4, Use::Text},
                                               {18, 4, Use::Flags},
                                               {20, 4},
                                               {21, 4, Use::Text},
                                               {22, 4},
                                               {23, 4, Use::Text},
                                               {24, 2}}};
constexpr std::array<Field, 20> kForm = {
    {{1, 4},  {2, 4},  {3, 4},  {6, 4, Use::Flags},    {7, 1},  {8, 1},  {9, 1},  {13, 4}, {15, 2},
     {16, 1}, {17, 1}, {18, 4}, {19, 4, Use::Caption}, {20, 2}, {21, 2}, {22, 4}, {23, 1}, {25, 1},
     {26, 4}, {27, 4}}};
constexpr std::array<Field, 7> kFont = {
    {{0, 4, Use::Name}, {1, 4}, {2, 4, Use::Value}, {4, 1}, {5, 1}, {6, 1}, {7, 2}}};

// How a kind's record is made.
struct Shape {
  std::span<const Field> fields;
  unsigned size_bit;       // of the size
  bool size_first;         // the size stands before the texts, not behind
  bool wide_mask = false;  // 64 bits
};

constexpr std::uint32_t kEnabled = 0x02;       // of a control's flags
constexpr std::uint32_t kForm_Enabled = 0x04;  // of a form's
constexpr std::uint32_t kNo_Class_Table = 0x8000;
constexpr std::uint32_t kCompressed = 0x80000000;

// Reads values that are aligned to their size, counted from the beginning of the record.
class Record_Reader {
 public:
  explicit Record_Reader(std::string_view bytes) : bytes_(bytes), reader_(bytes) {}

  std::uint32_t Value(unsigned size) {
    Align(size);
    return size == 1 ? reader_.U8() : size == 2 ? reader_.U16() : reader_.U32();
  }
  // A text of that many bytes, with one byte for each character where the flag says so.
  std::string Text(std::uint32_t count) {
    const bool compressed = (count & kCompressed) != 0;
    const std::string_view bytes = reader_.Bytes(count & ~kCompressed);
    Align(4);
    if (!compressed) return service::Text_Of_Utf16(bytes);
    std::string wide;
    for (const char c : bytes) wide.append({c, '\0'});
    return service::Text_Of_Utf16(wide);
  }
  Form_Size Size() {
    const auto width = reader_.I32();
    return {width, reader_.I32()};
  }
  void Align(unsigned size) {
    const std::size_t over = reader_.At() % size;
    // At the very end, the padding may be left out.
    if (over != 0) reader_.Skip(std::min<std::size_t>(size - over, reader_.Left()));
  }
  Byte_Reader& Raw() { return reader_; }

 private:
  std::string_view bytes_;
  Byte_Reader reader_;
};

constexpr std::size_t kFont_Header = 4;

// The font that stands behind a control's record, a record of its own.
Form_Font Read_Font(std::string_view bytes) {
  Form_Font font;
  Record_Reader record(bytes);
  record.Raw().Skip(kFont_Header);
  const std::uint32_t mask = record.Raw().U32();
  std::uint32_t name = 0, twips = 0;
  for (const Field& field : kFont) {
    if ((mask >> field.bit & 1U) == 0) continue;
    const std::uint32_t value = record.Value(field.size);
    if (field.use == Use::Name) name = value;
    if (field.use == Use::Value) twips = value;
  }
  record.Align(4);
  font.name = record.Text(name);
  if (!record.Raw().Ok()) return {};
  font.points = twips / 20.0;
  return font;
}

// Where the font begins: it is the last record in the control's bytes, behind pictures.
std::string_view Font_Of(std::string_view behind) {
  Byte_Reader reader(behind);
  const std::uint16_t version = reader.U16(), size = reader.U16();
  const bool fits = reader.Ok() && version == 0x0200 && size == reader.Left();
  return fits ? behind : std::string_view();
}

Control_Record Read_Shape(const Shape& shape, std::string_view bytes) {
  Control_Record control;
  Byte_Reader header(bytes);
  header.Skip(2);  // version
  const std::size_t size = std::size_t{header.U16()} + 4;
  if (!header.Ok() || size > bytes.size()) return control;
  Record_Reader record(bytes.substr(0, size));
  record.Raw().Skip(4);
  const std::uint64_t mask = shape.wide_mask ? record.Raw().U64() : record.Raw().U32();
  std::vector<std::pair<Use, std::uint32_t>> texts;
  for (const Field& field : shape.fields) {
    if ((mask >> field.bit & 1U) == 0) continue;
    const std::uint32_t value = record.Value(field.size);
    if (field.use == Use::Flags) control.enabled = (value & kEnabled) != 0;
    if (field.use >= Use::Caption) texts.emplace_back(field.use, value);
  }
  record.Align(4);
  const bool has_size = (mask >> shape.size_bit & 1U) != 0;
  if (has_size && shape.size_first) control.size = record.Size();
  for (const auto& [use, count] : texts) {
    std::string text = record.Text(count);
    if (use == Use::Caption)
      control.caption = std::move(text);
    else if (use == Use::Value)
      control.value = std::move(text);
  }
  if (has_size && !shape.size_first) control.size = record.Size();
  control.ok = record.Raw().Ok();
  control.font = Read_Font(Font_Of(bytes.substr(size)));
  return control;
}

// The class id in an entry of the table of foreign classes. Up to three ids end the entry, as the
// mask at its beginning tells; the class's is the first of them.
std::string Class_Text(std::string_view entry) {
  const std::uint32_t mask = Byte_Reader(entry).U32();
  const std::size_t ids = (mask & 1U) + (mask >> 1 & 1U) + (mask >> 3 & 1U);
  if ((mask & 1U) == 0 || entry.size() < 4 + ids * 16) return {};
  Byte_Reader reader(entry, entry.size() - ids * 16);
  const std::uint32_t first = reader.U32();
  const std::uint16_t second = reader.U16(), third = reader.U16();
  std::string out = fmt::format("{{{:08X}-{:04X}-{:04X}-", first, second, third);
  for (int i = 0; i < 8; ++i) out += fmt::format("{}{:02X}", i == 2 ? "-" : "", reader.U8());
  return out + "}";
}

// One of the sites, which follow each other; the reader stands behind it afterwards.
Form_Site Read_Site(Byte_Reader& sites) {
  Form_Site site;
  sites.Skip(2);  // version
  const std::uint16_t size = sites.U16();
  const std::string_view bytes = sites.Bytes(size);
  Record_Reader record(bytes);
  const std::uint32_t mask = record.Raw().U32();
  const auto has = [&](unsigned bit) { return (mask >> bit & 1U) != 0; };
  const auto value = [&](unsigned bit, unsigned width, std::uint32_t none) {
    return has(bit) ? record.Value(width) : none;
  };
  const std::uint32_t name = value(0, 4, 0), tag = value(1, 4, 0);
  site.id = static_cast<std::int32_t>(value(2, 4, 0));
  site.help_context = static_cast<std::int32_t>(value(3, 4, 0));
  site.flags = value(4, 4, site.flags);
  site.stream_size = value(5, 4, 0);
  site.tab_index = static_cast<std::int16_t>(value(6, 2, 0xFFFF));
  site.class_index = static_cast<std::uint16_t>(value(7, 2, site.class_index));
  (void)value(9, 2, 0);  // group
  const std::uint32_t tip = value(11, 4, 0), license = value(12, 4, 0),
                      control_source = value(13, 4, 0), row_source = value(14, 4, 0);
  record.Align(4);
  site.name = record.Text(name);
  site.tag = record.Text(tag);
  if (has(8)) {
    const Form_Size place = record.Size();
    site.left = place.width;
    site.top = place.height;
  }
  site.tip = record.Text(tip);
  (void)record.Text(license);
  site.control_source = record.Text(control_source);
  site.row_source = record.Text(row_source);
  if (!record.Raw().Ok()) sites.Fail();
  return site;
}

// Pictures and fonts between a form's record and its sites.
void Skip_Streams(Byte_Reader& reader, bool icon, bool font, bool picture) {
  constexpr std::size_t kClass = 16;
  const auto skip_picture = [&] {
    reader.Skip(kClass + 4);
    reader.Skip(reader.U32());
  };
  if (icon) skip_picture();
  if (font) {
    constexpr std::uint8_t kStandard_Font = 0x03;  // first byte of its class id
    const std::string_view id = reader.Bytes(kClass);
    if (!id.empty() && static_cast<std::uint8_t>(id.front()) == kStandard_Font) {
      reader.Skip(10);  // version, character set, flags, weight, height
      reader.Skip(reader.U8());
    } else {
      reader.Skip(2);
      reader.Skip(reader.U16());
    }
  }
  if (picture) skip_picture();
}

}  // namespace

Control_Record Read_Control(Control_Kind kind, std::string_view bytes) {
  switch (kind) {
    case Control_Kind::Command_Button:
      return Read_Shape({kCommand_Button, 5, false}, bytes);
    case Control_Kind::Label:
      return Read_Shape({kLabel, 5, false}, bytes);
    case Control_Kind::Image:
      return Read_Shape({kImage, 9, false}, bytes);
    case Control_Kind::Spin_Button:
      return Read_Shape({kSpin_Button, 3, false}, bytes);
    case Control_Kind::Scroll_Bar:
      return Read_Shape({kScroll_Bar, 3, false}, bytes);
    case Control_Kind::Tab_Strip:
      return Read_Shape({kTab_Strip, 4, true}, bytes);
    case Control_Kind::Morph:
    case Control_Kind::Text_Box:
    case Control_Kind::List_Box:
    case Control_Kind::Combo_Box:
    case Control_Kind::Check_Box:
    case Control_Kind::Option_Button:
    case Control_Kind::Toggle_Button:
      return Read_Shape({kMorph, 8, true, true}, bytes);
    case Control_Kind::Form:
    case Control_Kind::Frame:
    case Control_Kind::Multi_Page:
      break;
  }
  return {};
}

Form_Record Read_Form_Stream(std::string_view bytes) {
  Form_Record form;
  Record_Reader record(bytes);
  Byte_Reader& reader = record.Raw();
  reader.Skip(2);  // version
  const std::size_t end = std::size_t{reader.U16()} + 4;
  const std::uint32_t mask = reader.U32();
  const auto has = [&](unsigned bit) { return (mask >> bit & 1U) != 0; };
  std::uint32_t flags = kForm_Enabled, caption = 0;
  for (const Field& field : kForm) {
    if (!has(field.bit)) continue;
    const std::uint32_t value = record.Value(field.size);
    if (field.use == Use::Flags) flags = value;
    if (field.use == Use::Caption) caption = value;
  }
  record.Align(4);
  form.enabled = (flags & kForm_Enabled) != 0;
  if (has(10)) form.size = record.Size();
  if (has(11)) (void)record.Size();
  if (has(12)) (void)record.Size();
  form.caption = record.Text(caption);
  if (!reader.Ok() || end > bytes.size()) return form;

  Byte_Reader rest(bytes, end);
  Skip_Streams(rest, has(15), has(20), has(21));
  if ((flags & kNo_Class_Table) == 0) {
    for (int count = rest.U16(); count > 0 && rest.Ok(); --count) {
      rest.Skip(2);
      form.classes.push_back(Class_Text(rest.Bytes(rest.U16())));
    }
  }
  const std::uint32_t count = rest.U32();
  const std::string_view data = rest.Bytes(rest.U32());
  if (!rest.Ok()) return form;
  // Depths and types come first, some standing for several sites.
  Byte_Reader sites(data);
  for (std::uint32_t told = 0; told < count && sites.Ok();) {
    sites.Skip(1);
    const unsigned type = sites.U8();
    const bool several = (type & 0x80U) != 0;
    if (several) sites.Skip(1);
    told += several ? type & 0x7FU : 1;
    if (several && (type & 0x7FU) == 0) sites.Fail();
  }
  if (const std::size_t over = sites.At() % 4; over != 0) sites.Skip(4 - over);
  for (std::uint32_t i = 0; i < count && sites.Ok(); ++i) {
    Form_Site site = Read_Site(sites);
    if (sites.Ok()) form.sites.push_back(std::move(site));
  }
  form.ok = sites.Ok();
  return form;
}

}  // namespace oru::workbook
