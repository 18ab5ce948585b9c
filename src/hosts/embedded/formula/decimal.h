// A number as the 15 significant decimal digits that a worksheet shows of it.
#pragma once

#include <string>

namespace vantora::embedded {

// The digits are those of 0.ddd times ten to the power of `point`; none for 0.
struct Decimal {
  bool negative = false;
  std::string digits;
  int point = 0;

  explicit Decimal(double number);
  bool IsZero() const { return digits.empty(); }
  // Halves away from zero. `places` counts behind the decimal point; negative ones before it.
  void Round(int places);
  // The digits before the point, "" when there are none; and the first ones behind it.
  std::string Whole() const;
  std::string Fraction(int places) const;
};

// In the format "General": at most 11 characters beside the sign, else with an exponent.
std::string GeneralFormatText(double number);

}  // namespace vantora::embedded
