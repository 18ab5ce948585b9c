// The keyboard in modeless dialogs while the program's own loop fetches the messages.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/progress_dialog.h"
#include "ui/dialog_driver.h"
#include "ui/every_control_form.h"
#include "ui/windows/window_text.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::ui {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ModelessKeys : public ::testing::Test {
 protected:
  // A loop that knows nothing of dialogs. Returns the keys that it was given for windows of its
  // own.
  std::vector<WPARAM> RunLoop() {
    std::vector<WPARAM> keys;
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_KEYDOWN) keys.push_back(message.wParam);
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    return keys;
  }
  static HWND DialogOf(const Form& form) {
    return FindWindowW(L"#32770", ToUtf16(form.caption()).c_str());
  }

  HostProgram program;
  WindowsUserInterface user_interface{[this] { return program.main_window; }};
};

TEST_F(ModelessKeys, MoveAndPressAsInAModalDialog) {
  EveryControlForm form;
  user_interface.ShowModeless(form);
  RunLoop();
  const HWND dialog = DialogOf(form);
  EXPECT_EQ(FocusOf(dialog), WindowOf(dialog, form, "txtName"));
  PressKey(dialog, VK_TAB);
  EXPECT_THAT(RunLoop(), IsEmpty());
  EXPECT_EQ(FocusOf(dialog), WindowOf(dialog, form, "txtRemarks"));
  PressAlt(dialog, L'm');
  RunLoop();
  PressKey(dialog, VK_ESCAPE);
  RunLoop();
  EXPECT_THAT(form.log, ElementsAre("more", "cancel"));
  EXPECT_FALSE(form.visible());
}

TEST_F(ModelessKeys, CancelTheProgressDialog) {
  frmProgressBar progress(user_interface);
  progress.SetTitle("Shift History");
  progress.ShowForm();
  PressKey(DialogOf(progress), VK_ESCAPE);
  RunLoop();
  EXPECT_TRUE(progress.Cancelled());
}

TEST_F(ModelessKeys, LeaveThoseOfOtherWindowsToTheLoop) {
  {
    EveryControlForm form;
    user_interface.ShowModeless(form);
    RunLoop();
    PostMessageW(program.main_window, WM_KEYDOWN, VK_TAB, 1);
    EXPECT_THAT(RunLoop(), ElementsAre(VK_TAB));
  }
  PostMessageW(program.main_window, WM_KEYDOWN, VK_ESCAPE, 1);
  EXPECT_THAT(RunLoop(), ElementsAre(VK_ESCAPE));
}

}  // namespace
}  // namespace vantora::ui
