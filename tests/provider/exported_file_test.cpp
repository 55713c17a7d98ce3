// SPDX-License-Identifier: MIT
#include "provider/exported_file.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace oru::provider {
namespace {

using service::Encoding;

Exported_File Read(std::string_view bytes, File_Kind kind = File_Kind::Cls, int page = 932) {
  return Read_Exported(std::string(bytes), kind, "Stem", *service::Code_Page::Open(page));
}

TEST(ExportedFile, OnlyCodeIsLeft) {
  struct Case {
    std::string_view what, bytes, text;
  };
  constexpr Case cases[] = {
      {"class header and attributes",
       "VERSION 1.0 CLASS\r\nBEGIN\r\n  MultiUse = -1  'True\r\nEND\r\nAttribute VB_Name = \"A\"\r\n"
       "Option Explicit\r\n",
       "Option Explicit\r\n"},
      {"form with nested blocks and a library",
       "VERSION 5.00\nObject = \"{0}#1.2#0\"; \"A.OCX\"\nBegin VB.Form F \n   Caption = \"End\"\n"
       "   BeginProperty Font \n      Name = \"Begin\"\n   EndProperty\n   Begin VB.Label L \n   End\n"
       "End\nAttribute VB_Name = \"F\"\n\nEnd\n",
       "\nEnd\n"},
      {"letter case and indent do not matter",
       "version 1.0 class\nbegin\nend\n\tattribute vb_name = \"A\"\nX\n", "X\n"},
      {"attributes of members",
       "Property Get Item()\n  Attribute Item.VB_UserMemId = 0\nEnd Property\n"
       "Attribute 取得.VB_ProcData.VB_Invoke_Func = \" \\n14\"\nPublic X\n"
       "Attribute X.VB_VarDescription = _\n  \"a\" _\n  \"b\"\nY",
       "Property Get Item()\nEnd Property\nPublic X\nY"},
      {"no attribute: another name, no name, no value, a longer word",
       "Attribute = 1\nAttribute X = 1\nAttribute VB_Name\nAttributes VB_A = 1\nAttribute.VB_A = 1\n",
       "Attribute = 1\nAttribute X = 1\nAttribute VB_Name\nAttributes VB_A = 1\nAttribute.VB_A = 1\n"},
      {"no attribute: the line before goes on",
       "s = f( _\nAttribute VB_A = 1)\nAttribute VB_B = 1\n", "s = f( _\nAttribute VB_A = 1)\n"},
      {"no attribute: text in a literal", "s = \"\nAttribute VB_A\"\n",
       "s = \"\nAttribute VB_A\"\n"},
      {"no header below code", "X\nVERSION 1.0 CLASS\nBEGIN\nEND\n",
       "X\nVERSION 1.0 CLASS\nBEGIN\nEND\n"},
      {"no block without its end", "BEGIN\n  A = 1\nSub S()\nEnd\n",
       "BEGIN\n  A = 1\nSub S()\nEnd\n"},
      {"a lost END ends at the attributes", "BEGIN\n  A = 1\nAttribute VB_A = 1\nX\n", "X\n"},
      {"line ends of all kinds stay",
       "Attribute VB_A = 1\r\r\na\r\r\nb\rAttribute VB_B = 1\rc\nAttribute VB_C = 1\n\rd",
       "a\r\r\nb\rc\n\rd"},
      {"attributes only", "Attribute VB_Name = \"A\"", ""},
      {"nothing", "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Read(c.bytes).component.text, c.text);
  }
}

TEST(ExportedFile, NameAndType) {
  constexpr std::string_view both =
      "Attribute VB_PredeclaredId = True\nAttribute VB_Exposed = True\n";
  struct Case {
    std::string_view what, bytes, name;
    int type;
    File_Kind kind;
    bool name_changed;
  };
  const Case cases[] = {
      {"module", "Attribute VB_Name = \"M\"\n", "M", 1, File_Kind::Bas, false},
      {"without a name", "X\n", "Stem", 1, File_Kind::Bas, false},
      {"class", "Attribute VB_Exposed = True\n", "Stem", 2, File_Kind::Cls, false},
      {"class with its own instance",
       "Attribute VB_PredeclaredId = True\nAttribute VB_Exposed = False\n", "Stem", 2,
       File_Kind::Cls, false},
      {"document", both, "Stem", 100, File_Kind::Cls, false},
      {"form", both, "Stem", 3, File_Kind::Frm, false},
      {"document by its extension", "", "Stem", 100, File_Kind::Doccls, false},
      {"the first name counts", "Attribute VB_Name = \"A\"\nAttribute VB_Name = \"B\"\n", "A", 1,
       File_Kind::Bas, false},
      {"doubled quotes", "Attribute VB_Name = \"a\"\"b\" 'x\n", "a\"b", 1, File_Kind::Bas, false},
      {"control characters become blanks", "Attribute VB_Name = \"a\tb\x01\"\n", "a b", 1,
       File_Kind::Bas, true},
      {"what separates parts of a record", "Attribute VB_Name = \"a.b%c#d|e\"\n", "a_b_c_d_e", 1,
       File_Kind::Bas, true},
      {"empty name", "Attribute VB_Name = \"\"\n", "Stem", 1, File_Kind::Bas, true},
      {"name in the code page", "Attribute VB_Name = \"\x83\x5C\"\n", "ソ", 1, File_Kind::Bas,
       false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Exported_File file = Read(c.bytes, c.kind);
    EXPECT_EQ(file.component.name, c.name);
    EXPECT_EQ(file.component.type, c.type);
    EXPECT_EQ(file.name_changed, c.name_changed);
    EXPECT_EQ(file.component.has_designer, c.kind == File_Kind::Frm);
  }
}

TEST(ExportedFile, EncodingsAndDamage) {
  using namespace std::string_view_literals;
  struct Case {
    std::string_view what, bytes;
    int page;
    Encoding encoding;
    std::string_view text;
    std::size_t bad, line;
  };
  constexpr Case cases[] = {
      {"UTF-8 whatever the code page", "'\xE3\x81\x82", 1252, Encoding::Utf8, "'あ", 0, 0},
      {"code page", "Attribute VB_A = 1\n'\xE9", 1252, Encoding::Code_Page, "'é", 0, 0},
      {"UTF-16", "\xFF\xFE'\0\x42\x30\r\0\n\0"sv, 932, Encoding::Utf16_Le_Bom, "'あ\r\n", 0, 0},
      {"damage is counted in lines of the file", "Attribute VB_A = 1\r\nX\r\n\xFFY\xFF\r\n", 932,
       Encoding::Code_Page, "X\r\n\uFFFDY\uFFFD\r\n", 2, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Exported_File file = Read(c.bytes, File_Kind::Bas, c.page);
    EXPECT_EQ(file.encoding, c.encoding);
    EXPECT_EQ(file.component.text, c.text);
    EXPECT_EQ(file.bad_bytes, c.bad);
    EXPECT_EQ(file.first_bad_line, c.line);
  }
  EXPECT_FALSE(Read("a\0b"sv).is_text);
  EXPECT_FALSE(Read("\xFF\xFE\0\0"sv).is_text);
}

TEST(ExportedFile, ControlsOfALayoutInText) {
  const Exported_File file = Read(R"frm(VERSION 5.00
Begin VB.Form F
   Caption         =   "Form"
   Begin VB.Frame Frame1
      Caption         =   "a ""b"""
      BeginProperty Font
         Text            =   "no property of the frame"
      EndProperty
      Begin Lib.Sub.TextBox 入力
         Text            =   "F.frx":0000
         Tag="t"
      End
      tag             =   "後"
   End
   Begin CommandButton Command1
      Caption         =   12
   End
   Begin
      Caption = "has no name"
   End
End
Attribute VB_Name = "F"
)frm",
                                  File_Kind::Frm);
  const auto& controls = file.component.controls;
  ASSERT_EQ(controls.size(), 3u);
  EXPECT_EQ(controls[0].name, "Frame1");
  EXPECT_EQ(controls[0].type_name, "Frame");
  EXPECT_EQ(controls[0].caption, "a \"b\"");
  EXPECT_EQ(controls[0].text, std::nullopt);
  EXPECT_EQ(controls[0].tag, "後");
  EXPECT_EQ(controls[1].name, "入力");
  EXPECT_EQ(controls[1].type_name, "TextBox");
  EXPECT_EQ(controls[1].text, std::nullopt);
  EXPECT_EQ(controls[1].tag, "t");
  EXPECT_EQ(controls[2].type_name, "CommandButton");
  EXPECT_EQ(controls[2].caption, std::nullopt);
}

TEST(ExportedFile, AFormWithABinaryLayoutHasNoKnownControls) {
  const Exported_File file = Read(
      "VERSION 5.00\r\nBegin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} F \r\n   Caption = \"F\"\r\n"
      "   OleObjectBlob   =   \"F.frx\":0000\r\nEnd\r\nAttribute VB_Name = \"F\"\r\nX\r\n",
      File_Kind::Frm);
  EXPECT_TRUE(file.component.controls.empty());
  EXPECT_EQ(file.component.text, "X\r\n");
}

}  // namespace
}  // namespace oru::provider
