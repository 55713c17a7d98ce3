// SPDX-License-Identifier: MIT
// A module's source as a file, and the file as a source.
#include "provider/module_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/model.h"

namespace oru::provider {
namespace {

const std::string kName = "Attribute VB_Name = \"M\"\r\n";
const std::string kBase = "Attribute VB_Base = \"0{00020820-0000-0000-C000-000000000046}\"\r\n";
const std::string kExposed = "Attribute VB_Exposed = True\r\n";
const std::string kDerived = "Attribute VB_TemplateDerived = False\r\n";
const std::string kClass = "VERSION 1.0 CLASS\r\nBEGIN\r\n  MultiUse = -1  'True\r\nEND\r\n";
const std::string kCode =
    "Option Explicit\r\nSub A()\r\nAttribute A.VB_Description = \"d\"\r\nEnd Sub";

TEST(Module_Texts, AsTheEditorExportsThem) {
  const std::string source = kName + kBase + kExposed + kDerived + kCode;
  const Exported_Form module = To_File(source, host::kType_Module, "", "");
  EXPECT_EQ(module.extension, ".bas");
  EXPECT_EQ(module.bytes, source);
  const std::string exported = kClass + kName + kExposed + kCode;
  for (const int type : {host::kType_Class, host::kType_Document, host::kType_Form}) {
    const Exported_Form file = To_File(source, type, "", "");
    EXPECT_EQ(file.extension, type == host::kType_Form ? ".frm" : ".cls");
    EXPECT_EQ(file.bytes, exported);
  }
  const std::string layout =
      "VERSION 5.00\r\nBegin {C} M \r\n   Caption         =   \"c\"\r\n"
      "   StartUpPosition =   1\r\n   TypeInfoVer     =   3\r\nEnd\r\n";
  EXPECT_EQ(To_File(source, host::kType_Form, layout, "M.frx").bytes,
            "VERSION 5.00\r\nBegin {C} M \r\n   Caption         =   \"c\"\r\n"
            "   OleObjectBlob   =   \"M.frx\":0000\r\n   StartUpPosition =   1\r\nEnd\r\n" +
                kName + kExposed + kCode);
}

TEST(Module_Texts, AnImportKeepsWhatBindsTheModule) {
  const auto page = service::Code_Page::Open(932);
  const std::string old = kName + kBase + kExposed + kDerived + kCode;
  const std::string control = "Attribute VB_Control = \"a, 1, 0\"\r\n";
  const std::string second = "Attribute VB_Control = \"b, 2, 1\"\r\n";
  const struct {
    std::string_view what;
    std::string file, before, after;
  } kCases[] = {
      {"nothing changed: not even the missing line end", kClass + kName + kExposed + kCode, old,
       old},
      {"only line ends differ", "Attribute VB_Name = \"M\"\nX\n", kName + "X\r\n", kName + "X\r\n"},
      {"code", kClass + kName + kExposed + "X\n", old,
       kName + kBase + kExposed + kDerived + "X\r\n"},
      {"an attribute goes and another comes",
       kClass + kName + "Attribute VB_Ext_KEY = \"k\"\r\nX\r\n", old,
       kName + kBase + kDerived + "Attribute VB_Ext_KEY = \"k\"\r\nX\r\n"},
      {"neither the name nor the base come from a file",
       "Attribute VB_Name = \"m\"\r\nAttribute VB_Base = \"0{1}\"\r\n" + kExposed + "X\r\n", old,
       kName + kBase + kExposed + kDerived + "X\r\n"},
      {"nothing binds a module that was not bound, and it has one name",
       kName + kBase + kExposed + "Attribute VB_Name = \"Zed\"\r\nX\r\n", kName + "Y\r\n",
       kName + kExposed + "X\r\n"},
      {"a file of code alone", "X\r\n", old, kName + kBase + kExposed + kDerived + "X\r\n"},
      {"one attribute for each control", kName + control + second + "X\r\n",
       kName + control + second + "Y\r\n", kName + control + second + "X\r\n"},
      {"a control less", kName + control + "X\r\n", kName + control + second + "X\r\n",
       kName + control + "X\r\n"},
      {"all code gone", kName, kName + "X\r\n", kName},
      {"UTF-8", "\xEF\xBB\xBF" + kName + "'受\r\n", kName + "X\r\n", kName + "'\x8E\xF3\r\n"},
      {"UTF-16", std::string("\xFF\xFE'\0\xD7\x53\n\0", 8), kName, kName + "'\x8E\xF3\r\n"},
      {"the code page's own bytes", kName + "'\x8E\xF3\r\n", kName, kName + "'\x8E\xF3\r\n"},
  };
  for (const auto& c : kCases) {
    const Imported_Source source = To_Source(c.file, c.before, *page);
    EXPECT_EQ(source.error, "") << c.what;
    EXPECT_EQ(source.bytes, c.after) << c.what;
  }
  const struct {
    std::string file;
    std::string_view told;
  } kRefused[] = {{"\xEF\xBB\xBF'a\r\n'😀\r\n", "2 行目"}, {std::string("a\0b", 3), "NUL"}};
  for (const auto& c : kRefused)
    EXPECT_NE(To_Source(c.file, kName, *page).error.find(c.told), std::string::npos) << c.told;
}

}  // namespace
}  // namespace oru::provider
