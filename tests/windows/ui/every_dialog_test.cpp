// The dialogs that ask something, on the screen: a picture to look at, and that everything fits.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dialogs/frm_copy_worksheet.h"
#include "dialogs/frm_naming01.h"
#include "dialogs/frm_naming02.h"
#include "dialogs/frm_save_comments.h"
#include "dialogs/frm_save_history_prompt.h"
#include "ui/dialog_driver.h"
#include "ui/windows/window_text.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::ui {
namespace {

class FixedClock : public Clock {
 public:
  std::string NowAsGeneralDate() override { return "11/21/2026 2:31:05 PM"; }
};

FixedClock fixed_clock;

struct Dialog {
  const char* name;
  std::function<std::unique_ptr<Form>()> make;
};

std::ostream& operator<<(std::ostream& stream, const Dialog& dialog) {
  return stream << dialog.name;
}

class EveryDialog : public ::testing::TestWithParam<Dialog> {
 protected:
  HostProgram program;
  WindowsUserInterface user_interface{[this] { return program.main_window; }};
};

// The width that the text needs in the control's own font.
LONG TextWidth(HWND control) {
  const HDC context = GetDC(control);
  const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
  const HGDIOBJ before = SelectObject(context, font);
  RECT extent = {};
  const std::wstring text = TextOf(control);
  DrawTextW(context, text.data(), static_cast<int>(text.size()), &extent, DT_CALCRECT);
  SelectObject(context, before);
  ReleaseDC(control, context);
  return extent.right;
}

TEST_P(EveryDialog, HasRoomForAllItsControls) {
  const std::unique_ptr<Form> form = GetParam().make();
  User user([&] {
    const HWND dialog = WaitForDialog(form->caption());
    TakePicture(dialog, GetParam().name);
    RECT client = {};
    GetClientRect(dialog, &client);
    for (const auto& control : form->controls()) {
      if (!control->visible()) continue;
      SCOPED_TRACE(control->name());
      const HWND window = WindowOf(dialog, *form, control->name());
      RECT place = {};
      GetWindowRect(window, &place);
      MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
      EXPECT_GE(place.left, 0);
      EXPECT_GE(place.top, 0);
      EXPECT_LE(place.right, client.right);
      EXPECT_LE(place.bottom, client.bottom);
      if (control->kind() == ControlKind::kButton) {
        EXPECT_LE(TextWidth(window), place.right - place.left);
      }
    }
    WaitUntilIdle(dialog);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  });
  user_interface.ShowModal(*form);
}

const Dialog kDialogs[] = {
    {"frmSaveHistoryPrompt",
     [] {
       auto form = std::make_unique<frmSaveHistoryPrompt>();
       form->YearCaptionAdd("2021 (column J)");
       return form;
     }},
    {"frmSaveComments", [] { return std::make_unique<frmSaveComments>(fixed_clock); }},
    {"frmCopyWorksheet", [] { return std::make_unique<frmCopyWorksheet>(); }},
    {"frmNaming01",
     [] {
       auto form = std::make_unique<frmNaming01>();
       form->SetMessageText("The name \"revenue\" is already defined, for another row.");
       form->SetNameText("revenue_2");
       return form;
     }},
    {"frmNaming02",
     [] {
       auto form = std::make_unique<frmNaming02>();
       form->SetMessageText("The row already has a name, \"revenue\".");
       return form;
     }},
};

INSTANTIATE_TEST_SUITE_P(Forms, EveryDialog, ::testing::ValuesIn(kDialogs),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vantora::ui
