#include "core/convert.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace vantora {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumberToText, UsesFifteenDigitsAndPlainNotationWhereTheySuffice) {
  struct Case {
    double number;
    const char* text;
  } const cases[] = {
      {0, "0"},
      {-0.0, "0"},
      {2026, "2026"},
      {-12.5, "-12.5"},
      {0.1 + 0.2, "0.3"},
      {1.0 / 3, "0.333333333333333"},
      {2.0 / 3, "0.666666666666667"},
      {999999999999999, "999999999999999"},
      {1e15, "1E+15"},
      {1234567890123456, "1.23456789012346E+15"},
      {999999999999999.9, "1E+15"},
      {0.00001, "0.00001"},
      {1e-12, "0.000000000001"},
      {1e-15, "0.000000000000001"},
      {1e-16, "1E-16"},
      {1.0 / 12, "8.33333333333333E-02"},
      {-1.5e-5, "-0.000015"},
      {1e100, "1E+100"},
      {5e-324, "4.94065645841247E-324"},
  };
  for (const Case& c : cases) EXPECT_EQ(NumberToText(c.number), c.text);
}

TEST(NumberToText, IgnoresTheLocale) {
  const char* found = std::setlocale(LC_ALL, "de_DE.UTF-8");
  EXPECT_EQ(NumberToText(1234.5), "1234.5");
  EXPECT_EQ(LeadingNumber("1.5"), 1.5);
  EXPECT_EQ(NumberToPercent(12.345), "1235%");
  std::setlocale(LC_ALL, "C");
  if (!found) GTEST_SKIP() << "The German locale is not installed: checked in the C locale only.";
}

TEST(ValueToText, ConvertsEachKind) {
  EXPECT_EQ(ValueToText(Value()), "");
  EXPECT_EQ(ValueToText(Value(2026)), "2026");
  EXPECT_EQ(ValueToText(Value(" as it is ")), " as it is ");
  EXPECT_EQ(ValueToText(Value(true)), "True");
  EXPECT_EQ(ValueToText(Value(false)), "False");
  EXPECT_EQ(ValueToText(Value(CellError::kValue)), "Error 2015");
  EXPECT_EQ(ValueToText(Value(CellError::kNotAvailable)), "Error 2042");
}

TEST(NumberToPercent, RoundsHalvesAwayFromZeroInTheDecimalNumber) {
  struct Case {
    double fraction;
    const char* text;
  } const cases[] = {{0, "0%"},      {0.537, "54%"}, {0.54, "54%"},     {0.545, "55%"},
                     {0.145, "15%"}, {0.005, "1%"},  {0.00499, "0%"},   {-0.005, "-1%"},
                     {-0.004, "0%"}, {1, "100%"},    {12.345, "1235%"}, {0.999, "100%"},
                     {1e-300, "0%"}};
  for (const Case& c : cases) EXPECT_EQ(NumberToPercent(c.fraction), c.text) << c.fraction;
}

TEST(ZeroPadded, FillsUpButNeverCuts) {
  EXPECT_EQ(ZeroPadded(7, 4), "0007");
  EXPECT_EQ(ZeroPadded(12345, 4), "12345");
  EXPECT_EQ(ZeroPaddedHex(0x409, 4), "0409");
  EXPECT_EQ(ZeroPaddedHex(0xABCDE, 4), "ABCDE");
}

TEST(LeadingNumber, ReadsTheLongestDecimalPrefix) {
  struct Case {
    const char* text;
    double number;
  } const cases[] = {
      {"", 0},
      {"   ", 0},
      {"25", 25},
      {"  20", 20},
      {"12.5kg", 12.5},
      {"-3", -3},
      {"+3", 3},
      {"- 3", 0},
      {"+-3", 0},
      {".5", 0.5},
      {"5.", 5},
      {".", 0},
      {"1.2.3", 1.2},
      {"1e2x", 100},
      {"1E+2", 100},
      {"1e", 1},
      {"1e+", 1},
      {"1 4", 1},
      {"abc", 0},
      {"0x10", 0},
      {"inf", 0},
      {"nan", 0},
      {"\t5", 0},
      {"1,5", 1},
      {"1e999", kInfinity},
      {"-1e999", -kInfinity},
      {"1e-999", 0},
  };
  for (const Case& c : cases) EXPECT_EQ(LeadingNumber(c.text), c.number) << c.text;
}

