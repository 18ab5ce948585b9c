// IF and its kin, the tests of a value's kind.
#include <algorithm>

#include "formula/functions.h"

namespace vantora::embedded {
namespace {

// What a branch yields; one that is left out is 0.
Operand Branch(Call& call, std::size_t i, bool when_absent) {
  if (i >= call.size()) return Scalar::Boolean(when_absent);
  Operand value = call.Evaluate(i);
  if (value.IsMissing()) return Scalar::Number(0);
  return value;
}

// IF for each element of an array of conditions.
Operand IfForEach(Call& call, const Operand& condition) {
  Evaluator& evaluator = call.evaluator();
  const Operand yes = evaluator.ToValues(Branch(call, 1, true));
  const Operand no = evaluator.ToValues(Branch(call, 2, false));
  int rows = 1, columns = 1;
  for (const Operand* operand : {&condition, &yes, &no}) {
    const auto [own_rows, own_columns] = *Evaluator::SizeOf(*operand);
    rows = std::max(rows, own_rows);
    columns = std::max(columns, own_columns);
  }
  std::optional<Array> result = evaluator.NewArray(rows, columns);
  if (!result) return {};
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      std::vector<Operand> none;
      Call element(evaluator, none, {}, true);
      const bool holds = element.BooleanOf(RepeatedElement(condition, row, column));
      result->At(row, column) = element.error() ? Scalar::Error(*element.error())
                                                : RepeatedElement(holds ? yes : no, row, column);
    }
  }
  return *std::move(result);
}

// The condition is calculated for each element in an array formula alone, not within a function
// that takes arrays.
Operand If(Call& call) {
  Evaluator& evaluator = call.evaluator();
  const bool for_each = evaluator.array_formula();
  const Operand condition = evaluator.ToParameter(call.Evaluate(0, for_each), for_each);
  if (condition.IsArray()) return IfForEach(call, condition);
  const bool holds = call.BooleanOf(condition.scalar);
  if (call.failed()) return {};
  return holds ? Branch(call, 1, true) : Branch(call, 2, false);
}

// The first argument, or the second where `replaced` says so.
template <typename Replaced>
Operand Instead(Call& call, Replaced replaced) {
  Evaluator& evaluator = call.evaluator();
  const Operand value = evaluator.ToParameter(call.Evaluate(0), call.array_mode());
  if (!value.IsArray()) {
    if (!replaced(value.scalar)) return value.scalar;
    return Branch(call, 1, false);
  }
  const Operand other = evaluator.ToValues(Branch(call, 1, false));
  const auto [rows, columns] = *Evaluator::SizeOf(value);
  const auto [other_rows, other_columns] = *Evaluator::SizeOf(other);
  std::optional<Array> result =
      evaluator.NewArray(std::max(rows, other_rows), std::max(columns, other_columns));
  if (!result) return {};
  for (int row = 0; row < result->rows; ++row) {
    for (int column = 0; column < result->columns; ++column) {
      const Scalar element = RepeatedElement(value, row, column);
      result->At(row, column) = replaced(element) ? RepeatedElement(other, row, column) : element;
    }
  }
  return *std::move(result);
}

Operand IfError(Call& call) {
  return Instead(call, [](const Scalar& value) { return value.IsError(); });
}

bool IsNotAvailable(const Scalar& value) {
  return value.IsError() && value.error == CellError::kNotAvailable;
}

Operand IfNotAvailable(Call& call) { return Instead(call, IsNotAvailable); }

// What `pick(value)` gives for each element of all arguments, where `value(i)` is the element of
// argument i.
template <typename Pick>
Operand PickForEach(Call& call, Pick pick) {
  Evaluator& evaluator = call.evaluator();
  std::vector<Operand> arguments;
  int rows = 1, columns = 1;
  for (std::size_t i = 0; i < call.size(); ++i) {
    arguments.push_back(evaluator.ToValues(Branch(call, i, false)));
    const auto [own_rows, own_columns] = *Evaluator::SizeOf(arguments.back());
    rows = std::max(rows, own_rows);
    columns = std::max(columns, own_columns);
  }
  std::optional<Array> result = evaluator.NewArray(rows, columns);
  if (!result || evaluator.stopped()) return {};
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      std::vector<Operand> none;
      Call element(evaluator, none, {}, true);
      const Scalar picked =
          pick(element, [&](std::size_t i) { return RepeatedElement(arguments[i], row, column); });
      result->At(row, column) = element.error() ? Scalar::Error(*element.error()) : picked;
    }
  }
  return *std::move(result);
}

