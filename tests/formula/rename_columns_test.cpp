// Formulas when columns of a table get other names.
#include "formula/rename_columns.h"

#include <gtest/gtest.h>

namespace vantora::embedded {
namespace {

TEST(RenamedColumns, StandInEveryFormOfReference) {
  // Two of them exchange their names.
  const ColumnRenames renames{"Sales",
                              {{"Jan", "Feb"}, {"Feb", "Jan"}, {"A b", "C@d"}, {"x[1]", "y"}}};
  struct {
    const char* before;
    const char* after;
    const char* in_table;  // null: as `after`
  } const cases[] = {
      {"SUM(sales[jan])", "SUM(sales[Feb])", nullptr},
      {"Sales[[#Headers],[Jan]:[Feb]]", "Sales[[#Headers],[Feb]:[Jan]]", nullptr},
      {"Sales[ [#Data], [Feb] ]+1", "Sales[ [#Data], [Jan] ]+1", nullptr},
      {"Sales[@Jan]*Sales[@[Feb]]", "Sales[@[Feb]]*Sales[@[Jan]]", nullptr},
      {"Sales[@[A b]]", "Sales[@[C'@d]]", nullptr},
      {"Sales[x'[1']]", "Sales[y]", nullptr},
      {"[@Jan]", "[@Jan]", "[@[Feb]]"},
      {"SUM([Jan])", "SUM([Jan])", "SUM([Feb])"},
      {"Costs[Jan]&\"Sales[Jan]\"&'Sales[Jan'!A1", "Costs[Jan]&\"Sales[Jan]\"&'Sales[Jan'!A1",
       nullptr},
      {"[1]Jan!A1+[Book.xlsx]Jan!Jan", "[1]Jan!A1+[Book.xlsx]Jan!Jan", nullptr},
      {"Sales[#All]+Sales[]+Sales[January]", "Sales[#All]+Sales[]+Sales[January]", nullptr},
      {"Jan+\x01*Sales[Jan]", "Jan+\x01*Sales[Feb]", nullptr},
  };
  for (const auto& test : cases) {
    const RenamedFormula outside = WithRenamedColumns(test.before, false, renames);
    EXPECT_EQ(outside.text, test.after);
    EXPECT_EQ(outside.changed, outside.text != test.before) << test.before;
    EXPECT_TRUE(outside.is_certain) << test.before;
    const char* in_table = test.in_table ? test.in_table : test.after;
    EXPECT_EQ(WithRenamedColumns(test.before, true, renames).text, in_table);
  }
  EXPECT_FALSE(WithRenamedColumns("Sales[[#New],[JAN]]", false, renames).is_certain);
  EXPECT_TRUE(WithRenamedColumns("Sales[[#New],[Mar]]", false, renames).is_certain);
}

}  // namespace
}  // namespace vantora::embedded
