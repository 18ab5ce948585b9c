// Cells as messages name them, and the numbers that they must hold.
#pragma once

#include <string>

#include "core/host.h"
#include "core/value.h"

namespace vantora {

// "C12".
std::string CellName(int row, int column);

// A cell of a sheet, which must outlive the place.
struct CellPlace {
  host::Worksheet& sheet;
  int row;
  int column;

  // "Reference!C12".
  std::string Name() const;
};

// What coercion.h makes of a value that was read from the cell; the errors name the cell and tell
// what to do about it.
double NumberIn(const CellPlace& cell, const Value& value);
// A 16-bit integer.
int IntegerIn(const CellPlace& cell, const Value& value);
// A 32-bit integer.
int LongIn(const CellPlace& cell, const Value& value);

}  // namespace vantora
