// Formats and widths of whole columns.
#pragma once

#include "formula/workbook_model.h"

namespace vantora::embedded {

// Gives columns first..last the format `style`; widths stay.
void SetColumnStyle(SheetModel& sheet, int first, int last, StyleId style);

// Gives column `to` the format and the width of column `from`.
void CopyColumnFormat(SheetModel& sheet, int from, int to);

}  // namespace vantora::embedded
