// The progress dialog, message boxes and pending messages, on real windows.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "core/progress_dialog.h"
#include "ui/dialog_driver.h"
#include "ui/every_control_form.h"
#include "ui/windows/window_text.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::ui {
namespace {

constexpr char kTitle[] = "Save 2026 at marker";

HWND ProgressWindow() { return FindWindowW(L"#32770", ToUtf16(kTitle).c_str()); }

class Progress : public ::testing::Test {
 protected:
  // A loaded machine's screen shows late what was drawn.
  void WaitForColour(HWND window, int x, int y, int system_colour) {
    SCOPED_TRACE(x);
    WaitUntil([&] {
      user_interface.DoEvents();
      return ColourAt(window, x, y) == GetSysColor(system_colour);
    });
  }

  HostProgram program;
  WindowsUserInterface user_interface{[this] { return program.main_window; }};
};

TEST_F(Progress, WindowExistsHiddenBeforeItIsShown) {
  frmProgressBar progress(user_interface);
  progress.SetTitle(kTitle);
  const HWND window = ProgressWindow();
  ASSERT_NE(window, nullptr);
  EXPECT_FALSE(IsWindowVisible(window));
  progress.ShowForm();
  EXPECT_TRUE(IsWindowVisible(window));
  EXPECT_EQ(ProgressWindow(), window);
  EXPECT_EQ(GetWindowLongW(window, GWL_STYLE) & WS_SYSMENU, 0);
  EXPECT_EQ(GetWindow(window, GW_OWNER), program.main_window);
  EXPECT_TRUE(IsWindowEnabled(program.main_window));
  progress.Unload();
  EXPECT_EQ(ProgressWindow(), nullptr);
}

TEST_F(Progress, BarIsDrawnToItsFraction) {
  frmProgressBar progress(user_interface);
  progress.SetTitle(kTitle);
  progress.ShowForm();
  progress.SetText("Reading sheet R&D (3 of 40)");
  const HWND window = ProgressWindow();
  const HWND meter = WindowOf(window, progress, "lblBack");
  RECT area = {};
  GetClientRect(meter, &area);
  for (const int percent : {0, 30, 54, 100}) {
    SCOPED_TRACE(percent);
    progress.SetProgress(percent);
    const int edge = area.right * percent / 100;
    const int row = area.bottom - 3;
    if (percent > 0) WaitForColour(meter, edge - 3, row, COLOR_HIGHLIGHT);
    if (percent < 100) WaitForColour(meter, edge + 3, row, COLOR_WINDOW);
    TakePicture(window, "frmProgressBar" + std::to_string(percent));
  }
  EXPECT_EQ(TextOf(WindowOf(window, progress, "lblMessage")), L"Reading sheet R&D (3 of 40)");
}

TEST_F(Progress, CancelIsPressedBetweenTwoSteps) {
  const struct {
    const char* name;
    void (*press)(HWND window, const Form& form);
  } kWays[] = {
      {"click", [](HWND window, const Form& form) { Click(WindowOf(window, form, "butCancel")); }},
      {"Escape", [](HWND window, const Form&) { PressKey(window, VK_ESCAPE); }},
      {"Enter", [](HWND window, const Form&) { PressKey(window, VK_RETURN); }},
  };
  for (const auto& way : kWays) {
    SCOPED_TRACE(way.name);
    frmProgressBar progress(user_interface);
    progress.SetTitle(kTitle);
    progress.ShowForm();
    const HWND window = ProgressWindow();
    progress.SetProgress(1);
    EXPECT_FALSE(progress.Cancelled());
    way.press(window, progress);
    EXPECT_FALSE(progress.Cancelled());
    progress.SetProgress(2);
    EXPECT_TRUE(progress.Cancelled());
    EXPECT_FALSE(IsWindowEnabled(WindowOf(window, progress, "butCancel")));
    EXPECT_EQ(TextOf(WindowOf(window, progress, "lblMessage")), L"Cancelling, please wait...");
    if (std::string(way.name) == "click") TakePicture(window, "frmProgressBarCancelled");
  }
}

TEST_F(Progress, CannotBeClosed) {
  frmProgressBar progress(user_interface);
  progress.SetTitle(kTitle);
  progress.ShowForm();
  const HWND window = ProgressWindow();
  PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
  PostMessageW(window, WM_CLOSE, 0, 0);
  PressAltF4(window);
  user_interface.DoEvents();
  EXPECT_TRUE(IsWindow(window));
  EXPECT_TRUE(progress.visible());
  EXPECT_FALSE(progress.Cancelled());
}

TEST_F(Progress, BoxOverItKeepsItFromBeingPressed) {
  frmProgressBar progress(user_interface);
  progress.SetTitle(kTitle);
  progress.ShowForm();
  const HWND window = ProgressWindow();
  {
    User user([&] {
      const HWND box = WaitForDialog("Vantora");
      EXPECT_FALSE(IsWindowEnabled(window));
      PostMessageW(box, WM_COMMAND, IDOK, 0);
    });
    user_interface.MessageBox("The sheet is protected.", kCritical, "Vantora");
  }
  EXPECT_TRUE(IsWindowEnabled(window));
}

TEST_F(Progress, WindowGoesWithTheForm) {
  {
    frmProgressBar progress(user_interface);
    progress.SetTitle(kTitle);
    progress.ShowForm();
  }
  EXPECT_EQ(ProgressWindow(), nullptr);
  user_interface.DoEvents();
}

TEST_F(Progress, PendingMessagesOfOthersAreHandledAndQuitIsLeft) {
  EveryControlForm form;
  form.more.on_click = [] { throw std::runtime_error("out of a handler"); };
  user_interface.ShowModeless(form);
  Click(WindowOf(FindWindowW(L"#32770", ToUtf16(form.caption()).c_str()), form, "butMore"));
  PostMessageW(program.second_window, WM_CLOSE, 0, 0);
  EXPECT_THROW(user_interface.DoEvents(), std::runtime_error);
  EXPECT_FALSE(IsWindow(program.second_window));
  PostQuitMessage(3);
  user_interface.DoEvents();
  MSG message = {};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 3u);
  form.Unload();
}

