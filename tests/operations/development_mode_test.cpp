// Switching between normal and development mode, and aligning the sheets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using testing::FaultPlan;
using testing::FaultyApplication;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::TestModel;

class DevelopmentMode : public ::testing::Test {
 protected:
  // A model in development mode: row 1 is shown and nothing is protected.
  struct Bench {
    TestModel model{{"Plan", "Board", "Locked", "Ref"}};
    std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
    testing::FakeServices fake{std::vector<std::string>(9, "OK")};
    host::ApplicationPtr application =
        std::make_shared<FaultyApplication>(model.application(), plan);
    testing::DevelopmentModeClient mode{fake.services, application};
    std::optional<testing::MenuManagementClient> menus;

    Bench() {
      model.Put("Plan!A1", {"CRUV6"});
      model.Put("Board!A1", {"D", "H(1)", "x"});
      model.Put("Locked!A1", {"P V7"});
      model.Put("Ref!A1", {"X5", "n", "e", "k", "c", "s", "z"});
      model.Put("Ref!A40", {"end"});
      model.Name("Alpha", "Plan!$A$3:$AB$3");
      model.HaveSortButtons();
      menus.emplace(fake.services, application);
      mode.SetMenus(*menus);
      plan->calls = 0;
    }
    bool RowIsHidden(std::string_view sheet) {
      return model.Sheet(sheet)->Cells(1, 1)->RowsHidden();
    }
    // "h" for each worksheet whose row 1 is hidden, "p" for each protected one.
    std::string State() {
      std::string state;
      for (const auto& sheet : model.application()->ActiveWorkbook()->Worksheets()) {
        state += sheet->Cells(1, 1)->RowsHidden() ? 'h' : '.';
        state += sheet->ProtectContents() ? "p " : ". ";
      }
      return state;
    }
    // Panes, scroll row and column of a sheet's window.
    std::string View(std::string_view sheet) {
      const std::string active = model.ActiveSheet();
      model.Activate(sheet);
      auto window = model.application()->ActiveWindow();
      std::string text = std::to_string(window->Panes().size()) + ": " +
                         std::to_string(window->ScrollRow()) + "," +
                         std::to_string(window->ScrollColumn());
      model.Activate(active);
      return text;
    }
    bool HasDashboardMenu() {
      return model.application()->ActiveMenuBar()->FindControl("VantoraDashboard") != nullptr;
    }
    bool ScreenUpdating() { return model.application()->ScreenUpdating(); }
  };
};

TEST_F(DevelopmentMode, GoesToNormalModeAndBack) {
  Bench bench;
  bench.mode.DevelopmentMode();
  EXPECT_EQ(bench.State(), "h. h. hp h. ");
  EXPECT_EQ(bench.View("Plan"), "4: 4,14");
  EXPECT_EQ(bench.View("Locked"), "2: 1,7");
  EXPECT_EQ(bench.View("Board"), "1: 1,1");
  EXPECT_TRUE(bench.HasDashboardMenu());
  EXPECT_EQ(bench.model.ActiveSheet(), "Plan");
  EXPECT_TRUE(bench.ScreenUpdating());
  EXPECT_EQ(bench.model.Get("Ref!B5"), Value()) << "names are listed for the developer only";

  bench.model.Sheet("Board")->Columns(2)->SetColumnsHidden(true);
  bench.mode.DevelopmentMode();
  EXPECT_EQ(bench.State(), ".. .. .. .. ");
  EXPECT_EQ(bench.model.Get("Ref!B5"), Value("Alpha"));
  EXPECT_FALSE(bench.model.Sheet("Board")->Columns(2)->ColumnsHidden());
  EXPECT_EQ(bench.View("Plan"), "4: 4,14") << "nothing is aligned";
  EXPECT_EQ(bench.model.ActiveSheet(), "Plan") << "though the dashboard was activated";
  EXPECT_TRUE(bench.ScreenUpdating());

  bench.mode.DevelopmentMode();
  EXPECT_EQ(bench.State(), "h. h. hp h. ");
  EXPECT_EQ(bench.View("Plan"), "4: 4,14");
  EXPECT_EQ(bench.View("Locked"), "2: 1,7");
}

TEST_F(DevelopmentMode, OnlyTheActiveSheetDecides) {
  Bench bench;
  bench.model.Sheet("Ref")->Cells(1, 1)->SetRowsHidden(true);
  bench.mode.DevelopmentMode();
  EXPECT_EQ(bench.State(), "h. h. hp h. ");
  bench.model.Sheet("Plan")->Cells(1, 1)->SetRowsHidden(false);
  bench.model.Activate("Ref");
  bench.mode.DevelopmentMode();
  EXPECT_EQ(bench.State(), ".. .. .. .. ");
}

TEST_F(DevelopmentMode, ASheetThatCannotBeSwitchedEndsIt) {
  Bench bench;
  bench.mode.DevelopmentMode();
  // Protected though it is not flagged.
  bench.model.Sheet("Board")->Protect();
  EXPECT_THROW(bench.mode.DevelopmentMode(), HostError);
  EXPECT_EQ(bench.State(), ".. hp hp h. ");
  EXPECT_FALSE(bench.ScreenUpdating());
}

