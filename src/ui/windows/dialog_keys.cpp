#include "ui/windows/dialog_keys.h"

namespace vantora::ui {
namespace {

// The window property that tells a dialog whose keys are looked after.
constexpr wchar_t kMark[] = L"VantoraDialogKeys";

// Runs for each message of the thread that is being fetched, before the fetching loop sees it.
LRESULT CALLBACK TakeKey(int code, WPARAM removal, LPARAM lparam) {
  auto& message = *reinterpret_cast<MSG*>(lparam);
  if (code == HC_ACTION && (removal & PM_REMOVE) != 0 && message.message >= WM_KEYFIRST &&
      message.message <= WM_KEYLAST) {
    const HWND dialog = GetAncestor(message.hwnd, GA_ROOT);
    const bool is_ours = dialog && GetPropW(dialog, kMark);
    // What the dialog has handled is nothing for the loop any more.
    if (is_ours && IsDialogMessageW(dialog, &message)) message = {};
  }
  return CallNextHookEx(nullptr, code, removal, lparam);
}

}  // namespace

DialogKeys::DialogKeys(HWND dialog)
    : dialog_(dialog),
      hook_(SetWindowsHookExW(WH_GETMESSAGE, TakeKey, nullptr, GetCurrentThreadId())) {
  SetPropW(dialog_, kMark, dialog_);
}

DialogKeys::~DialogKeys() {
  RemovePropW(dialog_, kMark);
  if (hook_) UnhookWindowsHookEx(hook_);
}

}  // namespace vantora::ui
