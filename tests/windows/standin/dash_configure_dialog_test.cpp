// The dialog that is built at run time, on the screen: with more columns than one page takes.
#include <gmock/gmock.h>

#include <functional>
#include <string>

#include "operations/client.h"
#include "operations/dashboard_model.h"
#include "support/fake_services.h"
#include "ui/dialog_driver.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::ui {
namespace {

using ::testing::ElementsAre;

// Tells which form it shows.
class KnowingUserInterface final : public WindowsUserInterface {
 public:
  using WindowsUserInterface::WindowsUserInterface;
  void ShowModal(Form& form) override {
    shown = &form;
    WindowsUserInterface::ShowModal(form);
  }
  const Form* shown = nullptr;
};

class DashConfigureDialog : public ::testing::Test {
 protected:
  DashConfigureDialog() {
    model.Put("Reference!N14", {2, "Board"});
    for (int column = 1; column <= 20; ++column) {
      const std::string number = std::to_string(column);
      model.Put("Reference!G" + std::to_string(13 + column),
                {column, 1, column == 3 ? "R&D" : "Chart of column " + number});
    }
  }

  // Runs the dialog while `actions`, which have to end it, are done to it.
  void Configure(const std::function<void(HWND)>& actions) {
    testing::FixedClock clock;
    testing::NoFileVersions versions;
    Services services{user_interface, clock, versions};
    testing::DashboardClient dashboard(services, model.application());
    User user([&] { actions(WaitForDialog("Dashboard Configuration")); });
    dashboard.DashboardConfigure();
  }
  HWND Window(HWND dialog, const std::string& name) const {
    return WindowOf(dialog, *user_interface.shown, name);
  }
  // Every control that is shown stands within the dialog.
  static void ExpectAllInside(HWND dialog) {
    RECT client = {};
    GetClientRect(dialog, &client);
    for (HWND control = GetWindow(dialog, GW_CHILD); control;
         control = GetWindow(control, GW_HWNDNEXT)) {
      if (!IsWindowVisible(control)) continue;
      RECT place = {};
      GetWindowRect(control, &place);
      MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
      EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= client.right &&
                  place.bottom <= client.bottom)
          << GetDlgCtrlID(control);
    }
  }

  HostProgram program;
  KnowingUserInterface user_interface{[this] { return program.main_window; }};
  testing::TestModel model = testing::DashboardModel();
};

TEST_F(DashConfigureDialog, IsWorkedWithMouseAndKeyboard) {
  Configure([&](HWND dialog) {
    TakePicture(dialog, "frmDashConfigure");
    ExpectAllInside(dialog);
    EXPECT_EQ(FocusOf(dialog), Window(dialog, "txtName1"));
    PressKey(dialog, VK_TAB);
    WaitUntilIdle(dialog);
    EXPECT_EQ(FocusOf(dialog), Window(dialog, "txtName2"));
    Click(Window(dialog, "chk3_1"));
    PressAlt(dialog, L'n');
    WaitUntilIdle(dialog);
    EXPECT_TRUE(IsWindowVisible(Window(dialog, "chk20_9")));
    EXPECT_FALSE(IsWindowVisible(Window(dialog, "chk3_1")));
    EXPECT_FALSE(IsWindowEnabled(Window(dialog, "butNext")));
    ExpectAllInside(dialog);
    Click(Window(dialog, "chk20_9"));
    WaitUntilIdle(dialog);
    TakePicture(dialog, "frmDashConfigure-second-page");
    PressKey(dialog, VK_RETURN);
  });
  EXPECT_EQ(model.Get("Dashboard!C1"), Value(" H(1) "));
  EXPECT_EQ(model.Get("Dashboard!T1"), Value(" H(9) "));
}

TEST_F(DashConfigureDialog, EscapeStoresNothing) {
  model.RecordChanges();
  Configure([&](HWND dialog) {
    Click(Window(dialog, "butAll1"));
    WaitUntilIdle(dialog);
    EXPECT_EQ(SendMessageW(Window(dialog, "chk1_1"), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    PressKey(dialog, VK_ESCAPE);
  });
  EXPECT_THAT(model.Changes(), ElementsAre());
}

}  // namespace
}  // namespace vantora::ui
