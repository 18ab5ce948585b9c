#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "operations/client.h"
#include "operations/dashboard_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::TestModel;

constexpr int kFirstRow = 14;

// Looks at the dialog whenever it is shown, then answers.
class LookingUserInterface : public ui::ScriptedUserInterface {
 public:
  using ScriptedUserInterface::ScriptedUserInterface;
  void ShowModal(Form& form) override {
    form.Activate();
    look(form);
    ScriptedUserInterface::ShowModal(form);
  }
  std::function<void(Form&)> look;
};

class DashConfigure : public ::testing::Test {
 protected:
  DashConfigure() {
    Charts({{1, "Revenue"}, {1, "Costs"}, {3, "Cash"}, {4, "Debt"}});
    model.Put("Dashboard!A1", {"D H(2)"});
    model.Put("Dashboard!C1", {"note"});
    model.Put("Reference!N14", {1, "Short"});
    model.Put("Reference!N15", {2, "Long"});
  }

  struct Chart {
    int column;
    const char* title;
  };
  void Charts(const std::vector<Chart>& charts) {
    int row = kFirstRow;
    for (const Chart& chart : charts) {
      model.Put("Reference!G" + std::to_string(row), {chart.column, row, chart.title});
      ++row;
    }
  }
  // Runs the dialog with these answers.
  void Configure(const std::vector<std::string>& answers) {
    fake = std::make_unique<FakeServices>(answers);
    testing::DashboardClient dashboard(fake->services, application);
    if (menus) dashboard.SetMenus(*menus);
    dashboard.DashboardConfigure();
    EXPECT_TRUE(fake->user_interface.unused_answers().empty());
  }
  // What an answer that does not fit the dialog is told.
  std::string Refused(const std::string& answer) {
    try {
      Configure({answer});
    } catch (const ui::AnswerError& error) {
      return error.what();
    }
    return "";
  }
  // Every visible control lies within the form and covers no other.
  static void ExpectOwnPlaces(const Form& form) {
    std::vector<const Control*> visible;
    for (const auto& control : form.controls()) {
      if (control->visible()) visible.push_back(control.get());
    }
    for (const Control* one : visible) {
      const Bounds& a = one->bounds();
      EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.left + a.width <= form.width() &&
                  a.top + a.height <= form.height())
          << one->name();
      for (const Control* other : visible) {
        const Bounds& b = other->bounds();
        const bool apart = a.left + a.width <= b.left || b.left + b.width <= a.left ||
                           a.top + a.height <= b.top || b.top + b.height <= a.top;
        EXPECT_TRUE(one == other || apart) << one->name() << ' ' << other->name();
      }
    }
  }
  std::vector<Value> Row1() { return model.Get("Dashboard!A1", 4); }

  TestModel model = testing::DashboardModel();
  host::ApplicationPtr application = model.application();
  std::unique_ptr<FakeServices> fake;
  std::unique_ptr<FakeServices> menu_services;
  std::unique_ptr<testing::MenuManagementClient> menus;
};

