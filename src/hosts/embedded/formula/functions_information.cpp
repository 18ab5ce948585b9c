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

std::string AbsoluteAddress(CellAddress cell) {
  return "$" + ColumnLetters(cell.column) + "$" + std::to_string(cell.row);
}

// What the model tells of the reference's first cell.
Operand CellInformation(Call& call) {
  Evaluator& evaluator = call.evaluator();
  const std::string kind = UpperAscii(call.Text(0));
  if (call.failed()) return {};
  if (!call.Given(1)) {
    evaluator.Stop("CELL without a reference is not supported");
    return {};
  }
  if (call[1].IsScalar() && call.FailIfError(call[1].scalar)) return {};
  if (!call[1].IsBlock()) return Scalar::Error(CellError::kValue);
  const auto& [sheet, area] = call[1].block;
  const CellAddress cell{area.first_row, area.first_column};
  if (kind == "ROW") return Scalar::Number(cell.row);
  if (kind == "COL") return Scalar::Number(cell.column);
  if (kind == "ADDRESS" && sheet == evaluator.position().sheet) {
    return call.MakeText(AbsoluteAddress(cell));
  }
  if (kind == "CONTENTS") return evaluator.ReadCell(sheet, cell);
  if (kind == "TYPE") {
    const Scalar value = evaluator.ReadCell(sheet, cell);
    return Scalar::Text(value.IsBlank() ? "b" : value.IsText() ? "l" : "v");
  }
  if (kind == "PROTECT") {
    const WorkbookModel& model = evaluator.model();
    return Scalar::Number(model.styles[model.sheets[sheet]->StyleOf(cell)].locked);
  }
  for (const char* known :
       {"ADDRESS", "COLOR", "FILENAME", "FORMAT", "PARENTHESES", "PREFIX", "WIDTH"}) {
    if (kind != known) continue;
    evaluator.Stop("CELL(\"" + std::string(call.Text(0)) + "\") is not supported here");
    return {};
  }
  return Scalar::Error(CellError::kValue);
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
    {"CELL", 1, 2, "vr", CellInformation, kVolatile},
    {"HYPERLINK", 1, 2, "v", Hyperlink},
    {"ISFORMULA", 1, 1, "r", IsFormula},
};

}  // namespace

std::span<const FunctionEntry> InformationFunctions() { return kFunctions; }

}  // namespace vantora::embedded
