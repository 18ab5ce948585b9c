// The model's dialogs and every kind of control, on real windows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "dialogs/frm_copy_worksheet.h"
#include "dialogs/frm_save_comments.h"
#include "dialogs/frm_save_history_prompt.h"
#include "ui/dialog_driver.h"
#include "ui/every_control_form.h"
#include "ui/windows/window_text.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::ui {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FixedClock : public Clock {
 public:
  std::string NowAsGeneralDate() override { return "11/21/2026 2:31:05 PM"; }
};

class Forms : public ::testing::Test {
 protected:
  HostProgram program;
  WindowsUserInterface user_interface{[this] { return program.main_window; }};
  EveryControlForm form;

  // Shows the form until it is closed, or until `actions` have been done.
  void Show(const std::function<void(HWND)>& actions) {
    User user([&] {
      const HWND dialog = WaitForDialog(form.caption());
      actions(dialog);
      WaitUntilIdle(dialog);
      form.allows_close = true;
      PostMessageW(dialog, WM_CLOSE, 0, 0);
    });
    user_interface.ShowModal(form);
  }
  HWND Window(HWND dialog, const char* name) { return WindowOf(dialog, form, name); }
};

TEST_F(Forms, HistoryYearIsChosenWithTheKeyboard) {
  frmSaveHistoryPrompt prompt;
  for (const char* year : {"2021 (column J)", "2022 (column K)", "2023 (column L)"}) {
    prompt.YearCaptionAdd(year);
  }
  {
    User user([&] {
      const HWND dialog = WaitForDialog("Vantora Save History Year Selection");
      TakePicture(dialog, "frmSaveHistoryPrompt");
      EXPECT_EQ(GetWindow(dialog, GW_OWNER), program.main_window);
      EXPECT_EQ(GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
      EXPECT_FALSE(IsWindowEnabled(program.main_window));
      EXPECT_FALSE(IsWindowEnabled(program.second_window));
      EXPECT_EQ(FocusOf(dialog), WindowOf(dialog, prompt, "cboYear"));
      PressKey(dialog, VK_DOWN);
      PressKey(dialog, VK_DOWN);
      PressKey(dialog, VK_RETURN);
    });
    user_interface.ShowModal(prompt);
  }
  EXPECT_TRUE(prompt.Continue());
  EXPECT_EQ(prompt.Choice(), 3);
  EXPECT_TRUE(IsWindowEnabled(program.main_window));
  EXPECT_TRUE(IsWindowEnabled(program.second_window));
  EXPECT_EQ(FindWindowW(nullptr, L"Vantora Save History Year Selection"), nullptr);
}

TEST_F(Forms, HistoryPromptIsLeftInEveryWay) {
  const struct {
    const char* name;
    void (*leave)(HWND dialog, const Form& form);
    bool unloaded;
  } kWays[] = {
      {"Cancel", [](HWND dialog, const Form& form) { Click(WindowOf(dialog, form, "butCancel")); },
       false},
      {"Escape", [](HWND dialog, const Form&) { PressKey(dialog, VK_ESCAPE); }, false},
      {"close box",
       [](HWND dialog, const Form&) { PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }, true},
      {"Alt+F4", [](HWND dialog, const Form&) { PressAltF4(dialog); }, true},
  };
  for (const auto& way : kWays) {
    SCOPED_TRACE(way.name);
    frmSaveHistoryPrompt prompt;
    prompt.YearCaptionAdd("2021 (column J)");
    {
      User user([&] { way.leave(WaitForDialog(prompt.caption()), prompt); });
      user_interface.ShowModal(prompt);
    }
    EXPECT_FALSE(prompt.Continue());
    EXPECT_EQ(prompt.unloaded(), way.unloaded);
  }
}

TEST_F(Forms, CommentIsTypedBeforeTheDate) {
  FixedClock clock;
  frmSaveComments comments(clock);
  {
    User user([&] {
      const HWND dialog = WaitForDialog(comments.caption());
      TakePicture(dialog, "frmSaveComments");
      const HWND box = WindowOf(dialog, comments, "txtComments");
      EXPECT_EQ(FocusOf(dialog), box);
      Type(box, L"Budget \u20AC\nfinal");
      WaitUntilIdle(dialog);
      EXPECT_EQ(TextOf(box), L"Budget \u20AC\r\nfinal -- 11/21/2026 2:31:05 PM");
      PressKey(dialog, VK_RETURN);
    });
    user_interface.ShowModal(comments);
  }
  EXPECT_TRUE(comments.Continue());
  EXPECT_EQ(comments.CommentText(), "Budget \xE2\x82\xAC\nfinal -- 11/21/2026 2:31:05 PM");
}

// Several lines of text keep the Escape key from the dialog unless it sees to it.
TEST_F(Forms, TheOutcomeOfACopyIsBoldBlueAndForReadingOnly) {
  frmCopyWorksheet dialog;
  dialog.SetMessage("Copy is complete.");
  dialog.EnableCopy(false);
  LOGFONTW font = {};
  COLORREF color = 0;
  LONG style = 0;
  {
    const User user([&] {
      const HWND window = WaitForDialog(dialog.caption());
      const HWND box = WindowOf(window, dialog, "txtResult");
      style = GetWindowLongW(box, GWL_STYLE);
      const auto handle = reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0));
      GetObjectW(handle, sizeof(font), &font);
      const HDC drawing = CreateCompatibleDC(nullptr);
      SendMessageW(window, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(drawing),
                   reinterpret_cast<LPARAM>(box));
      color = GetTextColor(drawing);
      DeleteDC(drawing);
      // The copy button is disabled: Enter presses the other one.
      PressKey(window, VK_RETURN);
    });
    user_interface.ShowModal(dialog);
  }
  EXPECT_NE(style & ES_READONLY, 0);
  EXPECT_EQ(font.lfWeight, FW_BOLD);
  EXPECT_EQ(color, RGB(0, 0, 255));
  EXPECT_TRUE(dialog.IsCancelled());
}

