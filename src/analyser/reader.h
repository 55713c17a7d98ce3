// SPDX-License-Identifier: MIT
// The source reader: physical lines become logical statements, strings that all later tests look
// at by substring and exact word. It rests on the editor's own normalisation (canonical keywords,
// single blanks, nothing behind a line's end), so there is neither lexer nor tree.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace oru::analyser {

/// What a logical statement is.
enum class Stm_Kind { Blank, Comment, Code };

/// Joins the lines of a text, as `CodeModule::Lines` gives it, into statements. A statement still
/// open at the end of the text (its last line ends in " _") is dropped.
class Stm_Reader {
 public:
  /// `text` is lines joined by CR LF, and outlives the reader; `first_line` is the module line of
  /// its first one.
  Stm_Reader(std::string_view text, int first_line) : rest_(text), line_(first_line) {
    at_end_ = text.empty();
  }

  Stm_Reader(std::string&& text, int first_line) = delete;

  /// Reads the next statement; false at the end.
  [[nodiscard]] bool Next();

  [[nodiscard]] Stm_Kind Kind() const { return kind_; }
  /// The statement: its lines trimmed and joined, the continuation's underscore taken off.
  [[nodiscard]] const std::string& Cur_Stm() const { return statement_; }
  [[nodiscard]] std::string& Cur_Stm() { return statement_; }
  /// Module line of its first physical line, 1-based.
  [[nodiscard]] const int& Cur_Lin() const { return statement_line_; }
  /// Its physical lines.
  [[nodiscard]] int Line_Count() const { return line_count_; }

 private:
  std::string_view rest_;
  std::string statement_;
  Stm_Kind kind_ = Stm_Kind::Blank;
  int line_ = 1;
  int statement_line_ = 1;
  int line_count_ = 0;
  bool at_end_ = false;
};

/// Takes a line number off a statement: with p the first ":" or else the first blank, if the text
/// before p is numeric, the statement becomes the text from p + 2 on. For a number followed by a
/// blank one character of the statement is lost too; every reader of statements counts on that.
void Del_Label(std::string& statement);

/// Splits off the trailing comment: trims `statement` to the code in front of it and gives the
/// comment from its apostrophe on, empty if there is none. A comment statement is left alone.
/// `Rem` is no comment here.
std::string Sep_Comment(std::string& statement);

/// Masks the contents of string literals, one character for one: "?" for a half-width one, "？" for
/// a full-width one.
void Rev_Cst_Val(std::string& statement);

/// Cuts a type-declaration character off a name of two characters or more and gives the type that
/// it stands for; otherwise empty, and the name stays.
std::string_view Rev_Pic_Val(std::string& name);

/// True for one of the type-declaration characters % & ! # $ @.
[[nodiscard]] bool Is_Type_Character(char c);

/// True if the statement has to be split at ": " (it holds one that is not its very end).
[[nodiscard]] bool Has_Colon_List(std::string_view statement);

/// The trimmed pieces between ": ", empty ones left out. `statement` is masked before.
[[nodiscard]] std::vector<std::string_view> Split_Colons(std::string_view statement);

/// Branching and nesting of one member.
class Metrics {
 public:
  /// Counts one code statement, its comment taken off.
  void Chk_Metrics(std::string_view statement);
  [[nodiscard]] int Mem_Cpx() const { return conditions_; }
  [[nodiscard]] int Mem_Nst() const { return deepest_; }

 private:
  int conditions_ = 0;
  int depth_ = 0;
  int deepest_ = 0;
};

}  // namespace oru::analyser
