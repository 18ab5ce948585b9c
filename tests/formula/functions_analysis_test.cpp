// Statistics, totals of chosen cells, newer look-ups, what is known of cells. Values are those of
// Excel's documentation where it has examples.
#include <gtest/gtest.h>

#include "small_book.h"

namespace vantora::embedded {
namespace {

using Case = FormulaCase;

//        A        B     C       D    E    F     G
//   1    5.6      7     fig     3    6    10    1
//   2    4        3.5   Apple   2    5    20    2
//   3    4        3.5   (none)  4    11   #N/A  3
//   4    3        1     apple   5    7    30    4
//   5    2        2     kiwi    6    5    TRUE  (none)
//   6    4              plum              text
struct Data : SmallBook {
  Data() : SmallBook({"Plan", "Our Plan"}) {
    Row(0, "A1", {"5.6", "7", "fig", "3", "6", "10", "1"});
    Row(0, "A2", {"4", "3.5", "Apple", "2", "5", "20", "2"});
    Row(0, "A3", {"4", "3.5", "", "4", "11", "#N/A", "3"});
    Row(0, "A4", {"3", "1", "apple", "5", "7", "30", "4"});
    Row(0, "A5", {"2", "2", "kiwi", "6", "5", "TRUE", ""});
    Row(0, "A6", {"4", "", "plum", "", "", "text"});
  }
};

class Analysis : public testing::TestWithParam<Case> {};

TEST_P(Analysis, Gives) {
  Data book;
  EXPECT_EQ(book.Result(GetParam().formula), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Distribution, Analysis,
    testing::Values(
        Case{"MODE(A1:A6)", "4"}, Case{"MODE(1,2,3)", "#N/A"}, Case{"MODE(F1:F6)", "#N/A"},
        Case{"MODE({1,2;2,1})", "1"}, Case{"MODE(D1:E2,5,6)", "6"}, Case{"RANK(B2,B1:B5,1)", "3"},
        Case{"RANK(B1,B1:B5,1)", "5"}, Case{"RANK(99,B1:B5)", "#N/A"}, Case{"RANK(10,F1:F2)", "2"},
        Case{"RANK(10,F1:F3)", "#N/A"}, Case{"RANK.EQ(3.5,B1:B5)", "2"},
        Case{"RANK.AVG(3.5,B1:B5)", "2.5"}, Case{"PERCENTILE({1,3,2,4},0.3)", "1.9"},
        Case{"PERCENTILE(C1:C6,0.5)", "#NUM!"}, Case{"PERCENTILE(A1:A6,\"x\")", "#VALUE!"},
        Case{"PERCENTILE.EXC({6,7,15,36,39,40,41,42,43,47,49},0.25)", "15"},
        Case{"PERCENTILE.EXC({1,2,3},0.2)", "#NUM!"},
        Case{"QUARTILE({1,2,4,7,8,9,10,12},1)", "3.5"},
        Case{"QUARTILE.EXC({6,7,15,36,39,40,41,42,43,47,49},3)", "43"},
        Case{"QUARTILE.INC({1,2},-1)", "#NUM!"},
        Case{"ROUND(STDEV(1345,1301,1368,1322,1310,1370,1318,1350,1303,1299),5)", "27.46392"},
        Case{"ROUND(STDEV.P(1345,1301,1368,1322,1310,1370,1318,1350,1303,1299),5)", "26.05456"},
        Case{"ROUND(VAR.S(1345,1301,1368,1322,1310,1370,1318,1350,1303,1299),4)", "754.2667"},
        Case{"VAR.P(1345,1301,1368,1322,1310,1370,1318,1350,1303,1299)", "678.84"},
        Case{"VAR(F5:F6)", "#DIV/0!"}, Case{"VAR(1)", "#DIV/0!"}, Case{"VARP(1,TRUE,\"1\")", "0"},
        Case{"STDEV(F1:F3)", "#N/A"}));

INSTANTIATE_TEST_SUITE_P(
    Regression, Analysis,
    testing::Values(
        Case{"ROUND(CORREL({3,2,4,5,6},{9,7,12,15,17}),6)", "0.997054"},
        Case{"CORREL({1,2},{1,2,3})", "#N/A"}, Case{"CORREL({1,2},{3,3})", "#DIV/0!"},
        Case{"SLOPE({1;2;3},F1:F3)", "#N/A"}, Case{"SLOPE(G1:G5,F1:F5)", "#N/A"},
        Case{"SLOPE({1;2;3},G1:G3)", "1"}, Case{"SLOPE(D1:D6,C1:C6)", "#DIV/0!"},
        Case{"SLOPE(G1:G2,F1:F2)", "0.1"}, Case{"SLOPE(G1:G6,D1:D6)=SLOPE(G1:G4,D1:D4)", "TRUE"},
        Case{"ROUND(SLOPE({2,3,9,1,8,7,5},{6,5,11,7,5,4,4}),6)", "0.305556"},
        Case{"ROUND(INTERCEPT({2,3,9,1,8},{6,5,11,7,5}),7)", "0.0483871"},
        Case{"ROUND(FORECAST(30,{6,7,9,15,21},{20,28,31,38,40}),6)", "10.607253"},
        Case{"ROUND(RSQ({2,3,9,1,8,7,5},{6,5,11,7,5,4,4}),5)", "0.05795"},
        Case{"TREND({2,4,6},,4)", "8"}, Case{"TREND({2,4,6},{1,2,3},{4,5},FALSE)", "8"},
        Case{"TREND({1;2;3},{1,1;2,5;3,2},{4,9})", "4"},
        Case{"TREND({1;2;3},{1,1;2,5;3,2},{4})", "#REF!"}, Case{"TREND({1,2,3},{1,2})", "#REF!"},
        Case{"TREND(A1:A3,C1:C3)", "#VALUE!"},
        Case{"ROUND(GROWTH({33100;47300;69000;102000;150000;220000},{11;12;13;14;15;16},17),2)",
             "320196.72"},
        Case{"GROWTH({1,-2},{1,2})", "#NUM!"}, Case{"ROUND(INDEX(LOGEST({1,3,9}),1),9)", "3"},
        Case{"SUM(LINEST({1,9,5,7},{0,4,2,3}))", "3"},
        // A second x that only repeats the first adds nothing.
        Case{"INDEX(LINEST({1;3;5},{1,2;2,4;3,6}),1)", "0"}));

INSTANTIATE_TEST_SUITE_P(
    Totals, Analysis,
    testing::Values(Case{"SUBTOTAL(9,F1:F2,A1:A2)", "39.6"}, Case{"SUBTOTAL(9,F1:F6)", "#N/A"},
                    Case{"SUBTOTAL(2,F1:F6)", "3"}, Case{"SUBTOTAL(103,F1:F6)", "6"},
                    Case{"SUBTOTAL(1,C1:C6)", "#DIV/0!"}, Case{"SUBTOTAL(4,C1:C6)", "0"},
                    Case{"SUBTOTAL(0,A1:A6)", "#VALUE!"}, Case{"SUBTOTAL(112,A1:A6)", "#VALUE!"},
                    Case{"SUBTOTAL(9,{1,2})", "#VALUE!"},
                    Case{"SUBTOTAL(9,'Plan:Our Plan'!A1)", "#VALUE!"},
                    Case{"AGGREGATE(9,6,F1:F6)", "60"}, Case{"AGGREGATE(9,4,F1:F6)", "#N/A"},
                    Case{"AGGREGATE(14,6,F1:F6,2)", "20"}, Case{"AGGREGATE(14,6,F1:F6)", "#VALUE!"},
                    Case{"AGGREGATE(15,6,ROW(C1:C6)/(C1:C6=\"apple\"),2)", "4"},
                    Case{"AGGREGATE(15,6,ROW(C1:C6)/(C1:C6=\"no\"),1)", "#NUM!"},
                    Case{"AGGREGATE(9,6,{1,2})", "#VALUE!"}, Case{"AGGREGATE(12,,A1:A6)", "4"}));

INSTANTIATE_TEST_SUITE_P(
    Mathematics, Analysis,
    testing::Values(
        Case{"ROUND(SIN(RADIANS(30)),12)", "0.5"}, Case{"SIN(2^27)", "#NUM!"},
        Case{"ROUND(TAN(0.785),5)", "0.9992"}, Case{"ROUND(ATAN2(-1,-1),6)", "-2.356194"},
        Case{"ATAN2(0,0)", "#DIV/0!"}, Case{"ASIN(1.01)", "#NUM!"}, Case{"COSH(1000)", "#NUM!"},
        Case{"DEGREES(PI())", "180"}, Case{"FACT(5.9)", "120"}, Case{"FACT(-1)", "#NUM!"},
        Case{"FACT(171)", "#NUM!"}, Case{"COMBIN(8,2)", "28"}, Case{"COMBIN(52,5)", "2598960"},
        Case{"COMBIN(3,4)", "#NUM!"}, Case{"ISEVEN(-2.5)", "TRUE"}, Case{"ISODD(G5)", "FALSE"},
        Case{"ISEVEN(TRUE)", "#VALUE!"}, Case{"ISODD(\"3\")", "TRUE"}, Case{"ISODD(C1)", "#VALUE!"},
        Case{"AND(RAND()>=0,RAND()<1)", "TRUE"}, Case{"RANDBETWEEN(2.1,3.9)", "3"},
        Case{"RANDBETWEEN(2,1)", "#NUM!"}, Case{"SUM(MMULT({1,3;7,2},{2,0;0,2}))", "26"},
        Case{"MMULT({1,2},{1,2})", "#VALUE!"}, Case{"MMULT(C1:C3,A1:C1)", "#VALUE!"}));

INSTANTIATE_TEST_SUITE_P(
    LookUps, Analysis,
    testing::Values(
        Case{"_xlfn.XLOOKUP(\"APPLE\",C1:C6,D1:D6)", "2"},
        Case{"XLOOKUP(\"apple\",C1:C6,D1:D6,,0,-1)", "5"},
        Case{"XLOOKUP(\"ap*\",C1:C6,D1:D6)", "#N/A"}, Case{"XLOOKUP(\"ap*\",C1:C6,D1:D6,,2)", "2"},
        Case{"XLOOKUP(\"ap*\",C1:C6,D1:D6,,2,-1)", "5"},
        Case{"XLOOKUP(\"nut\",C1:C6,D1:D6,1/0)", "#DIV/0!"},
        Case{"XLOOKUP(\"fig\",C1:C6,D1:D6,1/0)", "3"},
        Case{"XLOOKUP(\"nut\",C1:C6,D1:D6,)", "#N/A"}, Case{"XLOOKUP(H1,C1:C6,D1:D6)", "4"},
        Case{"XLOOKUP(15,F1:F2,G1:G2,,-1)", "1"}, Case{"XLOOKUP(15,F1:F2,G1:G2,,1)", "2"},
        Case{"XLOOKUP(5,F1:F2,G1:G2,\"low\",-1)", "\"low\""},
        Case{"XLOOKUP(25,{10,20,30},{1,2,3},,-1,2)", "2"},
        Case{"XLOOKUP(25,{30,20,10},{3,2,1},,1,-2)", "3"},
        Case{"XLOOKUP(25,{30,20,10},{3,2,1},,-1,-2)", "2"},
        Case{"XLOOKUP(25,{10,20,30},{1,2,3},,0,2)", "#N/A"},
        Case{"XLOOKUP(20,{10,20,30},{1,2,3},,2,2)", "#VALUE!"},
        Case{"SUM(XLOOKUP(\"kiwi\",C1:C6,D1:E6))", "11"},
        Case{"SUM(XLOOKUP(2,{1,2},{1,2;3,4}))", "6"},
        Case{"SUM(XLOOKUP(\"fig\",C1:C6,D1:D6):XLOOKUP(\"kiwi\",C1:C6,D1:D6))", "20"},
        Case{"XLOOKUP(1,A1:B2,A1:B2)", "#VALUE!"}, Case{"XLOOKUP(1,A1:A6,B1:B5)", "#VALUE!"},
        Case{"XLOOKUP(F3,A1:A6,B1:B6)", "#N/A"}, Case{"XLOOKUP(1,G:G,A:A)", "5.6"},
        Case{"SUM(XLOOKUP({1,2},G1:G4,D1:D4))", "5"}, Case{"XMATCH(3,G1:G4)", "3"},
        Case{"XMATCH(2.5,G1:G4,1)", "3"}, Case{"XMATCH(2.5,G1:G4,-1)", "2"},
        Case{"XMATCH(4,A1:A6,0,-1)", "6"}, Case{"XMATCH(4,A1:A6,0,3)", "#VALUE!"}));

INSTANTIATE_TEST_SUITE_P(
    Information, Analysis,
    testing::Values(Case{"ADDRESS(2,3)", "\"$C$2\""}, Case{"ADDRESS(2,3,2)", "\"C$2\""},
                    Case{"ADDRESS(2,3,2,FALSE)", "\"R2C[3]\""},
                    Case{"ADDRESS(2,3,,,\"Our Plan\")", "\"'Our Plan'!$C$2\""},
                    Case{"ADDRESS(2,3,5)", "#VALUE!"}, Case{"ADDRESS(0,1)", "#VALUE!"},
                    Case{"INDIRECT(ADDRESS(2,1))", "4"}, Case{"AREAS((A1,B2:C3))", "2"},
                    Case{"AREAS(1)", "#VALUE!"}, Case{"HYPERLINK(\"a\",\"b\")", "\"b\""},
                    Case{"HYPERLINK(\"a\")", "\"a\""}, Case{"HYPERLINK(\"a\",G5)", "0"},
                    Case{"CELL(\"address\",B2:C3)", "\"$B$2\""}, Case{"CELL(\"Row\",B2)", "2"},
                    Case{"CELL(\"col\",B2)", "2"}, Case{"CELL(\"contents\",C1)", "\"fig\""},
                    Case{"CELL(\"type\",G5)&CELL(\"type\",C1)&CELL(\"type\",F5)", "\"blv\""},
                    Case{"CELL(\"protect\",A1)", "1"}, Case{"CELL(\"nothing\",A1)", "#VALUE!"},
                    Case{"CELL(\"row\")", "can't: CELL without a reference is not supported"},
                    Case{"CLEAN(CHAR(9)&\"a\"&CHAR(10)&\"b\u00e4\")", "\"ab\u00e4\""},
                    Case{"ISFORMULA(1)", "#VALUE!"}, Case{"ISFORMULA(A1)", "FALSE"}));

TEST(ArrayResults, OfChoices) {
  Data book;
  EXPECT_EQ(book.Result("VLOOKUP(\"kiwi\",CHOOSE({1,2},C1:C6,D1:D6),2,FALSE)"), "6");
  EXPECT_EQ(book.ArrayResult("CHOOSE({1,3},D1:D2,0)", "M20:N21"), "3,#VALUE!;2,#VALUE!");
  EXPECT_EQ(book.ArrayResult("IFS(D1:D4>3,\"high\",D1:D4>2,E1:E4)", "M20:M23"),
            "6;#N/A;\"high\";\"high\"");
  EXPECT_EQ(book.ArrayResult("SWITCH(G1:G4,1,\"one\",F3,0,9)", "M20:M21"), "\"one\";#N/A");
  EXPECT_EQ(book.Result("SUMPRODUCT(SWITCH(G1:G4,1,10,2,20,0))"), "30");
}

TEST(ArrayResults, OfLinesAndMatrices) {
  Data book;
  EXPECT_EQ(book.ArrayResult("LINEST({1;9;5;7},{0;4;2;3})", "M20:N20"), "2,1");
  EXPECT_EQ(book.ArrayResult("TREND({2;4;6},{1;2;3},{4;5})", "M20:M21"), "8;10");
  EXPECT_EQ(book.ArrayResult("MMULT({1,2;3,4},{1;1})", "M20:M21"), "3;7");
  EXPECT_EQ(book.ArrayResult("XLOOKUP(\"kiwi\",C1:C6,D1:E6)", "M20:N20"), "6,5");
  // Residuals of 1, -1, -1 and 1 about the line 2x.
  EXPECT_EQ(book.ArrayResult("ROUND(LINEST({1;1;3;7},{0;1;2;3},TRUE,TRUE),6)", "M20:N24"),
            "2,0;0.632456,1.183216;0.833333,1.414214;10,2;20,4");
}

struct Subtotals : Data {
  Subtotals() {
    SheetModel& sheet = *model.sheets[0];
    const FormulaId formula =
        sheet.formulas.Intern(ParseFormula("subtotal(9,G1:G2)", {3, 7}, model));
    sheet.cells.SetFormula({3, 7}, formula);
    sheet.cells.SetValue({3, 7}, CellValue::Number(3));
    sheet.rows.EditRows(2, 2, [](RowFormat& format) { format.hidden = true; });
  }
};

TEST(Subtotals, LeaveOutSubtotalsAndOnDemandHiddenRows) {
  Subtotals book;
  EXPECT_EQ(book.Result("SUBTOTAL(9,G1:G4)"), "7");
  EXPECT_EQ(book.Result("SUBTOTAL(109,G1:G4)"), "5");
  EXPECT_EQ(book.Result("AGGREGATE(9,0,G1:G4)"), "7");
  EXPECT_EQ(book.Result("AGGREGATE(9,1,G1:G4)"), "5");
  EXPECT_EQ(book.Result("AGGREGATE(9,4,G1:G4)"), "10");
  EXPECT_EQ(book.Result("AGGREGATE(9,5,G1:G4)"), "8");
  EXPECT_EQ(book.Result("ISFORMULA(G3)"), "TRUE");
  EXPECT_EQ(book.ArrayResult("ISFORMULA(G2:G4)", "M20:M22"), "FALSE;TRUE;FALSE");
}

TEST(Subtotals, LeaveOutWhatAFilterHides) {
  Subtotals book;
  book.model.sheets[0]->filtered_rows = {2, 4};
  EXPECT_EQ(book.Result("SUBTOTAL(9,G1:G4)"), "5");
  EXPECT_EQ(book.Result("AGGREGATE(9,4,G1:G4)"), "8");
}

}  // namespace
}  // namespace vantora::embedded
