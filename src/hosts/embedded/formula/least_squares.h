// Fits y = m1 x1 + ... + mk xk + b by least squares.
#pragma once

#include <vector>

namespace vantora::embedded {

struct Fit {
  // One for each x; 0 for one that the others (or the constant) already tell.
  std::vector<double> slopes;
  std::vector<double> slope_errors;
  double intercept = 0;
  double intercept_error = 0;
  double residual_squares = 0;
  double regression_squares = 0;
  double degrees_of_freedom = 0;
};

// xs[j][i] is the j-th x of the i-th observation. Without a constant the intercept is 0.
Fit FitLine(const std::vector<double>& ys, const std::vector<std::vector<double>>& xs,
            bool with_constant);

}  // namespace vantora::embedded
