// What a sheet may be called.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// Why no sheet may have that name, as the end of a sentence; nullopt for a name that one may have.
// Whether another sheet has it does not matter.
std::optional<std::string> FaultOfSheetName(std::string_view name);

// The first of "Sheet1", "Sheet2", ... that no sheet of the workbook has.
std::string FreeSheetName(const WorkbookModel& model);

}  // namespace vantora::embedded
