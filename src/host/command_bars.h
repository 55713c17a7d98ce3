// SPDX-License-Identifier: MIT
// The editor's command bars and the event source of one menu button, under the model's own names.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace oru::host {

class CommandBar;

/// What a control of a bar is.
enum class ControlType { Button = 1, Popup = 10 };

class CommandBarControl {
 public:
  virtual ~CommandBarControl() = default;
  [[nodiscard]] virtual std::string Caption() const = 0;
  virtual void Set_Caption(std::string_view caption) = 0;
  [[nodiscard]] virtual ControlType Type() const = 0;
  [[nodiscard]] virtual bool BeginGroup() const = 0;
  virtual void Set_BeginGroup(bool begins) = 0;
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void Set_Enabled(bool enabled) = 0;
  [[nodiscard]] virtual class CommandBar* CommandBar() = 0;  ///< a popup's own bar, else null
  virtual void Execute() = 0;
  virtual void Delete() = 0;
};

class CommandBarControls {
 public:
  virtual ~CommandBarControls() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual CommandBarControl* Item(int position) = 0;
  /// By caption, exact; null if there is none.
  [[nodiscard]] virtual CommandBarControl* Item(std::string_view caption) = 0;
  /// Adds before the 1-based position, at the end for 0.
  [[nodiscard]] virtual CommandBarControl& Add(ControlType type, int before = 0) = 0;
};

class CommandBar {
 public:
  virtual ~CommandBar() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual bool Visible() const = 0;
  virtual void Set_Visible(bool visible) = 0;
  [[nodiscard]] virtual CommandBarControls& Controls() = 0;
  virtual void Delete() = 0;
};

class CommandBars {
 public:
  virtual ~CommandBars() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual CommandBar* Item(int position) = 0;
  [[nodiscard]] virtual CommandBar* Item(std::string_view name) = 0;
  [[nodiscard]] virtual CommandBar& Add(std::string_view name) = 0;
};

/// Event source of one button: calls the handler at each click until it is destroyed.
class CommandBarEvents {
 public:
  virtual ~CommandBarEvents() = default;
  virtual void Set_Click(std::function<void()> handler) = 0;
};

class Events {
 public:
  virtual ~Events() = default;
  /// The event source of a button, owned by the caller.
  [[nodiscard]] virtual std::unique_ptr<class CommandBarEvents> CommandBarEvents(
      CommandBarControl& button) = 0;
};

}  // namespace oru::host
