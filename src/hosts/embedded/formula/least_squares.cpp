#include "formula/least_squares.h"

#include <cmath>
#include <cstddef>
#include <numeric>

namespace vantora::embedded {
namespace {

using Column = std::vector<double>;

double Product(const Column& a, const Column& b) {
  return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

double MeanOf(const Column& column) {
  return std::accumulate(column.begin(), column.end(), 0.0) / static_cast<double>(column.size());
}

void Subtract(Column& from, const Column& column, double times) {
  for (std::size_t i = 0; i < from.size(); ++i) from[i] -= times * column[i];
}

}  // namespace

// The columns are made orthogonal one after the other (twice, which keeps the digits), and the
// triangle of factors that this leaves is solved from its end.
Fit FitLine(const std::vector<double>& ys, const std::vector<std::vector<double>>& xs,
            bool with_constant) {
  const std::size_t count = ys.size(), width = xs.size();
  std::vector<double> means(width, 0);
  Column rest = ys;
  double y_mean = 0;
  if (with_constant) {
    y_mean = MeanOf(ys);
    for (double& y : rest) y -= y_mean;
  }
  const double total = Product(rest, rest);

  std::vector<Column> basis;
  std::vector<std::size_t> used;           // the x that each column of the basis came from
  std::vector<std::vector<double>> upper;  // its factors of the columns before, then its length
  std::vector<double> projected;
  for (std::size_t j = 0; j < width; ++j) {
    Column column = xs[j];
    if (with_constant) {
      means[j] = MeanOf(column);
      for (double& x : column) x -= means[j];
    }
    const double before = std::sqrt(Product(xs[j], xs[j]));
    std::vector<double> factors(basis.size(), 0);
    for (int pass = 0; pass < 2; ++pass) {
      for (std::size_t k = 0; k < basis.size(); ++k) {
        const double factor = Product(basis[k], column);
        factors[k] += factor;
        Subtract(column, basis[k], factor);
      }
    }
    const double length = std::sqrt(Product(column, column));
    if (length <= 1e-12 * before || length == 0) continue;
    for (double& x : column) x /= length;
    factors.push_back(length);
    const double along = Product(column, rest);
    Subtract(rest, column, along);
    projected.push_back(along);
    basis.push_back(std::move(column));
    upper.push_back(std::move(factors));
    used.push_back(j);
  }

  Fit fit;
  fit.slopes.assign(width, 0);
  fit.slope_errors.assign(width, 0);
  const std::size_t rank = basis.size();
  fit.degrees_of_freedom =
      static_cast<double>(count) - static_cast<double>(rank) - (with_constant ? 1 : 0);
  fit.residual_squares = Product(rest, rest);
  fit.regression_squares = total - fit.residual_squares;

  // The inverse of the triangle gives both the slopes and their errors.
  std::vector<std::vector<double>> inverse(rank, std::vector<double>(rank, 0));
  for (std::size_t column = 0; column < rank; ++column) {
    for (std::size_t row = column + 1; row-- > 0;) {
      double value = row == column ? 1 : 0;
      for (std::size_t k = row + 1; k <= column; ++k) value -= upper[k][row] * inverse[k][column];
      inverse[row][column] = value / upper[row][row];
    }
  }
  const double variance =
      fit.degrees_of_freedom > 0 ? fit.residual_squares / fit.degrees_of_freedom : 0;
  std::vector<double> mean_weights(rank, 0);
  fit.intercept = y_mean;
  for (std::size_t row = 0; row < rank; ++row) {
    double slope = 0, squares = 0;
    for (std::size_t k = row; k < rank; ++k) {
      slope += inverse[row][k] * projected[k];
      squares += inverse[row][k] * inverse[row][k];
      mean_weights[k] += means[used[row]] * inverse[row][k];
    }
    fit.slopes[used[row]] = slope;
    fit.slope_errors[used[row]] = std::sqrt(variance * squares);
    fit.intercept -= slope * means[used[row]];
  }
  if (with_constant) {
    const double squares = 1 / static_cast<double>(count) + Product(mean_weights, mean_weights);
    fit.intercept_error = std::sqrt(variance * squares);
  }
  return fit;
}

}  // namespace vantora::embedded
