#include "host/recalculation.h"

#include <algorithm>
#include <cmath>

#include "host/change_recorder.h"

namespace vantora::embedded {
namespace {

bool Agree(const CellValue& stored, const CellValue& calculated, const StringPool& strings) {
  if (stored.kind == CellKind::kNumber && calculated.kind == CellKind::kNumber) {
    const double size = std::max(std::fabs(stored.number), std::fabs(calculated.number));
    return std::fabs(stored.number - calculated.number) <= size * 1e-9;
  }
  if (stored.kind == CellKind::kText && calculated.kind == CellKind::kText) {
    return strings[stored.text] == strings[calculated.text];
  }
  return stored == calculated;
}

// Compares the results on one sheet.
class SheetResults {
 public:
  SheetResults(const SheetModel& sheet, const CellStore& before, const StringPool& strings)
      : sheet_(sheet), before_(before), strings_(strings) {}

  void Compare(Recalculation& result) {
    for (int column = 1; column <= sheet_.cells.LastColumn(); ++column) {
      sheet_.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
        if (cell.formula != 0) CompareCell({row, column}, cell);
      });
    }
    // The other cells of an array hold results, but no formula.
    for (const ArrayFormula& array : sheet_.arrays) {
      for (int column = array.area.first_column; column <= array.area.last_column; ++column) {
        sheet_.cells.ForEachInColumn(column, array.area.first_row, array.area.last_row,
                                     [&](int row, const Cell& cell) {
                                       if (cell.formula == 0) CompareCell({row, column}, cell);
                                     });
      }
    }
    std::sort(differences_.begin(), differences_.end(),
              [](const StoredValueDifference& a, const StoredValueDifference& b) {
                return a.cell < b.cell;
              });
    std::move(differences_.begin(), differences_.end(), std::back_inserter(result.differences));
    result.formulas += compared_;
  }

 private:
  void CompareCell(CellAddress at, const Cell& cell) {
    ++compared_;
    const Cell stored = before_.Get(at);
    if (Agree(stored.value, cell.value, strings_)) return;
    differences_.push_back({sheet_.name, at, DisplayValue(stored.value, strings_),
                            DisplayValue(cell.value, strings_)});
  }

  const SheetModel& sheet_;
  const CellStore& before_;
  const StringPool& strings_;
  std::size_t compared_ = 0;
  std::vector<StoredValueDifference> differences_;
};

}  // namespace

Recalculation RecalculateAll(OpenWorkbook& workbook) {
  WorkbookModel& model = workbook.model();
  std::vector<CellStore> before;
  for (const auto& sheet : model.sheets) before.push_back(sheet->cells.Clone());
  for (const auto& sheet : model.sheets) {
    if (auto area = sheet->cells.UsedArea()) workbook.calculator().Changed(sheet->id, *area);
  }
  Recalculation result;
  result.uncalculated = workbook.Calculate();
  for (int id : model.tab_order) {
    SheetResults(*model.sheets[id], before[static_cast<std::size_t>(id)], model.strings)
        .Compare(result);
  }
  return result;
}

}  // namespace vantora::embedded