TEST_F(Forms, EscapeInTheCommentPressesCancel) {
  FixedClock clock;
  frmSaveComments comments(clock);
  {
    User user([&] { PressKey(WaitForDialog(comments.caption()), VK_ESCAPE); });
    user_interface.ShowModal(comments);
  }
  EXPECT_FALSE(comments.Continue());
  EXPECT_FALSE(comments.unloaded());
}

TEST_F(Forms, EveryControlReportsWhatTheUserDoes) {
  Show([&](HWND dialog) {
    TakePicture(dialog, "everyControl");
    EXPECT_EQ(SendMessageW(Window(dialog, "cboBook"), CB_GETCURSEL, 0, 0), CB_ERR);
    EXPECT_THAT(form.log, IsEmpty());
    Type(Window(dialog, "txtName"), L"\u00C4");
    Type(Window(dialog, "txtRemarks"), L"a\n");
    PostMessageW(Window(dialog, "cboBook"), WM_KEYDOWN, VK_DOWN, 1);
    ClickEntry(Window(dialog, "lstSheets"), 2);
    Click(Window(dialog, "optSelected"));
    Click(Window(dialog, "optSelected"));
    Click(Window(dialog, "optBelow"));
    Click(Window(dialog, "chkFormats"));
    Click(Window(dialog, "chkFormats"));
    Click(Window(dialog, "butMore"));
    WaitUntilIdle(dialog);
    SendMessageW(Window(dialog, "cboBook"), CB_SHOWDROPDOWN, TRUE, 0);
    TakePicture(dialog, "everyControlFilled");
    SendMessageW(Window(dialog, "cboBook"), CB_SHOWDROPDOWN, FALSE, 0);
    EXPECT_EQ(SendMessageW(Window(dialog, "optAll"), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    EXPECT_EQ(SendMessageW(Window(dialog, "optSelected"), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(SendMessageW(Window(dialog, "chkFormats"), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    Click(Window(dialog, "butCopy"));
  });
  EXPECT_THAT(form.log,
              ElementsAre("name \xC3\x84", "remarks a", "remarks a\n", "book 0", "sheets 2",
                          "optSelected", "optBelow", "formats", "no formats", "more", "copy"));
  EXPECT_FALSE(form.visible());
}

TEST_F(Forms, ShownAgainItStandsAsItWasLeft) {
  form.remarks.SetText("one\ntwo");
  form.book.Choose(2);
  form.PressOption(form.below);
  form.formats.SetChecked(true);
  form.log.clear();
  for (int showing = 0; showing < 2; ++showing) {
    Show([&](HWND dialog) {
      EXPECT_EQ(TextOf(Window(dialog, "txtRemarks")), L"one\r\ntwo");
      EXPECT_EQ(SendMessageW(Window(dialog, "cboBook"), CB_GETCURSEL, 0, 0), 2);
      EXPECT_EQ(SendMessageW(Window(dialog, "optBelow"), BM_GETCHECK, 0, 0), BST_CHECKED);
      EXPECT_EQ(SendMessageW(Window(dialog, "chkFormats"), BM_GETCHECK, 0, 0), BST_CHECKED);
    });
  }
  EXPECT_THAT(form.log, IsEmpty());
  EXPECT_EQ(form.remarks.text(), "one\ntwo");
}

TEST_F(Forms, ChangesOfAHandlerAreShown) {
  form.more.on_click = [&] {
    form.SetCaption("Changed");
    form.name.SetText("Sheet \xE2\x82\xAC");
    form.book.AddItem("Fourth.xlsm");
    form.book.Choose(3);
    form.sheets.ClearItems();
    form.formats.SetCaption("&Nothing");
    form.formats.SetEnabled(false);
    form.below.SetVisible(false);
    form.AddNote("Late");
    form.more.SetEnabled(false);
    Bounds bounds = form.copy.bounds();
    bounds.left -= 72;
    form.copy.SetBounds(bounds);
  };
  Show([&](HWND dialog) {
    RECT before = {};
    GetWindowRect(Window(dialog, "butCopy"), &before);
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Window(dialog, "butMore")), TRUE);
    Click(Window(dialog, "butMore"));
    WaitUntilIdle(dialog);
    WaitForDialog("Changed");
    TakePicture(dialog, "everyControlChanged");
    EXPECT_EQ(TextOf(Window(dialog, "txtName")), L"Sheet \u20AC");
    EXPECT_EQ(SendMessageW(Window(dialog, "cboBook"), CB_GETCURSEL, 0, 0), 3);
    EXPECT_EQ(SendMessageW(Window(dialog, "lstSheets"), LB_GETCOUNT, 0, 0), 0);
    EXPECT_EQ(TextOf(Window(dialog, "chkFormats")), L"&Nothing");
    EXPECT_FALSE(IsWindowEnabled(Window(dialog, "chkFormats")));
    EXPECT_FALSE(IsWindowVisible(Window(dialog, "optBelow")));
    EXPECT_TRUE(IsWindowVisible(Window(dialog, "chkNote1")));
    // The pressed button is disabled: the keyboard goes to the next control.
    EXPECT_EQ(FocusOf(dialog), Window(dialog, "butCopy"));
    RECT after = {};
    GetWindowRect(Window(dialog, "butCopy"), &after);
    EXPECT_LT(after.left, before.left);
    EXPECT_EQ(after.right - after.left, before.right - before.left);
  });
}

TEST_F(Forms, KeysMoveInTheOrderOfTheControls) {
  std::vector<std::string> visited;
  const auto remember = [&](HWND dialog) {
    WaitUntilIdle(dialog);
    const HWND focus = FocusOf(dialog);
    for (const auto& control : form.controls()) {
      if (Window(dialog, control->name().c_str()) == focus) visited.push_back(control->name());
    }
  };
  Show([&](HWND dialog) {
    remember(dialog);
    for (int i = 0; i < 9; ++i) {
      PressKey(dialog, VK_TAB);
      remember(dialog);
    }
    PressAlt(dialog, L'r');
    remember(dialog);
    PressAlt(dialog, L'm');
    remember(dialog);
    PressAlt(dialog, L'f');
    remember(dialog);
  });
  EXPECT_THAT(visited, ElementsAre("txtName", "txtRemarks", "cboBook", "lstSheets", "optAll",
                                   "optAbove", "chkFormats", "butMore", "butCopy", "butCancel",
                                   "txtRemarks", "butMore", "chkFormats"));
  EXPECT_THAT(form.log, ElementsAre("more", "formats"));
}

TEST_F(Forms, CloseIsRefusedWhenTheFormSaysSo) {
  form.allows_close = false;
  form.more.on_click = [&] { form.log.push_back("still open"); };
  Show([&](HWND dialog) {
    PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
    PressAltF4(dialog);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    Click(Window(dialog, "butMore"));
    WaitUntilIdle(dialog);
  });
  EXPECT_THAT(form.log, ElementsAre("still open"));
}

TEST_F(Forms, WhatAHandlerThrowsComesOutOfTheShowing) {
  form.more.on_click = [] { throw std::runtime_error("the sheet is protected"); };
  try {
    User user([&] { Click(Window(WaitForDialog(form.caption()), "butMore")); });
    user_interface.ShowModal(form);
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the sheet is protected");
  }
  EXPECT_FALSE(form.visible());
  EXPECT_TRUE(IsWindowEnabled(program.main_window));
  EXPECT_TRUE(IsWindowEnabled(program.second_window));
}

TEST_F(Forms, EndWithTheProgram) {
  const DWORD thread = GetCurrentThreadId();
  {
    User user([&] {
      WaitForDialog(form.caption());
      PostThreadMessageW(thread, WM_QUIT, 3, 0);
    });
    user_interface.ShowModal(form);
  }
  EXPECT_FALSE(form.visible());
  EXPECT_TRUE(IsWindowEnabled(program.main_window));
  MSG message = {};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3u);
}

TEST_F(Forms, OpenOnlyOnceAtATime) {
  form.more.on_click = [&] { user_interface.ShowModal(form); };
  User user([&] { Click(Window(WaitForDialog(form.caption()), "butMore")); });
  EXPECT_THROW(user_interface.ShowModal(form), std::logic_error);
  EXPECT_TRUE(IsWindowEnabled(program.main_window));
}

TEST_F(Forms, ModelessIsHiddenShownAndClosed) {
  user_interface.ShowModeless(form);
  const HWND first = WaitForDialog(form.caption());
  EXPECT_TRUE(IsWindowEnabled(program.main_window));
  form.Hide();
  EXPECT_FALSE(IsWindowVisible(first));
  user_interface.ShowModeless(form);
  EXPECT_TRUE(IsWindowVisible(first));
  PostMessageW(first, WM_CLOSE, 0, 0);
  user_interface.DoEvents();
  EXPECT_TRUE(form.unloaded());
  EXPECT_FALSE(IsWindow(first));
  user_interface.ShowModeless(form);
  EXPECT_FALSE(form.unloaded());
  const HWND second = WaitForDialog(form.caption());
  {
    User user([&] {
      WaitUntil([&] { return !IsWindow(second); });
      const HWND dialog = WaitForDialog(form.caption());
      EXPECT_FALSE(IsWindowEnabled(GetWindow(dialog, GW_OWNER)));
      PostMessageW(dialog, WM_CLOSE, 0, 0);
    });
    user_interface.ShowModal(form);
  }
  EXPECT_EQ(FindWindowW(L"#32770", ToUtf16(form.caption()).c_str()), nullptr);
}

TEST_F(Forms, ABoxOverADialogBelongsToTheDialog) {
  form.more.on_click = [&] { user_interface.MessageBox("Sure?", kOkCancel, "Question"); };
  Show([&](HWND dialog) {
    Click(Window(dialog, "butMore"));
    const HWND box = WaitForDialog("Question");
    EXPECT_EQ(GetWindow(box, GW_OWNER), dialog);
    EXPECT_FALSE(IsWindowEnabled(dialog));
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    WaitUntil([&] { return IsWindowEnabled(dialog) != FALSE; });
    EXPECT_FALSE(IsWindowEnabled(program.main_window));
  });
}

TEST_F(Forms, FollowsTheResolutionOfItsMonitor) {
  Show([&](HWND dialog) {
    RECT before = {};
    RECT after = {};
    RECT button_before = {};
    RECT button_after = {};
    GetClientRect(dialog, &before);
    GetWindowRect(Window(dialog, "butCopy"), &button_before);
    // 288 points are 384 pixels at 96 dots per inch.
    EXPECT_EQ(before.right, 384);
    const RECT suggested = {10, 20, 800, 600};
    SendMessageW(dialog, WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&suggested));
    GetClientRect(dialog, &after);
    GetWindowRect(Window(dialog, "butCopy"), &button_after);
    TakePicture(dialog, "everyControlDoubled");
    EXPECT_EQ(after.right, 768);
    EXPECT_EQ(button_after.right - button_after.left, 160);
    RECT frame = {};
    GetWindowRect(dialog, &frame);
    EXPECT_EQ(frame.left, 10);
    EXPECT_EQ(frame.top, 20);
  });
}

}  // namespace
}  // namespace vantora::ui
