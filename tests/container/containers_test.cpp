// SPDX-License-Identifier: MIT
// Compound files and archives made by the real libraries, whole and damaged.
#include <gtest/gtest.h>

#include <string>

#include "../fuzz/containers_entry.h"
#include "container/archive.h"
#include "container/byte_reader.h"
#include "container/compound_file.h"
#include "support/archive_maker.h"
#include "support/corpus.h"

namespace oru::container {
namespace {

std::string Bulk(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * i / 7 + i);
  return bytes;
}

Storage Sample() {
  Storage root;
  root.class_id[0] = 7;
  root.streams = {{"PROJECT", "ID=1\r\n"}, {"empty", ""}, {"large", Bulk(20000)}};
  Storage vba{.name = "VBA", .streams = {}, .storages = {}};
  vba.class_id[15] = 9;
  vba.streams = {{"dir", Bulk(600)}, {"モジュール1", "x"}};
  vba.storages.push_back({.name = "i01", .streams = {{"f", "abc"}}, .storages = {}});
  root.storages.push_back(vba);
  return root;
}

void Expect_Same(const Storage& a, const Storage& b) {
  SCOPED_TRACE(a.name);
  EXPECT_EQ(a.class_id, b.class_id);
  ASSERT_EQ(a.streams.size(), b.streams.size());
  for (const Stream& stream : a.streams) {
    const Stream* other = b.Find_Stream(stream.name);
    ASSERT_NE(other, nullptr) << stream.name;
    EXPECT_EQ(stream.bytes, other->bytes) << stream.name;
  }
  ASSERT_EQ(a.storages.size(), b.storages.size());
  for (const Storage& storage : a.storages) {
    const Storage* other = b.Find_Storage(storage.name);
    ASSERT_NE(other, nullptr) << storage.name;
    Expect_Same(storage, *other);
  }
}

TEST(Compound_Files, WhatWasWrittenIsRead) {
  const std::string bytes = Write_Compound(Sample());
  ASSERT_TRUE(Is_Compound(bytes));
  const Compound_File read = Read_Compound(bytes);
  ASSERT_EQ(read.error, "");
  Expect_Same(Sample(), read.root);
  EXPECT_NE(read.root.Find_Storage("vba"), nullptr) << "letter case does not count";
  EXPECT_EQ(read.root.Find_Stream("nothing"), nullptr);
}

TEST(Compound_Files, ACutFileIsRefusedOrWhole) {
  const std::string bytes = Write_Compound(Sample());
  for (std::size_t size = 0; size < bytes.size(); size += 37) {
    SCOPED_TRACE(size);
    const Compound_File read = Read_Compound(std::string_view(bytes).substr(0, size));
    if (read.Ok())
      Expect_Same(Sample(), read.root);
    else
      EXPECT_TRUE(read.root.streams.empty() && read.root.storages.empty());
  }
}

// Each stream of `part` stands in `whole` with the same content.
void Expect_Within(const Storage& part, const Storage& whole) {
  for (const Stream& stream : part.streams) {
    const Stream* other = whole.Find_Stream(stream.name);
    ASSERT_NE(other, nullptr) << stream.name;
    EXPECT_EQ(stream.bytes, other->bytes) << stream.name;
  }
  for (const Storage& storage : part.storages) {
    const Storage* other = whole.Find_Storage(storage.name);
    ASSERT_NE(other, nullptr) << storage.name;
    Expect_Within(storage, *other);
  }
}

TEST(Compound_Files, ALoopInAChainOfSectorsGivesNoWrongBytes) {
  const std::string bytes = Write_Compound(Sample());
  // The table of sectors lies in the sector that the header names at 76.
  const auto table = 512 + static_cast<std::size_t>(Byte_Reader(bytes, 76).U32()) * 512;
  ASSERT_LE(table + 512, bytes.size());
  int refused = 0;
  for (std::size_t sector = 0; sector < 128; ++sector) {
    SCOPED_TRACE(sector);
    const std::size_t at = table + sector * 4;
    if (Byte_Reader(bytes, at).U32() >= 0xFFFFFFF0) continue;
    std::string looping = bytes;  // the sector leads to itself
    looping.replace(at, 4, std::string{static_cast<char>(sector), 0, 0, 0});
    const Compound_File read = Read_Compound(looping);
    refused += read.Ok() ? 0 : 1;
    Expect_Within(read.root, Sample());
  }
  EXPECT_GT(refused, 30) << "all but those of the directory";
}

TEST(Compound_Files, AChainOfEntriesHasALimit) {
  Storage root;
  for (int i = 0; i < 12'000; ++i) root.streams.push_back({"s" + std::to_string(i), ""});
  EXPECT_NE(Read_Compound(Write_Compound(root)).error, "");
  root.streams.resize(3'000);
  EXPECT_EQ(Read_Compound(Write_Compound(root)).root.streams.size(), 3'000U);
}

TEST(Archives, PartsAreFoundAndRead) {
  const std::string bytes = test::Make_Archive(
      {{"xl/workbook.xml", "<a/>"}, {"xl/vbaProject.bin", Bulk(3000)}, {"日本語.txt", "x"}});
  ASSERT_TRUE(Is_Archive(bytes));
  Archive archive;
  ASSERT_EQ(archive.Open(bytes), "");
  EXPECT_EQ(archive.Names(),
            (std::vector<std::string>{"xl/workbook.xml", "xl/vbaProject.bin", "日本語.txt"}));
  EXPECT_EQ(archive.Find("/XL/vbaproject.bin"), "xl/vbaProject.bin");
  EXPECT_EQ(archive.Read("xl/vbaProject.bin").bytes, Bulk(3000));
  const Archive::Part none = archive.Read("xl/none.xml");
  EXPECT_EQ(none.error, "部品「xl/none.xml」がありません。");
}

TEST(Archives, AReplacedPartLeavesTheOthersAsTheyWere) {
  const std::string bytes = test::Make_Archive({{"a", Bulk(5000)}, {"b", "old"}, {"c", Bulk(900)}});
  Archive archive;
  ASSERT_EQ(archive.Open(bytes), "");
  const Archive::Part changed = archive.With_Part("b", "new content");
  ASSERT_EQ(changed.error, "");
  EXPECT_EQ(archive.With_Part("b", "new content").bytes, changed.bytes) << "the same each time";
  // The packed part in front of it starts the archive, as before.
  const std::size_t second = bytes.find("PK\x03\x04", 4);
  ASSERT_NE(second, std::string::npos);
  EXPECT_EQ(changed.bytes.substr(0, second), bytes.substr(0, second));
  Archive again;
  ASSERT_EQ(again.Open(changed.bytes), "");
  EXPECT_EQ(again.Names(), archive.Names());
  EXPECT_EQ(again.Read("a").bytes, Bulk(5000));
  EXPECT_EQ(again.Read("b").bytes, "new content");
  EXPECT_EQ(again.Read("c").bytes, Bulk(900));
  EXPECT_EQ(archive.Read("b").bytes, "old") << "the opened archive is not touched";
}

TEST(Archives, ABombDoesNotGoOff) {
  const std::string bytes = test::Make_Archive({{"bomb", std::string(8 << 20, ' ')}, {"b", "x"}});
  ASSERT_LT(bytes.size(), 20000U);
  Archive archive;
  ASSERT_EQ(archive.Open(bytes), "");
  const std::string too_large = "部品「bomb」は展開すると大きすぎるため、読み込みを中止しました。";
  EXPECT_EQ(archive.Read("bomb").error, too_large);
  EXPECT_EQ(archive.Read("b").bytes, "x");

  ASSERT_EQ(archive.Open(bytes, {.total = 1 << 20}), "");
  std::size_t taken = 0;
  EXPECT_EQ(archive.Read_Pieces("bomb",
                                [&](std::string_view piece) {
                                  taken += piece.size();
                                  return true;
                                }),
            too_large);
  EXPECT_LE(taken, std::size_t{1} << 20);
}

TEST(Archives, ADamagedArchiveIsTold) {
  const std::string bytes = test::Make_Archive({{"a", Bulk(5000)}, {"b", "old"}});
  for (std::size_t size = 0; size < bytes.size(); size += 13) {
    SCOPED_TRACE(size);
    Archive archive;
    EXPECT_EQ(archive.Open(bytes.substr(0, size)), "ファイル（ＺＩＰ形式）が破損しています。");
  }
  std::string wrong = bytes;
  wrong[60] = static_cast<char>(wrong[60] + 1);
  Archive archive;
  ASSERT_EQ(archive.Open(wrong), "");
  const Archive::Part part = archive.Read("a");
  EXPECT_FALSE(part.Ok());
  EXPECT_TRUE(part.bytes.empty());
}

TEST(Byte_Readers, AReadBeyondTheEndFailsForGood) {
  Byte_Reader reader("\x01\x02\x03\x04\x05\x06");
  EXPECT_EQ(reader.U16(), 0x0201);
  EXPECT_EQ(reader.U32(), 0x06050403U);
  EXPECT_TRUE(reader.Ok() && reader.At_End());
  EXPECT_EQ(reader.U8(), 0);
  EXPECT_FALSE(reader.Ok());
  Byte_Reader other("abc");
  EXPECT_EQ(other.Bytes(4), "");
  EXPECT_EQ(other.U8(), 0) << "failed before";
}

TEST(FuzzCorpus, OfContainers) {
  test::Run_Corpus("compound_file", 97, fuzz::Run_Compound_File);
  test::Run_Corpus("archive", 7, fuzz::Run_Archive);
}

}  // namespace
}  // namespace oru::container
