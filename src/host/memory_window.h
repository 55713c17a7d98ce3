// SPDX-License-Identifier: MIT
// The windows of the in-memory editor: which are open, in which order they were opened and which
// one lies in front of which. A window belongs to its component and is only noted here; closing it
// takes it off the desk, and it can be opened again.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/model.h"

namespace oru::host {

constexpr int kWindow_Code = 0;
constexpr int kWindow_Designer = 1;
constexpr int kWindow_Main = 12;

constexpr int kState_Normal = 0;
constexpr int kState_Minimised = 1;
constexpr int kState_Maximised = 2;

class Window_Desk;

class Memory_Window final : public Window {
 public:
  /// `pane` is the pane inside a code window, else null. The caption is asked anew each time.
  Memory_Window(Window_Desk& desk, int type, class CodePane* pane,
                std::function<std::string()> caption)
      : desk_(desk), type_(type), pane_(pane), caption_(std::move(caption)) {}
  ~Memory_Window() override;
  Memory_Window(const Memory_Window&) = delete;
  Memory_Window& operator=(const Memory_Window&) = delete;

  [[nodiscard]] std::string Caption() const override { return caption_(); }
  [[nodiscard]] bool Visible() const override;
  /// Showing a closed window opens it.
  void Set_Visible(bool visible) override;
  [[nodiscard]] int WindowState() const override { return state_; }
  void Set_WindowState(int state) override;
  [[nodiscard]] int Type() const override { return type_; }
  void Close() override;
  /// Opens the window if need be and brings it to the front.
  void SetFocus() override;

  [[nodiscard]] class CodePane* Pane() const { return pane_; }

 private:
  Window_Desk& desk_;
  int type_;
  class CodePane* pane_;
  std::function<std::string()> caption_;
  bool visible_ = true;
  int state_ = kState_Normal;
};

class Window_Desk {
 public:
  [[nodiscard]] bool Has(const Memory_Window& window) const;
  /// Opens the window, which then lies in front; an open one stays where it is.
  void Open(Memory_Window& window);
  void Bring_To_Front(Memory_Window& window);
  void Take_Off(const Memory_Window& window);
  /// The visible window in front; null if there is none.
  [[nodiscard]] Memory_Window* Front() const;
  /// In the order in which they were opened.
  [[nodiscard]] const std::vector<Memory_Window*>& Opened() const { return opened_; }

 private:
  std::vector<Memory_Window*> opened_;
  std::vector<Memory_Window*> order_;  ///< the one in front last
};

}  // namespace oru::host
