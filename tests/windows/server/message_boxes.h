// Answers the message boxes of this process from another thread, and remembers their texts. Other
// dialogs, which look alike from outside, are left alone.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "component/com/automation.h"

namespace vantora::com {

class MessageBoxes {
 public:
  // `answer` is the button to press: IDOK, IDCANCEL and so on.
  explicit MessageBoxes(int answer) : thread_([this, answer] { AnswerAll(answer); }) {}
  ~MessageBoxes() { Stop(); }

  // Stops answering; returns the texts of the boxes that were shown.
  const std::vector<std::wstring>& Stop() {
    stopped_ = true;
    if (thread_.joinable()) thread_.join();
    return texts_;
  }

 private:
  static constexpr DWORD kPause = 10;  // milliseconds
  static constexpr int kTextControl = 0xFFFF;

  static BOOL CALLBACK Check(HWND window, LPARAM found) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t kind[16] = L"";
    GetClassNameW(window, kind, 16);
    if (process != GetCurrentProcessId() || !IsWindowVisible(window) ||
        std::wstring_view(kind) != L"#32770" || !GetDlgItem(window, kTextControl)) {
      return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
  }

  void AnswerAll(int answer) {
    while (!stopped_) {
      HWND box = nullptr;
      EnumWindows(&Check, reinterpret_cast<LPARAM>(&box));
      if (box) {
        wchar_t text[1024] = L"";
        GetDlgItemTextW(box, kTextControl, text, 1024);
        texts_.emplace_back(text);
        PostMessageW(box, WM_COMMAND, answer, 0);
        while (IsWindow(box) && !stopped_) Sleep(kPause);
      }
      Sleep(kPause);
    }
  }

  std::atomic<bool> stopped_ = false;
  std::vector<std::wstring> texts_;
  std::thread thread_;
};

}  // namespace vantora::com
