#include "formula/dependency_index.h"

namespace vantora::embedded {
namespace {

struct Interval {
  int first;
  int last;
  bool empty() const { return first > last; }
};

Interval Intersect(Interval a, Interval b) {
  return {std::max(a.first, b.first), std::min(a.last, b.last)};
}

// Positions of the formulas within `source` whose reference along this axis meets `target`. The
// smaller part must not lie beyond the target, the larger not before it; a relative part moves with
// the formula, so each condition bounds the formula's position from one side.
Interval PositionsThatReach(const ReferencePart& part1, const ReferencePart& part2, Interval source,
                            Interval target) {
  constexpr int kNone = 1 << 28;
  auto last_position = [&](const ReferencePart& part) {
    if (!part.absolute) return target.last - part.value;
    return part.value <= target.last ? kNone : -kNone;
  };
  auto first_position = [&](const ReferencePart& part) {
    if (!part.absolute) return target.first - part.value;
    return part.value >= target.first ? -kNone : kNone;
  };
  return Intersect(source, {std::min(first_position(part1), first_position(part2)),
                            std::max(last_position(part1), last_position(part2))});
}

// What the reference covers along one axis for formulas anywhere in `source`, within the sheet.
Interval Reach(const ReferencePart& part1, const ReferencePart& part2, Interval source, int limit) {
  auto [first, last] = std::minmax({part1.At(source.first), part1.At(source.last),
                                    part2.At(source.first), part2.At(source.last)});
  return Intersect({first, last}, {1, limit});
}

}  // namespace

std::optional<ReferenceShape> ReferenceShape::Of(const Reference& reference) {
  ReferencePart row1{reference.row1_absolute, reference.row1};
  ReferencePart row2{reference.row2_absolute, reference.row2};
  ReferencePart column1{reference.column1_absolute, reference.column1};
  ReferencePart column2{reference.column2_absolute, reference.column2};
  switch (reference.kind) {
    case Reference::Kind::kCell:
      return ReferenceShape{row1, row1, column1, column1};
    case Reference::Kind::kArea:
      return ReferenceShape{row1, row2, column1, column2};
    case Reference::Kind::kColumns:
      return ReferenceShape{{true, 1}, {true, kMaxRow}, column1, column2};
    case Reference::Kind::kRows:
      return ReferenceShape{row1, row2, {true, 1}, {true, kMaxColumn}};
    case Reference::Kind::kError:
      break;
  }
  return std::nullopt;
}

void DependencyIndex::Reset(std::size_t sheets) {
  entries_.clear();
  shapes_.clear();
  shape_numbers_.clear();
  grids_.clear();
  entries_of_source_.clear();
  Grow(sheets);
}

void DependencyIndex::Grow(std::size_t sheets) {
  grids_.resize(sheets);
  entries_of_source_.resize(sheets);
}

std::uint32_t DependencyIndex::ShapeNumber(const ReferenceShape& shape) {
  auto [found, is_new] = shape_numbers_.try_emplace(shape, shapes_.size());
  if (is_new) shapes_.push_back(shape);
  return found->second;
}

void DependencyIndex::Add(int precedent_sheet, const ReferenceShape& shape, int sheet,
                          const Area& source, FormulaId formula) {
  Interval rows = Reach(shape.row1, shape.row2, {source.first_row, source.last_row}, kMaxRow);
  Interval columns =
      Reach(shape.column1, shape.column2, {source.first_column, source.last_column}, kMaxColumn);
  if (rows.empty() || columns.empty()) return;
  auto number = static_cast<std::uint32_t>(entries_.size());
  entries_.push_back({source.first_row, source.last_row,
                      static_cast<std::uint16_t>(source.first_column),
                      static_cast<std::uint16_t>(source.last_column),
                      static_cast<std::uint16_t>(sheet), formula, ShapeNumber(shape)});
  entries_of_source_[sheet].push_back(number);

  int level = 0;
  while ((rows.last - rows.first) >> (level + kLowestShift)) ++level;
  auto& pages = grids_[precedent_sheet].levels[level];
  int shift = level + kLowestShift;
  for (int bucket = (rows.first - 1) >> shift; bucket <= (rows.last - 1) >> shift; ++bucket) {
    std::size_t page = bucket / kPageBuckets;
    if (pages.size() <= page) pages.resize(page + 1);
    if (!pages[page]) pages[page] = std::make_unique<Page>();
    (*pages[page])[bucket % kPageBuckets].postings.push_back(
        {number, static_cast<std::uint16_t>(columns.first),
         static_cast<std::uint16_t>(columns.last)});
  }
}

// Keeps the unsorted tail short beside the sorted part, and merges it so seldom that adding entries
// one by one stays cheap.
void DependencyIndex::SortTail(Bucket& bucket) const {
  auto& postings = bucket.postings;
  if (postings.size() - bucket.sorted <= 64 + bucket.sorted / 64) return;
  auto by_column = [](const Posting& a, const Posting& b) {
    return a.first_column < b.first_column;
  };
  auto middle = postings.begin() + static_cast<std::ptrdiff_t>(bucket.sorted);
  std::sort(middle, postings.end(), by_column);
  std::inplace_merge(postings.begin(), middle, postings.end(), by_column);
  std::uint16_t reach = 0;
  for (Posting& posting : postings) posting.reach = reach = std::max(reach, posting.reach);
  bucket.sorted = postings.size();
}

std::optional<Area> DependencyIndex::Dependents(const Entry& entry, const Area& area) const {
  const ReferenceShape& shape = shapes_[entry.shape];
  Interval rows = PositionsThatReach(shape.row1, shape.row2, {entry.first_row, entry.last_row},
                                     {area.first_row, area.last_row});
  if (rows.empty()) return std::nullopt;
  Interval columns =
      PositionsThatReach(shape.column1, shape.column2, {entry.first_column, entry.last_column},
                         {area.first_column, area.last_column});
  if (columns.empty()) return std::nullopt;
  return Area{rows.first, columns.first, rows.last, columns.last};
}

void DependencyIndex::InsertColumns(const ColumnInsertion& insertion) {
  auto follow = [&](std::uint16_t column) {
    if (column < insertion.column) return column;
    return static_cast<std::uint16_t>(std::min(column + insertion.count, kMaxColumn));
  };
  for (std::uint32_t number : entries_of_source_[insertion.sheet]) {
    entries_[number].first_column = follow(entries_[number].first_column);
    entries_[number].last_column = follow(entries_[number].last_column);
  }
  // Moving keeps the order of the columns, so the sorted parts stay sorted.
  for (auto& pages : grids_[insertion.sheet].levels) {
    for (auto& page : pages) {
      if (!page) continue;
      for (Bucket& bucket : *page) {
        for (Posting& posting : bucket.postings) {
          posting.first_column = follow(posting.first_column);
          posting.reach = follow(posting.reach);
        }
      }
    }
  }
}

std::size_t DependencyIndex::memory() const {
  std::size_t bytes = entries_.capacity() * sizeof(Entry) + shapes_.size() * 100;
  for (const auto& numbers : entries_of_source_) bytes += numbers.capacity() * 4;
  for (const Grid& grid : grids_) {
    for (const auto& pages : grid.levels) {
      for (const auto& page : pages) {
        if (!page) continue;
        bytes += sizeof(Page);
        for (const Bucket& bucket : *page) bytes += bucket.postings.capacity() * sizeof(Posting);
      }
    }
  }
  return bytes;
}

}  // namespace vantora::embedded
