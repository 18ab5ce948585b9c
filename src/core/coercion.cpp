#include "core/coercion.h"

#include <cstdint>
#include <limits>
#include <optional>

#include "core/convert.h"
#include "core/host_error.h"

namespace vantora {
namespace {

constexpr const char* kSource = "Orvanemcro1";

}  // namespace

bool IsAmount(const Value& value) {
  return value.IsNumber() || (value.IsText() && TextToNumber(value.AsText()).has_value());
}

double ToNumber(const Value& value) {
  if (value.IsNumber()) return value.AsNumber();
  if (value.IsEmpty()) return 0;
  if (value.IsBoolean()) return value.AsBoolean() ? -1 : 0;
  if (value.IsText()) {
    if (auto number = TextToNumber(value.AsText())) return *number;
  }
  throw HostError(HostError::kTypeMismatch,
                  "Type mismatch: \"" + ValueToText(value) + "\" is not a number.", kSource);
}

int ToInteger(const Value& value) {
  const double number = RoundHalfToEven(ToNumber(value));
  if (number < std::numeric_limits<std::int16_t>::min() ||
      number > std::numeric_limits<std::int16_t>::max()) {
    throw HostError(HostError::kOverflow,
                    "Overflow: " + ValueToText(value) + " is not between -32768 and 32767.",
                    kSource);
  }
  return static_cast<int>(number);
}

int ToLong(const Value& value) {
  const std::optional<int> number = NumberToInteger(ToNumber(value));
  if (number) return *number;
  throw HostError(HostError::kOverflow, "Overflow: " + ValueToText(value) + " is too large.",
                  kSource);
}

}  // namespace vantora
