// The `vantora` command.
#pragma once

#include <string>
#include <vector>

#include "cli/environment.h"

namespace vantora::cli {

// `arguments` without the program's name; returns the exit code.
int RunCommand(const std::vector<std::string>& arguments, Environment& environment);

}  // namespace vantora::cli
