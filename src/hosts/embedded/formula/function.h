// How worksheet functions are described and called.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formula/operand.h"

namespace vantora::embedded {

class Evaluator;
class Call;

inline constexpr int kAnyCount = 255;

// What may change a function's value.
enum class Changes : std::uint8_t {
  kWithArguments,   // nothing but its arguments
  kWithHiddenRows,  // hiding and showing the rows of its arguments as well
  kAlways,          // anything: it is volatile
};

// One worksheet function. `takes` has a letter for each parameter; those behind a `*` repeat.
//   v  a value; an error value becomes the function's result before it is called
//   e  a value, error values included
//   r  cells, an array or a value, as the argument yields it
//   a  the same, and what is calculated in the argument is calculated for each element
//   z  not evaluated before the function asks for it
// Where a value is wanted, an array makes the function be called for each of its elements; a block
// of cells gives the cell in the formula's row or column, in an array formula it is an array.
struct FunctionEntry {
  std::string_view name;
  int least = 0;
  int most = 0;
  std::string_view takes;
  Operand (*handler)(Call& call) = nullptr;
  Changes changes = Changes::kWithArguments;

  bool is_volatile() const { return changes == Changes::kAlways; }
  char Takes(std::size_t parameter) const;
};

inline constexpr Changes kVolatile = Changes::kAlways;

// The functions by kind; together they are the table that FindFunction looks in.
std::span<const FunctionEntry> LogicFunctions();
std::span<const FunctionEntry> MathFunctions();
std::span<const FunctionEntry> TrigonometryFunctions();
std::span<const FunctionEntry> StatisticsFunctions();
std::span<const FunctionEntry> DistributionFunctions();
std::span<const FunctionEntry> RegressionFunctions();
std::span<const FunctionEntry> SubtotalFunctions();
std::span<const FunctionEntry> LookupFunctions();
std::span<const FunctionEntry> XLookupFunctions();
std::span<const FunctionEntry> InformationFunctions();
std::span<const FunctionEntry> CellFunctions();
std::span<const FunctionEntry> TextFunctions();
std::span<const FunctionEntry> DateFunctions();
std::span<const FunctionEntry> WorkdayFunctions();
std::span<const FunctionEntry> FinanceFunctions();
std::span<const FunctionEntry> FormatFunctions();
std::span<const FunctionEntry> DepreciationFunctions();

// All of them, by name.
std::vector<const FunctionEntry*> AllFunctions();

// By upper-case name without prefix; null when the function is not supported.
const FunctionEntry* FindFunction(std::string_view name);
// The upper-case name under which a function is known: newer ones carry a prefix in the file.
std::string_view WithoutPrefix(std::string_view name);

// One call. The arguments are counted from 0; the conversions of an argument give 0, false or ""
// when it can't be converted, and the call's result is then the error.
class Call {
 public:
  Call(Evaluator& evaluator, std::vector<Operand>& arguments, std::span<const std::uint32_t> nodes,
       bool array_mode)
      : evaluator_(evaluator), arguments_(arguments), nodes_(nodes), array_mode_(array_mode) {}

  Evaluator& evaluator() const { return evaluator_; }
  std::size_t size() const { return arguments_.size(); }
  // Whether what the function yields is wanted for each element.
  bool array_mode() const { return array_mode_; }

  const Operand& operator[](std::size_t i) const { return arguments_[i]; }
  // False for an argument beyond the last and for one that is left out.
  bool Given(std::size_t i) const { return i < size() && !arguments_[i].IsMissing(); }
  // Evaluates an argument of a "z" parameter: as it comes, or as a single value (an error
  // included).
  Operand Evaluate(std::size_t i);
  Operand Evaluate(std::size_t i, bool array_mode);
  Scalar EvaluateValue(std::size_t i);

  // A value argument; blank when it is left out.
  Scalar Value(std::size_t i) const;
  double Number(std::size_t i);
  double Number(std::size_t i, double when_absent) { return i < size() ? Number(i) : when_absent; }
  // Cut off towards zero and kept within the range of an int.
  int Integer(std::size_t i);
  int Integer(std::size_t i, int when_absent) { return i < size() ? Integer(i) : when_absent; }
  bool Boolean(std::size_t i);
  bool Boolean(std::size_t i, bool when_absent) { return i < size() ? Boolean(i) : when_absent; }
  std::string_view Text(std::size_t i);

  // The conversions for any value.
  double NumberOf(const Scalar& value);
  bool BooleanOf(const Scalar& value);
  std::string_view TextOf(const Scalar& value);

  // The result will be this error; the first one counts.
  void Fail(CellError error) {
    if (!error_) error_ = error;
  }
  // When `value` is an error value, the result will be that.
  bool FailIfError(const Scalar& value) {
    if (value.IsError()) Fail(value.error);
    return value.IsError();
  }
  bool failed() const { return error_.has_value(); }
  std::optional<CellError> error() const { return error_; }

  // Keeps a text as long as the evaluation lasts.
  Scalar MakeText(std::string text) const;

 private:
  Evaluator& evaluator_;
  std::vector<Operand>& arguments_;
  std::span<const std::uint32_t> nodes_;
  bool array_mode_;
  std::optional<CellError> error_;
};

}  // namespace vantora::embedded
