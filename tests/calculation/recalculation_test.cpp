// An edit makes what depends on it out of date, and a read brings it up to date.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "calculation/test_book.h"
#include "formula/formula_index.h"

namespace vantora::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// A workbook is set up, one cell is edited, and a cell shows the value that follows.
struct EditCase {
  const char* name;
  std::vector<std::pair<const char*, const char*>> cells;
  std::pair<const char*, const char*> edit;
  std::vector<std::pair<const char*, const char*>> expected;
};

void PrintTo(const EditCase& value, std::ostream* out) { *out << value.name; }

class EditTest : public ::testing::TestWithParam<EditCase> {};

TEST_P(EditTest, DependentsShowTheNewValue) {
  TestBook book;
  book.AddName("rate", "Other!$B$1");
  book.AddName("twice", "rate*2");
  for (auto [place, content] : GetParam().cells) book.Put(place, content);
  book.calculator().CalculateAll();
  book.Put(GetParam().edit.first, GetParam().edit.second);
  for (auto [place, value] : GetParam().expected) EXPECT_EQ(book.Value(place), value) << place;
}

INSTANTIATE_TEST_SUITE_P(
    References, EditTest,
    ::testing::Values(
        EditCase{
            "Chain", {{"A1", "1"}, {"B1", "=A1+1"}, {"C1", "=B1+1"}}, {"A1", "5"}, {{"C1", "7"}}},
        EditCase{"Diamond",
                 {{"A1", "1"}, {"B1", "=A1*2"}, {"B2", "=A1*3"}, {"C1", "=B1+B2"}},
                 {"A1", "10"},
                 {{"C1", "50"}}},
        EditCase{"RangeWithEmptyCellThatIsFilled",
                 {{"A1", "1"}, {"B1", "=SUM(A1:A9)"}},
                 {"A7", "4"},
                 {{"B1", "5"}}},
        EditCase{
            "WholeColumn", {{"A1", "1"}, {"C1", "=SUM(A:A)"}}, {"A1048576", "2"}, {{"C1", "3"}}},
        EditCase{"WholeRow", {{"A1", "1"}, {"A2", "=SUM(1:1)"}}, {"XFD1", "2"}, {{"A2", "3"}}},
        EditCase{"OtherSheet",
                 {{"Other!A1", "1"}, {"B1", "=Other!A1*2"}},
                 {"Other!A1", "4"},
                 {{"B1", "8"}}},
        EditCase{"AcrossSheets",
                 {{"Data!A1", "1"}, {"Other!A1", "2"}, {"Third!B1", "=SUM(Data:Other!A1)"}},
                 {"Other!A1", "20"},
                 {{"Third!B1", "21"}}},
        EditCase{
            "Name", {{"Other!B1", "2"}, {"A1", "=rate*10"}}, {"Other!B1", "3"}, {{"A1", "30"}}},
        EditCase{"NameOfAName",
                 {{"Other!B1", "2"}, {"A1", "=twice+1"}},
                 {"Other!B1", "4"},
                 {{"A1", "9"}}},
        EditCase{"FormulaFilledDown",
                 {{"A1:A5", "1"}, {"B1", "0"}, {"B2:B5", "=B1+A2"}},
                 {"A3", "10"},
                 {{"B2", "1"}, {"B3", "11"}, {"B5", "13"}}},
        EditCase{"FilledWithOneAbsoluteEnd",
                 {{"A1:A6", "1"}, {"B1:B6", "=SUM(A$1:A1)"}},
                 {"A4", "5"},
                 {{"B3", "3"}, {"B4", "8"}, {"B6", "10"}}},
        EditCase{"EndsInReverseOrder",
                 {{"A1:A6", "1"}, {"B1:B6", "=SUM(A1:A$4)"}},
                 {"A5", "5"},
                 {{"B4", "1"}, {"B5", "6"}, {"B6", "7"}}},
        EditCase{"FormulaReplacedByValue",
                 {{"A1", "=2*3"}, {"B1", "=A1+1"}},
                 {"A1", "1"},
                 {{"B1", "2"}}},
        EditCase{"FormulaReplacedByAnother",
                 {{"A1", "1"}, {"A2", "5"}, {"B1", "=A1"}, {"C1", "=B1"}},
                 {"B1", "=A2"},
                 {{"C1", "5"}}},
        EditCase{"ErrorComesAndStays",
                 {{"A1", "1"}, {"B1", "=1/A1"}, {"C1", "=B1+1"}},
                 {"A1", "0"},
                 {{"B1", "#DIV/0!"}, {"C1", "#DIV/0!"}}},
        EditCase{"ConditionTurnsToTheOtherBranch",
                 {{"A1", "1"}, {"A2", "=A1*10"}, {"A3", "=A1*100"}, {"B1", "=IF(A1>2,A2,A3)"}},
                 {"A1", "3"},
                 {{"B1", "30"}}}),
    [](const auto& info) { return info.param.name; });

