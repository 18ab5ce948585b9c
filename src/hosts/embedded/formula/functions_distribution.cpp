// How numbers spread: deviations, ranks, percentiles.
#include <algorithm>
#include <cmath>

#include "formula/functions.h"
#include "formula/statistics.h"

namespace vantora::embedded {
namespace {

// The numbers of all arguments; what is no number in cells is passed over.
std::vector<double> AllNumbers(Call& call) {
  std::vector<double> numbers;
  ForEachNumber(call, 0, [&](double number) { numbers.push_back(number); });
  return numbers;
}

std::vector<double> FirstNumbers(Call& call) {
  std::vector<double> numbers;
  ForEachNumberOf(call, call[0], [&](double number) { numbers.push_back(number); });
  return numbers;
}

template <bool kSample>
Operand Deviation(Call& call) {
  return DeviationOf(AllNumbers(call), kSample);
}
template <bool kSample>
Operand Variance(Call& call) {
  return VarianceOf(AllNumbers(call), kSample);
}
Operand Median(Call& call) { return MedianOf(AllNumbers(call)); }
Operand KthLargest(Call& call) { return LargestOf(FirstNumbers(call), call.Number(1)); }
Operand KthSmallest(Call& call) { return SmallestOf(FirstNumbers(call), call.Number(1)); }

template <Ends kEnds>
Operand Percentile(Call& call) {
  return PercentileOf(FirstNumbers(call), call.Number(1), kEnds);
}
template <Ends kEnds>
Operand Quartile(Call& call) {
  return QuartileOf(FirstNumbers(call), call.Number(1), kEnds);
}

// Which number is met first decides, so blocks of several columns are read row by row.
Operand Mode(Call& call) {
  std::vector<double> numbers;
  for (std::size_t i = 0; i < call.size() && !call.failed(); ++i) {
    if (!call[i].IsBlock() || call[i].block.area.columns() == 1) {
      ForEachNumberOf(call, call[i], [&](double number) { numbers.push_back(number); });
      continue;
    }
    std::vector<std::pair<CellAddress, double>> cells;
    call.evaluator().ForEachCell(call[i].block, [&](int row, int column, const Scalar& value) {
      call.FailIfError(value);
      if (value.IsNumber()) cells.push_back({{row, column}, value.number});
    });
    std::ranges::sort(cells);
    for (const auto& [cell, number] : cells) numbers.push_back(number);
  }
  return ModeOf(numbers);
}

// The rank of a number among those of a reference; `average`: the middle of the ranks of equals.
Operand RankAmong(Call& call, bool average) {
  if (!call[1].IsReference()) return Scalar::Error(CellError::kValue);
  const double number = call.Number(0);
  const bool ascending = call.Number(2, 0) != 0;
  double before = 0, equal = 0;
  ForEachNumberOf(call, call[1], [&](double other) {
    if (other == number) {
      equal += 1;
    } else if ((other < number) == ascending) {
      before += 1;
    }
  });
  if (call.failed()) return {};
  if (equal == 0) return Scalar::Error(CellError::kNotAvailable);
  return Scalar::Number(before + 1 + (average ? (equal - 1) / 2 : 0));
}
Operand Rank(Call& call) { return RankAmong(call, false); }
Operand RankOfEquals(Call& call) { return RankAmong(call, true); }

constexpr FunctionEntry kFunctions[] = {
    {"LARGE", 2, 2, "rv", KthLargest},
    {"MEDIAN", 1, kAnyCount, "r", Median},
    {"MODE", 1, kAnyCount, "r", Mode},
    {"MODE.SNGL", 1, kAnyCount, "r", Mode},
    {"PERCENTILE", 2, 2, "rv", Percentile<Ends::kIncluded>},
    {"PERCENTILE.EXC", 2, 2, "rv", Percentile<Ends::kExcluded>},
    {"PERCENTILE.INC", 2, 2, "rv", Percentile<Ends::kIncluded>},
    {"QUARTILE", 2, 2, "rv", Quartile<Ends::kIncluded>},
    {"QUARTILE.EXC", 2, 2, "rv", Quartile<Ends::kExcluded>},
    {"QUARTILE.INC", 2, 2, "rv", Quartile<Ends::kIncluded>},
    {"RANK", 2, 3, "vrv", Rank},
    {"RANK.AVG", 2, 3, "vrv", RankOfEquals},
    {"RANK.EQ", 2, 3, "vrv", Rank},
    {"SMALL", 2, 2, "rv", KthSmallest},
    {"STDEV", 1, kAnyCount, "r", Deviation<true>},
    {"STDEV.P", 1, kAnyCount, "r", Deviation<false>},
    {"STDEV.S", 1, kAnyCount, "r", Deviation<true>},
    {"STDEVP", 1, kAnyCount, "r", Deviation<false>},
    {"VAR", 1, kAnyCount, "r", Variance<true>},
    {"VAR.P", 1, kAnyCount, "r", Variance<false>},
    {"VAR.S", 1, kAnyCount, "r", Variance<true>},
    {"VARP", 1, kAnyCount, "r", Variance<false>},
};

}  // namespace

std::span<const FunctionEntry> DistributionFunctions() { return kFunctions; }

}  // namespace vantora::embedded
