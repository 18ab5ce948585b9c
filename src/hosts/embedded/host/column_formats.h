// Formats and widths of whole columns.
#pragma once

#include <vector>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// Gives columns first..last the format `style`; widths stay.
void SetColumnStyle(SheetModel& sheet, int first, int last, StyleId style);

// Gives column `to` the format and the width of column `from`.
void CopyColumnFormat(SheetModel& sheet, int from, int to);

// The run that holds the column; null when none does.
const ColumnFormat* FormatOfColumn(const std::vector<ColumnFormat>& runs, int column);

// Widths are those of files (column_width.h); `default_width` is that of columns without one.
double WidthOfColumn(const SheetModel& sheet, int column, double default_width);
double WidthOfColumn(const std::vector<ColumnFormat>& runs, int column, double default_width);
bool IsColumnHidden(const SheetModel& sheet, int column);
bool IsColumnHidden(const std::vector<ColumnFormat>& runs, int column);
// A hidden column keeps its width.
void SetColumnsHidden(SheetModel& sheet, int first, int last, bool hidden, double default_width);
// Shows the columns as well; a width of 0 hides them.
void SetColumnsWidth(SheetModel& sheet, int first, int last, double width, double default_width);

}  // namespace vantora::embedded