TEST(Recalculation, EditsAfterAnEditedFormulaFollowTheNewReferences) {
  TestBook book;
  book.Put("A1", "1");
  book.Put("A2", "2");
  book.Put("B1:B3", "=A1");
  book.Put("B2", "=A1*100");
  EXPECT_EQ(book.Value("B2"), "100");
  book.Put("A2", "7");
  EXPECT_FALSE(book.IsMarked("B2"));
  book.Put("A1", "3");
  EXPECT_EQ(book.Value("B2"), "300");
  book.Put("B2", "=A2");
  book.Put("A2", "8");
  EXPECT_EQ(book.Value("B2"), "8");
}

TEST(Recalculation, StoredValuesStayUntilAnInputChanges) {
  TestBook book;
  book.Load("A1", "1");
  book.Load("B1", "=A1*2", "999");
  book.Load("C1", "=A2", "888");
  book.calculator().CalculateAll();
  EXPECT_EQ(book.Value("B1"), "999");
  EXPECT_EQ(book.calculator().evaluations(), 0u);
  book.Put("A1", "4");
  book.calculator().CalculateAll();
  EXPECT_EQ(book.Stored("B1"), "8");
  EXPECT_EQ(book.Stored("C1"), "888");
}

TEST(Recalculation, OnlyWhatIsReadIsCalculated) {
  TestBook book;
  book.Put("A1", "1");
  book.Put("B1:B100", "=A$1+1");
  EXPECT_EQ(book.Value("B50"), "2");
  EXPECT_EQ(book.calculator().evaluations(), 1u);
  EXPECT_EQ(book.Value("B50"), "2");
  EXPECT_EQ(book.calculator().evaluations(), 1u);
}

TEST(Recalculation, EachFormulaIsCalculatedOnceAfterManyEdits) {
  TestBook book;
  book.Put("A1:A200", "1");
  book.Put("B1:B200", "=SUM(A$1:A1)");
  book.Put("C1", "=SUM(B1:B200)");
  book.calculator().CalculateAll();
  std::size_t before = book.calculator().evaluations();
  for (int row = 200; row >= 1; --row) book.Put("A" + std::to_string(row), "2");
  book.calculator().CalculateAll();
  EXPECT_EQ(book.Stored("C1"), "40200");
  EXPECT_LE(book.calculator().evaluations() - before, 202u);
}

// The evaluations that it takes to read the end of a chain, from cells that were never calculated.
TEST(Recalculation, ALongChainCostsLinearlyAndNoStack) {
  constexpr std::size_t kLength = 100001;
  TestBook book;
  book.Put("A1", "1");
  book.Put("A2:A100001", "=A1+1");
  EXPECT_EQ(book.Value("A100001"), "100001");
  EXPECT_LE(book.calculator().evaluations(), 2 * kLength);

  // Upwards as well, where each cell is met before what it needs.
  book.Put("C100001", "1");
  book.Put("C1:C100000", "=C2+1");
  std::size_t before = book.calculator().evaluations();
  book.calculator().CalculateAll();
  EXPECT_EQ(book.Stored("C1"), "100001");
  EXPECT_LE(book.calculator().evaluations() - before, 2 * kLength);
}

// Each cell of a column needs all of those before it, or all of those behind.
TEST(Recalculation, FormulasOverAllCellsBeforeThemAreEvaluatedTwiceAtMost) {
  struct {
    const char* formula;
    const char* read;
    const char* place;
  } cases[] = {{"=1+SUM(A$1:A1)", "A501", "A10"}, {"=1+SUM(A3:A$502)", "A2", "A493"}};
  for (const auto& one : cases) {
    TestBook book;
    book.Put("A1", "1");
    book.Put("A502", "1");
    book.Put("A2:A501", one.formula);
    book.Value(one.read);
    EXPECT_LE(book.calculator().evaluations(), 1000u) << one.formula;
    EXPECT_EQ(book.Stored(one.place), "512");
  }
}

