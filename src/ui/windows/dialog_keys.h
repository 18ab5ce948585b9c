// The keyboard in a modeless dialog.
#pragma once

#include "ui/windows/win32.h"

namespace vantora::ui {

// While it lives, Tab, Enter, Escape and Alt with a letter work in the dialog whoever fetches the
// thread's messages. Where that is the program's own loop, which knows nothing of the dialog, they
// would do nothing without it.
class DialogKeys {
 public:
  // The dialog belongs to the calling thread and outlives the object. Should the system refuse,
  // what a mouse can press still works.
  explicit DialogKeys(HWND dialog);
  ~DialogKeys();
  DialogKeys(const DialogKeys&) = delete;
  DialogKeys& operator=(const DialogKeys&) = delete;

 private:
  HWND dialog_;
  HHOOK hook_;
};

}  // namespace vantora::ui
