// What is known of cells beside their values, and texts that name cells.
#include <string>

#include "formula/functions.h"
#include "formula/lexical.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

bool HoldsFormula(const SheetModel& sheet, CellAddress cell) {
  if (sheet.cells.Get(cell).formula != 0) return true;
  for (const ArrayFormula& array : sheet.arrays) {
    if (array.area.Contains(cell)) return true;
  }
  return false;
}

// Of several cells, each one where that is wanted, else the first.
Operand IsFormula(Call& call) {
  if (call[0].IsScalar() && call.FailIfError(call[0].scalar)) return {};
  if (!call[0].IsBlock()) return Scalar::Error(CellError::kValue);
  const auto& [sheet_id, area] = call[0].block;
  const SheetModel& sheet = *call.evaluator().model().sheets[sheet_id];
  if (!call.array_mode() || call[0].block.IsCell()) {
    return Scalar::Boolean(HoldsFormula(sheet, {area.first_row, area.first_column}));
  }
  std::optional<Array> result = call.evaluator().NewArray(area.rows(), area.columns());
  if (!result) return {};
  for (int row = 0; row < result->rows; ++row) {
    for (int column = 0; column < result->columns; ++column) {
      result->At(row, column) =
          Scalar::Boolean(HoldsFormula(sheet, {area.first_row + row, area.first_column + column}));
    }
  }
  return *std::move(result);
}

// "R2C3", relative parts in brackets.
std::string R1C1Part(char letter, int number, bool absolute) {
  if (absolute) return letter + std::to_string(number);
  return letter + ("[" + std::to_string(number) + "]");
}

Operand Address(Call& call) {
  const int row = call.Integer(0), column = call.Integer(1);
  const int kind = call.Given(2) ? call.Integer(2) : 1;
  const bool in_a1 = call.Given(3) ? call.Boolean(3) : true;
  if (call.failed()) return {};
  const bool row_absolute = kind == 1 || kind == 2, column_absolute = kind == 1 || kind == 3;
  // Relative parts of R1C1 are distances.
  const int least_row = in_a1 || row_absolute ? 1 : -kMaxRow;
  const int least_column = in_a1 || column_absolute ? 1 : -kMaxColumn;
  if (kind < 1 || kind > 4 || row < least_row || row > kMaxRow || column < least_column ||
      column > kMaxColumn) {
    return Scalar::Error(CellError::kValue);
  }
  std::string text;
  if (call.Given(4)) {
    const std::string sheet(call.Text(4));
    text = NeedsQuotes(sheet) ? "'" + sheet + "'!" : sheet + "!";
  }
  if (in_a1) {
    text += (column_absolute ? "$" : "") + ColumnLetters(column);
    text += (row_absolute ? "$" : "") + std::to_string(row);
  } else {
    text += R1C1Part('R', row, row_absolute) + R1C1Part('C', column, column_absolute);
  }
  return call.MakeText(std::move(text));
}

Operand Areas(Call& call) {
  if (call[0].IsScalar() && call.FailIfError(call[0].scalar)) return {};
  if (!call[0].IsReference()) return Scalar::Error(CellError::kValue);
  return Scalar::Number(call[0].IsBlock() ? 1.0 : static_cast<double>(call[0].blocks->size()));
}

// The cell shows the friendly name.
Operand Hyperlink(Call& call) {
  if (!call.Given(1)) return call.size() > 1 ? Scalar::Number(0) : call.Value(0);
  return call.Value(1).IsBlank() ? Scalar::Number(0) : call.Value(1);
}

constexpr FunctionEntry kFunctions[] = {
    {"ADDRESS", 2, 5, "v", Address},
    {"AREAS", 1, 1, "r", Areas},
    {"HYPERLINK", 1, 2, "v", Hyperlink},
    {"ISFORMULA", 1, 1, "r", IsFormula},
};

}  // namespace

std::span<const FunctionEntry> InformationFunctions() { return kFunctions; }

}  // namespace vantora::embedded
