// Every conversion between values and texts. All of them are independent of the user's locale and
// of the process's: the decimal separator is a point, and there is no thousands separator.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/value.h"

namespace vantora {

// What stands between the lines of a text in a message box or a dialog.
inline constexpr std::string_view kLineBreak = "\n";

// --- Values and numbers to text ---

// As the host's macro language converts: empty gives "", Booleans "True" and "False", an error
// value "Error 2015".
std::string ValueToText(const Value& value);

// Up to 15 significant digits, in plain notation where 15 digits suffice for the integer part or
// for the decimals ("0.00001"), else with a two-digit exponent ("1.5E+15", "8.33333333333333E-02").
std::string NumberToText(double number);

// Format "0%": 0.537 gives "54%". Halves are rounded away from zero, in the decimal number that a
// user would see (0.145 gives "15%").
std::string NumberToPercent(double fraction);

// At least `width` digits, filled up with leading zeros: (7, 4) gives "0007".
std::string ZeroPadded(unsigned number, std::size_t width);
// The same in upper-case hexadecimal digits.
std::string ZeroPaddedHex(unsigned number, std::size_t width);

// --- Texts and values to numbers ---

// The decimal number a text starts with, leading blanks skipped: " 12.5kg" gives 12.5. Sign,
// decimals and an exponent belong to the number; 0 for a text that does not start with one. A
// number beyond a double's range gives infinity, one too small 0.
double LeadingNumber(std::string_view text);

// The number that the whole text is, blanks around it ignored; nullopt when it is none or lies
// outside a double's range.
std::optional<double> TextToNumber(std::string_view text);

// True for numbers, Booleans, the empty value and texts that are numbers as a whole.
bool IsNumeric(const Value& value);

// To the nearest whole number; of two equally near ones the even one (2.5 gives 2).
double RoundHalfToEven(double number);
// Rounded half to even; nullopt when it is not finite or not within an int.
std::optional<int> NumberToInteger(double number);
// The same for a text that is a number as a whole; nullopt for any other.
std::optional<int> TextToInteger(std::string_view text);

// --- Texts ---

// Upper and lower case letters are the same in these two: A to Z, and the accented letters of the
// Latin-1 and Latin Extended-A ranges (U+00C0 to U+017E), which covers the languages of Europe that
// are written in Latin letters. The Turkish dotted and dotless i are letters of their own.
bool EqualsIgnoreCase(std::string_view a, std::string_view b);
// A key that is the same for all texts that EqualsIgnoreCase takes for equal, and for no others.
std::u32string CaseFolded(std::string_view text);
// Byte position in `text` of the first occurrence of `part` (0 for an empty part); nullopt when it
// does not occur.
std::optional<std::size_t> FindIgnoreCase(std::string_view text, std::string_view part);

// Without the blanks (U+0020 alone, not tabs or line breaks) at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace vantora
