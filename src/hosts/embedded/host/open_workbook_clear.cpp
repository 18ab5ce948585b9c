// Clearing cells of an open workbook, and putting a column of values.

#include "host/column_formats.h"
#include "host/open_workbook.h"
#include "package/sheet_features.h"

namespace vantora::embedded {

void OpenWorkbook::PutColumn(int sheet_id, CellAddress first, std::span<const Value> rows) {
  if (rows.empty()) return;
  const Area area{first.row, first.column, first.row + static_cast<int>(rows.size()) - 1,
                  first.column};
  PrepareContents(sheet_id, area);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    PutValue(sheet_id, {first.row + static_cast<int>(i), first.column}, rows[i]);
  }
  ContentsChanged(sheet_id, area);
}

void OpenWorkbook::Clear(int sheet_id, const Area& area) {
  RefuseFormatting(sheet_id, {});
  ClearContents(sheet_id, area);
  ClearFormats(sheet_id, area);
  DropPlainCells(sheet_id, area);
  ClearFeatures(file_->markup(sheet_id), area,
                kConditionalFormats | kValidations | kMergedCells | kHyperlinks);
  Comments(sheet_id).Clear(area);
  commented_cells_.erase(sheet_id);
}

void OpenWorkbook::DropPlainCells(int sheet_id, const Area& area) {
  SheetModel& target = sheet(sheet_id);
  for (int column = area.first_column; column <= area.last_column; ++column) {
    target.cells.ForEachInColumn(
        column, area.first_row, area.last_row, [&](int row, const Cell& cell) {
          if (!cell.has_content() && target.StyleBehind({row, column}) == cell.style) {
            target.cells.Erase({row, column});
          }
        });
  }
}

}  // namespace vantora::embedded
