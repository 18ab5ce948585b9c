// The shapes and form controls on a sheet.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "package/opc_package.h"
#include "package/workbook_file.h"

namespace vantora::embedded {

// The names of what is drawn on the sheet with that part: shapes, charts, form controls.
std::vector<std::string> ShapeNames(const OpcPackage& package, std::string_view sheet_part);

// The name as the sheet has it of the shape or control called `name` (case-insensitive); nullopt
// when it has none.
std::optional<std::string> ShapeOnSheet(WorkbookFile& file, int sheet, std::string_view name);

}  // namespace vantora::embedded
