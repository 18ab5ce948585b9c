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

// Columns made orthogonal one after the other; column k is the sum of the first k + 1 of the basis,
// each times its factor.
struct Basis {
  std::vector<Column> columns;
  std::vector<std::vector<double>> factors;

  // False for a column that adds nothing to those before; `size` is what it is measured by.
  bool Add(Column column, double size) {
    std::vector<double> own(columns.size(), 0);
    // The second pass keeps the digits.
    for (int pass = 0; pass < 2; ++pass) {
      for (std::size_t k = 0; k < columns.size(); ++k) {
        const double factor = Product(columns[k], column);
        own[k] += factor;
        Subtract(column, columns[k], factor);
      }
    }
    const double length = std::sqrt(Product(column, column));
    if (length <= 1e-12 * size) return false;
    for (double& value : column) value /= length;
    own.push_back(length);
    columns.push_back(std::move(column));
    factors.push_back(std::move(own));
    return true;
  }

  // The inverse of the triangle of factors.
  std::vector<std::vector<double>> Inverse() const {
    const std::size_t rank = columns.size();
    std::vector<std::vector<double>> inverse(rank, std::vector<double>(rank, 0));
    for (std::size_t column = 0; column < rank; ++column) {
      for (std::size_t row = column + 1; row-- > 0;) {
        double value = row == column ? 1 : 0;
        for (std::size_t k = row + 1; k <= column; ++k) {
          value -= factors[k][row] * inverse[k][column];
        }
        inverse[row][column] = value / factors[row][row];
      }
    }
    return inverse;
  }
};

// Takes the mean from the values and returns it.
double Center(Column& column) {
  const double mean = MeanOf(column);
  for (double& value : column) value -= mean;
  return mean;
}

}  // namespace

Fit FitLine(const std::vector<double>& ys, const std::vector<std::vector<double>>& xs,
            bool with_constant) {
  Fit fit;
  fit.slopes.assign(xs.size(), 0);
  fit.slope_errors.assign(xs.size(), 0);
  Column rest = ys;
  if (with_constant) fit.intercept = Center(rest);
  const double total = Product(rest, rest);

  Basis basis;
  std::vector<std::size_t> used;  // the x that each column of the basis came from
  std::vector<double> means, projected;
  for (std::size_t j = 0; j < xs.size(); ++j) {
    Column column = xs[j];
    const double mean = with_constant ? Center(column) : 0;
    if (!basis.Add(std::move(column), std::sqrt(Product(xs[j], xs[j])))) continue;
    used.push_back(j);
    means.push_back(mean);
    projected.push_back(Product(basis.columns.back(), rest));
    Subtract(rest, basis.columns.back(), projected.back());
  }

  const double count = static_cast<double>(ys.size());
  fit.degrees_of_freedom = count - static_cast<double>(used.size()) - (with_constant ? 1 : 0);
  fit.residual_squares = Product(rest, rest);
  fit.regression_squares = total - fit.residual_squares;
  const double variance =
      fit.degrees_of_freedom > 0 ? fit.residual_squares / fit.degrees_of_freedom : 0;

  const std::vector<std::vector<double>> inverse = basis.Inverse();
  std::vector<double> mean_weights(used.size(), 0);
  for (std::size_t row = 0; row < used.size(); ++row) {
    const double slope = Product(inverse[row], projected);
    fit.slopes[used[row]] = slope;
    fit.slope_errors[used[row]] = std::sqrt(variance * Product(inverse[row], inverse[row]));
    fit.intercept -= slope * means[row];
    for (std::size_t k = row; k < used.size(); ++k) mean_weights[k] += means[row] * inverse[row][k];
  }
  if (with_constant) {
    fit.intercept_error = std::sqrt(variance * (1 / count + Product(mean_weights, mean_weights)));
  }
  return fit;
}

}  // namespace vantora::embedded
