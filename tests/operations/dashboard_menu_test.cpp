#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using testing::ErrorOf;
using testing::FakeServices;
using testing::FaultPlan;
using ::testing::IsEmpty;
using testing::TestModel;

constexpr std::string_view kTag = "VantoraDashboard";

// Dash uses columns A to F. Configuration 1 hides column C, 2 hides B, C, E and F, 3 hides none.
// The Reference Sheet lists charts in columns 2 and 4, and configurations 1 and 3.
TestModel DashboardModel() {
  TestModel model({"Cover", "Dash", "Reference"});
  model.Put("Dash!A1", {"D", "Sales H(2)", "H(1,2)", "", "H(2) x", "H(2)"});
  model.Put("Dash!F5", {"end"});
  model.Put("Reference!A1", {"X", "n", "k", "c", "s", "", "g", "", "", "", "", "", "h"});
  model.Put("Reference!G14", {2, 10, "Sales"});
  model.Put("Reference!G15", {2, 200, "Costs"});
  model.Put("Reference!G16", {4, 10, "Cash"});
  model.Put("Reference!M14", {1, "Board"});
  model.Put("Reference!M15", {3, "Bank"});
  model.Put("Reference!M16", {0});  // the row that ends the list needs a number
  model.Put("Reference!A40", {"end"});
  return model;
}

class DashboardMenu : public ::testing::Test {
 protected:
  testing::MenuManagementClient& Menus() {
    menus = std::make_unique<testing::MenuManagementClient>(fake.services, model.application());
    return *menus;
  }
  // The host's calls are counted, and one may fail, from the next call on.
  testing::MenuManagementClient& FaultyMenus() {
    menus = std::make_unique<testing::MenuManagementClient>(
        fake.services, std::make_shared<testing::FaultyApplication>(model.application(), plan));
    return *menus;
  }
  bool IsShown() {
    const auto captions = model.MenuBar();
    return std::find(captions.begin(), captions.end(), "D&ashboard") != captions.end();
  }
  // The lines of the menu that begin in its first column, without group lines: the three popups.
  std::vector<std::string> Popups() {
    std::vector<std::string> popups = model.Menu(kTag);
    std::erase_if(popups, [](const std::string& line) { return line.starts_with("  "); });
    return popups;
  }
  // Two panes beside each other, or one. Dash is active.
  void SplitDash(bool split) {
    auto window = model.application()->ActiveWindow();
    window->SetFreezePanes(false);
    if (!split) return;
    model.Sheet("Dash")->Cells(1, 2)->Select();
    window->SetFreezePanes(true);
  }
  // The letters of Dash's columns A to F that are hidden.
  std::string HiddenColumns() {
    std::string letters;
    for (int column = 1; column <= 6; ++column) {
      if (model.Sheet("Dash")->Columns(column)->ColumnsHidden()) {
        letters += static_cast<char>('A' + column - 1);
      }
    }
    return letters;
  }
  bool ScreenUpdating() { return model.application()->ScreenUpdating(); }

  TestModel model = DashboardModel();
  FakeServices fake;
  std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
  std::unique_ptr<testing::MenuManagementClient> menus;
};

TEST_F(DashboardMenu, OffersChartsOfBothSidesAndConfigurations) {
  Menus().CreateDashboardMenuBar();
  const auto whole = ElementsAre(
      "Left Chart Selection:",                                                          //
      "  -", "  Sales = VA_SelChart [1:2]", "  Costs = VA_SelChart [1:2]",              //
      "  -", "  Cash = VA_SelChart [1:4]",                                              //
      "Right Chart Selection:",                                                         //
      "  -", "  Sales = VA_SelChart [2:2]", "  Costs = VA_SelChart [2:2]",              //
      "  -", "  Cash = VA_SelChart [2:4]",                                              //
      "Dashboard Configuration:",                                                       //
      "  Show all dashboard columns = VA_selConfig [0]", "  Board = VA_selConfig [1]",  //
      "  Bank = VA_selConfig [3]",                                                      //
      "  -", "  Maintain configurations = VA_DashboardConfigure [0]");
  EXPECT_THAT(model.Menu(kTag), whole);
  EXPECT_THAT(model.MenuBar(), ElementsAre("&File", "&Edit", "&View", "&Insert", "F&ormat",
                                           "&Tools", "&Data", "(D&ashboard)", "&Window", "&Help"));
  model.Activate("Dash");
  Menus().CreateDashboardMenuBar();  // another object; it replaces the menu
  EXPECT_TRUE(IsShown());
  EXPECT_EQ(model.MenuBar().size(), 10u);
  EXPECT_THAT(model.Menu(kTag), whole);
  EXPECT_THAT(fake.user_interface.message_boxes(), IsEmpty());
  menus->RemoveDashboardMenuBar();
  EXPECT_EQ(model.MenuBar().size(), 9u);
}

