// The dialog window of one form.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <vector>

#include "core/form.h"
#include "ui/windows/control_window.h"
#include "ui/windows/dialog_keys.h"
#include "ui/windows/display_scale.h"
#include "ui/windows/win32.h"

namespace vantora::ui {

// Shows a form's controls and passes the user's actions on to them. What the form's handlers throw
// is kept until the system's own code has been left, and thrown then. An object must be held by a
// shared_ptr: a handler may end the window that calls it.
class FormWindow : public std::enable_shared_from_this<FormWindow> {
 public:
  explicit FormWindow(Form& form) : form_(&form) {}
  ~FormWindow() { Close(); }
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  // Null while the form has no window.
  HWND handle() const { return window_; }
  bool is_modal() const { return modal_; }

  // Both take the window above which the dialog is to stay, or null, and throw std::runtime_error
  // when the system can't make the dialog's window.
  // Makes the window and shows it until the form is hidden or unloaded, the owner disabled.
  void RunModal(HWND owner);
  // Makes the window, hidden.
  void Create(HWND owner);

  // Shows the window that Create made; a visible one is drawn at once.
  void Show();
  // Brings the window in line with the form: its controls, hidden, gone.
  void Update();
  // The form is about to be destroyed: nothing of it may be used any more.
  void Forget();
  // Throws what a handler threw since the last call.
  void RethrowFailure();

 private:
  static INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  // Runs `action`, keeping what it throws.
  void Guard(const std::function<void()>& action);
  INT_PTR OnMessage(UINT message, WPARAM wparam, LPARAM lparam);
  void OnInitialize(HWND window);
  void OnCommand(int id, int code);
  void OnDpiChanged(UINT dpi, const RECT& suggested);
  void OnClose();

  void MakeControls();
  void UseDpi(UINT dpi);
  void SetFontOf(ControlWindow* control) const;
  // Sets the colours in which the control of that window is drawn; gives the brush of its
  // background, 0 for the system's own.
  INT_PTR ColorLetters(HDC drawing, HWND window, int background) const;
  void PlaceControls();
  void UpdateControls();
  // Where the form asks for, or else in the middle of the owner.
  void PlaceOnScreen();
  void FocusFirstControl();
  void Press(bool (Button::*role)() const);
  void Close();

  Form* form_;
  HWND window_ = nullptr;
  HWND owner_ = nullptr;
  std::unique_ptr<DialogKeys> keys_;  // of a modeless one
  bool modal_ = false;
  bool made_ = false;
  bool updating_ = false;
  UINT dpi_ = USER_DEFAULT_SCREEN_DPI;
  std::unique_ptr<MessageFont> font_;
  std::unique_ptr<MessageFont> bold_font_;
  std::string shown_caption_;
  SIZE shown_client_ = {};
  // In the order of the form's controls; null for those that another one draws.
  std::vector<std::unique_ptr<ControlWindow>> controls_;
  std::exception_ptr failure_;
};

}  // namespace vantora::ui
