#include "ui/windows/display_scale.h"

#include <cmath>
#include <cwchar>

namespace vantora::ui {
namespace {

// What the dialog's font is called where the system does not name one, and its size in points.
constexpr wchar_t kDialogFont[] = L"MS Shell Dlg";
constexpr int kDialogFontPoints = 8;

UINT SystemDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = screen ? GetDeviceCaps(screen, LOGPIXELSX) : 0;
  if (screen) ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : USER_DEFAULT_SCREEN_DPI;
}

bool ReadMessageFont(UINT dpi, LOGFONTW& font) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof(metrics);
  const auto parameters_for_dpi =
      FindUser32Function<BOOL WINAPI(UINT, UINT, PVOID, UINT, UINT)>("SystemParametersInfoForDpi");
  if (parameters_for_dpi &&
      parameters_for_dpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0, dpi)) {
    font = metrics.lfMessageFont;
    return true;
  }
  if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0)) return false;
  font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, static_cast<int>(dpi), static_cast<int>(SystemDpi()));
  return true;
}

}  // namespace

UINT DpiOf(HWND window) {
  const auto dpi_for_window = FindUser32Function<UINT WINAPI(HWND)>("GetDpiForWindow");
  const UINT dpi = dpi_for_window ? dpi_for_window(window) : 0;
  return dpi != 0 ? dpi : SystemDpi();
}

SIZE OuterSize(HWND window, SIZE client, UINT dpi) {
  RECT outer = {0, 0, client.cx, client.cy};
  const auto style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
  const auto extended_style = static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE));
  const auto adjust_for_dpi =
      FindUser32Function<BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT)>("AdjustWindowRectExForDpi");
  if (!adjust_for_dpi || !adjust_for_dpi(&outer, style, FALSE, extended_style, dpi)) {
    AdjustWindowRectEx(&outer, style, FALSE, extended_style);
  }
  return {outer.right - outer.left, outer.bottom - outer.top};
}

void TakeOverScaling(HWND dialog) {
  constexpr int kDisableAll = 1;
  const auto set_behaviour =
      FindUser32Function<BOOL WINAPI(HWND, int, int)>("SetDialogDpiChangeBehavior");
  if (set_behaviour) set_behaviour(dialog, kDisableAll, kDisableAll);
}

int ToPixels(double points, UINT dpi) { return static_cast<int>(std::lround(points * dpi / 72)); }

MessageFont::MessageFont(UINT dpi, Weight weight) {
  LOGFONTW font = {};
  if (!ReadMessageFont(dpi, font)) {
    font.lfHeight = -ToPixels(kDialogFontPoints, dpi);
    font.lfCharSet = DEFAULT_CHARSET;
    std::wcscpy(font.lfFaceName, kDialogFont);
  }
  if (weight == Weight::kBold) font.lfWeight = FW_BOLD;
  font_ = CreateFontIndirectW(&font);
}

}  // namespace vantora::ui
