// Counting, averages, extremes, and the same under conditions.
#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "formula/criterion.h"
#include "formula/functions.h"

namespace vantora::embedded {
namespace {

// --- Without conditions ---

Operand Average(Call& call) {
  double sum = 0;
  std::size_t count = 0;
  ForEachNumber(call, 0, [&](double number) {
    sum += number;
    ++count;
  });
  if (count == 0) return Scalar::Error(CellError::kDiv0);
  return Scalar::Number(sum / static_cast<double>(count));
}

Operand Largest(Call& call) {
  double largest = -std::numeric_limits<double>::infinity();
  ForEachNumber(call, 0, [&](double number) { largest = std::max(largest, number); });
  return Scalar::Number(std::isinf(largest) ? 0 : largest);
}

Operand Smallest(Call& call) {
  double smallest = std::numeric_limits<double>::infinity();
  ForEachNumber(call, 0, [&](double number) { smallest = std::min(smallest, number); });
  return Scalar::Number(std::isinf(smallest) ? 0 : smallest);
}

// Numbers, and values given directly that can be converted; an error value is no number.
Operand Count(Call& call) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < call.size(); ++i) {
    if (call[i].IsScalar() || call[i].IsMissing()) {
      const Scalar number = ToNumber(call.evaluator(), call[i].scalar);
      count += number.IsNumber();
    } else {
      ForEachValueOf(call, call[i], [&](const Scalar& value) { count += value.IsNumber(); });
    }
  }
  return Scalar::Number(static_cast<double>(count));
}

Operand CountAll(Call& call) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < call.size(); ++i) {
    const bool missing = call[i].IsMissing();
    ForEachValueOf(call, call[i],
                   [&](const Scalar& value) { count += missing || !value.IsBlank(); });
  }
  return Scalar::Number(static_cast<double>(count));
}

double CellsIn(const Area& area) { return static_cast<double>(area.rows()) * area.columns(); }

Operand CountBlank(Call& call) {
  if (!call[0].IsBlock()) return Scalar::Error(CellError::kValue);
  double blank = CellsIn(call[0].block.area);
  ForEachValueOf(call, call[0], [&](const Scalar& value) {
    if (!value.IsText() || !value.text.empty()) blank -= 1;
  });
  return Scalar::Number(blank);
}

// --- Under conditions ---

// Blocks of one size, each with the condition that its cells must meet.
class Conditions {
 public:
  // Reads pairs of a block and a condition from argument `first` on; false when the call fails.
  bool Read(Call& call, std::size_t first) {
    for (std::size_t i = first; i + 1 < call.size(); i += 2) {
      if (!Add(call, call[i], call.Value(i + 1))) return false;
    }
    return true;
  }

  bool Add(Call& call, const Operand& cells, const Scalar& condition) {
    if (!cells.IsBlock()) {
      call.Fail(cells.IsScalar() && cells.scalar.IsError() ? cells.scalar.error
                                                           : CellError::kValue);
      return false;
    }
    if (!blocks_.empty() && !SameSize(cells.block.area, blocks_[0].area)) {
      call.Fail(CellError::kValue);
      return false;
    }
    blocks_.push_back(cells.block);
    criteria_.emplace_back(call, condition);
    return call.evaluator().EnsureUpToDate(cells.block);
  }

  static bool SameSize(const Area& a, const Area& b) {
    return a.rows() == b.rows() && a.columns() == b.columns();
  }

  const Area& area() const { return blocks_[0].area; }