TEST_F(DashboardMenu, IsEmptyAndHiddenWithoutDashboard) {
  model.Put("Dash!A1", {""});
  Menus().CreateDashboardMenuBar();
  EXPECT_FALSE(IsShown());
  EXPECT_THAT(model.Menu(kTag), IsEmpty());
}

TEST_F(DashboardMenu, PopupsWithoutTheirListAreEmpty) {
  model.Put("Reference!G1", {""});
  model.Put("Reference!M1", {""});
  Menus().CreateDashboardMenuBar();
  EXPECT_THAT(
      model.Menu(kTag),
      ElementsAre("Left Chart Selection:", "Right Chart Selection:", "Dashboard Configuration:"));
}

TEST_F(DashboardMenu, ChartsWithoutColumnBeginNoGroup) {
  model.Put("Reference!G14", {"?"});
  model.Put("Reference!G15", {"0"});
  Menus().CreateDashboardMenuBar();
  auto lines = model.Menu(kTag);
  lines.resize(5);
  EXPECT_THAT(lines,
              ElementsAre("Left Chart Selection:", "  Sales = VA_SelChart [1:0]",
                          "  Costs = VA_SelChart [1:0]", "  -", "  Cash = VA_SelChart [1:4]"));
}

TEST_F(DashboardMenu, AChartSheetIsNoWorksheet) {
  Menus().CreateDashboardMenuBar();
  model.TurnIntoChartSheet("Cover");
  // The old menu is gone, the new one has got its name.
  EXPECT_EQ(ErrorOf([&] { menus->CreateDashboardMenuBar(); }), 13);
  EXPECT_FALSE(IsShown());
  EXPECT_THAT(model.Menu(kTag), IsEmpty());
  EXPECT_EQ(ErrorOf([&] { menus->SetDashboardMenuPanes(); }), 13);
  EXPECT_EQ(ErrorOf([&] { menus->ExposeDashMenu(true); }), 13);
  EXPECT_TRUE(IsShown());
  EXPECT_EQ(ErrorOf([&] { menus->ExposeDashMenu(false); }), 0);
  EXPECT_EQ(ErrorOf([&] { menus->SelectConfig(-1); }), 13);
  EXPECT_TRUE(ScreenUpdating());
  EXPECT_EQ(HiddenColumns(), "");
}

TEST_F(DashboardMenu, FollowsThePanesOfTheWindow) {
  const auto two =
      ElementsAre("Left Chart Selection:", "Right Chart Selection:", "Dashboard Configuration:");
  const auto one =
      ElementsAre("Chart Selection:", "(Right Chart Selection:)", "Dashboard Configuration:");
  model.Activate("Dash");
  Menus().SetDashboardMenuPanes();  // before there is a menu
  menus->CreateDashboardMenuBar();
  EXPECT_THAT(Popups(), two);
  model.Activate("Cover");
  menus->SetDashboardMenuPanes();  // another sheet's panes do not count
  EXPECT_THAT(Popups(), two);
  model.Activate("Dash");
  menus->SetDashboardMenuPanes();
  EXPECT_THAT(Popups(), one);
  SplitDash(true);
  menus->SetDashboardMenuPanes();
  EXPECT_THAT(Popups(), two);
  // Four panes are neither layout.
  SplitDash(false);
  model.Sheet("Dash")->Cells(3, 3)->Select();
  model.application()->ActiveWindow()->SetFreezePanes(true);
  menus->SetDashboardMenuPanes();
  EXPECT_THAT(Popups(), two);
  SplitDash(false);
  menus->SetDashboardMenuPanes();
  EXPECT_THAT(Popups(), one);
}

