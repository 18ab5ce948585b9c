#include "refsheet/cell_number.h"

#include <cstdint>
#include <limits>
#include <optional>

#include "core/convert.h"
#include "core/host_error.h"

namespace vantora {
namespace {

[[noreturn]] void ThrowOverflow() { throw MacroError(HostError::kOverflow, "Overflow"); }

[[noreturn]] void ThrowTypeMismatch() {
  throw MacroError(HostError::kTypeMismatch, "Type mismatch");
}

int ToShort(double number) {
  using Limits = std::numeric_limits<std::int16_t>;
  const int whole = ToLong(number);
  if (whole < Limits::min() || whole > Limits::max()) ThrowOverflow();
  return whole;
}

}  // namespace

int ToLong(double number) {
  const std::optional<int> whole = NumberToInteger(number);
  if (!whole) ThrowOverflow();
  return *whole;
}

int ToShort(std::string_view text) {
  const std::optional<double> number = TextToNumber(text);
  if (!number) ThrowTypeMismatch();
  return ToShort(*number);
}

int ToShort(const Value& value) {
  if (value.IsEmpty()) return 0;
  if (value.IsBoolean()) return value.AsBoolean() ? -1 : 0;
  if (value.IsNumber()) return ToShort(value.AsNumber());
  if (value.IsText()) return ToShort(std::string_view(value.AsText()));
  ThrowTypeMismatch();
}

}  // namespace vantora
