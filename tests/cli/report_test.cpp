#include "cli/report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/small_model.h"

namespace vantora::cli {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using vantora::testing::CommandResult;
using vantora::testing::SmallModel;

std::string Written(const embedded::ChangeList& changes, std::size_t limit) {
  std::ostringstream out;
  WriteChanges(changes, out, limit);
  return out.str();
}

TEST(Changes, AreGroupedBySheetAndCutWithACount) {
  embedded::ChangeList changes;
  changes.inserted = {{"Data", 27, 1}, {"Empty", 5, 2}};
  for (int row = 1; row <= 4; ++row) changes.cells.push_back({"Data", {row, 27}, "", "=A1"});
  changes.cells.push_back({"Notes", {3, 1}, "two\nlines", "\x1b[2J"});
  changes.others = {"comment added at Data!AA2"};
  EXPECT_EQ(Written(changes, 3),
            "Data\n"
            "  column AA inserted\n"
            "  AA1  (empty)  ->  =A1\n"
            "  AA2  (empty)  ->  =A1\n"
            "  AA3  (empty)  ->  =A1\n"
            "  ... and 1 more cell\n"
            "Empty\n"
            "  columns E to F inserted\n"
            "Notes\n"
            "  A3  two\\nlines  ->  ?[2J\n"
            "Other changes\n"
            "  comment added at Data!AA2\n");
  EXPECT_THAT(Written(changes, 4), Not(HasSubstr("more")));
}

TEST(Changes, OfARunAreItsCellsBeforeAndAfter) {
  SmallModel model;
  const CommandResult result =
      model.Run({"clsYearEnd.CopyCurrentYear", "--dry-run", "--yes", "--changes"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("Data 01\n  N3  5  ->  6\n  N4  e  ->  f\n"));
  EXPECT_THAT(result.err, EndsWith("Nothing was written (--dry-run).\n"));
}

// The small model has no macros.
TEST(Report, RoutinesThatAWorkbookWithoutMacrosLacksAreToldOnce) {
  SmallModel model;
  const std::vector<std::string> run = {"clsRefSheet.NamesListPopulate",
                                        "--dry-run",
                                        "--yes",
                                        "--changes",
                                        "--set",
                                        "Planning!A1=X6",
                                        "--set",
                                        "Planning!H1=n",
                                        "--set",
                                        "Planning!K1=k",
                                        "--set",
                                        "Planning!L1=c",
                                        "--set",
                                        "Planning!M1=s",
                                        "--set",
                                        "Planning!A30=end"};
  const CommandResult result = model.Run(run);
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.err, HasSubstr("note: The workbook has no macros, so its routine "
                                    "\"resetNamesSortButtons\" was not run"));
  EXPECT_THAT(result.out, HasSubstr("H6  (empty)  ->  marker\n"));
  EXPECT_THAT(result.out, HasSubstr("Other changes\n  selected on sheet \"Planning\": H4\n"));
  const CommandResult other =
      model.Run({"clsYearEnd.CopyCurrentYear", "--dry-run", "--yes", "--changes"});
  EXPECT_THAT(other.err, Not(HasSubstr("note:")));
}

TEST(Report, FormulasThatCouldNotBeCalculatedAreTold) {
  SmallModel model;
  const CommandResult result = model.Run({"clsYearEnd.CopyCurrentYear", "--dry-run", "--yes"});
  EXPECT_THAT(result.err, HasSubstr("1 formula could not be calculated"));
  EXPECT_THAT(result.err, HasSubstr("\n  Planning!D5: "));
  EXPECT_THAT(result.err, HasSubstr("WEBSERVICE"));
}

TEST(Json, HoldsTheWholeOutcome) {
  SmallModel model;
  const CommandResult result =
      model.Run({"clsYearEnd.CopyCurrentYear", "--in-place", "--answer", "OK", "--answer", "No",
                 "--set", "Planning!H9=new", "--json"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  const auto json = nlohmann::json::parse(result.out);
  EXPECT_EQ(json["outcome"], "done");
  EXPECT_EQ(json["exit_code"], 0);
  EXPECT_TRUE(json["error"].is_null());
  EXPECT_TRUE(json["result"].is_null());
  ASSERT_EQ(json["messages"].size(), 1u);
  const auto& message = json["messages"][0];
  EXPECT_EQ(message["title"], "Vantora");
  EXPECT_EQ(message["icon"], "Warning");
  EXPECT_THAT(message["text"], StartsWith("This will copy current year input cells"));
  EXPECT_EQ(message["buttons"], nlohmann::json({"OK", "Cancel"}));
  EXPECT_EQ(message["answer"], "OK");
  EXPECT_EQ(json["unused_answers"], nlohmann::json({"No"}));
  const nlohmann::json set = {
      {"sheet", "Planning"}, {"cell", "H9"}, {"before", ""}, {"after", "new"}};
  const nlohmann::json copied = {
      {"sheet", "Data 01"}, {"cell", "N3"}, {"before", "5"}, {"after", "6"}};
  EXPECT_THAT(json["changes"]["cells"], ::testing::IsSupersetOf({set, copied}));
  EXPECT_TRUE(json["changes"]["inserted_columns"].empty());
  ASSERT_EQ(json["uncalculated"].size(), 1u);
  EXPECT_EQ(json["uncalculated"][0]["cell"], "D5");
  EXPECT_EQ(json["written"], model.path().string());
  EXPECT_EQ(json["backup"], model.path("model.xlsm.bak").string());
}

TEST(Json, OfARunThatFailedNamesTheError) {
  SmallModel model;
  const auto outcome = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--in-place", "--json"});
    const auto json = nlohmann::json::parse(model.Run(arguments).out);
    EXPECT_TRUE(json["written"].is_null());
    EXPECT_TRUE(json["changes"]["cells"].empty());
    return json;
  };
  EXPECT_EQ(outcome({"clsYearEnd.ShiftHistory", "--answer", "Cancel"})["outcome"], "cancelled");
  EXPECT_EQ(outcome({"clsYearEnd.ShiftHistory"})["outcome"], "unanswered");
  EXPECT_EQ(outcome({"clsYearEnd.Nothing"})["outcome"], "usage");
  const auto critical = outcome({"clsRefSheet.PutDLLVersion", "x"});
  EXPECT_EQ(critical["outcome"], "error");
  EXPECT_THAT(critical["error"]["text"], HasSubstr("No sheet flagged as reference sheet"));
  EXPECT_EQ(critical["messages"][0]["icon"], "Error");
  model.wrap_application = [](host::ApplicationPtr) -> host::ApplicationPtr {
    throw HostError(1004, "no host", "Test");
  };
  const auto failed = outcome({"clsYearEnd.ShiftHistory"});
  EXPECT_EQ(failed["error"],
            nlohmann::json({{"number", 1004}, {"source", "Test"}, {"text", "no host"}}));
  EXPECT_TRUE(model.Untouched());
}

}  // namespace
}  // namespace vantora::cli
