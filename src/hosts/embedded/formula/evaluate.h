// Evaluation of one formula. Knows no dependency order: when a precedent is out of date it says so
// and is called again once that has been calculated.
#pragma once

#include <string>
#include <vector>

#include "formula/workbook_model.h"

namespace vantora::embedded {

struct CellPosition {
  int sheet = 0;
  CellAddress cell;
  auto operator<=>(const CellPosition&) const = default;
};

struct Evaluation {
  enum class Outcome {
    kValue,         // `value` is the result (top left one of an array)
    kPending,       // `pending` lists cells that must be calculated first
    kUncalculable,  // `reason` says why (unsupported function, unreadable text, a stale precedent)
  };
  Outcome outcome = Outcome::kValue;
  CellValue value;
  // For an array formula: the results by row, as large as `array_area` asks (#N/A beyond a
  // smaller result, one row or column repeated).
  std::vector<std::vector<CellValue>> array;
  std::vector<CellPosition> pending;
  std::string reason;
};

// What is taken from cells flagged kNeedsCalculation.
enum class Precedents { kUpToDate, kAsTheyAre };

// Evaluates `formula` for the cell at `position`. Texts are interned in model.strings. A precedent
// cell flagged kNeedsCalculation makes the outcome kPending, unless they are taken as they are; one
// flagged kStale kUncalculable. `array_area` is the area of an array formula, null for an ordinary
// one.
Evaluation Evaluate(WorkbookModel& model, const Formula& formula, const CellPosition& position,
                    const Area* array_area = nullptr,
                    Precedents precedents = Precedents::kUpToDate);

// A text as a put or a typed entry reads it: number ("1,234.5", "12%", "(3)", "1e3", "$5"),
// Boolean, error value, or the text itself.
CellValue ValueFromEnteredText(WorkbookModel& model, std::string_view text);

}  // namespace vantora::embedded
