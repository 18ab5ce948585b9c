#include "ui/windows/form_window.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "ui/windows/form_layout.h"
#include "ui/windows/form_parts.h"
#include "ui/windows/window_text.h"

namespace vantora::ui {
namespace {

// Identifiers of the controls' windows start here; 1 and 2 are the Enter and the Escape key.
constexpr int kFirstControlId = 100;
// What ends a modal dialog, told apart from the system's own failures (0 and -1).
constexpr INT_PTR kEnded = 1;
// The last four bits of a system command are the system's own.
constexpr WPARAM kSystemCommandMask = 0xFFF0;

// A dialog without controls, as the system's functions read it: three empty texts (menu, class,
// caption) follow the fixed part.
struct EmptyTemplate {
  DLGTEMPLATE fixed;
  WORD texts[3];
};

EmptyTemplate TemplateOf(DWORD more_style) {
  EmptyTemplate dialog = {};
  dialog.fixed.style =
      WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | DS_MODALFRAME | more_style;
  return dialog;
}

// Sets a flag for a scope.
class Updating {
 public:
  explicit Updating(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~Updating() { flag_ = before_; }
  Updating(const Updating&) = delete;
  Updating& operator=(const Updating&) = delete;

 private:
  bool& flag_;
  bool before_;
};

std::runtime_error CannotShow(const Form& form, DWORD error) {
  return std::runtime_error("The dialog " + form.name() + " can't be shown: " + ErrorText(error) +
                            " Dialogs need a desktop: run the program in a user's session.");
}

RECT WorkAreaOf(HMONITOR screen) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(screen, &monitor);
  return monitor.rcWork;
}

RECT WorkAreaAround(HWND window) {
  return WorkAreaOf(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST));
}

RECT WorkAreaAround(POINT point) {
  return WorkAreaOf(MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST));
}

}  // namespace

void FormWindow::RunModal(HWND owner) {
  owner_ = owner;
  modal_ = true;
  made_ = false;
  const auto self = shared_from_this();
  const EmptyTemplate dialog = TemplateOf(WS_VISIBLE);
  SetLastError(ERROR_SUCCESS);
  const INT_PTR result = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &dialog.fixed, owner,
                                                 DialogProcedure, reinterpret_cast<LPARAM>(this));
  const DWORD error = GetLastError();
  modal_ = false;
  Close();
  if (form_ && form_->visible()) form_->Hide();  // it failed: nothing is on the screen any more
  RethrowFailure();
  // Once it stood, only the end of the program can have ended it otherwise.
  if (result != kEnded && !made_) throw CannotShow(*form_, error);
}

void FormWindow::Create(HWND owner) {
  owner_ = owner;
  const EmptyTemplate dialog = TemplateOf(0);
  const HWND window = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &dialog.fixed, owner,
                                                 DialogProcedure, reinterpret_cast<LPARAM>(this));
  const DWORD error = GetLastError();
  if (failure_) Close();
  RethrowFailure();
  if (!window) throw CannotShow(*form_, error);
}

void FormWindow::Show() {
  Update();
  if (!window_) return;
  if (!IsWindowVisible(window_)) {
    PlaceOnScreen();
    ShowWindow(window_, SW_SHOW);
    if (GetActiveWindow() == window_) FocusFirstControl();
  }
  RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void FormWindow::Update() {
  if (!window_ || !form_) return;
  if (form_->visible() || (!modal_ && !form_->unloaded())) UpdateControls();
  if (form_->visible()) return;
  if (modal_) {
    EndDialog(window_, kEnded);
  } else if (form_->unloaded()) {
    Close();
  } else {
    ShowWindow(window_, SW_HIDE);
  }
}

void FormWindow::Forget() {
  form_ = nullptr;
  if (modal_ && window_) {
    EndDialog(window_, kEnded);
  } else {
    Close();
  }
  controls_.clear();
}

void FormWindow::RethrowFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void FormWindow::Close() {
  if (window_) DestroyWindow(window_);
}

INT_PTR CALLBACK FormWindow::DialogProcedure(HWND window, UINT message, WPARAM wparam,
                                             LPARAM lparam) {
  if (message == WM_INITDIALOG) SetWindowLongPtrW(window, DWLP_USER, lparam);
  auto* form_window = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!form_window) return FALSE;
  const auto alive = form_window->weak_from_this().lock();
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, DWLP_USER, 0);
    form_window->keys_.reset();
    form_window->window_ = nullptr;
    form_window->controls_.clear();
    return FALSE;
  }
  INT_PTR handled = FALSE;
  form_window->Guard([&] {
    if (message == WM_INITDIALOG) form_window->OnInitialize(window);
    if (form_window->form_) handled = form_window->OnMessage(message, wparam, lparam);
  });
  return handled;
}

