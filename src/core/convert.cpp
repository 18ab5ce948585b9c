#include "core/convert.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vantora {
namespace {

constexpr int kSignificantDigits = 15;

// A finite number rounded to 15 significant digits: d.ddd... x 10^exponent.
struct DecimalForm {
  bool negative = false;
  std::string digits;  // at least one; no trailing zeros behind the first
  int exponent = 0;    // of the first digit
};

DecimalForm ToDecimalForm(double number) {
  std::array<char, 32> buffer;
  auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(number),
                           std::chars_format::scientific, kSignificantDigits - 1)
                 .ptr;
  std::string_view text(buffer.data(), end - buffer.data());
  std::size_t exponent_at = text.find('e');
  DecimalForm form;
  form.negative = number < 0;
  form.digits = text.substr(0, 1);
  form.digits += text.substr(2, exponent_at - 2);
  form.digits.erase(std::max<std::size_t>(form.digits.find_last_not_of('0') + 1, 1));
  std::string_view exponent = text.substr(exponent_at + 1);
  if (exponent.front() == '+') exponent.remove_prefix(1);
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), form.exponent);
  return form;
}

std::string ScientificText(const DecimalForm& form) {
  std::string text = form.digits.substr(0, 1);
  if (form.digits.size() > 1) text += "." + form.digits.substr(1);
  text += form.exponent < 0 ? "E-" : "E+";
  return text + ZeroPadded(static_cast<unsigned>(std::abs(form.exponent)), 2);
}

std::string PlainText(const DecimalForm& form) {
  if (form.exponent < 0) return "0." + std::string(-form.exponent - 1, '0') + form.digits;
  std::size_t integer_digits = static_cast<std::size_t>(form.exponent) + 1;
  if (form.digits.size() <= integer_digits) {
    return form.digits + std::string(integer_digits - form.digits.size(), '0');
  }
  return form.digits.substr(0, integer_digits) + "." + form.digits.substr(integer_digits);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

struct NumberPrefix {
  double number = 0;
  std::size_t length = 0;  // 0 when the text does not start with a number
};

// Length of the longest prefix of the form [+-]digits[.digits][e[+-]digits], with digits before or
// behind the point; 0 when there is none.
std::size_t NumberPrefixLength(std::string_view text) {
  std::size_t at = 0;
  auto skip_digits = [&] {
    std::size_t start = at;
    while (at < text.size() && IsDigit(text[at])) ++at;
    return at - start;
  };
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  std::size_t digits = skip_digits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skip_digits();
  }
  if (digits == 0) return 0;
  std::size_t mantissa_end = at;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    if (skip_digits() > 0) return at;
  }
  return mantissa_end;
}

NumberPrefix ReadNumberPrefix(std::string_view text) {
  std::size_t length = NumberPrefixLength(text);
  if (length == 0) return {};
  const char* begin = text.data() + (text.front() == '+' ? 1 : 0);
  double number = 0;
  auto result = std::from_chars(begin, text.data() + length, number);
  if (result.ec == std::errc::result_out_of_range) {
    // from_chars leaves the number as it was, be it too large or too small.
    std::size_t exponent_at = text.substr(0, length).find_first_of("eE");
    bool too_small = exponent_at != std::string_view::npos && text[exponent_at + 1] == '-';
    number = too_small ? 0 : std::numeric_limits<double>::infinity();
    if (text.front() == '-') number = -number;
  }
  return {number, length};
}

// Reads one UTF-8 character at `at` and moves behind it; a byte that starts no character is read as
// itself, so that any text can be compared.
char32_t NextCharacter(std::string_view text, std::size_t& at) {
  auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  unsigned char first = byte(at++);
  int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1 : 0;
  if (more == 0 || at + more > text.size()) return first;
  char32_t character = first & (0x3F >> more);
  for (int i = 0; i < more; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return first;
    character = (character << 6) | (byte(at + i) & 0x3F);
  }
  at += more;
  return character;
}

char32_t FoldCase(char32_t c) {
  if (c >= U'A' && c <= U'Z') return c + 0x20;
  if (c < 0xC0 || c > 0x17E) return c;
  if (c <= 0xDE) return c == 0xD7 ? c : c + 0x20;  // not the multiplication sign
  if (c < 0x100 || c == 0x130 || c == 0x131) return c;
  if (c == 0x178) return 0xFF;
  // Pairs of an upper and a lower case letter; the upper one is even, odd in two stretches.
  bool odd_pairs = (c >= 0x139 && c <= 0x148) || c >= 0x179;
  bool pairs = c != 0x138 && c != 0x149;
  return pairs && (c % 2 == 1) == odd_pairs ? c + 1 : c;
}

