// Number formats of cells: "#,##0.00;[Red](#,##0.00)", "d mmm yyyy", "# ?/?". English names of
// months and days, point and comma, whatever the locale.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formula/scalar.h"

namespace vantora::embedded {

// One piece of a section.
struct FormatPiece {
  enum class Kind {
    kLiteral,      // text
    kDigit,        // sign: 0 # ?
    kPoint,        // the decimal point
    kExponent,     // sign: + shows a plus, - does not
    kSlash,        // of a fraction
    kDenominator,  // count: the denominator of all fractions
    kGeneral,
    kText,  // the text itself
    kYear,  // dates and times, from here on: count letters
    kBuddhistYear,
    kMonth,
    kDay,
    kHour,
    kMinute,
    kSecond,
    kElapsedHours,
    kElapsedMinutes,
    kElapsedSeconds,
    kSecondFraction,  // count digits
    kHalfDay,         // text: "AM/PM", "A/P", "a/p"
  };
  Kind kind = Kind::kLiteral;
  char sign = 0;
  int count = 0;
  std::string text;
};

struct FormatSection {
  enum class Type { kNumber, kFraction, kDate };
  enum class Condition { kNone, kLess, kLessOrEqual, kEqual, kNotEqual, kGreater, kGreaterOrEqual };

  Type type = Type::kNumber;
  std::vector<FormatPiece> pieces;
  Condition condition = Condition::kNone;
  double limit = 0;
  // Digits are parted in groups of three; the number is multiplied by ten to the power of `scale`.
  bool has_thousands = false;
  int scale = 0;
  bool has_text = false;
  bool has_color = false;

  bool Holds(double number) const;
};

class NumberFormat {
 public:
  // Never fails; a code that can't be read shows nothing.
  explicit NumberFormat(std::string_view code);

  // The number as text; nullopt when the format can't show it (a date before the calendar's first
  // day) or can't be read.
  std::optional<std::string> Show(double number, bool date_1904) const;
  // A text in its section; itself where the format has none for texts.
  std::optional<std::string> Show(std::string_view text) const;

  // --- What CELL tells of a format ---

  // Its kind in short: "G", "F2", ",0", "C2", "P0", "S2", "D1" to "D9", with "-" where negative
  // numbers have a colour and "()" where positive ones have parentheses.
  std::string Abbreviation() const;
  bool ColorsNegatives() const;
  bool HasParentheses() const;

 private:
  // The section for a number, and whether the minus sign goes without saying; null where no
  // section's condition holds.
  const FormatSection* SectionFor(double number, bool& hides_sign) const;

  bool is_readable_ = true;
  // Those for numbers, and behind them the one for texts.
  std::vector<FormatSection> sections_;
  std::optional<FormatSection> text_section_;
};

// Formats as they were read, so that a code is read once for many values. Bounded: when there are
// too many, all are forgotten.
class NumberFormats {
 public:
  // Valid until the next call.
  const NumberFormat& Of(std::string_view code);

 private:
  std::map<std::string, NumberFormat, std::less<>> formats_;
};

// The code of a format that workbooks know by number alone (0 to 49); "General" for all others.
std::string_view BuiltInNumberFormat(unsigned id);

// --- The three types of sections; the number is not negative, `sign` stands before what is left of
// it after rounding. ---

std::string ShowAsNumber(const FormatSection& section, double number, std::string_view sign);
std::string ShowAsFraction(const FormatSection& section, double number, std::string_view sign);
// Nullopt outside the calendar.
std::optional<std::string> ShowAsDate(const FormatSection& section, double number, bool date_1904);

}  // namespace vantora::embedded