TEST(TextToNumber, TakesOnlyTextsThatAreNumbersAsAWhole) {
  EXPECT_EQ(TextToNumber(" 12.5 "), 12.5);
  EXPECT_EQ(TextToNumber("-1e3"), -1000);
  for (const char* text : {"", " ", "12 kg", "1,000", "e5", "1e999", "--1"}) {
    EXPECT_EQ(TextToNumber(text), std::nullopt) << text;
  }
  EXPECT_TRUE(IsNumeric(Value()));
  EXPECT_TRUE(IsNumeric(Value(0)));
  EXPECT_TRUE(IsNumeric(Value(true)));
  EXPECT_TRUE(IsNumeric(Value("7")));
  EXPECT_FALSE(IsNumeric(Value("seven")));
  EXPECT_FALSE(IsNumeric(Value("")));
  EXPECT_FALSE(IsNumeric(Value(CellError::kDiv0)));
}

TEST(NumberToInteger, RoundsHalvesToTheEvenNeighbour) {
  struct Case {
    double number;
    std::optional<int> integer;
  } const cases[] = {{0.5, 0},
                     {1.5, 2},
                     {2.5, 2},
                     {-0.5, 0},
                     {-1.5, -2},
                     {-2.5, -2},
                     {2.500001, 3},
                     {0.49999999999999994, 0},
                     {2147483647.4, 2147483647},
                     {2147483647.5, std::nullopt},
                     {-2147483648.5, -2147483648},
                     {kInfinity, std::nullopt},
                     {std::nan(""), std::nullopt}};
  for (const Case& c : cases) EXPECT_EQ(NumberToInteger(c.number), c.integer) << c.number;
  EXPECT_EQ(TextToInteger(" 2.5 "), 2);
  EXPECT_EQ(TextToInteger("3e9"), std::nullopt);
  EXPECT_EQ(TextToInteger("3x"), std::nullopt);
}

TEST(IgnoringCase, ComparesAsciiAndAccentedLatinLetters) {
  EXPECT_TRUE(EqualsIgnoreCase("K", "k"));
  EXPECT_TRUE(EqualsIgnoreCase("", ""));
  EXPECT_TRUE(EqualsIgnoreCase("ÀÉÎÕÜÞ", "àéîõüþ"));
  EXPECT_TRUE(EqualsIgnoreCase("ĄĐĺŁŊŒŽŸ", "ąđĹłŋœžÿ"));
  EXPECT_FALSE(EqualsIgnoreCase("k", "kk"));
  EXPECT_FALSE(EqualsIgnoreCase("k", "k "));
  EXPECT_FALSE(EqualsIgnoreCase("×", "÷"));  // signs in the middle of the letters
  EXPECT_FALSE(EqualsIgnoreCase("İ", "i"));
  EXPECT_FALSE(EqualsIgnoreCase("é", "e"));
  EXPECT_FALSE(EqualsIgnoreCase("[", "{"));
}

TEST(IgnoringCase, EqualTextsFoldToTheSameKey) {
  const std::vector<std::string> texts = {"K",          "k",      "kk",   "ÀÉ", "àé",  "ĄĐŸ",
                                          "ąđÿ",        "×",      "÷",    "İ",  "i",   "",
                                          "\U0001F600", "\uFFFD", "\xE9", "é",  "\xC3"};
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      EXPECT_EQ(CaseFolded(a) == CaseFolded(b), EqualsIgnoreCase(a, b)) << a << " and " << b;
    }
  }
}

TEST(IgnoringCase, FindsTheFirstOccurrenceByItsBytePosition) {
  EXPECT_EQ(FindIgnoreCase("Index", "X"), 4u);
  EXPECT_EQ(FindIgnoreCase("ÉxX", "x"), 2u);
  EXPECT_EQ(FindIgnoreCase("abABab", "BA"), 1u);
  EXPECT_EQ(FindIgnoreCase("ab", "abc"), std::nullopt);
  EXPECT_EQ(FindIgnoreCase("", "x"), std::nullopt);
  EXPECT_EQ(FindIgnoreCase("any", ""), 0u);
  // Bytes that are no UTF-8 are compared as they are.
  EXPECT_EQ(FindIgnoreCase("\xFF\xC3", "\xC3"), 1u);
}

TEST(TrimBlanks, RemovesBlanksOnly) {
  EXPECT_EQ(TrimBlanks("  a b  "), "a b");
  EXPECT_EQ(TrimBlanks("\t a\n"), "\t a\n");
  EXPECT_EQ(TrimBlanks("   "), "");
}

}  // namespace
}  // namespace vantora
