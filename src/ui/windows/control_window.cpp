#include "ui/windows/control_window.h"

#include <stdexcept>

#include "ui/windows/window_text.h"

namespace vantora::ui {

ControlWindow::ControlWindow(const ControlPlace& place, const wchar_t* window_class, DWORD style,
                             DWORD extended_style)
    : control_(*place.form.controls()[place.position]) {
  if (StartsGroup(place.form, place.position)) style |= WS_GROUP;
  window_ =
      CreateWindowExW(extended_style, window_class, L"", style | WS_CHILD, 0, 0, 0, 0, place.dialog,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(place.id)), nullptr, nullptr);
  if (!window_) {
    throw std::runtime_error("The control " + control_.name() + " of the dialog " +
                             place.form.name() + " can't be shown: " + ErrorText(GetLastError()));
  }
}

void ControlWindow::SetFont(HFONT font) {
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void ControlWindow::Place(const RECT& place) {
  if (EqualRect(&place, &place_)) return;
  place_ = place;
  const int height = place.bottom - place.top;
  SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
               height + FitTo(height), SWP_NOZORDER | SWP_NOACTIVATE);
}

void ControlWindow::Update() {
  UpdateCaption();
  UpdateContent();
  const bool enabled = IsWindowEnabled(window_);
  const bool visible = (GetWindowLongW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
  if (enabled == control_.enabled() && visible == control_.visible()) return;
  if (!control_.enabled() || !control_.visible()) LeaveFocus();
  EnableWindow(window_, control_.enabled());
  ShowWindow(window_, control_.visible() ? SW_SHOWNA : SW_HIDE);
}

void ControlWindow::UpdateCaption() {
  if (control_.caption() == shown_caption_) return;
  shown_caption_ = control_.caption();
  SetWindowTextW(window_, ToUtf16(shown_caption_).c_str());
}

// A disabled window that keeps the focus leaves the dialog without keyboard.
void ControlWindow::LeaveFocus() {
  if (GetFocus() != window_) return;
  const HWND dialog = GetParent(window_);
  SendMessageW(dialog, WM_NEXTDLGCTL, 0, FALSE);
  if (GetFocus() == window_) SetFocus(dialog);
}

}  // namespace vantora::ui