void FormWindow::Guard(const std::function<void()>& action) {
  try {
    action();
  } catch (...) {
    if (!failure_) failure_ = std::current_exception();
    if (modal_ && window_) EndDialog(window_, kEnded);
  }
}

INT_PTR FormWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_INITDIALOG:
      return FALSE;  // the focus is set already
    case WM_COMMAND:
      OnCommand(LOWORD(wparam), HIWORD(wparam));
      return TRUE;
    case WM_CLOSE:
      OnClose();
      return TRUE;
    case WM_SYSCOMMAND:
      // Alt+F4 arrives so also where the system menu has been removed.
      if ((wparam & kSystemCommandMask) != SC_CLOSE) return FALSE;
      OnClose();
      return TRUE;
    case WM_DRAWITEM: {
      const std::size_t position = wparam - kFirstControlId;
      if (position >= controls_.size() || !controls_[position]) return FALSE;
      controls_[position]->Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lparam));
      return TRUE;
    }
    // A text box that can only be read is drawn as a static text.
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
      return ColorLetters(reinterpret_cast<HDC>(wparam), reinterpret_cast<HWND>(lparam),
                          message == WM_CTLCOLOREDIT ? COLOR_WINDOW : COLOR_BTNFACE);
    case WM_STYLECHANGED:
      // The frame is drawn anew, without the buttons of a system menu that was removed.
      SetWindowPos(window_, nullptr, 0, 0, 0, 0,
                   SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      return FALSE;
    case WM_DPICHANGED:
      OnDpiChanged(LOWORD(wparam), *reinterpret_cast<const RECT*>(lparam));
      return TRUE;
    default:
      return FALSE;
  }
}

INT_PTR FormWindow::ColorLetters(HDC drawing, HWND window, int background) const {
  for (const auto& control : controls_) {
    if (!control || control->handle() != window) continue;
    const std::optional<COLORREF> color = control->LetterColor();
    if (!color) return FALSE;
    SetTextColor(drawing, *color);
    SetBkColor(drawing, GetSysColor(background));
    return reinterpret_cast<INT_PTR>(GetSysColorBrush(background));
  }
  return FALSE;
}

void FormWindow::OnInitialize(HWND window) {
  window_ = window;
  made_ = true;
  shown_caption_.clear();
  shown_client_ = {};
  TakeOverScaling(window_);
  UseDpi(DpiOf(window_));
  UpdateControls();
  if (!modal_) {
    keys_ = std::make_unique<DialogKeys>(window_);
    return;
  }
  PlaceOnScreen();
  FocusFirstControl();
}

void FormWindow::OnCommand(int id, int code) {
  if (updating_) return;
  const std::size_t position = id - kFirstControlId;
  bool handled = true;
  if (id == IDOK) {
    Press(&Button::is_default);
  } else if (id == IDCANCEL) {
    Press(&Button::is_cancel);
  } else if (position < controls_.size() && controls_[position]) {
    handled = controls_[position]->OnNotification(code);
  }
  if (handled) Update();
}

void FormWindow::Press(bool (Button::*role)() const) {
  for (const auto& control : form_->controls()) {
    auto* button = dynamic_cast<Button*>(control.get());
    if (!button || !(button->*role)()) continue;
    button->Press();
    return;
  }
}

void FormWindow::OnClose() {
  form_->CloseByUser();
  Update();
}

