// A cell value as the workbook's host hands it over.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace vantora {

// The host's error values under the host's own codes.
enum class CellError : int {
  kNull = 2000,      // #NULL!
  kDiv0 = 2007,      // #DIV/0!
  kValue = 2015,     // #VALUE!
  kRef = 2023,       // #REF!
  kName = 2029,      // #NAME?
  kNum = 2036,       // #NUM!
  kNotAvailable = 2042,  // #N/A
};

// A closed variant: empty, number, text (UTF-8), Boolean or error value. A plain value type;
// equality is exact (text with regard to case, numbers bit by bit as operator== compares doubles).
class Value {
 public:
  Value() = default;
  Value(double number) : data_(number) {}                       // NOLINT: a value is a number
  Value(int number) : data_(static_cast<double>(number)) {}     // NOLINT
  Value(bool boolean) : data_(boolean) {}                       // NOLINT
  Value(std::string text) : data_(std::move(text)) {}           // NOLINT
  Value(std::string_view text) : data_(std::string(text)) {}    // NOLINT
  Value(const char* text) : data_(std::string(text)) {}         // NOLINT
  Value(CellError error) : data_(error) {}                      // NOLINT

  bool IsEmpty() const { return std::holds_alternative<std::monostate>(data_); }
  bool IsNumber() const { return std::holds_alternative<double>(data_); }
  bool IsText() const { return std::holds_alternative<std::string>(data_); }
  bool IsBoolean() const { return std::holds_alternative<bool>(data_); }
  bool IsError() const { return std::holds_alternative<CellError>(data_); }
  bool IsError(CellError error) const { return IsError() && AsError() == error; }

  // Each requires that the value is of that kind (std::bad_variant_access otherwise); the
  // conversions between kinds are in convert.h.
  double AsNumber() const { return std::get<double>(data_); }
  const std::string& AsText() const { return std::get<std::string>(data_); }
  bool AsBoolean() const { return std::get<bool>(data_); }
  CellError AsError() const { return std::get<CellError>(data_); }

  bool operator==(const Value&) const = default;

 private:
  std::variant<std::monostate, double, std::string, bool, CellError> data_;
};

}  // namespace vantora
