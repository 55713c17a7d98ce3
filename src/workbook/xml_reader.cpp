// SPDX-License-Identifier: MIT
#include "workbook/xml_reader.h"

#include <fmt/format.h>
#include <libxml/parser.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace oru::workbook {
namespace {

std::string_view View(const xmlChar* text) {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

struct Free_Parser {
  void operator()(xmlParserCtxt* parser) const {
    if (parser->myDoc != nullptr) xmlFreeDoc(parser->myDoc);
    xmlFreeParserCtxt(parser);
  }
};

constexpr std::size_t kMost_Levels = 256, kMost_Attributes = 512;

// Counts the attributes of each tag ahead of the library, which compares each with all others.
class Tag_Guard {
 public:
  // False for a tag of more attributes than any part has.
  bool Pass(std::string_view piece) {
    for (std::size_t at = 0; at < piece.size(); ++at) {
      if (quote_ != 0) {
        at = piece.find(quote_, at);
        if (at == piece.npos) return true;
        quote_ = 0;
      } else if (!in_tag_) {
        at = piece.find('<', at);
        if (at == piece.npos) return true;
        in_tag_ = first_ = true;
        attributes_ = 0;
        begin_.clear();
      } else if (!begin_.empty() || (first_ && (piece[at] == '!' || piece[at] == '?'))) {
        // What is no tag ends with its own mark; there is nothing to count in it.
        if (!In_Mark(piece[at])) in_tag_ = false;
      } else if (piece[at] == '>') {
        in_tag_ = false;
      } else if (first_ = false; piece[at] == '"' || piece[at] == '\'') {
        quote_ = piece[at];
        if (++attributes_ > kMost_Attributes) return false;
      }
    }
    return true;
  }

 private:
  // In a comment, a section of text, or a declaration; false at its end.
  bool In_Mark(char c) {
    if (begin_.size() < kLongest) begin_ += c;
    tail_ = tail_.substr(tail_.size() < 2 ? 0 : 1) + c;
    if (c != '>') return true;
    if (begin_.starts_with("!--")) return begin_.size() < 6 || !tail_.ends_with("-->");
    if (begin_.starts_with("![CDATA[")) return !tail_.ends_with("]]>");
    return false;
  }

  static constexpr std::size_t kLongest = 8;
  bool in_tag_ = false, first_ = false;  // first: at the character behind "<"
  char quote_ = 0;
  std::size_t attributes_ = 0;
  std::string begin_, tail_;  // how the mark begins, and its last three characters
};

class Parser {
 public:
  Parser(const Xml_Events& events, Xml_Form form)
      : events_(events), lenient_(form == Xml_Form::Lenient) {
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = Begin;
    handler.endElementNs = End;
    handler.characters = Text;
    handler.cdataBlock = Text;
    handler.internalSubset = Subset;
    parser_.reset(xmlCreatePushParserCtxt(&handler, this, nullptr, 0, nullptr));
    if (parser_)
      xmlCtxtUseOptions(parser_.get(), XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR |
                                           XML_PARSE_NOWARNING |
                                           (lenient_ ? XML_PARSE_RECOVER : 0));
  }

  // False once nothing more is wanted.
  bool Take(std::string_view piece) {
    if (!guard_.Pass(piece)) failed_ = true;
    while (!piece.empty() && !failed_) {
      const auto size = std::min<std::size_t>(piece.size(), std::numeric_limits<int>::max() / 2);
      Parse(piece.substr(0, size), 0);
      piece.remove_prefix(size);
    }
    return !failed_;
  }
  bool Finish() {
    if (!failed_) Parse({}, 1);
    return !failed_;
  }

 private:
  void Parse(std::string_view piece, int last) {
    const int code =
        parser_ ? xmlParseChunk(parser_.get(), piece.data(), static_cast<int>(piece.size()), last)
                : XML_ERR_NO_MEMORY;
    if (code != XML_ERR_OK && !lenient_) failed_ = true;
  }

  static void Begin(void* user, const xmlChar* name, const xmlChar*, const xmlChar*, int,
                    const xmlChar**, int count, int, const xmlChar** attributes) {
    auto& self = *static_cast<Parser*>(user);
    if (++self.level_ > kMost_Levels) return self.Stop();
    Xml_Element element{View(name), {}};
    for (int i = 0; i < count; ++i) {  // name, prefix, name space, begin and end of the value
      const xmlChar* const* const at = attributes + static_cast<std::ptrdiff_t>(i) * 5;
      element.attributes.push_back(
          {View(at[0]),
           at[1] != nullptr,
           {reinterpret_cast<const char*>(at[3]), static_cast<std::size_t>(at[4] - at[3])}});
    }
    if (self.events_.begin) self.events_.begin(element);
  }
  static void End(void* user, const xmlChar* name, const xmlChar*, const xmlChar*) {
    auto& self = *static_cast<Parser*>(user);
    --self.level_;
    if (self.events_.end) self.events_.end(View(name));
  }
  static void Text(void* user, const xmlChar* text, int size) {
    const auto& self = *static_cast<Parser*>(user);
    if (self.events_.text)
      self.events_.text({reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)});
  }
  static void Subset(void* user, const xmlChar*, const xmlChar*, const xmlChar*) {
    static_cast<Parser*>(user)->Stop();
  }
  void Stop() {
    failed_ = true;
    xmlStopParser(parser_.get());
  }

  const Xml_Events& events_;
  bool lenient_, failed_ = false;
  std::size_t level_ = 0;
  Tag_Guard guard_;
  std::unique_ptr<xmlParserCtxt, Free_Parser> parser_;
};

std::string Damaged(std::string_view part) {
  return fmt::format("部品「{}」の XML が正しくありません。", part);
}

}  // namespace

std::string_view Xml_Element::Get(std::string_view attribute, bool prefixed) const {
  for (const Xml_Attribute& candidate : attributes)
    if (candidate.name == attribute && candidate.prefixed == prefixed) return candidate.value;
  return {};
}

std::string Read_Xml(const container::Archive& archive, std::string_view part,
                     const Xml_Events& events, Xml_Form form) {
  Parser parser(events, form);
  std::string error =
      archive.Read_Pieces(part, [&](std::string_view piece) { return parser.Take(piece); });
  if (error.empty() && !parser.Finish()) error = Damaged(part);
  return error;
}

std::string Parse_Xml(std::string_view bytes, std::string_view part, const Xml_Events& events,
                      Xml_Form form) {
  Parser parser(events, form);
  const bool whole = parser.Take(bytes) && parser.Finish();
  return whole ? std::string() : Damaged(part);
}

}  // namespace oru::workbook
