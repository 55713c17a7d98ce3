// SPDX-License-Identifier: MIT
// The macro project of a workbook: compression, directory, kinds of modules, and new sources.
#include <gtest/gtest.h>

#include <string>

#include "support/book_maker.h"
#include "workbook/project_stream.h"
#include "workbook/vba_compression.h"
#include "workbook/vba_project.h"

namespace oru::workbook {
namespace {

using test::Bytes;
using test::Made_Project;

constexpr std::size_t kMuch = std::size_t{1} << 20;

TEST(Vba_Compression, UnpacksByHand) {
  // A chunk: nine bytes behind the header. "ab", then three bytes from two back, "c".
  const std::string repeated =
      Bytes().U8(1).U16(0xB000 | 5).U8(0x04).Put("ab").U16(0x1000).Put("c").Text();
  EXPECT_EQ(Decompress(repeated, kMuch), "ababac");
  const struct {
    std::string_view what;
    std::string in;
  } kBad[] = {
      {"nothing", ""},
      {"another signature", Bytes().U8(2).U16(0xB000).U8(0).Text()},
      {"a chunk's mark", Bytes().U8(1).U16(0x8000 | 2).U8(0).Put("ab").Text()},
      {"a chunk that ends early", Bytes().U8(1).U16(0xB000 | 9).U8(0).Put("ab").Text()},
      {"half a header", Bytes().U8(1).U8(0).Text()},
      {"a reference to before the chunk",
       Bytes().U8(1).U16(0xB000 | 3).U8(2).Put("a").U16(0x1000).Text()},
      {"half a reference", Bytes().U8(1).U16(0xB000 | 2).U8(2).Put("a").U8(0).Text()},
      {"more than a chunk holds",
       Bytes().U8(1).U16(0xB000 | 5).U8(6).Put("a").U16(0x0FFC).U16(0x0FFC).Text()},
  };
  for (const auto& bad : kBad) EXPECT_EQ(Decompress(bad.in, kMuch), std::nullopt) << bad.what;
  EXPECT_EQ(Decompress(repeated, 5), std::nullopt) << "more than is allowed";
}

TEST(Vba_Compression, WhatIsPackedIsUnpacked) {
  std::string mixed;
  for (int i = 0; i < 9000; ++i) mixed += static_cast<char>(i % 7 == 0 ? i * i / 3 : 'a' + i % 5);
  std::string noise;
  for (unsigned i = 0, x = 1; i < 4096; ++i)
    noise += static_cast<char>((x = x * 1103515245 + 12345) >> 16);
  for (const std::string& text :
       {std::string(), std::string("x"), std::string(4096, 'x'), std::string(4097, 'x'), mixed,
        mixed.substr(0, 8192), noise + "end"}) {
    SCOPED_TRACE(text.size());
    EXPECT_EQ(Decompress(Compress(text), kMuch), text);
  }
  EXPECT_LT(Compress(std::string(4096, 'x')).size(), 16U);
  EXPECT_EQ(Decompress(Compress(noise.substr(0, 4000)), kMuch),
            noise.substr(0, 4000) + std::string(96, '\0'))
      << "a chunk that is not packed has no length of its own";
}

Made_Project Sample() {
  return {.modules = {{"ThisWorkbook", "Document", "Attribute VB_Base = \"0{00020819-0000}\"\r\n"},
                      {"Sheet1", "Document", "Attribute VB_Base = \"0{00020820-0000}\"\r\n"},
                      {"modMain", "Module", "Sub Run()\r\nEnd Sub\r\n", "compiled before"},
                      {"clsOrder", "Class"},
                      {"frmInput", "BaseClass"}}};
}

TEST(Vba_Project, ModulesAndWhatTheyAre) {
  const container::Storage storage = Sample().Storage();
  const Vba_Project read = Read_Vba(storage);
  ASSERT_EQ(read.error, "");
  EXPECT_EQ(read.name, "Juchu");
  EXPECT_EQ(read.description, "orders");
  EXPECT_EQ(read.code_page, 1252);
  EXPECT_FALSE(read.locked);
  ASSERT_EQ(read.references.size(), 1U);
  EXPECT_EQ(read.references[0].name, "stdole");
  EXPECT_EQ(read.references[0].library, "*\\G{00020430}#2.0#0#C:\\stdole2.tlb#OLE Automation");
  std::string shown;
  for (const Vba_Module& module : read.modules)
    shown += module.name + ":" + std::to_string(module.type) + ":" +
             std::to_string(static_cast<int>(module.document)) + module.error + " ";
  EXPECT_EQ(shown, "ThisWorkbook:100:1 Sheet1:100:2 modMain:1:0 clsOrder:2:0 frmInput:3:0 ");
  EXPECT_EQ(read.modules[2].source, "Attribute VB_Name = \"modMain\"\r\nSub Run()\r\nEnd Sub\r\n");
}

TEST(Vba_Project, WithoutTheStreamThatTellsTheKinds) {
  container::Storage storage = Sample().Storage();
  storage.streams.clear();
  storage.storages.push_back({.name = "frmInput", .streams = {}, .storages = {}});
  std::string shown;
  for (const Vba_Module& module : Read_Vba(storage).modules)
    shown += std::to_string(module.type) + " ";
  EXPECT_EQ(shown, "100 100 1 2 3 ");
}

TEST(Vba_Project, DamageIsTold) {
  const auto dir_with = [](const std::string& dir) {
    container::Storage storage = Sample().Storage();
    storage.Find_Storage("VBA")->Find_Stream("dir")->bytes = test::Pack_Literally(dir);
    return Read_Vba(storage);
  };
  const std::string dir = Sample().Dir();
  std::size_t refused = 0;
  for (std::size_t size = 0; size < dir.size(); ++size) {
    SCOPED_TRACE(size);
    const Vba_Project read = dir_with(dir.substr(0, size));
    if (read.Ok())
      EXPECT_EQ(read.modules.size(), 5U) << "all or nothing";
    else
      EXPECT_TRUE(read.modules.empty());
    refused += read.Ok() ? 0 : 1;
  }
  EXPECT_GT(refused, dir.size() - 30) << "all but the last few bytes matter";
  std::string huge = dir;
  huge.replace(2, 4, "\xFF\xFF\xFF\x7F");
  EXPECT_EQ(dir_with(huge).error,
            "マクロの一覧（dir ストリーム）が 6 バイト目の近くで破損しています。");

  const Vba_Project outside = dir_with(Sample().Dir(100000));
  ASSERT_EQ(outside.error, "");
  EXPECT_EQ(outside.modules[2].error,
            "モジュール「modMain」のソースの位置が、ストリームの外を指しています。");
  const Vba_Project beside = dir_with(Sample().Dir(3));
  EXPECT_EQ(beside.modules[3].error, "モジュール「clsOrder」のソースが破損しています。");

  container::Storage no_stream = Sample().Storage();
  no_stream.Find_Storage("VBA")->Find_Stream("clsOrder")->name = "other";
  EXPECT_EQ(Read_Vba(no_stream).modules[3].error,
            "モジュール「clsOrder」のストリーム「clsOrder」がありません。");
  no_stream.Find_Storage("VBA")->streams.clear();
  EXPECT_EQ(Read_Vba(no_stream).error, "マクロの一覧（dir ストリーム）がありません。");
}

TEST(Vba_Project, WhatFillsTheLastChunkIsNoSource) {
  Made_Project made;
  made.modules = {{"modA"}};
  container::Storage storage = made.Storage();
  const std::string source = test::Source_Of(made.modules[0]);
  storage.Find_Storage("VBA")->Find_Stream("modA")->bytes =
      Bytes().U8(1).U16(0x3FFF).Put(source).Zeros(4096 - source.size()).Text();
  EXPECT_EQ(Read_Vba(storage).modules.at(0).source, source);
}

TEST(Vba_Project, ABombIsNotUnpacked) {
  Made_Project bomb{.modules = {{"modMain", "Module"}}};
  container::Storage storage = bomb.Storage();
  // 4096 bytes out of six, three thousand times.
  Bytes packed;
  packed.U8(1);
  for (int i = 0; i < 3000; ++i) packed.U16(0xB000 | 3).U8(2).Put("a").U16(0x0FFC);
  storage.Find_Storage("VBA")->Find_Stream("modMain")->bytes = packed.Text();
  EXPECT_EQ(Read_Vba(storage).modules[0].error, "モジュール「modMain」のソースが破損しています。");
}

TEST(Vba_Project, ANewSourceTouchesNothingElse) {
  container::Storage storage = Sample().Storage();
  storage.storages.push_back({.name = "frmInput", .streams = {{"f", "design"}}, .storages = {}});
  container::Storage changed = storage;
  const std::string fresh = "Attribute VB_Name = \"modMain\"\r\nSub Other()\r\nEnd Sub\r\n";
  ASSERT_EQ(Write_Vba(changed, {{"MODMAIN", fresh}}), "");
  EXPECT_TRUE(Same_But_Sources(storage, changed));
  const container::Storage& vba = *changed.Find_Storage("VBA");
  EXPECT_EQ(vba.class_id, storage.Find_Storage("VBA")->class_id);
  EXPECT_EQ(vba.Find_Stream("__SRP_0"), nullptr);
  EXPECT_EQ(vba.Find_Stream("_VBA_PROJECT")->bytes, std::string("\xCC\x61\xFF\xFF\0\0\0", 7));
  EXPECT_EQ(vba.Find_Stream("clsOrder")->bytes,
            storage.Find_Storage("VBA")->Find_Stream("clsOrder")->bytes);
  const Vba_Project before = Read_Vba(storage), after = Read_Vba(changed);
  for (std::size_t i = 0; i < before.modules.size(); ++i)
    EXPECT_EQ(after.modules[i].source, i == 2 ? fresh : before.modules[i].source);

  container::Storage other = storage;
  other.Find_Storage("frmInput")->Find_Stream("f")->bytes = "another";
  EXPECT_FALSE(Same_But_Sources(storage, other));
  EXPECT_NE(Write_Vba(other, {{"modNone", fresh}}), "");
}

TEST(Project_Stream, LinesAndProtection) {
  const auto page = service::Code_Page::Open(932);
  // Enciphered by hand: seed 0, so that each byte is the sum of the one two before it and the plain
  // one before; version 2, key 0x10, then a length and a value.
  const auto encipher = [](std::initializer_list<unsigned> plain) {
    std::string digits = "000210";
    unsigned far = 0x02, near = 0x10, before = 0x10;
    for (const unsigned byte : plain) {
      const unsigned out = (byte ^ (far + before)) & 0xFF;
      digits += "0123456789abcdef"[out >> 4];
      digits += "0123456789ABCDEF"[out & 15];
      far = near;
      near = out;
      before = byte;
    }
    return digits;
  };
  const struct {
    std::string_view what;
    std::string line;
    bool locked;
  } kCases[] = {
      {"nothing is told", "", false},
      {"not protected", "CMG=\"" + encipher({4, 0, 0, 0, 0, 0, 0, 0}) + "\"", false},
      {"by the user", "CMG=\"" + encipher({4, 0, 0, 0, 1, 0, 0, 0}) + "\"", true},
      {"visible", "GC=\"" + encipher({1, 0, 0, 0, 0xFF}) + "\"", false},
      {"not visible", "GC=\"" + encipher({1, 0, 0, 0, 0}) + "\"", true},
      {"as a workbook has it, open",
       "CMG=\"A7A532A752D9EBDDEBDDEBDDEBDD\"\nGC=\"E1E3747975797586\"", false},
      {"cannot be deciphered", "CMG=\"0702\"\r\nGC=\"xyz\"", false},
      {"a length that is not there", "GC=\"" + encipher({9, 0, 0, 0, 0}) + "\"", false},
  };
  for (const auto& entry : kCases)
    EXPECT_EQ(Read_Project_Stream(entry.line, *page).locked, entry.locked) << entry.what;

  const Project_Stream read = Read_Project_Stream(
      "ID=\"{0}\"\n\rDocument=ThisWorkbook/&H00000000\n\rmodule=\x8E\xF3\x92\x8D\n\r"
      "BaseClass=frmA\r\nClass=clsB\r\n[Workspace]\r\nModule=0, 0, 0\r\n",
      *page);
  ASSERT_EQ(read.items.size(), 4U);
  EXPECT_EQ(read.items[0].name, "ThisWorkbook");
  EXPECT_EQ(read.items[1].name, "受注");
  EXPECT_EQ(read.items[2].kind, Item_Kind::Form);
  EXPECT_EQ(read.items[3].kind, Item_Kind::Class);
}

}  // namespace
}  // namespace oru::workbook
