// Angles, combinations, random numbers.
#include <cmath>
#include <numbers>
#include <random>

#include "formula/functions.h"

namespace vantora::embedded {
namespace {

// Beyond this the host gives up reducing an angle.
constexpr double kLargestAngle = 134217728;

template <double (*kFunction)(double)>
Operand OfNumber(Call& call) {
  return Scalar::Number(kFunction(call.Number(0)));
}

template <double (*kFunction)(double)>
Operand OfAngle(Call& call) {
  const double angle = call.Number(0);
  if (std::fabs(angle) >= kLargestAngle) return Scalar::Error(CellError::kNum);
  return Scalar::Number(kFunction(angle));
}

// x comes first, otherwise than in mathematics.
Operand Atan2(Call& call) {
  const double x = call.Number(0), y = call.Number(1);
  if (x == 0 && y == 0) return Scalar::Error(CellError::kDiv0);
  return Scalar::Number(std::atan2(y, x));
}

double ToDegrees(double radians) { return radians * 180 / std::numbers::pi; }
double ToRadians(double degrees) { return degrees * std::numbers::pi / 180; }

Operand Factorial(Call& call) {
  const double number = std::trunc(call.Number(0));
  if (number < 0 || number > 170) return Scalar::Error(CellError::kNum);
  double product = 1;
  for (int factor = 2; factor <= number; ++factor) product *= factor;
  return Scalar::Number(product);
}

Operand Combinations(Call& call) {
  const double number = std::trunc(call.Number(0));
  double chosen = std::trunc(call.Number(1));
  if (number < 0 || chosen < 0 || number < chosen) return Scalar::Error(CellError::kNum);
  chosen = std::min(chosen, number - chosen);
  double result = 1;
  // Every step gives a whole number, until the largest is passed.
  for (double i = 1; i <= chosen && std::isfinite(result); ++i) {
    result = result * (number - chosen + i) / i;
  }
  return Scalar::Number(result < 1e15 ? std::round(result) : result);
}

double RandomNumber() {
  static thread_local std::mt19937_64 generator{std::random_device{}()};
  return std::uniform_real_distribution<double>(0, 1)(generator);
}

Operand Random(Call&) { return Scalar::Number(RandomNumber()); }

Operand RandomBetween(Call& call) {
  const double bottom = std::ceil(call.Number(0)), top = std::floor(call.Number(1));
  if (bottom > top) return Scalar::Error(CellError::kNum);
  return Scalar::Number(bottom + std::floor(RandomNumber() * (top - bottom + 1)));
}

// A number's evenness; of a Boolean there is none.
std::optional<bool> IsEvenNumber(Call& call) {
  if (call.Value(0).IsBoolean()) call.Fail(CellError::kValue);
  const double number = std::trunc(call.Number(0));
  if (call.failed()) return std::nullopt;
  return std::fmod(number, 2) == 0;
}
Operand IsEven(Call& call) { return Scalar::Boolean(IsEvenNumber(call).value_or(false)); }
Operand IsOdd(Call& call) { return Scalar::Boolean(!IsEvenNumber(call).value_or(false)); }

constexpr FunctionEntry kFunctions[] = {
    {"ACOS", 1, 1, "v", OfNumber<std::acos>},
    {"ACOSH", 1, 1, "v", OfNumber<std::acosh>},
    {"ASIN", 1, 1, "v", OfNumber<std::asin>},
    {"ASINH", 1, 1, "v", OfNumber<std::asinh>},
    {"ATAN", 1, 1, "v", OfNumber<std::atan>},
    {"ATAN2", 2, 2, "v", Atan2},
    {"ATANH", 1, 1, "v", OfNumber<std::atanh>},
    {"COMBIN", 2, 2, "v", Combinations},
    {"COS", 1, 1, "v", OfAngle<std::cos>},
    {"COSH", 1, 1, "v", OfNumber<std::cosh>},
    {"DEGREES", 1, 1, "v", OfNumber<ToDegrees>},
    {"FACT", 1, 1, "v", Factorial},
    {"ISEVEN", 1, 1, "v", IsEven},
    {"ISODD", 1, 1, "v", IsOdd},
    {"RADIANS", 1, 1, "v", OfNumber<ToRadians>},
    {"RAND", 0, 0, "v", Random, kVolatile},
    {"RANDBETWEEN", 2, 2, "v", RandomBetween, kVolatile},
    {"SIN", 1, 1, "v", OfAngle<std::sin>},
    {"SINH", 1, 1, "v", OfNumber<std::sinh>},
    {"TAN", 1, 1, "v", OfAngle<std::tan>},
    {"TANH", 1, 1, "v", OfNumber<std::tanh>},
};

}  // namespace

std::span<const FunctionEntry> TrigonometryFunctions() { return kFunctions; }

}  // namespace vantora::embedded
