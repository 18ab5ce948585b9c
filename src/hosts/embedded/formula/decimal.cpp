#include "formula/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace vantora::embedded {
namespace {

constexpr int kWidth = 11;
constexpr int kDigitsWithExponent = 6;

void DropTrailingZeros(std::string& digits) {
  while (!digits.empty() && digits.back() == '0') digits.pop_back();
}

std::string PlainText(const Decimal& number) {
  std::string text = number.Whole();
  if (text.empty()) text = "0";
  const int places = static_cast<int>(number.digits.size()) - number.point;
  if (places > 0) text += "." + number.Fraction(places);
  return text;
}

std::string ExponentText(Decimal number) {
  number.Round(kDigitsWithExponent - number.point);
  std::string text = number.digits.substr(0, 1);
  if (number.digits.size() > 1) text += "." + number.digits.substr(1);
  const int exponent = number.point - 1;
  const std::string power = std::to_string(std::abs(exponent));
  return text + (exponent < 0 ? "E-" : "E+") + (power.size() < 2 ? "0" : "") + power;
}

}  // namespace

Decimal::Decimal(double number) : negative(number < 0) {
  if (number == 0 || !std::isfinite(number)) return;
  char buffer[40];
  const char* end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(number),
                                  std::chars_format::scientific, 14)
                        .ptr;
  // d.dddddddddddddde[+-]xx
  const std::string_view shown(buffer, end - buffer);
  const std::size_t e = shown.find('e');
  std::from_chars(shown.data() + e + (shown[e + 1] == '+' ? 2 : 1), end, point);
  ++point;
  digits = shown[0];
  digits += shown.substr(2, e - 2);
  DropTrailingZeros(digits);
}

void Decimal::Round(int places) {
  const int kept = point + places;
  if (kept >= static_cast<int>(digits.size())) return;
  const bool up = kept >= 0 && digits[kept] >= '5';
  digits.resize(kept > 0 ? kept : 0);
  if (up) {
    std::size_t last = digits.size();
    while (last > 0 && digits[last - 1] == '9') --last;
    digits.resize(last);
    if (last > 0) {
      ++digits[last - 1];
    } else {
      digits = "1";
      ++point;
    }
  }
  DropTrailingZeros(digits);
  if (digits.empty()) point = 0;
}

std::string Decimal::Whole() const {
  if (point <= 0) return "";
  std::string whole = digits.substr(0, point);
  whole.resize(point, '0');
  return whole;
}

std::string Decimal::Fraction(int places) const {
  std::string fraction(point < 0 ? -point : 0, '0');
  if (point < static_cast<int>(digits.size())) fraction += digits.substr(point > 0 ? point : 0);
  fraction.resize(places, '0');
  return fraction;
}

std::string GeneralFormatText(double number) {
  Decimal exact(number);
  if (exact.IsZero()) return "0";
  const std::string sign = exact.negative ? "-" : "";
  std::string plain;
  if (exact.point <= kWidth && exact.point > -kWidth) {
    plain = PlainText(exact);
    if (plain.size() <= kWidth) return sign + plain;
    // Of a small fraction too few digits would be left.
    if (exact.point > -4) {
      Decimal rounded = exact;
      rounded.Round(std::max(0, kWidth - 1 - std::max(exact.point, 1)));
      plain = PlainText(rounded);
      if (plain.size() <= kWidth) return sign + plain;
    }
  }
  return sign + ExponentText(exact);
}

}  // namespace vantora::embedded
