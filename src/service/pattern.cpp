// SPDX-License-Identifier: MIT
#include "service/pattern.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <optional>

#include "service/text.h"

namespace oru::service {
namespace {

// A line takes a few steps; what needs more than these never ends in practice.
constexpr std::uint32_t kMost_Steps = 2'000'000;
constexpr std::uint32_t kMost_Depth = 20'000;
constexpr std::uint32_t kMost_Heap = 32 * 1024;  // KiB
constexpr std::size_t kFirst_Stack = std::size_t{32} << 10, kMost_Stack = std::size_t{1} << 20;

// "\uXXXX" and "\xXX" as in the host; "[]" is an empty list; a reference to a group that took no
// part is empty; "$" is the very end.
constexpr std::uint32_t kOptions = PCRE2_UTF | PCRE2_NO_UTF_CHECK | PCRE2_DOLLAR_ENDONLY |
                                   PCRE2_ALT_BSUX | PCRE2_MATCH_UNSET_BACKREF |
                                   PCRE2_ALLOW_EMPTY_CLASS | PCRE2_NEVER_BACKSLASH_C;

struct Free_Code {
  void operator()(pcre2_code* code) const { pcre2_code_free(code); }
};
struct Free_Data {
  void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};
struct Free_Compile {
  void operator()(pcre2_compile_context* context) const { pcre2_compile_context_free(context); }
};
struct Free_Match {
  void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
};
struct Free_Stack {
  void operator()(pcre2_jit_stack* stack) const { pcre2_jit_stack_free(stack); }
};

PCRE2_SPTR Bytes_Of(std::string_view text) {
  // The interface takes unsigned bytes.
  return reinterpret_cast<PCRE2_SPTR>(text.data());  // NOLINT(*-reinterpret-cast)
}

}  // namespace

Pattern_Limit::Pattern_Limit()
    : Sys_Error(kOwn_Error, "パターン文字列の照合が制限を超えたため、検索を中止しました。") {}

struct Pattern::Compiled {
  std::unique_ptr<pcre2_code, Free_Code> code;
  std::unique_ptr<pcre2_match_data, Free_Data> data;
  std::unique_ptr<pcre2_match_context, Free_Match> context;
  std::unique_ptr<pcre2_jit_stack, Free_Stack> stack;

  // The first match at or behind `from`.
  [[nodiscard]] std::optional<Text_Span> Match(std::string_view text, std::size_t from) const {
    const int found = pcre2_match(code.get(), Bytes_Of(text), text.size(), from, PCRE2_NO_UTF_CHECK,
                                  data.get(), context.get());
    if (found == PCRE2_ERROR_NOMATCH) return std::nullopt;
    if (found < 0) throw Pattern_Limit();
    const PCRE2_SIZE* ends = pcre2_get_ovector_pointer(data.get());
    return Text_Span{ends[0], ends[1] < ends[0] ? 0 : ends[1] - ends[0]};
  }
};

Pattern::Pattern(std::string_view pattern, bool ignore_case) {
  if (!Is_Utf8(pattern)) return;
  auto compiled = std::make_unique<Compiled>();
  const std::unique_ptr<pcre2_compile_context, Free_Compile> context(
      pcre2_compile_context_create(nullptr));
  if (!context) return;
  pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
  pcre2_set_compile_extra_options(context.get(), PCRE2_EXTRA_ALT_BSUX);
  int error = 0;
  PCRE2_SIZE place = 0;
  compiled->code.reset(pcre2_compile(Bytes_Of(pattern), pattern.size(),
                                     kOptions | (ignore_case ? PCRE2_CASELESS : 0), &error, &place,
                                     context.get()));
  if (!compiled->code) return;
  (void)pcre2_jit_compile(compiled->code.get(), PCRE2_JIT_COMPLETE);  // without it, it is slower
  compiled->data.reset(pcre2_match_data_create_from_pattern(compiled->code.get(), nullptr));
  compiled->context.reset(pcre2_match_context_create(nullptr));
  compiled->stack.reset(pcre2_jit_stack_create(kFirst_Stack, kMost_Stack, nullptr));
  if (!compiled->data || !compiled->context) return;
  pcre2_set_match_limit(compiled->context.get(), kMost_Steps);
  pcre2_set_depth_limit(compiled->context.get(), kMost_Depth);
  pcre2_set_heap_limit(compiled->context.get(), kMost_Heap);
  if (compiled->stack)
    pcre2_jit_stack_assign(compiled->context.get(), nullptr, compiled->stack.get());
  compiled_ = std::move(compiled);
}

Pattern::~Pattern() = default;
Pattern::Pattern(Pattern&&) noexcept = default;
Pattern& Pattern::operator=(Pattern&&) noexcept = default;

bool Pattern::Ok() const {
  return compiled_ != nullptr;
}

bool Pattern::Test(std::string_view text) const {
  return compiled_->Match(text, 0).has_value();
}

std::vector<Text_Span> Pattern::Matches(std::string_view text) const {
  std::vector<Text_Span> matches;
  std::size_t from = 0;
  while (from <= text.size()) {
    const auto match = compiled_->Match(text, from);
    if (!match) break;
    from = match->End();
    if (match->size > 0) {
      matches.push_back(*match);
    } else {
      if (from >= text.size()) break;
      (void)Next_Code_Point(text, from);
    }
  }
  return matches;
}

}  // namespace oru::service
