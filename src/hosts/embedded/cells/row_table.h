// What the rows of one worksheet have of their own beside their cells and formats: height, whether
// they are hidden, place in the outline.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

namespace vantora::embedded {

struct RowFormat {
  // In points; nullopt for the sheet's standard height. A hidden row keeps it.
  std::optional<double> height;
  // The height was set, not fitted to the row's contents.
  bool custom_height = false;
  bool hidden = false;
  // The rows that this one sums up are hidden.
  bool collapsed = false;
  // 0 for a row that belongs to no group.
  std::uint8_t outline_level = 0;

  bool operator==(const RowFormat&) const = default;
};

inline constexpr int kMaxOutlineLevel = 7;

// Holds the rows that differ from the sheet's standard row, in ascending order: an entry for each
// of them, nothing for the others.
class RowTable {
 public:
  struct Entry {
    int row = 1;
    RowFormat format;
    bool operator==(const Entry&) const = default;
  };

  // A row that has nothing of its own. Must be set before rows are loaded.
  const RowFormat& standard() const { return standard_; }
  void SetStandard(const RowFormat& format) { standard_ = format; }

  const RowFormat& Of(int row) const {
    auto entry = Find(row);
    return entry != entries_.end() && entry->row == row ? entry->format : standard_;
  }

  // While reading the package, rows in ascending order.
  void Load(int row, const RowFormat& format) {
    if (format != standard_) entries_.push_back({row, format});
  }

  // Calls edit(RowFormat&) for each of the rows.
  template <typename Edit>
  void EditRows(int first, int last, Edit&& edit) {
    std::vector<Entry> edited;
    auto begin = Find(first);
    auto end = begin;
    for (int row = first; row <= last; ++row) {
      Entry entry{row, standard_};
      if (end != entries_.end() && end->row == row) entry.format = (end++)->format;
      edit(entry.format);
      if (entry.format != standard_) edited.push_back(entry);
    }
    // In place as far as it goes, so that editing a row that is known costs no move of others.
    auto common = std::min(edited.end() - edited.begin(), end - begin);
    auto target = entries_.begin() + (begin - entries_.begin());
    target = std::copy(edited.begin(), edited.begin() + common, target);
    target = entries_.erase(target, target + (end - begin - common));
    entries_.insert(target, edited.begin() + common, edited.end());
  }

  const std::vector<Entry>& entries() const { return entries_; }

 private:
  std::vector<Entry>::const_iterator Find(int row) const {
    return std::partition_point(entries_.begin(), entries_.end(),
                                [&](const Entry& entry) { return entry.row < row; });
  }

  RowFormat standard_;
  std::vector<Entry> entries_;
};

}  // namespace vantora::embedded
