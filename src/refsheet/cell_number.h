// Numbers that the lists hold, as the component's macro language converts them.
#pragma once

#include <string>
#include <string_view>

#include "core/value.h"

namespace vantora {

// A 16-bit whole number, rounded half to even. The empty value is 0. Throws 13 for what is no
// number, 6 for one that is too large.
int ToShort(const Value& value);

// The same for a text; an empty one is no number.
int ToShort(std::string_view text);

// The number as a 32-bit whole one. Throws 6 for one that is too large.
int ToLong(double number);

}  // namespace vantora
