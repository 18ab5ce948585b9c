// Conditions as COUNTIF and SUMIFS take them: 5, "North", ">=10", "<>", "A*".
#pragma once

#include <optional>
#include <string_view>

#include "formula/function.h"
#include "formula/program.h"

namespace vantora::embedded {

class Criterion {
 public:
  // The texts of `condition` must outlive the criterion.
  Criterion(Call& call, const Scalar& condition);

  bool Holds(const Scalar& value) const;
  bool HoldsForBlank() const { return Holds(Scalar::Blank()); }
  // The value that all values equal which meet it; nullopt when it asks for something else.
  std::optional<Scalar> EqualTo() const;

 private:
  bool Equals(const Scalar& value) const;
  bool EqualsText(std::string_view text) const;

  Node::Kind relation_ = Node::Kind::kEqual;
  Scalar operand_;
  bool is_pattern_ = false;
  // "=" or "<>" alone asks for cells without content; the empty condition "" also for empty texts.
  bool only_blank_ = false;
};

}  // namespace vantora::embedded
