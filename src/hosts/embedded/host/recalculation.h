// Calculating a whole workbook afresh.
#pragma once

#include "host/open_workbook.h"
#include "host/session.h"

namespace vantora::embedded {

// Marks every formula as out of date, calculates all and compares with the values of before. A
// formula that can't be calculated keeps its value and is no difference.
Recalculation RecalculateAll(OpenWorkbook& workbook);

}  // namespace vantora::embedded
