// References to tables: what they mean, what depends on them, how they follow insertions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "test_book.h"

namespace vantora::embedded {
namespace {

//        B       C      D       E
//   2    Item    Jan    Feb     To [tal]
//   3    a       1      10      (in rows 3 to 5)
//   4    b       2      20
//   5    c       3      30
//   6    (the totals row)
class Tables : public testing::Test {
 protected:
  Tables() {
    book_.AddTable("Sales", "B2:E6", {"Item", "Jan", "Feb", "To [tal]"}, 1);
    for (int row = 0; row < 3; ++row) {
      const std::string at = std::to_string(row + 3);
      book_.Put("B" + at, std::string(1, static_cast<char>('a' + row)));
      book_.Put("C" + at, std::to_string(row + 1));
      book_.Put("D" + at, std::to_string((row + 1) * 10));
    }
    book_.Put("E3:E5", "=Sales[[#This Row],[Jan]]+Sales[[#This Row],[Feb]]");
    book_.Put("C6", "=SUM(Sales[Jan])");
  }

  TestBook book_;
};

TEST_F(Tables, MeanTheirCells) {
  struct {
    const char* formula;
    const char* value;
  } const cases[] = {
      {"=SUM(Sales[Jan])", "6"},
      {"=SUM(sales[JAN])", "6"},
      {"=SUM(Sales[[Jan]:[Feb]])", "66"},
      {"=SUM(Sales[[Feb]:[Jan]])", "66"},
      {"=SUM(Sales[To '[tal']])", "66"},
      {"=SUM(Sales[])", "132"},
      {"=SUM(Sales)", "132"},
      {"=ROWS(Sales[#All])", "5"},
      {"=COLUMNS(Sales[#Data])", "4"},
      {"=Sales[[#Headers],[Feb]]", "Feb"},
      {"=INDEX(Sales[#Headers],1,4)", "To [tal]"},
      {"=Sales[[#Totals],[Jan]]", "6"},
      {"=SUM(Sales[[#Data],[#Totals],[Jan]])", "12"},
      {"=ROWS(Sales[[#Headers],[#Data]])", "4"},
      {"=SUM( Sales[ [#Data], [Jan]:[Feb] ] )", "66"},
      {"=Sales[[#Headers],[#Totals]]", "stale"},
      {"=Sales[Mar]", "stale"},
      {"=Costs[Jan]", "stale"},
      {"=[@Jan]", "stale"},
      {"=Sales[[#This Row],[Jan]]", "#VALUE!"},
      {"=SUM(Sales[Jan]:Sales[Feb])", "66"},
      {"=SUM(Sales[#Data] Sales[Feb])", "60"},
  };
  for (const auto& test : cases) {
    book_.Put("K9", test.formula);
    EXPECT_EQ(book_.Value("K9"), test.value) << test.formula;
    EXPECT_EQ(book_.FormulaIn("K9"), test.formula);
  }
  book_.Put("K4", "=Sales[@Feb]+SUM(Sales[@[Jan]:[Feb]])+COLUMNS(Sales[@])");
  EXPECT_EQ(book_.Value("K4"), "46");
  book_.Put("Other!A5", "=Sales[@Jan]");
  EXPECT_EQ(book_.Value("Other!A5"), "3");
  book_.Put("E4", "=[@Jan]*[@[Feb]]+SUM([Jan])");
  EXPECT_EQ(book_.Value("E4"), "46");
  book_.AddName("january", "Sales[Jan]");
  book_.Put("K9", "=MAX(january)");
  EXPECT_EQ(book_.Value("K9"), "3");
}

TEST_F(Tables, HaveNoTotalsWithoutATotalsRow) {
  book_.AddTable("Plain", "H2:H3", {"x"});
  book_.Put("K9", "=Plain[#Totals]");
  EXPECT_EQ(book_.Value("K9"), "#REF!");
  book_.Put("K9", "=ROWS(Plain[[#Data],[#Totals]])");
  EXPECT_EQ(book_.Value("K9"), "1");
}

TEST_F(Tables, MarkOnlyWhatDependsOnTheChangedCells) {
  book_.Put("K8", "=SUM(Sales[Jan])");
  book_.Put("K9", "=SUM(Sales[Feb])");
  book_.AddName("january", "Sales[Jan]");
  book_.Put("K10", "=SUM(january)");
  book_.calculator().CalculateAll();
  const std::size_t before = book_.calculator().evaluations();
  book_.Put("C4", "7");
  EXPECT_TRUE(book_.IsMarked("K8"));
  EXPECT_FALSE(book_.IsMarked("K9"));
  EXPECT_TRUE(book_.IsMarked("K10"));
  EXPECT_FALSE(book_.IsMarked("E3"));
  EXPECT_TRUE(book_.IsMarked("E4"));
  EXPECT_EQ(book_.Value("K8"), "11");
  EXPECT_EQ(book_.Value("K10"), "11");
  EXPECT_EQ(book_.Value("E4"), "27");
  book_.calculator().CalculateAll();
  EXPECT_EQ(book_.calculator().evaluations() - before, 4u) << "K8, K10, E4 and C6";
}

TEST_F(Tables, FollowInsertedColumns) {
  book_.Put("K8", "=SUM(Sales[[Jan]:[Feb]])");
  book_.Put("K9", "=COLUMNS(Sales[])");
  book_.calculator().CalculateAll();
  book_.InsertColumns("Data", "A");
  book_.InsertColumns("Data", "E", 2);
  EXPECT_EQ(book_.FormulaIn("N8"), "=SUM(Sales[[Jan]:[Feb]])");
  EXPECT_EQ(book_.Value("N9"), "6");
  EXPECT_EQ(book_.model().tables[0].columns,
            (std::vector<std::string>{"Item", "Jan", "Column1", "Column2", "Feb", "To [tal]"}));
  book_.Put("E4", "100");
  EXPECT_EQ(book_.Value("N8"), "166") << "the new column is between the two";
  book_.Put("G4", "50");
  EXPECT_EQ(book_.Value("N8"), "196");
  EXPECT_EQ(book_.Value("H4"), "52");
  book_.Put("N7", "=Sales[[#Headers],[Feb]]");
  EXPECT_EQ(book_.Value("N7"), "Feb");
}

}  // namespace
}  // namespace vantora::embedded
