#include "formula/line_index.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "formula/number_text.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

// Below that, reading costs no more than looking after the index.
constexpr int kShortest = 48;
// An index costs as much as reading the line a few times.
constexpr int kRequestsBeforeIndex = 4;
// Of lines that start in one cell, before all of the column from there on gets one.
constexpr int kRequestsBeforeLongerIndex = 16;
// 8 bytes each.
constexpr std::size_t kMostEntries = std::size_t{1} << 21;
constexpr std::size_t kMostFindings = 512;

std::uint32_t Mix(std::uint64_t bits) {
  bits *= 0x9E3779B97F4A7C15u;
  return static_cast<std::uint32_t>(bits >> 32);
}

std::uint32_t HashOfNumber(double number) {
  const bool is_short = std::fabs(number) < 1e15 && number == std::trunc(number);
  if (!is_short) number = RoundTo15Digits(number);
  if (number == 0) number = 0;  // the negative zero is one as well
  return Mix(std::bit_cast<std::uint64_t>(number));
}

std::uint32_t HashOfText(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325u;
  for (std::size_t position = 0; position < text.size();) {
    hash = (hash ^ LowerCase(NextCharacter(text, position))) * 0x100000001B3u;
  }
  return Mix(hash);
}

std::uint32_t HashOf(const Scalar& value) {
  switch (value.kind) {
    case CellKind::kNumber:
      return HashOfNumber(value.number);
    case CellKind::kText:
      return HashOfText(value.text);
    case CellKind::kBoolean:
      return value.boolean ? 1 : 2;
    case CellKind::kError:
      return 3 + static_cast<std::uint32_t>(value.error);
    default:
      return 0;
  }
}

bool IsShort(const Area& area) { return area.rows() < kShortest && area.columns() < kShortest; }

Block ToEndOfColumn(Block line) {
  line.area.last_row = kMaxRow;
  return line;
}

bool AllUpToDate(const CellStore& cells, const Area& area) {
  bool all = true;
  const int last = std::min(area.last_column, cells.LastColumn());
  for (int column = area.first_column; column <= last && all; ++column) {
    cells.ForEachInColumn(column, area.first_row, area.last_row, [&](int, const Cell& cell) {
      all = all && (cell.flags & (kNeedsCalculation | kStale)) == 0;
    });
  }
  return all;
}

}  // namespace

LineIndex::LineIndex(const CellStore& cells, const StringPool& strings, const Area& line) {
  const bool vertical = line.columns() == 1;
  const auto add = [&](int place, const CellValue& value) {
    if (value.kind == CellKind::kText) {
      const std::string_view text = strings[value.text];
      entries_.push_back({HashOfText(text), place});
      if (const std::optional<double> number = NumberFromText(text)) {
        entries_.push_back({HashOfNumber(*number), place});
      }
    } else if (value.kind == CellKind::kNumber) {
      entries_.push_back({HashOfNumber(value.number), place});
    } else if (value.kind == CellKind::kBoolean) {
      entries_.push_back({HashOf(Scalar::Boolean(value.boolean)), place});
    } else if (value.kind == CellKind::kError) {
      entries_.push_back({HashOf(Scalar::Error(value.error)), place});
    }
  };
  const int last = std::min(line.last_column, cells.LastColumn());
  for (int column = line.first_column; column <= last; ++column) {
    cells.ForEachInColumn(column, line.first_row, line.last_row, [&](int row, const Cell& cell) {
      add(vertical ? row - line.first_row : column - line.first_column, cell.value);
    });
  }
  std::sort(entries_.begin(), entries_.end());
  entries_.erase(std::unique(entries_.begin(), entries_.end()), entries_.end());
}

std::span<const LineIndex::Entry> LineIndex::CandidatesFor(const Scalar& value) const {
  const std::uint32_t hash = HashOf(value);
  const auto first = std::ranges::lower_bound(entries_, hash, {}, &Entry::hash);
  return {first, std::ranges::upper_bound(first, entries_.end(), hash, {}, &Entry::hash)};
}

std::size_t LineIndexes::Hash::operator()(const Block& block) const {
  const std::uint64_t rows = static_cast<std::uint64_t>(block.area.first_row) << 32 |
                             static_cast<std::uint64_t>(block.area.last_row);
  const std::uint64_t columns = static_cast<std::uint64_t>(block.sheet) << 32 |
                                static_cast<std::uint64_t>(block.area.first_column) << 16 |
                                static_cast<std::uint64_t>(block.area.last_column);
  return std::size_t{Mix(rows)} << 20 ^ Mix(columns);
}

// Indexes are kept as long as there is room for them; the rest is soon found again.
void LineIndexes::MakeRoom() {
  if (unanswered_.size() > kMostFindings) unanswered_.clear();
  bool has_room = entries_ <= kMostEntries;
  if (findings_.size() > kMostFindings) {
    std::erase_if(findings_, [](const auto& finding) { return !finding.second.index; });
    has_room = has_room && findings_.size() <= kMostFindings / 2;
  }
  if (has_room) return;
  findings_.clear();
  entries_ = 0;
}

LineIndexes::Finding& LineIndexes::Current(const CellStore& cells, const Block& block) {
  Finding& finding = findings_[block];
  if (cells.ChangedSince(block.area, finding.at)) {
    if (finding.index) entries_ -= finding.index->size();
    finding = {};
  }
  finding.at = cells.changes();
  return finding;
}

bool LineIndexes::AreUpToDate(const CellStore& cells, const Block& block) {
  if (IsShort(block.area)) return false;
  const Block longer = ToEndOfColumn(block);
  if (findings_.contains(longer) && Current(cells, longer).up_to_date) return true;
  return findings_.contains(block) && Current(cells, block).up_to_date;
}

void LineIndexes::NoteUpToDate(const CellStore& cells, const Block& block) {
  if (IsShort(block.area)) return;
  MakeRoom();
  Current(cells, block).up_to_date = true;
}

const LineIndex* LineIndexes::Find(const CellStore& cells, const StringPool& strings,
                                   const Block& line) {
  if (IsShort(line.area) || (line.area.rows() > 1 && line.area.columns() > 1)) return nullptr;
  MakeRoom();
  if (const LineIndex* index = FindExactly(cells, strings, line)) return index;
  if (line.area.columns() > 1) return nullptr;
  Block start = line;
  start.area.last_row = start.area.first_row;
  if (++unanswered_[start] < kRequestsBeforeLongerIndex) return nullptr;
  return FindExactly(cells, strings, ToEndOfColumn(line));
}

const LineIndex* LineIndexes::FindExactly(const CellStore& cells, const StringPool& strings,
                                          const Block& line) {
  Finding& finding = Current(cells, line);
  if (!finding.index) {
    if (++finding.requests < kRequestsBeforeIndex) return nullptr;
    // Where a cell is out of date the line is read from the top, which may not need that cell.
    if (!finding.up_to_date && !AllUpToDate(cells, line.area)) {
      finding.requests = 0;
      return nullptr;
    }
    finding.up_to_date = true;
    finding.index.emplace(cells, strings, line.area);
    entries_ += finding.index->size();
  }
  return &*finding.index;
}

}  // namespace vantora::embedded
