// References to tables have a long form in files: users enter "[@Amount]", files say
// "Sales[[#This Row],[Amount]]".
#pragma once

#include <string>
#include <string_view>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// The formula (without "=") as files write it, for a cell of `sheet`. What is in its long form
// stays as it is written, as does a reference to the cell's own table where it stands in none.
std::string WithTableNames(std::string_view formula, const WorkbookModel& model, int sheet,
                           CellAddress cell);

}  // namespace vantora::embedded
