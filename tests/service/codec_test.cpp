// SPDX-License-Identifier: MIT
#include "service/codec.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace oru::service {
namespace {

using namespace std::string_view_literals;

constexpr Encoding kPage = Encoding::Code_Page;

TEST(Codec, DetectsTheEncodingFromTheBytes) {
  struct Case {
    std::string_view what, bytes;
    Encoding encoding;
  };
  constexpr Case cases[] = {
      {"nothing", "", kPage},
      {"ASCII means the same in the code page", "Sub A()\r\n", kPage},
      {"UTF-8 in the last bytes of a long line", "0123456789012345678901234 \xE3\x81\x82",
       Encoding::Utf8},
      {"half a UTF-8 character", "ab\xE3\x81", kPage},
      {"overlong form", "\xC0\xAF", kPage},
      {"surrogate in UTF-8", "\xED\xA0\x80", kPage},
      {"beyond the last code point", "\xF4\x90\x80\x80", kPage},
      {"four bytes", "\xF0\x9F\x98\x80", Encoding::Utf8},
      {"932", "\x82\xA0", kPage},
      {"mark of UTF-8 before bytes that are none", "\xEF\xBB\xBF\x82\xA0", Encoding::Utf8_Bom},
      {"marks of UTF-16",
       "\xFF\xFE"
       "a\0"sv,
       Encoding::Utf16_Le_Bom},
      {"big end first", "\xFE\xFF\0a"sv, Encoding::Utf16_Be_Bom},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Detect_Encoding(c.bytes), c.encoding);
  }
}

TEST(Codec, BytesToTextAndBack) {
  struct Case {
    std::string_view what;
    int page;
    Encoding encoding;
    std::string_view bytes, text;
  };
  constexpr Case cases[] = {
      {"second byte is a backslash or a bar", 932, kPage, "\x83\x5C\x83\x7C\"", "ソポ\""},
      {"half-width katakana", 932, kPage, "\xB1\xB2.", "ｱｲ."},
      {"the tilde-like sign of Windows", 932, kPage, "\x81\x60", "～"},
      {"NEC and IBM extensions", 932, kPage, "\x87\x40\xFA\x40", "①ⅰ"},
      {"backslash is no yen sign", 932, kPage, "C:\\~", "C:\\~"},
      {"Western", 1252, kPage, "caf\xE9 \x80", "café €"},
      {"Cyrillic", 1251, kPage, "\xCC\xEE\xE4", "Мод"},
      {"Korean", 949, kPage, "\xB0\xA1", "가"},
      {"traditional Chinese", 950, kPage, "\xA4\x40", "一"},
      {"simplified Chinese", 936, kPage, "\xD6\xD0", "中"},
      {"UTF-8 as a code page", 65001, kPage, "\xE3\x81\x82", "あ"},
      {"UTF-16", 932, Encoding::Utf16_Le_Bom, "a\0\x42\x30\x3D\xD8\x00\xDE"sv, "aあ😀"},
      {"UTF-16, big end first", 932, Encoding::Utf16_Be_Bom, "\0a\x30\x42"sv, "aあ"},
      {"UTF-8 keeps a replacement character that was there", 932, Encoding::Utf8, "\xEF\xBF\xBD",
       "\uFFFD"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const auto page = Code_Page::Open(c.page);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->Number(), c.page);
    const std::string file = std::string(Byte_Order_Mark(c.encoding)) + std::string(c.bytes);
    const Decoded decoded = Decode(file, c.encoding, *page);
    EXPECT_EQ(decoded.text, c.text);
    EXPECT_EQ(decoded.bad_bytes, 0u);
    EXPECT_EQ(Decode_Moved(file, c.encoding, *page).text, c.text);
    EXPECT_EQ(Encode(c.text, c.encoding, *page), c.bytes);
  }
}

TEST(Codec, UndecodableBytesAreReplacedAndCounted) {
  struct Case {
    std::string_view what;
    int page;
    Encoding encoding;
    std::string_view bytes, text;
    std::size_t bad, first;
  };
  constexpr Case cases[] = {
      {"lead byte before a quotation mark", 932, kPage, "a\x81\"b", "a\uFFFD\"b", 1, 1},
      {"lead byte before a line end", 932, kPage, "\x81\r\n", "\uFFFD\r\n", 1, 0},
      {"lead byte at the end", 932, kPage, "ab\x81", "ab\uFFFD", 1, 2},
      {"two in a row", 932, kPage, "x\xFF\xFFy", "x\uFFFD\uFFFDy", 2, 1},
      {"hole of a Western page", 1252, kPage, "\x81z", "\uFFFDz", 1, 0},
      {"UTF-8 behind its mark", 932, Encoding::Utf8_Bom, "\xEF\xBB\xBF\xE3\x81z", "\uFFFD\uFFFDz",
       2, 3},
      {"lone surrogate and odd byte", 932, Encoding::Utf16_Le_Bom, "\xFF\xFE\x00\xD8\r\0\n\0x"sv,
       "\uFFFD\r\n\uFFFD", 3, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const auto page = Code_Page::Open(c.page);
    const Decoded decoded = Decode(c.bytes, c.encoding, *page);
    EXPECT_EQ(decoded.text, c.text);
    EXPECT_EQ(decoded.bad_bytes, c.bad);
    EXPECT_EQ(decoded.first_bad, c.first);
    EXPECT_EQ(decoded.first_bad_text, c.text.find("\uFFFD"));
  }
}

TEST(Codec, RefusesCharactersWithoutAPlace) {
  struct Case {
    std::string_view what;
    int page;
    Encoding encoding;
    std::string_view text;
  };
  constexpr Case cases[] = {
      {"emoji in 932", 932, kPage, "a😀"},
      {"look-alike of the tilde-like sign", 932, kPage, "〜"},
      {"Japanese in a Western page", 1252, kPage, "あ"},
      {"replacement character", 932, kPage, "\uFFFD"},
      {"replacement character in a damaged UTF-8 file", 65001, kPage, "\uFFFD"},
      {"text that is no UTF-8", 932, Encoding::Utf8, "\x82\xA0"},
      {"the same for UTF-16", 932, Encoding::Utf16_Be_Bom, "\x82\xA0"},
      {"the same for a code page", 932, kPage, "\xE3\x81"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Encode(c.text, c.encoding, *Code_Page::Open(c.page)), std::nullopt);
  }
}

TEST(Codec, RefusesCodePagesThatAreUnknownOrNotLikeAscii) {
  for (const int number : {0, -1, 37, 930, 1361, 99999}) {
    SCOPED_TRACE(number);
    EXPECT_EQ(Code_Page::Open(number), nullptr);
  }
}

TEST(Codec, EveryPairOfBytesThatDecodesComesBackAsTheSameText) {
  for (const int number : {932, 936, 949, 950, 1252}) {
    SCOPED_TRACE(number);
    const auto page = Code_Page::Open(number);
    int good = 0;
    for (int first = 0x80; first < 0x100; ++first) {
      for (int second = 0x20; second < 0x100; ++second) {
        const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
        const Decoded decoded = page->Decode(bytes);
        if (decoded.bad_bytes > 0) continue;
        ++good;
        const auto back = page->Encode(decoded.text);
        ASSERT_TRUE(back.has_value()) << first << ' ' << second;
        ASSERT_EQ(page->Decode(*back).text, decoded.text) << first << ' ' << second;
      }
    }
    EXPECT_GT(good, 5000);
  }
}

}  // namespace
}  // namespace oru::service
