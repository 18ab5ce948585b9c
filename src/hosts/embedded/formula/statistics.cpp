#include "formula/statistics.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace vantora::embedded {
namespace {

Scalar NumError() { return Scalar::Error(CellError::kNum); }

double SumOf(const std::vector<double>& numbers) {
  double sum = 0;
  for (double number : numbers) sum += number;
  return sum;
}

// The number at place `k`, counted from 0 in ascending order.
Scalar AtPlace(std::vector<double>& numbers, std::size_t k) {
  const auto place = numbers.begin() + static_cast<std::ptrdiff_t>(k);
  std::nth_element(numbers.begin(), place, numbers.end());
  return Scalar::Number(*place);
}

}  // namespace

Scalar MeanOf(const std::vector<double>& numbers) {
  if (numbers.empty()) return Scalar::Error(CellError::kDiv0);
  return Scalar::Number(SumOf(numbers) / static_cast<double>(numbers.size()));
}

Scalar VarianceOf(const std::vector<double>& numbers, bool sample) {
  if (numbers.size() < (sample ? 2u : 1u)) return Scalar::Error(CellError::kDiv0);
  const double count = static_cast<double>(numbers.size());
  const double mean = SumOf(numbers) / count;
  double squares = 0;
  for (double number : numbers) squares += (number - mean) * (number - mean);
  return Scalar::Number(squares / (sample ? count - 1 : count));
}

Scalar DeviationOf(const std::vector<double>& numbers, bool sample) {
  const Scalar variance = VarianceOf(numbers, sample);
  return variance.IsError() ? variance : Scalar::Number(std::sqrt(variance.number));
}

Scalar MedianOf(std::vector<double> numbers) {
  if (numbers.empty()) return NumError();
  const std::size_t middle = numbers.size() / 2;
  const double upper = AtPlace(numbers, middle).number;
  if (numbers.size() % 2 == 1) return Scalar::Number(upper);
  const auto end = numbers.begin() + static_cast<std::ptrdiff_t>(middle);
  return Scalar::Number((*std::max_element(numbers.begin(), end) + upper) / 2);
}

Scalar ModeOf(const std::vector<double>& numbers) {
  std::unordered_map<double, int> counts;
  int most = 1;
  for (double number : numbers) most = std::max(most, ++counts[number]);
  if (most == 1) return Scalar::Error(CellError::kNotAvailable);
  return Scalar::Number(*std::find_if(numbers.begin(), numbers.end(),
                                      [&](double number) { return counts[number] == most; }));
}

Scalar LargestOf(std::vector<double> numbers, double k) {
  k = std::ceil(k);
  if (!(k >= 1 && k <= static_cast<double>(numbers.size()))) return NumError();
  return AtPlace(numbers, numbers.size() - static_cast<std::size_t>(k));
}

Scalar SmallestOf(std::vector<double> numbers, double k) {
  k = std::ceil(k);
  if (!(k >= 1 && k <= static_cast<double>(numbers.size()))) return NumError();
  return AtPlace(numbers, static_cast<std::size_t>(k) - 1);
}

Scalar PercentileOf(std::vector<double> numbers, double share, Ends ends) {
  if (numbers.empty() || !(share >= 0 && share <= 1)) return NumError();
  const double count = static_cast<double>(numbers.size());
  const double place = ends == Ends::kIncluded ? share * (count - 1) : share * (count + 1) - 1;
  if (place < 0 || place > count - 1) return NumError();
  const double below = std::floor(place);
  const std::size_t k = static_cast<std::size_t>(below);
  const double lower = AtPlace(numbers, k).number;
  if (place == below) return Scalar::Number(lower);
  const double upper =
      *std::min_element(numbers.begin() + static_cast<std::ptrdiff_t>(k) + 1, numbers.end());
  return Scalar::Number(lower + (place - below) * (upper - lower));
}

Scalar QuartileOf(std::vector<double> numbers, double quarter, Ends ends) {
  return PercentileOf(std::move(numbers), std::trunc(quarter) / 4, ends);
}

}  // namespace vantora::embedded