TEST_F(DevelopmentMode, WithoutMenusItEndsWhereTheyAreNeeded) {
  Bench bench;
  testing::DevelopmentModeClient alone(bench.fake.services, bench.application);
  for (const char* state : {"h. h. hp h. ", ".. .. .. .. "}) {
    try {
      alone.DevelopmentMode();
      FAIL() << "the missing menus were not told";
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), HostError::kObjectNotSet);
    }
    EXPECT_EQ(bench.State(), state);
    EXPECT_FALSE(bench.ScreenUpdating());
    EXPECT_EQ(bench.View("Plan"), "1: 1,1") << "the sheets would have been aligned after the menus";
  }
  EXPECT_EQ(bench.model.Get("Ref!B5"), Value("Alpha"));
}

TEST_F(DevelopmentMode, AlignsEachSheetAsItsFlagsSay) {
  const struct {
    const char* flags;
    const char* view;
  } kCases[] = {
      {"Curve", "4: 4,14"}, {"C", "1: 1,14"},      {"C20R30", "1: 30,20"}, {"CR", "1: 1,14"},
      {"U", "2: 4,1"},      {"V7", "2: 1,7"},      {"U6V3", "4: 6,3"},     {"UC2", "2: 4,2"},
      {"V7C3", "2: 1,7"},   {"U10R50", "2: 50,1"}, {"R5001", "1: 1,1"},    {"x", "1: 9,9"},
  };
  for (const auto& test : kCases) {
    Bench bench;
    bench.model.Put("Plan!A1", {test.flags});
    if (std::string(test.flags) == "x") {
      bench.model.application()->ActiveWindow()->SetScrollRow(9);
      bench.model.application()->ActiveWindow()->SetScrollColumn(9);
    }
    bench.model.Activate("Ref");
    bench.mode.AlignSheets();
    EXPECT_EQ(bench.View("Plan"), test.view) << test.flags;
    EXPECT_EQ(bench.model.ActiveSheet(), "Ref");
    EXPECT_TRUE(bench.ScreenUpdating());
    bench.mode.AlignSheets();
    EXPECT_EQ(bench.View("Plan"), test.view) << test.flags << ", aligned again";
  }
}

TEST_F(DevelopmentMode, AlignsFromAChartSheetAndReturnsToIt) {
  Bench bench;
  bench.model.Activate("Ref");
  bench.model.TurnIntoChartSheet("Ref");
  bench.mode.AlignSheets();
  EXPECT_EQ(bench.model.ActiveSheet(), "Ref");
  EXPECT_TRUE(bench.ScreenUpdating());
  bench.model.Activate("Plan");
  EXPECT_EQ(bench.View("Plan"), "4: 4,14");
}

TEST_F(DevelopmentMode, AHiddenSheetThatIsToBeAlignedEndsIt) {
  Bench bench;
  bench.model.Hide("Locked");
  EXPECT_THROW(bench.mode.AlignSheets(), HostError);
  EXPECT_EQ(bench.View("Plan"), "4: 4,14");
  EXPECT_FALSE(bench.ScreenUpdating());
}

TEST_F(DevelopmentMode, DoesNothingWithoutInit) {
  Bench bench;
  testing::DevelopmentModeClient unbound(bench.fake.services, nullptr);
  unbound.DevelopmentMode();
  unbound.AlignSheets();
  EXPECT_EQ(bench.State(), ".. .. .. .. ");
  EXPECT_EQ(bench.View("Plan"), "1: 1,1");
}

// Failures of the direct calls; those within the chart list are trapped there.
TEST_F(DevelopmentMode, FailuresLeaveWhatWasDone) {
  Bench counting;
  counting.mode.AlignSheets();
  const int calls = counting.plan->calls;
  ASSERT_GE(calls, 40);
  for (int failing = 2; failing <= calls; ++failing) {
    Bench bench;
    bench.plan->failing_call = failing;
    EXPECT_THROW(bench.mode.AlignSheets(), HostError) << failing;
    EXPECT_EQ(bench.plan->calls, failing);
    EXPECT_FALSE(bench.ScreenUpdating()) << failing;
    bench.mode.AlignSheets();
    EXPECT_EQ(bench.View("Plan"), "4: 4,14") << failing;
    EXPECT_EQ(bench.View("Locked"), "2: 1,7") << failing;
  }
}

TEST_F(DevelopmentMode, AFailureWhileSwitchingLeavesTheSheetsDone) {
  // Sheets are switched one after the other: of the states before and after none lies behind one
  // that was not reached.
  const std::string before = ".. .. .. .. ";
  bool reached_last = false;
  for (int failing = 2; !reached_last && failing < 200; ++failing) {
    Bench bench;
    bench.plan->failing_call = failing;
    EXPECT_THROW(bench.mode.DevelopmentMode(), HostError) << failing;
    EXPECT_FALSE(bench.ScreenUpdating());
    const std::string state = bench.State();
    EXPECT_THAT((std::vector<std::string>{before, "h. .. .. .. ", "h. h. .. .. ", "h. h. h. .. ",
                                          "h. h. hp .. ", "h. h. hp h. "}),
                ::testing::Contains(state))
        << failing;
    EXPECT_FALSE(bench.HasDashboardMenu());
    reached_last = state == "h. h. hp h. ";
  }
  EXPECT_TRUE(reached_last);
}

}  // namespace
}  // namespace vantora
