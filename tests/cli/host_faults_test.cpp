// Every failing host call of every year-end operation: nothing is written, and the user learns what
// the host said.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/small_model.h"
#include "support/faulty_host.h"

namespace vantora::cli {
namespace {

using ::testing::HasSubstr;
using vantora::testing::CommandResult;
using vantora::testing::FaultPlan;
using vantora::testing::FaultyApplication;
using vantora::testing::SmallModel;

class FailingHostCall : public ::testing::TestWithParam<std::string> {};

TEST_P(FailingHostCall, LeavesTheFilesAndReachesTheUser) {
  SmallModel model;
  auto plan = std::make_shared<FaultPlan>();
  model.wrap_application = [&](host::ApplicationPtr application) -> host::ApplicationPtr {
    return std::make_shared<FaultyApplication>(application, plan);
  };
  const auto run = [&] {
    plan->calls = 0;
    return model.Run({"clsYearEnd." + GetParam(), "--in-place", "--yes"});
  };
  constexpr int kMoreThanAnyOperationMakes = 10000;
  int failing_call = 1;
  for (; failing_call < kMoreThanAnyOperationMakes; ++failing_call) {
    plan->failing_call = failing_call;
    const CommandResult result = run();
    if (plan->calls < failing_call) break;  // the operation makes no more calls: it was done
    ASSERT_EQ(result.exit_code, 1) << "call " << failing_call;
    ASSERT_THAT(result.err, HasSubstr("vantora: injected (error 1004)\n"));
    ASSERT_TRUE(model.Untouched()) << "call " << failing_call << ": " << model.Files();
  }
  EXPECT_GT(failing_call, 10);
  EXPECT_FALSE(model.Untouched());
}

INSTANTIATE_TEST_SUITE_P(YearEnd, FailingHostCall,
                         ::testing::Values("SaveHistoryYear", "SaveCurrentYear", "SaveLastYear",
                                           "ShiftHistory", "CopyCurrentYear"),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace vantora::cli
