#include "core/progress_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vantora {
namespace {

using ::testing::ElementsAre;

// A desktop with the dialog's window (1, of thread 7) and another program's window (2, of thread
// 9).
class FakeDesktop : public UserInterface, public WindowSystem {
 public:
  MessageBoxResult MessageBox(std::string_view, int, std::string_view) override {
    return MessageBoxResult::kOk;
  }
  void ShowModal(Form&) override {}
  void ShowModeless(Form& form) override {
    log.push_back(form.visible() ? "redraw" : "show");
    if (!form.visible()) form.Activate();
  }
  void Refresh(Form& form) override { known_caption = form.caption(); }
  void Forget(Form&) override { log.push_back("forget"); }
  void DoEvents() override {
    log.push_back("events");
    if (on_events) on_events();
  }
  WindowSystem* windows() override { return has_windows ? this : nullptr; }

  WindowHandle FindByCaption(std::string_view caption) override {
    return caption == known_caption ? kDialog : WindowHandle::kNone;
  }
  WindowHandle Foreground() override { return foreground; }
  void SetForeground(WindowHandle) override { log.push_back("front"); }
  std::uint32_t ThreadOf(WindowHandle window) override {
    return window == kDialog ? 7 : window == kOtherProgram ? 9 : 0;
  }
  std::uint32_t Style(WindowHandle window) override { return window == kDialog ? style : 0; }
  void SetStyle(WindowHandle, std::uint32_t new_style) override { style = new_style; }

