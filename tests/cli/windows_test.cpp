// `vantora windows`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/small_model.h"

namespace vantora {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(WindowsCommand, DrawsTheArrangementAndWritesNothing) {
  testing::SmallModel model;
  const std::string path = model.path().string();
  // The model has no dashboard: both windows show its sheet.
  auto result = model.Command({"windows", path, "--mode", "lr", "--sheet", "Data 01"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  const std::string edge = "+" + std::string(19, '-') + "+" + std::string(51, '-') + "+\n";
  EXPECT_THAT(result.out, StartsWith(edge + "|Data 01            |Data 01"));
  EXPECT_THAT(result.out, HasSubstr("\n|393 x 600 points   |1035 x 600 points "));
  EXPECT_THAT(result.out, HasSubstr("|\n" + edge));
  EXPECT_THAT(result.out, EndsWith("Data 01: 393 x 600 points, left 0, top 0 (active)\n"
                                   "Data 01: 1035 x 600 points, left 393, top 0\n"));
  result = model.Command({"windows", path, "--mode", "ud"});
  EXPECT_THAT(result.out, EndsWith("Planning: 1428 x 295 points, left 0, top 0 (active)\n"
                                   "Planning: 1428 x 305 points, left 0, top 295\n"));
  EXPECT_TRUE(model.Untouched());
  EXPECT_EQ(model.Command({"windows", path}).exit_code, 2);
  EXPECT_EQ(model.Command({"windows", path, "--mode", "up"}).exit_code, 2);
}

}  // namespace
}  // namespace vantora
