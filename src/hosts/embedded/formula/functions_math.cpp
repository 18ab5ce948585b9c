// Arithmetic, rounding, powers and logarithms, sums of products.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "formula/functions.h"
#include "formula/number_text.h"

namespace vantora::embedded {
namespace {

// --- Rounding, by the 15 digits that a user sees ---

enum class Direction { kNearest, kAwayFromZero, kTowardsZero };

double PowerOfTen(int exponent) { return std::pow(10.0, exponent); }

double RoundWhole(double number, Direction direction) {
  const double magnitude = std::fabs(number);
  if (magnitude >= 1e15) return number;
  double whole = std::floor(magnitude);
  double rest = magnitude - whole;
  // Close to where the direction turns, the digits beyond the 15th must not decide.
  const double turn = direction == Direction::kNearest ? 0.5 : 0;
  if (std::fabs(rest - turn) < 1e-3 || rest > 0.999) {
    const double shown = RoundTo15Digits(magnitude);
    whole = std::floor(shown);
    rest = shown - whole;
  }
  if (direction == Direction::kNearest ? rest >= 0.5
                                       : direction == Direction::kAwayFromZero && rest > 0) {
    whole += 1;
  }
  return std::copysign(whole, number);
}

Scalar RoundTo(double number, int digits, Direction direction) {
  if (number == 0 || !std::isfinite(number)) return Scalar::Number(number);
  // Beyond the digits that a number has nothing is left to round; far before them it is 0.
  digits = std::clamp(digits, -400, 400);
  const int magnitude = static_cast<int>(std::floor(std::log10(std::fabs(number))));
  if (digits + magnitude > 15) return Scalar::Number(number);
  if (digits < -308 || (digits + magnitude < -2 && direction != Direction::kAwayFromZero)) {
    return Scalar::Number(0);
  }
  if (digits >= 0) {
    const double factor = PowerOfTen(digits);
    return Scalar::Number(RoundWhole(number * factor, direction) / factor);
  }
  const double factor = PowerOfTen(-digits);
  return Scalar::Number(RoundWhole(number / factor, direction) * factor);
}

Operand Round(Call& call) { return RoundTo(call.Number(0), call.Integer(1), Direction::kNearest); }
Operand RoundUp(Call& call) {
  return RoundTo(call.Number(0), call.Integer(1), Direction::kAwayFromZero);
}
Operand RoundDown(Call& call) {
  return RoundTo(call.Number(0), call.Integer(1), Direction::kTowardsZero);
}
Operand Truncate(Call& call) {
  return RoundTo(call.Number(0), call.Integer(1, 0), Direction::kTowardsZero);
}

double FloorAsShown(double number) {
  const double floor = std::floor(number);
  return floor == number ? number : std::floor(RoundTo15Digits(number));
}

Operand Int(Call& call) { return Scalar::Number(FloorAsShown(call.Number(0))); }

Operand Mod(Call& call) {
  const double number = call.Number(0), divisor = call.Number(1);
  if (divisor == 0) return Scalar::Error(CellError::kDiv0);
  // The host gives up where the quotient has too many digits.
  if (std::fabs(number / divisor) >= 1125900000000.0) return Scalar::Error(CellError::kNum);
  return Scalar::Number(number - divisor * FloorAsShown(number / divisor));
}

Operand Quotient(Call& call) {
  const double number = call.Number(0), divisor = call.Number(1);
  if (divisor == 0) return Scalar::Error(CellError::kDiv0);
  return Scalar::Number(std::trunc(number / divisor));
}

// To the multiple of a step in the direction of `up`; the step's sign is the number's.
Operand ToMultiple(Call& call, bool up) {
  const double number = call.Number(0), step = call.Number(1);
  if (number == 0) return Scalar::Number(0);
  if (step == 0) return up ? Scalar::Number(0) : Scalar::Error(CellError::kDiv0);
  if (number > 0 && step < 0) return Scalar::Error(CellError::kNum);
  const double quotient = number / step;
  // Against a step of the other sign "up" is towards zero, "down" away from it, both by the value.
  return Scalar::Number(step * (up ? -FloorAsShown(-quotient) : FloorAsShown(quotient)));
}

// With a negative number and a positive step, the quotient is negative: its ceiling is towards
// zero.
Operand Ceiling(Call& call) { return ToMultiple(call, true); }
Operand Floor(Call& call) { return ToMultiple(call, false); }

Operand RoundToMultiple(Call& call) {
  const double number = call.Number(0), step = call.Number(1);
  if (number == 0 || step == 0) return Scalar::Number(0);
  if ((number < 0) != (step < 0)) return Scalar::Error(CellError::kNum);
  // Unlike the other rounding functions it takes the quotient to its last bit: of 6.05 and 0.1 that
  // is less than 60.5, so that the result is 6.
  return Scalar::Number(step * std::round(number / step));
}

double AwayToParity(double number, int parity) {
  double whole = RoundWhole(number, Direction::kAwayFromZero);
  if (std::fmod(std::fabs(whole), 2) != parity) whole += number < 0 ? -1 : 1;
  return whole;
}
Operand Even(Call& call) { return Scalar::Number(AwayToParity(call.Number(0), 0)); }
Operand Odd(Call& call) { return Scalar::Number(AwayToParity(call.Number(0), 1)); }

// --- Powers and logarithms ---

Operand Abs(Call& call) { return Scalar::Number(std::fabs(call.Number(0))); }

Operand Sign(Call& call) {
  const double number = call.Number(0);
  return Scalar::Number((number > 0) - (number < 0));
}

Operand SquareRoot(Call& call) { return Scalar::Number(std::sqrt(call.Number(0))); }
Operand PowerOf(Call& call) { return Power(call.Number(0), call.Number(1)); }
Operand Exp(Call& call) { return Scalar::Number(std::exp(call.Number(0))); }

Scalar Logarithm(double number, double (*logarithm)(double)) {
  return number <= 0 ? Scalar::Error(CellError::kNum) : Scalar::Number(logarithm(number));
}
Operand Ln(Call& call) { return Logarithm(call.Number(0), std::log); }
Operand Log10(Call& call) { return Logarithm(call.Number(0), std::log10); }

Operand Log(Call& call) {
  const double number = call.Number(0), base = call.Number(1, 10.0);
  if (number <= 0 || base <= 0) return Scalar::Error(CellError::kNum);
  if (base == 1) return Scalar::Error(CellError::kDiv0);
  if (base == 10) return Scalar::Number(std::log10(number));
  return Scalar::Number(std::log(number) / std::log(base));
}

Operand Pi(Call&) { return Scalar::Number(std::numbers::pi); }

// --- Sums and products ---

Operand Sum(Call& call) {
  double sum = 0;
  ForEachNumber(call, 0, [&](double number) { sum += number; });
  return Scalar::Number(sum);
}

Operand SumOfSquares(Call& call) {
  double sum = 0;
  ForEachNumber(call, 0, [&](double number) { sum += number * number; });
  return Scalar::Number(sum);
}

Operand Product(Call& call) {
  double product = 1;
  bool any = false;
  const auto multiply = [&](double number) {
    product *= number;
    any = true;
  };
  for (std::size_t i = 0; i < call.size(); ++i) {
    // An argument that is left out is no factor.
    if (!call[i].IsMissing()) ForEachNumberOf(call, call[i], multiply);
  }
  return Scalar::Number(any ? product : 0);
}

// An error value anywhere in the arguments becomes the result.
bool FindErrors(Call& call) {
  for (std::size_t i = 0; i < call.size(); ++i) {
    ForEachValueOf(call, call[i], [&](const Scalar& value) { call.FailIfError(value); });
  }
  return call.failed() || call.evaluator().stopped();
}

Operand SumProduct(Call& call) {
  const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(call[0]);
  for (std::size_t i = 0; i < call.size(); ++i) {
    if (!size || Evaluator::SizeOf(call[i]) != size) return Scalar::Error(CellError::kValue);
  }
  if (FindErrors(call)) return {};
  Evaluator& evaluator = call.evaluator();
  double sum = 0;
  const auto add = [&](int row, int column, const Scalar& first) {
    // What is no number counts as 0.
    double product = first.IsNumber() ? first.number : 0;
    for (std::size_t i = 1; i < call.size() && product != 0; ++i) {
      const Scalar factor = evaluator.ElementAt(call[i], row, column);
      product *= factor.IsNumber() ? factor.number : 0;
    }
    sum += product;
  };
  if (call[0].IsBlock()) {
    const Area area = call[0].block.area;
    evaluator.ForEachCell(call[0].block, [&](int row, int column, const Scalar& value) {
      add(row - area.first_row, column - area.first_column, value);
    });
  } else {
    for (int row = 0; row < size->first; ++row) {
      for (int column = 0; column < size->second; ++column) {
        add(row, column, evaluator.ElementAt(call[0], row, column));
      }
    }
  }
  return Scalar::Number(sum);
}

constexpr FunctionEntry kFunctions[] = {
    {"ABS", 1, 1, "v", Abs},
    {"CEILING", 2, 2, "v", Ceiling},
    {"EVEN", 1, 1, "v", Even},
    {"EXP", 1, 1, "v", Exp},
    {"FLOOR", 2, 2, "v", Floor},
    {"INT", 1, 1, "v", Int},
    {"LN", 1, 1, "v", Ln},
    {"LOG", 1, 2, "v", Log},
    {"LOG10", 1, 1, "v", Log10},
    {"MOD", 2, 2, "v", Mod},
    {"MROUND", 2, 2, "v", RoundToMultiple},
    {"ODD", 1, 1, "v", Odd},
    {"PI", 0, 0, "v", Pi},
    {"POWER", 2, 2, "v", PowerOf},
    {"PRODUCT", 1, kAnyCount, "r", Product},
    {"QUOTIENT", 2, 2, "v", Quotient},
    {"ROUND", 2, 2, "v", Round},
    {"ROUNDDOWN", 2, 2, "v", RoundDown},
    {"ROUNDUP", 2, 2, "v", RoundUp},
    {"SIGN", 1, 1, "v", Sign},
    {"SQRT", 1, 1, "v", SquareRoot},
    {"SUM", 1, kAnyCount, "r", Sum},
    {"SUMPRODUCT", 1, kAnyCount, "a", SumProduct},
    {"SUMSQ", 1, kAnyCount, "r", SumOfSquares},
    {"TRUNC", 1, 2, "v", Truncate},
};

}  // namespace

std::span<const FunctionEntry> MathFunctions() { return kFunctions; }

}  // namespace vantora::embedded