TEST_F(DashConfigure, StoresTheColumnsThatWereChanged) {
  model.RecordChanges();
  Configure({"frmDashConfigure:chk1_2=true;chk1_9=false;chk3_1=false;chk4_1=true;butOK"});
  EXPECT_THAT(model.Changes(),
              ElementsAre("Dashboard!A1: D H(2) -> D H(9) ", "Dashboard!C1: note -> note H(1) "));
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(DashConfigure, CancelAndTheCloseBoxStoreNothing) {
  for (const char* end : {"butCancel", "close"}) {
    model.RecordChanges();
    Configure({std::string("frmDashConfigure:txtName1=Other;chk3_1=false;") + end});
    EXPECT_THAT(model.Changes(), ElementsAre()) << end;
    EXPECT_TRUE(model.application()->ScreenUpdating());
  }
}

TEST_F(DashConfigure, OffersTheColumnsThatHaveCharts) {
  EXPECT_THAT(Refused("frmDashConfigure:chk2_1=false;butOK"), HasSubstr("chk2_1"));
  EXPECT_THAT(Refused("frmDashConfigure:chk1_10=false;butOK"), HasSubstr("chk1_10"));
  EXPECT_THAT(Row1(), ElementsAre(Value("D H(2)"), Value(), Value("note"), Value()));
}

TEST_F(DashConfigure, AButtonChecksAllColumnsOfAConfigurationOrNone) {
  // The first column is hidden in configuration 2, so the first press shows it.
  Configure({"frmDashConfigure:butAll2", "frmDashConfigure:butAll3", "frmDashConfigure:butOK"});
  EXPECT_THAT(Row1(), ElementsAre(Value("D H(3) "), Value(), Value("note H(3) "), Value(" H(3) ")));
}

TEST_F(DashConfigure, StoresNamesAndRebuildsTheDashboardsMenu) {
  menu_services = std::make_unique<FakeServices>();
  menus =
      std::make_unique<testing::MenuManagementClient>(menu_services->services, model.application());
  model.Activate("Dashboard");
  Configure({"frmDashConfigure:txtName2=;txtName4=  All costs ;butOK"});
  EXPECT_EQ(model.Get("Reference!N14", 2), (std::vector<Value>{1, "Short"}));
  EXPECT_EQ(model.Get("Reference!N15", 2), (std::vector<Value>{4, "All costs"}));
  EXPECT_EQ(model.Get("Reference!N16", 2), (std::vector<Value>{0, Value()}));
  // Made for the sheet that the user is on.
  EXPECT_EQ(model.ActiveSheet(), "Dashboard");
  EXPECT_THAT(model.MenuBar(), Contains("D&ashboard"));
  EXPECT_THAT(model.Menu("VantoraDashboard"), Contains(HasSubstr("All costs = VA_selConfig [4]")));
}

TEST_F(DashConfigure, CancelLeavesTheMenuAsItIs) {
  menu_services = std::make_unique<FakeServices>();
  menus =
      std::make_unique<testing::MenuManagementClient>(menu_services->services, model.application());
  Configure({"frmDashConfigure:butCancel"});
  EXPECT_THAT(model.MenuBar(), Not(Contains(HasSubstr("D&ashboard"))));
}

TEST_F(DashConfigure, WithoutAConfigurationsListNamesCannotBeEntered) {
  model.Put("Reference!N1", {"x"});
  EXPECT_THAT(Refused("frmDashConfigure:txtName1=New;butOK"), HasSubstr("disabled"));
  Configure({"frmDashConfigure:chk3_1=false;butOK"});
  EXPECT_EQ(model.Get("Dashboard!C1"), Value("note H(1) "));
}

TEST_F(DashConfigure, LeafsThroughMoreColumnsThanFit) {
  std::vector<Chart> charts;
  for (int column = 1; column <= 20; ++column) charts.push_back({column, "Chart"});
  Charts(charts);
  EXPECT_THAT(Refused("frmDashConfigure:chk20_1=false;butOK"), HasSubstr("hidden"));
  EXPECT_THAT(Refused("frmDashConfigure:butPrevious"), HasSubstr("disabled"));
  Configure({"frmDashConfigure:chk2_1=false;butNext", "frmDashConfigure:chk20_1=false;butPrevious",
             "frmDashConfigure:chk4_1=false;butAll9", "frmDashConfigure:butOK"});
  EXPECT_EQ(model.Get("Dashboard!B1"), Value(" H(1,9) "));
  EXPECT_EQ(model.Get("Dashboard!D1"), Value(" H(1,9) "));
  EXPECT_EQ(model.Get("Dashboard!E1"), Value(" H(9) "));
  EXPECT_EQ(model.Get("Dashboard!T1"), Value(" H(1,9) "));
}

TEST_F(DashConfigure, ShowsColumnsWithTheirChartsAndConfigurations) {
  // Not sorted: the charts of a column come together all the same.
  Charts({{1, "Revenue"}, {3, "R&D"}, {1, "Costs"}, {4, "Debt"}});
  testing::FixedClock clock;
  testing::NoFileVersions versions;
  LookingUserInterface looking(testing::Answers({"frmDashConfigure:butCancel"}));
  Services services{looking, clock, versions};
  testing::DashboardClient dashboard(services, application);
  bool looked = false;
  looking.look = [&](Form& form) {
    looked = true;
    auto caption = [&](const char* name) { return form.Find(name)->caption(); };
    auto checked = [&](const char* name) {
      return dynamic_cast<CheckBox&>(*form.Find(name)).checked();
    };
    EXPECT_EQ(form.caption(), "Dashboard Configuration");
    EXPECT_EQ(caption("lblColumn1"), "Column 1: Revenue, Costs");
    EXPECT_EQ(caption("lblColumn3"), "Column 3: R&&D");
    EXPECT_EQ(form.Find("lblColumn2"), nullptr);
    EXPECT_TRUE(checked("chk1_1"));
    EXPECT_FALSE(checked("chk1_2"));
    EXPECT_EQ(dynamic_cast<TextBox&>(*form.Find("txtName2")).text(), "Long");
    EXPECT_FALSE(form.Find("butNext")->visible());
    ExpectOwnPlaces(form);
  };
  dashboard.DashboardConfigure();
  EXPECT_TRUE(looked);
}

TEST_F(DashConfigure, AProtectedDashboardIsProtectedAgain) {
  model.Sheet("Dashboard")->Protect();
  Configure({"frmDashConfigure:chk3_1=false;butOK"});
  EXPECT_EQ(model.Get("Dashboard!C1"), Value("note H(1) "));
  EXPECT_TRUE(model.Sheet("Dashboard")->ProtectContents());
}

TEST_F(DashConfigure, NeedsAWorksheetAndAChartList) {
  model.Put("Reference!G1", {"x"});
  Configure({});
  EXPECT_FALSE(model.application()->ScreenUpdating());  // the model's rule
}

TEST_F(DashConfigure, RefusesASixthChartInOneColumn) {
  Charts({{1, "1"}, {1, "2"}, {1, "3"}, {1, "4"}, {1, "5"}, {3, "6"}});
  Configure({"frmDashConfigure:butOK"});
  Charts({{1, "1"}, {1, "2"}, {1, "3"}, {1, "4"}, {1, "5"}, {1, "6"}, {3, "7"}});
  try {
    Configure({"frmDashConfigure:butOK"});
    FAIL() << "no error";
  } catch (const HostError& error) {
    EXPECT_EQ(error.number(), HostError::kSubscriptOutOfRange);
    EXPECT_EQ(error.source(), "Orvanemcro1");
  }
}

TEST_F(DashConfigure, ChartsWithoutAColumnGetNoRow) {
  Charts({{0, "Lost"}, {1, "Revenue"}, {3, "Cash"}, {3, "Debt"}});
  Configure({"frmDashConfigure:chk1_1=false;chk3_1=false;butOK"});
  EXPECT_EQ(model.Get("Dashboard!A1"), Value("D H(1,2) "));
}

// Whatever host call fails, the error reaches the caller and a protected dashboard is protected.
TEST_F(DashConfigure, HostFaultsLeaveTheDashboardProtected) {
  auto plan = std::make_shared<testing::FaultPlan>();
  const std::string answer = "frmDashConfigure:chk1_1=false;chk3_1=false;txtName1=New;butOK";
  int calls = 1;
  int unfinished = 0;
  for (int failing = 0; failing <= calls; ++failing) {
    SCOPED_TRACE(failing);
    model = testing::DashboardModel();
    Charts({{1, "Revenue"}, {3, "Cash"}});
    model.Sheet("Dashboard")->Protect();
    application = std::make_shared<testing::FaultyApplication>(model.application(), plan);
    plan->calls = 0;
    plan->failing_call = failing;
    try {
      Configure({answer});
      if (failing == 0) calls = plan->calls;
      EXPECT_EQ(failing, 0) << "the error did not reach the caller";
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), testing::FaultPlan::kNumber);
      unfinished += model.Get("Dashboard!A1") != model.Get("Dashboard!C1") &&
                    model.Get("Dashboard!C1").IsEmpty();
    }
    // Only the call that protects it can leave it unprotected.
    if (!model.IsProtected("Dashboard")) {
      EXPECT_EQ(model.Get("Dashboard!C1"), Value(" H(1) "));
    }
  }
  EXPECT_GT(calls, 40);
  EXPECT_GT(unfinished, 0);
}

}  // namespace
}  // namespace vantora