TEST_F(DashboardMenu, WhatTheUserChangedStaysWhileThePanesDo) {
  model.Activate("Dash");
  Menus().CreateDashboardMenuBar();
  menus->SetDashboardMenuPanes();
  const auto left = model.application()->ActiveMenuBar()->FindControl(kTag)->Controls()->Items()[0];
  left->SetCaption("Mine");
  menus->SetDashboardMenuPanes();
  EXPECT_EQ(Popups()[0], "Mine:");
}

TEST_F(DashboardMenu, PanesOfAMenuThatWasRemovedFailSilently) {
  model.Activate("Dash");
  Menus().CreateDashboardMenuBar();
  menus->RemoveDashboardMenuBar();
  menus->SetDashboardMenuPanes();
  menus->ExposeDashMenu(true);
  EXPECT_EQ(model.MenuBar().size(), 9u);
  // Selecting a configuration has no such indulgence.
  EXPECT_NE(ErrorOf([&] { menus->SelectConfig(1); }), 0);
  EXPECT_EQ(HiddenColumns(), "C");
}

// Up to the test of the active sheet failures reach the caller; then each step is made whatever
// became of the one before.
TEST_F(DashboardMenu, SettingThePanesGoesOnAfterFailures) {
  const auto two = std::vector<std::string>{
      "Left Chart Selection:", "Right Chart Selection:", "Dashboard Configuration:"};
  struct Case {
    int failing_call;
    int error;
    std::vector<std::string> popups;  // afterwards
  } const cases[] = {
      {1, FaultPlan::kNumber, two},  // ActiveSheet
      {2, FaultPlan::kNumber, two},  // its cell A1
      {3, FaultPlan::kNumber, two},
      {4, 0, two},  // ActiveWindow: no number of panes
      {5, 0, two},  // Panes
      {6, 0, {"Chart Selection:", "Right Chart Selection:", "Dashboard Configuration:"}},
      {7, 0, {"Left Chart Selection:", "(Right Chart Selection:)", "Dashboard Configuration:"}},
  };
  model.Activate("Dash");
  for (const Case& c : cases) {
    *plan = {};
    FaultyMenus().CreateDashboardMenuBar();
    *plan = {.calls = 0, .failing_call = c.failing_call};
    EXPECT_EQ(ErrorOf([&] { menus->SetDashboardMenuPanes(); }), c.error) << c.failing_call;
    EXPECT_EQ(Popups(), c.popups) << c.failing_call;
    // A step that failed is not made up for: the layout counts as set.
    menus->SetDashboardMenuPanes();
    EXPECT_EQ(Popups() == c.popups, c.popups != two) << c.failing_call;
  }
}

TEST_F(DashboardMenu, IsExposedAndHidden) {
  Menus().CreateDashboardMenuBar();
  menus->ExposeDashMenu(true);
  EXPECT_TRUE(IsShown());
  EXPECT_EQ(Popups()[0], "Left Chart Selection:");  // Cover is active
  model.Activate("Dash");
  menus->ExposeDashMenu(false);
  EXPECT_FALSE(IsShown());
  EXPECT_EQ(Popups()[0], "Left Chart Selection:");
  menus->ExposeDashMenu(true);
  EXPECT_TRUE(IsShown());
  EXPECT_EQ(Popups()[0], "Chart Selection:");
  // The panes are followed also when the menu is not found.
  const auto menu = model.application()->ActiveMenuBar()->FindControl(kTag);
  menu->SetTag("other");
  SplitDash(true);
  menus->ExposeDashMenu(true);
  EXPECT_EQ(model.Menu("other")[0], "Left Chart Selection:");
}

TEST_F(DashboardMenu, ConfigurationsShowAndHideColumns) {
  struct Case {
    int number;
    const char* hidden;
    bool activates;
  } const cases[] = {
      {1, "C", false}, {2, "BCEF", false}, {3, "", false},  {-2, "BCEF", true},
      {0, "", true},   {9, "", false},     {-1, "C", true},
  };
  for (const Case& c : cases) {
    model.Activate("Dash");
    model.Sheet("Dash")->Cells(5, 3)->Select();
    model.Activate("Cover");
    Menus().SelectConfig(c.number);
    EXPECT_EQ(HiddenColumns(), c.hidden) << c.number;
    EXPECT_EQ(model.ActiveSheet(), c.activates ? "Dash" : "Cover") << c.number;
    model.Activate("Dash");
    EXPECT_EQ(model.application()->Selection()->Row(), c.activates ? 2 : 5) << c.number;
    EXPECT_EQ(model.application()->Selection()->Column(), c.activates ? 1 : 3) << c.number;
    EXPECT_TRUE(ScreenUpdating());
  }
}

