// The cells in which two workbooks, or two states of one, differ.
#pragma once

#include <string>
#include <vector>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// A cell's content for a reader: its formula ("=A1+1", "" without one) and its value.
struct CellContent {
  std::string formula;
  std::string value;
  bool operator==(const CellContent&) const = default;
};

struct CellDifference {
  std::string sheet;
  CellAddress cell;
  CellContent before;
  CellContent after;
};

// Compares worksheets of the same name (upper and lower case alike), in the tab order of `after`;
// sheets that only one of them has are left out. Formulas are compared as they read, values
// exactly. Each sheet's differences come row by row. Values must be up to date.
std::vector<CellDifference> CompareCells(const WorkbookModel& before, const WorkbookModel& after);

// Names of the worksheets of `model` that `other` does not have, in tab order.
std::vector<std::string> SheetsMissingIn(const WorkbookModel& other, const WorkbookModel& model);

}  // namespace vantora::embedded
