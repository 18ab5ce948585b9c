// Values in number formats, as Excel shows them.
#include "formula/number_format.h"

#include <gtest/gtest.h>

#include "small_book.h"

namespace vantora::embedded {
namespace {

struct Case {
  const char* code;
  double number;
  const char* shown;
};

// "#VALUE!" where the format can't show the number.
std::string Shown(const char* code, double number, bool date_1904 = false) {
  return NumberFormat(code).Show(number, date_1904).value_or("#VALUE!");
}

void Check(std::initializer_list<Case> cases) {
  for (const Case& test : cases) {
    EXPECT_EQ(Shown(test.code, test.number), test.shown) << test.code << " of " << test.number;
  }
}

TEST(NumberFormat, ShowsDigits) {
  Check({
      {"0", 5, "5"},
      {"0", 0, "0"},
      {"0", 0.5, "1"},
      {"0", 1.5, "2"},
      {"0", -1234.5, "-1235"},
      {"000", 7, "007"},
      {"000", 12345, "12345"},
      {"0.00", 2.675, "2.68"},
      {"0.00", 1.005, "1.01"},
      {"0.00", 999.995, "1000.00"},
      {"0.00", -0.001, "0.00"},
      {"0.000", 1.0 / 3, "0.333"},
      {"#", 0, ""},
      {"#", 12, "12"},
      {"#.##", 0, "."},
      {"#.##", 0.5, ".5"},
      {"#.##", 12.345, "12.35"},
      {"0.##", 12, "12."},
      {"0.0#", 12, "12.0"},
      {"0.0##", 1.25, "1.25"},
      {".00", 12.5, "12.50"},
      {".00", 0.126, ".13"},
      {"??", 5, " 5"},
      {"?\?.?\?", 1.5, " 1.5 "},
      {"?\?.?\?", 0, "  .  "},
      {"0.0?", 1.25, "1.25"},
      {"0.0?", 1.2, "1.2 "},
      {"0", 123456789012345678.0, "123456789012346000"},
      {"0.00", 1e-20, "0.00"},
      {"0", 1e20, "100000000000000000000"},
      {"000-00-0000", 123456789, "123-45-6789"},
      {"(000) 000-0000", 5551234567, "(555) 123-4567"},
      {"00\\:00", 1234, "12:34"},
      {"0.0\" of \"0", 1.25, "1.2 of 5"},
  });
}

TEST(NumberFormat, PartsAndScalesThousands) {
  Check({
      {"#,##0", 0, "0"},
      {"#,##0", 999, "999"},
      {"#,##0", 1234567, "1,234,567"},
      {"#,##0", -1234.5, "-1,235"},
      {"#,##0.00", 1234.5, "1,234.50"},
      {"#,###", 12, "12"},
      {"0,000", 12, "0,012"},
      {"0000,000", 12, "0,000,012"},
      {"?,??0", 12, "   12"},
      {"#,##0,", 1234567, "1,235"},
      {"#,##0,,", 1234567890, "1,235"},
      {"0.0,", 12345, "12.3"},
      {"0.00,,\"M\"", 12345678, "12.35M"},
      {"0.0,%", 123456, "12345.6%"},
      {"#,", 499, ""},
      {"0,", 500, "1"},
      {"$#,##0", 1234, "$1,234"},
  });
}

TEST(NumberFormat, ShowsPercentAndExponents) {
  Check({
      {"0%", 0.125, "13%"},
      {"0.0%", 0.1254, "12.5%"},
      {"0%", -0.5, "-50%"},
      {"%0", 0.5, "%50"},
      {"0%%", 0.5, "5000%%"},
      {"0.00E+00", 12345, "1.23E+04"},
      {"0.00E+00", 0, "0.00E+00"},
      {"0.00E+00", 0.00012345, "1.23E-04"},
      {"0.00E-00", 12345, "1.23E04"},
      {"0.00E-00", 0.001, "1.00E-03"},
      {"0.0E+0", 9.96, "1.0E+1"},
      {"0E+000", 1e100, "1E+100"},
      {"##0.0E+0", 12345, "12.3E+3"},
      {"##0.0E+0", 123456, "123.5E+3"},
      {"##0.0E+0", 999960, "1.0E+6"},
      {"##0.0E+0", 0.012, "12.0E-3"},
      {"0.00e+00", -12345, "-1.23e+04"},
      {"#.##E+0", 100, "1.E+2"},
  });
}

TEST(NumberFormat, ShowsFractions) {
  Check({
      {"# ?/?", 1.5, "1 1/2"},
      {"# ?/?", 0.5, " 1/2"},
      {"0 ?/?", 0.5, "0 1/2"},
      {"# ?/?", 5, "5    "},
      {"# ?/?", 0, "0    "},
      {"# ?/?", 0.99, "1    "},
      {"# ?/?", -1.25, "-1 1/4"},
      {"# ?/?", 3.14159265, "3 1/7"},
      {"# ?\?/?\?", 3.14159265, "3 14/99"},
      {"# ?\?\?/?\?\?", 3.14159265, "3  16/113"},
      {"# ?\?/?\?", 0.25, "  1/4 "},
      {"# ?\?/?\?", 12.12, "12  3/25"},
      {"# ?/2", 1.5, "1 1/2"},
      {"# ?\?/16", 0.5, "  8/16"},
      {"# ?\?/16", 2, "2      "},
      {"# ?/8", 1.99, "2    "},
      {"# ?\?/100", 0.07, "  7/100"},
      {"?/?", 1.5, "3/2"},
      {"?/?", 5, "5/1"},
      {"?/?", 0, "0/1"},
      {"# #/#", 2.75, "2 3/4"},
      {"# 0/0", 2.75, "2 3/4"},
  });
}

TEST(NumberFormat, ChoosesTheSection) {
  Check({
      {"0;(0)", -5, "(5)"},
      {"0;(0)", 0, "0"},
      {"0;(0);\"none\"", 0, "none"},
      {"0;-0;;@", 0, ""},
      {";;;", 5, ""},
      {"0;;", -5, ""},
      {"0.0;-0.0", -0.04, "-0.0"},
      {"\"up\";\"down\"", 3, "up"},
      {"\"up\";\"down\"", -3, "down"},
      {"\"all\"", -3, "-all"},
      {"[<100]0;0.0", 50, "50"},
      {"[<100]0;0.0", 150, "150.0"},
      {"[<100]0;[<1000]0.0;0.00", 5000, "5000.00"},
      {"[>=1000000]0.0,,\"M\";[>=1000]0.0,\"K\";0", 2500000, "2.5M"},
      {"[>=1000000]0.0,,\"M\";[>=1000]0.0,\"K\";0", 2500, "2.5K"},
      {"[>=1000000]0.0,,\"M\";[>=1000]0.0,\"K\";0", -25, "-25"},
      {"[<0]\"minus \"0;0", -25, "minus 25"},
      {"[=1]\"one\";[<>2]\"other\";\"two\"", 2, "two"},
      {"[=1]\"one\";[<>2]\"other\";\"two\"", 1, "one"},
      {"[>=0]0;(0)", -2, "(2)"},
      {"[>10]0", 5, "#VALUE!"},
      {"[Red]0", 5, "5"},
      {"0;[Red]-0", -5, "-5"},
      {"[Color 12][>5]0;[blue]\"low\"", 3, "low"},
      {"0;-0;\"zero\";@", 0, "zero"},
      {"@", 1.5, "1.5"},
      {"0;\"text \"@", 5, "5"},
  });
}

TEST(NumberFormat, ShowsLiterals) {
  Check({
      {"\"a;b\"0", 1, "a;b1"},
      {"\\x0\\y", 1, "x1y"},
      {"0_)", 1, "1 "},
      {"_-* #,##0.00_-", 1234.5, " 1,234.50 "},
      {"[$\u20ac-407] #,##0", 1234, "\u20ac 1,234"},
      {"#,##0 [$USD]", 1234, "1,234 USD"},
      {"[$-409]0", 1, "1"},
      {"0 \u20ac", 5, "5 \u20ac"},
      {"0 k", 5, "5 k"},
      {"+0;-0", 5, "+5"},
      {"{0}", 5, "{5}"},
      {"General", 1234.5, "1234.5"},
      {"General\" units\"", 12, "12 units"},
      {"General", -0.1, "-0.1"},
      {"general;(General)", -3, "(3)"},
      {"General", 1.0 / 3, "0.333333333"},
      {"General", 200.0 / 3, "66.66666667"},
      {"General", 123456789012.0, "1.23457E+11"},
      {"General", 12345678901.0, "12345678901"},
      {"General", 12345678901.6, "12345678902"},
      {"General", 99999999999.9, "1E+11"},
      {"General", 0.00001, "0.00001"},
      {"General", 0.0000123456, "1.23456E-05"},
      {"General", 1e-10, "1E-10"},
      {"General", 0, "0"},
  });
}

TEST(NumberFormat, ShowsDatesAndTimes) {
  constexpr double kMoment = 43831.5 + 1.0 / 24 + 5.0 / 1440 + 9.0 / 86400;  // 2020-01-01 13:05:09
  Check({
      {"yyyy-mm-dd", kMoment, "2020-01-01"},
      {"d/m/yy", kMoment, "1/1/20"},
      {"dd mmm yyyy", kMoment, "01 Jan 2020"},
      {"mmmm d, yyyy", kMoment, "January 1, 2020"},
      {"mmmmm", kMoment, "J"},
      {"ddd", kMoment, "Wed"},
      {"dddd", kMoment, "Wednesday"},
      {"yyy", kMoment, "2020"},
      {"e", kMoment, "2020"},
      {"bbbb", kMoment, "2563"},
      {"DD.MM.YYYY", kMoment, "01.01.2020"},
      {"[$-409]d-mmm-yy;@", kMoment, "1-Jan-20"},
      {"hh:mm:ss", kMoment, "13:05:09"},
      {"h:m:s", kMoment, "13:5:9"},
      {"h:mm AM/PM", kMoment, "1:05 PM"},
      {"h a/p", kMoment, "1 p"},
      {"h AM/PM", 0.0, "12 AM"},
      {"h AM/PM", 0.5, "12 PM"},
      {"mm:ss", kMoment, "05:09"},
      {"m/d h:m", kMoment, "1/1 13:5"},
      {"hh \"h\" mm", kMoment, "13 h 05"},
      {"[h]:mm", 1.5, "36:00"},
      {"[hh]", 0.125, "03"},
      {"[mm]:ss", 0.0625, "90:00"},
      {"[s]", 1.0 / 24, "3600"},
      {"ss.00", 1.234 / 86400, "01.23"},
      {"h:mm:ss.000", 1.2345 / 86400, "0:00:01.235"},
      {"[s].0", 61.25 / 86400, "61.3"},
      {"h:mm:ss", 59.6 / 86400, "0:01:00"},
      {"h:mm", 59.4 / 86400, "0:00"},
      {"d h:mm", 1 - 0.2 / 86400, "1 0:00"},
      {"d", 1.9999999, "1"},
      {"yyyy-mm-dd", 60, "1900-02-29"},
      {"yyyy-mm-dd", 59, "1900-02-28"},
      {"yyyy-mm-dd", 61, "1900-03-01"},
      {"ddd", 1, "Sun"},
      {"d/m/yyyy", 0, "0/1/1900"},
      {"yyyy-mm-dd", 2958465, "9999-12-31"},
      {"yyyy-mm-dd", 2958466, "#VALUE!"},
      {"yyyy-mm-dd", -1, "#VALUE!"},
      {"[h]:mm", -0.5, "#VALUE!"},
      {"ss.0000", 1, "#VALUE!"},
      {"0 d", 1, "#VALUE!"},
      {"[unknown]0", 1, "#VALUE!"},
      {"0;0;0;0;0", 1, "#VALUE!"},
  });
  EXPECT_EQ(Shown("yyyy-mm-dd", 0, true), "1904-01-01");
  EXPECT_EQ(Shown("ddd", 0, true), "Fri");
  EXPECT_EQ(Shown("yyyy-mm-dd", 42369, true), "2020-01-01");
  EXPECT_EQ(Shown("d mmm yyyy", -1, true), "-2 Jan 1904");
}

TEST(NumberFormat, ShowsTexts) {
  EXPECT_EQ(NumberFormat("0;0;0;\"<\"@\">\"").Show("abc"), "<abc>");
  EXPECT_EQ(NumberFormat("0;;;").Show("abc"), "");
  EXPECT_EQ(NumberFormat("0.00").Show("abc"), "abc");
  EXPECT_EQ(NumberFormat("@@").Show("ab"), "abab");
}

TEST(NumberFormat, KnowsTheBuiltInCodes) {
  const auto shown = [](unsigned id, double number) {
    return NumberFormat(BuiltInNumberFormat(id)).Show(number, false).value_or("#VALUE!");
  };
  EXPECT_EQ(shown(0, 0.1), "0.1");
  EXPECT_EQ(shown(8, -1234.5), "($1,234.50)");
  EXPECT_EQ(shown(13, 0.125), "  1/8 ");
  EXPECT_EQ(shown(14, 43831), "1/1/2020");
  EXPECT_EQ(shown(22, 43831.25), "1/1/2020 6:00");
  EXPECT_EQ(shown(37, 5), "5 ");
  EXPECT_EQ(shown(44, 0), " $-   ");
  EXPECT_EQ(shown(47, 61.25 / 86400), "01:01.3");
  EXPECT_EQ(shown(48, 12345), "12.3E+3");
  EXPECT_EQ(shown(30, 12), "12");
  EXPECT_EQ(shown(200, 12), "12");
}

TEST(FormatFunctions, Give) {
  SmallBook book({"Plan"});
  book.Row(0, "A1", {"1234.567", "'1,000", "TRUE", "#N/A"});
  struct {
    const char* formula;
    const char* expected;
  } const cases[] = {
      {"TEXT(A1,\"#,##0.0\")", "\"1,234.6\""},
      {"TEXT(B1,\"0.00\")", "\"1000.00\""},
      {"TEXT(C1,\"0.00\")", "\"TRUE\""},
      {"TEXT(D1,\"0\")", "#N/A"},
      {"TEXT(E1,\"0.0\")", "\"0.0\""},
      {"TEXT(\"abc\",\"0;0;0;@!\")", "\"abc!\""},
      {"TEXT(5,\"\")", "\"\""},
      {"TEXT(-1,\"yyyy\")", "#VALUE!"},
      {"TEXT(5,\"[\")", "#VALUE!"},
      {"FIXED(A1)", "\"1,234.57\""},
      {"FIXED(A1,1,TRUE)", "\"1234.6\""},
      {"FIXED(A1,-2)", "\"1,200\""},
      {"FIXED(-A1,0)", "\"-1,235\""},
      {"FIXED(-0.4,0)", "\"0\""},
      {"FIXED(1,128)", "#VALUE!"},
      {"DOLLAR(A1)", "\"$1,234.57\""},
      {"DOLLAR(-A1,0)", "\"($1,235)\""},
      {"DOLLAR(-A1,-2)", "\"($1,200)\""},
      {"DOLLAR(D1)", "#N/A"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(book.Result(test.formula), test.expected) << test.formula;
  }
  book.model.date_1904 = true;
  EXPECT_EQ(book.Result("TEXT(0,\"d mmm yyyy\")"), "\"1 Jan 1904\"");
}

}  // namespace
}  // namespace vantora::embedded