// Pairs of a condition and a value.
Operand Ifs(Call& call) {
  if (call.array_mode()) {
    return PickForEach(call, [&](Call& element, const auto& value) {
      for (std::size_t i = 0; i + 1 < call.size(); i += 2) {
        if (element.BooleanOf(value(i))) return value(i + 1);
        if (element.failed()) break;
      }
      return Scalar::Error(CellError::kNotAvailable);
    });
  }
  for (std::size_t i = 0; i + 1 < call.size(); i += 2) {
    const bool holds = call.BooleanOf(call.EvaluateValue(i));
    if (call.failed()) return {};
    if (holds) return Branch(call, i + 1, false);
  }
  return Scalar::Error(CellError::kNotAvailable);
}

Operand Switch(Call& call) {
  if (call.array_mode()) {
    return PickForEach(call, [&](Call& element, const auto& value) {
      std::size_t i = 1;
      if (element.FailIfError(value(0))) return Scalar();
      for (; i + 1 < call.size(); i += 2) {
        if (element.FailIfError(value(i))) return Scalar();
        if (CompareScalars(value(0), value(i)) == 0) return value(i + 1);
      }
      return i < call.size() ? value(i) : Scalar::Error(CellError::kNotAvailable);
    });
  }
  const Scalar value = call.EvaluateValue(0);
  if (call.FailIfError(value)) return {};
  std::size_t i = 1;
  for (; i + 1 < call.size(); i += 2) {
    const Scalar candidate = call.EvaluateValue(i);
    if (call.FailIfError(candidate)) return {};
    if (CompareScalars(value, candidate) == 0) return Branch(call, i + 1, false);
  }
  if (i < call.size()) return Branch(call, i, false);
  return Scalar::Error(CellError::kNotAvailable);
}

Operand Choose(Call& call) {
  const Operand index =
      call.evaluator().ToParameter(call.Evaluate(0), call.evaluator().array_formula());
  if (index.IsArray()) {
    return PickForEach(call, [&](Call& element, const auto& value) {
      const double chosen = element.NumberOf(value(0));
      if (chosen >= 1 && chosen < static_cast<double>(call.size())) {
        return value(static_cast<std::size_t>(chosen));
      }
      return Scalar::Error(CellError::kValue);
    });
  }
  const double chosen = call.NumberOf(index.scalar);
  if (call.failed()) return {};
  if (chosen < 1 || chosen >= static_cast<double>(call.size())) {
    return Scalar::Error(CellError::kValue);
  }
  return Branch(call, static_cast<std::size_t>(chosen), false);
}

// The logical values of the arguments: texts and blanks in cells are passed over.
template <typename Visitor>
Operand Combine(Call& call, bool start, Visitor combine) {
  bool result = start, any = false;
  for (std::size_t i = 0; i < call.size(); ++i) {
    const bool direct = call[i].IsScalar() || call[i].IsMissing();
    ForEachValueOf(call, call[i], [&](const Scalar& value) {
      if (call.FailIfError(value)) return;
      if (!direct && !value.IsNumber() && !value.IsBoolean()) return;
      const bool holds = call.BooleanOf(value);
      result = combine(result, holds);
      any = true;
    });
  }
  if (!any) call.Fail(CellError::kValue);
  return Scalar::Boolean(result);
}

Operand And(Call& call) {
  return Combine(call, true, [](bool a, bool b) { return a && b; });
}
Operand Or(Call& call) {
  return Combine(call, false, [](bool a, bool b) { return a || b; });
}
Operand Xor(Call& call) {
  return Combine(call, false, [](bool a, bool b) { return a != b; });
}
Operand Not(Call& call) { return Scalar::Boolean(!call.Boolean(0)); }
Operand True(Call&) { return Scalar::Boolean(true); }
Operand False(Call&) { return Scalar::Boolean(false); }
Operand NotAvailable(Call&) { return Scalar::Error(CellError::kNotAvailable); }

