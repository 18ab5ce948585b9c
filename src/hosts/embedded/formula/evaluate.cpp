#include "formula/evaluate.h"

#include <utility>

#include "core/convert.h"
#include "formula/evaluator.h"
#include "formula/lexical.h"
#include "formula/number_text.h"
#include "formula/program.h"

namespace vantora::embedded {
namespace {

// A formula's result as a cell stores it: a reference to a blank cell gives 0.
CellValue StoredValue(WorkbookModel& model, const Scalar& value) {
  switch (value.kind) {
    case CellKind::kNumber:
      return CellValue::Number(value.number);
    case CellKind::kText:
      return CellValue::Text(model.strings.Intern(value.text));
    case CellKind::kBoolean:
      return CellValue::Boolean(value.boolean);
    case CellKind::kError:
      return CellValue::Error(value.error);
    default:
      return CellValue::Number(0);
  }
}

std::vector<std::vector<CellValue>> FillArea(WorkbookModel& model, const Operand& values,
                                             const Area& area) {
  std::vector<std::vector<CellValue>> rows(area.rows());
  for (int row = 0; row < area.rows(); ++row) {
    for (int column = 0; column < area.columns(); ++column) {
      rows[row].push_back(StoredValue(model, RepeatedElement(values, row, column)));
    }
  }
  return rows;
}

}  // namespace

Evaluation Evaluate(WorkbookModel& model, const Formula& formula, const CellPosition& position,
                    const Area* array_area, Precedents precedents) {
  if (!formula.program) formula.program = std::make_shared<const Program>(Compile(formula));
  Evaluator evaluator(model, position, array_area != nullptr, precedents);
  Operand result = evaluator.Run(formula, *formula.program);
  if (!evaluator.stopped()) {
    result = array_area ? evaluator.ToValues(result) : Operand(evaluator.ToScalar(result));
  }
  Evaluation evaluation;
  if (!evaluator.reason().empty()) {
    evaluation.outcome = Evaluation::Outcome::kUncalculable;
    evaluation.reason = std::move(evaluator.reason());
  } else if (!evaluator.pending().empty()) {
    evaluation.outcome = Evaluation::Outcome::kPending;
    evaluation.pending = std::move(evaluator.pending());
  } else if (array_area) {
    evaluation.array = FillArea(model, result, *array_area);
    evaluation.value = evaluation.array[0][0];
  } else {
    evaluation.value = StoredValue(model, result.scalar);
  }
  return evaluation;
}

CellValue ValueFromEnteredText(WorkbookModel& model, std::string_view text) {
  if (const std::optional<double> number = NumberFromText(text)) return CellValue::Number(*number);
  const std::string_view trimmed = TrimBlanks(text);
  if (EqualIgnoringAsciiCase(trimmed, "TRUE")) return CellValue::Boolean(true);
  if (EqualIgnoringAsciiCase(trimmed, "FALSE")) return CellValue::Boolean(false);
  if (const std::optional<CellError> error = ErrorOfName(trimmed)) return CellValue::Error(*error);
  return CellValue::Text(model.strings.Intern(text));
}

}  // namespace vantora::embedded
