// Numbers as texts, the way a worksheet reads and writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantora::embedded {

// The number that the whole text is as it would be typed: "1,234.5", "12%", "(3)", "1e3", "-$5",
// blanks around it ignored. nullopt for any other text, dates and times included.
std::optional<double> NumberFromText(std::string_view text);

// Whether a text that is no number might be read as a date, a time or a fraction ("1/2/2020",
// "3-Mar", "12:30", "1 1/2"), which NumberFromText does not.
bool MayBeDateOrTime(std::string_view text);

// A number joined to a text: up to 15 significant digits, in plain notation up to 21 digits before
// the point, or 20 characters for a fraction, else with an exponent ("1.5E+21", "3.3E-20").
std::string GeneralText(double number);

// The number that shows the same 15 significant digits.
double RoundTo15Digits(double number);

}  // namespace vantora::embedded