  static constexpr WindowHandle kDialog{1};
  static constexpr WindowHandle kOtherProgram{2};
  std::vector<std::string> log;
  std::function<void()> on_events;
  bool has_windows = false;
  std::string known_caption = "some window";
  WindowHandle foreground = kDialog;
  std::uint32_t style = 0x800C0000;
};

std::string Caption(const Form& form, const char* label) { return form.Find(label)->caption(); }

double BarWidth(const Form& form) { return form.Find("lblBar")->bounds().width; }

class ProgressDialog : public ::testing::Test {
 protected:
  FakeDesktop desktop;
  frmProgressBar dialog{desktop};
};

TEST_F(ProgressDialog, LoadsHiddenWithFiftyFourPercent) {
  EXPECT_FALSE(dialog.visible());
  EXPECT_EQ(dialog.Title(), "");
  EXPECT_EQ(dialog.Text(), "");
  EXPECT_EQ(dialog.Min(), 0);
  EXPECT_EQ(dialog.Max(), 100);
  EXPECT_EQ(dialog.Progress(), 54);
  EXPECT_EQ(Caption(dialog, "lblBack"), "54%");
  EXPECT_EQ(Caption(dialog, "lblFront"), "54%");
  EXPECT_THAT(desktop.log, ElementsAre("events"));
}

TEST_F(ProgressDialog, DrawsOnlyStepsOfMoreThanHalfAPercent) {
  dialog.SetProgress(50);
  desktop.log.clear();
  dialog.SetProgress(50.4);
  EXPECT_EQ(dialog.Progress(), 50.4);
  EXPECT_TRUE(desktop.log.empty());
  // 1/256 is exact: small steps add up against what is shown until they pass 0.005.
  dialog.SetMax(256);
  dialog.SetProgress(128);
  dialog.SetProgress(129);
  EXPECT_EQ(Caption(dialog, "lblFront"), "50%");
  EXPECT_TRUE(desktop.log.empty());
  dialog.SetProgress(130);
  EXPECT_EQ(Caption(dialog, "lblFront"), "51%");
  EXPECT_THAT(desktop.log, ElementsAre("events"));
  dialog.SetProgress(129);
  EXPECT_EQ(Caption(dialog, "lblFront"), "51%");
}

TEST_F(ProgressDialog, AStepOfExactlyTheThresholdIsNotDrawn) {
  dialog.SetProgress(0);
  desktop.log.clear();
  dialog.SetProgress(0.5);  // 0.005 of the range
  EXPECT_TRUE(desktop.log.empty());
  dialog.SetProgress(0.6);
  EXPECT_FALSE(desktop.log.empty());
}

TEST_F(ProgressDialog, TheBarIsRoundedUpToTheNextPixel) {
  double full = dialog.Find("lblBack")->bounds().width;
  struct Case {
    double progress;
    double pixels;
  };
  for (const Case& c : {Case{0, 0}, Case{25, 0.25}, Case{54, 0.54}, Case{100, 1}}) {
    dialog.SetProgress(c.progress);
    double exact = full * c.pixels;
    EXPECT_GT(BarWidth(dialog), exact);
    EXPECT_LE(BarWidth(dialog), exact + 0.75);
    EXPECT_EQ(std::fmod(BarWidth(dialog), 0.75), 0);
  }
}

TEST_F(ProgressDialog, MinAndMaxScaleTheFraction) {
  struct Case {
    double min, max, progress;
    const char* shown;
  } const cases[] = {
      {1, 5, 2, "25%"}, {0, 100, -10, "10%"},  // grows again below the minimum
      {2, 2, 2, "0%"},  {0, 100, 250, "250%"}, {100, 0, 25, "75%"},
  };
  for (const Case& c : cases) {
    dialog.SetMin(c.min);
    dialog.SetMax(c.max);
    dialog.SetProgress(c.progress);
    EXPECT_EQ(Caption(dialog, "lblFront"), c.shown);
  }
}

TEST_F(ProgressDialog, CancelIsSeenWhileProgressIsSetAndOnlyOnce) {
  auto& cancel = *dynamic_cast<Button*>(dialog.Find("butCancel"));
  int presses = 0;
  desktop.on_events = [&] {
    if (presses++ == 0) cancel.Press();
  };
  dialog.ShowForm();
  EXPECT_FALSE(dialog.Cancelled());
  dialog.SetProgress(10);
  EXPECT_TRUE(dialog.Cancelled());
  EXPECT_EQ(dialog.Text(), "Cancelling, please wait...");
  EXPECT_FALSE(cancel.enabled());
  dialog.SetText("next sheet");
  cancel.Press();
  EXPECT_EQ(dialog.Text(), "next sheet");
}

TEST_F(ProgressDialog, RefusesToBeClosedByTheUser) {
  dialog.ShowForm();
  EXPECT_FALSE(dialog.CloseByUser());
  EXPECT_TRUE(dialog.visible());
  dialog.Unload();
  EXPECT_FALSE(dialog.visible());
}

TEST(ProgressDialogWindow, LosesItsSystemMenuWheneverItsTitleIsSet) {
  constexpr std::uint32_t kWithMenu = 0x800C0000;
  constexpr std::uint32_t kWithoutMenu = 0x80040000;
  FakeDesktop desktop;
  desktop.has_windows = true;
  frmProgressBar dialog(desktop);
  EXPECT_EQ(desktop.style, kWithoutMenu);
  desktop.style = kWithMenu;
  dialog.SetTitle("Shift History");
  EXPECT_EQ(desktop.style, kWithoutMenu);
  EXPECT_EQ(desktop.known_caption, "Shift History");
  desktop.style = kWithMenu;
  dialog.ShowForm();
  EXPECT_EQ(desktop.style, kWithoutMenu);
  desktop.style = 0;  // can't be read
  dialog.SetTitle("Other");
  EXPECT_EQ(desktop.style, 0u);
}

TEST(ProgressDialogWindow, ComesToTheFrontOfItsOwnThreadOnly) {
  FakeDesktop desktop;
  desktop.has_windows = true;
  {
    frmProgressBar dialog(desktop);
    dialog.SetText("hidden");
    EXPECT_THAT(desktop.log, ElementsAre("events"));
    dialog.ShowForm();
    desktop.log.clear();
    dialog.SetText("copying");
    dialog.SetText("copying");
    EXPECT_THAT(desktop.log, ElementsAre("front"));
    desktop.log.clear();
    dialog.SetProgress(10);
    EXPECT_THAT(desktop.log, ElementsAre("redraw", "front", "events"));
    desktop.log.clear();
    desktop.foreground = FakeDesktop::kOtherProgram;
    dialog.SetText("behind another program");
    EXPECT_THAT(desktop.log, ElementsAre("events"));
    desktop.log.clear();
  }
  EXPECT_THAT(desktop.log, ElementsAre("forget"));
}

}  // namespace
}  // namespace vantora
