#include "formula/formula_index.h"

#include <algorithm>

#include "formula/run_merger.h"

namespace vantora::embedded {

FormulaId FormulaMap::At(int column, int row) const {
  if (column > LastColumn()) return 0;
  const auto& blocks = columns_[column - 1];
  std::size_t index = (row - 1) / kBlockRows;
  return index < blocks.size() && blocks[index] ? (*blocks[index])[(row - 1) % kBlockRows] : 0;
}

void FormulaMap::Set(int column, int row, FormulaId formula) {
  if (LastColumn() < column) columns_.resize(column);
  auto& blocks = columns_[column - 1];
  std::size_t index = (row - 1) / kBlockRows;
  if (blocks.size() <= index) blocks.resize(index + 1);
  if (!blocks[index]) blocks[index] = std::make_unique<Block>();
  (*blocks[index])[(row - 1) % kBlockRows] = formula;
}

void FormulaMap::InsertColumns(int column, int count) {
  if (column > LastColumn()) return;
  std::vector<std::vector<std::unique_ptr<Block>>> added(count);
  columns_.insert(columns_.begin() + (column - 1), std::make_move_iterator(added.begin()),
                  std::make_move_iterator(added.end()));
}

void FormulaIndex::AddSheets() {
  formulas_.resize(model_.sheets.size());
  specials_.resize(model_.sheets.size());
  dependencies_.Grow(model_.sheets.size());
}

void FormulaIndex::Build() {
  formulas_.clear();
  AddSheets();
  precedents_.Reset();
  for (std::size_t sheet = 0; sheet < formulas_.size(); ++sheet) {
    const CellStore& cells = model_.sheets[sheet]->cells;
    RunMerger merger([&](const Area& source, FormulaId formula) {
      AddEntries(static_cast<int>(sheet), source, formula);
    });
    Area all{1, 1, kMaxRow, kMaxColumn};
    for (int column = 1; column <= cells.LastColumn(); ++column) {
      UpdateColumn(static_cast<int>(sheet), column, all, merger);
    }
    merger.Finish();
  }
  size_when_built_ = dependencies_.size() + special_count_;
}

void FormulaIndex::Rebuild() {
  ++generation_;
  dependencies_.Reset(formulas_.size());
  for (auto& specials : specials_) specials.clear();
  volatile_by_name_.clear();
  special_count_ = 0;
  precedents_.Reset();
  for (std::size_t sheet = 0; sheet < formulas_.size(); ++sheet) {
    RunMerger merger([&](const Area& source, FormulaId formula) {
      AddEntries(static_cast<int>(sheet), source, formula);
    });
    for (int column = 1; column <= formulas_[sheet].LastColumn(); ++column) {
      formulas_[sheet].ForEachRun(column, [&](int first_row, int last_row, FormulaId formula) {
        merger.Add(column, first_row, last_row, formula);
      });
    }
    merger.Finish();
  }
  size_when_built_ = dependencies_.size() + special_count_;
}

void FormulaIndex::Update(int sheet, const Area& area) {
  RunMerger merger(
      [&](const Area& source, FormulaId formula) { AddEntries(sheet, source, formula); });
  int last_column = std::min(area.last_column, std::max(formulas_[sheet].LastColumn(),
                                                        model_.sheets[sheet]->cells.LastColumn()));
  for (int column = area.first_column; column <= last_column; ++column) {
    UpdateColumn(sheet, column, area, merger);
  }
  merger.Finish();
  RebuildWhenMostIsOutdated();
}

// Hands the runs of formulas that are new to the index to `merger`.
template <typename Merger>
void FormulaIndex::UpdateColumn(int sheet, int column, const Area& area, Merger&& merger) {
  FormulaMap& known = formulas_[sheet];
  model_.sheets[sheet]->cells.ForEachInColumn(column, area.first_row, area.last_row,
                                              [&](int row, const Cell& cell) {
                                                if (known.At(column, row) == cell.formula) return;
                                                known.Set(column, row, cell.formula);
                                                if (cell.formula)
                                                  merger.Add(column, row, row, cell.formula);
                                              });
}

void FormulaIndex::Add(int sheet, const Area& source, FormulaId formula) {
  for (int column = source.first_column; column <= source.last_column; ++column) {
    for (int row = source.first_row; row <= source.last_row; ++row) {
      formulas_[sheet].Set(column, row, formula);
    }
  }
  AddEntries(sheet, source, formula);
}

void FormulaIndex::AddEntries(int sheet, const Area& source, FormulaId id) {
  const Formula& formula = model_.sheets[sheet]->formulas[id];
  for (const Precedent& precedent : precedents_.PrecedentsOf(formula, sheet, source)) {
    dependencies_.Add(precedent.sheet, precedent.shape, sheet, source, id);
  }
  bool spans_sheets =
      std::any_of(formula.references.begin(), formula.references.end(),
                  [](const Reference& one) { return one.first_sheet != one.last_sheet; });
  if (formula.is_volatile || !formula.names.empty() || !formula.tables.empty() || spans_sheets) {
    const bool is_volatile = precedents_.IsVolatile(formula, sheet);
    if (is_volatile && !formula.is_volatile) volatile_by_name_.insert({sheet, id});
    specials_[sheet].push_back({source, id, is_volatile});
    ++special_count_;
  }
}

// Edits leave entries behind that no cell counts for any more; building anew when they may be as
// many as the others costs no more than the edits did.
void FormulaIndex::RebuildWhenMostIsOutdated() {
  constexpr std::size_t kNotWorthIt = 4096;
  if (dependencies_.size() + special_count_ > 2 * size_when_built_ + kNotWorthIt) Rebuild();
}

void FormulaIndex::InsertColumns(const ColumnInsertion& insertion) {
  // Looked at here, where no visit of the entries is under way.
  RebuildWhenMostIsOutdated();
  formulas_[insertion.sheet].InsertColumns(insertion.column, insertion.count);
  dependencies_.InsertColumns(insertion);
  for (SpecialFormulas& special : specials_[insertion.sheet]) {
    Area& area = special.source;
    if (area.first_column >= insertion.column) area.first_column += insertion.count;
    if (area.last_column >= insertion.column) area.last_column += insertion.count;
  }
}

}  // namespace vantora::embedded
