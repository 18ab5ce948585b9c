// Every host call of an operation is made to fail in turn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "operations/client.h"
#include "operations/year_end_fixture.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using testing::FaultPlan;
using testing::FaultyApplication;
using testing::TestModel;

// What an operation works with.
struct Bench {
  TestModel model = testing::YearEndModel();
  std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
  ui::ScriptedUserInterface yes{{}, ui::ScriptedUserInterface::WhenExhausted::kYes};
  testing::FixedClock clock;
  testing::NoFileVersions versions;
  Services services{yes, clock, versions};
  host::ApplicationPtr application =
      std::make_shared<FaultyApplication>(Prepared(model).application(), plan);
  testing::YearEndClient year_end{services, application};
  testing::RefSheetClient ref_sheet{services, application};
  testing::DevelopmentModeClient development_mode{services, application};
  testing::FreezeClient freeze{services, application};
  testing::PlanningSpinnersClient spinners{services, application};
  testing::ClearAllDataClient clear{services, application};
  testing::RatiosCompDataSetClient ratios{services, application};
  testing::FormattingClient formatting{services, application};
  testing::HiderClient hider{services, application};

  Bench() { plan->calls = 0; }

  // Planning is the Reference Sheet, Plant holds a base row and a block of comparison data, Cover a
  // spin button with one project.
  static TestModel& Prepared(TestModel& model) {
    model.Put("Planning!A1", {"X14", "n", "k", "c", "s", "e", "h"});
    model.Put("Planning!D10", {"used range"});
    model.Put("Planning!A20", {"used range"});
    model.Put("Plant!AM3", {"Planning key"});
    model.Put("Plant!AM4", {"K-1"});
    model.HaveSortButtons();
    model.Put("Plant!A1", {"plant s f g"});
    model.Put("Plant!E3", {1});
    model.Put("Plant!A3", {7});
    model.Put("Plant!AB12", {"BS"});
    model.Put("Plant!E8", {100});
    model.Put("Plant!I9", {7, 1});
    model.Put("Plant!E10", {191});
    model.Put("Data!A1", {"S Z"});
    model.AddSpinner("Cover", "Spinner 1", "$D$8");
    model.SetCaller("Spinner 1");
    model.Put("Cover!C1", {"f"});
    model.Put("Cover!AD1", {"s"});
    model.Put("Cover!C5", {"x"});
    model.Put("Cover!P5", {1, 2, 1, 1, 1, 1, 1, 1, 1, 1});
    model.Put("Cover!C9", {"i"});
    model.Put("Cover!P9", {1});
    model.Put("Cover!C10", {"end", 1});
    model.Put("Cover!D8", {2});
    return model;
  }
};

struct Operation {
  const char* name;
  std::function<void(Bench&)> run;
  // Fewer calls would mean that the operation did not reach its work.
  int least_calls;
};

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

class HostFaults : public ::testing::TestWithParam<Operation> {};

TEST_P(HostFaults, ReachTheCallerAndLeaveTheObjectsWorking) {
  const Operation& operation = GetParam();
  Bench counting;
  operation.run(counting);
  const int calls = counting.plan->calls;
  ASSERT_GE(calls, operation.least_calls);

  for (int failing = 1; failing <= calls; ++failing) {
    SCOPED_TRACE("call " + std::to_string(failing) + " of " + std::to_string(calls));
    Bench bench;
    bench.plan->failing_call = failing;
    try {
      operation.run(bench);
      FAIL() << "the error did not reach the caller";
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), FaultPlan::kNumber);
      EXPECT_EQ(error.description(), FaultPlan::kText);
    }
    EXPECT_EQ(bench.plan->calls, failing) << "the operation went on";

    operation.run(bench);
    // Whatever mode the failure left behind, the next operation is right.
    bench.freeze.SetSpinnerstoBase();
    bench.year_end.CopyCurrentYear();
    EXPECT_EQ(bench.model.Get("Plant!N5"), Value(26));
    EXPECT_TRUE(bench.model.application()->ScreenUpdating());
  }
}

