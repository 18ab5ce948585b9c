#include "ui/windows/meter_window.h"

#include <algorithm>
#include <cmath>

#include "ui/windows/window_text.h"

namespace vantora::ui {
namespace {

// One side of the meter: its colour, and the part of the text that lies on it.
void PaintPart(HDC canvas, const RECT& meter, const RECT& part, const std::string& caption,
               int background, int letters) {
  if (IsRectEmpty(&part)) return;
  FillRect(canvas, &part, GetSysColorBrush(background));
  const int state = SaveDC(canvas);
  IntersectClipRect(canvas, part.left, part.top, part.right, part.bottom);
  SetBkMode(canvas, TRANSPARENT);
  SetTextColor(canvas, GetSysColor(letters));
  RECT text_area = meter;
  DrawTextW(canvas, ToUtf16(caption).c_str(), -1, &text_area,
            DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
  RestoreDC(canvas, state);
}

}  // namespace

MeterWindow::MeterWindow(const ControlPlace& place, const Meter& meter)
    : ControlWindow(place, L"STATIC", SS_OWNERDRAW), meter_(meter) {}

void MeterWindow::UpdateContent() {
  const double whole = meter_.back->bounds().width;
  const double filled = meter_.bar->visible() ? meter_.bar->bounds().width : 0;
  Shown shown{.back = meter_.back->caption(),
              .front = meter_.front->visible() ? meter_.front->caption() : "",
              .fraction = whole > 0 ? std::clamp(filled / whole, 0.0, 1.0) : 0};
  if (shown == shown_) return;
  shown_ = std::move(shown);
  InvalidateRect(handle(), nullptr, FALSE);
}

// In memory first, so that nothing flickers.
void MeterWindow::Draw(const DRAWITEMSTRUCT& item) {
  const RECT area = {0, 0, item.rcItem.right - item.rcItem.left,
                     item.rcItem.bottom - item.rcItem.top};
  const HDC canvas = CreateCompatibleDC(item.hDC);
  const HBITMAP bitmap = CreateCompatibleBitmap(item.hDC, area.right, area.bottom);
  if (canvas && bitmap) {
    const HGDIOBJ bitmap_before = SelectObject(canvas, bitmap);
    const HGDIOBJ font_before = SelectObject(canvas, GetCurrentObject(item.hDC, OBJ_FONT));
    Paint(canvas, area);
    BitBlt(item.hDC, item.rcItem.left, item.rcItem.top, area.right, area.bottom, canvas, 0, 0,
           SRCCOPY);
    SelectObject(canvas, font_before);
    SelectObject(canvas, bitmap_before);
  }
  DeleteObject(bitmap);
  DeleteDC(canvas);
}

void MeterWindow::Paint(HDC canvas, const RECT& area) const {
  const LONG edge = std::lround(area.right * shown_.fraction);
  const RECT bar = {0, 0, edge, area.bottom};
  const RECT rest = {edge, 0, area.right, area.bottom};
  PaintPart(canvas, area, bar, shown_.front, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT);
  PaintPart(canvas, area, rest, shown_.back, COLOR_WINDOW, COLOR_WINDOWTEXT);
  FrameRect(canvas, &area, GetSysColorBrush(COLOR_3DSHADOW));
}

}  // namespace vantora::ui