// Whether `part` stands at the start of `text`.
bool StartsWithIgnoreCase(std::string_view text, std::string_view part) {
  std::size_t in_text = 0;
  std::size_t in_part = 0;
  while (in_part < part.size()) {
    if (in_text >= text.size()) return false;
    if (FoldCase(NextCharacter(text, in_text)) != FoldCase(NextCharacter(part, in_part))) {
      return false;
    }
  }
  return true;
}

std::string Padded(unsigned number, std::size_t width, int base) {
  std::array<char, 16> buffer;
  auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, base).ptr;
  std::string digits(buffer.data(), end);
  for (char& digit : digits) {
    if (digit >= 'a') digit = static_cast<char>(digit - 'a' + 'A');
  }
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

}  // namespace

std::string ValueToText(const Value& value) {
  if (value.IsText()) return value.AsText();
  if (value.IsNumber()) return NumberToText(value.AsNumber());
  if (value.IsBoolean()) return value.AsBoolean() ? "True" : "False";
  if (value.IsError()) return "Error " + std::to_string(static_cast<int>(value.AsError()));
  return "";
}

std::string NumberToText(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number < 0 ? "-Infinity" : "Infinity";
  if (number == 0) return "0";
  DecimalForm form = ToDecimalForm(number);
  int decimals = static_cast<int>(form.digits.size()) - 1 - form.exponent;
  bool plain = form.exponent < kSignificantDigits && decimals <= kSignificantDigits;
  return (form.negative ? "-" : "") + (plain ? PlainText(form) : ScientificText(form));
}

std::string NumberToPercent(double fraction) {
  if (!std::isfinite(fraction)) return NumberToText(fraction) + "%";
  // Rounding looks at 15 digits: 0.145 x 100 is 14.4999999999999982 as a double.
  double percent = LeadingNumber(ScientificText(ToDecimalForm(std::fabs(fraction) * 100)));
  std::string digits = NumberToText(std::round(percent));
  return (fraction < 0 && digits != "0" ? "-" : "") + digits + "%";
}

std::string ZeroPadded(unsigned number, std::size_t width) { return Padded(number, width, 10); }

std::string ZeroPaddedHex(unsigned number, std::size_t width) { return Padded(number, width, 16); }

double LeadingNumber(std::string_view text) {
  std::size_t start = text.find_first_not_of(' ');
  return start == std::string_view::npos ? 0 : ReadNumberPrefix(text.substr(start)).number;
}

std::optional<double> TextToNumber(std::string_view text) {
  std::string_view trimmed = TrimBlanks(text);
  NumberPrefix prefix = ReadNumberPrefix(trimmed);
  if (prefix.length == 0 || prefix.length != trimmed.size() || !std::isfinite(prefix.number)) {
    return std::nullopt;
  }
  return prefix.number;
}

bool IsNumeric(const Value& value) {
  if (value.IsText()) return TextToNumber(value.AsText()).has_value();
  return !value.IsError();
}

double RoundHalfToEven(double number) {
  double below = std::floor(number);
  double rest = number - below;
  if (rest < 0.5) return below;
  if (rest > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::optional<int> NumberToInteger(double number) {
  double rounded = RoundHalfToEven(number);
  if (!(rounded >= std::numeric_limits<int>::min() && rounded <= std::numeric_limits<int>::max())) {
    return std::nullopt;
  }
  return static_cast<int>(rounded);
}

std::optional<int> TextToInteger(std::string_view text) {
  std::optional<double> number = TextToNumber(text);
  return number ? NumberToInteger(*number) : std::nullopt;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  std::size_t in_a = 0;
  std::size_t in_b = 0;
  while (in_a < a.size() && in_b < b.size()) {
    if (FoldCase(NextCharacter(a, in_a)) != FoldCase(NextCharacter(b, in_b))) return false;
  }
  return in_a == a.size() && in_b == b.size();
}

std::u32string CaseFolded(std::string_view text) {
  std::u32string folded;
  folded.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) folded += FoldCase(NextCharacter(text, at));
  return folded;
}

std::optional<std::size_t> FindIgnoreCase(std::string_view text, std::string_view part) {
  for (std::size_t at = 0; at <= text.size();) {
    if (StartsWithIgnoreCase(text.substr(at), part)) return at;
    if (at == text.size()) break;
    NextCharacter(text, at);
  }
  return std::nullopt;
}

std::string_view TrimBlanks(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace vantora
