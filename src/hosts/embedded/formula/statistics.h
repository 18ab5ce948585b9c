// Measures of a set of numbers, as several functions give them. Each is #NUM!, #DIV/0! or #N/A
// where the set is too small for it.
#pragma once

#include <vector>

#include "formula/scalar.h"

namespace vantora::embedded {

Scalar MeanOf(const std::vector<double>& numbers);
// Of a sample or of all there is.
Scalar VarianceOf(const std::vector<double>& numbers, bool sample);
Scalar DeviationOf(const std::vector<double>& numbers, bool sample);
Scalar MedianOf(std::vector<double> numbers);
// The number that comes most often, of several the one that comes first.
Scalar ModeOf(const std::vector<double>& numbers);
// The k-th largest or smallest, from 1; a fraction counts as the next whole one.
Scalar LargestOf(std::vector<double> numbers, double k);
Scalar SmallestOf(std::vector<double> numbers, double k);

// Where the ends of the range lie: at the first and last number, or one beyond them.
enum class Ends { kIncluded, kExcluded };
Scalar PercentileOf(std::vector<double> numbers, double share, Ends ends);
// quarter: 0 to 4, cut off to a whole number.
Scalar QuartileOf(std::vector<double> numbers, double quarter, Ends ends);

}  // namespace vantora::embedded
