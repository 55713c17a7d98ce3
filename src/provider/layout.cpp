// SPDX-License-Identifier: MIT
#include "provider/layout.h"

#include <cstring>

#include "host/line_class.h"
#include "provider/lines.h"
#include "service/text.h"

namespace oru::provider {
namespace {

/// What follows the word at the text's beginning; nothing if the text does not begin with it.
std::optional<std::string_view> Behind_Word(std::string_view text, std::string_view word) {
  if (!Begins_With(text, word)) return std::nullopt;
  const std::string_view rest = text.substr(word.size());
  if (!rest.empty() && rest.front() != ' ' && rest.front() != '\t') return std::nullopt;
  return Skip_Blanks(rest);
}

bool Is_Version(std::string_view text) {
  const auto rest = Behind_Word(text, "version");
  return rest && !rest->empty() && rest->front() >= '0' && rest->front() <= '9';
}

/// A reference to a control library, between VERSION and the layout block of a form.
bool Is_Object(std::string_view text) {
  if (!Begins_With(text, "object")) return false;
  const std::string_view rest = Skip_Blanks(text.substr(6));
  return rest.starts_with('=') && Skip_Blanks(rest.substr(1)).starts_with('"');
}

enum class Block_Line { Begin, End, Property, Other };

Block_Line Kind_In_Block(std::string_view line) {
  const std::string_view text = Cut_Blanks(Skip_Blanks(line));
  if (text.empty()) return Block_Line::Property;
  const std::string_view key = Cut_Blanks(text.substr(0, text.find('=')));
  const bool is_assignment = key.size() < text.size();
  if (is_assignment && !key.empty() && key.find_first_of(" \t\"':") == key.npos)
    return Block_Line::Property;
  if (Behind_Word(text, "beginproperty")) return Block_Line::Begin;
  if (const auto rest = Behind_Word(text, "begin"))
    return rest->find_first_of("=(:\"'") == rest->npos ? Block_Line::Begin : Block_Line::Other;
  for (const std::string_view word : {"end", "endproperty"}) {
    const auto rest = Behind_Word(text, word);
    if (rest && rest->empty()) return Block_Line::End;
  }
  return Block_Line::Other;
}

/// End of the block whose first line begins at `begin`. An `Attribute` line ends it too, so that a
/// lost END does not hide what follows; any other line of code means that it is no block.
std::optional<std::size_t> Block_End(std::string_view text, std::size_t begin) {
  int depth = 0;
  for (std::size_t at = begin; at < text.size();) {
    const Line line = Line_At(text, at);
    const std::string_view content = line.Content(text);
    switch (Kind_In_Block(content)) {
      case Block_Line::Begin:
        ++depth;
        break;
      case Block_Line::End:
        if (--depth == 0) return line.next;
        break;
      case Block_Line::Property:
        if (depth == 0) return std::nullopt;
        break;
      case Block_Line::Other:
        if (depth > 0 && Parse_Attribute(content)) return at;
        return std::nullopt;
    }
    at = line.next;
  }
  return std::nullopt;
}

bool Is_True(std::string_view value) {
  return service::Equal_No_Case(value, "True") || value == "-1";
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  Layout Scan() {
    bool continued = false;  // the line before goes on in this one, which begins no statement
    for (std::size_t at = 0; at < text_.size();) {
      const Line line = Line_At(text_, at);
      const std::string_view content = line.Content(text_);
      const std::size_t hidden_end = continued ? at : Hidden_End(line, content);
      if (hidden_end > at) {
        Hide(at, hidden_end);
        at = hidden_end;
        continue;
      }
      layout_.code_hash = Hash_Line(layout_.code_hash, content);
      continued = host::Is_Continued(content);
      at = line.next;
    }
    return std::move(layout_);
  }

 private:
  /// Where the hidden lines end that begin with this one; its own beginning if it is code.
  std::size_t Hidden_End(const Line& line, std::string_view content) {
    const std::string_view text = Skip_Blanks(content);
    const char first = text.empty() ? '\0' : text.front();
    if (first == 'A' || first == 'a') {
      if (const auto attribute = Parse_Attribute(content)) {
        at_top_ = false;
        Note(*attribute);
        std::size_t end = line.next;
        for (Line last = line; host::Is_Continued(last.Content(text_)) && end < text_.size();
             end = last.next)
          last = Line_At(text_, end);
        return end;
      }
    }
    if (!at_top_ || text.empty()) return line.begin;
    if (Is_Version(text) && !versioned_) {
      versioned_ = true;
      return line.next;
    }
    if (versioned_ && Is_Object(text)) return line.next;
    if (Kind_In_Block(content) == Block_Line::Begin) {
      if (const auto end = Block_End(text_, line.begin)) {
        if (layout_.block.end == 0) layout_.block = {line.begin, *end};
        return *end;
      }
    }
    at_top_ = false;
    return line.begin;
  }

  void Hide(std::size_t begin, std::size_t end) {
    if (!layout_.hidden.empty() && layout_.hidden.back().end == begin)
      layout_.hidden.back().end = end;
    else
      layout_.hidden.push_back({begin, end});
  }

  void Note(const Attribute& attribute) {
    if (!attribute.member.empty()) return;
    if (service::Equal_No_Case(attribute.name, "VB_Name")) {
      auto literal = Parse_Literal(attribute.value);
      if (literal && !layout_.name) layout_.name = std::move(literal->content);
    } else if (service::Equal_No_Case(attribute.name, "VB_PredeclaredId")) {
      layout_.predeclared = Is_True(attribute.value);
    } else if (service::Equal_No_Case(attribute.name, "VB_Exposed")) {
      layout_.exposed = Is_True(attribute.value);
    }
  }

  std::string_view text_;
  Layout layout_;
  bool at_top_ = true;  ///< neither code nor an attribute came yet
  bool versioned_ = false;
};

}  // namespace

Layout Scan_Layout(std::string_view text) {
  return Scanner(text).Scan();
}

std::optional<Attribute> Parse_Attribute(std::string_view line) {
  const auto behind = Behind_Word(Skip_Blanks(line), "attribute");
  if (!behind) return std::nullopt;
  const std::size_t closing = behind->starts_with('[') ? behind->find(']') : 0;
  if (closing == std::string_view::npos) return std::nullopt;
  const std::string_view path = behind->substr(0, behind->find_first_of(" \t=\"'(:", closing));
  // All attributes are called VB_..., which tells them from code that merely looks similar.
  const std::size_t dot = service::Find_No_Case(path, ".vb_");
  Attribute attribute;
  if (dot != std::string_view::npos && dot > 0) {
    attribute.member = path.substr(0, dot);
    attribute.name = path.substr(dot + 1);
  } else if (Begins_With(path, "vb_")) {
    attribute.name = path;
  } else {
    return std::nullopt;
  }
  const std::string_view rest = Skip_Blanks(behind->substr(path.size()));
  if (rest.starts_with('='))
    attribute.value = Cut_Blanks(Skip_Blanks(rest.substr(1)));
  else if (Cut_Blanks(rest) != "_")
    return std::nullopt;
  return attribute;
}

std::optional<Literal> Parse_Literal(std::string_view text) {
  if (!text.starts_with('"')) return std::nullopt;
  Literal literal;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '"') {
      if (at + 1 == text.size() || text[at + 1] != '"') {
        literal.rest = text.substr(at + 1);
        return literal;
      }
      ++at;
    }
    literal.content += text[at];
  }
  return std::nullopt;
}

void Remove_Hidden(std::string& text, const std::vector<Range>& hidden) {
  if (hidden.empty()) return;
  std::size_t to = hidden.front().begin;
  for (std::size_t i = 0; i < hidden.size(); ++i) {
    const std::size_t from = hidden[i].end;
    const std::size_t end = i + 1 < hidden.size() ? hidden[i + 1].begin : text.size();
    std::memmove(text.data() + to, text.data() + from, end - from);
    to += end - from;
  }
  text.resize(to);
}

}  // namespace oru::provider
