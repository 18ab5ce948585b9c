// The window arrangements beside the dashboard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using testing::FaultPlan;
using ::testing::IsEmpty;

class DisplayModes : public ::testing::Test {
 protected:
  DisplayModes() {
    model.Put("Board!A1", {"D"});
    model.Put("Second!A1", {"D"});
    model.SetUsableArea(1000, 600, false);
  }
  std::vector<host::WindowPtr> Windows() {
    return model.application()->ActiveWorkbook()->Windows();
  }

  testing::TestModel model{{"Plan", "Board", "Second"}};
  testing::FakeServices fake;
  testing::DisplayModesClient modes{fake.services, model.application()};
};

TEST_F(DisplayModes, PutsTheDashboardAboveOrBesideTheSheet) {
  const struct {
    bool left_right, full_screen;
    std::string board, plan;
  } kCases[] = {
      {false, false, "Board 0,0 1000x295", "Plan 0,295 1000x305"},
      {false, true, "Board 0,0 1000x295", "Plan 0,295 1000x285"},
      {true, false, "Board 0,0 393x600", "Plan 393,0 607x600"},
      // Only the right window makes room for what a full screen takes.
      {true, true, "Board 0,0 393x600", "Plan 393,0 607x580"},
  };
  for (const auto& test : kCases) {
    model.SetUsableArea(1000, 600, test.full_screen);
    auto arrange = [&] { test.left_right ? modes.MultiWindowLR() : modes.MultiWindowUD(); };
    Windows()[0]->SetWindowState(host::XlWindowState::kMaximized);
    arrange();
    EXPECT_THAT(model.Windows(), ElementsAre(test.board, test.plan));
    EXPECT_TRUE(model.application()->ScreenUpdating());
    // The dashboard's window goes, whichever command is given.
    test.left_right ? modes.MultiWindowUD() : modes.MultiWindowLR();
    EXPECT_THAT(model.Windows(),
                ElementsAre(test.full_screen ? "Plan 0,0 1000x580" : "Plan 0,0 1000x600"));
  }
}

TEST_F(DisplayModes, TakesTheFirstDashboardWhicheverIsActive) {
  model.Activate("Second");
  modes.MultiWindowUD();
  EXPECT_THAT(model.Windows(), ElementsAre("Board 0,0 1000x295", "Second 0,295 1000x305"));
}

TEST_F(DisplayModes, WithoutADashboardBothWindowsShowTheSheet) {
  model.Put("Board!A1", {""});
  model.Put("Second!A1", {""});
  modes.MultiWindowLR();
  EXPECT_THAT(model.Windows(), ElementsAre("Plan 0,0 393x600", "Plan 393,0 607x600"));
}

TEST_F(DisplayModes, KeepsTheFirstWindowAwayFromTheCorner) {
  const struct {
    double top, left;
    bool in_corner;
  } kCases[] = {{9.75, 9.75, true}, {10, 0, false}, {0, 10, false}};
  for (const auto& test : kCases) {
    testing::TestModel fresh{{"Plan", "Board"}};
    testing::DisplayModesClient fresh_modes{fake.services, fresh.application()};
    auto below = fresh.application()->ActiveWindow();
    below->SetTop(50);
    auto upper = fresh.application()->ActiveWorkbook()->NewWindow();
    fresh.Activate("Board");
    upper->SetTop(test.top);
    upper->SetLeft(test.left);
    fresh_modes.MultiWindowUD();
    EXPECT_THAT(fresh.Windows(),
                ElementsAre(test.in_corner ? "Plan 0,0 1428x600" : "Board 0,0 1428x600"));
  }
}

TEST_F(DisplayModes, ClosesAllWindowsThatStandInTheCorner) {
  model.application()->ActiveWorkbook()->NewWindow();
  modes.MultiWindowUD();
  EXPECT_THAT(model.Windows(), IsEmpty());
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(DisplayModes, AnAreaLowerThanTheDashboardIsRefused) {
  model.SetUsableArea(1000, 290, false);
  EXPECT_THROW(modes.MultiWindowUD(), HostError);
  EXPECT_FALSE(model.application()->ScreenUpdating());
  EXPECT_EQ(Windows().size(), 2u) << "what was done stays";
}

TEST_F(DisplayModes, DoesNothingForPresentationsAndWithoutInit) {
  modes.SetPresentationDisplay();
  testing::DisplayModesClient unbound(fake.services, nullptr);
  unbound.MultiWindowUD();
  unbound.MultiWindowLR();
  EXPECT_THAT(model.Windows(), ElementsAre("Plan 0,0 1428x600"));
}

TEST_F(DisplayModes, FailuresEndTheCommandWithScreenUpdatingOff) {
  int calls = 1;
  for (int failing = 1; failing <= calls; ++failing) {
    testing::TestModel fresh{{"Plan", "Board"}};
    fresh.Put("Board!A1", {"D"});
    auto plan = std::make_shared<FaultPlan>();
    testing::DisplayModesClient client(
        fake.services, std::make_shared<testing::FaultyApplication>(fresh.application(), plan));
    plan->calls = 0;
    if (failing == 1) {
      client.MultiWindowUD();
      calls = plan->calls;
      ASSERT_GE(calls, 20);
      client.MultiWindowUD();
      plan->calls = 0;
    }
    plan->failing_call = failing;
    EXPECT_THROW(client.MultiWindowUD(), HostError) << failing;
    EXPECT_EQ(plan->calls, failing);
    // The first call switches it off, the last one on.
    EXPECT_EQ(fresh.application()->ScreenUpdating(), failing == 1) << failing;
  }
}

}  // namespace
}  // namespace vantora
