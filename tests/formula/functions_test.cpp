// Worksheet functions, by kind. Values are those that Excel documents or gives.
#include <gtest/gtest.h>

#include "small_book.h"

namespace vantora::embedded {
namespace {

using Case = FormulaCase;

//        A      B      C        D       E       F   G   H
//   1    10     apple  1        TRUE    (none)  1   2   3
//   2    20     Pear   2        text    #N/A    4   5   6
//   3    20     apple  4        5 (text)        7   8   9
//   4    40     plum   8        (none)  -3
//   5    50     (none) 16       0       ""
struct Data : SmallBook {
  Data() : SmallBook({"Plan", "Other"}) {
    Row(0, "A1", {"10", "apple", "1", "TRUE", "", "1", "2", "3"});
    Row(0, "A2", {"20", "Pear", "2", "text", "#N/A", "4", "5", "6"});
    Row(0, "A3", {"20", "apple", "4", "'5", "", "7", "8", "9"});
    Row(0, "A4", {"40", "plum", "8", "", "-3"});
    Row(0, "A5", {"50", "", "16", "0", "'"});
    model.names = {{"fruit", -1, "Plan!$B$1:$B$5"}};
  }
};

class Functions : public testing::TestWithParam<Case> {};

TEST_P(Functions, Give) {
  Data book;
  EXPECT_EQ(book.Result(GetParam().formula), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Logic, Functions,
    testing::Values(Case{"IF(A1>5,\"yes\",1/0)", "\"yes\""}, Case{"IF(A1<5,1)", "FALSE"},
                    Case{"IF(A1<5,1,)", "0"}, Case{"IF(\"x\",1,2)", "#VALUE!"},
                    Case{"IF(E2,1,2)", "#N/A"}, Case{"IF(E1,1,2)", "2"},
                    Case{"IF(\"true\",1,2)", "1"}, Case{"SUM(IF(TRUE,A1:A3,0))", "50"},
                    Case{"IFERROR(1/0,\"e\")", "\"e\""}, Case{"IFERROR(A1,\"e\")", "10"},
                    Case{"IFERROR(E1,\"e\")", "0"}, Case{"IFNA(E2,7)", "7"},
                    Case{"IFNA(1/0,7)", "#DIV/0!"}, Case{"CHOOSE(2,1/0,\"b\",3)", "\"b\""},
                    Case{"CHOOSE(4,1,2,3)", "#VALUE!"}, Case{"CHOOSE(1.9,1,2,3)", "1"},
                    Case{"SUM(CHOOSE(2,A1,A1:A5))", "140"}, Case{"AND(TRUE,A1:A5,D1:D3)", "TRUE"},
                    Case{"AND(D2:D2)", "#VALUE!"}, Case{"AND(TRUE,\"x\")", "#VALUE!"},
                    Case{"OR(D5,E1)", "FALSE"}, Case{"OR(FALSE,A1)", "TRUE"},
                    Case{"AND(TRUE,E2)", "#N/A"}, Case{"XOR(TRUE,TRUE,TRUE)", "TRUE"},
                    Case{"NOT(E1)", "TRUE"}, Case{"IFS(A1>50,1,A1>5,2)", "2"},
                    Case{"IFS(A1>50,1)", "#N/A"},
                    Case{"SWITCH(A2,10,\"a\",20,\"b\",\"c\")", "\"b\""},
                    Case{"SWITCH(5,1,2)", "#N/A"}, Case{"NA()", "#N/A"}, Case{"TRUE()", "TRUE"}));

INSTANTIATE_TEST_SUITE_P(
    Kinds, Functions,
    testing::Values(Case{"ISERROR(E2)", "TRUE"}, Case{"ISERR(E2)", "FALSE"},
                    Case{"ISERR(1/0)", "TRUE"}, Case{"ISNA(E2)", "TRUE"},
                    Case{"ISBLANK(E1)", "TRUE"}, Case{"ISBLANK(E5)", "FALSE"},
                    Case{"ISNUMBER(A1)", "TRUE"}, Case{"ISNUMBER(D3)", "FALSE"},
                    Case{"ISTEXT(D3)", "TRUE"}, Case{"ISNONTEXT(E1)", "TRUE"},
                    Case{"ISLOGICAL(D1)", "TRUE"}, Case{"ISREF(A1)", "TRUE"},
                    Case{"ISREF(1)", "FALSE"}, Case{"N(D1)", "1"}, Case{"N(B1)", "0"},
                    Case{"T(A1)", "\"\""}, Case{"T(B1)", "\"apple\""}, Case{"TYPE(B1)", "2"},
                    Case{"TYPE(E2)", "16"}, Case{"ERROR.TYPE(1/0)", "2"},
                    Case{"ERROR.TYPE(1)", "#N/A"}, Case{"SUMPRODUCT(ISNUMBER(D1:D5)*1)", "1"}));

INSTANTIATE_TEST_SUITE_P(
    Rounding, Functions,
    testing::Values(
        Case{"ROUND(2.5,0)", "3"}, Case{"ROUND(-2.5,0)", "-3"}, Case{"ROUND(1.005,2)", "1.01"},
        Case{"ROUND(2.675,2)", "2.68"}, Case{"ROUND(1234.5,-2)", "1200"},
        Case{"ROUND(1250,-2)", "1300"}, Case{"ROUND(0.5,-1)", "0"}, Case{"ROUND(9,-1)", "10"},
        Case{"ROUND(5,-1)", "10"}, Case{"ROUND(5,-2)", "0"}, Case{"ROUND(50,-2)", "100"},
        Case{"ROUND(1.4999999999999999,0)", "2"}, Case{"ROUND(1E20,2)", "100000000000000000000"},
        Case{"ROUND(123.456,400)", "123.456"}, Case{"ROUND(123.456,-400)", "0"},
        Case{"ROUND(0.285,2)", "0.29"}, Case{"ROUNDUP(2.1,0)", "3"}, Case{"ROUNDUP(-2.1,0)", "-3"},
        Case{"ROUNDUP(1.1*3,1)", "3.3"}, Case{"ROUNDUP(3,-3)", "1000"},
        Case{"ROUNDDOWN(2.9,0)", "2"}, Case{"ROUNDDOWN(-2.9,0)", "-2"},
        Case{"ROUNDDOWN(4.35*100,0)", "435"}, Case{"TRUNC(-8.97)", "-8"},
        Case{"TRUNC(8.97,1)", "8.9"}, Case{"INT(-8.1)", "-9"},
        Case{"INT(880000000*0.00849/3)", "2490400"}, Case{"MOD(-3,2)", "1"},
        Case{"MOD(3,-2)", "-1"}, Case{"MOD(5.5,2)", "1.5"}, Case{"MOD(1,0)", "#DIV/0!"},
        Case{"MOD(1E15,1)", "#NUM!"}, Case{"CEILING(2.5,1)", "3"}, Case{"CEILING(-2.5,-2)", "-4"},
        Case{"CEILING(-2.5,2)", "-2"}, Case{"CEILING(2.5,-2)", "#NUM!"},
        Case{"CEILING(0.234,0.01)", "0.24"}, Case{"CEILING(5,0)", "0"}, Case{"FLOOR(2.5,1)", "2"},
        Case{"FLOOR(-2.5,-2)", "-2"}, Case{"FLOOR(-2.5,2)", "-4"}, Case{"FLOOR(2.5,-2)", "#NUM!"},
        Case{"FLOOR(5,0)", "#DIV/0!"}, Case{"FLOOR(6.6,2.2)", "6.6"}, Case{"MROUND(10,3)", "9"},
        Case{"MROUND(-10,3)", "#NUM!"}, Case{"MROUND(6.05,0.1)", "6"},
        Case{"MROUND(7.05,0.1)", "7.1"}, Case{"EVEN(1.5)", "2"}, Case{"EVEN(-1)", "-2"},
        Case{"ODD(1.5)", "3"}, Case{"ODD(0)", "1"}));

INSTANTIATE_TEST_SUITE_P(
    Math, Functions,
    testing::Values(
        Case{"ABS(-3)", "3"}, Case{"ABS(\"-3\")", "3"}, Case{"ABS(B1)", "#VALUE!"},
        Case{"SIGN(-3)", "-1"}, Case{"SQRT(16)", "4"}, Case{"SQRT(-1)", "#NUM!"},
        Case{"POWER(2,10)", "1024"}, Case{"(-8)^(1/3)", "-2"}, Case{"(-8)^(2/3)", "#NUM!"},
        Case{"POWER(2,0.5)^2", "2"}, Case{"EXP(0)", "1"}, Case{"LN(EXP(2))", "2"},
        Case{"LN(0)", "#NUM!"}, Case{"LOG(8,2)", "3"}, Case{"LOG(1000)", "3"},
        Case{"LOG(5,1)", "#DIV/0!"}, Case{"LOG10(1000)", "3"}, Case{"ROUND(PI(),4)", "3.1416"},
        Case{"PRODUCT(A1:A2,C3)", "800"}, Case{"PRODUCT(B1)", "0"}, Case{"QUOTIENT(-7,2)", "-3"},
        Case{"SUM(A1:D5)", "171"}, Case{"SUM(1,\"2\",TRUE)", "4"}, Case{"SUM(\"x\")", "#VALUE!"},
        Case{"SUM(A1,E2)", "#N/A"}, Case{"SUM(1,)", "1"}, Case{"SUMSQ(3,4)", "25"},
        Case{"SUMPRODUCT(A1:A3,C1:C3)", "130"}, Case{"SUMPRODUCT(A1:A3,C1:C2)", "#VALUE!"},
        Case{"SUMPRODUCT(A1:A5,D1:D5)", "0"}, Case{"SUMPRODUCT((B1:B5=\"apple\")*C1:C5)", "5"},
        Case{"SUMPRODUCT(--(A1:A5>15))", "4"}, Case{"SUMPRODUCT(A:A,C:C)", "1250"},
        Case{"SUMPRODUCT(A1:A5,E1:E5)", "#N/A"}));

INSTANTIATE_TEST_SUITE_P(
    Statistics, Functions,
    testing::Values(Case{"AVERAGE(A1:A5)", "28"}, Case{"AVERAGE(B1:B5)", "#DIV/0!"},
                    Case{"AVERAGE(1,)", "0.5"}, Case{"MAX(A1:A5,99)", "99"},
                    Case{"MAX(B1:B5)", "0"}, Case{"MAX(E4,)", "0"}, Case{"MIN(E4:E5,5)", "-3"},
                    Case{"MIN(A1:E5)", "#N/A"}, Case{"COUNT(A1:E5)", "12"},
                    Case{"COUNT(1,\"2\",\"x\",E2,TRUE,)", "4"}, Case{"COUNTA(A1:E5)", "21"},
                    Case{"COUNTA(1,)", "2"}, Case{"COUNTBLANK(A1:E5)", "5"},
                    Case{"COUNTBLANK(A:A)", "1048571"}, Case{"MEDIAN(A1:A4)", "20"},
                    Case{"LARGE(A1:A5,2)", "40"}, Case{"SMALL(A1:A5,2)", "20"},
                    Case{"SMALL(A1:A5,6)", "#NUM!"}));

INSTANTIATE_TEST_SUITE_P(
    Criteria, Functions,
    testing::Values(Case{"COUNTIF(A1:A5,20)", "2"}, Case{"COUNTIF(A1:A5,\">=20\")", "4"},
                    Case{"COUNTIF(A1:A5,\"<>20\")", "3"}, Case{"COUNTIF(fruit,\"APPLE\")", "2"},
                    Case{"COUNTIF(fruit,\"p*\")", "2"}, Case{"COUNTIF(fruit,\"?ear\")", "1"},
                    Case{"COUNTIF(fruit,\"<>apple\")", "3"}, Case{"COUNTIF(fruit,\"\")", "1"},
                    Case{"COUNTIF(fruit,\"=\")", "1"}, Case{"COUNTIF(fruit,\"<>\")", "4"},
                    Case{"COUNTIF(E1:E5,\"\")", "3"}, Case{"COUNTIF(E1:E5,\"=\")", "2"},
                    Case{"COUNTIF(D1:D5,5)", "1"}, Case{"COUNTIF(D1:D5,\"<>5\")", "5"},
                    Case{"COUNTIF(D1:D5,TRUE)", "1"}, Case{"COUNTIF(E1:E5,#N/A)", "1"},
                    Case{"COUNTIF(D1:D5,E1)", "1"}, Case{"COUNTIF(fruit,\">b\")", "2"},
                    Case{"COUNTIF(A:A,\"<>20\")", "1048574"}, Case{"COUNTIF({1,2},1)", "#VALUE!"},
                    Case{"COUNTIF(A1:A5,\">1/2/2020\")",
                         "can't: the condition \"1/2/2020\" may be a date, which is not supported"},
                    Case{"COUNTIFS(A1:A5,20,B1:B5,\"apple\")", "1"},
                    Case{"COUNTIFS(A1:A5,\"<>20\",D1:D5,\"<>text\")", "3"},
                    Case{"COUNTIFS(A1:A5,20,B1:B4,\"apple\")", "#VALUE!"},
                    Case{"SUMIF(B1:B5,\"apple\",C1:C5)", "5"}, Case{"SUMIF(A1:A5,\">15\")", "130"},
                    Case{"SUMIF(B:B,\"apple\",C1)", "5"}, Case{"SUMIF(B1:B5,\"\",C1:C5)", "16"},
                    Case{"SUMIFS(C1:C5,B1:B5,\"apple\",A1:A5,\">10\")", "4"},
                    Case{"AVERAGEIF(B1:B5,\"apple\",C1:C5)", "2.5"},
                    Case{"AVERAGEIF(B1:B5,\"fig\",C1:C5)", "#DIV/0!"},
                    Case{"AVERAGEIFS(C1:C5,A1:A5,20)", "3"}, Case{"MAXIFS(C1:C5,A1:A5,20)", "4"},
                    Case{"_xlfn.MINIFS(C1:C5,A1:A5,20)", "2"},
                    Case{"SUMPRODUCT(SUMIF(B1:B5,{\"apple\",\"plum\"},C1:C5))", "13"}));

INSTANTIATE_TEST_SUITE_P(
    Lookup, Functions,
    testing::Values(Case{"MATCH(20,A1:A5,0)", "2"}, Case{"MATCH(\"PEAR\",B1:B5,0)", "2"},
                    Case{"MATCH(\"pl*\",B1:B5,0)", "4"}, Case{"MATCH(30,A1:A5,0)", "#N/A"},
                    Case{"MATCH(30,A1:A5)", "3"}, Case{"MATCH(20,A1:A5,1)", "3"},
                    Case{"MATCH(5,A1:A5,1)", "#N/A"}, Case{"MATCH(99,A:A,1)", "5"},
                    Case{"MATCH(E1,D1:D5,0)", "5"}, Case{"MATCH(4,{9,7,5,3},-1)", "3"},
                    Case{"MATCH(1,A1:B2,0)", "#N/A"}, Case{"MATCH(E2,A1:A5,0)", "#N/A"},
                    Case{"MATCH(3,F1:H1,0)", "3"}, Case{"MATCH(50,A:A,0)", "5"},
                    Case{"INDEX(F1:H3,2,3)", "6"}, Case{"INDEX(A1:A5,3)", "20"},
                    Case{"INDEX(F1:H1,2)", "2"}, Case{"SUM(INDEX(F1:H3,0,2))", "15"},
                    Case{"SUM(INDEX(F1:H3,2,0))", "15"}, Case{"SUM(INDEX(F1:H3,0,0))", "45"},
                    Case{"INDEX(A1:A5,6)", "#REF!"}, Case{"INDEX(F1:H3,-1,1)", "#VALUE!"},
                    Case{"INDEX((A1:A5,F1:H3),2,2,2)", "5"},
                    Case{"INDEX(F1:H3,MATCH(7,F1:F3,0),MATCH(3,F1:H1,0))", "9"},
                    Case{"VLOOKUP(20,A1:C5,2,FALSE)", "\"Pear\""}, Case{"VLOOKUP(45,A1:C5,3)", "8"},
                    Case{"VLOOKUP(45,A1:C5,3,0)", "#N/A"}, Case{"VLOOKUP(20,A1:C5,4)", "#REF!"},
                    Case{"VLOOKUP(20,A1:C5,0)", "#VALUE!"}, Case{"VLOOKUP(50,A1:B5,2,FALSE)", "0"},
                    Case{"VLOOKUP(1,3,1)", "#N/A"}, Case{"VLOOKUP(1,\"x\",1)", "#VALUE!"},
                    Case{"HLOOKUP(2,F1:H3,3,FALSE)", "8"}, Case{"HLOOKUP(2.5,F1:H3,2)", "5"},
                    Case{"LOOKUP(45,A1:A5,B1:B5)", "\"plum\""}, Case{"LOOKUP(2.5,F1:H3)", "3"},
                    Case{"LOOKUP(0,F1:H3)", "#N/A"}, Case{"LOOKUP(5,F1:H3)", "6"},
                    Case{"ROW()", "20"}, Case{"COLUMN()", "13"}, Case{"ROW(A5)", "5"},
                    Case{"COLUMN(C:D)", "3"}, Case{"ROWS(A1:C5)", "5"}, Case{"COLUMNS(A1:C5)", "3"},
                    Case{"ROWS(A:A)", "1048576"}, Case{"SUMPRODUCT(ROW(A1:A3))", "6"},
                    Case{"SUM(OFFSET(F1,1,1,2,2))", "28"}, Case{"OFFSET(H3,-2,-2)", "1"},
                    Case{"OFFSET(A1,-1,0)", "#REF!"}, Case{"SUM(OFFSET(H3,0,0,-2,-2))", "28"},
                    Case{"SUM(INDIRECT(\"A1:A5\"))", "140"}, Case{"INDIRECT(\"Other!A1\")", "0"},
                    Case{"COUNTA(INDIRECT(\"fruit\"))", "4"},
                    Case{"INDIRECT(\"no reference\")", "#REF!"}));

INSTANTIATE_TEST_SUITE_P(
    Text, Functions,
    testing::Values(
        Case{"LEFT(\"plan\",2)", "\"pl\""}, Case{"LEFT(\"plan\")", "\"p\""},
        Case{"LEFT(\"plan\",-1)", "#VALUE!"}, Case{"RIGHT(\"plan\",9)", "\"plan\""},
        Case{"MID(\"planning\",3,4)", "\"anni\""}, Case{"MID(\"plan\",9,1)", "\"\""},
        Case{"MID(\"plan\",0,1)", "#VALUE!"},
        Case{"LEFT(\"\u00e4\u00f6\u00fc\",2)", "\"\u00e4\u00f6\""},
        Case{"LEN(\"\u00e4\u00f6\u00fc\")", "3"}, Case{"LEN(\"\U0001F600\")", "2"},
        Case{"LEN(A1)", "2"}, Case{"FIND(\"n\",\"planning\")", "4"},
        Case{"FIND(\"N\",\"planning\")", "#VALUE!"}, Case{"FIND(\"n\",\"planning\",5)", "5"},
        Case{"FIND(\"\",\"plan\")", "1"}, Case{"FIND(\"a\",\"plan\",9)", "#VALUE!"},
        Case{"SEARCH(\"N\",\"planning\")", "4"}, Case{"SEARCH(\"n?i\",\"planning\")", "4"},
        Case{"SEARCH(\"~*\",\"a*b\")", "2"}, Case{"SUBSTITUTE(\"a-b-c\",\"-\",\"+\")", "\"a+b+c\""},
        Case{"SUBSTITUTE(\"a-b-c\",\"-\",\"+\",2)", "\"a-b+c\""},
        Case{"REPLACE(\"abcdef\",2,3,\"X\")", "\"aXef\""}, Case{"TRIM(\"  a   b \")", "\"a b\""},
        Case{"UPPER(\"\u00e4bc\u017e\")", "\"\u00c4BC\u017d\""},
        Case{"LOWER(\"\u00c4BC\")", "\"\u00e4bc\""},
        Case{"PROPER(\"o'neil 2nd-hand\")", "\"O'Neil 2Nd-Hand\""},
        Case{"REPT(\"ab\",3)", "\"ababab\""}, Case{"REPT(\"a\",40000)", "#VALUE!"},
        Case{"EXACT(\"a\",\"A\")", "FALSE"}, Case{"CONCATENATE(\"a\",1,TRUE)", "\"a1TRUE\""},
        Case{"CONCATENATE(\"a\",E2)", "#N/A"}, Case{"_xlfn.CONCAT(A1:B2)", "\"10apple20Pear\""},
        Case{"_xlfn.TEXTJOIN(\"-\",TRUE,B1:B5)", "\"apple-Pear-apple-plum\""},
        Case{"VALUE(\"$1,000\")", "1000"}, Case{"VALUE(\"abc\")", "#VALUE!"},
        Case{"CHAR(10)&CHAR(128)", "\"\n\u20ac\""}, Case{"CODE(\"\u20ac\")", "128"}));

INSTANTIATE_TEST_SUITE_P(
    Dates, Functions,
    testing::Values(Case{"DATE(2024,2,29)", "45351"}, Case{"DATE(1900,1,1)", "1"},
                    Case{"DATE(1900,2,28)", "59"}, Case{"DATE(1900,3,1)", "61"},
                    Case{"DATE(124,2,29)", "45351"}, Case{"DATE(2023,14,1)", "45323"},
                    Case{"DATE(2024,1,0)", "45291"}, Case{"DATE(2024,-1,1)", "45231"},
                    Case{"DATE(9999,12,31)", "2958465"}, Case{"DATE(9999,13,1)", "#NUM!"},
                    Case{"DATE(-1,1,1)", "#NUM!"}, Case{"DAY(60)", "29"}, Case{"MONTH(60)", "2"},
                    Case{"DAY(61)", "1"}, Case{"YEAR(0)", "1900"}, Case{"DAY(0)", "0"},
                    Case{"YEAR(45351.99)", "2024"}, Case{"YEAR(-1)", "#NUM!"},
                    Case{"EDATE(DATE(2024,1,31),1)", "45351"},
                    Case{"EDATE(DATE(2024,1,31),-1)", "45291"},
                    Case{"EOMONTH(DATE(2024,1,15),1)", "45351"},
                    Case{"EOMONTH(DATE(2024,1,15),-1)", "45291"}, Case{"EOMONTH(1,-1)", "0"},
                    Case{"EOMONTH(1,-2)", "#NUM!"}, Case{"WEEKDAY(45351)", "5"},
                    Case{"WEEKDAY(45351,2)", "4"}, Case{"WEEKDAY(45351,3)", "3"},
                    Case{"WEEKDAY(45351,11)", "4"}, Case{"DAYS(61,1)", "60"},
                    Case{"HOUR(0.75)", "18"}, Case{"MINUTE(TIME(7,45,30))", "45"},
                    Case{"SECOND(TIME(7,45,30))", "30"}, Case{"TODAY()=INT(NOW())", "TRUE"}));

INSTANTIATE_TEST_SUITE_P(
    Finance, Functions,
    testing::Values(Case{"ROUND(PMT(8%/12,10,10000),2)", "-1037.03"},
                    Case{"ROUND(PMT(8%/12,10,10000,0,1),2)", "-1030.16"},
                    Case{"PMT(0,10,1000)", "-100"}, Case{"PMT(0.1,0,1000)", "#NUM!"},
                    Case{"ROUND(PV(8%/12,240,500),2)", "-59777.15"}, Case{"PV(0,10,-100)", "1000"},
                    Case{"ROUND(FV(6%/12,10,-200,-500,1),2)", "2581.4"},
                    Case{"FV(0,5,-10,-100)", "150"},
                    Case{"ROUND(NPER(12%/12,-100,-1000,10000,1),7)", "59.6738657"},
                    Case{"ROUND(RATE(48,-200,8000)*12,6)", "0.092418"},
                    Case{"ROUND(IPMT(10%/12,1,36,8000),2)", "-66.67"},
                    Case{"ROUND(PPMT(10%/12,1,24,2000),2)", "-75.62"},
                    Case{"ROUND(NPV(10%,-10000,3000,4200,6800),2)", "1188.44"},
                    Case{"ROUND(NPV(10%,F1:H1),4)", "4.8159"},
                    Case{"ROUND(IRR({-70000,12000,15000,18000,21000,26000}),6)", "0.086631"},
                    Case{"IRR({1,2,3})", "#NUM!"},
                    Case{"ROUND(IRR({-70000,12000,15000},-10%),6)", "-0.443507"}));

TEST(Dates, CountFromADayOfTheirOwnInThe1904System) {
  SmallBook book({"Plan"});
  book.model.date_1904 = true;
  EXPECT_EQ(book.Result("DATE(1904,1,1)"), "0");
  EXPECT_EQ(book.Result("DATE(2024,2,29)"), "43889");
  EXPECT_EQ(book.Result("YEAR(43889)&\"-\"&MONTH(43889)&\"-\"&DAY(43889)"), "\"2024-2-29\"");
  EXPECT_EQ(book.Result("EOMONTH(0,1)"), "59");
  EXPECT_EQ(book.Result("WEEKDAY(43889)"), "5");
}

}  // namespace
}  // namespace vantora::embedded
