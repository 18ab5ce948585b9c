#include "host/cell_differences.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "host/change_recorder.h"

namespace vantora::embedded {
namespace {

// Compares one sheet of two workbooks.
class SheetComparison {
 public:
  SheetComparison(const WorkbookModel& before, const SheetModel& before_sheet,
                  const WorkbookModel& after, const SheetModel& after_sheet)
      : before_{before, before_sheet}, after_{after, after_sheet} {}

  std::vector<CellDifference> Run() {
    const int columns = std::max(before_.sheet.cells.LastColumn(), after_.sheet.cells.LastColumn());
    for (int column = 1; column <= columns; ++column) {
      before_.sheet.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
        Compare({row, column}, cell, after_.sheet.cells.Get({row, column}));
      });
      after_.sheet.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
        if (!before_.sheet.cells.Exists({row, column})) Compare({row, column}, Cell{}, cell);
      });
    }
    std::sort(differences_.begin(), differences_.end(),
              [](const CellDifference& a, const CellDifference& b) { return a.cell < b.cell; });
    return std::move(differences_);
  }

 private:
  struct Side {
    const WorkbookModel& model;
    const SheetModel& sheet;

    std::string FormulaOf(const Cell& cell, CellAddress at) const {
      if (cell.formula == 0) return "";
      return "=" + FormulaText(sheet.formulas[cell.formula], at, model);
    }
    CellContent ContentOf(const Cell& cell, CellAddress at) const {
      return {FormulaOf(cell, at), DisplayValue(cell.value, model.strings)};
    }
  };

  void Compare(CellAddress at, const Cell& before, const Cell& after) {
    if (SameFormula(at, before, after) && SameValue(before.value, after.value)) return;
    CellContent content_before = before_.ContentOf(before, at);
    CellContent content_after = after_.ContentOf(after, at);
    if (content_before == content_after) return;  // blank and absent read alike
    differences_.push_back(
        {after_.sheet.name, at, std::move(content_before), std::move(content_after)});
  }

  // Cells that share a formula on both sides agree as the first of them does.
  bool SameFormula(CellAddress at, const Cell& before, const Cell& after) {
    if (before.formula == 0 || after.formula == 0) return before.formula == after.formula;
    const std::uint64_t pair = std::uint64_t{before.formula} << 32 | after.formula;
    const auto [known, is_new] = same_formulas_.try_emplace(pair);
    if (is_new) known->second = before_.FormulaOf(before, at) == after_.FormulaOf(after, at);
    return known->second;
  }

  bool SameValue(const CellValue& before, const CellValue& after) const {
    if (before.kind == CellKind::kText && after.kind == CellKind::kText) {
      return before_.model.strings[before.text] == after_.model.strings[after.text];
    }
    return before == after;
  }

  Side before_;
  Side after_;
  std::unordered_map<std::uint64_t, bool> same_formulas_;
  std::vector<CellDifference> differences_;
};

}  // namespace

std::vector<CellDifference> CompareCells(const WorkbookModel& before, const WorkbookModel& after) {
  std::vector<CellDifference> differences;
  for (int id : after.tab_order) {
    const SheetModel& sheet = *after.sheets[id];
    const auto same = before.IdOf(sheet.name);
    if (!sheet.is_worksheet || !same || !before.sheets[*same]->is_worksheet) continue;
    auto of_sheet = SheetComparison(before, *before.sheets[*same], after, sheet).Run();
    std::move(of_sheet.begin(), of_sheet.end(), std::back_inserter(differences));
  }
  return differences;
}

std::vector<std::string> SheetsMissingIn(const WorkbookModel& other, const WorkbookModel& model) {
  std::vector<std::string> names;
  for (int id : model.tab_order) {
    if (!other.IdOf(model.NameOf(id))) names.push_back(model.NameOf(id));
  }
  return names;
}

}  // namespace vantora::embedded
