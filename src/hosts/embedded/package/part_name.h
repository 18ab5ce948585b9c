// The names of parts.
#pragma once

#include <string_view>

namespace vantora::embedded {

// False for what no part can be named: absolute and climbing names, names with a drive.
bool IsPartName(std::string_view name);

}  // namespace vantora::embedded
