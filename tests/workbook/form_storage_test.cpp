// SPDX-License-Identifier: MIT
// Designers of forms, from records written by hand.
#include "workbook/form_storage.h"

#include <gtest/gtest.h>

#include <string>

#include "../fuzz/form_storage_entry.h"
#include "support/book_maker.h"
#include "support/corpus.h"

namespace oru::workbook {
namespace {

using test::Bytes;

constexpr std::uint32_t kNarrow = 0x80000000;  // one byte for each character

std::string Padded(std::string text) {
  text.resize((text.size() + 3) / 4 * 4, '\0');
  return text;
}

// A record behind its version and size.
std::string Record(unsigned version, const std::string& content) {
  return Bytes().U16(version).U16(static_cast<unsigned>(content.size())).Put(content).Text();
}

struct Site {
  std::string name;
  unsigned kind;
  std::uint32_t size = 0;
  std::uint32_t flags = 0x33;
  unsigned id = 1, tab = 0;
  std::string tag = {}, tip = {};
};

std::string Site_Record(const Site& site) {
  // Name, tag, id, flags, size in "o", tab index, class, place, tip.
  Bytes out;
  out.U32(0x0001 | 0x0002 | 0x0004 | 0x0010 | 0x0020 | 0x0040 | 0x0080 | 0x0100 | 0x0800);
  out.U32(static_cast<std::uint32_t>(site.name.size()) | kNarrow);
  out.U32(static_cast<std::uint32_t>(site.tag.size()) | kNarrow);
  out.U32(site.id).U32(site.flags).U32(site.size).U16(site.tab).U16(site.kind);
  out.U32(static_cast<std::uint32_t>(site.tip.size() * 2));
  out.Put(Padded(site.name)).Put(Padded(site.tag)).U32(254).U32(1270);
  out.Put(Padded(Bytes().Wide(site.tip).Text()));
  return Record(0, out.Text());
}

// The stream "f": flags, size 5080 x 2540, caption "Title"; no table of classes.
std::string Form_Stream(const std::vector<Site>& sites) {
  Bytes form;
  form.U32(1U << 6 | 1U << 10 | 1U << 19).U32(0x8004).U32(5 | kNarrow).U32(5080).U32(2540);
  form.Put(Padded("Title"));
  Bytes data;
  for (std::size_t i = 0; i < sites.size(); ++i) data.U8(0).U8(1);
  std::string list = Padded(data.Text());
  for (const Site& site : sites) list += Site_Record(site);
  return Record(0x0400, form.Text()) + Bytes()
                                           .U32(static_cast<std::uint32_t>(sites.size()))
                                           .U32(static_cast<std::uint32_t>(list.size()))
                                           .Put(list)
                                           .Text();
}

// Caption and size of a label; behind it its font.
std::string Label(const std::string& caption) {
  Bytes out;
  out.U32(1U << 3 | 1U << 5).U32(static_cast<std::uint32_t>(caption.size()) | kNarrow);
  out.Put(Padded(caption)).U32(2540).U32(635);
  Bytes font;
  font.U32(1 | 4).U32(6 | kNarrow).U32(180).Put(Padded("Tahoma"));
  return Record(0x0200, out.Text()) + Record(0x0200, font.Text());
}

// Flags, two single bytes, value, caption, size of a text box or its like.
std::string Morph(const std::string& value, const std::string& caption) {
  Bytes out;
  out.U32(1 | 1U << 4 | 1U << 6 | 1U << 8 | 1U << 22 | 1U << 23).U32(0);
  out.U32(0x2C800019).U8(1).U8(2).U16(0);
  out.U32(static_cast<std::uint32_t>(value.size() * 2));
  out.U32(static_cast<std::uint32_t>(caption.size()) | kNarrow);
  out.U32(1270).U32(635).Put(Padded(Bytes().Wide(value).Text())).Put(Padded(caption));
  return Record(0x0200, out.Text());
}

std::string Show(const Form_Storage& form) {
  std::string out = form.caption + "\n";
  for (const auto& control : form.controls) {
    out.append(control.name).append(" ").append(control.type_name);
    out.append(" c=").append(control.caption.value_or("-"));
    out.append(" t=").append(control.text.value_or("-"));
    out.append(" g=").append(control.tag.value_or("-"));
    for (const auto& [name, value] : control.properties)
      out.append(" ").append(name).append("=").append(value);
    out += "\n";
  }
  for (const std::string& problem : form.problems) out += problem + "\n";
  return out;
}

container::Storage Sample() {
  container::Storage form;
  const std::string label = Label("Name:"), box = Morph("abc", ""), check = Morph("1", "On");
  form.streams = {{"f", Form_Stream({{"lblName", 21, static_cast<std::uint32_t>(label.size())},
                                     {"txtName", 23, static_cast<std::uint32_t>(box.size()), 0x31,
                                      2, 1, "key", "tip"},
                                     {"fraMore", 14, 0, 0x23, 3, 2},
                                     {"other", 0x8000, 0, 0x33, 5, 4}})},
                  {"o", label + box}};
  container::Storage frame;
  frame.name = "i03";
  frame.streams = {
      {"f", Form_Stream({{"chkOn", 26, static_cast<std::uint32_t>(check.size()), 0x32, 4, 3}})},
      {"o", check}};
  form.storages = {frame};
  return form;
}

TEST(Form_Storages, ControlsAndTheirProperties) {
  // 254 himetric are 7.2 points, 1270 are 36, 2540 are 72, 635 are 18, 5080 are 144.
  const std::string kRest = " ControlTipText= HelpContextID=0";
  EXPECT_EQ(
      Show(Read_Form(Sample())),
      "Title\n"
      "lblName Label c=Name: t=- g= TabIndex=0 Left=7.2 Top=36 Width=72 Height=18 Visible=True "
      "Enabled=True" +
          kRest +
          " FontName=Tahoma FontSize=9\n"
          "txtName TextBox c=- t=abc g=key TabIndex=1 TabStop=True Left=7.2 Top=36 Width=36 Height=18 "
          "Visible=False Enabled=False ControlTipText=tip HelpContextID=0\n"
          "fraMore Frame c=Title t=- g= TabIndex=2 TabStop=True Left=7.2 Top=36 Width=144 Height=72 "
          "Visible=True Enabled=True" +
          kRest +
          "\n"
          "chkOn CheckBox c=On t=- g= TabIndex=3 TabStop=False Left=7.2 Top=36 Width=36 Height=18 "
          "Visible=True Enabled=False" +
          kRest +
          " Container=fraMore\n"
          "other  c=- t=- g= TabIndex=4 TabStop=True Left=7.2 Top=36 Visible=True Enabled=True" +
          kRest + "\n");
}

TEST(Form_Storages, PagesAreContainersAndNoControls) {
  container::Storage form, pages, page;
  const std::string label = Label("x");
  form.streams = {{"f", Form_Stream({{"mulTop", 57, 0, 0x23, 1}})}};
  pages.name = "i01";
  pages.streams = {{"f", Form_Stream({{"", 18, 0, 0x33, 2}, {"Page1", 7, 0, 0x23, 3}})}};
  page.name = "i03";
  page.streams = {
      {"f", Form_Stream({{"lblIn", 21, static_cast<std::uint32_t>(label.size()), 0x33, 4}})},
      {"o", label}};
  pages.storages = {page};
  form.storages = {pages};
  std::string shown;
  for (const auto& control : Read_Form(form).controls)
    shown +=
        control.name + "<" +
        (control.properties.back().first == "Container" ? control.properties.back().second : "") +
        " ";
  EXPECT_EQ(shown, "mulTop< lblIn<Page1 ");
}

TEST(Form_Storages, WhatIsDamagedIsToldAndTheRestIsThere) {
  container::Storage form = Sample();
  form.Find_Stream("o")->bytes.resize(20);
  form.storages[0].streams.clear();
  const Form_Storage read = Read_Form(form);
  EXPECT_EQ(read.controls.size(), 4U) << "the frame's content is lost, the frame is not";
  EXPECT_EQ(read.problems,
            (std::vector<std::string>{"コントロール「lblName」の情報が破損しています。",
                                      "コントロール「txtName」の情報が破損しています。",
                                      "コントロール「fraMore」の情報が破損しています。"}));

  const std::string sites = Sample().Find_Stream("f")->bytes;
  for (std::size_t size = 0; size < sites.size(); ++size) {
    SCOPED_TRACE(size);
    container::Storage cut;
    cut.streams = {{"f", sites.substr(0, size)}};
    const Form_Storage part = Read_Form(cut);
    EXPECT_FALSE(part.problems.empty());
    EXPECT_LE(part.controls.size(), 4U);
  }
  EXPECT_EQ(Read_Form({}).problems,
            (std::vector<std::string>{"画面の情報（f ストリーム）がありません。"}));
}

// Containers that share one storage, at each level, would be read more and more often.
TEST(Form_Storages, AStorageIsReadOnce) {
  container::Storage form;
  for (int level = 0; level < 28; ++level) {
    container::Storage outer;
    outer.name = "i01";
    outer.streams = {{"f", Form_Stream({{"a", 7, 0, 0x23, 1}, {"b", 7, 0, 0x23, 1}})}};
    if (level > 0) outer.storages = {form};
    form = outer;
  }
  EXPECT_EQ(Read_Form(form).problems.size(), 29U);
  const std::vector<Site> many(9000, Site{"", 21});
  form.streams = {{"f", Form_Stream(many)}};
  EXPECT_EQ(Show(Read_Form(form)), "Title\nコントロールが多すぎます。\n");
}

TEST(FuzzCorpus, FormStorage) {
  test::Run_Corpus("form_storage", 3, fuzz::Run_Form_Storage);
}

}  // namespace
}  // namespace oru::workbook
