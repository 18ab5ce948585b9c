#include "inspection/inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/test_model.h"

namespace vantora::inspection {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class InspectionTest : public ::testing::Test {
 protected:
  Inspection Look() {
    return Inspect(*model.application(),
                   [](const std::string&) { return std::vector<std::string>(); });
  }
  // "Sheet!A1: ..." of each problem.
  static std::vector<std::string> ProblemsOf(const Inspection& inspection) {
    std::vector<std::string> texts;
    for (const Problem& problem : inspection.problems) {
      texts.push_back(problem.sheet + "!" + problem.cell + ": " + problem.text);
    }
    return texts;
  }

  testing::TestModel model{{"Data", "Plan", "Ratios", "Reference", "Title"}};
};

TEST_F(InspectionTest, NamesEachFlagWithTheNumberThatCounts) {
  model.Put("Data!A1", {"s f M3 I17 c"});
  const SheetFacts data = Look().sheets[0];
  std::vector<std::string> flags;
  for (const SheetFlag& flag : data.flags) {
    flags.push_back(std::string(flag.letter) +
                    (flag.number ? std::to_string(*flag.number) : std::string()));
  }
  EXPECT_THAT(flags, ElementsAre("S", "F", "M3", "I17", "C14"));
  EXPECT_THAT(data.operations, Contains("clsYearEnd"));
  EXPECT_THAT(data.operations, Contains("clsFreeze.FreezeCurrentResults"));
}

TEST_F(InspectionTest, FindsTheListsAsTheReferenceSheetHasThem) {
  model.Put("Reference!A1", {"X5", "n", "", "k", "c", "s", "m"});
  model.Put("Reference!K30", {1});
  for (const char* cell : {"Reference!B5", "Reference!B6", "Reference!B8"}) {
    model.Put(cell, {"Name"});
  }
  model.Put("Reference!G5", {"Year end"});
  model.Put("Reference!G6", {"", "Shift", "", "VA_ShiftHistory"});
  const auto facts = Look().reference_sheet;
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->lists_row, 5);
  EXPECT_EQ(facts->lists[0].column, 2);
  EXPECT_EQ(facts->lists[0].entries, 2);  // an empty row ends a list
  EXPECT_EQ(facts->lists[4].column, std::nullopt);
  EXPECT_EQ(facts->lists[5].column, 7);
  EXPECT_EQ(facts->lists[5].entries, 2);
}

TEST_F(InspectionTest, FindsBaseRowsKeysAndRatios) {
  model.Put("Data!A1", {"FL"});
  model.Put("Data!AB6", {"B"});
  model.Put("Data!AB8", {"BS"});
  model.Put("Data!AB9", {"=\"bs\""});
  model.Put("Data!I4", {"planning KEY "});
  model.Put("Data!I5", {"alpha"});
  model.Put("Data!I7", {"beta"});
  model.Put("Ratios!A1", {"G"});
  const std::vector<std::pair<std::string, double>> codes = {
      {"E3", 1}, {"E6", 99}, {"E10", 100}, {"E14", 191}};
  for (const auto& [cell, code] : codes) model.Put("Ratios!" + cell, {code});
  model.Put("Ratios!A4", {7});
  const Inspection inspection = Look();
  const SheetFacts& data = inspection.sheets[0];
  EXPECT_THAT(data.base_rows, ElementsAre(6, 8, 9));
  EXPECT_THAT(data.spinner_base_rows, ElementsAre(8));
  ASSERT_EQ(data.key_columns.size(), 1u);
  EXPECT_EQ(data.key_columns[0].keys, 2);
  EXPECT_TRUE(data.key_columns[0].defines);
  const SheetFacts& ratios = inspection.sheets[2];
  EXPECT_EQ(ratios.ratio_keys, 1);
  ASSERT_EQ(ratios.ratio_blocks.size(), 1u);
  EXPECT_EQ(ratios.ratio_blocks[0].first_row, 11);
  EXPECT_EQ(ratios.ratio_blocks[0].last_row, 13);
}

TEST_F(InspectionTest, ASoundModelHasNoProblems) {
  model.Put("Data!A1", {"S F M1"});
  model.Put("Data!T1", {"k"});
  model.Put("Data!AB6", {"B"});
  model.Put("Reference!A1", {"X5", "n", "k", "c", "s", "e", "m", "g", "h"});
  model.Put("Reference!A20", {"end of the lists"});
  model.Put("Reference!I5", {0});
  model.Put("Title!A1", {"T", "L12"});
  model.Name("marker", "Data!$T$1");
  model.Name("planning_fiscal_year", "Data!$J$3:$N$3");
  EXPECT_THAT(ProblemsOf(Look()), IsEmpty());
}

struct Mistake {
  const char* name;
  const char* cell;
  std::vector<Value> values;
  const char* problem;
};

void PrintTo(const Mistake& mistake, std::ostream* out) { *out << mistake.name; }

class InspectionOfMistakes : public InspectionTest,
                             public ::testing::WithParamInterface<Mistake> {};

TEST_P(InspectionOfMistakes, TellsWhatAndWhere) {
  model.Put("Reference!A1", {"X5", "n", "k", "c", "s", "e", "m", "g", "h"});
  model.Put("Reference!A20", {"end of the lists"});
  model.Put("Title!A1", {"T"});
  model.Put("Ratios!A1", {"G"});
  model.Put("Plan!A1", {"D"});
  model.Put("Data!A1", {"F"});
  model.Put(GetParam().cell, GetParam().values);
  EXPECT_THAT(ProblemsOf(Look()), Contains(HasSubstr(GetParam().problem)));
}

