// SPDX-License-Identifier: MIT
// Fuzz entry for the codec. The first byte chooses the code page, the rest is taken as the bytes of
// a file and as a text.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "require.h"
#include "service/codec.h"
#include "service/text.h"

namespace oru::fuzz {

inline void Run_Codec(std::string_view input) {
  using namespace oru::service;
  static const std::array pages = {Code_Page::Open(932),  Code_Page::Open(936),
                                   Code_Page::Open(949),  Code_Page::Open(950),
                                   Code_Page::Open(1252), Code_Page::Open(65001)};
  if (input.empty()) return;
  const Code_Page& page = *pages[static_cast<unsigned char>(input[0]) % pages.size()];
  const std::string_view bytes = input.substr(1);

  const Encoding detected = Detect_Encoding(bytes);
  for (const Encoding encoding : {Encoding::Utf8, Encoding::Utf8_Bom, Encoding::Utf16_Le_Bom,
                                  Encoding::Utf16_Be_Bom, Encoding::Code_Page}) {
    const Decoded decoded = Decode(bytes, encoding, page);
    Require(Is_Utf8(decoded.text), "decoded text is UTF-8");
    Require(Decode_Moved(std::string(bytes), encoding, page).text == decoded.text,
            "moved bytes decode to the same");
    const bool wide = encoding == Encoding::Utf16_Le_Bom || encoding == Encoding::Utf16_Be_Bom;
    if (!wide)
      Require(std::count(bytes.begin(), bytes.end(), '\n') ==
                  std::count(decoded.text.begin(), decoded.text.end(), '\n'),
              "no line end is lost or made");
    if (decoded.bad_bytes > 0) {
      Require(decoded.first_bad < bytes.size(), "the first bad byte is a byte of the file");
      Require(decoded.text.compare(decoded.first_bad_text, 3, "\uFFFD") == 0,
              "and U+FFFD stands for it");
    } else if (const auto back = Encode(decoded.text, encoding, page)) {
      const std::string file = std::string(Byte_Order_Mark(encoding)) + *back;
      Require(Decode(file, encoding, page).text == decoded.text, "what is encoded decodes again");
      if (encoding == detected && encoding != Encoding::Code_Page)
        Require(file == bytes, "Unicode files come back byte by byte");
    } else {
      Require(page.Number() == 65001 && encoding == Encoding::Code_Page,
              "only U+FFFD itself cannot be encoded again");
    }
    if (const auto encoded = Encode(bytes, encoding, page)) {
      const Decoded again =
          Decode(std::string(Byte_Order_Mark(encoding)) + *encoded, encoding, page);
      Require(again.text == bytes && again.bad_bytes == 0, "any text that encodes decodes again");
    }
  }
}

}  // namespace oru::fuzz
