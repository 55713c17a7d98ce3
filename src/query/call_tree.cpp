// SPDX-License-Identifier: MIT
#include "query/call_tree.h"

#include <unordered_set>

#include "analyser/kinds.h"
#include "service/text.h"

namespace oru::query {

namespace {

constexpr std::size_t kNone = Neighbours::kNone;
constexpr std::size_t kNotice_Step = 100;
constexpr std::string_view kFiller = " ";  // room behind the text for whoever draws the rows

struct Names {
  std::string_view module, member;
};
Names Split_Name(std::string_view key) {
  const std::size_t dot = key.find('.');
  return dot == std::string_view::npos ? Names{key, {}}
                                       : Names{key.substr(0, dot), key.substr(dot + 1)};
}

class Walk {
 public:
  Walk(const Walk_Needs& needs, Chart_Mode mode, const Chart_Cond& cond,
       std::vector<Chart_Node>& nodes)
      : needs_(needs), mode_(mode), cond_(cond), nodes_(nodes), near_(needs.Tbl, mode) {}

  Walk_End Run() {
    const std::string root = analyser::Full_Name(nodes_.back().Mdl, nodes_.back().Mem);
    stack_.push_back({root, Last(), near_.First(root)});
    while (!stack_.empty()) {
      Level& level = stack_.back();
      if (level.next == kNone) {
        stack_.pop_back();
        continue;
      }
      const std::size_t handle = level.next;
      level.next = near_.Next(handle);
      if (!Take(handle, level.node)) break;
    }
    return end_;
  }

 private:
  struct Level {
    std::string_view key;
    int node;
    std::size_t next;
  };

  [[nodiscard]] int Last() const { return static_cast<int>(nodes_.size()) - 1; }
  [[nodiscard]] std::string_view Child(const analyser::Ref_Record& record) const {
    return mode_ == kCallers ? record.Caller : record.Target;
  }

  // Adds the row of a record, and goes down into it. False at the end of the walk.
  bool Take(std::size_t handle, int parent) {
    const analyser::Ref_Record record = near_.Record(handle);
    if (!Is_Shown(record)) return true;
    const std::string_view key = Child(record);
    const Names names = Split_Name(key);
    Chart_Node& node = nodes_.emplace_back(
        Call_Node(needs_.Tbl, parent, nodes_[static_cast<std::size_t>(parent)].Depth + 1,
                  nodes_.size(), names.module, names.member));
    node.Bold = needs_.Bold;
    node.Error_Section = record.Ref_Flg == 'Y';
    node.Ref_Lns = record.Ref_Lns;
    const std::size_t first = Mark(node, key);
    node.Text.insert(0, Mark_Text(node.Mark));
    if (nodes_.size() % kNotice_Step == 0 && needs_.Progress) needs_.Progress(nodes_.size());
    end_.Too_Many = nodes_.size() >= kMost_Nodes;
    if (first == kNone || end_.Too_Many) return !end_.Too_Many;
    if (stack_.size() == kMost_Levels) {
      end_.Too_Deep = true;
      return true;
    }
    if (cond_.Crt_Cmp) expanded_.insert(key);
    stack_.push_back({key, Last(), first});
    return true;
  }

  // Sets a node's mark. The first record to go down into, kNone if there is nothing to do there.
  std::size_t Mark(Chart_Node& node, std::string_view key) {
    for (const Level& level : stack_)
      if (level.key == key) {
        node.Mark = Chart_Mark::Cycle;
        node.Cycle_Of = level.node;
        return kNone;
      }
    if (cond_.Crt_Cmp && expanded_.contains(key)) {
      node.Mark = Chart_Mark::Expanded;
      return kNone;
    }
    std::size_t first = near_.First(key);
    while (first != kNone && !Is_Shown(near_.Record(first))) first = near_.Next(first);
    if (first == kNone) return kNone;
    if (cond_.Crt_Lvl > 0 && node.Depth > cond_.Crt_Lvl) {
      node.Mark = Chart_Mark::More;
      return kNone;
    }
    return first;
  }

  [[nodiscard]] bool Is_Shown(const analyser::Ref_Record& record) {
    if (cond_.Crt_ErH && record.Ref_Flg == 'Y') return false;
    const std::string_view key = Child(record);
    const auto [at, fresh] = exists_.try_emplace(key, true);
    if (fresh && needs_.Chk_Prc_Exs) {
      const Names names = Split_Name(key);
      at->second = needs_.Chk_Prc_Exs(names.module, names.member);
    }
    return at->second;
  }

