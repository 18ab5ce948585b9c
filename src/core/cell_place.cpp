#include "core/cell_place.h"

#include <algorithm>

#include "core/coercion.h"
#include "core/convert.h"

namespace vantora {
namespace {

std::string Mismatch(const CellPlace& cell, const Value& value) {
  const std::string text = ValueToText(value);
  if (text.empty()) {
    return "Type mismatch: " + cell.Name() +
           " is empty, and a number is wanted there. Enter one, or 0 behind the last entry of a "
           "list.";
  }
  return "Type mismatch: " + cell.Name() + " holds \"" + text +
         "\", and a number is wanted there. Enter one.";
}

// `convert` throws as coercion.h does.
template <typename Convert>
auto Converted(const CellPlace& cell, const Value& value, Convert convert) {
  try {
    return convert(value);
  } catch (const HostError& error) {
    if (error.number() == HostError::kTypeMismatch) {
      throw HostError(error.number(), Mismatch(cell, value), error.source());
    }
    throw HostError(error.number(),
                    "Overflow: " + cell.Name() + " holds " + ValueToText(value) +
                        ", which is too large. Enter a smaller number there.",
                    error.source());
  }
}

}  // namespace

std::string CellName(int row, int column) {
  std::string letters;
  for (; column > 0; column = (column - 1) / 26) {
    letters += static_cast<char>('A' + (column - 1) % 26);
  }
  std::reverse(letters.begin(), letters.end());
  return letters + std::to_string(row);
}

std::string CellPlace::Name() const { return sheet.Name() + "!" + CellName(row, column); }

double NumberIn(const CellPlace& cell, const Value& value) {
  return Converted(cell, value, [](const Value& number) { return ToNumber(number); });
}

int IntegerIn(const CellPlace& cell, const Value& value) {
  return Converted(cell, value, [](const Value& number) { return ToInteger(number); });
}

int LongIn(const CellPlace& cell, const Value& value) {
  return Converted(cell, value, [](const Value& number) { return ToLong(number); });
}

}  // namespace vantora
