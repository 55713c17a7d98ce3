// SPDX-License-Identifier: MIT
#include "query/chart_dot.h"

#include <fmt/format.h>

#include <map>
#include <utility>
#include <vector>

#include "service/text.h"

namespace oru::query {

namespace {

// A quoted string of the language: in it only quote and backslash mean something.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : service::Without_Controls(text)) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

class Dot_Writer {
 public:
  explicit Dot_Writer(const Frm_Chart& chart) : chart_(chart) {
    for (const Chart_Node& node : chart.Nodes)
      if (!node.Mem.empty())
        numbers_.push_back(Add(node));
      else
        numbers_.push_back(kNone);
  }

  Dot_Graph Write() {
    out_ = std::string(kDot_Begin) +
           "calls {\n  rankdir=LR;\n"
           "  node [shape=box, style=rounded, fontname=\"sans-serif\"];\n"
           "  graph [fontname=\"sans-serif\", style=rounded, color=gray];\n";
    Clusters();
    Edges();
    out_ += "}\n";
    return {std::move(out_), procedures_.size()};
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Procedure {
    std::string module, member;
    bool more = false;
  };

  std::size_t Add(const Chart_Node& node) {
    const auto [at, fresh] = by_name_.try_emplace({node.Mdl, node.Mem}, procedures_.size());
    if (fresh) {
      procedures_.push_back({node.Mdl, node.Mem});
      by_module_[node.Mdl].push_back(at->second);
    }
    Procedure& procedure = procedures_[at->second];
    procedure.more = procedure.more || node.Mark == Chart_Mark::More;
    return at->second;
  }

  void Clusters() {
    std::size_t number = 0;
    for (const auto& [module, members] : by_module_) {
      out_ += fmt::format("  subgraph cluster_{} {{\n    label={};\n", number++, Quoted(module));
      for (const std::size_t i : members) {
        const Procedure& procedure = procedures_[i];
        const bool root = procedure.module == chart_.Crt_RMd && procedure.member == chart_.Crt_RMm;
        const std::string label =
            procedure.member + std::string(procedure.more ? Mark_Text(Chart_Mark::More) : "");
        out_ +=
            fmt::format("    p{} [label={}{}];\n", i, Quoted(label), root ? ", penwidth=3" : "");
      }
      out_ += "  }\n";
    }
  }

  void Edges() {
    std::map<std::pair<std::size_t, std::size_t>, bool> edges;  // true: error handling only
    for (std::size_t i = 0; i < chart_.Nodes.size(); ++i) {
      const Chart_Node& node = chart_.Nodes[i];
      if (numbers_[i] == kNone || node.Parent < 0) continue;
      const std::size_t above = numbers_[static_cast<std::size_t>(node.Parent)];
      if (above == kNone) continue;
      const bool up = chart_.Crt_Mod == kCallers;
      const auto [at, fresh] = edges.try_emplace(
          up ? std::pair{numbers_[i], above} : std::pair{above, numbers_[i]}, node.Error_Section);
      at->second = at->second && node.Error_Section;
    }
    for (const auto& [ends, dashed] : edges)
      out_ += fmt::format("  p{} -> p{}{};\n", ends.first, ends.second,
                          dashed ? " [style=dashed]" : "");
  }

  const Frm_Chart& chart_;
  std::vector<std::size_t> numbers_;  // by row: the procedure
  std::vector<Procedure> procedures_;
  std::map<std::pair<std::string, std::string>, std::size_t> by_name_;
  std::map<std::string, std::vector<std::size_t>> by_module_;
  std::string out_;
};

}  // namespace

Dot_Graph Get_Dot(const Frm_Chart& chart) {
  return Dot_Writer(chart).Write();
}

}  // namespace oru::query