TEST_F(DashboardMenu, ScreenUpdatingAndProtectionAreGivenBack) {
  model.Sheet("Dash")->Protect();
  model.application()->SetScreenUpdating(false);
  Menus().SelectConfig(-1);
  EXPECT_EQ(HiddenColumns(), "C");
  EXPECT_TRUE(model.Sheet("Dash")->ProtectContents());
  EXPECT_FALSE(ScreenUpdating());
  model.Sheet("Dash")->Unprotect();
  menus->SelectConfig(0);
  EXPECT_FALSE(model.Sheet("Dash")->ProtectContents());
}

TEST_F(DashboardMenu, NumbersWithoutConfigurationFailOnTheFirstColumn) {
  model.Sheet("Dash")->Protect();
  EXPECT_EQ(ErrorOf([&] { Menus().SelectConfig(10); }), 9);
  EXPECT_TRUE(ScreenUpdating());
  EXPECT_FALSE(model.Sheet("Dash")->ProtectContents());  // taken off, and not given back
  EXPECT_EQ(ErrorOf([&] { menus->SelectConfig(-10); }), 9);
  EXPECT_FALSE(ScreenUpdating());
  EXPECT_EQ(HiddenColumns(), "");
  // Its sign can't be turned in 16 bits.
  EXPECT_EQ(ErrorOf([&] { menus->SelectConfig(-32768); }), 6);
}

TEST_F(DashboardMenu, WithoutDashboardNoConfigurationIsApplied) {
  model.Put("Dash!A1", {""});
  Menus().SelectConfig(-1);
  EXPECT_EQ(HiddenColumns(), "");
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_TRUE(ScreenUpdating());
}

TEST_F(DashboardMenu, ChartsInColumnsThatCannotBeSeenLeaveBothSelections) {
  model.Put("Dash!D1", {"H(3)"});
  Menus().CreateDashboardMenuBar();
  const auto charts = [&] {
    auto lines = model.Menu(kTag);
    std::erase_if(lines, [](const std::string& line) {
      return line.find("VA_SelChart") == std::string::npos;
    });
    return lines;
  };
  menus->SelectConfig(2);
  EXPECT_THAT(charts(),
              ElementsAre("  (Sales = VA_SelChart [1:2])", "  (Costs = VA_SelChart [1:2])",
                          "  Cash = VA_SelChart [1:4]", "  (Sales = VA_SelChart [2:2])",
                          "  (Costs = VA_SelChart [2:2])", "  Cash = VA_SelChart [2:4]"));
  menus->SelectConfig(3);
  EXPECT_THAT(charts(), ElementsAre("  Sales = VA_SelChart [1:2]", "  Costs = VA_SelChart [1:2]",
                                    "  (Cash = VA_SelChart [1:4])", "  Sales = VA_SelChart [2:2]",
                                    "  Costs = VA_SelChart [2:2]", "  (Cash = VA_SelChart [2:4])"));
  model.Put("Dash!D1", {""});
  model.Sheet("Dash")->Columns(2)->SetColumnWidth(0);
  menus->SelectConfig(9);
  EXPECT_EQ(charts()[0], "  Sales = VA_SelChart [1:2]");  // shown again, with its width
}

TEST_F(DashboardMenu, ChartsOutsideTheUsedColumnsFail) {
  for (const Value& column : {Value(7), Value("none")}) {
    model.Put("Reference!G16", {column});
    Menus().CreateDashboardMenuBar();
    EXPECT_EQ(ErrorOf([&] { menus->SelectConfig(-2); }), 9);
    EXPECT_EQ(HiddenColumns(), "BCEF");
    EXPECT_FALSE(ScreenUpdating());
    EXPECT_EQ(model.ActiveSheet(), "Cover");
    model.application()->SetScreenUpdating(true);
  }
  // A tag without a colon is no column.
  model.Put("Reference!G16", {4});
  Menus().CreateDashboardMenuBar();
  menus->SelectConfig(1);
  auto popup = model.application()->ActiveMenuBar()->FindControl(kTag)->Controls()->Items()[1];
  popup->Controls()->Items()[2]->SetTag("24");
  EXPECT_EQ(ErrorOf([&] { menus->SelectConfig(1); }), 9);
  popup->Controls()->Items()[2]->SetTag("2:4:7");
  EXPECT_EQ(ErrorOf([&] { menus->SelectConfig(1); }), 0);
}

