#include "formula/criterion.h"

#include <utility>

#include "formula/date_text.h"
#include "formula/evaluator.h"
#include "formula/lexical.h"
#include "formula/number_text.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

using Kind = Node::Kind;

constexpr std::pair<std::string_view, Kind> kRelations[] = {
    {">=", Kind::kGreaterOrEqual}, {"<=", Kind::kLessOrEqual}, {"<>", Kind::kNotEqual},
    {">", Kind::kGreater},         {"<", Kind::kLess},         {"=", Kind::kEqual},
};

// What the text behind the relation stands for.
Scalar OperandOf(Call& call, std::string_view text) {
  if (const std::optional<double> number = NumberFromText(text)) return Scalar::Number(*number);
  if (EqualIgnoringAsciiCase(text, "TRUE")) return Scalar::Boolean(true);
  if (EqualIgnoringAsciiCase(text, "FALSE")) return Scalar::Boolean(false);
  if (const std::optional<CellError> error = ErrorOfName(text)) return Scalar::Error(*error);
  constexpr int kNoYear = -1;
  const DateText date = ReadDateTime(text, call.evaluator().model().date_1904, kNoYear);
  if (date.kind == DateText::Kind::kDateTime) {
    return Scalar::Number(date.value.day + date.value.time);
  }
  if (MayBeDateOrTime(text)) {
    call.evaluator().Stop("the condition \"" + std::string(text) +
                          "\" may be a date, which is not supported");
  }
  return Scalar::Text(text);
}

}  // namespace

Criterion::Criterion(Call& call, const Scalar& condition) : operand_(condition) {
  if (condition.IsBlank()) operand_ = Scalar::Number(0);
  if (!condition.IsText()) return;
  std::string_view text = condition.text;
  bool has_relation = false;
  for (const auto& [sign, relation] : kRelations) {
    if (text.substr(0, sign.size()) == sign) {
      relation_ = relation;
      text.remove_prefix(sign.size());
      has_relation = true;
      break;
    }
  }
  only_blank_ = has_relation && text.empty();
  operand_ = text.empty() ? Scalar::Text("") : OperandOf(call, text);
  is_pattern_ = operand_.IsText() && IsPattern(text) &&
                (relation_ == Kind::kEqual || relation_ == Kind::kNotEqual);
}

bool Criterion::EqualsText(std::string_view text) const {
  return is_pattern_ ? MatchesPattern(text, operand_.text) : EqualIgnoringCase(text, operand_.text);
}

bool Criterion::Equals(const Scalar& value) const {
  switch (operand_.kind) {
    case CellKind::kNumber: {
      if (value.IsNumber()) return SameNumber(value.number, operand_.number);
      // A text that reads as the number counts as well, for "=" but not against "<>".
      if (!value.IsText() || relation_ != Kind::kEqual) return false;
      const std::optional<double> number = NumberFromText(value.text);
      return number && *number == operand_.number;
    }
    case CellKind::kBoolean:
      return value.IsBoolean() && value.boolean == operand_.boolean;
    case CellKind::kError:
      return value.IsError() && value.error == operand_.error;
    default:
      if (operand_.text.empty()) {
        return value.IsBlank() || (!only_blank_ && value.IsText() && value.text.empty());
      }
      return value.IsText() && EqualsText(value.text);
  }
}

std::optional<Scalar> Criterion::EqualTo() const {
  const bool is_empty = operand_.IsText() && operand_.text.empty();
  if (relation_ != Kind::kEqual || is_pattern_ || is_empty) return std::nullopt;
  return operand_;
}

bool Criterion::Holds(const Scalar& value) const {
  if (relation_ == Kind::kEqual) return Equals(value);
  if (relation_ == Kind::kNotEqual) return !Equals(value);
  // Only values of one kind are greater or less than each other.
  if (value.kind != operand_.kind || value.IsError() || only_blank_) return false;
  return RelationHolds(relation_, CompareScalars(value, operand_));
}

}  // namespace vantora::embedded
