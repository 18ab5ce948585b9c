// Numbers shown in a format: TEXT, FIXED, DOLLAR.
#include <charconv>

#include "formula/decimal.h"
#include "formula/functions.h"
#include "formula/number_format.h"
#include "formula/number_text.h"

namespace vantora::embedded {
namespace {

Operand ShownOrError(Call& call, std::optional<std::string> shown) {
  if (!shown) return Scalar::Error(CellError::kValue);
  return call.MakeText(*std::move(shown));
}

// A text that is a number is formatted as one; a Boolean stays what it is.
Operand Text(Call& call) {
  const Scalar value = call.Value(0);
  const std::string_view code = call.Text(1);
  if (value.IsBoolean()) return call.MakeText(TextOf(value));
  if (call.failed() || code.empty()) return Scalar::Text("");
  const NumberFormat& format = call.evaluator().model().number_formats.Of(code);
  if (value.IsText()) {
    const std::optional<double> number = NumberFromText(value.text);
    if (!number && MayBeDateOrTime(value.text)) {
      call.NumberOf(value);
      return {};
    }
    if (!number) return ShownOrError(call, format.Show(value.text));
    return ShownOrError(call, format.Show(*number, call.evaluator().model().date_1904));
  }
  return ShownOrError(call, format.Show(call.NumberOf(value), call.evaluator().model().date_1904));
}

constexpr int kMostDecimals = 127;

// The number rounded to the decimals, which may be negative, and how many of them are shown.
struct Rounded {
  double number = 0;
  std::string decimals;

  Rounded(double value, int places) {
    Decimal decimal(value);
    decimal.Round(places);
    number = decimal.IsZero() ? 0 : value;
    if (places > 0) decimals = "." + std::string(places, '0');
    if (places < 0 && number != 0) {
      const std::string whole = decimal.Whole();
      std::from_chars(whole.data(), whole.data() + whole.size(), number);
      if (value < 0) number = -number;
    }
  }
};

Operand Fixed(Call& call) {
  const double number = call.Number(0);
  const int places = call.Integer(1, 2);
  const bool without_commas = call.Boolean(2, false);
  if (places > kMostDecimals) return Scalar::Error(CellError::kValue);
  const Rounded rounded(number, places);
  const NumberFormat& format = call.evaluator().model().number_formats.Of(
      (without_commas ? "0" : "#,##0") + rounded.decimals);
  return ShownOrError(call, format.Show(rounded.number, false));
}

Operand Dollar(Call& call) {
  const double number = call.Number(0);
  const int places = call.Integer(1, 2);
  if (places > kMostDecimals) return Scalar::Error(CellError::kValue);
  const Rounded rounded(number, places);
  const std::string code = "$#,##0" + rounded.decimals;
  return ShownOrError(call, call.evaluator()
                                .model()
                                .number_formats.Of(code + ";(" + code + ")")
                                .Show(rounded.number, false));
}

constexpr FunctionEntry kFunctions[] = {
    {"DOLLAR", 1, 2, "v", Dollar},
    {"FIXED", 1, 3, "v", Fixed},
    {"TEXT", 2, 2, "v", Text},
};

}  // namespace

std::span<const FunctionEntry> FormatFunctions() { return kFunctions; }

}  // namespace vantora::embedded
