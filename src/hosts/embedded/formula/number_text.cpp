#include "formula/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "core/convert.h"
#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

// Takes `c` from the front when it is there.
bool Take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

bool TakeLast(std::string_view& text, char c) {
  if (text.empty() || text.back() != c) return false;
  text.remove_suffix(1);
  return true;
}

// The digits without thousands separators; nullopt when these do not part groups of three.
std::optional<std::string> WithoutSeparators(std::string_view text) {
  std::string digits;
  const std::size_t point = std::min(text.find_first_of(".eE"), text.size());
  const std::string_view whole = text.substr(0, point);
  if (whole.find(',') == std::string_view::npos) return std::string(text);
  const std::size_t first_group = whole.find(',');
  if (first_group < 1 || first_group > 3) return std::nullopt;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    const bool separator = i >= first_group && (i - first_group) % 4 == 0;
    if ((whole[i] == ',') != separator) return std::nullopt;
    if (!separator) digits.push_back(whole[i]);
  }
  if ((whole.size() - first_group) % 4 != 0) return std::nullopt;
  digits.append(text.substr(point));
  return digits;
}

std::optional<double> UnsignedNumber(std::string_view text) {
  if (text.empty() || EndOfNumber(text, 0) != text.size()) {
    if (text.find(',') == std::string_view::npos) return std::nullopt;
  }
  const std::optional<std::string> digits = WithoutSeparators(text);
  if (!digits || digits->find_first_of("0123456789") == std::string::npos) return std::nullopt;
  double number = 0;
  const char* end = digits->data() + digits->size();
  const auto [behind, error] = std::from_chars(digits->data(), end, number);
  if (behind != end || !(IsDigit(digits->front()) || digits->front() == '.')) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    // Too small is 0; too large is no number.
    return digits->find("e-") != std::string::npos || digits->find("E-") != std::string::npos
               ? std::optional<double>(0.0)
               : std::nullopt;
  }
  if (error != std::errc()) return std::nullopt;
  return number;
}

}  // namespace

std::optional<double> NumberFromText(std::string_view text) {
  text = TrimBlanks(text);
  bool negative = false, has_sign = false, has_currency = false, percent = false;
  if (text.size() > 2 && text.front() == '(' && text.back() == ')') {
    text = TrimBlanks(text.substr(1, text.size() - 2));
    negative = has_sign = true;
  }
  for (;;) {
    if (!has_currency && Take(text, '$')) {
      has_currency = true;
    } else if (!has_sign && (Take(text, '-') || Take(text, '+'))) {
      negative = *(text.data() - 1) == '-';
      has_sign = true;
    } else {
      break;
    }
    text = TrimBlanks(text);
  }
  if (TakeLast(text, '%')) {
    percent = true;
    text = TrimBlanks(text);
  }
  std::optional<double> number = UnsignedNumber(text);
  if (!number) return std::nullopt;
  if (percent) *number /= 100;
  return negative ? -*number : *number;
}

bool MayBeDateOrTime(std::string_view text) {
  text = TrimBlanks(text);
  bool has_digit = false, has_separator = false;
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (IsLetter(c)) {
      std::size_t end = i;
      while (end < text.size() && IsLetter(text[end])) ++end;
      const std::string word = UpperAscii(text.substr(i, end - i));
      static constexpr std::string_view kWords[] = {
          "JANUARY", "FEBRUARY",  "MARCH",   "APRIL",    "MAY",      "JUNE", "JULY",
          "AUGUST",  "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER", "AM",   "PM",
          "A",       "P",         "T",       "Z",        "SEPT"};
      bool known = false;
      for (std::string_view candidate : kWords) {
        known = known || word == candidate || (word.size() == 3 && candidate.substr(0, 3) == word);
      }
      if (!known) return false;
      has_separator = true;
      i = end;
      continue;
    }
    if (IsDigit(c)) {
      has_digit = true;
    } else if (c == '/' || c == '-' || c == ':') {
      has_separator = true;
    } else if (c != ' ' && c != ',' && c != '.') {
      return false;
    }
    ++i;
  }
  return has_digit && has_separator;
}

std::string GeneralText(double number) {
  if (number == 0) return "0";
  char buffer[40];
  char* end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(number),
                            std::chars_format::scientific, 14)
                  .ptr;
  // d.dddddddddddddde[+-]xx
  const std::string_view shown(buffer, end - buffer);
  const std::size_t e = shown.find('e');
  const int exponent = std::atoi(std::string(shown.substr(e + 1)).c_str());
  std::string digits = std::string(1, shown[0]) + std::string(shown.substr(2, e - 2));
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  const int count = static_cast<int>(digits.size());
  std::string out = number < 0 ? "-" : "";
  const int fraction_length = 2 + (-exponent - 1) + count;
  if (exponent >= 0 && exponent < 21) {
    if (count <= exponent + 1) return out + digits + std::string(exponent + 1 - count, '0');
    return out + digits.substr(0, exponent + 1) + "." + digits.substr(exponent + 1);
  }
  if (exponent < 0 && fraction_length <= 20) {
    return out + "0." + std::string(-exponent - 1, '0') + digits;
  }
  out += digits.substr(0, 1);
  if (count > 1) out += "." + digits.substr(1);
  out += exponent < 0 ? "E-" : "E+";
  const std::string power = std::to_string(std::abs(exponent));
  return out + (power.size() < 2 ? "0" : "") + power;
}

double RoundTo15Digits(double number) {
  if (!std::isfinite(number)) return number;
  char buffer[40];
  const auto written =
      std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::scientific, 14);
  double rounded = number;
  std::from_chars(buffer, written.ptr, rounded);
  return rounded;
}

}  // namespace vantora::embedded