TEST(Recalculation, VolatileFormulasFollowEveryEdit) {
  TestBook book;
  book.Put("A1", "1");
  book.Put("B1", "=OFFSET(A1,2,0)");
  book.Put("C1", "=B1+1");
  EXPECT_EQ(book.Value("C1"), "1");
  book.Put("A3", "5");
  EXPECT_EQ(book.Value("C1"), "6");
  book.Put("A3", "6");
  EXPECT_EQ(book.Value("C1"), "7");
}

// Long enough for an index; keys and results are formulas themselves.
TEST(Recalculation, LookUpsInLongColumnsFollowEdits) {
  TestBook book;
  book.Put("A1:A60", "=ROW()+Other!$A$1");
  book.Put("B1:B60", "=ROW()*10");
  book.Put("D1:D60", "=VLOOKUP(ROW()+Other!$A$1,$A$1:$B$60,2,FALSE)");
  book.Put("E1:E60", "=SUMIF($A$1:$A$60,A1,$B$1:$B$60)");
  book.Put("F1:F60", "=COUNTIF($D$1:D1,D1)");
  const auto row_of = [&](std::string_view columns, int row) {
    std::string values;
    for (char column : columns) values += book.Value(column + std::to_string(row)) + " ";
    return values;
  };
  book.calculator().CalculateAll();
  EXPECT_EQ(row_of("DEF", 60), "600 600 1 ");
  book.Put("Other!A1", "5");
  book.calculator().CalculateAll();
  for (int row : {1, 30, 60}) {
    const std::string value = std::to_string(row * 10);
    EXPECT_EQ(row_of("DEF", row), value + " " + value + " 1 ");
  }
  book.Put("B7", "1234");
  EXPECT_EQ(row_of("DEF", 7), "1234 1234 1 ");
  book.Put("A7", "=A6");
  EXPECT_EQ(row_of("DEF", 6), "60 1294 1 ");
  EXPECT_EQ(row_of("DEF", 7), "#N/A 1294 1 ");
  book.InsertColumns("Data", "A");
  EXPECT_EQ(row_of("EFG", 6), "60 1294 1 ");
  book.Put("C6", "1");
  EXPECT_EQ(row_of("EFG", 6), "1 1235 1 ");
}

TEST(Recalculation, AFormulaIsVolatileThroughANameThatIs) {
  TestBook book;
  book.AddName("last", "OFFSET(Data!$A$1,COUNTA(Data!$A$1:$A$3)-1,1)");
  book.AddName("twice", "last*2");
  book.Put("A1", "1");
  book.Put("D1", "=last");
  book.Put("D2", "=twice+1");
  EXPECT_EQ(book.Value("D1") + " " + book.Value("D2"), "0 1");
  // No reference says that the value comes from there.
  book.Put("B1", "5");
  EXPECT_EQ(book.Value("D1") + " " + book.Value("D2"), "5 11");
  book.Put("B1", "6");
  EXPECT_EQ(book.Value("D1") + " " + book.Value("D2"), "6 13");
}

TEST(Recalculation, HiddenRowsConcernSubtotalsAlone) {
  TestBook book;
  book.AddName("shown", "SUBTOTAL(109,Data!$A$1:$A$9)");
  for (const char* place : {"A1", "A2", "A3"}) book.Put(place, "1");
  book.Put("B1", "=SUBTOTAL(109,A1:A9)");
  book.Put("B2", "=B1*10");
  book.Put("B3", "=SUM(A1:A9)");
  book.Put("B4", "=_xlfn.AGGREGATE(9,5,A5:A9)");
  book.Put("B5", "=shown+1");
  book.Put("C9", "=NOW()");
  book.calculator().CalculateAll();
  const auto hide_row = [&](int row, bool hidden) {
    book.model().sheets[0]->rows.EditRows(row, row,
                                          [&](RowFormat& format) { format.hidden = hidden; });
    book.calculator().RowsHidden(0, {row, 1, row, kMaxColumn});
  };
  const std::size_t before = book.calculator().evaluations();
  book.Put("A12", "1");
  book.calculator().CalculateAll();
  EXPECT_EQ(book.calculator().evaluations() - before, 1u) << "NOW alone is volatile";

  hide_row(2, true);
  EXPECT_FALSE(book.IsMarked("B3"));
  EXPECT_FALSE(book.IsMarked("B4")) << "it looks into other rows";
  EXPECT_EQ(book.Value("B2"), "20");
  EXPECT_EQ(book.Value("B5"), "3");
  hide_row(2, false);
  EXPECT_EQ(book.Value("B2"), "30");
  hide_row(20, true);
  EXPECT_FALSE(book.IsMarked("B1"));
}

