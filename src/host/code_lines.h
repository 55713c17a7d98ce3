// SPDX-License-Identifier: MIT
// The text of one module as numbered lines. The loaded text is one buffer, text written later goes
// to a second one, and a line is an offset and a length (8 bytes) and its verdict (1 byte). Lines
// stand in blocks of about 512, so that an edit at any place moves one block only; each block counts
// its verdicts, so that a search for the next header, end or code line skips whole blocks. The
// buffers are made new when more than half of them is no longer used.
// Any of CR LF, LF, CR and CR CR LF ends a line; a line of blanks and tabs is held as an empty one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/line_class.h"

namespace oru::host {

class Code_Lines {
 public:
  /// Largest text of a module in bytes; more throws `Host_Error`.
  static constexpr std::size_t kMax_Bytes = (std::size_t{1} << 31) - 16;

  Code_Lines() { Load({}); }
  /// Takes a whole text instead of the one held; its final line end begins no further line.
  void Load(std::string text);

  [[nodiscard]] int Count() const { return count_; }
  /// One line, 1-based, without its line end; good until the next edit.
  [[nodiscard]] std::string_view Line(int line) const;
  /// Lines joined by CR LF, no final one. All lines must exist.
  [[nodiscard]] std::string Join(int start, int count) const;

  /// Lines from `start` on that stand in one piece, with CR LF between them.
  struct Run {
    int count = 0;
    std::string_view text;
  };
  [[nodiscard]] Run Run_From(int start) const;

  /// Puts lines in the place of `removed` lines from `start` on. They must exist; `start` may be
  /// Count() + 1 when nothing is removed. The text's last line end begins one more line.
  void Replace(int start, int removed, std::string_view text);
  void Delete(int start, int count);

  /// The state in front of a line (1 .. Count() + 1).
  [[nodiscard]] Line_State Before(int line) const;
  /// The first line at or behind `line`, or the last one at or before it, whose verdict has one of
  /// the flags; 0 if there is none. `line` may lie outside the text by one.
  [[nodiscard]] int Next_With(int line, std::uint8_t flags) const;
  [[nodiscard]] int Prev_With(int line, std::uint8_t flags) const;
  /// How many lines before `line` open a procedure, and the line of the n-th such (0-based; 0 if
  /// there is none).
  [[nodiscard]] int Openings_Before(int line) const;
  [[nodiscard]] int Nth_Opening(int n) const;

  /// Grows with every change of the text.
  [[nodiscard]] std::uint64_t Edits() const { return edits_; }
  /// Grows with every change that touches a header or an end.
  [[nodiscard]] std::uint64_t Structure_Edits() const { return structure_edits_; }
  /// Bytes held, the line table included.
  [[nodiscard]] std::size_t Memory() const;

 private:
  struct Span {
    std::uint32_t at;  ///< offset; the top bit chooses the buffer of written text
    std::uint32_t size;
  };
  struct Block {
    std::vector<Span> spans;
    std::vector<std::uint8_t> verdicts;
    int opens = 0, closes = 0, codes = 0;
    [[nodiscard]] bool Has(std::uint8_t flags) const;
    void Count_Again();
    void Put(std::size_t index, std::uint8_t verdict);
  };
  struct Place {
    std::size_t block, index;
  };

  [[nodiscard]] std::string_view View(Span span) const;
  [[nodiscard]] Place Find(int line) const;
  [[nodiscard]] std::uint8_t Verdict(int line) const;
  [[nodiscard]] std::vector<Span> Add_Text(std::string_view text);
  void Splice(int start, int removed, const std::vector<Span>& added);
  void Erase(int start, int count);
  void Insert(int start, const Span* spans, std::size_t count);
  void Join_Small(std::size_t block);
  void Number_From(std::size_t block);
  /// Judges `count` lines from `line` on, and on from there until the state is as it was.
  void Judge(int line, int count, Line_State old_state_behind);
  void Clean_Up();

  std::string loaded_, written_;
  std::vector<Block> blocks_;
  std::vector<int> first_;  ///< 1-based number of each block's first line
  int count_ = 0;
  std::size_t live_ = 0;  ///< bytes of both buffers that lines use, line ends included
  std::uint64_t edits_ = 0, structure_edits_ = 0;
};

}  // namespace oru::host
