// The shapes and form controls on a sheet.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "package/opc_package.h"

namespace vantora::embedded {

// The names of what is drawn on the sheet with that part: shapes, charts, form controls.
std::vector<std::string> ShapeNames(const OpcPackage& package, std::string_view sheet_part);

}  // namespace vantora::embedded
