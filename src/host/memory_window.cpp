// SPDX-License-Identifier: MIT
#include "host/memory_window.h"

#include <algorithm>

namespace oru::host {

Memory_Window::~Memory_Window() {
  desk_.Take_Off(*this);
}

bool Memory_Window::Visible() const {
  return visible_ && (type_ == kWindow_Main || desk_.Has(*this));
}

void Memory_Window::Set_Visible(bool visible) {
  visible_ = visible;
  if (visible && type_ != kWindow_Main) desk_.Open(*this);
}

void Memory_Window::Set_WindowState(int state) {
  if (state < kState_Normal || state > kState_Maximised)
    throw Host_Error(kErr_Bad_Call, "ウィンドウの状態が正しくありません。");
  state_ = state;
}

void Memory_Window::Close() {
  if (type_ != kWindow_Main) desk_.Take_Off(*this);
}

void Memory_Window::SetFocus() {
  visible_ = true;
  if (type_ != kWindow_Main) desk_.Bring_To_Front(*this);
}

bool Window_Desk::Has(const Memory_Window& window) const {
  return std::ranges::find(opened_, &window) != opened_.end();
}

void Window_Desk::Open(Memory_Window& window) {
  if (Has(window)) return;
  opened_.push_back(&window);
  order_.push_back(&window);
}

void Window_Desk::Bring_To_Front(Memory_Window& window) {
  Open(window);
  std::erase(order_, &window);
  order_.push_back(&window);
}

void Window_Desk::Take_Off(const Memory_Window& window) {
  std::erase(opened_, &window);
  std::erase(order_, &window);
}

Memory_Window* Window_Desk::Front() const {
  for (auto window = order_.rbegin(); window != order_.rend(); ++window)
    if ((*window)->Visible()) return *window;
  return nullptr;
}

}  // namespace oru::host
