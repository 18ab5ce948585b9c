// Correlation, straight lines and growth curves through observations, products of matrices.
#include <cmath>
#include <vector>

#include "formula/functions.h"
#include "formula/least_squares.h"

namespace vantora::embedded {
namespace {

// --- Pairs of numbers ---

// Sums over the pairs of two operands, taken about their means.
struct PairSums {
  double count = 0;
  double mean_a = 0, mean_b = 0;
  double squares_a = 0, squares_b = 0, products = 0;
};

// Pairs where either is no number do not count. #N/A when the operands differ in their number of
// elements.
std::optional<PairSums> SumPairs(Call& call, std::size_t a, std::size_t b) {
  Evaluator& evaluator = call.evaluator();
  for (std::size_t i : {a, b}) {
    if (call[i].IsScalar() && call.FailIfError(call[i].scalar)) return std::nullopt;
  }
  const auto size_a = Evaluator::SizeOf(call[a]), size_b = Evaluator::SizeOf(call[b]);
  const auto elements = [](const auto& size) { return std::int64_t{size->first} * size->second; };
  if (!size_a || !size_b || elements(size_a) != elements(size_b)) {
    call.Fail(CellError::kNotAvailable);
    return std::nullopt;
  }
  if (call[b].IsBlock() && !evaluator.EnsureUpToDate(call[b].block)) return std::nullopt;
  std::vector<std::pair<double, double>> pairs;
  const auto add = [&](int row, int column, const Scalar& left) {
    const std::int64_t place = std::int64_t{row} * size_a->second + column;
    const Scalar right = evaluator.ElementAt(call[b], static_cast<int>(place / size_b->second),
                                             static_cast<int>(place % size_b->second));
    if (call.FailIfError(left) || call.FailIfError(right)) return;
    if (left.IsNumber() && right.IsNumber()) pairs.emplace_back(left.number, right.number);
  };
  if (call[a].IsBlock()) {
    const Area area = call[a].block.area;
    evaluator.ForEachCell(call[a].block, [&](int row, int column, const Scalar& value) {
      add(row - area.first_row, column - area.first_column, value);
    });
  } else {
    for (int row = 0; row < size_a->first; ++row) {
      for (int column = 0; column < size_a->second; ++column) {
        add(row, column, evaluator.ElementAt(call[a], row, column));
      }
    }
  }
  PairSums sums;
  sums.count = static_cast<double>(pairs.size());
  for (const auto& [left, right] : pairs) {
    sums.mean_a += left / sums.count;
    sums.mean_b += right / sums.count;
  }
  for (const auto& [left, right] : pairs) {
    sums.squares_a += (left - sums.mean_a) * (left - sums.mean_a);
    sums.squares_b += (right - sums.mean_b) * (right - sums.mean_b);
    sums.products += (left - sums.mean_a) * (right - sums.mean_b);
  }
  return sums;
}

Scalar Quotient(double number, double divisor) {
  return divisor == 0 ? Scalar::Error(CellError::kDiv0) : Scalar::Number(number / divisor);
}

Operand Correlation(Call& call) {
  const std::optional<PairSums> sums = SumPairs(call, 0, 1);
  if (!sums) return {};
  return Quotient(sums->products, std::sqrt(sums->squares_a) * std::sqrt(sums->squares_b));
}

Operand Determination(Call& call) {
  const std::optional<PairSums> sums = SumPairs(call, 0, 1);
  if (!sums) return {};
  return Quotient(sums->products * sums->products, sums->squares_a * sums->squares_b);
}

// The known y come first.
Operand Slope(Call& call) {
  const std::optional<PairSums> sums = SumPairs(call, 0, 1);
  if (!sums) return {};
  return Quotient(sums->products, sums->squares_b);
}

// The straight line through the pairs at x.
Scalar LineAt(const std::optional<PairSums>& sums, double x) {
  if (!sums) return {};
  const Scalar slope = Quotient(sums->products, sums->squares_b);
  if (slope.IsError()) return slope;
  return Scalar::Number(sums->mean_a + slope.number * (x - sums->mean_b));
}

Operand Intercept(Call& call) { return LineAt(SumPairs(call, 0, 1), 0); }

Operand Forecast(Call& call) {
  const double x = call.Number(0);
  if (call.failed()) return {};
  return LineAt(SumPairs(call, 1, 2), x);
}

// --- Several x ---

// The numbers of an operand by row; #VALUE! when one is none.
std::optional<std::vector<double>> ReadNumbers(Call& call, const Operand& operand, Array& shape) {
  const Operand values = call.evaluator().ToValues(operand);
  shape = values.IsArray() ? *values.array : Array(1, 1);
  if (!values.IsArray()) shape.values[0] = values.scalar;
  std::vector<double> numbers;
  numbers.reserve(shape.values.size());
  for (const Scalar& value : shape.values) {
    if (call.FailIfError(value)) return std::nullopt;
    if (!value.IsNumber()) {
      call.Fail(CellError::kValue);
      return std::nullopt;
    }
    numbers.push_back(value.number);
  }
  return numbers;
}

// How the x of the observations lie in an array.
enum class Layout { kOne, kColumns, kRows };

std::vector<std::vector<double>> SplitBy(Layout layout, const std::vector<double>& numbers,
                                         const Array& shape) {
  if (layout == Layout::kOne) return {numbers};
  const int width = layout == Layout::kColumns ? shape.columns : shape.rows;
  const int count = layout == Layout::kColumns ? shape.rows : shape.columns;
  std::vector<std::vector<double>> split(width, std::vector<double>(count));
  for (int j = 0; j < width; ++j) {
    for (int i = 0; i < count; ++i) {
      split[j][i] = layout == Layout::kColumns ? numbers[i * shape.columns + j]
                                               : numbers[j * shape.columns + i];
    }
  }
  return split;
}

struct Observations {
  std::vector<double> ys;
  std::vector<std::vector<double>> xs;
  Layout layout = Layout::kOne;
  Array shape{1, 1};  // of the x
};

std::vector<double> CountingFromOne(std::size_t count) {
  std::vector<double> numbers(count);
  for (std::size_t i = 0; i < count; ++i) numbers[i] = static_cast<double>(i + 1);
  return numbers;
}

// The known y and x, which are 1, 2, 3 ... when they are left out. `logarithms`: of the y.
std::optional<Observations> ReadObservations(Call& call, bool logarithms) {
  Observations found;
  Array y_shape(1, 1);
  std::optional<std::vector<double>> ys = ReadNumbers(call, call[0], y_shape);
  if (!ys) return std::nullopt;
  found.ys = *std::move(ys);
  for (double& y : found.ys) {
    if (!logarithms) break;
    if (y <= 0) {
      call.Fail(CellError::kNum);
      return std::nullopt;
    }
    y = std::log(y);
  }
  if (!call.Given(1)) {
    found.xs = {CountingFromOne(found.ys.size())};
    found.shape = y_shape;
    return found;
  }
  const std::optional<std::vector<double>> xs = ReadNumbers(call, call[1], found.shape);
  if (!xs) return std::nullopt;
  if (found.shape.rows == y_shape.rows && found.shape.columns == y_shape.columns) {
    found.layout = Layout::kOne;
  } else if (y_shape.columns == 1 && found.shape.rows == y_shape.rows) {
    found.layout = Layout::kColumns;
  } else if (y_shape.rows == 1 && found.shape.columns == y_shape.columns) {
    found.layout = Layout::kRows;
  } else {
    call.Fail(CellError::kRef);
    return std::nullopt;
  }
  found.xs = SplitBy(found.layout, *xs, found.shape);
  return found;
}

bool BooleanArgument(Call& call, std::size_t i, bool when_absent) {
  return call.Given(i) ? call.Boolean(i) : when_absent;
}

// TREND and, with the logarithms of the y, GROWTH.
Operand Extrapolate(Call& call, bool logarithms) {
  const std::optional<Observations> known = ReadObservations(call, logarithms);
  const bool with_constant = BooleanArgument(call, 3, true);
  if (!known || call.failed()) return {};
  const Fit fit = FitLine(known->ys, known->xs, with_constant);
  Array shape = known->shape;
  std::vector<std::vector<double>> xs = known->xs;
  if (call.Given(2)) {
    const std::optional<std::vector<double>> numbers = ReadNumbers(call, call[2], shape);
    if (!numbers) return {};
    xs = SplitBy(known->layout, *numbers, shape);
    if (xs.size() != known->xs.size()) return Scalar::Error(CellError::kRef);
  }
  if (known->layout == Layout::kColumns) shape = Array(shape.rows, 1);
  if (known->layout == Layout::kRows) shape = Array(1, shape.columns);
  for (std::size_t i = 0; i < shape.values.size(); ++i) {
    double y = fit.intercept;
    for (std::size_t j = 0; j < xs.size(); ++j) y += fit.slopes[j] * xs[j][i];
    shape.values[i] = Scalar::Number(logarithms ? std::exp(y) : y);
  }
  return shape;
}
Operand Trend(Call& call) { return Extrapolate(call, false); }
Operand GrowthCurve(Call& call) { return Extrapolate(call, true); }

// LINEST and LOGEST: the coefficients from the last x to the first and the constant, and on demand
// four rows that tell how good they are.
Operand Describe(Call& call, bool logarithms) {
  const std::optional<Observations> known = ReadObservations(call, logarithms);
  const bool with_constant = BooleanArgument(call, 2, true);
  const bool with_measures = BooleanArgument(call, 3, false);
  if (!known || call.failed()) return {};
  const Fit fit = FitLine(known->ys, known->xs, with_constant);
  const int width = static_cast<int>(known->xs.size());
  Array result(with_measures ? 5 : 1, width + 1);
  for (Scalar& value : result.values) value = Scalar::Error(CellError::kNotAvailable);
  const auto coefficient = [&](double value) {
    return Scalar::Number(logarithms ? std::exp(value) : value);
  };
  for (int j = 0; j < width; ++j) {
    result.At(0, width - 1 - j) = coefficient(fit.slopes[j]);
    if (with_measures) result.At(1, width - 1 - j) = Scalar::Number(fit.slope_errors[j]);
  }
  result.At(0, width) = coefficient(fit.intercept);
  if (!with_measures) return result;
  if (with_constant) result.At(1, width) = Scalar::Number(fit.intercept_error);
  const double total = fit.regression_squares + fit.residual_squares;
  const double freedom = fit.degrees_of_freedom;
  const double used = static_cast<double>(known->ys.size()) - freedom - (with_constant ? 1 : 0);
  result.At(2, 0) = Quotient(fit.regression_squares, total);
  result.At(2, 1) = Scalar::Number(freedom > 0 ? std::sqrt(fit.residual_squares / freedom) : 0);
  // With nothing left over there is no ratio.
  const double f = fit.regression_squares / used / (fit.residual_squares / freedom);
  result.At(3, 0) = Scalar::Number(freedom > 0 ? f : std::nan(""));
  result.At(3, 1) = Scalar::Number(freedom);
  result.At(4, 0) = Scalar::Number(fit.regression_squares);
  result.At(4, 1) = Scalar::Number(fit.residual_squares);
  return result;
}
Operand LineEstimate(Call& call) { return Describe(call, false); }
Operand CurveEstimate(Call& call) { return Describe(call, true); }

Operand MatrixProduct(Call& call) {
  Array left(1, 1), right(1, 1);
  const std::optional<std::vector<double>> a = ReadNumbers(call, call[0], left);
  if (!a) return {};
  const std::optional<std::vector<double>> b = ReadNumbers(call, call[1], right);
  if (!b) return {};
  if (left.columns != right.rows) return Scalar::Error(CellError::kValue);
  std::optional<Array> result = call.evaluator().NewArray(left.rows, right.columns);
  if (!result) return {};
  for (int row = 0; row < left.rows; ++row) {
    for (int column = 0; column < right.columns; ++column) {
      double sum = 0;
      for (int k = 0; k < left.columns; ++k) {
        sum += (*a)[row * left.columns + k] * (*b)[k * right.columns + column];
      }
      result->At(row, column) = Scalar::Number(sum);
    }
  }
  return *std::move(result);
}

constexpr FunctionEntry kFunctions[] = {
    {"CORREL", 2, 2, "r", Correlation},
    {"FORECAST", 3, 3, "vrr", Forecast},
    {"FORECAST.LINEAR", 3, 3, "vrr", Forecast},
    {"GROWTH", 1, 4, "aaav", GrowthCurve},
    {"INTERCEPT", 2, 2, "r", Intercept},
    {"LINEST", 1, 4, "aavv", LineEstimate},
    {"LOGEST", 1, 4, "aavv", CurveEstimate},
    {"MMULT", 2, 2, "a", MatrixProduct},
    {"PEARSON", 2, 2, "r", Correlation},
    {"RSQ", 2, 2, "r", Determination},
    {"SLOPE", 2, 2, "r", Slope},
    {"TREND", 1, 4, "aaav", Trend},
};

}  // namespace

std::span<const FunctionEntry> RegressionFunctions() { return kFunctions; }

}  // namespace vantora::embedded
