// SUBTOTAL and AGGREGATE: measures of cells, some of which do not count.
#include <algorithm>
#include <cmath>
#include <vector>

#include "formula/functions.h"
#include "formula/lexical.h"
#include "formula/statistics.h"

namespace vantora::embedded {
namespace {

// Which cells do not count.
struct PassedOver {
  bool nested = false;  // those that hold a SUBTOTAL or AGGREGATE
  bool hidden = false;  // those in hidden rows; rows that a filter hides never count
  bool errors = false;
};

bool IsSubtotal(const Formula& formula) {
  const std::string text = UpperAscii(formula.text);
  return text.find("SUBTOTAL(") != std::string::npos ||
         text.find("AGGREGATE(") != std::string::npos;
}

class Collector {
 public:
  Collector(Call& call, PassedOver passed_over) : call_(call), passed_over_(passed_over) {}

  void Add(const Operand& operand) {
    if (operand.IsBlock()) {
      AddBlock(operand.block);
    } else if (operand.kind == Operand::Kind::kBlocks) {
      for (const Block& block : *operand.blocks) AddBlock(block);
    } else {
      ForEachValueOf(call_, operand, [&](const Scalar& value) { AddValue(value); });
    }
  }

  const std::vector<double>& numbers() const { return numbers_; }
  double filled() const { return filled_; }
  // The first error value that counts.
  const std::optional<Scalar>& error() const { return error_; }

 private:
  void AddBlock(const Block& block) {
    const SheetModel& sheet = *call_.evaluator().model().sheets[block.sheet];
    call_.evaluator().ForEachCell(block, [&](int row, int column, const Scalar& value) {
      const RowFormat& format = sheet.rows.Of(row);
      const bool hidden = format.hidden || format.height == 0.0;
      if (hidden && (passed_over_.hidden || sheet.IsFiltered(row))) return;
      if (passed_over_.nested && HoldsSubtotal(sheet, {row, column})) return;
      AddValue(value);
    });
  }

  bool HoldsSubtotal(const SheetModel& sheet, CellAddress cell) {
    const FormulaId formula = sheet.cells.Get(cell).formula;
    if (formula == 0) return false;
    // The cells of a column often share one formula.
    if (&sheet != last_sheet_ || formula != last_formula_) {
      last_sheet_ = &sheet;
      last_formula_ = formula;
      last_is_subtotal_ = IsSubtotal(sheet.formulas[formula]);
    }
    return last_is_subtotal_;
  }

  void AddValue(const Scalar& value) {
    if (value.IsError() && passed_over_.errors) return;
    if (!value.IsBlank()) filled_ += 1;
    if (value.IsNumber()) numbers_.push_back(value.number);
    if (value.IsError() && !error_) error_ = value;
  }

  Call& call_;
  PassedOver passed_over_;
  std::vector<double> numbers_;
  double filled_ = 0;
  std::optional<Scalar> error_;
  const SheetModel* last_sheet_ = nullptr;
  FormulaId last_formula_ = 0;
  bool last_is_subtotal_ = false;
};

// The measures by number; `k` is what 14 and up ask for.
Operand Measure(int measure, const Collector& cells, double k) {
  const std::vector<double>& numbers = cells.numbers();
  if (measure == 2) return Scalar::Number(static_cast<double>(numbers.size()));
  if (measure == 3) return Scalar::Number(cells.filled());
  if (cells.error()) return *cells.error();
  double result = 0;
  switch (measure) {
    case 1:
      return MeanOf(numbers);
    case 4:
      return Scalar::Number(numbers.empty() ? 0 : *std::ranges::max_element(numbers));
    case 5:
      return Scalar::Number(numbers.empty() ? 0 : *std::ranges::min_element(numbers));
    case 6:
      if (!numbers.empty()) result = 1;
      for (double number : numbers) result *= number;
      return Scalar::Number(result);
    case 7:
    case 8:
      return DeviationOf(numbers, measure == 7);
    case 9:
      for (double number : numbers) result += number;
      return Scalar::Number(result);
    case 10:
    case 11:
      return VarianceOf(numbers, measure == 10);
    case 12:
      return MedianOf(numbers);
    case 13:
      return ModeOf(numbers);
    case 14:
      return LargestOf(numbers, k);
    case 15:
      return SmallestOf(numbers, k);
    case 16:
    case 18:
      return PercentileOf(numbers, k, measure == 16 ? Ends::kIncluded : Ends::kExcluded);
    default:
      return QuartileOf(numbers, k, measure == 17 ? Ends::kIncluded : Ends::kExcluded);
  }
}

// Whether the arguments from `first` on are cells, each within one sheet.
bool AreReferences(Call& call, std::size_t first) {
  for (std::size_t i = first; i < call.size(); ++i) {
    if (call[i].IsScalar() && call.FailIfError(call[i].scalar)) return false;
    bool is_reference = call[i].IsReference();
    if (call[i].kind == Operand::Kind::kBlocks) {
      is_reference = std::ranges::all_of(*call[i].blocks, [&](const Block& block) {
        return block.sheet == call[i].blocks->front().sheet;
      });
    }
    if (is_reference) continue;
    call.Fail(CellError::kValue);
    return false;
  }
  return true;
}

Operand Subtotal(Call& call) {
  int measure = call.Integer(0);
  PassedOver passed_over{.nested = true};
  if (measure > 100) {
    measure -= 100;
    passed_over.hidden = true;
  }
  if (call.failed() || !AreReferences(call, 1)) return {};
  if (measure < 1 || measure > 11) return Scalar::Error(CellError::kValue);
  Collector cells(call, passed_over);
  for (std::size_t i = 1; i < call.size(); ++i) cells.Add(call[i]);
  return Measure(measure, cells, 0);
}

Operand Aggregate(Call& call) {
  const int measure = call.Integer(0), option = call.Integer(1);
  if (call.failed()) return {};
  if (measure < 1 || measure > 19 || option < 0 || option > 7) {
    return Scalar::Error(CellError::kValue);
  }
  const PassedOver passed_over{
      .nested = option < 4, .hidden = option % 2 == 1, .errors = option % 4 >= 2};
  Collector cells(call, passed_over);
  if (measure < 14) {
    if (!AreReferences(call, 2)) return {};
    for (std::size_t i = 2; i < call.size(); ++i) cells.Add(call[i]);
    return Measure(measure, cells, 0);
  }
  if (call.size() != 4) return Scalar::Error(CellError::kValue);
  const double k = call.NumberOf(call.evaluator().ToScalar(call[3]));
  if (call.failed()) return {};
  cells.Add(call[2]);
  return Measure(measure, cells, k);
}

constexpr FunctionEntry kFunctions[] = {
    {"AGGREGATE", 3, kAnyCount, "vvar", Aggregate, Changes::kWithHiddenRows},
    {"SUBTOTAL", 2, kAnyCount, "vr", Subtotal, Changes::kWithHiddenRows},
};

}  // namespace

std::span<const FunctionEntry> SubtotalFunctions() { return kFunctions; }

}  // namespace vantora::embedded
