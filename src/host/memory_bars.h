// SPDX-License-Identifier: MIT
// The command bars of the in-memory editor: the bars and captions of a Japanese editor that the
// system uses, to which it adds its own. Running an entry is recorded, goes to the handler of
// whoever owns the editor, and raises the click of each event source that is alive.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/command_bars.h"

namespace oru::host {

class Memory_Bar;

class Memory_Command_Bars final : public CommandBars, public Events {
 public:
  /// Holds the bars "Code Window", "ﾒﾆｭｰ ﾊﾞｰ" and "編集" at first.
  Memory_Command_Bars();
  ~Memory_Command_Bars() override;

  [[nodiscard]] int Count() const override;
  [[nodiscard]] CommandBar* Item(int position) override;
  [[nodiscard]] CommandBar* Item(std::string_view name) override;
  [[nodiscard]] CommandBar& Add(std::string_view name) override;
  [[nodiscard]] std::unique_ptr<class CommandBarEvents> CommandBarEvents(
      CommandBarControl& button) override;

  /// The bar and captions of each entry run so far, joined by " > ".
  [[nodiscard]] const std::vector<std::string>& Executed() const { return executed_; }
  /// Called with such a path at each run, before the clicks are raised.
  void Set_Handler(std::function<void(const std::string& path)> handler);

 private:
  friend class Memory_Bar;
  friend class Memory_Bar_Control;
  void Record(const std::string& path);
  void Remove(const Memory_Bar& bar);

  std::vector<std::unique_ptr<Memory_Bar>> bars_;
  std::vector<std::string> executed_;
  std::function<void(const std::string&)> handler_;
};

}  // namespace oru::host
