// What functions of several kinds share.
#pragma once

#include <string>

#include "formula/evaluator.h"
#include "formula/function.h"

namespace vantora::embedded {

// A value as "&" and the text functions see it: "" for a blank, "TRUE", "1.5".
std::string TextOf(const Scalar& value);

// `base` ^ `exponent`: #NUM! for 0^0 and where there is no real result, #DIV/0! for 0^-1.
Scalar Power(double base, double exponent);

// An operand as the functions that sum see it: `visit(number)` for each number. In cells and arrays
// anything but a number is passed over; a value given directly is converted. An error value becomes
// the call's result.
template <typename Visitor>
void ForEachNumberOf(Call& call, const Operand& operand, Visitor&& visit) {
  Evaluator& evaluator = call.evaluator();
  // The first error value in reading order is the result.
  CellAddress error_cell{kMaxRow + 1, 1};
  Scalar error;
  const auto visit_cell = [&](int row, int column, const Scalar& value) {
    if (value.IsNumber()) {
      visit(value.number);
    } else if (value.IsError() && CellAddress{row, column} < error_cell) {
      error_cell = {row, column};
      error = value;
    }
  };
  switch (operand.kind) {
    case Operand::Kind::kScalar:
    case Operand::Kind::kMissing: {
      const double number = call.NumberOf(operand.scalar);
      if (!call.failed()) visit(number);
      break;
    }
    case Operand::Kind::kBlock:
      evaluator.ForEachCell(operand.block, visit_cell);
      break;
    case Operand::Kind::kBlocks:
      for (const Block& block : *operand.blocks) evaluator.ForEachCell(block, visit_cell);
      break;
    case Operand::Kind::kArray:
      for (int row = 0; row < operand.array->rows; ++row) {
        for (int column = 0; column < operand.array->columns; ++column) {
          visit_cell(row, column, operand.array->At(row, column));
        }
      }
      break;
  }
  call.FailIfError(error);
}

// The same for all arguments from `first` on.
template <typename Visitor>
void ForEachNumber(Call& call, std::size_t first, Visitor&& visit) {
  for (std::size_t i = first; i < call.size() && !call.failed(); ++i) {
    ForEachNumberOf(call, call[i], visit);
  }
}

// `visit(value)` for all values of an operand: of cells those that are not blank, column by column;
// of an array all, by row; a value itself.
template <typename Visitor>
void ForEachValueOf(Call& call, const Operand& operand, Visitor&& visit) {
  const auto visit_cell = [&](int, int, const Scalar& value) { visit(value); };
  switch (operand.kind) {
    case Operand::Kind::kBlock:
      call.evaluator().ForEachCell(operand.block, visit_cell);
      break;
    case Operand::Kind::kBlocks:
      for (const Block& block : *operand.blocks) call.evaluator().ForEachCell(block, visit_cell);
      break;
    case Operand::Kind::kArray:
      for (const Scalar& value : operand.array->values) visit(value);
      break;
    default:
      visit(operand.scalar);
  }
}

}  // namespace vantora::embedded
