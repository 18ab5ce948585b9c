// Operators on single values.
#include <algorithm>
#include <cmath>

#include "formula/date_text.h"
#include "formula/evaluator.h"
#include "formula/functions.h"
#include "formula/number_text.h"

namespace vantora::embedded {
namespace {

using Kind = Node::Kind;

Scalar Arithmetic(Kind kind, double a, double b) {
  switch (kind) {
    case Kind::kAdd:
      return Scalar::Number(a + b);
    case Kind::kSubtract:
      return Scalar::Number(a - b);
    case Kind::kMultiply:
      return Scalar::Number(a * b);
    case Kind::kDivide:
      return b == 0 ? Scalar::Error(CellError::kDiv0) : Scalar::Number(a / b);
    case Kind::kPower:
      return Power(a, b);
    case Kind::kMinus:
      return Scalar::Number(-a);
    default:
      return Scalar::Number(a / 100);
  }
}

}  // namespace

bool RelationHolds(Kind relation, int order) {
  switch (relation) {
    case Kind::kEqual:
      return order == 0;
    case Kind::kNotEqual:
      return order != 0;
    case Kind::kLess:
      return order < 0;
    case Kind::kLessOrEqual:
      return order <= 0;
    case Kind::kGreater:
      return order > 0;
    default:
      return order >= 0;
  }
}

Scalar Power(double base, double exponent) {
  if (base == 0 && exponent == 0) return Scalar::Error(CellError::kNum);
  if (base == 0 && exponent < 0) return Scalar::Error(CellError::kDiv0);
  if (base < 0 && exponent != std::trunc(exponent)) {
    // Of a negative number there is a real root when the exponent is 1/3, 1/5, 1/7 ...
    const double degree = std::round(1 / exponent);
    if (std::fmod(degree, 2) == 0 || exponent != 1 / degree) return Scalar::Error(CellError::kNum);
    return Scalar::Number(-std::pow(-base, exponent));
  }
  return Scalar::Number(std::pow(base, exponent));
}

Scalar ToNumber(Evaluator& evaluator, const Scalar& value) {
  switch (value.kind) {
    case CellKind::kNumber:
    case CellKind::kError:
      return value;
    case CellKind::kBoolean:
      return Scalar::Number(value.boolean);
    case CellKind::kText: {
      if (const std::optional<double> number = NumberFromText(value.text)) {
        return Scalar::Number(*number);
      }
      // Without its year, a date would depend on the day of the calculation.
      constexpr int kNoYear = -1;
      const DateText date = ReadDateTime(value.text, evaluator.model().date_1904, kNoYear);
      if (date.kind == DateText::Kind::kDateTime) {
        return Scalar::Number(date.value.day + date.value.time);
      }
      if (MayBeDateOrTime(value.text)) {
        evaluator.Stop("reading the text \"" + std::string(value.text) +
                       "\" as a date or time is not supported");
      }
      return Scalar::Error(CellError::kValue);
    }
    default:
      return Scalar::Number(0);
  }
}

Scalar Calculate(Evaluator& evaluator, Kind kind, const Scalar& a, const Scalar& b) {
  if (a.IsError()) return a;
  if (kind == Kind::kPlus) return a;
  const bool is_unary = kind == Kind::kMinus || kind == Kind::kPercent;
  const bool is_arithmetic = is_unary || (kind >= Kind::kAdd && kind <= Kind::kPower);
  if (!is_arithmetic && b.IsError()) return b;
  if (kind == Kind::kJoin) {
    std::string joined = TextOf(a);
    joined += TextOf(b);
    return Scalar::Text(evaluator.Keep(std::move(joined)));
  }
  if (!is_arithmetic) {
    return Scalar::Boolean(RelationHolds(kind, CompareScalars(a, b)));
  }
  const Scalar left = ToNumber(evaluator, a);
  if (left.IsError()) return left;
  if (is_unary) return Arithmetic(kind, left.number, 0);
  const Scalar right = ToNumber(evaluator, b);
  if (right.IsError()) return right;
  return Arithmetic(kind, left.number, right.number);
}

}  // namespace vantora::embedded
