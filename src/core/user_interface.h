// What the engine asks of the user and of the desktop. It is apart from the host application,
// because a missing application must be reported too.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"

namespace vantora {

// Message box styles: a button set plus an icon plus, for some, the second button as default.
enum MessageBoxStyle : int {
  kOkOnly = 0,
  kOkCancel = 1,
  kYesNo = 4,
  kCritical = 16,
  kQuestion = 32,
  kExclamation = 48,
  kInformation = 64,
  kDefaultButton2 = 256,
};

enum class MessageBoxResult : int { kOk = 1, kCancel = 2, kYes = 6, kNo = 7 };

// A top-level window of the desktop.
enum class WindowHandle : std::uintptr_t { kNone = 0 };

// The desktop's windows, where there is a desktop.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;

  // kNone when no window has that caption.
  virtual WindowHandle FindByCaption(std::string_view caption) = 0;
  virtual WindowHandle Foreground() = 0;
  virtual void SetForeground(WindowHandle window) = 0;
  // The thread that owns the window, 0 when there is no such window.
  virtual std::uint32_t ThreadOf(WindowHandle window) = 0;
  // The window's style bits; 0 when they can't be read.
  virtual std::uint32_t Style(WindowHandle window) = 0;
  virtual void SetStyle(WindowHandle window, std::uint32_t style) = 0;
};

class UserInterface {
 public:
  virtual ~UserInterface() = default;

  // `style` is a sum of MessageBoxStyle values. Shows the box and returns the button pressed.
  virtual MessageBoxResult MessageBox(std::string_view text, int style, std::string_view title) = 0;

  // Shows the form and returns when it has been hidden or unloaded.
  virtual void ShowModal(Form& form) = 0;
  // Shows the form and returns at once; also called again for a visible form to redraw it.
  virtual void ShowModeless(Form& form) = 0;
  // A form changed (caption, a control, hidden, unloaded). Where there are windows, the progress
  // dialog calls it once before it is shown, to have its window made, hidden.
  virtual void Refresh(Form& form) = 0;
  // The form is about to be destroyed.
  virtual void Forget(Form& form) = 0;
  // One pass of pending messages: repaints, and presses the buttons the user pressed meanwhile.
  virtual void DoEvents() = 0;

  // Null where there are no windows (a terminal, answers given beforehand).
  virtual WindowSystem* windows() { return nullptr; }
};

// The user's clock.
class Clock {
 public:
  virtual ~Clock() = default;
  // The current date and time in the general date format of the user, such as
  // "11/21/2026 2:31:05 PM".
  virtual std::string NowAsGeneralDate() = 0;
};

// Version information of files, where the platform keeps some.
class FileVersions {
 public:
  virtual ~FileVersions() = default;

  // The folder in which programs are installed, without a trailing separator; empty where the
  // platform has none.
  virtual std::string ProgramFilesFolder() = 0;
  // Size in bytes of the file's version information; 0 when it has none or does not exist.
  virtual std::size_t Size(std::string_view path) = 0;
  // The version information itself; nullopt when it can't be read.
  virtual std::optional<std::vector<std::byte>> Read(std::string_view path, std::size_t size) = 0;
  // The bytes of one entry ("\VarFileInfo\Translation"); nullopt when there is none.
  virtual std::optional<std::vector<std::byte>> Query(const std::vector<std::byte>& information,
                                                      std::string_view entry) = 0;
};

// What each public class is given when it is created. The services outlive every object that was
// created with them.
struct Services {
  UserInterface& user_interface;
  Clock& clock;
  FileVersions& file_versions;
};

}  // namespace vantora