TEST_F(Progress, MessageBoxesAreAnswered) {
  const struct {
    int style;
    int answer;
    MessageBoxResult result;
    int default_button;
  } kBoxes[] = {
      {kOkOnly | kInformation, IDOK, MessageBoxResult::kOk, IDOK},
      {kOkCancel | kExclamation, IDCANCEL, MessageBoxResult::kCancel, IDOK},
      {kYesNo | kQuestion, IDYES, MessageBoxResult::kYes, IDYES},
      {kYesNo | kCritical | kDefaultButton2, IDNO, MessageBoxResult::kNo, IDNO},
  };
  for (const auto& box : kBoxes) {
    SCOPED_TRACE(box.style);
    User user([&] {
      const HWND window = WaitForDialog("Vantora");
      if (box.answer == IDCANCEL) TakePicture(window, "messageBox");
      EXPECT_EQ(TextOf(GetDlgItem(window, 0xFFFF)), L"Fran\u00E7ois:\n\nsave first?");
      EXPECT_EQ(GetDlgCtrlID(FocusOf(window)), box.default_button);
      EXPECT_EQ(GetWindow(window, GW_OWNER), program.main_window);
      EXPECT_FALSE(IsWindowEnabled(program.second_window));
      PostMessageW(window, WM_COMMAND, box.answer, 0);
    });
    EXPECT_EQ(user_interface.MessageBox("Fran\xC3\xA7ois:\n\nsave first?", box.style, "Vantora"),
              box.result);
  }
}

TEST_F(Progress, WithoutAnOwnerTheActiveWindowOwns) {
  WindowsUserInterface ownerless;
  SetActiveWindow(program.second_window);
  User user([&] {
    const HWND window = WaitForDialog("Vantora");
    EXPECT_EQ(GetWindow(window, GW_OWNER), program.second_window);
    PostMessageW(window, WM_COMMAND, IDOK, 0);
  });
  EXPECT_EQ(ownerless.MessageBox("text", kOkOnly, "Vantora"), MessageBoxResult::kOk);
}

}  // namespace
}  // namespace vantora::ui
