// SPDX-License-Identifier: MIT
// An editor whose bars refuse their n-th call or hide one of them, and whose panes and windows can
// be replaced; all else is another editor's.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/memory_editor.h"
#include "support/failing_host.h"

namespace oru::test {

class Failing_Bars;

class Failing_Control final : public host::CommandBarControl {
 public:
  Failing_Control(host::CommandBarControl& button, Failing_Bars& bars)
      : real(button), bars_(bars) {}
  [[nodiscard]] std::string Caption() const override { return real.Caption(); }
  void Set_Caption(std::string_view caption) override;
  [[nodiscard]] host::ControlType Type() const override { return real.Type(); }
  [[nodiscard]] bool BeginGroup() const override { return real.BeginGroup(); }
  void Set_BeginGroup(bool begins) override;
  [[nodiscard]] bool Enabled() const override { return real.Enabled(); }
  void Set_Enabled(bool enabled) override { real.Set_Enabled(enabled); }
  [[nodiscard]] host::CommandBar* CommandBar() override;
  void Execute() override { real.Execute(); }
  void Delete() override { real.Delete(); }

  host::CommandBarControl& real;

 private:
  Failing_Bars& bars_;
};

class Failing_Bar final : public host::CommandBar, public host::CommandBarControls {
 public:
  Failing_Bar(host::CommandBar& real, Failing_Bars& bars) : real_(real), bars_(bars) {}
  [[nodiscard]] std::string Name() const override { return real_.Name(); }
  [[nodiscard]] bool Visible() const override { return real_.Visible(); }
  void Set_Visible(bool visible) override;
  [[nodiscard]] host::CommandBarControls& Controls() override { return *this; }
  void Delete() override { real_.Delete(); }
  [[nodiscard]] int Count() const override { return real_.Controls().Count(); }
  [[nodiscard]] host::CommandBarControl* Item(int position) override;
  [[nodiscard]] host::CommandBarControl* Item(std::string_view caption) override;
  [[nodiscard]] host::CommandBarControl& Add(host::ControlType type, int before) override;

 private:
  host::CommandBar& real_;
  Failing_Bars& bars_;
};

class Failing_Bars final : public host::CommandBars, public host::Events {
 public:
  explicit Failing_Bars(host::Memory_Command_Bars& real) : real_(real) {}
  [[nodiscard]] int Count() const override { return real_.Count(); }
  [[nodiscard]] host::CommandBar* Item(int position) override { return Wrap(real_.Item(position)); }
  [[nodiscard]] host::CommandBar* Item(std::string_view name) override {
    fuse.Burn();
    return name == hidden ? nullptr : Wrap(real_.Item(name));
  }
  [[nodiscard]] host::CommandBar& Add(std::string_view name) override {
    fuse.Burn();
    return *Wrap(&real_.Add(name));
  }
  [[nodiscard]] std::unique_ptr<host::CommandBarEvents> CommandBarEvents(
      host::CommandBarControl& button) override {
    fuse.Burn();
    return real_.CommandBarEvents(dynamic_cast<Failing_Control&>(button).real);
  }

  host::CommandBar* Wrap(host::CommandBar* bar) { return Wrapped<Failing_Bar>(made_bars_, bar); }
  host::CommandBarControl* Wrap(host::CommandBarControl* control) {
    return Wrapped<Failing_Control>(made_controls_, control);
  }

  Fuse fuse;
  std::string hidden;  ///< name of a bar that is not there

