// The user interface of a program with windows: message boxes and dialogs of the platform.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "core/user_interface.h"
#include "ui/windows/desktop.h"
#include "ui/windows/form_window.h"
#include "ui/windows/win32.h"

namespace vantora::ui {

// All calls must come from one thread, the one that owns the program's windows. What a form's event
// handler throws comes out of the call that let the event happen: ShowModal or DoEvents. Calls that
// show something, and Refresh when it makes a window, throw std::runtime_error when there is no
// desktop to show it on.
class WindowsUserInterface : public UserInterface {
 public:
  // `owner` is asked each time something is shown: the window that dialogs stay above, disabled
  // while a modal one is open. Without it, or when it gives null, it is the thread's active window.
  explicit WindowsUserInterface(std::function<HWND()> owner = nullptr);
  ~WindowsUserInterface() override;

  MessageBoxResult MessageBox(std::string_view text, int style, std::string_view title) override;
  // Throws std::logic_error when the form is being shown modally already.
  void ShowModal(Form& form) override;
  void ShowModeless(Form& form) override;
  void Refresh(Form& form) override;
  void Forget(Form& form) override;
  void DoEvents() override;
  WindowSystem* windows() override { return &desktop_; }

 private:
  HWND Owner() const;
  // The form's window, made hidden if it has none.
  FormWindow& Window(Form& form);
  // Lets an open modal dialog have a message that its own loop would give it.
  bool IsForModalDialog(MSG& message);

  std::function<HWND()> owner_;
  Desktop desktop_;
  // Every form that was shown and lives; most have no window.
  std::map<const Form*, std::shared_ptr<FormWindow>> windows_;
};

}  // namespace vantora::ui
