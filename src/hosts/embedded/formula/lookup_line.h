// One column or row that values are looked up in.
#pragma once

#include <algorithm>
#include <optional>
#include <utility>

#include "formula/evaluator.h"

namespace vantora::embedded {

// One column or row of an operand, from the first element on.
class Line {
 public:
  Line(Evaluator& evaluator, const Operand& operand, bool vertical)
      : evaluator_(evaluator), operand_(operand), vertical_(vertical) {
    const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(operand);
    length_ = !size ? 0 : vertical ? size->first : size->second;
  }

  int length() const { return length_; }
  Scalar At(int i) const {
    return vertical_ ? evaluator_.ElementAt(operand_, i, 0) : evaluator_.ElementAt(operand_, 0, i);
  }

  // The first element (the last one, `from_end`) that `is_equal(value)` holds for, -1 when there is
  // none; all such ones equal `wanted`, without wildcards. nullopt where that can't be told without
  // reading the line.
  template <typename Equal>
  std::optional<int> FindIndexed(const Scalar& wanted, bool from_end, Equal&& is_equal) const {
    if (!operand_.IsBlock() || length_ == 0 || wanted.IsBlank()) return std::nullopt;
    const auto candidates = evaluator_.CandidatesIn(Piece(0, length_ - 1), wanted);
    if (!candidates) return std::nullopt;
    for (std::size_t i = 0; i < candidates->size(); ++i) {
      const int place = (*candidates)[from_end ? candidates->size() - 1 - i : i].place;
      if (is_equal(At(place))) return place;
    }
    return -1;
  }

  // The element, where it need not be looked for; nullopt, and all elements from there on that are
  // out of date are noted, when it is out of date itself.
  std::optional<Scalar> TryAt(int i) const {
    const Scalar value = At(i);
    if (!evaluator_.stopped()) return value;
    if (operand_.IsBlock() && i + 1 < length_) {
      evaluator_.NoteOutOfDate(Piece(i + 1, length_ - 1));
    }
    return std::nullopt;
  }

  // Visits the elements that are not blank from `from` on until `visit(i, value)` gives true; that
  // one's place, or -1. Cells are read in growing pieces, so that an early hit costs little and
  // cells that do not exist cost nothing.
  template <typename Visitor>
  int FindFirst(int from, Visitor&& visit) const {
    if (!operand_.IsBlock()) {
      for (int i = from; i < length_; ++i) {
        const Scalar value = At(i);
        if (!value.IsBlank() && visit(i, value)) return i;
      }
      return -1;
    }
    for (int size = 64; from < length_; size *= 2) {
      const int to = std::min(length_ - from, size) + from - 1;
      int found = -1;
      evaluator_.ForEachCell(Piece(from, to), [&](int row, int column, const Scalar& value) {
        if (found >= 0) return;
        const int i = vertical_ ? row - operand_.block.area.first_row
                                : column - operand_.block.area.first_column;
        if (visit(i, value)) found = i;
      });
      if (evaluator_.stopped()) {
        // All that is out of date is told at once.
        if (to + 1 < length_) evaluator_.NoteOutOfDate(Piece(to + 1, length_ - 1));
        return -1;
      }
      if (found >= 0) return found;
      from = to + 1;
    }
    return -1;
  }

 private:
  Block Piece(int from, int to) const {
    Block piece = operand_.block;
    if (vertical_) {
      piece.area.last_column = piece.area.first_column;
      piece.area.last_row = piece.area.first_row + to;
      piece.area.first_row += from;
    } else {
      piece.area.last_row = piece.area.first_row;
      piece.area.last_column = piece.area.first_column + to;
      piece.area.first_column += from;
    }
    return piece;
  }

  Evaluator& evaluator_;
  const Operand& operand_;
  bool vertical_;
  int length_ = 0;
};

// The place of the last element of a sorted line that is not beyond `wanted` (`ascending`: not
// greater than it), found by halving; -1 when there is none. Elements of another kind than `wanted`
// are passed over.
int FindSorted(const Line& line, const Scalar& wanted, bool ascending);

}  // namespace vantora::embedded
