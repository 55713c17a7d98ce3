// SPDX-License-Identifier: MIT
// The options that the passes read, and how comments become the comment text of a module or a
// member: the first comment line, or, with head words set in the options, the first one that begins
// with a head word.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace oru::service {
class Settings;
}

namespace oru::analyser {

/// The options that the passes read, prepared once for a run.
struct Anl_Options {
  explicit Anl_Options(const service::Settings& settings);

  std::vector<std::string> Mdl_Tags;  ///< head words of module comments, empty ones left out
  std::vector<std::string> Mem_Tags;  ///< head words of member comments
  /// Characters removed from comments, at most twelve, with the apostrophe: the ASCII ones (letters
  /// in both cases) marked, the others in lower case.
  std::array<bool, 128> Del_Ascii{};
  std::vector<char32_t> Del_Wide;
  [[nodiscard]] bool Is_Removed(char32_t character) const;
  bool Del_Tag = true;  ///< the head word is removed from the comment
  std::string Evt_Key;  ///< a name's beginning or end that makes a Sub an event
};

/// A comment without apostrophes and without the option's characters, trimmed.
[[nodiscard]] std::string Rev_CTx_Fmt(const Anl_Options& options, std::string_view text);

/// Accumulates the comment text of one module (`Get_Mdl_CTx`) or member (`Get_Mem_CTx`).
class Cmt_Text {
 public:
  Cmt_Text(const Anl_Options& options, const std::vector<std::string>& tags)
      : options_(options), tags_(tags) {}

  /// Offers a comment statement; ignored once the text is complete.
  void Add(std::string_view comment_statement);
  /// A code statement of a declaration section: an `Option` statement makes the comment above it
  /// the module's, any other one discards it.
  void Meet_Code(bool is_option);
  /// The text at the end of the section or member; the first comment if nothing completed it.
  [[nodiscard]] std::string Take();

 private:
  const Anl_Options& options_;
  const std::vector<std::string>& tags_;
  std::string first_, value_, tag_;
  bool final_ = false;
};

}  // namespace oru::analyser
