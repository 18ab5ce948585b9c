// Where a form's controls stand on the screen.
#pragma once

#include <vector>

#include "core/form.h"
#include "ui/windows/win32.h"

namespace vantora::ui {

struct FormLayout {
  // Of the dialog's client area, in pixels.
  SIZE client;
  // In client coordinates and in the order of the form's controls.
  std::vector<RECT> controls;
};

// Scales the form's points to pixels. A control whose text needs more lines than it has room for
// (another font, larger texts, a long message) becomes higher, and what stands below it moves down.
FormLayout LayOut(const Form& form, HFONT font, UINT dpi);

}  // namespace vantora::ui
