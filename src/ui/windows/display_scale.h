// How large things are on the monitor a dialog stands on.
#pragma once

#include "ui/windows/win32.h"

namespace vantora::ui {

// Dots per inch of the monitor the window is on, as far as the process looks at single monitors.
UINT DpiOf(HWND window);

// The size of a whole window whose client area has the given size in pixels.
SIZE OuterSize(HWND window, SIZE client, UINT dpi);

// Lets a dialog answer a change of resolution itself instead of being stretched by the system.
void TakeOverScaling(HWND dialog);

// Points (72 an inch) to the nearest pixel.
int ToPixels(double points, UINT dpi);

// The font in which the system writes messages; that of dialogs where it does not tell.
class MessageFont {
 public:
  enum class Weight { kRegular, kBold };
  explicit MessageFont(UINT dpi, Weight weight = Weight::kRegular);
  ~MessageFont() { DeleteObject(font_); }
  MessageFont(const MessageFont&) = delete;
  MessageFont& operator=(const MessageFont&) = delete;

  HFONT handle() const { return font_; }

 private:
  HFONT font_;
};

}  // namespace vantora::ui