TEST(Recalculation, ANameThatComesOrChangesIsFollowed) {
  TestBook book;
  book.Put("A1", "=later+1");
  EXPECT_EQ(book.Value("A1"), "#NAME?");
  book.Put("B1", "4");
  book.AddName("LATER", "Data!$B$1");
  EXPECT_EQ(book.Value("A1"), "5");
  book.Put("B1", "6");
  EXPECT_EQ(book.Value("A1"), "7");
  // The sheet's own name goes before the workbook's.
  book.Put("C1", "100");
  book.AddName("later", "Data!$C$1", 0);
  EXPECT_EQ(book.Value("A1"), "101");
  book.Put("Other!A1", "=later");
  book.Put("Other!A2", "=Data!later");
  book.Put("C1", "200");
  EXPECT_EQ(book.Value("Other!A1"), "6");
  EXPECT_EQ(book.Value("Other!A2"), "200");
  // As many names as before, but another one in the first one's place.
  book.model().names.front() = {"earlier", -1, "Data!$C$1"};
  book.calculator().NamesChanged();
  EXPECT_EQ(book.Value("Other!A1"), "#NAME?");
  book.Put("Other!A1", "=EARLIER");
  EXPECT_EQ(book.Value("Other!A1"), "200");
}

TEST(Recalculation, WhatCantBeCalculatedKeepsItsValueAndSaysWhy) {
  TestBook book;
  book.Load("A1", "1");
  book.Load("B1", "=NOSUCHFUNCTION(A1)", "11");
  book.Load("C1", "=B1+1", "12");
  book.Load("D1", "=A1+1", "2");
  book.Put("A1", "2");
  EXPECT_EQ(book.Value("C1"), "stale");
  EXPECT_EQ(book.Stored("B1"), "11");
  EXPECT_EQ(book.Stored("C1"), "12");
  EXPECT_EQ(book.Value("D1"), "3");
  book.calculator().CalculateAll();
  auto uncalculated = book.calculator().Uncalculable();
  ASSERT_EQ(uncalculated.size(), 2u);
  EXPECT_EQ(uncalculated[0].cell, (CellAddress{1, 2}));
  EXPECT_THAT(uncalculated[0].reason, HasSubstr("NOSUCHFUNCTION"));
  EXPECT_EQ(uncalculated[1].cell, (CellAddress{1, 3}));
  EXPECT_THAT(uncalculated[1].reason, HasSubstr("B1"));
  EXPECT_EQ(book.calculator().ReasonFor(0, {1, 2}), uncalculated[0].reason);
  EXPECT_EQ(book.calculator().ReasonFor(0, {1, 4}), "");

  // Another formula in its place: all is well again.
  book.Put("B1", "=A1*10");
  EXPECT_EQ(book.Value("C1"), "21");
  book.calculator().CalculateAll();
  EXPECT_TRUE(book.calculator().Uncalculable().empty());
}

// The texts are longer than any that can be entered: what a file holds must not exhaust the stack,
// nor names that use each other the time.
TEST(Recalculation, EndlessFormulasAreGivenUp) {
  auto repeated = [](const std::string& text) {
    std::string all;
    for (int i = 0; i < 100000; ++i) all += text;
    return all;
  };
  TestBook book;
  for (int i = 0; i < 60; ++i) {
    std::string next = "twice" + std::to_string(i + 1);
    book.AddName("twice" + std::to_string(i), next + "+" + next);
  }
  book.AddName("twice60", "Data!$A$1");
  const std::vector<std::string> formulas = {"=" + repeated("(") + "A1",
                                             "=" + repeated("-") + "A1",
                                             "=A1" + repeated("%"),
                                             "=A1" + repeated("+1"),
                                             "=A1" + repeated(":A1"),
                                             "=A1" + repeated(" A1"),
                                             "=" + repeated("{") + "A1",
                                             "=" + repeated("SUM(") + "A1" + repeated(")"),
                                             "=A1+twice0"};
  for (const std::string& formula : formulas) {
    SCOPED_TRACE(formula.substr(0, 12));
    book.Put("B1", formula);
    EXPECT_EQ(book.Value("B1"), "stale");
  }
  book.Put("B1", "=" + repeated("@") + "A1+" + "REPT(\"\",2147483647)&A1");
  book.Put("A1", "7");
  EXPECT_EQ(book.Value("B1"), "#VALUE!");
  std::string longest = "=A1";
  for (int i = 0; i < 2700; ++i) longest += "+1";
  book.Put("B1", longest);
  EXPECT_EQ(book.Value("B1"), "2707");
}

