// An inspection as text and as JSON.
#pragma once

#include <ostream>

#include "inspection/inspection.h"

namespace vantora::cli {

void WriteInspection(const inspection::Inspection& inspection, std::ostream& out);
// One object; cells as "C12", columns as letters, rows as numbers, what is missing as null.
void WriteInspectionJson(const inspection::Inspection& inspection, std::ostream& out);

}  // namespace vantora::cli
