// SPDX-License-Identifier: MIT
// Which names hold objects of which classes: the class-instance table. Rows of the whole project
// come from the "InV" rows; the rows that a member declares stand behind them until the member
// ends, so that a search from the last row shadows as the language does. What a `Set` teaches about
// an `As Object` variable holds for one member only.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "analyser/tables.h"

namespace oru::analyser {

struct CsI_Row {
  std::string CsI_Nam;
  std::string CsI_Mdl;
  char CsI_Scp = 0;                  ///< as `Def_Scp`
  char CsI_Cls = 0;                  ///< as `InV_Cls`
  char CsI_Knd = 0;                  ///< 'V' or 'F'
  std::vector<std::string> CsI_Typ;  ///< all classes that the instance may have
  bool CsI_Rst = false;              ///< the next `Set` in this member replaces the classes
};

class Instances {
 public:
  /// Fills the table from the "InV" rows of all modules.
  explicit Instances(const Tables& tables);

  /// Drops the rows of the member that ended, and what it taught about objects.
  void Begin_Member();

  /// A declaration of a local name or parameter (mode 1). `text` is its words.
  void Declare(const Tables& tables, std::string_view text, std::string_view module);
  /// A `Set` or `With` statement (mode 2).
  void Bind(const Tables& tables, std::string_view text, std::string_view module);

  /// True if a row of that name (letter case aside) was ever added in this pass (`CsI_Col`).
  [[nodiscard]] bool Knows(std::string_view name) const;
  /// Number of names added so far; grows when `Knows` may answer differently.
  [[nodiscard]] std::size_t Name_Count() const { return names_.size(); }
  /// `Chk_CsI_Tbl`: the last row of that name that is not private to another module, or null. The
  /// next `Set` on an object of open class then starts its classes anew.
  [[nodiscard]] const CsI_Row* Find(std::string_view name, std::string_view module);

 private:
  struct Binding {
    std::string_view Nam;
    std::string_view Cls;
    char Flag;
  };
  /// `Chk_Cls_Inf`: which name the words bind to which class; an empty name for none.
  [[nodiscard]] static Binding Parse(const Tables& tables, std::string_view text);
  void Add(CsI_Row row);

  std::vector<CsI_Row> rows_;
  std::size_t base_ = 0;                               // rows from "InV"
  service::Text_Map<std::vector<std::size_t>> index_;  // name -> rows, ascending
  std::unordered_set<std::string, service::Text_Hash, std::equal_to<>> names_;  // folded
  std::vector<std::size_t> touched_;  // base rows that the member taught something
};

}  // namespace oru::analyser
