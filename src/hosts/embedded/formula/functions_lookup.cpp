// Looking up values, and references to cells.
#include <algorithm>
#include <cmath>

#include "formula/functions.h"
#include "formula/lookup_line.h"
#include "formula/r1c1.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

// The first element equal to `wanted`; texts without regard to case and with `?` and `*`.
int FindExact(const Line& line, const Scalar& wanted) {
  if (wanted.IsText() && IsPattern(wanted.text)) {
    return line.FindFirst(0, [&](int, const Scalar& value) {
      return value.IsText() && MatchesPattern(value.text, wanted.text);
    });
  }
  const auto is_equal = [&](const Scalar& value) {
    if (value.kind != wanted.kind) return false;
    if (value.IsNumber()) return value.number == wanted.number;
    if (value.IsBoolean()) return value.boolean == wanted.boolean;
    return EqualIgnoringCase(value.text, wanted.text);
  };
  if (const std::optional<int> found = line.FindIndexed(wanted, false, is_equal)) return *found;
  return line.FindFirst(0, [&](int, const Scalar& value) { return is_equal(value); });
}

// A blank looks for 0.
Scalar Wanted(const Scalar& value) { return value.IsBlank() ? Scalar::Number(0) : value; }

Operand Match(Call& call) {
  const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(call[1]);
  if (call[1].IsScalar() && call.FailIfError(call[1].scalar)) return {};
  if (!size || (size->first > 1 && size->second > 1)) {
    return Scalar::Error(CellError::kNotAvailable);
  }
  const double kind = call.Number(2, 1);
  const Line line(call.evaluator(), call[1], size->second == 1);
  const Scalar wanted = Wanted(call.Value(0));
  const int found = kind == 0 ? FindExact(line, wanted) : FindSorted(line, wanted, kind > 0);
  if (found < 0) return Scalar::Error(CellError::kNotAvailable);
  return Scalar::Number(found + 1);
}

// VLOOKUP and, with rows for columns, HLOOKUP.
Operand LookUpTable(Call& call, bool vertical) {
  const Operand& table = call[1];
  if (table.IsScalar() && call.FailIfError(table.scalar)) return {};
  const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(table);
  // A text is no table; a number is one with a single value.
  if (!size || (table.IsScalar() && table.scalar.IsText())) {
    return Scalar::Error(CellError::kValue);
  }
  const int index = call.Integer(2);
  const bool sorted = call.Boolean(3, true);
  if (call.failed()) return {};
  if (index < 1) return Scalar::Error(CellError::kValue);
  if (index > (vertical ? size->second : size->first)) return Scalar::Error(CellError::kRef);
  const Line line(call.evaluator(), table, vertical);
  const Scalar wanted = Wanted(call.Value(0));
  const int found = sorted ? FindSorted(line, wanted, true) : FindExact(line, wanted);
  if (found < 0) return Scalar::Error(CellError::kNotAvailable);
  return vertical ? call.evaluator().ElementAt(table, found, index - 1)
                  : call.evaluator().ElementAt(table, index - 1, found);
}

Operand VLookUp(Call& call) { return LookUpTable(call, true); }
Operand HLookUp(Call& call) { return LookUpTable(call, false); }

// In a vector with its results beside it, or in the first column (row, in a wide table) of a table
// whose last one holds the results.
Operand LookUp(Call& call) {
  Evaluator& evaluator = call.evaluator();
  const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(call[1]);
  if (call[1].IsScalar() && call.FailIfError(call[1].scalar)) return {};
  if (!size) return Scalar::Error(CellError::kValue);
  const bool vertical = size->first >= size->second;
  const int found = FindSorted(Line(evaluator, call[1], vertical), Wanted(call.Value(0)), true);
  if (found < 0) return Scalar::Error(CellError::kNotAvailable);
  if (call.size() < 3) {
    return vertical ? evaluator.ElementAt(call[1], found, size->second - 1)
                    : evaluator.ElementAt(call[1], size->first - 1, found);
  }
  const std::optional<std::pair<int, int>> results = Evaluator::SizeOf(call[2]);
  if (!results || (results->first > 1 && results->second > 1)) {
    return Scalar::Error(CellError::kNotAvailable);
  }
  const bool results_vertical = results->second == 1;
  if (found >= (results_vertical ? results->first : results->second)) {
    return Scalar::Error(CellError::kNotAvailable);
  }
  return results_vertical ? evaluator.ElementAt(call[2], found, 0)
                          : evaluator.ElementAt(call[2], 0, found);
}

// --- References ---

// Rows and columns of an array, 0 for all of them.
Operand PartOf(const Array& array, int row, int column) {
  if (row != 0 && column != 0) return array.At(row - 1, column - 1);
  Array part(row == 0 ? array.rows : 1, column == 0 ? array.columns : 1);
  for (int i = 0; i < part.rows; ++i) {
    for (int j = 0; j < part.columns; ++j) {
      part.At(i, j) = array.At(row == 0 ? i : row - 1, column == 0 ? j : column - 1);
    }
  }
  return part;
}

Operand PartOf(Block block, int row, int column) {
  if (row != 0) block.area.first_row = block.area.last_row = block.area.first_row + row - 1;
  if (column != 0) {
    block.area.first_column = block.area.last_column = block.area.first_column + column - 1;
  }
  return block;
}