// The paste tells of each failure and goes on with the step behind it.
TEST(HostFaultsOfAPaste, AreToldOnceAndLeaveTheOtherAreasPasted) {
  const std::vector<std::string> kCells = {"Cover!F15", "Cover!H15", "Cover!J17"};
  const std::vector<std::string> kFormulas = {"A15*2", "C15*2", "E17*2"};
  const auto prepare = [](Bench& bench) {
    bench.model.Activate("Cover");
    bench.model.Put("Cover!F2", {"=A2*2"});
    bench.model.Select("F2");
    bench.model.application()->Selection()->Copy();
    bench.model.Select("F15,H15,J16:J17");
  };
  Bench counting;
  prepare(counting);
  counting.formatting.PasteFormula();
  const int calls = counting.plan->calls;
  ASSERT_GE(calls, 15);

  for (int failing = 1; failing <= calls; ++failing) {
    SCOPED_TRACE("call " + std::to_string(failing) + " of " + std::to_string(calls));
    Bench bench;
    prepare(bench);
    bench.plan->failing_call = failing;
    const auto boxes = [&] { return bench.yes.message_boxes().size(); };
    if (failing == 1) {  // switching screen updating off: nothing is to be pasted yet
      EXPECT_THROW(bench.formatting.PasteFormula(), HostError);
      EXPECT_EQ(boxes(), 0u);
      continue;
    }
    bench.formatting.PasteFormula();
    EXPECT_EQ(boxes(), 1u);
    std::size_t pasted = 0;
    for (std::size_t i = 0; i < kCells.size(); ++i) {
      pasted += bench.model.Formula(kCells[i]) == kFormulas[i];
    }
    // Without the selection's areas (the calls before) there is nothing to go on with.
    constexpr int kFirstCallOfAnArea = 5;
    EXPECT_GE(pasted, failing < kFirstCallOfAnArea ? 0u : kCells.size() - 1);
    EXPECT_EQ(bench.model.application()->ScreenUpdating(), failing < calls);
    if (failing < calls - 1) {
      EXPECT_EQ(bench.model.Selected(), "F15 H15 J16:J17");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, HostFaults,
    ::testing::Values(
        Operation{"SaveHistoryYear", [](Bench& b) { b.year_end.SaveHistoryYear(); }, 60},
        Operation{"SaveCurrentYear", [](Bench& b) { b.year_end.SaveCurrentYear(); }, 60},
        Operation{"SaveLastYear", [](Bench& b) { b.year_end.SaveLastYear(); }, 60},
        Operation{"ShiftHistory", [](Bench& b) { b.year_end.ShiftHistory(); }, 60},
        Operation{"CopyCurrentYear", [](Bench& b) { b.year_end.CopyCurrentYear(); }, 20},
        Operation{"FreezeCurrentResults", [](Bench& b) { b.freeze.FreezeCurrentResults(); }, 20},
        Operation{"SetSpinnerstoBase", [](Bench& b) { b.freeze.SetSpinnerstoBase(); }, 40},
        Operation{"SpinnerChange",
                  [](Bench& b) {
                    b.model.Put("Cover!D10", {1});
                    b.spinners.SpinnerChange();
                  },
                  60},
        Operation{"ClearAllData", [](Bench& b) { b.clear.ClearAllData(); }, 60},
        Operation{"RangeSelect", [](Bench& b) { b.formatting.RangeSelect(true); }, 12},
        Operation{"LeftFormat",
                  [](Bench& b) {
                    b.model.user().answers = {"B12:C13,E15"};
                    b.formatting.LeftFormat();
                  },
                  18},
        Operation{"RightFormat",
                  [](Bench& b) {
                    b.model.user().answers = {"B12:C13,E15"};
                    b.formatting.RightFormat();
                  },
                  18},
        Operation{"AtOpen", [](Bench& b) { b.hider.AtOpen(); }, 10},
        Operation{"AlignSheets", [](Bench& b) { b.development_mode.AlignSheets(); }, 20},
        Operation{"RatiosCompDataSet", [](Bench& b) { b.ratios.RatiosCompDataSet(); }, 40},
        Operation{"BindRefSheet", [](Bench& b) { b.ref_sheet.Init(); }, 10},
        Operation{"KeysListSortbyKey", [](Bench& b) { b.ref_sheet.Call("KeysListSortbyKey"); }, 10},
        Operation{"NamesListPopulate", [](Bench& b) { b.ref_sheet.Call("NamesListPopulate"); }, 20},
        Operation{"ConfigsListPut",
                  [](Bench& b) {
                    b.ref_sheet.ConfigsListPut({"a", "b"});
                  },
                  7},
        Operation{"CheckPlanningKeys", [](Bench& b) { b.development_mode.CheckPlanningKeys(); },
                  60},
        Operation{"PutDLLVersion", [](Bench& b) { b.ref_sheet.PutDLLVersion("line"); }, 2}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace vantora
