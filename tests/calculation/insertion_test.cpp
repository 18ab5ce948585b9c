// Inserted columns: cells move, formulas and names on all sheets follow, values stay true.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "calculation/test_book.h"

namespace vantora::embedded {
namespace {

using ::testing::ElementsAre;

// A formula in a cell of "Data" or "Other", columns inserted on "Data", and what stands where then.
struct InsertionCase {
  const char* name;
  const char* place;
  const char* formula;
  const char* column;
  int count;
  const char* place_after;
  const char* formula_after;
  bool marked;
};

void PrintTo(const InsertionCase& value, std::ostream* out) { *out << value.name; }

class InsertionTest : public ::testing::TestWithParam<InsertionCase> {};

TEST_P(InsertionTest, FormulaFollows) {
  const InsertionCase& param = GetParam();
  TestBook book;
  book.AddName("block", "Data!$C$1:$E$1");
  for (const char* input : {"Data!B1", "Data!C1", "Data!D1", "Data!E1", "Other!C1"}) {
    book.Put(input, "2");
  }
  book.Put(param.place, param.formula);
  book.Put("Other!H9", "=" + std::string(param.place));
  book.calculator().CalculateAll();
  std::string value = book.Stored(param.place);

  book.InsertColumns("Data", param.column, param.count);
  EXPECT_EQ(book.FormulaIn(param.place_after), param.formula_after);
  EXPECT_EQ(book.Stored(param.place_after), value);
  EXPECT_EQ(book.IsMarked(param.place_after), param.marked);
  EXPECT_EQ(book.IsMarked("Other!H9"), param.marked);
  EXPECT_EQ(book.Dump(), book.Retyped()->Dump());

  // What it refers to now is what makes it out of date.
  book.calculator().CalculateAll();
  for (const char* input :
       {"Data!A1", "Data!B1", "Data!C1", "Data!D1", "Data!E1", "Data!F1", "Data!G1", "Other!C1"}) {
    if (std::string(input) != param.place_after) book.Put(input, "7");
    EXPECT_EQ(book.Dump(), book.Retyped()->Dump()) << input;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Positions, InsertionTest,
    ::testing::Values(
        InsertionCase{"RightOfAll", "Data!F2", "=D1+$C$1", "G", 1, "Data!F2", "=D1+$C$1", false},
        InsertionCase{"AtTheFormula", "Data!F2", "=D1+$C$1", "F", 1, "Data!G2", "=D1+$C$1", false},
        InsertionCase{"BetweenReferences", "Data!F2", "=D1+$C$1", "D", 2, "Data!H2", "=F1+$C$1",
                      false},
        InsertionCase{"LeftOfAll", "Data!F2", "=D1+$C$1", "A", 1, "Data!G2", "=E1+$D$1", false},
        InsertionCase{"FormulaLeftOfReference", "Data!A2", "=D1+B1", "C", 1, "Data!A2", "=E1+B1",
                      false},
        InsertionCase{"RangeGrows", "Data!F2", "=SUM(C1:E1)", "D", 3, "Data!I2", "=SUM(C1:H1)",
                      true},
        InsertionCase{"RangeGrowsAtItsLastColumn", "Data!A2", "=SUM($C1:$E1)", "E", 1, "Data!A2",
                      "=SUM($C1:$F1)", true},
        InsertionCase{"RangeMovesAtItsFirstColumn", "Data!F2", "=SUM(C1:E1)", "C", 1, "Data!G2",
                      "=SUM(D1:F1)", false},
        InsertionCase{"RangeEndsLeft", "Data!F2", "=SUM(C1:E1)", "F", 1, "Data!G2", "=SUM(C1:E1)",
                      false},
        InsertionCase{"WholeColumns", "Data!F2", "=SUM(C:D)", "D", 1, "Data!G2", "=SUM(C:E)", true},
        InsertionCase{"WholeRows", "Data!F2", "=SUM(1:1)", "D", 1, "Data!G2", "=SUM(1:1)", false},
        InsertionCase{"FromOtherSheet", "Other!C2", "=Data!D1+C1", "C", 1, "Other!C2",
                      "=Data!E1+C1", false},
        InsertionCase{"FromOtherSheetGrown", "Other!C2", "=SUM(Data!$C$1:$E$1)", "D", 1, "Other!C2",
                      "=SUM(Data!$C$1:$F$1)", true},
        InsertionCase{"ToOtherSheet", "Data!F2", "=Other!C1", "B", 1, "Data!G2", "=Other!C1",
                      false},
        InsertionCase{"ColumnOfReference", "Data!A2", "=COLUMN(D1)", "C", 1, "Data!A2",
                      "=COLUMN(E1)", true},
        InsertionCase{"ColumnOfItself", "Data!F2", "=COLUMN()", "C", 1, "Data!G2", "=COLUMN()",
                      true},
        InsertionCase{"ColumnLeftOfTheInsertion", "Data!F2", "=COLUMN(B1)", "G", 1, "Data!F2",
                      "=COLUMN(B1)", false},
        InsertionCase{"NameGrows", "Other!A2", "=SUM(block)", "D", 1, "Other!A2", "=SUM(block)",
                      true},
        InsertionCase{"AcrossSheets", "Third!A2", "=SUM(Data:Other!C1)", "C", 1, "Third!A2",
                      "=SUM(Data:Other!C1)", true}),
    [](const auto& info) { return info.param.name; });

TEST(Insertion, AFilledBlockFollowsCellByCell) {
  TestBook book;
  book.Put("A1:H1", "1");
  book.Put("B2:H6", "=A1+$D$1+SUM(B$1:D$1)");
  book.Put("Other!B2:H6", "=Data!A1+Data!$D$1");
  book.calculator().CalculateAll();
  for (const char* column : {"D", "B", "J", "F", "A"}) {
    book.InsertColumns("Data", column, 1);
    EXPECT_EQ(book.Dump(), book.Retyped()->Dump()) << column;
    book.Put("Data!E1", "3");
    EXPECT_EQ(book.Dump(), book.Retyped()->Dump()) << column;
  }
}

TEST(Insertion, NamesArraysAndReasonsMove) {
  TestBook book;
  book.AddName("marker", "Data!$D$1");
  book.AddName("local", "$B$1:$E$1", 0);
  book.AddName("elsewhere", "Other!$D$1");
  book.Put("A1", "2");
  book.PutArray("E1:F1", "=A1:B1*10");
  book.Put("H1", "=NOSUCHFUNCTION(A1)");
  EXPECT_EQ(book.Value("E1"), "20");
  EXPECT_EQ(book.Value("H1"), "stale");

  book.InsertColumns("Data", "C", 2);
  EXPECT_EQ(book.model().names[0].refers_to, "Data!$F$1");
  EXPECT_EQ(book.model().names[1].refers_to, "$B$1:$G$1");
  EXPECT_EQ(book.model().names[2].refers_to, "Other!$D$1");
  EXPECT_EQ(book.model().sheets[0]->arrays[0].area, (Area{1, 7, 1, 8}));
  EXPECT_NE(book.calculator().ReasonFor(0, {1, 10}), "");
  book.Put("B1", "3");
  EXPECT_EQ(book.Value("G1"), "20");
  EXPECT_EQ(book.Value("H1"), "30");
}

// "The cell to my right" must go on meaning just that, wherever columns come in.
TEST(Insertion, ARelativeNameKeepsItsDistance) {
  TestBook book;
  book.AddName("right", "Data!B1");
  book.AddName("left", "Data!XFD1");
  book.AddName("row_to", "Data!$E1:F1");
  book.AddName("local", "$C1", 0);
  book.Put("A1:H1", "1");
  book.Put("B2:B2", "7");
  book.Put("D1", "=right");
  book.Put("D2", "=left+local");
  EXPECT_EQ(book.Value("D1"), "1");

  book.InsertColumns("Data", "E");
  EXPECT_EQ(book.model().names[0].refers_to, "Data!B1");
  EXPECT_EQ(book.model().names[1].refers_to, "Data!XFD1");
  EXPECT_EQ(book.model().names[2].refers_to, "Data!$F1:F1");
  EXPECT_EQ(book.model().names[3].refers_to, "$C1");
  EXPECT_EQ(book.Value("D1"), "0") << "the new column stands right of it";
  book.InsertColumns("Data", "B");
  EXPECT_EQ(book.model().names[0].refers_to, "Data!B1");
  EXPECT_EQ(book.model().names[3].refers_to, "$D1");
  EXPECT_EQ(book.Value("E1"), "0");
  EXPECT_EQ(book.Value("E2"), "0");
  EXPECT_EQ(book.FormulaIn("Data!E2"), "=left+local");
}

TEST(Insertion, CellsThatAreOutOfDateMoveWithTheirFlag) {
  TestBook book;
  book.Put("A1", "1");
  book.Put("C1:F1", "=$A1+B1");
  book.InsertColumns("Data", "B", 1);
  book.calculator().CalculateAll();
  EXPECT_EQ(book.Stored("D1"), "1");
  EXPECT_EQ(book.Stored("G1"), "4");
}

std::vector<std::string> Formats(const SheetModel& sheet) {
  std::vector<std::string> texts;
  for (const ColumnFormat& format : sheet.column_formats) {
    texts.push_back(ToA1(WholeColumns(format.first, format.last)) + " " +
                    std::to_string(format.style) + format.attributes);
  }
  return texts;
}

TEST(Insertion, NewColumnsTakeTheFormatOfTheColumnLeftOfThem) {
  struct {
    int column;
    std::vector<std::string> formats;
    bool changed;
  } cases[] = {
      {1, {"C:E 4 width=\"9\"", "G:XFD 7"}, true}, {2, {"B:E 4 width=\"9\"", "G:XFD 7"}, true},
      {3, {"B:E 4 width=\"9\"", "G:XFD 7"}, true}, {5, {"B:E 4 width=\"9\"", "G:XFD 7"}, true},
      {6, {"B:D 4 width=\"9\"", "G:XFD 7"}, true}, {8, {"B:D 4 width=\"9\"", "F:XFD 7"}, false},
  };
  for (auto& one : cases) {
    TestBook book;
    SheetModel& sheet = *book.model().sheets[0];
    sheet.column_formats = {{2, 4, 4, " width=\"9\""}, {6, kMaxColumn, 7, ""}};
    book.calculator().InsertColumns({0, one.column, 1});
    // At B the new column has no formatted column left of it.
    if (one.column == 2) one.formats[0] = "C:E 4 width=\"9\"";
    EXPECT_EQ(Formats(sheet), one.formats) << one.column;
    EXPECT_EQ(sheet.column_formats_changed, one.changed) << one.column;
  }
}

// Snapshots are saved by inserting a column on every sheet: what has nothing to do with the
// inserted column must not be looked at, let alone calculated.
TEST(Insertion, ASnapshotOnEachSheetCalculatesNothingElse) {
  std::vector<std::string> sheets;
  for (int i = 1; i <= 12; ++i) sheets.push_back("S" + std::to_string(i));
  TestBook book(sheets);
  for (const std::string& sheet : sheets) {
    book.Put(sheet + "!A1:A300", "1");
    book.Put(sheet + "!B1:D300", "=A1+S1!$A$1");
    book.Put(sheet + "!G1:G300", "=SUM(B1:D1)");
  }
  book.calculator().CalculateAll();
  std::size_t before = book.calculator().evaluations();
  for (const std::string& sheet : sheets) {
    book.InsertColumns(sheet, "F");
    book.Put(sheet + "!F1:F300", "5");
  }
  book.calculator().CalculateAll();
  EXPECT_EQ(book.calculator().evaluations(), before);
  EXPECT_EQ(book.FormulaIn("S12!H300"), "=SUM(B300:D300)");
}

}  // namespace
}  // namespace vantora::embedded
