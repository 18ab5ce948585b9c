#include "ui/windows/form_layout.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "ui/windows/display_scale.h"
#include "ui/windows/form_parts.h"
#include "ui/windows/window_text.h"

namespace vantora::ui {
namespace {

// Between a text and the border around it, in points, both sides together.
constexpr double kBorder = 6;
// The box or the circle in front of a caption, with the blank after it.
constexpr double kMark = 15;

// Measures texts in the dialog's font.
class TextRuler {
 public:
  TextRuler(HFONT font, UINT dpi)
      : dpi_(dpi), screen_(GetDC(nullptr)), font_before_(SelectObject(screen_, font)) {}
  ~TextRuler() {
    SelectObject(screen_, font_before_);
    ReleaseDC(nullptr, screen_);
  }
  TextRuler(const TextRuler&) = delete;
  TextRuler& operator=(const TextRuler&) = delete;

  // The height in pixels that the control's text needs when it is `width` pixels wide.
  int NeededHeight(const Form& form, std::size_t position, int width) const {
    const Control& control = *form.controls()[position];
    const std::string& caption = control.caption();
    switch (control.kind()) {
      case ControlKind::kLabel:
        return HeightOf(caption, width, MarksAccelerator(form, position));
      case ControlKind::kOptionButton:
      case ControlKind::kCheckBox:
        return HeightOf(caption, width - ToPixels(kMark, dpi_), /*marks_accelerator=*/true);
      case ControlKind::kButton:
        return HeightOf(caption, width - ToPixels(kBorder, dpi_), /*marks_accelerator=*/true) +
               ToPixels(kBorder, dpi_);
      case ControlKind::kTextBox:
      case ControlKind::kComboBox:
      case ControlKind::kListBox:
        break;
    }
    return HeightOf("X", width, /*marks_accelerator=*/false) + ToPixels(kBorder, dpi_);
  }

 private:
  int HeightOf(std::string_view text, int width, bool marks_accelerator) const {
    if (text.empty()) return 0;
    RECT area = {0, 0, std::max(width, 1), 0};
    const std::wstring wide = ToUtf16(text);
    const UINT literal = marks_accelerator ? 0 : DT_NOPREFIX;
    DrawTextW(screen_, wide.data(), static_cast<int>(wide.size()), &area,
              DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | literal);
    return area.bottom;
  }

  UINT dpi_;
  HDC screen_;
  HGDIOBJ font_before_;
};

// How far things below a control that grew have to move down.
struct Push {
  double bottom;  // of the control as it was designed, in points
  int pixels;
};

int PushAt(const std::vector<Push>& pushes, double top) {
  int pixels = 0;
  for (const Push& push : pushes) {
    if (push.bottom <= top) pixels = std::max(pixels, push.pixels);
  }
  return pixels;
}

std::vector<std::size_t> FromTopToBottom(const Form& form) {
  std::vector<std::size_t> order(form.controls().size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return form.controls()[a]->bounds().top < form.controls()[b]->bounds().top;
  });
  return order;
}

}  // namespace

FormLayout LayOut(const Form& form, HFONT font, UINT dpi) {
  const TextRuler ruler(font, dpi);
  const std::optional<Meter> meter = FindMeter(form);
  FormLayout layout;
  layout.controls.resize(form.controls().size());
  std::vector<Push> pushes;
  for (const std::size_t i : FromTopToBottom(form)) {
    const Control& control = *form.controls()[i];
    const Bounds& bounds = control.bounds();
    RECT& place = layout.controls[i];
    place.left = ToPixels(bounds.left, dpi);
    place.right = ToPixels(bounds.left + bounds.width, dpi);
    const int push = PushAt(pushes, bounds.top);
    place.top = ToPixels(bounds.top, dpi) + push;
    place.bottom = ToPixels(bounds.top + bounds.height, dpi) + push;
    const bool fixed = !control.visible() || (meter && meter->Has(control));
    if (fixed) continue;
    const int missing = ruler.NeededHeight(form, i, place.right - place.left) -
                        static_cast<int>(place.bottom - place.top);
    place.bottom += std::max(missing, 0);
    if (push > 0 || missing > 0) {
      pushes.push_back({bounds.top + bounds.height, push + std::max(missing, 0)});
    }
  }
  layout.client.cx = ToPixels(form.width(), dpi);
  layout.client.cy = ToPixels(form.height(), dpi) + PushAt(pushes, form.height());
  return layout;
}

}  // namespace vantora::ui
