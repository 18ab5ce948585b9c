#include "formula/function.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "formula/evaluator.h"
#include "formula/functions.h"
#include "formula/lexical.h"
#include "formula/number_text.h"
#include "formula/unicode.h"

namespace vantora::embedded {

char FunctionEntry::Takes(std::size_t parameter) const {
  const std::size_t star = takes.find('*');
  if (star == std::string_view::npos) return takes[std::min(parameter, takes.size() - 1)];
  if (parameter < star) return takes[parameter];
  return takes[star + 1 + (parameter - star) % (takes.size() - star - 1)];
}

std::vector<const FunctionEntry*> AllFunctions() {
  std::vector<const FunctionEntry*> all;
  for (std::span<const FunctionEntry> group :
       {LogicFunctions(), MathFunctions(), TrigonometryFunctions(), StatisticsFunctions(),
        DistributionFunctions(), RegressionFunctions(), SubtotalFunctions(), LookupFunctions(),
        XLookupFunctions(), InformationFunctions(), CellFunctions(), TextFunctions(),
        DateFunctions(), WorkdayFunctions(), FinanceFunctions(), DepreciationFunctions(),
        FormatFunctions()}) {
    for (const FunctionEntry& entry : group) all.push_back(&entry);
  }
  std::ranges::sort(all, {}, &FunctionEntry::name);
  return all;
}

const FunctionEntry* FindFunction(std::string_view name) {
  static const std::unordered_map<std::string_view, const FunctionEntry*> table = [] {
    std::unordered_map<std::string_view, const FunctionEntry*> by_name;
    for (const FunctionEntry* entry : AllFunctions()) by_name.emplace(entry->name, entry);
    return by_name;
  }();
  const auto found = table.find(name);
  return found == table.end() ? nullptr : found->second;
}

std::string_view WithoutPrefix(std::string_view name) {
  for (std::string_view prefix : {"_XLFN.", "_XLWS.", "_XLUDF."}) {
    if (name.substr(0, prefix.size()) == prefix) name.remove_prefix(prefix.size());
  }
  return name;
}

Operand Call::Evaluate(std::size_t i) { return Evaluate(i, array_mode_); }

Operand Call::Evaluate(std::size_t i, bool array_mode) {
  return evaluator_.Evaluate(nodes_[i], array_mode);
}

Scalar Call::EvaluateValue(std::size_t i) { return evaluator_.ToScalar(Evaluate(i)); }

Scalar Call::Value(std::size_t i) const {
  return i < arguments_.size() ? arguments_[i].scalar : Scalar::Blank();
}

double Call::Number(std::size_t i) { return NumberOf(Value(i)); }

int Call::Integer(std::size_t i) {
  const double number = std::trunc(Number(i));
  return static_cast<int>(std::clamp(number, -2147483648.0, 2147483647.0));
}

bool Call::Boolean(std::size_t i) { return BooleanOf(Value(i)); }

std::string_view Call::Text(std::size_t i) { return TextOf(Value(i)); }

double Call::NumberOf(const Scalar& value) {
  const Scalar number = ToNumber(evaluator_, value);
  return FailIfError(number) ? 0 : number.number;
}

bool Call::BooleanOf(const Scalar& value) {
  switch (value.kind) {
    case CellKind::kBoolean:
      return value.boolean;
    case CellKind::kNumber:
      return value.number != 0;
    case CellKind::kText:
      if (EqualIgnoringAsciiCase(value.text, "TRUE")) return true;
      if (!EqualIgnoringAsciiCase(value.text, "FALSE")) Fail(CellError::kValue);
      return false;
    case CellKind::kError:
      Fail(value.error);
      return false;
    default:
      return false;
  }
}

std::string_view Call::TextOf(const Scalar& value) {
  if (value.IsText()) return value.text;
  if (FailIfError(value)) return "";
  return evaluator_.Keep(embedded::TextOf(value));
}

Scalar Call::MakeText(std::string text) const {
  // The longest text that a cell holds.
  constexpr std::size_t kLongest = 32767;
  if (text.size() > kLongest && LengthOf(text) > kLongest) return Scalar::Error(CellError::kValue);
  return Scalar::Text(evaluator_.Keep(std::move(text)));
}

std::string TextOf(const Scalar& value) {
  switch (value.kind) {
    case CellKind::kText:
      return std::string(value.text);
    case CellKind::kNumber:
      return GeneralText(value.number);
    case CellKind::kBoolean:
      return value.boolean ? "TRUE" : "FALSE";
    default:
      return "";
  }
}

}  // namespace vantora::embedded
