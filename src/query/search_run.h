// SPDX-License-Identifier: MIT
// One run of a search: the walk over the project's modules and members in table order, statement by
// statement, to the matcher of the kind. Kinds with two passes first collect candidate definitions
// and then look for their uses. It reads the live code; the tables give order, scopes and
// references. A fault (a With too deep, a pattern that does not end) leaves through it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "analyser/comments.h"
#include "analyser/definitions.h"
#include "analyser/tables.h"
#include "host/derived.h"
#include "query/query_context.h"
#include "query/result_rows.h"
#include "query/search_view.h"
#include "service/collection.h"
#include "service/pattern.h"
#include "service/text_find.h"

namespace oru::query {

class Search_Run {
 public:
  /// `view` has its conditions, words and scope; it gets the rows. `pattern` serves kind -1.
  Search_Run(const Query_Ctx& ctx, Search_View& view, Row_Order order,
             const service::Pattern* pattern);

  /// The walk and the report (`Src_Main` up to the result); the view's rows are sorted then.
  void Src_Main();

 private:
  /// A piece of a module that is searched as one: its lines belong to one member.
  struct Range {
    int first = 1, last = 0;  ///< lines of the module
    int header = 1;           ///< line of the header
  };
  struct Candidate {
    std::string Mdl, Mem, Lin, Nam;
    int Mem_Ix = 0, CMm_Sta = 1, Lno = 0;
  };
  /// Numbers of candidates, from 0, by their names in lower case.
  using Names = service::Text_Map<std::size_t>;
  static constexpr unsigned kLocal = 1, kOf_Module = 2, kPublic = 4;  ///< where names are known
  struct Pending {
    int Lno;
    std::string Lin;
  };
  /// A With and the targets within it, each with its statement until that was reported.
  struct With_Level {
    std::vector<std::string> Tgt;
    std::vector<std::unique_ptr<Pending>> Pnd;
  };
  static constexpr std::size_t kMost_With = 10;   ///< depth of With
  static constexpr unsigned kRead = 1, kSet = 2;  ///< flags of `Cnd_Flg`

  // The walk.
  void Src_Modul(int ag_Pass);
  void Search_Declarations(int ag_Pass);
  void Search_Member(int ag_Pass, const std::vector<Range>& ranges);
  void Search_References();
  void Set_Arguments();
  void Mark_Lines();
  void Src_Modul_Lop(int first, int last, int ag_Pass);
  void Dispatch(int ag_Pass);
  [[nodiscard]] bool Tes_CMd_Fnd();
  void Report_Candidates();
  void Set_Hit_Lst();
  void Set_Hit_At(int line, std::string_view names);
  [[nodiscard]] std::string Get_Def_Lin(int line) const;
  [[nodiscard]] std::string_view Line(int line) const {
    return lines_[static_cast<std::size_t>(line) - 1];
  }
  void Show_Progress(std::string_view text, std::size_t count, std::size_t total);

  // The matchers, each on `Src_Lin` and `tested_`.
  void Chk_RegEx();
  void Chk_Char();
  void Chk_Word();
  void Chk_With();
  void Chk_Value();
  void Chk_Const();
  void Chk_Comm();
  void Chk_Form();
  void Chk_Delec();
  void Chk_Block(char kind, std::string_view end);
  void Chk_Call();
  void Chk_RfArg();
  void Chk_EErSt();
  void Chk_ValCs();
  void Chk_Refer();

  /// The text to test; nothing if the statement is a comment that is not asked for.
  [[nodiscard]] const std::string* Pass_Gate(bool always_cut);
  [[nodiscard]] bool Any_Or_All(bool (Search_Run::*found)(std::size_t, const std::string&),
                                const std::string& text);
  [[nodiscard]] bool Has_Text(std::size_t word, const std::string& text);
  [[nodiscard]] bool Has_Word(std::size_t word, const std::string& padded);
  void Use_With(std::string_view statement);
  void Add_Hit_Name(std::string_view name);
  /// True for a scope digit that kinds 3, 4, 11, 12 accept here.
  [[nodiscard]] bool Is_Asked_Scope(char scope, bool several, bool friends) const;
  void Add_Candidate(const analyser::Def_Row& row);
  [[nodiscard]] const Names* Names_Of(std::string_view owner) const;
  [[nodiscard]] std::string_view Folded(std::string_view word) const;
  [[nodiscard]] const std::size_t* Find_Candidate(std::string_view word,
                                                  std::string_view before) const;
  void Use_Token(std::string_view padded, std::string_view token, std::size_t at,
                 std::string_view before);

  const Query_Ctx& ctx_;
  Search_View& view_;
  const Search_Cond& cond_;
  Row_Order order_;
  const service::Pattern* pattern_;
  analyser::Anl_Options options_;
  std::vector<service::Text_Finder> finders_;  ///< one for each word
  std::string_view Src_Dlm;
  std::string comment_characters_;

  // The module at hand.
  analyser::Tbl_Cur cur_;
  host::CodeModule* code_ = nullptr;
  std::string text_;
  std::vector<std::string_view> lines_;
  std::string_view Ref_Sec;
  // The member and the statement at hand.
  std::string Mem_Nam;
  int Mem_Ix = 0, CMm_Sta = 1, CMm_Bdy = 1;
  bool in_declare_ = false;
  std::string Src_Lin, Src_Hit;
  int Src_Lno = 0;
  std::vector<bool> may_hit_;  ///< by line, from 0: a word stands there; empty: not known
  std::string tested_, cut_;   ///< the statement without its label; without its comment
  std::vector<With_Level> Wth;
  bool Blk_On = false;
  int Dir_Nst = 0;
  std::vector<std::string> Arg_Lst;
  std::vector<service::Text_Finder> arguments_;
  std::vector<bool> Arg_Flg;
  std::string Arg_Set;
  std::vector<analyser::Def_Found> found_;
  // Candidates.
  std::vector<Candidate> Cnd_Row;
  /// By owner: "module, tab, member" of local ones, "module", or nothing of public ones, in lower
  /// case.
  service::Text_Map<Names> Cnd_Key;
  service::Text_Map<unsigned> known_;  ///< all names, with flags of where they are candidates
  const Names *local_ = nullptr, *of_module_ = nullptr,
              *public_ = nullptr;        ///< of the place at hand
  mutable std::string folded_;           ///< what `Folded` gave last
  std::string module_key_, member_key_;  ///< owners' keys of the place at hand
  std::vector<unsigned> Cnd_Flg;
  bool Cnd_Glb = false;
};

}  // namespace oru::query
