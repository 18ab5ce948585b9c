// The message that stands over the workbook's window while it is saved.
#include <gtest/gtest.h>

#include "dialogs/frm_save_msg.h"
#include "ui/dialog_driver.h"
#include "ui/windows/display_scale.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::ui {
namespace {

class SaveMessage : public ::testing::Test {
 protected:
  // The place of the message over a window of these points.
  RECT PlaceOver(double top, double left, double height, double width) {
    frmSaveMsg message(user_interface);
    message.OuterWindow(top, left, height, width);
    message.ShowForm();
    const HWND dialog = FindWindowW(L"#32770", L"Vantora");
    EXPECT_TRUE(IsWindowVisible(dialog));
    dpi = DpiOf(dialog);
    TakePicture(dialog, message.name());
    RECT place = {};
    GetWindowRect(dialog, &place);
    return place;
  }

  HostProgram program;
  WindowsUserInterface user_interface{[this] { return program.main_window; }};
  UINT dpi = 0;
};

TEST_F(SaveMessage, StandsInTheMiddleOfTheWorkbooksWindow) {
  const RECT place = PlaceOver(60, 90, 300, 420);
  EXPECT_NEAR((place.left + place.right) / 2, ToPixels(90 + 210, dpi), 1);
  EXPECT_NEAR((place.top + place.bottom) / 2, ToPixels(60 + 150, dpi), 1);
}

TEST_F(SaveMessage, StaysOnTheScreen) {
  RECT work_area = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work_area, 0);
  const RECT place = PlaceOver(-9000, -9000, 300, 420);
  EXPECT_EQ(place.left, work_area.left);
  EXPECT_EQ(place.top, work_area.top);
}

TEST_F(SaveMessage, IsGoneAfterwards) {
  PlaceOver(60, 90, 300, 420);
  EXPECT_EQ(FindWindowW(L"#32770", L"Vantora"), nullptr);
}

}  // namespace
}  // namespace vantora::ui
