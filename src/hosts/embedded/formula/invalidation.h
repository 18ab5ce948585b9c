// Which cells are out of date.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <vector>

#include "formula/formula_index.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {

// Flags cells with kNeedsCalculation and remembers where they are. A flagged cell's dependents are
// flagged as well, so a change that meets flagged cells stops there.
class Invalidation {
 public:
  Invalidation(WorkbookModel& model, FormulaIndex& index) : model_(model), index_(index) {}

  void AddSheets();
  // Looks at the sheet's array formulas anew.
  void RefreshArrays(int sheet);
  // The area of the array formula that stands in the cell; null when there is none.
  const Area* ArrayIn(int sheet, CellAddress master) const;
  // The array formula's cell whose results reach into `cell`; nullopt when there is none.
  std::optional<CellAddress> MasterOf(int sheet, CellAddress cell) const;

  // Formulas that came without a value, flagged when they were read, count as marked, and what
  // depends on them with them.
  void MarkNeverCalculated();
  // The area's contents changed: its formulas are flagged, other cells are up to date.
  void MarkArea(int sheet, const Area& area);
  // Flags the cells of the area that hold `formula`.
  void MarkFormulas(int sheet, const Area& area, FormulaId formula);
  // Rows of the area were hidden or shown: flags the formulas that see that and look into it; true
  // when there are any.
  bool MarkSeersOfRows(int sheet, const Area& area);
  // Flags what depends on all that was marked, and what is volatile.
  void Propagate();

  // A cell of the sheet was calculated.
  void NoteCalculated(int sheet, FormulaId formula);
  // Hands out the areas that hold all flagged cells of the sheet, in the order in which they were
  // found, and forgets them. Cells within may have been calculated meanwhile.
  std::vector<Area> TakeMarked(int sheet);

  // To be called once index and cells have moved.
  void InsertColumns(const ColumnInsertion& insertion);

 private:
  struct SheetState {
    std::vector<Area> marked;
    std::size_t marked_cells = 0;
    std::size_t tidy_at = 4096;
    // The array formulas as last looked at, and by the key of their cell.
    std::vector<Area> known_arrays;
    std::unordered_map<std::uint64_t, Area> arrays;
    // Changes whenever a flag is cleared.
    std::uint32_t epoch = 1;
  };
  // The cells of an index entry that were flagged at that epoch of their sheet.
  struct Remembered {
    std::uint32_t epoch = 0;
    Area area;
  };
  struct Changed {
    int sheet;
    Area area;
  };

  static std::uint64_t Key(CellAddress cell) {
    return static_cast<std::uint64_t>(cell.row) << 16 | static_cast<std::uint64_t>(cell.column);
  }
  template <typename Filter>
  void Mark(int sheet, const Area& area, Filter&& filter);
  void MarkArray(int sheet, const Area& area);
  void MarkDependents(std::uint32_t number, const DependencyIndex::Entry& entry, const Area& cells);
  void FollowWorklist();
  void MarkVolatiles();
  void AddMarked(int sheet, const Area& area);
  void Tidy(int sheet);

  WorkbookModel& model_;
  FormulaIndex& index_;
  std::vector<SheetState> sheets_;
  std::deque<Changed> worklist_;
  std::unordered_map<std::uint32_t, Remembered> remembered_;
  std::size_t remembered_generation_ = 0;
  bool volatiles_marked_ = false;
};

}  // namespace vantora::embedded
