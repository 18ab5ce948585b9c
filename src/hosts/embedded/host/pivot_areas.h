// Where the pivot tables of a sheet stand.
#pragma once

#include <string_view>
#include <vector>

#include "cells/address.h"
#include "package/opc_package.h"

namespace vantora::embedded {

// The area of each pivot table of the sheet with that part, as the package's parts say now.
std::vector<Area> PivotAreas(const OpcPackage& package, std::string_view sheet_part);

}  // namespace vantora::embedded
