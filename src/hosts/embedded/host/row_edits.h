// What macros read and change of whole rows: height, hidden, outline. Each edit throws HostError
// where the sheet's protection does not allow it.
#pragma once

#include "host/open_workbook.h"

namespace vantora::embedded {

// Rows are hidden when they are marked so or have the height 0.
bool RowsHidden(OpenWorkbook& book, int sheet, const Area& area);
void SetRowsHidden(OpenWorkbook& book, int sheet, const Area& area, bool hidden);

// In points; 0 for a hidden row. The sheet says how high rows are that say nothing themselves.
double RowHeight(const SheetModel& sheet, const RowFormat& format);
double RowHeight(OpenWorkbook& book, int sheet, int row);
// 0 hides the rows and any other height shows them. Throws HostError 1004 beyond 409.5.
void SetRowHeight(OpenWorkbook& book, int sheet, const Area& area, double points);

// 1 for a row that belongs to no group, up to 8.
int RowOutlineLevel(OpenWorkbook& book, int sheet, int row);
void SetRowOutlineLevel(OpenWorkbook& book, int sheet, const Area& area, int level);
// Shows the grouped rows of up to that level and hides those of deeper ones. Rows that belong to no
// group stay as they are.
void ShowRowLevels(OpenWorkbook& book, int sheet, int levels);

}  // namespace vantora::embedded
