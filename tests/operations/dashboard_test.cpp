#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/convert.h"
#include "operations/client.h"
#include "operations/dashboard_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::IsEmpty;
using testing::TestChart;
using testing::TestModel;

class Dashboard : public ::testing::Test {
 protected:
  testing::DashboardClient& Client(const std::vector<std::string>& answers = {}) {
    client.reset();
    fake = std::make_unique<FakeServices>(answers);
    client = std::make_unique<testing::DashboardClient>(fake->services, model.application());
    return *client;
  }
  const std::vector<ui::ShownMessageBox>& Boxes() { return fake->user_interface.message_boxes(); }
  // "column position title" of each row of the chart list.
  std::vector<std::string> ChartList() {
    std::vector<std::string> rows;
    for (int row = 14;; ++row) {
      const auto cells = model.Get("Reference!G" + std::to_string(row), 3);
      if (cells[2].IsEmpty()) return rows;
      rows.push_back(NumberIn(cells[0]) + " " + NumberIn(cells[1]) + " " + cells[2].AsText());
    }
  }
  static std::string NumberIn(const Value& value) {
    return std::to_string(static_cast<int>(value.AsNumber()));
  }

  TestModel model = testing::DashboardModel();
  std::unique_ptr<FakeServices> fake;
  std::unique_ptr<testing::DashboardClient> client;
};

TEST_F(Dashboard, MustBeThere) {
  model.Put("Dashboard!A1", {"M"});
  Client({"OK"}).BuildChartList();
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].text,
            "A programming error has been encountered.  Please record the information below and "
            "contact Vantora support with these details \n\nModule: clsDashboard\n\nCould not "
            "locate Dashboard Worksheet)\n\n");
  std::vector<bool> flags(3, false);
  client->RetrieveColumnConfig(1, flags);
  EXPECT_EQ(flags, std::vector<bool>(3, false));
  client->SaveColumnConfig(2, flags);
  client->DashboardConfigure();
  EXPECT_EQ(model.Get("Dashboard!B1"), Value());
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(Dashboard, AColumnIsHiddenInTheConfigurationsOfItsToken) {
  const struct {
    Value cell;
    const char* hidden;  // "1" for each hidden configuration, 1 to 9
  } cases[] = {
      {"Revenue H(1,3) x", "1-1------"},
      {Value(), "---------"},
      {"H()", "---------"},
      {"H(,)", "---------"},
      {"h(2,5)", "-1--1----"},
      {"H(12)", "---------"},
      {"H(0,-1,9)", "--------1"},
      {"H( 4 , 6", "---1-1---"},
      {"H()3,4)", "---1-----"},
      {"MATH(2)", "-1-------"},
      {"H(1) H(2)", "1--------"},
      {"H(2.5,3.5)", "-1-1-----"},
      {"H(one,7)", "------1--"},
      {"   H(8)   ", "-------1-"},
      {"H(1e9,3)", "--1------"},
  };
  testing::DashboardClient& dashboard = Client();
  for (const auto& one : cases) {
    model.Put("Dashboard!C1", {one.cell});
    std::vector<bool> flags(9, false);
    dashboard.RetrieveColumnConfig(3, flags);
    std::string hidden;
    for (bool shown : flags) hidden += shown ? '-' : '1';
    EXPECT_EQ(hidden, one.hidden) << ValueToText(one.cell);
  }
}

TEST_F(Dashboard, SavingReplacesTheTokenAndKeepsTheRest) {
  const struct {
    Value before;
    std::vector<bool> shown;
    const char* after;
  } cases[] = {
      {"Revenue H(1,3) x", {true, false, true}, "Revenue H(2) x"},
      {Value(), {true, false, true}, " H(2) "},
      // Shown everywhere: two blanks, the model's rule.
      {"H(1)", {true, true, true}, "  "},
      {"Revenue", {false, true, false}, "Revenue H(1,3) "},
      {"a h(1)b c", {true, true, true}, "a  c"},
      // The old token ends at its first blank.
      {"H(1, 2) x", {false, true, true}, " H(1) 2) x"},
      {"  H(1)  ", {true, false, true}, " H(2) "},
      {"H(9) x", {false, true, true}, " H(1) x"},
  };
  testing::DashboardClient& dashboard = Client();
  for (const auto& one : cases) {
    model.Put("Dashboard!C1", {one.before});
    dashboard.SaveColumnConfig(3, one.shown);
    EXPECT_EQ(model.Get("Dashboard!C1"), Value(one.after)) << ValueToText(one.before);
    std::vector<bool> read(3);
    dashboard.RetrieveColumnConfig(3, read);
    EXPECT_EQ(read, one.shown) << ValueToText(one.before);
  }
}

