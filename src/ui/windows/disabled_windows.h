// What a modal dialog does to the other windows of its program.
#pragma once

#include <vector>

#include "ui/windows/win32.h"

namespace vantora::ui {

// While it lives, the other top-level windows of the thread take no input: a second workbook's
// window, a progress dialog. The owner of the dialog is left to the system, which enables it in the
// right moment to give it the focus back; only where it did not (the program is told to quit while
// the dialog is open) it is enabled here.
class DisabledWindows {
 public:
  explicit DisabledWindows(HWND owner);
  ~DisabledWindows();
  DisabledWindows(const DisabledWindows&) = delete;
  DisabledWindows& operator=(const DisabledWindows&) = delete;

 private:
  static BOOL CALLBACK Disable(HWND window, LPARAM self);

  HWND owner_;
  bool owner_was_enabled_;
  std::vector<HWND> disabled_;
};

}  // namespace vantora::ui
