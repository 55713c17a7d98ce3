// SPDX-License-Identifier: MIT
#include "host/memory_editor.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace oru::host {
namespace {

struct Project_List final : VBProjects {
  [[nodiscard]] int Count() const override { return static_cast<int>(list.size()); }
  [[nodiscard]] VBProject* Item(int position) override {
    return position >= 1 && position <= Count() ? list[static_cast<std::size_t>(position) - 1].get()
                                                : nullptr;
  }
  std::vector<std::unique_ptr<Memory_Project>> list;
};

struct Window_List final : Windows {
  explicit Window_List(const Window_Desk& desk) : opened(desk.Opened()) {}
  [[nodiscard]] int Count() const override { return static_cast<int>(opened.size()); }
  [[nodiscard]] Window* Item(int position) override {
    return position >= 1 && position <= Count() ? opened[static_cast<std::size_t>(position) - 1]
                                                : nullptr;
  }
  const std::vector<Memory_Window*>& opened;
};

struct Pane_List final : CodePanes {
  explicit Pane_List(const Window_Desk& desk) : opened(desk.Opened()) {}
  [[nodiscard]] int Count() const override {
    return static_cast<int>(std::ranges::count_if(
        opened, [](const auto* window) { return window->Pane() != nullptr; }));
  }
  [[nodiscard]] CodePane* Item(int position) override {
    for (const Memory_Window* window : opened)
      if (window->Pane() != nullptr && --position == 0) return window->Pane();
    return nullptr;
  }
  const std::vector<Memory_Window*>& opened;
};

}  // namespace

struct Memory_Editor::Impl {
  [[nodiscard]] std::string Main_Caption() const {
    std::string caption = "Visual Basic";
    if (active != nullptr) caption += " - " + active->Host_File();
    if (!mode.empty()) caption += " [" + mode + "]";
    const Memory_Window* front = desk.Front();
    if (front == nullptr || front->WindowState() != kState_Maximised) return caption;
    const std::string inner = front->Caption();
    const std::size_t at = inner.rfind(" - ");
    return caption + " - [" + (at == std::string::npos ? inner : inner.substr(at + 3)) + "]";
  }

  Window_Desk desk;
  Memory_Command_Bars bars;
  Project_List projects;
  Memory_Project* active = nullptr;
  std::string mode;
  Pane_List panes{desk};
  Window_List windows{desk};
  Memory_Window main{desk, kWindow_Main, nullptr, [this] { return Main_Caption(); }};
};

Memory_Editor::Memory_Editor() : impl_(std::make_unique<Impl>()) {}

Memory_Editor::~Memory_Editor() = default;

Memory_Project& Memory_Editor::Add_Project(std::string name, std::string host_file) {
  auto project =
      std::make_unique<Memory_Project>(impl_->desk, std::move(name), std::move(host_file));
  impl_->active = project.get();
  return *impl_->projects.list.emplace_back(std::move(project));
}

void Memory_Editor::Close_Project(const Memory_Project& project) {
  auto& list = impl_->projects.list;
  const bool was_active = impl_->active == &project;
  std::erase_if(list, [&](const auto& each) { return each.get() == &project; });
  if (was_active) impl_->active = list.empty() ? nullptr : list.back().get();
}

void Memory_Editor::Set_Active(Memory_Project* project) {
  impl_->active = project;
}

void Memory_Editor::Set_Mode(std::string mode) {
  impl_->mode = std::move(mode);
}

Memory_Command_Bars& Memory_Editor::Bars() {
  return impl_->bars;
}

VBProject* Memory_Editor::ActiveVBProject() {
  return impl_->active;
}

VBProjects& Memory_Editor::VBProjects() {
  return impl_->projects;
}

CodePane* Memory_Editor::ActiveCodePane() {
  const Memory_Window* front = impl_->desk.Front();
  return front == nullptr ? nullptr : front->Pane();
}

CodePanes& Memory_Editor::CodePanes() {
  return impl_->panes;
}

Windows& Memory_Editor::Windows() {
  return impl_->windows;
}

Window* Memory_Editor::ActiveWindow() {
  return impl_->desk.Front();
}

Window& Memory_Editor::MainWindow() {
  return impl_->main;
}

CommandBars& Memory_Editor::CommandBars() {
  return impl_->bars;
}

Events& Memory_Editor::Events() {
  return impl_->bars;
}

}  // namespace oru::host
