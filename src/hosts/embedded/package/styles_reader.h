// Reads what the model needs of a workbook's cell formats.
#pragma once

#include <string_view>

#include "cells/styles.h"
#include "package/opc_package.h"

namespace vantora::embedded {

// `styles_part` and `theme_part` may be "" when the workbook has none. Throws FileError.
Styles ReadStyles(const OpcPackage& package, std::string_view styles_part,
                  std::string_view theme_part);

}  // namespace vantora::embedded
