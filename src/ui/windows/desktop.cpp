#include "ui/windows/desktop.h"

#include "ui/windows/window_text.h"

namespace vantora::ui {
namespace {

HWND HandleOf(WindowHandle window) { return reinterpret_cast<HWND>(window); }

WindowHandle FromHandle(HWND window) {
  return static_cast<WindowHandle>(reinterpret_cast<std::uintptr_t>(window));
}

}  // namespace

WindowHandle Desktop::FindByCaption(std::string_view caption) {
  return FromHandle(FindWindowA(nullptr, ToAnsi(caption).c_str()));
}

WindowHandle Desktop::Foreground() { return FromHandle(GetForegroundWindow()); }

void Desktop::SetForeground(WindowHandle window) { SetForegroundWindow(HandleOf(window)); }

std::uint32_t Desktop::ThreadOf(WindowHandle window) {
  return GetWindowThreadProcessId(HandleOf(window), nullptr);
}

std::uint32_t Desktop::Style(WindowHandle window) {
  return static_cast<std::uint32_t>(GetWindowLongA(HandleOf(window), GWL_STYLE));
}

void Desktop::SetStyle(WindowHandle window, std::uint32_t style) {
  SetWindowLongA(HandleOf(window), GWL_STYLE, static_cast<LONG>(style));
}

}  // namespace vantora::ui
