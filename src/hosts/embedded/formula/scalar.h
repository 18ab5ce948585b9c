// One value during an evaluation, with its text at hand, and the conversions between kinds.
#pragma once

#include <cmath>
#include <optional>
#include <string_view>

#include "cells/cell_store.h"

namespace vantora::embedded {

struct Scalar {
  CellKind kind = CellKind::kBlank;
  union {
    double number;
    bool boolean;
    CellError error;
    std::string_view text;  // owned by the string pool or by the evaluation
  };

  Scalar() : number(0) {}
  static Scalar Blank() { return {}; }
  // #NUM! when the number is not finite.
  static Scalar Number(double number) {
    if (!std::isfinite(number)) return Error(CellError::kNum);
    Scalar scalar;
    scalar.kind = CellKind::kNumber;
    scalar.number = number == 0 ? 0 : number;  // there is no negative zero
    return scalar;
  }
  static Scalar Text(std::string_view text) {
    Scalar scalar;
    scalar.kind = CellKind::kText;
    scalar.text = text;
    return scalar;
  }
  static Scalar Boolean(bool boolean) {
    Scalar scalar;
    scalar.kind = CellKind::kBoolean;
    scalar.boolean = boolean;
    return scalar;
  }
  static Scalar Error(CellError error) {
    Scalar scalar;
    scalar.kind = CellKind::kError;
    scalar.error = error;
    return scalar;
  }

  bool IsBlank() const { return kind == CellKind::kBlank; }
  bool IsNumber() const { return kind == CellKind::kNumber; }
  bool IsText() const { return kind == CellKind::kText; }
  bool IsBoolean() const { return kind == CellKind::kBoolean; }
  bool IsError() const { return kind == CellKind::kError; }
};

// Whether two numbers are the same to 15 significant digits, which is how comparisons see them.
bool SameNumber(double a, double b);

// The order of comparisons: numbers, texts (without regard to case), Booleans; a blank is 0, "" or
// FALSE as the other one asks. Negative, 0 or positive. Neither is an error.
int CompareScalars(const Scalar& a, const Scalar& b);

}  // namespace vantora::embedded