TEST_F(Dashboard, ListsChartsByColumnAndPosition) {
  model.Put("Reference!G14", {7, 7, "of an earlier list"});
  model.Put("Reference!G15", {8, 8, "another"});
  // Columns begin at 0, 109, 218, 326, ... in whole points; the tolerance is 5.
  model.AddCharts("Dashboard", {{.left = 326, .top = 10.5, .width = 100, .title = "Fourth"},
                                {.left = 0, .top = 300, .width = 108.75, .title = "Below"},
                                {.left = 114.4, .top = 20, .width = 100, .title = "Right of it"},
                                {.left = 103.6, .top = 30, .width = 100, .title = "Left of it"},
                                {.left = 0, .top = 5, .width = 100, .title = "  Above  "},
                                {.left = 0, .top = 1, .width = 100, .title = ""},
                                {.left = 60, .top = 1, .width = 0.5, .title = "Too thin"}});
  Client().BuildChartList();
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_THAT(ChartList(), ElementsAre("1 5 Above", "1 300 Below", "2 20 Right of it",
                                       "2 30 Left of it", "4 10 Fourth"));
}

TEST_F(Dashboard, TellsOfChartsOutsideOfTheirColumns) {
  model.AddCharts("Dashboard", {{.left = 115, .top = 1, .width = 50, .title = "Between"},
                                {.left = 218, .top = 1, .width = 109.4, .title = "Fits"},
                                {.left = 218, .top = 9, .width = 110, .title = "Too wide"},
                                {.left = 900, .top = 1, .width = 50, .title = "Beyond"},
                                {.left = 900, .top = 1, .width = 50, .title = ""}});
  Client({"OK"}).BuildChartList();
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].title, "Vantora warning");
  EXPECT_EQ(Boxes()[0].style, kOkOnly);
  EXPECT_EQ(Boxes()[0].text,
            "Following charts are too far outside of column boundaries:\n\nBetween\nToo "
            "wide\nBeyond\n");
  EXPECT_THAT(ChartList(), ElementsAre("3 1 Fits", "3 9 Too wide"));
}

TEST_F(Dashboard, AChartBesideAHiddenColumnCountsToIt) {
  model.Sheet("Dashboard")->Columns(3)->SetColumnsHidden(true);
  model.AddCharts("Dashboard", {{.left = 217.5, .top = 1, .width = 50, .title = "Sales"}});
  Client().BuildChartList();
  EXPECT_THAT(ChartList(), ElementsAre("3 1 Sales"));
}

TEST_F(Dashboard, MeasuresTheOnlyColumnItself) {
  model.Put("Dashboard!F2", {""});
  model.AddCharts("Dashboard", {{.left = 5, .top = 1, .width = 104, .title = "At its edge"},
                                {.left = 6, .top = 1, .width = 50, .title = "Outside"}});
  Client({"OK"}).BuildChartList();
  EXPECT_THAT(ChartList(), ElementsAre("1 1 At its edge"));
}

TEST_F(Dashboard, ListsEightyChartsAndNamesTheOthers) {
  std::vector<TestChart> charts;
  for (int i = 1; i <= 82; ++i) {
    charts.push_back(
        {.top = static_cast<double>(i), .width = 50, .title = "C" + std::to_string(i)});
  }
  model.AddCharts("Dashboard", charts);
  Client({"OK"}).BuildChartList();
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].text,
            "The chart list holds 80 charts. Following charts are not listed:\n\nC81\nC82\n");
  const std::vector<std::string> list = ChartList();
  ASSERT_EQ(list.size(), 80u);
  EXPECT_EQ(list.back(), "1 80 C80");
}

TEST_F(Dashboard, WithoutChartsTheListIsEmptied) {
  model.Put("Reference!G14", {1, 1, "of an earlier list"});
  Client().BuildChartList();
  EXPECT_THAT(ChartList(), IsEmpty());
  model.Put("Reference!G1", {"x"});
  model.Put("Reference!G14", {1, 1, "no list"});
  Client().BuildChartList();
  EXPECT_THAT(ChartList(), ElementsAre("1 1 no list"));
}

// Failures while the charts are looked at leave one chart out; any other reaches the caller.
TEST_F(Dashboard, LeavesOutAChartThatCannotBeRead) {
  model.AddCharts("Dashboard", {{.left = 0, .top = 1, .width = 50, .title = "First"},
                                {.left = 109, .top = 2, .width = 50, .title = "Second"}});
  auto plan = std::make_shared<testing::FaultPlan>();
  fake = std::make_unique<FakeServices>();
  testing::DashboardClient dashboard(
      fake->services, std::make_shared<testing::FaultyApplication>(model.application(), plan));
  dashboard.BuildChartList();
  plan->calls = 0;
  dashboard.BuildChartList();
  const int calls = plan->calls;
  int without_one = 0;
  int without_any = 0;
  for (int failing = 1; failing <= calls; ++failing) {
    plan->failing_call = 0;
    dashboard.BuildChartList();
    plan->calls = 0;
    plan->failing_call = failing;
    try {
      dashboard.BuildChartList();
      const std::vector<std::string> list = ChartList();
      without_one += list == std::vector<std::string>{"1 1 First"} ||
                     list == std::vector<std::string>{"2 2 Second"};
      without_any += list.empty();
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), testing::FaultPlan::kNumber);
    }
  }
  // Title, left, top and width of two charts; the charts themselves.
  EXPECT_EQ(without_one, 8);
  EXPECT_EQ(without_any, 1);
}

}  // namespace
}  // namespace vantora