  // Whether all conditions are met at 0-based coordinates.
  bool HoldAt(Evaluator& evaluator, int row, int column) const {
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
      if (!criteria_[i].Holds(evaluator.ElementAt(blocks_[i], row, column))) return false;
    }
    return true;
  }

  // Calls visit(row, column), 0-based, for the cells that meet them, column by column; false, and
  // no call, where no index tells them without reading all cells.
  template <typename Visitor>
  bool VisitIndexed(Evaluator& evaluator, Visitor&& visit) const {
    if (area().columns() > 1) return false;
    std::size_t fewest = std::numeric_limits<std::size_t>::max(), best = 0;
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
      const auto candidates = CandidatesOf(evaluator, i);
      if (!candidates || candidates->size() >= fewest) continue;
      fewest = candidates->size();
      best = i;
    }
    const auto candidates = CandidatesOf(evaluator, best);
    if (!candidates) return false;
    for (const LineIndex::Entry& candidate : *candidates) {
      if (HoldAt(evaluator, candidate.place, 0)) visit(candidate.place, 0);
    }
    return true;
  }

  // How many cells meet them, cells that do not exist included.
  double Count(Evaluator& evaluator) const {
    double indexed = 0;
    if (VisitIndexed(evaluator, [&](int, int) { indexed += 1; })) return indexed;
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
      if (!criteria_[i].HoldsForBlank()) return CountInExistingCells(evaluator, i);
    }
    // All are met by blank cells: count those that fail instead.
    std::set<std::pair<int, int>> failing;
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
      evaluator.ForEachCell(blocks_[i], [&](int row, int column, const Scalar& value) {
        if (criteria_[i].Holds(value)) return;
        failing.insert({row - blocks_[i].area.first_row, column - blocks_[i].area.first_column});
      });
    }
    return CellsIn(area()) - static_cast<double>(failing.size());
  }

 private:
  std::optional<std::span<const LineIndex::Entry>> CandidatesOf(Evaluator& evaluator,
                                                                std::size_t i) const {
    const std::optional<Scalar> value = criteria_[i].EqualTo();
    if (!value) return std::nullopt;
    return evaluator.CandidatesIn(blocks_[i], *value);
  }

  double CountInExistingCells(Evaluator& evaluator, std::size_t driver) const {
    double count = 0;
    const Block& block = blocks_[driver];
    evaluator.ForEachCell(block, [&](int row, int column, const Scalar& value) {
      if (!criteria_[driver].Holds(value)) return;
      row -= block.area.first_row;
      column -= block.area.first_column;
      for (std::size_t i = 0; i < blocks_.size(); ++i) {
        if (i == driver) continue;
        if (!criteria_[i].Holds(evaluator.ElementAt(blocks_[i], row, column))) return;
      }
      count += 1;
    });
    return count;
  }

  std::vector<Block> blocks_;
  std::vector<Criterion> criteria_;
};

Operand CountIfs(Call& call) {
  Conditions conditions;
  if (call.size() % 2 != 0) return Scalar::Error(CellError::kValue);
  if (!conditions.Read(call, 0)) return {};
  return Scalar::Number(conditions.Count(call.evaluator()));
}

// Visits the numbers of `cells` whose place meets the conditions.
template <typename Visitor>
void ForEachNumberWhere(Call& call, const Block& cells, const Conditions& conditions,
                        Visitor&& visit) {
  Evaluator& evaluator = call.evaluator();
  if (!evaluator.EnsureUpToDate(cells)) return;
  const bool is_indexed = conditions.VisitIndexed(evaluator, [&](int row, int column) {
    const Scalar value = evaluator.ElementAt(cells, row, column);
    if (value.IsNumber() || value.IsError()) {
      if (!call.FailIfError(value)) visit(value.number);
    }
  });
  if (is_indexed) return;
  evaluator.ForEachCell(cells, [&](int row, int column, const Scalar& value) {
    if (!value.IsNumber() && !value.IsError()) return;
    if (!conditions.HoldAt(evaluator, row - cells.area.first_row,
                           column - cells.area.first_column)) {
      return;
    }
    if (!call.FailIfError(value)) visit(value.number);
  });
}

