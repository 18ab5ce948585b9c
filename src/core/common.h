// Routines that nearly every class uses: finding the model's marked sheets, and the message boxes
// that all operations share.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/host.h"
#include "core/user_interface.h"

namespace vantora {

// The title of the component's message boxes.
inline constexpr std::string_view kProductName = "Vantora";
// The title of those that name none: the component's own name.
inline constexpr std::string_view kDefaultTitle = "Orvanemcro1";

// Whether the sheet carries the flag: `flag` occurs anywhere in the text of its cell A1, upper and
// lower case alike. False for a null sheet. An empty A1 and one that shows an error value carry no
// flag. A failing host call reaches the caller.
bool SheetHasFlag(const host::WorksheetPtr& sheet, std::string_view flag);

// The number written behind the first `flag` in cell A1 ("X14", "X 20"), rounded half to even;
// `default_number` when A1 is empty, shows an error value, has no such flag, or the number is not
// within 1 to 5000. `sheet` must not be null. A failing host call reaches the caller.
int FlagNumber(const host::WorksheetPtr& sheet, std::string_view flag, int default_number = 0);

// Each throws HostError 91 when there is none: no workbook or no window is open.
host::WorkbookPtr ActiveWorkbookOf(host::Application& application);
host::WindowPtr ActiveWindowOf(host::Application& application);
// The active sheet where only a worksheet will do: throws HostError 13 for a chart sheet. Null when
// no workbook is open.
host::WorksheetPtr ActiveWorksheetOf(host::Application& application);

// The active sheet when it carries the flag, else the first worksheet of the active workbook in tab
// order that does; null when none does or no workbook is open.
host::WorksheetPtr FindFlaggedSheet(host::Application& application, std::string_view flag);

// Recommends saving before an operation that can't be undone. `preface` tells what is about to
// happen and may be empty. Returns kOk or kCancel; callers go on only on kOk.
MessageBoxResult ConfirmSaveFirst(UserInterface& user_interface, std::string_view preface);

// Numbers of the programming-error report that have a text of their own.
inline constexpr int kInvalidGlobals = 1;
inline constexpr int kNoApplication = 2;

struct ProgrammingError {
  std::optional<std::string_view> module = std::nullopt;
  std::optional<std::string_view> detail = std::nullopt;
  // Reported when greater than 0.
  std::optional<int> number = std::nullopt;
};

// Shows what the user should pass on to support. Raises nothing: the caller decides what to do
// next.
void ReportProgrammingError(UserInterface& user_interface, const ProgrammingError& error);

// Makes a dialog's window the desktop's foreground window if the foreground belongs to the same
// thread; otherwise processes pending messages once. Does nothing where there are no windows.
void BringToFront(UserInterface& user_interface, WindowHandle window);

// The version line of the component that is installed on this machine, which need not be the one
// that runs, or a numbered text that tells why there is none.
std::string LookUpVersion(FileVersions& file_versions);

}  // namespace vantora
