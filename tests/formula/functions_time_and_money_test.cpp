// Distances between dates, dates in texts, dated payments, depreciation. Values are those of
// Excel's documentation where it has examples.
#include <gtest/gtest.h>

#include "formula/date_text.h"
#include "small_book.h"

namespace vantora::embedded {
namespace {

using Case = FormulaCase;

//        A       B        C
//   1    -10000  1.1.08   (holidays) 26.11.08
//   2    2750    1.3.08   4.12.08
//   3    4250    30.10.08 21.1.09
//   4    3250    15.2.09  21.1.09
//   5    2750    1.4.09   text
struct Flows : SmallBook {
  Flows() : SmallBook({"Plan"}) {
    Row(0, "A1", {"-10000", "39448", "39778"});
    Row(0, "A2", {"2750", "39508", "39786"});
    Row(0, "A3", {"4250", "39751", "39834"});
    Row(0, "A4", {"3250", "39859", "39834"});
    Row(0, "A5", {"2750", "39904", "'text"});
  }
};

class TimeAndMoney : public testing::TestWithParam<Case> {};

TEST_P(TimeAndMoney, Gives) {
  Flows book;
  EXPECT_EQ(book.Result(GetParam().formula), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Weeks, TimeAndMoney,
    testing::Values(Case{"WEEKNUM(DATE(2012,3,9))", "10"}, Case{"WEEKNUM(DATE(2012,3,9),2)", "11"},
                    Case{"WEEKNUM(DATE(2012,3,9),21)", "10"}, Case{"WEEKNUM(1,3)", "#NUM!"},
                    Case{"WEEKNUM(0)", "0"}, Case{"WEEKNUM(1)", "1"},
                    Case{"WEEKNUM(DATE(2024,12,31),11)", "53"},
                    Case{"ISOWEEKNUM(DATE(2012,3,9))", "10"},
                    Case{"ISOWEEKNUM(DATE(2021,1,1))", "53"},
                    Case{"ISOWEEKNUM(DATE(2024,12,31))", "1"}, Case{"ISOWEEKNUM(-1)", "#NUM!"}));

INSTANTIATE_TEST_SUITE_P(
    Workdays, TimeAndMoney,
    testing::Values(
        Case{"NETWORKDAYS(DATE(2012,10,1),DATE(2013,3,1))", "110"},
        Case{"NETWORKDAYS(DATE(2012,10,1),DATE(2013,3,1),DATE(2012,11,22))", "109"},
        Case{"NETWORKDAYS(DATE(2013,3,1),DATE(2012,10,1))", "-110"},
        // A holiday that is named twice, or falls on a weekend, counts once or not at all.
        Case{"NETWORKDAYS(39722,39903,C1:C4)", "127"}, Case{"NETWORKDAYS(39722,39903)", "130"},
        Case{"NETWORKDAYS(39726,39726,39726)", "0"}, Case{"NETWORKDAYS(TRUE,39903)", "#VALUE!"},
        Case{"NETWORKDAYS(39722,39903,C1:C5)", "#VALUE!"},
        Case{"NETWORKDAYS(39722,39903,-1)", "#NUM!"},
        Case{"NETWORKDAYS.INTL(DATE(2006,1,1),DATE(2006,1,31))", "22"},
        Case{"NETWORKDAYS.INTL(DATE(2006,2,28),DATE(2006,1,31))", "-21"},
        Case{"NETWORKDAYS.INTL(DATE(2006,1,1),DATE(2006,2,1),7,{38719,38733})", "22"},
        Case{"NETWORKDAYS.INTL(DATE(2006,1,1),DATE(2006,2,1),\"0010001\",{38719,38733})", "20"},
        Case{"NETWORKDAYS.INTL(1,9,\"1111111\")", "0"},
        Case{"NETWORKDAYS.INTL(1,9,\"00200\")", "#VALUE!"},
        Case{"NETWORKDAYS.INTL(1,9,8)", "#NUM!"}, Case{"WORKDAY(DATE(2008,10,1),151)", "39933"},
        Case{"WORKDAY(DATE(2008,10,1),151,C1:C4)", "39938"}, Case{"WORKDAY(39726,0)", "39726"},
        Case{"WORKDAY(39726,-1)", "39724"}, Case{"WORKDAY(5,-100)", "#NUM!"},
        Case{"WORKDAY.INTL(DATE(2012,1,1),30,0)", "#NUM!"},
        Case{"WORKDAY.INTL(DATE(2012,1,1),90,11)", "41013"},
        Case{"WORKDAY.INTL(DATE(2012,1,1),30,17)", "40944"},
        Case{"WORKDAY.INTL(1,1,\"1111111\")", "#VALUE!"}));

INSTANTIATE_TEST_SUITE_P(
    Distances, TimeAndMoney,
    testing::Values(Case{"DATEDIF(DATE(2001,1,1),DATE(2003,1,1),\"Y\")", "2"},
                    Case{"DATEDIF(DATE(2001,6,1),DATE(2002,8,15),\"D\")", "440"},
                    Case{"DATEDIF(DATE(2001,6,1),DATE(2002,8,15),\"yd\")", "75"},
                    Case{"DATEDIF(DATE(2001,6,20),DATE(2002,8,15),\"M\")", "13"},
                    Case{"DATEDIF(DATE(2001,6,20),DATE(2002,8,15),\"YM\")", "1"},
                    Case{"DATEDIF(DATE(2001,6,20),DATE(2002,8,15),\"MD\")", "26"},
                    Case{"DATEDIF(DATE(2011,1,31),DATE(2011,3,1),\"MD\")", "-2"},
                    Case{"DATEDIF(2,1,\"D\")", "#NUM!"}, Case{"DATEDIF(1,2,\"W\")", "#NUM!"},
                    Case{"DAYS360(DATE(2011,1,30),DATE(2011,2,1))", "1"},
                    Case{"DAYS360(DATE(2011,1,1),DATE(2011,12,31))", "360"},
                    Case{"DAYS360(DATE(2011,2,28),DATE(2011,3,31))", "30"},
                    Case{"DAYS360(DATE(2011,1,1),DATE(2011,12,31),TRUE)", "359"},
                    Case{"ROUND(YEARFRAC(DATE(2012,1,1),DATE(2012,7,30)),8)", "0.58055556"},
                    Case{"ROUND(YEARFRAC(DATE(2012,1,1),DATE(2012,7,30),1),8)", "0.57650273"},
                    Case{"ROUND(YEARFRAC(DATE(2012,7,30),DATE(2012,1,1),3),8)", "0.57808219"},
                    Case{"YEARFRAC(DATE(2011,2,28),DATE(2012,2,29))", "1"},
                    Case{"YEARFRAC(1,2,5)", "#NUM!"}, Case{"YEARFRAC(TRUE,2)", "#VALUE!"},
                    Case{"DATE(1900,2,29)", "60"},
                    Case{"DAYS(DATE(1900,3,1),DATE(1900,2,28))", "2"}));

INSTANTIATE_TEST_SUITE_P(
    Texts, TimeAndMoney,
    testing::Values(
        Case{"DATEVALUE(\"8/22/2011\")", "40777"}, Case{"DATEVALUE(\"22-MAY-2011\")", "40685"},
        Case{"DATEVALUE(\"2011/02/23\")", "40597"},
        Case{"DATEVALUE(\"2011-02-23 14:00\")", "40597"},
        Case{"DATEVALUE(\"May 22, 2011\")", "40685"}, Case{"DATEVALUE(\"22 May 11\")", "40685"},
        Case{"DATEVALUE(\"May 1931\")", "11444"}, Case{"DATEVALUE(\"2/2/2020\")", "43863"},
        Case{"DATEVALUE(\"29-Feb-1900\")", "60"}, Case{"DATEVALUE(\"29-Feb-2023\")", "#VALUE!"},
        Case{"DATEVALUE(\"5-Jul\")=DATE(YEAR(NOW()),7,5)", "TRUE"},
        Case{"DATEVALUE(\"14:30\")", "0"}, Case{"DATEVALUE(\"2011\")", "#VALUE!"},
        Case{"DATEVALUE(\"\")", "#VALUE!"}, Case{"DATEVALUE(40777)", "#VALUE!"},
        Case{"DATEVALUE(\"1/2/2020\")",
             "can't: the text \"1/2/2020\" is a date whose day and month may be exchanged"},
        Case{"VALUE(\"2011-02-23\")", "40597"}, Case{"\"12:30\"*24", "12.5"},
        Case{"\"23-Feb-2011 6:00\"+0", "40597.25"}, Case{"YEAR(\"May 22, 2011\")", "2011"},
        Case{"COUNTIF(B1:B5,\">=2008-10-30\")", "3"},
        Case{"\"5-Jul\"+0", "can't: reading the text \"5-Jul\" as a date or time is not supported"},
        Case{"TIMEVALUE(\"2:24 AM\")", "0.1"},
        Case{"TIMEVALUE(\"22-Aug-2011 6:35 PM\")*1440", "1115"}, Case{"TIMEVALUE(\"12 AM\")", "0"},
        Case{"TIMEVALUE(\"30:00\")", "0.25"}, Case{"TIMEVALUE(\"0:00:30.5\")*86400", "30.5"},
        Case{"TIMEVALUE(\"1:75\")", "#VALUE!"}, Case{"TIMEVALUE(\"13 PM\")", "#VALUE!"},
        Case{"TIMEVALUE(\"noon\")", "#VALUE!"}));

INSTANTIATE_TEST_SUITE_P(
    Payments, TimeAndMoney,
    testing::Values(
        Case{"ROUND(XNPV(0.09,A1:A5,B1:B5),2)", "2086.65"}, Case{"XNPV(-0.1,A1:A5,B1:B5)", "#NUM!"},
        Case{"XNPV(0.09,A1:A5,B1:B4)", "#NUM!"}, Case{"XNPV(0.09,A1:A2,{5,4})", "#NUM!"},
        Case{"ROUND(XIRR(A1:A5,B1:B5,0.1),8)", "0.37336253"},
        Case{"ROUND(XIRR(A1:A5,B1:B5,0.3),6)", "0.373363"},
        Case{"ROUND(XIRR({-100,3,95},{1,366,366}),8)", "-0.02"}, Case{"XIRR(A2:A5,B2:B5)", "#NUM!"},
        Case{"XIRR(A1:A5,C1:C5)", "#VALUE!"},
        Case{"ROUND(MIRR({-120000,39000,30000,21000,37000,46000},10%,12%),6)", "0.126094"},
        Case{"MIRR({1,2},0.1,0.1)", "#DIV/0!"},
        Case{"ROUND(CUMIPMT(9%/12,30*12,125000,13,24,0),4)", "-11135.2321"},
        Case{"CUMIPMT(9%/12,30*12,125000,1,1,0)", "-937.5"},
        Case{"CUMIPMT(9%/12,360,125000,1,1,1)", "0"},
        Case{"CUMIPMT(9%/12,360,125000,1,1,2)", "#NUM!"},
        Case{"ROUND(CUMPRINC(9%/12,30*12,125000,13,24,0),4)", "-934.1071"},
        Case{"ROUND(CUMPRINC(9%/12,30*12,125000,1,1,0),5)", "-68.27827"},
        Case{"CUMPRINC(9%/12,10,125000,1,11,0)", "#NUM!"},
        Case{"ROUND(EFFECT(5.25%,4),7)", "0.0535427"}, Case{"EFFECT(0,4)", "#NUM!"},
        Case{"ROUND(NOMINAL(5.3543%,4),8)", "0.05250032"}));

INSTANTIATE_TEST_SUITE_P(
    Depreciation, TimeAndMoney,
    testing::Values(
        Case{"SLN(30000,7500,10)", "2250"}, Case{"SLN(1,2,0)", "#DIV/0!"},
        Case{"ROUND(SYD(30000,7500,10,1),2)", "4090.91"}, Case{"SYD(30000,7500,10,11)", "#NUM!"},
        Case{"ROUND(DB(1000000,100000,6,1,7),2)", "186083.33"},
        Case{"ROUND(DB(1000000,100000,6,2,7),2)", "259639.42"},
        Case{"ROUND(DB(1000000,100000,6,7,7),2)", "15845.1"},
        Case{"DB(1000000,100000,6,7)", "#NUM!"}, Case{"DB(0,0,6,1)", "0"},
        Case{"ROUND(DDB(2400,300,3650,1),2)", "1.32"}, Case{"DDB(2400,300,10,2,1.5)", "306"},
        Case{"ROUND(DDB(2400,300,10,10),2)", "22.12"}, Case{"DDB(2400,300,10,11)", "#NUM!"},
        Case{"VDB(2400,300,10,0,1)", "480"}, Case{"ROUND(VDB(2400,300,120,6,18),2)", "396.31"},
        Case{"ROUND(VDB(2400,300,120,6,18,1.5),2)", "311.81"},
        Case{"VDB(2400,300,10,0,0.875,1.5)", "315"}, Case{"VDB(2400,300,10,0,10)", "2100"},
        Case{"VDB(2400,300,10,2,1)", "#NUM!"}));

TEST(TimeAndMoney, CountsFromADayOfItsOwnInThe1904System) {
  SmallBook book({"Plan"});
  book.model.date_1904 = true;
  EXPECT_EQ(book.Result("DATEVALUE(\"1904-01-02\")"), "1");
  EXPECT_EQ(book.Result("DATEVALUE(\"1903-12-31\")"), "#VALUE!");
  EXPECT_EQ(book.Result("WEEKNUM(DATE(2012,3,9),2)"), "11");
  EXPECT_EQ(book.Result("ISOWEEKNUM(DATE(2021,1,1))"), "53");
  EXPECT_EQ(book.Result("NETWORKDAYS(DATE(2012,10,1),DATE(2013,3,1))"), "110");
  EXPECT_EQ(book.Result("WORKDAY(DATE(2008,10,1),151)-DATE(2009,4,30)"), "0");
  EXPECT_EQ(book.Result("DATEDIF(DATE(2001,6,20),DATE(2002,8,15),\"MD\")"), "26");
  EXPECT_EQ(book.Result("YEARFRAC(DATE(2011,2,28),DATE(2012,2,29))"), "1");
}

}  // namespace
}  // namespace vantora::embedded