Operand Index(Call& call) {
  Operand from = call[0];
  if (from.IsScalar() && call.FailIfError(from.scalar)) return {};
  const int area_number = call.Given(3) ? call.Integer(3) : 1;
  if (from.kind == Operand::Kind::kBlocks) {
    if (area_number < 1 || area_number > static_cast<int>(from.blocks->size())) {
      return Scalar::Error(CellError::kRef);
    }
    from = (*from.blocks)[area_number - 1];
  } else if (area_number != 1) {
    return Scalar::Error(CellError::kRef);
  }
  const auto [rows, columns] = *Evaluator::SizeOf(from);
  int row = call.Integer(1, 0), column = call.Integer(2, 0);
  // In a single row, a lone index counts the columns.
  if (call.size() < 3 && rows == 1 && columns > 1) std::swap(row, column);
  if (call.failed()) return {};
  if (row < 0 || column < 0) return Scalar::Error(CellError::kValue);
  if (row > rows || column > columns) return Scalar::Error(CellError::kRef);
  if (from.IsBlock()) return PartOf(from.block, row, column);
  if (from.IsArray()) return PartOf(*from.array, row, column);
  return from;
}

Operand Offset(Call& call) {
  if (!call[0].IsBlock()) {
    return call[0].IsScalar() && call[0].scalar.IsError() ? call[0].scalar
                                                          : Scalar::Error(CellError::kValue);
  }
  Block block = call[0].block;
  const std::int64_t first_row = std::int64_t{block.area.first_row} + call.Integer(1);
  const std::int64_t first_column = std::int64_t{block.area.first_column} + call.Integer(2);
  const int rows = call.Given(3) ? call.Integer(3) : block.area.rows();
  const int columns = call.Given(4) ? call.Integer(4) : block.area.columns();
  if (call.failed()) return {};
  // A negative size reaches up or to the left.
  const std::int64_t row2 = first_row + rows + (rows > 0 ? -1 : 1);
  const std::int64_t column2 = first_column + columns + (columns > 0 ? -1 : 1);
  const auto [top, bottom] = std::minmax(first_row, row2);
  const auto [left, right] = std::minmax(first_column, column2);
  if (rows == 0 || columns == 0 || top < 1 || left < 1 || bottom > kMaxRow || right > kMaxColumn) {
    return Scalar::Error(CellError::kRef);
  }
  block.area = {static_cast<int>(top), static_cast<int>(left), static_cast<int>(bottom),
                static_cast<int>(right)};
  return block;
}

Operand Indirect(Call& call) {
  const std::string text(call.Text(0));
  const bool in_a1 = call.Boolean(1, true);
  if (call.failed()) return {};
  Evaluator& evaluator = call.evaluator();
  if (in_a1) return evaluator.ReferenceFromText(text);
  const CellPosition& own = evaluator.position();
  if (const auto cells = CellsOfR1C1(text, own.sheet, own.cell, evaluator.model())) return *cells;
  // Names read alike in both notations, references do not.
  if (ParseA1(std::string_view(text).substr(text.rfind('!') + 1))) {
    return Scalar::Error(CellError::kRef);
  }
  return evaluator.ReferenceFromText(text);
}

// The numbers from `first` to `last`, down or across; of several only the first one where a single
// value is wanted.
Operand Numbers(Call& call, int first, int last, bool down) {
  if (!call.array_mode() || first == last) return Scalar::Number(first);
  const int count = last - first + 1;
  Array numbers(down ? count : 1, down ? 1 : count);
  for (int i = 0; i < count; ++i) numbers.values[i] = Scalar::Number(first + i);
  return numbers;
}

Operand RowOrColumn(Call& call, bool row) {
  const CellAddress cell = call.evaluator().position().cell;
  if (!call.Given(0)) return Scalar::Number(row ? cell.row : cell.column);
  if (!call[0].IsBlock()) {
    return call[0].IsScalar() && call[0].scalar.IsError() ? call[0].scalar
                                                          : Scalar::Error(CellError::kValue);
  }
  const Area& area = call[0].block.area;
  return row ? Numbers(call, area.first_row, area.last_row, true)
             : Numbers(call, area.first_column, area.last_column, false);
}

Operand Row(Call& call) { return RowOrColumn(call, true); }
Operand Column(Call& call) { return RowOrColumn(call, false); }

Operand SizeAlong(Call& call, bool rows) {
  if (call[0].IsScalar() && call.FailIfError(call[0].scalar)) return {};
  const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(call[0]);
  if (!size) return Scalar::Error(CellError::kRef);
  return Scalar::Number(rows ? size->first : size->second);
}

Operand Rows(Call& call) { return SizeAlong(call, true); }
Operand Columns(Call& call) { return SizeAlong(call, false); }

Operand Transpose(Call& call) {
  const Operand values = call.evaluator().ToValues(call[0]);
  if (!values.IsArray()) return values;
  Array result(values.array->columns, values.array->rows);
  for (int row = 0; row < result.rows; ++row) {
    for (int column = 0; column < result.columns; ++column) {
      result.At(row, column) = values.array->At(column, row);
    }
  }
  return result;
}

constexpr FunctionEntry kFunctions[] = {
    {"COLUMN", 0, 1, "r", Column},
    {"COLUMNS", 1, 1, "r", Columns},
    {"HLOOKUP", 3, 4, "vrvv", HLookUp},
    {"INDEX", 2, 4, "rvvv", Index},
    {"INDIRECT", 1, 2, "v", Indirect, kVolatile},
    {"LOOKUP", 2, 3, "vrr", LookUp},
    {"MATCH", 2, 3, "vrv", Match},
    {"OFFSET", 3, 5, "rvvvv", Offset, kVolatile},
    {"ROW", 0, 1, "r", Row},
    {"ROWS", 1, 1, "r", Rows},
    {"TRANSPOSE", 1, 1, "a", Transpose},
    {"VLOOKUP", 3, 4, "vrvv", VLookUp},
};

}  // namespace

std::span<const FunctionEntry> LookupFunctions() { return kFunctions; }

}  // namespace vantora::embedded
