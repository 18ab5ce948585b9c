#include "formula/invalidation.h"

#include <algorithm>
#include <utility>

#include "formula/run_merger.h"

namespace vantora::embedded {

void Invalidation::AddSheets() {
  std::size_t known = sheets_.size();
  sheets_.resize(model_.sheets.size());
  for (std::size_t sheet = known; sheet < sheets_.size(); ++sheet) {
    RefreshArrays(static_cast<int>(sheet));
  }
}

void Invalidation::RefreshArrays(int sheet) {
  SheetState& state = sheets_[sheet];
  const auto& arrays = model_.sheets[sheet]->arrays;
  if (std::equal(arrays.begin(), arrays.end(), state.known_arrays.begin(), state.known_arrays.end(),
                 [](const ArrayFormula& array, const Area& area) { return array.area == area; })) {
    return;
  }
  state.arrays.clear();
  state.known_arrays.clear();
  for (const ArrayFormula& array : arrays) {
    state.known_arrays.push_back(array.area);
    state.arrays[Key({array.area.first_row, array.area.first_column})] = array.area;
  }
}

const Area* Invalidation::ArrayIn(int sheet, CellAddress master) const {
  const auto& arrays = sheets_[sheet].arrays;
  if (arrays.empty()) return nullptr;
  auto found = arrays.find(Key(master));
  return found == arrays.end() ? nullptr : &found->second;
}

std::optional<CellAddress> Invalidation::MasterOf(int sheet, CellAddress cell) const {
  for (const ArrayFormula& array : model_.sheets[sheet]->arrays) {
    if (array.area.Contains(cell)) {
      return CellAddress{array.area.first_row, array.area.first_column};
    }
  }
  return std::nullopt;
}

template <typename Filter>
void Invalidation::Mark(int sheet, const Area& area, Filter&& filter) {
  CellStore& cells = model_.sheets[sheet]->cells;
  RunMerger merger([&](const Area& marked, FormulaId) {
    AddMarked(sheet, marked);
    worklist_.push_back({sheet, marked});
  });
  int last_column = std::min(area.last_column, cells.LastColumn());
  for (int column = area.first_column; column <= last_column; ++column) {
    cells.ForEachInColumn(column, area.first_row, area.last_row, [&](int row, const Cell& cell) {
      if (!filter(CellAddress{row, column}, cell)) return;
      CellAddress address{row, column};
      cells.SetFlag(address, kNeedsCalculation, true);
      if (cell.flags & kStale) cells.SetFlag(address, kStale, false);
      merger.Add(column, row, row, 1);
      if (const Area* array = ArrayIn(sheet, address)) MarkArray(sheet, *array);
    });
  }
  merger.Finish();
}

// The results of an array formula are out of date with it. Cells that have none yet are made, so
// that a reader sees that one is to come.
void Invalidation::MarkArray(int sheet, const Area& area) {
  CellStore& cells = model_.sheets[sheet]->cells;
  for (int column = area.first_column; column <= area.last_column; ++column) {
    for (int row = area.first_row; row <= area.last_row; ++row) {
      CellAddress cell{row, column};
      if (!cells.Exists(cell)) cells.SetValue(cell, CellValue::Blank());
      cells.SetFlag(cell, kNeedsCalculation, true);
      cells.SetFlag(cell, kStale, false);
    }
  }
  worklist_.push_back({sheet, area});
}

void Invalidation::MarkNeverCalculated() {
  for (const auto& sheet : model_.sheets) {
    RefreshArrays(sheet->id);
    Mark(sheet->id, {1, 1, kMaxRow, kMaxColumn}, [](CellAddress, const Cell& cell) {
      return cell.formula != 0 && (cell.flags & kNeedsCalculation);
    });
  }
  if (!worklist_.empty()) Propagate();
}

void Invalidation::MarkArea(int sheet, const Area& area) {
  RefreshArrays(sheet);
  CellStore& cells = model_.sheets[sheet]->cells;
  Mark(sheet, area, [&](CellAddress address, const Cell& cell) {
    if (cell.formula) return !(cell.flags & kNeedsCalculation);
    if (cell.flags & (kNeedsCalculation | kStale)) {
      cells.SetFlag(address, kNeedsCalculation, false);
      cells.SetFlag(address, kStale, false);
    }
    return false;
  });
  for (const ArrayFormula& array : model_.sheets[sheet]->arrays) {
    if (!array.area.Intersects(area)) continue;
    Area master{array.area.first_row, array.area.first_column, array.area.first_row,
                array.area.first_column};
    AddMarked(sheet, master);
    MarkArray(sheet, array.area);
  }
  worklist_.push_back({sheet, area});
}

void Invalidation::MarkFormulas(int sheet, const Area& area, FormulaId formula) {
  Mark(sheet, area, [&](CellAddress, const Cell& cell) {
    return cell.formula == formula && !(cell.flags & kNeedsCalculation);
  });
}

bool Invalidation::MarkSeersOfRows(int sheet, const Area& area) {
  bool any = false;
  index_.ForEachDependent(sheet, area, [&](auto, const auto& entry, const Area& cells) {
    const Formula& formula = model_.sheets[entry.sheet]->formulas[entry.formula];
    if (!index_.precedents().SeesHiddenRows(formula, entry.sheet)) return;
    MarkFormulas(entry.sheet, cells, entry.formula);
    any = true;
  });
  return any;
}

void Invalidation::Propagate() {
  if (remembered_generation_ != index_.generation()) {
    remembered_.clear();
    remembered_generation_ = index_.generation();
  }
  FollowWorklist();
  if (volatiles_marked_) return;
  MarkVolatiles();
  FollowWorklist();
}

void Invalidation::FollowWorklist() {
  while (!worklist_.empty()) {
    Changed changed = worklist_.front();
    worklist_.pop_front();
    index_.ForEachDependent(changed.sheet, changed.area,
                            [&](std::uint32_t number, const auto& entry, const Area& cells) {
                              MarkDependents(number, entry, cells);
                            });
  }
}

// A large block that is met again and again (a running sum, a share of one total) is looked through
// only where that has not been done since its sheet's last calculation.
void Invalidation::MarkDependents(std::uint32_t number, const DependencyIndex::Entry& entry,
                                  const Area& cells) {
  constexpr int kLarge = 64;
  int sheet = entry.sheet;
  if (cells.rows() < kLarge) {
    MarkFormulas(sheet, cells, entry.formula);
    return;
  }
  Remembered& known = remembered_[number];
  const Area& done = known.area;
  std::uint32_t epoch = sheets_[sheet].epoch;
  bool adjoins = known.epoch == epoch && done.first_column <= cells.first_column &&
                 done.last_column >= cells.last_column && done.first_row <= cells.last_row &&
                 done.last_row >= cells.first_row;
  if (!adjoins) {
    MarkFormulas(sheet, cells, entry.formula);
    known = {epoch, cells};
    return;
  }
  Area above = cells;
  above.last_row = done.first_row - 1;
  Area below = cells;
  below.first_row = done.last_row + 1;
  if (above.first_row <= above.last_row) MarkFormulas(sheet, above, entry.formula);
  if (below.first_row <= below.last_row) MarkFormulas(sheet, below, entry.formula);
  if (done.first_column == cells.first_column && done.last_column == cells.last_column) {
    known.area.first_row = std::min(done.first_row, cells.first_row);
    known.area.last_row = std::max(done.last_row, cells.last_row);
  }
}

void Invalidation::MarkVolatiles() {
  for (std::size_t sheet = 0; sheet < sheets_.size(); ++sheet) {
    for (const SpecialFormulas& special : index_.specials(static_cast<int>(sheet))) {
      if (!special.is_volatile) continue;
      MarkFormulas(static_cast<int>(sheet), special.source, special.formula);
    }
  }
  volatiles_marked_ = true;
}

void Invalidation::NoteCalculated(int sheet, FormulaId id) {
  ++sheets_[sheet].epoch;
  const Formula& formula = model_.sheets[sheet]->formulas[id];
  if (formula.is_volatile || (!formula.names.empty() && index_.IsVolatileByName(sheet, id))) {
    volatiles_marked_ = false;
  }
}

void Invalidation::AddMarked(int sheet, const Area& area) {
  SheetState& state = sheets_[sheet];
  state.marked.push_back(area);
  state.marked_cells += static_cast<std::size_t>(area.rows()) * area.columns();
  if (state.marked_cells > state.tidy_at) Tidy(sheet);
}

// Keeps the list no longer than twice the flagged cells, however often they are flagged and
// calculated again.
void Invalidation::Tidy(int sheet) {
  SheetState& state = sheets_[sheet];
  const CellStore& cells = model_.sheets[sheet]->cells;
  std::vector<std::uint64_t> flagged;
  for (const Area& area : state.marked) {
    for (int column = area.first_column; column <= area.last_column; ++column) {
      cells.ForEachInColumn(column, area.first_row, area.last_row, [&](int row, const Cell& cell) {
        if (!cell.formula || !(cell.flags & kNeedsCalculation)) return;
        flagged.push_back(static_cast<std::uint64_t>(column) << 32 |
                          static_cast<std::uint64_t>(row));
      });
    }
  }
  std::sort(flagged.begin(), flagged.end());
  flagged.erase(std::unique(flagged.begin(), flagged.end()), flagged.end());
  // Where few were calculated or met twice, the list stays in the order in which it grew.
  if (flagged.size() < state.marked_cells / 2) {
    state.marked.clear();
    RunMerger merger([&](const Area& area, FormulaId) { state.marked.push_back(area); });
    for (std::uint64_t cell : flagged) {
      int row = static_cast<int>(cell & 0xffffffff);
      merger.Add(static_cast<int>(cell >> 32), row, row, 1);
    }
    merger.Finish();
    state.marked_cells = flagged.size();
  }
  state.tidy_at = 2 * state.marked_cells + 4096;
}

std::vector<Area> Invalidation::TakeMarked(int sheet) {
  SheetState& state = sheets_[sheet];
  state.marked_cells = 0;
  state.tidy_at = 4096;
  return std::exchange(state.marked, {});
}

void Invalidation::InsertColumns(const ColumnInsertion& insertion) {
  RefreshArrays(insertion.sheet);
  remembered_.clear();
  for (Area& area : sheets_[insertion.sheet].marked) {
    if (area.first_column >= insertion.column) area.first_column += insertion.count;
    if (area.last_column >= insertion.column) area.last_column += insertion.count;
  }
}

}  // namespace vantora::embedded