TEST_F(DashboardMenu, NoPaneIsLeftBeyondTheLastColumnOfTheConfiguration) {
  const auto scroll_columns = [&] {
    std::vector<int> columns;
    for (const auto& pane : model.application()->ActiveWindow()->Panes()) {
      columns.push_back(pane->ScrollColumn());
    }
    return columns;
  };
  model.Activate("Dash");
  SplitDash(true);
  const auto scroll = [&](int column) {
    model.application()->ActiveWindow()->SetScrollColumn(column);
  };
  scroll(6);
  Menus().SelectConfig(2);  // A and D
  EXPECT_THAT(scroll_columns(), ElementsAre(1, 4));
  scroll(3);
  menus->SelectConfig(2);
  EXPECT_THAT(scroll_columns(), ElementsAre(1, 3));
  scroll(20);
  menus->SelectConfig(0);  // all columns set no bound
  EXPECT_THAT(scroll_columns(), ElementsAre(1, 20));
  model.Activate("Cover");
  menus->SelectConfig(-2);  // nor is another sheet's window adjusted
  EXPECT_THAT(scroll_columns(), ElementsAre(1, 20));
  menus->SelectConfig(-2);
  EXPECT_THAT(scroll_columns(), ElementsAre(1, 4));
}

// What a failing host call leaves: the error reaches the caller, protection is off from the moment
// it was taken off until it is given back, screen updating from the moment it was switched off.
TEST_F(DashboardMenu, FailuresInAConfigurationLeaveWhatWasDone) {
  model.Activate("Dash");
  const auto prepare = [&] {
    *plan = {};
    model.application()->SetScreenUpdating(true);
    model.Sheet("Dash")->Unprotect();
    FaultyMenus().CreateDashboardMenuBar();
    menus->SelectConfig(0);
    model.Sheet("Dash")->Protect();
    *plan = {};
  };
  prepare();
  menus->SelectConfig(-2);
  const int calls = plan->calls;
  ASSERT_GT(calls, 60);
  std::string states;  // one letter for each state, in the order in which they appear
  for (int failing = 1; failing <= calls; ++failing) {
    prepare();
    plan->failing_call = failing;
    ASSERT_EQ(ErrorOf([&] { menus->SelectConfig(-2); }), FaultPlan::kNumber) << failing;
    ASSERT_EQ(plan->calls, failing) << "it went on";
    const bool is_protected = model.Sheet("Dash")->ProtectContents();
    const char state = ScreenUpdating() ? (is_protected ? 'a' : '?') : (is_protected ? 'b' : 'c');
    if (states.empty() || states.back() != state) states += state;
  }
  // Untouched; screen updating off; protection off as well; given back.
  EXPECT_EQ(states, "abcb");
}

TEST_F(DashboardMenu, FailuresInCreatingLeaveAMenuThatCanBeRemoved) {
  model.Activate("Dash");
  FaultyMenus().CreateDashboardMenuBar();
  const auto whole = model.Menu(kTag);
  *plan = {};
  menus->CreateDashboardMenuBar();
  const int calls = plan->calls;
  ASSERT_GT(calls, 150);
  for (int failing = 1; failing <= calls; ++failing) {
    *plan = {.calls = 0, .failing_call = failing};
    ASSERT_EQ(ErrorOf([&] { menus->CreateDashboardMenuBar(); }), FaultPlan::kNumber) << failing;
    ASSERT_EQ(plan->calls, failing);
    if (model.MenuBar().size() == 10 &&
        model.Menu(kTag) == std::vector<std::string>{"no such menu"}) {
      // It failed before it had its tag, which is what it would be found by.
      model.application()->ActiveMenuBar()->Controls()->Items()[7]->Delete();
    }
    ASSERT_LE(model.MenuBar().size(), 10u);
  }
  *plan = {};
  menus->CreateDashboardMenuBar();
  EXPECT_EQ(model.Menu(kTag), whole);
}

}  // namespace
}  // namespace vantora
