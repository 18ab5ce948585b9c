#include "ui/windows/windows_user_interface.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "ui/windows/disabled_windows.h"
#include "ui/windows/window_text.h"

namespace vantora::ui {
namespace {

// A window that asks to be painted whenever it is painted would keep a pass from ending.
constexpr int kMostMessagesOfOnePass = 1000;

}  // namespace

WindowsUserInterface::WindowsUserInterface(std::function<HWND()> owner)
    : owner_(std::move(owner)) {}

WindowsUserInterface::~WindowsUserInterface() = default;

// An open modal dialog owns what is shown over it.
HWND WindowsUserInterface::Owner() const {
  for (const auto& [form, window] : windows_) {
    const HWND dialog = window->handle();
    if (window->is_modal() && dialog && IsWindowEnabled(dialog) && IsWindowVisible(dialog)) {
      return dialog;
    }
  }
  HWND owner = owner_ ? owner_() : nullptr;
  if (!owner || !IsWindow(owner)) owner = GetActiveWindow();
  return owner ? GetAncestor(owner, GA_ROOT) : nullptr;
}

MessageBoxResult WindowsUserInterface::MessageBox(std::string_view text, int style,
                                                  std::string_view title) {
  const HWND owner = Owner();
  const DisabledWindows disabled(owner);
  SetLastError(ERROR_SUCCESS);
  const int result = MessageBoxW(owner, ToUtf16(text).c_str(), ToUtf16(title).c_str(),
                                 static_cast<UINT>(style) | (owner ? 0 : MB_TASKMODAL));
  const DWORD error = GetLastError();
  switch (result) {
    case IDOK:
    case IDCANCEL:
    case IDYES:
    case IDNO:
      return static_cast<MessageBoxResult>(result);
    default:
      throw std::runtime_error("The message \"" + std::string(text) +
                               "\" can't be shown: " + ErrorText(error) +
                               " Message boxes need a desktop: run the program in a user's "
                               "session.");
  }
}

void WindowsUserInterface::ShowModal(Form& form) {
  std::shared_ptr<FormWindow>& known = windows_[&form];
  if (known && known->is_modal() && known->handle()) {
    throw std::logic_error("The dialog " + form.name() + " is open already.");
  }
  known = std::make_shared<FormWindow>(form);  // closes the window of a modeless showing
  const std::shared_ptr<FormWindow> window = known;
  form.Attach(this);
  form.Activate();
  if (!form.visible()) return;
  const HWND owner = Owner();
  const DisabledWindows disabled(owner);
  window->RunModal(owner);
}

FormWindow& WindowsUserInterface::Window(Form& form) {
  std::shared_ptr<FormWindow>& window = windows_[&form];
  if (!window) window = std::make_shared<FormWindow>(form);
  if (!window->handle()) window->Create(Owner());
  return *window;
}

void WindowsUserInterface::ShowModeless(Form& form) {
  if (!form.visible()) {
    form.Attach(this);
    form.Activate();
    if (!form.visible()) return;
  }
  FormWindow& window = Window(form);
  window.Show();
  window.RethrowFailure();
}

void WindowsUserInterface::Refresh(Form& form) {
  const auto known = windows_.find(&form);
  if (known == windows_.end()) {
    if (!form.unloaded()) Window(form);
    return;
  }
  const std::shared_ptr<FormWindow> window = known->second;
  window->Update();
}

void WindowsUserInterface::Forget(Form& form) {
  const auto known = windows_.find(&form);
  if (known == windows_.end()) return;
  const std::shared_ptr<FormWindow> window = known->second;
  windows_.erase(known);
  window->Forget();
}

void WindowsUserInterface::DoEvents() {
  MSG message;
  for (int i = 0; i < kMostMessagesOfOnePass; ++i) {
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) break;
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));  // meant for the program's own loop
      break;
    }
    if (IsForModalDialog(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  const std::map<const Form*, std::shared_ptr<FormWindow>> windows = windows_;
  for (const auto& [form, window] : windows) window->RethrowFailure();
}

bool WindowsUserInterface::IsForModalDialog(MSG& message) {
  std::vector<HWND> dialogs;
  for (const auto& [form, window] : windows_) {
    if (window->handle() && window->is_modal()) dialogs.push_back(window->handle());
  }
  return std::any_of(dialogs.begin(), dialogs.end(),
                     [&](HWND dialog) { return IsDialogMessageW(dialog, &message); });
}

}  // namespace vantora::ui