TEST(Recalculation, ConditionsNeedOnlyTheBranchTheyTake) {
  TestBook book;
  book.Put("A1", "1");
  book.Put("B1", "=NOSUCHFUNCTION(A1)");
  book.Put("C1", "=IF(A1=1,10,B1)");
  EXPECT_EQ(book.Value("C1"), "10");
  book.Put("A1", "2");
  EXPECT_EQ(book.Value("C1"), "stale");
  book.Put("A1", "1");
  EXPECT_EQ(book.Value("C1"), "10");
}

TEST(Recalculation, CircularReferencesAreTold) {
  TestBook book;
  book.Put("A1", "1");
  book.Put("B1", "=D1+A1");
  book.Put("C1", "=B1");
  book.Put("D1", "=C1");
  book.Put("E1", "=D1");
  book.Put("F1", "=SUM(F1:F3)");
  book.calculator().CalculateAll();
  std::vector<std::string> told;
  for (const Uncalculated& one : book.calculator().Uncalculable()) {
    told.push_back(ToA1(one.cell) + (one.reason == "circular reference" ? " circular" : ""));
  }
  EXPECT_THAT(told, ElementsAre("B1 circular", "C1 circular", "D1 circular", "E1", "F1 circular"));

  book.Put("D1", "=A1");
  EXPECT_EQ(book.Value("E1"), "1");
  EXPECT_EQ(book.Value("B1"), "2");
  EXPECT_EQ(book.Value("F1"), "stale");
}

TEST(Recalculation, ArrayFormulasFillTheirArea) {
  TestBook book;
  book.Put("A1", "1");
  book.Put("A2", "2");
  book.PutArray("C1:C3", "=A1:A3*10");
  book.Put("E1", "=C2+1");
  EXPECT_EQ(book.Value("E1"), "21");
  book.Put("A2", "5");
  EXPECT_TRUE(book.IsMarked("C2"));
  EXPECT_EQ(book.Value("C2"), "50");
  EXPECT_EQ(book.Value("E1"), "51");
  EXPECT_EQ(book.Value("C3"), "0");

  book.PutArray("G1:G2", "=NOSUCHFUNCTION(A1)");
  book.Put("H1", "=G2");
  EXPECT_EQ(book.Value("H1"), "stale");
  EXPECT_NE(book.calculator().ReasonFor(0, {2, 7}), "");
  book.PutArray("J1:J2", "=J2:J3");
  EXPECT_EQ(book.Value("J1"), "stale");
  EXPECT_EQ(book.calculator().ReasonFor(0, {1, 10}), "circular reference");
}

// What waits to be calculated is not forgotten over cells that are calculated again and again.
TEST(Recalculation, AnEarlyEditIsStillCalculatedAfterManyLaterOnes) {
  TestBook book;
  book.Put("B1:B2000", "=A$1");
  book.Put("C1", "=A2");
  book.calculator().CalculateAll();
  book.Put("A2", "5");
  for (int round = 1; round <= 10; ++round) {
    book.Put("A1", std::to_string(round));
    EXPECT_TRUE(book.calculator().EnsureCalculated(0, Area{1, 2, 2000, 2}));
  }
  book.calculator().CalculateAll();
  EXPECT_EQ(book.Stored("B2000"), "10");
  EXPECT_EQ(book.Stored("C1"), "5");
}

// One by one, as a macro writes them: what was indexed and is gone again must not pile up.
TEST(Recalculation, FormulasPutAndReplacedManyTimes) {
  TestBook book;
  book.Put("A1", "1");
  FormulaIndex index(book.model());
  index.Build();
  std::size_t memory = 0;
  for (int round = 0; round < 60; ++round) {
    for (int row = 1; row <= 300; ++row) {
      book.Put("B" + std::to_string(row), "=A1*" + std::to_string(round) + "+$A$1");
      index.Update(0, {row, 2, row, 2});
    }
    if (round == 19) memory = index.memory();
  }
  EXPECT_LE(index.memory(), 2 * memory);
  std::size_t before = book.calculator().evaluations();
  book.Put("A1", "2");
  book.calculator().CalculateAll();
  EXPECT_EQ(book.Stored("B1"), "120");
  EXPECT_EQ(book.Stored("B300"), "120");
  EXPECT_EQ(book.calculator().evaluations() - before, 300u);
}

}  // namespace
}  // namespace vantora::embedded