void FormWindow::OnDpiChanged(UINT dpi, const RECT& suggested) {
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  shown_client_ = {};
  UseDpi(dpi);
  UpdateControls();
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void FormWindow::MakeControls() {
  const std::optional<Meter> meter = FindMeter(*form_);
  while (controls_.size() < form_->controls().size()) {
    const std::size_t position = controls_.size();
    const int id = kFirstControlId + static_cast<int>(position);
    controls_.push_back(MakeControlWindow({window_, *form_, position, id}, meter));
    SetFontOf(controls_.back().get());
    const auto* button = dynamic_cast<const Button*>(form_->controls()[position].get());
    if (button && button->is_default()) SendMessageW(window_, DM_SETDEFID, id, 0);
  }
}

void FormWindow::UseDpi(UINT dpi) {
  dpi_ = dpi;
  const auto font_before = std::exchange(font_, std::make_unique<MessageFont>(dpi));
  const auto bold_before =
      std::exchange(bold_font_, std::make_unique<MessageFont>(dpi, MessageFont::Weight::kBold));
  for (const auto& control : controls_) SetFontOf(control.get());
}

void FormWindow::SetFontOf(ControlWindow* control) const {
  if (control) control->SetFont((control->IsBold() ? bold_font_ : font_)->handle());
}

void FormWindow::PlaceControls() {
  const FormLayout layout = LayOut(*form_, font_->handle(), dpi_);
  for (std::size_t i = 0; i < controls_.size(); ++i) {
    if (controls_[i]) controls_[i]->Place(layout.controls[i]);
  }
  if (layout.client.cx == shown_client_.cx && layout.client.cy == shown_client_.cy) return;
  shown_client_ = layout.client;
  const SIZE outer = OuterSize(window_, layout.client, dpi_);
  SetWindowPos(window_, nullptr, 0, 0, outer.cx, outer.cy,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// What the windows report meanwhile was not done by the user.
void FormWindow::UpdateControls() {
  const Updating updating(updating_);
  MakeControls();
  PlaceControls();
  for (const auto& control : controls_) {
    if (control) control->Update();
  }
  if (form_->caption() != shown_caption_) {
    shown_caption_ = form_->caption();
    SetWindowTextW(window_, ToUtf16(shown_caption_).c_str());
  }
}

void FormWindow::PlaceOnScreen() {
  RECT self = {};
  GetWindowRect(window_, &self);
  const LONG width = self.right - self.left;
  const LONG height = self.bottom - self.top;
  POINT middle;
  if (const std::optional<FormPosition>& wanted = form_->position()) {
    // The form knows nothing of the frame, which keeps the middle where it is.
    middle = {ToPixels(wanted->left + form_->width() / 2, dpi_),
              ToPixels(wanted->top + form_->height() / 2, dpi_)};
  } else {
    RECT around = WorkAreaAround(owner_ ? owner_ : window_);
    if (owner_ && IsWindowVisible(owner_) && !IsIconic(owner_)) GetWindowRect(owner_, &around);
    middle = {(around.left + around.right) / 2, (around.top + around.bottom) / 2};
  }
  const RECT work_area = WorkAreaAround(middle);
  // The caption stays in reach even when the dialog is larger than the work area.
  const auto within = [](LONG wanted, LONG first, LONG last) {
    return std::max(std::min(wanted, last), first);
  };
  SetWindowPos(window_, nullptr,
               within(middle.x - width / 2, work_area.left, work_area.right - width),
               within(middle.y - height / 2, work_area.top, work_area.bottom - height), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// By the dialog's own message, which lets a button that has the focus answer the Enter key. It
// would select a text; here the caret stands before it.
void FormWindow::FocusFirstControl() {
  const HWND first = GetNextDlgTabItem(window_, nullptr, FALSE);
  if (!first) return;
  SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
  const LRESULT code = SendMessageW(first, WM_GETDLGCODE, 0, 0);
  if ((code & DLGC_HASSETSEL) != 0) SendMessageW(first, EM_SETSEL, 0, 0);
}

}  // namespace vantora::ui
