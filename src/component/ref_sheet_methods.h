// The members of clsRefSheet as rows of the class table.
#pragma once

#include <vector>

#include "component/class_table.h"

namespace vantora::component {

// In declaration order.
std::vector<Method> RefSheetMethods();

}  // namespace vantora::component
