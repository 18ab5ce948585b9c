// The window of one control of a form.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/form.h"
#include "ui/windows/form_parts.h"
#include "ui/windows/win32.h"

namespace vantora::ui {

// What a window procedure needs to know to make a control's window.
struct ControlPlace {
  HWND dialog;
  Form& form;
  // In the form's controls, 0-based.
  std::size_t position;
  // The identifier of the window within the dialog.
  int id;
};

// Destroyed with the dialog's window, which owns the control's.
class ControlWindow {
 public:
  virtual ~ControlWindow() = default;
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;

  HWND handle() const { return window_; }
  const Control& control() const { return control_; }
  void SetFont(HFONT font);
  virtual bool IsBold() const { return false; }
  // The colour of its letters where the control has one of its own.
  virtual std::optional<COLORREF> LetterColor() const { return std::nullopt; }
  // In pixels of the dialog's client area. Does nothing when it stands there already.
  void Place(const RECT& place);
  // Brings the window in line with the control, touching only what differs.
  void Update();
  // The window reports what happens to it (BN_CLICKED, EN_CHANGE). Passes on to the control what
  // the user did; returns false when it was nothing for the control. Not every report may be
  // followed by Update: a text box announces a change before its text can be taken.
  virtual bool OnNotification(int /*code*/) { return false; }
  // The window asks to be drawn.
  virtual void Draw(const DRAWITEMSTRUCT& /*item*/) {}

 protected:
  // Throws std::runtime_error when the system can't make the window.
  ControlWindow(const ControlPlace& place, const wchar_t* window_class, DWORD style,
                DWORD extended_style = 0);
  virtual void UpdateContent() {}
  // The window is about to become `height` pixels high on the dialog. Returns how far it reaches
  // below that (a list that drops down).
  virtual int FitTo(int /*height*/) { return 0; }

 private:
  void UpdateCaption();
  void LeaveFocus();

  Control& control_;
  HWND window_;
  std::string shown_caption_;
  RECT place_ = {};
};

// The window for the control at that place; null for one that `meter` draws.
std::unique_ptr<ControlWindow> MakeControlWindow(const ControlPlace& place,
                                                 const std::optional<Meter>& meter);

}  // namespace vantora::ui
