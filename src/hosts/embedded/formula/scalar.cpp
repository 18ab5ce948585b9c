#include "formula/scalar.h"

#include <algorithm>

#include "formula/number_text.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

int RankOf(CellKind kind) {
  switch (kind) {
    case CellKind::kText:
      return 1;
    case CellKind::kBoolean:
      return 2;
    default:
      return 0;
  }
}

// A blank as the empty value of the other one's kind.
Scalar EmptyAs(CellKind kind) {
  if (kind == CellKind::kText) return Scalar::Text("");
  if (kind == CellKind::kBoolean) return Scalar::Boolean(false);
  return Scalar::Number(0);
}

}  // namespace

bool SameNumber(double a, double b) {
  if (a == b) return true;
  const double scale = std::max(std::fabs(a), std::fabs(b));
  if (std::fabs(a - b) > scale * 1e-14) return false;
  return RoundTo15Digits(a) == RoundTo15Digits(b);
}

int CompareScalars(const Scalar& a, const Scalar& b) {
  if (a.IsBlank() && b.IsBlank()) return 0;
  if (a.IsBlank()) return CompareScalars(EmptyAs(b.kind), b);
  if (b.IsBlank()) return CompareScalars(a, EmptyAs(a.kind));
  const int rank_a = RankOf(a.kind), rank_b = RankOf(b.kind);
  if (rank_a != rank_b) return rank_a - rank_b;
  if (rank_a == 1) return CompareIgnoringCase(a.text, b.text);
  if (rank_a == 2) return a.boolean - b.boolean;
  if (SameNumber(a.number, b.number)) return 0;
  return a.number < b.number ? -1 : 1;
}

}  // namespace vantora::embedded
