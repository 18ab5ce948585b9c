// What was found out about cells that many formulas look into: that they are up to date, and where
// in a column or row a value stands. Thousands of look-ups in one column then do not each read it
// from the top.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "cells/cell_store.h"
#include "cells/string_pool.h"
#include "formula/operand.h"

namespace vantora::embedded {

// Where values stand in a column or row. Finds candidates: whoever asks compares them.
class LineIndex {
 public:
  // Reads cells that are up to date.
  LineIndex(const CellStore& cells, const StringPool& strings, const Area& line);

  // One element that may equal the value; `place` counts from 0.
  struct Entry {
    std::uint32_t hash;
    std::int32_t place;
    auto operator<=>(const Entry&) const = default;
  };
  // By ascending place. All elements are among them that a look-up or a condition ("=North") may
  // take for the value: texts without regard to case, numbers to 15 digits, for a number also texts
  // that read as it. Not for blanks, nor for a text with wildcards.
  std::span<const Entry> CandidatesFor(const Scalar& value) const;

  std::size_t size() const { return entries_.size(); }

 private:
  std::vector<Entry> entries_;
};

// The indexes and other findings of a workbook. They hold as long as the cells don't change, which
// is looked after here. Bounded in memory: when there are too many, all are forgotten.
class LineIndexes {
 public:
  // Whether the cells of the block were found to be up to date and did not change since.
  bool AreUpToDate(const CellStore& cells, const Block& block);
  // They were all looked at, and are.
  void NoteUpToDate(const CellStore& cells, const Block& block);
  // An index of one column or row, made once it has been asked for a few times between changes;
  // null when there is none (yet). Places beyond the line's end do not count: lines that grow from
  // row to row ($A$1:A2, $A$1:A3, ...) share one. Valid until the next call of a member.
  const LineIndex* Find(const CellStore& cells, const StringPool& strings, const Block& line);

 private:
  struct Finding {
    // The sheet's count of changes when it was last found to hold.
    std::uint64_t at = 0;
    bool up_to_date = false;
    int requests = 0;
    std::optional<LineIndex> index;
  };
  struct Hash {
    std::size_t operator()(const Block& block) const;
  };

  // The block's finding, emptied when something changed.
  Finding& Current(const CellStore& cells, const Block& block);
  // Makes the index when it was asked for often enough and the cells are up to date.
  const LineIndex* FindExactly(const CellStore& cells, const StringPool& strings,
                               const Block& line);
  void MakeRoom();

  std::unordered_map<Block, Finding, Hash> findings_;
  // By their first cell, how many requests lines of a column could not be answered.
  std::unordered_map<Block, int, Hash> unanswered_;
  std::size_t entries_ = 0;
};

}  // namespace vantora::embedded
