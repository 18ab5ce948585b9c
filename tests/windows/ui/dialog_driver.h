// Plays the user of a dialog: a second thread that finds the dialog's window and acts on it by
// messages, the way the system reports keys and clicks.
#pragma once

#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "core/form.h"
#include "ui/windows/win32.h"

namespace vantora::ui {

// The program that a dialog belongs to: its main window and another one of the same thread.
class HostProgram {
 public:
  HostProgram();
  ~HostProgram();
  HostProgram(const HostProgram&) = delete;
  HostProgram& operator=(const HostProgram&) = delete;

  HWND main_window;
  HWND second_window;
};

// Runs `actions` beside the test and waits for their end when it goes out of scope.
class User {
 public:
  explicit User(std::function<void()> actions) : thread_(std::move(actions)) {}
  ~User() { thread_.join(); }

 private:
  std::thread thread_;
};

// The visible dialog of that caption; fails the test and returns null when none appears.
HWND WaitForDialog(const std::string& caption);
// Waits until `happened` is true; fails the test when it stays false.
void WaitUntil(const std::function<bool()>& happened);
// What was posted to the dialog before has been handled when it returns, or the dialog is gone. The
// dialog's thread must have a HostProgram; for a dialog of the calling thread it does nothing.
void WaitUntilIdle(HWND window);

// The window of the form's control of that name.
HWND WindowOf(HWND dialog, const Form& form, const std::string& name);
// The control of the dialog that has the keyboard.
HWND FocusOf(HWND dialog);

// Presses a button, a check box or an option as a click does.
void Click(HWND button);
// Presses and releases a key in the window that has the keyboard.
void PressKey(HWND dialog, WPARAM key);
// Presses a letter while the Alt key is down.
void PressAlt(HWND dialog, wchar_t letter);
void PressAltF4(HWND dialog);
// Clicks on an entry of a list box, counted from 0.
void ClickEntry(HWND list, int entry);
// Types characters into a text box; '\n' as Ctrl+Enter does.
void Type(HWND box, const std::wstring& text);

// Writes a picture of the window as it stands on the screen to screenshots/NAME.bmp in the working
// directory.
void TakePicture(HWND window, const std::string& name);
// The colour on the screen at a point of the window's client area.
COLORREF ColourAt(HWND window, int x, int y);

}  // namespace vantora::ui
