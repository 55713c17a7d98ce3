// SPDX-License-Identifier: MIT
// The analysis file between its lines and its bytes: lines ended by CR LF, joined to blocks, and a
// last line that says of all others that they are whole. What is written here is read here, and
// nothing else is accepted. docs/formats.md tells the layout.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "analyser/table_text.h"
#include "service/file_store.h"

namespace oru::analyser {

/// A running checksum (XXH3-64).
class Checksum {
 public:
  Checksum();
  ~Checksum();
  Checksum(const Checksum&) = delete;
  Checksum& operator=(const Checksum&) = delete;
  void Add(std::string_view bytes);
  /// Sixteen hexadecimal digits.
  [[nodiscard]] std::string Text() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Writes lines to a new file; whoever made the file commits it.
class Line_Writer {
 public:
  explicit Line_Writer(service::New_File& file);
  void Put(std::string_view tag, std::string_view payload);
  /// Writes the last line. False if a line held a line end, so that the file could not be read.
  [[nodiscard]] bool End(const Tables& tables);

 private:
  void Flush();

  service::New_File& file_;
  Checksum sum_;
  std::string buffer_;
  bool bad_ = false;
};

/// Cuts blocks of bytes into lines again and gives them to the reader of the tables.
class Line_Reader {
 public:
  /// `module_done` is called behind each module.
  Line_Reader(Table_Reader& reader, std::function<void()> module_done)
      : reader_(reader), module_done_(std::move(module_done)) {}

  /// Takes the next bytes. False once the file cannot be used.
  bool Take(std::string_view block);
  /// After the last block: empty, or why the file cannot be used. The reader's tables are good only
  /// in the former case.
  [[nodiscard]] std::string Finish();

 private:
  bool Fail(std::string_view why);
  bool Line(std::string_view line);

  Table_Reader& reader_;
  std::function<void()> module_done_;
  Checksum sum_;
  std::string rest_, why_, line_marks_;
  bool ended_ = false, summed_ = false;
};

}  // namespace oru::analyser
