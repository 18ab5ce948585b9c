// Formulas that depend on one another in circles.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "formula/evaluate.h"
#include "formula/formula_index.h"
#include "formula/invalidation.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {

// Remembers what it has found: all circles of a workbook together cost what its dependencies cost
// once.
class Circles {
 public:
  Circles(const WorkbookModel& model, FormulaIndex& index, const Invalidation& invalidation)
      : model_(model), index_(index), invalidation_(invalidation) {}

  // Formulas, names or their places changed.
  void Forget();
  // These formulas, which go in a circle, and all that are in one with any of them, in the order in
  // which they are calculated: by tab, row and column.
  std::vector<CellPosition> Of(const std::vector<CellPosition>& formulas);

 private:
  // A formula as the search for circles (Tarjan's) sees it.
  struct Node {
    int number = 0;
    int lowest = 0;
    int circle = -1;
  };
  // A formula whose dependents are being looked at.
  struct Visit {
    CellPosition position;
    std::vector<CellPosition> dependents;
    std::size_t next = 0;
  };

  static std::uint64_t Key(const CellPosition& position) {
    return static_cast<std::uint64_t>(position.sheet) << 36 |
           static_cast<std::uint64_t>(position.cell.column) << 21 |
           static_cast<std::uint64_t>(position.cell.row);
  }
  void Search(const CellPosition& start);
  void Enter(const CellPosition& position);
  void Leave();
  std::vector<CellPosition> DependentsOf(const CellPosition& position);

  const WorkbookModel& model_;
  FormulaIndex& index_;
  const Invalidation& invalidation_;
  std::unordered_map<std::uint64_t, Node> nodes_;
  std::vector<std::vector<CellPosition>> circles_;
  // Of the search that is under way.
  std::vector<Visit> visits_;
  std::vector<CellPosition> open_;
};

}  // namespace vantora::embedded
