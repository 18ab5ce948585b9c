// A workbook of a few cells for evaluation tests.
#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>

#include "formula/evaluate.h"
#include "formula/lexical.h"
#include "formula/number_text.h"

namespace vantora::embedded {

inline CellAddress CellAt(std::string_view a1) {
  const Area area = *ParseA1(a1);
  return {area.first_row, area.first_column};
}

// A formula and what it gives, as SmallBook::Result shows it.
struct FormulaCase {
  const char* formula;
  const char* expected;
};
inline void PrintTo(const FormulaCase& value, std::ostream* out) { *out << value.formula; }

class SmallBook {
 public:
  explicit SmallBook(std::initializer_list<const char*> sheets) {
    for (const char* name : sheets) model.AddSheet(name);
  }

  // Puts texts from the cell to the right as they would be typed; a text with a leading ' is one,
  // and an empty one leaves the cell out.
  void Row(int sheet, std::string_view first, std::initializer_list<const char*> values) {
    CellAddress cell = CellAt(first);
    for (std::string_view value : values) {
      if (!value.empty()) {
        const CellValue stored = value[0] == '\''
                                     ? CellValue::Text(model.strings.Intern(value.substr(1)))
                                     : ValueFromEnteredText(model, value);
        model.sheets[sheet]->cells.SetConstant(cell, stored);
      }
      ++cell.column;
    }
  }

  void Flag(int sheet, std::string_view cell, CellFlag flag) {
    model.sheets[sheet]->cells.SetFlag(CellAt(cell), flag, true);
  }

  // What the formula gives in a cell: 1.5, "text", TRUE, #N/A, or why there is no value.
  std::string Result(std::string_view formula, std::string_view cell = "M20", int sheet = 0) {
    return Shown(Run(formula, cell, sheet, nullptr));
  }
  // The rows of an array formula: "1,2;3,4".
  std::string ArrayResult(std::string_view formula, std::string_view cells, int sheet = 0) {
    const Area area = *ParseA1(cells);
    const Evaluation evaluation = Run(formula, cells.substr(0, cells.find(':')), sheet, &area);
    if (evaluation.outcome != Evaluation::Outcome::kValue) return Shown(evaluation);
    std::string shown;
    for (std::size_t row = 0; row < evaluation.array.size(); ++row) {
      for (std::size_t column = 0; column < evaluation.array[row].size(); ++column) {
        shown += column > 0 ? "," : row > 0 ? ";" : "";
        shown += Shown(evaluation.array[row][column]);
      }
    }
    return shown;
  }

  std::string Shown(const CellValue& value) const {
    switch (value.kind) {
      case CellKind::kNumber:
        return GeneralText(value.number);
      case CellKind::kText:
        return "\"" + model.strings[value.text] + "\"";
      case CellKind::kBoolean:
        return value.boolean ? "TRUE" : "FALSE";
      case CellKind::kError:
        return std::string(NameOfError(value.error));
      default:
        return "blank";
    }
  }

  WorkbookModel model;

 private:
  Evaluation Run(std::string_view formula, std::string_view cell, int sheet, const Area* area) {
    const CellAddress at = CellAt(cell);
    return Evaluate(model, ParseFormula(formula, at, model), {sheet, at}, area);
  }

  std::string Shown(const Evaluation& evaluation) const {
    switch (evaluation.outcome) {
      case Evaluation::Outcome::kUncalculable:
        return "can't: " + evaluation.reason;
      case Evaluation::Outcome::kPending: {
        std::string shown = "pending";
        for (const CellPosition& pending : evaluation.pending) {
          shown += " " + model.NameOf(pending.sheet) + "!" + ToA1(pending.cell);
        }
        return shown;
      }
      default:
        return Shown(evaluation.value);
    }
  }
};

}  // namespace vantora::embedded
