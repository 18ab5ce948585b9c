// What the model's macro language makes of a cell value where a number is wanted, with the errors
// that it raises. A conversion that can't fail is in convert.h.
#pragma once

#include "core/value.h"

namespace vantora {

// A number, or a text that is a number as a whole: what a user takes for an amount. Unlike
// IsNumeric, neither an empty cell nor a Boolean.
bool IsAmount(const Value& value);

// Empty is 0, True is -1, a text must be a number as a whole. Throws HostError 13 for any other
// text and for an error value.
double ToNumber(const Value& value);

// A 16-bit integer: the number rounded half to even. Throws HostError 6 outside -32768 to 32767,
// and 13 as ToNumber does.
int ToInteger(const Value& value);

// A 32-bit integer, with the same errors.
int ToLong(const Value& value);

}  // namespace vantora