 private:
  template <class Wrapper, class Map, class Real>
  Wrapper* Wrapped(Map& made, Real* real) {
    if (real == nullptr) return nullptr;
    auto& wrapper = made[real];
    if (!wrapper) wrapper = std::make_unique<Wrapper>(*real, *this);
    return wrapper.get();
  }
  host::Memory_Command_Bars& real_;
  std::map<host::CommandBar*, std::unique_ptr<Failing_Bar>> made_bars_;
  std::map<host::CommandBarControl*, std::unique_ptr<Failing_Control>> made_controls_;
};

inline void Failing_Control::Set_Caption(std::string_view caption) {
  bars_.fuse.Burn();
  real.Set_Caption(caption);
}
inline void Failing_Control::Set_BeginGroup(bool begins) {
  bars_.fuse.Burn();
  real.Set_BeginGroup(begins);
}
inline host::CommandBar* Failing_Control::CommandBar() {
  bars_.fuse.Burn();
  return bars_.Wrap(real.CommandBar());
}
inline void Failing_Bar::Set_Visible(bool visible) {
  bars_.fuse.Burn();
  real_.Set_Visible(visible);
}
inline host::CommandBarControl* Failing_Bar::Item(int position) {
  return bars_.Wrap(real_.Controls().Item(position));
}
inline host::CommandBarControl* Failing_Bar::Item(std::string_view caption) {
  return bars_.Wrap(real_.Controls().Item(caption));
}
inline host::CommandBarControl& Failing_Bar::Add(host::ControlType type, int before) {
  bars_.fuse.Burn();
  return *bars_.Wrap(&real_.Controls().Add(type, before));
}

/// A window that only knows whether it is shown.
class Plain_Window final : public host::Window {
 public:
  Plain_Window(int type, bool visible) : type_(type), visible_(visible) {}
  [[nodiscard]] std::string Caption() const override { return {}; }
  [[nodiscard]] bool Visible() const override { return visible_; }
  void Set_Visible(bool visible) override { visible_ = visible; }
  [[nodiscard]] int WindowState() const override { return 0; }
  void Set_WindowState(int /*state*/) override {}
  [[nodiscard]] int Type() const override { return type_; }
  void Close() override { visible_ = false; }
  void SetFocus() override {}

 private:
  int type_;
  bool visible_;
};

/// One of two panes of a split window: a place of its own over the module of another pane.
class Second_Pane final : public host::CodePane {
 public:
  explicit Second_Pane(host::CodePane& first) : first_(first) {}
  [[nodiscard]] host::CodeModule& CodeModule() override { return first_.CodeModule(); }
  [[nodiscard]] host::Window& Window() override { return first_.Window(); }
  [[nodiscard]] host::Selection GetSelection() const override { return selection_; }
  void SetSelection(const host::Selection& selection) override { selection_ = selection; }
  [[nodiscard]] int TopLine() const override { return top_; }
  void Set_TopLine(int line) override { top_ = line; }
  [[nodiscard]] int CountOfVisibleLines() const override { return 10; }
  void Show() override {}

 private:
  host::CodePane& first_;
  host::Selection selection_;
  int top_ = 1;
};

template <class List, class Item_Type>
struct Plain_List final : List {
  [[nodiscard]] int Count() const override { return static_cast<int>(items.size()); }
  [[nodiscard]] Item_Type* Item(int position) override {
    return items.at(static_cast<std::size_t>(position) - 1);
  }
  std::vector<Item_Type*> items;
};

class Fake_Editor final : public host::VBE {
 public:
  explicit Fake_Editor(host::Memory_Editor& real) : bars(real.Bars()), real_(real) {}
  host::VBProject* ActiveVBProject() override { return real_.ActiveVBProject(); }
  host::VBProjects& VBProjects() override { return real_.VBProjects(); }
  host::CodePane* ActiveCodePane() override { return real_.ActiveCodePane(); }
  host::CodePanes& CodePanes() override { return panes; }
  host::Windows& Windows() override { return windows; }
  host::Window* ActiveWindow() override { return real_.ActiveWindow(); }
  host::Window& MainWindow() override { return real_.MainWindow(); }
  host::CommandBars& CommandBars() override { return bars; }
  host::Events& Events() override { return bars; }

  Failing_Bars bars;
  Plain_List<host::CodePanes, host::CodePane> panes;
  Plain_List<host::Windows, host::Window> windows;

 private:
  host::Memory_Editor& real_;
};

}  // namespace oru::test
