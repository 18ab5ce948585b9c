// The component's classes and methods in words.
#pragma once

#include <ostream>

namespace vantora::cli {

// Every class and method with its arguments, what it asks and what it does.
void WriteClassList(std::ostream& out);

}  // namespace vantora::cli