INSTANTIATE_TEST_SUITE_P(
    Each, InspectionOfMistakes,
    ::testing::Values(
        Mistake{"NumberTooLarge", "Data!A1", {"R6000"}, "Data!A1: The number behind R, 6000,"},
        Mistake{"NegativeNumber", "Data!A1", {"C-3"}, "Data!A1: The number behind C, -3,"},
        Mistake{"NoGroup", "Data!A1", {"M12"}, "Data!A1: The menu group 12 "},
        Mistake{"Word", "Data!A1", {"Curve"}, "Data!A1: The cell reads like words"},
        Mistake{
            "TwoReferenceSheets", "Data!A1", {"X"}, "Reference!A1: This sheet is flagged \"X\""},
        Mistake{"NoTitleSheet", "Title!A1", {""}, "!: No worksheet has \"T\""},
        Mistake{"NoMarker", "Data!A1", {"S"}, "!: The name \"marker\""},
        Mistake{"BaseFlagInRow1", "Data!AB1", {"B"}, "Data!AB1: A base flag in row 1"},
        Mistake{
            "CalculatedSpinnerFlag", "Data!AB3", {"=\"BS\""}, "Data!AB3: The flag is calculated"},
        Mistake{"KeyAbove100", "Ratios!A4", {101, "", "", "", 1}, "Ratios!A4: The ratio key 101"},
        Mistake{"BlockAbove10", "Ratios!E4", {1100}, "Ratios!E4: Code 1100 names a block above 10"},
        Mistake{"BlockWithoutEnd",
                "Ratios!E4",
                {200},
                "Ratios!: Block 2 of the comparison data has no end"},
        Mistake{"KeysWithoutHeading", "Data!A1", {"L"}, "Data!I1: The sheet is flagged \"L\""},
        Mistake{"MissingList", "Reference!B1", {""}, "Reference!: Row 1 has no flag \"n\""},
        Mistake{"SubItemWithoutItem",
                "Reference!G5",
                {"", "Sub", "", "Macro"},
                "Reference!H5: The sub-item has no item above it"},
        Mistake{"SubItemWithoutMacro",
                "Reference!G5",
                {"", "Sub"},
                "Reference!H5: The sub-item has no macro"},
        Mistake{"ConfigurationsWithoutEnd",
                "Reference!I5",
                {1, "Board"},
                "Reference!I6: The row that ends the list of dashboard configurations has no"},
        Mistake{"ConfigurationWithoutNumber",
                "Reference!I5",
                {"one", "Board"},
                "Reference!I5: The dashboard configuration has no number"},
        Mistake{"TokenWithoutEnd",
                "Plan!C1",
                {"Sales H(1,2"},
                "Plan!C1: The token \"H(1,2\" has no closing"},
        Mistake{"TokenWithText", "Plan!C1", {"H(1,x)"}, "Plan!C1: \"x\" in the token"}),
    [](const auto& info) { return info.param.name; });

TEST_F(InspectionTest, ChartsThatTheChartListLeavesOutOrWarnsOfAreProblems) {
  model.Put("Plan!A1", {"D"});
  model.Put("Plan!C9", {1});
  const double column = model.Sheet("Plan")->Columns(2)->Left();
  model.AddCharts("Plan", {{.left = column, .width = column, .title = "Right"},
                           {.left = column + 20, .width = 20, .title = "Between"},
                           {.left = 2 * column, .width = 2 * column, .title = "Wide"},
                           {.left = 0, .width = 20, .title = ""}});
  const std::vector<std::string> problems = ProblemsOf(Look());
  EXPECT_THAT(problems, Contains(HasSubstr("Plan!: The chart \"Between\" begins at no column's")));
  EXPECT_THAT(problems, Contains(HasSubstr("Plan!C1: The chart \"Wide\" is wider")));
  EXPECT_THAT(problems, Contains(HasSubstr("Plan!: A chart has no title")));
  EXPECT_THAT(problems, ::testing::Not(Contains(HasSubstr("Right"))));
}

TEST_F(InspectionTest, AListThatFillsTheUsedRangeIsAProblem) {
  model.Put("Reference!A1", {"X5", "n", "k", "c", "s"});
  model.Put("Reference!B5", {"first"});
  model.Put("Reference!B6", {"last"});
  EXPECT_THAT(ProblemsOf(Look()), Contains(HasSubstr("Reference!B6: The list of names fills")));
}

TEST_F(InspectionTest, ASubItemBelowAButtonIsAProblem) {
  model.Put("Reference!A1", {"X5", "n", "k", "c", "s", "e", "m"});
  model.Put("Reference!A20", {"end"});
  model.Put("Reference!G5", {"Freeze", "", "", "VA_Freeze"});
  model.Put("Reference!G6", {"", "Sub", "", "Macro"});
  EXPECT_THAT(ProblemsOf(Look()),
              Contains(HasSubstr("Reference!H6: The item above this sub-item")));
}

TEST_F(InspectionTest, ASixteenthSheetOfAGroupIsAProblem) {
  std::vector<std::string> names;
  for (int i = 1; i <= 16; ++i) names.push_back("Sheet " + std::to_string(i));
  testing::TestModel many(names);
  for (const std::string& name : names) many.Sheet(name)->Cells(1, 1)->SetValue("M2");
  const Inspection inspection =
      Inspect(*many.application(), [](const std::string&) { return std::vector<std::string>(); });
  EXPECT_THAT(ProblemsOf(inspection), Contains(HasSubstr("Sheet 16!A1: Menu group 2 holds 15")));
  EXPECT_THAT(ProblemsOf(inspection), ::testing::Not(Contains(HasSubstr("Sheet 15!A1"))));
}

}  // namespace
}  // namespace vantora::inspection
