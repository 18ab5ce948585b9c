#include "ui/windows/disabled_windows.h"

namespace vantora::ui {

DisabledWindows::DisabledWindows(HWND owner)
    : owner_(owner), owner_was_enabled_(owner && IsWindowEnabled(owner)) {
  EnumThreadWindows(GetCurrentThreadId(), Disable, reinterpret_cast<LPARAM>(this));
}

DisabledWindows::~DisabledWindows() {
  if (owner_was_enabled_ && IsWindow(owner_)) EnableWindow(owner_, TRUE);
  for (const HWND window : disabled_) {
    if (IsWindow(window)) EnableWindow(window, TRUE);
  }
}

BOOL CALLBACK DisabledWindows::Disable(HWND window, LPARAM self) {
  auto& windows = *reinterpret_cast<DisabledWindows*>(self);
  if (window == windows.owner_ || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
  EnableWindow(window, FALSE);
  windows.disabled_.push_back(window);
  return TRUE;
}

}  // namespace vantora::ui
