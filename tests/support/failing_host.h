// SPDX-License-Identifier: MIT
// An editor that refuses its n-th call: stands in front of another one and counts what the analysis
// asks of projects, components and modules.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "host/model.h"

namespace oru::test {

/// Throws at the n-th call (from 1); never for 0.
struct Fuse {
  int left = 0;
  bool burnt = false;
  void Burn() {
    if (left == 0 || --left > 0) return;
    burnt = true;
    throw host::Host_Error(50289, "refused");
  }
};

class Failing_Module final : public host::CodeModule {
 public:
  Failing_Module(host::CodeModule& real, Fuse& fuse) : real_(real), fuse_(fuse) {}
  [[nodiscard]] int CountOfLines() const override { return fuse_.Burn(), real_.CountOfLines(); }
  [[nodiscard]] int CountOfDeclarationLines() const override {
    return fuse_.Burn(), real_.CountOfDeclarationLines();
  }
  [[nodiscard]] std::string Lines(int start, int count) const override {
    return fuse_.Burn(), real_.Lines(start, count);
  }
  [[nodiscard]] host::ProcAtLine ProcOfLine(int line) const override {
    return fuse_.Burn(), real_.ProcOfLine(line);
  }
  [[nodiscard]] int ProcStartLine(std::string_view n, host::ProcKind k) const override {
    return fuse_.Burn(), real_.ProcStartLine(n, k);
  }
  [[nodiscard]] int ProcBodyLine(std::string_view n, host::ProcKind k) const override {
    return fuse_.Burn(), real_.ProcBodyLine(n, k);
  }
  [[nodiscard]] int ProcCountLines(std::string_view n, host::ProcKind k) const override {
    return fuse_.Burn(), real_.ProcCountLines(n, k);
  }
  [[nodiscard]] bool Find(std::string_view t, host::Selection& r, bool w, bool m,
                          bool p) const override {
    return real_.Find(t, r, w, m, p);
  }
  void InsertLines(int line, std::string_view text) override {
    fuse_.Burn(), real_.InsertLines(line, text);
  }
  void DeleteLines(int line, int count) override { fuse_.Burn(), real_.DeleteLines(line, count); }
  void ReplaceLine(int line, std::string_view text) override {
    fuse_.Burn(), real_.ReplaceLine(line, text);
  }
  void AddFromString(std::string_view text) override { real_.AddFromString(text); }
  host::CodePane& CodePane() override { return real_.CodePane(); }

 private:
  host::CodeModule& real_;
  Fuse& fuse_;
};

class Failing_Component final : public host::VBComponent {
 public:
  Failing_Component(host::VBComponent& real, Fuse& fuse)
      : real_(real), fuse_(fuse), module_(*real.CodeModule(), fuse) {}
  [[nodiscard]] std::string Name() const override { return fuse_.Burn(), real_.Name(); }
  [[nodiscard]] int Type() const override { return fuse_.Burn(), real_.Type(); }
  host::CodeModule* CodeModule() override { return fuse_.Burn(), &module_; }
  host::Designer* Designer() override { return fuse_.Burn(), real_.Designer(); }
  [[nodiscard]] bool HasOpenDesigner() const override { return real_.HasOpenDesigner(); }
  host::Properties& Properties() override { return real_.Properties(); }
  host::Window* DesignerWindow() override { return real_.DesignerWindow(); }
  void Activate() override { real_.Activate(); }

 private:
  host::VBComponent& real_;
  Fuse& fuse_;
  Failing_Module module_;
};

class Failing_Project final : public host::VBProject, public host::VBComponents {
 public:
  Failing_Project(host::VBProject& real, Fuse& fuse) : real_(real), fuse_(fuse) {}
  host::VBComponents& VBComponents() override { return *this; }
  [[nodiscard]] enum host::Protection Protection() const override { return real_.Protection(); }
  [[nodiscard]] std::string Name() const override { return real_.Name(); }
  [[nodiscard]] std::string Description() const override { return real_.Description(); }
  [[nodiscard]] std::string FileName() const override { return real_.FileName(); }
  host::References& References() override { return fuse_.Burn(), real_.References(); }

  [[nodiscard]] int Count() const override { return fuse_.Burn(), real_.VBComponents().Count(); }
  host::VBComponent* Item(int position) override {
    return fuse_.Burn(), Wrap(real_.VBComponents().Item(position));
  }
  host::VBComponent* Item(std::string_view name) override {
    return fuse_.Burn(), Wrap(real_.VBComponents().Item(name));
  }

 private:
  host::VBComponent* Wrap(host::VBComponent* component) {
    if (component == nullptr) return nullptr;
    auto& made = made_[component];
    if (!made) made = std::make_unique<Failing_Component>(*component, fuse_);
    return made.get();
  }
  host::VBProject& real_;
  Fuse& fuse_;
  std::map<host::VBComponent*, std::unique_ptr<Failing_Component>> made_;
};

class Failing_Editor final : public host::VBE {
 public:
  Failing_Editor(host::VBE& real, Fuse& fuse)
      : real_(real), fuse_(fuse), project_(*real.ActiveVBProject(), fuse) {}
  host::VBProject* ActiveVBProject() override { return fuse_.Burn(), &project_; }
  host::VBProjects& VBProjects() override { return real_.VBProjects(); }
  host::CodePane* ActiveCodePane() override { return real_.ActiveCodePane(); }
  host::CodePanes& CodePanes() override { return real_.CodePanes(); }
  host::Windows& Windows() override { return real_.Windows(); }
  host::Window* ActiveWindow() override { return real_.ActiveWindow(); }
  host::Window& MainWindow() override { return fuse_.Burn(), real_.MainWindow(); }
  host::CommandBars& CommandBars() override { return real_.CommandBars(); }
  host::Events& Events() override { return real_.Events(); }

 private:
  host::VBE& real_;
  Fuse& fuse_;
  Failing_Project project_;
};

}  // namespace oru::test
