#include "formula/table_file_form.h"

#include <gtest/gtest.h>

#include "small_book.h"

namespace vantora::embedded {
namespace {

TEST(TableFileForm, NamesTheTableAndSpellsOutTheRow) {
  SmallBook book({"Plan"});
  book.model.tables.push_back({"Sales", 0, *ParseA1("B2:D9"), 1, 0, {"Item", "Jan", "Feb [x]"}});
  book.model.names.push_back({"Other", -1, "Plan!$A$1"});
  struct {
    const char* entered;
    const char* written;
  } const cases[] = {
      {"[@Jan]*2", "Sales[[#This Row],[Jan]]*2"},
      {"SUM(Sales[@[Jan]:[Feb '[x']]])", "SUM(Sales[[#This Row],[Jan]:[Feb '[x']]])"},
      {"sales[@]", "sales[#This Row]"},
      {"SUM([Jan])+[[#Totals],[Jan]]", "SUM(Sales[Jan])+Sales[[#Totals],[Jan]]"},
      {"ROWS(Sales)+Other", "ROWS(Sales[])+Other"},
      {"Sales[Jan]&\"[@Jan] Sales\"", "Sales[Jan]&\"[@Jan] Sales\""},
      {"'[b]Sales'!A1+[1]Plan!Sales+Plan!Sales", "'[b]Sales'!A1+[1]Plan!Sales+Plan!Sales"},
      {"[1]!Sales[@Jan]", "[1]!Sales[[#This Row],[Jan]]"},
      {"Sales(1)+A1:B2", "Sales(1)+A1:B2"},
      {"Sales[@", "Sales[@"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(WithTableNames(test.entered, book.model, 0, CellAt("C4")), test.written);
  }
  EXPECT_EQ(WithTableNames("[@Jan]", book.model, 0, CellAt("F4")), "[@Jan]") << "outside the table";
}

}  // namespace
}  // namespace vantora::embedded
