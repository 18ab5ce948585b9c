// Operators, conversions, references and names: how a formula is evaluated, whatever its functions.
#include <gtest/gtest.h>

#include "small_book.h"

namespace vantora::embedded {
namespace {

using Case = FormulaCase;

//        A     B      C      D       E
//   1    1     10     text   TRUE    (none)
//   2    2     20     5      FALSE   #N/A
//   3    3     30     7 as a text
struct Numbers : SmallBook {
  Numbers() : SmallBook({"Plan", "Data", "Last", "R&D"}) {
    Row(0, "A1", {"1", "10", "text", "TRUE"});
    Row(0, "A2", {"2", "20", "5", "FALSE", "#N/A"});
    Row(0, "A3", {"3", "30", "'7"});
    Row(1, "A1", {"100", "200"});
    Row(2, "A1", {"1000"});
  }
};

class Expressions : public testing::TestWithParam<Case> {};

TEST_P(Expressions, Give) {
  Numbers book;
  book.model.names = {{"rate", -1, "0.05"},
                      {"local", -1, "1"},
                      {"local", 0, "2"},
                      {"list", -1, "Plan!$A$1:$A$3"},
                      {"left_of", -1, "Plan!XFD1"},
                      {"twice", -1, "rate*2"},
                      {"above_two", -1, "SUM(IF(list>=2,list))"},
                      {"endless", -1, "endless+1"},
                      {"gone", -1, "#REF!"}};
  EXPECT_EQ(book.Result(GetParam().formula), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Operators, Expressions,
    testing::Values(Case{"1+2*3^2", "19"}, Case{"-2^2", "4"}, Case{"2^3^2", "64"},
                    Case{"2^-1", "0.5"}, Case{"-50%", "-0.5"}, Case{"200%^2", "4"},
                    Case{"(1+2)*3", "9"}, Case{"1+2&3+4", "\"37\""}, Case{"1&2=12", "FALSE"},
                    Case{"\"12\"=1&2", "TRUE"}, Case{"1<2=TRUE", "TRUE"}, Case{"10-4-3", "3"},
                    Case{"--\"3\"", "3"}, Case{"1/0", "#DIV/0!"}, Case{"0^0", "#NUM!"},
                    Case{"0^-1", "#DIV/0!"}, Case{"-1^0.5", "#NUM!"}, Case{"1E300*1E300", "#NUM!"},
                    Case{"+\"a\"", "\"a\""}, Case{" 1 +\n2 ", "3"},
                    Case{"1/3&\"\"", "\"0.333333333333333\""}, Case{"0-2^2", "-4"},
                    Case{"2*-3", "-6"}, Case{"2^-2%", "0.986232704493359"}, Case{"10%%", "0.001"},
                    Case{"-\"3\"", "-3"}, Case{"5&-1", "\"5-1\""}, Case{"1=1=1", "FALSE"},
                    Case{"3>2>1", "TRUE"}, Case{"8/4/2", "1"}, Case{"\"a\"&\"b\"=\"AB\"", "TRUE"},
                    Case{"1+\"2\"&3", "\"33\""}, Case{"TRUE&FALSE", "\"TRUEFALSE\""},
                    Case{"-TRUE", "-1"}));

INSTANTIATE_TEST_SUITE_P(
    // The last bits of a sum count for nothing when it is the formula's last operation.
    Cancelling, Expressions,
    testing::Values(Case{"0.5-0.4-0.1", "0"}, Case{"(0.5-0.4-0.1)", "-2.77555756156289E-17"},
                    Case{"1*(0.5-0.4-0.1)", "-2.77555756156289E-17"}, Case{"0.1+0.2=0.3", "TRUE"},
                    Case{"1.000000000001-1", "1.00008890058234E-12"}, Case{"52.8-8.8*6", "0"},
                    // They agree in 49 bits only.
                    Case{"818562.54-778536.1-40026.44", "5.82076609134674E-11"},
                    Case{"818562.54-40026.44-778536.1", "0"},
                    Case{"SUM(0.5,-0.4,-0.1)", "-2.77555756156289E-17"}));

INSTANTIATE_TEST_SUITE_P(
    // The first error counts, and every operator passes one on.
    Errors, Expressions,
    testing::Values(Case{"#N/A+1/0", "#N/A"}, Case{"1/0+#N/A", "#DIV/0!"}, Case{"-#N/A", "#N/A"},
                    Case{"#REF!%", "#REF!"}, Case{"\"a\"&#NULL!", "#NULL!"},
                    Case{"#NUM!=#NUM!", "#NUM!"}, Case{"1<#VALUE!", "#VALUE!"},
                    Case{"\"a\"*#N/A", "#VALUE!"}, Case{"{1,#N/A}+1", "2"},
                    Case{"SUM({1,#N/A}+1)", "#N/A"}));

INSTANTIATE_TEST_SUITE_P(
    Conversions, Expressions,
    testing::Values(
        Case{"\"1,234.5\"+1", "1235.5"}, Case{"\"12%\"*100", "12"}, Case{"\"abc\"+1", "#VALUE!"},
        Case{"\"\"+1", "#VALUE!"}, Case{"TRUE+1", "2"}, Case{"E1+1", "1"}, Case{"E1", "0"},
        Case{"E1&\"x\"", "\"x\""}, Case{"TRUE&1", "\"TRUE1\""}, Case{"C3+1", "8"},
        Case{"C1+1", "#VALUE!"}, Case{"D1*5", "5"}, Case{"E2+\"abc\"", "#N/A"},
        Case{"\"abc\"+E2", "#VALUE!"}, Case{"1E-10&\"\"", "\"0.0000000001\""},
        Case{"1E21&\"\"", "\"1E+21\""}, Case{"1E20&\"\"", "\"100000000000000000000\""},
        Case{"\"1/2/2020\"+1",
             "can't: reading the text \"1/2/2020\" as a date or time is not supported"}));

INSTANTIATE_TEST_SUITE_P(Comparisons, Expressions,
                         testing::Values(Case{"\"a\"=\"A\"", "TRUE"},
                                         Case{"\"\u00e4\"=\"\u00c4\"", "TRUE"},
                                         Case{"\"a\"<\"B\"", "TRUE"}, Case{"99<\"1\"", "TRUE"},
                                         Case{"\"z\"<FALSE", "TRUE"}, Case{"TRUE>99", "TRUE"},
                                         Case{"E1=0", "TRUE"}, Case{"E1=\"\"", "TRUE"},
                                         Case{"E1=FALSE", "TRUE"}, Case{"E1=E9", "TRUE"},
                                         Case{"1<>1", "FALSE"}, Case{"E2=E2", "#N/A"},
                                         Case{"2>=2", "TRUE"}, Case{"1<=0", "FALSE"}));

INSTANTIATE_TEST_SUITE_P(
    References, Expressions,
    testing::Values(Case{"Data!A1+Plan!A1", "101"}, Case{"SUM(Plan:Last!A1)", "1101"},
                    Case{"SUM(Last:Data!A1:B1)", "1300"}, Case{"SUM(A:A)", "6"},
                    Case{"SUM(2:2)", "#N/A"}, Case{"SUM(3:3)", "33"},
                    Case{"SUM(A1:B2 B1:C2)", "30"}, Case{"A1:A2 B1:B2", "#NULL!"},
                    Case{"SUM((A1,B1:B2))", "31"}, Case{"SUM(A1:INDEX(A:A,2))", "3"},
                    Case{"SUM(INDEX(A:A,2):B3)", "55"}, Case{"#REF!+1", "#REF!"},
                    Case{"#REF!A1", "#REF!"}, Case{"Plan!#REF!", "#REF!"},
                    Case{"SUM((A1:A2,A2:A3))", "8"}, Case{"SUM(A:A 2:2)", "2"},
                    Case{"SUM((A1:B2,B3) B1:C3)",
                         "can't: ranges between several areas are not "
                         "supported"},
                    Case{"(A1,B1)+1", "#VALUE!"}, Case{"A1:A2 A2:A3", "2"},
                    Case{"Plan:Last!A1+1", "#VALUE!"}, Case{"$M$19", "0"}));

INSTANTIATE_TEST_SUITE_P(
    Names, Expressions,
    testing::Values(Case{"rate*100", "5"}, Case{"RATE", "0.05"}, Case{"local", "2"},
                    Case{"Data!local", "1"}, Case{"SUM(list)", "6"}, Case{"twice", "0.1"},
                    Case{"above_two", "5"}, Case{"left_of", "0"}, Case{"nothing", "#NAME?"},
                    Case{"gone", "#REF!"},
                    Case{"endless", "can't: the name endless refers to itself"}));

INSTANTIATE_TEST_SUITE_P(ArrayConstants, Expressions,
                         testing::Values(Case{"{1,2;3,4}", "1"}, Case{"SUM({1,2;3,4})", "10"},
                                         Case{"SUM({1,2}*2)", "6"}, Case{"SUM({1,-2}*{1;2})", "-3"},
                                         Case{"SUM(ABS({1,-2}))", "3"},
                                         Case{"INDEX({\"a\",TRUE,#N/A},1,2)", "TRUE"},
                                         Case{"SUM({1,2}+{1,2,3})", "#N/A"}));

INSTANTIATE_TEST_SUITE_P(
    NotCalculable, Expressions,
    testing::Values(Case{"_xlfn.UNIQUE(A:A)", "can't: function UNIQUE is not supported"},
                    Case{"IF(TRUE,1,MyMacro(2))", "can't: function MYMACRO is not supported"},
                    Case{"[1]Plan!A1", "can't: it refers to another workbook"},
                    Case{"'C:\\x\\[b.xlsx]Plan'!A1", "can't: it refers to another workbook"},
                    Case{"SUM(Sales[Amount])", "can't: there is no table \"Sales\""},
                    Case{"Nowhere!A1", "can't: there is no sheet \"Nowhere\""},
                    Case{"'No where'!rate", "can't: there is no sheet \"No where\""},
                    Case{"A1#", "can't: references to spilled arrays are not supported"},
                    Case{"SUMPRODUCT(A:E*1)", "can't: it builds an array of 5242880 values"},
                    Case{"SUM()", "can't: function SUM has too few or too many arguments"},
                    Case{"1+", "can't: the formula can't be read"},
                    Case{"", "can't: the formula can't be read"},
                    Case{"(1", "can't: the formula can't be read"},
                    Case{"\"a", "can't: the formula can't be read"},
                    Case{"1 2", "can't: the formula can't be read"}));

TEST(Evaluation, TakesTheCellInTheFormulasRowOrColumnOfARange) {
  Numbers book;
  EXPECT_EQ(book.Result("A1:A3*10", "M2"), "20");
  EXPECT_EQ(book.Result("A:A", "M3"), "3");
  EXPECT_EQ(book.Result("A1:B1+1", "B20"), "11");
  EXPECT_EQ(book.Result("ABS(A1:A3)", "M4"), "#VALUE!");
  EXPECT_EQ(book.Result("A1:B3", "A2"), "#VALUE!");
  EXPECT_EQ(book.Result("SUM(@A1:A3,1)", "M2"), "3");
  EXPECT_EQ(book.Result("SUM(A1:A3*1)", "M2"), "2");
  EXPECT_EQ(book.Result("IF(A1:A3>1,\"big\",\"small\")", "M1"), "\"small\"");
}

TEST(Evaluation, CalculatesEachElementInAnArrayFormula) {
  Numbers book;
  EXPECT_EQ(book.ArrayResult("A1:A3*B1:B3", "M1:M3"), "10;40;90");
  EXPECT_EQ(book.ArrayResult("A1:A3+B1:B1", "M1:N2"), "11,11;12,12");
  EXPECT_EQ(book.ArrayResult("A1:A2", "M1:M3"), "1;2;#N/A");
  EXPECT_EQ(book.ArrayResult("SUM(IF(A1:A3>1,B1:B3,0))", "M1"), "50");
  EXPECT_EQ(book.ArrayResult("IF(A1:A3=2,\"two\",A1:A3)", "M1:M3"), "1;\"two\";3");
  EXPECT_EQ(book.ArrayResult("IFERROR(E1:E3,9)", "M1:M3"), "0;9;0");
  EXPECT_EQ(book.ArrayResult("ROW(A1:A3)", "M1:M3"), "1;2;3");
  EXPECT_EQ(book.ArrayResult("TRANSPOSE(A1:A3)", "M1:O1"), "1,2,3");
  EXPECT_EQ(book.ArrayResult("MATCH({2;3},A1:A3,0)", "M1:M2"), "2;3");
  EXPECT_EQ(book.ArrayResult("5", "M1:N1"), "5,5");
}

TEST(Evaluation, TellsAllCellsOfAnOperandThatAreOutOfDate) {
  Numbers book;
  book.Flag(0, "A2", kNeedsCalculation);
  book.Flag(0, "A3", kNeedsCalculation);
  book.Flag(1, "B1", kNeedsCalculation);
  EXPECT_EQ(book.Result("A1+A2"), "pending Plan!A2");
  EXPECT_EQ(book.Result("SUM(A:A)"), "pending Plan!A2 Plan!A3");
  EXPECT_EQ(book.Result("MATCH(99,A1:A3,0)"), "pending Plan!A2 Plan!A3");
  EXPECT_EQ(book.Result("IFERROR(A3,Data!B1)"), "pending Plan!A3");
  EXPECT_EQ(book.Result("SUMIF(B1:B3,\">0\",A1:A3)"), "pending Plan!A2 Plan!A3");
  EXPECT_EQ(book.ArrayResult("A1:A3*2", "M1:M3"), "pending Plan!A2 Plan!A3");
  // What is not needed does not matter.
  EXPECT_EQ(book.Result("IF(A1=1,A1,A2)"), "1");
  EXPECT_EQ(book.Result("INDEX(A1:A3,1)"), "1");
  EXPECT_EQ(book.Result("CHOOSE(2,A2,B1)"), "10");
  EXPECT_EQ(book.Result("ROWS(A1:A3)"), "3");
}

TEST(Evaluation, GivesNoValueFromAPrecedentThatHasNone) {
  Numbers book;
  book.Flag(0, "A2", kStale);
  book.Flag(0, "A1", kNeedsCalculation);
  EXPECT_EQ(book.Result("SUM(A1:A3)"), "can't: it depends on Plan!A2, which can't be calculated");
  EXPECT_EQ(book.Result("IFERROR(A2,0)"),
            "can't: it depends on Plan!A2, which can't be calculated");
}

TEST(EnteredText, IsReadAsTheValueItLooksLike) {
  SmallBook book({"Plan"});
  struct {
    const char* text;
    const char* expected;
  } const cases[] = {
      {"12", "12"},
      {" -1.5 ", "-1.5"},
      {"+3", "3"},
      {"1,234,567.5", "1234567.5"},
      {"12%", "0.12"},
      {"-12 %", "-0.12"},
      {"(3)", "-3"},
      {"($1,000)", "-1000"},
      {"1e3", "1000"},
      {"1.5E-2", "0.015"},
      {"$5", "5"},
      {"-$5", "-5"},
      {"$-5", "-5"},
      {".5", "0.5"},
      {"5.", "5"},
      {"true", "TRUE"},
      {" FALSE", "FALSE"},
      {"#n/a", "#N/A"},
      {"#DIV/0!", "#DIV/0!"},
      {"1,23", "\"1,23\""},
      {"1234,567", "\"1234,567\""},
      {"1,2345", "\"1,2345\""},
      {",123", "\",123\""},
      {"1.2.3", "\"1.2.3\""},
      {"--5", "\"--5\""},
      {"(-5)", "\"(-5)\""},
      {"1/2/2020", "\"1/2/2020\""},
      {"12:30", "\"12:30\""},
      {"", "\"\""},
      {" ", "\" \""},
      {"abc ", "\"abc \""},
      {"inf", "\"inf\""},
      {"nan", "\"nan\""},
      {"0x10", "\"0x10\""},
      {"1e999", "\"1e999\""},
      {"%", "\"%\""},
      {"$", "\"$\""},
      {"-", "\"-\""},
      {".", "\".\""},
      {"1e", "\"1e\""},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(book.Shown(ValueFromEnteredText(book.model, test.text)), test.expected) << test.text;
  }
}

}  // namespace
}  // namespace vantora::embedded
