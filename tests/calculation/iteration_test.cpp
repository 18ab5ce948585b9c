// Circular references, calculated again and again where the workbook wants it so.
#include <gtest/gtest.h>

#include "test_book.h"

namespace vantora::embedded {
namespace {

class Iteration : public testing::Test {
 protected:
  Iteration() { Set(100, 0.001); }
  void Set(int rounds, double change) { book_.model().iteration = {true, rounds, change}; }

  TestBook book_;
};

TEST_F(Iteration, GoesRoundAsOftenAsTheWorkbookSays) {
  Set(5, 0);
  book_.Put("A1", "=A1+1");
  EXPECT_EQ(book_.Value("A1"), "5");
  EXPECT_EQ(book_.Value("A1"), "5") << "reading calculates nothing anew";
  book_.Put("A1", "=A1+1");
  EXPECT_EQ(book_.Value("A1"), "10") << "from the value that is there";
  EXPECT_TRUE(book_.calculator().Uncalculable().empty());
}

TEST_F(Iteration, EndsWhenNothingChangesByMoreThanTheLimit) {
  Set(100, 0.01);
  // Interest on the average of a balance that holds the interest.
  book_.Put("A1", "1000");
  book_.Put("B1", "=0.1*(A1+C1)/2");
  book_.Put("C1", "=A1+B1");
  book_.Put("D1", "=ROUND(C1,0)");
  EXPECT_EQ(book_.Value("D1"), "1105");
  const std::size_t few = book_.calculator().evaluations();
  EXPECT_LT(few, 30u);
  book_.Put("A1", "2000");
  EXPECT_EQ(book_.Value("D1"), "2211");
}

TEST_F(Iteration, CalculatesByTabRowAndColumn) {
  Set(1, 0);
  book_.Load("B1", "=A2+1", "0");
  book_.Load("A2", "=B1*10", "0");
  book_.Load("Other!A1", "=B1+A2", "0");
  book_.Put("C1", "1");
  book_.Put("B1", "=A2+C1+0*Other!A1");
  book_.Put("Other!A1", "=Data!B1+Data!A2");
  EXPECT_EQ(book_.Value("Other!A1"), "11");
  EXPECT_EQ(book_.Value("A2"), "10");
  EXPECT_EQ(book_.Value("B1"), "1") << "A2 comes after it";
}

TEST_F(Iteration, CalculatesWhatACircleNeedsOnceAndFirst) {
  Set(10, 0);
  book_.Put("A1", "1");
  book_.Put("B1:B50", "=B2+$A$1");
  book_.Put("C1", "=C2+B1");
  book_.Put("C2", "=C1");
  book_.Put("D1", "=C1*2");
  book_.calculator().CalculateAll();
  EXPECT_EQ(book_.Value("C1"), "500");
  EXPECT_EQ(book_.Value("D1"), "1000") << "what depends on a circle comes after it";
  const std::size_t before = book_.calculator().evaluations();
  book_.Put("A1", "2");
  book_.calculator().CalculateAll();
  EXPECT_EQ(book_.Value("C1"), "1500");
  EXPECT_LT(book_.calculator().evaluations() - before, 200u);
}

TEST_F(Iteration, TakesCirclesThatShareFormulasAsOne) {
  Set(3, 0);
  book_.Put("A1", "=B1+C1+1");
  book_.Put("B1", "=A1");
  book_.Put("C1", "=A1");
  // 1 1 1, 3 3 3, 7 7 7
  EXPECT_EQ(book_.Value("C1"), "7");
  EXPECT_EQ(book_.Value("A1"), "7");
}

TEST_F(Iteration, CarriesTextsAndErrors) {
  Set(3, 0.001);
  book_.Put("A1", "=A1&\"x\"");
  EXPECT_EQ(book_.Value("A1"), "xxx");
  book_.Put("B1", "=1/(B1-B1)");
  EXPECT_EQ(book_.Value("B1"), "#DIV/0!");
}

TEST_F(Iteration, HasALongCircle) {
  Set(2, 0);
  book_.Put("A1", "=A30000+1");
  book_.Put("A2:A30000", "=A1");
  EXPECT_EQ(book_.Value("A30000"), "2");
}

TEST_F(Iteration, GivesUpACircleThatCantBeCalculated) {
  book_.Put("A1", "=B1+1");
  book_.Put("B1", "=A1+MyMacro(1)");
  EXPECT_EQ(book_.Value("A1"), "stale");
  EXPECT_EQ(book_.calculator().ReasonFor(0, {1, 2}), "function MYMACRO is not supported");
}

}  // namespace
}  // namespace vantora::embedded