// SUMIF and AVERAGEIF: the cells to sum are as many as those that are looked at, from the first
// cell of the third argument on; without one they are those that are looked at.
template <typename Visitor>
bool ForEachNumberIf(Call& call, Visitor&& visit) {
  Conditions conditions;
  if (!conditions.Add(call, call[0], call.Value(1))) return false;
  Block cells = call[0].block;
  if (call.Given(2)) {
    if (!call[2].IsBlock()) {
      call.Fail(CellError::kValue);
      return false;
    }
    const Area looked_at = cells.area;
    cells = call[2].block;
    cells.area.last_row = std::min(cells.area.first_row + looked_at.rows() - 1, kMaxRow);
    cells.area.last_column =
        std::min(cells.area.first_column + looked_at.columns() - 1, kMaxColumn);
  }
  ForEachNumberWhere(call, cells, conditions, visit);
  return !call.failed();
}

// SUMIFS and the like: the first argument holds the numbers.
template <typename Visitor>
bool ForEachNumberIfs(Call& call, Visitor&& visit) {
  Conditions conditions;
  if (call.size() % 2 != 1 || !call[0].IsBlock()) {
    call.Fail(CellError::kValue);
    return false;
  }
  if (!conditions.Read(call, 1)) return false;
  if (!Conditions::SameSize(call[0].block.area, conditions.area())) {
    call.Fail(CellError::kValue);
    return false;
  }
  ForEachNumberWhere(call, call[0].block, conditions, visit);
  return !call.failed();
}

Scalar AverageOf(double sum, double count) {
  return count == 0 ? Scalar::Error(CellError::kDiv0) : Scalar::Number(sum / count);
}

Operand SumIf(Call& call) {
  double sum = 0;
  ForEachNumberIf(call, [&](double number) { sum += number; });
  return Scalar::Number(sum);
}

Operand AverageIf(Call& call) {
  double sum = 0, count = 0;
  ForEachNumberIf(call, [&](double number) {
    sum += number;
    count += 1;
  });
  return AverageOf(sum, count);
}

Operand SumIfs(Call& call) {
  double sum = 0;
  ForEachNumberIfs(call, [&](double number) { sum += number; });
  return Scalar::Number(sum);
}

Operand AverageIfs(Call& call) {
  double sum = 0, count = 0;
  ForEachNumberIfs(call, [&](double number) {
    sum += number;
    count += 1;
  });
  return AverageOf(sum, count);
}

Operand MaxIfs(Call& call) {
  double largest = -std::numeric_limits<double>::infinity();
  ForEachNumberIfs(call, [&](double number) { largest = std::max(largest, number); });
  return Scalar::Number(std::isinf(largest) ? 0 : largest);
}

Operand MinIfs(Call& call) {
  double smallest = std::numeric_limits<double>::infinity();
  ForEachNumberIfs(call, [&](double number) { smallest = std::min(smallest, number); });
  return Scalar::Number(std::isinf(smallest) ? 0 : smallest);
}

constexpr FunctionEntry kFunctions[] = {
    {"AVERAGE", 1, kAnyCount, "r", Average},
    {"AVERAGEIF", 2, 3, "rer", AverageIf},
    {"AVERAGEIFS", 3, kAnyCount, "r*re", AverageIfs},
    {"COUNT", 1, kAnyCount, "r", Count},
    {"COUNTA", 1, kAnyCount, "r", CountAll},
    {"COUNTBLANK", 1, 1, "r", CountBlank},
    {"COUNTIF", 2, 2, "re", CountIfs},
    {"COUNTIFS", 2, kAnyCount, "*re", CountIfs},
    {"MAX", 1, kAnyCount, "r", Largest},
    {"MAXIFS", 3, kAnyCount, "r*re", MaxIfs},
    {"MIN", 1, kAnyCount, "r", Smallest},
    {"MINIFS", 3, kAnyCount, "r*re", MinIfs},
    {"SUMIF", 2, 3, "rer", SumIf},
    {"SUMIFS", 3, kAnyCount, "r*re", SumIfs},
};

}  // namespace

std::span<const FunctionEntry> StatisticsFunctions() { return kFunctions; }

}  // namespace vantora::embedded