  const Walk_Needs& needs_;
  Chart_Mode mode_;
  const Chart_Cond& cond_;
  std::vector<Chart_Node>& nodes_;
  Neighbours near_;
  std::vector<Level> stack_;
  std::unordered_set<std::string_view> expanded_;
  std::unordered_map<std::string_view, bool> exists_;
  Walk_End end_;
};

}  // namespace

std::string_view Mark_Text(Chart_Mark mark) {
  switch (mark) {
    case Chart_Mark::Cycle:
      return "▼";
    case Chart_Mark::Expanded:
      return "▲";
    case Chart_Mark::More:
      return "＋";
    case Chart_Mark::None:
      break;
  }
  return {};
}

Neighbours::Neighbours(const analyser::Tables& tables, Chart_Mode mode)
    : text_(tables.Ref_All), mode_(mode) {
  if (mode == kCallers) {
    Index_Targets();
    return;
  }
  // A module's records stand together, in the order of the table.
  std::size_t begin = 0;
  modules_.reserve(tables.Ref_Tbl.Count());
  for (const auto& item : tables.Ref_Tbl) {
    modules_.emplace(item.key, Module_Text{begin, begin + item.value.size()});
    begin += item.value.size();
  }
}

analyser::Ref_Cursor Neighbours::At(std::size_t position) const {
  analyser::Ref_Cursor cursor{position, {}};
  (void)analyser::Set_Ref_Fld(text_, {}, cursor);
  return cursor;
}

void Neighbours::Index_Targets() {
  std::unordered_map<std::string_view, std::size_t> last;
  std::size_t position = 0;
  for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(text_, {}, cursor);
       position = cursor.Position) {
    const std::size_t entry = entries_.size();
    entries_.push_back({position, kNone});
    const auto [at, fresh] = last.try_emplace(cursor.Record.Target, entry);
    if (fresh) {
      first_.emplace(cursor.Record.Target, entry);
    } else {
      entries_[at->second].next = entry;
      at->second = entry;
    }
  }
}

std::size_t Neighbours::First(std::string_view key) {
  if (mode_ == kCallees) {
    const auto module = modules_.find(Split_Name(key).module);
    if (module == modules_.end()) return kNone;
    Module_Text& part = module->second;
    // Read when it is met first, so that a small tree in a large project costs little.
    for (std::size_t at = part.begin; !part.read && at < part.end;) {
      const analyser::Ref_Cursor cursor = At(at);
      first_.emplace(cursor.Record.Caller, at);
      at = cursor.Position;
    }
    part.read = true;
  }
  const auto found = first_.find(key);
  return found == first_.end() ? kNone : found->second;
}

std::size_t Neighbours::Next(std::size_t handle) const {
  if (mode_ == kCallers) return entries_[handle].next;
  const analyser::Ref_Cursor cursor = At(handle);
  if (cursor.Position >= text_.size()) return kNone;
  return At(cursor.Position).Record.Caller == cursor.Record.Caller ? cursor.Position : kNone;
}

analyser::Ref_Record Neighbours::Record(std::size_t handle) const {
  return At(mode_ == kCallers ? entries_[handle].position : handle).Record;
}

Walk_End Walk_Calls(const Walk_Needs& needs, Chart_Mode mode, const Chart_Cond& cond,
                    std::vector<Chart_Node>& nodes) {
  return Walk(needs, mode, cond, nodes).Run();
}

Chart_Node Call_Node(const analyser::Tables& tables, int parent, int depth, std::size_t number,
                     std::string_view module, std::string_view member) {
  Chart_Node node;
  node.Parent = parent;
  node.Depth = depth;
  node.Mdl = module;
  node.Mem = member;
  node.Key = "K" + service::Format_Five(static_cast<std::int64_t>(number) + 1) +
             analyser::Full_Name(module, member);
  node.Text = " " + node.Mem + std::string(kFiller);
  node.Tag = node.Mdl + "R";
  analyser::Tbl_Cur cur;
  if (analyser::Set_Mem_Fld(tables, cur, module, member)) node.Img = analyser::Set_Mem_Img(cur.Mem);
  return node;
}

}  // namespace oru::query
