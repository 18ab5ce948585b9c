// Keeps the values of a workbook's formulas true.
//
// An edit marks what depends on it as out of date, found through an index of dependents in which a
// block of cells with one shared formula is a single entry for each of its references; a read
// calculates what it needs and no more. So an edit costs what depends on it, a read of a value that
// is up to date costs nothing, and each formula is calculated once however many edits came before.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// A formula whose value could not be brought up to date.
struct Uncalculated {
  int sheet = 0;
  CellAddress cell;
  // In plain words: "function UNIQUE is not supported", "circular reference".
  std::string reason;
};

class Calculator {
 public:
  // `model` must outlive the calculator. The index is built at the first edit.
  explicit Calculator(WorkbookModel& model);
  ~Calculator();

  // The cells of the area changed (values, or formulas set or removed): indexes their formulas,
  // marks these and all that depends on the area as out of date.
  void Changed(int sheet, const Area& area);

  // Rows within the area were hidden or shown: marks what depends on that (SUBTOTAL, AGGREGATE).
  void RowsHidden(int sheet, const Area& area);

  // Columns were inserted and formulas follow. Call instead of CellStore::InsertColumns: it moves
  // the cells, rewrites the formulas that the insertion crosses (on all sheets) and moves the
  // index's entries; formulas whose value may depend on where things stand are marked. Names follow
  // as well (model.names). Array areas, column formats move with the cells.
  void InsertColumns(const ColumnInsertion& insertion);

  // model.names changed otherwise than by InsertColumns, or sheets came or moved: the formulas that
  // use names or span sheets are marked, at the next call of another member.
  void NamesChanged();

  // Brings the cell's value up to date; false when it can't be (the cell is then flagged kStale).
  bool EnsureCalculated(int sheet, CellAddress cell);
  // Same for every cell of the area; false when one can't be.
  bool EnsureCalculated(int sheet, const Area& area);
  // Brings everything up to date, as far as anything changed.
  void CalculateAll();
  // The same, formulas that came without a value included.
  void CalculateAllAndNew();
  // Gives the formulas of the area that are out of date the values that the other cells' present
  // ones make, up to date or not. They stay out of date.
  void CalculateOnEntry(int sheet, const Area& area);

  // The formulas that hold values of before the last edits, in workbook order (sheet, row, column).
  // Complete after CalculateAll.
  std::vector<Uncalculated> Uncalculable() const;
  // Why the cell, flagged kStale, holds a value of before; "" when it does not.
  std::string ReasonFor(int sheet, CellAddress cell) const;
  // Number of formulas evaluated since the calculator was made, for the bench and tests.
  std::size_t evaluations() const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantora::embedded
