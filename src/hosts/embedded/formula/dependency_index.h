// Finds the formulas that refer to a cell or an area.
//
// A block of cells that share one formula is one entry for each of the formula's references,
// however large the block. The entries of a sheet are found through a grid of rows in several
// levels: an entry lies in the level whose buckets are at least as high as the rows it refers to,
// in the one or two buckets it covers; within a bucket, by column.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "formula/formula.h"

namespace vantora::embedded {

// One end of a reference along one axis: a row or column number, or an offset from the formula's
// cell.
struct ReferencePart {
  bool absolute = false;
  int value = 0;

  int At(int position) const { return absolute ? value : position + value; }
  auto operator<=>(const ReferencePart&) const = default;
};

// Where a reference lies relative to its formula's cell. The two parts of an axis are in no order.
struct ReferenceShape {
  ReferencePart row1, row2;
  ReferencePart column1, column2;

  // Nullopt for a reference whose cells are gone.
  static std::optional<ReferenceShape> Of(const Reference& reference);
  auto operator<=>(const ReferenceShape&) const = default;
};

class DependencyIndex {
 public:
  // Cells of `sheet` within `source` may hold `formula`, which has a reference of that shape. Cells
  // that hold another formula by now don't count: the caller looks.
  struct Entry {
    std::int32_t first_row;
    std::int32_t last_row;
    std::uint16_t first_column;
    std::uint16_t last_column;
    std::uint16_t sheet;
    FormulaId formula;
    std::uint32_t shape;

    Area source() const { return {first_row, first_column, last_row, last_column}; }
  };

  // Forgets everything and takes ids below `sheets`.
  void Reset(std::size_t sheets);
  // Takes further sheets.
  void Grow(std::size_t sheets);
  // `source` are cells of `sheet` with that formula, of which a reference to `precedent_sheet` has
  // that shape.
  void Add(int precedent_sheet, const ReferenceShape& shape, int sheet, const Area& source,
           FormulaId formula);

  // Calls visit(number of the entry, entry, the cells of its source that refer to `area`). An entry
  // may come twice. The visitor must not change the index.
  template <typename Visitor>
  void ForEachDependent(int sheet, const Area& area, Visitor&& visit) {
    for (int level = 0; level < kLevels; ++level) {
      ForEachBucket(sheet, level, area, [&](Bucket& bucket) {
        ForEachCandidate(bucket, area, [&](std::uint32_t number) {
          const Entry& entry = entries_[number];
          if (auto cells = Dependents(entry, area)) visit(number, entry, *cells);
        });
      });
    }
  }

  // Entries move and grow with their cells and with what they refer to. Formulas that read
  // otherwise after the insertion are the caller's to add anew.
  void InsertColumns(const ColumnInsertion& insertion);

  std::size_t size() const { return entries_.size(); }
  // Roughly, in bytes.
  std::size_t memory() const;

 private:
  // An entry as it stands in a bucket, with the columns it refers to.
  struct Posting {
    std::uint32_t entry;
    std::uint16_t first_column;
    // In the sorted part the largest last column up to here, else the entry's own.
    std::uint16_t reach;
  };
  struct Bucket {
    std::vector<Posting> postings;
    // The first `sorted` postings are in order of first_column.
    std::size_t sorted = 0;
  };
  static constexpr int kPageBuckets = 64;
  using Page = std::array<Bucket, kPageBuckets>;
  // Level 0 has buckets of 8 rows, the last one bucket for all rows.
  static constexpr int kLowestShift = 3;
  static constexpr int kLevels = 18;
  struct Grid {
    std::array<std::vector<std::unique_ptr<Page>>, kLevels> levels;
  };

  template <typename Visitor>
  void ForEachBucket(int sheet, int level, const Area& area, Visitor&& visit) {
    auto& pages = grids_[sheet].levels[level];
    if (pages.empty()) return;
    int shift = level + kLowestShift;
    int first = (area.first_row - 1) >> shift;
    int last =
        std::min((area.last_row - 1) >> shift, static_cast<int>(pages.size()) * kPageBuckets - 1);
    for (int bucket = first; bucket <= last; ++bucket) {
      const auto& page = pages[bucket / kPageBuckets];
      if (!page) {
        bucket |= kPageBuckets - 1;
      } else if (Bucket& found = (*page)[bucket % kPageBuckets]; !found.postings.empty()) {
        visit(found);
      }
    }
  }

  template <typename Visitor>
  void ForEachCandidate(Bucket& bucket, const Area& area, Visitor&& visit) {
    SortTail(bucket);
    auto& postings = bucket.postings;
    auto sorted_end = postings.begin() + static_cast<std::ptrdiff_t>(bucket.sorted);
    auto after = std::partition_point(postings.begin(), sorted_end, [&](const Posting& posting) {
      return posting.first_column <= area.last_column;
    });
    while (after != postings.begin() && std::prev(after)->reach >= area.first_column) {
      visit((--after)->entry);
    }
    for (auto posting = sorted_end; posting != postings.end(); ++posting) {
      if (posting->first_column <= area.last_column && posting->reach >= area.first_column) {
        visit(posting->entry);
      }
    }
  }

  void SortTail(Bucket& bucket) const;
  std::optional<Area> Dependents(const Entry& entry, const Area& area) const;
  std::uint32_t ShapeNumber(const ReferenceShape& shape);

  std::vector<Entry> entries_;
  std::vector<Grid> grids_;                                    // by the sheet referred to
  std::vector<std::vector<std::uint32_t>> entries_of_source_;  // by the sheet of the formulas
  std::vector<ReferenceShape> shapes_;
  std::map<ReferenceShape, std::uint32_t> shape_numbers_;
};

}  // namespace vantora::embedded
