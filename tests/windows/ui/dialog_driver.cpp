#include "ui/dialog_driver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

#include "ui/windows/window_text.h"

namespace vantora::ui {
namespace {

// Long enough for a loaded machine; a passing test waits for none of it.
constexpr int kPatienceInMilliseconds = 20'000;
constexpr int kLookAgainInMilliseconds = 5;
constexpr int kFirstControlId = 100;
constexpr LPARAM kAltIsDown = 1 << 29;

constexpr wchar_t kHostClass[] = L"VantoraTestHost";
// Posted to a host window with a number: by then all that was posted before has been handled.
constexpr UINT kReached = WM_APP;
std::atomic<LPARAM> last_posted = 0;
std::atomic<LPARAM> last_reached = 0;

LRESULT CALLBACK HostProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != kReached) return DefWindowProcW(window, message, wparam, lparam);
  last_reached = lparam;
  return 0;
}

BOOL CALLBACK FindHostWindow(HWND window, LPARAM found) {
  wchar_t name[std::size(kHostClass) + 1] = L"";
  GetClassNameW(window, name, static_cast<int>(std::size(name)));
  if (std::wstring_view(name) != kHostClass) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

// A window of the program that the dialog belongs to. Not every dialog is owned by one: a program
// without an active window has none to give.
HWND HostWindowBeside(HWND dialog) {
  HWND host = nullptr;
  const DWORD thread = GetWindowThreadProcessId(dialog, nullptr);
  if (thread != 0) EnumThreadWindows(thread, FindHostWindow, reinterpret_cast<LPARAM>(&host));
  return host;
}

HWND MakeWindow(const wchar_t* caption, RECT place) {
  WNDCLASSW host_class = {};
  host_class.lpfnWndProc = HostProcedure;
  host_class.lpszClassName = kHostClass;
  host_class.hbrBackground = GetSysColorBrush(COLOR_APPWORKSPACE);
  RegisterClassW(&host_class);  // fails harmlessly the second time
  return CreateWindowExW(0, kHostClass, caption, WS_OVERLAPPEDWINDOW | WS_VISIBLE, place.left,
                         place.top, place.right - place.left, place.bottom - place.top, nullptr,
                         nullptr, nullptr, nullptr);
}

struct Picture {
  BITMAPINFOHEADER header = {};
  std::vector<char> pixels;
};

Picture ReadScreen(const RECT& area) {
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
  SelectObject(memory, before);
  Picture picture;
  picture.header.biSize = sizeof(picture.header);
  picture.header.biWidth = width;
  picture.header.biHeight = height;
  picture.header.biPlanes = 1;
  picture.header.biBitCount = 24;
  const std::size_t line = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
  picture.pixels.resize(line * height);
  BITMAPINFO info = {picture.header, {}};
  GetDIBits(memory, bitmap, 0, height, picture.pixels.data(), &info, DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return picture;
}

}  // namespace

HostProgram::HostProgram()
    : main_window(MakeWindow(L"Host", {40, 40, 840, 640})),
      second_window(MakeWindow(L"Second workbook", {300, 500, 900, 740})) {}

HostProgram::~HostProgram() {
  DestroyWindow(second_window);
  DestroyWindow(main_window);
}

void WaitUntil(const std::function<bool()>& happened) {
  for (int waited = 0; waited < kPatienceInMilliseconds; waited += kLookAgainInMilliseconds) {
    if (happened()) return;
    Sleep(kLookAgainInMilliseconds);
  }
  ADD_FAILURE() << "what was waited for did not happen";
}

HWND WaitForDialog(const std::string& caption) {
  HWND dialog = nullptr;
  WaitUntil([&] {
    dialog = FindWindowW(L"#32770", ToUtf16(caption).c_str());
    return dialog && IsWindowVisible(dialog);
  });
  EXPECT_NE(dialog, nullptr) << caption;
  WaitUntilIdle(dialog);
  return dialog;
}

void WaitUntilIdle(HWND window) {
  const HWND host = HostWindowBeside(window);
  const bool own_thread = GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
  if (!host || own_thread) return;
  // Twice, because a control may answer a message by posting another one.
  for (int i = 0; i < 2; ++i) {
    const LPARAM number = ++last_posted;
    PostMessageW(host, kReached, 0, number);
    WaitUntil([&] { return last_reached >= number || !IsWindow(window); });
  }
}

HWND WindowOf(HWND dialog, const Form& form, const std::string& name) {
  for (std::size_t i = 0; i < form.controls().size(); ++i) {
    if (form.controls()[i]->name() != name) continue;
    return GetDlgItem(dialog, kFirstControlId + static_cast<int>(i));
  }
  ADD_FAILURE() << "the form has no control " << name;
  return nullptr;
}

HWND FocusOf(HWND dialog) {
  GUITHREADINFO thread = {};
  thread.cbSize = sizeof(thread);
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &thread);
  return thread.hwndFocus;
}

void Click(HWND button) { PostMessageW(button, BM_CLICK, 0, 0); }

void ClickEntry(HWND list, int entry) {
  const auto height = static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
  const LPARAM place = MAKELPARAM(5, entry * height + height / 2);
  PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, place);
  PostMessageW(list, WM_LBUTTONUP, 0, place);
}

void PressKey(HWND dialog, WPARAM key) {
  const HWND focus = FocusOf(dialog);
  PostMessageW(focus ? focus : dialog, WM_KEYDOWN, key, 1);
  PostMessageW(focus ? focus : dialog, WM_KEYUP, key, 0xC0000001);
}

void PressAlt(HWND dialog, wchar_t letter) {
  PostMessageW(FocusOf(dialog), WM_SYSCHAR, letter, kAltIsDown | 1);
}

void PressAltF4(HWND dialog) { PostMessageW(dialog, WM_SYSKEYDOWN, VK_F4, kAltIsDown | 1); }

void Type(HWND box, const std::wstring& text) {
  for (const wchar_t letter : text) PostMessageW(box, WM_CHAR, letter, 1);
}

void TakePicture(HWND window, const std::string& name) {
  WaitUntilIdle(window);
  Sleep(150);  // until the screen shows what was drawn
  RECT area = {};
  GetWindowRect(window, &area);
  const Picture picture = ReadScreen(area);
  std::filesystem::create_directory("screenshots");
  std::ofstream file("screenshots/" + name + ".bmp", std::ios::binary);
  BITMAPFILEHEADER header = {};
  header.bfType = 0x4D42;  // "BM"
  header.bfOffBits = sizeof(header) + sizeof(picture.header);
  header.bfSize = header.bfOffBits + static_cast<DWORD>(picture.pixels.size());
  file.write(reinterpret_cast<const char*>(&header), sizeof(header));
  file.write(reinterpret_cast<const char*>(&picture.header), sizeof(picture.header));
  file.write(picture.pixels.data(), static_cast<std::streamsize>(picture.pixels.size()));
  EXPECT_TRUE(file.good());
}

COLORREF ColourAt(HWND window, int x, int y) {
  POINT point = {x, y};
  ClientToScreen(window, &point);
  const HDC screen = GetDC(nullptr);
  const COLORREF colour = GetPixel(screen, point.x, point.y);
  ReleaseDC(nullptr, screen);
  return colour;
}

}  // namespace vantora::ui