Operand IsBlank(Call& call) {
  return Scalar::Boolean(call[0].IsScalar() && call.Value(0).IsBlank());
}
Operand IsError(Call& call) { return Scalar::Boolean(call.Value(0).IsError()); }
Operand IsOtherError(Call& call) {
  return Scalar::Boolean(call.Value(0).IsError() && !IsNotAvailable(call.Value(0)));
}
Operand IsNa(Call& call) { return Scalar::Boolean(IsNotAvailable(call.Value(0))); }
Operand IsNumber(Call& call) { return Scalar::Boolean(call.Value(0).IsNumber()); }
Operand IsText(Call& call) { return Scalar::Boolean(call.Value(0).IsText()); }
Operand IsNonText(Call& call) { return Scalar::Boolean(!call.Value(0).IsText()); }
Operand IsLogical(Call& call) { return Scalar::Boolean(call.Value(0).IsBoolean()); }
Operand IsReference(Call& call) { return Scalar::Boolean(call[0].IsReference()); }

// Of several cells, the first counts.
Scalar FirstValue(Call& call) {
  Evaluator& evaluator = call.evaluator();
  return call[0].IsBlock() ? evaluator.ElementAt(call[0], 0, 0) : evaluator.ToScalar(call[0]);
}

Operand N(Call& call) {
  const Scalar value = FirstValue(call);
  if (value.IsNumber() || value.IsError()) return value;
  return Scalar::Number(value.IsBoolean() && value.boolean);
}

Operand T(Call& call) {
  const Scalar value = FirstValue(call);
  return value.IsText() || value.IsError() ? value : Scalar::Text("");
}

Operand Type(Call& call) {
  const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(call[0]);
  if (!size) return Scalar::Number(16);
  if (*size != std::pair(1, 1)) return Scalar::Number(64);
  switch (call.evaluator().ElementAt(call[0], 0, 0).kind) {
    case CellKind::kText:
      return Scalar::Number(2);
    case CellKind::kBoolean:
      return Scalar::Number(4);
    case CellKind::kError:
      return Scalar::Number(16);
    default:
      return Scalar::Number(1);
  }
}

Operand ErrorType(Call& call) {
  const Scalar value = call.Value(0);
  if (!value.IsError()) return Scalar::Error(CellError::kNotAvailable);
  constexpr CellError kOrder[] = {CellError::kNull,        CellError::kDiv0, CellError::kValue,
                                  CellError::kRef,         CellError::kName, CellError::kNum,
                                  CellError::kNotAvailable};
  const auto found = std::find(std::begin(kOrder), std::end(kOrder), value.error);
  return Scalar::Number(static_cast<double>(found - std::begin(kOrder) + 1));
}

constexpr FunctionEntry kFunctions[] = {
    {"AND", 1, kAnyCount, "r", And},
    {"CHOOSE", 2, kAnyCount, "z", Choose},
    {"ERROR.TYPE", 1, 1, "e", ErrorType},
    {"FALSE", 0, 0, "v", False},
    {"IF", 1, 3, "z", If},
    {"IFERROR", 2, 2, "z", IfError},
    {"IFNA", 2, 2, "z", IfNotAvailable},
    {"IFS", 2, kAnyCount, "z", Ifs},
    {"ISBLANK", 1, 1, "e", IsBlank},
    {"ISERR", 1, 1, "e", IsOtherError},
    {"ISERROR", 1, 1, "e", IsError},
    {"ISLOGICAL", 1, 1, "e", IsLogical},
    {"ISNA", 1, 1, "e", IsNa},
    {"ISNONTEXT", 1, 1, "e", IsNonText},
    {"ISNUMBER", 1, 1, "e", IsNumber},
    {"ISREF", 1, 1, "r", IsReference},
    {"ISTEXT", 1, 1, "e", IsText},
    {"N", 1, 1, "r", N},
    {"NA", 0, 0, "v", NotAvailable},
    {"NOT", 1, 1, "v", Not},
    {"OR", 1, kAnyCount, "r", Or},
    {"SWITCH", 3, kAnyCount, "z", Switch},
    {"T", 1, 1, "r", T},
    {"TRUE", 0, 0, "v", True},
    {"TYPE", 1, 1, "r", Type},
    {"XOR", 1, kAnyCount, "r", Xor},
};

}  // namespace

std::span<const FunctionEntry> LogicFunctions() { return kFunctions; }

}  // namespace vantora::embedded
